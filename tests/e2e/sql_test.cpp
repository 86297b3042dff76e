// SPDX-License-Identifier: GPL-3.0-or-later
// Running texts: order, failures, binds, formats.
#include "e2e/orbis_process.h"

#include <QFile>

TEST_F(ProgramTest, TextsComeFromEverywhere)
{
    Write("script.sql", "\xEF\xBB\xBF-- a comment with ümlauts; and a semicolon\nSELECT 1 AS a;\nSELECT ';' AS b;\n");
    Write("empty.sql", "");
    Write("comment.sql", "-- nothing to do");
    const struct
    {
        QStringList arguments;
        QByteArray input;
        QByteArray out;
    } cases[] = {
        {{"-c", "SELECT 1 AS a"}, "", "a\r\n1\r\n"},
        {{"-c", "SELECT 1 AS a", "-c", "SELECT 2 AS b"}, "", "a\r\n1\r\n\r\nb\r\n2\r\n"},
        {{"-c", "CREATE TABLE t(i INT); INSERT INTO t VALUES (5)", "-c", "FROM t"}, "", "Count\r\n1\r\n\r\ni\r\n5\r\n"},
        {{"script.sql"}, "", "a\r\n1\r\n\r\nb\r\n;\r\n"},
        {{"-"}, "SELECT 3 AS c", "c\r\n3\r\n"},
        {{}, "SELECT 4 AS d", "d\r\n4\r\n"},
        {{"empty.sql"}, "", ""},
        {{"comment.sql"}, "", ""},
        {{"-c", ""}, "", ""},
    };
    for (const auto& c : cases) {
        const RunResult result = Run(QStringList{"sql", ":memory:", "--format", "csv"} + c.arguments, c.input);
        const std::string shown = c.arguments.join(' ').toStdString();
        EXPECT_EQ(result.exitCode, 0) << shown << result.err.toStdString();
        if (c.out.startsWith("Count"))
            EXPECT_TRUE(result.out.endsWith("i\r\n5\r\n")) << result.out.toStdString();
        else
            EXPECT_EQ(result.out, c.out) << shown;
        EXPECT_EQ(result.err, "") << shown;
    }
    const RunResult missing = Run({"sql", ":memory:", "missing.sql"});
    EXPECT_EQ(missing.exitCode, 3);
    EXPECT_TRUE(missing.err.contains("cannot read missing.sql")) << missing.err.toStdString();
}

TEST_F(ProgramTest, AScriptOfAnyLength)
{
    Make("db.duckdb", "CREATE TABLE t(i INTEGER, s VARCHAR);");
    QByteArray script = "BEGIN;\n";
    for (int i = 0; i < 2000; ++i)
        script += "INSERT INTO t VALUES (" + QByteArray::number(i) + ", '" + QByteArray(1000, 'a' + i % 26) + "');\n";
    script += "COMMIT;\n";
    Write("long.sql", script);
    const RunResult result = Run({"sql", "db.duckdb", "long.sql"});
    EXPECT_EQ(result.exitCode, 0) << result.err.toStdString();
    EXPECT_EQ(Rows("db.duckdb", "SELECT count(*), sum(len(s))::BIGINT FROM t")[0].toArray()[1].toInt(), 2000000);
}

TEST_F(ProgramTest, ScriptsThatAreNoTextRunNotAtAll)
{
    Make("db.duckdb", "CREATE TABLE t(i INTEGER);");
    const struct
    {
        QByteArray script;
        const char* said;
    } cases[] = {
        {"INSERT INTO t VALUES (1);\n-- caf\xE9\n", "line 2: not valid UTF-8"},
        {"INSERT INTO t VALUES (1);\n\n\nSELECT '\xF0\x9F\x98", "line 4: not valid UTF-8"},
        {QByteArray("INSERT INTO t VALUES (1);\0DROP TABLE t;", 40), "line 1: a zero byte"},
        {"\xFF\xFEI\0", "line 1: not valid UTF-8"},
    };
    for (const auto& c : cases) {
        Write("script.sql", c.script);
        for (const bool fromFile : {true, false}) {
            const RunResult result = fromFile ? Run({"sql", "db.duckdb", "script.sql"})
                                              : Run({"sql", "db.duckdb", "-"}, c.script);
            EXPECT_EQ(result.exitCode, 2) << c.said;
            EXPECT_TRUE(result.err.contains(c.said)) << result.err.toStdString();
            EXPECT_TRUE(result.out.isEmpty());
        }
    }
    EXPECT_EQ(Rows("db.duckdb", "SELECT count(*) FROM t")[0].toArray()[0].toInt(), 0);
}

TEST_F(ProgramTest, ASyntaxErrorAnywhereKeepsTheWholeTextFromRunning)
{
    Make("db.duckdb", "CREATE TABLE t(i INTEGER);");
    const RunResult result =
        Run({"sql", "db.duckdb", "-c", "INSERT INTO t VALUES (1); INSERT INTO t VALUES (2); SELEC 3;"});
    EXPECT_EQ(result.exitCode, 1);
    EXPECT_TRUE(result.err.startsWith("orbis: Parser Error")) << result.err.toStdString();
    EXPECT_TRUE(StandsOnce(result.err, "Parser Error")) << result.err.toStdString();
    EXPECT_TRUE(result.out.isEmpty());
    EXPECT_EQ(Rows("db.duckdb", "SELECT count(*) FROM t")[0].toArray()[0].toInt(), 0);
}

TEST_F(ProgramTest, AFailureEndsTheRunAndKeepsWhatCameBefore)
{
    Make("db.duckdb", "CREATE TABLE t(i INTEGER PRIMARY KEY);");
    const RunResult result = Run({"sql", "db.duckdb", "--format", "json", "-c",
                                  "INSERT INTO t VALUES (1); SELECT 'before' AS x; INSERT INTO t VALUES (1);"
                                  "INSERT INTO t VALUES (2);",
                                  "-c", "INSERT INTO t VALUES (3)"});
    EXPECT_EQ(result.exitCode, 1);
    EXPECT_TRUE(result.err.startsWith("orbis: Constraint Error")) << result.err.toStdString();
    EXPECT_TRUE(StandsOnce(result.err, "Constraint Error"));
    const QJsonArray results = result.Json();
    ASSERT_EQ(results.size(), 3);
    EXPECT_EQ(results.at(0)["status"].toInt(), 3);
    EXPECT_EQ(results.at(0)["affected"].toInt(), 1);
    EXPECT_EQ(results.at(1)["rows"][0][0].toString(), "before");
    EXPECT_EQ(results.at(2)["status"].toInt(), 0);
    EXPECT_TRUE(results.at(2)["error"].toString().startsWith("Constraint Error"));
    EXPECT_EQ(Rows("db.duckdb", "FROM t").size(), 1);
}

TEST_F(ProgramTest, AFailureWithinTheRowsIsAFailure)
{
    // Goes wrong behind the first rows, when a statement has begun to answer. On
    // one thread, since the engine's threads now and then tell "Interrupted" of
    // one another before the one that failed tells why.
    Write("one.ini", "[DuckDB]\nThreads=1\n");
    Make("db.duckdb", "CREATE TABLE t(i INTEGER);");
    const RunResult result =
        Run({"sql", "db.duckdb", "--settings", "one.ini", "--format", "json", "-c",
             "SELECT CASE WHEN i = 190000 THEN error('row ' || i) ELSE i::VARCHAR END AS x FROM range(200000) t(i);"
             "INSERT INTO t VALUES (1);", "-c", "SELECT 'never' AS y"});
    EXPECT_EQ(result.exitCode, 1);
    EXPECT_TRUE(result.err.contains("row 190000")) << result.err.toStdString();
    EXPECT_TRUE(StandsOnce(result.err, "orbis: ")) << result.err.toStdString();
    EXPECT_FALSE(result.out.contains("never"));
    const QJsonArray results = result.Json();
    ASSERT_EQ(results.size(), 1);
    EXPECT_TRUE(results.at(0)["error"].toString().contains("row 190000"));
    EXPECT_EQ(Rows("db.duckdb", "FROM t").size(), 0);
}

TEST_F(ProgramTest, AFailedTransactionLeavesNothingBehind)
{
    Make("db.duckdb", "CREATE TABLE t(i INTEGER PRIMARY KEY);");
    EXPECT_EQ(Run({"sql", "db.duckdb", "-c", "BEGIN; INSERT INTO t VALUES (1); INSERT INTO t VALUES (1); COMMIT;"}).exitCode,
              1);
    EXPECT_EQ(Rows("db.duckdb", "FROM t").size(), 0);
}

TEST_F(ProgramTest, BindsReachEachStatement)
{
    Write("bytes.bin", QByteArray("\0\xFF\n", 3));
    const struct
    {
        const char* sql;
        QStringList binds;
        const char* answer;
    } cases[] = {
        {"SELECT $1 + $2", {"int32=40", "int16=2"}, "42"},
        {"SELECT $1 || ?::VARCHAR", {"string=a;b'c", "null"}, ""},
        {"SELECT typeof($1)", {"uint64=18446744073709551615"}, "UBIGINT"},
        {"SELECT $1::VARCHAR", {"uint64=18446744073709551615"}, "18446744073709551615"},
        {"SELECT typeof($1)", {"boolean=true"}, "BOOLEAN"},
        {"SELECT typeof($1)", {"uint8=1"}, "UTINYINT"},
        {"SELECT typeof($1)", {"double=0.5"}, "DOUBLE"},
        {"SELECT typeof($1)", {"float=0.5"}, "FLOAT"},
        {"SELECT hex($1)", {"blob=00ff"}, "00FF"},
        {"SELECT hex($1)", {"blob=@bytes.bin"}, "00FF0A"},
        {"SELECT octet_length($1)::VARCHAR", {"blob="}, "0"},
        {"SELECT ($1::DATE + 1)::VARCHAR", {"date=2024-02-28"}, "2024-02-29 00:00:00"},
        {"SELECT ($1::DECIMAL(38,3) * 2)::VARCHAR", {"decimal=12345678901234567890.125"}, "24691357802469135780.250"},
        {"SELECT $1::UUID::VARCHAR", {"uuid=00000000-0000-0000-0000-00000000000a"}, "00000000-0000-0000-0000-00000000000a"},
        {"SELECT $1::TIME::VARCHAR", {"time=23:59:59.123"}, "23:59:59.123"},
        {"SELECT $1::TIMESTAMP::VARCHAR", {"datetime=2024-02-29 12:00:00"}, "2024-02-29 12:00:00"},
        {"SELECT $1::BIT::VARCHAR", {"bits=0101"}, "0101"},
        {"SELECT ($1 IS NULL)::VARCHAR", {"null"}, "true"},
        {"SELECT (len($1))::VARCHAR", {"string="}, "0"},
        {"SELECT $1", {"string=京都 😀"}, "京都 😀"},
    };
    for (const auto& c : cases) {
        QStringList options;
        for (const QString& bind : c.binds)
            options << "--bind" << bind;
        const QJsonArray rows = Rows(":memory:", c.sql, options);
        ASSERT_EQ(rows.size(), 1) << c.sql;
        QString answer = rows[0][0].toVariant().toString();
        if (QString(c.answer).startsWith("2024-02-29 00")) // a DATE plus a number of days stays a DATE
            answer += " 00:00:00";
        EXPECT_EQ(answer, c.answer) << c.sql << c.binds.join(' ').toStdString();
    }
    // Each statement of a text counts its own parameters.
    const RunResult result = Run({"sql", ":memory:", "--format", "csv", "--bind", "int32=1", "--bind", "int32=2", "-c",
                                  "SELECT $1 AS a; SELECT $1 + $2 AS b; SELECT 5 AS c"});
    EXPECT_EQ(result.out, "a\r\n1\r\n\r\nb\r\n3\r\n\r\nc\r\n5\r\n") << result.err.toStdString();

    const RunResult missing = Run({"sql", ":memory:", "-c", "SELECT $1 + $2", "--bind", "int32=1"});
    EXPECT_EQ(missing.exitCode, 1);
    EXPECT_TRUE(missing.err.contains("Values were not provided")) << missing.err.toStdString();
}

TEST_F(ProgramTest, TablesAreForPeople)
{
    const RunResult result =
        Run({"sql", ":memory:", "-c",
             "CREATE TABLE t(id INTEGER, name VARCHAR, price DECIMAL(6,2)); INSERT INTO t VALUES (1, 'tea', 2.5), "
             "(20, '京都', NULL), (300, E'two\\nlines', 1000); FROM t ORDER BY id; SELECT 1 AS x WHERE false"});
    EXPECT_EQ(result.exitCode, 0) << result.err.toStdString();
    EXPECT_EQ(QString::fromUtf8(result.out), QString("  id | name      |   price\n"
                                                      "-----+-----------+---------\n"
                                                      "   1 | tea       |    2.50\n"
                                                      "  20 | 京都      |    NULL\n"
                                                      " 300 | two␊lines | 1000.00\n"
                                                      "\n x\n---\n"));
    EXPECT_EQ(result.err, "0 rows affected\n3 rows affected\n3 rows\n0 rows\n");
}

TEST_F(ProgramTest, EveryFormatHoldsTheSameRows)
{
    const QString sql = "SELECT 1 AS i, 'a,\"b\"|' AS s, NULL AS n, '' AS e, true AS b, '\\x00\\xFF'::BLOB AS x";
    const struct
    {
        const char* format;
        const char* out;
    } cases[] = {
        {"csv", "i,s,n,e,b,x\r\n1,\"a,\"\"b\"\"|\",,\"\",true,\\x00\\xFF\r\n"},
        {"ndjson", "{\"i\":1,\"s\":\"a,\\\"b\\\"|\",\"n\":null,\"e\":\"\",\"b\":true,\"x\":{\"hex\":\"00ff\"}}\n"},
        {"markdown", "| i | s | n | e | b | x |\n| ---: | --- | ---: | --- | --- | --- |\n"
                     "| 1 | a,\"b\"\\| | *NULL* |  | true | \\\\x00\\\\xFF |\n"},
    };
    for (const auto& c : cases) {
        const RunResult result = Run({"sql", ":memory:", "--format", c.format, "-c", sql});
        EXPECT_EQ(result.exitCode, 0);
        EXPECT_EQ(result.out, c.out) << c.format;
    }
}

TEST_F(ProgramTest, CsvIsWhatTheEngineReadsBack)
{
    Make("db.duckdb", "CREATE TABLE t AS SELECT i, CASE i % 5 WHEN 0 THEN NULL WHEN 1 THEN '' WHEN 2 THEN 'a\"b,c' "
                      "WHEN 3 THEN E'line\\nbreak\\r\\n' ELSE ' blank ' END AS s, i / 7.0 AS d FROM range(500) r(i);");
    const RunResult csv = Run({"sql", "db.duckdb", "--format", "csv", "-c", "FROM t ORDER BY i"});
    Write("t.csv", csv.out);
    const QJsonArray same = Rows("db.duckdb", "SELECT count(*) FROM (FROM read_csv('t.csv', header=true, "
                                              "columns={'i':'BIGINT','s':'VARCHAR','d':'DOUBLE'}, quote='\"', escape='\"', "
                                              "nullstr='', allow_quoted_nulls=false, new_line='\\r\\n') INTERSECT FROM t)");
    EXPECT_EQ(same[0][0].toInt(), 500);
}

TEST_F(ProgramTest, OddColumnsAreNamed)
{
    const RunResult result = Run({"sql", ":memory:", "--format", "json", "-c",
                                  "SELECT 1 AS x, 2 AS x, 3 AS \"a \"\"q\"\" 京\", [1, 2] AS l, {'k': 1} AS s"});
    const QJsonArray columns = result.Json().at(0)["columns"].toArray();
    ASSERT_EQ(columns.size(), 5);
    EXPECT_EQ(columns[1]["name"].toString(), "x");
    EXPECT_EQ(columns[2]["name"].toString(), "a \"q\" 京");
    EXPECT_EQ(columns[3]["type"].toString(), "INTEGER[]");
    EXPECT_EQ(columns[0]["field_type"].toInt(), 9);
    EXPECT_EQ(columns[4]["field_type"].toInt(), 76);
    const RunResult lines = Run({"sql", ":memory:", "--format", "ndjson", "-c", "SELECT 1 AS x, 2 AS x"});
    EXPECT_EQ(lines.out, "{\"x\":1,\"x_1\":2}\n");
}

TEST_F(ProgramTest, AFullDiskIsTold)
{
    if (!QFile::exists("/dev/full"))
        GTEST_SKIP() << "no /dev/full here";
    const std::unique_ptr<QProcess> process = Prepare({"sql", ":memory:", "-c", "SELECT 1"});
    process->setStandardOutputFile("/dev/full");
    process->start();
    const RunResult result = Finish(*process);
    EXPECT_EQ(result.exitCode, 1);
    EXPECT_TRUE(result.err.contains("cannot write the results")) << result.err.toStdString();
}
