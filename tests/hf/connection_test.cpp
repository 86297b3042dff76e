// SPDX-License-Identifier: GPL-3.0-or-later
#include "hf/fake_connection.h"

#include "hf/log.h"
#include "hf/recents.h"
#include "hf/sql_text.h"

#include <QDir>
#include <QFile>
#include <QTemporaryDir>

#include <gtest/gtest.h>

#include <filesystem>

using namespace HF;
using namespace HF::test;

rc::Ptr<LRecentsList> FakeConnection::get_RecentDatabases() const
{
    return nullptr;
}

namespace {

class ConnectionTest : public testing::Test
{
protected:
    ConnectionTest()
        : factory(rc::make<FakeFactory>()),
          connection(rc::cast<FakeConnection>(factory->Connect(factory->CreateHandler()).Force().Connection))
    {
    }
    ~ConnectionTest() override { connection->Close(); }

    rc::Ptr<I_LDatabase> Open(const QString& location) { return connection->OpenDatabase(location).Force(); }
    rc::Ptr<I_LDatabase> Find(const QString& location) { return connection->FindDatabase(location).Force(); }

    rc::Ref<FakeFactory> factory;
    rc::Ptr<FakeConnection> connection;
};

void Touch(const QString& path)
{
    QFile file(path);
    ASSERT_TRUE(file.open(QIODevice::WriteOnly));
}

} // namespace

TEST_F(ConnectionTest, EveryNameOfAFileIsOneLocation)
{
    QTemporaryDir folder;
    const QDir place(folder.path());
    const QString file = place.filePath("a b.db");
    Touch(file);
    Touch(place.filePath("other.db"));
    ASSERT_TRUE(place.mkdir("sub"));
    std::filesystem::create_symlink(file.toStdString(), place.filePath("soft.db").toStdString());
    std::filesystem::create_hard_link(file.toStdString(), place.filePath("hard.db").toStdString());

    const auto database = Open(file);
    ASSERT_TRUE(database);
    for (const QString& name : {file, place.filePath("sub/../a b.db"), place.filePath("soft.db"),
                                place.filePath("hard.db"), QDir::current().relativeFilePath(file),
                                QStringLiteral("file://") + file})
        EXPECT_EQ(Find(name), database) << name.toStdString();
    for (const QString& name : {place.filePath("other.db"), place.filePath("none.db"), QString()})
        EXPECT_FALSE(Find(name)) << name.toStdString();

    EXPECT_EQ(Open(place.filePath("soft.db")), database);
    EXPECT_EQ(factory->opened, QStringList{file});
    EXPECT_EQ(connection->get_Databases().size(), 1);

    rc::cast<FakeDatabase>(database)->MarkClosing();
    EXPECT_FALSE(Find(file));
}

TEST_F(ConnectionTest, MemoryIsSharedByNameOnly)
{
    const auto one = Open(":memory:"), two = Open(":memory:");
    EXPECT_NE(one.get(), two.get());
    const QString shared = QStringLiteral("file:x?mode=memory&cache=shared");
    const auto named = Open(shared);
    EXPECT_EQ(Open(shared), named);
    EXPECT_FALSE(Find("file:y?mode=memory&cache=shared"));
    EXPECT_EQ(connection->get_Databases().size(), 3);

    const auto cloud = Open("md:a");
    EXPECT_EQ(Find("md:a"), cloud);
    EXPECT_FALSE(Find("md:b"));

    // Settings of one database in memory are not those of another.
    one->put_ExternalProperty("key", 1);
    EXPECT_FALSE(two->HasExternalProperty("key"));
    EXPECT_TRUE(one->HasExternalProperty("key"));
    rc::cast<LDatabase>(one)->DeleteSettings();
    EXPECT_FALSE(one->HasExternalProperty("key"));
}

TEST_F(ConnectionTest, TheTokenGoesToTheCloudOnly)
{
    LConnectionParameters parameters;
    parameters.WorkspaceId = "cloud";
    parameters.AccessToken = "secret";
    const auto handler = factory->CreateHandler();
    handler->Open(parameters).Force();
    const auto other = factory->Connect(handler).Force().Connection;
    ASSERT_TRUE(other);
    EXPECT_NE(other.get(), connection.get());
    EXPECT_EQ(factory->get_Connections("cloud").size(), 1);
    EXPECT_EQ(factory->FindConnection("cloud", "fake"), other);
    EXPECT_FALSE(factory->FindConnection("", "none"));

    other->OpenDatabase("md:a").Force();
    other->OpenDatabase(":memory:").Force();
    EXPECT_EQ(factory->tokens, (QStringList{"secret", ""}));
    other->Close();
}

TEST_F(ConnectionTest, AFailedOpenIsLoggedOnce)
{
    QStringList errors;
    SetErrorLogSink([&](const QString& text) { errors.append(text); });
    EXPECT_FALSE(Open("bad place"));
    SetErrorLogSink({});
    EXPECT_EQ(errors, QStringList{"cannot open bad place"});
    EXPECT_TRUE(connection->get_Databases().isEmpty());
}

TEST_F(ConnectionTest, TheActiveDatabaseIsAnOpenOne)
{
    EXPECT_FALSE(connection->get_ActiveDatabase());
    EXPECT_FALSE(connection->SqlExecute("SELECT 1"));
    const auto one = Open(":memory:"), two = Open(":memory:");
    EXPECT_EQ(connection->get_ActiveDatabase(), two);
    connection->put_ActiveDatabase(one);
    EXPECT_EQ(connection->get_ActiveDatabase(), one);
    one->Close().Force();
    EXPECT_EQ(connection->get_ActiveDatabase(), two);
    connection->Close();
    EXPECT_FALSE(connection->get_ActiveDatabase());
    EXPECT_TRUE(connection->get_Databases().isEmpty());
}

TEST_F(ConnectionTest, AClosedDatabaseEndsWithItsLastHolder)
{
    rc::Weak<I_LDatabase> weak;
    {
        const auto database = Open(":memory:");
        weak = database;
        database->Close().Force();
    }
    EXPECT_FALSE(weak.lock());
}

TEST_F(ConnectionTest, IdentsAreFetchedOnceUntilInvalidated)
{
    const auto database = rc::cast<FakeDatabase>(Open(":memory:"));
    EXPECT_EQ(database->get_Idents().Force().size(), 1);
    database->get_Idents().Force();
    EXPECT_EQ(database->identFetches, 1);
    database->InvalidateSystemIdents();
    database->get_Idents().Force();
    EXPECT_EQ(database->identFetches, 1);
    database->InvalidateIdents();
    database->get_Idents().Force();
    EXPECT_EQ(database->identFetches, 2);
}

TEST_F(ConnectionTest, SelectWantsSuccessAndRows)
{
    const auto database = rc::cast<FakeDatabase>(Open(":memory:"));
    LQueryResult done, failed;
    done.Status = LQueryResult::Done;
    const auto select = [&] { return database->SqlSelect("x", 0, {}, 1, 2, 1); };
    database->answers = {done};
    EXPECT_TRUE(database->SqlExecute("x"));
    EXPECT_FALSE(select());
    database->answers = {done, failed};
    EXPECT_FALSE(database->SqlExecute("x"));
    EXPECT_FALSE(select());
    EXPECT_EQ(EvaluateSQL(database, "x"), std::nullopt);
}

TEST(ConnectionParameters, ScriptsThatCannotRunAreErrors)
{
    LConnectionParameters parameters;
    EXPECT_FALSE(parameters.RunPreScript());
    QTemporaryDir folder;
    const QString file = folder.filePath("pre.script");
    parameters.PreScript = file;
    ASSERT_TRUE(parameters.RunPreScript());
    EXPECT_TRUE(parameters.RunPreScript()->message().ToQString().contains("does not exist"));
    Touch(file);
    EXPECT_TRUE(parameters.RunPreScript()->message().ToQString().contains("no script runtime"));

    SetScriptRunner([&](const QString& path, LConnectionParameters& record, const rc::Ptr<I_LConnection>&,
                        const rc::Ptr<I_LDatabase>&) -> std::optional<weft::Error> {
        if (path != file)
            return weft::Error("other");
        record.Location = "changed";
        return std::nullopt;
    });
    EXPECT_FALSE(parameters.RunPreScript());
    EXPECT_EQ(parameters.Location.ToQString(), "changed");

    QStringList errors;
    SetErrorLogSink([&](const QString& text) { errors.append(text); });
    parameters.PostScript = folder.filePath("none");
    parameters.RunPostScript(nullptr, nullptr);
    SetErrorLogSink({});
    SetScriptRunner({});
    EXPECT_EQ(errors.size(), 1);
}
