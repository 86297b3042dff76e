// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "hf/table_cursor.h"

#include <map>
#include <memory>

namespace HF {

/// The machine of a table cursor: window, navigation, order, filter, marks,
/// edits and the statements for all of them. What is the engine's own (columns,
/// row identity, select list, reading of rows) the derived class supplies.
class HF_EXPORT LTableCursor : public LDatabaseObject<I_LTableCursor>
{
public:
    static constexpr unsigned long DefaultWindowSize = 1000;

    ~LTableCursor() override;

    // Object
    int get_ObjectType() const override { return TYPE_CURSOR; }
    rc::Ptr<I_LDatabase> get_Database() const override;
    rc::Ptr<I_LConnection> get_Connection() const override;
    const LDatabaseEngine* get_DatabaseEngine() const override;

    // Cursor
    rc::Ptr<I_LField> get_Field(int index) const override = 0;
    rc::Ptr<I_LField> get_Field(const QString& name) const override;
    LLazy<int, false> get_ColumnCount() const override { return get_FieldCount(); }
    rc::Ptr<I_LField> get_Column(int index) const override { return get_Field(index); }
    rc::Ptr<I_LField> get_Column(const QString& name) const override { return get_Field(name); }
    void Flush() override {}
    unsigned long get_Position() const override { return *Position; }
    /// Reads the window around the row when it is not loaded and updates are not blocked.
    LLazy<bool, true> put_Position(unsigned long position) override;
    LLazy<bool, false> get_IsReadOnly() const override { return ReadOnly; }
    void put_IsReadOnly(bool readOnly) override { ReadOnly = readOnly; }
    LLazy<unsigned long, false> get_RecordCount() const override;
    void DiscardChanges() override;
    bool FirstRecord() const override;
    bool NextRecord() const override;
    QString UpdateRecord() override;
    bool get_IsDirty() const override;
    bool get_IsComplete() const override { return true; }
    QString get_QueryText() const override { return get_WindowText(); }
    void SetErrorLogger(const rc::Ptr<I_LLog>& log) override { m_errorLogger = log; }
    void SaveAllRecords() override;
    void SetSourceDatabase(const rc::Ref<I_LDatabase>& database) override;

    // Table cursor
    rc::Ptr<I_LTable> get_Table() const override;
    /// A list that was read again has a new object for the table: it takes the place of the old one.
    rc::Ptr<I_LSchemaObject> get_Source() const override;
    QList<QString> get_KeyNames() const override { return KeyNames; }
    bool get_HasKey() const override { return HasKey; }
    int get_Mode() const override { return m_mode; }
    bool get_ShowColumnHeaders() const override { return ShowColumnHeaders; }
    bool get_ShowRecordNumber() const override { return ShowRecordNumber; }
    void put_ShowRecordNumber(bool on) override;
    bool IsColumnEditable(int column) const override;
    unsigned long get_WindowSize() const override { return m_windowSize; }
    void put_WindowSize(unsigned long rows) override { m_windowSize = std::max(rows, 1ul); }
    unsigned long get_FirstRow() const override { return *FirstRow; }
    bool IsRowLoaded(unsigned long row) const override;
    rc::Ptr<LWindowRequest> RequestRows(unsigned long firstRow) override;
    rc::Ptr<LWindowRequest> RequestWindow(unsigned long row) override;
    bool ShowWindow(const rc::Ref<LWindowRequest>& window) override;
    bool RefreshWindow() override;
    bool get_UpdateBlocked() const override { return UpdateBlocked; }
    void put_UpdateBlocked(bool blocked) override { UpdateBlocked = blocked; }
    QString get_WindowText() const override { return m_windowText; }
    QString get_LastError() const override { return m_lastError; }
    QList<LSortField> get_Sorting() const override { return m_sorting; }
    bool SortByField(const QString& name, bool descending) override;
    bool SortByFields(const QList<LSortField>& fields) override;
    void SetSorting(const QList<LSortField>& fields) override;
    QString get_Filter() const override { return m_filter; }
    bool put_Filter(const QString& expression, const RcList<I_LSqlValue>& binds = {}) override;
    bool SetFilter(const QString& expression, const RcList<I_LSqlValue>& binds = {}) override;
    bool get_IsRecordCountEstimated() const override { return CountEstimated; }
    void put_IsRecordCountEstimated(bool estimated) override { CountEstimated = estimated; }
    bool UpdateRecordCount() override;
    rc::Ptr<LCountRequest> RequestCount() override;
    bool ShowCount(const rc::Ref<LCountRequest>& count) override;
    rc::Ptr<I_LSqlValue> ValueAt(unsigned long row, int column) const override;
    rc::Ptr<I_LSqlValue> OldValueAt(unsigned long row, int column) const override;
    bool IsCellEdited(unsigned long row, int column) const override;
    ELRowState RowState(unsigned long row) const override;
    QString get_TextRefusal(unsigned long row, int column) const override;
    bool SetValueAt(unsigned long row, int column, const rc::Ref<I_LSqlValue>& value) override;
    bool SetTextAt(unsigned long row, int column, const QString& text) override;
    bool SetDataAt(unsigned long row, int column, const QByteArray& bytes) override;
    bool SetNullAt(unsigned long row, int column) override;
    bool SetBlank(unsigned long row, int column) override;
    void RevertCell(unsigned long row, int column) override;
    void RevertRow(unsigned long row) override;
    unsigned long AddRecord() override;
    int get_AddedCount() const override { return m_added; }
    bool put_RowDeleted(unsigned long row, bool deleted) override;
    QList<LRowEdit> get_PendingEdits() const override;
    rc::Ptr<LEditBatch> MakeBatch() override;
    void ShowSaved(const rc::Ref<LEditBatch>& batch, bool refresh = true) override;
    LSaveResult SaveEdits() override;
    bool get_AllowIdentityInserts() const override { return m_allowIdentity; }
    void AllowIdentityInserts(bool allow) override { m_allowIdentity = allow; }
    LSaveResult DeleteRecord() override;
    LSaveResult DeleteAllRecords() override;
    LSaveResult Truncate() override;
    LSaveResult UpdateAllRecords(const QString& column, const rc::Ref<I_LSqlValue>& value) override;
    LSaveResult InsertRow(const QList<LColumnValue>& values) override;
    LSaveResult UpdateRows(const QList<LColumnValue>& values, const QList<LColumnValue>& conditions,
                           bool all) override;
    LSaveResult DeleteRows(const QList<LColumnValue>& conditions, bool all) override;
    bool MarkRecord() override;
    bool UnmarkRecord() override;
    bool get_IsRecordMarked() const override;
    bool get_HasMarked() const override { return get_MarkedCount() > 0; }
    unsigned long get_MarkedCount() const override;
    void SetAllToMarked() override;
    void SetAllToNonMarked() override;
    LSaveResult DeleteMarked() override;
    rc::Ptr<I_LTableCursor> get_MarkedRecords() override;
    rc::Ptr<I_LTableCursor> get_RelatedCursor() const override { return nullptr; }
    rc::Ptr<I_LTableCursor> get_LinkedRecords(const rc::Ref<I_LSchemaObject>& table, int mode,
                                              ELSetOperation operation, const rc::Ref<I_LLink>& link) override;
    LSaveResult LinkToMarked(const rc::Ref<I_LTableCursor>& other, const rc::Ref<I_LLink>& link) override;
    LSaveResult UnlinkFromMarked(const rc::Ref<I_LTableCursor>& other, const rc::Ref<I_LLink>& link) override;

    // Texts. Those with `binds` append the values of their placeholders to it.
    /// " WHERE " and the condition that names a row; a key without values names none.
    QString Where_Clause(const orbTableCursorKey& key, RcList<I_LSqlValue>& binds) const;
    /// `"a" = $1 AND "b" IS NULL`, for the names in order.
    QString Where_Condition_FieldsEqual(const QStringList& names, const orbTableCursorKey& key,
                                        RcList<I_LSqlValue>& binds) const;
    /// Rows whose columns `names` have no equal row in a query that gives columns of the same names.
    QString Where_Condition_NotInSubQuery(const QStringList& names, const QString& query) const;
    QString EqualExpression(const QString& name, const rc::Ref<I_LSqlValue>& value, RcList<I_LSqlValue>& binds) const;
    QString AssignmentExpression(const QString& name, const rc::Ref<I_LSqlValue>& value,
                                 RcList<I_LSqlValue>& binds) const;
    /// " ORDER BY ..." with what makes it stable behind the user's fields; empty when the
    /// engine keeps the table's own order.
    virtual QString OrderBy() const;
    QString LimitClause(unsigned long firstRow) const;
    /// The statement of the window from `firstRow` on.
    QString CurrentQuery(unsigned long firstRow, RcList<I_LSqlValue>& binds) const;
    /// The rows of `table` that are tied to rows of this cursor's table; with `binds`, to marked ones
    /// when there are marks.
    QString Join_Query(const rc::Ref<I_LSchemaObject>& table, const rc::Ref<I_LLink>& link,
                       RcList<I_LSqlValue>* binds = nullptr) const;
    QString Join_Condition(const rc::Ref<I_LLink>& link) const;
    virtual QString OperationQuery(const rc::Ref<I_LSchemaObject>& table, ELSetOperation operation,
                                   const QString& columns, const QString& first, const QString& second,
                                   unsigned& counter) const;
    virtual QString OperationDifference(const rc::Ref<I_LSchemaObject>& table, const QString& first,
                                        const QString& columns, const QString& second, unsigned& counter) const = 0;
    virtual QString SelectList(const rc::Ref<I_LSchemaObject>& table, bool qualify, bool noPreview,
                               const QString& prefix) const = 0;
    virtual rc::Ptr<I_LTableCursor> CreateCursorFromQuery(const QString& query, const QString& fieldsText,
                                                          const rc::Ref<I_LSchemaObject>& table,
                                                          const RcList<I_LSqlValue>& binds,
                                                          const RcList<I_LField>& fields) = 0;
    /// Loads another window when the position has left this one.
    virtual void CheckBuffer();
    virtual void ClearBuffer();
    /// The rows that the query names become the marks; it gives columns named as the key's.
    bool FillMarkedFromQuery(const QString& query, const RcList<I_LSqlValue>& binds);

protected:
    /// `mode` is kept for whoever asks.
    LTableCursor(const rc::Ref<I_LSchemaObject>& source, int mode);

    // What the engine supplies
    /// Key columns: refills KeyNames and sets HasKey.
    virtual void ReadKeys() = 0;
    virtual rc::Ptr<I_LSqlValue> GetNewValue(const I_LField& field) const = 0;
    virtual rc::Ptr<I_LSqlValue> GetOldValue(const I_LField& field) const = 0;
    virtual bool IsFieldChanged(const I_LField& field) const = 0;
    /// Forgets the pending values of all fields and rows.
    virtual void DiscardFieldEdits() = 0;
    /// Puts the rows into the fields and RowKeys; `firstRow` counts from 1.
    virtual void TakeRows(const rc::Ref<I_LCursor>& rows, unsigned long firstRow) = 0;
    /// Runs and shows a query; `firstRow` counts from 1. False when it failed.
    virtual bool FetchRows(const QString& query, const RcList<I_LSqlValue>& binds, unsigned long firstRow) = 0;
    virtual bool IsAutoincField(const I_LField& field) const { return false; }
    virtual bool IsGeneratedField(const I_LField& field) const { return false; }
    /// One value of a row's key as a condition, and a value as it is stored: both ways of
    /// writing a placeholder that suit the type of the column.
    virtual QString ComparedBind(const QString& name, const I_LSqlValue& value, const QString& placeholder) const = 0;
    virtual QString StoredBind(const QString& name, const I_LSqlValue& value, const QString& placeholder) const = 0;
    /// StoredBind where a row has a value of the column already.
    virtual QString AssignedBind(const QString& name, const I_LSqlValue& value, const QString& placeholder) const;
    /// get_TextRefusal for the value that was read; null for an added row.
    virtual QString TextRefusal(const I_LField& field, const I_LSqlValue* value) const { return QString(); }
    /// The condition that a column still holds the value that was read; values that were read in part too.
    virtual QString UnchangedCondition(const QString& name, const rc::Ref<I_LSqlValue>& value,
                                       RcList<I_LSqlValue>& binds) const;
    /// The value is only the beginning of what is stored.
    virtual bool IsReadInPart(const QString& name, const I_LSqlValue& value) const { return false; }
    /// Name of the engine's row number, which tells equal rows apart; empty without one.
    virtual QString RowNumberName() const { return QString(); }
    /// Select item behind the list that TakeRows needs; empty for none.
    virtual QString HiddenItem() const { return QString(); }
    /// How many rows there may be, while nobody has counted.
    virtual std::optional<unsigned long> EstimateCount() const { return std::nullopt; }
    /// A count of the whole table is known.
    virtual void PublishCount(unsigned long count) {}

    bool SourceIs(int type) const;
    QString Placeholder(const RcList<I_LSqlValue>& binds) const;
    QString Quote(const QString& name) const;
    /// " FROM " and the source, and the condition of filter and query.
    QString FromClause() const;
    QString RestrictionClause(RcList<I_LSqlValue>& binds) const;
    /// Restricts the cursor to the rows of its table that a query names by the key columns.
    void RestrictTo(const QString& query, const RcList<I_LSqlValue>& binds);
    /// The window shows other rows or columns from now on: requests that are under way are stale.
    void Invalidate() { ++m_generation; }
    bool ReadWindow(unsigned long firstRow);
    /// The table may have other columns or another order of them: fields and rows go together.
    void RowsShown();
    bool EndIsKnown() const;
    bool Fail(const QString& error);
    /// Moves edits between the fields and the store by key, around a change of the rows shown.
    void StashEdits();
    void RestoreEdits();
    void CheckMarks();

    std::shared_ptr<unsigned long> Position = std::make_shared<unsigned long>(0);
    std::shared_ptr<unsigned long> FirstRow = std::make_shared<unsigned long>(0);
    RcList<I_LField> Fields;
    rc::Ptr<I_LField> RecordNumberField;
    QStringList KeyNames;
    QList<orbTableCursorKey> RowKeys; ///< of the rows in the window
    bool HasKey = false;
    bool ReadOnly = false;
    bool ShowRecordNumber = false;
    bool ShowColumnHeaders = true;
    bool UpdateBlocked = false;
    bool CountEstimated = true;
    bool CountWanted = false;
    bool AllMarked = false;
    std::map<orbTableCursorKey, unsigned long> Marks; ///< and the row each was seen at

private:
    struct PositionGuard;

    rc::Ptr<I_LField> EditableField(unsigned long row, int column) const;
    template <class F> bool Edit(unsigned long row, int column, F change);
    void CollectWindow(QList<LRowEdit>& edits) const;
    LRowEdit EditOfRow(unsigned long row) const;
    bool HasEdits(unsigned long row) const;
    void DropAdded(int index);
    bool IsNoChange(const LCellEdit& cell) const;
    void DropNoChanges();
    void ForgetWritten(const LEditStatement& statement);
    std::optional<LEditStatement> Plan(const LRowEdit& edit) const;
    LEditStatement PlanUpdate(const LRowEdit& edit, const QList<LCellEdit>& cells) const;
    LEditStatement PlanInsert(const QList<LColumnValue>& values) const;
    LEditStatement PlanDelete(const orbTableCursorKey& key, unsigned long row) const;
    void AddCounts(LEditStatement& statement, const QList<LCellEdit>& unchanged) const;
    QString RowName(const orbTableCursorKey& key) const;
    QString ConditionClause(const QList<LColumnValue>& conditions, RcList<I_LSqlValue>& binds) const;
    QString JoinWith(const rc::Ref<I_LSchemaObject>& table, const rc::Ref<I_LLink>& link, const QString& marked) const;
    QString CombinedLinks(const rc::Ref<I_LSchemaObject>& table, ELSetOperation operation, const rc::Ref<I_LLink>& link,
                          RcList<I_LSqlValue>& binds) const;
    LSaveResult ChangeLinks(const rc::Ref<I_LTableCursor>& other, const rc::Ref<I_LLink>& link, bool tie);
    LSaveResult RunNow(const QList<LEditStatement>& statements, bool refresh);
    void CountChanged(qint64 added, bool exact);
    QList<LEditStatement> PlanAll(const QList<LRowEdit>& edits) const;

    mutable rc::Weak<I_LSchemaObject> m_source;
    QString m_schemaName;
    int m_sourceType;
    rc::Weak<I_LDatabase> m_database;
    rc::Ptr<I_LLog> m_errorLogger;
    int m_mode;
    unsigned long m_windowSize = DefaultWindowSize;
    unsigned long m_generation = 0;
    std::optional<unsigned long> m_count;
    QString m_windowText;
    QString m_lastError;
    QList<LSortField> m_sorting;
    QString m_filter;
    RcList<I_LSqlValue> m_filterBinds;
    QString m_restriction;
    RcList<I_LSqlValue> m_restrictionBinds;
    std::map<orbTableCursorKey, LRowEdit> m_edits; ///< of rows that are not in the window
    std::map<orbTableCursorKey, unsigned long> m_deleted;
    int m_added = 0;
    bool m_allowIdentity = false;
};

} // namespace HF
