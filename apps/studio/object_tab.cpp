// SPDX-License-Identifier: GPL-3.0-or-later
#include "studio/object_tab.h"

#include "hf/database.h"
#include "hf/scintilla.h"
#include "studio/property_sheet.h"

#include <QSplitter>
#include <QVBoxLayout>

ObjectTab::ObjectTab(const rc::Ref<HF::LDatabaseObject_Impl>& object, QWidget* parent) : QWidget(parent)
{
    auto* layout = new QVBoxLayout(this);
    layout->setContentsMargins(0, 0, 0, 0);
    auto* splitter = new QSplitter(Qt::Vertical, this);
    layout->addWidget(splitter);
    QString sql = object->GetString(PROP_SQL_TEXT);
    if (sql.isEmpty())
        sql = object->GetString(PROP_DEFINITION);
    if (!sql.isEmpty()) {
        auto* text = new HF::LScintilla(splitter);
        text->setText(sql);
        text->setReadOnly(true);
        text->SetDatabase(object->get_Database());
        splitter->addWidget(text);
    }
    auto* sheet = new PropertySheet(splitter);
    sheet->ShowObject(rc::Ptr<HF::LTreeItem>(object));
    splitter->addWidget(sheet);
}
