// SPDX-License-Identifier: GPL-3.0-or-later
#include "hf/app_controller.h"

#include "hf/recents.h"

namespace HF {

rc::Ptr<I_LSchemaObject> LAppCtrl::FindConnection(ELConnectionFactoryId factory, const QString& workspace) const
{
    for (const rc::Ref<I_LConnection>& connection : get_Connections()) {
        const rc::Ptr<I_LConnectionFactory> maker = connection->get_Factory();
        if (maker && maker->GetFactoryId() == factory &&
            connection->get_ConnectionParameters().WorkspaceId.ToQString() == workspace)
            return connection;
    }
    return nullptr;
}

void LAppCtrl::RegisterConnection(const rc::Ref<I_LConnection>& connection)
{
    std::lock_guard guard(m_mutex);
    if (!m_connections.contains(connection))
        m_connections.append(connection);
}

RcList<I_LConnection> LAppCtrl::get_Connections() const
{
    std::lock_guard guard(m_mutex);
    return m_connections;
}

bool LAppCtrl::OpenNewWindow(int argument)
{
    return m_ui && m_ui->OpenNewWindow(argument);
}

void LAppCtrl::OpenRecent(const rc::Ref<LRecentItem>& item)
{
    if (m_ui)
        m_ui->OpenRecent(item);
}

RcList<I_LSchemaObject> LAppCtrl::RunDesigner(const rc::Ref<I_LSchemaObject>& parent, ELObjectType type)
{
    return m_ui ? m_ui->RunDesigner(parent, type) : RcList<I_LSchemaObject>();
}

void LAppCtrl::StartDump(const rc::Ref<LTreeItem>& list)
{
    if (m_ui)
        m_ui->StartDump(list);
}

void LAppCtrl::StartExportCsv(const rc::Ref<LTreeItem>& object)
{
    if (m_ui)
        m_ui->StartExportCsv(object);
}

void LAppCtrl::StartImportCsv(const rc::Ref<LTreeItem>& object)
{
    if (m_ui)
        m_ui->StartImportCsv(object);
}

bool LAppCtrl::MayCloseDatabase(const rc::Ref<I_LDatabase>& database)
{
    return !m_ui || m_ui->MayCloseDatabase(database);
}

void LAppCtrl::DropDatabase(const rc::Ref<I_LDatabase>& database)
{
    if (m_ui)
        m_ui->DropDatabase(database);
}

bool LApplication::ShowObject(const rc::Ref<LTreeItem>& object, int flag)
{
    I_LApplicationUi* ui = AppCtrlInstance().get_Ui();
    return ui && ui->ShowObject(object, flag);
}

// Neither is destroyed: connections may outlive main().
LAppCtrl& AppCtrlInstance()
{
    static LAppCtrl* controller = new LAppCtrl;
    return *controller;
}

LApplication& ApplicationInstance()
{
    static LApplication* application = new LApplication;
    return *application;
}

} // namespace HF
