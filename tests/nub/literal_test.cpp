// SPDX-License-Identifier: GPL-3.0-or-later
// Values read as literals and written back are the same values, by the engine's own comparison and text.
#include "database_fixture.h"

#include "nub/orbsql/literal_column.h"

namespace nub::test {
namespace {

using Literals = smart_ptr<orbsql::I_LiteralRows>;

std::vector<std::string> ReadLiterals(I_DuckDBDatabase& database, const std::string& query,
                                      std::function<bool(char32_t)> canWrite = {})
{
    const auto rows = Literals::adopt(database.SelectLiterals(String::FromUtf8(query), std::move(canWrite)));
    std::vector<std::string> literals;
    while (rows->NextChunk())
        for (std::size_t row = 0; row < rows->get_RowCount(); ++row)
            rows->AppendCells(literals.emplace_back(), row, 0, rows->get_ColumnCount());
    return literals;
}

/// Writes the table's literals into a table of the same type; how many rows are not what they were.
std::string Differences(I_DuckDBDatabase& database, const std::string& table)
{
    Script(database, "CREATE OR REPLACE TABLE back AS FROM " + table + " LIMIT 0");
    std::string insert;
    for (const std::string& literal : ReadLiterals(database, "FROM " + table))
        insert += (insert.empty() ? "INSERT INTO back VALUES (" : ", (") + literal + ")";
    try {
        Script(database, insert);
    } catch (const xException& failure) {
        return failure.what() + ("\n" + insert.substr(0, 2000));
    }
    return Ask(database,
               "SELECT count(*) FROM " + table + " a POSITIONAL JOIN back b WHERE a.v IS DISTINCT FROM b.v OR "
               "CAST(a.v AS VARCHAR) IS DISTINCT FROM CAST(b.v AS VARCHAR) OR typeof(a.v) <> typeof(b.v)");
}

struct TypeCase
{
    const char* type;
    const char* values; ///< rows of VALUES, or a query
};

const TypeCase Cases[] = {
    {"BOOLEAN", "(true), (false), (NULL)"},
    {"TINYINT", "(-128), (127), (0), (NULL)"},
    {"SMALLINT", "(-32768), (32767)"},
    {"INTEGER", "(-2147483648), (2147483647)"},
    {"BIGINT", "(-9223372036854775808), (9223372036854775807), (NULL)"},
    {"UTINYINT", "(255)"},
    {"USMALLINT", "(65535)"},
    {"UINTEGER", "(4294967295)"},
    {"UBIGINT", "(18446744073709551615), (0)"},
    {"HUGEINT", "('-170141183460469231731687303715884105728'), ('170141183460469231731687303715884105727'), (1)"},
    {"UHUGEINT", "('340282366920938463463374607431768211455'), (0)"},
    {"FLOAT", "('inf'), ('-inf'), ('nan'), ('-0.0'), ('1e-45'), ('3.4028235e38'), (16777217), ('0.1'), (NULL)"},
    {"FLOAT", "SELECT (random() - 0.5) * pow(10, (random() * 76 - 38)::INTEGER) FROM range(3000)"},
    {"DOUBLE", "('inf'), ('-inf'), ('nan'), ('-0.0'), ('0.0'), ('5e-324'), ('1.7976931348623157e308'), (0.1), (1e15), "
               "(9007199254740993), (123456789.123456), (0.000001), (1e-5), (NULL)"},
    {"DOUBLE", "SELECT (random() - 0.5) * pow(10, (random() * 600 - 300)::INTEGER) FROM range(3000)"},
    {"DOUBLE", "SELECT round((random() - 0.5) * 1e9, (random() * 8)::INTEGER) FROM range(3000)"},
    {"DECIMAL(4,1)", "(-999.9), (0.1), (NULL)"},
    {"DECIMAL(18,3)", "(-999999999999999.999), (0.001), (0)"},
    {"DECIMAL(38,38)", "('0.12345678901234567890123456789012345678'), ('-0.00000000000000000000000000000000000001')"},
    {"DECIMAL(38,0)", "('99999999999999999999999999999999999999')"},
    {"VARCHAR", "(''), ('it''s'), ('\"'), ('NULL'), (NULL), ('a\nb\r\n\t'), ('$$'), ('\\'), ('E''\\n'''), (chr(0)), "
                "('x' || chr(0) || 'y' || chr(0)), ('Äß€😀'), (' '), ('--'), ('/*'), (';'), (repeat('x''', 5000))"},
    {"BLOB", "(''), ('\\x00\\xFF\\x27'::BLOB), (NULL), (repeat('\\xAB', 300)::BLOB)"},
    {"DATE", "('infinity'), ('-infinity'), ('0044-03-15 (BC)'), ('5881580-07-10'), ('5877642-06-25 (BC)'), "
             "('2020-02-29'), (NULL)"},
    {"TIME", "('24:00:00'), ('00:00:00'), ('23:59:59.999999'), ('12:00:00.5')"},
    {"TIMETZ", "('24:00:00-15:59:59'), ('00:00:00+15:59:59'), ('12:34:56.5-05:30')"},
    {"TIMESTAMP", "('infinity'), ('-infinity'), ('290309-12-22 (BC) 00:00:00'), ('294247-01-10 04:00:54.775806'), "
                  "('1970-01-01'), ('2020-01-01 12:34:56.789')"},
    {"TIMESTAMP_S", "('infinity'), ('290309-12-22 (BC) 00:00:00'), ('294247-01-10 04:00:54')"},
    {"TIMESTAMP_MS", "('-infinity'), ('290309-12-22 (BC) 00:00:00'), ('294247-01-10 04:00:54.775')"},
    {"TIMESTAMP_NS", "('infinity'), ('1677-09-22 00:00:00.000000001'), ('2262-04-11 23:47:16.854775806'), "
                     "('1969-12-31 23:59:59.999999999')"},
    {"TIMESTAMPTZ", "('infinity'), ('-infinity'), (make_timestamptz(9223372036854775806)), "
                    "(make_timestamptz(-9223372022400000000)), ('2020-01-01 12:34:56.789+05:30'), "
                    "('0001-01-01 00:00:00+00'), ('9999-12-31 23:59:59.999999+00'), (make_timestamptz(-62135596800000001))"},
    {"INTERVAL", "('1 year -2 days 00:00:00.000001'), ('0 days'), ('-1 months'), ('-00:00:01'), ('999999:59:59.999999'), "
                 "(to_months(2147483647) + to_days(2147483647) + to_microseconds(9223372036854775807)), "
                 "(to_months(-2147483648) + to_days(-2147483648) + to_microseconds(-9223372036854775808)), (NULL)"},
    {"UUID", "('00000000-0000-0000-0000-000000000000'), ('ffffffff-ffff-ffff-ffff-ffffffffffff'), "
             "('80000000-0000-0000-0000-000000000001')"},
    {"BIT", "('0'), ('1'), ('010101010'), ('1111111111111111'), (NULL)"},
    {"ENUM('sad', 'it''s \"x\"', '', 'ä')", "('it''s \"x\"'), ('sad'), (''), ('ä'), (NULL)"},
    {"JSON", "('{\"a\" : [1, 2, \"it''s\"]}'), ('null'), ('\"x\"'), (NULL)"},
    {"UNION(n INTEGER, s VARCHAR, \"o dd\" DATE)",
     "(union_value(n := 1)), (union_value(s := 'NULL')), (union_value(\"o dd\" := DATE '2020-01-01')), "
     "(union_value(s := NULL)), (NULL)"},
    {"STRUCT(\"x'y\" DOUBLE, \"a b\" STRUCT(c VARCHAR[]))",
     "({'x''y': 'nan', 'a b': {'c': ['it''s', NULL, '']}}), ({'x''y': NULL, 'a b': NULL}), (NULL)"},
    {"MAP(DATE, INTEGER[])", "(MAP {'2020-01-01': [1, NULL], 'infinity': []}), (MAP {}), (NULL), (MAP {'1970-01-01': NULL})"},
    {"INTEGER[2][]", "([[1, 2], NULL]), ([]), ([[NULL, 3]])"},
    {"VARCHAR[2]", "(['a, b', 'it''s']), ([NULL, 'NULL'])"},
};

class LiteralTest : public testing::Test
{
protected:
    void SetUp() override
    {
        Script(*database, "SELECT setseed(0.25)");
        // What the session shows is not what is written.
        Script(*database, "SET TimeZone = 'America/St_Johns'");
    }
    DatabasePtr database = OpenMemory();
};

TEST_F(LiteralTest, EveryValueComesBack)
{
    for (const TypeCase& each : Cases) {
        const std::string values = each.values;
        const bool isQuery = values.starts_with("SELECT");
        Script(*database, std::string("CREATE OR REPLACE TABLE t(v ") + each.type + "); INSERT INTO t "
                              + (isQuery ? values : "VALUES " + values));
        EXPECT_EQ(Differences(*database, "t"), "0") << each.type;
        // And so it is inside of everything that nests.
        for (const char* nest : {"[v, NULL, v]", "{'a': v, 'b''c': [v]}", "MAP {'k': v}", "array_value(v, v)",
                                 "union_value(v := v)", "[MAP {[1]: {'x': [v]}}]"}) {
            Script(*database, std::string("CREATE OR REPLACE TABLE n AS SELECT ") + nest + " AS v FROM t LIMIT 200");
            EXPECT_EQ(Differences(*database, "n"), "0") << each.type << " in " << nest;
        }
    }
}

TEST_F(LiteralTest, TypesThatOnlyTheEngineKnows)
{
    const std::pair<const char*, const char*> cases[] = {
        {"BIGNUM", "('123456789012345678901234567890123456789012345'), ('-5'), (NULL)"},
        {"TIME_NS", "('12:34:56.123456789'), ('00:00:00')"},
        {"GEOMETRY", "('POINT (1 2)'), ('LINESTRING Z (1 2 3, 4 5 6.25)'), (NULL)"},
    };
    int known = 0;
    for (const auto& [type, values] : cases) {
        if (Ask(*database, std::string("SELECT NULL::") + type) != "NULL")
            continue; // not in this engine
        Script(*database, std::string("CREATE OR REPLACE TABLE t(v ") + type + "); INSERT INTO t VALUES " + values);
        EXPECT_EQ(Differences(*database, "t"), "0") << type;
        ++known;
    }
    EXPECT_GT(known, 0);
}

TEST_F(LiteralTest, VariantsThatNoTextGives)
{
    const auto ascii = [](char32_t code) { return code < 0x80; };
    const auto literals = [&](const char* query) { return ReadLiterals(*database, query, ascii); };
    if (Has(Ask(*database, "CREATE TEMP TABLE t(v VARIANT)"), "Error"))
        GTEST_SKIP() << "this engine has no tables with VARIANT";
    EXPECT_EQ(literals("SELECT '{\"ä\": \"😀\"}'::JSON::VARIANT, 'ä'::VARIANT"),
              std::vector<std::string>{"'{\"\\u00e4\":\"\\ud83d\\ude00\"}'::JSON::VARIANT, chr(228)::VARIANT"});
    EXPECT_TRUE(Has(Thrown([&] { literals("SELECT 1 AS x, {'ä': 1}::VARIANT AS w"); }), "Column \"w\": "));
}

TEST_F(LiteralTest, TextsAreReadable)
{
    const std::pair<const char*, const char*> cases[] = {
        {"1, -5::BIGINT, 1.50, 'it''s', NULL", "1, -5, 1.50, 'it''s', NULL"},
        {"'\\x00\\xAB'::BLOB, ''::BLOB", "unhex( '00ab' ), unhex( '' )"},
        {"0.25::DOUBLE, 1e300::DOUBLE, 0.5::FLOAT", "0.25, '1e+300', '0.5'"},
        {"[1, NULL], {'a': 'x'}, MAP {1: 'y'}", "[1, NULL], {'a': 'x'}, MAP {1: 'y'}"},
        {"'a' || chr(0) || 'b'", "'a' || chr(0) || 'b'"},
        {"[chr(0)], [chr(0) || 'x']", "[chr(0)], [(chr(0) || 'x')]"},
        {"TIMESTAMPTZ '2020-01-01 00:00:00+02'", "'2019-12-31 22:00:00+00'"},
    };
    for (const auto& [query, literals] : cases)
        EXPECT_EQ(ReadLiterals(*database, std::string("SELECT ") + query), std::vector<std::string>{literals});
    // Characters that the file's encoding lacks.
    const auto ascii = [](char32_t code) { return code < 0x80; };
    EXPECT_EQ(ReadLiterals(*database, "SELECT 'aäb😀', 'x'", ascii),
              std::vector<std::string>{"'a' || chr(228) || 'b' || chr(128512), 'x'"});
}

TEST_F(LiteralTest, BytesAndFailures)
{
    Script(*database, "CREATE TABLE t AS SELECT '\\x01\\x00'::BLOB AS b, ['x'::BLOB] AS l UNION ALL SELECT NULL, NULL");
    const auto rows = Literals::adopt(database->SelectLiterals(u"FROM t", {}));
    EXPECT_TRUE(rows->IsBytes(0));
    EXPECT_FALSE(rows->IsBytes(1));
    ASSERT_TRUE(rows->NextChunk());
    EXPECT_EQ(rows->GetBytes(0, 0), std::string_view("\1\0", 2));
    EXPECT_FALSE(rows->GetBytes(0, 1));
    EXPECT_FALSE(rows->NextChunk());
    EXPECT_TRUE(Has(Thrown([&] { database->SelectLiterals(u"FROM nosuch", {}); }), "nosuch"));
    EXPECT_TRUE(Has(Thrown([&] { database->SelectLiterals(u"CREATE TABLE x(i INTEGER)", {}); }), "no rows"));
}

TEST_F(LiteralTest, AFurtherSessionSeesItsOwnState)
{
    Script(*database, "CREATE TABLE t(i INTEGER); INSERT INTO t VALUES (1); CREATE TEMP TABLE mine(i INTEGER)");
    const auto further = DatabasePtr::adopt(database->OpenFurther());
    Script(*further, "BEGIN");
    EXPECT_EQ(Ask(*further, "FROM t"), "1");
    Script(*database, "INSERT INTO t VALUES (2); CREATE TABLE later(i INTEGER)");
    EXPECT_EQ(Ask(*further, "FROM t"), "1");
    EXPECT_EQ(Ask(*further, "SELECT count(*) FROM duckdb_tables()"), "1");
    Script(*further, "COMMIT; SET TimeZone = 'Asia/Tokyo'");
    EXPECT_EQ(Ask(*further, "SELECT count(*) FROM t"), "2");
    further->Close();
    EXPECT_EQ(Ask(*database, "SELECT count(*) FROM t"), "2");
    EXPECT_EQ(Ask(*database, "SELECT current_setting('TimeZone')"), "America/St_Johns");
    database->Close();
    EXPECT_TRUE(Has(Thrown([&] { database->OpenFurther(); }), "not open"));
}

} // namespace
} // namespace nub::test
