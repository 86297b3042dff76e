// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "nub/disk_location.h"
#include "nub/exception.h"
#include "nub/value.h"

#include <functional>
#include <optional>
#include <string_view>

namespace nub::orbsql {

/// One field of a cursor's current record.
class I_Field : public I_Counted
{
public:
    virtual bool get_IsNull() const = 0;
    virtual String get_String() const = 0;

protected:
    ~I_Field() = default;
};

/// Rows of one result, read forward, chunk by chunk. Holds the session until it
/// is released; a further statement on the session first reads what is left of
/// an open cursor into memory. One thread at a time.
class I_Cursor : public I_Counted
{
public:
    virtual int get_ColumnCount() const = 0;
    virtual String get_ColumnName(int column) const = 0;
    /// The engine's type text: INTEGER, DECIMAL(18,3), STRUCT(a INTEGER).
    virtual String get_ColumnTypeName(int column) const = 0;
    /// Advances; false at the end. Throws xException when the engine fails.
    virtual bool NextRow() = 0;
    /// The cell of the current row. The caller owns the reference
    /// (smart_ptr::adopt). The kernel fills the same object again for the next
    /// row when nobody kept it.
    virtual I_Value* get_Value(int column) = 0;
    /// To the first record; true when there is one. Only before NextRow.
    virtual bool First() = 0;
    virtual bool Next() = 0;
    /// A field of the current record; null when its value is null or the index is out
    /// of range. The caller owns the reference.
    virtual I_Field* get_Field(int column) = 0;
    /// The cell as get_Value gives it, without a reference: for a look that ends
    /// before the next call on the cursor. Spares the counting in long loops.
    virtual I_Value& PeekValue(int column) = 0;

protected:
    ~I_Cursor() = default;
};

/// Rows of one query as SQL literals in UTF-8, forward, chunk by chunk: each
/// literal reads back as the very same value where the engine casts it to the
/// column's type. Holds the session until the last chunk has been passed. One
/// thread at a time.
class I_LiteralRows : public I_Counted
{
public:
    virtual int get_ColumnCount() const = 0;
    /// A column of bytes (BLOB), whose cells GetBytes gives as well.
    virtual bool IsBytes(int column) const = 0;
    /// To the next chunk; false at the end. Throws xException when the engine fails.
    virtual bool NextChunk() = 0;
    /// Rows of the current chunk.
    virtual std::size_t get_RowCount() const = 0;
    /// Appends the cells `first` to `first + count - 1` of a row of the chunk, ", " between them.
    virtual void AppendCells(std::string& out, std::size_t row, int first, int count) = 0;
    /// The cell of a column of bytes, nothing for null; valid until the next chunk.
    virtual std::optional<std::string_view> GetBytes(int column, std::size_t row) const = 0;

protected:
    ~I_LiteralRows() = default;
};

/// Bits of I_Result::get_Status.
enum ResultStatus : int { ResultStatus_Done = 1, ResultStatus_Failed = 4 };

/// Outcome of one statement of a text; the next runs when NextResult asks.
/// The whole chain holds the session.
class I_Result : public I_Counted
{
public:
    /// Rows that INSERT, UPDATE, DELETE and COPY changed; 0 for others.
    virtual std::int64_t get_AffectedRows() const = 0;
    virtual int get_Status() const = 0;
    /// The engine's text, empty unless failed.
    virtual String get_ErrorMessage() const = 0;
    /// The rows, or null for a statement without any. The caller owns the reference.
    /// One cursor a result: a second call gives null.
    virtual I_Cursor* get_Cursor() = 0;
    /// Runs the next statement: its result, or null at the end and after a
    /// failure. Rows of this result that were not read yet are read into memory
    /// first if somebody holds its cursor. The caller owns the reference.
    virtual I_Result* NextResult() = 0;

protected:
    ~I_Result() = default;
};

/// A prepared statement. Throws xException on failure; stays usable.
class I_Statement : public I_Counted
{
public:
    /// Ends the preparation. No effect on a finished statement.
    virtual void Finalize() = 0;
    /// Copies the values; null unbinds all.
    virtual void BindValues(const ValueArray* values) = 0;
    /// Runs it; `mode` is always 1. The caller owns the reference.
    virtual I_Result* Execute(int mode) = 0;

protected:
    ~I_Statement() = default;
};

/// A database location and, once open, one session on it: one engine connection
/// behind one lock. Any thread may call; calls wait for one another, but for
/// Interrupt. Everything throws xException with the engine's text on failure;
/// an access token never stands in a text.
class I_DuckDBDatabase : public I_Counted
{
public:
    /// The location names an existing file (memory and md: locations: false).
    virtual bool Exists() const = 0;
    /// Credentials for the coming Open; handed to the engine as configuration.
    virtual void SetMotherDuckAccess(String token, String userAgent) = 0;
    /// Creates the database and leaves it open. An existing file is opened.
    virtual void Create() = 0;
    /// Opens what exists; a missing file is an error and is not created.
    virtual void Open() = 0;
    virtual void Close() = 0;
    virtual bool IsOpen() const = 0;
    bool get_IsOpen() const { return IsOpen(); }
    /// True when open read-only, by request or by the engine's word.
    virtual bool IsReadOnly() const = 0;
    /// Asks the coming Open for read-only access.
    virtual void put_IsReadOnly(bool readOnly) = 0;
    /// Removes the files of the closed database: the file and its ".wal".
    virtual void ThrowOut() = 0;
    /// Writes a consistent copy of the whole database into the folder, under
    /// the database's file name ("memory.duckdb" for one in memory). An
    /// existing target is an error. A failure leaves nothing behind.
    virtual void Backup(smart_ptr<I_Disk_Location> folder) = 0;
    virtual String get_Path() const = 0;
    /// Runs the whole script; throws at the first failing statement.
    virtual void SqlExecute(const String& script, const ValueArray& binds) = 0;
    /// Runs one query; null when it gives no rows. Mode 1 only. The caller owns
    /// the reference.
    virtual I_Cursor* SqlSelect(const String& query, int mode, const ValueArray& binds) = 0;
    /// Runs the first statement of the text: the first result of its chain, or
    /// null for a text without statements. A failure is a result with
    /// ResultStatus_Failed; a text that does not parse is one failed result and
    /// nothing runs. `mode` is always 1; `binds` may be null; each statement
    /// takes its own leading binds. The caller owns the reference.
    virtual I_Result* SqlExecute(const String& text, int mode, const ValueArray* binds) = 0;
    /// The caller owns the reference. Exactly one statement is allowed.
    virtual I_Statement* Prepare(const String& text) = 0;
    /// Ends the statement that runs, if one does; from any thread, never waits.
    virtual void Interrupt() = 0;
    /// Share of the running query done, 0 to 100, or -1 when unknown; any thread. The
    /// engine counts only in a session that has `enable_progress_bar` set (and
    /// `enable_progress_bar_print` off): that may slow a query of many parts by a fifth.
    virtual double get_Progress() const = 0;
    /// Keeps all other threads out of the session until the result is released, so
    /// that nobody's statement gets into a transaction of several texts; the calling
    /// thread goes on using it. Waits for its turn. The caller owns the reference.
    virtual I_Counted* Hold() = 0;
    /// The same without waiting: null when another thread has its turn.
    virtual I_Counted* TryHold() = 0;
    /// A further session on the open database, with settings, transactions and
    /// temporary objects of its own. The caller owns the reference.
    virtual I_DuckDBDatabase* OpenFurther() = 0;
    /// Runs one query for its rows as literals. Code points that `canWrite`
    /// refuses are written as chr(); an empty function allows all.
    virtual I_LiteralRows* SelectLiterals(const String& query, std::function<bool(char32_t)> canWrite) = 0;

protected:
    ~I_DuckDBDatabase() = default;
};

/// A closed database object for the location; opens nothing. Throws xException
/// for a null location.
ORB_KERNEL smart_ptr<I_DuckDBDatabase> CreateDuckDBDatabase(smart_ptr<I_Disk_Location> location);

/// True while this process has the file open through the kernel. Reading such a
/// file by other means would drop the engine's lock on it (POSIX record locks
/// go with the first close), so ask before opening a file for a look.
ORB_KERNEL bool IsFileOpen(const String& path);

/// The kernel's connection object: tells of the engine library.
class I_LocalConnection : public I_Counted
{
public:
    /// Such as "v1.5.6".
    virtual String get_VersionText() const = 0;

protected:
    ~I_LocalConnection() = default;
};

/// Null when there is no engine.
ORB_KERNEL smart_ptr<I_LocalConnection> GetLocalConnection();

} // namespace nub::orbsql
