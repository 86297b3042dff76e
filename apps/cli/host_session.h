// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "hf/database.h"
#include "hf/keywords.h"
#include "hf/plugin.h"

#include <QString>

#include <memory>

namespace orbis {

struct CommandLine;
class ConnectScripts;

/// The driver as the program sees it: the loaded plug-in, its factory, and at
/// most one open database. What fails is told on the error stream. Main thread.
class HostSession
{
public:
    /// Loads the plug-in that the command line names, or the one beside the
    /// program. Null when that fails.
    static std::unique_ptr<HostSession> Load(const CommandLine& line);
    /// Closes what is open.
    ~HostSession();

    HF::I_LPlugin& get_Plugin() const { return *m_plugin; }
    RcList<HF::I_LConnectionFactory> get_Factories() const { return m_plugin->GetConnectionFactories(); }
    const rc::Ref<HF::I_LConnectionFactory>& get_Factory() const { return m_factory; }
    const HF::LDatabaseEngine& get_Engine() const { return m_factory->get_Engine(); }
    /// The connection that local databases hang under; null when the driver has none.
    rc::Ptr<HF::I_LConnection> get_Connection() const;

    HF::LConnectionParameters MakeParameters(const QString& location) const;
    /// Has the engine's words read on a worker: whatever quotes a name asks for them.
    void ReadWordsAhead();
    /// Opens an existing database; null when that fails.
    rc::Ptr<HF::I_LDatabase> Open(const QString& location);
    /// Closes the database; false when that failed.
    bool Close();

private:
    HostSession(std::unique_ptr<HF::I_LPlugin> plugin, const rc::Ref<HF::I_LConnectionFactory>& factory,
                const CommandLine& line);

    std::unique_ptr<HF::I_LPlugin> m_plugin;
    rc::Ref<HF::I_LConnectionFactory> m_factory;
    rc::Ptr<HF::I_LDatabase> m_database;
    HF::LLazy<HF::LDatabaseKeywords, false> m_words;
    std::unique_ptr<ConnectScripts> m_scripts;
    QString m_preScript, m_postScript;
    bool m_readOnly;
};

} // namespace orbis
