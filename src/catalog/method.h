// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "data/field_base.h"

/// One generated column of a table.
class orbDuckDB_Method : public orbDuckDB_FieldBase
{
public:
    using orbDuckDB_FieldBase::orbDuckDB_FieldBase;

    HF::LLazy<bool, true> ReloadProperties() override;
    int get_ObjectType() const override { return HF::TYPE_METHOD; }
    QString get_ObjectTypeName() const override;
    HF::LLazy<QString, false> get_Icon() const override;
    HF::LLazy<QString, false> get_Tip() const override;
    QPointer<QWidget> CreateEditor(QPointer<QWidget> parent) override;
    void FromQuery(const rc::Ref<const HF::I_LCursor>& cursor) override;
};
