// SPDX-License-Identifier: GPL-3.0-or-later
#include "hf/dialog_create_function.h"

#include "hf/scintilla.h"
#include "weft/ui.h"

#include <QComboBox>
#include <QDialogButtonBox>
#include <QFormLayout>
#include <QHBoxLayout>
#include <QHeaderView>
#include <QLineEdit>
#include <QPushButton>
#include <QTableWidget>
#include <QTextEdit>

namespace HF {

LDialogCreateFunction::LDialogCreateFunction(const rc::Ref<I_LDatabase>& database, const QStringList& types,
                                             QWidget* parent)
    : QDialog(parent), m_database(database), m_types(types)
{
    setWindowTitle(QObject::tr("Create Function"));
    m_name = new QLineEdit(this);
    m_name->setObjectName(QStringLiteral("name"));
    m_body = new LScintilla(this);
    m_body->setObjectName(QStringLiteral("body"));
    m_body->SetDatabase(rc::Ptr<I_LDatabase>(database));
    m_comment = new QTextEdit(this);
    m_comment->setObjectName(QStringLiteral("comment"));
    m_comment->setTabChangesFocus(true);
    m_comment->setMaximumHeight(weft::char_width() * 8);
    auto* const result = new QComboBox(this);
    result->addItems(types);

    auto* const layout = new QVBoxLayout(this);
    m_form = new QFormLayout;
    m_form->setFieldGrowthPolicy(QFormLayout::ExpandingFieldsGrow);
    m_form->addRow(QObject::tr("Name:"), m_name);
    m_form->addRow(QObject::tr("Returns:"), result);
    m_form->addRow(QObject::tr("Language:"), new QLineEdit(this));
    m_form->addRow(QObject::tr("Parameters:"), MakeParameters());
    m_form->addRow(QObject::tr("Body:"), m_body);
    m_form->addRow(QObject::tr("Comment:"), m_comment);
    layout->addLayout(m_form);
    auto* const buttons = new QDialogButtonBox(QDialogButtonBox::Apply | QDialogButtonBox::Cancel, this);
    m_apply = buttons->button(QDialogButtonBox::Apply);
    m_apply->setObjectName(QStringLiteral("apply"));
    m_apply->setText(QObject::tr("Create"));
    m_apply->setDefault(true);
    layout->addWidget(buttons);

    connect(m_apply, &QPushButton::clicked, this, [this] {
        if (CanApply())
            Apply();
    });
    connect(buttons, &QDialogButtonBox::rejected, this, &QDialog::reject);
    connect(m_name, &QLineEdit::textChanged, this, &LDialogCreateFunction::UpdateButtons);
    connect(m_body, &QsciScintilla::textChanged, this, &LDialogCreateFunction::UpdateButtons);
    m_name->setFocus();
    UpdateButtons();
}

QWidget* LDialogCreateFunction::MakeParameters()
{
    auto* const box = new QWidget(this);
    auto* const row = new QHBoxLayout(box);
    row->setContentsMargins(0, 0, 0, 0);
    m_parameters = new QTableWidget(0, 3, box);
    m_parameters->setObjectName(QStringLiteral("parameters"));
    m_parameters->setHorizontalHeaderLabels({QObject::tr("Name"), QObject::tr("Type"), QObject::tr("Default")});
    m_parameters->verticalHeader()->hide();
    row->addWidget(m_parameters, 1);
    auto* const buttons = new QVBoxLayout;
    auto* const add = new QPushButton(QObject::tr("Add"), box);
    add->setObjectName(QStringLiteral("addParameter"));
    auto* const remove = new QPushButton(QObject::tr("Remove"), box);
    remove->setObjectName(QStringLiteral("removeParameter"));
    for (QPushButton* const button : {add, remove}) {
        button->setAutoDefault(false);
        buttons->addWidget(button);
    }
    buttons->addStretch();
    row->addLayout(buttons);
    connect(add, &QPushButton::clicked, this, &LDialogCreateFunction::AddParameter);
    connect(remove, &QPushButton::clicked, this, &LDialogCreateFunction::RemoveParameter);
    return box;
}

void LDialogCreateFunction::AddParameter()
{
    const int row = m_parameters->rowCount();
    m_parameters->insertRow(row);
    auto* const name = new QLineEdit(m_parameters);
    m_parameters->setCellWidget(row, 0, name);
    auto* const type = new QComboBox(m_parameters);
    type->addItems(m_types);
    m_parameters->setCellWidget(row, 1, type);
    name->setFocus();
}

void LDialogCreateFunction::RemoveParameter()
{
    const int row = m_parameters->currentRow();
    m_parameters->removeRow(row < 0 ? m_parameters->rowCount() - 1 : row);
}

bool LDialogCreateFunction::CanApply() const
{
    return !m_name->text().trimmed().isEmpty() && !m_body->text().trimmed().isEmpty();
}

QString LDialogCreateFunction::get_Body() const
{
    return m_body->text();
}

void LDialogCreateFunction::put_Body(const QString& text)
{
    m_body->setText(text);
}

void LDialogCreateFunction::UpdateButtons()
{
    m_apply->setEnabled(CanApply());
}

} // namespace HF
