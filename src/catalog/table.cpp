// SPDX-License-Identifier: GPL-3.0-or-later
#include "catalog/table.h"

#include "catalog/column_text.h"
#include "catalog/list_infos.h"
#include "data/table_cursor.h"
#include "hf/database.h"
#include "hf/sql_text.h"

namespace {

/// Above this many rows a table's count stays an estimate until somebody asks.
constexpr long ExactCountLimit = 1000;

} // namespace

rc::Ref<HF::I_LSchemaObject> MakeTable(const rc::Ref<HF::I_LSchemaObject>& owner, const QString& name)
{
    const auto table = rc::make<orbDuckDB_Table>(owner, name);
    table->MakeLists();
    return table;
}

orbDuckDB_Table::orbDuckDB_Table(const rc::Ref<HF::I_LSchemaObject>& owner, const QString& name)
{
    put_ParentObject(owner);
    AssignName(name);
}

void orbDuckDB_Table::MakeLists()
{
    const rc::Ref<HF::I_LSchemaObject> self = rc::self<HF::I_LSchemaObject>(this);
    const auto links = rc::make<HF::LSchemaItemListChild>(ListInfos::LinksOfTable, self);
    AddChildList(rc::make<HF::LSchemaItemList>(ListInfos::Checks, self));
    AddChildList(rc::make<HF::LSortableDatabaseObjectList>(ListInfos::FieldsOfTable, self));
    AddChildList(rc::make<HF::LSchemaItemList>(ListInfos::Indexes, self));
    AddChildList(links);
    AddChildList(rc::make<HF::LSchemaItemList>(ListInfos::Methods, self));
    AddChildList(rc::make<HF::LSchemaItemList>(ListInfos::Uniques, self));
    if (const auto schema = get_Schema())
        if (const auto parentList = schema->get_ChildList(HF::TYPE_LINK))
            if (const auto parent = rc::cast<HF::LSchemaItemListParent>(parentList))
                parent->AddChildList(links, PROP_LINK_TABLE, PROP_LINK_PARENT_TABLE, QString());
}

HF::LVariant orbDuckDB_Table::ShowPropertyEditor(int id, QPoint at, bool modal)
{
    if (id != PROP_SQL_TEXT)
        return LTable::ShowPropertyEditor(id, at, modal);
    HF::ShowSqlViewer(GetString(PROP_SQL_TEXT), get_Database());
    return {};
}

HF::LLazy<bool, true> orbDuckDB_Table::UpdatePropertyImpl(int id)
{
    if (id != PROP_RECORD_COUNT)
        return LTable::UpdatePropertyImpl(id);
    const rc::Ptr<HF::I_LDatabase> database = get_Database();
    if (!database)
        return false;
    const QString text = QStringLiteral("SELECT COUNT(*) FROM ") + get_NameForQuery(true);
    // The exact number replaces an estimate, and nothing else does: the weak
    // reference lets the table go while its count still runs.
    return HF::LLazy<bool, true>::FromBody([weak = rc::Weak<orbDuckDB_Table>(this), database, text] {
        const QString answer = HF::LazyEvaluateSQL(database, text, true, {}, true).Force();
        const rc::Ptr<orbDuckDB_Table> table = weak.lock();
        if (!table)
            return false;
        table->AssignPropertyValue(PROP_RECORD_COUNT, HF::LVariant(answer.toLong()));
        return true;
    });
}

QList<rc::Ptr<HF::LAction>> orbDuckDB_Table::get_ActionsForMenu() const
{
    static const QList<rc::Ptr<HF::LAction>> actions{
        ActionOpenDataEditor(), ActionDesign(), nullptr, ActionDuplicate(), nullptr, ActionDeleteAllRecords(),
        nullptr,                nullptr,        ActionDumpCreate()};
    return actions;
}

rc::Ptr<HF::LAction> orbDuckDB_Table::get_DefaultAction() const
{
    return ActionOpenDataEditor();
}

void orbDuckDB_Table::FromQuery(const rc::Ref<const HF::I_LCursor>& cursor)
{
    ReadProperty(cursor, PROP_OBJECT_ID, "table_oid");
    ReadProperty(cursor, PROP_SCHEMA_NAME, "schema_name");
    ReadProperty(cursor, PROP_COMMENT, "comment");
    ReadProperty(cursor, PROP_TEMPORARY, "temporary");
    ReadProperty(cursor, PROP_SQL_TEXT, "sql");
    const QString estimate = ColumnText(cursor, "estimated_size");
    if (estimate.toLongLong() > ExactCountLimit)
        AssignPropertyValueSilent(PROP_RECORD_COUNT, QString(u'~' + estimate));
    AssignPropertyValueSilent(PROP_KEY_COLUMNS, ColumnNames(cursor, "key_names", "primary_key"));
}

HF::LLazy<int, false> orbDuckDB_Table::get_FieldCount() const
{
    const auto fields = get_ChildObjects(HF::TYPE_FIELD);
    const auto methods = get_ChildObjects(HF::TYPE_METHOD);
    if (fields.IsResolved() && methods.IsResolved())
        return int(fields.Force().size() + methods.Force().size());
    return HF::LLazy<int, false>::FromBody(
        [fields, methods] { return int(fields.Force().size() + methods.Force().size()); });
}

rc::Ptr<HF::I_LField> orbDuckDB_Table::get_Field(int index) const
{
    if (index < 0)
        return nullptr;
    const RcList<HF::I_LSchemaObject> fields = get_ChildObjects(HF::TYPE_FIELD).Force();
    if (index < fields.size())
        return rc::cast<HF::I_LField>(fields[index]);
    const RcList<HF::I_LSchemaObject> methods = get_ChildObjects(HF::TYPE_METHOD).Force();
    const qsizetype method = index - fields.size();
    return method < methods.size() ? rc::cast<HF::I_LField>(methods[method]) : nullptr;
}

rc::Ptr<HF::I_LField> orbDuckDB_Table::get_Field(const QString& name) const
{
    for (const int type : {HF::TYPE_FIELD, HF::TYPE_METHOD})
        if (const auto list = get_ChildList(type))
            if (const auto item = list->get_ChildItem(name))
                return rc::cast<HF::I_LField>(item);
    return nullptr;
}

rc::Ptr<HF::I_LTableCursor> orbDuckDB_Table::OpenCursor(int mode, bool rowIdWanted, bool lazy, bool readOnly)
{
    return orbDuckDB_TableCursor::Make(rc::self<HF::I_LSchemaObject>(this), mode, rowIdWanted, lazy, readOnly);
}

rc::Ptr<HF::I_LSchema> orbDuckDB_Table::get_Schema() const
{
    if (const auto schema = rc::cast<HF::I_LSchema>(get_ParentObject()))
        return schema;
    return get_Database();
}
