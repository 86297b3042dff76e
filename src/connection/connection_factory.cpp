// SPDX-License-Identifier: GPL-3.0-or-later
#include "connection/connection_factory.h"

#include "connection/connect_param_widget.h"
#include "connection/local_connection.h"
#include "connection/location.h"
#include "connection/makers.h"
#include "engine/engine.h"

#include <QFile>

using Result = HF::LConnectionResult;

orbDuckDB_LocalConnectionFactory::orbDuckDB_LocalConnectionFactory()
    : HF::LConnectionFactory(QObject::tr("DuckDB Files"))
{
}

HF::LLazy<QString, false> orbDuckDB_LocalConnectionFactory::get_Icon() const
{
    return QStringLiteral(":/icons/connection-duckdb.svg");
}

const HF::LDatabaseEngine& orbDuckDB_LocalConnectionFactory::get_Engine() const
{
    return orbDuckDB_Engine::Instance();
}

rc::Ref<HF::I_LConnectionHandler> orbDuckDB_LocalConnectionFactory::CreateHandler() const
{
    return rc::make<orbDuckDB_LocalConnectionHandler>();
}

QPointer<HF::I_LConnectPane> orbDuckDB_LocalConnectionFactory::CreateConnectPane(QWidget* dialog,
                                                                                 QPointer<QWidget> parent) const
{
    return new orbDuckDB_LocalConnectParamWidget(dialog, parent);
}

rc::Ptr<orbDuckDB_LocalConnection>
orbDuckDB_LocalConnectionFactory::ConnectionFor(const QString& workspace,
                                                const rc::Ref<HF::I_LConnectionHandler>& handler)
{
    // Nothing in here may ask for the singleton: it may still be being built.
    const auto factory = rc::self(this);
    std::lock_guard guard(m_connectionsLock);
    for (const rc::Ref<HF::I_LConnection>& known : get_Connections(workspace))
        if (const auto connection = rc::cast<orbDuckDB_LocalConnection>(known))
            return connection;
    const auto local = rc::cast<orbDuckDB_LocalConnectionHandler>(handler);
    if (!local)
        return nullptr;
    const auto connection = rc::make<orbDuckDB_LocalConnection>(factory, rc::Ref(local));
    get_Observer()->AttachSubjectSilent(connection);
    return connection;
}

HF::LLazy<Result, true> orbDuckDB_LocalConnectionFactory::Connect(const rc::Ref<HF::I_LConnectionHandler>& handler)
{
    const HF::LConnectionParameters parameters = handler->GetParameters();
    const rc::Ptr<orbDuckDB_LocalConnection> connection = ConnectionFor(parameters.WorkspaceId.ToQString(), handler);
    if (!connection)
        return Result();
    if (parameters.Location.empty())
        return Result{connection, nullptr};
    return ConnectDatabase(rc::Ref(connection), handler, parameters);
}

Result orbDuckDB_LocalConnectionFactory::ConnectDatabase(const rc::Ref<orbDuckDB_LocalConnection>& connection,
                                                         const rc::Ref<HF::I_LConnectionHandler>& handler,
                                                         const HF::LConnectionParameters& parameters)
{
    std::lock_guard guard(m_databasesLock);
    const QString location = parameters.Location.ToQString();
    if (const rc::Ptr<HF::I_LDatabase> known = connection->FindDatabase(location).Force()) {
        parameters.RunPostScript(connection, known);
        return {connection, known};
    }
    if (!handler->IsOpened())
        return {connection, nullptr};

    const auto local = rc::cast<orbDuckDB_LocalConnectionHandler>(handler);
    const orbDuckDB_Makers::Engine engine = local ? local->TakeEngine() : orbDuckDB_Makers::Engine();
    if (!engine) {
        parameters.RunPostScript(connection, nullptr);
        return {connection, nullptr};
    }
    const bool isMemory = location == QLatin1String(":memory:");
    const HF::LLazy<orbDuckDB_Makers::Engine, false> handle(engine);
    const rc::Ref<HF::LDatabase> database = Makers().database(connection, engine, handle, isMemory, location);
    database->AddToRecents();
    connection->AddDatabase(database);
    parameters.RunPostScript(connection, database);
    return {connection, database};
}

int orbDuckDB_LocalConnectionFactory::ProbeLocation(const HF::LConnectionParameters& parameters) const
{
    const QString location = parameters.Location.ToQString();
    const bool reachable = IsCloudLocation(location)
                               ? rc::make<orbDuckDB_LocalConnectionHandler>()->Open(parameters).Force()
                               : QFile::exists(location);
    return reachable ? HF::PROBE_REACHABLE : HF::PROBE_UNREACHABLE;
}

rc::Ref<orbDuckDB_LocalConnectionFactory> ConnectionFactoryInstance()
{
    // On the heap and never released: databases may outlive every static.
    static const auto* const cell = [] {
        const auto factory = rc::make<orbDuckDB_LocalConnectionFactory>();
        factory->Connect(rc::make<orbDuckDB_LocalConnectionHandler>());
        return new rc::Ref<orbDuckDB_LocalConnectionFactory>(factory);
    }();
    return *cell;
}
