// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "hf/model_kinds.h"

/// Statements of a column, and what its type makes of its other properties.
class orbDuckDB_ModelField final : public HF::LDatabaseModelField
{
public:
    QString CheckProperty(const rc::Ref<const HF::I_LSchemaObject>& object, const rc::Ptr<HF::I_LDatabase>& database,
                          int property, const HF::LVariant& value) const override;
    void CreateProperties(HF::LHasProperties::Properties& list) const override;
    QList<HF::LQueryNode> GetQueryNodes(const rc::Ref<const HF::I_LSchemaObject>& object, HF::ELQueryKind kind,
                                        int property, const HF::LVariant& value) const override;
    QMap<int, int> GetPropertiesGroups() const override;
    HF::LVariant ShowPropertyEditor(const rc::Ref<HF::I_LSchemaObject>& object, int property,
                                    const rc::Ptr<HF::I_LDatabase>& database, QPoint position) const override;
    void UpdatePropertiesFlags(const rc::Ref<HF::I_LSchemaObject>& object,
                               const rc::Ptr<HF::I_LDatabase>& database) const override;
    void UpdateDependentProperties(const rc::Ref<HF::I_LSchemaObject>& object, int property) const override;
};
