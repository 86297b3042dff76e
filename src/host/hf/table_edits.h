// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "hf/sql_query.h"
#include "hf/table_cursor_key.h"

#include <QStringList>

#include <atomic>

namespace HF {

class I_LDatabase;

/// What is to become of a row.
enum ELRowState : int { ROW_UNCHANGED = 0, ROW_EDITED = 1, ROW_ADDED = 2, ROW_DELETED = 3 };

/// One cell of a pending edit. The old value is null for an added row.
struct HF_EXPORT LCellEdit
{
    QString column;
    rc::Ptr<I_LSqlValue> oldValue;
    rc::Ref<I_LSqlValue> newValue;
};

/// One row with pending edits.
struct HF_EXPORT LRowEdit
{
    ELRowState state = ROW_EDITED;
    orbTableCursorKey key;   ///< empty for an added row
    unsigned long row = 0;   ///< where it stood when it was last shown
    QList<LCellEdit> cells;  ///< in the order of the table's columns; those of a deleted row do not count
};

/// A statement that writes one row, and the one that counts the rows it would touch.
struct HF_EXPORT LEditStatement
{
    ELRowState state = ROW_EDITED;
    orbTableCursorKey key;
    unsigned long row = 0;
    QList<LCellEdit> cells; ///< what of the row is written
    QString text;
    RcList<I_LSqlValue> binds;
    QString countText; ///< empty for an INSERT
    RcList<I_LSqlValue> countBinds;
    QString keyCountText; ///< the same by the row's key alone, to tell "changed" from "gone"
    RcList<I_LSqlValue> keyCountBinds;
    QString rowName;      ///< the row for a message, such as "id = 5"
    bool anyNumber = false; ///< may touch any number of rows

    /// The text with a line for each bind behind it, as a preview shows it.
    QString get_Display() const;
};

/// Why one row was not written.
struct HF_EXPORT LRowError
{
    int statement = -1; ///< index in the batch; -1: the transaction itself
    unsigned long row = 0;
    orbTableCursorKey key;
    QString text;
};

/// Outcome of a batch: all of it was written, or nothing.
struct HF_EXPORT LSaveResult
{
    bool saved = false;
    qint64 rows = 0;         ///< rows written
    QList<LRowError> errors; ///< not empty unless saved
    /// The session had a transaction of the user's: the rows belong to it and are
    /// kept or dropped with it. After a failure of the engine it can only be rolled back.
    bool inUserTransaction = false;

    QString get_Error() const; ///< the errors, a line each
};

/// Statements that belong together: a snapshot of pending edits. They run in one
/// transaction, and each has to touch exactly one row; otherwise everything is
/// rolled back. A transaction that the user has open is used instead of one of
/// our own and is neither committed nor rolled back: there each statement's rows
/// are counted before any of them runs, so that a refused batch leaves it whole.
class HF_EXPORT LEditBatch : public rc::RefCounted
{
public:
    LEditBatch(const rc::Ref<I_LDatabase>& database, QList<LEditStatement> statements, unsigned long generation);

    const QList<LEditStatement>& get_Statements() const { return m_statements; }
    unsigned long get_Generation() const { return m_generation; }
    /// Runs it; once. Any thread, with the kernel's bracket around it (RunOnWorker has one).
    const LSaveResult& Run();
    /// Ends the statement that runs; the batch is rolled back. Any thread.
    void Cancel();
    const LSaveResult& get_Result() const { return m_result; }

private:
    class Runner;

    rc::Ref<I_LSqlQuery> m_query;
    QList<LEditStatement> m_statements;
    unsigned long m_generation;
    LSaveResult m_result;
    std::atomic<bool> m_cancelled{false};
};

} // namespace HF
