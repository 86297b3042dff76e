// SPDX-License-Identifier: GPL-3.0-or-later
#include "studio/snippet_panel.h"

#include "hf/engine.h"

SnippetPanel::SnippetPanel(const HF::LDatabaseEngine& engine, QWidget* parent) : QTreeWidget(parent)
{
    setHeaderHidden(true);
    QTreeWidgetItem* category = nullptr;
    for (const HF::LSqlTemplate& entry : engine.GetSqlTemplates()) {
        if (!category || category->text(0) != entry.category)
            category = new QTreeWidgetItem(this, {entry.category});
        auto* item = new QTreeWidgetItem(category, {entry.title});
        item->setData(0, Qt::UserRole, entry.text);
        item->setToolTip(0, entry.text);
    }
    connect(this, &QTreeWidget::itemActivated, this, [this](QTreeWidgetItem* item) {
        if (const QString text = item->data(0, Qt::UserRole).toString(); !text.isEmpty())
            emit Chosen(text);
    });
}
