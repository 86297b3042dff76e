// SPDX-License-Identifier: GPL-3.0-or-later
#include "hf/query_node.h"

#include "hf/database.h"
#include "hf/engine.h"
#include "hf/log.h"
#include "hf/open_transaction.h"
#include "hf/sql_text.h"

namespace HF {

namespace {

void Flatten(const QList<LQueryNode>& nodes, QStringList& statements)
{
    for (const LQueryNode& node : nodes) {
        QString text = node.sql;
        FinishQuery(text, 0);
        if (!text.isEmpty())
            statements.append(text);
        Flatten(node.children, statements);
    }
}

bool RunOne(const rc::Ref<I_LDatabase>& database, const QString& text)
{
    const QList<LQueryResult> results =
        database->SqlQuery(text, QUERY_SILENT_ERROR, {}, CURSOR_CLIENT, LOCK_OPTIMISTIC, CURSOR_FORWARD);
    if (IsQuerySuccess(results))
        return true;
    LogError(GetQueryErrors(results).trimmed() + QLatin1String("\n\n") + text);
    return false;
}

bool IsSingleOperation(const QString& statement)
{
    return statement.contains(QLatin1String("--SO--"));
}

} // namespace

QStringList FlattenQueryNodes(const QList<LQueryNode>& nodes)
{
    QStringList statements;
    Flatten(nodes, statements);
    return statements;
}

bool RunStatements(const rc::Ref<I_LDatabase>& database, const QStringList& statements, bool transactable)
{
    const LDatabaseEngine* engine = database->get_DatabaseEngine();
    qsizetype together = 0;
    for (const QString& text : statements)
        if (!IsSingleOperation(text))
            together += SplitStatements(text).size();
    // A lone statement is atomic by itself, and a BEGIN would break a transaction
    // that the user has open.
    const bool inTransaction = transactable && engine && together > 1;
    const bool begins = inTransaction || std::any_of(statements.begin(), statements.end(), IsSingleOperation);
    if (begins && RefuseInTransaction(database))
        return false;
    const auto command = [&](const QString& text) {
        return IsQuerySuccess(database->SqlQuery(text, QUERY_DEFAULT, {}, CURSOR_CLIENT, LOCK_OPTIMISTIC,
                                                 CURSOR_FORWARD));
    };

    bool open = false;
    for (const QString& statement : statements) {
        const bool alone = IsSingleOperation(statement);
        if (alone && open) {
            if (!command(engine->GetTransactionCommit(QString())))
                return false;
            open = false;
        } else if (!alone && inTransaction && !open) {
            if (!command(engine->GetTransactionBegin(QString())))
                return false;
            open = true;
        }
        if (!RunOne(database, statement)) {
            if (open)
                command(engine->GetTransactionRollback(QString()));
            return false;
        }
    }
    if (open && !command(engine->GetTransactionCommit(QString()))) {
        command(engine->GetTransactionRollback(QString()));
        return false;
    }
    database->Flush().Force();
    return true;
}

} // namespace HF
