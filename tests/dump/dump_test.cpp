// SPDX-License-Identifier: GPL-3.0-or-later
// A dump, loaded into an empty database, gives the same database.
#include "support/database_place.h"

#include "catalog/makers.h"
#include "dump/dump_order.h"
#include "model/macro_text.h"
#include "dump/task_make_dump.h"
#include "hf/task_load_dump.h"

#include <QFile>
#include <QTemporaryDir>

#include <random>

namespace {

using namespace Qt::StringLiterals;

struct Options
{
    HF::LSQLDumpOptions sql{.Clean = false, .Transaction = true, .MultiRowInsert = true, .Replace = false,
                            .InsertLimitRows = 250, .InsertLimitData = 250};
    HF::ELDumpData data = HF::DUMP_BOTH;
    QString encoding = u"UTF-8"_s;
    HF::LDumpProgress progress;
};

class DumpTest : public support::DatabasePlace
{
protected:
    void SetUp() override
    {
        DatabasePlace::SetUp();
        // Every path of reading works on rows that do not stand in one chunk.
        CatalogMakers().dumpTask = [](const orbDuckDB_DumpRequest& request) -> rc::Ptr<HF::LTask> {
            return rc::make<orbDuckDB_TaskMakeDump>(request);
        };
    }
    void TearDown() override
    {
        CatalogMakers().dumpTask = nullptr;
        for (const auto& database : m_others)
            database->Close().Force();
        DatabasePlace::TearDown();
    }
    QString File(const QString& name) const { return m_folder.filePath(name); }
    static QByteArray Content(const QString& path)
    {
        QFile file(path);
        EXPECT_TRUE(file.open(QIODevice::ReadOnly)) << path.toStdString();
        return file.readAll();
    }
    rc::Ref<orbDuckDB_Database> Empty()
    {
        m_others.append(MakeDatabase(MakeEngine(u":memory:"_s), u":memory:"_s, 1));
        return m_others.last();
    }
    static void Script(orbDuckDB_Database& database, const QString& text)
    {
        const auto results = database.SqlQuery(text, HF::QUERY_SILENT_ERROR, {}, 1, 2, 1);
        ASSERT_TRUE(HF::IsQuerySuccess(results)) << HF::GetQueryErrors(results).toStdString();
    }
    static rc::Ref<orbDuckDB_TaskMakeDump> Task(orbDuckDB_Database& database, const QString& path, const Options& options,
                                                const RcList<HF::LTreeItem>& selection = {})
    {
        // The options come from the page, which a test without windows has not.
        static Options current;
        current = options;
        CatalogMakers().dumpTask = [](const orbDuckDB_DumpRequest& request) -> rc::Ptr<HF::LTask> {
            orbDuckDB_DumpRequest changed = request;
            changed.options = current.sql;
            return rc::make<orbDuckDB_TaskMakeDump>(changed);
        };
        const auto task = database.MakeDump(path, HF::DUMP_KIND_SQL, options.data, options.encoding, nullptr, selection,
                                            options.progress);
        return rc::Ref<orbDuckDB_TaskMakeDump>(rc::cast<orbDuckDB_TaskMakeDump>(rc::Ref<HF::LTask>(task)));
    }
    QByteArray Dump(orbDuckDB_Database& database, const Options& options = {}, const RcList<HF::LTreeItem>& selection = {})
    {
        const QString path = File(u"dump.sql"_s);
        const auto task = Task(database, path, options, selection);
        task->run();
        EXPECT_EQ(task->get_State(), HF::TASK_DONE) << task->get_Error().toStdString();
        EXPECT_TRUE(task->get_OutputError().isEmpty()) << task->get_OutputError().toStdString();
        return Content(path);
    }
    QStringList Load(orbDuckDB_Database& database, const QByteArray& dump, const QString& encoding = u"UTF-8"_s)
    {
        QFile file(File(u"load.sql"_s));
        EXPECT_TRUE(file.open(QIODevice::WriteOnly));
        file.write(dump);
        file.close();
        const auto task = rc::make<HF::LTask_LoadDumpSQL>(rc::self<HF::LTreeItem>(&database), file.fileName(), encoding,
                                                          true, false, HF::LLoadProgress());
        task->run();
        QStringList failures;
        for (const HF::LLoadError& error : task->get_Errors())
            failures << QString::number(error.Line) + u": "_s + error.Statement + u" -> "_s + error.Text;
        return failures;
    }
    static QStringList Rows(orbDuckDB_Database& database, const QString& query)
    {
        QStringList rows;
        try {
            const auto literals = database.SelectLiterals(query, {});
            std::string text;
            while (literals->NextChunk())
                for (std::size_t row = 0; row < literals->get_RowCount(); ++row) {
                    text.clear();
                    literals->AppendCells(text, row, 0, literals->get_ColumnCount());
                    rows << QString::fromStdString(text);
                }
        } catch (const nub::xException& failure) {
            rows << QString::fromUtf8(failure.what());
        }
        return rows;
    }
    /// The engine's own view of all that a database holds.
    static QStringList Picture(orbDuckDB_Database& database)
    {
        QStringList picture;
        for (const char* query :
             {"SELECT schema_name FROM duckdb_schemas() WHERE NOT internal",
              "SELECT schema_name, table_name, comment, sql FROM duckdb_tables() WHERE NOT internal",
              "SELECT schema_name, table_name, column_name, column_index, column_default, is_nullable, data_type, comment "
              "FROM duckdb_columns() WHERE NOT internal",
              "SELECT schema_name, view_name, comment, sql FROM duckdb_views() WHERE NOT internal",
              "SELECT schema_name, index_name, table_name, is_unique, comment, sql FROM duckdb_indexes()",
              "SELECT schema_name, function_name, function_type, parameters, parameter_types, macro_definition, comment "
              "FROM duckdb_functions() WHERE NOT internal",
              "SELECT schema_name, sequence_name, increment_by, min_value, max_value, cycle, comment FROM duckdb_sequences()",
              "SELECT schema_name, type_name, type_category, labels, comment FROM duckdb_types() WHERE NOT internal AND "
              "database_name = current_catalog()",
              "SELECT schema_name, table_name, constraint_type, constraint_text, expression, constraint_column_names, "
              "referenced_table, referenced_column_names FROM duckdb_constraints()"}) {
            QStringList rows = Rows(database, QString::fromLatin1(query));
            rows.sort();
            picture << u"== "_s + QString::fromLatin1(query) << rows;
        }
        for (const QString& name : Rows(database, u"SELECT format('\"{}\".\"{}\"', replace(schema_name, '\"', '\"\"'), "
                                                  "replace(table_name, '\"', '\"\"')) FROM duckdb_tables() WHERE NOT internal "
                                                  "ORDER BY 1"_s)) {
            const QString table = name.mid(1, name.size() - 2).replace(u"''"_s, u"'"_s);
            QStringList rows = Rows(database, u"FROM "_s + table);
            rows.sort();
            picture << u"== "_s + table << rows;
        }
        return picture;
    }
    static void ExpectSame(const QStringList& one, const QStringList& other)
    {
        ASSERT_FALSE(one.isEmpty());
        for (qsizetype i = 0; i < std::max(one.size(), other.size()); ++i)
            ASSERT_EQ(one.value(i).toStdString(), other.value(i).toStdString()) << i;
    }
    /// Dumps, loads, dumps again, and loads once more through the engine alone.
    void RoundTrip(orbDuckDB_Database& database, const Options& options = {})
    {
        const QByteArray dump = Dump(database, options);
        const auto loaded = Empty();
        const QStringList failures = Load(*loaded, dump, options.encoding);
        ASSERT_TRUE(failures.isEmpty()) << failures.join(u'\n').toStdString() << "\n" << dump.toStdString();
        const QByteArray again = Dump(*loaded, options);
        EXPECT_EQ(dump.toStdString(), again.toStdString());
        ExpectSame(Picture(database), Picture(*loaded));
        if (options.encoding != u"UTF-8"_s)
            return;
        const auto plain = Empty();
        const auto engine = MakeEngine(u":memory:"_s);
        ASSERT_NO_THROW(engine->SqlExecute(KernelText::FromQString(QString::fromUtf8(dump)), nub::ValueArray()));
        engine->Close();
        Script(*plain, QString::fromUtf8(dump));
        ExpectSame(Picture(database), Picture(*plain));
    }
    void MakeAwkward(orbDuckDB_Database& database)
    {
        QString text = QString::fromUtf8(Content(QStringLiteral(ORBIS_TEST_DATA "/awkward.sql")));
        if (!HF::IsQuerySuccess(database.SqlQuery(u"SELECT NULL::TIME_NS, NULL::BIGNUM"_s, HF::QUERY_SILENT_ERROR, {}, 1, 2, 1)))
            text.replace(u", bn BIGNUM, tn TIME_NS"_s, QString()).replace(u", '12345678901234567890123', '12:00:00.123456789'"_s, QString());
        const QStringList failures = Load(database, text.toUtf8());
        ASSERT_TRUE(failures.isEmpty()) << failures.join(u'\n').toStdString();
    }

private:
    QTemporaryDir m_folder;
    QList<rc::Ref<orbDuckDB_Database>> m_others;
};

TEST_F(DumpTest, EveryKindOfObjectAndValueComesBack)
{
    MakeAwkward(Database());
    RoundTrip(Database());
}

/// Values of the newest engines keep the types of all that is inside, from memory and from a file.
TEST_F(DumpTest, VariantsAndGeometriesComeBack)
{
    const QString path = File(u"variants.duckdb"_s);
    if (!HF::IsQuerySuccess(Database().SqlQuery(u"ATTACH '%1' AS f (STORAGE_VERSION 'latest'); CREATE TABLE f.probe(v VARIANT)"_s
                                                    .arg(path), HF::QUERY_SILENT_ERROR, {}, 1, 2, 1)))
        GTEST_SKIP() << "this engine keeps no VARIANT";
    Script(Database(), u"CREATE TABLE f.v(i INTEGER, v VARIANT, l VARIANT[], s STRUCT(a VARIANT, b INTEGER), "
                       "m MAP(VARCHAR, VARIANT), u UNION(x VARIANT, y INTEGER), a VARIANT[2]); "
                       "INSERT INTO f.v VALUES (1, 1::INTEGER::VARIANT, [1::VARIANT, NULL, 'x'::VARIANT], {'a': NULL, 'b': 1}, "
                       "MAP {'k': 1::HUGEINT::VARIANT}, union_value(x := 1.5::DECIMAL(4,2)::VARIANT), [1::VARIANT, DATE '2020-01-01'::VARIANT]), "
                       "(2, NULL, [], {'a': 1::UTINYINT::VARIANT, 'b': 1}, MAP {}, union_value(y := 1), NULL), "
                       "(3, {'a': [1, NULL, 3], 'b': DATE '2020-01-01'}::VARIANT, NULL, NULL, MAP {'n': NULL}, union_value(x := NULL), [NULL, NULL]), "
                       "(4, '{\"\": 1, \"a\": {}, \"b\": [-1, 1.0, \"it''s\"]}'::JSON::VARIANT, [NULL], {'a': []::VARIANT, 'b': NULL}, NULL, NULL, NULL); "
                       "CREATE TABLE f.many AS SELECT range AS i, {'n': range, 'd': range::DECIMAL(12,3), 't': 'x' || range, "
                       "'l': [range::UTINYINT, NULL]}::VARIANT AS v FROM range(120); "
                       "INSERT INTO f.many SELECT range, to_days(range::INTEGER)::VARIANT FROM range(120, 200); "
                       "CREATE TABLE f.g(g GEOMETRY, c GEOMETRY('OGC:CRS84'), l GEOMETRY[]); INSERT INTO f.g VALUES "
                       "('POINT ZM (0.1 -0 3 1e300)', 'LINESTRING (0 0.30000000000000004, 5e-324 2)', ['POINT EMPTY', NULL]), "
                       "('GEOMETRYCOLLECTION (POINT (1 2), POLYGON ((0 0, 1 0, 1 1, 0 0)))', NULL, []); DETACH f"_s);
    const auto database = MakeDatabase(MakeEngine(path), path);
    RoundTrip(*database);
    const auto loaded = Empty();
    ASSERT_EQ(Load(*loaded, Dump(*database)), QStringList());
    // The engine's own names of the types, and a number that covers all that is stored.
    for (const char* query :
         {"SELECT i, variant_typeof(v), v::VARCHAR FROM v ORDER BY i",
          "SELECT list_transform(l, lambda x: variant_typeof(x)), variant_typeof(s.a), variant_typeof(m['k']), union_tag(u), "
          "variant_typeof(u.x), variant_typeof(a[2]) FROM v ORDER BY i",
          "SELECT i, hash(variant_normalize(v)) FROM many ORDER BY i",
          "SELECT st_aswkb(g), st_aswkb(c), typeof(c), list_transform(l, lambda x: st_aswkb(x)) FROM g ORDER BY ALL"}) {
        const QStringList rows = Rows(*database, QString::fromLatin1(query));
        ExpectSame(rows, Rows(*loaded, QString::fromLatin1(query)));
        EXPECT_FALSE(rows.first().contains(u"Error"_s)) << rows.first().toStdString();
    }
    EXPECT_EQ(Rows(*loaded, u"SELECT variant_typeof(variant_extract(v, 'b')), variant_typeof(variant_extract(v, 'a')) FROM v WHERE i = 3"_s),
              QStringList{u"'DATE', 'ARRAY(3)'"_s});
    EXPECT_EQ(Rows(*loaded, u"SELECT variant_typeof(variant_extract(v, 1::UINTEGER)), variant_typeof(variant_extract(v, 2::UINTEGER)) "
                            "FROM (SELECT variant_extract(v, 'l') AS v FROM many LIMIT 1)"_s),
              QStringList{u"'UINT8', 'VARIANT_NULL'"_s});

    // What cannot be written is told with its place; nothing is written in its stead.
    const auto odd = Empty();
    Script(*odd, u"CREATE TABLE \"a t\" AS SELECT 1 AS i, {'ж': 1}::VARIANT AS v"_s);
    Options options;
    options.encoding = u"ISO-8859-1"_s;
    const auto task = Task(*odd, File(u"odd.sql"_s), options);
    task->run();
    EXPECT_EQ(task->get_State(), HF::TASK_FAILED);
    EXPECT_TRUE(task->get_Error().startsWith(u"main.\"a t\": Column \"v\": "_s)) << task->get_Error().toStdString();
    database->Close().Force();
}

TEST_F(DumpTest, OptionsGiveTheSameDatabase)
{
    MakeAwkward(Database());
    Options options;
    options.sql = {.Clean = true, .Transaction = false, .MultiRowInsert = false, .Replace = true};
    RoundTrip(Database(), options);
    options.sql = {.Clean = true, .Transaction = true, .MultiRowInsert = true, .Replace = true, .InsertLimitRows = 1};
    // Twice over what is there already.
    const QByteArray dump = Dump(Database(), options);
    const auto target = Empty();
    const QStringList before = Picture(Database());
    for (int i = 0; i < 2; ++i) {
        const QStringList failures = Load(*target, dump);
        ASSERT_TRUE(failures.isEmpty()) << failures.join(u'\n').toStdString();
        ExpectSame(before, Picture(*target));
    }
    for (const char* encoding : {"UTF-16LE", "ISO-8859-1"}) {
        options.encoding = QString::fromLatin1(encoding);
        RoundTrip(Database(), options);
    }
    // Rows can be put again over those that have a key.
    options = {};
    options.data = HF::DUMP_DATA;
    options.sql.Replace = true;
    const auto keyed = Empty();
    Script(*keyed, u"CREATE TABLE none(v INTEGER); CREATE TABLE one(k INTEGER PRIMARY KEY, v VARCHAR); "
                   "CREATE TABLE two(k INTEGER PRIMARY KEY, u INTEGER UNIQUE, v VARCHAR); "
                   "CREATE TABLE byindex(a INTEGER, v VARCHAR); CREATE UNIQUE INDEX ix ON byindex(a); "
                   "INSERT INTO none VALUES (1); INSERT INTO one VALUES (1, 'a'), (2, 'b'); INSERT INTO two VALUES (1, 5, 'a'); "
                   "INSERT INTO byindex VALUES (3, 'c')"_s);
    const QByteArray rows = Dump(*keyed, options);
    Script(*keyed, u"UPDATE one SET v = 'changed'; UPDATE two SET v = 'changed'; UPDATE byindex SET v = 'changed'"_s);
    EXPECT_EQ(Load(*keyed, rows), QStringList());
    EXPECT_EQ(Rows(*keyed, u"SELECT (SELECT count(*) FROM none), (SELECT string_agg(v, '' ORDER BY k) FROM one), "
                           "(SELECT v FROM two), (SELECT v FROM byindex)"_s),
              QStringList{u"2, 'ab', 'a', 'c'"_s});
}

TEST_F(DumpTest, SectionsInTheirOrder)
{
    Script(Database(), u"CREATE SEQUENCE s1; CREATE TABLE b(i INTEGER); CREATE TABLE a(i INTEGER PRIMARY KEY, t VARCHAR); "
                       "CREATE SCHEMA s; CREATE VIEW v AS SELECT * FROM a; CREATE MACRO m(x) AS x; CREATE INDEX ix ON a(t); "
                       "INSERT INTO a VALUES (1, 'x'), (2, NULL); CREATE TABLE c(x BLOB, y VARCHAR); "
                       "INSERT INTO c VALUES ('\\xAB'::BLOB, 'q'), ('', NULL), (NULL, 'z'); CREATE TEMP TABLE tmp(i INTEGER)"_s);
    Options options;
    options.sql.Clean = true;
    const QString dump = QString::fromUtf8(Dump(Database(), options));
    EXPECT_TRUE(dump.startsWith(u"--\n-- Orbis Studio --\n-- DuckDB dump --\n\n-- Application homepage: http"_s)) << dump.left(100).toStdString();
    qsizetype at = 0;
    for (const char* piece :
         {"\n--\n\n", "DROP TABLE IF EXISTS main.c;\n", "DROP TABLE IF EXISTS main.b", "DROP TABLE IF EXISTS main.a", "DROP VIEW IF EXISTS main.v;", "DROP MACRO  IF EXISTS main.m;",
          "DROP SEQUENCE IF EXISTS main.s1 CASCADE;", "DROP SCHEMA IF EXISTS s CASCADE;", "CREATE SCHEMA IF NOT EXISTS s;",
          "CREATE SEQUENCE main.s1", "CREATE TABLE \"main\".\"a\"(", "CREATE TABLE \"main\".\"b\"(", "CREATE VIEW v AS", "MACRO",
          "BEGIN TRANSACTION;\n\nINSERT INTO main.a( i, t ) VALUES\n(1, 'x'),\n(2, NULL);\n\nCOMMIT;\n\n",
          "INSERT INTO main.c( x, y ) VALUES\n(unhex( 'ab' ), 'q'),\n(unhex( '' ), NULL),\n(NULL, 'z');\n", "CREATE INDEX"}) {
        const qsizetype found = dump.indexOf(QString::fromUtf8(piece), at);
        ASSERT_GE(found, 0) << piece << "\n" << dump.mid(at).toStdString();
        at = found;
    }
    EXPECT_FALSE(dump.contains(u"tmp"_s) || dump.contains(u"INSERT INTO main.b"_s) || dump.contains(u"information_schema"_s));
    EXPECT_FALSE(dump.contains(u"SCHEMA IF NOT EXISTS main"_s) || dump.contains(u"search_path"_s));

    options = {};
    options.data = HF::DUMP_DATA;
    options.sql = {.Transaction = false, .MultiRowInsert = false};
    EXPECT_TRUE(QString::fromUtf8(Dump(Database(), options)).endsWith(u"--\n\nINSERT INTO main.a( i, t ) VALUES (1, 'x');\n"
        "INSERT INTO main.a( i, t ) VALUES (2, NULL);\n\nINSERT INTO main.c( x, y ) VALUES (unhex( 'ab' ), 'q');\n"
        "INSERT INTO main.c( x, y ) VALUES (unhex( '' ), NULL);\nINSERT INTO main.c( x, y ) VALUES (NULL, 'z');\n\n"_s));
    options.data = HF::DUMP_STRUCTURE;
    const QByteArray structure = Dump(Database(), options);
    EXPECT_FALSE(structure.contains("INSERT") || !structure.contains("CREATE INDEX"));
    options.data = HF::ELDumpData(7);
    EXPECT_TRUE(Dump(Database(), options).endsWith("\n--\n\n"));
}

TEST_F(DumpTest, Selections)
{
    Script(Database(), u"CREATE SCHEMA s; CREATE TABLE s.p(i INTEGER PRIMARY KEY); CREATE TABLE s.c(i INTEGER REFERENCES s.p(i)); "
                       "INSERT INTO s.p VALUES (1); INSERT INTO s.c VALUES (1); CREATE TABLE other(i INTEGER); CREATE SEQUENCE sq; "
                       "CREATE INDEX ix ON s.c(i); CREATE TEMP TABLE tmp(a INTEGER); INSERT INTO tmp VALUES (7)"_s);
    const auto schema = rc::cast<HF::I_LSchema>(Database().get_ChildObject(HF::TYPE_SCHEMA, u"s"_s).Force());
    const auto item = [&](const QString& name) { return rc::Ref<HF::LTreeItem>(*schema->get_Table(name)); };
    const QString whole = QString::fromUtf8(Dump(Database(), {}, {rc::Ref<HF::LTreeItem>(*schema)}));
    EXPECT_TRUE(whole.contains(u"CREATE SCHEMA IF NOT EXISTS s"_s) && whole.contains(u"REFERENCES"_s));
    EXPECT_FALSE(whole.contains(u"other"_s) || whole.contains(u"SEQUENCE"_s));
    EXPECT_LT(whole.indexOf(u"\"s\".\"p\"("_s), whole.indexOf(u"\"s\".\"c\"("_s));

    // Nothing outside goes with what the dump drops.
    Options clean;
    clean.sql.Clean = true;
    EXPECT_FALSE(Dump(Database(), clean, {rc::Ref<HF::LTreeItem>(*schema)}).contains("CASCADE"));
    EXPECT_TRUE(Dump(Database(), clean).contains("DROP SCHEMA IF EXISTS s CASCADE;"));

    // A table alone: no schema, no key to what is not there.
    const QString one = QString::fromUtf8(Dump(Database(), {}, {item(u"c"_s)}));
    EXPECT_FALSE(one.contains(u"REFERENCES"_s) || one.contains(u"SCHEMA"_s) || one.contains(u"\"p\""_s)) << one.toStdString();
    EXPECT_TRUE(one.contains(u"CREATE TABLE \"s\".\"c\"("_s) && one.contains(u"(1);"_s) && one.contains(u"CREATE INDEX"_s));
    const QString both = QString::fromUtf8(Dump(Database(), {}, {item(u"c"_s), item(u"p"_s)}));
    EXPECT_TRUE(both.contains(u"REFERENCES"_s));
    EXPECT_LT(both.indexOf(u"INSERT INTO s.p"_s), both.indexOf(u"INSERT INTO s.c"_s));

    // A temporary table when it is asked for.
    const auto main = rc::cast<HF::I_LSchema>(Database().get_ChildObject(HF::TYPE_SCHEMA, u"main"_s).Force());
    const QByteArray temporary = Dump(Database(), {}, {rc::Ref<HF::LTreeItem>(*main->get_Table(u"tmp"_s))});
    const auto target = Empty();
    EXPECT_EQ(Load(*target, temporary), QStringList());
    EXPECT_EQ(Rows(*target, u"SELECT t.*, temporary FROM tmp t, duckdb_tables() d WHERE d.table_name = 'tmp'"_s), QStringList{u"7, true"_s});

    // One that has gone meanwhile.
    const auto task = Task(Database(), File(u"gone.sql"_s), {}, {item(u"c"_s)});
    Script(Database(), u"DROP TABLE s.c"_s);
    task->run();
    EXPECT_EQ(task->get_State(), HF::TASK_FAILED);
    EXPECT_TRUE(task->get_Error().contains(u"s.c"_s));
}

TEST_F(DumpTest, ADatabaseThatNamesItselfGoesIntoAnother)
{
    const auto own = MakeDatabase(MakeEngine(File(u"own.duckdb"_s)), File(u"own.duckdb"_s), 1);
    Script(*own, u"CREATE SCHEMA s; CREATE SEQUENCE own.s.\"s q\"; CREATE TABLE own.s.t(id INTEGER DEFAULT "
                 "nextval('own.s.\"s q\"'), v VARCHAR); INSERT INTO s.t(v) VALUES ('a'), ('b'); "
                 "CREATE MACRO twice(x) AS x * 2; CREATE MACRO newest() AS (SELECT max(id) FROM own.s.t); "
                 "CREATE TABLE k(a INTEGER CHECK (own.main.twice(a) > 0)); INSERT INTO k VALUES (3); "
                 "CREATE VIEW w AS SELECT own.twice(id) AS d, own.k.a, newest() AS n FROM own.s.t, own.k; "
                 "CREATE VIEW v AS SELECT max(own.k.a) FROM own.k; CREATE VIEW z AS SELECT \"max(own.k.a)\" AS m FROM v; "
                 "CREATE TABLE shares(own INTEGER); CREATE VIEW beside AS SELECT x.a FROM own.k AS x"_s);
    const QByteArray dump = Dump(*own);
    const auto loaded = Empty();
    EXPECT_EQ(Load(*loaded, dump), QStringList()) << dump.toStdString();
    EXPECT_EQ(Rows(*loaded, u"FROM w ORDER BY d"_s), Rows(*own, u"FROM w ORDER BY d"_s));
    EXPECT_EQ(Rows(*loaded, u"FROM z, v, beside"_s), Rows(*own, u"FROM z, v, beside"_s));
    EXPECT_EQ(Dump(*loaded).toStdString(), dump.toStdString());
    EXPECT_EQ(Rows(*loaded, u"INSERT INTO s.t(v) VALUES ('c') RETURNING id"_s), QStringList(u"3"_s));
    own->Close().Force();
}

// The engine lists no constraint of any schema when it cannot read the check of one.
TEST_F(DumpTest, WhatCannotBeReadIsNoEmptyList)
{
    Script(Database(), u"CREATE TABLE other(i INTEGER PRIMARY KEY); INSERT INTO other VALUES (1); CREATE SCHEMA \"s d\"; "
                       "SET search_path = '\"s d\"'; CREATE TYPE status AS ENUM ('open', 'done'); "
                       "CREATE MACRO m(a) AS a + 1; CREATE TABLE t(i INTEGER CHECK (m(i) > 0), st status CHECK (st <> 'done'::status), UNIQUE (i)); "
                       "INSERT INTO t VALUES (1, 'open'); SET search_path = ''"_s);
    RoundTrip(Database());
    EXPECT_EQ(Rows(Database(), u"SELECT current_setting('search_path')"_s), QStringList(u"''"_s));

    // In a file that was opened again the engine does not know any more what a check needs.
    const QString path = File(u"lost.duckdb"_s);
    auto lost = MakeDatabase(MakeEngine(path), path, 1);
    Script(*lost, u"CREATE MACRO m(a) AS a + 1; CREATE TABLE t(i INTEGER CHECK (m(i) > 0)); INSERT INTO t VALUES (1)"_s);
    lost->Close().Force();
    lost = MakeDatabase(MakeEngine(path), path, 1);
    Script(*lost, u"DROP MACRO m"_s);
    const auto task = Task(*lost, File(u"lost.sql"_s), {});
    task->run();
    lost->Close().Force();
    EXPECT_EQ(task->get_State(), HF::TASK_FAILED);
    EXPECT_TRUE(task->get_Error().contains(u"\"table\" of \"main\""_s)) << task->get_Error().toStdString();
}

TEST_F(DumpTest, SequencesGoOn)
{
    const QString path = File(u"numbers.duckdb"_s);
    const auto make = MakeEngine(path);
    make->SqlExecute(u"CREATE SEQUENCE used; SELECT nextval('used') FROM range(5); CREATE SEQUENCE fresh START 7; "
                     "CREATE SEQUENCE spent MAXVALUE 2; SELECT nextval('spent') FROM range(2); "
                     "CREATE SEQUENCE down INCREMENT -3 MINVALUE -100 MAXVALUE 50 START 50; SELECT nextval('down'); "
                     "CREATE SEQUENCE ring MAXVALUE 3 CYCLE; SELECT nextval('ring') FROM range(3)", nub::ValueArray());
    make->Close();
    // The engine tells another state of a file that it has opened again.
    for (int round = 0; round < 2; ++round) {
        const auto database = MakeDatabase(MakeEngine(path), path);
        const auto target = Empty();
        EXPECT_EQ(Load(*target, Dump(*database)), QStringList());
        EXPECT_EQ(Dump(*target), Dump(*database));
        // Nothing that was given out comes again.
        EXPECT_EQ(Rows(*target, u"SELECT nextval('used') BETWEEN 6 AND 7 + %1, nextval('fresh') BETWEEN 7 + %1 AND 7 + 2 * %1, nextval('down') < 50"_s.arg(round)),
                  QStringList{u"true, true, true"_s});
        EXPECT_TRUE(Rows(*target, u"SELECT nextval('spent')"_s).value(0).contains(u"reached maximum"_s));
        Script(*database, u"SELECT nextval('used'), nextval('fresh')"_s);
        database->Close().Force();
    }
}

TEST_F(DumpTest, LimitsOfStatements)
{
    Script(Database(), u"CREATE TABLE t AS SELECT range AS i, repeat('x', 1000) AS s FROM range(1000)"_s);
    const auto statements = [&](HF::LSQLDumpOptions sql) {
        Options options;
        options.data = HF::DUMP_DATA;
        options.sql = sql;
        return Dump(Database(), options).count("INSERT INTO");
    };
    EXPECT_EQ(statements({.MultiRowInsert = true, .InsertLimitRows = 300}), 4);
    EXPECT_EQ(statements({.MultiRowInsert = true}), 1);
    EXPECT_EQ(statements({.MultiRowInsert = false, .InsertLimitRows = 300}), 1000);
    // About a kilobyte a row; the row that reaches the limit is the last.
    EXPECT_EQ(statements({.MultiRowInsert = true, .InsertLimitData = 100}), 10);
    EXPECT_EQ(statements({.MultiRowInsert = true, .InsertLimitRows = 7, .InsertLimitData = 100}), 143);
}

TEST_F(DumpTest, OneStateWhileOthersWrite)
{
    const QString path = File(u"state.duckdb"_s);
    const auto database = MakeDatabase(MakeEngine(path), path);
    Script(*database, u"CREATE TABLE a AS SELECT range AS i FROM range(20000); CREATE TABLE b AS FROM a"_s);
    Options options;
    options.progress = [&](long table, long done, long) {
        // Beside the dump, once, in the middle of the first table.
        if (table == 0 && done > 0)
            Script(*database, u"DELETE FROM b; INSERT INTO a VALUES (-1); CREATE TABLE IF NOT EXISTS late(i INTEGER)"_s);
    };
    const QByteArray dump = Dump(*database, options);
    EXPECT_FALSE(dump.contains("late") || dump.contains("(-1)"));
    const auto target = Empty();
    EXPECT_EQ(Load(*target, dump), QStringList());
    EXPECT_EQ(Rows(*target, u"SELECT (SELECT count(*) FROM a), (SELECT count(*) FROM b)"_s), QStringList{u"20000, 20000"_s});
    database->Close().Force();
}

TEST_F(DumpTest, CancelAtAnyPoint)
{
    Script(Database(), u"CREATE TABLE a AS SELECT range AS i, 'text' AS t FROM range(12000); CREATE TABLE b AS FROM a; "
                       "CREATE TABLE c AS FROM a; CREATE INDEX ix ON a(i)"_s);
    const QByteArray whole = Dump(Database());
    std::mt19937 random(7);
    for (int round = 0; round < 8; ++round) {
        rc::Ptr<orbDuckDB_TaskMakeDump> task;
        int calls = static_cast<int>(random() % 20);
        Options options;
        options.progress = [&](long, long, long) {
            if (calls-- == 0)
                task->Cancel();
        };
        const QString path = File(u"cancelled.sql"_s);
        task = Task(Database(), path, options);
        task->run();
        ASSERT_EQ(task->get_State(), HF::TASK_CANCELLED);
        const QByteArray partial = Content(path);
        EXPECT_TRUE(whole.startsWith(partial)) << partial.right(200).toStdString();
        EXPECT_FALSE(partial.contains("CREATE INDEX"));
        // The next dump is whole again.
        EXPECT_EQ(Dump(Database()).size(), whole.size());
    }
}

TEST_F(DumpTest, WhatCannotBeWritten)
{
    Script(Database(), u"CREATE TABLE t AS SELECT range AS i FROM range(100000)"_s);
    auto task = Task(Database(), u"/nosuch/dump.sql"_s, {});
    task->run();
    EXPECT_EQ(task->get_State(), HF::TASK_FAILED);
    EXPECT_TRUE(task->get_Error().contains(u"/nosuch/dump.sql"_s));
    if (QFile::exists(u"/dev/full"_s)) {
        task = Task(Database(), u"/dev/full"_s, {});
        task->run();
        EXPECT_FALSE(task->get_OutputError().isEmpty());
    }
    // A name that the encoding has no letters for.
    Script(Database(), u"CREATE TABLE \"тест\"(i INTEGER)"_s);
    Options options;
    options.encoding = u"ISO-8859-1"_s;
    task = Task(Database(), File(u"x.sql"_s), options);
    task->run();
    EXPECT_TRUE(task->get_OutputError().contains(u"ISO-8859-1"_s));
}

/// Random tables, keys, views over views, defaults and rows.
TEST_F(DumpTest, RandomDatabases)
{
    const char* const types[] = {"INTEGER", "VARCHAR", "DOUBLE", "DATE", "DECIMAL(12,4)", "BLOB", "INTEGER[]", "TIMESTAMPTZ",
                                 "STRUCT(a VARCHAR, b INTERVAL)", "MAP(VARCHAR, DOUBLE)", "HUGEINT", "UUID", "BOOLEAN", "FLOAT[]",
                                 "VARIANT"};
    const char* const values[] = {
        "(random() * 2e9)::INTEGER", "repeat(chr((random() * 60000)::INTEGER % 50000 + 32), (random() * 20)::INTEGER)",
        "(random() - 0.5) * pow(10, (random() * 40)::INTEGER)", "DATE '1970-01-01' + (random() * 100000 - 50000)::INTEGER",
        "(random() * 1e6)::DECIMAL(12,4)", "encode(repeat('''\\', (random() * 5)::INTEGER))",
        "CASE WHEN random() < 0.3 THEN [] ELSE [(random() * 9)::INTEGER, NULL] END",
        "make_timestamptz((random() * 1e15)::BIGINT)", "{'a': chr((random() * 90)::INTEGER + 33), 'b': to_days((random() * 9)::INTEGER)}",
        "MAP {chr((random() * 90)::INTEGER + 33): random()}", "(random() * 1e18)::HUGEINT * 100000000000000", "uuid()",
        "random() < 0.5", "[random()::FLOAT]",
        "CASE range % 4 WHEN 0 THEN (random() * 99)::UTINYINT::VARIANT WHEN 1 THEN {'a': [random(), NULL], 'b': uuid()}::VARIANT "
        "WHEN 2 THEN ('{\"\": [' || range || ', {}]}')::JSON::VARIANT ELSE [range::HUGEINT, NULL]::VARIANT END"};
    const bool hasVariant = HF::IsQuerySuccess(Database().SqlQuery(u"CREATE TABLE probe(v VARIANT)"_s, HF::QUERY_SILENT_ERROR, {}, 1, 2, 1));
    const int typeCount = int(std::size(types)) - (hasVariant ? 0 : 1);
    for (unsigned seed = 1; seed <= 3; ++seed) {
        std::mt19937 random(seed);
        const auto below = [&](int limit) { return static_cast<int>(random() % static_cast<unsigned>(limit)); };
        const auto database = Empty();
        QString text = u"CREATE SCHEMA s; SELECT setseed(0.%1);"_s.arg(seed);
        for (int t = 0; t < 6; ++t) {
            const QString schema = t % 2 ? u"s"_s : u"main"_s;
            const QString name = u"\"%1 %2\""_s.arg(QChar(u'z' - below(26))).arg(t);
            QString columns = u"id INTEGER PRIMARY KEY"_s, select = u"range"_s;
            for (int c = below(6); c >= 0; --c) {
                const int type = below(typeCount);
                columns += u", c%1 %2"_s.arg(c).arg(QString::fromLatin1(types[type]));
                select += u", CASE WHEN random() < 0.2 THEN NULL ELSE "_s + QString::fromUtf8(values[type]) + u" END"_s;
            }
            text += u"CREATE TABLE %1.%2(%3); INSERT INTO %1.%2 SELECT %4 FROM range(%5);"_s
                        .arg(schema, name, columns, select).arg(below(900));
            text += u"CREATE VIEW %1.\"v%2\" AS SELECT count(*) AS n FROM %3;"_s.arg(schema).arg(9 - t).arg(
                t > 1 && below(2) ? u"%1.\"v%2\""_s.arg(schema).arg(9 - t + 2) : schema + u'.' + name);
            if (below(2))
                text += u"CREATE INDEX \"ix%1\" ON %2.%3(id);"_s.arg(t).arg(schema, name);
        }
        Script(*database, text);
        RoundTrip(*database);
    }
}

TEST(DumpOrder, References)
{
    const orbDuckDB_References found = ReferencesOf(
        u"CREATE VIEW v AS WITH w AS (SELECT a FROM s1.\"T 1\") SELECT f(x), g.h(y), 'Str' FROM t, (t2 LEFT JOIN t3 ON (t2.c = c4)) "
        "WHERE x IN (SELECT z FROM tf(1)) ORDER BY k, l"_s);
    for (const char* relation : {"s1\nt 1", "\nt", "\nt2", "\nt3"})
        EXPECT_TRUE(found.relations.contains(QString::fromLatin1(relation))) << relation;
    for (const char* no : {"\na", "\nc", "\nc4", "\nk", "\nl", "\nz"})
        EXPECT_FALSE(found.relations.contains(QString::fromLatin1(no))) << no;
    EXPECT_TRUE(found.calls.contains(u"\nf"_s) && found.calls.contains(u"g\nh"_s) && found.calls.contains(u"\ntf"_s));
    EXPECT_TRUE(found.words.contains(u"str"_s) && !found.words.contains(u"t 1"_s));
}

TEST(DumpOrder, DefaultsOfMacros)
{
    QList<QList<MacroParameter>> overloads{{{u"a b"_s, {}, {}}, {u"c"_s, u"DECIMAL(5,2)"_s, {}}, {u"d"_s, {}, {}}}, {}};
    ASSERT_TRUE(ReadMacroDefaults(u"Binder Error: x\nCandidate macros:\n\tm(a b := 'x'')\n, ', c DECIMAL(5,2) := 1.5, d := {'k': [1, 2]})\n\tm()\n\nLINE 1"_s,
                                  u"m"_s, overloads));
    EXPECT_EQ(overloads[0][0].defaultText, u"'x'')\n, '"_s);
    EXPECT_EQ(overloads[0][1].defaultText, u"1.5"_s);
    EXPECT_EQ(overloads[0][2].defaultText, u"{'k': [1, 2]}"_s);
    EXPECT_FALSE(ReadMacroDefaults(u"Candidate macros:\n\tm(x)"_s, u"m"_s, overloads));
}

} // namespace
