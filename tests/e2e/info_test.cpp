// SPDX-License-Identifier: GPL-3.0-or-later
#include "e2e/orbis_process.h"

#include <QSet>

namespace {

QStringList Texts(const QJsonValue& list)
{
    QStringList texts;
    for (const QJsonValue& value : list.toArray())
        texts.append(value.toString());
    return texts;
}

} // namespace

TEST_F(ProgramTest, InfoTellsOfPluginFactoryAndEngine)
{
    const RunResult result = Run({"info", "--json"});
    ASSERT_EQ(result.exitCode, 0) << result.err.toStdString();
    EXPECT_EQ(result.err, "");
    const QJsonObject info = result.JsonObject();

    const QJsonObject plugin = info["plugin"].toObject();
    EXPECT_EQ(plugin["type"].toInt(), 16);
    EXPECT_EQ(plugin["version"].toString(), "14.6.1");
    EXPECT_FALSE(plugin["name"].toString().isEmpty());

    ASSERT_EQ(info["factories"].toArray().size(), 1);
    const QJsonObject factory = info["factories"].toArray()[0].toObject();
    EXPECT_EQ(factory["id"].toInt(), 2048);
    EXPECT_EQ(factory["name"].toString(), "DuckDB Files");
    EXPECT_EQ(factory["icon"].toString(), ":/icons/connection-duckdb.svg");

    const QJsonObject engine = info["engine"].toObject();
    EXPECT_EQ(engine["capabilities"].toInt(), 222856);
    EXPECT_EQ(engine["query_capabilities"].toInt(), 2228258);
    EXPECT_EQ(engine["default_field_type"].toString(), "VarChar");
    EXPECT_EQ(engine["integer_field_type"].toString(), "Integer");
    EXPECT_EQ(engine["version"].toString(), Rows(":memory:", "SELECT substr(version(), 2)")[0].toArray()[0].toString());
}

TEST_F(ProgramTest, InfoHoldsTheListsOfTheEngine)
{
    const QJsonObject engine = Run({"info", "--json"}).JsonObject()["engine"].toObject();

    const QJsonArray types = engine["field_types"].toArray();
    ASSERT_EQ(types.size(), 43);
    const struct
    {
        int row;
        const char* name;
        int type;
        const char* prototype;
    } rows[] = {
        {0, "Boolean", 3, "LValueBoolean"},    {1, "", 0, "LValueInvalid"},       {2, "BigInt", 11, "LValueInt64"},
        {3, "HugeInt", 11, "LValueString"},    {4, "Integer", 9, "LValueInt32"},  {6, "TinyInt", 5, "LValueInt16"},
        {7, "UBigInt", 11, "LValueUInt64"},    {9, "UInteger", 9, "LValueUInt32"}, {10, "USmallInt", 5, "LValueUInt16"},
        {11, "UTinyInt", 5, "LValueUInt8"},    {13, "Decimal", 46, "LValueDecimal"}, {14, "Double", 14, "LValueDouble"},
        {15, "Float", 13, "LValueFloat"},      {19, "Bit", 55, "LValueVarBitArray"}, {21, "BLOB", 23, "LValueByteArray"},
        {23, "Date", 16, "LValueDate"},        {25, "Time", 17, "LValueTime"},    {35, "UUID", 42, "LValueUUID"},
        {42, "Union", 77, "LValueString"},
    };
    for (const auto& row : rows) {
        const QJsonObject type = types[row.row].toObject();
        EXPECT_EQ(type["name"].toString(), row.name);
        EXPECT_EQ(type["type"].toInt(), row.type) << row.name;
        EXPECT_EQ(type["prototype"].toString(), row.prototype) << row.name;
    }

    EXPECT_EQ(engine["aggregates"].toArray().size(), 72);
    EXPECT_EQ(Texts(engine["statement_keywords"]).mid(14), QStringList({"update", "attach", "dettach"}));
    EXPECT_EQ(Texts(engine["statement_keywords_sorted"]).mid(0, 3), QStringList({"alter", "attach", "begin"}));
    const QJsonObject following = engine["following_keywords"].toObject();
    EXPECT_EQ(following.keys().size(), 11);
    EXPECT_EQ(Texts(following["66"]), QStringList("table"));
    EXPECT_EQ(Texts(following["129"]), QStringList({"function", "index", "macro", "macro table", "schema", "sequence",
                                                    "table", "type", "view"}));
    const QJsonArray templates = engine["templates"].toArray();
    ASSERT_EQ(templates.size(), 31);
    EXPECT_EQ(templates[0].toObject()["category"].toString(), "Database Commands");
    EXPECT_EQ(templates[30].toObject()["title"].toString(), "Checkpoint");
    for (const QJsonValue& entry : templates)
        EXPECT_TRUE(entry.toObject()["text"].toString().startsWith("-- ")) << entry["title"].toString().toStdString();

    // The engine's own words for what was read of it.
    QSet<QString> words;
    for (const QJsonValue& row : Rows(":memory:", "SELECT keyword_name FROM duckdb_keywords()"))
        words.insert(row[0].toString());
    const QStringList told = Texts(engine["keywords"]);
    EXPECT_EQ(QSet<QString>(told.begin(), told.end()), words);
    const QJsonObject abs = engine["functions"].toObject()["abs"].toObject();
    EXPECT_EQ(abs["name"].toString(), "abs");
    EXPECT_EQ(abs["category"].toString(), "Scalar");
    EXPECT_GT(engine["functions"].toObject().size(), 300);
    EXPECT_FALSE(engine["functions"].toObject().contains("+"));
    bool anyExample = false;
    for (const QJsonValue& function : engine["functions"].toObject())
        anyExample = anyExample || !function["example"].toString().isEmpty();
    EXPECT_TRUE(anyExample);
}

TEST_F(ProgramTest, InfoForPeople)
{
    const RunResult result = Run({"info"});
    EXPECT_EQ(result.exitCode, 0);
    for (const char* part : {"14.6.1", "DuckDB Files (2048)", "222856, 2228258", "VarChar", "Timestamp With Time Zone"})
        EXPECT_TRUE(result.out.contains(part)) << part << result.out.toStdString();
}
