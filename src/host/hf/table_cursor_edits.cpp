// SPDX-License-Identifier: GPL-3.0-or-later
// Pending edits of a table cursor: kept with their rows, made into statements,
// written in one transaction.
#include "hf/table_cursor_base.h"

#include "hf/database.h"
#include "hf/schema_item_list.h"
#include "hf/sql_text.h"
#include "hf/values.h"

#include <set>

namespace HF {

namespace {

constexpr qsizetype LongestRowName = 120;
bool IsSameContent(const I_LSqlValue& a, const I_LSqlValue& b)
{
    return a.get_IsNull() == b.get_IsNull() && (a.get_IsNull() || a.get_Data() == b.get_Data());
}

} // namespace

/// Looks at another row for a moment.
struct LTableCursor::PositionGuard
{
    PositionGuard(const LTableCursor& cursor, unsigned long row) : m_cell(*cursor.Position), m_old(m_cell)
    {
        m_cell = row;
    }
    ~PositionGuard() { m_cell = m_old; }
    PositionGuard(const PositionGuard&) = delete;
    PositionGuard& operator=(const PositionGuard&) = delete;

private:
    unsigned long& m_cell;
    unsigned long m_old;
};

// Cells

rc::Ptr<I_LSqlValue> LTableCursor::ValueAt(unsigned long row, int column) const
{
    const rc::Ptr<I_LField> field = get_Field(column);
    if (!field || !IsRowLoaded(row))
        return nullptr;
    const PositionGuard guard(*this, row);
    return field->get_Value();
}

rc::Ptr<I_LSqlValue> LTableCursor::OldValueAt(unsigned long row, int column) const
{
    const rc::Ptr<I_LField> field = get_Field(column);
    if (!field || !IsRowLoaded(row))
        return nullptr;
    const PositionGuard guard(*this, row);
    return GetOldValue(*field);
}

bool LTableCursor::IsCellEdited(unsigned long row, int column) const
{
    const rc::Ptr<I_LField> field = get_Field(column);
    if (!field || !IsRowLoaded(row))
        return false;
    const PositionGuard guard(*this, row);
    return IsFieldChanged(*field);
}

bool LTableCursor::HasEdits(unsigned long row) const
{
    const PositionGuard guard(*this, row);
    for (const rc::Ref<I_LField>& field : Fields)
        if (IsFieldChanged(*field))
            return true;
    return false;
}

ELRowState LTableCursor::RowState(unsigned long row) const
{
    if (!IsRowLoaded(row))
        return ROW_UNCHANGED;
    if (row >= FirstAddedRow)
        return ROW_ADDED;
    if (m_deleted.count(RowKeys[qsizetype(row - *FirstRow)]))
        return ROW_DELETED;
    return HasEdits(row) ? ROW_EDITED : ROW_UNCHANGED;
}

bool LTableCursor::IsColumnEditable(int column) const
{
    const rc::Ptr<I_LField> field = get_Field(column);
    return field && !ReadOnly && field.get() != RecordNumberField.get() && !field->get_IsReadOnly()
           && !IsGeneratedField(*field);
}

rc::Ptr<I_LField> LTableCursor::EditableField(unsigned long row, int column) const
{
    if (!IsRowLoaded(row) || !IsColumnEditable(column))
        return nullptr;
    if (row < FirstAddedRow && RowKeys[qsizetype(row - *FirstRow)].IsInvalid())
        return nullptr; // could not be found again
    rc::Ptr<I_LField> field = get_Field(column);
    // A value given for such a column would be left out of the INSERT and be lost.
    if (row >= FirstAddedRow && !m_allowIdentity && IsAutoincField(*field))
        return nullptr;
    return field;
}

template <class F>
bool LTableCursor::Edit(unsigned long row, int column, F change)
{
    const rc::Ptr<I_LField> field = EditableField(row, column);
    if (!field)
        return false;
    const PositionGuard guard(*this, row);
    change(*field);
    // What is typed as it was read is no edit.
    if (const rc::Ptr<I_LSqlValue> old = row < FirstAddedRow ? GetOldValue(*field) : nullptr)
        if (const rc::Ptr<I_LSqlValue> fresh = GetNewValue(*field);
            fresh && IsNoChange({field->get_Name(), old, rc::Ref<I_LSqlValue>(fresh)}))
            field->Revert();
    return true;
}

QString LTableCursor::get_TextRefusal(unsigned long row, int column) const
{
    const rc::Ptr<I_LField> field = EditableField(row, column);
    if (!field)
        return QString();
    const PositionGuard guard(*this, row);
    const rc::Ptr<I_LSqlValue> value = row < FirstAddedRow ? GetOldValue(*field) : nullptr;
    return TextRefusal(*field, value.get());
}

bool LTableCursor::SetValueAt(unsigned long row, int column, const rc::Ref<I_LSqlValue>& value)
{
    return Edit(row, column, [&](I_LField& field) { field.SetValue(value); });
}

bool LTableCursor::SetTextAt(unsigned long row, int column, const QString& text)
{
    if (const QString refusal = get_TextRefusal(row, column); !refusal.isEmpty())
        return Fail(refusal);
    return Edit(row, column, [&](I_LField& field) { field.SetString(text); });
}

bool LTableCursor::SetDataAt(unsigned long row, int column, const QByteArray& bytes)
{
    return Edit(row, column, [&](I_LField& field) { field.SetData(bytes); });
}

bool LTableCursor::SetNullAt(unsigned long row, int column)
{
    return Edit(row, column, [](I_LField& field) { field.SetNull(); });
}

bool LTableCursor::SetBlank(unsigned long row, int column)
{
    if (const QString refusal = get_TextRefusal(row, column); !refusal.isEmpty())
        return Fail(refusal);
    return Edit(row, column, [](I_LField& field) { field.SetValue(field.get_Value()->CreateEmpty(false)); });
}

void LTableCursor::RevertCell(unsigned long row, int column)
{
    const rc::Ptr<I_LField> field = get_Field(column);
    if (!field || !IsRowLoaded(row))
        return;
    const PositionGuard guard(*this, row);
    field->Revert();
}

void LTableCursor::RevertRow(unsigned long row)
{
    if (!IsRowLoaded(row))
        return;
    if (row >= FirstAddedRow)
        return DropAdded(int(row - FirstAddedRow));
    const PositionGuard guard(*this, row);
    for (const rc::Ref<I_LField>& field : Fields)
        field->Revert();
    const orbTableCursorKey& key = RowKeys[qsizetype(row - *FirstRow)];
    m_edits.erase(key);
    m_deleted.erase(key);
}

bool LTableCursor::IsNoChange(const LCellEdit& cell) const
{
    return cell.oldValue && IsSameContent(*cell.oldValue, *cell.newValue) && !IsReadInPart(cell.column, *cell.oldValue);
}

/// Edits that came by way of the fields and change nothing.
void LTableCursor::DropNoChanges()
{
    for (auto edit = m_edits.begin(); edit != m_edits.end();) {
        edit->second.cells.removeIf([this](const LCellEdit& cell) { return IsNoChange(cell); });
        edit = edit->second.cells.isEmpty() ? m_edits.erase(edit) : std::next(edit);
    }
}

// Rows

unsigned long LTableCursor::AddRecord()
{
    *Position = FirstAddedRow + static_cast<unsigned long>(m_added);
    if (ReadOnly)
        return *Position;
    ++m_added;
    return *Position;
}

/// Takes the values of the rows behind it one row up.
void LTableCursor::DropAdded(int index)
{
    for (int row = index; row < m_added; ++row)
        for (const rc::Ref<I_LField>& field : Fields) {
            rc::Ptr<I_LSqlValue> next;
            if (row + 1 < m_added) {
                const PositionGuard guard(*this, FirstAddedRow + static_cast<unsigned long>(row) + 1);
                next = GetNewValue(*field);
            }
            const PositionGuard guard(*this, FirstAddedRow + static_cast<unsigned long>(row));
            if (next)
                field->SetValue(next);
            else if (field->get_IsDirty())
                field->Revert();
        }
    --m_added;
}

bool LTableCursor::put_RowDeleted(unsigned long row, bool deleted)
{
    if (ReadOnly || !IsRowLoaded(row))
        return false;
    if (row >= FirstAddedRow) {
        if (deleted)
            DropAdded(int(row - FirstAddedRow));
        return true;
    }
    const orbTableCursorKey& key = RowKeys[qsizetype(row - *FirstRow)];
    if (key.IsInvalid() || key.IsEmpty())
        return false;
    if (deleted)
        m_deleted[key] = row;
    else
        m_deleted.erase(key);
    return true;
}

// The store by key

LRowEdit LTableCursor::EditOfRow(unsigned long row) const
{
    LRowEdit edit;
    edit.row = row;
    const LRowEdit* kept = nullptr;
    if (row >= FirstAddedRow) {
        edit.state = ROW_ADDED;
    } else {
        edit.key = RowKeys[qsizetype(row - *FirstRow)];
        if (const auto found = m_edits.find(edit.key); found != m_edits.end())
            kept = &found->second;
    }
    const PositionGuard guard(*this, row);
    for (const rc::Ref<I_LField>& field : Fields) {
        if (!IsFieldChanged(*field))
            continue;
        LCellEdit cell{field->get_Name(), row >= FirstAddedRow ? nullptr : GetOldValue(*field),
                       rc::Ref<I_LSqlValue>(GetNewValue(*field))};
        // An edit that was made before the rows were read again is an edit of
        // what was shown then: whatever changed since is a conflict to be told.
        if (kept)
            for (const LCellEdit& before : kept->cells)
                if (before.column == cell.column)
                    cell.oldValue = before.oldValue;
        edit.cells.append(cell);
    }
    return edit;
}

void LTableCursor::CollectWindow(QList<LRowEdit>& edits) const
{
    for (qsizetype i = 0; i < RowKeys.size(); ++i)
        if (const unsigned long row = *FirstRow + static_cast<unsigned long>(i);
            HasEdits(row) && !m_deleted.count(RowKeys[i]))
            edits.append(EditOfRow(row));
}

void LTableCursor::StashEdits()
{
    for (qsizetype i = 0; i < RowKeys.size(); ++i) {
        const unsigned long row = *FirstRow + static_cast<unsigned long>(i);
        if (!HasEdits(row)) {
            m_edits.erase(RowKeys[i]); // reverted since it was put back
            continue;
        }
        m_edits[RowKeys[i]] = EditOfRow(row);
        const PositionGuard guard(*this, row);
        for (const rc::Ref<I_LField>& field : Fields)
            if (field->get_IsDirty())
                field->Revert();
    }
}

void LTableCursor::RestoreEdits()
{
    if (m_edits.empty())
        return;
    for (qsizetype i = 0; i < RowKeys.size(); ++i) {
        const auto found = m_edits.find(RowKeys[i]);
        if (found == m_edits.end())
            continue;
        const PositionGuard guard(*this, *FirstRow + static_cast<unsigned long>(i));
        for (const LCellEdit& cell : found->second.cells)
            if (const rc::Ptr<I_LField> field = get_Field(cell.column))
                field->SetValue(cell.newValue);
    }
}

bool LTableCursor::get_IsDirty() const
{
    return m_added > 0 || !get_PendingEdits().isEmpty();
}

void LTableCursor::DiscardChanges()
{
    DiscardFieldEdits();
    m_edits.clear();
    m_deleted.clear();
    m_added = 0;
}

QList<LRowEdit> LTableCursor::get_PendingEdits() const
{
    QList<LRowEdit> edits;
    for (const auto& [key, row] : m_deleted) {
        LRowEdit edit;
        edit.state = ROW_DELETED;
        edit.key = key;
        edit.row = row;
        edits.append(edit);
    }
    CollectWindow(edits);
    if (!m_edits.empty()) {
        const std::set<orbTableCursorKey> shown(RowKeys.begin(), RowKeys.end());
        for (const auto& [key, edit] : m_edits)
            if (!shown.count(key) && !m_deleted.count(key))
                edits.append(edit);
    }
    for (int i = 0; i < m_added; ++i)
        edits.append(EditOfRow(FirstAddedRow + static_cast<unsigned long>(i)));
    return edits;
}

// Statements

QString LTableCursor::RowName(const orbTableCursorKey& key) const
{
    QStringList parts;
    for (qsizetype i = 0; i < KeyNames.size() && i < key.get_Values().size(); ++i) {
        const I_LSqlValue& value = *key.get_Values()[i];
        parts.append(KeyNames[i] + QLatin1String(" = ")
                     + (value.get_IsNull() ? QStringLiteral("NULL") : value.get_String()));
    }
    QString name = parts.join(QLatin1String(", "));
    if (name.size() > LongestRowName)
        name = name.left(LongestRowName) + QChar(0x2026);
    return name;
}

/// The statements that count what the written one would touch: with the old
/// values of the cells that it changes, and by the key alone.
void LTableCursor::AddCounts(LEditStatement& statement, const QList<LCellEdit>& unchanged) const
{
    const QString count = QLatin1String("SELECT count(*)") + FromClause();
    statement.countText = count + Where_Clause(statement.key, statement.countBinds);
    for (const LCellEdit& cell : unchanged)
        statement.countText += QLatin1String(" AND ")
                               + UnchangedCondition(cell.column, rc::Ref<I_LSqlValue>(cell.oldValue), statement.countBinds);
    // Without a real key the number of the row is what stays of it.
    orbTableCursorKey key = statement.key;
    if (!HasKey && key.get_RowNumber())
        key = orbTableCursorKey({}, key.get_RowNumber());
    statement.keyCountText = count + Where_Clause(key, statement.keyCountBinds);
}

LEditStatement LTableCursor::PlanUpdate(const LRowEdit& edit, const QList<LCellEdit>& cells) const
{
    const rc::Ptr<I_LSchemaObject> source = get_Source();
    LEditStatement statement;
    statement.key = edit.key;
    statement.row = edit.row;
    statement.cells = cells;
    statement.rowName = RowName(edit.key);
    QStringList assignments;
    for (const LCellEdit& cell : cells)
        assignments.append(AssignmentExpression(cell.column, cell.newValue, statement.binds));
    statement.text = QLatin1String("UPDATE ") + source->get_NameForQuery(true) + QLatin1String(" SET ")
                     + assignments.join(QLatin1String(", ")) + Where_Clause(edit.key, statement.binds);
    // What somebody else wrote into these cells meanwhile must not be lost.
    QList<LCellEdit> unchanged;
    for (const LCellEdit& cell : cells)
        if (cell.oldValue && !KeyNames.contains(cell.column))
            unchanged.append(cell);
    for (const LCellEdit& cell : unchanged)
        statement.text += QLatin1String(" AND ")
                          + UnchangedCondition(cell.column, rc::Ref<I_LSqlValue>(cell.oldValue), statement.binds);
    AddCounts(statement, unchanged);
    return statement;
}

LEditStatement LTableCursor::PlanInsert(const QList<LColumnValue>& values) const
{
    const rc::Ptr<I_LSchemaObject> source = get_Source();
    LEditStatement statement;
    statement.state = ROW_ADDED;
    statement.rowName = QObject::tr("New row");
    QStringList names, items;
    for (const LColumnValue& value : values) {
        names.append(Quote(value.column));
        if (dynamic_cast<const LValueSqlExpression*>(value.value.get()) && !value.value->get_IsNull()) {
            items.append(value.value->get_String());
            continue;
        }
        items.append(StoredBind(value.column, *value.value, Placeholder(statement.binds)));
        statement.binds.append(value.value);
    }
    statement.text = QLatin1String("INSERT INTO ") + source->get_NameForQuery(true);
    if (names.isEmpty())
        statement.text += QLatin1String(" DEFAULT VALUES");
    else
        statement.text += QStringLiteral(" (%1) VALUES (%2)")
                              .arg(names.join(QLatin1String(", ")), items.join(QLatin1String(", ")));
    return statement;
}

LEditStatement LTableCursor::PlanDelete(const orbTableCursorKey& key, unsigned long row) const
{
    LEditStatement statement;
    statement.state = ROW_DELETED;
    statement.key = key;
    statement.row = row;
    statement.rowName = RowName(key);
    statement.text = QLatin1String("DELETE") + FromClause() + Where_Clause(key, statement.binds);
    AddCounts(statement, {});
    return statement;
}

std::optional<LEditStatement> LTableCursor::Plan(const LRowEdit& edit) const
{
    if (edit.state == ROW_DELETED)
        return PlanDelete(edit.key, edit.row);
    if (edit.state == ROW_ADDED) {
        QList<LColumnValue> values;
        for (const LCellEdit& cell : edit.cells) {
            const rc::Ptr<I_LField> field = get_Field(cell.column);
            if (field && !IsGeneratedField(*field) && (m_allowIdentity || !IsAutoincField(*field)))
                values.append({cell.column, cell.newValue});
        }
        LEditStatement statement = PlanInsert(values);
        statement.row = edit.row;
        statement.cells = edit.cells;
        return statement;
    }
    QList<LCellEdit> cells;
    for (const LCellEdit& cell : edit.cells)
        if (!IsNoChange(cell))
            cells.append(cell);
    if (cells.isEmpty())
        return std::nullopt;
    return PlanUpdate(edit, cells);
}

QList<LEditStatement> LTableCursor::PlanAll(const QList<LRowEdit>& edits) const
{
    // Rows that go make room for keys that come.
    QList<LEditStatement> statements;
    for (const ELRowState state : {ROW_DELETED, ROW_EDITED, ROW_ADDED})
        for (const LRowEdit& edit : edits)
            if (edit.state == state)
                if (const std::optional<LEditStatement> statement = Plan(edit))
                    statements.append(*statement);
    return statements;
}

} // namespace HF
