// SPDX-License-Identifier: GPL-3.0-or-later
#include "dialogs/create_database_dialog.h"

#include "connection/file_filter.h"
#include "hf/services.h"
#include "weft/ui.h"

#include <QComboBox>
#include <QDir>
#include <QFileInfo>
#include <QFormLayout>
#include <QLabel>
#include <QLineEdit>
#include <QPushButton>
#include <QStandardPaths>

namespace {

const QString MemoryLocation = QStringLiteral(":memory:");
const QString FolderKey = QStringLiteral("/DuckDB/DefaultDatabasePath");

QString DialogKey(const char* name)
{
    return QStringLiteral("DuckDB/DialogNewDatabase/") + QLatin1String(name);
}

/// ".duckdb" or what the preferences say; empty when they say no extension.
QString ExtensionWithDot()
{
    const QString extension =
        HF::ApplicationSettings().value(QStringLiteral("/DuckDB/DefaultExtension"), QStringLiteral("duckdb")).toString();
    return extension.isEmpty() || extension.startsWith(u'.') ? extension : u'.' + extension;
}

} // namespace

orbDuckDB_DialogCreateDatabase::orbDuckDB_DialogCreateDatabase(const rc::Ref<HF::I_LConnection>& connection)
    : m_connection(connection)
{
    BuildControls();
    BuildLayout();
    setWindowTitle(QObject::tr("Create DuckDB Database"));
    if (auto* apply = findChild<QPushButton*>(QStringLiteral("apply"))) {
        apply->setText(QObject::tr("Create"));
        weft::enable_if(m_path.data()).apply_to(apply);
        connect(apply, &QPushButton::clicked, this, &orbDuckDB_DialogCreateDatabase::Create);
    }
    connect(m_select, &QPushButton::clicked, this, &orbDuckDB_DialogCreateDatabase::Select);
    connect(m_reset, &QPushButton::clicked, this, &orbDuckDB_DialogCreateDatabase::ResetSettings);

    if (m_path->text().isEmpty())
        m_path->setText(QDir::toNativeSeparators(DefaultPath()));
    m_path->selectAll();
    m_path->setFocus(Qt::OtherFocusReason);

    Update();
    connect(m_location, &QComboBox::currentTextChanged, this, &orbDuckDB_DialogCreateDatabase::Update);
}

void orbDuckDB_DialogCreateDatabase::BuildControls()
{
    m_location = new QComboBox(this);
    m_location->setObjectName(QStringLiteral("location"));
    m_location->addItem(QObject::tr("Disk"));
    m_location->addItem(QObject::tr("RAM"));
    m_path = new QLineEdit(this);
    m_path->setObjectName(QStringLiteral("path"));
    m_select = new QPushButton(QObject::tr("Select..."), this);
    m_select->setObjectName(QStringLiteral("select"));
    m_reset = new QPushButton(QObject::tr("Reset Settings"), this);
    m_reset->setObjectName(QStringLiteral("reset"));
    // Enter in the path field creates the database and does nothing else.
    m_select->setAutoDefault(false);
    m_reset->setAutoDefault(false);
}

void orbDuckDB_DialogCreateDatabase::BuildLayout()
{
    const weft::ui_item location =
        weft::hlayout({weft::ui_item(m_location.data()) | weft::settings_entry(DialogKey("Location"), 0),
                       weft::expander()}) |
        weft::set_hidden(!m_connection->get_IsFileBased());
    const weft::ui_item path = weft::hlayout(
        {weft::ui_item(m_path.data()) | weft::hexpand(1) | weft::set_minimum_width(30) | weft::warn_if_empty() |
             weft::settings_entry(DialogKey("Path"), QString()),
         m_select.data()});
    m_form = qobject_cast<QFormLayout*>(
        (weft::form({weft::row(QObject::tr("Location:"), location), weft::row(QObject::tr("Path:"), path)}) |
         weft::no_margins())
            .create_layout());
    m_form->setFieldGrowthPolicy(QFormLayout::ExpandingFieldsGrow);

    weft::settings_entry(DialogKey("Window"), QVariant())
        .set_layout(weft::vlayout({
            m_form.data(),
            weft::spacer(weft::char_width()),
            weft::hlayout({m_reset.data(), weft::expander(),
                           weft::button_box(QDialogButtonBox::Apply | QDialogButtonBox::Cancel,
                                            QDialogButtonBox::Apply)}),
        }))
        .apply_to(this);
}

orbDuckDB_DialogCreateDatabase::Location orbDuckDB_DialogCreateDatabase::get_Location() const
{
    return m_location->currentIndex() < 1 ? Disk : Memory;
}

QString orbDuckDB_DialogCreateDatabase::DefaultDatabasePath()
{
    QString folder = HF::ApplicationSettings().value(FolderKey).toString();
    if (folder.isEmpty())
        folder = QStandardPaths::writableLocation(QStandardPaths::DesktopLocation);
    if (folder.isEmpty())
        folder = QStandardPaths::writableLocation(QStandardPaths::HomeLocation);
    return folder;
}

QString orbDuckDB_DialogCreateDatabase::DefaultPath() const
{
    const QString name = QLatin1String("untitled") + ExtensionWithDot();
    if (!m_connection->get_IsFileBased())
        return name;
    return get_Location() == Disk ? DefaultDatabasePath() + u'/' + name : MemoryLocation;
}

void orbDuckDB_DialogCreateDatabase::Update()
{
    const bool onDisk = get_Location() == Disk;
    if (auto* label = qobject_cast<QLabel*>(m_form->labelForField(m_form->itemAt(1, QFormLayout::FieldRole)->layout())))
        label->setText(onDisk ? QObject::tr("Path:") : QObject::tr("Name:"));
    m_select->setVisible(onDisk);
    if (m_connection->get_IsFileBased())
        m_path->setEnabled(onDisk);

    QString path = m_path->text();
    if (!onDisk) {
        path = MemoryLocation;
    } else if (path == MemoryLocation || !(QDir::isAbsolutePath(path) || path.startsWith(QLatin1String("file:")))) {
        if (path == MemoryLocation || path.isEmpty())
            path = QStringLiteral("untitled");
        path = QDir(DefaultDatabasePath()).absoluteFilePath(path);
        if (QFileInfo(path).suffix().isEmpty())
            path += ExtensionWithDot();
        path = QDir::toNativeSeparators(path);
    }
    if (path != m_path->text()) // the same text again would lose the selection
        m_path->setText(path);
    HF::SetWidgetConstraints(*this);
}

void orbDuckDB_DialogCreateDatabase::Select()
{
    const QString path =
        weft::file_save_dialog(QObject::tr("Create a new DuckDB database"),
                               DatabaseFileFilter(m_connection->get_FileExtensions()), m_path->text(), this);
    if (path.isEmpty())
        return;
    HF::ApplicationSettings().setValue(FolderKey, QFileInfo(path).path());
    m_path->setText(QDir::toNativeSeparators(path));
}

void orbDuckDB_DialogCreateDatabase::ResetSettings()
{
    m_path->setText(QDir::toNativeSeparators(DefaultPath()));
}

void orbDuckDB_DialogCreateDatabase::Create()
{
    const int kind = m_location->currentIndex();
    const QString path = m_path->text();
    if (path.isEmpty())
        return;
    const QHash<QString, QVariant> options{{QStringLiteral("location"), kind}};
    m_createdDatabase = m_connection->CreateDatabase(path, options).Force();
    if (m_createdDatabase)
        done(QDialog::Accepted);
}
