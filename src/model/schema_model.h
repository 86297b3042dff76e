// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "hf/model_kinds.h"

/// Statements of a schema.
class orbDuckDB_ModelSchema final : public HF::LDatabaseModelObject
{
public:
    void CreateProperties(HF::LHasProperties::Properties& list) const override;
    QList<HF::LQueryNode> GetQueryNodes(const rc::Ref<const HF::I_LSchemaObject>& object, HF::ELQueryKind kind,
                                        int property, const HF::LVariant& value) const override;
    QStringList GetChangeWarnings(const rc::Ref<const HF::I_LModelObject>& object) const override;
};
