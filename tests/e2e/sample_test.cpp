// SPDX-License-Identifier: GPL-3.0-or-later
#include "e2e/orbis_process.h"

#include <QFile>
#include <QSet>

namespace {

const QString Examples = ORBIS_EXAMPLES;

/// "kind:name/kind:name" of each path.
QSet<QString> Idents(const QJsonArray& list)
{
    QSet<QString> result;
    for (const QJsonValue& path : list) {
        QStringList parts;
        for (const QJsonValue& element : path.toArray())
            parts.append(QString::number(element["kind"].toInteger()) + ":" + element["name"].toString());
        result.insert(parts.join('/'));
    }
    return result;
}

} // namespace

TEST_F(ProgramTest, TheSampleLoadsAndAnswers)
{
    ASSERT_EQ(Run({"create", "sample.duckdb"}).exitCode, 0);
    const RunResult loaded = Run({"sql", "sample.duckdb", Examples + "/sample.sql"});
    ASSERT_EQ(loaded.exitCode, 0) << loaded.err.toStdString();
    EXPECT_TRUE(loaded.err.contains("\n600 rows affected\n")) << loaded.err.toStdString();
    EXPECT_EQ(Files(), QStringList("sample.duckdb")); // closed cleanly: no log is left

    const RunResult tables = Run({"sql", "sample.duckdb", Examples + "/tables.sql"});
    EXPECT_EQ(tables.exitCode, 0) << tables.err.toStdString();
    EXPECT_EQ(tables.err, "9 rows\n");
    EXPECT_TRUE(tables.out.contains("shop    | order_lines      | table |")) << tables.out.toStdString();
    EXPECT_EQ(Run({"sql", "sample.duckdb", Examples + "/query.sql"}).exitCode, 0);

    const struct
    {
        const char* sql;
        const char* answer;
    } cases[] = {
        {"SELECT count(*) || ' ' || sum(total) FROM shop.order_lines", "600 18595.00"},
        {"SELECT spent FROM reports.best_customers(1)", "444.30"},
        {"SELECT reports.gross(10, vat := 21)", "12.10"},
        {"SELECT count(DISTINCT customer)::VARCHAR FROM shop.orders", "120"},
        {"SELECT typeof(taste) FROM shop.products LIMIT 1", "INTEGER[3]"},
        {"SELECT nextval('shop.order_number')::VARCHAR", "50301"},
    };
    for (const auto& c : cases) {
        const QJsonArray rows = Rows("sample.duckdb", c.sql);
        ASSERT_EQ(rows.size(), 1) << c.sql;
        EXPECT_EQ(rows[0].toArray()[0].toString(), c.answer) << c.sql;
    }
    // The rules of the schema hold.
    for (const char* sql : {"INSERT INTO shop.orders (customer, placed) VALUES (5, now())",
                            "UPDATE shop.products SET price = -1", "INSERT INTO shop.countries VALUES ('AT', 'x', 1)"}) {
        const RunResult refused = Run({"sql", "sample.duckdb", "-c", sql});
        EXPECT_EQ(refused.exitCode, 1) << sql;
        EXPECT_TRUE(refused.err.contains("Constraint Error")) << refused.err.toStdString();
    }
}

TEST_F(ProgramTest, IdentsNameTheCatalogue)
{
    Make("db.duckdb", "CREATE SCHEMA s; CREATE TABLE s.t(\"a b\" INTEGER PRIMARY KEY, c VARCHAR);"
                      "CREATE INDEX ix ON s.t(c); CREATE VIEW v AS FROM s.t; CREATE SEQUENCE sq;"
                      "CREATE MACRO m(x) AS x + 1; CREATE TYPE mood AS ENUM ('ok');");
    const RunResult json = Run({"idents", "db.duckdb", "--json"});
    ASSERT_EQ(json.exitCode, 0) << json.err.toStdString();
    const QSet<QString> idents = Idents(json.Json());
    for (const char* ident :
         {"262144:s", "2097152:t", "262144:s/2097152:t", "512:a b", "2097152:t/512:a b",
          "262144:s/2097152:t/512:a b", "67108864:v", "262144:main/67108864:v", "4294967296:ix", "524288:sq",
          "262144:main/524288:sq", "1024:m", "262144:main/1024:m", "16777216:mood"})
        EXPECT_TRUE(idents.contains(ident)) << ident;
    EXPECT_FALSE(idents.contains("67108864:duckdb_tables"));

    const QSet<QString> system = Idents(Run({"idents", "db.duckdb", "--system", "--json"}).Json());
    EXPECT_TRUE(system.contains("67108864:duckdb_tables")) << system.size();
    EXPECT_FALSE(system.contains("67108864:v"));

    const QByteArray text = Run({"idents", "db.duckdb"}).out;
    EXPECT_TRUE(text.contains("field\ts.t.a b\n")) << text.toStdString();
    EXPECT_TRUE(text.contains("index\tix\n"));
}
