// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "hf/object_kinds.h"

/// One view, with the list of its columns.
class orbDuckDB_View : public HF::LView
{
public:
    orbDuckDB_View(const rc::Ref<HF::I_LSchemaObject>& owner, const QString& name);

    HF::LLazy<bool, true> ApplyPropertyValue(int id, const HF::LVariant& value) override;
    rc::Ptr<HF::LAction> get_DefaultAction() const override;
    HF::LLazy<QString, false> get_Icon() const override;
    void FromQuery(const rc::Ref<const HF::I_LCursor>& cursor) override;
    /// Read-only, without row id.
    rc::Ptr<HF::I_LTableCursor> OpenCursor(int mode, bool rowIdWanted, bool lazy, bool readOnly) override;
};
