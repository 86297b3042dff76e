// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "hf/connection_factory.h"
#include "nub/orbsql/duckdb_database.h"

#include <mutex>

/// Turns parameters into an open engine. An engine that nobody took is closed
/// with the handler. Any thread; everything but IsBusy waits for an Open that runs.
class orbDuckDB_LocalConnectionHandler final : public HF::I_LConnectionHandler
{
public:
    orbDuckDB_LocalConnectionHandler() = default;
    ~orbDuckDB_LocalConnectionHandler() override;

    rc::Ref<HF::I_LConnectionFactory> GetFactory() const override;
    HF::LConnectionParameters GetParameters() const override;
    QString GetLastError() const override;
    /// True once parameters with a location were opened, also when that failed.
    bool IsOpened() const override;
    HF::LLazy<rc::Ref<HF::I_LConnectionHandler>, false> Clone() override;
    bool IsBusy() const override;
    /// The open runs on the thread that forces the lazy or drops it last. Throws
    /// std::logic_error on a handler that is being destroyed.
    HF::LLazy<bool, true> Open(const HF::LConnectionParameters& parameters) override;

    /// See EngineVersionNumber; the handler need not be open.
    HF::LLazy<int, false> get_Version() const;
    /// Hands the open engine over and keeps none; null when there is none.
    nub::smart_ptr<nub::orbsql::I_DuckDBDatabase> TakeEngine();

private:
    bool RunOpen(const HF::LConnectionParameters& parameters);
    void OpenEngine(const HF::LConnectionParameters& asked, const HF::LConnectionParameters& effective);
    void ApplyPreferences();

    mutable std::recursive_mutex m_lock;
    nub::smart_ptr<nub::orbsql::I_DuckDBDatabase> m_engine;
    QString m_lastError;
    HF::LConnectionParameters m_parameters;
};
