// SPDX-License-Identifier: GPL-3.0-or-later
#include "studio/connect_dialog.h"

#include "hf/background.h"
#include "hf/database.h"
#include "hf/services.h"
#include "studio/open_database.h"

#include <QCheckBox>
#include <QDialogButtonBox>
#include <QFileDialog>
#include <QFormLayout>
#include <QGroupBox>
#include <QHBoxLayout>
#include <QLabel>
#include <QLineEdit>
#include <QPushButton>
#include <QVBoxLayout>

ConnectDialog::ConnectDialog(const rc::Ref<HF::I_LConnectionFactory>& factory, QWidget* parent)
    : QDialog(parent)
    , m_factory(factory)
    , m_name(new QLineEdit(this))
    , m_readOnly(new QCheckBox(tr("Open read-only"), this))
    , m_scripts(new QGroupBox(tr("Run scripts"), this))
    , m_error(new QLabel(this))
{
    setWindowTitle(tr("Connect to a Database"));
    // The pane looks its dialog's fields up by these names.
    m_name->setObjectName(QStringLiteral("name"));
    m_name->setProperty("userEdited", false);
    connect(m_name, &QLineEdit::textEdited, this, [this] { m_name->setProperty("userEdited", true); });

    auto* buttons = new QDialogButtonBox(QDialogButtonBox::Ok | QDialogButtonBox::Cancel, this);
    m_ok = buttons->button(QDialogButtonBox::Ok);
    m_ok->setObjectName(QStringLiteral("ok"));
    m_ok->setText(tr("Connect"));
    connect(buttons, &QDialogButtonBox::accepted, this, &ConnectDialog::Connect);
    connect(buttons, &QDialogButtonBox::rejected, this, &QDialog::reject);

    auto* form = new QFormLayout;
    form->addRow(tr("Name:"), m_name);
    auto* layout = new QVBoxLayout(this);
    layout->addLayout(form);
    m_pane = factory->CreateConnectPane(this, this);
    if (m_pane)
        layout->addWidget(m_pane);
    layout->addWidget(m_readOnly);
    m_scripts->setCheckable(true);
    m_scripts->setChecked(false);
    m_scripts->setObjectName(QStringLiteral("scripts"));
    auto* scripts = new QFormLayout(m_scripts);
    m_preScript = AddScriptField(scripts, tr("Before connecting:"), "preScript");
    m_postScript = AddScriptField(scripts, tr("After connecting:"), "postScript");
    layout->addWidget(m_scripts);
    m_error->setWordWrap(true);
    m_error->setTextInteractionFlags(Qt::TextSelectableByMouse);
    m_error->setStyleSheet(QStringLiteral("color: #c62828"));
    m_error->hide();
    layout->addWidget(m_error);
    layout->addStretch();
    layout->addWidget(buttons);
    resize(560, sizeHint().height());
}

QLineEdit* ConnectDialog::AddScriptField(QFormLayout* form, const QString& label, const char* name)
{
    auto* path = new QLineEdit(m_scripts);
    path->setObjectName(QLatin1String(name));
    auto* choose = new QPushButton(tr("Select..."), m_scripts);
    choose->setAutoDefault(false);
    connect(choose, &QPushButton::clicked, this, [this, path] {
        const QString chosen = QFileDialog::getOpenFileName(this, tr("Open Script"), path->text(),
                                                            tr("Scripts") + QLatin1String(" (*.js *.mjs);;")
                                                                + tr("All Files") + QLatin1String(" (*)"));
        if (!chosen.isEmpty())
            path->setText(chosen);
    });
    auto* row = new QHBoxLayout;
    row->addWidget(path, 1);
    row->addWidget(choose);
    form->addRow(label, row);
    return path;
}

bool ConnectDialog::IsValid() const
{
    return !m_connecting;
}

QString ConnectDialog::get_Error() const
{
    return m_error->text();
}

void ConnectDialog::Connect()
{
    if (!m_pane || m_connecting)
        return;
    HF::LConnectionParameters parameters = m_pane->GetParameters();
    parameters.WorkspaceId = HF::GetActiveWorkspaceID();
    parameters.ReadOnly = m_readOnly->isChecked();
    if (m_scripts->isChecked()) {
        parameters.PreScript = m_preScript->text().trimmed();
        parameters.PostScript = m_postScript->text().trimmed();
    }
    m_connecting = true;
    m_ok->setEnabled(false);
    m_error->hide();
    OpenInBackground(m_factory, parameters, this, [this](const OpenOutcome& outcome) {
        m_connecting = false;
        m_ok->setEnabled(true);
        if (outcome.database) {
            m_database = outcome.database;
            accept();
            return;
        }
        m_error->setText(outcome.error);
        m_error->show();
    });
}
