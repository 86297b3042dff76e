// SPDX-License-Identifier: GPL-3.0-or-later
#include "studio/choose_columns.h"

#include <QDialog>
#include <QDialogButtonBox>
#include <QLabel>
#include <QListWidget>
#include <QVBoxLayout>

std::optional<QStringList> ChooseColumns(QWidget* parent, const QString& title, const QStringList& all,
                                         const QStringList& chosen)
{
    QDialog dialog(parent);
    dialog.setWindowTitle(title);
    auto* layout = new QVBoxLayout(&dialog);
    layout->addWidget(new QLabel(QObject::tr("Their order is that of the list; drag to change it."), &dialog));
    auto* list = new QListWidget(&dialog);
    list->setDragDropMode(QAbstractItemView::InternalMove);
    QStringList names = chosen;
    for (const QString& name : all)
        if (!names.contains(name, Qt::CaseInsensitive))
            names.append(name);
    for (const QString& name : names) {
        auto* item = new QListWidgetItem(name, list);
        item->setFlags((item->flags() | Qt::ItemIsUserCheckable) & ~Qt::ItemIsDropEnabled);
        item->setCheckState(chosen.contains(name) ? Qt::Checked : Qt::Unchecked);
    }
    layout->addWidget(list);
    auto* buttons = new QDialogButtonBox(QDialogButtonBox::Ok | QDialogButtonBox::Cancel, &dialog);
    QObject::connect(buttons, &QDialogButtonBox::accepted, &dialog, &QDialog::accept);
    QObject::connect(buttons, &QDialogButtonBox::rejected, &dialog, &QDialog::reject);
    layout->addWidget(buttons);
    if (dialog.exec() != QDialog::Accepted)
        return std::nullopt;
    QStringList result;
    for (int row = 0; row < list->count(); ++row)
        if (list->item(row)->checkState() == Qt::Checked)
            result.append(list->item(row)->text());
    return result;
}
