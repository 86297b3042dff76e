// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "hf/object_kinds.h"

/// One unique constraint. The engine keeps no comment for it: that lives in the
/// host's external properties.
class orbDuckDB_Unique : public HF::LUnique
{
public:
    orbDuckDB_Unique(const rc::Ref<HF::I_LSchemaObject>& owner, const QString& name);

    HF::LLazy<bool, true> ApplyPropertyValue(int id, const HF::LVariant& value) override;
    HF::LLazy<bool, true> UpdatePropertyImpl(int id) override;
    rc::Ptr<HF::LAction> get_DefaultAction() const override;
    void FromQuery(const rc::Ref<const HF::I_LCursor>& cursor) override;
};
