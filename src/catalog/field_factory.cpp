// SPDX-License-Identifier: GPL-3.0-or-later
#include "catalog/list_infos.h"
#include "data/field.h"

rc::Ref<HF::I_LSchemaObject> MakeField(const rc::Ref<HF::I_LSchemaObject>& owner, const QString& name)
{
    return rc::make<orbDuckDB_Field>(rc::Ptr<HF::I_LSchemaObject>(owner), name);
}
