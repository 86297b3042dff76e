// SPDX-License-Identifier: GPL-3.0-or-later
// Edits that random ones do not reach: warnings, refusals, the other kinds of object, changes from the tree.
#include "model_place.h"

#include "hf/action.h"
#include "hf/design.h"

#include <QTemporaryDir>

namespace {

using Edited = rc::Ref<HF::LModelObject>;

class Designs : public support::ModelPlace
{
protected:
    void Begin()
    {
        design.reset();
        Database()->UpdateChildObjects(HF::TYPE_SCHEMA);
        design = rc::make<HF::LDesign>(Database());
    }
    Edited Get(int type, const char* name, int childType = 0, const char* child = "")
    {
        const auto schema = (*design)->get_Root()->get_Model(HF::TYPE_SCHEMA, "main");
        const auto object = schema->get_Model(type, name);
        const auto below = childType && object ? object->get_Model(childType, child) : object;
        if (!below)
            throw std::runtime_error(name);
        return Edited(below);
    }
    Edited Main() { return Edited((*design)->get_Root()->get_Model(HF::TYPE_SCHEMA, "main")); }
    std::string Apply()
    {
        const HF::LDesignReport report = (*design)->Apply();
        return (report.success ? "" : "refused: ") + report.error.toStdString();
    }

    std::optional<rc::Ref<HF::LDesign>> design;
};

TEST_F(Designs, TellWhatWouldBeLost)
{
    MustRun("CREATE SEQUENCE sq; CREATE TABLE t(a INTEGER DEFAULT nextval('sq'), b INTEGER); INSERT INTO t(b) VALUES (1), (2); CREATE TABLE other(a INTEGER)");
    Begin();
    (*design)->Drop(Get(HF::TYPE_SEQUENCE, "sq"));
    const auto warnings = (*design)->get_Plan().warnings;
    ASSERT_EQ(warnings.size(), 1);
    EXPECT_TRUE(warnings[0].contains("main.t") && !warnings[0].contains("other")) << warnings[0].toStdString();
    (*design)->Revert();
    EXPECT_FALSE((*design)->HasChanges());
    (*design)->Drop(Get(HF::TYPE_TABLE, "t"));
    EXPECT_TRUE((*design)->get_Plan().warnings.join("|").endsWith(": 2"));
    (*design)->Revert();
    (*design)->Drop(Get(HF::TYPE_TABLE, "t", HF::TYPE_FIELD, "b"));
    EXPECT_TRUE((*design)->get_Plan().warnings.join("|").contains("lost: b"));
}

// A table that is made anew without the constraints that nobody could read would have lost them.
TEST_F(Designs, RefuseWhatTheyCannotReadWhole)
{
    const QTemporaryDir folder;
    const QString attach = QStringLiteral("ATTACH '%1' AS x; ").arg(folder.filePath("x.duckdb"));
    MustRun(attach + "USE x; CREATE MACRO m(a) AS a + 1; CREATE TABLE t(i INTEGER CHECK (m(i) > 0), j INTEGER, UNIQUE (i)); USE memory; DETACH x");
    MustRun(attach + "USE x"); // opened again, the engine knows no dependencies
    Begin();
    const Edited table = Get(HF::TYPE_TABLE, "t");
    MustRun("DROP MACRO m");
    (*design)->Drop(Get(HF::TYPE_TABLE, "t", HF::TYPE_FIELD, "j"));
    EXPECT_TRUE(Apply().starts_with("refused: ")) << Rows("SELECT sql FROM duckdb_tables()").toStdString();
    EXPECT_TRUE((*design)->get_Plan().problems.join("|").contains("\"check\" of \"t\"")) << (*design)->get_Plan().problems.join("|").toStdString();
    EXPECT_TRUE(Rows("SELECT sql FROM duckdb_tables() WHERE table_name = 't'").contains("UNIQUE"));
    errors.clear();
    design.reset();
    MustRun("USE memory");
}

TEST_F(Designs, RefuseBeforeAnythingRuns)
{
    MustRun("CREATE TABLE p(id INTEGER PRIMARY KEY, x INTEGER); CREATE TABLE c(a INTEGER REFERENCES p(id), b INTEGER, CHECK(b > 0))");
    const auto problem = [&](const std::function<void()>& edit) {
        Begin();
        edit();
        const QStringList problems = (*design)->get_Plan().problems;
        EXPECT_TRUE(Apply().starts_with("refused: "));
        return problems.join("|").toStdString();
    };
    EXPECT_NE(problem([&] { (*design)->Drop(Get(HF::TYPE_TABLE, "p")); }).find("referenced by \"c\""), std::string::npos);
    EXPECT_NE(problem([&] { (*design)->Drop(Get(HF::TYPE_TABLE, "c", HF::TYPE_FIELD, "b")); }).find("A check"), std::string::npos);
    EXPECT_NE(problem([&] { (*design)->Drop(Get(HF::TYPE_TABLE, "p", HF::TYPE_FIELD, "id")); }).find("primary key"), std::string::npos);
    EXPECT_NE(problem([&] { (*design)->Change(Get(HF::TYPE_TABLE, "p", HF::TYPE_FIELD, "x"), PROP_NAME, "ID"); }).find("two columns"), std::string::npos);
    EXPECT_NE(problem([&] {
                  (*design)->Drop(Get(HF::TYPE_TABLE, "p", HF::TYPE_FIELD, "x"));
                  MustRun("ALTER TABLE c ADD COLUMN z INTEGER; CREATE TABLE dropme(a INTEGER)");
                  (*design)->Change(Get(HF::TYPE_TABLE, "c"), PROP_COMMENT, "x");
                  MustRun("ALTER TABLE c ADD COLUMN zz INTEGER");
              }).find("changed meanwhile"),
              std::string::npos);
    EXPECT_NE(problem([&] {
                  (*design)->Change(Get(HF::TYPE_TABLE, "p"), PROP_COMMENT, "x");
                  MustRun("BEGIN");
              }).find("transaction is open"),
              std::string::npos);
    MustRun("ROLLBACK"); // still the user's
    EXPECT_EQ(Rows("SELECT comment FROM duckdb_tables() WHERE table_name = 'p'"), "~");
}

TEST_F(Designs, TablesThatReferToThemselvesKeepTheirRows)
{
    const QString trees[] = {
        "CREATE TABLE t(id INTEGER PRIMARY KEY, up INTEGER REFERENCES t(id), x INTEGER)",
        "CREATE TABLE t(id INTEGER UNIQUE, up INTEGER REFERENCES t(id), x INTEGER)",
        "CREATE TABLE t(id INTEGER PRIMARY KEY, up INTEGER REFERENCES t(id), \"rowid\" INTEGER, x INTEGER, u INTEGER UNIQUE)",
        "CREATE TABLE t(ID INTEGER PRIMARY KEY, UP INTEGER, \"level\" INTEGER, next INTEGER, \"child\" INTEGER, \"row\" INTEGER, x INTEGER, "
        "FOREIGN KEY (up) REFERENCES t(id))",
        "CREATE TABLE p(k INTEGER PRIMARY KEY); INSERT INTO p VALUES (7), (-1); CREATE TABLE t(id INTEGER, up INTEGER, x INTEGER REFERENCES p(k), "
        "other INTEGER, PRIMARY KEY(id), FOREIGN KEY(up) REFERENCES t(id), FOREIGN KEY(other) REFERENCES t(id))",
    };
    for (const QString& tree : trees) {
        SCOPED_TRACE(tree.toStdString());
        MustRun(tree);
        // A chain, as deep as the table is long, beside rows that stand alone.
        for (int id = 1; id <= 40; ++id)
            MustRun(QString("INSERT INTO t(id, up, x) VALUES (%1, %2, 7)").arg(id).arg(id % 10 == 1 ? QString("NULL") : QString::number(id - 1)));
        if (tree.contains("other"))
            MustRun("UPDATE t SET other = 12 WHERE id = 40");
        const QString rows = Rows("SELECT * FROM t ORDER BY id");
        Begin();
        const Edited check{(*design)->Create(Get(HF::TYPE_TABLE, "t"), HF::TYPE_CHECK, "")};
        (*design)->Change(check, PROP_CHECK_EXPRESSION, "x > 0");
        (*design)->Change(Get(HF::TYPE_TABLE, "t", HF::TYPE_FIELD, "up"), PROP_NAME, "above");
        EXPECT_EQ(Apply(), "");
        EXPECT_EQ(Rows("SELECT * FROM t ORDER BY id"), rows);
        EXPECT_TRUE(Run("INSERT INTO t(id, above, x) VALUES (50, 77, 7)").contains("does not exist"));
        EXPECT_TRUE(Run("INSERT INTO t(id, above, x) VALUES (50, 1, -1)").contains("CHECK"));
        EXPECT_TRUE(Run("DELETE FROM t WHERE id = 5").contains("still referenced"));
        MustRun("DELETE FROM t WHERE id = 40");
        MustRun("DROP TABLE t");
    }
}

TEST_F(Designs, ALargeTreeIsCopiedWhateverTheSessionSaysAboutOrder)
{
    MustRun("CREATE TABLE t(id INTEGER PRIMARY KEY, up INTEGER REFERENCES t(id)); INSERT INTO t SELECT i, NULL FROM range(1, 100) r(i); INSERT INTO t SELECT "
            "i, i % 99 + 1 FROM range(100, 30000) r(i); INSERT INTO t SELECT i, i - 25000 FROM range(30000, 60000) r(i); SET preserve_insertion_order = false");
    const QString sums = "SELECT count(*), sum(id), sum(up) FROM t";
    const QString before = Rows(sums);
    Begin();
    const Edited check{(*design)->Create(Get(HF::TYPE_TABLE, "t"), HF::TYPE_CHECK, "")};
    (*design)->Change(check, PROP_CHECK_EXPRESSION, "id > 0");
    EXPECT_EQ(Apply(), "");
    EXPECT_EQ(Rows(sums), before);
    EXPECT_EQ(Rows("SELECT current_setting('preserve_insertion_order')"), "false");
}

TEST_F(Designs, ATableWithTheNameOfTheHelperStays)
{
    MustRun("CREATE TABLE __orb_temp_table(k INTEGER PRIMARY KEY); INSERT INTO __orb_temp_table VALUES (5); CREATE TABLE \"__ORB_temp_table_2\"(z INTEGER); INSERT INTO "
            "\"__ORB_temp_table_2\" VALUES (6); CREATE TABLE p(id INTEGER PRIMARY KEY); INSERT INTO p VALUES (1); CREATE TABLE c(a INTEGER REFERENCES p(id), b "
            "INTEGER); INSERT INTO c VALUES (1, 2); CREATE TABLE e(r INTEGER REFERENCES p(id)); INSERT INTO e VALUES (1)");
    Begin();
    for (const auto& [table, check] : {std::pair("p", "id > 0"), {"c", "b > 0"}, {"__orb_temp_table", "k > 0"}})
        (*design)->Change(Edited((*design)->Create(Get(HF::TYPE_TABLE, table), HF::TYPE_CHECK, "")), PROP_CHECK_EXPRESSION, check);
    EXPECT_EQ(Apply(), "");
    const auto all = [&] { return Rows("SELECT (FROM __orb_temp_table), (FROM __orb_temp_table_2), (FROM p), (SELECT b FROM c), (FROM e), (SELECT count(*) FROM duckdb_tables())"); };
    EXPECT_EQ(all(), "5|6|1|2|1|5");
    EXPECT_EQ(Rows("SELECT count(*) FROM duckdb_constraints() WHERE constraint_type = 'CHECK'"), "3");
    EXPECT_TRUE(Find(HF::TYPE_TABLE, "c", HF::TYPE_FIELD, "b")->ProcessProperty(PROP_UNIQUE, true).Force());
    EXPECT_EQ(all(), "5|6|1|2|1|5");
    EXPECT_EQ(Rows("SELECT table_name FROM duckdb_constraints() WHERE constraint_type = 'UNIQUE'"), "c");
}

TEST_F(Designs, WhatATemporaryObjectHidesIsLeftAlone)
{
    MustRun("CREATE TABLE t(a INTEGER PRIMARY KEY); INSERT INTO t VALUES (1); CREATE TABLE c(r INTEGER REFERENCES t(a)); CREATE VIEW v AS SELECT 1 AS x; CREATE SEQUENCE sq; CREATE SCHEMA s; "
            "CREATE TABLE s.t(a INTEGER); CREATE TABLE free(a INTEGER); CREATE TEMP TABLE T(b INTEGER); INSERT INTO temp.t VALUES (2); CREATE TEMP VIEW v AS SELECT 2 AS y; CREATE TEMP SEQUENCE sq");
    const auto lasting = [&](int type, const char* name) {
        for (const auto& one : Main()->get_Models(type))
            if (one->get_Name() == name && !one->GetBool(PROP_TEMPORARY))
                return one;
        throw std::runtime_error(name);
    };
    const auto problem = [&](const std::function<void()>& edit) {
        Begin();
        edit();
        const std::string said = Apply();
        EXPECT_TRUE(said.empty() || said.find("temporary object hides") != std::string::npos) << said;
        return !said.empty();
    };
    EXPECT_TRUE(problem([&] { (*design)->Drop(lasting(HF::TYPE_VIEW, "v")); }));
    EXPECT_TRUE(problem([&] { (*design)->Drop(lasting(HF::TYPE_SEQUENCE, "sq")); }));
    EXPECT_TRUE(problem([&] { (*design)->Create(lasting(HF::TYPE_TABLE, "t"), HF::TYPE_FIELD, "n")->ProcessProperty(PROP_TYPE_NAME, "INTEGER").Force(); }));
    // It is part of the way of the table that refers to it.
    EXPECT_TRUE(problem([&] {
        (*design)->Change(Edited((*design)->Create(lasting(HF::TYPE_TABLE, "c"), HF::TYPE_CHECK, "")), PROP_CHECK_EXPRESSION, "r > 0");
    }));
    EXPECT_TRUE(problem([&] { (*design)->Change(lasting(HF::TYPE_TABLE, "free"), PROP_NAME, "t"); }));
    EXPECT_FALSE(problem([&] { (*design)->Change(lasting(HF::TYPE_TABLE, "free"), PROP_COMMENT, "x"); }));
    EXPECT_FALSE(problem([&] {
        const Edited schema((*design)->get_Root()->get_Model(HF::TYPE_SCHEMA, "s"));
        (*design)->Change(Edited(schema->get_Model(HF::TYPE_TABLE, "t")), PROP_KEY_COLUMNS, QStringList{"a"});
    }));
    EXPECT_EQ(Rows("SELECT (SELECT count(*) FROM duckdb_tables()), (FROM temp.t), (SELECT y FROM v), (SELECT count(*) FROM duckdb_sequences())"), "5|2|2|2");
    EXPECT_EQ(Rows("SELECT schema_name FROM duckdb_constraints() WHERE constraint_type = 'PRIMARY KEY' ORDER BY 1"), "main\ns");
}

// The engine prints such a type as it does not read it again.
TEST_F(Designs, ColumnsOfATypeWithoutValuesStay)
{
    MustRun("CREATE TYPE valueless AS ENUM (SELECT '' WHERE false)");
    for (const char* kind : {"", "TEMP "}) {
        MustRun(QString("CREATE %1TABLE t(a INTEGER CHECK (a > 0), b valueless, c STRUCT(x valueless, \"ENUM()\" INTEGER), d INTEGER); "
                        "INSERT INTO t VALUES (1, NULL, {'x': NULL, 'ENUM()': 2}, 3)").arg(kind));
        const QString types = Rows("SELECT typeof(b), typeof(c), a, c FROM t");
        Begin();
        (*design)->Change(Edited((*design)->Create(Get(HF::TYPE_TABLE, "t"), HF::TYPE_CHECK, "")), PROP_CHECK_EXPRESSION, "d > 0");
        EXPECT_EQ(Apply(), "") << kind;
        EXPECT_EQ(Rows("SELECT typeof(b), typeof(c), a, c FROM t"), types);
        EXPECT_TRUE(Rows("SELECT sql FROM duckdb_tables()").contains("(d > 0)")) << kind;
        MustRun("DROP TABLE t");
    }
}

TEST_F(Designs, OtherKindsOfObject)
{
    MustRun("CREATE VIEW v AS SELECT 1 AS a; COMMENT ON VIEW v IS 'cv'; CREATE MACRO f(x) AS x + 1; COMMENT ON MACRO f IS 'cf'; CREATE SEQUENCE sq; COMMENT ON SEQUENCE sq IS 'cs'");
    Begin();
    (*design)->Change(Get(HF::TYPE_VIEW, "v"), PROP_NAME, "w");
    (*design)->Change(Get(HF::TYPE_FUNCTION, "f"), PROP_NAME, "g");
    (*design)->Change(Get(HF::TYPE_SEQUENCE, "sq"), PROP_SEQ_INCREMENT, 3);
    (*design)->Change(Get(HF::TYPE_SEQUENCE, "sq"), PROP_SEQ_START, 10);
    const Edited view{(*design)->Create(Main(), HF::TYPE_VIEW, "new view")};
    EXPECT_EQ(view->GetString(PROP_DEFINITION), "CREATE VIEW \"new view\" AS SELECT 1");
    EXPECT_EQ((*design)->Change(view, PROP_DEFINITION, "CREATE VIEW \"new view\" AS SELECT 42 AS b"), "");
    EXPECT_NE((*design)->Change(view, PROP_DEFINITION, "CREATE VIEW elsewhere AS SELECT 1"), "");
    const HF::LDesignPlan plan = (*design)->get_Plan();
    EXPECT_EQ(plan.statements.filter("SEQUENCE main.sq").size(), 2); // one for all its options, and the comment
    EXPECT_EQ(plan.statements.filter("VIEW main.v").size(), 1);
    EXPECT_EQ(Apply(), "");
    EXPECT_EQ(Rows("SELECT view_name, comment FROM duckdb_views() WHERE NOT internal ORDER BY 1"), "new view|~\nw|cv");
    EXPECT_EQ(Rows("SELECT main.g(1), (SELECT comment FROM duckdb_functions() WHERE function_name = 'g'), (SELECT b FROM \"new view\"), nextval('sq'), nextval('sq')"), "2|cf|42|10|13");
    EXPECT_EQ(Rows("SELECT comment FROM duckdb_sequences()"), "cs");
    EXPECT_EQ(Rows("SELECT count(*) FROM duckdb_functions() WHERE function_name = 'f' AND NOT internal"), "0");
}

TEST_F(Designs, ARenamedMacroKeepsItsDefaultsAndForms)
{
    MustRun("CREATE MACRO d(a, b := 'x', c := [1, 2]) AS b || a || c[1]; CREATE MACRO o(a) AS a, (a, b) AS a + b; "
            "CREATE MACRO t(a := 3) AS TABLE SELECT a AS v");
    Begin();
    for (const char* name : {"d", "o", "t"})
        (*design)->Change(Get(HF::TYPE_FUNCTION, name), PROP_NAME, QString::fromLatin1(name) + u'2');
    EXPECT_EQ((*design)->get_Plan().warnings.size(), 0);
    EXPECT_EQ(Apply(), "");
    EXPECT_EQ(Rows("SELECT d2('q'), o2(1), o2(1, 2), (SELECT v FROM t2())"), "xq1|1|3|3");
    EXPECT_EQ(Rows("SELECT count(*) FROM duckdb_functions() WHERE NOT internal AND function_name IN ('d', 'o', 't')"), "0");
}

TEST_F(Designs, WhatGoesElsewhereIsTold)
{
    MustRun("CREATE SCHEMA s; CREATE SEQUENCE s.q; CREATE TABLE elsewhere(a INTEGER DEFAULT nextval('s.q'));"
            "CREATE TABLE lonely(a INTEGER); INSERT INTO lonely VALUES (1), (2);"
            "CREATE TABLE wide(d DECIMAL(10,3), st STRUCT(x INTEGER, y VARCHAR))");
    Begin();
    (*design)->Drop(Edited((*design)->get_Root()->get_Model(HF::TYPE_SCHEMA, "s")));
    (*design)->Drop(Get(HF::TYPE_TABLE, "lonely", HF::TYPE_FIELD, "a"));
    (*design)->Create(Get(HF::TYPE_TABLE, "lonely"), HF::TYPE_FIELD, "b");
    (*design)->Change(Get(HF::TYPE_TABLE, "wide", HF::TYPE_FIELD, "d"), PROP_SCALE, 0);
    (*design)->Change(Get(HF::TYPE_TABLE, "wide", HF::TYPE_FIELD, "st"), PROP_TYPE_ARGUMENTS, "x INTEGER");
    const QString warnings = (*design)->get_Plan().warnings.join(u'\n');
    for (const char* said : {"drops the tables that use it, with their rows: main.elsewhere", "No column of \"lonely\" stays",
                             "are converted to another type: d, st"})
        EXPECT_TRUE(warnings.contains(QLatin1String(said))) << said << "\n" << warnings.toStdString();
    EXPECT_NE((*design)->Change(Get(HF::TYPE_TABLE, "wide"), 9999, "x"), "");
}

TEST_F(Designs, FlagsOfAColumnComeAndGoWithConstraintAndIndex)
{
    MustRun("CREATE TABLE t(a INTEGER, b INTEGER); INSERT INTO t VALUES (1, 2)");
    Begin();
    (*design)->Change(Get(HF::TYPE_TABLE, "t", HF::TYPE_FIELD, "a"), PROP_UNIQUE, true);
    (*design)->Change(Get(HF::TYPE_TABLE, "t", HF::TYPE_FIELD, "b"), PROP_INDEXED, true);
    EXPECT_EQ(Apply(), "");
    EXPECT_EQ(Rows("SELECT constraint_column_names FROM duckdb_constraints() WHERE constraint_type = 'UNIQUE'"), "[a]");
    EXPECT_EQ(Rows("SELECT index_name FROM duckdb_indexes()"), "t_b_idx");
    // From the tree, each for itself.
    const auto field = [&](const char* name) { return Find(HF::TYPE_TABLE, "t", HF::TYPE_FIELD, name); };
    EXPECT_TRUE(field("a")->ProcessProperty(PROP_UNIQUE, false).Force());
    EXPECT_EQ(Rows("SELECT count(*) FROM duckdb_constraints() WHERE constraint_type = 'UNIQUE'"), "0");
    EXPECT_TRUE(field("b")->ProcessProperty(PROP_UNIQUE, true).Force());
    EXPECT_EQ(Rows("SELECT constraint_column_names FROM duckdb_constraints() WHERE constraint_type = 'UNIQUE'"), "[b]");
    EXPECT_EQ(Rows("SELECT * FROM t"), "1|2");
    EXPECT_EQ(Rows("SELECT index_name FROM duckdb_indexes()"), "t_b_idx");
    EXPECT_TRUE(errors.isEmpty()) << errors.join("\n").toStdString();
    // A transaction of the user's is neither joined nor broken.
    for (const auto& change : std::vector<std::function<bool()>>{
             [&] { return field("a")->ProcessProperty(PROP_UNIQUE, true).Force(); },
             [&] { return Find(HF::TYPE_TABLE, "t", HF::TYPE_INDEX, "t_b_idx")->ProcessProperty(PROP_COLUMNS, QStringList{"a"}).Force(); }}) {
        MustRun("BEGIN; CREATE TABLE mine(a INTEGER)");
        EXPECT_FALSE(change());
        EXPECT_TRUE(errors.join("|").contains("transaction is open")) << errors.join("|").toStdString();
        errors.clear();
        MustRun("COMMIT");
        MustRun("DROP TABLE mine");
    }
    // A rebuild that fails says so under the table's own name, and leaves all as it was.
    MustRun("INSERT INTO t VALUES (1, 3)");
    field("a")->ProcessProperty(PROP_UNIQUE, true).Force();
    EXPECT_EQ(errors.size(), 1);
    EXPECT_EQ(Rows("SELECT * FROM t ORDER BY b"), "1|2\n1|3");
    EXPECT_EQ(Rows("SELECT count(*) FROM duckdb_tables()"), "1");
}

TEST_F(Designs, AnIndexBecomesUniqueOnceTheRowsAllowIt)
{
    MustRun("CREATE TABLE t(a INTEGER, b INTEGER); INSERT INTO t VALUES (1, 1), (1, 2); CREATE INDEX ix ON t(a)");
    const auto apply = [&] {
        Begin();
        (*design)->Change(Get(HF::TYPE_TABLE, "t", HF::TYPE_INDEX, "ix"), PROP_UNIQUE, true);
        return Apply();
    };
    EXPECT_NE(apply().find("duplicate"), std::string::npos);
    MustRun("DELETE FROM t WHERE b = 2");
    // The attempt that failed has left nothing behind that stands against the next one.
    EXPECT_EQ(apply(), "");
    EXPECT_EQ(Rows("SELECT index_name, is_unique, (SELECT count(*) FROM t) FROM duckdb_indexes()"), "ix|true|1");
}

TEST_F(Designs, ASelectionOfColumnsIsDeletedAtOnce)
{
    support::Prompter prompter;
    MustRun("CREATE TABLE t(a INTEGER PRIMARY KEY, b INTEGER, c INTEGER, \"d d\" INTEGER, g INTEGER AS (a + 1)); INSERT INTO t(a, b) VALUES (1, 2); CREATE INDEX ix ON t(b); CREATE TABLE "
            "child(x INTEGER REFERENCES t(a)); INSERT INTO child VALUES (1)");
    const auto remove = [&](const QStringList& names) {
        RcList<HF::LTreeItem> items;
        const auto table = Find(HF::TYPE_TABLE, "t");
        for (const QString& name : names)
            items.append(rc::Ref<HF::LTreeItem>(rc::Ptr<HF::LTreeItem>(table->get_ChildObject(HF::TYPE_FIELD, name).Force())));
        prompter.asked.clear();
        items.first()->get_Action(QString::fromLatin1(HF::DO_DROP_SELF))->Run(items);
    };
    const auto columns = [&] { return Rows("SELECT list(column_name ORDER BY column_index) FROM duckdb_columns() WHERE table_name = 't'"); };
    prompter.yes = false;
    remove({"c", "d d"});
    EXPECT_EQ(prompter.asked, QStringList{"Do you really want to delete 2 fields?"});
    EXPECT_EQ(columns(), "[a, b, c, d d, g]");
    prompter.yes = true;
    remove({"c", "d d"});
    EXPECT_EQ(columns(), "[a, b, g]");
    EXPECT_EQ(Rows("SELECT a, b, g, (SELECT count(*) FROM duckdb_indexes()), (FROM child) FROM t"), "1|2|2|1|1");
    MustRun("CREATE TABLE all_(p INTEGER, q INTEGER)");
    // The index and the referencing table still need these.
    remove({"a", "b"});
    EXPECT_EQ(columns(), "[a, b, g]");
    EXPECT_FALSE(errors.isEmpty());
    const auto whole = Find(HF::TYPE_TABLE, "all_");
    RcList<HF::LTreeItem> all;
    for (const auto& field : whole->get_ChildObjects(HF::TYPE_FIELD).Force())
        all.append(rc::Ref<HF::LTreeItem>(field));
    all.first()->get_Action(QString::fromLatin1(HF::DO_DROP_SELF))->Run(all);
    EXPECT_EQ(prompter.told, QStringList{"Cannot delete all fields from the table!"});
}

} // namespace
