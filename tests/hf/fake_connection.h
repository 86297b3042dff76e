// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "hf/connection_databases_list.h"
#include "hf/database.h"
#include "hf/engine.h"
#include "hf/plugin.h"

/// A factory, its connections and databases without an engine below.
namespace HF::test {

class FakeEngine final : public LDatabaseEngine
{
public:
    static const FakeEngine& Instance()
    {
        static const FakeEngine engine;
        return engine;
    }
};

/// Answers every text with the same results.
class FakeQuery final : public I_LSqlQuery
{
public:
    explicit FakeQuery(QList<LQueryResult> answers) : m_answers(std::move(answers)) {}
    const LDatabaseEngine& get_Engine() const override { return FakeEngine::Instance(); }
    void Interrupt() override {}
    void SetInterruptible(bool) override {}
    QList<LQueryResult> Execute(const QString&, int, const RcList<I_LSqlValue>&) override { return m_answers; }
    LQueryResult Prepare(const QString&, int) override { return {}; }

private:
    QList<LQueryResult> m_answers;
};

class FakeDatabase final : public LDatabase
{
public:
    FakeDatabase(const rc::Ref<I_LConnection>& connection, const QString& path) : LDatabase(connection, path)
    {
        AssignName(path);
    }

    bool get_IsLocal() const override { return true; }
    LLazy<bool, true> get_IsReadOnly() const override { return false; }
    LLazy<bool, true> Open() override { return true; }
    LLazy<bool, true> Close() override
    {
        MarkClosing();
        if (const rc::Ptr<LTreeItem> parent = get_ParentObject())
            parent->DeleteChild(rc::self<LTreeItem>(this));
        return true;
    }
    LLazy<void, true> Flush() override { return {}; }
    LLazy<bool, true> ThrowOut() override { return false; }
    rc::Ref<I_LSqlQuery> MakeSqlQuery() override { return rc::make<FakeQuery>(answers); }

    using LDatabase::MarkClosing;

    QList<LQueryResult> answers;
    int identFetches = 0;

protected:
    LLazy<QList<LIdent>, false> FetchIdents() override
    {
        return LLazy<QList<LIdent>, false>::FromBody([this] {
            ++identFetches;
            return QList<LIdent>(1);
        });
    }
    LLazy<QList<LIdent>, false> FetchSystemIdents() override { return QList<LIdent>(); }
};

/// Opens every location but those that begin with "bad".
class FakeHandler final : public I_LConnectionHandler
{
public:
    explicit FakeHandler(const rc::Ref<I_LConnectionFactory>& factory) : m_factory(factory) {}
    rc::Ref<I_LConnectionFactory> GetFactory() const override { return m_factory; }
    LConnectionParameters GetParameters() const override { return m_parameters; }
    QString GetLastError() const override
    {
        return Fails() ? QStringLiteral("cannot open ") + m_parameters.Location.ToQString() : QString();
    }
    bool IsOpened() const override { return !m_parameters.Location.empty(); }
    LLazy<rc::Ref<I_LConnectionHandler>, false> Clone() override { return rc::self<I_LConnectionHandler>(this); }
    bool IsBusy() const override { return false; }
    LLazy<bool, true> Open(const LConnectionParameters& parameters) override
    {
        m_parameters = parameters;
        return !Fails();
    }

private:
    bool Fails() const { return m_parameters.Location.startsWith(u"bad"); }

    rc::Ref<I_LConnectionFactory> m_factory;
    LConnectionParameters m_parameters;
};

class FakeConnection final : public LConnection
{
public:
    FakeConnection(const rc::Ref<LConnectionFactory>& factory, const rc::Ref<I_LConnectionHandler>& handler)
        : LConnection(factory, handler), m_parameters(handler->GetParameters())
    {
        static const LSchemaItemListInfo info = [] {
            LSchemaItemListInfo made;
            made.type = TYPE_DATABASE;
            made.word = QStringLiteral("database");
            return made;
        }();
        const auto databases = rc::make<LConnectionDatabasesList>(info, rc::self(this));
        m_databases = databases;
        AddChildList(databases);
        AssignName(QStringLiteral("fake"));
    }

    const LDatabaseEngine& get_Engine() const override { return FakeEngine::Instance(); }
    LLazy<bool, false> get_IsConnected() const override { return true; }
    int get_Capabilities() const override { return 0; }
    rc::Ref<I_LConnectionHandler> get_ConnectionHandler() const override { return get_Factory()->CreateHandler(); }
    const LConnectionParameters& get_ConnectionParameters() const override { return m_parameters; }
    QStringList get_FileExtensions() const override { return {QStringLiteral("fake")}; }
    bool get_IsLocal() const override { return true; }
    QString get_LiteralQuote() const override { return QStringLiteral("'"); }
    rc::Ptr<LRecentsList> get_RecentDatabases() const override;
    LLazy<int, false> get_Version() const override { return 0; }
    LLazy<rc::Ptr<I_LDatabase>, true> CreateDatabase(const QString&, const QHash<QString, QVariant>&) override
    {
        return rc::Ptr<I_LDatabase>();
    }
    bool CanOpenPath(const QString&) const override { return true; }

    void Add(const rc::Ref<I_LDatabase>& database) { m_databases->AddChildBack(database); }

private:
    LConnectionParameters m_parameters;
};

class FakeFactory final : public LConnectionFactory
{
public:
    FakeFactory() : LConnectionFactory(QStringLiteral("fakes")) {}

    int GetFactoryId() const override { return 1; }
    LLazy<bool, false> get_IsConnected() const override { return true; }
    LLazy<LConnectionResult, true> Connect(const rc::Ref<I_LConnectionHandler>& handler) override
    {
        const LConnectionParameters parameters = handler->GetParameters();
        const RcList<I_LConnection> known = get_Connections(parameters.WorkspaceId.ToQString());
        const auto connection =
            known.isEmpty() ? rc::make<FakeConnection>(rc::self<LConnectionFactory>(this), handler)
                            : rc::Ref<FakeConnection>(rc::cast<FakeConnection>(known.first()));
        if (parameters.Location.empty())
            return LConnectionResult{connection, nullptr};
        opened.append(parameters.Location.ToQString());
        tokens.append(parameters.AccessToken.ToQString());
        const auto database = rc::make<FakeDatabase>(connection, parameters.Location.ToQString());
        connection->Add(database);
        return LConnectionResult{connection, database};
    }
    rc::Ref<I_LConnectionHandler> CreateHandler() const override
    {
        return rc::make<FakeHandler>(rc::self<I_LConnectionFactory>(const_cast<FakeFactory*>(this)));
    }
    QPointer<I_LConnectPane> CreateConnectPane(QWidget*, QPointer<QWidget>) const override { return nullptr; }
    int ProbeLocation(const LConnectionParameters&) const override { return PROBE_REACHABLE; }
    const LDatabaseEngine& get_Engine() const override { return FakeEngine::Instance(); }

    QStringList opened, tokens;
};

} // namespace HF::test
