// SPDX-License-Identifier: GPL-3.0-or-later
// What the engine at hand tells of itself.
#include "engine/engine_version.h"
#include "engine/engine_words.h"
#include "engine/kernel_text.h"
#include "engine/queries.h"
#include "nub/orbsql/duckdb_database.h"

#include <gtest/gtest.h>

namespace {

TEST(EngineWords, Keywords)
{
    const HF::LDatabaseKeywords keywords = FetchEngineKeywords();
    EXPECT_GT(keywords.get_Words().size(), 300);
    for (const char* word : {"select", "ORDER", "Table"})
        EXPECT_TRUE(keywords.Contains(word)) << word;
    EXPECT_FALSE(keywords.Contains("orders"));
}

TEST(EngineWords, Functions)
{
    const HF::LSQLFunctions functions = FetchEngineFunctions();
    EXPECT_GT(functions.Keys.size(), 700);
    EXPECT_EQ(functions.Keys, functions.Functions.keys());
    int described = 0, exampled = 0;
    for (auto it = functions.Functions.cbegin(); it != functions.Functions.cend(); ++it) {
        const std::string where = it.key().toStdString();
        EXPECT_EQ(it.key(), it->Name.toLower());
        EXPECT_FALSE(QStringLiteral("+-*/<>^!@&~|%").contains(it.key()[0])) << where;
        EXPECT_EQ(it->Number, -1) << where;
        EXPECT_TRUE(it->Flag) << where;
        EXPECT_TRUE(it->Category.isEmpty() || it->Category[0].isUpper()) << where;
        described += !it->Description.isEmpty();
        exampled += !it->Example.isEmpty();
    }
    EXPECT_GT(described, 300);
    EXPECT_GT(exampled, 300);

    ASSERT_TRUE(functions.Functions.contains("abs"));
    const HF::LSQLFunction abs = functions.Functions.value("abs");
    EXPECT_EQ(abs.Category, "Scalar");
    EXPECT_FALSE(abs.ReturnType.isEmpty());
    EXPECT_TRUE(abs.Example.contains("abs(")) << abs.Example.toStdString();
    EXPECT_EQ(functions.Functions.value("sum").Category, "Aggregate");
}

TEST(EngineWords, OfOverloadsTheLastCounts)
{
    // The same rows, as the engine gives them.
    const auto engine = nub::orbsql::CreateDuckDBDatabase(KernelText::ToLocation(":memory:"));
    engine->Create();
    const bool list = EngineVersionNumber() >= EngineQueries::FunctionExamplesSince;
    const auto cursor = nub::smart_ptr<nub::orbsql::I_Cursor>::adopt(engine->SqlSelect(
        nub::String::FromUtf8(list ? EngineQueries::FunctionsWithExamples : EngineQueries::Functions), 1, {}));
    const auto text = [&](int column) {
        const auto field = nub::smart_ptr<nub::orbsql::I_Field>::adopt(cursor->get_Field(column));
        return field ? KernelText::ToQString(field->get_String()) : QString(column == 1 ? "args" : "");
    };
    QMap<QString, QList<QStringList>> rows;
    for (bool more = cursor->First(); more; more = cursor->Next())
        rows[text(0).toLower()].append({text(0), text(1), text(2), text(4), text(5)});

    const HF::LSQLFunctions functions = FetchEngineFunctions();
    EXPECT_EQ(functions.Keys, rows.keys());
    int overloaded = 0;
    for (auto it = rows.cbegin(); it != rows.cend(); ++it) {
        overloaded += it->first() != it->last();
        const HF::LSQLFunction function = functions.Functions.value(it.key());
        EXPECT_EQ(QStringList({function.Name, function.Parameters, function.ReturnType, function.Description,
                               function.Example}),
                  it->last())
            << it.key().toStdString();
    }
    EXPECT_GT(overloaded, 100);
}

TEST(EngineWords, Version)
{
    EXPECT_GE(EngineVersionNumber(), 10100);
    EXPECT_EQ(ParseEngineVersion(EngineVersionString()), EngineVersionNumber());
    EXPECT_FALSE(EngineVersionString().startsWith('v'));
}

} // namespace
