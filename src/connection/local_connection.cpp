// SPDX-License-Identifier: GPL-3.0-or-later
#include "connection/local_connection.h"

#include "connection/connection_prefs_widget.h"
#include "connection/location.h"
#include "connection/makers.h"
#include "connection/recent_databases.h"
#include "engine/engine.h"
#include "engine/engine_version.h"
#include "engine/engine_words.h"
#include "engine/kernel_text.h"

#include "hf/app_controller.h"
#include "hf/connection_databases_list.h"
#include "hf/log.h"
#include "hf/services.h"
#include "uik/settings.h"

#include <QFile>

namespace {

const HF::LSchemaItemListInfo& DatabasesListInfo()
{
    static const HF::LSchemaItemListInfo info = [] {
        HF::LSchemaItemListInfo made;
        made.icon = QStringLiteral(":/icons/office-database.svg");
        made.type = HF::TYPE_DATABASE;
        made.word = QString::fromLatin1(HF::OBJECT_DATABASE);
        return made;
    }();
    return info;
}

QString DisplayName()
{
    return QObject::tr("DuckDB Files");
}

/// The first bytes of a file that DuckDB wrote.
bool HasStorageMagic(const QString& path)
{
    QFile file(path);
    if (path.isEmpty() || !file.open(QIODevice::ReadOnly))
        return false;
    const QByteArray head = file.read(12);
    return head.size() == 12 && (head.startsWith("DuckDB") || head.endsWith("DUCK"));
}

} // namespace

orbDuckDB_LocalConnection::orbDuckDB_LocalConnection(const rc::Ref<orbDuckDB_LocalConnectionFactory>& factory,
                                                     const rc::Ref<orbDuckDB_LocalConnectionHandler>& handler)
    : HF::LConnection(factory, handler), m_handler(handler)
{
    const auto self = rc::self(this);
    const auto databases = rc::make<HF::LConnectionDatabasesList>(DatabasesListInfo(), self);
    m_databases = databases;
    AddChildList(databases);
    AssignName(DisplayName());
    m_parameters = handler->GetParameters();
    m_parameters.HostName = "localhost";
    CreateProperties(RawProperties());

    // Weak, so that a list never keeps its connection alive.
    const rc::Weak<orbDuckDB_LocalConnection> weak(self);
    m_functions = HF::LLazy<HF::LSQLFunctions, false>::FromBody(
        [weak] { return weak.lock() ? FetchEngineFunctions() : HF::LSQLFunctions(); });
    m_keywords = HF::LLazy<HF::LDatabaseKeywords, false>::FromBody(
        [weak] { return weak.lock() ? FetchEngineKeywords() : HF::LDatabaseKeywords(); });

    const auto recents = rc::make<orbDuckDB_RecentDatabases>(self);
    m_recents = recents;
    HF::CheckRecentDatabasesPaths(recents);
    databases->put_Actions({HF::LConnection::ActionOpenDatabase()});
    HF::AppCtrlInstance().RegisterConnection(self);
}

orbDuckDB_LocalConnection::~orbDuckDB_LocalConnection() = default;

void orbDuckDB_LocalConnection::CreateProperties(HF::LHasProperties::Properties& list)
{
    // Built once: every connection of this engine shows the first one's values.
    static const QList<HF::LProperty> properties = [this] {
        const QString title = QStringLiteral("DuckDB %1 Engine").arg(EngineVersionString());
        QList<HF::LProperty> made;
        HF::AddPropertyTo(made, title, PROP_NAME, DisplayName(), 1153);
        HF::AddPropertyTo(made, title, 80, HF::LVariant(m_parameters.HostName), 1413);
        HF::AddPropertyTo(made, title, 81, QString(), 1169);
        HF::AddPropertyTo(made, title, 71, QString(), 1169);
        HF::AddPropertyTo(made, HF::CATEGORY_INFORMATION, 86, HF::LVariant::EmptyLong(), 129);
        return made;
    }();
    {
        std::lock_guard guard(PropertyMutex());
        list.AssignProperties(properties);
    }
    AssignName(DisplayName());
}

QList<rc::Ptr<HF::LAction>> orbDuckDB_LocalConnection::get_ActionsForMenu() const
{
    return {ActionOpenDatabase(), nullptr, ActionLoadDump(), nullptr, ActionOpenPreferences()};
}

HF::LLazy<QString, false> orbDuckDB_LocalConnection::get_Icon() const
{
    return QStringLiteral(":/icons/connection-duckdb.svg");
}

HF::LLazy<QString, false> orbDuckDB_LocalConnection::get_Info() const
{
    return QObject::tr("DuckDB %1 Engine").arg(EngineVersionString());
}

HF::LLazy<QString, false> orbDuckDB_LocalConnection::get_Tip() const
{
    static const QString tip =
        QObject::tr("DuckDB Embedded Engine Version %1.\nThis connection is used for local DuckDB databases.")
            .arg(EngineVersionString());
    return tip;
}

QPointer<QWidget> orbDuckDB_LocalConnection::CreateEditor(QPointer<QWidget> parent)
{
    return new orbDuckDB_LocalConnectionPrefsWidget(rc::self(this), parent);
}

HF::LLazy<RcList<HF::I_LSchemaObject>, true>
orbDuckDB_LocalConnection::CreateChildObjectDialog(HF::ELObjectType type)
{
    RcList<HF::I_LSchemaObject> created;
    if (Makers().createDatabaseDialog)
        if (const rc::Ptr<HF::I_LDatabase> database = Makers().createDatabaseDialog(rc::self(this)))
            created.append(rc::Ref(database));
    return created;
}

const HF::LDatabaseEngine& orbDuckDB_LocalConnection::get_Engine() const
{
    return orbDuckDB_Engine::Instance();
}

QStringList orbDuckDB_LocalConnection::get_FileExtensions() const
{
    QStringList extensions{"duckdb", "db", "ddb"};
    const QString preferred = uik::settings().value("/DuckDB/DefaultExtension", "duckdb").toString();
    if (!extensions.contains(preferred))
        extensions.append(preferred);
    return extensions;
}

rc::Ptr<HF::LRecentsList> orbDuckDB_LocalConnection::get_RecentDatabases() const
{
    return m_recents;
}

bool orbDuckDB_LocalConnection::CanOpenPath(const QString& path) const
{
    // A file that is open in this process must not be opened for a look: closing
    // it would drop the engine's lock on it.
    return IsInMemoryLocation(path) || IsCloudLocation(path)
           || nub::orbsql::IsFileOpen(KernelText::FromQString(path)) || HasStorageMagic(path);
}

HF::LLazy<rc::Ptr<HF::I_LDatabase>, true>
orbDuckDB_LocalConnection::CreateDatabase(const QString& name, const QHash<QString, QVariant>& options)
{
    const rc::Weak<orbDuckDB_LocalConnection> weak(rc::self(this));
    return HF::LLazy<rc::Ptr<HF::I_LDatabase>, true>::FromBody([weak, name, options]() -> rc::Ptr<HF::I_LDatabase> {
        const rc::Ptr<orbDuckDB_LocalConnection> connection = weak.lock();
        if (!connection)
            return nullptr;
        try {
            return connection->RunCreateDatabase(name, options);
        } catch (const nub::xException& error) {
            HF::LogError(KernelText::ToQString(error.get_Message()));
            return nullptr;
        }
    });
}

rc::Ptr<HF::I_LDatabase> orbDuckDB_LocalConnection::RunCreateDatabase(QString name,
                                                                      const QHash<QString, QVariant>& options)
{
    int kind = options.value(QStringLiteral("location")).toInt();
    if (name.startsWith(QLatin1String(":memory:"))) {
        name.remove(0, 7); // the colon behind the word stays and begins the name
        kind = 1;
    }
    const orbDuckDB_Makers::Engine engine = nub::orbsql::CreateDuckDBDatabase(
        KernelText::ToLocation(kind == 1 ? QStringLiteral(":memory:") : name));
    if (kind == 0 && engine->Exists()) {
        HF::LogError(QObject::tr("Database '%1' already exists!").arg(get_Name()));
        return nullptr;
    }
    engine->Create();
    const HF::LLazy<orbDuckDB_Makers::Engine, false> handle(engine);
    const rc::Ref<HF::LDatabase> database = Makers().database(rc::self(this), engine, handle, kind, name);
    database->AddToRecents();
    database->RemoveExternalProperty(QString());
    AddDatabase(database);
    return database;
}

void orbDuckDB_LocalConnection::AddDatabase(const rc::Ref<HF::I_LDatabase>& database)
{
    m_databases->AddChildBack(database);
}

QPointer<QWidget> orbDuckDB_LocalConnection::CreateDumpOptionsWidget(int format) const
{
    if (format != HF::DUMP_KIND_SQL || !Makers().loadDumpOptions)
        return nullptr;
    return Makers().loadDumpOptions();
}
