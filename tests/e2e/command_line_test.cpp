// SPDX-License-Identifier: GPL-3.0-or-later
#include "e2e/orbis_process.h"

TEST_F(ProgramTest, MalformedCommandLinesEndWithTwoAndDoNothing)
{
    Make("db.duckdb", "CREATE TABLE t(i INTEGER);");
    Write("other.sql", "SELECT 1;");
    const QByteArray invalid("\xC3\x28");
    const struct
    {
        QStringList arguments;
        QByteArray said;
    } cases[] = {
        {{}, "no command"},
        {{"tree", "db.duckdb", "--frob"}, "orbis: "},
        {{"frobnicate"}, "unknown command \"frobnicate\"; commands: info, sql, create, probe, backup, idents"},
        {{"sql"}, "too few arguments"},
        {{"sql", "new.duckdb", "other.sql", "x"}, "too many arguments"},
        {{"sql", "db.duckdb", "other.sql", "-c", "SELECT 1"}, "either -c or a file"},
        {{"sql", "db.duckdb", "-", "-c", "SELECT 1"}, "either -c or a file"},
        {{"sql", "db.duckdb", "-c"}, "needs a value"},
        {{"sql", "db.duckdb", "-c", "INSERT INTO t VALUES (1)", "--format", "xml"}, "unknown format \"xml\""},
        {{"sql", "db.duckdb", "-c", "INSERT INTO t VALUES (1)", "--frob"}, "unknown option --frob"},
        {{"sql", "db.duckdb", "-c", "INSERT INTO t VALUES ($1)", "--bind", "int32=x"}, "\"x\" is not a whole number"},
        {{"sql", "db.duckdb", "-c", "INSERT INTO t VALUES ($1)", "--bind", "int8=1"}, "unknown type"},
        {{"sql", "db.duckdb", "-c", "INSERT INTO t VALUES ($1)", "--bind", "7"}, "unknown type"},
        {{"sql", "db.duckdb", "-c", "INSERT INTO t VALUES ($1)", "--bind", "blob=@missing"}, "cannot read \"missing\""},
        {{"info", "db.duckdb"}, "too many arguments"},
        {{"create"}, "too few arguments"},
        {{"create", ""}, "empty"},
        {{"create", "new.duckdb", "--read-only"}, "cannot be read-only"},
        {{"probe"}, "too few arguments"},
        {{"backup", "db.duckdb"}, "too few arguments"},
        {{"idents"}, "too few arguments"},
        {{"idents", "db.duckdb", "--format", "csv"}, "unknown option --format"},
        {{"info", "--plugin"}, "needs a value"},
    };
    for (const auto& c : cases) {
        const RunResult result = Run(c.arguments);
        const std::string shown = c.arguments.join(' ').toStdString();
        EXPECT_EQ(result.exitCode, 2) << shown << result.err.toStdString();
        EXPECT_TRUE(result.err.contains(c.said)) << shown << ": " << result.err.toStdString();
        EXPECT_TRUE(result.out.isEmpty()) << shown << result.out.toStdString();
    }
    EXPECT_EQ(Rows("db.duckdb", "SELECT count(*) FROM t").at(0).toArray().at(0).toInt(), 0);
    EXPECT_EQ(Files(), QStringList({"db.duckdb", "other.sql"}));
}

TEST_F(ProgramTest, ArgumentsThatAreNoTextAreRefused)
{
    // QProcess would encode them, so the shell makes the bytes.
    const std::unique_ptr<QProcess> process = Prepare({});
    process->setProgram("/bin/sh");
    process->setArguments({"-c", "exec \"$0\" sql :memory: -c \"$(printf 'SELECT \\303\\050')\"", Program()});
    process->start();
    const RunResult result = Finish(*process);
    EXPECT_EQ(result.exitCode, 2);
    EXPECT_TRUE(result.err.contains("argument 4 is not valid UTF-8")) << result.err.toStdString();
}

TEST_F(ProgramTest, HelpAndVersionGoToStandardOutput)
{
    for (const QStringList& arguments : {QStringList{"--help"}, QStringList{"-h"}, QStringList{"sql", "--help"},
                                         QStringList{"backup", "--help"}, QStringList{"--version"}}) {
        const RunResult result = Run(arguments);
        EXPECT_EQ(result.exitCode, 0) << arguments.join(' ').toStdString();
        EXPECT_FALSE(result.out.isEmpty());
        EXPECT_TRUE(result.err.isEmpty()) << result.err.toStdString();
    }
    EXPECT_TRUE(Run({"--help"}).out.contains("idents DATABASE"));
    EXPECT_TRUE(Run({"--version"}).out.startsWith("orbis "));
    EXPECT_TRUE(Files().isEmpty());
}

TEST_F(ProgramTest, APluginThatDoesNotLoadIsACannotOpen)
{
    Write("junk.so", "this is no library");
    for (const char* plugin : {"missing.so", "junk.so", "."}) {
        const RunResult result = Run({"--plugin", plugin, "info"});
        EXPECT_EQ(result.exitCode, 3) << plugin;
        EXPECT_TRUE(result.err.startsWith("orbis: ")) << result.err.toStdString();
    }
    EXPECT_EQ(Run({"--plugin", qEnvironmentVariable("ORBIS_BIN") + "/orb_duckdb.so", "info"}).exitCode, 0);
}

TEST_F(ProgramTest, SettingsReachTheSession)
{
    Write("own.ini", "[DuckDB]\nThreads=1\nMemoryLimit=123MiB\n");
    const QString sql = "SELECT current_setting('threads'), current_setting('memory_limit')";
    const QJsonArray row = Rows(":memory:", sql, {"--settings", "own.ini"}).at(0).toArray();
    EXPECT_EQ(row.at(0).toVariant().toString(), "1");
    EXPECT_EQ(row.at(1).toString(), "123.0 MiB");

    // A limit that the engine refuses leaves the database usable.
    Write("bad.ini", "[DuckDB]\nMemoryLimit=lots\n");
    EXPECT_EQ(Rows(":memory:", "SELECT 42", {"--settings", "bad.ini"}).at(0).toArray().at(0).toInt(), 42);
}

TEST_F(ProgramTest, AServerWithoutALocaleIsNoReasonForWords)
{
    const std::unique_ptr<QProcess> process = Prepare({"sql", ":memory:", "--format", "csv", "-c", "SELECT 'Köln' AS \"京\""});
    QProcessEnvironment environment = process->processEnvironment();
    for (const char* name : {"LANG", "LC_ALL", "LC_CTYPE"})
        environment.remove(name);
    process->setProcessEnvironment(environment);
    process->start();
    const RunResult result = Finish(*process);
    EXPECT_EQ(result.exitCode, 0);
    EXPECT_EQ(result.out, "京\r\nKöln\r\n");
    EXPECT_EQ(result.err, "");
}
