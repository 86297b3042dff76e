// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "data/field_base.h"

/// A plain column of a table, view or cursor.
class orbDuckDB_Field : public orbDuckDB_FieldBase
{
public:
    using orbDuckDB_FieldBase::orbDuckDB_FieldBase;

    HF::LLazy<bool, true> ReloadProperties() override;
    HF::LLazy<QString, false> get_Icon() const override;
    HF::LLazy<bool, true> Drop() override;
    void FromQuery(const rc::Ref<const HF::I_LCursor>& cursor) override;
};
