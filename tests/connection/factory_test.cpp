// SPDX-License-Identifier: GPL-3.0-or-later
#include "connection/local_connection.h"
#include "connection/place.h"

#include "hf/database.h"
#include "hf/recents.h"

#include <thread>

namespace {

/// A handler of some other engine.
class ForeignHandler final : public HF::I_LConnectionHandler
{
public:
    explicit ForeignHandler(HF::LConnectionParameters parameters) : m_parameters(std::move(parameters)) {}
    rc::Ref<HF::I_LConnectionFactory> GetFactory() const override { return ConnectionFactoryInstance(); }
    HF::LConnectionParameters GetParameters() const override { return m_parameters; }
    QString GetLastError() const override { return {}; }
    bool IsOpened() const override { return true; }
    HF::LLazy<rc::Ref<HF::I_LConnectionHandler>, false> Clone() override
    {
        return rc::Ref<HF::I_LConnectionHandler>(rc::self(this));
    }
    bool IsBusy() const override { return false; }
    HF::LLazy<bool, true> Open(const HF::LConnectionParameters&) override { return true; }

private:
    HF::LConnectionParameters m_parameters;
};

class FactoryTest : public Place
{
protected:
    void TearDown() override
    {
        for (const char* workspace : {"", "A", "B"})
            for (const auto& connection : Factory()->get_Connections(workspace))
                for (const auto& database : connection->get_Databases())
                    EXPECT_TRUE(database->Close().Force());
        Place::TearDown();
    }
    static rc::Ref<orbDuckDB_LocalConnectionFactory> Factory() { return ConnectionFactoryInstance(); }
    static HF::LConnectionResult Connect(const rc::Ref<HF::I_LConnectionHandler>& handler)
    {
        const auto lazy = Factory()->Connect(handler);
        EXPECT_TRUE(lazy.IsResolved());
        return lazy.Force();
    }
};

TEST_F(FactoryTest, OneFactoryWithADefaultConnection)
{
    std::vector<orbDuckDB_LocalConnectionFactory*> seen(8);
    std::vector<std::thread> threads;
    for (auto& slot : seen)
        threads.emplace_back([&slot] { slot = ConnectionFactoryInstance().get(); });
    for (std::thread& thread : threads)
        thread.join();
    for (const auto* factory : seen)
        EXPECT_EQ(factory, Factory().get());

    EXPECT_EQ(Factory()->GetFactoryId(), 2048);
    EXPECT_EQ(Factory()->get_Name(), "DuckDB Files");
    EXPECT_TRUE(Factory()->get_IsConnected().Force());
    const auto connections = Factory()->get_Connections("");
    ASSERT_EQ(connections.size(), 1);
    EXPECT_TRUE(connections[0]->get_Databases().isEmpty());
    EXPECT_EQ(connections[0]->get_Factory().get(), Factory().get());
}

TEST_F(FactoryTest, OneConnectionAWorkspace)
{
    const auto connect = [](const char* workspace) {
        const auto handler = rc::make<orbDuckDB_LocalConnectionHandler>();
        handler->Open(At({}, workspace)).Force();
        const HF::LConnectionResult result = Connect(handler);
        EXPECT_FALSE(result.Database);
        return result.Connection;
    };
    const auto first = connect("A");
    EXPECT_EQ(connect("A"), first);
    EXPECT_FALSE(connect("B") == first);
    EXPECT_EQ(connect(""), rc::Ptr<HF::I_LConnection>(Factory()->get_Connections("")[0]));
    EXPECT_EQ(Factory()->get_Connections("A").size(), 1);
    EXPECT_EQ(first->get_ConnectionParameters().HostName.ToQString(), "localhost");
}

TEST_F(FactoryTest, OpenedFileBecomesADatabase)
{
    const QString file = MakeDatabase("opened.db");
    const auto handler = Opened(At(file));
    const HF::LConnectionResult result = Connect(handler);
    ASSERT_TRUE(result.Connection);
    ASSERT_TRUE(result.Database);
    EXPECT_FALSE(handler->TakeEngine());
    EXPECT_EQ(result.Database->get_Path(), file);
    EXPECT_EQ(result.Database->get_Name(), "opened");
    EXPECT_EQ(result.Connection->get_Databases().size(), 1);
    const auto items = result.Connection->get_RecentDatabases()->get_Items();
    ASSERT_FALSE(items.isEmpty());
    EXPECT_EQ(items[0]->get_ItemData().toString(), file);

    // The same file again: the first database, and the second engine ends with its handler.
    {
        const auto again = Opened(At(file));
        EXPECT_EQ(Connect(again).Database, result.Database);
        EXPECT_TRUE(again->IsOpened());
    }
    EXPECT_TRUE(IsOpenHere(file));
    EXPECT_EQ(result.Connection->get_Databases().size(), 1);
    EXPECT_TRUE(HF::IsQuerySuccess(result.Database->SqlQuery("SELECT * FROM made", 0, {}, 1, 2, 1)));
}

TEST_F(FactoryTest, MemoryDatabasesAreTheirOwn)
{
    const HF::LConnectionResult first = Connect(Opened(At(":memory:")));
    const HF::LConnectionResult second = Connect(Opened(At(":memory:")));
    ASSERT_TRUE(first.Database && second.Database);
    EXPECT_FALSE(first.Database == second.Database);
    EXPECT_TRUE(first.Database->SqlExecute("CREATE TABLE only_here(i INTEGER)"));
    EXPECT_FALSE(HF::IsQuerySuccess(second.Database->SqlQuery("FROM only_here", HF::QUERY_SILENT_ERROR, {}, 1, 2, 1)));
}

TEST_F(FactoryTest, HandlersThatBringNoDatabase)
{
    const auto failed = rc::make<orbDuckDB_LocalConnectionHandler>();
    EXPECT_FALSE(failed->Open(At(Path("nothing.db"))).Force());
    HF::LConnectionResult result = Connect(failed);
    EXPECT_TRUE(result.Connection);
    EXPECT_FALSE(result.Database);
    EXPECT_NE(failed->GetLastError(), "");

    // A foreign handler finds the connection of a workspace that has one, and makes none.
    result = Connect(rc::make<ForeignHandler>(At("anything")));
    EXPECT_TRUE(result.Connection);
    EXPECT_FALSE(result.Database);
    result = Connect(rc::make<ForeignHandler>(At("anything", "never used")));
    EXPECT_FALSE(result.Connection);
    EXPECT_TRUE(Factory()->get_Connections("never used").isEmpty());
}

TEST_F(FactoryTest, PostScripts)
{
    QList<std::pair<bool, bool>> ran; // with a connection, with a database
    const Scripts scripts([&](const QString&, HF::LConnectionParameters&, const auto& connection, const auto& database) {
        if (connection)
            ran.append({true, bool(database)});
        return std::optional<weft::Error>();
    });
    HF::LConnectionParameters parameters = At(MakeDatabase("post.db"));
    parameters.PostScript = MakeScript();
    Connect(Opened(parameters));
    Connect(Opened(parameters)); // found
    parameters.Location = Path("nothing.db");
    const auto failed = rc::make<orbDuckDB_LocalConnectionHandler>();
    EXPECT_FALSE(failed->Open(parameters).Force());
    Connect(failed);
    Connect(rc::make<ForeignHandler>(parameters));
    EXPECT_EQ(ran, (QList<std::pair<bool, bool>>{{true, true}, {true, true}, {true, false}, {true, false}}));
    parameters.Location = "";
    Connect(rc::make<ForeignHandler>(parameters));
    EXPECT_EQ(ran.size(), 4);
}

TEST_F(FactoryTest, Probe)
{
    const QString file = MakeDatabase("probe.db");
    EXPECT_EQ(Factory()->ProbeLocation(At(file)), 4);
    EXPECT_EQ(Factory()->ProbeLocation(At(Path("none.db"))), 2);
    EXPECT_EQ(Factory()->ProbeLocation(At(":memory:")), 2);
    HF::LConnectionParameters cloud = At("md:nowhere", "probed");
    cloud.AccessToken = "wrong";
    EXPECT_EQ(Factory()->ProbeLocation(cloud), 2);
    EXPECT_TRUE(Factory()->get_Connections("probed").isEmpty());
    EXPECT_FALSE(IsOpenHere(file));
}

TEST_F(FactoryTest, ManyThreadsConnectToOneFile)
{
    const QString file = MakeDatabase("threads.db");
    std::vector<rc::Ptr<HF::I_LDatabase>> databases(6);
    std::vector<std::thread> threads;
    for (auto& slot : databases)
        threads.emplace_back([&slot, &file] { slot = Connect(Opened(At(file, "A"))).Database; });
    for (std::thread& thread : threads)
        thread.join();
    for (const auto& database : databases) {
        ASSERT_TRUE(database);
        EXPECT_EQ(database, databases[0]);
    }
}

} // namespace
