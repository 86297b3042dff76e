// SPDX-License-Identifier: GPL-3.0-or-later
#include "model/table_changes.h"

#include "engine/engine_version.h"
#include "hf/sql_text.h"
#include "model/sql_tokens.h"
#include "model/table_script.h"
#include "model/text_helpers.h"

namespace {

using Model = rc::Ref<HF::LModelObject>;

bool SameName(const QString& one, const QString& other)
{
    return one.compare(other, Qt::CaseInsensitive) == 0;
}

bool Holds(const QStringList& names, const QString& name)
{
    return names.contains(name, Qt::CaseInsensitive);
}

QStringList OriginalList(const HF::LModelObject& object, int property)
{
    return object.get_OriginalValue(property).ToStringList();
}

/// The foreign keys that the database has; with `pending` those that it is to have.
std::vector<Model> LinksOf(const HF::LModelObject& table, bool pending)
{
    std::vector<Model> links;
    const rc::Ptr<HF::LModelObject> schema = table.get_ParentModel();
    if (!schema)
        return links;
    for (const Model& link : schema->get_Models(HF::TYPE_LINK))
        if ((pending ? !link->IsMarkedDropped() : !link->IsJustCreated()) && !IsOfTwin(*link, table))
            links.push_back(link);
    return links;
}

bool HasOwnLink(const HF::LModelObject& table, bool pending)
{
    for (const Model& link : LinksOf(table, pending))
        if (SameName(link->GetString(PROP_LINK_TABLE), table.get_Name()))
            return true;
    return false;
}

bool OwnLinksChange(const HF::LModelObject& table)
{
    const rc::Ptr<HF::LModelObject> schema = table.get_ParentModel();
    for (const Model& link : schema->get_Models(HF::TYPE_LINK))
        if (link->HasOwnChanges() && !IsOfTwin(*link, table) && SameName(link->GetString(PROP_LINK_TABLE), table.get_Name()))
            return true;
    return false;
}

/// Whether the engine knows the column from something that keeps it as it is:
/// a key, a constraint, an index, the expression of another column.
bool IsTied(const HF::LModelObject& table, const QString& column)
{
    if (Holds(OriginalList(table, PROP_KEY_COLUMNS), column))
        return true;
    for (const int type : {HF::TYPE_UNIQUE, HF::TYPE_INDEX})
        for (const Model& holder : table.get_Models(type)) {
            if (holder->IsJustCreated())
                continue;
            const QStringList items = OriginalList(*holder, PROP_COLUMNS);
            if (Holds(items, column)
                || (type == HF::TYPE_INDEX && SqlTokens::Mentions(items.join(QLatin1String(" , ")), column)))
                return true;
        }
    for (const auto& [type, property] :
         {std::pair(int(HF::TYPE_CHECK), int(PROP_CHECK_EXPRESSION)), {HF::TYPE_METHOD, PROP_METHOD_EXPRESSION}})
        for (const Model& holder : table.get_Models(type))
            if (SqlTokens::Mentions(holder->get_OriginalValue(property).ToString(), column))
                return true;
    for (const Model& link : LinksOf(table, false))
        if ((SameName(link->GetString(PROP_LINK_TABLE), table.get_Name())
             && Holds(OriginalList(*link, PROP_LINK_COLUMNS), column))
            || (SameName(link->GetString(PROP_LINK_PARENT_TABLE), table.get_Name())
                && Holds(OriginalList(*link, PROP_KEY_COLUMNS), column)))
            return true;
    return false;
}

/// Anything beside plain columns: dropping a column of such a table moves what stands behind it.
bool HasTies(const HF::LModelObject& table)
{
    if (!OriginalList(table, PROP_KEY_COLUMNS).isEmpty() || HasOwnLink(table, false))
        return true;
    for (const int type : {HF::TYPE_UNIQUE, HF::TYPE_CHECK, HF::TYPE_INDEX, HF::TYPE_METHOD})
        for (const Model& holder : table.get_Models(type))
            if (!holder->IsJustCreated())
                return true;
    return false;
}

/// A column gets a name that another one has, or its own in other letters.
bool NameIsTaken(const HF::LModelObject& table, const HF::LModelObject& column)
{
    const QString name = column.GetString(PROP_NAME);
    for (const int type : {HF::TYPE_FIELD, HF::TYPE_METHOD})
        for (const Model& other : table.get_Models(type))
            if (!other->IsJustCreated() && SameName(other->get_Name(), name))
                return true;
    return false;
}

std::vector<Model> IndexesInDatabase(const HF::LModelObject& table)
{
    std::vector<Model> indexes;
    for (const Model& index : table.get_Models(HF::TYPE_INDEX))
        if (!index->IsJustCreated())
            indexes.push_back(index);
    return indexes;
}

/// The engine frees the name of a unique index only when the transaction ends.
bool HasUniqueIndex(const HF::LModelObject& table)
{
    for (const Model& index : IndexesInDatabase(table))
        if (index->get_OriginalValue(PROP_UNIQUE).ToBool())
            return true;
    return false;
}

/// A unique index that comes beside an altered table: at the commit the engine may
/// find each of its values twice.
bool MakesUniqueIndex(const HF::LModelObject& table)
{
    for (const Model& index : table.get_Models(HF::TYPE_INDEX))
        if (!index->IsMarkedDropped() && index->GetBool(PROP_UNIQUE) && index->HasOwnChanges())
            return true;
    return false;
}

/// A name that a unique index leaves is taken by an index of this edit.
bool TakesNameOfUnique(const HF::LModelObject& table)
{
    for (const Model& old : IndexesInDatabase(table)) {
        if (!old->HasOwnChanges() || !old->get_OriginalValue(PROP_UNIQUE).ToBool())
            continue;
        for (const Model& index : table.get_Models(HF::TYPE_INDEX))
            if (!index->IsMarkedDropped() && index->HasOwnChanges()
                && SameName(index->GetString(PROP_NAME), old->get_Name())
                && (index->IsJustCreated() || index->IsPropertyChanged(PROP_COLUMNS)
                    || index->IsPropertyChanged(PROP_UNIQUE) || index.get() != old.get()))
                return true;
    }
    return false;
}

} // namespace

bool ChangesType(const HF::LModelObject& column)
{
    const QMap<int, int> groups = column.Model().GetPropertiesGroups();
    for (const int property : column.get_ChangedProperties())
        if (groups.contains(property) || property == PROP_TYPE_ARGUMENTS)
            return true;
    return false;
}

orbDuckDB_TableChanges::orbDuckDB_TableChanges(const RcList<HF::I_LModelObject>& tables)
{
    for (const rc::Ref<HF::I_LModelObject>& table : tables)
        if (const auto known = rc::cast<HF::LModelObject>(table))
            m_plans.push_back({Table(known), RoadOf(*known), QString()});
    TakeOutChildren();
}

orbDuckDB_TableChanges::Plan& orbDuckDB_TableChanges::PlanOf(const Table& table)
{
    for (Plan& plan : m_plans)
        if (plan.table.get() == table.get())
            return plan;
    return m_plans.emplace_back(Plan{table, Road::None, QString()});
}

orbDuckDB_TableChanges::Road orbDuckDB_TableChanges::RoadOf(const HF::LModelObject& table) const
{
    if (table.IsMarkedDropped())
        return table.IsJustCreated() ? Road::None : Road::Drop;
    if (table.IsJustCreated())
        return Road::Create;
    const rc::Ref<const HF::I_LSchemaObject> object(table);
    if (table.Model().IsRebuildRequired(object) || table.IsPropertyChanged(PROP_KEY_COLUMNS) || OwnLinksChange(table))
        return Road::Rebuild;
    Road road = Road::Add;
    bool altered = false;
    for (const int type : {HF::TYPE_FIELD, HF::TYPE_METHOD})
        for (const Table& column : table.get_Models(type)) {
            altered = altered || column->HasOwnChanges();
            // Such a default is written into the rows by an update, which keys refuse.
            if (column->IsJustCreated() && DefaultLiteral(column->GetString(PROP_DEFAULT)).startsWith(u'(') && HasTies(table))
                return Road::Rebuild;
            // The engine adds a column first and then forbids its nulls, as an alteration.
            if (column->IsJustCreated() && type == HF::TYPE_FIELD && !column->GetBool(PROP_NULLABLE))
                road = Road::Alter;
            if (column->IsJustCreated() || !column->HasOwnChanges())
                continue;
            const bool renamed = column->IsPropertyChanged(PROP_NAME);
            if (column->IsMarkedDropped()) {
                if (HasTies(table))
                    return Road::Rebuild;
                road = Road::Alter;
            } else if (ChangesType(*column)) {
                // The arguments of a type have no statement of their own.
                if (type == HF::TYPE_METHOD || IsTied(table, column->get_Name())
                    || column->IsPropertyChanged(PROP_TYPE_ARGUMENTS))
                    return Road::Rebuild;
                road = Road::Alter;
            }
            if (renamed && (NameIsTaken(table, *column) || (HasOwnLink(table, false) && IsTied(table, column->get_Name()))))
                return Road::Rebuild;
            if (renamed || column->IsPropertyChanged(PROP_NULLABLE)
                || (column->IsPropertyChanged(PROP_DEFAULT) && EngineVersionNumber() < 10500))
                road = Road::Alter;
        }
    if (table.IsPropertyChanged(PROP_NAME)) {
        // A new name would leave the tables that this one refers to with the old one,
        // and a temporary table was no longer known as one under it before 1.5.
        if (HasOwnLink(table, false) || (table.GetBool(PROP_TEMPORARY) && EngineVersionNumber() < 10500) || SameName(table.get_Name(), table.GetString(PROP_NAME)))
            return Road::Rebuild;
        road = Road::Alter;
    }
    altered = altered || road == Road::Alter;
    // Before 1.5 a temporary table that was altered is not known as one any more,
    // and takes no index.
    if (altered && table.GetBool(PROP_TEMPORARY) && EngineVersionNumber() < 10500)
        return Road::Rebuild;
    if (TakesNameOfUnique(table) || (road == Road::Alter && HasUniqueIndex(table))
        || (altered && MakesUniqueIndex(table)))
        return Road::Rebuild;
    return road;
}

std::vector<orbDuckDB_TableChanges::Table> orbDuckDB_TableChanges::Children(const HF::LModelObject& table) const
{
    std::vector<Table> children;
    for (const Table& link : LinksOf(table, false)) {
        if (!SameName(link->GetString(PROP_LINK_PARENT_TABLE), table.get_Name()))
            continue;
        const auto child = table.get_ParentModel()->get_Model(HF::TYPE_TABLE, link->GetString(PROP_LINK_TABLE));
        if (child && child.get() != &table && !child->IsMarkedDropped() && !child->IsJustCreated())
            children.push_back(Table(child));
    }
    return children;
}

void orbDuckDB_TableChanges::TakeOutChildren()
{
    bool more = true;
    while (more) {
        more = false;
        for (std::size_t i = 0; i < m_plans.size(); ++i) {
            if (m_plans[i].road < Road::Alter || m_plans[i].road == Road::Create)
                continue;
            for (const Table& child : Children(*m_plans[i].table))
                if (Plan& plan = PlanOf(child); plan.road != Road::TakeOut) {
                    plan.road = Road::TakeOut;
                    more = true;
                }
        }
    }
    // A key that points to a table that is still to be made, or made anew, waits for it. A table that
    // has the name of the one that is made beside the old one must not be in its way.
    for (Plan& plan : m_plans)
        if (plan.road == Road::Rebuild
            && (HasOwnLink(*plan.table, true) || IsNameTaken(*plan.table, TemporaryTableName)))
            plan.road = Road::TakeOut;
    // Rows that wait must not be in the way of another table that is made anew.
    const auto made = std::count_if(m_plans.begin(), m_plans.end(), [](const Plan& plan) {
        return plan.road == Road::Rebuild || plan.road == Road::TakeOut;
    });
    int number = made > 1 ? 2 : 1;
    for (Plan& plan : m_plans)
        if (plan.road == Road::TakeOut)
            plan.copyName = FreeName(*plan.table, number);
}

bool orbDuckDB_TableChanges::IsNameTaken(const HF::LModelObject& table, const QString& name)
{
    for (const Model& other : table.get_ParentModel()->get_Models(HF::TYPE_TABLE))
        if (SameName(other->get_Name(), name) || SameName(other->GetString(PROP_NAME), name))
            return true;
    return false;
}

QString orbDuckDB_TableChanges::FreeName(const HF::LModelObject& table, int& number)
{
    for (;;) {
        const QString name = number == 1 ? TemporaryTableName : TemporaryTableName + u'_' + QString::number(number);
        ++number;
        if (!IsNameTaken(table, name))
            return name;
    }
}

orbDuckDB_DescTable orbDuckDB_TableChanges::Describe(const Table& table) const
{
    orbDuckDB_DescTable description = DescribeTable(rc::Ref<const HF::I_LSchemaObject>(table));
    // The tables that its keys point to may get other names, for themselves and their columns.
    for (LinkDescription& link : description.links) {
        const auto parent = table->get_ParentModel()->get_Model(HF::TYPE_TABLE, link.parentTable);
        if (!parent || parent.get() == table.get())
            continue;
        link.parentTable = parent->GetString(PROP_NAME);
        const auto object = table->get_ParentModel()->get_Model(HF::TYPE_LINK, link.name);
        if (object && (object->IsJustCreated() || object->IsPropertyChanged(PROP_KEY_COLUMNS)))
            continue;
        for (QString& column : link.parentColumns)
            if (const auto field = parent->get_Model(HF::TYPE_FIELD, column))
                column = field->GetString(PROP_NAME);
    }
    return description;
}

HF::LQueryNode orbDuckDB_TableChanges::Node(const Table& table, HF::ELQueryKind kind, const QString& sql) const
{
    HF::LQueryNode node = HF::I_LDatabaseModel::MakeNode(table, kind, -1, HF::LVariant());
    node.sql = sql;
    return node;
}

std::vector<std::size_t> orbDuckDB_TableChanges::ParentsFirst(bool pending) const
{
    std::vector<std::size_t> order;
    std::vector<int> state(m_plans.size(), 0);
    const std::function<void(std::size_t)> visit = [&](std::size_t i) {
        if (state[i]++)
            return;
        const HF::LModelObject& table = *m_plans[i].table;
        for (const Table& link : LinksOf(table, pending)) {
            if (!SameName(link->GetString(PROP_LINK_TABLE), table.get_Name()))
                continue;
            for (std::size_t other = 0; other < m_plans.size(); ++other)
                if (m_plans[other].table->get_ParentObject().get() == table.get_ParentObject().get()
                    && SameName(m_plans[other].table->get_Name(), link->GetString(PROP_LINK_PARENT_TABLE)))
                    visit(other);
        }
        order.push_back(i);
    };
    for (std::size_t i = 0; i < m_plans.size(); ++i)
        visit(i);
    return order;
}

QList<HF::LQueryNode> orbDuckDB_TableChanges::RebuildNodes(const Plan& plan) const
{
    const rc::Ref<const HF::I_LSchemaObject> table(plan.table);
    const HF::I_LDatabaseModel& model = plan.table->Model();
    // The engine would refuse the new name once the indexes are there again.
    if (plan.table->IsPropertyChanged(PROP_NAME))
        return {Node(plan.table, HF::KIND_REBUILD,
                     WrapSingleOperation(RebuildScript(Describe(plan.table), plan.table->GetString(PROP_NAME))))};
    const bool keyAlone = plan.table->IsPropertyChanged(PROP_KEY_COLUMNS) && !model.IsRebuildRequired(table);
    const HF::LCommittedName committed(table);
    // One list of statements makes everything that is pending.
    return keyAlone ? model.GetQueryNodes(table, HF::KIND_CHANGE_PROPERTY, PROP_KEY_COLUMNS,
                                          DescribeTable(table).primaryKey)
                    : model.GetQueryNodes(table, HF::KIND_REBUILD, -1, HF::LVariant());
}

QList<HF::LQueryNode> orbDuckDB_TableChanges::AlterNodes(const Plan& plan) const
{
    const HF::LModelObject& table = *plan.table;
    const rc::Ref<const HF::I_LSchemaObject> object(plan.table);
    QList<HF::LQueryNode> drops, changes, renames, adds, indexes;
    bool keepsColumn = false;
    for (const int type : {HF::TYPE_FIELD, HF::TYPE_METHOD})
        for (const Table& column : table.get_Models(type)) {
            keepsColumn = keepsColumn || (!column->IsJustCreated() && !column->IsMarkedDropped());
            if (!column->HasOwnChanges())
                continue;
            const QList<HF::LQueryNode> nodes = column->Model().GetChangeNodes(column);
            if (column->IsMarkedDropped())
                drops += nodes;
            else if (column->IsJustCreated())
                adds += nodes;
            else
                for (const HF::LQueryNode& node : nodes)
                    (node.property == PROP_NAME ? renames : changes).append(node);
        }
    if (table.IsPropertyChanged(PROP_COMMENT)) {
        const HF::LCommittedName committed(object);
        changes += table.Model().GetQueryNodes(object, HF::KIND_CHANGE_PROPERTY, PROP_COMMENT,
                                               table.GetString(PROP_COMMENT));
    }
    QList<HF::LQueryNode> tableRename;
    if (table.IsPropertyChanged(PROP_NAME)) {
        const HF::LVariant name = table.GetString(PROP_NAME);
        const HF::LCommittedName committed(object);
        tableRename = table.Model().GetQueryNodes(object, HF::KIND_CHANGE_PROPERTY, PROP_NAME, name);
    }
    QList<HF::LQueryNode> nodes;
    // Without a column that stays the table would have none for a moment.
    nodes += keepsColumn ? drops + changes + renames + adds : adds + changes + renames + drops;

    const std::vector<Table> present = IndexesInDatabase(table);
    if (plan.road == Road::Alter && !table.get_Models(HF::TYPE_INDEX).empty()) {
        // The engine refuses to alter a table that has indexes: they go and come back,
        // and new ones come with them.
        const orbDuckDB_DescTable description = Describe(plan.table);
        QList<HF::LQueryNode> away;
        for (const Table& index : present)
            away.append(Node(index, HF::KIND_DROP, QLatin1String("DROP INDEX ")
                                                       + QualifiedName(description.schema, index->get_Name()) + u';'));
        for (IndexDescription index : description.indexes) {
            index.schema = description.schema;
            index.table = table.GetString(PROP_NAME);
            indexes.append(Node(plan.table, HF::KIND_CREATE, IndexScript(index)));
        }
        return away + nodes + tableRename + indexes;
    }
    for (const Table& index : table.get_Models(HF::TYPE_INDEX)) {
        if (!index->HasOwnChanges())
            continue;
        // Those that go make room for names, those that come may need new columns.
        const QList<HF::LQueryNode> own = index->Model().GetChangeNodes(index);
        if (index->IsMarkedDropped())
            nodes = own + nodes;
        else
            indexes += own;
    }
    return nodes + indexes + tableRename;
}

QList<HF::LQueryNode> orbDuckDB_TableChanges::Nodes()
{
    QList<HF::LQueryNode> nodes;
    const std::vector<std::size_t> before = ParentsFirst(false);
    const std::vector<std::size_t> after = ParentsFirst(true);
    // Whatever refers to a table goes before it.
    for (auto i = before.rbegin(); i != before.rend(); ++i) {
        const Plan& plan = m_plans[*i];
        if (plan.road == Road::TakeOut)
            nodes.append(Node(plan.table, HF::KIND_REBUILD, TakeOutScript(Describe(plan.table), plan.copyName)));
        else if (plan.road == Road::Drop)
            nodes += plan.table->Model().GetQueryNodes(plan.table, HF::KIND_DROP, -1, HF::LVariant());
    }
    // Renamed tables make room for those that take their names.
    for (const Road road : {Road::Add, Road::Alter, Road::Rebuild, Road::Create})
        for (const std::size_t i : after) {
            const Plan& plan = m_plans[i];
            if (plan.road != road || (road == Road::Create && HasOwnLink(*plan.table, true)))
                continue;
            if (road == Road::Create) {
                nodes += plan.table->Model().GetQueryNodes(plan.table, HF::KIND_CREATE, -1, HF::LVariant());
                continue;
            }
            nodes += road == Road::Rebuild ? RebuildNodes(plan) : AlterNodes(plan);
        }
    for (const std::size_t i : after) {
        const Plan& plan = m_plans[i];
        if (plan.road == Road::TakeOut || (plan.road == Road::Create && HasOwnLink(*plan.table, true)))
            nodes.append(Node(plan.table, HF::KIND_REBUILD,
                              PutBackScript(Describe(plan.table), plan.table->GetString(PROP_NAME), plan.copyName)));
    }
    return nodes;
}
