// SPDX-License-Identifier: GPL-3.0-or-later
#include "studio/result_grid.h"

#include "studio/cursor_model.h"

#include <QApplication>
#include <QClipboard>
#include <QContextMenuEvent>
#include <QDialog>
#include <QDialogButtonBox>
#include <QFontDatabase>
#include <QHeaderView>
#include <QMenu>
#include <QPlainTextEdit>
#include <QVBoxLayout>

#include <numeric>

namespace {

/// Rows that the widths of the columns are measured by.
constexpr int MeasuredRows = 100;
constexpr int WidestColumn = 420;

} // namespace

ResultGrid::ResultGrid(const rc::Ref<HF::I_LCursor>& cursor, QWidget* parent)
    : QTableView(parent), m_model(new CursorModel(cursor, this))
{
    setModel(m_model);
    setSelectionMode(ExtendedSelection);
    setWordWrap(false);
    setAlternatingRowColors(true);
    setEditTriggers(NoEditTriggers);
    setHorizontalScrollMode(ScrollPerPixel);
    verticalHeader()->setDefaultSectionSize(fontMetrics().height() + 6);
    verticalHeader()->setSectionResizeMode(QHeaderView::Fixed);
    horizontalHeader()->setHighlightSections(false);
    horizontalHeader()->setResizeContentsPrecision(MeasuredRows);
    resizeColumnsToContents();
    for (int column = 0; column < m_model->columnCount(); ++column)
        if (columnWidth(column) > WidestColumn)
            setColumnWidth(column, WidestColumn);
    connect(this, &QTableView::doubleClicked, this, [this] { ShowValue(); });
}

QString ResultGrid::SelectedText(CopyForm form) const
{
    const QItemSelection selection = selectionModel()->selection();
    QList<int> rows, columns;
    if (selection.isEmpty()) {
        rows.resize(m_model->rowCount());
        columns.resize(m_model->columnCount());
        std::iota(rows.begin(), rows.end(), 0);
        std::iota(columns.begin(), columns.end(), 0);
    } else {
        QSet<int> rowSet, columnSet;
        for (const QItemSelectionRange& range : selection) {
            for (int row = range.top(); row <= range.bottom(); ++row)
                rowSet.insert(row);
            for (int column = range.left(); column <= range.right(); ++column)
                columnSet.insert(column);
        }
        rows = rowSet.values();
        columns = columnSet.values();
        std::sort(rows.begin(), rows.end());
        std::sort(columns.begin(), columns.end());
    }
    return CopyText(*m_model, rows, columns, form, QStringLiteral("table_name"));
}

void ResultGrid::Copy(CopyForm form)
{
    QApplication::clipboard()->setText(SelectedText(form));
}

void ResultGrid::contextMenuEvent(QContextMenuEvent* event)
{
    QMenu menu(this);
    menu.addAction(tr("Copy"), this, [this] { Copy(CopyForm::Text); });
    menu.addAction(tr("Copy as CSV"), this, [this] { Copy(CopyForm::Csv); });
    menu.addAction(tr("Copy as INSERT"), this, [this] { Copy(CopyForm::Insert); });
    menu.addSeparator();
    menu.addAction(tr("Show Value..."), this, [this] { ShowValue(); })->setEnabled(currentIndex().isValid());
    menu.exec(event->globalPos());
}

void ResultGrid::keyPressEvent(QKeyEvent* event)
{
    if (event->matches(QKeySequence::Copy))
        Copy(CopyForm::Text);
    else
        QTableView::keyPressEvent(event);
}

void ResultGrid::ShowValue()
{
    const QModelIndex index = currentIndex();
    if (!index.isValid())
        return;
    QDialog dialog(window());
    dialog.setWindowTitle(m_model->ColumnName(index.column()));
    dialog.resize(600, 360);
    auto* layout = new QVBoxLayout(&dialog);
    auto* text = new QPlainTextEdit(&dialog);
    text->setReadOnly(true);
    text->setFont(QFontDatabase::systemFont(QFontDatabase::FixedFont));
    const bool null = index.data(CursorModel::NullRole).toBool();
    text->setPlainText(null ? QStringLiteral("NULL") : index.data(Qt::EditRole).toString());
    auto* buttons = new QDialogButtonBox(QDialogButtonBox::Close, &dialog);
    connect(buttons, &QDialogButtonBox::rejected, &dialog, &QDialog::reject);
    layout->addWidget(text);
    layout->addWidget(buttons);
    dialog.exec();
}
