// SPDX-License-Identifier: GPL-3.0-or-later
#include "studio/table_grid.h"

#include "hf/enums.h"
#include "studio/cell_delegate.h"
#include "studio/clipboard_block.h"
#include "studio/filter_header.h"
#include "studio/table_model.h"
#include "studio/value_dialog.h"

#include <QApplication>
#include <QClipboard>
#include <QContextMenuEvent>
#include <QMenu>
#include <QMimeData>
#include <QPointer>
#include <QScrollBar>
#include <QSet>

#include <numeric>

namespace {

constexpr int WidestColumn = 360;
constexpr int MostSteps = 1'000'000'000;
/// Rows of the segment's edge at which the next segment is taken.
constexpr int EdgeRows = 200;

/// Cells that were taken out of a grid, numbered from 0: nothing is read any more.
struct TakenCells : CellSource
{
    rc::Ptr<HF::I_LSqlValue> Value(int row, int column) const override { return rows[row][column]; }
    QString ColumnName(int column) const override { return names[column]; }
    rc::Ptr<const HF::LTreeItem> get_Item() const override { return item; }

    rc::Ptr<const HF::LTreeItem> item;
    QStringList names;
    QList<QList<rc::Ptr<HF::I_LSqlValue>>> rows;
};

/// 0, 1, ... below the count.
QList<int> Numbers(qsizetype count)
{
    QList<int> numbers(count);
    std::iota(numbers.begin(), numbers.end(), 0);
    return numbers;
}

} // namespace

TableGrid::TableGrid(TableModel* model, QWidget* parent)
    : QTableView(parent), m_model(model), m_header(new FilterHeader(this)), m_bar(new QScrollBar(Qt::Vertical, parent))
{
    setHorizontalHeader(m_header);
    setModel(model);
    m_header->SetColumns(model->columnCount());
    setItemDelegate(new CellDelegate(this));
    setSelectionMode(ExtendedSelection);
    setWordWrap(false);
    setAlternatingRowColors(true);
    setHorizontalScrollMode(ScrollPerPixel);
    setVerticalScrollMode(ScrollPerItem);
    setVerticalScrollBarPolicy(Qt::ScrollBarAlwaysOff);
    setEditTriggers(DoubleClicked | EditKeyPressed | AnyKeyPressed);
    verticalHeader()->setDefaultSectionSize(fontMetrics().height() + 6);
    verticalHeader()->setSectionResizeMode(QHeaderView::Fixed);
    m_header->setResizeContentsPrecision(50);
    connect(verticalScrollBar(), &QScrollBar::valueChanged, this, &TableGrid::Scrolled);
    connect(horizontalScrollBar(), &QScrollBar::valueChanged, m_header, &FilterHeader::Place);
    connect(m_bar, &QScrollBar::valueChanged, this, &TableGrid::BarMoved);
    connect(m_header, &QHeaderView::sectionClicked, this, [this](int column) {
        SortBy(column, QApplication::keyboardModifiers() & (Qt::ControlModifier | Qt::ShiftModifier));
    });
    connect(model, &TableModel::RowsChanged, this, [this] {
        FitColumns();
        UpdateBar();
    });
    connect(model, &QAbstractItemModel::modelReset, this, [this] {
        m_header->SetColumns(m_model->columnCount());
        UpdateBar();
    });
    UpdateBar();
}

// Scrolling

int TableGrid::RowsInSight() const
{
    return std::max(1, viewport()->height() / verticalHeader()->defaultSectionSize());
}

unsigned long TableGrid::TopRow() const
{
    return m_model->get_SegmentStart() + static_cast<unsigned long>(verticalScrollBar()->value());
}

void TableGrid::UpdateBar()
{
    const unsigned long total = m_model->get_TotalRows();
    const auto inSight = static_cast<unsigned long>(RowsInSight());
    const unsigned long last = total > inSight ? total - inSight : 0;
    m_rowsAStep = last > MostSteps ? double(last) / MostSteps : 1;
    const QSignalBlocker blocker(m_bar);
    m_bar->setRange(0, int(double(last) / m_rowsAStep));
    m_bar->setPageStep(std::max(1, int(double(inSight) / m_rowsAStep)));
    m_bar->setSingleStep(1);
    m_bar->setValue(int(double(TopRow()) / m_rowsAStep));
    m_bar->setVisible(last > 0);
    const int top = verticalScrollBar()->value();
    m_model->ShowRows(top, top + int(inSight));
}

void TableGrid::Scrolled()
{
    if (m_moving)
        return;
    // Near an edge of the segment that is none of the table the segment moves on.
    const int top = verticalScrollBar()->value();
    const unsigned long start = m_model->get_SegmentStart();
    const bool atStart = top < EdgeRows && start > 0;
    const bool atEnd = top + RowsInSight() + EdgeRows > m_model->rowCount()
                       && start + static_cast<unsigned long>(m_model->rowCount()) < m_model->get_TotalRows();
    if (atStart || atEnd) {
        const unsigned long row = TopRow();
        const QModelIndex current = currentIndex();
        const unsigned long currentRow = start + static_cast<unsigned long>(std::max(0, current.row()));
        m_moving = true;
        m_model->MoveSegment(row > TableModel::SegmentRows / 2 ? row - TableModel::SegmentRows / 2 : 0);
        verticalScrollBar()->setValue(int(row - m_model->get_SegmentStart()));
        if (current.isValid() && currentRow >= m_model->get_SegmentStart()
            && currentRow - m_model->get_SegmentStart() < static_cast<unsigned long>(m_model->rowCount()))
            selectionModel()->setCurrentIndex(
                m_model->index(int(currentRow - m_model->get_SegmentStart()), current.column()),
                QItemSelectionModel::ClearAndSelect);
        m_moving = false;
    }
    UpdateBar();
}

void TableGrid::BarMoved(int value)
{
    const auto row = static_cast<unsigned long>(double(value) * m_rowsAStep);
    const unsigned long start = m_model->get_SegmentStart();
    m_moving = true;
    if (row < start || row + static_cast<unsigned long>(RowsInSight()) > start + static_cast<unsigned long>(m_model->rowCount()))
        m_model->MoveSegment(row > TableModel::SegmentRows / 2 ? row - TableModel::SegmentRows / 2 : 0);
    verticalScrollBar()->setValue(int(row - m_model->get_SegmentStart()));
    m_moving = false;
    const int top = verticalScrollBar()->value();
    m_model->ShowRows(top, top + RowsInSight());
}

void TableGrid::GoTo(unsigned long row, int column)
{
    const unsigned long total = m_model->get_TotalRows();
    if (total == 0)
        return;
    row = std::min(row, total - 1);
    const unsigned long start = m_model->get_SegmentStart();
    m_moving = true;
    if (row < start || row >= start + static_cast<unsigned long>(m_model->rowCount()))
        m_model->MoveSegment(row > TableModel::SegmentRows / 2 ? row - TableModel::SegmentRows / 2 : 0);
    const QModelIndex index = m_model->index(int(row - m_model->get_SegmentStart()), column);
    m_moving = false;
    setCurrentIndex(index);
    scrollTo(index);
    UpdateBar();
}

void TableGrid::resizeEvent(QResizeEvent* event)
{
    QTableView::resizeEvent(event);
    UpdateBar();
}

void TableGrid::wheelEvent(QWheelEvent* event)
{
    QTableView::wheelEvent(event); // scrolls the hidden bar of the segment, which reports it
}

void TableGrid::FitColumns()
{
    if (m_fitted || m_model->rowCount() == 0 || m_model->IsLoading())
        return;
    m_fitted = true;
    resizeColumnsToContents();
    for (int column = 0; column < m_model->columnCount(); ++column)
        setColumnWidth(column, std::clamp(columnWidth(column) + 12, 70, WidestColumn));
    m_header->Place();
}

void TableGrid::SortBy(int column, bool further)
{
    const QString name = m_model->ColumnName(column);
    QList<HF::LSortField> fields = m_model->get_Cursor()->get_Sorting();
    qsizetype known = -1;
    for (qsizetype i = 0; i < fields.size(); ++i)
        if (fields[i].name == name)
            known = i;
    // Up, down, not at all.
    const bool down = known >= 0 && !fields[known].descending;
    const bool off = known >= 0 && fields[known].descending;
    if (!further)
        fields = off ? QList<HF::LSortField>() : QList<HF::LSortField>{{name, down}};
    else if (known < 0)
        fields.append({name, false});
    else if (off)
        fields.removeAt(known);
    else
        fields[known].descending = true;
    m_model->Sort(fields);
}

// Cells

QList<int> TableGrid::SelectedRows() const
{
    QSet<int> rows;
    for (const QItemSelectionRange& range : selectionModel()->selection())
        for (int row = range.top(); row <= range.bottom(); ++row)
            rows.insert(row);
    QList<int> sorted = rows.values();
    std::sort(sorted.begin(), sorted.end());
    return sorted;
}

void TableGrid::Copy(CopyForm form)
{
    const QItemSelection selection = selectionModel()->selection();
    QSet<int> columnSet;
    for (const QItemSelectionRange& range : selection)
        for (int column = range.left(); column <= range.right(); ++column)
            columnSet.insert(column);
    QList<int> columns = columnSet.values();
    std::sort(columns.begin(), columns.end());
    if (form == CopyForm::Insert)
        columns.removeIf([this](int column) { return m_model->IsDerived(column); });
    if (columns.isEmpty())
        return;
    QList<int> rows = SelectedRows();
    // Of a selection that reaches beyond the rows that are there, only those go.
    const qsizetype wanted = rows.size();
    rows.removeIf([this](int row) { return !m_model->IsRowThere(row); });
    if (rows.size() < wanted)
        emit Said(tr("%1 of %2 selected rows are in memory and were copied; export the rest.").arg(rows.size()).arg(wanted));
    TakenCells cells;
    cells.item = m_model->get_Item();
    for (const int column : columns)
        cells.names.append(m_model->ColumnName(column));
    const auto source = m_model->get_Cursor()->get_Source();
    const QString table = source ? source->get_NameForQuery(true) : QStringLiteral("table_name");
    // A long value comes from the engine. While that is busy events go on, and a person
    // may close the tab.
    const QPointer<TableGrid> guard(this);
    for (const int row : rows) {
        auto& values = cells.rows.emplace_back();
        for (const int column : columns) {
            values.append(m_model->Value(row, column));
            if (!guard)
                return;
        }
    }
    const QList<int> allRows = Numbers(rows.size()), allColumns = Numbers(columns.size());
    auto* data = new QMimeData;
    data->setText(CopyText(cells, allRows, allColumns, form, table));
    if (form == CopyForm::Text)
        PutBlock(*data, cells, allRows, allColumns);
    QApplication::clipboard()->setMimeData(data);
}

int TableGrid::Paste()
{
    const QModelIndex start = currentIndex();
    const QMimeData* data = QApplication::clipboard()->mimeData();
    if (!data || !start.isValid())
        return 0;
    const QList<QVariantList> block = TakeBlock(*data);
    int set = 0;
    QString refusal;
    for (qsizetype r = 0; r < block.size(); ++r) {
        int row = start.row() + int(r);
        if (row >= m_model->rowCount())
            row = m_model->AddRow();
        if (row < 0)
            break;
        for (qsizetype c = 0; c < block[r].size(); ++c) {
            const QModelIndex cell = m_model->index(row, start.column() + int(c));
            if (!cell.isValid() || !(m_model->flags(cell) & Qt::ItemIsEditable)) {
                if (refusal.isEmpty())
                    refusal = m_model->Refusal(cell);
                continue;
            }
            QVariant value = block[r][c];
            // From elsewhere, nothing at all means NULL where the column holds no text.
            if (value.typeId() == QMetaType::QString && value.toString().isEmpty()
                && m_model->get_ColumnType(cell.column()) != HF::FIELD_VARCHAR)
                value = QVariant();
            if (m_model->setData(cell, value))
                ++set;
        }
    }
    emit Said(refusal.isEmpty() ? tr("%1 cells pasted").arg(set) : tr("%1 cells pasted. %2").arg(QString::number(set), refusal));
    return set;
}

void TableGrid::ShowValue(const QModelIndex& index)
{
    if (!index.isValid())
        return;
    const bool bytes = m_model->get_ColumnType(index.column()) == HF::FIELD_BLOB;
    const bool readOnly = !(m_model->flags(index) & Qt::ItemIsEditable);
    const QPointer<TableGrid> guard(this);
    const QPersistentModelIndex cell(index);
    const rc::Ptr<HF::I_LSqlValue> value = m_model->Value(index.row(), index.column());
    if (!value || !guard || !cell.isValid())
        return; // not there yet, or no more: events go on while the engine is busy
    QVariant content;
    if (!value->get_IsNull())
        content = bytes ? QVariant(value->get_Data()) : QVariant(value->get_String());
    ValueDialog dialog(m_model->ColumnName(cell.column()), content, bytes, readOnly, window());
    if (const QString refusal = m_model->Refusal(cell); !refusal.isEmpty())
        dialog.Say(refusal);
    if (dialog.exec() == QDialog::Accepted && dialog.IsChanged() && guard && cell.isValid())
        m_model->setData(cell, dialog.get_Value());
}

bool TableGrid::edit(const QModelIndex& index, EditTrigger trigger, QEvent* event)
{
    if (index.isValid() && (trigger == DoubleClicked || trigger == EditKeyPressed)
        && (CellDelegate::WantsWindow(index) || !(m_model->flags(index) & Qt::ItemIsEditable))) {
        // Not from within the event that asked for it.
        QMetaObject::invokeMethod(this, [this, cell = QPersistentModelIndex(index)] { ShowValue(cell); },
                                  Qt::QueuedConnection);
        return false;
    }
    if (index.isValid() && m_model->get_ColumnType(index.column()) == HF::FIELD_BLOB && trigger == AnyKeyPressed)
        return false;
    return QTableView::edit(index, trigger, event);
}

void TableGrid::keyPressEvent(QKeyEvent* event)
{
    if (event->matches(QKeySequence::Copy))
        return Copy(CopyForm::Text);
    if (event->matches(QKeySequence::Paste)) {
        Paste();
        return;
    }
    if (event->modifiers() & Qt::ControlModifier) {
        switch (event->key()) {
        case Qt::Key_Home:
            return GoTo(0, std::max(0, currentIndex().column()));
        case Qt::Key_End:
            return GoTo(m_model->get_TotalRows(), std::max(0, currentIndex().column()));
        case Qt::Key_0:
            return m_model->SetNull(selectedIndexes());
        default:
            break;
        }
    }
    if (event->key() == Qt::Key_Space && m_model->get_ColumnType(currentIndex().column()) == HF::FIELD_BOOLEAN) {
        const bool on = currentIndex().data(Qt::CheckStateRole).toInt() == Qt::Checked;
        m_model->setData(currentIndex(), on ? Qt::Unchecked : Qt::Checked, Qt::CheckStateRole);
        return;
    }
    QTableView::keyPressEvent(event);
}

void TableGrid::contextMenuEvent(QContextMenuEvent* event)
{
    QMenu menu(window()); // outlives a grid that goes while an entry reads values
    const bool editable = m_model->flags(currentIndex()) & Qt::ItemIsEditable;
    menu.addAction(tr("Show Value..."), this, [this] { ShowValue(currentIndex()); });
    menu.addAction(tr("Set NULL"), QKeySequence(Qt::CTRL | Qt::Key_0), this, [this] { m_model->SetNull(selectedIndexes()); })
        ->setEnabled(editable);
    menu.addSeparator();
    menu.addAction(tr("Copy"), QKeySequence(QKeySequence::Copy), this, [this] { Copy(CopyForm::Text); });
    menu.addAction(tr("Copy as CSV"), this, [this] { Copy(CopyForm::Csv); });
    menu.addAction(tr("Copy as INSERT"), this, [this] { Copy(CopyForm::Insert); });
    menu.addAction(tr("Paste"), QKeySequence(QKeySequence::Paste), this, &TableGrid::Paste)->setEnabled(editable);
    menu.addSeparator();
    menu.addAction(tr("Delete Rows"), this, [this] { m_model->DeleteRows(SelectedRows(), true); });
    menu.addAction(tr("Keep Rows"), this, [this] { m_model->DeleteRows(SelectedRows(), false); });
    menu.exec(event->globalPos());
}
