// SPDX-License-Identifier: GPL-3.0-or-later
#include "connection/local_connection.h"
#include "connection/place.h"

#include "engine/engine.h"
#include "engine/engine_version.h"
#include "hf/action.h"
#include "hf/database.h"
#include "hf/recents.h"

#include <sys/stat.h>

namespace {

class ConnectionTest : public Place
{
protected:
    void TearDown() override
    {
        for (const auto& database : Connection()->get_Databases())
            EXPECT_TRUE(database->Close().Force());
        Place::TearDown();
    }
    static rc::Ref<orbDuckDB_LocalConnection> Connection()
    {
        return rc::Ref(rc::cast<orbDuckDB_LocalConnection>(ConnectionFactoryInstance()->get_Connections("")[0]));
    }
    static rc::Ptr<HF::I_LDatabase> Create(const QString& name, const QHash<QString, QVariant>& options = {})
    {
        return Connection()->CreateDatabase(name, options).Force();
    }
};

TEST_F(ConnectionTest, WhatTheNodeTells)
{
    const auto node = Connection();
    EXPECT_EQ(node->get_Name(), "DuckDB Files");
    EXPECT_EQ(node->get_Icon().Force(), ":/icons/connection-duckdb.svg");
    EXPECT_EQ(node->get_Info().Force(), "DuckDB " + EngineVersionString() + " Engine");
    EXPECT_EQ(node->get_Tip().Force(), "DuckDB Embedded Engine Version " + EngineVersionString()
                                           + ".\nThis connection is used for local DuckDB databases.");
    EXPECT_EQ(node->get_Capabilities(), 52035);
    EXPECT_EQ(node->get_LiteralQuote(), "'");
    EXPECT_EQ(node->get_ConnectionParameters().HostName.ToQString(), "localhost");
    EXPECT_EQ(node->get_Version().Force(), EngineVersionNumber());
    EXPECT_FALSE(node->get_Database());

    QStringList menu;
    for (const rc::Ptr<HF::LAction>& action : node->get_ActionsForMenu())
        menu.append(action ? action->get_Id() : QString("-"));
    EXPECT_EQ(menu.size(), 5);
    EXPECT_EQ(menu[0], HF::DO_OPEN_DATABASE);
    EXPECT_EQ(menu[1], "-");
    EXPECT_EQ(menu[3], "-");
    EXPECT_EQ(menu[4], HF::DO_OPEN_PREFERENCES);

    const QList<HF::LProperty> properties = node->get_Properties();
    QStringList listed;
    for (const HF::LProperty& property : properties)
        listed.append(QString("%1:%2").arg(property.id).arg(property.flags));
    QStringList expected;
    for (const auto& [id, flags] : {std::pair(26, 1153), {80, 1413}, {81, 1169}, {71, 1169}}) // both bits of 0x401
        expected.append(QString("%1:%2").arg(id).arg(flags | 0x8000000));
    expected.append("86:129");
    EXPECT_EQ(listed, expected);
    EXPECT_EQ(node->GetString(80), "localhost");
    EXPECT_EQ(node->GetString(PROP_NAME), "DuckDB Files");
}

TEST_F(ConnectionTest, Extensions)
{
    const std::pair<const char*, QString> cases[] = {
        {nullptr, "duckdb,db,ddb"}, {"db", "duckdb,db,ddb"}, {"duck", "duckdb,db,ddb,duck"}, {"DB", "duckdb,db,ddb,DB"}};
    for (const auto& [preferred, expected] : cases) {
        uik::settings().setValue("/DuckDB/DefaultExtension", preferred ? QVariant(preferred) : QVariant());
        EXPECT_EQ(Connection()->get_FileExtensions().join(','), expected);
    }
}

TEST_F(ConnectionTest, CanOpenPath)
{
    const QByteArray zeros(8, '\0');
    const std::pair<QString, bool> cases[] = {
        {":memory:", true},
        {"file:x?mode=memory", true},
        {"md:", true},
        {"md:cloud", true},
        {"file:x", false},
        {"", false},
        {Path("none.db"), false},
        {Path(""), false}, // a folder
        {MakeDatabase("real.db"), true},
        {WriteFile("eleven", "DuckDB" + QByteArray(5, 'x')), false},
        {WriteFile("twelve", "DuckDB" + QByteArray(6, 'x')), true},
        {WriteFile("magic", zeros + "DUCK"), true},
        {WriteFile("longer", zeros + "DUCKxxxx"), true},
        {WriteFile("shifted", zeros + "xDUCK"), false},
        {WriteFile("lower", "duckdbxxxxxx"), false},
        {WriteFile("other", "SQLite format 3"), false},
    };
    for (const auto& [path, expected] : cases)
        EXPECT_EQ(Connection()->CanOpenPath(path), expected) << path.toStdString();
}

TEST_F(ConnectionTest, ALookAtAnOpenFileKeepsItsLock)
{
    const QString file = MakeDatabase("locked.db");
    const auto engine = Opened(At(file))->TakeEngine();
    EXPECT_TRUE(Connection()->CanOpenPath(file));
    // Record locks of a file are listed by its inode.
    struct stat status = {};
    ASSERT_EQ(stat(file.toUtf8().constData(), &status), 0);
    QFile locks("/proc/locks");
    if (!locks.open(QIODevice::ReadOnly))
        GTEST_SKIP() << "no list of locks";
    EXPECT_TRUE(locks.readAll().contains(":" + QByteArray::number(qulonglong(status.st_ino)) + " "));
    engine->Close();
}

TEST_F(ConnectionTest, CreateOnDisk)
{
    const QString file = Path("fresh.db");
    const auto database = Create(file);
    ASSERT_TRUE(database);
    EXPECT_TRUE(QFile::exists(file));
    EXPECT_EQ(database->get_Name(), "fresh");
    EXPECT_EQ(Connection()->FindDatabase(file).Force(), database);
    EXPECT_EQ(Connection()->get_RecentDatabases()->get_Items()[0]->get_ItemData().toString(), file);
    EXPECT_TRUE(database->Close().Force());
    EXPECT_TRUE(Connection()->get_Databases().isEmpty());

    EXPECT_FALSE(Create(file));
    EXPECT_EQ(LastLoggedError(), "Database 'DuckDB Files' already exists!");
    // Kind 2 looks at nothing.
    EXPECT_TRUE(Create(file, {{"location", 2}}));

    EXPECT_FALSE(Create(Path("no/such/folder/x.db")));
    EXPECT_NE(LastLoggedError(), "Database 'DuckDB Files' already exists!");
    EXPECT_EQ(Connection()->get_Databases().size(), 1);
}

TEST_F(ConnectionTest, CreateInMemory)
{
    const auto named = Create(":memory:x");
    ASSERT_TRUE(named);
    EXPECT_EQ(named->get_Name(), ":x");
    const auto byKind = Create("scratch", {{"location", 1}});
    ASSERT_TRUE(byKind);
    EXPECT_EQ(byKind->get_Name(), "scratch");
    EXPECT_FALSE(QFile::exists("scratch"));
    EXPECT_TRUE(byKind->SqlExecute("CREATE TABLE t(i INTEGER)"));
}

TEST_F(ConnectionTest, DroppedCreateRuns)
{
    const QString file = Path("dropped.db");
    Connection()->CreateDatabase(file, {});
    EXPECT_TRUE(QFile::exists(file));
    EXPECT_EQ(Connection()->get_Databases().size(), 1);
}

TEST_F(ConnectionTest, WordsAreReadOnceAConnection)
{
    const orbDuckDB_Engine& engine = orbDuckDB_Engine::Instance();
    const rc::Ptr<HF::I_LConnection> connection = Connection();
    const auto keywords = engine.GetKeywords(connection).Force();
    ASSERT_FALSE(keywords.get_Words().isEmpty());
    EXPECT_EQ(engine.GetKeywords(connection).Force().get_Words().constData(), keywords.get_Words().constData());
    EXPECT_TRUE(engine.GetFunctions(connection).Force().Functions.contains("abs"));
    EXPECT_TRUE(engine.IsNeedQuote("Order", connection).IsResolved());
    EXPECT_TRUE(engine.IsNeedQuote("Order", connection).Force());
    EXPECT_EQ(engine.QuoteName("a b", connection), "\"a b\"");
    EXPECT_EQ(engine.QuoteName("customers", connection), "customers");
}

TEST_F(ConnectionTest, SearchPathIsKeptUntilTheDefaultSchemasChange)
{
    const orbDuckDB_Engine& engine = orbDuckDB_Engine::Instance();
    EXPECT_TRUE(engine.GetSearchPath(nullptr).isEmpty());
    const auto database = Create(":memory:path");
    ASSERT_TRUE(database);
    database->AssignPropertyValue(PROP_SEARCH_PATH, QStringList{"sales", "Main"});
    EXPECT_EQ(engine.GetSearchPath(database).join(','), "sales,Main,main,pg_catalog");
    database->AssignPropertyValueSilent(PROP_SEARCH_PATH, QStringList{"unseen"});
    EXPECT_EQ(engine.GetSearchPath(database).join(','), "sales,Main,main,pg_catalog");
    database->AssignPropertyValue(PROP_SEARCH_PATH, QStringList{"pg_catalog", "main"});
    EXPECT_EQ(engine.GetSearchPath(database).join(','), "pg_catalog,main");
}

TEST_F(ConnectionTest, Recents)
{
    const auto recents = Connection()->get_RecentDatabases();
    EXPECT_EQ(recents->get_SettingsKey(), "DuckDB");
    EXPECT_EQ(recents->get_MaximumCount(), 10);
    recents->DeleteAllRecents();
    for (int i = 0; i < 11; ++i)
        recents->AddRecent(QString::number(i), Path(QString::number(i)));
    ASSERT_EQ(recents->get_Items().size(), 10);
    EXPECT_EQ(recents->get_Items()[0]->get_Name(), "10");

    const auto item = recents->get_Items()[0];
    EXPECT_EQ(recents->GetItemIcon(item), ":/icons/office-database.svg");
    item->put_ItemData(MakeDatabase("recent.db"));
    item->AssignPropertyValue(PROP_TEMPORARY, false); // the cloud by its icon, a file by its data
    EXPECT_EQ(recents->GetItemIcon(item), ":/icons/office-database-cloud.svg");
    recents->OpenItem(item);
    EXPECT_TRUE(Connection()->FindDatabase(Path("recent.db")).Force());
}

} // namespace
