// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <QStringList>
#include <QStyledItemDelegate>

/// The words of an ENUM, from the text between its type's brackets: `'a', 'it''s'`.
QStringList EnumWords(const QString& arguments);

/// Editors by the type of the column: a calendar for days, a list for the words of an
/// ENUM, a line for the rest.
/// An editor that was left as it was changes nothing: NULL stays NULL.
class CellDelegate : public QStyledItemDelegate
{
    Q_OBJECT

public:
    using QStyledItemDelegate::QStyledItemDelegate;

    QWidget* createEditor(QWidget* parent, const QStyleOptionViewItem& option, const QModelIndex& index) const override;
    void setEditorData(QWidget* editor, const QModelIndex& index) const override;
    void setModelData(QWidget* editor, QAbstractItemModel* model, const QModelIndex& index) const override;

    /// Long texts and bytes are edited in a window of their own.
    static bool WantsWindow(const QModelIndex& index);
};
