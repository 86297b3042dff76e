// SPDX-License-Identifier: GPL-3.0-or-later
// Values in and out: what the grid shows, typed into another row, stores the
// very same value, and the row is found by it again.
#include "data/table_cursor_place.h"

#include "hf/sql_text.h"

namespace {

using namespace Qt::StringLiterals;

struct TypeCase
{
    const char* type;
    const char* values; ///< SQL expressions, a line each
};

const TypeCase Types[] = {
    {"BOOLEAN", "true\nfalse"},
    {"TINYINT", "-128\n127\n0"},
    {"SMALLINT", "-32768\n32767"},
    {"INTEGER", "-2147483648\n2147483647"},
    {"BIGINT", "-9223372036854775808\n9223372036854775807"},
    {"HUGEINT", "-170141183460469231731687303715884105728\n170141183460469231731687303715884105727\n0"},
    {"UTINYINT", "0\n255"},
    {"USMALLINT", "65535"},
    {"UINTEGER", "4294967295"},
    {"UBIGINT", "18446744073709551615\n9223372036854775808"},
    {"UHUGEINT", "340282366920938463463374607431768211455"},
    {"FLOAT", "0.1\n-0.0\n'nan'\n'inf'\n'-inf'\n3.4028235e38\n1.1754944e-38\n16777216"},
    {"DOUBLE", "0.1\n1e308\n5e-324\n'nan'\n'-inf'\n-0.0\n1/3\n1e16"},
    {"DECIMAL(4,1)", "-999.9\n0.0"},
    {"DECIMAL(18,3)", "123456789012345.678\n-0.001"},
    {"DECIMAL(38,10)", "-9999999999999999999999999999.9999999999\n0.0000000001"},
    {"DECIMAL(38,0)", "99999999999999999999999999999999999999"},
    {"VARCHAR", "''\n' '\n'NULL'\n'null'\n'a\tb'||chr(10)||'c'\n'it''s \"q\"'\n'🦆é'\n'\\x41'\n'$1'"},
    {"BLOB", "''\n'\\x00\\xFF'\n'a\\x5Cx41'\n'\\x22\\x27'"},
    {"BIT", "'0'\n'1010101010101'\n repeat('01', 100)"},
    {"UUID", "'a0eebc99-9c0b-4ef8-bb6d-6bb9bd380a11'\n'ffffffff-ffff-ffff-ffff-ffffffffffff'"},
    {"DATE", "'2024-02-29'\n'0044-03-15 (BC)'\n'infinity'\n'-infinity'\n'5881580-07-10'\n'5877642-06-25 (BC)'"},
    {"TIME", "'00:00:00'\n'23:59:59.999999'\n'24:00:00'"},
    {"TIME WITH TIME ZONE", "'12:34:56.5-05:30'\n'00:00:00+15:59:59'\n'24:00:00-15:59:59'"},
    {"TIMESTAMP", "'2024-02-29 23:59:59.999999'\n'0044-03-15 (BC) 01:02:03'\n'infinity'\n'-infinity'\n"
                  "'294247-01-10 04:00:54.775806'\n'290309-12-22 (BC) 00:00:00'"},
    {"TIMESTAMP_S", "'2024-02-29 23:59:59'\n'infinity'"},
    {"TIMESTAMP_MS", "'2024-02-29 23:59:59.999'\n'-infinity'"},
    {"TIMESTAMP_NS", "'2024-02-29 23:59:59.999999999'\n'1677-09-22 00:00:00.000000001'\n'2262-04-11 23:47:16.854775806'"},
    {"TIMESTAMP WITH TIME ZONE", "'2024-10-27 00:30:00+00'\n'2024-10-27 01:30:00+00'\n'0044-03-15 (BC) 01:02:03+00'\n"
                                 "'infinity'"},
    {"INTERVAL", "INTERVAL '1 year 2 months 3 days 04:05:06.789'\nINTERVAL '-1 month'\nINTERVAL '30 days'\n"
                 "INTERVAL '1 month'\nINTERVAL '-00:00:00.000001'\nINTERVAL '0 days'"},
    {"ENUM('sad', 'it''s \"x\"', '', 'NULL')", "'sad'\n'it''s \"x\"'\n''\n'NULL'"},
    {"JSON", "'{\"a\": [1, null, \"x\"]}'\n'null'\n'\"NULL\"'\n'  [1,  2]'\n'1e400'"},
    {"INTEGER[]", "[1, NULL, 3]\n[]\n[NULL]"},
    {"VARCHAR[]", "['a, b', NULL, 'NULL', 'it''s', 'q\"q', 'back\\slash', '', ' x ', '[1]', '{a}', 'line'||chr(10)||'two']"},
    {"TIMESTAMP[]", "['2024-02-29 23:59:59.999999', '-infinity', NULL]"},
    {"BLOB[]", "['\\x00\\x01'::BLOB, ''::BLOB]"},
    {"INTEGER[3]", "[1, NULL, 3]"},
    {"VARCHAR[][]", "[['a', 'b'], [], NULL, ['c,d']]"},
    {"STRUCT(a INTEGER, \"b c\" VARCHAR)", "{'a': 1, 'b c': 'x, y'}\n{'a': NULL, 'b c': 'NULL'}\n{'a': 0, 'b c': '}'}"},
    {"STRUCT(l INTEGER[], s STRUCT(d DATE))", "{'l': [1], 's': {'d': DATE '2020-01-01'}}"},
    {"STRUCT(a VARCHAR)[]", "[{'a': 'x'}, NULL, {'a': NULL}, {'a': 'it''s'}]"},
    {"MAP(VARCHAR, INTEGER)", "MAP {'k,1': 5, 'b=c': NULL}\nMAP {}"},
    {"MAP(INTEGER, VARCHAR[])", "MAP {1: ['a', 'b,c'], 2: NULL}"},
    {"UNION(n INTEGER, s VARCHAR)", "5::INTEGER\n'word'\n'x, y'"},
    {"UNION(\"a, b\" DECIMAL(4,1), d DATE, l INTEGER[])", "5.5::DECIMAL(4,1)\nDATE '2020-01-01'\n[1, 2]"},
};

/// Texts that are hard on whatever holds them.
const char HardTexts[] =
    "['a, b', 'NULL', 'null', '', ' x ', 'it''s', 'q\"q', '[1]', '{a}', '(b)', 'a:b', 'a=b', 'back\\slash', "
    "'line' || chr(10) || 'two', chr(39) || 'quoted' || chr(39), '\"dq\"', chr(9), ' ', 'a\\' || chr(39) || 'b', NULL]";

/// What holds texts; %1 is one of the above.
const TypeCase Holders[] = {
    {"VARCHAR[]", "[%1]\n[%1, %1]"},
    {"VARCHAR[][]", "[[%1], [], NULL]"},
    {"STRUCT(\"x y\" VARCHAR, \"q\"\"q\" VARCHAR, n INTEGER)", "{'x y': %1, 'q\"q': %1, 'n': 1}"},
    {"MAP(INTEGER, VARCHAR)", "MAP {1: %1, 2: 'x'}"},
    {"MAP(VARCHAR, VARCHAR)", "MAP {coalesce(%1, 'k'): %1}"},
    {"STRUCT(l VARCHAR[], m MAP(VARCHAR, VARCHAR))", "{'l': [%1], 'm': MAP {'k': %1}}"},
    {"STRUCT(a VARCHAR)[]", "[{'a': %1}, NULL]"},
    {"STRUCT(j JSON)", "{'j': to_json(%1)}"},
    {"MAP(VARCHAR, JSON)", "MAP {'k': to_json(%1)}"},
};

/// Types that not every engine has.
const TypeCase NewerTypes[] = {
    {"TIME_NS", "'12:34:56.123456789'\n'24:00:00'\n'00:00:00.000000001'"},
    {"TIME_NS[]", "['12:34:56.123456789'::TIME_NS]"},
    {"BIGNUM", "'123456789012345678901234567890123456789012345678901234567890'\n'-1'\n'0'"},
    {"GEOMETRY", "'POINT(1 2)'\n'POINT EMPTY'\n'POLYGON((0 0,1 0,1 1,0 0))'\n'POINT Z (1 2 3)'\n"
                 "'GEOMETRYCOLLECTION(POINT(1 2),LINESTRING(0 0,0.1 1e10))'"},
};

class TableValuesTest : public TableCursorTest
{
protected:
    void TypeBack(const TypeCase& each);
};

/// Shows the values of a type, types them into other rows, and finds rows by them.
void TableValuesTest::TypeBack(const TypeCase& each)
{
    SCOPED_TRACE(each.type);
    Run(u"CREATE OR REPLACE TABLE t(id INTEGER PRIMARY KEY, v %1, copy %1); CREATE OR REPLACE TABLE bare(v %1, n INTEGER)"_s.arg(
        QString::fromUtf8(each.type)));
    int count = 0;
    for (const QString& value : QString::fromUtf8(each.values).split(u'\n'))
        Run(u"INSERT INTO t(id, v) VALUES (%1, %2)"_s.arg(count++).arg(value));
    Run(u"INSERT INTO t VALUES (%1, NULL, NULL)"_s.arg(count++));
    ASSERT_TRUE(errors.isEmpty()) << errors.join(u'\n').toStdString();

    // Each value as text into the other column, and into a new row.
    const Cursor cursor = Open(u"t"_s);
    ASSERT_EQ(cursor->GetBufferedRowCount(), count);
    const Cursor bare = Open(u"bare"_s);
    for (int row = 0; row < count; ++row) {
        const auto shown = cursor->ValueAt(static_cast<unsigned long>(row), 1);
        const unsigned long added = bare->AddRecord();
        ASSERT_TRUE(bare->SetTextAt(added, 1, QString::number(row)));
        if (shown->get_IsNull())
            continue;
        ASSERT_TRUE(cursor->SetTextAt(static_cast<unsigned long>(row), 2, shown->get_String()));
        ASSERT_TRUE(bare->SetTextAt(added, 0, shown->get_String()));
    }
    HF::LSaveResult result = cursor->SaveEdits();
    ASSERT_TRUE(result.saved) << result.get_Error().toStdString();
    result = bare->SaveEdits();
    ASSERT_TRUE(result.saved) << result.get_Error().toStdString();
    // Hashes tell apart what only looks the same, such as -0.0 and 30 days.
    EXPECT_EQ(Column(u"SELECT id FROM t WHERE copy::VARCHAR IS DISTINCT FROM v::VARCHAR OR copy IS DISTINCT FROM v"_s), QString());
    EXPECT_EQ(Column(u"SELECT id FROM t FULL JOIN bare ON id = n WHERE bare.v::VARCHAR IS DISTINCT FROM t.v::VARCHAR "
                     "OR bare.v IS DISTINCT FROM t.v"_s),
              QString());
    if (QString::fromUtf8(each.type).startsWith(u"UNION"_s)) {
        EXPECT_EQ(Column(u"SELECT id FROM t WHERE union_tag(copy) IS DISTINCT FROM union_tag(v)"_s), QString());
    }

    // A row without a key is found by all its values; so is one with a changed cell by the old value.
    for (int row = 0; row < count; ++row)
        ASSERT_TRUE(bare->SetTextAt(static_cast<unsigned long>(row), 1, QString::number(row + 1000)));
    for (int row = 0; row < count; ++row)
        ASSERT_TRUE(cursor->SetNullAt(static_cast<unsigned long>(row), 1));
    result = bare->SaveEdits();
    EXPECT_TRUE(result.saved) << result.get_Error().toStdString();
    EXPECT_EQ(result.rows, count);
    result = cursor->SaveEdits();
    EXPECT_TRUE(result.saved) << result.get_Error().toStdString();
    EXPECT_EQ(Column(u"SELECT count(*) FROM t WHERE v IS NULL"_s), QString::number(count));
    EXPECT_TRUE(errors.isEmpty()) << errors.join(u'\n').toStdString();
    errors.clear();
}

TEST_F(TableValuesTest, WhatIsShownCanBeTypedBack)
{
    Run(u"SET TimeZone = 'Europe/Berlin'"_s);
    for (const TypeCase& each : Types)
        TypeBack(each);
}

TEST_F(TableValuesTest, HardTextsInsideOfOthersCanBeTypedBack)
{
    Run(u"CREATE TABLE texts AS SELECT unnest(%1) AS x, generate_subscripts(%1, 1) AS i"_s.arg(QString::fromUtf8(HardTexts)));
    const int count = Column(u"SELECT count(*) FROM texts"_s).toInt();
    ASSERT_EQ(count, 20);
    for (const TypeCase& each : Holders) {
        QStringList values;
        for (int i = 1; i <= count; ++i)
            values << QString::fromUtf8(each.values).replace(u"%1"_s, u"(SELECT x FROM texts WHERE i = %1)"_s.arg(i));
        const QByteArray all = values.join(u'\n').toUtf8();
        TypeBack({each.type, all.constData()});
    }
}

TEST_F(TableValuesTest, TypesOfNewerEngines)
{
    for (const TypeCase& each : NewerTypes) {
        Run(u"CREATE OR REPLACE TABLE t(v %1)"_s.arg(QString::fromUtf8(each.type)));
        const bool missing = !errors.isEmpty();
        errors.clear();
        if (!missing)
            TypeBack(each);
    }
}

/// Values of which the engine's text says too little.
TEST_F(TableValuesTest, WhatTheTextDoesNotTellIsReadOnly)
{
    const struct
    {
        const char* type;
        const char* value;
        bool editable;
    } cases[] = {
        {"VARCHAR[2]", "['a', 'b c']", true},
        {"VARCHAR[2]", "['a, b', 'c']", false},
        {"VARCHAR[2]", "['NULL', 'x']", false},
        {"VARCHAR[2]", "[NULL, 'x']", false},
        {"VARCHAR[1]", "['']", false},
        {"VARCHAR[1]", "[' x']", false},
        {"VARCHAR[1]", "['it''s']", false},
        {"VARCHAR[1]", "['a\\b']", false},
        {"VARCHAR[2]", "NULL", true},
        {"VARCHAR[2][2]", "[['a', 'b'], ['c', 'd']]", false},
        {"ENUM('a', 'b c', 'd, e')[2]", "['a', 'b c']", true},
        {"ENUM('a', 'b c', 'd, e')[2]", "['a', 'd, e']", false},
        {"INTEGER[2]", "[1, NULL]", true},
        {"DECIMAL(4,1)[2]", "[1.5, NULL]", true},
        {"TIMESTAMP WITH TIME ZONE[1]", "['2024-10-27 00:30:00+00']", true},
        {"INTEGER[2][2]", "[[1, 2], [3, NULL]]", true},
        {"STRUCT(a VARCHAR)[1]", "[{'a': 'it''s, x'}]", true},
        {"STRUCT(a VARCHAR[1])", "{'a': ['x']}", false},
        {"STRUCT(\"VARCHAR[1]\" INTEGER)", "{'VARCHAR[1]': 5}", true},
        {"ENUM('VARIANT', 'JSON[]')", "'VARIANT'", true},
        {"JSON[]", "['1'::JSON]", false},
        {"STRUCT(j JSON)", "{'j': '1'}", true},
        {"UNION(n INTEGER, s VARCHAR)", "'word'::VARCHAR", true},
        {"UNION(n INTEGER, s VARCHAR)[]", "['x'::VARCHAR]", false},
        {"MAP(INTEGER, UNION(n INTEGER, s VARCHAR))", "MAP {1: 5}", false},
        {"VARIANT", "42", false},
    };
    for (const auto& each : cases) {
        SCOPED_TRACE(std::string(each.type) + " " + each.value);
        Run(u"CREATE OR REPLACE TABLE t(id INTEGER PRIMARY KEY, v %1); INSERT INTO t SELECT 1, %2"_s.arg(
            QString::fromUtf8(each.type), QString::fromUtf8(each.value)));
        if (!errors.isEmpty()) {
            EXPECT_STREQ(each.type, "VARIANT") << errors.join(u'\n').toStdString();
            errors.clear();
            continue;
        }
        const Cursor cursor = Open(u"t"_s);
        EXPECT_EQ(cursor->get_TextRefusal(0, 1).isEmpty(), each.editable) << cursor->get_TextRefusal(0, 1).toStdString();
        EXPECT_EQ(cursor->SetTextAt(0, 1, u"x"_s), each.editable);
        EXPECT_EQ(cursor->IsCellEdited(0, 1), each.editable);
        cursor->RevertRow(0);
        const auto shown = cursor->ValueAt(0, 1);
        if (each.editable && !shown->get_IsNull()) { // the text is all of the value
            const unsigned long added = cursor->AddRecord();
            EXPECT_TRUE(cursor->SetTextAt(added, 0, u"2"_s));
            EXPECT_TRUE(cursor->SetTextAt(added, 1, shown->get_String()));
            EXPECT_TRUE(cursor->SaveEdits().saved) << cursor->get_LastError().toStdString();
            EXPECT_EQ(Column(u"SELECT count(*) FROM t WHERE v IS NOT DISTINCT FROM (SELECT v FROM t WHERE id = 1)"_s), u"2"_s);
        }
        EXPECT_TRUE(cursor->SetNullAt(0, 1));
        EXPECT_TRUE(shown->get_IsNull() || cursor->SaveEdits().saved) << cursor->get_LastError().toStdString();
        EXPECT_EQ(Column(u"SELECT v IS NULL FROM t WHERE id = 1"_s), u"true"_s);
        EXPECT_TRUE(errors.isEmpty()) << errors.join(u'\n').toStdString();
        errors.clear();
    }
}

TEST_F(TableValuesTest, AUnionKeepsTheMemberThatStandsThere)
{
    Run(u"CREATE TABLE t(id INTEGER PRIMARY KEY, v UNION(n INTEGER, \"s \"\"x\" VARCHAR)); "
        "INSERT INTO t VALUES (1, 7), (2, 'seven'), (3, NULL)"_s);
    const Cursor cursor = Open(u"t"_s);
    for (unsigned long row = 0; row < 3; ++row)
        ASSERT_TRUE(cursor->SetTextAt(row, 1, u"5"_s));
    ASSERT_TRUE(cursor->SaveEdits().saved) << cursor->get_LastError().toStdString();
    EXPECT_EQ(Column(u"SELECT string_agg(union_tag(v)::VARCHAR, '|' ORDER BY id) FROM t"_s), u"n|s \"x|n"_s);
    for (unsigned long row = 0; row < 3; ++row)
        ASSERT_TRUE(cursor->SetTextAt(row, 1, u"word"_s)); // which the number cannot hold
    ASSERT_TRUE(cursor->SaveEdits().saved) << cursor->get_LastError().toStdString();
    EXPECT_EQ(Column(u"SELECT count(*) FROM t WHERE v.\"s \"\"x\" = 'word'"_s), u"3"_s);
}

TEST_F(TableValuesTest, KeysOfEveryKind)
{
    for (const TypeCase& each : Types) {
        if (QString::fromUtf8(each.type).contains(u'[') || QString::fromUtf8(each.type).startsWith(u"STRUCT"_s)
            || QString::fromUtf8(each.type).startsWith(u"MAP"_s) || QString::fromUtf8(each.type).startsWith(u"UNION"_s)
            || QString::fromUtf8(each.type).startsWith(u"BIT"_s) || QString::fromUtf8(each.type).startsWith(u"INTERVAL"_s))
            continue; // the engine takes no such keys
        SCOPED_TRACE(each.type);
        Run(u"CREATE OR REPLACE TABLE t(k %1 PRIMARY KEY, n INTEGER)"_s.arg(QString::fromUtf8(each.type)));
        if (!errors.isEmpty()) {
            ADD_FAILURE() << errors.join(u'\n').toStdString();
            errors.clear();
            continue;
        }
        int count = 0;
        for (const QString& value : QString::fromUtf8(each.values).split(u'\n'))
            Run(u"INSERT INTO t VALUES (%2, %1)"_s.arg(count++).arg(value));
        const Cursor cursor = Open(u"t"_s);
        for (int row = 0; row < count; ++row)
            ASSERT_TRUE(cursor->SetTextAt(static_cast<unsigned long>(row), 1, u"-1"_s));
        const HF::LSaveResult result = cursor->SaveEdits();
        EXPECT_TRUE(result.saved) << result.get_Error().toStdString();
        EXPECT_EQ(Column(u"SELECT count(*) FROM t WHERE n = -1"_s), QString::number(count));
    }
}

TEST_F(TableValuesTest, TextsThatFitNotAreRefusedAndEmptyIsNotNull)
{
    Run(u"CREATE TABLE t(id INTEGER PRIMARY KEY, i INTEGER, s VARCHAR, d DATE, b BOOLEAN); INSERT INTO t VALUES (1, 1, 'x', '2020-01-01', true)"_s);
    const Cursor cursor = Open(u"t"_s);
    for (const auto& [column, text] : {std::pair(1, u"x"_s), {1, u""_s}, {1, u"1.5x"_s}, {3, u"2020-13-01"_s}, {4, u"perhaps"_s}}) {
        ASSERT_TRUE(cursor->SetTextAt(0, column, text));
        EXPECT_FALSE(cursor->SaveEdits().saved) << text.toStdString();
        cursor->RevertRow(0);
    }
    ASSERT_TRUE(cursor->SetTextAt(0, 2, QString()));
    ASSERT_TRUE(cursor->SetNullAt(0, 3));
    ASSERT_TRUE(cursor->SetBlank(0, 1));
    ASSERT_TRUE(cursor->SetBlank(0, 4));
    EXPECT_TRUE(cursor->SaveEdits().saved) << cursor->get_LastError().toStdString();
    EXPECT_EQ(Row(*cursor, 0), u"1|0||NULL|false"_s);
    EXPECT_EQ(Column(u"SELECT s = '' AND d IS NULL FROM t"_s), u"true"_s);
    // An expression is written as one.
    ASSERT_TRUE(cursor->SetValueAt(0, 1, rc::make<HF::LValueSqlExpression>(u"40 + 2"_s)));
    EXPECT_TRUE(cursor->SaveEdits().saved);
    EXPECT_EQ(Column(u"SELECT i FROM t"_s), u"42"_s);
}

} // namespace
