// SPDX-License-Identifier: GPL-3.0-or-later
#include "catalog/unique.h"

#include "catalog/column_text.h"
#include "catalog/list_infos.h"

rc::Ref<HF::I_LSchemaObject> MakeUnique(const rc::Ref<HF::I_LSchemaObject>& owner, const QString& name)
{
    return rc::make<orbDuckDB_Unique>(owner, name);
}

orbDuckDB_Unique::orbDuckDB_Unique(const rc::Ref<HF::I_LSchemaObject>& owner, const QString& name)
{
    put_ParentObject(owner);
    AssignName(name);
}

HF::LLazy<bool, true> orbDuckDB_Unique::ApplyPropertyValue(int id, const HF::LVariant& value)
{
    if (id != PROP_COMMENT)
        return LUnique::ApplyPropertyValue(id, value);
    put_ExternalProperty(QStringLiteral("comment"), value.ToString());
    return true;
}

HF::LLazy<bool, true> orbDuckDB_Unique::UpdatePropertyImpl(int id)
{
    if (id != PROP_COMMENT)
        return LUnique::UpdatePropertyImpl(id);
    AssignPropertyValue(PROP_COMMENT, get_ExternalProperty(QStringLiteral("comment"), QString()).toString());
    return true;
}

rc::Ptr<HF::LAction> orbDuckDB_Unique::get_DefaultAction() const
{
    return ActionDesign();
}

void orbDuckDB_Unique::FromQuery(const rc::Ref<const HF::I_LCursor>& cursor)
{
    AssignPropertyValueSilent(PROP_COLUMNS, ColumnNames(cursor, "unique_names", "columns"));
}
