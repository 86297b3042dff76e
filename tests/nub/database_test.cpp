// SPDX-License-Identifier: GPL-3.0-or-later
#include "nub/database_fixture.h"

#include <cstdlib>
#include <thread>

#include <fcntl.h>
#include <sys/wait.h>
#include <unistd.h>

using namespace nub;
using namespace nub::test;

namespace {

/// A process of this same program that creates or opens a database, runs a
/// script and stays until this object goes, or goes at once; either way without
/// any clean-up. Its part is the test OtherProcess.Child.
class Child
{
public:
    Child(const std::string& path, const std::string& script)
    {
        int toChild[2], fromChild[2];
        if (::pipe(toChild) != 0 || ::pipe(fromChild) != 0)
            throw std::runtime_error("pipe");
        m_pid = ::fork();
        if (m_pid == 0) {
            ::dup2(toChild[0], 0);
            ::dup2(fromChild[1], 3);
            for (int fd = 4; fd < 256; ++fd)
                ::close(fd);
            ::setenv("ORB_CHILD_PATH", path.c_str(), 1);
            ::setenv("ORB_CHILD_SCRIPT", script.c_str(), 1);
            ::execl("/proc/self/exe", "nub_test", "--gtest_filter=OtherProcess.Child", "--gtest_brief=1", nullptr);
            ::_exit(127);
        }
        ::close(toChild[0]);
        ::close(fromChild[1]);
        m_end = toChild[1];
        char byte = 0;
        m_ready = ::read(fromChild[0], &byte, 1) == 1 && byte == 'r';
        ::close(fromChild[0]);
    }
    ~Child()
    {
        ::close(m_end);
        ::waitpid(m_pid, nullptr, 0);
    }
    bool ready() const { return m_ready; }
    pid_t pid() const { return m_pid; }

private:
    pid_t m_pid;
    int m_end = -1;
    bool m_ready = false;
};

/// Asked from another process, which does not own the locks of this one.
bool IsLocked(const std::string& path)
{
    const pid_t child = ::fork();
    if (child == 0) {
        struct flock lock{};
        lock.l_type = F_WRLCK;
        lock.l_whence = SEEK_SET;
        const int fd = ::open(path.c_str(), O_RDWR);
        ::_exit(fd < 0 || ::fcntl(fd, F_GETLK, &lock) != 0 ? 2 : lock.l_type == F_UNLCK ? 0 : 1);
    }
    int status = 0;
    ::waitpid(child, &status, 0);
    EXPECT_TRUE(WIFEXITED(status) && WEXITSTATUS(status) < 2);
    return WEXITSTATUS(status) == 1;
}

void Make(const std::string& path, const std::string& script = "CREATE TABLE t(a INTEGER); INSERT INTO t VALUES (1)")
{
    const DatabasePtr database = MakeDatabase(path);
    database->Create();
    Script(*database, script);
    database->Close();
}

} // namespace

TEST(OtherProcess, Child)
{
    const char* path = std::getenv("ORB_CHILD_PATH");
    if (!path)
        GTEST_SKIP() << "the other tests start this one";
    const DatabasePtr database = MakeDatabase(path);
    database->Create();
    Script(*database, std::getenv("ORB_CHILD_SCRIPT"));
    char byte = 'r';
    [[maybe_unused]] ssize_t count = ::write(3, &byte, 1);
    count = ::read(0, &byte, 1);
    ::_exit(0);
}

TEST(OtherProcess, HoldsTheFileAlone)
{
    Folder folder;
    const std::string path = folder / "held.duckdb";
    const Child holder(path, "CREATE TABLE t(a INTEGER)");
    ASSERT_TRUE(holder.ready());
    const DatabasePtr database = MakeDatabase(path);
    const std::string error = Thrown([&] { database->Open(); });
    EXPECT_TRUE(Has(error, "Could not set lock on file")) << error;
    EXPECT_TRUE(Has(error, std::to_string(holder.pid()))) << error;
    EXPECT_FALSE(database->IsOpen());
    EXPECT_TRUE(Has(Thrown([&] { database->ThrowOut(); }), "another process has it open"));
    EXPECT_TRUE(std::filesystem::exists(path));
    EXPECT_FALSE(orbsql::IsFileOpen(String::FromUtf8(path)));
}

TEST(OtherProcess, AnUncleanExitIsReplayedOrExplained)
{
    Folder folder;
    const std::string path = folder / "left.duckdb";
    ASSERT_TRUE(Child(path, "CREATE TABLE t(a INTEGER); INSERT INTO t VALUES (42)").ready());
    ASSERT_TRUE(std::filesystem::exists(path + ".wal"));
    const DatabasePtr database = MakeDatabase(path);
    database->Open();
    EXPECT_EQ(Ask(*database, "SELECT a FROM t"), "42");

    const std::string bad = folder / "bad.duckdb";
    ASSERT_TRUE(Child(bad, "CREATE TABLE t(a INTEGER DEFAULT (abs(-3))); INSERT INTO t VALUES (7); CHECKPOINT; "
                           "COMMENT ON COLUMN t.a IS 'c'; ALTER TABLE t ADD COLUMN b INTEGER").ready());
    const DatabasePtr broken = MakeDatabase(bad);
    const auto wal = std::filesystem::file_size(bad + ".wal");
    ASSERT_GT(wal, 0u);
    try {
        broken->Open();
        GTEST_SKIP() << "this engine replays it";
    } catch (const xException& failure) {
        const std::string error = failure.what();
        EXPECT_TRUE(Has(error, "Failure while replaying WAL")) << error;
        EXPECT_TRUE(Has(error, "ATTACH '" + bad + "' AS recovered; CHECKPOINT recovered; DETACH recovered;")) << error;
    }
    EXPECT_EQ(std::filesystem::file_size(bad + ".wal"), wal);
    // What the text advises works.
    const DatabasePtr memory = OpenMemory();
    Script(*memory, "ATTACH '" + bad + "' AS recovered; CHECKPOINT recovered; DETACH recovered;");
    broken->Open();
    EXPECT_EQ(Ask(*broken, "SELECT a, b FROM t"), "7|NULL");
}

TEST(OtherProcess, IsLockedOutUntilTheLastHandleCloses)
{
    Folder folder;
    const std::string path = folder / "two.duckdb";
    const DatabasePtr first = MakeDatabase(path);
    first->Create();
    Script(*first, "CREATE TABLE t(a INTEGER)");
    std::filesystem::create_directory(folder / "sub");
    std::filesystem::create_symlink(path, folder / "link.duckdb");
    std::filesystem::create_hard_link(path, folder / "hard.duckdb");
    const DatabasePtr others[] = {MakeDatabase(folder / "sub/../two.duckdb"), MakeDatabase(folder / "link.duckdb"),
                                  MakeDatabase(folder / "hard.duckdb"), MakeDatabase("file://" + path)};
    int n = 0;
    for (const DatabasePtr& other : others) {
        other->Open();
        Script(*other, "INSERT INTO t VALUES (" + std::to_string(++n) + ")");
        EXPECT_EQ(Ask(*first, "SELECT max(a) FROM t"), std::to_string(n));
    }
    // Sessions are apart: a transaction of one is not the other's.
    Script(*first, "BEGIN; INSERT INTO t VALUES (100)");
    EXPECT_EQ(Ask(*others[0], "SELECT max(a) FROM t"), "4");
    Script(*first, "ROLLBACK");
    first->Close();
    EXPECT_TRUE(orbsql::IsFileOpen(String::FromUtf8(path)));
    EXPECT_TRUE(orbsql::IsFileOpen(String::FromUtf8(folder / "hard.duckdb")));
    for (const DatabasePtr& other : others) {
        EXPECT_EQ(Ask(*other, "SELECT count(*) FROM t"), "4");
        EXPECT_TRUE(IsLocked(path));
        other->Close();
    }
    EXPECT_FALSE(orbsql::IsFileOpen(String::FromUtf8(path)));
    EXPECT_FALSE(IsLocked(path));
    first->Open();
    EXPECT_EQ(Ask(*first, "SELECT count(*) FROM t"), "4");
}

TEST(Open, WhatCannotBeOpenedSaysWhyAndCreatesNothing)
{
    Folder folder;
    Make(folder / "whole.duckdb", "CREATE TABLE t AS SELECT range FROM range(200000)");
    std::filesystem::create_directory(folder / "dir");
    WriteFile(folder / "junk", std::string(20000, 'j'));
    WriteFile(folder / "empty", "");
    WriteFile(folder / "short", "hello");
    std::filesystem::copy(folder / "whole.duckdb", folder / "cut");
    std::filesystem::resize_file(folder / "cut", 9000);
    std::filesystem::create_symlink(folder / "nowhere", folder / "dangling");
    const auto before = folder.Entries();
    const struct
    {
        std::string location;
        const char* error;
    } cases[] = {
        {folder / "missing.duckdb", "does not exist"},
        {folder / "no/such/folder.duckdb", "does not exist"},
        {folder / "dangling", "does not exist"},
        {"file:" + (folder / "missing.duckdb"), "does not exist"},
        {"file:" + (folder / "missing.duckdb") + "?mode=rw", "does not exist"},
        {":memory:x", "does not exist"},
        {":MEMORY:", "does not exist"},
        {"", "empty"},
        {folder / "dir", "directory"},
        {folder / "junk", "not a valid DuckDB database file"},
        {folder / "empty", "not a valid DuckDB database file"},
        {folder / "short", "not a valid DuckDB database file"},
        {folder / "cut", "Could not read"},
        {"nosuchscheme:db", "nosuchscheme"},
    };
    for (const auto& c : cases) {
        SCOPED_TRACE(c.location);
        for (const bool readOnly : {false, true}) {
            const DatabasePtr database = MakeDatabase(c.location);
            database->put_IsReadOnly(readOnly);
            const std::string error = Thrown([&] { database->Open(); });
            EXPECT_TRUE(Has(error, c.error)) << error;
            EXPECT_FALSE(database->IsOpen());
            EXPECT_TRUE(Has(Thrown([&] { Script(*database, "SELECT 1"); }), "not open"));
            database->Close();
        }
    }
    EXPECT_EQ(folder.Entries(), before);
    EXPECT_FALSE(std::filesystem::exists(":memory:x"));
}

TEST(Open, FailingCreationLeavesNoFile)
{
    Folder folder;
    const DatabasePtr database = MakeDatabase(folder / "none/x.duckdb");
    EXPECT_TRUE(Has(Thrown([&] { database->Create(); }), "No such file or directory"));
    const DatabasePtr readOnly = MakeDatabase(folder / "ro.duckdb");
    readOnly->put_IsReadOnly(true);
    EXPECT_FALSE(Thrown([&] { readOnly->Create(); }).empty());
    EXPECT_TRUE(folder.Entries().empty());
    WriteFile(folder / "junk", "junk");
    const DatabasePtr junk = MakeDatabase(folder / "junk");
    EXPECT_FALSE(Thrown([&] { junk->Create(); }).empty());
    EXPECT_EQ(std::filesystem::file_size(folder / "junk"), 4u);
}

TEST(Open, InMemoryInAllForms)
{
    for (const char* location : {":memory:", "file:x?mode=memory", "file:?mode=memory", "file:a.db?cache=shared&mode=memory"}) {
        SCOPED_TRACE(location);
        const DatabasePtr database = MakeDatabase(location);
        EXPECT_FALSE(database->Exists());
        EXPECT_FALSE(database->IsOpen());
        database->Open();
        EXPECT_TRUE(database->IsOpen());
        EXPECT_FALSE(database->IsReadOnly());
        EXPECT_EQ(database->get_Path().ToUtf8(), location);
        Script(*database, "CREATE TABLE t(a INTEGER)");
        const DatabasePtr other = MakeDatabase(location);
        other->Create();
        EXPECT_EQ(Ask(*other, "SELECT count(*) FROM duckdb_tables()"), "0"); // each one its own
        EXPECT_TRUE(Has(Thrown([&] { database->Open(); }), "already open"));
        database->Close();
        database->Close();
        EXPECT_TRUE(Has(Thrown([&] { database->ThrowOut(); }), "no files"));
        database->Open();
        EXPECT_EQ(Ask(*database, "SELECT count(*) FROM duckdb_tables()"), "0");
    }
    EXPECT_FALSE(std::filesystem::exists("x"));
    EXPECT_FALSE(Thrown([] { orbsql::CreateDuckDBDatabase(nullptr); }).empty());
    EXPECT_EQ(CreateDiskLocation(nullptr), nullptr);
}

TEST(Open, FileComesBackAsItWas)
{
    Folder folder;
    const std::string path = folder / "gr\xC3\xBC\xC3\x9F 'e' \"q\".duckdb";
    const DatabasePtr database = MakeDatabase(path);
    EXPECT_FALSE(database->Exists());
    database->Create();
    EXPECT_TRUE(database->Exists());
    Script(*database, "CREATE TABLE t(a INTEGER); INSERT INTO t VALUES (5); BEGIN; INSERT INTO t VALUES (6)");
    const auto open = CursorPtr::adopt(database->SqlSelect(u"SELECT a FROM t, range(100000)", 1, {}));
    ASSERT_TRUE(open->NextRow());
    const ResultPtr chain = Start(*database, "SELECT 1; SELECT 2");
    database->Close(); // with a transaction, a cursor and a chain open
    EXPECT_FALSE(std::filesystem::exists(path + ".wal"));
    EXPECT_TRUE(Has(Thrown([&] { Drain(*open); }), "closed"));
    EXPECT_TRUE(Failed(ResultPtr::adopt(chain->NextResult())));
    EXPECT_FALSE(IsLocked(path));
    database->Open();
    EXPECT_EQ(Ask(*database, "SELECT a FROM t"), "5");
    EXPECT_TRUE(orbsql::IsFileOpen(String::FromUtf8(path)));
    EXPECT_FALSE(orbsql::IsFileOpen(u":memory:"));
    const DatabasePtr memory = OpenMemory();
    Make(folder / "attached.duckdb");
    EXPECT_FALSE(orbsql::IsFileOpen(String::FromUtf8(folder / "attached.duckdb")));
    Script(*memory, "ATTACH '" + (folder / "attached.duckdb") + "' AS other");
    EXPECT_TRUE(orbsql::IsFileOpen(String::FromUtf8(folder / "attached.duckdb")));
}

TEST(Open, ReadOnly)
{
    Folder folder;
    const std::string path = folder / "ro.duckdb";
    Make(path);
    const DatabasePtr reader = MakeDatabase(path);
    reader->put_IsReadOnly(true);
    reader->Open();
    EXPECT_TRUE(reader->IsReadOnly());
    EXPECT_EQ(Ask(*reader, "SELECT a FROM t"), "1");
    EXPECT_TRUE(Has(Thrown([&] { Script(*reader, "INSERT INTO t VALUES (2)"); }), "read-only"));
    const DatabasePtr second = MakeDatabase(path);
    second->put_IsReadOnly(true);
    second->Open();
    const DatabasePtr writer = MakeDatabase(path);
    EXPECT_TRUE(Has(Thrown([&] { writer->Open(); }), "different configuration than existing connections"));
    reader->Close();
    second->Close();
    writer->Open();
    EXPECT_FALSE(writer->IsReadOnly());
    EXPECT_TRUE(Has(Thrown([&] { reader->Open(); }), "different configuration"));
    Script(*writer, "SET threads = 1; INSERT INTO t VALUES (2)");
    const DatabasePtr another = MakeDatabase(path); // settings of a session do not matter
    another->Open();
    EXPECT_EQ(Ask(*another, "SELECT count(*) FROM t"), "2");
}

TEST(Open, TheTokenStandsInNoText)
{
    const DatabasePtr database = MakeDatabase("md:nosuch");
    database->SetMotherDuckAccess(u"secretTOKEN123", u"orbis/1");
    EXPECT_FALSE(database->Exists());
    EXPECT_FALSE(Has(Thrown([&] { database->Open(); }), "secretTOKEN123"));
    const DatabasePtr memory = MakeDatabase(":memory:");
    memory->SetMotherDuckAccess(u"secretTOKEN123", u"");
    memory->Open(); // of no use there, and no harm
    const auto outline = Chain(*memory, "SELECT \"secretTOKEN123\"");
    EXPECT_FALSE(Has(outline[0], "secretTOKEN123")) << outline[0];
    EXPECT_TRUE(Has(outline[0], "***")) << outline[0];
}

TEST(ThrowOut, RemovesTheFilesOfAClosedDatabaseOnly)
{
    Folder folder;
    const std::string path = folder / "gone.duckdb";
    const DatabasePtr database = MakeDatabase(path);
    database->Create();
    EXPECT_TRUE(Has(Thrown([&] { database->ThrowOut(); }), "open"));
    const DatabasePtr other = MakeDatabase(path);
    EXPECT_TRUE(Has(Thrown([&] { other->ThrowOut(); }), "open in this program"));
    database->Close();
    WriteFile(path + ".wal", "left");
    WriteFile(path + ".txt", "mine");
    other->ThrowOut();
    EXPECT_EQ(folder.Entries(), std::vector<std::string>{"gone.duckdb.txt"});
    EXPECT_TRUE(Has(Thrown([&] { other->ThrowOut(); }), "does not exist"));
    WriteFile(folder / "notes.csv", "a,b\n1,2\n and more text\n");
    EXPECT_TRUE(Has(Thrown([&] { MakeDatabase(folder / "notes.csv")->ThrowOut(); }), "not a DuckDB database file"));
    EXPECT_TRUE(std::filesystem::exists(folder / "notes.csv"));
}

TEST(Open, FromManyThreadsAtOnce)
{
    Folder folder;
    const std::string path = folder / "many.duckdb";
    Make(path);
    std::vector<std::thread> threads;
    for (int n = 0; n < 4; ++n)
        threads.emplace_back([&] {
            for (int i = 0; i < 15; ++i) {
                const DatabasePtr database = MakeDatabase(path);
                database->Open();
                Script(*database, "INSERT INTO t VALUES (1)");
                database->Close();
            }
        });
    for (std::thread& thread : threads)
        thread.join();
    const DatabasePtr database = MakeDatabase(path);
    database->Open();
    EXPECT_EQ(Ask(*database, "SELECT count(*) FROM t"), "61");
}

TEST(LocalConnection, TellsTheEngine)
{
    const auto connection = orbsql::GetLocalConnection();
    ASSERT_TRUE(connection);
    const DatabasePtr database = OpenMemory();
    EXPECT_EQ(connection->get_VersionText().ToUtf8(), Ask(*database, "SELECT version()"));
}
