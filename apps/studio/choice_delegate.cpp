// SPDX-License-Identifier: GPL-3.0-or-later
#include "studio/choice_delegate.h"

#include <QComboBox>

QWidget* ChoiceDelegate::MakeList(QWidget* parent, const QStringList& choices, bool editable)
{
    auto* box = new QComboBox(parent);
    box->setEditable(editable);
    for (const QString& choice : choices)
        if (choice.isEmpty())
            box->insertSeparator(box->count());
        else
            box->addItem(choice);
    return box;
}

void ChoiceDelegate::setEditorData(QWidget* editor, const QModelIndex& index) const
{
    if (auto* box = qobject_cast<QComboBox*>(editor))
        box->setCurrentText(index.data(Qt::EditRole).toString());
    else
        QStyledItemDelegate::setEditorData(editor, index);
}

void ChoiceDelegate::setModelData(QWidget* editor, QAbstractItemModel* model, const QModelIndex& index) const
{
    if (auto* box = qobject_cast<QComboBox*>(editor))
        model->setData(index, box->currentText(), Qt::EditRole);
    else
        QStyledItemDelegate::setModelData(editor, model, index);
}
