// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "hf/object_kinds.h"

/// One index of a table; its columns come from its SQL text.
class orbDuckDB_Index : public HF::LIndex
{
public:
    orbDuckDB_Index(const rc::Ref<HF::I_LSchemaObject>& owner, const QString& name);

    HF::LVariant ShowPropertyEditor(int id, QPoint at, bool modal) override;
    rc::Ptr<HF::LAction> get_DefaultAction() const override;
    QPointer<QWidget> CreateEditor(QPointer<QWidget> parent) override;
    void FromQuery(const rc::Ref<const HF::I_LCursor>& cursor) override;
};
