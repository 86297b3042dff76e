// SPDX-License-Identifier: GPL-3.0-or-later
#include "connection/location.h"
#include "connection/place.h"

#include "engine/engine_version.h"

#include <thread>

namespace {

using Handler = orbDuckDB_LocalConnectionHandler;

class HandlerTest : public Place
{
protected:
    QString Setting(const char* name) const
    {
        const auto engine = Opened(At(":memory:"))->TakeEngine();
        return Ask(engine, (std::string("SELECT current_setting('") + name + "')").c_str());
    }
};

TEST(Location, InMemoryForms)
{
    for (const char* memory : {":memory:", "file:?mode=memory", "file:a?mode=memory", "file:a?x=1&mode=memory",
                               "file:/a/b?cache=shared&mode=memory&x"})
        EXPECT_TRUE(IsInMemoryLocation(memory)) << memory;
    for (const char* other : {"", ":memory", ":memory:x", ":MEMORY:", "file:", "file:mode=memory", "FILE:a?mode=memory",
                              "file:a?MODE=memory", "file:mode=memory?x", "a?mode=memory", "md:mode=memory"})
        EXPECT_FALSE(IsInMemoryLocation(other)) << other;
}

TEST_F(HandlerTest, NothingToOpen)
{
    HF::LConnectionParameters parameters;
    parameters.AccessToken = "secret";
    const auto handler = rc::make<Handler>();
    EXPECT_TRUE(handler->Open(parameters).Force());
    EXPECT_FALSE(handler->IsOpened());
    EXPECT_FALSE(handler->IsBusy());
    EXPECT_EQ(handler->GetParameters().FactoryId, 2048);
    EXPECT_FALSE(handler->TakeEngine());
    const auto clone = handler->Clone();
    EXPECT_TRUE(clone.IsResolved());
    EXPECT_EQ(clone.Force()->GetParameters().FactoryId, 0);
}

TEST_F(HandlerTest, FormsOfLocations)
{
    const QString file = MakeDatabase("forms.db");
    for (const QString& location : {file, QString(":memory:"), QString("file:any?mode=memory")}) {
        const auto handler = Opened(At(location));
        EXPECT_TRUE(handler->IsOpened());
        EXPECT_EQ(handler->GetParameters().Location.ToQString(), location);
        const auto engine = handler->TakeEngine();
        ASSERT_TRUE(engine) << location.toStdString();
        EXPECT_FALSE(handler->TakeEngine());
        EXPECT_EQ(Ask(engine, "SELECT 40 + 2"), "42");
        EXPECT_EQ(Ask(engine, "SELECT count(*) FROM duckdb_tables()"), location == file ? "1" : "0");
        engine->Close();
    }
}

TEST_F(HandlerTest, ReadOnlyIsAskedOfTheEngine)
{
    HF::LConnectionParameters parameters = At(MakeDatabase("readonly.db"));
    parameters.ReadOnly = true;
    const auto engine = Opened(parameters)->TakeEngine();
    EXPECT_TRUE(engine->IsReadOnly());
    EXPECT_THROW(engine->SqlExecute(u"INSERT INTO made VALUES (1)", {}), nub::xException);
    engine->Close();
}

TEST_F(HandlerTest, FailedOpenKeepsParametersAndTellsWhy)
{
    const QString missing = Path("missing.db");
    const auto handler = rc::make<Handler>();
    EXPECT_FALSE(handler->Open(At(missing, "W")).Force());
    EXPECT_TRUE(handler->GetLastError().contains("does not exist")) << handler->GetLastError().toStdString();
    EXPECT_TRUE(handler->IsOpened());
    EXPECT_EQ(handler->GetParameters().FactoryId, 2048);
    EXPECT_EQ(handler->GetParameters().WorkspaceId.ToQString(), "W");
    EXPECT_FALSE(handler->TakeEngine());
    EXPECT_FALSE(QFile::exists(missing));

    const auto clone = handler->Clone();
    EXPECT_FALSE(clone.IsResolved());
    MakeDatabase("missing.db");
    const auto opened = clone.Force();
    EXPECT_EQ(opened->GetLastError(), "");
    EXPECT_EQ(opened->GetParameters().Location.ToQString(), missing);

    // The same handler goes on, and forgets the error.
    EXPECT_TRUE(handler->Open(At(missing)).Force());
    EXPECT_EQ(handler->GetLastError(), "");

    const auto junk = rc::make<Handler>();
    EXPECT_FALSE(junk->Open(At(WriteFile("junk.db", QByteArray(5000, 'x')))).Force());
    EXPECT_NE(junk->GetLastError(), "");
}

TEST_F(HandlerTest, LazyRunsWhenDroppedAndNotAfterTheHandler)
{
    const QString file = MakeDatabase("lazy.db");
    const auto handler = rc::make<Handler>();
    {
        const auto unread = handler->Open(At(file));
        EXPECT_FALSE(IsOpenHere(file));
    }
    EXPECT_TRUE(IsOpenHere(file));
    handler->TakeEngine()->Close();

    rc::Ptr<Handler> gone = rc::make<Handler>();
    const auto late = gone->Open(At(file));
    gone.reset();
    EXPECT_FALSE(late.Force());
    EXPECT_FALSE(IsOpenHere(file));
}

TEST_F(HandlerTest, EngineThatNobodyTookIsClosed)
{
    const QString file = MakeDatabase("closed.db");
    {
        const auto handler = Opened(At(file));
        EXPECT_TRUE(IsOpenHere(file));
    }
    EXPECT_FALSE(IsOpenHere(file));
}

TEST_F(HandlerTest, OpensOnWorkersWhileOthersLook)
{
    const QString file = MakeDatabase("worker.db");
    const auto handler = rc::make<Handler>();
    bool opened = false;
    std::thread worker([&] { opened = handler->Open(At(file)).Force(); });
    while (!handler->IsBusy() && !handler->IsOpened())
        std::this_thread::yield();
    worker.join();
    EXPECT_TRUE(opened);
    EXPECT_FALSE(handler->IsBusy());
    EXPECT_TRUE(handler->TakeEngine());
}

TEST_F(HandlerTest, PreferencesBecomeSessionSettings)
{
    const QString threads = Setting("threads"), memory = Setting("memory_limit"), pivot = Setting("pivot_limit");
    ASSERT_NE(pivot, "77");

    uik::settings().setValue("/DuckDB/Threads", "1");
    uik::settings().setValue("/DuckDB/MemoryLimit", "512MiB");
    uik::settings().setValue("/DuckDB/PivotLimit", "77");
    EXPECT_EQ(Setting("threads"), "1");
    EXPECT_EQ(Setting("memory_limit"), "512.0 MiB");
    EXPECT_EQ(Setting("pivot_limit"), "77");

    // What stands before the refused setting holds, what stands behind does not.
    for (const char* refused : {"nonsense", "1'; SET threads=2; --"}) {
        uik::settings().setValue("/DuckDB/MemoryLimit", refused);
        EXPECT_EQ(Setting("threads"), "1") << refused;
        EXPECT_EQ(Setting("memory_limit"), memory) << refused;
        EXPECT_EQ(Setting("pivot_limit"), pivot) << refused;
    }

    // Fields left empty say nothing.
    uik::settings().setValue("/DuckDB/Threads", "");
    uik::settings().setValue("/DuckDB/MemoryLimit", "");
    EXPECT_EQ(Setting("threads"), threads);
    EXPECT_EQ(Setting("memory_limit"), memory);
    EXPECT_EQ(Setting("pivot_limit"), "77");

    // A text that is no number is sent as 0, which the engine refuses.
    uik::settings().setValue("/DuckDB/Threads", "many");
    EXPECT_EQ(Setting("threads"), threads);
    EXPECT_EQ(Setting("pivot_limit"), pivot);
}

TEST_F(HandlerTest, FailedPreScriptChangesNothing)
{
    const QString file = MakeDatabase("script.db");
    HF::LConnectionParameters parameters = At(file);
    parameters.PreScript = Path("no-such-script");
    const auto handler = rc::make<Handler>();
    EXPECT_FALSE(handler->Open(parameters).Force());
    EXPECT_FALSE(handler->IsOpened());
    EXPECT_EQ(handler->GetLastError(), "");
    EXPECT_EQ(handler->GetParameters().FactoryId, 0);
    EXPECT_TRUE(LastLoggedError().contains("no-such-script")) << LastLoggedError().toStdString();
    EXPECT_FALSE(IsOpenHere(file));
}

TEST_F(HandlerTest, PreScriptMayChangeTheParameters)
{
    const QString file = MakeDatabase("changed.db");
    HF::LConnectionParameters parameters = At("somewhere else");
    parameters.PreScript = MakeScript();
    const auto handler = rc::make<Handler>();
    bool busy = true, opened = true;
    const Scripts scripts([&](const QString&, HF::LConnectionParameters& own, const auto&, const auto&) {
        // Before the handler's lock and before anything of it changes.
        std::thread([&] { busy = handler->IsBusy(), opened = handler->IsOpened(); }).join();
        own.Location = file;
        own.ReadOnly = true;
        return std::optional<weft::Error>();
    });
    EXPECT_TRUE(handler->Open(parameters).Force()) << handler->GetLastError().toStdString();
    EXPECT_FALSE(busy);
    EXPECT_FALSE(opened);
    EXPECT_EQ(handler->GetParameters().Location.ToQString(), file);
    EXPECT_EQ(handler->GetParameters().FactoryId, 2048);
    EXPECT_TRUE(handler->TakeEngine()->IsReadOnly());

    // Without a location of the caller's own nothing is opened, whatever the script says.
    parameters.Location = "";
    const auto idle = rc::make<Handler>();
    EXPECT_TRUE(idle->Open(parameters).Force());
    EXPECT_FALSE(idle->IsOpened());
    EXPECT_FALSE(idle->TakeEngine());

    // A failed open leaves the caller's parameters.
    const Scripts failing([&](const QString&, HF::LConnectionParameters& own, const auto&, const auto&) {
        own.Location = Path("missing.db");
        return std::optional<weft::Error>();
    });
    parameters.Location = file;
    EXPECT_FALSE(idle->Open(parameters).Force());
    EXPECT_EQ(idle->GetParameters().Location.ToQString(), file);
}

TEST_F(HandlerTest, TokenStandsInNoText)
{
    HF::LConnectionParameters parameters = At("md:nowhere");
    parameters.AccessToken = "t0ken-of-mine";
    parameters.UserAgent = "agent";
    const auto handler = rc::make<Handler>();
    if (handler->Open(parameters).Force())
        GTEST_SKIP() << "the cloud answers";
    EXPECT_NE(handler->GetLastError(), "");
    EXPECT_FALSE(handler->GetLastError().contains("t0ken-of-mine"));
    for (const QString& entry : HF::ErrorLogEntries())
        EXPECT_FALSE(entry.contains("t0ken-of-mine"));
    EXPECT_FALSE(StoredText().contains("t0ken-of-mine"));
}

TEST_F(HandlerTest, VersionWithoutAnEngineOpen)
{
    EXPECT_EQ(rc::make<Handler>()->get_Version().Force(), ParseEngineVersion(EngineVersionString()));
}

} // namespace
