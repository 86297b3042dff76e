// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "hf/database_model.h"

/// Statements of a schema.
class orbDuckDB_ModelSchema final : public HF::I_LDatabaseModel
{
public:
    void CreateProperties(HF::LHasProperties::Properties& list) const override;
    QList<HF::LQueryNode> GetQueryNodes(const rc::Ref<const HF::I_LSchemaObject>& object, HF::ELQueryKind kind,
                                        int property, const HF::LVariant& value) const override;
};
