// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "hf/cursor.h"

#include <QHash>

#include <memory>

/// One column: of a table or view, filled from a catalogue row, or of a cursor,
/// whose values it holds. What only the other role needs stays idle.
///
/// A cursor's column is read on the thread that holds the cursor; the position
/// cell is not locked.
class orbDuckDB_FieldBase : public HF::LField
{
public:
    using Value = HF::I_LSqlValue;
    using RowValues = QHash<unsigned long, rc::Ref<Value>>;

    /// `owner` becomes the parent. A table or cursor also becomes the owner, held weakly.
    orbDuckDB_FieldBase(const rc::Ptr<HF::I_LSchemaObject>& owner, const QString& name);
    ~orbDuckDB_FieldBase() override;

    // A cursor's side of the column
    /// Makes it the column of a cursor: the values of a row are those at `position`,
    /// counted from the row in `firstRow` where the cursor holds a part of its rows only.
    void SetCursorMode(const std::shared_ptr<unsigned long>& position, bool readOnly,
                       const std::shared_ptr<unsigned long>& firstRow = nullptr);
    /// A type that the catalogue knows better than the engine's text tells.
    void SetCursorType(HF::ELFieldType type, const QString& engineType);
    const QString& get_EngineType() const { return m_engineType; }
    /// A generated column of a table shows the row that the table's cell tells.
    void SharePosition(const std::shared_ptr<unsigned long>& position) { m_position = position; }
    /// The engine's type text, from which the field type follows.
    void SetEngineType(const QString& typeText);
    /// Where the values came from; with `isKey` the column takes part in telling rows apart.
    void SetSource(const QString& table, const QString& column, bool isKey);
    bool get_IsCursorMode() const { return m_cursorMode; }
    bool get_IsKey() const { return m_isKey; }
    const QString& get_SourceTable() const { return m_sourceTable; }
    const QString& get_SourceColumn() const { return m_sourceColumn; }
    /// One value for each row read.
    RcList<Value>& Values() { return m_values; }
    const RcList<Value>& Values() const { return m_values; }
    /// Edits that are not written yet, by row.
    const RowValues& Pending() const { return m_pending; }
    /// The value in `Values` of a row of the cursor; null when out of range.
    rc::Ptr<Value> OldValue(unsigned long row) const;
    /// The pending value of the current row, or of a field that is no cursor's.
    rc::Ptr<Value> NewValue() const;
    /// The edit of the row has been written: it shadows the value read.
    void MovePendingToSaved(unsigned long row);
    void DiscardPending() { m_pending.clear(); }
    void DiscardSaved() { m_saved.clear(); }
    /// An empty value of the column's class. Nulls of a column are one object.
    rc::Ref<Value> CreateEmptyValue(bool isNull) const;

    // Catalogue
    HF::LProperty get_Property(int id) const override;
    HF::LLazy<bool, true> ApplyPropertyValue(int id, const HF::LVariant& value) override;
    HF::LLazy<bool, true> UpdatePropertyImpl(int id) override;
    rc::Ptr<HF::LAction> get_Action(const QString& id) const override;
    QString get_NameForViews() const override;
    QMenu* get_Menu() override;
    const HF::LDatabaseEngine* get_DatabaseEngine() const override;
    HF::LLazy<bool, false> get_IsEncrypted() const override { return false; }
    void FromQuery(const rc::Ref<const HF::I_LCursor>& cursor) override;
    rc::Ptr<Value> get_DefaultValue() const override;
    HF::LLazy<HF::ELFieldType, false> get_Type() const override { return m_fieldType; }
    HF::LLazy<bool, false> IsPK() const override;

    // The value: a pending one wins over the row's
    bool get_IsDirty() const override;
    bool get_IsNull() const override;
    void SetNull() override;
    bool get_IsReadOnly() const override { return m_readOnly; }
    QString get_String(long maxLength = -1) const override;
    void SetString(const QString& text) override;
    /// Below, equal to or above 0; nulls come first, numbers compare as numbers.
    int Compare(const HF::I_LField& other) const override;
    rc::Ptr<Value> get_Value(long maxLength = -1) const override;
    void SetValue(const rc::Ptr<Value>& value) override;
    long get_Length() const override;
    /// Reads the whole value from the table where the cursor holds only its beginning.
    QByteArray get_Data(long maxLength = -1) const override;
    void SetData(const QByteArray& data) override;
    void Revert() override;
    rc::Ptr<HF::I_LSchemaObject> get_Owner() const override { return m_owner.lock(); }

protected:
    /// The owner as a table; null for a cursor's column and under a view.
    rc::Ptr<HF::I_LTable> OwnerTable() const;
    bool IsOfView() const;
    /// Read-only throughout, and hides what a view's column does not have.
    void MarkAsOfView(int defaultProperty);

private:
    const rc::Ref<Value>* Cell() const;
    const rc::Ref<Value>* RowValue() const;
    int Row() const;
    void Store(rc::Ref<Value> value, const char* scriptProperty);
    void NotifyEdit(const char* scriptProperty) const;
    std::optional<QByteArray> ReadFromTable(long maxLength) const;

    HF::LLazy<bool, true> CreateIndex();
    HF::LLazy<bool, true> DropIndexes();
    HF::LLazy<bool, true> ChangeUnique(bool unique);
    RcList<HF::I_LSchemaObject> IndexesWithField() const;
    void IndexesChanged();
    QString ReadNestedType(const QString& typeText, int typeId);

    rc::Weak<HF::I_LSchemaObject> m_owner;
    rc::Ptr<Value> m_value; ///< outside cursor mode: the one pending value
    std::shared_ptr<unsigned long> m_position;
    std::shared_ptr<unsigned long> m_firstRow;
    RcList<Value> m_values;
    RowValues m_pending;
    RowValues m_saved;
    QString m_engineType;
    QString m_sourceTable;
    QString m_sourceColumn;
    mutable rc::Ptr<Value> m_nullValue;
    HF::ELFieldType m_fieldType = HF::FIELD_UNKNOWN;
    bool m_cursorMode = false;
    bool m_readOnly = false;
    bool m_isKey = false;
};
