// SPDX-License-Identifier: GPL-3.0-or-later
#include "connection/connection_handler.h"

#include "connection/connection_factory.h"
#include "engine/engine_version.h"
#include "engine/kernel_text.h"

#include "hf/database.h"
#include "hf/log.h"
#include "hf/main_thread.h"
#include "hf/services.h"
#include "uik/settings.h"

namespace {

/// Readies a worker thread for kernel calls and releases it at the end.
class KernelThread
{
public:
    KernelThread() : m_worker(!HF::IsMainThread())
    {
        if (!m_worker)
            return;
        try {
            nub::OrbisThreadInit();
        } catch (...) {
        }
    }
    ~KernelThread()
    {
        if (m_worker)
            nub::OrbisThreadShutDown();
    }
    KernelThread(const KernelThread&) = delete;
    KernelThread& operator=(const KernelThread&) = delete;

private:
    const bool m_worker;
};

/// The value of a preference, or nothing. A field that was left empty says nothing.
std::optional<QVariant> Preference(const char* key)
{
    const QVariant value = uik::settings().value(QLatin1String(key));
    if (!value.metaType().isValid() || value.toString().isEmpty())
        return std::nullopt;
    return value;
}

QString PreferencesScript()
{
    QString script;
    if (const auto threads = Preference("/DuckDB/Threads"))
        script += QStringLiteral("SET threads=%1;\n").arg(threads->toInt());
    if (const auto limit = Preference("/DuckDB/MemoryLimit"))
        script += QStringLiteral("SET memory_limit='%1';\n").arg(limit->toString().replace(u'\'', QLatin1String("''")));
    if (const auto limit = Preference("/DuckDB/PivotLimit"))
        script += QStringLiteral("SET pivot_limit=%1;\n").arg(limit->toInt());
    return script;
}

} // namespace

orbDuckDB_LocalConnectionHandler::~orbDuckDB_LocalConnectionHandler()
{
    if (!m_engine)
        return;
    try {
        const nub::smart_ptr<nub::orbsql::I_DuckDBDatabase> engine = m_engine;
        engine->Close();
    } catch (...) {
    }
}

rc::Ref<HF::I_LConnectionFactory> orbDuckDB_LocalConnectionHandler::GetFactory() const
{
    return ConnectionFactoryInstance();
}

HF::LConnectionParameters orbDuckDB_LocalConnectionHandler::GetParameters() const
{
    std::lock_guard guard(m_lock);
    return m_parameters;
}

QString orbDuckDB_LocalConnectionHandler::GetLastError() const
{
    std::lock_guard guard(m_lock);
    return m_lastError;
}

bool orbDuckDB_LocalConnectionHandler::IsOpened() const
{
    std::lock_guard guard(m_lock);
    return !m_parameters.Location.empty();
}

bool orbDuckDB_LocalConnectionHandler::IsBusy() const
{
    if (!m_lock.try_lock())
        return true;
    m_lock.unlock();
    return false;
}

HF::LLazy<rc::Ref<HF::I_LConnectionHandler>, false> orbDuckDB_LocalConnectionHandler::Clone()
{
    using Handler = rc::Ref<HF::I_LConnectionHandler>;
    const auto fresh = rc::make<orbDuckDB_LocalConnectionHandler>();
    const HF::LConnectionParameters parameters = GetParameters();
    if (parameters.Location.empty())
        return Handler(fresh);
    return HF::LLazy<Handler, false>::FromBody([fresh, parameters] {
        fresh->Open(parameters); // dropped, so that it runs here; a failure shows in GetLastError
        return Handler(fresh);
    });
}

HF::LLazy<bool, true> orbDuckDB_LocalConnectionHandler::Open(const HF::LConnectionParameters& parameters)
{
    const rc::Weak<orbDuckDB_LocalConnectionHandler> weak(rc::self(this));
    return HF::LLazy<bool, true>::FromBody([weak, parameters] {
        const rc::Ptr<orbDuckDB_LocalConnectionHandler> handler = weak.lock();
        return handler && handler->RunOpen(parameters);
    });
}

bool orbDuckDB_LocalConnectionHandler::RunOpen(const HF::LConnectionParameters& parameters)
{
    HF::AddStatistic(QStringLiteral("DB/DuckDBLocal"), 1);
    const KernelThread thread;
    HF::LConnectionParameters effective = parameters;
    if (const std::optional<weft::Error> error = effective.RunPreScript()) {
        HF::LogError(error->message().ToQString());
        return false;
    }

    std::lock_guard guard(m_lock);
    m_parameters = parameters;
    m_parameters.FactoryId = HF::FACTORY_DUCKDB;
    m_lastError.clear();
    if (parameters.Location.empty())
        return true;
    try {
        OpenEngine(parameters, effective);
    } catch (const nub::xException& error) {
        m_lastError = KernelText::ToQString(error.get_Message());
        m_engine = nullptr;
        return false;
    } catch (const std::exception& error) {
        m_lastError = QString::fromUtf8(error.what());
        m_engine = nullptr;
        return false;
    }
    ApplyPreferences();
    m_parameters = effective;
    m_parameters.FactoryId = HF::FACTORY_DUCKDB;
    return true;
}

void orbDuckDB_LocalConnectionHandler::OpenEngine(const HF::LConnectionParameters& asked,
                                                  const HF::LConnectionParameters& effective)
{
    m_engine = nub::orbsql::CreateDuckDBDatabase(KernelText::ToLocation(effective.Location.ToQString()));
    if (!asked.AccessToken.empty())
        m_engine->SetMotherDuckAccess(KernelText::FromQString(effective.AccessToken.ToQString()),
                                      KernelText::FromQString(effective.UserAgent.ToQString()));
    m_engine->put_IsReadOnly(effective.ReadOnly);
    m_engine->Open();
}

void orbDuckDB_LocalConnectionHandler::ApplyPreferences()
{
    // A bad preference must not keep a database closed.
    try {
        const QString script = PreferencesScript();
        if (!script.isEmpty())
            m_engine->SqlExecute(KernelText::FromQString(script), nub::ValueArray());
    } catch (...) {
    }
}

HF::LLazy<int, false> orbDuckDB_LocalConnectionHandler::get_Version() const
{
    return HF::LLazy<int, false>::FromBody([] { return EngineVersionNumber(); });
}

nub::smart_ptr<nub::orbsql::I_DuckDBDatabase> orbDuckDB_LocalConnectionHandler::TakeEngine()
{
    std::lock_guard guard(m_lock);
    return std::exchange(m_engine, nullptr);
}
