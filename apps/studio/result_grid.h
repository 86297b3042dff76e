// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "hf/cursor.h"
#include "studio/copy_text.h"

#include <QTableView>

class CursorModel;

/// A result as a grid, with copying as text, CSV and INSERT.
class ResultGrid : public QTableView
{
    Q_OBJECT

public:
    ResultGrid(const rc::Ref<HF::I_LCursor>& cursor, QWidget* parent = nullptr);
    CursorModel* get_Model() const { return m_model; }
    /// The selected cells in that form; all cells when nothing is selected.
    QString SelectedText(CopyForm form) const;

protected:
    void contextMenuEvent(QContextMenuEvent* event) override;
    void keyPressEvent(QKeyEvent* event) override;

private:
    void Copy(CopyForm form);
    void ShowValue();

    CursorModel* m_model;
};
