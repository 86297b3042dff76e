// SPDX-License-Identifier: GPL-3.0-or-later
#include "hf/connection_databases_list.h"

#include "hf/database.h"

namespace HF {

LConnectionDatabasesList::LConnectionDatabasesList(const LSchemaItemListInfo& info,
                                                   const rc::Ref<I_LSchemaObject>& connection)
    : LSchemaItemList(info, connection)
{
}

RcList<I_LDatabase> LConnectionDatabasesList::get_Databases() const
{
    RcList<I_LDatabase> databases;
    for (const rc::Ref<I_LSchemaObject>& item : get_ItemsNow())
        if (const rc::Ptr<I_LDatabase> database = rc::cast<I_LDatabase>(item))
            databases.append(rc::Ref(database));
    return databases;
}

} // namespace HF
