// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "hf/model_kinds.h"

/// Statements of a unique constraint: its table is made anew.
class orbDuckDB_ModelUnique final : public HF::LDatabaseModelUnique
{
public:
    void CreateProperties(HF::LHasProperties::Properties& list) const override;
    QList<HF::LQueryNode> GetQueryNodes(const rc::Ref<const HF::I_LSchemaObject>& object, HF::ELQueryKind kind,
                                        int property, const HF::LVariant& value) const override;
};
