// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <QStyledItemDelegate>

/// Cells that are edited in a list to choose from, or as text where a subclass gives no list.
class ChoiceDelegate : public QStyledItemDelegate
{
public:
    using QStyledItemDelegate::QStyledItemDelegate;

    /// A list for a cell; an empty choice is a separator. Editable: other texts may be typed.
    static QWidget* MakeList(QWidget* parent, const QStringList& choices, bool editable);

    void setEditorData(QWidget* editor, const QModelIndex& index) const override;
    void setModelData(QWidget* editor, QAbstractItemModel* model, const QModelIndex& index) const override;
};
