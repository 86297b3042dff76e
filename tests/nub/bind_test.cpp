// SPDX-License-Identifier: GPL-3.0-or-later
#include "nub/database_fixture.h"

#include <cmath>
#include <functional>
#include <limits>

using namespace nub;
using namespace nub::test;
using Outline = std::vector<std::string>;

namespace {

ValueArray Values(std::vector<smart_ptr<I_Value>> list)
{
    ValueArray values;
    for (auto& value : list)
        values.Append(std::move(value));
    return values;
}

smart_ptr<I_Value> Text(std::u16string_view text)
{
    return CreateValueString(text.data(), static_cast<std::uint32_t>(text.size()));
}

smart_ptr<I_Value> Bytes(const std::string& bytes)
{
    auto value = CreateValueVarBinary(static_cast<std::uint32_t>(bytes.size()));
    static_cast<I_RawData*>(value->QueryInterface(InterfaceId_RawData))
        ->CopyFrom(bytes.data(), static_cast<std::uint32_t>(bytes.size()));
    return value;
}

} // namespace

TEST(Bind, EveryClassArrivesAsItsType)
{
    using std::numeric_limits;
    const DatabasePtr db = OpenMemory();
    const struct
    {
        smart_ptr<I_Value> value;
        const char* arrived;
    } cases[] = {
        {CreateValueBoolean(true), "BOOLEAN|true"},
        {CreateValueByte(255), "UTINYINT|255"},
        {CreateValueShort(-32768), "SMALLINT|-32768"},
        {CreateValueUShort(65535), "USMALLINT|65535"},
        {CreateValueMedium(-8388608), "INTEGER|-8388608"},
        {CreateValueUMedium(16777215), "UINTEGER|16777215"},
        {CreateValueLong(numeric_limits<std::int32_t>::min()), "INTEGER|-2147483648"},
        {CreateValueULong(4294967295u), "UINTEGER|4294967295"},
        {CreateValueLLong(numeric_limits<std::int64_t>::min()), "BIGINT|-9223372036854775808"},
        {CreateValueULLong(numeric_limits<std::uint64_t>::max()), "UBIGINT|18446744073709551615"},
        {CreateValueFloat(0.1f), "FLOAT|0.1"},
        {CreateValueDouble(0.1), "DOUBLE|0.1"},
        {CreateValueDouble(-std::numeric_limits<double>::infinity()), "DOUBLE|-inf"},
        {Text(u"gr\u00FC\u00DFe \U0001F986 'quoted' \u4E2D"), "VARCHAR|grüße 🦆 'quoted' 中"},
        {Text(u""), "VARCHAR|"},
        {Text(std::u16string_view(u"a\0b", 3)), "VARCHAR|a\\0b"},
        {Bytes(std::string("\0\x01\xFFz", 4)), "BLOB|\\x00\\x01\\xFFz"},
        {Bytes(""), "BLOB|"},
    };
    for (const auto& c : cases) {
        SCOPED_TRACE(c.arrived);
        const std::string cast = c.value->get_Type() == ValueType_String ? "replace(x, chr(0), '\\0')" : "CAST(x AS VARCHAR)";
        EXPECT_EQ(Ask(*db, "SELECT typeof(x), " + cast + " FROM (SELECT $1 AS x)", Values({c.value})), c.arrived);
    }
}

TEST(Bind, NullsOfEveryClass)
{
    const DatabasePtr db = OpenMemory();
    const smart_ptr<I_Value> nulls[] = {
        CreateValueBoolean(false, true), CreateValueByte(0, true), CreateValueShort(0, true), CreateValueUShort(0, true),
        CreateValueMedium(0, true), CreateValueUMedium(0, true), CreateValueLong(0, true), CreateValueULong(0, true),
        CreateValueLLong(0, true), CreateValueULLong(0, true), CreateValueFloat(0, true), CreateValueDouble(0, true),
        CreateValueString(nullptr, 0, true), CreateValueVarBinary(0, true)};
    Script(*db, "CREATE TABLE t(i INTEGER, s VARCHAR, b BLOB, d DATE)");
    for (const auto& null : nulls)
        EXPECT_EQ(Chain(*db, "INSERT INTO t VALUES ($1, $1, $1, $1)", std::make_unique<ValueArray>(Values({null})).get()), Outline{"1"})
            << null->get_Type();
    EXPECT_EQ(Ask(*db, "SELECT count(*), count(i), count(s), count(b), count(d) FROM t"), "14|0|0|0|0");
}

TEST(Bind, EachStatementTakesItsOwnLeadingValues)
{
    const DatabasePtr db = OpenMemory();
    const ValueArray binds = Values({CreateValueLong(1), Text(u"two"), CreateValueLong(3)});
    EXPECT_EQ(Chain(*db, "SELECT $1; SELECT ?, ?; SELECT 9; SELECT $2, $1, $3", &binds),
              (Outline{"[1]", "[1|two]", "[9]", "[two|1|3]"}));
    EXPECT_EQ(Chain(*db, "SELECT $a || '-' || $b", &binds), Outline{"[1-two]"});
    Script(*db, "CREATE TABLE t(a INTEGER, b VARCHAR, d DATE, n DECIMAL(9,2)); INSERT INTO t VALUES ($1, $2, '2020-02-29', $3)", binds);
    EXPECT_EQ(Ask(*db, "SELECT * FROM t WHERE a = $1 AND b = $2", binds), "1|two|2020-02-29|3.00");
    const ValueArray texts = Values({Text(u"12"), Text(u"x"), Text(u"2024-12-31"), Text(u"1.25")});
    Script(*db, "INSERT INTO t VALUES ($1, $2, $3, $4)", texts);
    EXPECT_EQ(Ask(*db, "SELECT * FROM t WHERE a = 12"), "12|x|2024-12-31|1.25");
}

TEST(Bind, WhatIsMissingOrWrongIsTheEnginesError)
{
    const DatabasePtr db = OpenMemory();
    Script(*db, "CREATE TABLE t(a INTEGER)");
    const struct
    {
        const char* text;
        ValueArray binds;
        const char* error;
    } cases[] = {
        {"SELECT $1, $2", {}, "Values were not provided for the following prepared statement parameters: 1, 2"},
        {"SELECT $1, $2", Values({nullptr, CreateValueLong(1)}), "Values were not provided for the following prepared statement parameters: 1"},
        {"SELECT $1, $2", Values({CreateValueLong(1)}), "Values were not provided for the following prepared statement parameters: 2"},
        {"INSERT INTO t VALUES ($1)", Values({Text(u"no number")}), "Could not convert string 'no number' to INT32"},
        {"INSERT INTO t VALUES ($1)", Values({CreateValueLLong(1LL << 40)}), "out of range"},
        {"SELECT $1 + 1", Values({Bytes("x")}), "BLOB"},
        {"SELECT 1 LIMIT $1", Values({Text(u"many")}), "many"},
    };
    for (const auto& c : cases) {
        SCOPED_TRACE(c.text);
        const ResultPtr result = Start(*db, c.text, &c.binds);
        ASSERT_TRUE(Failed(result));
        EXPECT_TRUE(Has(result->get_ErrorMessage().ToUtf8(), c.error)) << result->get_ErrorMessage().ToUtf8();
        EXPECT_TRUE(Has(Thrown([&] { Script(*db, c.text, c.binds); }), c.error));
        EXPECT_EQ(Ask(*db, "SELECT count(*) FROM t"), "0");
    }
}

TEST(Prepared, RunsAgainAndAgain)
{
    const DatabasePtr db = OpenMemory();
    Script(*db, "CREATE TABLE t(a INTEGER PRIMARY KEY, b VARCHAR)");
    const auto insert = smart_ptr<I_Statement>::adopt(db->Prepare(u"INSERT INTO t VALUES ($1, $2)"));
    insert->Finalize();
    for (int i = 0; i < 50; ++i) {
        const ValueArray binds = Values({CreateValueLong(i), i % 2 ? Text(u"odd") : CreateValueString(nullptr, 0, true)});
        insert->BindValues(&binds);
        const ResultPtr result = ResultPtr::adopt(insert->Execute(1));
        EXPECT_EQ(result->get_AffectedRows(), 1);
        EXPECT_EQ(result->get_Cursor(), nullptr);
        EXPECT_EQ(result->NextResult(), nullptr);
    }
    // Failures leave it as it was.
    EXPECT_TRUE(Has(Thrown([&] { insert->Execute(1); }), "Duplicate key"));
    insert->BindValues(nullptr);
    EXPECT_TRUE(Has(Thrown([&] { insert->Execute(1); }), "Values were not provided"));
    const ValueArray tooMany = Values({CreateValueLong(60), Text(u"x"), Text(u"y")});
    insert->BindValues(&tooMany);
    EXPECT_TRUE(Has(Thrown([&] { insert->Execute(1); }), "Can not bind to parameter number 3"));
    const ValueArray good = Values({CreateValueLong(60), Text(u"x")});
    insert->BindValues(&good);
    EXPECT_TRUE(ResultPtr::adopt(insert->Execute(1)));

    const auto select = smart_ptr<I_Statement>::adopt(db->Prepare(u"SELECT count(*) FROM t WHERE a > $1"));
    const ValueArray from = Values({CreateValueLong(39)});
    select->BindValues(&from);
    const auto first = ResultPtr::adopt(select->Execute(1));
    const auto firstCursor = CursorPtr::adopt(first->get_Cursor());
    const auto second = ResultPtr::adopt(select->Execute(1)); // the first result is still open
    const auto secondCursor = CursorPtr::adopt(second->get_Cursor());
    EXPECT_EQ(Drain(*secondCursor), "11");
    EXPECT_EQ(Drain(*firstCursor), "11");
    Script(*db, "ALTER TABLE t ADD COLUMN c INTEGER"); // the engine prepares anew
    const auto third = ResultPtr::adopt(select->Execute(1));
    const auto thirdCursor = CursorPtr::adopt(third->get_Cursor());
    EXPECT_EQ(Drain(*thirdCursor), "11");
}

TEST(Prepared, RefusesWhatItCannotPrepare)
{
    const DatabasePtr db = OpenMemory();
    EXPECT_TRUE(Has(Thrown([&] { db->Prepare(u"SELECT nosuch"); }), "Binder Error"));
    EXPECT_TRUE(Has(Thrown([&] { db->Prepare(u"SELEC 1"); }), "Parser Error"));
    EXPECT_TRUE(Has(Thrown([&] { db->Prepare(u"SELECT 1; SELECT 2"); }), "Only one statement"));
    EXPECT_TRUE(Has(Thrown([&] { db->Prepare(u" -- nothing"); }), "no statement"));
    const auto statement = smart_ptr<I_Statement>::adopt(db->Prepare(u"SELECT 1;"));
    db->Close();
    EXPECT_TRUE(Has(Thrown([&] { statement->Execute(1); }), "closed"));
    EXPECT_TRUE(Has(Thrown([&] { db->Prepare(u"SELECT 1"); }), "not open"));
}
