// SPDX-License-Identifier: GPL-3.0-or-later
// What a VARIANT literal builds is the value it was made of, down to the type of every part.
#include "database_fixture.h"
#include "engine_session.h"

#include "nub/exception.h"
#include "nub/orbsql/literal_column.h"

#include <gtest/gtest.h>

namespace nub::test {
namespace {

using namespace orbsql;

template <class T> T* DataOf(duckdb_vector vector)
{
    return static_cast<T*>(duckdb_vector_get_data(vector));
}

/// The vectors of which a VARIANT's consists.
struct Parts
{
    explicit Parts(duckdb_vector vector)
    {
        for (idx_t i = 0; i < 3; ++i)
            lists[i] = duckdb_struct_vector_get_child(vector, i);
        data = duckdb_struct_vector_get_child(vector, 3);
        for (idx_t i = 0; i < 2; ++i) {
            children[i] = duckdb_struct_vector_get_child(duckdb_list_vector_get_child(lists[1]), i);
            values[i] = duckdb_struct_vector_get_child(duckdb_list_vector_get_child(lists[2]), i);
        }
    }
    duckdb_list_entry Entry(int list, idx_t row) const { return DataOf<duckdb_list_entry>(lists[list])[row]; }

    duckdb_vector lists[3], data, children[2], values[2];
};

/// The value with all types and bytes, straight from what the engine stores.
std::string Tree(const Parts& parts, idx_t row, idx_t index)
{
    constexpr int Counted = -1, Decimal = -2, Nested = -3;
    constexpr int Sizes[] = {0, 0, 0, 1, 2, 4, 8, 16, 1, 2, 4, 8, 16, 4, 8, Decimal, Counted, Counted, 16, 4, 8, 8, 8, 8,
                             8, 8, 8, 8, 16, Nested, Nested, Counted, Counted, Counted};
    const idx_t at = parts.Entry(2, row).offset + index;
    const int type = DataOf<std::uint8_t>(parts.values[0])[at];
    const char* bytes = ViewOf(DataOf<duckdb_string_t>(parts.data)[row]).data() + DataOf<std::uint32_t>(parts.values[1])[at];
    const auto number = [&bytes] {
        idx_t value = 0;
        for (int shift = 0;; shift += 7) {
            const char byte = *bytes++;
            value |= idx_t(byte & 0x7F) << shift;
            if (!(byte & 0x80))
                return value;
        }
    };
    std::string text = std::to_string(type) + ':';
    int size = Sizes[type];
    if (size == Nested) {
        const idx_t count = number(), first = count ? number() : 0;
        for (idx_t i = 0; i < count; ++i) {
            const idx_t child = parts.Entry(1, row).offset + first + i;
            if (type == 29)
                text += ViewOf(DataOf<duckdb_string_t>(duckdb_list_vector_get_child(
                    parts.lists[0]))[parts.Entry(0, row).offset + DataOf<std::uint32_t>(parts.children[0])[child]]);
            text += '(' + Tree(parts, row, DataOf<std::uint32_t>(parts.children[1])[child]) + ')';
        }
        return text;
    }
    if (size == Decimal) {
        const idx_t width = number();
        text += std::to_string(width) + ',' + std::to_string(number()) + ':';
        size = width <= 4 ? 2 : width <= 9 ? 4 : width <= 18 ? 8 : 16;
    } else if (size == Counted) {
        size = static_cast<int>(number());
    }
    return text.append(bytes, static_cast<std::size_t>(size));
}

/// Calls back for each chunk of a query of one column.
template <class F> void ForChunks(EngineSession& engine, const std::string& query, F&& call)
{
    ResultHandle result;
    engine.Run(query, result);
    while (const ChunkHandle chunk = FetchChunk(result))
        call(duckdb_data_chunk_get_vector(chunk.get(), 0), duckdb_data_chunk_get_size(chunk.get()));
}

std::vector<std::string> Trees(EngineSession& engine, const std::string& query)
{
    std::vector<std::string> trees;
    ForChunks(engine, query, [&](duckdb_vector vector, idx_t rows) {
        const Parts parts(vector);
        const std::uint64_t* validity = duckdb_vector_get_validity(vector);
        for (idx_t row = 0; row < rows; ++row) {
            const bool isNull = validity && !(validity[row / 64] >> (row % 64) & 1);
            trees.push_back(isNull ? "NULL" : Tree(parts, row, 0));
        }
    });
    return trees;
}

std::vector<std::string> Literals(EngineSession& engine, const std::string& query)
{
    std::vector<std::string> literals;
    const CodePointTest all;
    ForChunks(engine, query, [&](duckdb_vector vector, idx_t rows) {
        const TypeHandle type(duckdb_vector_get_column_type(vector));
        LiteralColumn column(type.get(), all);
        EXPECT_TRUE(column.IsKnown());
        column.SetVector(vector);
        for (idx_t row = 0; row < rows; ++row)
            column.Append(literals.emplace_back(), row);
    });
    return literals;
}

/// A value of a VARIANT and what the engine calls its type.
const std::pair<const char*, const char*> Variants[] = {
    {"NULL::VARIANT", "VARIANT_NULL"},
    {"true", "BOOL_TRUE"}, {"false", "BOOL_FALSE"},
    {"(-128)::TINYINT", "INT8"}, {"32767::SMALLINT", "INT16"}, {"1::INTEGER", "INT32"}, {"(-2147483648)::INTEGER", "INT32"},
    {"0::BIGINT", "INT64"}, {"(-9223372036854775808)::BIGINT", "INT64"},
    {"12::HUGEINT", "INT128"}, {"'-170141183460469231731687303715884105728'::HUGEINT", "INT128"},
    {"255::UTINYINT", "UINT8"}, {"65535::USMALLINT", "UINT16"}, {"4294967295::UINTEGER", "UINT32"},
    {"18446744073709551615::UBIGINT", "UINT64"}, {"'340282366920938463463374607431768211455'::UHUGEINT", "UINT128"},
    {"'nan'::FLOAT", "FLOAT"}, {"'1e-45'::FLOAT", "FLOAT"}, {"'-inf'::DOUBLE", "DOUBLE"}, {"'-0.0'::DOUBLE", "DOUBLE"},
    {"(-1.5)::DECIMAL(4,2)", "DECIMAL(4, 2)"}, {"1.5::DECIMAL(9,1)", "DECIMAL(9, 1)"}, {"0.5::DECIMAL(18,18)", "DECIMAL(18, 18)"}, {"'-0.12345678901234567890123456789012345678'::DECIMAL(38,38)", "DECIMAL(38, 38)"},
    {"''", "VARCHAR"}, {"'it''s \"x\" \\'", "VARCHAR"}, {"repeat('ä', 200)", "VARCHAR"}, {"chr(0) || 'x' || chr(0)", "VARCHAR"},
    {"''::BLOB", "BLOB"}, {"repeat('\\x00\\xAB', 100)::BLOB", "BLOB"},
    {"'80000000-0000-0000-0000-000000000001'::UUID", "UUID"},
    {"'infinity'::DATE", "DATE"}, {"'0044-03-15 (BC)'::DATE", "DATE"}, {"'24:00:00'::TIME", "TIME_MICROS"},
    {"'23:59:59.999999999'::TIME_NS", "TIME_NANOS"}, {"'12:34:56.5-05:30'::TIMETZ", "TIME_MICROS_TZ"},
    {"'290309-12-22 (BC) 00:00:00'::TIMESTAMP", "TIMESTAMP_MICROS"}, {"'infinity'::TIMESTAMP_S", "TIMESTAMP_SEC"},
    {"'2020-01-01 12:34:56.789'::TIMESTAMP_MS", "TIMESTAMP_MILIS"},
    {"'1969-12-31 23:59:59.999999999'::TIMESTAMP_NS", "TIMESTAMP_NANOS"},
    {"'2020-01-01 12:34:56.789+05:30'::TIMESTAMPTZ", "TIMESTAMP_MICROS_TZ"},
    {"make_timestamptz(-9223372022400000000)", "TIMESTAMP_MICROS_TZ"},
    {"'-1 year 2 days 00:00:00.000001'::INTERVAL", "INTERVAL"}, {"to_microseconds(9223372036854775807)", "INTERVAL"},
    {"'-123456789012345678901234567890000000000000000000001'::BIGNUM", "BIGNUM"}, {"0::BIGNUM", "BIGNUM"},
    {"256::BIGNUM", "BIGNUM"}, {"repeat('9', 3000)::BIGNUM", "BIGNUM"},
    {"'0101'::BIT", "BITSTRING"}, {"repeat('1', 100)::BIT", "BITSTRING"},
    {"'LINESTRING ZM (0.1 -0 3 1e300, nan inf 5e-324 4)'::GEOMETRY", "GEOMETRY"}, {"'POINT EMPTY'::GEOMETRY", "GEOMETRY"},
    {"'sad'::ENUM('sad', 'ok')", "VARCHAR"},
    // Arrays: empty, of nothing, of one type, of several.
    {"[]", "ARRAY(0)"}, {"[NULL]", "ARRAY(1)"}, {"[1, NULL, -3]", "ARRAY(3)"}, {"[1.5::DECIMAL(4,2)]", "ARRAY(1)"},
    {"[1.5::DECIMAL(4,2)::VARIANT, 1.5::DECIMAL(5,2)::VARIANT, 1.5::DECIMAL(5,3)::VARIANT]", "ARRAY(3)"},
    {"['a', NULL, chr(0), '']", "ARRAY(4)"}, {"[true, false]", "ARRAY(2)"}, {"[true::VARIANT, 1::VARIANT]", "ARRAY(2)"},
    {"['x'::BLOB, NULL]", "ARRAY(2)"}, {"['nan', '-0.0', '1']::FLOAT[]", "ARRAY(3)"}, {"['inf', '1']::DOUBLE[]", "ARRAY(2)"},
    {"['POINT (1 2)'::GEOMETRY, NULL]", "ARRAY(2)"}, {"['1 day'::INTERVAL, to_microseconds(9223372036854775807)]", "ARRAY(2)"},
    {"[-9223372036854775808, 9223372036854775807]::BIGINT[]", "ARRAY(2)"}, {"[0, 18446744073709551615]::UBIGINT[]", "ARRAY(2)"},
    {"[[], [NULL], [[1::UTINYINT], []], NULL]", "ARRAY(4)"}, {"[[]::VARIANT, [1::UTINYINT]::VARIANT, NULL, {'a': 1}::VARIANT]", "ARRAY(4)"},
    {"range(300)", "ARRAY(300)"}, {"[1, 2]::INTEGER[2]", "ARRAY(2)"}, {"MAP {'k': 1, 'l': NULL}", "ARRAY(2)"},
    // Objects, with keys of every kind.
    {"'{}'::JSON", "OBJECT()"}, {"{'a': [1, NULL, 3], 'b': DATE '2020-01-01'}", "OBJECT(a, b)"},
    {"{'z': NULL, 'a': 'x', 'm': 5::HUGEINT}", "OBJECT(z, a, m)"},
    {"{'it''s': 1, '\"': 2, 'a b': 3, 'Ä': 4, 'ä': 5, 'select': 6}", "OBJECT(it's, \", a b, Ä, ä, select)"},
    {"{'a': {'b': {'c': [{'d': 1.25::DECIMAL(9,4)}, NULL]}, 'e': []}, 'f': '{}'::JSON}", "OBJECT(a, f)"},
    {"{'a': '{\"\": 1, \"b\": {\"x\": 1, \"X\": 2, \"x\": []}}'::JSON, 'b': 1::TINYINT}", "OBJECT(a, b)"},
    {"'{\"\": 1, \"a\\u0000b\": \"x\\u0000y\", \"\\u0001\": \"\\\"\\\\\\u20ac\\ud83d\\ude00\"}'::JSON", "OBJECT(, a"},
    {"'{\"a\": 1, \"A\": -0, \"a\": 3}'::JSON", "OBJECT(a, A, a)"},
    {"'[0, 1, -1, 18446744073709551615, 18446744073709551616, -9223372036854775808, 1.0, -0.0, -0, 1e300, 5e-324, 0.1, "
     "123456789.125, true, null, \"\", {}, []]'::JSON", "ARRAY(18)"},
    {"(repeat('[{\"a\":', 700) || 'null' || repeat('}]', 700))::JSON", "ARRAY(1)"},
};

class VariantTest : public testing::Test
{
protected:
    void SetUp() override
    {
        if (!engine.Accepts("CREATE TABLE t(v VARIANT)"))
            GTEST_SKIP() << "this engine has no tables with VARIANT";
    }
    /// Writes the table's literals into a table of the same type.
    void CopyByLiterals(const std::string& table)
    {
        engine.Run("CREATE OR REPLACE TABLE back AS FROM " + table + " LIMIT 0");
        std::string rows;
        for (const std::string& literal : Literals(engine, "FROM " + table))
            rows += (rows.empty() ? "(" : ", (") + literal + ')';
        engine.Run("INSERT INTO back VALUES " + rows);
    }
    EngineSession engine;
};

TEST_F(VariantTest, EveryTypeInsideComesBack)
{
    engine.Run("CREATE TABLE every(v VARIANT)");
    for (const auto& [value, type] : Variants) {
        SCOPED_TRACE(value);
        engine.Run(std::string("TRUNCATE t; INSERT INTO t VALUES ((") + value + ")::VARIANT)");
        EXPECT_TRUE(engine.Ask("SELECT variant_typeof(v) FROM t").starts_with(type));
        CopyByLiterals("t");
        EXPECT_EQ(Trees(engine, "FROM t"), Trees(engine, "FROM back"));
        engine.Run("INSERT INTO every FROM t");
    }
    CopyByLiterals("every");
    EXPECT_EQ(Trees(engine, "FROM every"), Trees(engine, "FROM back"));
    EXPECT_EQ(Trees(engine, "FROM every").size(), std::size(Variants));
    // A file keeps what is common to many rows in columns of its own.
    const Folder folder;
    engine.Run("ATTACH '" + folder / "kept.duckdb" + "' AS kept (STORAGE_VERSION 'latest')");
    for (const char* source : {"FROM every", "SELECT {'a': range, 'b': 'x' || range, 'c': [range::DECIMAL(12,3), NULL]}::VARIANT FROM range(2500)"}) {
        engine.Run(std::string("CREATE OR REPLACE TABLE kept.t(v) AS ") + source + "; CHECKPOINT kept");
        EXPECT_EQ(Trees(engine, source), Trees(engine, "FROM kept.t"));
    }
    engine.Run("DETACH kept");
    // Where a VARIANT is one part of a column.
    const std::pair<const char*, const char*> nests[] = {
        {"[v, NULL, v]", "v[3]"}, {"MAP {'k': v}", "v['k']"}, {"array_value(v, v)", "v[2]"}, {"union_value(v := v)", "v.v"},
        {"{'a': v, 'b''c': [v], 'g': ['POINT (1 2)'::GEOMETRY, NULL], 'n': [1::BIGNUM]}", "v.\"b'c\"[1]"},
        {"[MAP {[1]: {'x': [v]}}]", "v[1][[1]].x[1]"},
    };
    for (const auto& [nest, part] : nests) {
        engine.Run(std::string("CREATE OR REPLACE TABLE n AS SELECT ") + nest + " AS v FROM every");
        CopyByLiterals("n");
        const std::string query = std::string("SELECT ") + part + " FROM ";
        EXPECT_EQ(Trees(engine, query + "n"), Trees(engine, query + "back")) << nest;
        EXPECT_EQ(Trees(engine, query + "n").size(), std::size(Variants));
    }
}

TEST_F(VariantTest, WhateverTheEngineMakesOfIt)
{
    // One value for all rows, rows picked out of many, parts of others, and stored ones taken apart by columns.
    engine.Run("CREATE TABLE many AS SELECT CASE WHEN range % 7 = 0 THEN NULL WHEN range % 5 > 0 THEN range::VARIANT ELSE "
               "{'a': range, 'b': 'x' || range, 'c': [range::DECIMAL(12,3), NULL], 'd': {'e': range::UINTEGER}}::VARIANT END AS v "
               "FROM range(3000)");
    for (const char* query : {"SELECT {'a': [1]}::VARIANT AS v FROM range(2100)", "SELECT v FROM many WHERE hash(v) % 3 = 0",
                              "FROM many ORDER BY v::VARCHAR", "SELECT variant_extract(v, 'd') FROM many WHERE variant_typeof(v) LIKE 'O%'",
                              "SELECT {'x': variant_extract(v, 'c'), 'y': v}::VARIANT FROM many WHERE variant_typeof(v) LIKE 'O%'"}) {
        engine.Run(std::string("CREATE OR REPLACE TABLE n(v) AS ") + query);
        CopyByLiterals("n");
        EXPECT_EQ(Trees(engine, "FROM n"), Trees(engine, "FROM back")) << query;
    }
}

TEST_F(VariantTest, TextsAreReadable)
{
    // What one would write, not more.
    const std::pair<const char*, const char*> texts[] = {
        {"5", "5::INTEGER::VARIANT"},
        {"-5::BIGINT", "'-5'::BIGINT::VARIANT"},
        {"'it''s'", "'it''s'::VARIANT"},
        {"[1, NULL, -2]", "[1, NULL, -2]::INTEGER[]::VARIANT"},
        {"{'a': 'x', 'b': [1.5, NULL], 'c': {'d': DATE '2020-01-01'}, 'e': []}",
         "{'a': 'x', 'b': ['1.5', NULL]::DECIMAL(2,1)[], 'c': {'d': '2020-01-01'::DATE}, 'e': []}::VARIANT"},
        {"[1::UTINYINT::VARIANT, 'x'::VARIANT, NULL]", "[1::UTINYINT::VARIANT, 'x'::VARIANT, NULL]::VARIANT"},
        {"'{\"a\": [1, \"it''s\"]}'::JSON", "'{\"a\":[1,\"it''s\"]}'::JSON::VARIANT"},
    };
    for (const auto& [value, text] : texts)
        EXPECT_EQ(Literals(engine, std::string("SELECT (") + value + ")::VARIANT"), std::vector<std::string>{text});
}

/// Damaged vectors end in an error, not in a value or outside of memory.
TEST_F(VariantTest, WhatIsNotInOrderIsRefused)
{
    const char sound[] = "[1::TINYINT::VARIANT, 'text'::VARIANT, '1.50'::DECIMAL(4,2)::VARIANT, "
                         "{'k': 2::INTEGER}::VARIANT]::VARIANT";
    const auto literal = [&](auto&& damage) {
        ResultHandle result;
        engine.Run(std::string("SELECT ") + sound, result);
        const ChunkHandle chunk = FetchChunk(result);
        const duckdb_vector vector = duckdb_data_chunk_get_vector(chunk.get(), 0);
        const Parts parts(vector);
        damage(parts, const_cast<char*>(ViewOf(DataOf<duckdb_string_t>(parts.data)[0]).data()));
        const CodePointTest all;
        const TypeHandle type(duckdb_vector_get_column_type(vector));
        LiteralColumn column(type.get(), all);
        column.SetVector(vector);
        std::string text;
        try {
            column.Append(text, 0);
        } catch (const xException&) {
            return std::string("refused");
        }
        return text;
    };
    EXPECT_EQ(literal([](const Parts&, char*) {}), sound);
    using Damage = void (*)(const Parts&, char*);
    const Damage damages[] = {
        [](const Parts& p, char*) { DataOf<std::uint8_t>(p.values[0])[1] = 34; },             // a type of the future
        [](const Parts& p, char*) { DataOf<std::uint32_t>(p.values[1])[1] = 1000; },          // bytes beyond the end
        [](const Parts& p, char*) { DataOf<std::uint8_t>(p.values[0])[4] = 12; },             // more than is left
        [](const Parts& p, char* d) { d[DataOf<std::uint32_t>(p.values[1])[2]] = '\x7F'; },   // a text that is too long
        [](const Parts& p, char* d) { d[DataOf<std::uint32_t>(p.values[1])[3]] = 39; },       // digits of a decimal
        [](const Parts& p, char* d) { d[DataOf<std::uint32_t>(p.values[1])[3] + 1] = 5; },
        [](const Parts& p, char* d) { std::fill_n(d + DataOf<std::uint32_t>(p.values[1])[2], 5, '\xFF'); }, // an endless number
        [](const Parts& p, char* d) { d[DataOf<std::uint32_t>(p.values[1])[0]] = 100; },      // items that are not there
        [](const Parts& p, char*) { DataOf<std::uint32_t>(p.children[1])[0] = 50; },
        [](const Parts& p, char*) { DataOf<std::uint32_t>(p.children[1])[0] = 0; },           // itself
        [](const Parts& p, char*) { DataOf<std::uint32_t>(p.children[0])[4] = 9; },           // keys
        [](const Parts& p, char*) { DataOf<std::uint8_t>(p.values[0])[0] = 29; },
        [](const Parts& p, char*) { DataOf<duckdb_list_entry>(p.lists[2])[0].length = 0; },   // nothing at all
        [](const Parts& p, char*) { DataOf<duckdb_list_entry>(p.lists[1])[0].length = 100; },
        [](const Parts& p, char*) { DataOf<duckdb_list_entry>(p.lists[0])[0].offset = 100; },
    };
    for (std::size_t i = 0; i < std::size(damages); ++i)
        EXPECT_EQ(literal(damages[i]), "refused") << i;
}

} // namespace
} // namespace nub::test
