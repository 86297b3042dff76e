// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "connection/connection_handler.h"

#include <mutex>

class orbDuckDB_LocalConnection;

/// The object that the host knows DuckDB by: makes handlers and panes, and turns
/// an opened handler into a connection with a database. Any thread.
class orbDuckDB_LocalConnectionFactory final : public HF::LConnectionFactory
{
public:
    orbDuckDB_LocalConnectionFactory();

    HF::LLazy<QString, false> get_Icon() const override;
    const HF::LDatabaseEngine& get_Engine() const override;
    const HF::LDatabaseEngine* get_DatabaseEngine() const override { return &get_Engine(); }
    HF::LLazy<bool, false> get_IsConnected() const override { return true; }
    int GetFactoryId() const override { return HF::FACTORY_DUCKDB; }
    /// Does everything before it returns; the lazy is done. A location that is
    /// open already gives its database, and the handler keeps its engine.
    HF::LLazy<HF::LConnectionResult, true> Connect(const rc::Ref<HF::I_LConnectionHandler>& handler) override;
    rc::Ref<HF::I_LConnectionHandler> CreateHandler() const override;
    QPointer<HF::I_LConnectPane> CreateConnectPane(QWidget* dialog, QPointer<QWidget> parent) const override;
    int ProbeLocation(const HF::LConnectionParameters& parameters) const override;

private:
    rc::Ptr<orbDuckDB_LocalConnection> ConnectionFor(const QString& workspace,
                                                     const rc::Ref<HF::I_LConnectionHandler>& handler);
    HF::LConnectionResult ConnectDatabase(const rc::Ref<orbDuckDB_LocalConnection>& connection,
                                          const rc::Ref<HF::I_LConnectionHandler>& handler,
                                          const HF::LConnectionParameters& parameters);

    // The first is released before the second is taken; the second may be held
    // across a turn of the event loop, which may connect again.
    std::recursive_mutex m_connectionsLock;
    std::recursive_mutex m_databasesLock;
};

/// The factory of the process, built on the first call together with its default
/// connection; never released. Any thread.
rc::Ref<orbDuckDB_LocalConnectionFactory> ConnectionFactoryInstance();
