// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "studio/copy_text.h"

#include <QTableView>

class FilterHeader;
class QScrollBar;
class TableModel;

/// The rows of a table as a grid to edit. Its own scroll bar stands for the whole
/// table: what the view itself knows is the model's segment of it.
class TableGrid : public QTableView
{
    Q_OBJECT

public:
    explicit TableGrid(TableModel* model, QWidget* parent = nullptr);

    TableModel* get_Model() const { return m_model; }
    FilterHeader* get_Header() const { return m_header; }
    /// The scroll bar of the whole table, for the layout around the grid.
    QScrollBar* get_Bar() const { return m_bar; }
    /// Brings a row of the table into sight and makes it the current one.
    void GoTo(unsigned long row, int column = 0);
    /// The number of the topmost row in sight.
    unsigned long TopRow() const;

    void Copy(CopyForm form);
    /// The clipboard's block of cells, from the current cell on; rows that the table
    /// lacks are added. The number of cells that were set.
    int Paste();
    /// Opens the value of a cell in a window of its own.
    void ShowValue(const QModelIndex& index);
    QList<int> SelectedRows() const;

signals:
    void Said(const QString& text);

protected:
    bool edit(const QModelIndex& index, EditTrigger trigger, QEvent* event) override;
    void keyPressEvent(QKeyEvent* event) override;
    void contextMenuEvent(QContextMenuEvent* event) override;
    void resizeEvent(QResizeEvent* event) override;
    void wheelEvent(QWheelEvent* event) override;

private:
    void Scrolled();
    void BarMoved(int value);
    void UpdateBar();
    void FitColumns();
    void SortBy(int column, bool further);
    int RowsInSight() const;

    TableModel* m_model;
    FilterHeader* m_header;
    QScrollBar* m_bar;
    double m_rowsAStep = 1; ///< of the bar; above 1 where a table has more rows than the bar has steps
    bool m_moving = false;
    bool m_fitted = false;
};
