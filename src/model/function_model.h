// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "hf/model_kinds.h"

/// Statements of a macro.
class orbDuckDB_ModelFunction final : public HF::LDatabaseModelFunction
{
public:
    QString CheckProperty(const rc::Ref<const HF::I_LSchemaObject>& object, const rc::Ptr<HF::I_LDatabase>& database,
                          int property, const HF::LVariant& value) const override;
    void CreateProperties(HF::LHasProperties::Properties& list) const override;
    QList<HF::LQueryNode> GetQueryNodes(const rc::Ref<const HF::I_LSchemaObject>& object, HF::ELQueryKind kind,
                                        int property, const HF::LVariant& value) const override;
    bool IsSqlProperty(int property) const override { return property == PROP_DEFINITION; }
    bool IsRecreatingProperty(const rc::Ref<const HF::I_LSchemaObject>& object, int property) const override;
    QList<HF::LQueryNode> GetChangeNodes(const rc::Ref<const HF::I_LModelObject>& object) const override;
    QStringList GetChangeWarnings(const rc::Ref<const HF::I_LModelObject>& object) const override;
};
