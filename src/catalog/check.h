// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "hf/object_kinds.h"

/// One check constraint.
class orbDuckDB_Check : public HF::LCheck
{
public:
    orbDuckDB_Check(const rc::Ref<HF::I_LSchemaObject>& owner, const QString& name);

    void FromQuery(const rc::Ref<const HF::I_LCursor>& cursor) override;
};
