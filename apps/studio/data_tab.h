// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "hf/database.h"
#include "hf/table_cursor.h"

#include <QWidget>

class QAction;
class QLabel;
class QLineEdit;
class TableGrid;
class TableModel;

/// The rows of one table or view on a tab: grid, filter, pending edits and what
/// saves them, export.
class DataTab : public QWidget
{
    Q_OBJECT

public:
    DataTab(const rc::Ref<HF::I_LTableCursor>& cursor, QWidget* parent = nullptr);

    TableGrid* get_Grid() const { return m_grid; }
    TableModel* get_Model() const { return m_model; }
    rc::Ptr<HF::I_LDatabase> get_Database() const { return m_database.lock(); }
    /// Edits that are not written, or rows that are being written.
    bool HasPendingEdits() const;
    /// The statement for all rows of the view: its filter and order, no window.
    QString QueryText() const;
    QString get_Error() const;

    void Save();
    void TakeBack();
    void ShowPreview();
    void Export();
    void ApplyFilter();
    void Stop();

signals:
    void TitleChanged();

private:
    QAction* Add(const QString& text, const char* icon, const QKeySequence& keys, void (DataTab::*run)());
    void AddRow();
    void DeleteRows();
    void RevertAll();
    void Refresh();
    void ShowColumns();
    void UpdateState();
    void Say(const QString& text);
    void SayError(const QString& text);

    rc::Weak<HF::I_LDatabase> m_database;
    rc::Ref<HF::I_LTableCursor> m_cursor;
    TableModel* m_model;
    TableGrid* m_grid;
    QLineEdit* m_filter;
    QLabel* m_state;
    QLabel* m_error;
    QAction* m_save;
    QAction* m_takeBack;
    QAction* m_revert;
    QAction* m_preview;
    QAction* m_rowIds;
    QAction* m_generated;
};
