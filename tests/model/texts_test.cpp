// SPDX-License-Identifier: GPL-3.0-or-later
// What each request comes to, as tables of cases, and what the engine says to it.
#include "model_place.h"

#include "hf/model_object.h"
#include "model/column_text.h"
#include "model/sql_tokens.h"
#include "model/table_script.h"
#include "model/text_helpers.h"

namespace {

class ModelTextCases : public support::ModelPlace
{
protected:
    struct Case
    {
        int kind;
        int property;
        HF::LVariant value;
        const char* text;
        const char* refusal = ""; ///< beginning of what the engine says
    };

    /// Compares each text and lets the engine run it in a transaction of its own.
    void Check(const std::function<rc::Ref<const HF::I_LSchemaObject>()>& object, const std::vector<Case>& cases)
    {
        for (const Case& request : cases) {
            const QString text = Text(object(), request.kind, request.property, request.value);
            EXPECT_EQ(text.toStdString(), request.text);
            QString script;
            for (QString statement : Texts(object(), request.kind, request.property, request.value)) {
                HF::FinishQuery(statement, 1);
                script += statement;
            }
            const bool wrapped = script.contains("--SO--");
            if (!wrapped)
                MustRun("BEGIN");
            const QString said = Run(script);
            EXPECT_EQ(said.isEmpty(), *request.refusal == 0) << text.toStdString() << "\n" << said.toStdString();
            EXPECT_TRUE(said.contains(request.refusal)) << text.toStdString() << "\n" << said.toStdString();
            if (!wrapped)
                MustRun("ROLLBACK");
        }
    }
};

TEST_F(ModelTextCases, Column)
{
    MustRun("CREATE SCHEMA \"s 1\"; CREATE TABLE \"s 1\".t(a INTEGER DEFAULT 5, \"b b\" VARCHAR, l INTEGER[3], "
            "d DECIMAL(9,2), e ENUM('x','y'), n INTEGER NOT NULL)");
    const auto column = [&](const char* name) { return [=, this] { return rc::Ref<const HF::I_LSchemaObject>(Find(HF::TYPE_TABLE, "t", HF::TYPE_FIELD, name, "s 1")); }; };
    Check(column("a"), {
        {1, -1, {}, "ALTER TABLE \"s 1\".t ALTER COLUMN a TYPE Integer"},
        {2, PROP_DEFAULT, "7", "ALTER TABLE \"s 1\".t ALTER COLUMN a SET DEFAULT 7;"},
        {2, PROP_DEFAULT, "now()", "ALTER TABLE \"s 1\".t ALTER COLUMN a SET DEFAULT 'now()';"},
        {2, PROP_DEFAULT, "(1 + 1)", "ALTER TABLE \"s 1\".t ALTER COLUMN a SET DEFAULT (1 + 1);"},
        {2, PROP_DEFAULT, "", "ALTER TABLE \"s 1\".t ALTER COLUMN a DROP DEFAULT;"},
        {2, PROP_NULLABLE, false, "ALTER TABLE \"s 1\".t ALTER COLUMN a SET NOT NULL"},
        {2, PROP_NULLABLE, true, "ALTER TABLE \"s 1\".t ALTER COLUMN a DROP NOT NULL"},
        {2, PROP_NAME, "c d", "ALTER TABLE \"s 1\".t RENAME a TO \"c d\""},
        {2, PROP_NAME, "select", "ALTER TABLE \"s 1\".t RENAME a TO \"select\""},
        {2, PROP_COMMENT, "it's", "COMMENT ON COLUMN \"s 1\".t.a IS 'it''s';"},
        {2, PROP_COMMENT, "", "COMMENT ON COLUMN \"s 1\".t.a IS NULL;"},
        {2, PROP_TYPE_NAME, "BigInt", "ALTER TABLE \"s 1\".t ALTER COLUMN a TYPE BigInt"},
        {2, PROP_INDEXED, true, "-- Will be changed by indexes\n"},
        {2, PROP_UNIQUE, true, "-- Will be changed by uniques\n"},
        {2, PROP_TYPE_ARGUMENTS, "x", ""},
        {3, -1, {}, "ALTER TABLE \"s 1\".t ADD COLUMN a Integer DEFAULT 5;", "already exists"},
        {4, -1, {}, "ALTER TABLE \"s 1\".t DROP a"},
        {5, -1, {}, ""}, {7, -1, {}, ""}, {8, -1, {}, ""},
    });
    Check(column("b b"), {
        {2, PROP_DEFAULT, "it's", "ALTER TABLE \"s 1\".t ALTER COLUMN \"b b\" SET DEFAULT 'it''s';"},
        {4, -1, {}, "ALTER TABLE \"s 1\".t DROP \"b b\""},
    });
    Check(column("l"), {
        {2, PROP_ARRAY_SIZE, "2", "ALTER TABLE \"s 1\".t ALTER COLUMN l TYPE Integer[2]"},
        {2, PROP_ELEMENT_TYPE, "BigInt", "ALTER TABLE \"s 1\".t ALTER COLUMN l TYPE BigInt[3]"},
        {2, PROP_TYPE_NAME, "List", "ALTER TABLE \"s 1\".t ALTER COLUMN l TYPE Integer[]"},
    });
    Check(column("d"), {
        {2, PROP_PRECISION, 12, "ALTER TABLE \"s 1\".t ALTER COLUMN d TYPE Decimal( 12, 2 )"},
        {2, PROP_SCALE, -1, "ALTER TABLE \"s 1\".t ALTER COLUMN d TYPE Decimal( 9 )"},
        {2, PROP_TYPE_NAME, "DECIMAL(10,1)", "ALTER TABLE \"s 1\".t ALTER COLUMN d TYPE DECIMAL(10,1)"},
    });
    Check(column("e"), {{1, -1, {}, "ALTER TABLE \"s 1\".t ALTER COLUMN e TYPE Enum( 'x', 'y' )"}});
    // A new column that takes no null is two statements.
    Check(column("n"), {{3, -1, {}, "ALTER TABLE \"s 1\".t ADD COLUMN n Integer; && ALTER TABLE \"s 1\".t ALTER COLUMN n SET NOT NULL",
                         "already exists"}});
}

TEST_F(ModelTextCases, GeneratedColumn)
{
    MustRun("CREATE TABLE t(a INTEGER, \"g g\" INTEGER AS (a + 1)); CREATE TEMP TABLE tt(a INTEGER, g INTEGER AS (a + 1))");
    const auto column = [&](const char* table, const char* name) {
        return [=, this] { return rc::Ref<const HF::I_LSchemaObject>(Find(HF::TYPE_TABLE, table, HF::TYPE_METHOD, name)); };
    };
    Check(column("t", "g g"), {
        {1, -1, {}, "ALTER TABLE main.t ALTER COLUMN \"g g\" TYPE Integer", "generated columns"},
        {2, PROP_TYPE_NAME, "BigInt", "ALTER TABLE main.t ALTER COLUMN \"g g\" TYPE BigInt", "generated columns"},
        {2, PROP_NAME, "h", "ALTER TABLE main.t RENAME \"g g\" TO h"},
        {2, PROP_COMMENT, "it's", "COMMENT ON COLUMN main.t.\"g g\" IS 'it''s';"},
        {2, PROP_METHOD_EXPRESSION, "a + 2", ""},
        {2, PROP_INDEXED, true, "-- Will be changed by indexes\n"},
        {2, PROP_UNIQUE, true, "-- Will be changed by uniques\n"},
        {4, -1, {}, "ALTER TABLE main.t DROP \"g g\""},
        {3, -1, {}, ""}, {5, -1, {}, ""}, {7, -1, {}, ""},
    });
    Check(column("tt", "g"), {{2, PROP_COMMENT, "", "COMMENT ON COLUMN tt.g IS NULL;"}});
    const auto method = column("t", "g g")();
    EXPECT_EQ(Model(HF::TYPE_METHOD).CheckProperty(method, nullptr, PROP_METHOD_EXPRESSION, "").toStdString(), "Method cannot be empty!");
}

TEST_F(ModelTextCases, Types)
{
    struct TypeCase { const char* type; const char* text; };
    const TypeCase cases[] = {
        {"DECIMAL(18,3)", "Decimal( 18, 3 )"}, {"DECIMAL(7,0)", "Decimal( 7 )"}, {"INTEGER[]", "Integer[]"},
        {"INTEGER[3]", "Integer[3]"}, {"INTEGER[][]", "INTEGER[][]"}, {"DECIMAL(4,1)[]", "DECIMAL(4,1)[]"},
        {"STRUCT(a INTEGER, \"b c\" VARCHAR)", "Struct( a INTEGER, \"b c\" VARCHAR )"},
        {"MAP(VARCHAR, INTEGER)", "Map( VARCHAR, INTEGER )"}, {"UNION(i INTEGER, s VARCHAR)", "Union( i INTEGER, s VARCHAR )"},
        {"ENUM('a', 'it''s \"x\"')", "Enum( 'a', 'it''s \"x\"' )"}, {"STRUCT(a INTEGER)[]", "STRUCT(a INTEGER)[]"},
        {"UUID", "UUID"}, {"VARCHAR", "VarChar"}, {"BLOB", "BLOB"},
    };
    for (const TypeCase& type : cases) {
        MustRun(QString("CREATE OR REPLACE TABLE t(c %1)").arg(type.type));
        const QString before = Rows("SELECT data_type FROM duckdb_columns() WHERE table_name = 't'");
        const QString text = FieldTypeText(Find(HF::TYPE_TABLE, "t", HF::TYPE_FIELD, "c"));
        EXPECT_EQ(text.toStdString(), type.text);
        // The text means the very type that it was read from.
        MustRun("CREATE OR REPLACE TABLE t(c " + text + ")");
        EXPECT_EQ(Rows("SELECT data_type FROM duckdb_columns() WHERE table_name = 't'"), before);
    }
}

TEST_F(ModelTextCases, Table)
{
    MustRun("CREATE TABLE t(a INTEGER NOT NULL DEFAULT 1, \"b b\" VARCHAR, g INTEGER AS (a + 1), PRIMARY KEY(a), "
            "CHECK(a > 0), UNIQUE(\"b b\")); CREATE INDEX ix ON t(\"b b\"); COMMENT ON TABLE t IS 'it''s'; COMMENT ON COLUMN "
            "t.a IS 'c'; COMMENT ON COLUMN t.g IS 'g'; COMMENT ON INDEX ix IS 'i'; CREATE TABLE plain(a INTEGER); "
            "CREATE TEMP TABLE tt(a INTEGER)");
    const auto table = [&](const char* name) { return [=, this] { return rc::Ref<const HF::I_LSchemaObject>(Find(HF::TYPE_TABLE, name)); }; };
    Check(table("plain"), {
        {2, PROP_NAME, "other", "ALTER TABLE \"main\".\"plain\" RENAME TO other;"},
        {2, PROP_COMMENT, "x", "COMMENT ON TABLE main.plain IS 'x';"},
        {2, PROP_COMMENT, "", "COMMENT ON TABLE main.plain IS NULL;"},
        {2, PROP_TEMPORARY, true, ""},
        {2, PROP_KEY_COLUMNS, QStringList{"a"},
         "DROP TABLE IF EXISTS \"main\".\"__orb_temp_table\";\n\nCREATE TABLE \"main\".\"__orb_temp_table\"(\n\ta Integer "
         "PRIMARY KEY );\n\nINSERT INTO \"main\".\"__orb_temp_table\"(a)\n\tSELECT a FROM \"main\".\"plain\";\n\n\nDROP TABLE IF "
         "EXISTS \"main\".\"plain\";\n\nALTER TABLE \"main\".\"__orb_temp_table\" RENAME TO plain;\n\n"},
        {3, -1, {}, "CREATE TABLE \"main\".\"plain\" ( \n\ta Integer );\n ", "already exists"},
        {4, -1, {}, "DROP TABLE IF EXISTS main.plain;\n"},
        {7, -1, {}, ""},
    });
    Check(table("tt"), {
        {2, PROP_COMMENT, "x", "COMMENT ON TABLE tt IS 'x';"},
        {3, -1, {}, "CREATE TEMPORARY TABLE \"tt\" ( \n\ta Integer );\n ", "already exists"},
        {4, -1, {}, "DROP TABLE IF EXISTS tt;\n"},
    });
    Check(table("t"), {
        {3, -1, {},
         "CREATE TABLE \"main\".\"t\" ( \n\ta Integer DEFAULT 1 NOT NULL,\n\t\"b b\" VarChar,\n\tg Integer AS ( CAST((a + 1) AS "
         "INTEGER) ),\n\tPRIMARY KEY ( a ),\n\tCONSTRAINT \"unique_b b\" UNIQUE( \"b b\" ),\n\tCONSTRAINT check_a CHECK ( a > 0 "
         ") );\n  && CREATE INDEX ix ON \"main\".\"t\"( \"b b\" );\n && COMMENT ON INDEX main.ix IS 'i'; && COMMENT ON TABLE "
         "main.t IS 'it''s'; && COMMENT ON COLUMN main.t.a IS 'c'; && COMMENT ON COLUMN main.t.g IS 'g';",
         "already exists"},
        {8, -1, {},
         "BEGIN; --SO--\n\nDROP TABLE IF EXISTS \"main\".\"__orb_temp_table\";\n\nCREATE TABLE "
         "\"main\".\"__orb_temp_table\"(\n\ta Integer NOT NULL DEFAULT 1 PRIMARY KEY,\n\t\"b b\" VarChar,\n\tg Integer AS ((a + "
         "1)),\n\tCONSTRAINT \"check_a\" CHECK ( a > 0 ),\n\tCONSTRAINT \"unique_b b\" UNIQUE( \"b b\" ) );\n\nINSERT INTO "
         "\"main\".\"__orb_temp_table\"(a, \"b b\")\n\tSELECT a, \"b b\" FROM \"main\".\"t\";\n\n\nCOMMENT ON TABLE "
         "\"main\".\"__orb_temp_table\" IS 'it''s';\n\nCOMMENT ON COLUMN \"main\".\"__orb_temp_table\".a IS 'c';\n\nCOMMENT ON "
         "COLUMN \"main\".\"__orb_temp_table\".g IS 'g';\n\nDROP TABLE IF EXISTS \"main\".\"t\";\n\nALTER TABLE "
         "\"main\".\"__orb_temp_table\" RENAME TO t;\n\nCREATE INDEX ix ON \"main\".\"t\"( \"b b\" );\nCOMMENT ON INDEX "
         "\"main\".\"ix\" IS 'i';\n\nEND; --SO--\n"},
    });
}

TEST_F(ModelTextCases, Index)
{
    MustRun("CREATE TABLE t(a INTEGER, \"b b\" VARCHAR); CREATE INDEX ix ON t(a, lower(\"b b\")); COMMENT ON INDEX ix IS 'c'");
    const auto index = [&] { return rc::Ref<const HF::I_LSchemaObject>(Find(HF::TYPE_TABLE, "t", HF::TYPE_INDEX, "ix")); };
    const QString drop = "BEGIN; --SO--\n\nDROP INDEX IF EXISTS \"main\".\"ix\";\n\nEND; --SO--\n && ";
    const auto text = [&](int kind, int property, const HF::LVariant& value) { return Text(index(), kind, property, value).toStdString(); };
    EXPECT_EQ(text(3, -1, {}), "CREATE INDEX ix ON \"main\".\"t\"( a, (lower(\"b b\")) );\n && COMMENT ON INDEX main.ix IS 'c';");
    EXPECT_EQ(text(4, -1, {}), "BEGIN; --SO--\n\nDROP INDEX IF EXISTS \"main\".\"ix\";\n\nEND; --SO--\n");
    EXPECT_EQ(text(2, PROP_COMMENT, ""), "COMMENT ON INDEX main.ix IS NULL;");
    EXPECT_EQ(text(2, PROP_SQL_TEXT, "x"), "");
    const std::pair<int, std::pair<HF::LVariant, const char*>> replaced[] = {
        {PROP_COLUMNS, {QStringList{"b b"}, "CREATE INDEX ix ON \"main\".\"t\"( \"b b\" );"}},
        {PROP_NAME, {"new", "CREATE INDEX \"new\" ON \"main\".\"t\"( a, (lower(\"b b\")) );"}},
        {PROP_UNIQUE, {true, "CREATE UNIQUE INDEX ix ON \"main\".\"t\"( a, (lower(\"b b\")) );"}},
    };
    for (const auto& [property, change] : replaced) {
        const QStringList texts = Texts(index(), 2, property, change.first);
        ASSERT_EQ(texts.size(), 3); // away, back, and the comment that went with it
        EXPECT_EQ(texts[0] + " && ", drop);
        EXPECT_TRUE(texts[1].startsWith("BEGIN; --SO--\n\nCREATE ") && texts[1].endsWith(" );\n\nEND; --SO--\n"));
        EXPECT_TRUE(texts[1].contains(change.second)) << texts[1].toStdString();
        for (QString one : texts) {
            HF::FinishQuery(one, 0);
            MustRun(one);
        }
        EXPECT_EQ(Rows("SELECT comment FROM duckdb_indexes()"), "c");
        MustRun("DROP INDEX IF EXISTS \"new\"; DROP INDEX IF EXISTS ix; CREATE INDEX ix ON t(a, lower(\"b b\")); COMMENT ON INDEX ix IS 'c'");
    }
}

TEST_F(ModelTextCases, ConstraintsMakeTheTableAnew)
{
    MustRun("CREATE TABLE p(id INTEGER PRIMARY KEY); INSERT INTO p VALUES (1), (2); CREATE TABLE t(a INTEGER REFERENCES p(id), b INTEGER, "
            "UNIQUE(a, b), CHECK(b > 0), CHECK(b < 9)); INSERT INTO t VALUES (1, 5)");
    const auto count = [&](const char* type) { return Rows(QString("SELECT count(*) FROM duckdb_constraints() WHERE table_name = 't' AND constraint_type = '%1'").arg(type)); };
    const auto unique = [&] { return rc::Ref<const HF::I_LSchemaObject>(Find(HF::TYPE_TABLE, "t", HF::TYPE_UNIQUE, "unique_a_b")); };
    EXPECT_EQ(Text(unique(), 5).toStdString(), "CONSTRAINT unique_a_b UNIQUE( a, b )");
    EXPECT_EQ(Text(unique(), 2, PROP_NAME, "x"), "");
    MustRun(Text(unique(), 2, PROP_COLUMNS, QStringList{"b"}));
    EXPECT_EQ(Rows("SELECT constraint_column_names FROM duckdb_constraints() WHERE table_name = 't' AND constraint_type = 'UNIQUE'"), "[b]");
    MustRun(Text(Find(HF::TYPE_TABLE, "t", HF::TYPE_UNIQUE, "unique_b"), 4));
    EXPECT_EQ(count("UNIQUE"), "0");

    // Two checks of one name are told apart by what they say.
    const auto check = Find(HF::TYPE_TABLE, "t")->get_ChildObjects(HF::TYPE_CHECK).Force()[1];
    EXPECT_EQ(check->GetString(PROP_CHECK_EXPRESSION), "b < 9");
    MustRun(Text(check, 2, PROP_CHECK_EXPRESSION, "b < 7"));
    EXPECT_EQ(Rows("SELECT expression FROM duckdb_constraints() WHERE constraint_type = 'CHECK' ORDER BY 1"), "(b < 7)\n(b > 0)");
    MustRun(Text(Find(HF::TYPE_TABLE, "t")->get_ChildObjects(HF::TYPE_CHECK).Force()[0], 4));
    EXPECT_EQ(count("CHECK"), "1");

    const auto link = Find(HF::TYPE_LINK, "link_p_t");
    for (const int property : {PROP_KEY_COLUMNS, PROP_LINK_CARDINALITY, PROP_LINK_COLUMNS, PROP_LINK_TABLE, PROP_LINK_PARENT_TABLE})
        EXPECT_EQ(Text(link, 2, property, "x").toStdString(), "\n-- Property will be changed on update table.");
    MustRun(Text(link, 8));
    EXPECT_EQ(count("FOREIGN KEY"), "1");
    // The referenced table is as free as before: the engine keeps no stale name of the one that was made anew.
    MustRun("DELETE FROM p WHERE id = 2");
    EXPECT_TRUE(Run("DELETE FROM p WHERE id = 1").contains("still referenced"));
    MustRun(Text(Find(HF::TYPE_LINK, "link_p_t"), 4));
    EXPECT_EQ(count("FOREIGN KEY"), "0");
    MustRun("DELETE FROM p WHERE id = 1; DROP TABLE p");
    EXPECT_EQ(Rows("SELECT * FROM t"), "1|5");
}

TEST_F(ModelTextCases, ViewsMacrosSequences)
{
    MustRun("CREATE SCHEMA s; CREATE VIEW \"v\" AS SELECT 1 AS a; CREATE VIEW s.w(x) AS SELECT 2; COMMENT ON VIEW s.w IS 'it''s'; CREATE TEMP VIEW tv "
            "AS SELECT 3; CREATE MACRO f(a) AS a + 1; COMMENT ON MACRO f IS 'c'; CREATE MACRO g() AS TABLE SELECT 1; CREATE SEQUENCE q INCREMENT 2 "
            "MINVALUE 3 MAXVALUE 99 START 5 CYCLE; CREATE SEQUENCE plain; COMMENT ON SEQUENCE plain IS 'p'");
    const auto object = [&](int type, const char* name, const char* schema = "main") {
        return [=, this] { return rc::Ref<const HF::I_LSchemaObject>(Find(type, name, 0, {}, schema)); };
    };
    Check(object(HF::TYPE_VIEW, "v"), {
        {3, -1, {}, "CREATE VIEW v AS SELECT 1 AS a;\n", "already exists"},
        {4, -1, {}, "DROP VIEW IF EXISTS main.v"},
        {2, PROP_NAME, "w w", "ALTER VIEW main.v RENAME TO \"w w\""},
        {2, PROP_DEFINITION, "CREATE VIEW \"v\" AS SELECT 5", "CREATE OR REPLACE VIEW \"v\" AS SELECT 5;\n"},
        {2, PROP_DEFINITION, "create or replace view \"other\" as select 5", "create or replace view v as select 5;\n"},
        {2, PROP_DEFINITION, "CREATE VIEW x.y AS SELECT 5", "CREATE OR REPLACE VIEW \"main\".\"v\" AS SELECT 5;\n"},
        {2, PROP_DEFINITION, "SELECT 5", ""},
        {2, PROP_COMMENT, "x", "COMMENT ON VIEW \"main\".\"v\" IS 'x';\n"},
    });
    Check(object(HF::TYPE_VIEW, "w", "s"), {
        {2, PROP_DEFINITION, "CREATE VIEW s.w AS SELECT 7", "CREATE OR REPLACE VIEW s.w AS SELECT 7;\n && COMMENT ON VIEW \"s\".\"w\" IS 'it''s';\n"},
    });
    Check(object(HF::TYPE_VIEW, "tv"), {{4, -1, {}, "DROP VIEW IF EXISTS tv"}});
    Check(object(HF::TYPE_FUNCTION, "f"), {
        {4, -1, {}, "DROP MACRO  IF EXISTS main.f;"},
        {6, -1, {}, "SELECT main.f( a )", "a"},
        {2, PROP_COMMENT, "", "COMMENT ON MACRO main.f IS NULL"},
        {2, PROP_NAME, "h", " && DROP MACRO  IF EXISTS main.f; && CREATE OR REPLACE MACRO \"main\".\"h\"( a ) AS (a + 1);\n && COMMENT ON MACRO main.h IS 'c'"},
        {2, PROP_DEFINITION, "CREATE MACRO f(a) AS a + 2", "CREATE OR REPLACE MACRO f(a) AS a + 2;\n && COMMENT ON MACRO main.f IS 'c'"},
    });
    Check(object(HF::TYPE_FUNCTION, "g"), {
        {4, -1, {}, "DROP MACRO TABLE  IF EXISTS main.g;"},
        {2, PROP_COMMENT, "t", "COMMENT ON MACRO TABLE main.g IS 't'"},
    });
    Check(object(HF::TYPE_SEQUENCE, "q"), {
        {1, -1, {}, "CREATE OR REPLACE SEQUENCE main.q\nINCREMENT 2\nMINVALUE 3\nMAXVALUE 99\nSTART 5\nCYCLE"},
        {2, PROP_SEQ_INCREMENT, 1, "CREATE OR REPLACE SEQUENCE main.q\nMINVALUE 3\nMAXVALUE 99\nSTART 5\nCYCLE"},
        {2, PROP_SEQ_START, 2, "CREATE OR REPLACE SEQUENCE main.q\nINCREMENT 2\nMINVALUE 3\nMAXVALUE 99\nSTART 2\nCYCLE", "START value (2) cannot be less"},
        {2, PROP_SEQ_LAST_VALUE, 4, ""},
        {4, -1, {}, "DROP SEQUENCE main.q CASCADE;"},
    });
    Check(object(HF::TYPE_SEQUENCE, "plain"), {
        {3, -1, {}, "CREATE SEQUENCE main.plain\nMINVALUE 1\nMAXVALUE 9223372036854775807\nSTART 1\n && COMMENT ON SEQUENCE main.plain IS 'p';", "already exists"},
        {2, PROP_COMMENT, "x", "COMMENT ON SEQUENCE main.plain IS 'x';"},
    });
}

TEST(SqlTokensTest, RenamesColumnsAndNothingElse)
{
    const QHash<QString, QString> names{{"a", "x y"}, {"date", "d"}};
    struct Pair { const char* before; const char* after; };
    for (const Pair& pair : {Pair{"(a > 0)", "(\"x y\" > 0)"}, {"A + \"a\" + ab", "\"x y\" + \"x y\" + ab"}, {"a(a)", "a(\"x y\")"},
                             {"'a' || a", "'a' || \"x y\""}, {"CAST(a AS DATE)", "CAST(\"x y\" AS DATE)"}, {"s.a + a", "s.a + \"x y\""},
                             {"struct_pack(a := a)", "struct_pack(a := \"x y\")"}, {"'it''s a' || \"a\"\"a\"", "'it''s a' || \"a\"\"a\""}})
        EXPECT_EQ(SqlTokens::Rename(pair.before, names).toStdString(), pair.after);
    // Words of the language, types and collations are no columns, unless quotes say so.
    const QHash<QString, QString> words{{"a", "z"}, {"end", "z"}, {"and", "z"}, {"is", "z"}, {"time", "z"}, {"nocase", "z"}};
    for (const Pair& pair :
         {Pair{"CAST(s AS STRUCT(a INTEGER, b VARCHAR)) = a", "CAST(s AS STRUCT(a INTEGER, b VARCHAR)) = \"z\""},
          {"CASE WHEN a IS NULL THEN \"end\" ELSE 1 END", "CASE WHEN \"z\" IS NULL THEN \"z\" ELSE 1 END"},
          {"a BETWEEN 1 AND 5", "\"z\" BETWEEN 1 AND 5"}, {"v COLLATE nocase = a", "v COLLATE nocase = \"z\""},
          {"CAST(a AS TIMESTAMP WITH TIME ZONE)", "CAST(\"z\" AS TIMESTAMP WITH TIME ZONE)"},
          {"s::STRUCT(a INTEGER)[] || a", "s::STRUCT(a INTEGER)[] || \"z\""}, {"a::DECIMAL(3, 1) + a", "\"z\"::DECIMAL(3, 1) + \"z\""},
          {"CAST(a AS s.e) > a", "CAST(\"z\" AS s.e) > \"z\""}})
        EXPECT_EQ(SqlTokens::Rename(pair.before, words).toStdString(), pair.after);
    for (const Pair& pair : {Pair{"CAST((a * 2) AS INTEGER)", "(a * 2)"}, {"CAST(CAST(a AS DATE) AS VARCHAR)", "CAST(a AS DATE)"},
                             {"CAST(a AS INTEGER) + 1", "CAST(a AS INTEGER) + 1"}, {"(CAST(a AS INTEGER))", "(CAST(a AS INTEGER))"},
                             {"CAST((a || ' AS ') AS \"DATE\")", "(a || ' AS ')"}, {"lower(a)", "lower(a)"}})
        EXPECT_EQ(SqlTokens::WithoutCast(pair.before).toStdString(), pair.after);
    EXPECT_EQ(SqlTokens::TypeOfCast("CAST('a AS b)' AS STRUCT(a \"m t\", b INTEGER)[])"), "STRUCT(a \"m t\", b INTEGER)[]");
    EXPECT_EQ(SqlTokens::TypeOfCast("CAST(a AS INTEGER) + 1"), "");
    const auto collations = SqlTokens::Collations(
        "CREATE TABLE t(a VARCHAR COLLATE nocase, \"B b\" VARCHAR COLLATE de.noaccent DEFAULT('COLLATE x'), c STRUCT(a VARCHAR), CHECK((a COLLATE x > '')));");
    EXPECT_EQ(collations.value("a"), "nocase");
    EXPECT_EQ(collations.value("b b"), "de.noaccent");
    EXPECT_EQ(collations.value("c"), "");
}

TEST(SqlTokensTest, DropsTheCatalogueOfItsOwnObjectsOnly)
{
    const SqlTokens::Objects objects{{"main", {"t", "m", "s q"}}, {"s d", {"u"}}};
    using enum SqlTokens::OtherBearer;
    struct Case { const char* before; const char* after; const char* besideColumn; const char* besideSchema; };
    for (const Case& each : {
             Case{"SELECT own.main.t.a FROM own.main.t", "SELECT main.t.a FROM main.t", nullptr, nullptr},
             {"SELECT own.t.a, x.own FROM own.t AS x", "SELECT own.t.a, x.own FROM main.t AS x", nullptr, "SELECT own.t.a, x.own FROM own.t AS x"},
             {"SELECT own.t.a FROM OWN.t", "SELECT main.t.a FROM main.t", nullptr, "SELECT own.t.a FROM OWN.t"},
             {"SELECT own.t.a FROM x", "SELECT main.t.a FROM x", "SELECT own.t.a FROM x", "SELECT own.t.a FROM x"},
             {"FROM \"own\".\"s d\".U, other.main.t", "FROM \"s d\".U, other.main.t", nullptr, nullptr},
             {"SELECT own.a, own.main.missing, 'own.main.t' FROM x", "SELECT own.a, own.main.missing, 'own.main.t' FROM x", nullptr, nullptr},
             {"own.m(nextval('own.main.\"s q\"'))", "main.m(nextval('main.\"s q\"'))", nullptr, "own.m(nextval('main.\"s q\"'))"},
             {"SELECT own.main.t FROM own.main.t own", "SELECT own.main.t FROM main.t own", nullptr, nullptr}}) {
        EXPECT_EQ(SqlTokens::WithoutCatalog(each.before, "own", objects, None).toStdString(), each.after);
        EXPECT_EQ(SqlTokens::WithoutCatalog(each.before, "own", objects, Column).toStdString(), each.besideColumn ? each.besideColumn : each.after);
        EXPECT_EQ(SqlTokens::WithoutCatalog(each.before, "own", objects, Schema).toStdString(), each.besideSchema ? each.besideSchema : each.after);
    }
}

TEST(SqlTokensTest, ValuesStandBareAgain)
{
    struct Pair { const char* before; const char* after; };
    for (const Pair& pair : {Pair{"SELECT * FROM (VALUES (1, 'a)'), (2, 'b')) AS valueslist", "VALUES (1, 'a)'), (2, 'b')"},
                             {"SELECT x FROM (SELECT * FROM (VALUES (1)) AS valueslist) AS t(x)", "SELECT x FROM (VALUES (1)) AS t(x)"},
                             {"SELECT * FROM (VALUES ((SELECT * FROM (VALUES (1)) AS valueslist))) AS valueslist;", "VALUES ((VALUES (1)));"},
                             {"SELECT * FROM (VALUES (1)) AS valueslist WHERE (col0 > 0)", "SELECT * FROM (VALUES (1)) AS valueslist WHERE (col0 > 0)"},
                             {"SELECT a FROM (VALUES (1)) AS valueslist(a)", "SELECT a FROM (VALUES (1)) AS valueslist(a)"}})
        EXPECT_EQ(SqlTokens::WithBareValues(pair.before).toStdString(), pair.after);
}

} // namespace
