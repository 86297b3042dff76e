// SPDX-License-Identifier: GPL-3.0-or-later
// Dumps and loads with the program.
#include "e2e/orbis_process.h"

#include <QFile>
#include <QThread>

#include <csignal>

#include <sys/types.h>

namespace {

QByteArray Sample()
{
    QFile file(QStringLiteral(ORBIS_EXAMPLES "/sample.sql"));
    EXPECT_TRUE(file.open(QIODevice::ReadOnly));
    return file.readAll();
}

} // namespace

TEST_F(ProgramTest, TheSampleComesBackByteForByte)
{
    Make("a.duckdb", QString::fromUtf8(Sample()));
    ASSERT_EQ(Run({"create", "b.duckdb"}).exitCode, 0);
    const RunResult dump = Run({"dump", "a.duckdb", "a.sql"});
    ASSERT_EQ(dump.exitCode, 0) << dump.err.toStdString();
    EXPECT_EQ(dump.out + dump.err, "");
    const RunResult load = Run({"load", "b.duckdb", "a.sql", "--stop-on-error"});
    ASSERT_EQ(load.exitCode, 0) << load.err.toStdString();
    // Through the standard streams as well.
    const RunResult again = Run({"dump", "b.duckdb", "-"});
    ASSERT_EQ(again.exitCode, 0) << again.err.toStdString();
    EXPECT_EQ(again.out, Read("a.sql"));
    ASSERT_EQ(Run({"create", "c.duckdb"}).exitCode, 0);
    ASSERT_EQ(Run({"load", "c.duckdb", "-", "--one-by-one"}, again.out).exitCode, 0);
    EXPECT_EQ(Run({"dump", "c.duckdb", "-"}).out, again.out);
    // Plain SQL, which the engine takes by itself.
    ASSERT_EQ(Run({"create", "d.duckdb"}).exitCode, 0);
    ASSERT_EQ(Run({"sql", "d.duckdb", "a.sql"}).exitCode, 0);
    EXPECT_EQ(Run({"dump", "d.duckdb", "-"}).out, again.out);
    for (int i = 0; i < 2; ++i) {
        const QByteArray clean = Run({"dump", "a.duckdb", "-", "--clean"}).out;
        ASSERT_EQ(Run({"load", "c.duckdb", "-", "--stop-on-error"}, clean).exitCode, 0);
        EXPECT_EQ(Run({"dump", "c.duckdb", "-"}).out, again.out);
    }
}

TEST_F(ProgramTest, DumpsTakeTheirOptions)
{
    Make("a.duckdb", "CREATE SCHEMA s; CREATE TABLE s.t(i INTEGER); INSERT INTO s.t FROM range(5); CREATE TABLE \"a.b\"(x INTEGER); "
                     "CREATE VIEW v AS SELECT 1 AS one;");
    const auto dump = [this](QStringList options) { return Run(QStringList{"dump", "a.duckdb", "-"} + options); };
    EXPECT_EQ(dump({"--insert-rows", "2"}).out.count("INSERT"), 3);
    const QByteArray single = dump({"--single-row", "--no-transaction"}).out;
    EXPECT_EQ(single.count("INSERT"), 5);
    EXPECT_FALSE(single.contains("BEGIN"));
    EXPECT_FALSE(dump({"--data", "structure"}).out.contains("INSERT"));
    EXPECT_FALSE(dump({"--data", "data"}).out.contains("CREATE"));
    EXPECT_FALSE(dump({"--schema", "s"}).out.contains("VIEW"));
    const QByteArray table = dump({"--table", "main.a.b", "--table", "s.t"}).out;
    EXPECT_TRUE(table.contains("\"a.b\"") && table.contains("\"s\".\"t\"") && !table.contains("SCHEMA"));
    EXPECT_TRUE(dump({"--encoding", "UTF-16LE"}).out.startsWith(QByteArray("-\0-\0\n\0", 6)));
    const struct
    {
        QStringList options;
        int exitCode;
    } refused[] = {{{"--table", "s.nosuch"}, 1},   {{"--schema", "nosuch"}, 1}, {{"--schema", "s", "--table", "s.t"}, 2},
                   {{"--data", "rows"}, 2},        {{"--insert-rows", "x"}, 2}, {{"--encoding", "nosuch"}, 2}};
    for (const auto& each : refused) {
        const RunResult result = dump(each.options);
        EXPECT_EQ(result.exitCode, each.exitCode) << each.options.join(' ').toStdString();
        EXPECT_EQ(result.out, "");
        EXPECT_FALSE(result.err.isEmpty());
    }
    // Never over the database itself, nor over an older dump that a failure would spoil.
    EXPECT_EQ(Run({"dump", "a.duckdb", "./a.duckdb"}).exitCode, 2);
    EXPECT_EQ(Run({"dump", "a.duckdb", "nosuch/x.sql"}).exitCode, 3);
    Write("old.sql", "old");
    Make("name.duckdb", QString::fromUtf8("CREATE TABLE \"тест\"(i INTEGER)"));
    EXPECT_EQ(Run({"dump", "name.duckdb", "old.sql", "--encoding", "ISO-8859-1"}).exitCode, 1);
    EXPECT_EQ(Read("old.sql"), "old");
    EXPECT_EQ(Files(), (QStringList{"a.duckdb", "name.duckdb", "old.sql"}));
    if (QFile::exists("/dev/full")) {
        const RunResult full = Run({"dump", "a.duckdb", "/dev/full"});
        EXPECT_EQ(full.exitCode, 1);
        EXPECT_TRUE(full.err.contains("cannot write")) << full.err.toStdString();
    }
}

TEST_F(ProgramTest, ALoadTellsWhatFailed)
{
    Make("a.duckdb", "CREATE TABLE t(i INTEGER PRIMARY KEY)");
    Write("x.sql", "INSERT INTO t VALUES (1);\nINSERT INTO t VALUES (1);\n\nINSERT INTO nosuch\nVALUES (1);\nINSERT INTO t VALUES (2);\n");
    const RunResult result = Run({"load", "a.duckdb", "x.sql"});
    EXPECT_EQ(result.exitCode, 1);
    EXPECT_TRUE(result.err.contains("line 2: ") && result.err.contains("line 4: ") && result.err.contains("2 of 4")) << result.err.toStdString();
    EXPECT_EQ(Rows("a.duckdb", "SELECT count(*) FROM t")[0].toArray()[0].toInt(), 2);
    EXPECT_EQ(Run({"load", "a.duckdb", "x.sql", "--stop-on-error"}).exitCode, 1);
    Write("cut.sql", "INSERT INTO t VALUES (7);\nINSERT INTO t VALUES (8");
    const RunResult cut = Run({"load", "a.duckdb", "cut.sql"});
    EXPECT_EQ(cut.exitCode, 1);
    EXPECT_TRUE(cut.err.contains("line 2")) << cut.err.toStdString();
    EXPECT_EQ(Run({"load", "a.duckdb", "nosuch.sql"}).exitCode, 3);
    EXPECT_EQ(Run({"load", "nosuch.duckdb", "x.sql"}).exitCode, 3);
    EXPECT_EQ(Run({"load", "a.duckdb", "x.sql", "--encoding", "nosuch"}).exitCode, 2);
}

TEST_F(ProgramTest, AnInterruptedDumpLeavesNothing)
{
    Make("a.duckdb", "CREATE TABLE t AS SELECT range AS i, repeat('x', 200) AS s FROM range(2000000)");
    const auto process = Prepare({"dump", "a.duckdb", "x.sql"});
    process->start();
    ASSERT_TRUE(process->waitForStarted());
    for (int i = 0; i < 100 && Files().size() < 2; ++i)
        QThread::msleep(20); // the file beside the target is being written
    ::kill(static_cast<pid_t>(process->processId()), SIGINT);
    const RunResult result = Finish(*process);
    EXPECT_EQ(result.exitCode, 128 + SIGINT) << result.err.toStdString();
    EXPECT_EQ(Files(), QStringList{"a.duckdb"});
}

TEST_F(ProgramTest, EnginesExchangeDumps)
{
    const QString other = qEnvironmentVariable("ORBIS_OTHER_ENGINE");
    if (other.isEmpty())
        GTEST_SKIP() << "ORBIS_OTHER_ENGINE names no folder with another engine library";
    const auto engine = [&](bool theOther, const QStringList& arguments) {
        const auto process = Prepare(arguments);
        if (theOther) {
            QProcessEnvironment environment = process->processEnvironment();
            environment.insert("LD_LIBRARY_PATH", other);
            process->setProcessEnvironment(environment);
        }
        process->start();
        return Finish(*process);
    };
    const auto version = [&](bool theOther) {
        return engine(theOther, {"sql", ":memory:", "--format", "json", "-c", "SELECT version()"}).out;
    };
    ASSERT_NE(version(false), version(true));
    const auto loaded = [&](bool theOther, const QString& database, const QString& dump) {
        EXPECT_EQ(engine(theOther, {"create", database}).exitCode, 0);
        const RunResult load = engine(theOther, {"load", database, dump, "--stop-on-error"});
        EXPECT_EQ(load.exitCode, 0) << load.err.toStdString();
    };
    const auto dumped = [&](bool theOther, const QString& database, const QString& file, const QString& data) {
        const RunResult dump = engine(theOther, {"dump", database, file, "--data", data});
        EXPECT_EQ(dump.exitCode, 0) << dump.err.toStdString();
        return Read(file);
    };
    // Statements that an engine or its file format does not take are left out of the dumps from the start.
    const QString awkward = QStringLiteral(ORBIS_TESTS "/dump/awkward.sql");
    for (const bool first : {false, true}) {
        SCOPED_TRACE(first ? "from the other engine" : "to the other engine");
        const QString n = QString::number(first);
        ASSERT_EQ(engine(first, {"create", "a" + n}).exitCode, 0);
        engine(first, {"load", "a" + n, awkward});
        const QByteArray whole = dumped(first, "a" + n, "a.sql", "both");
        ASSERT_GT(whole.count("CREATE TABLE"), 10);
        loaded(!first, "b" + n, "a.sql");
        // Rows do not change at all. An engine writes the text of a view in its own
        // manner, so structures are compared where they came from.
        EXPECT_EQ(dumped(!first, "b" + n, "rows.sql", "data"), dumped(first, "a" + n, "rows.sql", "data"));
        dumped(!first, "b" + n, "b.sql", "both");
        loaded(first, "c" + n, "b.sql");
        EXPECT_EQ(dumped(first, "c" + n, "c.sql", "both"), whole);
    }
}
