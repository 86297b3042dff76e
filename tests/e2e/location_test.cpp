// SPDX-License-Identifier: GPL-3.0-or-later
// Locations that open and those that do not.
#include "e2e/orbis_process.h"

#include <QDir>
#include <QFile>
#include <QFileInfo>

#include <csignal>

#include <unistd.h>

TEST_F(ProgramTest, LocationsThatDoNotOpenAreToldAndLeftAlone)
{
    Make("good.duckdb", "CREATE TABLE t AS SELECT range AS i FROM range(100000);");
    Write("junk.duckdb", "this is not a database, but long enough to be read as one: " + QByteArray(8192, 'x'));
    Write("short.duckdb", "DUCK");
    Write("truncated.duckdb", Read("good.duckdb").left(5000));
    ASSERT_TRUE(QDir(m_folder.path()).mkdir("folder"));
    const QStringList before = Files();
    const QByteArray junk = Read("junk.duckdb");

    const struct
    {
        const char* location;
        const char* said;
    } cases[] = {
        {"missing.duckdb", "does not exist"}, {"no/such/folder/x.duckdb", "does not exist"},
        {"folder", ""},                       {"junk.duckdb", "not a valid DuckDB database file"},
        {"short.duckdb", ""},                 {"truncated.duckdb", ""},
        {"", "empty"},
    };
    for (const auto& c : cases) {
        for (const QStringList& command :
             {QStringList{"sql", c.location, "-c", "SELECT 1"}, QStringList{"idents", c.location},
              QStringList{"backup", c.location, "folder"},
              QStringList{"--read-only", "sql", c.location, "-c", "SELECT 1"}}) {
            const RunResult result = Run(command);
            const std::string shown = command.join(' ').toStdString();
            EXPECT_EQ(result.exitCode, 3) << shown << ": " << result.err.toStdString();
            EXPECT_TRUE(result.out.isEmpty()) << shown;
            EXPECT_TRUE(result.err.startsWith("orbis: ")) << shown << ": " << result.err.toStdString();
            EXPECT_TRUE(result.err.contains(c.said)) << shown << ": " << result.err.toStdString();
            EXPECT_TRUE(StandsOnce(result.err, "orbis: ")) << shown << ": " << result.err.toStdString();
        }
    }
    EXPECT_EQ(Files(), before);
    EXPECT_EQ(Read("junk.duckdb"), junk);
    EXPECT_TRUE(QDir(Path("folder")).isEmpty());
}

TEST_F(ProgramTest, AFileThatNobodyMayReadDoesNotOpen)
{
    Make("secret.duckdb", "SELECT 1;");
    ASSERT_TRUE(QFile::setPermissions(Path("secret.duckdb"), {}));
    if (::access(QFile::encodeName(Path("secret.duckdb")).constData(), R_OK) == 0)
        GTEST_SKIP() << "this user may read everything";
    EXPECT_EQ(Run({"sql", "secret.duckdb", "-c", "SELECT 1"}).exitCode, 3);
}

TEST_F(ProgramTest, AFileLockedByAnotherProcess)
{
    Make("db.duckdb", "CREATE TABLE t(i INTEGER);");
    // Holds the database open until it is asked to end.
    const std::unique_ptr<QProcess> holder = Prepare({"sql", "db.duckdb", "--format", "ndjson", "-c",
                                                      "SELECT 'open' AS state", "-c",
                                                      "SELECT count(*) FROM range(100000000000000) t(i) WHERE i % 7 = -1"});
    StartAndWaitFor(*holder, "open");
    const RunResult locked = Run({"sql", "db.duckdb", "-c", "SELECT 1"});
    EXPECT_EQ(locked.exitCode, 3) << locked.err.toStdString();
    EXPECT_TRUE(locked.err.contains("PID " + QByteArray::number(holder->processId()))) << locked.err.toStdString();
    EXPECT_EQ(Run({"--read-only", "sql", "db.duckdb", "-c", "SELECT 1"}).exitCode, 3);
    holder->terminate();
    EXPECT_EQ(Finish(*holder).exitCode, 128 + SIGTERM);
    EXPECT_EQ(Run({"sql", "db.duckdb", "-c", "INSERT INTO t VALUES (1)"}).exitCode, 0);
}

TEST_F(ProgramTest, MemoryInAllForms)
{
    for (const char* location : {":memory:", "file:x?mode=memory", "file:?cache=shared&mode=memory"}) {
        const RunResult result =
            Run({"sql", location, "--format", "csv", "-c", "CREATE TABLE t AS SELECT 7 AS n", "-c", "FROM t"});
        EXPECT_EQ(result.exitCode, 0) << location << ": " << result.err.toStdString();
        EXPECT_EQ(result.out.right(8), "n\r\n7\r\n") << location;
    }
    EXPECT_TRUE(Files().isEmpty()) << Files().join(' ').toStdString();
}

TEST_F(ProgramTest, ReadOnlyReadsAndDoesNotWrite)
{
    Make("db.duckdb", "CREATE TABLE t AS SELECT 1 AS i;");
    const QByteArray before = Read("db.duckdb");
    EXPECT_EQ(Run({"--read-only", "sql", "db.duckdb", "-c", "FROM t"}).exitCode, 0);
    const RunResult refused = Run({"sql", "db.duckdb", "--read-only", "-c", "INSERT INTO t VALUES (2)"});
    EXPECT_EQ(refused.exitCode, 1);
    EXPECT_TRUE(refused.err.contains("read-only")) << refused.err.toStdString();
    EXPECT_EQ(Read("db.duckdb"), before);
}

TEST_F(ProgramTest, CreateMakesWhatIsNotThere)
{
    EXPECT_EQ(Run({"create", "new.duckdb"}).exitCode, 0);
    EXPECT_EQ(Files(), QStringList("new.duckdb"));
    EXPECT_EQ(Read("new.duckdb").mid(8, 4), "DUCK");
    const QByteArray made = Read("new.duckdb");

    const RunResult again = Run({"create", "new.duckdb"});
    EXPECT_EQ(again.exitCode, 1);
    EXPECT_TRUE(again.err.contains("already exists!")) << again.err.toStdString();
    EXPECT_TRUE(StandsOnce(again.err, "orbis: "));
    EXPECT_EQ(Read("new.duckdb"), made);

    Write("junk", "no database");
    EXPECT_EQ(Run({"create", "junk"}).exitCode, 1);
    EXPECT_EQ(Read("junk"), "no database");

    const RunResult nowhere = Run({"create", "no/such/folder/x.duckdb"});
    EXPECT_EQ(nowhere.exitCode, 3);
    EXPECT_TRUE(StandsOnce(nowhere.err, "orbis: ")) << nowhere.err.toStdString();
    EXPECT_EQ(Files(), QStringList({"junk", "new.duckdb"}));

    // A name that is not plain.
    const QString odd = "o'dd \"näme\" ?.db";
    EXPECT_EQ(Run({"create", odd}).exitCode, 0);
    EXPECT_TRUE(QFile::exists(Path(odd)));
    EXPECT_EQ(Rows(odd, "SELECT 5")[0].toArray()[0].toInt(), 5);
}

TEST_F(ProgramTest, ProbeTellsWhetherALocationIsThere)
{
    Make("db.duckdb", "SELECT 1;");
    const RunResult there = Run({"probe", "db.duckdb"});
    EXPECT_EQ(there.exitCode, 0);
    EXPECT_EQ(there.out, "reachable\n");
    for (const char* location : {"missing.duckdb", ":memory:", ""}) {
        const RunResult gone = Run({"probe", location});
        EXPECT_EQ(gone.exitCode, 3) << location;
        EXPECT_EQ(gone.out, "unreachable\n") << location;
    }
    EXPECT_EQ(Files(), QStringList("db.duckdb"));
}
