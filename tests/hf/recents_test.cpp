// SPDX-License-Identifier: GPL-3.0-or-later
#include "support/fake_connection.h"
#include "support/own_settings.h"

#include "hf/app_controller.h"
#include "hf/plugin.h"
#include "hf/services.h"

#include <QFile>

using namespace HF;

namespace {

class List : public LRecentsListWithExamples
{
public:
    explicit List(const QString& key, int maximum = 10)
    {
        m_settingsKey = key;
        m_maximum = maximum;
        m_itemIcon = QStringLiteral(":/icons/office-database.svg");
        Load();
    }
    void OpenItem(const rc::Ref<LRecentItem>&) override {}
};

QStringList Names(const LRecentsList& list)
{
    QStringList names;
    for (const auto& item : list.get_Items())
        names << item->get_Name();
    return names;
}

void Write(const QString& path, const QByteArray& bytes)
{
    QFile file(path);
    ASSERT_TRUE(file.open(QIODevice::WriteOnly));
    file.write(bytes);
}

class Recents : public support::OwnSettings
{
};

} // namespace

TEST_F(Recents, NewestFirstWithoutDoublesUpToTheLimit)
{
    const auto list = rc::make<List>("DuckDB");
    for (int i = 1; i <= 11; ++i)
        list->AddRecent(QString("n%1").arg(i), QString("/d/%1.duckdb").arg(i));
    EXPECT_EQ(list->get_Items().size(), 10);
    EXPECT_EQ(Names(*list).first(), "n11");
    EXPECT_EQ(Names(*list).last(), "n2");
    // Known data at the limit: moved, and nobody has to go for it.
    list->AddRecent("renamed", "/d/2.duckdb");
    EXPECT_EQ(list->get_Items().size(), 10);
    EXPECT_EQ(Names(*list).first(), "renamed");
    EXPECT_EQ(Names(*list).last(), "n3");
}

TEST_F(Recents, StoredByKeyAndReadAgain)
{
    {
        const auto list = rc::make<List>("Workspaces/W/DuckDB");
        list->AddRecent(QString::fromUtf8("\xC3\xA4 \"x\""), "/a b;c.duckdb");
        list->AddRecent("cloud", "md:c");
        list->get_Items().first()->AssignPropertyValueSilent(PROP_TEMPORARY, false);
        list->Flush();
    }
    const auto again = rc::make<List>("Workspaces/W/DuckDB");
    EXPECT_EQ(Names(*again), (QStringList{"cloud", QString::fromUtf8("\xC3\xA4 \"x\"")}));
    EXPECT_EQ(again->get_Items()[1]->get_ItemData().toString(), "/a b;c.duckdb");
    // The mark counts, also with the value false.
    EXPECT_TRUE(again->get_Items()[0]->HasProperty(PROP_TEMPORARY));
    EXPECT_FALSE(again->get_Items()[1]->HasProperty(PROP_TEMPORARY));
    EXPECT_TRUE(rc::make<List>("DuckDB")->get_Items().isEmpty());

    again->DeleteRecentByData("md:c");
    again->DeleteRecentByData("unknown");
    EXPECT_EQ(rc::make<List>("Workspaces/W/DuckDB")->get_Items().size(), 1);
    again->DeleteAllRecents();
    EXPECT_TRUE(rc::make<List>("Workspaces/W/DuckDB")->get_Items().isEmpty());
}

TEST_F(Recents, BrokenTextsGiveWhatCanBeRead)
{
    for (const char* text : {"{", "7", "null", "[1,2]", "[{\"name\":\"no data\"}]", "[{\"name\":\"e\",\"data\":\"\"}]"}) {
        uik::settings().setValue("Recents/DuckDB", text);
        EXPECT_TRUE(rc::make<List>("DuckDB")->get_Items().isEmpty()) << text;
    }
    const auto list = rc::make<List>("K", 3);
    list->AddRecent("own", "/own.duckdb");
    Write(Path("import.json"), R"([{"data":"/own.duckdb","name":"double"},{"name":"a","data":"/a"},7,
        {"name":"b","data":"/b"},{"name":"c","data":"/c"}])");
    list->FromFile(Path("import.json"));
    EXPECT_EQ(Names(*list), (QStringList{"own", "a", "b"}));
    list->FromFile(Path("missing.json"));
    EXPECT_EQ(list->get_Items().size(), 3);
    EXPECT_EQ(rc::make<List>("K", 3)->get_Items().size(), 3);
}

TEST_F(Recents, OnlyFilesThatAreGoneAreCleanedUp)
{
    Write(Path("here.duckdb"), "x");
    struct Row { QString location; bool stays; };
    const QList<Row> rows{{Path("here.duckdb"), true},  {Path("gone.duckdb"), false}, {":memory:", true},
                          {"md:base", true},            {"file:x?mode=memory", true}, {m_folder.path(), true},
                          {"relative-gone.db", false},  {"/no/folder/a:b.db", false}};
    const auto list = rc::make<List>("DuckDB");
    for (const Row& row : rows)
        list->AddRecent(row.location, row.location);
    list->AddRecent("elsewhere", "/gone/but/elsewhere");
    list->get_Items().first()->AssignPropertyValueSilent(PROP_TEMPORARY, true);
    CheckRecentDatabasesPaths(list);
    const QStringList left = Names(*list);
    for (const Row& row : rows)
        EXPECT_EQ(left.contains(row.location), row.stays) << row.location.toStdString();
    EXPECT_TRUE(left.contains("elsewhere"));
    EXPECT_EQ(list->get_Items().first()->get_Icon().Force(), ":/icons/office-database.svg");
    // An item that outlives its list has nothing to say, and does not fall over.
    rc::Ptr<LRecentItem> orphan;
    {
        const auto brief = rc::make<List>("brief");
        brief->AddRecent("x", "/x");
        orphan = brief->get_Items().first();
    }
    EXPECT_EQ(orphan->get_Icon().Force(), QString());
}

TEST_F(Recents, SmallServices)
{
    const QString here = QDir::currentPath();
    for (const auto& [location, absolute] : std::initializer_list<std::pair<QString, QString>>{
             {"a.db", here + "/a.db"}, {"../a.db", QDir::cleanPath(here + "/../a.db")}, {"/x/a.db", "/x/a.db"},
             {":memory:", ":memory:"}, {"md:base", "md:base"}, {"file:x?mode=memory", "file:x?mode=memory"}, {"", ""}})
        EXPECT_EQ(AbsoluteLocation(location), absolute);
    for (const auto& [word, plural] : std::initializer_list<std::pair<const char*, const char*>>{
             {"table", "tables"}, {"index", "indexes"}, {"check", "checks"}, {"key", "keys"}, {"query", "queries"},
             {"alias", "aliases"}, {"branch", "branches"}, {"y", "ys"}, {"", ""}})
        EXPECT_EQ(PluralStr(word), plural);

    AddStatistic("DB/DuckDBLocal", 1);
    AddStatistic("DB/DuckDBLocal", 2);
    EXPECT_EQ(uik::settings().value("Statistics/DB/DuckDBLocal").toInt(), 3);

    const auto connection = rc::make<support::FakeConnection>();
    connection->parameters.WorkspaceId = "W";
    const auto database = rc::make<support::FakeDatabase>(connection, "/x");
    database->put_ParentObject(connection);
    EXPECT_EQ(GetWorkspaceID(rc::Ptr<const LTreeItem>(database)), "W");
    EXPECT_EQ(GetWorkspaceID(nullptr), QString());
    database->put_ParentObject(nullptr);
    EXPECT_EQ(GetWorkspaceID(rc::Ptr<const LTreeItem>(database)), QString());

    // A program without windows: requests come to nothing.
    EXPECT_FALSE(AppCtrlInstance().OpenNewWindow(0));
    EXPECT_FALSE(ApplicationInstance().ShowObject(connection, 1));
    EXPECT_TRUE(AppCtrlInstance().RunDesigner(connection, TYPE_TABLE).isEmpty());

    support::Prompter prompter;
    Alert("careful");
    EXPECT_EQ(prompter.told, QStringList{"careful"});
    EXPECT_FALSE(InputText("Name:").has_value());
    prompter.text = "n";
    EXPECT_EQ(InputTextWithTitle("t", "Name:", "", "OK"), "n");
    prompter.yes = false;
    EXPECT_FALSE(weft::ask("sure?"));
}

TEST_F(Recents, PluginsThatCannotBeLoadedSayWhy)
{
    Write(Path("text.so"), "no shared object");
    const QString library = qEnvironmentVariable("ORBIS_BIN") + "/lib/liborbshared.so";
    struct Row { QString path; const char* word; };
    for (const Row& row : {Row{Path("missing.so"), "does not exist"}, Row{m_folder.path(), "does not exist"},
                           Row{Path("text.so"), "cannot be loaded"}, Row{library, "no entry point"}}) {
        if (row.path == library && !QFile::exists(library))
            continue;
        const LLoadedPlugin loaded = LoadPlugin(row.path);
        EXPECT_FALSE(loaded.plugin);
        EXPECT_TRUE(loaded.error.contains(row.word) && loaded.error.contains(row.path)) << loaded.error.toStdString();
    }
}
