// SPDX-License-Identifier: GPL-3.0-or-later
#include "hf/object_editor.h"

#include "hf/database.h"
#include "hf/object_kinds.h"
#include "hf/scintilla.h"

#include <QApplication>
#include <QDialog>
#include <QDialogButtonBox>
#include <QFontMetrics>
#include <QLabel>
#include <QVBoxLayout>

namespace HF {

LDatabaseObjectEditor::LDatabaseObjectEditor(const rc::Ref<I_LSchemaObject>& object, int property,
                                             const QStringList& properties, const QStringList& actions, QWidget* parent)
    : QWidget(parent), m_object(object), m_property(property), m_text(new LScintilla(this))
{
    auto* layout = new QVBoxLayout(this);
    layout->setContentsMargins(0, 0, 0, 0);
    for (const QString& name : properties + actions)
        layout->addWidget(new QLabel(name, this));
    layout->addWidget(m_text);
    m_text->setText(object->GetString(property));
    m_text->setReadOnly(object->get_Property(property).flags & PROPERTY_READONLY);
    m_text->setModified(false);
    m_text->SetDatabase(object->get_Database());
}

bool LDatabaseObjectEditor::Apply()
{
    if (!IsModified())
        return true;
    const bool done = m_object->ProcessProperty(m_property, LVariant(m_text->text())).Force();
    if (done)
        m_text->setModified(false);
    return done;
}

bool LDatabaseObjectEditor::IsModified() const { return m_text->isModified(); }

QPointer<QWidget> CreatePropertySQLEditor(const rc::Ref<I_LSchemaObject>& object, int property, QPointer<QWidget> parent)
{
    return new LDatabaseObjectEditor(object, property, {}, {}, parent);
}

void ShowSqlViewer(const QString& sql, const rc::Ptr<I_LDatabase>& database)
{
    QDialog dialog(QApplication::activeWindow());
    dialog.setWindowTitle(QObject::tr("SQL"));
    auto* layout = new QVBoxLayout(&dialog);
    auto* text = new LScintilla(&dialog);
    text->ShowLineNumbers(false);
    text->setText(sql);
    text->setReadOnly(true);
    text->SetDatabase(database);
    const QFontMetrics metrics = dialog.fontMetrics();
    text->setMinimumHeight(12 * metrics.height());
    text->setMinimumWidth(40 * metrics.averageCharWidth());
    layout->addWidget(text);
    auto* buttons = new QDialogButtonBox(QDialogButtonBox::Close, &dialog);
    QObject::connect(buttons, &QDialogButtonBox::rejected, &dialog, &QDialog::reject);
    layout->addWidget(buttons);
    dialog.exec();
}

} // namespace HF
