// SPDX-License-Identifier: GPL-3.0-or-later
#include "hf/connection.h"

#include "hf/app_controller.h"
#include "hf/connection_databases_list.h"
#include "hf/database.h"
#include "hf/log.h"
#include "hf/object_kinds.h"
#include "weft/prompter.h"

#include <QAction>
#include <QDir>
#include <QFileInfo>
#include <QUrl>

#include <filesystem>

namespace HF {

namespace {

/// A database in memory that a name in the location lets others share.
bool IsSharedMemory(const QString& location)
{
    const qsizetype query = location.startsWith(QLatin1String("file:")) ? location.indexOf(QLatin1Char('?'), 5) : -1;
    return query >= 0 && location.indexOf(QLatin1String("mode=memory"), query) >= 0;
}

bool IsCloud(const QString& location)
{
    return location.startsWith(QLatin1String("md:"));
}

QString FilePath(const QString& location)
{
    return location.startsWith(QLatin1String("file:")) ? QUrl(location).path(QUrl::FullyDecoded) : location;
}

/// True when both name one file, by whatever links and relative ways.
bool IsSameFile(const QString& one, const QString& other)
{
    const QString a = FilePath(one), b = FilePath(other);
    std::error_code error;
    if (std::filesystem::equivalent(a.toStdU16String(), b.toStdU16String(), error) && !error)
        return true;
    return QDir::cleanPath(QFileInfo(a).absoluteFilePath()) == QDir::cleanPath(QFileInfo(b).absoluteFilePath());
}

bool IsSameLocation(const QString& one, const QString& other)
{
    if (one == QLatin1String(":memory:") || other == QLatin1String(":memory:"))
        return false;
    if (one == other)
        return true;
    if (IsSharedMemory(one) || IsSharedMemory(other) || IsCloud(one) || IsCloud(other))
        return false;
    return IsSameFile(one, other);
}

/// The connection that an action was called on: the node itself or its list.
rc::Ptr<LConnection> ConnectionOf(const RcList<LTreeItem>& items)
{
    for (const rc::Ref<LTreeItem>& item : items) {
        if (const rc::Ptr<LConnection> connection = rc::cast<LConnection>(item))
            return connection;
        if (const rc::Ptr<LSchemaItemList> list = rc::cast<LSchemaItemList>(item))
            if (const rc::Ptr<LConnection> connection = rc::cast<LConnection>(list->get_Owner()))
                return connection;
    }
    return nullptr;
}

} // namespace

LConnection::LConnection(const rc::Ref<LConnectionFactory>& factory, const rc::Ref<I_LConnectionHandler>& handler)
    : m_factory(factory)
{
    m_factory->AddConnection(rc::self<I_LConnection>(this), handler->GetParameters().WorkspaceId.ToQString());
}

LConnection::~LConnection() = default;

QString LConnection::get_ObjectTypeName() const
{
    return QString::fromLatin1(OBJECT_CONNECTION);
}

rc::Ptr<I_LConnection> LConnection::get_Connection() const
{
    auto* const self = const_cast<LConnection*>(this);
    return self->TryAddStrong() ? rc::Ptr<I_LConnection>(self, rc::impl::Adopt{}) : rc::Ptr<I_LConnection>();
}

RcList<I_LDatabase> LConnection::get_Databases() const
{
    return m_databases ? m_databases->get_Databases() : RcList<I_LDatabase>();
}

rc::Ptr<I_LDatabase> LConnection::get_ActiveDatabase() const
{
    rc::Ptr<I_LDatabase> active;
    {
        std::lock_guard guard(m_activeMutex);
        active = m_activeDatabase.lock();
    }
    const RcList<I_LDatabase> databases = get_Databases();
    for (const rc::Ref<I_LDatabase>& database : databases)
        if (active == database)
            return active;
    return databases.isEmpty() ? rc::Ptr<I_LDatabase>() : rc::Ptr<I_LDatabase>(databases.first());
}

void LConnection::put_ActiveDatabase(const rc::Ptr<I_LDatabase>& database)
{
    std::lock_guard guard(m_activeMutex);
    m_activeDatabase = database;
}

LLazy<rc::Ptr<I_LDatabase>, false> LConnection::FindDatabase(const QString& location) const
{
    for (const rc::Ref<I_LDatabase>& database : get_Databases())
        if (!database->get_IsClosing() && IsSameLocation(database->get_Path(), location))
            return rc::Ptr<I_LDatabase>(database);
    return rc::Ptr<I_LDatabase>();
}

LLazy<rc::Ptr<I_LDatabase>, true> LConnection::OpenDatabase(const QString& location)
{
    using Result = rc::Ptr<I_LDatabase>;
    return LLazy<Result, true>::FromBody([weak = rc::Weak<LConnection>(rc::self(this)), location]() -> Result {
        const rc::Ptr<LConnection> self = weak.lock();
        if (!self)
            return nullptr;
        if (const Result known = self->FindDatabase(location).Force())
            return known;

        const LConnectionParameters& own = self->get_ConnectionParameters();
        LConnectionParameters parameters;
        parameters.WorkspaceId = own.WorkspaceId;
        parameters.Location = location;
        if (IsCloud(location)) { // an engine in a file refuses to be opened with a token
            parameters.AccessToken = own.AccessToken;
            parameters.UserAgent = own.UserAgent;
        }
        const rc::Ref<I_LConnectionHandler> handler = self->m_factory->CreateHandler();
        Result database;
        if (handler->Open(parameters).Force())
            database = self->m_factory->Connect(handler).Force().Database;
        if (database)
            self->put_ActiveDatabase(database);
        else if (const QString error = handler->GetLastError(); !error.isEmpty())
            LogError(error);
        return database;
    });
}

rc::Ptr<I_LDatabase> LConnection::OpenDatabaseDialog()
{
    QStringList patterns;
    for (const QString& extension : get_FileExtensions())
        patterns.append(QLatin1String("*.") + extension);
    const QString path = weft::file_open_dialog(
        QObject::tr("Open Database"),
        QObject::tr("Database Files (%1);;All Files (*)").arg(patterns.join(QLatin1Char(' '))), QString());
    return path.isEmpty() ? rc::Ptr<I_LDatabase>() : OpenDatabase(path).Force();
}

void LConnection::Close()
{
    for (const rc::Ref<I_LDatabase>& database : get_Databases())
        database->Close().Force();
}

rc::Ptr<LAction> LConnection::get_Action(const QString& id) const
{
    for (const rc::Ref<LAction>& action : {ActionOpenDatabase(), ActionLoadDump(), ActionOpenPreferences()})
        if (action->get_Id() == id)
            return action;
    return I_LConnection::get_Action(id);
}

QList<LQueryResult> LConnection::SqlQuery(const QString& text, int flags, const RcList<I_LSqlValue>& binds,
                                          int location, int lockType, int direction)
{
    const rc::Ptr<I_LDatabase> database = get_ActiveDatabase();
    return database ? database->SqlQuery(text, flags, binds, location, lockType, direction) : QList<LQueryResult>();
}

bool LConnection::SqlExecute(const QString& text)
{
    const rc::Ptr<I_LDatabase> database = get_ActiveDatabase();
    return database && database->SqlExecute(text);
}

rc::Ptr<I_LCursor> LConnection::SqlSelect(const QString& text, int flags, const RcList<I_LSqlValue>& binds,
                                          int location, int lockType, int direction)
{
    const rc::Ptr<I_LDatabase> database = get_ActiveDatabase();
    return database ? database->SqlSelect(text, flags, binds, location, lockType, direction) : rc::Ptr<I_LCursor>();
}

rc::Ref<LAction> LConnection::ActionOpenDatabase()
{
    static const auto action = rc::make<LAction>(
        DO_OPEN_DATABASE, QObject::tr("Open Database..."),
        [](const RcList<LTreeItem>& items, const QVariant&) {
            if (const rc::Ptr<LConnection> connection = ConnectionOf(items))
                connection->OpenDatabaseDialog();
        },
        [](QAction& action, const RcList<LTreeItem>& items, const QVariant&) {
            action.setEnabled(bool(ConnectionOf(items)));
        },
        QStringLiteral(":/icons/database-open.svg"));
    return action;
}

rc::Ref<LAction> LConnection::ActionLoadDump()
{
    static const auto action = rc::make<LAction>(
        DO_DUMP_LOAD, QObject::tr("Load Dump..."),
        [](const RcList<LTreeItem>& items, const QVariant&) {
            I_LApplicationUi* const ui = AppCtrlInstance().get_Ui();
            if (const rc::Ptr<LConnection> connection = ConnectionOf(items); ui && connection)
                ui->StartLoad(rc::Ref(connection));
        },
        [](QAction& action, const RcList<LTreeItem>& items, const QVariant&) {
            action.setVisible(AppCtrlInstance().get_Ui() != nullptr);
            action.setEnabled(bool(ConnectionOf(items)));
        },
        QStringLiteral(":/icons/dump-load.svg"));
    return action;
}

rc::Ref<LAction> LConnection::ActionOpenPreferences()
{
    static const rc::Ref<LAction> action =
        MakeEditorAction(DO_OPEN_PREFERENCES, QObject::tr("Preferences..."), QStringLiteral(":/icons/preferences.svg"));
    return action;
}

} // namespace HF
