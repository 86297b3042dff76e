// SPDX-License-Identifier: GPL-3.0-or-later
// Holds every text of a value, and every type name, to the engine's own cast
// and typeof.
#include "engine_session.h"
#include "nub/value_classes.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <thread>

namespace nub::test {
namespace {

using orbsql::ChunkHandle;
using orbsql::ResultHandle;
using orbsql::RowReader;

std::string Show(const std::optional<std::string>& text)
{
    return text ? '"' + *text + '"' : "NULL";
}

/// Reads column x of the relation and compares each cell with the engine's
/// text of it; returns the rows.
idx_t Compare(EngineSession& engine, const std::string& relation)
{
    ResultHandle result;
    engine.Run("SELECT x, CAST(x AS VARCHAR) FROM (" + relation + ")", result);
    RowReader reader(result.get(), engine.Settings());
    EXPECT_EQ(reader.TypeName(0).ToUtf8(), engine.Ask("SELECT typeof(x) FROM (" + relation + ") LIMIT 1")) << relation;
    idx_t rows = 0, faults = 0;
    while (const ChunkHandle chunk = FetchChunk(result)) {
        reader.SetChunk(chunk.get());
        for (idx_t row = 0, count = duckdb_data_chunk_get_size(chunk.get()); row < count; ++row, ++rows) {
            const auto value = smart_ptr<I_Value>::adopt(reader.Read(0, row));
            std::optional<std::string> text;
            if (!value->get_IsNull())
                text = value->get_String().ToUtf8();
            const auto expected = EngineSession::Cell(chunk.get(), 1, row);
            if (text != expected && ++faults < 6)
                ADD_FAILURE() << relation << "\n  row " << rows << ": " << Show(text) << " but the engine says "
                              << Show(expected);
        }
        reader.SetChunk(nullptr);
    }
    EXPECT_GT(rows, 0u) << relation;
    EXPECT_EQ(faults, 0u) << relation;
    return rows;
}

/// Before 1.3, where texts of nested values take a longer way.
bool IsOldEngine()
{
    return !orbsql::Newer().vectorReferenceVector;
}

struct TypeCase
{
    const char* name;
    const char* type;
    std::vector<const char*> values; ///< SQL expressions that cast to the type
    const char* random = nullptr;    ///< expression over i and h, a random UBIGINT
    bool optional = false;           ///< not every engine has the type
};

std::ostream& operator<<(std::ostream& out, const TypeCase& c)
{
    return out << c.name;
}

const std::vector<TypeCase> Types = {
    {"Boolean", "BOOLEAN", {"true", "false"}, "h % 2 = 0"},
    {"TinyInt", "TINYINT", {"-128", "127", "0"}},
    {"SmallInt", "SMALLINT", {"-32768", "32767", "0"}},
    {"Integer", "INTEGER", {"-2147483648", "2147483647", "0"}},
    {"BigInt", "BIGINT", {"-9223372036854775808", "9223372036854775807", "0"}, "(h >> 1)::BIGINT - (h % 2)::BIGINT"},
    {"UTinyInt", "UTINYINT", {"0", "255"}},
    {"USmallInt", "USMALLINT", {"0", "65535"}},
    {"UInteger", "UINTEGER", {"0", "4294967295"}},
    {"UBigInt", "UBIGINT", {"0", "18446744073709551615"}, "h"},
    {"HugeInt", "HUGEINT",
     {"-170141183460469231731687303715884105728", "170141183460469231731687303715884105727", "0", "-1",
      "10000000000000000000", "-10000000000000000000", "18446744073709551616", "100000000000000000000000000000000000000"},
     "h::HUGEINT * (hash(h) >> 2)::HUGEINT * (CASE WHEN h % 2 = 0 THEN 1 ELSE -1 END)"},
    {"UHugeInt", "UHUGEINT", {"0", "'340282366920938463463374607431768211455'", "'18446744073709551615'"},
     "h::UHUGEINT * hash(h)::UHUGEINT"},
    {"Float", "FLOAT",
     {"0", "'-0.0'", "'inf'", "'-inf'", "'nan'", "'-nan'", "1e16", "1e15", "123456789", "16777216", "16777217", "0.1",
      "1e-4", "9.9999e-5", "1e-5", "3.4028235e38", "1e-45", "1.17549435e-38", "9999999", "1e10", "1e20", "-1.5"},
     "((h % 2000001)::DOUBLE - 1000000) * pow(10, ((h >> 32) % 76)::DOUBLE - 44)"},
    {"Double", "DOUBLE",
     {"0", "'-0.0'", "'inf'", "'-inf'", "'nan'", "'-nan'", "1e15", "1e16", "9999999999999998", "123456789012345678",
      "0.1", "1e-4", "0.00012345", "1e-5", "1.7976931348623157e308", "5e-324", "2.2250738585072014e-308", "1e100",
      "1e-100", "9007199254740993", "5e-5", "1e22", "1e23", "-123.456", "0.30000000000000004", "9.5e-5"},
     "((h % 9007199254740993)::DOUBLE - 4.5e15) * pow(10, (hash(h) % 630)::DOUBLE - 323)"},
    {"DoublePlain", "DOUBLE", {"1.5"}, "(h % 1000000007)::DOUBLE / 10000"},
    {"Date", "DATE",
     {"'1970-01-01'", "'infinity'", "'-infinity'", "'0044-03-15 (BC)'", "'0001-01-01'", "'0001-12-31 (BC)'",
      "'1970-01-01'::DATE - 2147483646", "'5881580-07-10'", "'2000-02-29'", "'1900-02-28'", "'9999-12-31'", "'10000-01-01'",
      "'0004-02-28 (BC)'", "'0005-02-29 (BC)'"},
     "'1970-01-01'::DATE + ((h % 8000000)::BIGINT - 4000000)::INTEGER"},
    {"Time", "TIME", {"'00:00:00'", "'24:00:00'", "'23:59:59.999999'", "'05:06:07.1'", "'12:00:00.000001'"},
     "'00:00:00'::TIME + to_microseconds((h % 86400000000)::BIGINT)"},
    {"TimeNs", "TIME_NS",
     {"'00:00:00'", "'24:00:00'", "'23:59:59.999999999'", "'05:06:07.1'", "'12:00:00.000001'", "'12:00:00.000000001'",
      "'12:00:00.123456780'"},
     nullptr, true},
    {"TimeTz", "TIMETZ",
     {"'00:00:00+00'", "'24:00:00+00'", "'12:34:56.5-05:30'", "'12:34:56+15:59:59'", "'12:34:56-15:59:59'",
      "'01:02:03.000004+00:00:12'", "'01:02:03-00:01'", "'23:59:59.999999+05:45'"}},
    {"Timestamp", "TIMESTAMP",
     {"'1970-01-01 00:00:00'", "'infinity'", "'-infinity'", "'290309-12-22 (BC) 00:00:00'",
      "'294247-01-10 04:00:54.775806'", "'0044-03-15 (BC) 12:34:56.7'", "'1969-12-31 23:59:59.999999'",
      "'2024-02-29 23:59:59.1'", "'10000-01-01 00:00:00'"},
     "make_timestamp((h >> 1)::BIGINT - 4611686018427387904)"},
    {"TimestampS", "TIMESTAMP_S",
     {"'1970-01-01 00:00:00'", "'infinity'", "'-infinity'", "'1969-12-31 23:59:59'", "'0044-03-15 (BC) 12:34:56'",
      "'294247-01-10 04:00:54'"},
     "make_timestamp((h >> 1)::BIGINT - 4611686018427387904)"},
    {"TimestampMs", "TIMESTAMP_MS",
     {"'1970-01-01 00:00:00'", "'infinity'", "'-infinity'", "'1969-12-31 23:59:59.999'", "'0044-03-15 (BC) 12:34:56.7'",
      "'2020-01-01 00:00:00.010'"},
     "make_timestamp((h >> 1)::BIGINT - 4611686018427387904)"},
    {"TimestampNs", "TIMESTAMP_NS",
     {"'1970-01-01 00:00:00'", "'infinity'", "'-infinity'", "'1969-12-31 23:59:59.999999999'",
      "'2262-04-11 23:47:16.854775806'", "'1677-09-22 00:00:00'", "'2020-01-01 00:00:00.1'",
      "'2020-01-01 00:00:00.000001'", "'2020-01-01 00:00:00.000000001'", "'2020-01-01 00:00:00.123456780'"},
     "make_timestamp_ns((h >> 1)::BIGINT - 4611686018427387904)"},
    {"TimestampTz", "TIMESTAMPTZ",
     {"'1970-01-01 00:00:00+00'", "'infinity'", "'-infinity'", "'0044-03-15 (BC) 12:34:56.7+00'",
      "'1969-12-31 23:59:59.999999+00'", "'294247-01-10 04:00:54.775806+00'", "'290309-12-22 (BC) 00:00:00+00'",
      "'1582-10-04 00:00:00+00'", "'1582-10-15 00:00:00+00'", "'2024-07-01 12:00:00+00'", "'1890-01-01 00:00:00+00'"},
     "make_timestamptz((h >> 1)::BIGINT - 4611686018427387904)"},
    {"Interval", "INTERVAL",
     {"'0 days'", "'1 year 2 months 3 days 04:05:06.789'", "'-1 year'", "'-1 month'", "'1 month'", "'-14 months'",
      "'1 day'", "'-1 day'", "'-2 days'", "'-00:00:00.000001'", "'100:00:00'", 
      "to_microseconds(-9223372036854775808)", "to_microseconds(9223372036854775807)", "to_months(-2147483648)",
      "to_months(2147483647)", "to_days(-2147483648)", "'1 month -1 day 00:00:00.1'"},
     "to_months((h % 1000)::INTEGER - 500) + to_days((hash(h) % 1000)::INTEGER - 500)"
     " + to_microseconds((h >> 1)::BIGINT - 4611686018427387904)"},
    {"Uuid", "UUID",
     {"'00000000-0000-0000-0000-000000000000'", "'ffffffff-ffff-ffff-ffff-ffffffffffff'",
      "'80000000-0000-0000-0000-000000000001'", "'12345678-9abc-def0-1234-56789abcdef0'"},
     "md5(h::VARCHAR)"},
    {"Bit", "BIT", {"'0'", "'1'", "'10101'", "'00000000'", "'111111111'", "'101010101010101010101010101010101010101'"},
     "(h >> 1)::BIGINT::BIT"},
    {"Blob", "BLOB", {"''", "'abc'", R"('\x00\xFF\x7F')", R"('''"\x5C ~')", "repeat('z', 300)"},
     "from_hex(md5(h::VARCHAR))"},
    {"Varchar", "VARCHAR",
     {"''", "'abc'", "'NULL'", "'null'", "'it''s'", R"('back\slash')", R"('dou"ble')", "' lead'", "'trail '", "'a,b'",
      "'a: b'", "'[x]'", "'{y}'", "'(z)'", "'a=b'", "'Grüße'", "'日本語'", "'😀🎉'", "'12345678901'", "'123456789012'",
      "'1234567890123'", "repeat('ä', 500)", "repeat('abc', 500)", "chr(10) || 'x' || chr(9)", "'é' || chr(0) || 'x'",
      "'aaaaaaaaaaaaaaaaaaaaé'"},
     "repeat(chr((h % 55000 + 32)::INTEGER), (h >> 40)::INTEGER % 40)"},
    {"Json", "JSON", {"'{}'", R"('{"a": [1, null, "x y"]}')", "'null'", "'\"text\"'", "'1.50'"}},
    {"EnumSmall", "ENUM('sad', 'it''s \"x\"', '', 'Ärger', 'NULL', 'a,b')",
     {"'sad'", "'it''s \"x\"'", "''", "'Ärger'", "'NULL'", "'a,b'"}},
    {"Dec4", "DECIMAL(4,2)", {"0", "-0.01", "99.99", "-99.99", "0.5", "1"}, "(h % 19999)::DECIMAL(18,0) / 100 - 99.99"},
    {"Dec4All", "DECIMAL(4,4)", {"0", "-0.0001", "0.9999", "-0.9999", "0.5"}},
    {"Dec1", "DECIMAL(1,1)", {"0", "0.5", "-0.9"}},
    {"Dec9", "DECIMAL(9,0)", {"0", "-1", "999999999", "-999999999"}},
    {"Dec9Scaled", "DECIMAL(9,3)", {"0", "-0.001", "999999.999"}},
    {"Dec18", "DECIMAL(18,3)", {"0", "-0.001", "999999999999999.999", "-999999999999999.999", "-1.5"},
     "((h >> 5)::BIGINT - 288230376151711744)::DECIMAL(18,0) / 1000"},
    {"Dec18All", "DECIMAL(18,18)", {"0", "'-0.000000000000000001'", "'0.999999999999999999'"}},
    {"Dec38", "DECIMAL(38,10)",
     {"0", "'-0.0000000001'", "'9999999999999999999999999999.9999999999'", "'-9999999999999999999999999999.9999999999'",
      "'1844674407.3709551616'", "'1000000000.0000000000'"},
     "((h >> 2)::HUGEINT * (hash(h) % 1000000)::HUGEINT)::DECIMAL(38,0) / 1000"},
    {"Dec38All", "DECIMAL(38,38)", {"0", "'-0.1'", "'0.99999999999999999999999999999999999999'"}},
    {"Dec38Whole", "DECIMAL(38,0)", {"0", "'99999999999999999999999999999999999999'", "'-1'"}},
    {"BigNum", "BIGNUM", {"'0'", "'-1'", "'123456789012345678901234567890123456789012345678901234567890'"}, nullptr,
     true},
    {"Variant", "VARIANT", {"1", "'text'", "[1, NULL]", "{'a': 1.5}"}, nullptr, true},
    {"Geometry", "GEOMETRY", {"'POINT (1 2)'", "'LINESTRING (0 0, 1 1.5)'"}, nullptr, true},
};

/// A relation of one column x with the case's values, a null and random values.
std::string Relation(EngineSession& engine, const TypeCase& c)
{
    std::string sql = "SELECT NULL::" + std::string(c.type) + " AS x";
    for (const char* value : c.values)
        sql += " UNION ALL SELECT CAST(" + std::string(value) + " AS " + c.type + ")";
    if (!c.random)
        return sql;
    const std::string random = std::string("SELECT CASE WHEN h % 13 = 0 THEN NULL ELSE CAST(") + c.random + " AS "
        + c.type + ") END FROM (SELECT i, hash(i) AS h FROM range(5000) r(i))";
    // An old engine may lack the function that makes them.
    return IsOldEngine() && !engine.Accepts(random) ? sql : sql + " UNION ALL " + random;
}

class ValueTextTest : public testing::TestWithParam<TypeCase>
{
protected:
    void SetUp() override
    {
        engine.Run("SET TimeZone = 'UTC'");
        if (GetParam().optional && !engine.Accepts("SELECT NULL::" + std::string(GetParam().type)))
            GTEST_SKIP() << "this engine has no such type";
        if (IsOldEngine() && GetParam().name == std::string("TimestampNs"))
            GTEST_SKIP() << "the engine's own cast breaks on fractions before 1970";
    }
    EngineSession engine;
};

TEST_P(ValueTextTest, FlatAsTheEngineCasts)
{
    Compare(engine, Relation(engine, GetParam()));
}

TEST_P(ValueTextTest, NestedAsTheEngineCasts)
{
    const std::string flat = Relation(engine, GetParam()) + " LIMIT 100";
    std::vector<const char*> shapes = {
             "[x, NULL, x]",
             "CASE WHEN x IS NULL THEN NULL ELSE [[x], [], NULL] END",
             "[x][2:]",
             "CASE WHEN x IS NULL THEN NULL ELSE CAST(MAP {} AS MAP(INTEGER, VARCHAR)) END",
             "array_value(x, NULL, x)",
             "{'k': x, 'a b': x, 'select': 1, 'q\"q': 1}",
             "union_value(k := x)",
             "[{'a': [x]}, NULL]",
             "{'a': {'b': map(['k', ''], [[x], NULL])}}",
             "map([1, 2], [{'l': [x, x]}, NULL])",
    };
    // No table of an old engine takes a record without names.
    if (!IsOldEngine())
        shapes.push_back("row(x, 'a')");
    for (const char* nested : shapes) {
        const std::string relation = std::string("SELECT ") + nested + " AS x FROM (" + flat + ")";
        if (GetParam().optional && !engine.Accepts("SELECT x, CAST(x AS VARCHAR) FROM (" + relation + ")"))
            continue;
        Compare(engine, relation);
    }
}

INSTANTIATE_TEST_SUITE_P(Types, ValueTextTest, testing::ValuesIn(Types),
                         [](const auto& info) { return std::string(info.param.name); });

TEST(ValueTextSettings, InstantsFollowZoneAndCalendar)
{
    const auto c = std::find_if(Types.begin(), Types.end(), [](auto& t) { return t.name == std::string("TimestampTz"); });
    EngineSession engine;
    for (const char* setting :
         {"SET TimeZone = 'America/New_York'", "SET TimeZone = 'Asia/Kathmandu'", "SET TimeZone = 'Etc/UTC'",
          "SET TimeZone = 'Africa/Monrovia'", "SET Calendar = 'japanese'", "SET TimeZone = 'UTC'"}) {
        engine.Run(setting);
        SCOPED_TRACE(setting);
        Compare(engine, Relation(engine, *c));
        Compare(engine, "SELECT {'t': [x]} AS x FROM (" + Relation(engine, *c) + ")");
    }
}

TEST(ValueTextColumns, LargeEnumsAndManyColumns)
{
    EngineSession engine;
    for (const char* count : {"300", "70000"}) {
        engine.Run("DROP TYPE IF EXISTS words");
        engine.Run(std::string("CREATE TYPE words AS ENUM (SELECT 'w' || i FROM range(") + count
                   + ") t(i) ORDER BY i)");
        Compare(engine, std::string("SELECT ('w' || i)::words AS x FROM range(") + count + ") t(i)");
    }
    // Columns that the engine formats stand between others, over several chunks.
    ResultHandle result;
    engine.Run("SELECT i, [i] AS l, 'v' || i AS v, {'s': i} AS s FROM range(5000) t(i)", result);
    RowReader reader(result.get(), engine.Settings());
    ASSERT_EQ(reader.ColumnCount(), 4);
    EXPECT_EQ(reader.Name(1).ToUtf8(), "l");
    EXPECT_EQ(reader.TypeName(3).ToUtf8(), "STRUCT(s BIGINT)");
    std::int64_t i = 0;
    while (const ChunkHandle chunk = FetchChunk(result)) {
        reader.SetChunk(chunk.get());
        for (idx_t row = 0; row < duckdb_data_chunk_get_size(chunk.get()); ++row, ++i) {
            const std::string n = std::to_string(i);
            const std::string expected[] = {n, "[" + n + "]", "v" + n, "{'s': " + n + "}"};
            for (int column = 0; column < 4; ++column)
                ASSERT_EQ(smart_ptr<I_Value>::adopt(reader.Read(column, row))->get_String().ToUtf8(), expected[column]);
        }
        reader.SetChunk(nullptr);
    }
    EXPECT_EQ(i, 5000);
}

TEST(ValueTextThreads, SessionsFormatBesideOneAnother)
{
    // All share the private database, each with a zone of its own.
    const char* const zones[] = {"UTC", "Asia/Kathmandu", "America/New_York"};
    std::vector<std::string> wrong(std::size(zones));
    std::vector<std::thread> threads;
    for (std::size_t i = 0; i < std::size(zones); ++i)
        threads.emplace_back([&, i] {
            EngineSession engine;
            engine.Run(std::string("SET TimeZone = '") + zones[i] + "'");
            for (int round = 0; round < 20; ++round) {
                ResultHandle result;
                engine.Run("SELECT x, x::VARCHAR FROM (SELECT {'t': TIMESTAMPTZ '2024-07-01 12:00:00+00'} AS x "
                           "FROM range(3000))", result);
                RowReader reader(result.get(), engine.Settings());
                while (const ChunkHandle chunk = FetchChunk(result)) {
                    reader.SetChunk(chunk.get());
                    for (idx_t row = 0; row < duckdb_data_chunk_get_size(chunk.get()); ++row) {
                        const auto text = smart_ptr<I_Value>::adopt(reader.Read(0, row))->get_String().ToUtf8();
                        if (text != *EngineSession::Cell(chunk.get(), 1, row))
                            wrong[i] = text;
                    }
                    reader.SetChunk(nullptr);
                }
            }
        });
    for (std::thread& thread : threads)
        thread.join();
    for (const std::string& text : wrong)
        EXPECT_EQ(text, "");
}

TEST(ValueKinds, EachTypeHasItsKernelType)
{
    EngineSession engine;
    const std::pair<const char*, int> kinds[] = {
        {"true", 2},         {"1::UTINYINT", 3},  {"1::TINYINT", 4},   {"1::SMALLINT", 4},     {"1::USMALLINT", 5},
        {"1::INTEGER", 8},   {"1::UINTEGER", 9},  {"1::BIGINT", 10},   {"1::UBIGINT", 11},     {"1::FLOAT", 12},
        {"1::DOUBLE", 13},   {"DATE '2020-01-02'", 16}, {"TIME '01:02:03'", 17}, {"'x'::BLOB", 21}, {"'x'", 19},
        {"1::DECIMAL(4,2)", 19}, {"1::HUGEINT", 19}, {"now()", 19}, {"TIMESTAMP '2020-01-01'", 19}, {"[1]", 19},
        {"INTERVAL 1 DAY", 19}, {"uuid()", 19},
    };
    for (const auto& [sql, kind] : kinds) {
        for (const bool isNull : {false, true}) {
            ResultHandle result;
            engine.Run(std::string("SELECT x FROM (SELECT ") + sql + " AS x UNION ALL SELECT NULL) WHERE x IS "
                           + (isNull ? "NULL" : "NOT NULL"), result);
            RowReader reader(result.get(), engine.Settings());
            const ChunkHandle chunk = FetchChunk(result);
            reader.SetChunk(chunk.get());
            const auto value = smart_ptr<I_Value>::adopt(reader.Read(0, 0));
            EXPECT_EQ(value->get_Type(), kind) << sql;
            EXPECT_EQ(value->get_IsNull(), isNull) << sql;
        }
    }
}

TEST(ValueObjects, AKeptValueIsNotFilledAgain)
{
    EngineSession engine;
    ResultHandle result;
    engine.Run("SELECT i::INTEGER, 'text ' || i FROM range(3000) t(i)", result);
    RowReader reader(result.get(), engine.Settings());
    std::vector<smart_ptr<I_Value>> kept;
    std::size_t number = 0;
    while (const ChunkHandle chunk = FetchChunk(result)) {
        reader.SetChunk(chunk.get());
        for (idx_t row = 0; row < duckdb_data_chunk_get_size(chunk.get()); ++row, ++number)
            for (int column = 0; column < 2; ++column) {
                auto value = smart_ptr<I_Value>::adopt(reader.Read(column, row));
                if (number % 3 == 0)
                    kept.push_back(std::move(value));
            }
        reader.SetChunk(nullptr);
    }
    ASSERT_EQ(kept.size(), 2000u);
    for (std::size_t i = 0; i < kept.size(); i += 2) {
        EXPECT_EQ(kept[i]->get_LLong(), static_cast<std::int64_t>(i / 2 * 3));
        EXPECT_EQ(kept[i + 1]->get_String().ToUtf8(), "text " + std::to_string(i / 2 * 3));
    }
    // Nobody kept the last one, so its object comes again.
    ResultHandle again;
    engine.Run("SELECT i FROM range(2) t(i)", again);
    RowReader second(again.get(), engine.Settings());
    const ChunkHandle chunk = FetchChunk(again);
    second.SetChunk(chunk.get());
    I_Value* const first = second.Read(0, 0);
    first->Release();
    const auto next = smart_ptr<I_Value>::adopt(second.Read(0, 1));
    EXPECT_EQ(next.get(), first);
    EXPECT_EQ(next->get_LLong(), 1);
}

TEST(ValueObjects, NumbersConvertOrAnswerZero)
{
    EXPECT_EQ(CreateValueLong(-5)->get_ULLong(), 0u);
    EXPECT_EQ(CreateValueULLong(~0ull)->get_LLong(), 0);
    EXPECT_EQ(CreateValueULLong(~0ull)->get_Double(), 0x1p64);
    EXPECT_EQ(CreateValueDouble(-2.9)->get_LLong(), -2);
    EXPECT_EQ(CreateValueDouble(0x1p63)->get_LLong(), 0);
    EXPECT_EQ(CreateValueDouble(0x1p63)->get_ULLong(), std::uint64_t(1) << 63);
    EXPECT_EQ(CreateValueDouble(std::nan(""))->get_LLong(), 0);
    EXPECT_TRUE(CreateValueByte(7)->get_Boolean());
    EXPECT_EQ(CreateValueLLong(42, true)->get_LLong(), 0);
    EXPECT_EQ(CreateValueLLong(42, true)->get_Type(), ValueType_LLong);
    EXPECT_EQ(CreateValueString(u"ab", 2)->get_Chars(), u"ab");
    EXPECT_EQ(CreateValueString(u"ab", 2)->get_LLong(), 0);
}

TEST(ValueObjects, BytesTravelThroughRawAccess)
{
    const auto value = CreateValueVarBinary(3);
    auto* raw = static_cast<I_RawData*>(value->QueryInterface(InterfaceId_RawData));
    ASSERT_TRUE(raw);
    EXPECT_EQ(value->get_ByteLength(), 3u);
    raw->CopyFrom("a\0b", 3);
    char bytes[4] = {1, 1, 1, 1};
    raw->CopyTo(bytes, 9);
    EXPECT_EQ(std::string(bytes, 4), std::string("a\0b\1", 4));
    EXPECT_EQ(value->get_String().ToUtf8(), R"(a\x00b)");
    EXPECT_FALSE(value->get_IsNull());
    EXPECT_TRUE(CreateValueVarBinary(0, true)->get_IsNull());
    EXPECT_FALSE(CreateValueVarBinary(0)->get_IsNull());
    EXPECT_EQ(CreateValueLong(1)->QueryInterface(InterfaceId_RawData), nullptr);
}

} // namespace
} // namespace nub::test
