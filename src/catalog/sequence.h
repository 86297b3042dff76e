// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "hf/object_kinds.h"

/// One sequence.
class orbDuckDB_Sequence : public HF::LSequence
{
public:
    orbDuckDB_Sequence(const rc::Ref<HF::I_LSchemaObject>& owner, const QString& name);

    rc::Ptr<HF::LAction> get_DefaultAction() const override;
    void FromQuery(const rc::Ref<const HF::I_LCursor>& cursor) override;
};
