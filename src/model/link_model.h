// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "hf/model_kinds.h"

/// Statements of a foreign key: its table is made anew.
class orbDuckDB_ModelLink final : public HF::LDatabaseModelLink
{
public:
    void CreateProperties(HF::LHasProperties::Properties& list) const override;
    QList<HF::LQueryNode> GetQueryNodes(const rc::Ref<const HF::I_LSchemaObject>& object, HF::ELQueryKind kind,
                                        int property, const HF::LVariant& value) const override;
    bool IsRebuildRequired(const rc::Ref<const HF::I_LSchemaObject>& object) const override { return true; }
    void UpdatePropertiesFlags(const rc::Ref<HF::I_LSchemaObject>& object,
                               const rc::Ptr<HF::I_LDatabase>& database) const override;
};
