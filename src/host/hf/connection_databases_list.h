// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "hf/schema_item_list.h"

namespace HF {

class I_LConnection;

/// The open databases of a connection. No query fills it: databases are put in
/// as they are opened and leave when they close. Any thread.
class HF_EXPORT LConnectionDatabasesList : public LSchemaItemList
{
public:
    LConnectionDatabasesList(const LSchemaItemListInfo& info, const rc::Ref<I_LSchemaObject>& connection);

    RcList<I_LDatabase> get_Databases() const;
};

} // namespace HF
