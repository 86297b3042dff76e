// SPDX-License-Identifier: GPL-3.0-or-later
// The catalogue as "orbis tree" prints it.
#include "e2e/orbis_process.h"

#include <QJsonDocument>
#include <QProcessEnvironment>

namespace {

/// The child of a node by list and name; an empty object without one.
QJsonObject Child(const QJsonObject& node, int type, const QString& name)
{
    for (const QJsonValue& child : node["children"][QString::number(type)].toArray())
        if (child["name"].toString() == name)
            return child.toObject();
    return {};
}

/// Goes down by (type, name); a failure of the test where there is nothing.
QJsonObject At(QJsonObject node, std::initializer_list<std::pair<int, const char*>> path)
{
    for (const auto& [type, name] : path) {
        node = Child(node, type, QString::fromUtf8(name));
        EXPECT_FALSE(node.isEmpty()) << "no " << name;
    }
    return node;
}

QStringList Names(const QJsonObject& node, int type)
{
    QStringList names;
    for (const QJsonValue& child : node["children"][QString::number(type)].toArray())
        names.append(child["name"].toString());
    return names;
}

/// A property as compact JSON, "-" where the node has none or knows no value.
std::string Property(const QJsonObject& node, int id)
{
    const QJsonObject properties = node["properties"].toObject();
    const auto found = properties.find(QString::number(id));
    if (found == properties.end() || found->isNull())
        return "-";
    const QByteArray list = QJsonDocument(QJsonArray{*found}).toJson(QJsonDocument::Compact);
    return list.mid(1, list.size() - 2).toStdString();
}

std::string Properties(const QJsonObject& node, std::initializer_list<int> ids)
{
    std::string texts;
    for (const int id : ids)
        texts += (texts.empty() ? "" : " ") + Property(node, id);
    return texts;
}

enum Type {
    Check = 4,
    Field = 17,
    Function = 18,
    Index = 19,
    Link = 22,
    Method = 23,
    Schema = 35,
    Sequence = 37,
    Table = 40,
    Unique = 44,
    View = 46,
};

/// A name as SQL and as a step of a path write it.
QString Quoted(QString name)
{
    return u'"' + name.replace(u'"', QLatin1String("\"\"")) + u'"';
}

const char* const Kinds = R"sql(
CREATE TYPE mood AS ENUM ('sad', 'it''s "x"');
CREATE TABLE kinds(
  id INTEGER PRIMARY KEY,
  "select" DECIMAL(18,3) DEFAULT 12.5,
  arr INTEGER[3], lst VARCHAR[], nest DECIMAL(4,1)[2][],
  st STRUCT("x y" INTEGER, b VARCHAR[]), mp MAP(VARCHAR, INTEGER), un UNION(n INTEGER, s VARCHAR), en mood DEFAULT 'sad',
  d DATE DEFAULT DATE '2020-01-01', t VARCHAR DEFAULT 'It''s', b BOOLEAN DEFAULT true NOT NULL,
  now TIMESTAMPTZ DEFAULT now(), nul INTEGER DEFAULT NULL, num VARCHAR DEFAULT '007', paren VARCHAR DEFAULT '(1)',
  "Größe" HUGEINT, "表" UUID UNIQUE,
  gen INTEGER GENERATED ALWAYS AS (id * 2), "g ""q" DATE GENERATED ALWAYS AS (d + 1));
COMMENT ON COLUMN kinds.id IS 'key
of rows';
COMMENT ON TABLE kinds IS 'all ''kinds''';
CREATE UNIQUE INDEX "ix 1" ON kinds("select", t);
CREATE INDEX ix2 ON kinds(num);
CREATE INDEX ix3 ON kinds((id + 1), lower(t));
)sql";

const char* const Constraints = R"sql(
CREATE TABLE p(a INTEGER, b INTEGER, "c d" INTEGER UNIQUE, UNIQUE(a, b), CHECK (a > 0 AND b > 0), CHECK ("c d" <> 7));
CREATE TABLE many(x INTEGER, y INTEGER, z INTEGER, FOREIGN KEY (x, y) REFERENCES p(a, b));
CREATE TABLE one(z INTEGER PRIMARY KEY REFERENCES p("c d"));
CREATE TABLE self(id INTEGER PRIMARY KEY, up INTEGER REFERENCES self(id));
CREATE VIEW v AS SELECT a, b::VARCHAR AS "b v" FROM p;
COMMENT ON VIEW v IS 'seen';
CREATE MACRO m(a, b) AS a + b;
CREATE MACRO tm(n) AS TABLE SELECT n AS x;
CREATE SEQUENCE sq START 5 INCREMENT 2 MINVALUE 1 MAXVALUE 99 CYCLE;
CREATE TABLE big AS SELECT range r FROM range(1001);
)sql";

} // namespace

TEST_F(ProgramTest, TreeTellsEveryColumn)
{
    Make("db.duckdb", QString::fromUtf8(Kinds));
    const RunResult result = Run({"tree", "db.duckdb", "main/kinds", "--json", "--computed"});
    ASSERT_EQ(result.exitCode, 0) << result.err.toStdString();
    const QJsonObject table = result.JsonObject();
    EXPECT_EQ(table["kind"].toString(), "table");
    EXPECT_EQ(Properties(table, {9, 34, 37, 45, 192, 193, 194, 197, 200}),
              R"j("all 'kinds'" ["id"] "main" false 18 3 2 0 1)j");

    const struct
    {
        const char* name;
        const char* type; ///< type, arguments, precision, scale, size, element
        const char* rest; ///< default, nullable, indexed, unique
    } fields[] = {
        {"id", R"j("Integer" - -1 -1 - -)j", R"j("" false true true)j"},
        {"select", R"j("Decimal" - 18 3 - -)j", R"j("12.5" true false false)j"},
        {"arr", R"j("Array" - -1 -1 3 "Integer")j", R"j("" true false false)j"},
        {"lst", R"j("List" - -1 -1 - "VarChar")j", R"j("" true false false)j"},
        {"nest", R"j("List" - -1 -1 - "DECIMAL(4,1)[2]")j", R"j("" true false false)j"},
        {"st", R"j("Struct" "\"x y\" INTEGER, b VARCHAR[]" -1 -1 - -)j", R"j("" true false false)j"},
        {"mp", R"j("Map" "VARCHAR, INTEGER" -1 -1 - -)j", R"j("" true false false)j"},
        {"un", R"j("Union" "n INTEGER, s VARCHAR" -1 -1 - -)j", R"j("" true false false)j"},
        {"en", R"j("Enum" "'sad', 'it''s \"x\"'" -1 -1 - -)j", R"j("sad" true false false)j"},
        {"d", R"j("Date" - -1 -1 - -)j", R"j("(CAST('2020-01-01' AS DATE))" true false false)j"},
        {"t", R"j("VarChar" - -1 -1 - -)j", R"j("It's" true false false)j"},
        {"b", R"j("Boolean" - -1 -1 - -)j", R"j("(CAST('t' AS BOOLEAN))" false false false)j"},
        {"now", R"j("Timestamp With Time Zone" - -1 -1 - -)j", R"j("(now())" true false false)j"},
        {"nul", R"j("Integer" - -1 -1 - -)j", R"j("NULL" true false false)j"},
        {"num", R"j("VarChar" - -1 -1 - -)j", R"j("'007'" true true false)j"},
        {"paren", R"j("VarChar" - -1 -1 - -)j", R"j("'(1)'" true false false)j"},
        {"Größe", R"j("HugeInt" - -1 -1 - -)j", R"j("" true false false)j"},
        {"表", R"j("UUID" - -1 -1 - -)j", R"j("" true true true)j"},
    };
    QStringList names;
    for (const auto& one : fields) {
        SCOPED_TRACE(one.name);
        names.append(QString::fromUtf8(one.name));
        const QJsonObject field = At(table, {{Field, one.name}});
        EXPECT_EQ(Properties(field, {47, 132, 142, 143, 58, 59}), one.type);
        EXPECT_EQ(Properties(field, {130, 140, 136, 48}), one.rest);
        EXPECT_EQ(Property(field, 141), std::to_string(names.size()));
        EXPECT_EQ(field["icon"].toString(), names.size() == 1 ? ":/icons/field-pk.svg" : ":/weft/icons/field.svg");
    }
    EXPECT_EQ(Names(table, Field), names);
    EXPECT_EQ(Property(At(table, {{Field, "id"}}), 9), R"j("key\nof rows")j");
    EXPECT_EQ(Names(table, Method), QStringList({"gen", "g \"q"}));
    EXPECT_EQ(Properties(At(table, {{Method, "gen"}}), {47, 141}), R"j("Integer" 19)j");
    EXPECT_TRUE(Property(At(table, {{Method, "gen"}}), 176).starts_with(R"j("CAST((id * 2) AS )j"));
    EXPECT_EQ(Properties(At(table, {{Index, "ix 1"}}), {18, 48}), R"j(["select","t"] true)j");
    EXPECT_EQ(Properties(At(table, {{Index, "ix2"}}), {18, 48}), R"j(["num"] false)j");
    EXPECT_EQ(At(table, {{Index, "ix3"}})["properties"].toObject()["18"].toArray().size(), 2);
    EXPECT_EQ(Names(table, Unique), QStringList("unique_表"));
}

TEST_F(ProgramTest, TreeTellsConstraintsViewsMacrosAndSequences)
{
    Make("db.duckdb", QString::fromUtf8(Constraints));
    const RunResult result = Run({"tree", "db.duckdb", "--json", "--computed"});
    ASSERT_EQ(result.exitCode, 0) << result.err.toStdString();
    const QJsonObject root = result.JsonObject();
    EXPECT_EQ(root["type"].toInt(), 9);
    EXPECT_EQ(root["name"].toString(), "db");
    EXPECT_EQ(Property(root, 100), R"j("db.duckdb")j");
    const QJsonObject main = At(root, {{Schema, "main"}});
    EXPECT_EQ(Properties(main, {107, 109, 113, 116, 118}), "2 3 1 5 1");

    // Names that the catalogue does not give are made of what it gives.
    const QJsonObject parent = At(main, {{Table, "p"}});
    EXPECT_EQ(Names(parent, Check), QStringList({"check_a_b", "check_c d"}));
    EXPECT_EQ(Property(At(parent, {{Check, "check_a_b"}}), 60), R"j("(a > 0) AND (b > 0)")j");
    EXPECT_EQ(Property(At(parent, {{Unique, "unique_a_b"}}), 18), R"j(["a","b"])j");
    EXPECT_EQ(Property(At(parent, {{Unique, "unique_c d"}}), 18), R"j(["c d"])j");
    QStringList links = Names(parent, Link);
    links.sort();
    EXPECT_EQ(links, QStringList({"link_p_many", "link_p_one"}));

    const struct
    {
        const char* table;
        const char* link;
        const char* properties; ///< referencing columns, referenced table and columns, kind
    } cases[] = {
        {"many", "link_p_many", R"j(["x","y"] "p" ["a","b"] "ONE to MANY")j"},
        {"one", "link_p_one", R"j(["z"] "p" ["c d"] "ONE to ONE")j"},
        {"self", "link_self_self", R"j(["up"] "self" ["id"] "ONE to MANY")j"},
    };
    for (const auto& one : cases)
        EXPECT_EQ(Properties(At(main, {{Table, one.table}, {Link, one.link}}), {156, 160, 34, 154}), one.properties)
            << one.link;

    const QJsonObject view = At(main, {{View, "v"}});
    EXPECT_EQ(Names(view, Field), QStringList({"a", "b v"}));
    EXPECT_EQ(Properties(view, {9, 45}), R"j("seen" false)j");
    EXPECT_NE(Property(view, 46).find("SELECT a, CAST(b AS VARCHAR)"), std::string::npos) << Property(view, 46);
    EXPECT_EQ(Properties(At(main, {{Function, "m"}}), {146, 145, 46}),
              R"j("macro" 2 "CREATE OR REPLACE MACRO main.m( a, b ) AS (a + b)")j");
    EXPECT_EQ(Properties(At(main, {{Function, "tm"}}), {146, 46}),
              R"j("table_macro" "CREATE OR REPLACE MACRO main.tm( n ) AS TABLE SELECT n AS x")j");
    EXPECT_EQ(Properties(At(main, {{Sequence, "sq"}}), {190, 187, 188, 189, 185}), "5 2 1 99 true");
    // Above a thousand rows an estimate stands until somebody asks for this very number.
    EXPECT_EQ(Property(At(main, {{Table, "big"}}), 197), R"j("~1001")j");
    EXPECT_EQ(At(root, {{Schema, "pg_catalog"}})["icon"].toString(), ":/icons/schema-sys.svg");
}

TEST_F(ProgramTest, TreeFindsOddNamesByPath)
{
    const char* const names[] = {"a b",    "a.b",  "a\"b", "it's", "$NAME", "$PNAME$$x", "x\ny",
                                 "select", "Größe", "表",    "1st",  "a/b",   "table:x"};
    QString sql;
    for (const char* name : names)
        sql += QStringLiteral("CREATE SCHEMA %1; CREATE TABLE %1.%1(%1 INTEGER PRIMARY KEY); CREATE VIEW %1.%2 AS FROM %1.%1;")
                   .replace(QLatin1String("%2"), Quoted(QStringLiteral("v ") + QString::fromUtf8(name)))
                   .replace(QLatin1String("%1"), Quoted(QString::fromUtf8(name)));
    Make("db.duckdb", sql);
    for (const char* name : names) {
        SCOPED_TRACE(name);
        const QString plain = QString::fromUtf8(name);
        const QString step = Quoted(plain);
        const RunResult result = Run({"tree", "db.duckdb", step + u'/' + step, "--json"});
        ASSERT_EQ(result.exitCode, 0) << result.err.toStdString();
        const QJsonObject table = result.JsonObject();
        EXPECT_EQ(table["name"].toString(), plain);
        EXPECT_EQ(table["kind"].toString(), "table");
        EXPECT_EQ(table["properties"]["37"].toString(), plain);
        EXPECT_EQ(Names(table, Field), QStringList(plain));
        const RunResult view =
            Run({"tree", "db.duckdb", "schema:" + step + "/view:" + Quoted(QStringLiteral("v ") + plain), "--json"});
        ASSERT_EQ(view.exitCode, 0) << view.err.toStdString();
        EXPECT_EQ(Names(view.JsonObject(), Field), QStringList(plain));
    }
}

TEST_F(ProgramTest, TreePathsThatLeadNowhereSaySo)
{
    Make("db.duckdb", "CREATE TABLE t(a INTEGER); CREATE SEQUENCE s; CREATE MACRO t(x) AS x; CREATE TABLE gone(a INTEGER);"
                      "CREATE VIEW broken AS FROM gone; DROP TABLE gone;");
    const struct
    {
        QStringList arguments;
        int exitCode;
        const char* error; ///< "" for a run that succeeds
    } cases[] = {
        {{"main/table:t"}, 0, ""},
        {{"main/function:t"}, 0, ""},
        {{"main/t"}, 1, "\"t\" is ambiguous: write "},
        {{"main/nosuch"}, 1, "there is no \"nosuch\" in schema \"main\""},
        {{"main/view:s"}, 1, "there is no \"s\" in schema \"main\""},
        {{"nosuch/t"}, 1, "there is no \"nosuch\" in database \"db\""},
        {{"main/"}, 2, "is not a path"},
        {{"main/\"t"}, 2, "is not a path"},
        {{"--depth", "x"}, 2, "\"x\" is not a depth"},
    };
    for (const auto& one : cases) {
        const RunResult result = Run(QStringList({"tree", "db.duckdb"}) + one.arguments);
        EXPECT_EQ(result.exitCode, one.exitCode) << one.arguments.join(' ').toStdString() << result.err.toStdString();
        EXPECT_EQ(one.exitCode == 0, result.err.isEmpty()) << result.err.toStdString();
        EXPECT_TRUE(result.err.contains(one.error)) << result.err.toStdString();
    }
    // A view that lost its table stands in the tree, and the rest of it is whole.
    const RunResult whole = Run({"tree", "db.duckdb", "main", "--json", "--depth", "1"});
    EXPECT_EQ(whole.exitCode, 0) << whole.err.toStdString();
    EXPECT_EQ(Names(whole.JsonObject(), View), QStringList("broken"));
    EXPECT_EQ(Names(whole.JsonObject(), Table), QStringList("t"));
    EXPECT_EQ(At(whole.JsonObject(), {{Table, "t"}})["children"].toObject().size(), 0); // the depth is kept to
}

TEST_F(ProgramTest, ANewLanguageChangesWordsAndNothingElse)
{
    Make("db.duckdb", QString::fromUtf8(Constraints));
    const auto run = [this](const QStringList& arguments, const char* language) {
        const std::unique_ptr<QProcess> process = Prepare(arguments);
        QProcessEnvironment environment = process->processEnvironment();
        environment.insert("ORBIS_LANGUAGE", language);
        process->setProcessEnvironment(environment);
        process->start();
        return Finish(*process);
    };
    const QStringList documents[] = {{"info", "--json"},
                                     {"tree", "db.duckdb", "--json", "--computed", "--system"},
                                     {"idents", "db.duckdb", "--json"},
                                     {"sql", "db.duckdb", "-c", "SELECT 1; nonsense", "--format", "json"},
                                     {"sql", "db.duckdb", "-c", "FROM p; SELECT nosuch", "--format", "ndjson"},
                                     {"sql", "db.duckdb", "-c", "SELECT true, NULL, 1.5", "--format", "csv"}};
    for (const QStringList& arguments : documents)
        EXPECT_EQ(run(arguments, "C").out, run(arguments, "de").out) << arguments.join(' ').toStdString();
    EXPECT_TRUE(run({"tree", "db.duckdb", "main/one"}, "de").out.contains("Schlüsselspalten: "));
    EXPECT_TRUE(run({"nosuch"}, "de").err.contains("unbekannter Befehl"));
}
