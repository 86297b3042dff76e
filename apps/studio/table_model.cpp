// SPDX-License-Identifier: GPL-3.0-or-later
#include "studio/table_model.h"

#include "hf/background.h"
#include "hf/field_kinds.h"
#include "hf/values.h"

#include <QApplication>
#include <QBrush>
#include <QFont>
#include <QPalette>
#include <QPointer>

namespace {

constexpr qsizetype ShownUnits = 300;
constexpr qsizetype ShownBytes = 64;
/// Bytes that the cursor reads of a BLOB beforehand.
constexpr long PreviewBytes = 128;

QColor Mixed(const QColor& base, const QColor& with)
{
    return QColor((base.red() * 3 + with.red()) / 4, (base.green() * 3 + with.green()) / 4,
                  (base.blue() * 3 + with.blue()) / 4);
}

QBrush StateBrush(HF::ELRowState state, bool edited)
{
    const QColor base = QApplication::palette().color(QPalette::Base);
    if (state == HF::ROW_ADDED)
        return Mixed(base, QColor(0x2e, 0x9b, 0x57));
    if (state == HF::ROW_DELETED)
        return Mixed(base, QColor(0xc8, 0x47, 0x3b));
    return edited ? QBrush(Mixed(base, QColor(0xd2, 0x9a, 0x1b))) : QBrush();
}

} // namespace

TableModel::TableModel(const rc::Ref<HF::I_LTableCursor>& cursor, QObject* parent)
    : QAbstractTableModel(parent), m_cursor(cursor)
{
    m_loadTimer.setSingleShot(true);
    m_loadTimer.setInterval(0);
    connect(&m_loadTimer, &QTimer::timeout, this, &TableModel::Load);
    m_cursor->put_UpdateBlocked(true); // windows come from workers only
    if (const auto source = m_cursor->get_Source(); source && !source->get_ChildObjectsNames(HF::TYPE_METHOD).isEmpty())
        m_cursor->put_ShowMethods(true);
    ReadColumns();
    m_tableRows = m_cursor->get_RecordCount().Force();
    m_rows = SegmentSize();
    m_loadTimer.start();
}

TableModel::~TableModel()
{
    Stop();
}

void TableModel::Stop()
{
    m_loadAgain = m_countWanted = false;
    if (m_request)
        m_request->Cancel();
    if (m_counting)
        m_counting->Cancel();
    CancelSave();
}

void TableModel::ReadColumns()
{
    m_names.clear();
    m_types.clear();
    const int columns = m_cursor->get_FieldCount().Force();
    for (int i = 0; i < columns; ++i) {
        const auto field = m_cursor->get_Field(i);
        m_names.append(field ? field->get_Name() : QString());
        m_types.append(field ? field->get_Type().Force() : HF::FIELD_UNKNOWN);
    }
}

void TableModel::ShowColumns(bool rowIds, bool generated)
{
    if (m_batch)
        return;
    beginResetModel();
    m_cursor->put_ShowRowId(rowIds);
    m_cursor->put_ShowMethods(generated);
    ReadColumns();
    endResetModel();
    Fresh();
}

rc::Ptr<const HF::LTreeItem> TableModel::get_Item() const
{
    return rc::Ptr<const HF::LTreeItem>(m_cursor);
}

// The segment

int TableModel::SegmentSize() const
{
    const unsigned long behind = get_TotalRows() > m_segmentStart ? get_TotalRows() - m_segmentStart : 0;
    return int(std::min<unsigned long>(behind, SegmentRows));
}

int TableModel::rowCount(const QModelIndex& parent) const
{
    return parent.isValid() ? 0 : m_rows;
}

int TableModel::columnCount(const QModelIndex& parent) const
{
    return parent.isValid() ? 0 : int(m_names.size());
}

unsigned long TableModel::CursorRow(int row) const
{
    const unsigned long number = m_segmentStart + static_cast<unsigned long>(row);
    return number < m_tableRows ? number : HF::I_LTableCursor::FirstAddedRow + (number - m_tableRows);
}

void TableModel::MoveSegment(unsigned long start)
{
    const unsigned long last = get_TotalRows() > SegmentRows ? get_TotalRows() - SegmentRows : 0;
    start = std::min(start, last);
    if (start == m_segmentStart)
        return;
    beginResetModel();
    m_segmentStart = start;
    m_rows = SegmentSize();
    endResetModel();
}

void TableModel::UpdateTotal()
{
    m_tableRows = m_cursor->get_RecordCount().Force();
    m_added = m_cursor->get_AddedCount();
    const unsigned long total = get_TotalRows();
    if (m_segmentStart > 0 && m_segmentStart + SegmentRows > total && SegmentSize() < SegmentRows) {
        beginResetModel();
        m_segmentStart = total > SegmentRows ? total - SegmentRows : 0;
        m_rows = SegmentSize();
        endResetModel();
    }
    const int rows = SegmentSize();
    if (rows > m_rows) {
        beginInsertRows({}, m_rows, rows - 1);
        m_rows = rows;
        endInsertRows();
    } else if (rows < m_rows) {
        beginRemoveRows({}, rows, m_rows - 1);
        m_rows = rows;
        endRemoveRows();
    }
    emit RowsChanged();
}

// Reading

void TableModel::ShowRows(int first, int last)
{
    m_shownFirst = first;
    m_shownLast = last;
    m_loadTimer.start();
}

void TableModel::Load()
{
    if (m_batch)
        return; // the save reads anew behind it
    unsigned long wanted = m_segmentStart + static_cast<unsigned long>((m_shownFirst + m_shownLast) / 2);
    bool missing = m_reload;
    for (int row = m_shownFirst; row <= m_shownLast && row < m_rows && !missing; ++row)
        missing = !IsThere(CursorRow(row));
    if (!missing) {
        if (m_countWanted && !m_request)
            Count();
        return;
    }
    if (m_counting) { // the session does one thing at a time, and rows in sight go first
        m_counting->Cancel();
        m_countWanted = true;
        m_loadAgain = true;
        return;
    }
    if (m_request) {
        const unsigned long first = m_request->get_FirstRow();
        if (m_reload || wanted < first || wanted >= first + m_cursor->get_WindowSize()) {
            m_request->Cancel();
            m_loadAgain = true;
        }
        return;
    }
    m_reload = false;
    if (m_tableRows > 0)
        wanted = std::min(wanted, m_tableRows - 1);
    m_request = m_cursor->RequestWindow(wanted);
    if (!m_request) {
        emit Failed(m_cursor->get_LastError().isEmpty() ? tr("The table is gone.") : m_cursor->get_LastError());
        return;
    }
    emit RowsChanged();
    HF::RunInBackground(
        [request = m_request] {
            request->Run();
            return true;
        },
        this, [this, request = rc::Ref<HF::LWindowRequest>(m_request)](bool) { WindowCame(request); });
}

void TableModel::WindowCame(const rc::Ref<HF::LWindowRequest>& request)
{
    m_request.reset();
    if (!request->IsCancelled()) {
        if (!request->get_Error().isEmpty()) {
            if (std::exchange(m_filterOnTrial, false)) {
                m_cursor->SetFilter(m_goodFilter);
                Fresh();
            }
            emit Failed(request->get_Error());
        } else if (m_cursor->ShowWindow(request)) {
            m_filterOnTrial = false;
            m_goodFilter = m_cursor->get_Filter();
            if (m_cursor->get_FieldCount().Force() != m_names.size()) { // somebody changed the table
                beginResetModel();
                ReadColumns();
                endResetModel();
            }
            UpdateTotal();
            AllChanged();
        } else {
            m_loadAgain = true; // of another order or filter by now
        }
    }
    emit RowsChanged();
    if (std::exchange(m_loadAgain, false) || m_countWanted)
        m_loadTimer.start();
}

void TableModel::Count()
{
    m_countWanted = false;
    if (m_counting || !m_cursor->get_IsRecordCountEstimated())
        return;
    m_counting = m_cursor->RequestCount();
    if (!m_counting)
        return;
    HF::RunInBackground(
        [count = m_counting] {
            count->Run();
            return true;
        },
        this, [this, count = rc::Ref<HF::LCountRequest>(m_counting)](bool) {
            m_counting.reset();
            if (m_cursor->ShowCount(count))
                UpdateTotal();
            emit RowsChanged();
            if (std::exchange(m_loadAgain, false))
                m_loadTimer.start();
        });
}

void TableModel::AllChanged()
{
    if (m_rows > 0 && !m_names.isEmpty())
        emit dataChanged(index(0, 0), index(m_rows - 1, int(m_names.size()) - 1));
    emit headerDataChanged(Qt::Vertical, 0, std::max(0, m_rows - 1));
}

// Order and filter

void TableModel::Fresh()
{
    m_steps.clear();
    m_reload = true;
    m_countWanted = true;
    if (m_request)
        m_request->Cancel();
    if (m_counting)
        m_counting->Cancel();
    m_loadTimer.start();
}

void TableModel::Sort(const QList<HF::LSortField>& fields)
{
    if (m_batch)
        return;
    m_cursor->SetSorting(fields);
    emit headerDataChanged(Qt::Horizontal, 0, int(m_names.size()) - 1);
    Fresh();
}

bool TableModel::SetFilter(const QString& expression)
{
    if (m_batch)
        return false;
    // What is under way would keep the engine from looking at the expression.
    if (m_counting)
        m_counting->Cancel();
    if (m_request)
        m_request->Cancel();
    if (!m_cursor->SetFilter(expression)) {
        emit Failed(m_cursor->get_LastError());
        m_countWanted = m_loadAgain = true;
        m_loadTimer.start();
        return false;
    }
    m_filterOnTrial = true;
    Fresh();
    return true;
}

void TableModel::Reload()
{
    if (!m_batch)
        Fresh();
}

// Values

QString TableModel::CellText(const HF::I_LSqlValue& value) const
{
    if (dynamic_cast<const HF::LValueByteArray*>(&value)) {
        const QByteArray bytes = value.get_Data();
        const QString hex = QString::fromLatin1(bytes.left(ShownBytes).toHex());
        return bytes.size() > ShownBytes ? QString(hex + QChar(0x2026)) : hex;
    }
    QString text = value.get_String();
    if (text.size() > ShownUnits)
        text = text.left(ShownUnits) + QChar(0x2026);
    return text.replace(u'\n', QChar(0x21B5));
}

QVariant TableModel::data(const QModelIndex& index, int role) const
{
    if (!index.isValid() || index.row() >= m_rows || index.column() >= m_names.size())
        return {};
    const HF::ELFieldType type = m_types[index.column()];
    if (role == FieldTypeRole)
        return int(type);
    if (role == TypeArgumentsRole) {
        const auto field = m_cursor->get_Field(index.column());
        return field ? field->get_Property(PROP_TYPE_ARGUMENTS).value.ToString() : QString();
    }
    if (role == Qt::TextAlignmentRole)
        return HF::IsNumberType(type) ? QVariant::fromValue(Qt::AlignRight | Qt::AlignVCenter) : QVariant();
    const unsigned long row = CursorRow(index.row());
    if (!IsThere(row))
        return role == Qt::DisplayRole ? QVariant(QString(QChar(0x2026))) : QVariant();
    const HF::ELRowState state = m_cursor->RowState(row);
    switch (role) {
    case StateRole:
        return int(state);
    case EditedRole:
        return m_cursor->IsCellEdited(row, index.column());
    case Qt::BackgroundRole: {
        const QBrush brush = StateBrush(state, state == HF::ROW_EDITED && m_cursor->IsCellEdited(row, index.column()));
        return brush.style() == Qt::NoBrush ? QVariant() : QVariant(brush);
    }
    case Qt::FontRole:
        if (state == HF::ROW_DELETED) {
            QFont font = QApplication::font();
            font.setStrikeOut(true);
            return font;
        }
        return {};
    default:
        break;
    }
    const rc::Ptr<HF::I_LSqlValue> value = m_cursor->ValueAt(row, index.column());
    const bool null = !value || value->get_IsNull();
    switch (role) {
    case NullRole:
        return null;
    case Qt::DisplayRole:
        if (null)
            return state == HF::ROW_ADDED && !m_cursor->IsCellEdited(row, index.column()) ? tr("default")
                                                                                          : QStringLiteral("NULL");
        return type == HF::FIELD_BOOLEAN ? QString() : CellText(*value);
    case Qt::CheckStateRole:
        if (type != HF::FIELD_BOOLEAN || null)
            return {};
        return value->get_String() == u"true" ? Qt::Checked : Qt::Unchecked;
    case Qt::EditRole:
        if (null)
            return {};
        return dynamic_cast<const HF::LValueByteArray*>(value.get()) ? QVariant(value->get_Data())
                                                                     : QVariant(value->get_String());
    case Qt::ToolTipRole: {
        const QString refusal = Refusal(index);
        const QString text = null || value->get_Length() <= 40 ? QString() : CellText(*value);
        const QString tip = text.isEmpty() || refusal.isEmpty() ? text + refusal : text + QLatin1String("\n\n") + refusal;
        return tip.isEmpty() ? QVariant() : QVariant(tip);
    }
    case Qt::ForegroundRole:
        return null || !Refusal(index).isEmpty()
                   ? QVariant(QBrush(QApplication::palette().color(QPalette::Disabled, QPalette::Text)))
                   : QVariant();
    default:
        return {};
    }
}

rc::Ptr<HF::I_LSqlValue> TableModel::Value(int row, int column) const
{
    if (!IsRowThere(row) || column < 0 || column >= m_names.size())
        return nullptr;
    const unsigned long number = CursorRow(row);
    const rc::Ptr<HF::I_LSqlValue> value = m_cursor->ValueAt(number, column);
    // The window holds the beginning of a long BLOB only.
    if (value && !value->get_IsNull() && m_types[column] == HF::FIELD_BLOB && value->get_Length() >= PreviewBytes
        && !m_cursor->IsCellEdited(number, column)) {
        // The reading may let the tab be closed, and the model go with it.
        const rc::Ref<HF::I_LTableCursor> cursor = m_cursor;
        cursor->put_Position(number);
        if (const auto field = cursor->get_Field(column))
            return rc::make<HF::LValueByteArray>(field->get_Data());
    }
    return value;
}

QVariant TableModel::headerData(int section, Qt::Orientation orientation, int role) const
{
    if (orientation == Qt::Vertical) {
        if (role != Qt::DisplayRole || section >= m_rows)
            return {};
        const unsigned long row = CursorRow(section);
        if (IsAdded(row))
            return QStringLiteral("+");
        const QString number = QString::number(row + 1);
        if (!m_cursor->IsRowLoaded(row))
            return number;
        switch (m_cursor->RowState(row)) {
        case HF::ROW_EDITED: return QString(number + QStringLiteral(" *"));
        case HF::ROW_DELETED: return QString(number + QStringLiteral(" -"));
        default: return number;
        }
    }
    if (section < 0 || section >= m_names.size())
        return {};
    if (role == Qt::ToolTipRole) {
        const auto field = m_cursor->get_Field(section);
        return field ? field->GetString(PROP_TYPE_NAME) : QString();
    }
    if (role != Qt::DisplayRole)
        return {};
    const QList<HF::LSortField> sorting = m_cursor->get_Sorting();
    for (qsizetype i = 0; i < sorting.size(); ++i)
        if (sorting[i].name == m_names[section])
            return QString(m_names[section] + u' ' + QChar(sorting[i].descending ? 0x25BC : 0x25B2)
                           + (sorting.size() > 1 ? QString::number(i + 1) : QString()));
    return m_names[section];
}

// Edits

bool TableModel::IsDerived(int column) const
{
    const auto field = m_cursor->get_Field(column);
    return field && field->get_IsReadOnly();
}

QString TableModel::Refusal(const QModelIndex& index) const
{
    return index.isValid() && index.column() < m_names.size() ? m_cursor->get_TextRefusal(CursorRow(index.row()), index.column())
                                                              : QString();
}

Qt::ItemFlags TableModel::flags(const QModelIndex& index) const
{
    Qt::ItemFlags flags = QAbstractTableModel::flags(index);
    if (!index.isValid() || m_batch || m_cursor->get_IsReadOnly().Force() || !m_cursor->IsColumnEditable(index.column()))
        return flags;
    const unsigned long row = CursorRow(index.row());
    if (!IsThere(row) || m_cursor->RowState(row) == HF::ROW_DELETED || !Refusal(index).isEmpty())
        return flags;
    flags |= Qt::ItemIsEditable;
    if (m_types[index.column()] == HF::FIELD_BOOLEAN)
        flags |= Qt::ItemIsUserCheckable;
    return flags;
}

bool TableModel::setData(const QModelIndex& index, const QVariant& value, int role)
{
    if ((role != Qt::EditRole && role != Qt::CheckStateRole) || !(flags(index) & Qt::ItemIsEditable))
        return false;
    const unsigned long row = CursorRow(index.row());
    const int column = index.column();
    const rc::Ptr<HF::I_LSqlValue> before =
        m_cursor->IsCellEdited(row, column) ? m_cursor->ValueAt(row, column) : nullptr;
    bool taken = false;
    if (role == Qt::CheckStateRole)
        taken = m_cursor->SetTextAt(row, column,
                                    value.toInt() == Qt::Checked ? QStringLiteral("true") : QStringLiteral("false"));
    else if (!value.isValid())
        taken = m_cursor->SetNullAt(row, column);
    else if (value.typeId() == QMetaType::QByteArray)
        taken = m_cursor->SetDataAt(row, column, value.toByteArray());
    else
        taken = m_cursor->SetTextAt(row, column, value.toString());
    if (!taken) {
        emit Failed(m_cursor->get_LastError().isEmpty() ? tr("This cell cannot be changed.") : m_cursor->get_LastError());
        return false;
    }
    m_steps.append({Step::Cell, row, column, before});
    Edited(index);
    return true;
}

void TableModel::Edited(const QModelIndex& at)
{
    emit dataChanged(index(at.row(), 0), index(at.row(), int(m_names.size()) - 1));
    emit headerDataChanged(Qt::Vertical, at.row(), at.row());
    CountEdits();
}

void TableModel::CountEdits()
{
    m_editCount = int(m_cursor->get_PendingEdits().size());
    emit EditsChanged();
}

int TableModel::AddRow()
{
    if (m_batch || m_cursor->get_IsReadOnly().Force()) {
        emit Failed(tr("These rows cannot be changed."));
        return -1;
    }
    const unsigned long row = m_cursor->AddRecord();
    UpdateTotal();
    MoveSegment(get_TotalRows());
    m_steps.append({Step::Added, row, 0, nullptr});
    CountEdits();
    return m_rows - 1;
}

void TableModel::SetNull(const QModelIndexList& cells)
{
    for (const QModelIndex& cell : cells)
        if (flags(cell) & Qt::ItemIsEditable)
            setData(cell, QVariant());
}

void TableModel::DeleteRows(const QList<int>& rows, bool deleted)
{
    if (m_batch)
        return;
    QList<int> sorted = rows;
    std::sort(sorted.begin(), sorted.end(), std::greater<>()); // added rows behind a dropped one move up
    for (const int row : sorted) {
        const unsigned long number = CursorRow(row);
        if (!IsThere(number) || (m_cursor->RowState(number) == HF::ROW_DELETED) == deleted)
            continue;
        if (!m_cursor->put_RowDeleted(number, deleted)) {
            emit Failed(m_cursor->get_LastError().isEmpty() ? tr("These rows cannot be changed.")
                                                            : m_cursor->get_LastError());
            break;
        }
        if (IsAdded(number))
            m_steps.removeIf([this](const Step& step) { return IsAdded(step.row); });
        else if (deleted)
            m_steps.append({Step::Deleted, number, 0, nullptr});
    }
    UpdateTotal();
    AllChanged();
    CountEdits();
}

bool TableModel::TakeBack(const QModelIndex& current)
{
    if (m_batch)
        return false;
    if (current.isValid()) {
        const unsigned long row = CursorRow(current.row());
        if (IsThere(row) && !IsAdded(row) && m_cursor->IsCellEdited(row, current.column())) {
            m_cursor->RevertCell(row, current.column());
            m_steps.removeIf([&](const Step& step) {
                return step.kind == Step::Cell && step.row == row && step.column == current.column();
            });
            Edited(current);
            return true;
        }
    }
    if (m_steps.isEmpty())
        return false;
    const Step step = m_steps.takeLast();
    if (!IsThere(step.row)) { // the row stands outside the window
        // Reading it may let the tab be closed, and the model go with it.
        const QPointer<TableModel> guard(this);
        const rc::Ref<HF::I_LTableCursor> cursor = m_cursor;
        cursor->put_UpdateBlocked(false);
        cursor->put_Position(step.row).Force();
        cursor->put_UpdateBlocked(true);
        if (!guard)
            return true; // and nobody to be told
    }
    switch (step.kind) {
    case Step::Cell:
        if (step.before)
            m_cursor->SetValueAt(step.row, step.column, rc::Ref<HF::I_LSqlValue>(step.before));
        else
            m_cursor->RevertCell(step.row, step.column);
        break;
    case Step::Added:
        m_cursor->put_RowDeleted(step.row, true);
        break;
    case Step::Deleted:
        m_cursor->put_RowDeleted(step.row, false);
        break;
    }
    UpdateTotal();
    AllChanged();
    CountEdits();
    return true;
}

void TableModel::RevertAll()
{
    if (m_batch)
        return;
    m_cursor->DiscardChanges();
    m_steps.clear();
    UpdateTotal();
    AllChanged();
    CountEdits();
}

QStringList TableModel::Statements() const
{
    QStringList texts;
    if (const auto batch = m_cursor->MakeBatch())
        for (const HF::LEditStatement& statement : batch->get_Statements())
            texts.append(statement.get_Display());
    return texts;
}

void TableModel::Save()
{
    if (m_batch)
        return;
    m_batch = m_cursor->MakeBatch();
    if (!m_batch)
        return;
    if (m_request)
        m_request->Cancel();
    if (m_counting)
        m_counting->Cancel();
    emit EditsChanged();
    HF::RunInBackground(
        [batch = m_batch] {
            batch->Run();
            return true;
        },
        this, [this, batch = rc::Ref<HF::LEditBatch>(m_batch)](bool) {
            m_batch.reset();
            m_cursor->ShowSaved(batch, false);
            const HF::LSaveResult& result = batch->get_Result();
            if (result.saved)
                Fresh();
            else
                emit Failed(result.get_Error());
            UpdateTotal();
            AllChanged();
            CountEdits();
            emit Saved(result.saved, result.rows);
        });
}

void TableModel::CancelSave()
{
    if (m_batch)
        m_batch->Cancel();
}
