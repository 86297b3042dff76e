// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "hf/model_kinds.h"

/// Statements of a database: its default schemas.
class orbDuckDB_ModelDatabase final : public HF::LDatabaseModelObject
{
public:
    void CreateProperties(HF::LHasProperties::Properties& list) const override;
    QList<HF::LQueryNode> GetQueryNodes(const rc::Ref<const HF::I_LSchemaObject>& object, HF::ELQueryKind kind,
                                        int property, const HF::LVariant& value) const override;
    bool IsTransactable(const rc::Ref<const HF::I_LSchemaObject>& object) const override { return false; }
    /// A menu of the database's schemas, for the default ones.
    HF::LVariant ShowPropertyEditor(const rc::Ref<HF::I_LSchemaObject>& object, int property,
                                    const rc::Ptr<HF::I_LDatabase>& database, QPoint position) const override;
    /// A transaction that is open already, or a database that takes no changes.
    QStringList GetChangeProblems(const rc::Ref<const HF::I_LModelObject>& object) const override;
    /// Lets the commit write the file itself: changes of structure do not always
    /// come back from the log of a process that ended unclean.
    std::pair<QStringList, QStringList> GetChangeFrame(const rc::Ref<HF::I_LDatabase>& database) const override;
};
