// SPDX-License-Identifier: GPL-3.0-or-later
#include "connection/connect_param_widget.h"

#include "connection/file_filter.h"

#include "hf/app_controller.h"
#include "hf/has_properties.h"
#include "hf/services.h"
#include "uik/ui.h"

#include <QComboBox>
#include <QDir>
#include <QFileInfo>
#include <QFormLayout>
#include <QLabel>
#include <QLineEdit>
#include <QPushButton>

namespace {

const QString CloudPrefix = QStringLiteral("md:");

/// A field of the form: as wide as there is room, never less than 30 characters.
weft::ui_item WideField(QWidget* field)
{
    return weft::ui_item(field) | weft::hexpand(1) | weft::set_minimum_width(30);
}

} // namespace

orbDuckDB_LocalConnectParamWidget::orbDuckDB_LocalConnectParamWidget(QWidget* dialog, QWidget* parent)
    : HF::I_LConnectPane(parent), m_dialog(dialog)
{
    if (m_dialog) {
        m_connectionName = m_dialog->findChild<QLineEdit*>(QStringLiteral("name"));
        m_accept = m_dialog->findChild<QPushButton*>(QStringLiteral("ok"));
    }
    BuildControls();

    (weft::ui_item(this).set_layout(weft::vlayout({}) | weft::default_layout_spacing() | weft::no_margins()))
        .apply_to(this);

    uik::settings_entry(QStringLiteral("DuckDB/ConnectParamWidget/Method"), 0).apply_to(m_method);
    uik::settings_entry(QStringLiteral("DuckDB/ConnectParamWidget/PathValue"), QString()).apply_to(m_path);
    uik::settings_entry(QStringLiteral("DuckDB/ConnectParamWidget/NameMDValue"), QString()).apply_to(m_database);
    SuggestName();

    connect(m_path, &QLineEdit::textChanged, this, &orbDuckDB_LocalConnectParamWidget::PathChanged);
    connect(m_database, &QLineEdit::textChanged, this, &orbDuckDB_LocalConnectParamWidget::CheckValidity);
    connect(m_accessToken, &QLineEdit::textChanged, this, &orbDuckDB_LocalConnectParamWidget::CheckValidity);
    connect(m_method, &QComboBox::currentTextChanged, this, &orbDuckDB_LocalConnectParamWidget::RebuildForm);
    connect(m_select, &QPushButton::clicked, this, &orbDuckDB_LocalConnectParamWidget::SelectPath);

    RebuildForm();
    CheckValidity();
}

void orbDuckDB_LocalConnectParamWidget::BuildControls()
{
    m_database = new QLineEdit(this);
    m_database->setObjectName(QStringLiteral("database"));
    m_userAgent = new QLineEdit(this);
    m_userAgent->setObjectName(QStringLiteral("userAgent"));
    m_accessToken = new QLineEdit(this);
    m_accessToken->setObjectName(QStringLiteral("accessToken"));
    m_accessToken->setEchoMode(QLineEdit::Password);
    m_path = new QLineEdit(this);
    m_path->setObjectName(QStringLiteral("path"));
    m_select = new QPushButton(QObject::tr("Select..."), this);
    m_select->setObjectName(QStringLiteral("select"));
    m_select->setAutoDefault(false);
    m_hint = new QLabel(this);
    m_hint->setObjectName(QStringLiteral("hint"));
    m_hint->setForegroundRole(QPalette::PlaceholderText);
    m_method = new QComboBox(this);
    m_method->setObjectName(QStringLiteral("method"));
    m_method->addItem(QObject::tr("Local File"));
    m_method->addItem(QObject::tr("MotherDuck"));
}

orbDuckDB_LocalConnectParamWidget::Method orbDuckDB_LocalConnectParamWidget::get_Method() const
{
    return m_method->currentIndex() == MotherDuck ? MotherDuck : LocalFile;
}

void orbDuckDB_LocalConnectParamWidget::RebuildForm()
{
    // The controls outlive the form that they stand in; those of the other
    // method wait, unseen, for their turn.
    const QList<QWidget*> controls{m_method, m_path, m_select, m_database, m_accessToken, m_userAgent};
    if (m_form)
        m_form->hide();
    for (QWidget* control : controls) {
        control->setParent(this);
        control->hide();
    }
    if (m_form) {
        layout()->removeWidget(m_form);
        m_form->deleteLater();
    }

    const weft::form_row method = weft::row(QObject::tr("Connection Method:"), WideField(m_method));
    weft::ui_item form;
    if (get_Method() == LocalFile)
        form = weft::form({method, weft::row(QObject::tr("Path:"),
                                             weft::hlayout({WideField(m_path), m_select.data()}))});
    else
        form = weft::form({method, weft::row(QObject::tr("Database:"), WideField(m_database)),
                           weft::row(QObject::tr("Access Token:"), WideField(m_accessToken)),
                           weft::row(QObject::tr("User Agent:"), WideField(m_userAgent))});
    m_form = (form | weft::no_margins()).create(this);
    (weft::ui_item(m_form) | weft::expand(1)).apply_to(m_form);
    for (QWidget* control : controls)
        if (control->parentWidget() == m_form)
            control->show();
    layout()->addWidget(m_form);
    layout()->addWidget(m_hint);
    m_form->show();

    m_path->setFocus();
    CheckValidity();
    HF::SetWidgetConstraints(*window());
}

void orbDuckDB_LocalConnectParamWidget::SuggestName()
{
    if (m_connectionName && m_connectionName->isEnabled() && !m_connectionName->property("userEdited").toBool())
        m_connectionName->setText(QFileInfo(m_path->text()).baseName());
}

void orbDuckDB_LocalConnectParamWidget::PathChanged()
{
    SuggestName();
    if (m_accept)
        m_accept->setEnabled(IsValid());
    m_hint->setText(Hint());
    m_hint->setVisible(!m_hint->text().isEmpty());
}

QString orbDuckDB_LocalConnectParamWidget::Hint() const
{
    if (get_Method() == MotherDuck && m_accessToken->text().isEmpty())
        return QObject::tr("MotherDuck needs an access token.");
    if (m_path->text().isEmpty())
        return get_Method() == MotherDuck ? QObject::tr("The path under \"Local File\" must not be empty.")
                                          : QObject::tr("Enter or select the path of a database.");
    return {};
}

void orbDuckDB_LocalConnectParamWidget::CheckValidity()
{
    PathChanged();
    if (m_accept)
        m_accept->setDefault(true);
}

bool orbDuckDB_LocalConnectParamWidget::IsValid() const
{
    if (auto* dialog = dynamic_cast<const HF::I_LConnectDialog*>(m_dialog.data()))
        if (!dialog->IsValid())
            return false;
    if (get_Method() == MotherDuck && m_accessToken->text().isEmpty())
        return false;
    return !m_path->text().isEmpty();
}

HF::LConnectionParameters orbDuckDB_LocalConnectParamWidget::GetParameters() const
{
    HF::LConnectionParameters parameters;
    parameters.FactoryId = HF::FACTORY_DUCKDB;
    if (get_Method() == LocalFile) {
        parameters.Location = m_path->text();
        return parameters;
    }
    const QString database = m_database->text();
    parameters.Location = database.startsWith(CloudPrefix) ? database : CloudPrefix + database;
    parameters.AccessToken = m_accessToken->text();
    parameters.UserAgent = m_userAgent->text();
    return parameters;
}

void orbDuckDB_LocalConnectParamWidget::SetParameters(const HF::LConnectionParameters& parameters)
{
    const QString location = parameters.Location.ToQString();
    if (parameters.AccessToken.empty()) {
        m_path->setText(QDir::toNativeSeparators(location));
        return;
    }
    m_database->setText(location.startsWith(CloudPrefix) ? location.mid(CloudPrefix.size()) : location);
    m_accessToken->setText(parameters.AccessToken.ToQString());
    m_userAgent->setText(parameters.UserAgent.ToQString());
}

QList<HF::LProperty> orbDuckDB_LocalConnectParamWidget::GetProperties() const
{
    QList<HF::LProperty> list;
    const QString category = QString::fromUtf8(HF::CATEGORY_INFORMATION);
    const QString database = get_Method() == MotherDuck ? m_database->text() : m_path->text();
    HF::AddPropertyTo(list, category, 65, HF::GetFactoryTypeNameTranslated(HF::FACTORY_DUCKDB), 1025);
    HF::AddPropertyTo(list, category, 21, "localhost", 1413);
    HF::AddPropertyTo(list, category, 12, m_path->text(), 132485);
    HF::AddPropertyTo(list, category, 81, "", 1169);
    HF::AddPropertyTo(list, category, 71, "", 1169);
    HF::AddPropertyTo(list, category, 14, database, 1041);
    return list;
}

void orbDuckDB_LocalConnectParamWidget::SetEnabled(bool enabled)
{
    m_path->setEnabled(enabled);
    m_select->setEnabled(enabled);
}

void orbDuckDB_LocalConnectParamWidget::SetFocus()
{
    m_path->setFocus(Qt::OtherFocusReason);
}

void orbDuckDB_LocalConnectParamWidget::SelectPath()
{
    QStringList extensions;
    const rc::Ptr<HF::I_LSchemaObject> found =
        HF::AppCtrlInstance().FindConnection(HF::FACTORY_DUCKDB, HF::GetActiveWorkspaceID());
    if (const auto connection = rc::cast<HF::I_LConnection>(found))
        extensions = connection->get_FileExtensions();
    const QString path = weft::file_open_dialog(QObject::tr("Select path to a DuckDB database"),
                                                DatabaseFileFilter(extensions), m_path->text(), m_dialog);
    if (path.isEmpty())
        return;
    m_path->setText(QDir::toNativeSeparators(path));
    if (m_accept)
        m_accept->setFocus(Qt::OtherFocusReason);
}
