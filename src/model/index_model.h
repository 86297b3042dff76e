// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "hf/model_kinds.h"

/// Statements of an index: any change makes it anew.
class orbDuckDB_ModelIndex final : public HF::LDatabaseModelIndex
{
public:
    void CreateProperties(HF::LHasProperties::Properties& list) const override;
    QList<HF::LQueryNode> GetQueryNodes(const rc::Ref<const HF::I_LSchemaObject>& object, HF::ELQueryKind kind,
                                        int property, const HF::LVariant& value) const override;
    bool IsRecreatingProperty(const rc::Ref<const HF::I_LSchemaObject>& object, int property) const override;
    HF::LVariant ShowPropertyEditor(const rc::Ref<HF::I_LSchemaObject>& object, int property,
                                    const rc::Ptr<HF::I_LDatabase>& database, QPoint position) const override;
};
