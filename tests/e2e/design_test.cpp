// SPDX-License-Identifier: GPL-3.0-or-later
// Statements of requests, and changes of structure, through the whole program.
#include "e2e/orbis_process.h"

#include <QFile>
#include <QJsonDocument>

namespace {

QByteArray Changes(const QJsonArray& changes)
{
    return QJsonDocument(changes).toJson();
}

} // namespace

TEST_F(ProgramTest, DdlShowsTheNodesOfARequest)
{
    Make("t.duckdb", "CREATE TABLE t(a INTEGER, \"b.c\" VARCHAR); CREATE MACRO f(x) AS x; COMMENT ON MACRO f IS 'it'");
    const RunResult type = Run({"ddl", "t.duckdb", "field:main.t.a", "--kind", "2", "--property", "47", "--value", "BigInt", "--json"});
    ASSERT_EQ(type.exitCode, 0) << type.err.toStdString();
    ASSERT_EQ(type.Json().size(), 1);
    const QJsonObject node = type.Json()[0].toObject();
    EXPECT_EQ(node["sql"].toString().toStdString(), "ALTER TABLE main.t ALTER COLUMN a TYPE BigInt");
    EXPECT_EQ(node["kind"].toInt(), 2);
    EXPECT_EQ(node["property"].toInt(), 47);
    EXPECT_EQ(node["value"].toString(), "BigInt");
    EXPECT_TRUE(node["children"].toArray().isEmpty());
    EXPECT_EQ(Run({"ddl", "t.duckdb", "field:main.t.\"b.c\"", "--kind", "4"}).out.trimmed().toStdString(), "ALTER TABLE main.t DROP \"b.c\";");
    // A rename of a macro is a node without a statement over others.
    const QJsonObject rename =
        Run({"ddl", "t.duckdb", "function:main.f", "--kind", "2", "--property", "Name", "--value", "g", "--json"}).Json()[0].toObject();
    EXPECT_EQ(rename["sql"].toString(), "");
    const QJsonArray below = rename["children"].toArray();
    ASSERT_EQ(below.size(), 2);
    EXPECT_EQ(below[0].toObject()["sql"].toString(), "DROP MACRO  IF EXISTS main.f;");
    EXPECT_TRUE(below[1].toObject()["sql"].toString().contains(" \"main\".\"g\"("));
    EXPECT_EQ(below[1].toObject()["children"].toArray()[0].toObject()["sql"].toString(), "COMMENT ON MACRO main.g IS 'it'");
    EXPECT_EQ(Run({"ddl", "t.duckdb", "database:", "--kind", "2", "--property", "96", "--value", "main,x"}).out.trimmed(), "SET search_path='main,x';");
    EXPECT_EQ(Run({"ddl", "t.duckdb", "table:main.nosuch"}).exitCode, 1);
    EXPECT_EQ(Run({"ddl", "t.duckdb", "nonsense"}).exitCode, 1);
    EXPECT_EQ(Run({"ddl", "t.duckdb", "table:main.t", "--kind", "x"}).exitCode, 2);
}

TEST_F(ProgramTest, DesignDoesAllOrNothing)
{
    Make("t.duckdb", "CREATE TABLE p(id INTEGER PRIMARY KEY, x INTEGER); INSERT INTO p VALUES (1, 2), (2, 3); CREATE TABLE c(a INTEGER REFERENCES "
                     "p(id), b VARCHAR UNIQUE, n INTEGER); INSERT INTO c VALUES (1, 'x', 3); CREATE INDEX i ON c(n); COMMENT ON INDEX i IS 'ci'");
    const QJsonArray changes{
        QJsonObject{{"op", "change"}, {"object", "field:main.c.n"}, {"property", 47}, {"value", "BigInt"}},
        QJsonObject{{"op", "change"}, {"object", "field:main.p.x"}, {"property", "Type"}, {"value", "VarChar"}},
        QJsonObject{{"op", "drop"}, {"object", "unique:main.c.unique_b"}},
        QJsonObject{{"op", "create"}, {"kind", "schema"}, {"name", "s 1"}},
        QJsonObject{{"op", "create"}, {"kind", "table"}, {"schema", "s 1"}, {"name", "new"}, {"properties", QJsonObject{{"34", QJsonArray{"k"}}, {"Comment", "hi"}}},
                    {"children", QJsonArray{QJsonObject{{"kind", "field"}, {"name", "k"}, {"properties", QJsonObject{{"47", "Integer"}, {"140", false}}}}}}},
        QJsonObject{{"op", "create"}, {"kind", "field"}, {"table", "p"}, {"name", "y"}, {"properties", QJsonObject{{"47", "Date"}, {"130", "'2020-01-01'"}}}},
    };
    Write("c.json", Changes(changes));
    const RunResult shown = Run({"design", "t.duckdb", "c.json"});
    EXPECT_EQ(shown.exitCode, 0) << shown.err.toStdString();
    EXPECT_TRUE(shown.out.startsWith("BEGIN;\n") && shown.out.trimmed().endsWith("COMMIT;")) << shown.out.toStdString();
    EXPECT_TRUE(shown.err.contains("converted to another type"));
    const QString tables = "SELECT schema_name, sql FROM duckdb_tables() ORDER BY ALL";
    const QJsonArray before = Rows("t.duckdb", tables);

    // One entry that the engine refuses takes the others back.
    QJsonArray wrong = changes;
    wrong.append(QJsonObject{{"op", "create"}, {"kind", "view"}, {"name", "v"}, {"properties", QJsonObject{{"46", "CREATE VIEW v AS SELECT * FROM nosuch"}}}});
    Write("w.json", Changes(wrong));
    const RunResult refused = Run({"design", "t.duckdb", "w.json", "--apply", "--json"});
    EXPECT_EQ(refused.exitCode, 1);
    EXPECT_TRUE(refused.err.contains("nosuch"));
    EXPECT_FALSE(refused.JsonObject()["applied"].toBool());
    const QJsonArray states = refused.JsonObject()["statements"].toArray();
    EXPECT_EQ(states.last().toObject()["state"].toString(), "failed");
    for (qsizetype i = 0; i + 1 < states.size(); ++i)
        EXPECT_EQ(states[i].toObject()["state"].toString(), "taken back") << i;
    EXPECT_EQ(Rows("t.duckdb", tables), before);

    const RunResult done = Run({"design", "t.duckdb", "c.json", "--apply", "--json"});
    EXPECT_EQ(done.exitCode, 0) << done.err.toStdString();
    EXPECT_TRUE(done.JsonObject()["applied"].toBool());
    EXPECT_EQ(Rows("t.duckdb", "SELECT a, b, n, typeof(n) t FROM c")[0].toArray(), (QJsonArray{1, "x", 3, "BIGINT"}));
    EXPECT_EQ(Rows("t.duckdb", "SELECT id, x, y::VARCHAR y FROM p WHERE id = 2")[0].toArray(), (QJsonArray{2, "3", "2020-01-01"}));
    EXPECT_EQ(Rows("t.duckdb", "SELECT comment FROM duckdb_indexes()")[0].toArray()[0].toString(), "ci");
    EXPECT_EQ(Run({"sql", "t.duckdb", "-c", "DELETE FROM p WHERE id = 2"}).exitCode, 0);
    EXPECT_EQ(Run({"sql", "t.duckdb", "-c", "DELETE FROM p WHERE id = 1"}).exitCode, 1);
    EXPECT_EQ(Run({"design", "t.duckdb", "nosuch.json"}).exitCode, 3);
    Write("bad.json", "[{\"op\":\"change\",\"object\":\"field:main.c.zz\",\"property\":47,\"value\":\"x\"}]");
    const RunResult bad = Run({"design", "t.duckdb", "bad.json"});
    EXPECT_EQ(bad.exitCode, 2);
    EXPECT_TRUE(bad.err.contains("entry 1"));
    // What stays as it is says so, beside a change that could be made.
    Write("fixed.json", R"([{"op":"change","object":"table:main.c","property":9,"value":"x"},
                            {"op":"change","object":"field:main.c.n","property":"Position","value":1}])");
    const RunResult fixed = Run({"design", "t.duckdb", "fixed.json", "--apply"});
    EXPECT_EQ(fixed.exitCode, 2);
    EXPECT_TRUE(fixed.err.contains("entry 2: \"Position\" of field \"n\" cannot be changed")) << fixed.err.toStdString();
    EXPECT_EQ(Rows("t.duckdb", "SELECT count(*) n FROM duckdb_tables() WHERE comment = 'x'")[0].toArray()[0].toInt(), 0);
    Write("one.json", R"([{"op":"change","object":"table:main.c","property":9,"value":"x"}])");
    const RunResult locked = Run({"--read-only", "design", "t.duckdb", "one.json", "--apply"});
    EXPECT_EQ(locked.exitCode, 1);
    EXPECT_TRUE(locked.err.contains("reading only")) << locked.err.toStdString();
    EXPECT_EQ(Run({"design", "t.duckdb", "one.json", "--apply"}).exitCode, 0);
}

/// The engine forgets who uses a sequence when the file is closed.
TEST_F(ProgramTest, DroppingASequenceTellsWhatUsesIt)
{
    Make("t.duckdb", "CREATE SEQUENCE \"s'q 1\"; CREATE SEQUENCE q; CREATE SCHEMA o; CREATE SEQUENCE o.q; CREATE TABLE t(a INTEGER DEFAULT nextval('\"s''q 1\"'), b INTEGER DEFAULT "
                     "(1 + nextval('q'))); CREATE TABLE u(c INTEGER DEFAULT (nextval('o.q')))");
    for (const auto& [name, users] : {std::pair("sequence:main.\"s'q 1\"", "main.t.a"), {"sequence:main.q", "main.t.b"}, {"sequence:o.q", "main.u.c"}}) {
        Write("c.json", Changes({QJsonObject{{"op", "drop"}, {"object", name}}}));
        const RunResult told = Run({"design", "t.duckdb", "c.json"});
        EXPECT_EQ(told.exitCode, 0);
        EXPECT_TRUE(told.err.trimmed().endsWith(QByteArray("fail: ") + users)) << told.err.toStdString();
    }
}

/// The process is killed before each change of its files in turn: what opens afterwards holds the old
/// tables or the new ones, with every row, index, comment and key.
TEST_F(ProgramTest, AKillBeforeAnyWriteLeavesAFileThatOpens)
{
#if defined(__SANITIZE_ADDRESS__) || defined(__SANITIZE_THREAD__)
    GTEST_SKIP() << "the sanitizer's own library has to be the first one";
#endif
    Make("made.duckdb", "CREATE SEQUENCE sq; CREATE TABLE p(id INTEGER PRIMARY KEY, x INTEGER DEFAULT (abs(-1)), u VARCHAR UNIQUE); INSERT INTO p SELECT i, i, 'u' || i "
                        "FROM range(3000) r(i); CREATE TABLE c(k INTEGER PRIMARY KEY, a INTEGER REFERENCES p(id), b DOUBLE DEFAULT (abs(-2)), g INTEGER AS (abs(k) + 1), "
                        "s VARCHAR, CHECK(abs(k) >= 0)); INSERT INTO c(k, a, s) SELECT i, i % 2000, 'text ' || i FROM range(3000) r(i); CREATE TABLE d(r INTEGER REFERENCES "
                        "c(k), up DATE DEFAULT (today())); INSERT INTO d(r) SELECT i % 50 FROM range(100) r(i); CREATE INDEX ix ON c(s); COMMENT ON INDEX ix IS 'ci'; COMMENT ON TABLE "
                        "c IS 'cc'; COMMENT ON COLUMN c.b IS 'cb'; COMMENT ON TABLE p IS 'cp'; CREATE TABLE loose(y INTEGER, z INTEGER DEFAULT (abs(-3))); CHECKPOINT");
    Write("c.json", Changes({
        QJsonObject{{"op", "create"}, {"kind", "check"}, {"table", "p"}, {"properties", QJsonObject{{"60", "abs(x) >= 0"}}}},
        QJsonObject{{"op", "change"}, {"object", "field:main.c.s"}, {"property", 26}, {"value", "said"}},
        QJsonObject{{"op", "change"}, {"object", "field:main.d.r"}, {"property", 9}, {"value", "about r"}},
        QJsonObject{{"op", "change"}, {"object", "field:main.loose.y"}, {"property", 47}, {"value", "BigInt"}},
        QJsonObject{{"op", "change"}, {"object", "field:main.loose.y"}, {"property", 9}, {"value", "wide"}},
        QJsonObject{{"op", "create"}, {"kind", "field"}, {"table", "loose"}, {"name", "w"}, {"properties", QJsonObject{{"47", "Integer"}, {"130", "(abs(-4))"}}}},
        QJsonObject{{"op", "create"}, {"kind", "index"}, {"table", "d"}, {"name", "ir"}, {"properties", QJsonObject{{"18", QJsonArray{"r"}}, {"9", "new"}}}},
        QJsonObject{{"op", "change"}, {"object", "sequence:main.sq"}, {"property", 187}, {"value", 2}},
    }));
    // One process looks and tries: parents let go of rows that nobody refers to.
    const QString look = "SELECT list([table_name, sql, comment] ORDER BY table_name)::VARCHAR || (SELECT list([table_name, column_name, comment] ORDER BY table_name, column_name)::VARCHAR FROM "
                         "duckdb_columns() WHERE NOT internal AND comment IS NOT NULL) || (SELECT list([sql, comment] ORDER BY index_name)::VARCHAR FROM duckdb_indexes()) || "
                         "(SELECT sql FROM duckdb_sequences()) || (SELECT (count(*), sum(id), sum(x), max(u))::VARCHAR FROM p) || (SELECT (count(*), sum(k), sum(a), sum(b), "
                         "sum(g))::VARCHAR FROM c) || (SELECT (count(*), sum(r))::VARCHAR FROM d) state FROM duckdb_tables()";
    const auto stateOf = [&](const QString& name) {
        const RunResult result = Run({"sql", name, "-c", "BEGIN; DELETE FROM d WHERE r = 7; DELETE FROM p WHERE id > 2500; DELETE FROM c WHERE k > 2500; ROLLBACK; " + look, "--format", "ndjson"});
        EXPECT_EQ(result.exitCode, 0) << result.err.toStdString();
        return result.out;
    };
    const QByteArray before = stateOf("made.duckdb");
    QByteArray after;
    QList<QByteArray> seen;
    int killed = 0;
    for (int at = 0; after.isEmpty() && at < 2000 && !HasFailure(); ++at) {
        for (const char* name : {"kill.duckdb", "kill.duckdb.wal"})
            QFile::remove(Path(name));
        ASSERT_TRUE(QFile::copy(Path("made.duckdb"), Path("kill.duckdb")));
        const auto process = Prepare({"design", "kill.duckdb", "c.json", "--apply"});
        QProcessEnvironment environment = process->processEnvironment();
        environment.insert("LD_PRELOAD", ORBIS_KILL_AT_WRITE);
        environment.insert("ORBIS_KILL_FILE", "kill.duckdb");
        environment.insert("ORBIS_KILL_AT", QString::number(at));
        process->setProcessEnvironment(environment);
        process->start();
        const RunResult result = Finish(*process);
        const QByteArray state = stateOf("kill.duckdb");
        if (result.exitCode == 0)
            after = state;
        else if (!seen.contains(state))
            seen.append(state);
        killed += result.exitCode < 0;
        EXPECT_LE(result.exitCode, 0) << at << "\n" << result.err.toStdString();
    }
    EXPECT_GT(killed, 5);
    EXPECT_NE(after, before);
    EXPECT_TRUE(after.contains("abs(x)") && after.contains("said") && after.contains("about r")) << after.toStdString();
    seen.removeAll(before);
    seen.removeAll(after);
    for (const QByteArray& other : seen)
        ADD_FAILURE() << "neither old nor new: " << other.toStdString();
    RecordProperty("killed", killed);
}
