// SPDX-License-Identifier: GPL-3.0-or-later
#include "connection/recent_databases.h"

#include "connection/local_connection.h"

#include "hf/app_controller.h"
#include "hf/database.h"
#include "hf/services.h"

namespace {

/// In the tree of the window at the front.
bool SelectInTree(const rc::Ref<HF::I_LDatabase>& database)
{
    HF::LTree* const tree = HF::LTree::ActiveMenuTree();
    if (!tree || !tree->SelectItem(database))
        return false;
    tree->ExpandSelected();
    return true;
}

} // namespace

orbDuckDB_RecentDatabases::orbDuckDB_RecentDatabases(const rc::Ref<orbDuckDB_LocalConnection>& connection)
    : m_connection(connection)
{
    const QString workspace = HF::GetWorkspaceID(connection);
    m_settingsKey = workspace.isEmpty() ? QStringLiteral("DuckDB")
                                        : QStringLiteral("Workspaces/%1/DuckDB").arg(workspace);
    m_maximum = 10;
    m_itemIcon = QStringLiteral(":/icons/office-database.svg");
    m_title = QObject::tr("Recent DuckDB databases");
    m_examplesWord = QStringLiteral("DuckDB");
    m_ofWorkspace = !connection->get_ConnectionParameters().WorkspaceId.empty();
    Load();
}

QString orbDuckDB_RecentDatabases::GetItemIcon(const rc::Ref<const HF::LRecentItem>& item) const
{
    if (item->HasProperty(PROP_TEMPORARY))
        return QStringLiteral(":/icons/office-database-cloud.svg");
    return LRecentsListWithExamples::GetItemIcon(item);
}

void orbDuckDB_RecentDatabases::OpenItem(const rc::Ref<HF::LRecentItem>& item)
{
    const rc::Ptr<orbDuckDB_LocalConnection> connection = m_connection.lock();
    if (!connection)
        return;
    if (item->GetBool(PROP_TEMPORARY)) {
        HF::AppCtrlInstance().OpenRecent(item);
        return;
    }
    const rc::Ptr<HF::I_LDatabase> opened = connection->OpenDatabase(item->get_ItemData().toString()).Force();
    if (!opened)
        return;
    const rc::Ref<HF::I_LDatabase> database(opened);
    if (SelectInTree(database) || HF::ApplicationInstance().ShowObject(database, 1))
        return;
    HF::AppCtrlInstance().OpenNewWindow(0);
    HF::ApplicationInstance().ShowObject(database, 1);
}

void orbDuckDB_RecentDatabases::FromFile(const QString& path)
{
    LRecentsListWithExamples::FromFile(path);
    HF::CheckRecentDatabasesPaths(rc::self(this));
}
