// SPDX-License-Identifier: GPL-3.0-or-later
#include "catalog/schemas_list.h"

#include "catalog/list_infos.h"
#include "catalog/schema.h"
#include "hf/action.h"

orbDuckDB_SchemasList::orbDuckDB_SchemasList(const rc::Ref<HF::I_LSchemaObject>& database)
    : LDatabaseSchemasList(ListInfos::Schemas, database)
{
}

rc::Ptr<HF::LAction> orbDuckDB_SchemasList::get_DefaultAction() const
{
    return nullptr;
}

QList<QString> orbDuckDB_SchemasList::get_DefaultFilteredNames() const
{
    return SystemSchemaNames();
}
