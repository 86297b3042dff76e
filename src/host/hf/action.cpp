// SPDX-License-Identifier: GPL-3.0-or-later
#include "hf/action.h"

#include "hf/tree_item.h"

namespace HF {

LAction::LAction(const char* id, QString text, RunFunction run, UpdateFunction update, QString icon)
    : m_id(QString::fromLatin1(id)), m_text(std::move(text)), m_icon(std::move(icon)), m_run(std::move(run)),
      m_update(std::move(update))
{
}

void LAction::Run(const RcList<LTreeItem>& items, const QVariant& argument) const
{
    if (m_run)
        m_run(items, argument);
}

void LAction::Update(QAction& action, const RcList<LTreeItem>& items, const QVariant& argument) const
{
    if (m_update)
        m_update(action, items, argument);
}

const char* const DO_OPEN_DATABASE = "OpenDatabase";
const char* const DO_OPEN_PREFERENCES = "OpenPreferences";
const char* const DO_OPEN_QUERY_EDITOR = "OpenQueryEditor";
const char* const DO_OPEN_QUERY_BUILDER = "OpenQueryBuilder";
const char* const DO_OPEN_DATA_EDITOR = "OpenDataEditor";
const char* const DO_CLOSE = "Close";
const char* const DO_SETUP_VIRTUAL_LINKS = "SetupVirtualLinks";
const char* const DO_BACKUP = "Backup";
const char* const DO_SHOW_ON_DISK = "ShowOnDisk";
const char* const DO_DUMP_CREATE = "DumpCreate";
const char* const DO_DUMP_LOAD = "DumpLoad";
const char* const DO_DELETE_PHYSICALLY = "DeletePhysically";
const char* const DO_DROP_SELF = "DropSelf";
const char* const DO_DESIGN = "Design";
const char* const DO_DUPLICATE = "Duplicate";
const char* const DO_DELETE_ALL_RECORDS = "DeleteAllRecords";
const char* const DO_EXECUTE = "Execute";
const char* const DO_REFRESH = "Refresh";
const char* const DO_EXPORT_CSV = "ExportCsv";
const char* const DO_IMPORT_CSV = "ImportCsv";
const char* const DO_OPEN_RECENT = "OpenRecent";

const char* const OBJECT_CHECK = "check";
const char* const OBJECT_CONNECTION = "connection";
const char* const OBJECT_DATABASE = "database";
const char* const OBJECT_FIELD = "field";
const char* const OBJECT_FUNCTION = "function";
const char* const OBJECT_INDEX = "index";
const char* const OBJECT_LINK = "link";
const char* const OBJECT_METHOD = "method";
const char* const OBJECT_SCHEMA = "schema";
const char* const OBJECT_SEQUENCE = "sequence";
const char* const OBJECT_TABLE = "table";
const char* const OBJECT_UNIQUE = "unique";
const char* const OBJECT_VIEW = "view";

} // namespace HF
