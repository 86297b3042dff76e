// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "hf/model_kinds.h"

/// What goes, or fails from then on, when the sequence is dropped with CASCADE.
/// Users in the schema `exceptIn` are left out. Runs queries.
QStringList SequenceDropWarnings(const rc::Ref<const HF::I_LSchemaObject>& sequence, const QString& exceptIn = {});

/// Statements of a sequence, which any change makes anew.
class orbDuckDB_ModelSequence final : public HF::LDatabaseModelSequence
{
public:
    void CreateProperties(HF::LHasProperties::Properties& list) const override;
    QList<HF::LQueryNode> GetQueryNodes(const rc::Ref<const HF::I_LSchemaObject>& object, HF::ELQueryKind kind,
                                        int property, const HF::LVariant& value) const override;
    QMap<int, int> GetPropertiesGroups() const override;
    QStringList GetChangeWarnings(const rc::Ref<const HF::I_LModelObject>& object) const override;
    QStringList GetChangeProblems(const rc::Ref<const HF::I_LModelObject>& object) const override;
};
