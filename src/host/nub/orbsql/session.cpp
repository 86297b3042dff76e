// SPDX-License-Identifier: GPL-3.0-or-later
#include "nub/orbsql/session.h"

#include "nub/orbsql/query.h"
#include "nub/orbsql/rows.h"

#include <algorithm>
#include <filesystem>

#include <sys/stat.h>

namespace nub::orbsql {

namespace {

constexpr char InterruptedText[] = "INTERRUPT Error: Interrupted!";
constexpr char CommitOfAbortedText[] =
    "TransactionContext Error: An earlier error has aborted this transaction. COMMIT has rolled it back: none of its "
    "changes are kept.";

bool changes_settings(duckdb_statement_type type)
{
    switch (type) {
    case DUCKDB_STATEMENT_TYPE_SELECT:
    case DUCKDB_STATEMENT_TYPE_INSERT:
    case DUCKDB_STATEMENT_TYPE_UPDATE:
    case DUCKDB_STATEMENT_TYPE_DELETE:
    case DUCKDB_STATEMENT_TYPE_EXPLAIN:
    case DUCKDB_STATEMENT_TYPE_PREPARE:
    case DUCKDB_STATEMENT_TYPE_CREATE:
    case DUCKDB_STATEMENT_TYPE_ALTER:
    case DUCKDB_STATEMENT_TYPE_DROP:
    case DUCKDB_STATEMENT_TYPE_COPY:
    case DUCKDB_STATEMENT_TYPE_TRANSACTION:
    case DUCKDB_STATEMENT_TYPE_EXECUTE:
        return false;
    default:
        return true;
    }
}

bool may_have_rows(duckdb_statement_type type)
{
    return type != DUCKDB_STATEMENT_TYPE_TRANSACTION && type != DUCKDB_STATEMENT_TYPE_SET
        && type != DUCKDB_STATEMENT_TYPE_CREATE && type != DUCKDB_STATEMENT_TYPE_DROP
        && type != DUCKDB_STATEMENT_TYPE_ALTER;
}

} // namespace

void HideToken(std::string& text, const std::string& token)
{
    if (token.empty())
        return;
    for (std::size_t at = 0; (at = text.find(token, at)) != std::string::npos; at += 3)
        text.replace(at, token.size(), "***");
}

Outcome Outcome::Failure(const std::string& text)
{
    Outcome outcome;
    outcome.failed = true;
    outcome.error = String::FromUtf8(text);
    return outcome;
}

Session::Session(InstanceRef instance, std::string token)
    : m_instance(std::move(instance)), m_token(std::move(token))
{
}

std::shared_ptr<Session> Session::Open(const Location& location, const OpenOptions& options)
{
    std::shared_ptr<Session> session(new Session(InstanceRef::Open(location, options), options.token));
    session->m_connection = session->Connect();
    session->ReadFacts(location);
    return session;
}

std::shared_ptr<Session> Session::Further(const Session& other)
{
    InstanceRef instance;
    {
        const std::lock_guard lock(other.m_handleMutex);
        if (!other.m_connection)
            throw xException("The database is not open");
        instance = other.m_instance.Share();
    }
    std::shared_ptr<Session> session(new Session(std::move(instance), other.m_token));
    session->m_connection = session->Connect();
    session->m_readOnly = other.m_readOnly;
    session->m_databaseName = other.m_databaseName;
    session->m_filePath = other.m_filePath;
    session->m_walPath = other.m_walPath;
    return session;
}

Session::~Session() { Close(); }

ConnectionHandle Session::Connect() const
{
    ConnectionHandle connection;
    if (duckdb_connect(m_instance->database.get(), connection.out()) == DuckDBError)
        throw xException("The engine gave no connection");
    return connection;
}

void Session::ReadFacts(const Location& location)
{
    m_readOnly = m_instance->options.readOnly;
    const QueryRows facts = RunQuery(m_connection.get(),
                                     "SELECT database_name, path, readonly FROM duckdb_databases() "
                                     "WHERE database_name = current_database()");
    if (!facts.rows.empty()) {
        const auto& row = facts.rows.front();
        m_databaseName = row[0].value_or("");
        m_readOnly = m_readOnly || row[2] == "true";
        if (row[1] && location.kind == Location::Kind::File) {
            m_filePath = m_instance.FilePath();
            std::error_code error;
            m_walPath = std::filesystem::absolute(location.path, error).string() + ".wal";
        }
    }
}

void Session::Close() noexcept
{
    const SessionHold hold = Hold();
    if (m_closed.exchange(true))
        return;
    {
        const std::lock_guard lock(m_childrenMutex);
        for (SessionChild* child : m_children)
            child->DropHandles();
    }
    if (m_connection) {
        if (m_inTransaction)
            RunQuery(m_connection.get(), "ROLLBACK");
        // A file that needs no replay opens under any circumstances; where the
        // engine refuses, the log stays and is replayed by the next open. Other
        // sessions may be reading, and the last of them does it.
        struct stat info;
        if (m_instance.IsSole() && !m_readOnly && !m_filePath.empty() && ::stat(m_walPath.c_str(), &info) == 0
            && info.st_size > 0)
            RunQuery(m_connection.get(), "CHECKPOINT " + QuotedName(m_databaseName));
    }
    ConnectionHandle connection;
    {
        const std::lock_guard lock(m_handleMutex);
        connection = std::move(m_connection);
    }
    connection.reset();
    m_instance.Release();
}

void Session::Interrupt() noexcept
{
    ++m_interrupts;
    const std::lock_guard lock(m_handleMutex);
    if (m_connection)
        duckdb_interrupt(m_connection.get());
}

double Session::get_Progress() const noexcept
{
    const std::lock_guard lock(m_handleMutex);
    if (!m_connection)
        return -1;
    const double share = duckdb_query_progress(m_connection.get()).percentage;
    return share >= 0 ? std::min(share, 100.0) : -1;
}

std::string Session::Words(const char* text) const
{
    std::string result = text && *text ? text : "Unknown error";
    // The engine wraps what stopped a stream in a sentence about the stream.
    if (result.find("closed pending query result\nError: ") != std::string::npos)
        result.erase(0, result.find("\nError: ") + 8);
    HideToken(result, m_token);
    return result;
}

void Session::Attach(SessionChild* child)
{
    const std::lock_guard lock(m_childrenMutex);
    m_children.insert(child);
}

void Session::Detach(SessionChild* child) noexcept
{
    const std::lock_guard lock(m_childrenMutex);
    m_children.erase(child);
}

TextMark Session::BeginText(TextOutline outline, std::size_t statements)
{
    TextMark mark;
    mark.id = ++m_lastText;
    mark.interrupts = m_interrupts;
    // Some statements become several; then nobody knows which word is whose.
    if (outline.statements == statements)
        mark.words = std::move(outline.words);
    return mark;
}

ExtractedHandle Session::Extract(const std::string& sql, std::size_t& statements)
{
    if (m_closed)
        throw xException("The database is not open");
    KeepOpenRows();
    ExtractedHandle extracted;
    statements = duckdb_extract_statements(m_connection.get(), sql.c_str(), extracted.out());
    if (statements == 0)
        if (const char* error = duckdb_extract_statements_error(extracted.get()); error && *error)
            throw xException(Words(error).c_str());
    return extracted;
}

std::string Session::Prepare(const ExtractedHandle& statements, std::size_t index, PreparedHandle& prepared)
{
    if (m_closed)
        return "The database is not open";
    KeepOpenRows();
    if (duckdb_prepare_extracted_statement(m_connection.get(), statements.get(), index, prepared.out())
        == DuckDBSuccess)
        return {};
    std::string error = Words(duckdb_prepare_error(prepared.get()));
    prepared.reset();
    return error;
}

Outcome Session::Execute(const PreparedHandle& statement, TextMark& mark)
{
    if (m_closed || !statement)
        return Outcome::Failure("The database is not open");
    KeepOpenRows();
    const duckdb_statement_type type = duckdb_prepared_statement_type(statement.get());
    const bool control = type == DUCKDB_STATEMENT_TYPE_TRANSACTION;
    std::optional<TransactionWord> word;
    if (control && mark.nextWord < mark.words.size())
        word = mark.words[mark.nextWord++];
    const bool wasAborted = control && m_inTransaction && ProbeTransaction() == Transaction::Aborted;
    if (may_have_rows(type))
        ReadSettings();

    auto result = std::make_unique<ResultHandle>();
    const std::string error = Run(statement, mark, *result);
    if (control)
        FollowTransaction(mark, word, error.empty());
    if (changes_settings(type))
        ++m_instance->settingsGeneration;
    if (!error.empty())
        return Outcome::Failure(error);
    // The engine reports success although nothing of the transaction is kept.
    if (wasAborted && word == TransactionWord::Commit && !m_inTransaction)
        return Outcome::Failure(CommitOfAbortedText);
    try {
        return Collect(std::move(result), type, mark);
    } catch (const xException& failure) {
        return Outcome::Failure(Words(failure.what()));
    }
}

Outcome Session::ExecuteInsert(const std::string& sql)
{
    if (m_closed)
        return Outcome::Failure("The database is not open");
    KeepOpenRows();
    ResultHandle result;
    if (duckdb_query(m_connection.get(), sql.c_str(), result.out()) == DuckDBError)
        return Outcome::Failure(Words(duckdb_result_error(&result.get())));
    Outcome outcome;
    outcome.affected = static_cast<std::int64_t>(duckdb_rows_changed(&result.get()));
    return outcome;
}

std::string Session::Run(const PreparedHandle& statement, const TextMark& mark, ResultHandle& result)
{
    PendingHandle pending;
    if (duckdb_pending_prepared_streaming(statement.get(), pending.out()) == DuckDBError)
        return Words(duckdb_pending_error(pending.get()));
    // From here on the engine notices an interrupt by itself.
    if (IsInterrupted(mark))
        return InterruptedText;
    if (duckdb_execute_pending(pending.get(), result.out()) == DuckDBError)
        return Words(duckdb_result_error(&result.get()));
    return {};
}

Outcome Session::Collect(std::unique_ptr<ResultHandle> result, duckdb_statement_type type, const TextMark& mark)
{
    Outcome outcome;
    duckdb_result& raw = result->get();
    const duckdb_result_type kind = duckdb_result_return_type(raw);
    if (kind == DUCKDB_RESULT_TYPE_CHANGED_ROWS) {
        if (const ChunkHandle chunk = FetchChunk(*result)) {
            const duckdb_vector vector = duckdb_data_chunk_get_vector(chunk.get(), 0);
            const TypeHandle type(duckdb_vector_get_column_type(vector));
            if (duckdb_get_type_id(type.get()) == DUCKDB_TYPE_BIGINT)
                outcome.affected = *static_cast<const std::int64_t*>(duckdb_vector_get_data(vector));
        }
        return outcome;
    }
    if (kind != DUCKDB_RESULT_TYPE_QUERY_RESULT || duckdb_column_count(&raw) == 0)
        return outcome;
    ChunkHandle first;
    if ((type == DUCKDB_STATEMENT_TYPE_CALL || type == DUCKDB_STATEMENT_TYPE_PRAGMA) && duckdb_column_count(&raw) == 1
        && duckdb_column_type(&raw, 0) == DUCKDB_TYPE_BOOLEAN
        && std::string_view(duckdb_column_name(&raw, 0)) == "Success") {
        first = FetchChunk(*result);
        if (!first)
            return outcome; // "done" in the shape of a result
    }
    outcome.rows = std::make_shared<Rows>(shared_from_this(), mark.id, std::move(result), m_settings, std::move(first));
    if (outcome.rows->IsStreaming())
        m_openRows = outcome.rows;
    return outcome;
}

void Session::KeepOpenRows() noexcept
{
    const std::shared_ptr<Rows> rows = std::exchange(m_openRows, {}).lock();
    if (rows)
        rows->Keep();
}

void Session::FailText(std::uint64_t id) noexcept
{
    m_failedText = id;
    if (m_closed || !m_inTransaction || m_transactionText != id)
        return;
    KeepOpenRows();
    RunQuery(m_connection.get(), "ROLLBACK");
    m_inTransaction = false;
}

Session::Transaction Session::ProbeTransaction() noexcept
{
    // Outside a transaction each statement has a number of its own.
    constexpr char query[] = "SELECT txid_current()";
    const QueryRows first = RunQuery(m_connection.get(), query);
    if (first.failed())
        return first.error.find("transaction is aborted") != std::string::npos ? Transaction::Aborted
                                                                               : Transaction::Unknown;
    const QueryRows second = RunQuery(m_connection.get(), query);
    if (second.failed() || !first.rows.at(0).at(0) || !second.rows.at(0).at(0))
        return Transaction::Unknown;
    return first.rows[0][0] == second.rows[0][0] ? Transaction::Active : Transaction::None;
}

void Session::FollowTransaction(const TextMark& mark, std::optional<TransactionWord> word, bool succeeded) noexcept
{
    Transaction state = Transaction::Unknown;
    if (succeeded && word)
        state = word == TransactionWord::Begin ? Transaction::Active : Transaction::None;
    else
        state = ProbeTransaction();
    if (state == Transaction::Unknown)
        return;
    const bool inside = state != Transaction::None;
    if (inside && !m_inTransaction)
        m_transactionText = mark.id;
    m_inTransaction = inside;
}

void Session::ReadSettings() noexcept
{
    const std::uint64_t generation = m_instance->settingsGeneration;
    if (generation == m_settingsGeneration)
        return;
    const QueryRows rows =
        RunQuery(m_connection.get(), "SELECT current_setting('TimeZone'), current_setting('Calendar')");
    if (rows.failed() || rows.rows.empty())
        return;
    m_settings.timeZone = rows.rows[0][0].value_or(m_settings.timeZone);
    m_settings.calendar = rows.rows[0][1].value_or(m_settings.calendar);
    m_settingsGeneration = generation;
}

} // namespace nub::orbsql
