// SPDX-License-Identifier: GPL-3.0-or-later
#include "data/sql_query.h"

#include "data/binds.h"
#include "data/cursor.h"
#include "engine/engine.h"
#include "engine/kernel_text.h"
#include "hf/log.h"
#include "hf/services.h"

#include <QCoreApplication>
#include <QObject>
#include <QThread>

namespace {

constexpr int LogByUserBelow = 128;

/// Tree objects may be tied together on the application's main thread only.
bool IsApplicationThread()
{
    const QCoreApplication* application = QCoreApplication::instance();
    return application && application->thread() == QThread::currentThread();
}

/// Holds the kernel's hold for the host.
class SessionHold : public rc::RefCounted
{
public:
    explicit SessionHold(nub::smart_ptr<nub::I_Counted> hold) : m_hold(std::move(hold)) {}

private:
    nub::smart_ptr<nub::I_Counted> m_hold;
};

QString UnknownError()
{
    return QObject::tr("Unknown error");
}

} // namespace

orbDuckDB_SqlQuery::orbDuckDB_SqlQuery(const rc::Ptr<HF::I_LConnection>& connection,
                                       const rc::Ref<HF::I_LDatabase>& database, Session session)
    : m_connection(connection), m_database(database), m_session(std::move(session)),
      m_connectionIcon(QStringLiteral(":/icons/connection-duckdb.svg")),
      m_connectionName(connection ? connection->get_Name() : QString()), m_databaseIcon(database->get_Icon().Force()),
      m_databaseName(database->get_Name())
{
}

orbDuckDB_SqlQuery::~orbDuckDB_SqlQuery() = default;

const HF::LDatabaseEngine& orbDuckDB_SqlQuery::get_Engine() const
{
    return orbDuckDB_Engine::Instance();
}

void orbDuckDB_SqlQuery::Interrupt()
{
    m_interrupted.store(true);
    if (!m_interruptible.load() || !m_session)
        return;
    const rc::Ptr<HF::I_LConnection> connection = m_connection.lock();
    if (connection && connection->get_IsFileBased())
        m_session->Interrupt();
}

rc::Ptr<rc::RefCounted> orbDuckDB_SqlQuery::HoldSession()
{
    m_interrupted.store(false);
    nub::smart_ptr<nub::I_Counted> turn;
    if (!WaitForTurn(turn))
        return nullptr;
    try {
        if (!turn)
            turn = nub::smart_ptr<nub::I_Counted>::adopt(m_session->Hold());
        return rc::make<SessionHold>(std::move(turn));
    } catch (const nub::xException&) { // closed at this very moment
        return nullptr;
    }
}

bool orbDuckDB_SqlQuery::WaitForTurn(nub::smart_ptr<nub::I_Counted>& turn)
{
    if (!IsApplicationThread())
        return IsSessionOpen(); // the kernel waits
    try {
        while (IsSessionOpen()) {
            turn = nub::smart_ptr<nub::I_Counted>::adopt(m_session->TryHold());
            if (turn)
                return true;
            if (m_interrupted.load())
                return false;
            HF::LYield();
        }
    } catch (const nub::xException&) { // closed at this very moment
    }
    return false;
}

bool orbDuckDB_SqlQuery::IsSessionOpen() const
{
    return m_session && m_session->get_IsOpen();
}

void orbDuckDB_SqlQuery::Log(const QString& text, const HF::LQueryResult& result, int flags,
                             const QElapsedTimer& timer) const
{
    if (flags & HF::QUERY_NO_LOG)
        return;
    HF::LogQuery(HF::GetWorkspaceID(m_database.lock()), m_connectionIcon, m_connectionName, m_databaseIcon,
                 m_databaseName, text, result, timer.elapsed(), (flags & 0xFF) < LogByUserBelow);
}

void orbDuckDB_SqlQuery::TakeCursor(HF::LQueryResult& result, const QString& text,
                                    nub::orbsql::I_Result& kernelResult) const
{
    auto rows = nub::smart_ptr<nub::orbsql::I_Cursor>::adopt(kernelResult.get_Cursor());
    if (!rows) {
        result.Status = HF::LQueryResult::Done;
        return;
    }
    result.Status = HF::LQueryResult::HasCursor;
    const rc::Ptr<HF::I_LConnection> connection = m_connection.lock();
    const rc::Ptr<HF::I_LDatabase> database = IsApplicationThread() ? m_database.lock() : nullptr;
    if (database)
        result.Cursor = orbDuckDB_Cursor::Make(text, connection, rc::Ref<HF::I_LDatabase>(database), std::move(rows));
    else
        result.Cursor = orbDuckDB_Cursor::Make(text, connection, std::move(rows));
}

QList<HF::LQueryResult> orbDuckDB_SqlQuery::Execute(const QString& text, int flags,
                                                    const RcList<HF::I_LSqlValue>& binds)
{
    m_interrupted.store(false);
    const auto held = rc::self(this); // the event loop may run meanwhile
    nub::smart_ptr<nub::I_Counted> turn;
    if (!WaitForTurn(turn))
        return {HF::LQueryResult()};
    if (m_statement)
        return {RunStatement(text, flags, binds)};

    QElapsedTimer timer;
    timer.start();
    QList<HF::LQueryResult> results;
    std::optional<QString> failure;
    try {
        RunChain(results, text, flags, binds);
    } catch (const nub::xException& exception) {
        failure = KernelText::ToQString(exception.get_Message());
    } catch (...) {
        failure = UnknownError();
    }
    if (failure) {
        HF::LQueryResult result;
        result.Error = *failure;
        results.append(result);
    }
    if (results.isEmpty()) {
        results.append(HF::LQueryResult());
        results.last().Status = HF::LQueryResult::Done;
    }
    Log(text, results.last(), flags, timer);
    return results;
}

void orbDuckDB_SqlQuery::RunChain(QList<HF::LQueryResult>& results, const QString& text, int flags,
                                  const RcList<HF::I_LSqlValue>& binds)
{
    const nub::ValueArray array = Binds::ForText(binds);
    auto kernelResult = KernelResult::adopt(
        m_session->SqlExecute(KernelText::FromQString(text), 1, binds.isEmpty() ? nullptr : &array));
    while (kernelResult) {
        const bool failed = kernelResult->get_Status() & nub::orbsql::ResultStatus_Failed;
        // What follows an interrupt is not shown, nor is it a failure; but a
        // statement that the interrupt cut short has not been done.
        if (m_interrupted.load() && !(failed && m_interruptible.load()))
            return;
        HF::LQueryResult result;
        result.AffectedRecords = kernelResult->get_AffectedRows();
        if (failed) {
            result.Error = KernelText::ToQString(kernelResult->get_ErrorMessage());
            result.Status = HF::LQueryResult::Failed;
            if (!(flags & HF::QUERY_SILENT_ERROR))
                HF::LogError(result.Error);
            results.append(result);
            return;
        }
        TakeCursor(result, text, *kernelResult);
        results.append(result);
        kernelResult = KernelResult::adopt(kernelResult->NextResult());
    }
}

// Prepared statements

void orbDuckDB_SqlQuery::ReportFailure(HF::LQueryResult& result, const QString& error, int flags, const QString& text,
                                       const QElapsedTimer& timer) const
{
    const QString shown = error.isEmpty() ? QStringLiteral("Unknown error!") : error;
    if (!(flags & HF::QUERY_SILENT_ERROR))
        HF::LogError(shown);
    result.Error = shown;
    result.Status = HF::LQueryResult::Failed;
    Log(text, result, flags, timer);
}

HF::LQueryResult orbDuckDB_SqlQuery::Prepare(const QString& text, int flags)
{
    HF::LQueryResult result;
    m_interrupted.store(false);
    const auto held = rc::self(this);
    nub::smart_ptr<nub::I_Counted> turn;
    if (!WaitForTurn(turn))
        return result;
    const nub::String trimmed = KernelText::FromQString(text).Trimmed();
    if (trimmed.empty()) {
        result.Status = HF::LQueryResult::Done;
        return result;
    }
    QElapsedTimer timer;
    timer.start();
    try {
        auto statement = orbDuckDB_Statement::Kernel::adopt(m_session->Prepare(trimmed));
        statement->Finalize();
        m_statement = rc::make<orbDuckDB_Statement>(std::move(statement));
        result.Status = HF::LQueryResult::Done;
    } catch (const nub::xException& exception) {
        ReportFailure(result, KernelText::ToQString(exception.get_Message()), flags, text, timer);
    } catch (...) {
        ReportFailure(result, UnknownError(), flags, text, timer);
    }
    return result;
}

HF::LQueryResult orbDuckDB_SqlQuery::RunStatement(const QString& text, int flags,
                                                  const RcList<HF::I_LSqlValue>& binds)
{
    HF::LQueryResult result;
    const rc::Ptr<orbDuckDB_Statement> statement = m_statement;
    if (!statement->get_KernelStatement())
        return result;
    QElapsedTimer timer;
    timer.start();
    try {
        nub::orbsql::I_Statement& kernelStatement = *statement->get_KernelStatement();
        if (!binds.isEmpty()) {
            const nub::ValueArray array = Binds::ForStatement(binds);
            kernelStatement.BindValues(&array);
        }
        const auto kernelResult = KernelResult::adopt(kernelStatement.Execute(1));
        if (kernelResult && kernelResult->get_Status() & nub::orbsql::ResultStatus_Failed)
            throw nub::xException(kernelResult->get_ErrorMessage());
        if (kernelResult) {
            result.AffectedRecords = kernelResult->get_AffectedRows();
            TakeCursor(result, text, *kernelResult);
        } else {
            result.Status = HF::LQueryResult::Done;
        }
        Log(text, result, flags, timer);
    } catch (const nub::xException& exception) {
        ReportFailure(result, KernelText::ToQString(exception.get_Message()), flags, text, timer);
    } catch (...) {
        ReportFailure(result, UnknownError(), flags, text, timer);
    }
    return result;
}
