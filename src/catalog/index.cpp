// SPDX-License-Identifier: GPL-3.0-or-later
#include "catalog/index.h"

#include "catalog/column_text.h"
#include "catalog/index_parser.h"
#include "catalog/list_infos.h"
#include "hf/database.h"
#include "hf/object_editor.h"

rc::Ref<HF::I_LSchemaObject> MakeIndex(const rc::Ref<HF::I_LSchemaObject>& owner, const QString& name)
{
    return rc::make<orbDuckDB_Index>(owner, name);
}

orbDuckDB_Index::orbDuckDB_Index(const rc::Ref<HF::I_LSchemaObject>& owner, const QString& name)
{
    put_ParentObject(owner);
    AssignName(name);
}

HF::LVariant orbDuckDB_Index::ShowPropertyEditor(int id, QPoint at, bool modal)
{
    if (id != PROP_SQL_TEXT)
        return LIndex::ShowPropertyEditor(id, at, modal);
    HF::ShowSqlViewer(GetString(PROP_SQL_TEXT), get_Database());
    return {};
}

rc::Ptr<HF::LAction> orbDuckDB_Index::get_DefaultAction() const
{
    return ActionDesign();
}

QPointer<QWidget> orbDuckDB_Index::CreateEditor(QPointer<QWidget> parent)
{
    return new HF::LDatabaseObjectEditor(rc::self<HF::I_LSchemaObject>(this), PROP_SQL_TEXT, {}, {}, parent);
}

void orbDuckDB_Index::FromQuery(const rc::Ref<const HF::I_LCursor>& cursor)
{
    ReadProperty(cursor, PROP_COMMENT, "comment");
    ReadProperty(cursor, PROP_SQL_TEXT, "sql");
    ReadProperty(cursor, PROP_UNIQUE, "is_unique");
    QStringList columns;
    const QString text = ColumnText(cursor, "sql");
    if (!text.isEmpty()) {
        orbDuckDB_IndexParser parser;
        if (parser.Parse(text))
            columns = parser.get_List(QStringLiteral("COLUMNS"));
    }
    for (QString& column : columns)
        if (column.size() >= 2 && column.startsWith(u'"') && column.endsWith(u'"') && column.count(u'"') == 2)
            column = column.mid(1, column.size() - 2);
    AssignPropertyValueSilent(PROP_COLUMNS, columns);
}
