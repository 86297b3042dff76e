// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "hf/database_model.h"
#include "hf/model_object.h"
#include "model/table_description.h"

/// True when the column is to have another type, or other arguments of it.
bool ChangesType(const HF::LModelObject& column);

/// Orders the changes of several tables so that the engine takes them: it
/// refuses to alter a table that has an index or that others refer to, and to
/// drop one that others refer to. What stands in the way is taken down first
/// and put up again in the same transaction.
class orbDuckDB_TableChanges
{
public:
    explicit orbDuckDB_TableChanges(const RcList<HF::I_LModelObject>& tables);

    QList<HF::LQueryNode> Nodes();

private:
    using Table = rc::Ref<HF::LModelObject>;
    enum class Road {
        None,    ///< nothing to do
        Add,     ///< statements that the engine always takes
        Alter,   ///< statements that it refuses beside an index or a foreign key to the table
        Rebuild, ///< the table is made anew beside the old one
        TakeOut, ///< rows wait in a copy while the table is gone
        Create,
        Drop,
    };
    struct Plan
    {
        Table table;
        Road road = Road::None;
        QString copyName; ///< with TakeOut
    };

    Plan& PlanOf(const Table& table);
    Road RoadOf(const HF::LModelObject& table) const;
    /// Tables that refer to one today and will not be dropped.
    std::vector<Table> Children(const HF::LModelObject& table) const;
    void TakeOutChildren();
    orbDuckDB_DescTable Describe(const Table& table) const;
    QList<HF::LQueryNode> AlterNodes(const Plan& plan) const;
    QList<HF::LQueryNode> RebuildNodes(const Plan& plan) const;
    HF::LQueryNode Node(const Table& table, HF::ELQueryKind kind, const QString& sql) const;
    /// Positions of the plans, those that others refer to first.
    std::vector<std::size_t> ParentsFirst(bool pending) const;
    static bool IsNameTaken(const HF::LModelObject& table, const QString& name);
    /// A name for waiting rows that no table has; counts the number on.
    static QString FreeName(const HF::LModelObject& table, int& number);

    std::vector<Plan> m_plans;
};

/// What stands against the pending changes of a table, and what they would lose.
QStringList TableChangeProblems(const rc::Ref<const HF::I_LModelObject>& table);
QStringList TableChangeWarnings(const rc::Ref<const HF::I_LModelObject>& table);
