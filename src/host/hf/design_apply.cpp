// SPDX-License-Identifier: GPL-3.0-or-later
// From pending changes to statements, and from statements to the database.
#include "hf/database_model.h"
#include "hf/design.h"
#include "hf/engine.h"
#include "hf/log.h"
#include "hf/sql_text.h"

#include <QObject>

namespace HF {

namespace {

using Models = std::vector<rc::Ref<LModelObject>>;

enum Action { Creates, Changes, Drops };

bool Does(const LModelObject& object, Action action)
{
    if (object.IsMarkedDropped())
        return action == Drops && !object.IsJustCreated();
    return object.IsJustCreated() ? action == Creates : action == Changes && object.HasChanges();
}

/// Schemas that somebody has looked into, or the one that is new.
Models SchemasOf(const LModelObject& root)
{
    return root.get_ModelsNow(TYPE_SCHEMA);
}

/// Children of all schemas with a certain action before them, in the order of the tree.
Models Objects(const LModelObject& root, int type, Action action)
{
    Models found;
    for (const rc::Ref<LModelObject>& schema : SchemasOf(root)) {
        if (schema->IsMarkedDropped())
            continue; // what is in it goes with it
        for (const rc::Ref<LModelObject>& object : schema->get_ModelsNow(type))
            if (Does(*object, action))
                found.push_back(object);
    }
    return found;
}

/// Tables that change, themselves or by a foreign key of theirs.
Models ChangedTables(const LModelObject& root)
{
    Models tables;
    for (const rc::Ref<LModelObject>& schema : SchemasOf(root)) {
        if (schema->IsMarkedDropped())
            continue;
        QStringList linked;
        for (const rc::Ref<LModelObject>& link : schema->get_ModelsNow(TYPE_LINK))
            if (link->HasOwnChanges())
                linked.append(link->GetString(PROP_LINK_TABLE).toLower());
        const Models all = linked.isEmpty() ? schema->get_ModelsNow(TYPE_TABLE) : schema->get_Models(TYPE_TABLE);
        for (const rc::Ref<LModelObject>& table : all)
            if (table->HasChanges() || linked.contains(table->get_Name().toLower()))
                tables.push_back(table);
    }
    return tables;
}

QList<LQueryNode> NodesOf(const Models& objects)
{
    QList<LQueryNode> nodes;
    for (const rc::Ref<LModelObject>& object : objects)
        nodes += object->Model().GetChangeNodes(object);
    return nodes;
}

Models SchemasWith(const LModelObject& root, Action action)
{
    Models found;
    for (const rc::Ref<LModelObject>& schema : SchemasOf(root))
        if (action == Changes ? !schema->IsMarkedDropped() && !schema->get_ChangedProperties().isEmpty()
                              : Does(*schema, action))
            found.push_back(schema);
    return found;
}

/// All statements but those of the database itself: what others use comes before them and
/// goes after them.
QList<LQueryNode> AllNodes(const LModelObject& root)
{
    QList<LQueryNode> nodes = NodesOf(Objects(root, TYPE_VIEW, Drops));
    nodes += NodesOf(SchemasWith(root, Creates));
    for (const int type : {TYPE_SEQUENCE, TYPE_FUNCTION})
        for (const Action action : {Creates, Changes})
            nodes += NodesOf(Objects(root, type, action));
    RcList<I_LModelObject> tables;
    const Models changed = ChangedTables(root);
    for (const rc::Ref<LModelObject>& table : changed)
        tables.append(table);
    if (!changed.empty())
        nodes += changed.front()->Model().GetChangeNodesOf(tables);
    for (const Action action : {Creates, Changes})
        nodes += NodesOf(Objects(root, TYPE_VIEW, action));
    for (const int type : {TYPE_FUNCTION, TYPE_SEQUENCE})
        nodes += NodesOf(Objects(root, type, Drops));
    for (const Action action : {Drops, Changes})
        nodes += NodesOf(SchemasWith(root, action));
    return nodes;
}

/// Everything that has changes, whatever its kind.
void Collect(const rc::Ref<LModelObject>& object, Models& all)
{
    if (object->HasOwnChanges())
        all.push_back(object);
    for (const int type : object->get_ChildListsTypes())
        for (const rc::Ref<LModelObject>& child : object->get_ModelsNow(type))
            Collect(child, all);
}

/// Single statements of the texts of nodes, without the brackets that a text to
/// be run alone brings along: there is one transaction around all of them.
QStringList Statements(const QList<LQueryNode>& nodes, bool& bracketed)
{
    static const QString begin = QStringLiteral("BEGIN; --SO--");
    static const QString end = QStringLiteral("END; --SO--");
    QStringList statements;
    for (QString text : FlattenQueryNodes(nodes)) {
        if (text.startsWith(begin) && text.endsWith(end)) {
            text = text.mid(begin.size(), text.size() - begin.size() - end.size());
            bracketed = true;
        }
        statements += SplitStatements(text);
    }
    return statements;
}

/// Reads the lists of the catalogue anew in which something changed. A table is
/// read anew as a whole, with its schema's list.
void RefreshCatalog(const Models& changed)
{
    std::vector<std::pair<rc::Ptr<I_LSchemaObject>, int>> lists;
    const auto add = [&](const rc::Ptr<LModelObject>& owner, int type) {
        const std::pair list(owner ? owner->get_Source() : nullptr, type);
        if (list.first && std::find(lists.begin(), lists.end(), list) == lists.end())
            lists.push_back(list);
    };
    for (const rc::Ref<LModelObject>& object : changed) {
        const rc::Ptr<LModelObject> parent = object->get_ParentModel();
        const bool ofTable = parent && parent->get_ObjectType() == TYPE_TABLE;
        const int type = ofTable ? int(TYPE_TABLE) : object->get_ObjectType();
        const rc::Ptr<LModelObject> owner = ofTable ? parent->get_ParentModel() : parent;
        if (type == TYPE_TABLE || type == TYPE_LINK) {
            add(owner, TYPE_TABLE);
            add(owner, TYPE_LINK);
        } else {
            // Dropping a sequence takes tables along.
            add(owner, type);
            if (type == TYPE_SEQUENCE && object->IsMarkedDropped())
                add(owner, TYPE_TABLE);
        }
    }
    for (const auto& [owner, type] : lists)
        if (const rc::Ptr<LSchemaItemList> list = owner->get_ChildList(type); list && list->IsBuilt())
            list->ReloadObjects();
}

bool RunOne(const rc::Ref<I_LDatabase>& database, const QString& text, QString* error = nullptr)
{
    const QList<LQueryResult> results = database->SqlQuery(text + u';', QUERY_SILENT_ERROR, {}, CURSOR_CLIENT,
                                                           LOCK_OPTIMISTIC, CURSOR_FORWARD);
    const bool success = IsQuerySuccess(results);
    if (!success && error)
        *error = GetQueryErrors(results).trimmed();
    return success;
}

} // namespace

LDesignPlan LDesign::get_Plan(bool checked) const
{
    LDesignPlan plan;
    Models all;
    Collect(m_root, all);
    if (all.empty())
        return plan;
    const auto add = [](QStringList& list, const QStringList& more) {
        for (const QString& text : more)
            if (!list.contains(text))
                list.append(text);
    };
    if (checked) {
        add(plan.problems, m_root->Model().GetChangeProblems(m_root));
        // Tables also answer for what is part of them.
        const Models tables = ChangedTables(*m_root);
        all.insert(all.end(), tables.begin(), tables.end());
        for (const rc::Ref<LModelObject>& object : all) {
            if (object.get() == m_root.get())
                continue;
            add(plan.problems, object->Model().GetChangeProblems(object));
            add(plan.warnings, object->Model().GetChangeWarnings(object));
        }
    }
    bool bracketed = false;
    LQueryNode root;
    root.children = AllNodes(*m_root);
    if (const LDatabaseEngine* const engine = m_root->get_DatabaseEngine())
        engine->SortQueries(root);
    plan.statements = Statements(root.children, bracketed);
    plan.inTransaction = bracketed || plan.statements.size() > 1;
    if (!m_root->get_ChangedProperties().isEmpty())
        plan.afterwards = Statements(m_root->Model().GetChangeNodes(m_root), bracketed);
    if (checked && plan.problems.isEmpty() && plan.statements.isEmpty() && plan.afterwards.isEmpty())
        plan.problems.append(QObject::tr("The engine has no statement for this change."));
    return plan;
}

LDesignReport LDesign::Apply(const std::function<bool(const QString& statement)>& step)
{
    LDesignReport report;
    const rc::Ptr<I_LDatabase> known = get_Database();
    const LDatabaseEngine* const engine = m_root->get_DatabaseEngine();
    if (!known || !engine || known->get_IsClosing()) {
        report.error = QObject::tr("The database is closed.");
        return report;
    }
    const rc::Ref<I_LDatabase> database(known);
    const LDesignPlan plan = get_Plan();
    report.warnings = plan.warnings;
    for (const QString& statement : plan.statements + plan.afterwards)
        report.steps.append({statement});
    if (!plan.problems.isEmpty()) {
        report.error = plan.problems.join(u'\n');
        return report;
    }
    Models changed;
    Collect(m_root, changed);

    const auto [before, after] = m_root->Model().GetChangeFrame(database);
    for (const QString& statement : before)
        RunOne(database, statement);
    qsizetype current = 0;
    const auto run = [&](qsizetype end) {
        for (; current < end; ++current) {
            LDesignReport::Step& now = report.steps[current];
            const bool wanted = !step || step(now.statement);
            if (!wanted)
                report.error = QObject::tr("The change was stopped.");
            if (!wanted || !RunOne(database, now.statement, &report.error)) {
                now.state = LDesignReport::Failed;
                return false;
            }
            now.state = LDesignReport::Done;
        }
        return true;
    };
    const qsizetype inside = plan.statements.size();
    bool done = !plan.inTransaction || RunOne(database, engine->GetTransactionBegin(QString()).chopped(1), &report.error);
    const bool began = done && plan.inTransaction;
    done = done && run(inside);
    if (began && done)
        done = RunOne(database, engine->GetTransactionCommit(QString()).chopped(1), &report.error);
    if (began && !done) {
        // Many failures leave the transaction open and usable: it must never be committed.
        RunOne(database, engine->GetTransactionRollback(QString()).chopped(1));
        for (LDesignReport::Step& taken : report.steps)
            if (taken.state == LDesignReport::Done)
                taken.state = LDesignReport::TakenBack;
    }
    const bool changedAnything = done && inside > 0;
    done = done && run(report.steps.size());
    for (const QString& statement : after)
        RunOne(database, statement);
    report.success = done;
    if (!done)
        LogError(current < report.steps.size() ? report.error + QLatin1String("\n\n") + report.steps[current].statement
                                               : report.error);
    if (changedAnything) {
        database->Flush().Force();
        database->InvalidateIdents();
        RefreshCatalog(changed);
    }
    return report;
}

} // namespace HF
