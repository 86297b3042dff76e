// SPDX-License-Identifier: GPL-3.0-or-later
#include "hf/table_edits.h"

#include "hf/cursor.h"
#include "hf/database.h"
#include "hf/engine.h"
#include "hf/log.h"

#include <QObject>

namespace HF {

namespace {

constexpr qsizetype LongestShown = 200; ///< characters of a bind in a preview

QString Shown(const I_LSqlValue& value)
{
    if (value.get_IsNull())
        return QStringLiteral("NULL");
    QString text = value.get_String();
    if (text.size() > LongestShown)
        text = text.left(LongestShown) + QChar(0x2026);
    return text.replace(u'\n', QLatin1String("\\n"));
}

} // namespace

QString LEditStatement::get_Display() const
{
    QString display = text;
    for (qsizetype i = 0; i < binds.size(); ++i)
        display += QStringLiteral("\n-- $%1 : %2").arg(i + 1).arg(Shown(*binds[i]));
    return display;
}

QString LSaveResult::get_Error() const
{
    QStringList lines;
    for (const LRowError& error : errors)
        lines.append(error.text);
    return lines.join(u'\n');
}

/// One run of a batch. Every statement is checked; the first that the engine
/// refuses ends it, since the transaction takes nothing more then.
class LEditBatch::Runner
{
public:
    explicit Runner(LEditBatch& batch)
        : m_batch(batch), m_engine(batch.m_query->get_Engine()), m_result(batch.m_result)
    {
    }

    void Run()
    {
        const rc::Ptr<rc::RefCounted> hold = m_batch.m_query->HoldSession();
        if (!FindTransaction())
            return;
        if (m_result.inUserTransaction)
            RunInUserTransaction();
        else
            RunInOwnTransaction();
    }

private:
    /// Runs one statement; null with the error told when it fails.
    std::optional<LQueryResult> Execute(const QString& text, const RcList<I_LSqlValue>& binds, int flags, QString& error)
    {
        if (m_batch.m_cancelled.load()) {
            error = QObject::tr("Cancelled.");
            return std::nullopt;
        }
        const QList<LQueryResult> results = m_batch.m_query->Execute(text, flags | QUERY_SILENT_ERROR, binds);
        if (IsQuerySuccess(results))
            return results.last();
        error = GetQueryErrors(results).trimmed();
        if (error.isEmpty())
            error = QObject::tr("The statement did not run.");
        return std::nullopt;
    }

    bool Command(const QString& text)
    {
        // Not through Execute: a cancelled batch still has to be rolled back.
        const QList<LQueryResult> results = m_batch.m_query->Execute(text, QUERY_SILENT_ERROR, {});
        if (IsQuerySuccess(results))
            return true;
        Fail(-1, GetQueryErrors(results).trimmed());
        return false;
    }

    void Fail(qsizetype statement, const QString& text)
    {
        LRowError error;
        error.statement = int(statement);
        error.text = text;
        if (statement >= 0) {
            error.row = m_batch.m_statements[statement].row;
            error.key = m_batch.m_statements[statement].key;
        }
        m_result.errors.append(error);
    }

    std::optional<QString> FirstCell(const QString& text, const RcList<I_LSqlValue>& binds, QString& error)
    {
        const std::optional<LQueryResult> result = Execute(text, binds, QUERY_BACKGROUND, error);
        if (!result || !result->Cursor || !result->Cursor->FirstRecord())
            return std::nullopt;
        const rc::Ptr<I_LField> field = result->Cursor->get_Field(0);
        return field ? std::optional(field->get_String()) : std::nullopt;
    }

    bool FindTransaction()
    {
        const QString probe = m_engine.GetTransactionProbe();
        if (probe.isEmpty())
            return true;
        QString error;
        const std::optional<QString> first = FirstCell(probe, {}, error);
        const std::optional<QString> second = first ? FirstCell(probe, {}, error) : std::nullopt;
        if (!second) {
            Fail(-1, error);
            return false;
        }
        m_result.inUserTransaction = *first == *second;
        return true;
    }

    /// The message for a statement that would touch, or has touched, another number of rows than one.
    QString WrongCount(const LEditStatement& statement, qint64 count)
    {
        if (count > 1)
            return QObject::tr("%1: matches %2 rows, not one. Nothing was changed.").arg(statement.rowName).arg(count);
        QString error;
        const std::optional<QString> byKey =
            statement.keyCountText.isEmpty() ? std::nullopt
                                             : FirstCell(statement.keyCountText, statement.keyCountBinds, error);
        if (byKey && byKey->toLongLong() > 0)
            return QObject::tr("%1: the row has been changed by somebody else since it was read. Nothing was changed.")
                .arg(statement.rowName);
        return QObject::tr("%1: the row was not found. Nothing was changed.").arg(statement.rowName);
    }

    /// Counts what the statement would touch; false after telling that it is not one row.
    bool CountIsRight(qsizetype index)
    {
        const LEditStatement& statement = m_batch.m_statements[index];
        if (statement.countText.isEmpty() || statement.anyNumber)
            return true;
        QString error;
        const std::optional<QString> count = FirstCell(statement.countText, statement.countBinds, error);
        if (!count) {
            Fail(index, statement.rowName + QLatin1String(": ") + error);
            return false;
        }
        if (count->toLongLong() == 1)
            return true;
        Fail(index, WrongCount(statement, count->toLongLong()));
        return false;
    }

    void RunInUserTransaction()
    {
        for (qsizetype i = 0; i < m_batch.m_statements.size(); ++i)
            CountIsRight(i);
        if (!m_result.errors.isEmpty())
            return;
        for (qsizetype i = 0; i < m_batch.m_statements.size(); ++i) {
            const LEditStatement& statement = m_batch.m_statements[i];
            QString error;
            const std::optional<LQueryResult> result = Execute(statement.text, statement.binds, QUERY_DEFAULT, error);
            if (!result) {
                Fail(i, Named(statement, error) + u'\n'
                            + QObject::tr("The transaction that was open can only be rolled back now."));
                return;
            }
            if (!statement.anyNumber && result->AffectedRecords != 1) {
                Fail(i, QObject::tr("%1: changed %2 rows, not one. Roll the open transaction back.")
                            .arg(statement.rowName)
                            .arg(result->AffectedRecords));
                return;
            }
            m_result.rows += result->AffectedRecords;
        }
        m_result.saved = true;
    }

    static QString Named(const LEditStatement& statement, const QString& error)
    {
        return statement.rowName.isEmpty() ? error : statement.rowName + QLatin1String(": ") + error;
    }

    void RunInOwnTransaction()
    {
        if (!Command(m_engine.GetTransactionBegin(QString())))
            return;
        if (RunStatements() && Command(m_engine.GetTransactionCommit(QString()))) {
            m_result.saved = true;
            return;
        }
        m_result.rows = 0;
        const qsizetype told = m_result.errors.size();
        Command(m_engine.GetTransactionRollback(QString()));
        // After a refused COMMIT there is nothing left to roll back.
        if (told > 0)
            m_result.errors.resize(told);
    }

    bool RunStatements()
    {
        for (qsizetype i = 0; i < m_batch.m_statements.size(); ++i) {
            const LEditStatement& statement = m_batch.m_statements[i];
            if (!m_result.errors.isEmpty()) { // only to tell of all rows at once
                CountIsRight(i);
                continue;
            }
            QString error;
            const std::optional<LQueryResult> result = Execute(statement.text, statement.binds, QUERY_DEFAULT, error);
            if (!result) {
                Fail(i, Named(statement, error));
                return false;
            }
            if (!statement.anyNumber && result->AffectedRecords != 1)
                Fail(i, WrongCount(statement, result->AffectedRecords));
            m_result.rows += result->AffectedRecords;
        }
        return m_result.errors.isEmpty();
    }

    LEditBatch& m_batch;
    const LDatabaseEngine& m_engine;
    LSaveResult& m_result;
};

LEditBatch::LEditBatch(const rc::Ref<I_LDatabase>& database, QList<LEditStatement> statements,
                       unsigned long generation)
    : m_query(database->MakeSqlQuery()), m_statements(std::move(statements)), m_generation(generation)
{
    m_query->SetInterruptible(true);
}

const LSaveResult& LEditBatch::Run()
{
    m_result = {};
    Runner(*this).Run();
    return m_result;
}

void LEditBatch::Cancel()
{
    m_cancelled.store(true);
    m_query->Interrupt();
}

} // namespace HF
