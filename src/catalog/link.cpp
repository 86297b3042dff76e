// SPDX-License-Identifier: GPL-3.0-or-later
#include "catalog/link.h"

#include "catalog/column_text.h"
#include "catalog/list_infos.h"
#include "hf/database.h"
#include "hf/parser.h"

rc::Ref<HF::I_LSchemaObject> MakeLink(const rc::Ref<HF::I_LSchemaObject>& owner, const QString& name)
{
    return rc::make<orbDuckDB_Link>(owner, name);
}

orbDuckDB_Link::orbDuckDB_Link(const rc::Ref<HF::I_LSchemaObject>& owner, const QString& name)
{
    put_ParentObject(owner);
    AssignName(name);
}

HF::LLazy<bool, true> orbDuckDB_Link::ApplyPropertyValue(int id, const HF::LVariant& value)
{
    if (id != PROP_COMMENT)
        return LLink::ApplyPropertyValue(id, value);
    put_ExternalProperty(QStringLiteral("comment"), value.ToString());
    return true;
}

HF::LLazy<bool, true> orbDuckDB_Link::UpdatePropertyImpl(int id)
{
    switch (id) {
    case PROP_COMMENT:
        AssignPropertyValue(PROP_COMMENT, get_ExternalProperty(QStringLiteral("comment"), QString()).toString());
        return true;
    case PROP_LINK_CARDINALITY:
        return AssignPropertySelection(PROP_LINK_CARDINALITY, IsOneToOne() ? QStringLiteral("ONE to ONE")
                                                                           : QStringLiteral("ONE to MANY"));
    default:
        return LLink::UpdatePropertyImpl(id);
    }
}

/// By the first referencing column alone: a unique one can point to a row once.
bool orbDuckDB_Link::IsOneToOne() const
{
    const rc::Ptr<HF::I_LTable> table = get_Table(0);
    const QStringList columns = GetStringList(PROP_LINK_COLUMNS);
    if (!table || columns.isEmpty())
        return true;
    const rc::Ptr<HF::I_LField> field = table->get_Field(columns.first());
    if (!field)
        return true;
    field->UpdatePropertyIfNeed(PROP_UNIQUE).Force();
    return field->GetBool(PROP_UNIQUE);
}

QList<rc::Ptr<HF::LAction>> orbDuckDB_Link::get_ActionsForMenu() const
{
    return {ActionDesign()};
}

void orbDuckDB_Link::FromQuery(const rc::Ref<const HF::I_LCursor>& cursor)
{
    QString parent;
    QStringList parentColumns;
    QStringList columns;
    if (HasColumn(cursor, "link_parent_names")) {
        parent = ColumnText(cursor, "referenced_table");
        parentColumns = ColumnNames(cursor, "link_parent_names", "");
        columns = ColumnNames(cursor, "link_names", "");
    } else if (const QString text = ColumnText(cursor, "constraint_text"); !text.isEmpty()) {
        static const QString pattern =
            QStringLiteral("FOREIGN KEY ( #FK_FIELDS ) REFERENCES %PARENT ( #PK_FIELDS ) @STOP");
        HF::LParser parser(pattern);
        if (parser.Parse(text)) {
            parent = parser.get_Ident(QStringLiteral("PARENT"));
            parentColumns = parser.get_List(QStringLiteral("PK_FIELDS"));
            columns = parser.get_List(QStringLiteral("FK_FIELDS"));
        }
    }
    ReadProperty(cursor, PROP_SCHEMA_NAME, "schema_name");
    ReadProperty(cursor, PROP_LINK_SCHEMA, "schema_name");
    ReadProperty(cursor, PROP_LINK_PARENT_SCHEMA, "schema_name");
    ReadProperty(cursor, PROP_LINK_TABLE, "table_name");
    if (ColumnText(cursor, "temporary") == u"true")
        AssignPropertyValueSilent(PROP_TEMPORARY, true);
    AssignPropertyValueSilent(PROP_LINK_COLUMNS, columns);
    AssignPropertyValueSilent(PROP_LINK_PARENT_TABLE, parent);
    AssignPropertyValueSilent(PROP_KEY_COLUMNS, parentColumns);
}

rc::Ptr<HF::I_LSchema> orbDuckDB_Link::get_Schema() const
{
    if (const auto schema = rc::cast<HF::I_LSchema>(get_ParentObject()))
        return schema;
    return get_Database();
}

rc::Ptr<HF::I_LTable> orbDuckDB_Link::get_Table(int side) const
{
    const rc::Ptr<HF::I_LDatabase> database = get_Database();
    if (!database)
        return nullptr;
    const QString schemaName = GetString(side == 1 ? PROP_LINK_PARENT_SCHEMA : PROP_LINK_SCHEMA);
    const auto schema = rc::cast<HF::I_LSchema>(database->get_ChildObject(HF::TYPE_SCHEMA, schemaName).Force());
    if (!schema)
        return nullptr;
    const rc::Ptr<HF::I_LTable> table = schema->get_Table(GetString(side == 1 ? PROP_LINK_PARENT_TABLE : PROP_LINK_TABLE));
    if (!table || table->GetBool(PROP_TEMPORARY) == GetBool(PROP_TEMPORARY))
        return table;
    for (const rc::Ref<HF::I_LTable>& twin : schema->get_Tables())
        if (twin->get_Name().compare(table->get_Name(), Qt::CaseInsensitive) == 0
            && twin->GetBool(PROP_TEMPORARY) == GetBool(PROP_TEMPORARY))
            return twin;
    return table;
}
