// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "hf/connection.h"

namespace HF {

class LRecentItem;
class LSchemaItemList;

/// What the programs give the controller: windows, designers, wizards. A
/// program without windows installs none, and the controller's requests answer
/// empty results.
class HF_EXPORT I_LApplicationUi
{
public:
    virtual ~I_LApplicationUi() = default;
    virtual bool OpenNewWindow(int argument) = 0;
    /// Shows an object in an existing window; flag 1 selects it.
    virtual bool ShowObject(const rc::Ref<LTreeItem>& object, int flag) = 0;
    virtual void OpenRecent(const rc::Ref<LRecentItem>& item) = 0;
    virtual RcList<I_LSchemaObject> RunDesigner(const rc::Ref<I_LSchemaObject>& parent, ELObjectType type) = 0;
    virtual void EditObject(const rc::Ref<I_LSchemaObject>& object) = 0;
    virtual void StartDump(const rc::Ref<LTreeItem>& list) = 0;
    virtual void StartLoad(const rc::Ref<LTreeItem>& target) = 0;
    virtual void StartExportCsv(const rc::Ref<LTreeItem>& object) = 0;
    virtual void StartImportCsv(const rc::Ref<LTreeItem>& object) = 0;
    /// Opens an editor of the named kind (a DO_... identifier) for the object.
    virtual void OpenEditor(const QString& action, const rc::Ref<LTreeItem>& object) = 0;
    /// Asks the user where work would be lost or cut short by closing the database; false to stay.
    virtual bool MayCloseDatabase(const rc::Ref<I_LDatabase>&) { return true; }
    /// Closes what is open for a database that goes.
    virtual void DropDatabase(const rc::Ref<I_LDatabase>& database) = 0;
};

/// The application controller: connections by factory and workspace, and the
/// way to the program's windows. Any thread, but for what shows windows.
class HF_EXPORT LAppCtrl
{
public:
    /// The connection of a factory in a workspace; null when there is none.
    rc::Ptr<I_LSchemaObject> FindConnection(ELConnectionFactoryId factory, const QString& workspace) const;
    void RegisterConnection(const rc::Ref<I_LConnection>& connection);
    RcList<I_LConnection> get_Connections() const;

    void SetUi(I_LApplicationUi* ui) { m_ui = ui; }
    /// Null without windows.
    I_LApplicationUi* get_Ui() const { return m_ui; }

    bool OpenNewWindow(int argument);
    void OpenRecent(const rc::Ref<LRecentItem>& item);
    RcList<I_LSchemaObject> RunDesigner(const rc::Ref<I_LSchemaObject>& parent, ELObjectType type);
    void StartDump(const rc::Ref<LTreeItem>& list);
    void StartExportCsv(const rc::Ref<LTreeItem>& object);
    void StartImportCsv(const rc::Ref<LTreeItem>& object);
    bool MayCloseDatabase(const rc::Ref<I_LDatabase>& database);
    void DropDatabase(const rc::Ref<I_LDatabase>& database);

private:
    mutable std::mutex m_mutex;
    RcList<I_LConnection> m_connections;
    I_LApplicationUi* m_ui = nullptr;
};

/// The application object: shows an object in a window.
class HF_EXPORT LApplication
{
public:
    bool ShowObject(const rc::Ref<LTreeItem>& object, int flag);
};

HF_EXPORT LAppCtrl& AppCtrlInstance();
HF_EXPORT LApplication& ApplicationInstance();

} // namespace HF
