// SPDX-License-Identifier: GPL-3.0-or-later
// Rows of a table, shown and edited.
#include "e2e/orbis_process.h"

class RowsTest : public ProgramTest
{
protected:
    /// The rows of a window as compact JSON.
    QByteArray Shown(const QStringList& arguments)
    {
        const RunResult result = Run(QStringList{"rows"} + arguments + QStringList{"--json"});
        EXPECT_EQ(result.exitCode, 0) << arguments.join(' ').toStdString() << result.err.toStdString();
        return QJsonDocument(result.JsonObject()["rows"].toArray()).toJson(QJsonDocument::Compact);
    }
    QByteArray Stored(const QString& query)
    {
        return QJsonDocument(Rows("db.duckdb", query)).toJson(QJsonDocument::Compact);
    }
};

TEST_F(RowsTest, WindowsOfTablesAndViews)
{
    Make("db.duckdb",
         "CREATE TABLE k(id INTEGER PRIMARY KEY, s VARCHAR, b BLOB, g INTEGER GENERATED ALWAYS AS (id * 2));"
         "INSERT INTO k SELECT 99 - i, CASE i % 10 WHEN 0 THEN NULL WHEN 1 THEN '' ELSE 's' || i % 3 END, '\\x00\\xFF' "
         "FROM range(100) r(i);"
         "CREATE SCHEMA \"s t\"; CREATE TABLE \"s t\".\"a.b\"(x DECIMAL(20,2), y TIMESTAMP); "
         "INSERT INTO \"s t\".\"a.b\" VALUES (1.50, '2020-01-01'), (1.50, '2020-01-01');"
         "CREATE VIEW v AS SELECT id, s FROM k WHERE id < 5; CREATE TABLE none(x INTEGER)");
    const struct
    {
        QStringList arguments;
        QByteArray rows;
    } cases[] = {
        {{"db.duckdb", "k", "--limit", "2"}, R"([[0,"s0",{"hex":"00ff"}],[1,"s2",{"hex":"00ff"}]])"},
        {{"db.duckdb", "main.k", "--limit", "2", "--offset", "98"}, R"([[98,"",{"hex":"00ff"}],[99,null,{"hex":"00ff"}]])"},
        {{"db.duckdb", "K", "--limit", "2", "--offset", "99", "--methods"}, R"([[99,null,{"hex":"00ff"},198]])"},
        {{"db.duckdb", "k", "--offset", "100"}, "[]"},
        {{"db.duckdb", "k", "--limit", "1", "--order", "s", "--order", "id:desc"}, R"([[98,"",{"hex":"00ff"}]])"},
        {{"db.duckdb", "\"s t\".\"a.b\"", "--row-id"},
         R"([[0,"1.50","2020-01-01 00:00:00"],[1,"1.50","2020-01-01 00:00:00"]])"},
        {{"db.duckdb", "a.b", "--limit", "1"}, R"([["1.50","2020-01-01 00:00:00"]])"},
        {{"db.duckdb", "v", "--order", "id", "--row-id"}, R"([[0,"s0"],[1,"s2"],[2,"s1"],[3,"s0"],[4,"s2"]])"},
        {{"db.duckdb", "none"}, "[]"},
    };
    for (const auto& c : cases)
        EXPECT_EQ(Shown(c.arguments), c.rows) << c.arguments.join(' ').toStdString();

    const QJsonObject whole = Run({"rows", "db.duckdb", "k", "--limit", "3", "--count", "--json"}).JsonObject();
    EXPECT_EQ(whole.keys().join(','), "columns,count,keys,rows,sql");
    EXPECT_EQ(whole["columns"].toVariant().toStringList().join(','), "id,s,b");
    EXPECT_EQ(whole["keys"].toVariant().toStringList().join(','), "id");
    EXPECT_EQ(whole["count"].toString(), "100");
    EXPECT_EQ(Rows("db.duckdb", whole["sql"].toString()).size(), 3);
    EXPECT_EQ(Run({"rows", "db.duckdb", "k", "--json"}).JsonObject()["count"].toString(), "~99");

    const RunResult table = Run({"rows", "db.duckdb", "v", "--order", "id", "--limit", "2", "--count"});
    EXPECT_EQ(table.out, " id | s\n----+----\n  0 | s0\n  1 | s2\n");
    EXPECT_TRUE(table.err.contains("5 rows in all")) << table.err.toStdString();
}

TEST_F(RowsTest, WhatIsNotThere)
{
    Make("db.duckdb", "CREATE TABLE t(x INTEGER)");
    const struct
    {
        QStringList arguments;
        int exitCode;
        const char* said;
    } cases[] = {
        {{"db.duckdb", "nothing"}, 1, "there is no table or view \"nothing\""},
        {{"db.duckdb", "main.t.x"}, 1, "there is no table or view"},
        {{"db.duckdb", "t", "--order", "y"}, 1, "y"},
        {{"db.duckdb", "t", "--order", "x:up"}, 2, "is not an order"},
        {{"db.duckdb", "t", "--limit", "0"}, 2, "--limit takes"},
        {{"db.duckdb", "t", "--offset", "-1"}, 2, "--offset takes"},
        {{"db.duckdb"}, 2, "too few arguments"},
        {{"missing.duckdb", "t"}, 3, "does not exist"},
    };
    for (const auto& c : cases) {
        const RunResult result = Run(QStringList{"rows"} + c.arguments);
        EXPECT_EQ(result.exitCode, c.exitCode) << c.arguments.join(' ').toStdString();
        EXPECT_TRUE(result.err.contains(c.said)) << result.err.toStdString();
        EXPECT_EQ(result.out, "");
    }
}

TEST_F(RowsTest, EditsOfOneRow)
{
    Make("db.duckdb", "CREATE TABLE t(id INTEGER PRIMARY KEY, s VARCHAR DEFAULT 'none', b BLOB, \"a=b\" DATE, l INTEGER[]);"
                      "INSERT INTO t(id, s) VALUES (1,'one'),(2,'two'),(3,'two')");
    Write("bytes.bin", QByteArray("\x00\xFFx", 3));
    const struct
    {
        QStringList arguments;
        int exitCode;
        const char* said;
        const char* query;
        const char* stored;
    } cases[] = {
        {{"--insert", "id=10", "s=ten", "--insert", "b=@bytes.bin"}, 0, "1 row inserted", "SELECT s, b FROM t WHERE id = 10",
         R"([["ten",{"hex":"00ff78"}]])"},
        {{"--insert", "id=11"}, 0, "1 row inserted", "SELECT s, b FROM t WHERE id = 11", R"([["none",null]])"},
        {{"--insert"}, 1, "NOT NULL", "SELECT count(*) FROM t", "[[5]]"},
        {{"--update", "s=", "\"a=b\"=2020-02-29", "l=[1, NULL]", "--where", "id=1"}, 0, "1 row updated",
         "SELECT s, \"a=b\", l FROM t WHERE id = 1", R"([["","2020-02-29","[1, NULL]"]])"},
        {{"--update", "s:null", "--where", "id=1", "--where", "a=b=x"}, 1, "no column \"a\"", "SELECT s FROM t WHERE id = 1",
         R"([[""]])"},
        {{"--update", "s:null", "--where", "id=1", "\"a=b\"=2020-02-29", "b:null"}, 0, "1 row updated",
         "SELECT s FROM t WHERE id = 1", "[[null]]"},
        {{"--update", "s=@@home", "--where", "l=[1, NULL]"}, 0, "1 row updated", "SELECT s FROM t WHERE id = 1",
         R"([["@home"]])"},
        {{"--update", "s=x", "--where", "s=two"}, 1, "matches 2 rows, not one. Nothing was changed.",
         "SELECT count(*) FROM t WHERE s = 'two'", "[[2]]"},
        {{"--update", "s=x", "--where", "id=1.4"}, 1, "not found. Nothing was changed.", "SELECT count(*) FROM t WHERE s = 'x'", "[[0]]"},
        {{"--update", "s=x", "--where", "\"a=b\"=2020-02-29 05:00:00"}, 1, "not found", "SELECT count(*) FROM t WHERE s = 'x'", "[[0]]"},
        {{"--update", "s=@bytes.bin", "--where", "id=1"}, 1, "is not UTF-8 text", "SELECT count(*) FROM t WHERE s = 'x'", "[[0]]"},
        {{"--update", "s=x", "--where", "id=77"}, 1, "not found. Nothing was changed.", "SELECT count(*) FROM t WHERE s = 'x'",
         "[[0]]"},
        {{"--update", "id=word", "--where", "id=1"}, 1, "Could not convert", "SELECT count(*) FROM t WHERE id = 1", "[[1]]"},
        {{"--update", "id=2", "--where", "id=1"}, 1, "Constraint Error", "SELECT count(*) FROM t WHERE id = 1", "[[1]]"},
        {{"--update", "s=same", "--where", "s=two", "--all"}, 0, "2 rows updated",
         "SELECT count(*) FROM t WHERE s = 'same'", "[[2]]"},
        {{"--update", "s=none", "--where", "id=77", "--all"}, 0, "0 rows updated", "SELECT count(*) FROM t", "[[5]]"},
        {{"--delete", "--where", "s=same"}, 1, "matches 2 rows", "SELECT count(*) FROM t", "[[5]]"},
        {{"--delete"}, 1, "matches 5 rows", "SELECT count(*) FROM t", "[[5]]"},
        {{"--delete", "--where", "b=@bytes.bin"}, 0, "1 row deleted", "SELECT count(*) FROM t WHERE id = 10", "[[0]]"},
        {{"--delete", "--all"}, 0, "4 rows deleted", "SELECT count(*) FROM t", "[[0]]"},
        {{"--insert", "nothing=1"}, 1, "no column \"nothing\"", "SELECT count(*) FROM t", "[[0]]"},
        {{"--insert", "word"}, 2, "\"word\" is no value", "SELECT count(*) FROM t", "[[0]]"},
        {{"--insert", "b=@missing"}, 3, "cannot read \"missing\"", "SELECT count(*) FROM t", "[[0]]"},
        {{"--insert", "--delete"}, 2, "give one of", "SELECT count(*) FROM t", "[[0]]"},
        {{"--update", "--where", "id=1"}, 2, "--update needs a value", "SELECT count(*) FROM t", "[[0]]"},
        {{"--insert", "id=1", "ID=2"}, 2, "stands twice", "SELECT count(*) FROM t", "[[0]]"},
    };
    for (const auto& c : cases) {
        const RunResult result = Run(QStringList{"edit", "db.duckdb", "t"} + c.arguments);
        const std::string shown = c.arguments.join(' ').toStdString();
        EXPECT_EQ(result.exitCode, c.exitCode) << shown << result.err.toStdString();
        EXPECT_TRUE(result.err.contains(c.said)) << shown << ": " << result.err.toStdString();
        EXPECT_EQ(result.out, "");
        EXPECT_EQ(Stored(c.query), c.stored) << shown;
    }
}

TEST_F(RowsTest, EditsOfEqualRowsViewsAndReadOnly)
{
    Make("db.duckdb", "CREATE TABLE t(x INTEGER); INSERT INTO t VALUES (1),(1); CREATE VIEW v AS FROM t;"
                      "CREATE SCHEMA s; CREATE TABLE s.t(x INTEGER); CREATE SEQUENCE q;"
                      "CREATE TABLE auto(id INTEGER DEFAULT nextval('q'), x INTEGER)");
    EXPECT_EQ(Run({"edit", "db.duckdb", "t", "--update", "x=2", "--where", "x=1"}).exitCode, 1);
    EXPECT_EQ(Stored("FROM t"), "[[1],[1]]");
    EXPECT_EQ(Run({"edit", "db.duckdb", "v", "--insert", "x=2"}).exitCode, 1);
    EXPECT_EQ(Run({"edit", "db.duckdb", "t", "--insert", "x=2", "--read-only"}).exitCode, 1);
    EXPECT_EQ(Run({"edit", "db.duckdb", "s.t", "--insert", "x=2"}).exitCode, 0);
    EXPECT_EQ(Stored("SELECT x FROM t UNION ALL SELECT x + 10 FROM s.t"), "[[1],[1],[12]]");
    EXPECT_EQ(Run({"edit", "db.duckdb", "auto", "--insert", "x=2"}).exitCode, 0);
    EXPECT_EQ(Run({"edit", "db.duckdb", "auto", "--insert", "id=70", "x=3"}).exitCode, 0);
    EXPECT_EQ(Stored("FROM auto"), "[[1,2],[70,3]]");
}
