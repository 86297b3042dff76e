// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "data/field.h"
#include "data/row_source.h"
#include "data/text_fidelity.h"
#include "hf/table_cursor_base.h"

#include <QHash>

class orbDuckDB_Cursor;

/// The editable grid over one table or view: DuckDB's row identity, select list
/// with a preview of long BLOBs, key columns, counts and set operations, for the
/// host's machine. Main thread, like the grid.
class orbDuckDB_TableCursor : public HF::LTableCursor, public orb_I_RowSource
{
public:
    /// First bytes of a BLOB that the grid holds.
    static constexpr long PreviewBytes = 128;

    /// The whole table or view, set up: keys, fields and, unless `lazy`, the first window.
    static rc::Ref<orbDuckDB_TableCursor> Make(const rc::Ref<HF::I_LSchemaObject>& source, int mode, bool rowIdWanted,
                                               bool lazy, bool readOnly);
    ~orbDuckDB_TableCursor() override;

    HF::LLazy<int, false> get_FieldCount() const override;
    using LTableCursor::get_Field;
    rc::Ptr<HF::I_LField> get_Field(int index) const override;
    bool get_ShowMethods() const override { return m_showMethods; }
    /// Reloads, like put_ShowRowId, and drops pending edits. While updates are blocked
    /// edits stay, and no row is loaded until the next window is shown.
    void put_ShowMethods(bool on) override;
    bool get_ShowRowId() const override { return m_showRowId; }
    void put_ShowRowId(bool on) override;
    int GetBufferedRowCount() const override;
    QString GetRecordCountText() override;
    bool ReloadRows() override;
    rc::Ref<HF::I_LSqlValue> MakeValue(int column, const QString& text) const override;
    void ClearBuffer() override;
    void CheckBuffer() override;
    QString OrderBy() const override;

    /// Reads one row again after a change and puts it into the window. `binds` gets the row's key.
    bool RefreshRow(RcList<HF::I_LSqlValue>& binds, unsigned long row);
    /// The key of a result of one row; true and an empty key without a result.
    bool ReadRowKey(const rc::Ptr<HF::I_LCursor>& rows, HF::orbTableCursorKey& key) const;
    QString PreviewExpression(const QString& name, bool quote, long limit) const;
    QString SelectList(const rc::Ref<HF::I_LSchemaObject>& table, bool qualify, bool noPreview,
                       const QString& prefix) const override;
    /// The quoted names of all fields.
    QString FieldNamesList() const;
    QString OperationQuery(const rc::Ref<HF::I_LSchemaObject>& table, HF::ELSetOperation operation,
                           const QString& columns, const QString& first, const QString& second,
                           unsigned& counter) const override;
    QString OperationDifference(const rc::Ref<HF::I_LSchemaObject>& table, const QString& first,
                                const QString& columns, const QString& second, unsigned& counter) const override;
    rc::Ptr<HF::I_LTableCursor> get_LinkedRecords(const rc::Ref<HF::I_LSchemaObject>& table, int mode,
                                                  HF::ELSetOperation operation,
                                                  const rc::Ref<HF::I_LLink>& link) override;
    rc::Ptr<HF::I_LTableCursor> CreateCursorFromQuery(const QString& query, const QString& fieldsText,
                                                      const rc::Ref<HF::I_LSchemaObject>& table,
                                                      const RcList<HF::I_LSqlValue>& binds,
                                                      const RcList<HF::I_LField>& fields) override;

    // Rows of one table, as the columns see it
    rc::Ptr<HF::I_LTable> get_SourceTable() const override { return get_Table(); }
    QString RowClause(RcList<HF::I_LSqlValue>& binds) const override;

protected:
    orbDuckDB_TableCursor(const rc::Ref<HF::I_LSchemaObject>& source, int mode, bool rowIdWanted);

    void ReadKeys() override;
    rc::Ptr<HF::I_LSqlValue> GetNewValue(const HF::I_LField& field) const override;
    rc::Ptr<HF::I_LSqlValue> GetOldValue(const HF::I_LField& field) const override;
    bool IsFieldChanged(const HF::I_LField& field) const override;
    void DiscardFieldEdits() override;
    void TakeRows(const rc::Ref<HF::I_LCursor>& rows, unsigned long firstRow) override;
    bool FetchRows(const QString& query, const RcList<HF::I_LSqlValue>& binds, unsigned long firstRow) override;
    bool IsAutoincField(const HF::I_LField& field) const override;
    bool IsGeneratedField(const HF::I_LField& field) const override;
    QString ComparedBind(const QString& name, const HF::I_LSqlValue& value, const QString& placeholder) const override;
    QString StoredBind(const QString& name, const HF::I_LSqlValue& value, const QString& placeholder) const override;
    QString AssignedBind(const QString& name, const HF::I_LSqlValue& value, const QString& placeholder) const override;
    QString TextRefusal(const HF::I_LField& field, const HF::I_LSqlValue* value) const override;
    QString UnchangedCondition(const QString& name, const rc::Ref<HF::I_LSqlValue>& value,
                               RcList<HF::I_LSqlValue>& binds) const override;
    bool IsReadInPart(const QString& name, const HF::I_LSqlValue& value) const override;
    QString RowNumberName() const override;
    QString HiddenItem() const override;
    std::optional<unsigned long> EstimateCount() const override;
    void PublishCount(unsigned long count) override;

private:
    void SetUp(bool lazy);
    void BuildFields();
    void AddRowIdField();
    void AddFields(int type);
    rc::Ref<orbDuckDB_Field> MakeField(const QString& name, HF::ELFieldType type);
    orbDuckDB_FieldBase* FindField(const QString& name) const;
    rc::Ptr<HF::I_LCursor> Select(const QString& text, const RcList<HF::I_LSqlValue>& binds, QString& error) const;
    void TakeType(orbDuckDB_FieldBase& field, const orbDuckDB_Field& column) const;
    void EnsureTypes() const;
    /// The column of the table that a field shows.
    rc::Ptr<HF::I_LField> SourceColumn(const QString& name) const;
    void ColumnsChange();
    void ColumnsChanged();
    bool KeepsTableOrder() const;

    bool m_hasMethodFields = false;
    bool m_hasRowIdField = false;
    bool m_rowIdHidden = false;
    bool m_rowIdWanted;
    bool m_showMethods = false;
    bool m_showRowId;
    bool m_hasRowNumber = false; ///< the engine numbers the rows, and no column bears that name
    QString m_hiddenName;        ///< of the row number in the window's statement
    mutable bool m_typesKnown = false;
    mutable std::optional<bool> m_keepsOrder;
    mutable QHash<QString, TextFidelity> m_fidelity; ///< of the columns asked for
    bool m_restricted = false;
};
