// SPDX-License-Identifier: GPL-3.0-or-later
#include "nub/orbsql/backup.h"

#include "nub/orbsql/database_files.h"
#include "nub/orbsql/file_copy.h"
#include "nub/orbsql/query.h"

#include <algorithm>
#include <chrono>
#include <filesystem>
#include <map>
#include <set>
#include <thread>

namespace nub::orbsql {

namespace {

// The main header and the two database headers. A checkpoint changes one of
// them at its very end, and no block in use is overwritten before that.
constexpr std::size_t HeaderBytes = 3 * 4096;
constexpr int CopyAttempts = 5;
constexpr std::chrono::seconds StreamPatience{5};
constexpr char InterruptedText[] = "INTERRUPT Error: Interrupted!";

/// One backup under way; takes its leftovers along when it fails.
class Backup
{
public:
    Backup(Session& session, std::string target)
        : m_session(session), m_connection(session.Connect()), m_interrupts(session.Interrupts()),
          m_target(std::move(target)), m_temporary(TemporaryBeside(m_target))
    {
    }
    ~Backup() { RemoveDatabaseFiles(m_temporary); }

    void CopyFile()
    {
        const std::string& source = m_session.FilePath();
        const auto stop = [this] { return IsInterrupted(); };
        for (int attempt = 0;; ++attempt) {
            if (!m_session.IsReadOnly() && CheckpointWaitsForStreams())
                WaitForStreams();
            if (!m_session.IsReadOnly())
                Run("CHECKPOINT " + QuotedName(m_session.DatabaseName()));
            const CopyOutcome outcome = CopyOpenFile(source, m_temporary, HeaderBytes, stop);
            if (outcome == CopyOutcome::Done)
                break;
            RemoveDatabaseFiles(m_temporary);
            if (outcome == CopyOutcome::Stopped)
                throw xException(InterruptedText);
            if (attempt + 1 == CopyAttempts)
                throw xException("IO Error: The database changes too fast to be copied; try again later");
        }
        // Nobody writes to a file that is open read-only, and its log belongs to it.
        if (m_session.IsReadOnly() && PathExists(source + ".wal")) {
            if (CopyOpenFile(source + ".wal", m_temporary + ".wal", 0, stop) != CopyOutcome::Done)
                throw xException(InterruptedText);
            RenameWithoutReplacing(m_temporary + ".wal", m_target + ".wal");
        }
        Finish();
    }

    void CopyByEngine()
    {
        const std::string source = QuotedName(m_session.DatabaseName());
        const std::string copy = QuotedName(std::filesystem::path(m_temporary).filename().string());
        Run("ATTACH " + QuotedText(m_temporary) + " AS " + copy);
        try {
            Run("BEGIN TRANSACTION");
            Run("COPY FROM DATABASE " + source + " TO " + copy + " (SCHEMA)");
            CopyRows(source, copy);
            Run("COMMIT");
            Run("CHECKPOINT " + copy);
        } catch (...) {
            RunQuery(m_connection.get(), "ROLLBACK");
            RunQuery(m_connection.get(), "DETACH " + copy);
            throw;
        }
        Run("DETACH " + copy);
        Finish();
    }

private:
    using TableId = std::pair<std::string, std::string>; // schema, name

    struct Table
    {
        std::string columns;        ///< a quoted list
        std::set<TableId> parents;  ///< tables that its foreign keys name
    };

    static std::string PathOf(const std::string& catalogue, const TableId& id)
    {
        std::string path = catalogue;
        path.append(1, '.').append(QuotedName(id.first)).append(1, '.').append(QuotedName(id.second));
        return path;
    }

    bool IsInterrupted() const noexcept { return m_session.Interrupts() != m_interrupts; }

    QueryRows Run(const std::string& sql)
    {
        if (IsInterrupted())
            throw xException(InterruptedText);
        QueryRows rows = RunQuery(m_connection.get(), sql);
        if (rows.failed())
            throw xException(m_session.Words(rows.error.c_str()).c_str());
        return rows;
    }

    void WaitForStreams()
    {
        const auto end = std::chrono::steady_clock::now() + StreamPatience;
        while (m_session.OpenStreams() > 0) {
            if (IsInterrupted())
                throw xException(InterruptedText);
            if (std::chrono::steady_clock::now() > end)
                throw xException("Another session is reading rows of this database; back it up when that has ended");
            std::this_thread::sleep_for(std::chrono::milliseconds(20));
        }
    }

    void Finish()
    {
        try {
            RenameWithoutReplacing(m_temporary, m_target);
        } catch (...) {
            RemoveDatabaseFiles(m_target + ".wal");
            throw;
        }
    }

    /// Referenced tables first: the engine's own order runs into their foreign keys.
    void CopyRows(const std::string& source, const std::string& copy)
    {
        std::map<TableId, Table> left = ReadTables(copy);
        while (!left.empty()) {
            auto next = std::find_if(left.begin(), left.end(), [&](const auto& entry) {
                const auto waits = [&](const TableId& parent) { return parent != entry.first && left.contains(parent); };
                return std::none_of(entry.second.parents.begin(), entry.second.parents.end(), waits);
            });
            if (next == left.end())
                next = left.begin();
            const auto& [id, table] = *next;
            if (!table.columns.empty())
                Run("INSERT INTO " + PathOf(copy, id) + " (" + table.columns + ") SELECT " + table.columns + " FROM "
                    + PathOf(source, id));
            left.erase(next);
        }
    }

    std::map<TableId, Table> ReadTables(const std::string& copy)
    {
        const std::string here = " WHERE database_name = " + QuotedText(m_session.DatabaseName());
        std::map<TableId, Table> tables;
        std::set<TableId> generated;
        for (const auto& row : Run("SELECT schema_name, table_name, contains(upper(sql), 'GENERATED ALWAYS AS') "
                                   "FROM duckdb_tables()" + here + " AND NOT internal AND NOT temporary").rows) {
            const TableId id{row[0].value_or(""), row[1].value_or("")};
            tables[id];
            if (row[2] == "true")
                generated.insert(id);
        }
        for (const auto& row : Run("SELECT schema_name, table_name, column_name FROM duckdb_columns()" + here
                                   + " AND NOT internal ORDER BY table_oid, column_index").rows) {
            const TableId id{row[0].value_or(""), row[1].value_or("")};
            const auto table = tables.find(id);
            if (table == tables.end())
                continue;
            const std::string column = QuotedName(row[2].value_or(""));
            if (generated.contains(id) && IsGenerated(copy, id, column))
                continue;
            std::string& columns = table->second.columns;
            columns += (columns.empty() ? "" : ", ") + column;
        }
        for (const auto& row : Run("SELECT schema_name, table_name, referenced_table FROM duckdb_constraints()" + here
                                   + " AND constraint_type = 'FOREIGN KEY'").rows) {
            const auto table = tables.find({row[0].value_or(""), row[1].value_or("")});
            if (table != tables.end())
                table->second.parents.insert({row[0].value_or(""), row[2].value_or("")});
        }
        return tables;
    }

    /// No catalogue function tells, but the engine refuses to insert there.
    bool IsGenerated(const std::string& copy, const TableId& id, const std::string& column)
    {
        const std::string sql = "INSERT INTO " + PathOf(copy, id) + " (" + column + ") VALUES (NULL)";
        PreparedHandle statement;
        if (duckdb_prepare(m_connection.get(), sql.c_str(), statement.out()) == DuckDBSuccess)
            return false;
        const char* error = duckdb_prepare_error(statement.get());
        return error && std::string_view(error).find("generated column") != std::string_view::npos;
    }

    Session& m_session;
    const ConnectionHandle m_connection;
    const std::uint64_t m_interrupts;
    const std::string m_target;
    const std::string m_temporary;
};

} // namespace

void BackupDatabase(Session& session, const Location& location, const std::string& folder)
{
    std::error_code error;
    if (!std::filesystem::is_directory(folder, error))
        throw xException(("IO Error: The backup folder \"" + folder + "\" does not exist or is no folder").c_str());
    const bool isFile = !session.FilePath().empty();
    std::filesystem::path name = location.FileName();
    if (!isFile)
        name.replace_extension(".duckdb"); // a data file that the engine shows as a database
    const std::string target = (std::filesystem::path(folder) / name).string();
    // A log that lies there would be replayed into the copy.
    for (const std::string& path : {target, target + ".wal"})
        if (PathExists(path))
            throw xException(("IO Error: Cannot write the backup: \"" + path + "\" already exists").c_str());
    session.KeepOpenRows();
    Backup backup(session, target);
    if (isFile)
        backup.CopyFile();
    else
        backup.CopyByEngine();
}

} // namespace nub::orbsql
