// SPDX-License-Identifier: GPL-3.0-or-later
#include "cli/host_session.h"

#include "cli/command_line.h"
#include "cli/console.h"

#include "hf/background.h"
#include "hf/engine.h"
#include "hf/log.h"
#include "script/connect_scripts.h"

#include <QCoreApplication>
#include <QObject>

namespace orbis {

std::unique_ptr<HostSession> HostSession::Load(const CommandLine& line)
{
    HF::SetErrorLogSink([](const QString& text) { Console::Instance().Error(text); });
    const QString beside = QCoreApplication::applicationDirPath() + QStringLiteral("/orb_duckdb.so");
    HF::LLoadedPlugin loaded = HF::LoadPlugin(line.Value(QStringLiteral("plugin"), beside));
    if (!loaded.plugin) {
        Console::Instance().Error(loaded.error);
        return nullptr;
    }
    const RcList<HF::I_LConnectionFactory> factories = loaded.plugin->GetConnectionFactories();
    for (const rc::Ref<HF::I_LConnectionFactory>& factory : factories) {
        if (factory->GetFactoryId() == HF::FACTORY_DUCKDB) {
            loaded.plugin->HostStarted();
            return std::unique_ptr<HostSession>(
                new HostSession(std::move(loaded.plugin), factory, line));
        }
    }
    Console::Instance().Error(QObject::tr("the plug-in offers no DuckDB"));
    return nullptr;
}

HostSession::HostSession(std::unique_ptr<HF::I_LPlugin> plugin, const rc::Ref<HF::I_LConnectionFactory>& factory,
                         const CommandLine& line)
    : m_plugin(std::move(plugin))
    , m_factory(factory)
    , m_preScript(line.Value(QStringLiteral("pre-script")))
    , m_postScript(line.Value(QStringLiteral("post-script")))
    , m_readOnly(line.Has(QStringLiteral("read-only")))
{
    // Standard output is for data.
    m_scripts = std::make_unique<ConnectScripts>(
        factory, [](const QString& words, bool) { Console::Instance().Say(words); });
}

HostSession::~HostSession()
{
    m_words.Force(); // the program must not end while a worker reads them
    Close();
    m_plugin->HostStopping();
}

rc::Ptr<HF::I_LConnection> HostSession::get_Connection() const
{
    return m_factory->Connect(m_factory->CreateHandler()).Force().Connection;
}

HF::LConnectionParameters HostSession::MakeParameters(const QString& location) const
{
    HF::LConnectionParameters parameters;
    parameters.FactoryId = HF::FACTORY_DUCKDB;
    parameters.Location = weft::String(location);
    parameters.ReadOnly = m_readOnly;
    parameters.PreScript = weft::String(m_preScript);
    parameters.PostScript = weft::String(m_postScript);
    return parameters;
}

void HostSession::ReadWordsAhead()
{
    m_words = get_Engine().GetKeywords(get_Connection());
    HF::RunOnWorker([words = m_words] { words.Force(); });
}

rc::Ptr<HF::I_LDatabase> HostSession::Open(const QString& location)
{
    Console& console = Console::Instance();
    if (location.isEmpty()) {
        console.Error(QObject::tr("the name of the database is empty"));
        return nullptr;
    }
    const int errors = console.get_ErrorCount();
    const rc::Ref<HF::I_LConnectionHandler> handler = m_factory->CreateHandler();
    const bool opened = handler->Open(MakeParameters(location)).Force();
    if (opened)
        m_database = m_factory->Connect(handler).Force().Database;
    if (!m_database) {
        if (const QString error = handler->GetLastError(); !error.isEmpty())
            console.Error(error);
        else if (console.get_ErrorCount() == errors)
            console.Error(QObject::tr("cannot open \"%1\"").arg(location));
    }
    return m_database;
}

bool HostSession::Close()
{
    if (!m_database)
        return true;
    const rc::Ptr<HF::I_LDatabase> database = m_database;
    m_database.reset();
    return database->Close().Force();
}

} // namespace orbis
