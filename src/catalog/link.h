// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "hf/object_kinds.h"

/// One foreign key, in the list of its schema. Its comment lives in the host's
/// external properties.
class orbDuckDB_Link : public HF::LLink
{
public:
    orbDuckDB_Link(const rc::Ref<HF::I_LSchemaObject>& owner, const QString& name);

    HF::LLazy<bool, true> ReloadProperties() override { return true; }
    HF::LLazy<bool, true> ApplyPropertyValue(int id, const HF::LVariant& value) override;
    HF::LLazy<bool, true> UpdatePropertyImpl(int id) override;
    QList<rc::Ptr<HF::LAction>> get_ActionsForMenu() const override;
    void FromQuery(const rc::Ref<const HF::I_LCursor>& cursor) override;
    int get_DeleteRule() const override { return 4; }
    int get_UpdateRule() const override { return 2; }
    rc::Ptr<HF::I_LSchema> get_Schema() const override;
    rc::Ptr<HF::I_LTable> get_Table(int side) const override;

private:
    bool IsOneToOne() const;
};
