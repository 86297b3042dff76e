// SPDX-License-Identifier: GPL-3.0-or-later
// Every kind of object of the tree, read from the real engine, with names that
// need care and with twins of one name in other catalogues.
#include "catalog/index_parser.h"
#include "catalog/table.h"
#include "hf/object_kinds.h"
#include "hf/schema_item_list.h"
#include "support/database_place.h"

#include <gtest/gtest.h>

namespace {

using Object = rc::Ptr<HF::I_LSchemaObject>;

class ObjectsTest : public support::DatabasePlace
{
protected:
    void Execute(const QString& text)
    {
        const auto results = Run(text);
        ASSERT_TRUE(HF::IsQuerySuccess(results)) << HF::GetQueryErrors(results).toStdString();
    }
    Object Schema(const QString& name = QStringLiteral("main"))
    {
        return Database().get_ChildObject(HF::TYPE_SCHEMA, name).Force();
    }
    Object Child(const Object& parent, int type, const QString& name)
    {
        const Object found = parent ? parent->get_ChildObject(type, name).Force() : Object();
        EXPECT_TRUE(found) << "no " << name.toStdString();
        return found;
    }
    Object Table(const QString& name) { return Child(Schema(), HF::TYPE_TABLE, name); }
    static QStringList Names(const Object& parent, int type)
    {
        return parent ? parent->get_ChildObjectsNames(type) : QStringList();
    }
    static std::string Text(const Object& object, int property)
    {
        return object ? object->GetString(property).toStdString() : "(no object)";
    }
};

QStringList List(std::initializer_list<const char*> names)
{
    QStringList list;
    for (const char* name : names)
        list.append(QString::fromUtf8(name));
    return list;
}

} // namespace

TEST_F(ObjectsTest, GeneratedColumnsAreToldFromTypedDefaults)
{
    Execute(QStringLiteral(
        "CREATE TABLE t(a INTEGER, d DATE DEFAULT DATE '2020-01-01', f DOUBLE DEFAULT 5::DOUBLE, b BOOLEAN DEFAULT true, "
        "b2 BOOLEAN DEFAULT CAST('t' AS BOOLEAN), u UUID DEFAULT uuid(), s VARCHAR DEFAULT ' x GENERATED ALWAYS AS ', "
        "g INTEGER GENERATED ALWAYS AS (a + 1), \"g \"\"x\" DATE GENERATED ALWAYS AS (d + 1), "
        "gd DECIMAL(10,2) GENERATED ALWAYS AS (f), gb BOOLEAN GENERATED ALWAYS AS (a > 1))"));
    EXPECT_EQ(Names(Table(QStringLiteral("t")), HF::TYPE_FIELD), List({"a", "d", "f", "b", "b2", "u", "s"}));
    EXPECT_EQ(Names(Table(QStringLiteral("t")), HF::TYPE_METHOD), List({"g", "g \"x", "gd", "gb"}));
    const auto table = rc::cast<HF::I_LTable>(Table(QStringLiteral("t")));
    EXPECT_EQ(table->get_FieldCount().Force(), 11);
    EXPECT_EQ(table->get_Field(7)->get_Name(), u"g");
    EXPECT_FALSE(table->get_Field(-1));
    EXPECT_FALSE(table->get_Field(11));

    // Nothing that a literal, a name or a type holds makes a stored column a generated one, nor the other way.
    Execute(QStringLiteral(
        "CREATE TABLE words(q INTEGER DEFAULT CAST(7 AS INTEGER), n VARCHAR DEFAULT 'q INTEGER GENERATED ALWAYS AS (1)', "
        "\"it's\" INTEGER DEFAULT CAST(8 AS INTEGER), \"k q INTEGER GENERATED ALWAYS AS \" INTEGER, "
        "CHECK (n <> ', \"it''s\" INTEGER GENERATED ALWAYS AS (1)'), e ENUM('x', 'it''s (', '\"') GENERATED ALWAYS AS ('x'), "
        "s STRUCT(\"a ' b\" INTEGER, c ENUM('\"')) GENERATED ALWAYS AS (NULL), \"g'(\" INTEGER GENERATED ALWAYS AS (q))"));
    Schema()->UpdateChildObjects(HF::TYPE_TABLE);
    EXPECT_EQ(Names(Table(QStringLiteral("words")), HF::TYPE_FIELD), List({"q", "n", "it's", "k q INTEGER GENERATED ALWAYS AS "}));
    EXPECT_EQ(Names(Table(QStringLiteral("words")), HF::TYPE_METHOD), List({"e", "s", "g'("}));
}

TEST_F(ObjectsTest, NamesThatNeedCare)
{
    const char* const names[] = {"a b",  "a.b",   "a\"b",    "it's",  "$NAME", "$PNAME", "x\ny",
                                 "select", "Größe", "表",       "1st",   "a/b",   "unique", "a$$b",  "\n"};
    for (const char* name : names) {
        const QString plain = QString::fromUtf8(name);
        const QString quoted = u'"' + QString(plain).replace(u'"', QLatin1String("\"\"")) + u'"';
        Execute(QStringLiteral("CREATE TABLE %1(%1 INTEGER PRIMARY KEY, other INTEGER UNIQUE CHECK (other > 0)); "
                               "CREATE INDEX %2 ON %1(%1); CREATE VIEW %3 AS SELECT %1 FROM %1; CREATE SEQUENCE %4; "
                               "CREATE MACRO %1(x) AS x + 1; CREATE TABLE %5(k INTEGER, %1 INTEGER REFERENCES %1(%1), UNIQUE(k, %1))")
                    .replace(QLatin1String("%5"), QString(quoted).insert(1, QLatin1String("c ")))
                    .replace(QLatin1String("%4"), QString(quoted).insert(1, QLatin1String("s ")))
                    .replace(QLatin1String("%3"), QString(quoted).insert(1, QLatin1String("v ")))
                    .replace(QLatin1String("%2"), QString(quoted).insert(1, QLatin1String("i ")))
                    .replace(QLatin1String("%1"), quoted));
    }
    Schema()->UpdateChildObjects(HF::TYPE_TABLE);
    for (const char* name : names) {
        const QString plain = QString::fromUtf8(name);
        SCOPED_TRACE(name);
        const Object table = Table(plain);
        EXPECT_EQ(Names(table, HF::TYPE_FIELD), QStringList({plain, QStringLiteral("other")}));
        EXPECT_EQ(table ? table->GetStringList(PROP_KEY_COLUMNS) : QStringList(), QStringList(plain));
        EXPECT_EQ(Names(table, HF::TYPE_INDEX), QStringList(QStringLiteral("i ") + plain));
        EXPECT_EQ(Names(table, HF::TYPE_UNIQUE), List({"unique_other"}));
        EXPECT_EQ(Names(table, HF::TYPE_CHECK), List({"check_other"}));
        EXPECT_EQ(Names(Child(Schema(), HF::TYPE_VIEW, QStringLiteral("v ") + plain), HF::TYPE_FIELD), QStringList(plain));
        Child(Schema(), HF::TYPE_SEQUENCE, QStringLiteral("s ") + plain);
        Child(Schema(), HF::TYPE_FUNCTION, plain);
        const Object child = Table(QStringLiteral("c ") + plain);
        const auto unique = Child(child, HF::TYPE_UNIQUE, QStringLiteral("unique_k_") + plain);
        EXPECT_EQ(unique ? unique->GetStringList(PROP_COLUMNS) : QStringList(), QStringList({QStringLiteral("k"), plain}));
        const RcList<HF::I_LSchemaObject> links = child->get_ChildObjects(HF::TYPE_LINK).Force();
        ASSERT_EQ(links.size(), 1);
        EXPECT_EQ(links[0]->GetStringList(PROP_LINK_COLUMNS), QStringList(plain));
        EXPECT_EQ(links[0]->GetStringList(PROP_KEY_COLUMNS), QStringList(plain));
        EXPECT_EQ(links[0]->GetString(PROP_LINK_PARENT_TABLE), plain);
        // What the object calls itself in a statement reads back as that object.
        EXPECT_EQ(Column(QStringLiteral("SELECT count(*) FROM ") + (table ? table->get_NameForQuery(true) : QString())),
                  u"0");
    }
}

TEST_F(ObjectsTest, TwinsInOtherCataloguesStayApart)
{
    Execute(QStringLiteral("CREATE TABLE t(id INTEGER PRIMARY KEY, a INTEGER UNIQUE); CREATE INDEX i ON t(a); "
                           "CREATE TABLE child(a INTEGER REFERENCES t(id)); CREATE TABLE flags(f INTEGER UNIQUE); "
                           "CREATE TEMP TABLE t(x VARCHAR PRIMARY KEY, y INTEGER CHECK (y > 1), z INTEGER UNIQUE); "
                           "ATTACH ':memory:' AS other; CREATE TABLE other.main.t(q INTEGER PRIMARY KEY); "
                           "CREATE TEMP TABLE child(id VARCHAR REFERENCES t(x), a INTEGER); "
                           "CREATE TEMP TABLE flags(f INTEGER)"));
    RcList<HF::I_LSchemaObject> twins;
    for (const auto& table : Schema()->get_ChildObjects(HF::TYPE_TABLE).Force())
        if (table->get_Name() == u"t")
            twins.append(table);
    ASSERT_EQ(twins.size(), 2);
    for (const auto& twin : twins) {
        const bool temporary = twin->GetBool(PROP_TEMPORARY);
        EXPECT_EQ(Names(twin, HF::TYPE_FIELD), temporary ? List({"x", "y", "z"}) : List({"id", "a"}));
        EXPECT_EQ(twin->GetStringList(PROP_KEY_COLUMNS), temporary ? List({"x"}) : List({"id"}));
        EXPECT_EQ(Names(twin, HF::TYPE_UNIQUE), temporary ? List({"unique_z"}) : List({"unique_a"}));
        EXPECT_EQ(Names(twin, HF::TYPE_CHECK), temporary ? List({"check_y"}) : QStringList());
        EXPECT_EQ(Names(twin, HF::TYPE_INDEX), temporary ? QStringList() : List({"i"}));
        EXPECT_EQ(twin->get_Icon().Force().contains(u"sign-clock"), temporary);
        const RcList<HF::I_LSchemaObject> links = twin->get_ChildObjects(HF::TYPE_LINK).Force();
        ASSERT_EQ(links.size(), 1) << temporary;
        EXPECT_EQ(links[0]->GetStringList(PROP_LINK_COLUMNS), temporary ? List({"id"}) : List({"a"}));
        const auto parent = rc::cast<HF::I_LLink>(links[0])->get_Table(1);
        EXPECT_EQ(parent.get(), rc::cast<HF::I_LTable>(twin).get());
    }
    for (const auto& twin : Schema()->get_ChildObjects(HF::TYPE_TABLE).Force()) {
        if (twin->get_Name() != u"flags")
            continue;
        const Object column = Child(twin, HF::TYPE_FIELD, QStringLiteral("f"));
        column->UpdatePropertyIfNeed(PROP_UNIQUE).Force();
        EXPECT_EQ(column->GetBool(PROP_UNIQUE), !twin->GetBool(PROP_TEMPORARY));
    }
}

TEST_F(ObjectsTest, TableCountsAndEstimates)
{
    Execute(QStringLiteral("CREATE TABLE few AS SELECT range r FROM range(1000); CREATE TABLE many AS SELECT range r FROM "
                           "range(1001); COMMENT ON TABLE few IS 'a ''few'''; CREATE TABLE pair(a INT, b INT, PRIMARY "
                           "KEY(b, a))"));
    const Object few = Table(QStringLiteral("few"));
    const Object many = Table(QStringLiteral("many"));
    EXPECT_EQ(Text(few, PROP_RECORD_COUNT), "");
    EXPECT_EQ(Text(many, PROP_RECORD_COUNT), "~1001");
    EXPECT_EQ(Text(few, PROP_COMMENT), "a 'few'");
    for (const Object& table : {few, many})
        EXPECT_TRUE(table->UpdatePropertyImpl(PROP_RECORD_COUNT).Force());
    EXPECT_EQ(Text(few, PROP_RECORD_COUNT), "1000");
    EXPECT_EQ(Text(many, PROP_RECORD_COUNT), "1001");
    EXPECT_EQ(Table(QStringLiteral("pair"))->GetStringList(PROP_KEY_COLUMNS), List({"b", "a"}));
}

TEST_F(ObjectsTest, Constraints)
{
    Execute(QStringLiteral("CREATE TABLE p(id INTEGER PRIMARY KEY, \"x y\" INTEGER UNIQUE, a INT, b INT, UNIQUE(a, b), "
                           "CHECK (a + b > 0), CHECK ((a) > 1)); "
                           "CREATE TABLE one(id INTEGER UNIQUE REFERENCES p(id)); "
                           "CREATE TABLE many(k INTEGER, ref INTEGER, FOREIGN KEY (ref) REFERENCES p(\"x y\")); "
                           "CREATE TABLE selfish(id INTEGER PRIMARY KEY, up INTEGER REFERENCES selfish(id))"));
    const Object parent = Table(QStringLiteral("p"));
    EXPECT_EQ(Names(parent, HF::TYPE_UNIQUE), List({"unique_x y", "unique_a_b"}));
    EXPECT_EQ(Child(parent, HF::TYPE_UNIQUE, QStringLiteral("unique_a_b"))->GetStringList(PROP_COLUMNS), List({"a", "b"}));
    EXPECT_EQ(Text(Child(parent, HF::TYPE_CHECK, QStringLiteral("check_a_b")), PROP_CHECK_EXPRESSION), "(a + b) > 0");
    // The links of a table are those of its schema that touch it.
    QStringList links = Names(parent, HF::TYPE_LINK);
    links.sort();
    EXPECT_EQ(links, List({"link_p_many", "link_p_one"}));
    EXPECT_EQ(Names(Table(QStringLiteral("many")), HF::TYPE_LINK), List({"link_p_many"}));
    const Object one = Child(Schema(), HF::TYPE_LINK, QStringLiteral("link_p_one"));
    const Object many = Child(Schema(), HF::TYPE_LINK, QStringLiteral("link_p_many"));
    for (const Object& link : {one, many})
        link->UpdatePropertyImpl(PROP_LINK_CARDINALITY).Force();
    EXPECT_EQ(Text(one, PROP_LINK_CARDINALITY), "ONE to ONE");
    EXPECT_EQ(Text(many, PROP_LINK_CARDINALITY), "ONE to MANY");
    EXPECT_EQ(many->GetStringList(PROP_LINK_COLUMNS), List({"ref"}));
    EXPECT_EQ(many->GetStringList(PROP_KEY_COLUMNS), List({"x y"}));
    const auto link = rc::cast<HF::I_LLink>(many);
    ASSERT_TRUE(link && link->get_Table(0) && link->get_Table(1));
    EXPECT_EQ(link->get_Table(0)->get_Name(), u"many");
    EXPECT_EQ(link->get_Table(1)->get_Name(), u"p");
    EXPECT_EQ(Text(Child(Schema(), HF::TYPE_LINK, QStringLiteral("link_selfish_selfish")), PROP_LINK_PARENT_TABLE), "selfish");
    // The comment of a constraint is the host's.
    EXPECT_TRUE(many->ApplyPropertyValue(PROP_COMMENT, QStringLiteral("mine")).Force());
    many->UpdatePropertyImpl(PROP_COMMENT).Force();
    EXPECT_EQ(Text(many, PROP_COMMENT), "mine");
}

TEST_F(ObjectsTest, IndexColumns)
{
    Execute(QStringLiteral("CREATE TABLE t(a INTEGER, \"b,c\" INTEGER, \"q\"\"q\" VARCHAR); CREATE UNIQUE INDEX one ON "
                           "t(\"b,c\", a); CREATE INDEX two ON t((a + 1), lower(\"q\"\"q\")); CREATE INDEX three ON t(\"q\"\"q\")"));
    const Object table = Table(QStringLiteral("t"));
    // Items stand as they are in the text, with the blank behind the comma.
    EXPECT_EQ(Child(table, HF::TYPE_INDEX, QStringLiteral("one"))->GetStringList(PROP_COLUMNS).join(u'|').remove(u' '),
              u"b,c|a");
    EXPECT_TRUE(Child(table, HF::TYPE_INDEX, QStringLiteral("one"))->GetBool(PROP_UNIQUE));
    EXPECT_EQ(Child(table, HF::TYPE_INDEX, QStringLiteral("two"))->GetStringList(PROP_COLUMNS).size(), 2);
    EXPECT_EQ(Child(table, HF::TYPE_INDEX, QStringLiteral("three"))->GetStringList(PROP_COLUMNS), List({"\"q\"\"q\""}));
}

TEST(IndexParser, ColumnsOfATextAsTheyStand)
{
    struct Case
    {
        const char* text;
        const char* columns; ///< by "|"; "!" for a text that does not fit
    };
    const Case cases[] = {
        {"CREATE UNIQUE INDEX i ON main.t (\"a\", b);", "\"a\"|b"},
        {"CREATE INDEX i ON t (f(a, b), c);", "f(a, b)|c"},
        {"CREATE INDEX i ON t (\"x, y\");", "\"x, y\""},
        {"create index \"i 2\" on \"s s\".\"t\"\"t\"(a)", "a"},
        {"CREATE INDEX i ON t ([1, 2], {'a': (1)}, '),(')", "[1, 2]|{'a': (1)}|'),('"},
        {"CREATE INDEX i ON t (a, b", "a"},
        {"CREATE INDEX i ON t (a -- ),\n, b)", "a -- ),\n|b"},
        {"CREATE TABLE i ON t (a)", "!"},
        {"CREATE INDEX", "!"},
        {"", "!"},
    };
    for (const Case& one : cases) {
        orbDuckDB_IndexParser parser;
        const bool parsed = parser.Parse(QString::fromUtf8(one.text));
        const QString columns =
            parsed ? parser.get_List(QStringLiteral("COLUMNS")).join(u'|') : QStringLiteral("!");
        EXPECT_EQ(columns.toStdString(), one.columns) << one.text;
    }
}

TEST_F(ObjectsTest, FunctionsSequencesAndViews)
{
    Execute(QStringLiteral("CREATE MACRO m(a, b) AS a + b; CREATE MACRO tm(n) AS TABLE SELECT n AS x; "
                           "CREATE TEMP MACRO tmp() AS 1; CREATE SEQUENCE s START 5 INCREMENT 2 MAXVALUE 9 CYCLE; "
                           "SELECT nextval('s'); CREATE VIEW v AS SELECT 1 AS one, 'x' AS two; COMMENT ON VIEW v IS 'c'; "
                           "CREATE TABLE gone(a INTEGER); CREATE VIEW broken AS SELECT * FROM gone; DROP TABLE gone"));
    EXPECT_EQ(Text(Child(Schema(), HF::TYPE_FUNCTION, QStringLiteral("m")), PROP_DEFINITION),
              "CREATE OR REPLACE MACRO main.m( a, b ) AS (a + b)");
    EXPECT_EQ(Text(Child(Schema(), HF::TYPE_FUNCTION, QStringLiteral("tm")), PROP_DEFINITION),
              "CREATE OR REPLACE MACRO main.tm( n ) AS TABLE SELECT n AS x");
    EXPECT_EQ(Text(Child(Schema(), HF::TYPE_FUNCTION, QStringLiteral("tmp")), PROP_DEFINITION).substr(0, 27),
              "CREATE OR REPLACE TEMP MACR");
    const Object sequence = Child(Schema(), HF::TYPE_SEQUENCE, QStringLiteral("s"));
    EXPECT_EQ(sequence->GetLong(PROP_SEQ_START), 5);
    EXPECT_EQ(sequence->GetLong(PROP_SEQ_INCREMENT), 2);
    EXPECT_EQ(sequence->GetLong(PROP_SEQ_MAX), 9);
    EXPECT_TRUE(sequence->GetBool(PROP_SEQ_CYCLE));
    const Object view = Child(Schema(), HF::TYPE_VIEW, QStringLiteral("v"));
    EXPECT_EQ(Names(view, HF::TYPE_FIELD), List({"one", "two"}));
    EXPECT_EQ(Text(view, PROP_COMMENT), "c");
    // A view over a table that is gone still stands, and does not spoil the list.
    Child(Schema(), HF::TYPE_VIEW, QStringLiteral("broken"));
}

TEST_F(ObjectsTest, SystemSchemasHoldTheirViews)
{
    const Object catalog = Schema(QStringLiteral("pg_catalog"));
    ASSERT_TRUE(catalog);
    EXPECT_TRUE(catalog->get_IsSystem());
    EXPECT_TRUE(Names(catalog, HF::TYPE_VIEW).contains(QStringLiteral("pg_tables")));
    EXPECT_FALSE(Names(Child(catalog, HF::TYPE_VIEW, QStringLiteral("pg_tables")), HF::TYPE_FIELD).isEmpty());
    EXPECT_TRUE(Names(Schema(QStringLiteral("information_schema")), HF::TYPE_VIEW).contains(QStringLiteral("tables")));
}

TEST_F(ObjectsTest, AListWhoseQueryFailsKeepsTheRestWhole)
{
    Execute(QStringLiteral("CREATE TABLE t(a INTEGER)"));
    const Object table = Table(QStringLiteral("t"));
    const auto fields = table->get_ChildList(HF::TYPE_FIELD);
    ASSERT_TRUE(fields && fields->BuildList());
    ASSERT_EQ(fields->get_Count(), 1);
    Database().MakeSqlQuery(); // the session is there
    Run(QStringLiteral("BEGIN; SELECT error('now') FROM range(1)"), HF::QUERY_SILENT_ERROR);
    Run(QStringLiteral("BEGIN"), HF::QUERY_SILENT_ERROR);
    Run(QStringLiteral("SELECT error('again')"), HF::QUERY_SILENT_ERROR); // the transaction is aborted now
    EXPECT_FALSE(fields->ReloadObjects());
    EXPECT_EQ(fields->get_Count(), 1); // what was there stays
    Run(QStringLiteral("ROLLBACK"));
    EXPECT_TRUE(fields->ReloadObjects());
    EXPECT_EQ(fields->get_Count(), 1);
}
