// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "hf/schema_item_list.h"

/// The one list of a database's schemas. Those of the system are hidden unless
/// the user asks for them.
class orbDuckDB_SchemasList : public HF::LDatabaseSchemasList
{
public:
    explicit orbDuckDB_SchemasList(const rc::Ref<HF::I_LSchemaObject>& database);

    HF::LLazy<bool, true> ApplyPropertyValue(int, const HF::LVariant&) override { return false; }
    rc::Ptr<HF::LAction> get_DefaultAction() const override;
    QString get_NameQuoted() const override { return get_Name(); }
    HF::LLazy<QString, false> get_Tip() const override { return QString(); }
    QList<QString> get_DefaultFilteredNames() const override;
};
