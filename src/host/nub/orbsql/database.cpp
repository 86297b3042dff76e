// SPDX-License-Identifier: GPL-3.0-or-later
#include "nub/orbsql/database.h"

#include "nub/orbsql/backup.h"
#include "nub/orbsql/cursor.h"
#include "nub/orbsql/database_files.h"
#include "nub/orbsql/literal_rows.h"
#include "nub/orbsql/result_chain.h"
#include "nub/orbsql/statement.h"

namespace nub::orbsql {

namespace {

/// The engine's text of a failed open, without the token, and with a way out
/// where there is one.
std::string words_of_failed_open(std::string text, const Location& location, const OpenOptions& options)
{
    HideToken(text, options.token);
    if (text.find("Failure while replaying WAL") != std::string::npos)
        text += "\n\nNothing has been deleted. To recover the database: copy the file and its \".wal\" file to a safe "
                "place, open an in-memory database and run\nATTACH '"
            + location.path + "' AS recovered; CHECKPOINT recovered; DETACH recovered;\nThen open the file again.";
    return text;
}

} // namespace

Database::~Database()
{
    if (m_session)
        m_session->Close();
}

bool Database::Exists() const
{
    const Location location = Location::Parse(m_path);
    return location.kind == Location::Kind::File && PathExists(location.path);
}

void Database::SetMotherDuckAccess(String token, String userAgent)
{
    const std::lock_guard lock(m_mutex);
    m_options.token = token.ToUtf8();
    m_options.userAgent = userAgent.ToUtf8();
}

void Database::put_IsReadOnly(bool readOnly)
{
    const std::lock_guard lock(m_mutex);
    m_options.readOnly = readOnly;
}

void Database::OpenSession(const Location& location)
{
    OpenOptions options;
    {
        const std::lock_guard lock(m_mutex);
        options = m_options;
    }
    if (location.path.empty())
        throw xException("The location of the database is empty");
    // The engine does not know a read-only database in memory.
    if (location.kind == Location::Kind::Memory)
        options.readOnly = false;
    std::shared_ptr<Session> session;
    try {
        session = Session::Open(location, options);
    } catch (const std::exception& failure) {
        throw xException(words_of_failed_open(failure.what(), location, options).c_str());
    }
    const std::lock_guard lock(m_mutex);
    m_session = std::move(session);
}

void Database::Open()
{
    const std::lock_guard lock(m_openMutex);
    if (Current())
        throw xException("The database is already open");
    const Location location = Location::Parse(m_path);
    if (location.kind == Location::Kind::File && !location.path.empty() && !PathExists(location.path))
        throw xException(("IO Error: Cannot open database \"" + location.path + "\": database does not exist").c_str());
    OpenSession(location);
}

void Database::Create()
{
    const std::lock_guard lock(m_openMutex);
    if (Current())
        throw xException("The database is already open");
    const Location location = Location::Parse(m_path);
    const bool isNew = location.kind == Location::Kind::File && !PathExists(location.path);
    try {
        OpenSession(location);
    } catch (...) {
        if (isNew && !location.path.empty() && !IsPathOpen(location.path))
            RemoveDatabaseFiles(location.path);
        throw;
    }
}

void Database::Close()
{
    const std::lock_guard lock(m_openMutex);
    const std::shared_ptr<Session> session = Current();
    if (!session)
        return;
    session->Close();
    const std::lock_guard guard(m_mutex);
    m_session.reset();
}

bool Database::IsOpen() const { return Current() != nullptr; }

bool Database::IsReadOnly() const
{
    const std::lock_guard lock(m_mutex);
    return m_session ? m_session->IsReadOnly() : m_options.readOnly;
}

std::shared_ptr<Session> Database::Current() const
{
    const std::lock_guard lock(m_mutex);
    return m_session;
}

std::shared_ptr<Session> Database::Opened() const
{
    std::shared_ptr<Session> session = Current();
    if (!session)
        throw xException("The database is not open");
    return session;
}

void Database::ThrowOut()
{
    const std::lock_guard lock(m_openMutex);
    if (Current())
        throw xException("The database is open: close it before its files are deleted");
    const Location location = Location::Parse(m_path);
    if (location.kind != Location::Kind::File)
        throw xException("This database has no files that could be deleted");
    DeleteDatabase(location.path);
}

void Database::Backup(smart_ptr<I_Disk_Location> folder)
{
    if (!folder)
        throw xException("There is no folder for the backup");
    const std::shared_ptr<Session> session = Opened();
    const SessionHold hold = session->Hold();
    if (session->IsClosed())
        throw xException("The database is not open");
    BackupDatabase(*session, Location::Parse(m_path), folder->get_Path().ToUtf8());
}

void Database::SqlExecute(const String& script, const ValueArray& binds)
{
    TextRun run(Opened(), script, &binds);
    while (!run.AtEnd())
        if (const Outcome outcome = run.Next(); outcome.failed)
            throw xException(outcome.error);
}

I_Cursor* Database::SqlSelect(const String& query, int, const ValueArray& binds)
{
    std::shared_ptr<Rows> rows = SelectRows(query, binds);
    return rows ? new Cursor(std::move(rows)) : nullptr;
}

I_LiteralRows* Database::SelectLiterals(const String& query, std::function<bool(char32_t)> canWrite)
{
    std::shared_ptr<Rows> rows = SelectRows(query, {});
    if (!rows)
        throw xException("The query gives no rows");
    return new LiteralRows(std::move(rows), std::move(canWrite));
}

I_DuckDBDatabase* Database::OpenFurther()
{
    return new Database(m_path, Session::Further(*Opened()));
}

/// The rows of the query's last statement; null without any.
std::shared_ptr<Rows> Database::SelectRows(const String& query, const ValueArray& binds) const
{
    TextRun run(Opened(), query, &binds);
    Outcome outcome;
    // Some single statements of SQL are several for the engine; the last has the rows.
    while (!run.AtEnd()) {
        outcome = {};
        outcome = run.Next();
        if (outcome.failed)
            throw xException(outcome.error);
    }
    return std::move(outcome.rows);
}

I_Result* Database::SqlExecute(const String& text, int, const ValueArray* binds)
{
    return StartChain(Opened(), text, binds);
}

I_Statement* Database::Prepare(const String& text) { return new Statement(Opened(), text); }

void Database::Interrupt()
{
    if (const std::shared_ptr<Session> session = Current())
        session->Interrupt();
}

double Database::get_Progress() const
{
    const std::shared_ptr<Session> session = Current();
    return session ? session->get_Progress() : -1;
}

namespace {

/// Gives back when it goes.
class HeldSession final : public Counted<I_Counted>
{
public:
    HeldSession(std::shared_ptr<Session> session, SessionHold hold)
        : m_session(std::move(session)), m_hold(std::move(hold))
    {
    }

private:
    ~HeldSession() override = default;

    std::shared_ptr<Session> m_session;
    SessionHold m_hold;
};

} // namespace

I_Counted* Database::Hold()
{
    const std::shared_ptr<Session> session = Opened();
    return new HeldSession(session, session->Hold());
}

I_Counted* Database::TryHold()
{
    const std::shared_ptr<Session> session = Opened();
    std::optional<SessionHold> hold = session->TryHold();
    return hold ? new HeldSession(session, std::move(*hold)) : nullptr;
}

smart_ptr<I_DuckDBDatabase> CreateDuckDBDatabase(smart_ptr<I_Disk_Location> location)
{
    if (!location)
        throw xException("There is no location of a database");
    return smart_ptr<I_DuckDBDatabase>::adopt(new Database(location->get_Path()));
}

bool IsFileOpen(const String& path)
{
    const Location location = Location::Parse(path);
    return location.kind == Location::Kind::File && IsPathOpen(location.path);
}

} // namespace nub::orbsql
