// SPDX-License-Identifier: GPL-3.0-or-later
#include "catalog/sequence.h"

#include "catalog/list_infos.h"

rc::Ref<HF::I_LSchemaObject> MakeSequence(const rc::Ref<HF::I_LSchemaObject>& owner, const QString& name)
{
    return rc::make<orbDuckDB_Sequence>(owner, name);
}

orbDuckDB_Sequence::orbDuckDB_Sequence(const rc::Ref<HF::I_LSchemaObject>& owner, const QString& name)
{
    put_ParentObject(owner);
    AssignName(name);
}

rc::Ptr<HF::LAction> orbDuckDB_Sequence::get_DefaultAction() const
{
    return ActionDesign();
}

void orbDuckDB_Sequence::FromQuery(const rc::Ref<const HF::I_LCursor>& cursor)
{
    ReadProperty(cursor, PROP_OBJECT_ID, "sequence_oid");
    ReadProperty(cursor, PROP_SCHEMA_NAME, "schema_name");
    ReadProperty(cursor, PROP_COMMENT, "comment");
    ReadProperty(cursor, PROP_SEQ_START, "start_value");
    ReadProperty(cursor, PROP_SEQ_MIN, "min_value");
    ReadProperty(cursor, PROP_SEQ_MAX, "max_value");
    ReadProperty(cursor, PROP_SEQ_INCREMENT, "increment_by");
    ReadProperty(cursor, PROP_SEQ_CYCLE, "cycle");
    ReadProperty(cursor, PROP_SEQ_LAST_VALUE, "last_value");
    ReadProperty(cursor, PROP_TEMPORARY, "temporary");
}
