// SPDX-License-Identifier: GPL-3.0-or-later
#include "engine_session.h"

#include <gtest/gtest.h>

namespace nub::test {
namespace {

/// Each column's type name against typeof, in one result so that names that
/// only the engine knows stand beside plain ones.
TEST(TypeName, AsTheEngineSays)
{
    EngineSession engine;
    engine.Run("CREATE TYPE mood AS ENUM ('sad', 'ok')");
    engine.Run("CREATE TYPE money AS DECIMAL(10,2)");
    const std::vector<const char*> types = {
        "BOOLEAN", "TINYINT", "SMALLINT", "INTEGER", "BIGINT", "UTINYINT", "USMALLINT", "UINTEGER", "UBIGINT",
        "HUGEINT", "UHUGEINT", "FLOAT", "DOUBLE", "DATE", "TIME", "TIMETZ", "TIMESTAMP", "TIMESTAMP_S", "TIMESTAMP_MS",
        "TIMESTAMP_NS", "TIMESTAMPTZ", "INTERVAL", "UUID", "BIT", "BLOB", "VARCHAR", "JSON", "DECIMAL(18,3)",
        "DECIMAL(38,38)", "DECIMAL(4,0)", "INTEGER[]", "INTEGER[3]", "VARCHAR[][2][]", "DECIMAL(4,1)[]", "JSON[]",
        "MAP(VARCHAR, INTEGER[])", "STRUCT(a INTEGER)", "STRUCT(\"a b\" INTEGER, \"q\"\"q\" VARCHAR)",
        "STRUCT(\"select\" INTEGER, \"Name\" DATE, \"1x\" TIME, value INTEGER, \"table\" BLOB)",
        "UNION(num INTEGER, \"my text\" VARCHAR)", "ENUM('x', 'it''s \"y\"', '')", "ENUM('x')[]", "mood", "mood[]",
        "money", "STRUCT(m mood, j JSON)[]", "MAP(DATE, STRUCT(\"ä\" MAP(INTEGER, BIT)))",
    };
    std::vector<const char*> optional = {"TIME_NS", "BIGNUM", "VARIANT", "GEOMETRY", "VARINT"};
    std::vector<std::string> present(types.begin(), types.end());
    for (const char* type : optional)
        if (engine.Accepts(std::string("SELECT NULL::") + type))
            present.emplace_back(type);

    std::string sql = "SELECT NULL AS bare, row(1, 'x') AS unnamed", names = "SELECT typeof(NULL), "
        "typeof(row(1, 'x'))";
    for (const std::string& type : present) {
        sql += ", NULL::" + type;
        names += ", typeof(NULL::" + type + ")";
    }
    orbsql::ResultHandle result, expected;
    engine.Run(sql, result);
    engine.Run(names, expected);
    const orbsql::ChunkHandle chunk = FetchChunk(expected);
    orbsql::RowReader reader(result.get(), engine.Settings());
    ASSERT_EQ(reader.ColumnCount(), static_cast<int>(present.size()) + 2);
    // The engine turns a bare NULL into INTEGER when it hands a result out.
    EXPECT_EQ(reader.TypeName(0).ToUtf8(), "INTEGER");
    for (int i = 1; i < reader.ColumnCount(); ++i)
        EXPECT_EQ(reader.TypeName(i).ToUtf8(), *EngineSession::Cell(chunk.get(), static_cast<idx_t>(i), 0));
}

TEST(TypeName, PlainNamesNeedNoEngine)
{
    EngineSession engine;
    orbsql::ResultHandle result;
    engine.Run("SELECT 1 AS \"a b\", 2.50 AS \"ü\", [DATE '2020-01-01'] AS c, 'x'::ENUM('x', 'y''z') AS d", result);
    orbsql::RowReader reader(result.get(), {});
    const char* const expected[][2] = {
        {"a b", "INTEGER"}, {"ü", "DECIMAL(3,2)"}, {"c", "DATE[]"}, {"d", "ENUM('x', 'y''z')"}};
    for (int i = 0; i < 4; ++i) {
        EXPECT_EQ(reader.Name(i).ToUtf8(), expected[i][0]);
        EXPECT_EQ(reader.TypeName(i).ToUtf8(), expected[i][1]);
    }
}

} // namespace
} // namespace nub::test
