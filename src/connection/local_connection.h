// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "connection/connection_factory.h"
#include "connection/dumpable_connection.h"
#include "engine/engine_interfaces.h"

#include "hf/database.h"

class orbDuckDB_RecentDatabases;

/// The node under which the DuckDB databases of a workspace hang. Lives as long
/// as the factory. Its own parameters are those of the first handler of the
/// workspace. Any thread, but for what makes widgets.
class orbDuckDB_LocalConnection final : public HF::LConnection,
                                        public orb_I_DumpableConnection,
                                        public orb_I_EngineWords
{
public:
    orbDuckDB_LocalConnection(const rc::Ref<orbDuckDB_LocalConnectionFactory>& factory,
                              const rc::Ref<orbDuckDB_LocalConnectionHandler>& handler);
    ~orbDuckDB_LocalConnection() override;

    // Tree
    QList<rc::Ptr<HF::LAction>> get_ActionsForMenu() const override;
    HF::LLazy<QString, false> get_Icon() const override;
    HF::LLazy<QString, false> get_Info() const override;
    HF::LLazy<QString, false> get_Tip() const override;
    QPointer<QWidget> CreateEditor(QPointer<QWidget> parent) override;
    /// Runs the dialog that creates a database, whatever the type.
    HF::LLazy<RcList<HF::I_LSchemaObject>, true> CreateChildObjectDialog(HF::ELObjectType type) override;

    // Connection
    rc::Ptr<HF::I_LDatabase> get_Database() const override { return nullptr; }
    const HF::LDatabaseEngine& get_Engine() const override;
    HF::LLazy<bool, false> get_IsConnected() const override { return true; }
    int get_Capabilities() const override { return 52035; }
    rc::Ref<HF::I_LConnectionHandler> get_ConnectionHandler() const override { return m_handler; }
    const HF::LConnectionParameters& get_ConnectionParameters() const override { return m_parameters; }
    QStringList get_FileExtensions() const override;
    bool get_IsLocal() const override { return true; }
    QString get_LiteralQuote() const override { return QStringLiteral("'"); }
    rc::Ptr<HF::LRecentsList> get_RecentDatabases() const override;
    HF::LLazy<int, false> get_Version() const override { return m_handler->get_Version(); }
    /// Option "location": 0 a file that must not exist, 1 in memory, 2 at the path
    /// whatever is there. Null when it failed; the reason is in the error log.
    HF::LLazy<rc::Ptr<HF::I_LDatabase>, true> CreateDatabase(const QString& name,
                                                             const QHash<QString, QVariant>& options) override;
    bool CanOpenPath(const QString& path) const override;

    QPointer<QWidget> CreateDumpOptionsWidget(int format) const override;

    HF::LLazy<HF::LDatabaseKeywords, false> get_KeywordsLazy() const override { return m_keywords; }
    HF::LLazy<HF::LSQLFunctions, false> get_FunctionsLazy() const override { return m_functions; }

    /// Hangs a database under this node.
    void AddDatabase(const rc::Ref<HF::I_LDatabase>& database);

private:
    void CreateProperties(HF::LHasProperties::Properties& list);
    rc::Ptr<HF::I_LDatabase> RunCreateDatabase(QString name, const QHash<QString, QVariant>& options);

    rc::Ref<orbDuckDB_LocalConnectionHandler> m_handler;
    HF::LConnectionParameters m_parameters;
    HF::LLazy<HF::LSQLFunctions, false> m_functions;
    HF::LLazy<HF::LDatabaseKeywords, false> m_keywords;
    rc::Ptr<orbDuckDB_RecentDatabases> m_recents;
};
