// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "hf/cursor.h"
#include "hf/table_edits.h"
#include "hf/table_window.h"

namespace HF {

/// How the rows of two queries are combined.
enum ELSetOperation : int { SET_INTERSECTION = 0, SET_UNION = 1, SET_EXCEPT = 2, SET_DIFFERENCE = 3 };

/// Which rows get_LinkedRecords gives. With several marks the operation combines what
/// each of them is linked to: an intersection is linked to all of them, a union to any.
enum ELLinkedMode : int {
    LINKED_TO_MARKED = 0, ///< linked to a marked row; without marks as LINKED_TO_ANY
    LINKED_TO_ANY = 1,
    LINKED_TO_NONE = 2,
};

/// A value for a column, to be written or compared with.
struct HF_EXPORT LColumnValue
{
    QString column;
    rc::Ref<I_LSqlValue> value;
};

/// One field of an order.
struct HF_EXPORT LSortField
{
    QString name;
    bool descending = false;
    bool operator==(const LSortField&) const = default;
};

/// The rows of one table or view, a window of them in memory. Rows are numbered
/// from 0 in the cursor's order; added ones that are not written yet from
/// FirstAddedRow on. The columns (get_Field) show the row at the position.
///
/// Lives on one thread, that of the grid; requests and batches that it makes run
/// on any. Operations that read or write by themselves wait for the engine; for a
/// grid: RequestWindow, RunOnWorker, ShowWindow, and the like for counting and saving.
///
/// Edits are kept with the rows they belong to, not with their numbers, until
/// they are written or reverted: a new window, order or filter does not lose them.
class HF_EXPORT I_LTableCursor : public I_LCursor
{
public:
    static constexpr unsigned long FirstAddedRow = 1ul << 62;

    /// Null for a view, and when the table is gone.
    virtual rc::Ptr<I_LTable> get_Table() const = 0;
    /// The table or view; null when it is gone.
    virtual rc::Ptr<I_LSchemaObject> get_Source() const = 0;
    /// The columns that tell a row: the primary key, or all columns without one.
    virtual QList<QString> get_KeyNames() const = 0;
    virtual bool get_HasKey() const = 0;
    /// What the cursor was opened for, as OpenCursor was told.
    virtual int get_Mode() const = 0;

    // Columns
    virtual bool get_ShowColumnHeaders() const = 0;
    virtual bool get_ShowRecordNumber() const = 0;
    virtual void put_ShowRecordNumber(bool on) = 0;
    virtual bool get_ShowMethods() const = 0;
    virtual void put_ShowMethods(bool on) = 0;
    virtual bool get_ShowRowId() const = 0;
    virtual void put_ShowRowId(bool on) = 0;
    /// Whether the user may change the column: not the row id, the record number or a generated column.
    virtual bool IsColumnEditable(int column) const = 0;

    // The window
    virtual unsigned long get_WindowSize() const = 0;
    virtual void put_WindowSize(unsigned long rows) = 0;
    virtual unsigned long get_FirstRow() const = 0; ///< of the window
    virtual int GetBufferedRowCount() const = 0;
    virtual bool IsRowLoaded(unsigned long row) const = 0;
    /// The window that begins at a row. Null when the table is gone.
    virtual rc::Ptr<LWindowRequest> RequestRows(unsigned long firstRow) = 0;
    /// The window around a row.
    virtual rc::Ptr<LWindowRequest> RequestWindow(unsigned long row) = 0;
    /// Shows what a request read. False when that failed or is of another order,
    /// filter or set of columns by now: the window stays as it was.
    virtual bool ShowWindow(const rc::Ref<LWindowRequest>& window) = 0;
    /// Reads the window again; edits stay. False when that failed (the log tells).
    virtual bool RefreshWindow() = 0;
    /// Drops all edits and reads the first window.
    virtual bool ReloadRows() = 0;
    virtual bool get_UpdateBlocked() const = 0;
    virtual void put_UpdateBlocked(bool blocked) = 0;
    /// The statement of the window, and why the last reading failed.
    virtual QString get_WindowText() const = 0;
    virtual QString get_LastError() const = 0;

    // Order and filter. Each change reloads unless updates are blocked.
    virtual QList<LSortField> get_Sorting() const = 0;
    virtual bool SortByField(const QString& name, bool descending) = 0;
    virtual bool SortByFields(const QList<LSortField>& fields) = 0;
    virtual QString get_Filter() const = 0;
    /// An expression of the table's columns; its parameters are `$1`, `$2`, ... Empty: all rows.
    /// False when it is no single expression or the engine refuses it; the old filter stays then.
    virtual bool put_Filter(const QString& expression, const RcList<I_LSqlValue>& binds = {}) = 0;
    /// Checks and stores the filter without reading: the next window and count show it.
    virtual bool SetFilter(const QString& expression, const RcList<I_LSqlValue>& binds = {}) = 0;
    /// The same for an order.
    virtual void SetSorting(const QList<LSortField>& fields) = 0;

    // Counting. get_RecordCount gives the exact number, or the best estimate while none is known.
    virtual bool get_IsRecordCountEstimated() const = 0;
    virtual void put_IsRecordCountEstimated(bool estimated) = 0;
    /// "~" and a number, or what is known.
    virtual QString GetRecordCountText() = 0;
    virtual bool UpdateRecordCount() = 0;
    virtual rc::Ptr<LCountRequest> RequestCount() = 0;
    virtual bool ShowCount(const rc::Ref<LCountRequest>& count) = 0;

    // Edits of cells. `column` is an index of get_Field; `row` a number as above, which has to be loaded.
    virtual rc::Ptr<I_LSqlValue> ValueAt(unsigned long row, int column) const = 0; ///< with its edit; null when not loaded
    virtual rc::Ptr<I_LSqlValue> OldValueAt(unsigned long row, int column) const = 0;
    virtual bool IsCellEdited(unsigned long row, int column) const = 0;
    virtual ELRowState RowState(unsigned long row) const = 0;
    /// Why a cell that can be edited takes no text: what its text says is less than its
    /// value, so that the text typed again would store another one. Empty for all others.
    virtual QString get_TextRefusal(unsigned long row, int column) const = 0;
    /// False when the row or column cannot be edited.
    virtual bool SetValueAt(unsigned long row, int column, const rc::Ref<I_LSqlValue>& value) = 0;
    virtual bool SetTextAt(unsigned long row, int column, const QString& text) = 0;
    virtual bool SetDataAt(unsigned long row, int column, const QByteArray& bytes) = 0;
    virtual bool SetNullAt(unsigned long row, int column) = 0;
    /// An empty value of the column's type: empty text, 0, false.
    virtual bool SetBlank(unsigned long row, int column) = 0;
    virtual void RevertCell(unsigned long row, int column) = 0;
    virtual void RevertRow(unsigned long row) = 0;
    /// A row to be written with the next save; its number. The position goes there.
    virtual unsigned long AddRecord() = 0;
    virtual int get_AddedCount() const = 0;
    /// Marks the row to be deleted by the next save, or takes that back. An added row is dropped at once.
    virtual bool put_RowDeleted(unsigned long row, bool deleted) = 0;

    // Saving
    virtual QList<LRowEdit> get_PendingEdits() const = 0;
    /// The pending edits as statements, for a preview and for running. Null when there are none.
    virtual rc::Ptr<LEditBatch> MakeBatch() = 0;
    /// After a batch has run: forgets the edits that it wrote and, with `refresh`,
    /// reads the window again; keeps everything when it failed. Without `refresh` the
    /// rows shown are the old ones until the next window comes.
    virtual void ShowSaved(const rc::Ref<LEditBatch>& batch, bool refresh = true) = 0;
    /// All of it at once.
    virtual LSaveResult SaveEdits() = 0;
    /// Whether the user may give a value for a column that the engine numbers by itself.
    virtual bool get_AllowIdentityInserts() const = 0;
    virtual void AllowIdentityInserts(bool allow) = 0;

    // Rows at once, each in a transaction of its own
    virtual LSaveResult DeleteRecord() = 0; ///< the row at the position
    virtual LSaveResult DeleteAllRecords() = 0; ///< those of the filter
    virtual LSaveResult Truncate() = 0;
    /// One value for a column in all rows of the filter.
    virtual LSaveResult UpdateAllRecords(const QString& column, const rc::Ref<I_LSqlValue>& value) = 0;
    virtual LSaveResult InsertRow(const QList<LColumnValue>& values) = 0;
    /// The rows whose columns have the values of `conditions` (joined by AND; nulls match
    /// nulls). Exactly one has to match, unless `all`.
    virtual LSaveResult UpdateRows(const QList<LColumnValue>& values, const QList<LColumnValue>& conditions,
                                   bool all) = 0;
    virtual LSaveResult DeleteRows(const QList<LColumnValue>& conditions, bool all) = 0;
    /// A value for a column (by index) as the text means it; an LValueString where it fits no class better.
    virtual rc::Ref<I_LSqlValue> MakeValue(int column, const QString& text) const = 0;

    // Marks, by key
    virtual bool MarkRecord() = 0;
    virtual bool UnmarkRecord() = 0;
    virtual bool get_IsRecordMarked() const = 0;
    virtual bool get_HasMarked() const = 0;
    virtual unsigned long get_MarkedCount() const = 0;
    virtual void SetAllToMarked() = 0;
    virtual void SetAllToNonMarked() = 0;
    virtual LSaveResult DeleteMarked() = 0;
    /// The marked rows as a cursor of their own, read-only.
    virtual rc::Ptr<I_LTableCursor> get_MarkedRecords() = 0;

    // Related rows. `link` ties the cursor's table and the other one.
    virtual rc::Ptr<I_LTableCursor> get_RelatedCursor() const = 0;
    virtual rc::Ptr<I_LTableCursor> get_LinkedRecords(const rc::Ref<I_LSchemaObject>& table, int mode,
                                                      ELSetOperation operation, const rc::Ref<I_LLink>& link) = 0;
    /// Ties the row at the position to the marked rows of `other` by the link's columns of
    /// the referencing table. A row refers to one other only: of those there has to be one mark.
    virtual LSaveResult LinkToMarked(const rc::Ref<I_LTableCursor>& other, const rc::Ref<I_LLink>& link) = 0;
    /// Unties them: NULL in the link's columns of the rows that are tied. Others stay as they are.
    virtual LSaveResult UnlinkFromMarked(const rc::Ref<I_LTableCursor>& other, const rc::Ref<I_LLink>& link) = 0;
};

} // namespace HF
