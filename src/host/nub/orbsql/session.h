// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "nub/exception.h"
#include "nub/orbsql/bind.h"
#include "nub/orbsql/instance.h"
#include "nub/orbsql/keywords.h"
#include "nub/orbsql/row_reader.h"
#include "nub/orbsql/session_lock.h"

#include <atomic>
#include <memory>
#include <mutex>
#include <optional>
#include <unordered_set>

namespace nub::orbsql {

class Rows;

/// Something that owns handles of a session's connection; Close takes them
/// away from whoever still holds it.
class SessionChild
{
public:
    virtual void DropHandles() noexcept = 0;

protected:
    ~SessionChild() = default;
};

/// Marks one text that runs: what happens in the session is told apart by it.
struct TextMark
{
    std::uint64_t id = 0;
    std::uint64_t interrupts = 0; ///< of the session, when the text began
    std::vector<TransactionWord> words;
    std::size_t nextWord = 0;
};

/// What one statement gave.
struct Outcome
{
    bool failed = false;
    String error;
    std::int64_t affected = 0;
    std::shared_ptr<Rows> rows; ///< null for a statement without a cursor

    static Outcome Failure(const std::string& text);
};

/// Puts "***" in place of an access token.
void HideToken(std::string& text, const std::string& token);

/// One connection of an instance, with what the kernel knows of its state.
/// Whoever calls has to own a hold, but for Interrupt, get_Progress and the
/// facts fixed at the opening.
class Session : public std::enable_shared_from_this<Session>
{
public:
    /// Throws xException.
    static std::shared_ptr<Session> Open(const Location& location, const OpenOptions& options);
    /// A session of its own on the other one's instance. Throws xException.
    static std::shared_ptr<Session> Further(const Session& other);
    ~Session();

    SessionHold Hold() const { return SessionHold(m_lock); }
    std::optional<SessionHold> TryHold() const { return SessionHold::Try(m_lock); }
    SessionHold FurtherHold() const noexcept { return SessionHold::Further(m_lock); }
    /// Ends everything that the session has open. Waits for a hold by itself.
    void Close() noexcept;
    bool IsClosed() const noexcept { return m_closed; }

    void Interrupt() noexcept;
    double get_Progress() const noexcept;

    bool IsReadOnly() const noexcept { return m_readOnly; }
    /// The catalogue that the location became.
    const std::string& DatabaseName() const noexcept { return m_databaseName; }
    /// The file that the engine reads and writes, or empty when there is none.
    const std::string& FilePath() const noexcept { return m_filePath; }
    /// A further connection of the same instance, of no session.
    ConnectionHandle Connect() const;

    TextMark BeginText(TextOutline outline, std::size_t statements);
    bool IsInterrupted(const TextMark& mark) const noexcept { return m_interrupts != mark.interrupts; }
    std::uint64_t Interrupts() const noexcept { return m_interrupts; }
    /// Throws xException for a text that does not parse. Null without statements.
    ExtractedHandle Extract(const std::string& sql, std::size_t& statements);
    /// The engine's text when it fails.
    std::string Prepare(const ExtractedHandle& statements, std::size_t index, PreparedHandle& prepared);
    Outcome Execute(const PreparedHandle& statement, TextMark& mark);
    /// Runs one INSERT that gives no rows, without preparing it.
    Outcome ExecuteInsert(const std::string& sql);
    /// The text has failed or was left: a transaction that it began is rolled back.
    void FailText(std::uint64_t id) noexcept;
    bool HasFailed(std::uint64_t id) const noexcept { return m_failedText == id; }

    /// Reads what is left of an open result into memory: the next statement
    /// would cut it off.
    void KeepOpenRows() noexcept;
    /// The count of results that are being streamed, in all sessions of the instance.
    std::atomic<int>& OpenStreams() const noexcept { return m_instance->openStreams; }

    /// An engine's text as it may be shown: without the access token.
    std::string Words(const char* text) const;

    void Attach(SessionChild* child);
    void Detach(SessionChild* child) noexcept;

private:
    enum class Transaction { None, Active, Aborted, Unknown };

    Session(InstanceRef instance, std::string token);
    void ReadFacts(const Location& location);
    Transaction ProbeTransaction() noexcept;
    void FollowTransaction(const TextMark& mark, std::optional<TransactionWord> word, bool succeeded) noexcept;
    void ReadSettings() noexcept;
    std::string Run(const PreparedHandle& statement, const TextMark& mark, ResultHandle& result);
    Outcome Collect(std::unique_ptr<ResultHandle> result, duckdb_statement_type type, const TextMark& mark);

    const std::shared_ptr<SessionLock> m_lock = std::make_shared<SessionLock>();
    mutable std::mutex m_handleMutex; ///< between Interrupt or get_Progress and the end of the connection
    InstanceRef m_instance;
    ConnectionHandle m_connection;
    std::atomic<bool> m_closed{false};
    std::atomic<std::uint64_t> m_interrupts{0};
    std::uint64_t m_lastText = 0;
    std::uint64_t m_failedText = 0;
    bool m_inTransaction = false;
    std::uint64_t m_transactionText = 0; ///< the text that began it
    SessionSettings m_settings;
    std::uint64_t m_settingsGeneration = 0;
    std::weak_ptr<Rows> m_openRows;
    std::mutex m_childrenMutex;
    std::unordered_set<SessionChild*> m_children;

    bool m_readOnly = false;
    const std::string m_token;
    std::string m_databaseName;
    std::string m_filePath;
    std::string m_walPath;
};

} // namespace nub::orbsql
