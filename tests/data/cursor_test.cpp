// SPDX-License-Identifier: GPL-3.0-or-later
#include "support/database_place.h"

#include "data/cursor.h"
#include "nub/value_classes.h"

#include <thread>

namespace {

using CursorTest = support::DatabasePlace;
using namespace Qt::StringLiterals;

struct TypeCase
{
    const char* sql;
    const std::type_info& valueClass;
    const char* text;
    HF::ELFieldType fieldType;
};

TEST_F(CursorTest, EveryTypeComesThroughAsItsValueClass)
{
    const TypeCase cases[] = {
        {"TRUE", typeid(HF::LValueBoolean), "true", HF::FIELD_BOOLEAN},
        {"255::UTINYINT", typeid(HF::LValueUInt8), "255", HF::FIELD_SMALLINT},
        {"(-128)::TINYINT", typeid(HF::LValueInt16), "-128", HF::FIELD_SMALLINT},
        {"(-32768)::SMALLINT", typeid(HF::LValueInt16), "-32768", HF::FIELD_SMALLINT},
        {"65535::USMALLINT", typeid(HF::LValueUInt16), "65535", HF::FIELD_SMALLINT},
        {"(-2147483648)::INTEGER", typeid(HF::LValueInt32), "-2147483648", HF::FIELD_INTEGER},
        {"4294967295::UINTEGER", typeid(HF::LValueUInt32), "4294967295", HF::FIELD_INTEGER},
        {"(-9223372036854775808)::BIGINT", typeid(HF::LValueInt64), "-9223372036854775808", HF::FIELD_BIGINT},
        {"18446744073709551615::UBIGINT", typeid(HF::LValueUInt64), "18446744073709551615", HF::FIELD_BIGINT},
        {"0.1::FLOAT", typeid(HF::LValueFloat), "0.1", HF::FIELD_FLOAT},
        {"0.1::DOUBLE", typeid(HF::LValueDouble), "0.1", HF::FIELD_DOUBLE},
        {"'-inf'::DOUBLE", typeid(HF::LValueDouble), "-inf", HF::FIELD_DOUBLE},
        {"DATE '2024-02-29'", typeid(HF::LValueDate), "2024-02-29", HF::FIELD_DATE},
        {"DATE 'infinity'", typeid(HF::LValueString), "infinity", HF::FIELD_DATE},
        {"DATE '0044-03-15 (BC)'", typeid(HF::LValueString), "0044-03-15 (BC)", HF::FIELD_DATE},
        {"TIME '12:34:56.000001'", typeid(HF::LValueTime), "12:34:56.000001", HF::FIELD_TIME},
        {"TIME '24:00:00'", typeid(HF::LValueString), "24:00:00", HF::FIELD_TIME},
        {"TIMESTAMP '2024-01-02 03:04:05.123456'", typeid(HF::LValueString), "2024-01-02 03:04:05.123456",
         HF::FIELD_TIMESTAMP},
        {"12345678901234567.891::DECIMAL(20,3)", typeid(HF::LValueString), "12345678901234567.891", HF::FIELD_DECIMAL},
        {"170141183460469231731687303715884105727::HUGEINT", typeid(HF::LValueString),
         "170141183460469231731687303715884105727", HF::FIELD_BIGINT},
        {"'a\xc3\xa4\xf0\x9f\xa6\x86 and more than fifteen'", typeid(HF::LValueString),
         "a\xc3\xa4\xf0\x9f\xa6\x86 and more than fifteen", HF::FIELD_VARCHAR},
        {"''", typeid(HF::LValueString), "", HF::FIELD_VARCHAR},
        {"'\\x00\\xFF'::BLOB", typeid(HF::LValueByteArray), "\\x00\\xFF", HF::FIELD_BLOB},
        {"UUID '6b3a5f3e-0000-4000-8000-00000000000a'", typeid(HF::LValueString),
         "6b3a5f3e-0000-4000-8000-00000000000a", HF::FIELD_UUID},
        {"'1011'::BIT", typeid(HF::LValueString), "1011", HF::FIELD_BIT},
        {"INTERVAL 90 MINUTE", typeid(HF::LValueString), "01:30:00", HF::FIELD_INTERVAL},
        {"'x'::ENUM('x','y(z')", typeid(HF::LValueString), "x", HF::FIELD_ENUM},
        {"{'k': [1, NULL]}", typeid(HF::LValueString), "{'k': [1, NULL]}", HF::FIELD_STRUCT},
        {"MAP {'a': 1}", typeid(HF::LValueString), "{a=1}", HF::FIELD_MAP},
        {"[1, 2]", typeid(HF::LValueString), "[1, 2]", HF::FIELD_UNKNOWN},
        {"'{\"a\":1}'::JSON", typeid(HF::LValueString), "{\"a\":1}", HF::FIELD_JSON},
    };
    for (const TypeCase& each : cases) {
        SCOPED_TRACE(each.sql);
        const auto cursor = Select(u"SELECT "_s + QString::fromUtf8(each.sql) + u" AS c"_s);
        ASSERT_TRUE(cursor);
        const rc::Ptr<HF::I_LField> field = cursor->get_Field(0);
        const HF::I_LSqlValue& value = *field->get_Value();
        EXPECT_TRUE(typeid(value) == each.valueClass) << typeid(value).name();
        EXPECT_EQ(field->get_String(), QString::fromUtf8(each.text));
        EXPECT_EQ(field->get_Type().Force(), each.fieldType);
    }
}

TEST_F(CursorTest, NullIsNoEmptyValue)
{
    const auto cursor = Select(u"SELECT * FROM (VALUES (NULL::BLOB, NULL::VARCHAR, NULL::DATE, NULL::INTEGER), "
                               "(''::BLOB, '', DATE '2020-01-01', 0)) v(b, s, d, i)"_s);
    ASSERT_TRUE(cursor);
    for (int i = 0; i < 4; ++i) {
        cursor->FirstRecord();
        EXPECT_TRUE(cursor->get_Field(i)->get_IsNull()) << i;
        cursor->NextRecord();
        EXPECT_FALSE(cursor->get_Field(i)->get_IsNull()) << i;
    }
    EXPECT_EQ(cursor->get_Field(u"b"_s)->get_Data(), QByteArray(""));
    EXPECT_FALSE(cursor->get_Field(u"b"_s)->get_Data().isNull() && cursor->get_Field(u"b"_s)->get_IsNull());
    // Past the end everything is empty, and nothing breaks.
    cursor->put_Position(2);
    EXPECT_TRUE(cursor->get_Field(1)->get_IsNull());
    cursor->put_Position(~0ul);
    EXPECT_TRUE(cursor->get_Field(1)->get_IsNull());
}

/// A kernel cursor with rows made up by the test.
class FakeRows final : public nub::orbsql::I_Cursor
{
public:
    std::vector<nub::String> names;
    std::vector<std::vector<nub::smart_ptr<nub::I_Value>>> rows;
    int failingRow = -1, failingColumn = -1;

    void AddRef() const noexcept override { ++m_count; }
    void Release() const noexcept override
    {
        if (--m_count == 0)
            delete this;
    }
    int get_ColumnCount() const override { return int(names.size()); }
    nub::String get_ColumnName(int column) const override { return names[std::size_t(column)]; }
    nub::String get_ColumnTypeName(int) const override { return u"enum('a')"; }
    bool NextRow() override { return ++m_row < int(rows.size()); }
    nub::I_Value* get_Value(int column) override
    {
        nub::I_Value* value = &PeekValue(column);
        value->AddRef();
        return value;
    }
    nub::I_Value& PeekValue(int column) override
    {
        if (m_row == failingRow && column == failingColumn)
            throw nub::xException("cell is broken");
        return *rows[std::size_t(m_row)][std::size_t(column)];
    }
    bool First() override { return false; }
    bool Next() override { return false; }
    nub::orbsql::I_Field* get_Field(int) override { return nullptr; }

private:
    mutable int m_count = 1;
    int m_row = -1;
};

QString Row(HF::I_LCursor& cursor)
{
    QStringList cells;
    for (int i = 0; i < cursor.get_FieldCount().Force(); ++i)
        cells << (cursor.get_Field(i)->get_IsNull() ? u"NULL"_s : cursor.get_Field(i)->get_String());
    return cells.join(u' ');
}

TEST_F(CursorTest, ColumnsWithoutNameShiftTheCells)
{
    auto* rows = new FakeRows;
    rows->names = {u"a", u"", u"c", u"d"};
    rows->rows = {{nub::CreateValueLong(1), nub::CreateValueLong(2), nub::CreateValueLong(3), nub::CreateValueLong(4)}};
    const auto cursor = orbDuckDB_Cursor::Make(u"q"_s, connection, nub::smart_ptr<nub::orbsql::I_Cursor>::adopt(rows));
    EXPECT_EQ(cursor->get_FieldCount().Force(), 3);
    EXPECT_EQ(cursor->get_Field(1)->get_Name(), u"c"_s);
    EXPECT_EQ(Row(*cursor), u"1 2 3"_s);
}

TEST_F(CursorTest, KernelTypesOutsideTheTable)
{
    const char16_t text[] = u"2024-01-02 03:04:05";
    auto* rows = new FakeRows;
    rows->names = {u"medium", u"stamp"};
    rows->rows = {{nub::CreateValueMedium(5), nub::smart_ptr<nub::I_Value>::adopt(
                                                  new nub::Value_Text<nub::ValueType_DateTime>(std::u16string(text)))},
                  {nub::CreateValueMedium(5), nub::smart_ptr<nub::I_Value>::adopt(
                                                  new nub::Value_Text<nub::ValueType_DateTime>(u"infinity"))}};
    const auto cursor = orbDuckDB_Cursor::Make(u"q"_s, connection, nub::smart_ptr<nub::orbsql::I_Cursor>::adopt(rows));
    const auto medium = cursor->get_Field(0)->get_Value();
    EXPECT_FALSE(medium->get_IsNull());
    EXPECT_EQ(medium->get_String(), QString());
    // "enum('a')" in lower case keeps its bracket, and so names no type.
    EXPECT_EQ(cursor->get_Field(0)->get_Type().Force(), HF::FIELD_UNKNOWN);
    const auto stamp = rc::cast<HF::LValueDateTime>(cursor->get_Field(1)->get_Value());
    ASSERT_TRUE(stamp);
    EXPECT_TRUE(stamp->get_DateTime().isValid());
    cursor->NextRecord();
    const auto beyond = rc::cast<HF::LValueDateTime>(cursor->get_Field(1)->get_Value());
    ASSERT_TRUE(beyond);
    EXPECT_FALSE(beyond->get_DateTime().isValid());
    EXPECT_EQ(beyond->get_String(), u"infinity"_s);
}

TEST_F(CursorTest, ARowCutShortLeavesLaterColumnsShorter)
{
    auto* rows = new FakeRows;
    rows->names = {u"a", u"b"};
    rows->rows = {{nub::CreateValueLong(1), nub::CreateValueLong(2)}, {nub::CreateValueLong(3), nub::CreateValueLong(4)}};
    rows->failingRow = 1, rows->failingColumn = 1;
    const auto cursor = orbDuckDB_Cursor::Make(u"q"_s, connection, nub::smart_ptr<nub::orbsql::I_Cursor>::adopt(rows));
    EXPECT_EQ(errors, QStringList{u"cell is broken"_s});
    EXPECT_FALSE(cursor->get_Connection());
    EXPECT_EQ(cursor->get_RecordCount().Force(), 2ul);
    EXPECT_EQ(Row(*cursor), u"1 2"_s);
    cursor->NextRecord();
    EXPECT_EQ(Row(*cursor), u"3 NULL"_s);
}

TEST_F(CursorTest, NavigationAndLookUp)
{
    const auto cursor = Select(u"SELECT i AS x, i * 10 AS X, i AS y FROM range(3) t(i)"_s);
    ASSERT_TRUE(cursor);
    EXPECT_EQ(cursor->get_RecordCount().Force(), 3ul);
    EXPECT_EQ(cursor->get_Field(u"X"_s).get(), cursor->get_Field(0).get());
    EXPECT_FALSE(cursor->get_Field(u"nosuch"_s));
    EXPECT_FALSE(cursor->get_Field(-1));
    EXPECT_FALSE(cursor->get_Field(3));
    QStringList seen;
    for (bool more = cursor->FirstRecord(); more; more = cursor->NextRecord())
        seen << cursor->get_Field(1)->get_String();
    EXPECT_EQ(seen.join(u' '), u"0 10 20"_s);
    EXPECT_EQ(cursor->get_Field(1)->get_Name(), cursor->get_Column(1)->get_Name());

    const auto empty = Select(u"SELECT 1 AS a WHERE FALSE"_s);
    EXPECT_EQ(empty->get_FieldCount().Force(), 1);
    EXPECT_FALSE(empty->FirstRecord());
}

TEST_F(CursorTest, ColumnsOutliveTheCursor)
{
    rc::Ptr<HF::I_LField> field;
    {
        const auto cursor = Select(u"SELECT 7 AS a"_s);
        field = cursor->get_Field(0);
    }
    EXPECT_EQ(field->get_String(), u"7"_s);
    EXPECT_FALSE(field->get_Owner());
    EXPECT_FALSE(field->IsPK().Force());
}

TEST_F(CursorTest, AFailureWhileReadingKeepsTheRowsSoFar)
{
    const QList<HF::LQueryResult> results =
        Run(u"SELECT CASE WHEN i < 100000 THEN 1 ELSE error('broken') END AS a FROM range(300000) t(i)"_s);
    if (!results.last().Cursor) {
        // The engine may find out before it hands the first row over.
        EXPECT_TRUE(results.last().Error.contains(u"broken"_s));
        return;
    }
    EXPECT_FALSE(results.last().Cursor->get_Connection());
    ASSERT_FALSE(errors.isEmpty());
    EXPECT_TRUE(errors.last().contains(u"broken"_s));
    EXPECT_LE(results.last().Cursor->get_RecordCount().Force(), 100000ul);
}

TEST_F(CursorTest, EditsWithoutASourceStayPending)
{
    Run(u"CREATE TABLE t(k INTEGER, \"a b\" VARCHAR, n INTEGER); INSERT INTO t VALUES (1,'x',10),(2,'y',20)"_s);
    const auto cursor = Select(u"SELECT * FROM t ORDER BY k"_s);
    ASSERT_TRUE(cursor);
    const auto column = [&](int i) { return static_cast<orbDuckDB_Field*>(cursor->get_Field(i).get()); };
    EXPECT_EQ(cursor->UpdateRecord(), QString());
    cursor->put_Position(1);
    column(1)->SetString(u"new"_s);
    EXPECT_TRUE(cursor->get_IsDirty());
    // Without a source there is no table to write to.
    EXPECT_EQ(cursor->UpdateRecord(), QString());
    EXPECT_TRUE(cursor->get_IsDirty());

    cursor->DiscardChanges();
    EXPECT_FALSE(cursor->get_IsDirty());
    column(0)->SetString(u"5"_s);
    EXPECT_TRUE(column(0)->get_IsDirty());
    EXPECT_EQ(column(0)->get_String(), u"2"_s) << "a read-only column shows what was read";
    column(0)->Revert();
    EXPECT_FALSE(column(0)->get_IsDirty());
}

TEST_F(CursorTest, EditsReachTheTableTheyCameFrom)
{
    class Messages : public HF::I_LLog
    {
    public:
        QStringList lines;
        void Log(int level, const QString& text) override { lines << u"%1 %2"_s.arg(level).arg(text); }
    };
    Run(u"CREATE SCHEMA \"s t\"; CREATE TABLE \"s t\".t(k INTEGER, \"a b\" VARCHAR, n INTEGER);"
        "CREATE TABLE t AS FROM (VALUES (1,'x',10),(2,'y',20),(3,'z',30)) v(k, \"a b\", n);"
        "INSERT INTO \"s t\".t FROM t; CREATE TABLE \"o.d\" AS FROM t"_s);
    const std::pair<const char*, const char*> sources[] = {
        {"t", "t"}, {"main.t", "t"}, {"\"s t\".t", "\"s t\".t"}, {"o.d", "\"o.d\""}};
    for (const auto& [source, table] : sources) {
        SCOPED_TRACE(source);
        const QString name = QString::fromUtf8(table);
        Run(u"DELETE FROM %1; INSERT INTO %1 VALUES (1,'x',10),(2,'y',20),(3,'z',30)"_s.arg(name));
        const auto cursor = Select(u"SELECT * FROM %1 ORDER BY k"_s.arg(name));
        const auto column = [&](int i) { return static_cast<orbDuckDB_Field*>(cursor->get_Field(i).get()); };
        for (int i = 0; i < 3; ++i)
            column(i)->SetSource(QString::fromUtf8(source), column(i)->get_Name(), i == 0);
        cursor->put_Position(1);
        column(1)->SetString(u"it's"_s);
        column(2)->SetString(u"21"_s);
        EXPECT_EQ(cursor->UpdateRecord(), QString());
        EXPECT_FALSE(cursor->get_IsDirty());
        EXPECT_EQ(Column(u"SELECT \"a b\" || n FROM %1 ORDER BY k"_s.arg(name)), u"x10 it's21 z30"_s);

        const auto log = rc::make<Messages>();
        cursor->SetErrorLogger(log);
        cursor->put_Position(0);
        column(2)->SetNull();
        cursor->put_Position(2);
        column(2)->SetString(u"word"_s);
        cursor->SaveAllRecords();
        ASSERT_EQ(log->lines.size(), 2);
        EXPECT_TRUE(log->lines[0].startsWith(u"512 "_s) && log->lines[0].contains(u"$1 : NULL instead of: 10\n-- $2 : 1"_s))
            << log->lines[0].toStdString();
        EXPECT_TRUE(log->lines[1].startsWith(u"4 "_s) && log->lines[1].contains(u"Could not convert"_s));
        EXPECT_EQ(Column(u"SELECT n FROM %1 ORDER BY k"_s.arg(name)), u"NULL 21 30"_s);
        EXPECT_TRUE(cursor->get_IsDirty());
        const QString told = cursor->UpdateRecord();
        EXPECT_TRUE(told.contains(u"$1 : word instead of: 30\n-- $2 : 30"_s)) << told.toStdString();
    }
}

TEST_F(CursorTest, OffTheMainThreadACursorHasNoParent)
{
    Database();
    rc::Ptr<HF::I_LCursor> cursor;
    std::thread worker([&] {
        nub::OrbisThreadInit();
        cursor = Database().SqlSelect(u"SELECT 1 AS a"_s, 0, {}, 1, 2, 1);
        nub::OrbisThreadShutDown();
    });
    worker.join();
    ASSERT_TRUE(cursor);
    EXPECT_FALSE(cursor->get_ParentObject());
    EXPECT_EQ(Select(u"SELECT 1 AS a"_s)->get_ParentObject().get(), &Database());
}

TEST_F(CursorTest, ValuesCompareByTheirKind)
{
    const auto cursor = Select(u"SELECT 9 AS a, 10::BIGINT AS b, '9' AS c, NULL::INTEGER AS d, 9.0::DOUBLE AS e"_s);
    const auto compare = [&](int a, int b) { return cursor->get_Field(a)->Compare(*cursor->get_Field(b)); };
    EXPECT_LT(compare(0, 1), 0);
    EXPECT_GT(compare(1, 0), 0);
    EXPECT_EQ(compare(0, 4), 0);
    EXPECT_EQ(compare(0, 2), 0);
    EXPECT_LT(compare(3, 0), 0);
    EXPECT_EQ(compare(3, 3), 0);
}

} // namespace
