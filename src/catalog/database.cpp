// SPDX-License-Identifier: GPL-3.0-or-later
#include "catalog/database.h"

#include "catalog/database_queries.h"
#include "catalog/idents.h"
#include "catalog/schemas_list.h"
#include "connection/location.h"
#include "data/sql_query.h"
#include "engine/engine_version.h"
#include "engine/kernel_text.h"
#include "hf/app_controller.h"
#include "hf/log.h"
#include "hf/recents.h"
#include "hf/services.h"
#include "hf/sql_text.h"

#include <QFileInfo>
#include <QThreadPool>

namespace {

using BoolLazy = HF::LLazy<bool, true>;

QString DefaultSchemasKey()
{
    return QLatin1String("Own/") + HF::LPropertyID::GetPropertyName(PROP_SEARCH_PATH);
}

/// The engine has no name for a database in memory, its path argument may have.
QString DisplayName(const orbDuckDB_Database::Engine& engine, const QString& path)
{
    const QString enginePath = engine ? KernelText::ToQString(engine->get_Path()) : path;
    if (enginePath == QLatin1String(":memory:") && path != enginePath)
        return path;
    const QFileInfo file(enginePath);
    const QString name = file.baseName();
    return name.isEmpty() ? file.fileName() : name;
}

template <class Body>
HF::LLazy<QList<HF::LIdent>, false> IdentsBody(orbDuckDB_Database* database, Body query)
{
    return HF::LLazy<QList<HF::LIdent>, false>::FromBody([weak = rc::Weak<orbDuckDB_Database>(database), query] {
        const rc::Ptr<orbDuckDB_Database> alive = weak.lock();
        if (!alive)
            return QList<HF::LIdent>();
        return ReadIdents(alive->SqlSelect(query(), HF::QUERY_DEFAULT, {}, HF::CURSOR_CLIENT,
                                           HF::LOCK_OPTIMISTIC, HF::CURSOR_FORWARD));
    });
}

/// From 1.1 on the names of a path are joined by the one character that no name can hold.
QString WithExactPaths(const char* query)
{
    QString text = QString::fromLatin1(query);
    if (EngineVersionNumber() >= 10100)
        text.replace(QLatin1String("'\n'"), QLatin1String("chr(0)")).replace(QLatin1String("fld_ident"), QLatin1String("fld_path"));
    return text;
}

/// Brackets the kernel use of a worker of the thread pool.
class KernelThread
{
public:
    KernelThread() { nub::OrbisThreadInit(); }
    ~KernelThread() { nub::OrbisThreadShutDown(); }
};

} // namespace

orbDuckDB_Database::orbDuckDB_Database(const rc::Ref<HF::I_LConnection>& connection, const Engine& engine,
                                       const EngineLazy& handle, int storageKind, const QString& path)
    : LDatabase(connection, path), m_engine(handle),
      m_storageKind(IsInMemoryLocation(path) ? int(InMemory) : storageKind)
{
    AddChildList(rc::make<orbDuckDB_SchemasList>(rc::self<HF::I_LSchemaObject>(this)));
    AssignName(DisplayName(engine, path));
    const QVariant defaultSchemas = get_ExternalProperty(DefaultSchemasKey(), QVariant());
    if (defaultSchemas.isValid())
        orbDuckDB_Database::ApplyPropertyValue(PROP_SEARCH_PATH, defaultSchemas.toStringList()).Force();
    InitVirtualLinks();
}

orbDuckDB_Database::~orbDuckDB_Database()
{
    EndWarming();
}

// Properties

std::optional<QStringList> orbDuckDB_Database::get_SearchPathCache() const
{
    const std::lock_guard guard(m_searchPathMutex);
    return m_searchPathCache;
}

void orbDuckDB_Database::put_SearchPathCache(const std::optional<QStringList>& names)
{
    const std::lock_guard guard(m_searchPathMutex);
    m_searchPathCache = names;
}

void orbDuckDB_Database::NotifyPropertyChanged(int id)
{
    if (id == PROP_SEARCH_PATH)
        put_SearchPathCache(std::nullopt);
    LDatabase::NotifyPropertyChanged(id);
}

BoolLazy orbDuckDB_Database::ApplyPropertyValue(int id, const HF::LVariant& value)
{
    const BoolLazy applied = LDatabase::ApplyPropertyValue(id, value);
    if (id != PROP_SEARCH_PATH)
        return applied;
    const auto keep = [weak = rc::Weak<orbDuckDB_Database>(this), value](bool done) {
        const rc::Ptr<orbDuckDB_Database> database = weak.lock();
        if (done && database) {
            database->put_SearchPathCache(std::nullopt);
            database->put_ExternalProperty(DefaultSchemasKey(), value.ToStringList()).Force();
        }
        return done;
    };
    if (applied.IsResolved())
        return keep(applied.Force());
    return applied.Map(keep);
}

BoolLazy orbDuckDB_Database::UpdatePropertyImpl(int id)
{
    if (id == PROP_SEARCH_PATH) {
        const QString text =
            HF::EvaluateSQL(rc::self<HF::I_LDatabase>(this), QString::fromLatin1(Queries::SearchPath)).value_or(QString());
        QStringList names;
        if (!text.isEmpty())
            names = text.split(u',');
        names.removeDuplicates();
        AssignPropertyValue(PROP_SEARCH_PATH, names);
        put_SearchPathCache(std::nullopt);
        return true;
    }
    if (id == PROP_PATH) {
        AssignPropertyValue(PROP_PATH, get_Path());
        SetPropertyFlag(PROP_PATH, HF::PROPERTY_HIDDEN, get_Path().isEmpty());
        return true;
    }
    return LDatabase::UpdatePropertyImpl(id);
}

HF::LLazy<QString, false> orbDuckDB_Database::get_Icon() const
{
    const rc::Ptr<HF::I_LConnection> connection = get_Connection();
    if (connection && connection->get_IsFileBased() && m_storageKind != OnDisk)
        return QStringLiteral(":/icons/office-database.svg\n:/icons/sign-clock.svg");
    return QStringLiteral(":/icons/office-database.svg");
}

bool orbDuckDB_Database::CanBeOpenedAgain() const
{
    return m_storageKind != InMemory || IsInMemoryLocation(get_Path());
}

QString orbDuckDB_Database::get_CatalogName() const
{
    {
        const std::lock_guard guard(m_catalogMutex);
        if (!m_catalogName.isEmpty())
            return m_catalogName;
    }
    auto* const database = const_cast<orbDuckDB_Database*>(this); // a read of what does not change
    const QString name =
        HF::EvaluateSQL(rc::self<HF::I_LDatabase>(database), QString::fromLatin1(Queries::CurrentCatalog)).value_or(QString());
    const std::lock_guard guard(m_catalogMutex);
    m_catalogName = name;
    return name.isEmpty() ? get_Name() : name;
}

rc::Ptr<HF::I_LCursor> orbDuckDB_Database::SelectCatalog(const QString& text)
{
    constexpr int flags = HF::QUERY_BACKGROUND | HF::QUERY_SILENT_ERROR;
    const auto select = [&](const QString& query, QString& error) -> rc::Ptr<HF::I_LCursor> {
        const QList<HF::LQueryResult> results =
            SqlQuery(query, flags, {}, HF::CURSOR_CLIENT, HF::LOCK_OPTIMISTIC, HF::CURSOR_FORWARD);
        if (!HF::IsQuerySuccess(results)) {
            error = HF::GetQueryErrors(results);
            return nullptr;
        }
        return results.last().Cursor;
    };
    QString error;
    if (const rc::Ptr<HF::I_LCursor> cursor = select(text, error))
        return cursor;
    if (error.contains(QLatin1String("does not exist"))) {
        const rc::Ref<HF::I_LSqlQuery> query = MakeSqlQuery();
        const rc::Ptr<rc::RefCounted> hold = query->HoldSession(); // nobody else sees the other path
        QString ignored;
        const rc::Ptr<HF::I_LCursor> paths = select(QString::fromLatin1(Queries::WidePath), ignored);
        if (paths && paths->FirstRecord()) {
            const auto set = [&](int column) {
                return HF::IsQuerySuccess(SqlQuery(QLatin1String("SET search_path = ")
                                                       + HF::QuoteText(paths->get_Field(column)->get_String()),
                                                   flags | HF::QUERY_NO_LOG, {}, HF::CURSOR_CLIENT, HF::LOCK_OPTIMISTIC,
                                                   HF::CURSOR_FORWARD));
            };
            if (set(1)) {
                const rc::Ptr<HF::I_LCursor> cursor = select(text, error);
                if (!set(0))
                    set(0); // an interrupt may have met the first one
                if (cursor)
                    return cursor;
            }
        }
    }
    HF::LogError(error);
    return nullptr;
}

rc::Ref<HF::I_LSqlQuery> orbDuckDB_Database::MakeSqlQuery()
{
    return rc::make<orbDuckDB_SqlQuery>(get_Connection(), rc::self<HF::I_LDatabase>(this), m_engine.Force());
}

HF::LLazy<QList<HF::LIdent>, false> orbDuckDB_Database::FetchIdents()
{
    return IdentsBody(this, [] {
        static const QString text = WithExactPaths(Queries::Idents);
        return text;
    });
}

HF::LLazy<QList<HF::LIdent>, false> orbDuckDB_Database::FetchSystemIdents()
{
    return IdentsBody(this, [] {
        static const QString text = WithExactPaths(
            EngineVersionNumber() < 10200 ? Queries::SystemIdents : Queries::SystemIdentsSince102);
        return text;
    });
}

// Open, closed, gone

BoolLazy orbDuckDB_Database::Open()
{
    const auto isOpen = [](const Engine& engine) { return bool(engine); };
    return m_engine.IsResolved() ? BoolLazy(isOpen(m_engine.Force())) : m_engine.MapAs<true>(isOpen);
}

BoolLazy orbDuckDB_Database::get_IsReadOnly() const
{
    const auto isReadOnly = [](const Engine& engine) { return !engine || engine->IsReadOnly(); };
    return m_engine.IsResolved() ? BoolLazy(isReadOnly(m_engine.Force())) : m_engine.MapAs<true>(isReadOnly);
}

/// The parent's list lets the database go; without a parent it cuts its ties itself.
void orbDuckDB_Database::LeaveParent()
{
    const rc::Ref<HF::LTreeItem> self = rc::self<HF::LTreeItem>(this);
    if (const rc::Ptr<HF::LTreeItem> parent = get_ParentObject())
        parent->DeleteChild(self);
    if (!IsDetached())
        Detach();
}

BoolLazy orbDuckDB_Database::Close()
{
    return BoolLazy::FromBody([weak = rc::Weak<orbDuckDB_Database>(this)] {
        const rc::Ptr<orbDuckDB_Database> database = weak.lock();
        return database && database->CloseNow();
    });
}

bool orbDuckDB_Database::CloseNow()
{
    MarkClosing();
    if (m_storageKind != OnDisk)
        DeleteSettings();
    DetachObservers();
    NotifyScriptWatchers(HF::SCRIPT_EVENT_CLOSING);
    if (!m_engine.IsResolved())
        return true;
    EndWarming();
    try {
        if (const Engine engine = m_engine.Force())
            engine->Close();
    } catch (...) {
        return false;
    }
    LeaveParent();
    return true;
}

BoolLazy orbDuckDB_Database::ThrowOut()
{
    return BoolLazy::FromBody([weak = rc::Weak<orbDuckDB_Database>(this)] {
        const rc::Ptr<orbDuckDB_Database> database = weak.lock();
        return database && database->ThrowOutNow();
    });
}

bool orbDuckDB_Database::ThrowOutNow()
{
    MarkClosing();
    DetachObservers();
    NotifyScriptWatchers(HF::SCRIPT_EVENT_CLOSING);
    const rc::Ptr<HF::I_LConnection> connection = get_Connection();
    bool done = false;
    if (const Engine engine = m_engine.Force()) {
        EndWarming();
        try {
            if (engine->IsOpen())
                engine->Close();
            if (m_storageKind == OnDisk)
                engine->ThrowOut();
            done = true;
        } catch (const nub::xException& failure) {
            HF::LogError(KernelText::ToQString(failure.get_Message()));
        }
        if (done) {
            DeleteSchemaCache();
            DeleteSettings();
            HF::AppCtrlInstance().DropDatabase(rc::self<HF::I_LDatabase>(this));
            if (connection && connection->get_IsFileBased())
                if (const rc::Ptr<HF::LRecentsList> recents = connection->get_RecentDatabases())
                    recents->DeleteRecentByData(HF::AbsoluteLocation(get_Path()));
        }
    }
    LeaveParent();
    if (connection)
        connection->UpdateChildObjectsLater(HF::TYPE_DATABASE);
    return done;
}

HF::LLazy<void, true> orbDuckDB_Database::Flush()
{
    const std::lock_guard guard(m_flushMutex);
    if (m_flushTask.IsResolved()) {
        m_flushTask = HF::LLazy<void, true>::FromBody([weak = rc::Weak<orbDuckDB_Database>(this)] {
            if (const rc::Ptr<orbDuckDB_Database> database = weak.lock())
                database->SqlQuery(QString::fromLatin1(EngineVersionNumber() < 10100 ? Queries::Checkpoint
                                                                                     : Queries::CheckpointSince101),
                                   HF::QUERY_SILENT_ERROR, {}, HF::CURSOR_CLIENT, HF::LOCK_OPTIMISTIC,
                                   HF::CURSOR_FORWARD);
        });
        QThreadPool::globalInstance()->start([task = m_flushTask] {
            const KernelThread bracket;
            task.Force();
        });
    }
    return m_flushTask;
}

void orbDuckDB_Database::WarmCatalog()
{
    const std::lock_guard guard(m_warmerMutex);
    if (m_isWarm || get_IsClosing() || !m_engine.IsResolved())
        return;
    m_isWarm = true;
    const Engine engine = m_engine.Force();
    if (!engine)
        return;
    m_warmer = std::thread([engine] {
        const KernelThread bracket;
        try {
            const auto further = Engine::adopt(engine->OpenFurther());
            further->SqlExecute(nub::String::FromUtf8(Queries::AnyColumn), nub::ValueArray());
            further->Close();
        } catch (const nub::xException&) {
            // Whoever asks for the columns will hear of it.
        }
    });
}

/// A session that is still open would keep the file.
void orbDuckDB_Database::EndWarming()
{
    const std::lock_guard guard(m_warmerMutex);
    if (m_warmer.joinable())
        m_warmer.join();
}

rc::Ptr<orbDuckDB_Database> orbDuckDB_Database::OpenFurther()
{
    const Engine engine = m_engine.Force();
    if (!engine)
        return nullptr;
    const auto further = Engine::adopt(engine->OpenFurther());
    const QString catalog =
        HF::EvaluateSQL(rc::self<HF::I_LDatabase>(this), QString::fromLatin1(Queries::CurrentCatalog)).value_or(QString());
    const auto run = [&](const QString& text) { further->SqlExecute(KernelText::FromQString(text), nub::ValueArray()); };
    if (!catalog.isEmpty())
        run(QLatin1String("USE \"") + QString(catalog).replace(u'"', QLatin1String("\"\"")) + u'"');
    const auto database = rc::make<orbDuckDB_Database>(rc::Ref<HF::I_LConnection>(get_Connection()), further,
                                                       EngineLazy(further), m_storageKind, get_Path());
    database->AssignPropertyValueSilent(PROP_SEARCH_PATH, QStringList());
    if (catalog.isEmpty())
        run(QStringLiteral("SET search_path = ''"));
    return database;
}

void orbDuckDB_Database::EndFurther()
{
    try {
        if (const Engine engine = m_engine.Force())
            engine->Close();
    } catch (...) {
    }
    Detach();
}

nub::smart_ptr<nub::orbsql::I_LiteralRows>
orbDuckDB_Database::SelectLiterals(const QString& query, const std::function<bool(char32_t)>& canWrite)
{
    const Engine engine = m_engine.Force();
    if (!engine)
        throw nub::xException("The database is not open");
    return nub::smart_ptr<nub::orbsql::I_LiteralRows>::adopt(
        engine->SelectLiterals(KernelText::FromQString(query), canWrite));
}

void orbDuckDB_Database::InterruptSession()
{
    if (!m_engine.IsResolved())
        return;
    if (const Engine engine = m_engine.Force())
        engine->Interrupt();
}

bool orbDuckDB_Database::Backup(const QString& folder)
{
    const Engine engine = m_engine.Force();
    if (!engine)
        return false;
    try {
        engine->Backup(KernelText::ToLocation(folder));
        return true;
    } catch (const nub::xException& failure) {
        HF::LogError(KernelText::ToQString(failure.get_Message()));
        return false;
    }
}
