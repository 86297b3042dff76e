// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "hf/object_kinds.h"

/// Numbers of the function's own properties, made when the plug-in loads.
extern const int PROP_FUNCTION_ARGUMENTS;
extern const int PROP_FUNCTION_BODY;

/// One macro, or system function of a system schema.
class orbDuckDB_Function : public HF::LFunction
{
public:
    orbDuckDB_Function(const rc::Ref<HF::I_LSchemaObject>& owner, const QString& name, const QString& overloadKey);

    rc::Ptr<HF::LAction> get_DefaultAction() const override;
    void FromQuery(const rc::Ref<const HF::I_LCursor>& cursor) override;
    /// What the list's name holds behind "$$"; usually empty.
    const QString& get_OverloadKey() const { return m_overloadKey; }

private:
    QString MakeDefinition() const;

    QString m_overloadKey;
};
