// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "hf/model_kinds.h"

/// Statements of a table. What the engine cannot alter is done by making the
/// table anew.
class orbDuckDB_ModelTable final : public HF::LDatabaseModelTable
{
public:
    void CreateProperties(HF::LHasProperties::Properties& list) const override;
    QList<HF::LQueryNode> GetQueryNodes(const rc::Ref<const HF::I_LSchemaObject>& object, HF::ELQueryKind kind,
                                        int property, const HF::LVariant& value) const override;
    bool IsRebuildRequired(const rc::Ref<const HF::I_LSchemaObject>& object) const override;
    HF::LVariant ShowPropertyEditor(const rc::Ref<HF::I_LSchemaObject>& object, int property,
                                    const rc::Ptr<HF::I_LDatabase>& database, QPoint position) const override;
    QList<HF::LQueryNode> GetChangeNodes(const rc::Ref<const HF::I_LModelObject>& object) const override;
    QList<HF::LQueryNode> GetChangeNodesOf(const RcList<HF::I_LModelObject>& objects) const override;
    QStringList GetChangeProblems(const rc::Ref<const HF::I_LModelObject>& object) const override;
    QStringList GetChangeWarnings(const rc::Ref<const HF::I_LModelObject>& object) const override;
};
