// SPDX-License-Identifier: GPL-3.0-or-later
#include "cli/json_writer.h"
#include "cli/table_rows.h"

#include "hf/values.h"

#include <QJsonArray>
#include <QJsonDocument>
#include <QJsonObject>

#include <gtest/gtest.h>

using namespace orbis;

namespace {

QJsonArray Parse(const QByteArray& document)
{
    QJsonParseError error;
    const QJsonDocument parsed = QJsonDocument::fromJson(document, &error);
    EXPECT_EQ(error.error, QJsonParseError::NoError) << error.errorString().toStdString() << document.toStdString();
    return parsed.array();
}

} // namespace

TEST(Json, EveryTextComesBack)
{
    QString all;
    for (int c = 1; c < 0x250; ++c)
        all += QChar(c);
    const QStringList texts{"", "\"", "\\", "a\"b\\c/d", "\b\f\n\r\t", QString(QChar(0)), "京😀", "\u2028", all};
    QList<QList<Cell>> rows;
    for (const QString& text : texts)
        rows.append({TextCell(text)});
    TableRows source({{"x\"\n", "VARCHAR", 20}}, rows);
    const QJsonArray document = Parse(Printed("json", {&source}));
    const QJsonObject result = document[0].toObject();
    EXPECT_EQ(result["columns"].toArray()[0].toObject()["name"].toString(), "x\"\n");
    for (int i = 0; i < texts.size(); ++i)
        EXPECT_EQ(result["rows"].toArray()[i].toArray()[0].toString(), texts[i]) << i;
}

TEST(Json, ShapeOfResults)
{
    TableRows rows({{"a", "INTEGER", 9}, {"b", "BLOB", 23}},
                   {{NumberCell("9223372036854775807"), BytesCell(QByteArray("\0\xFF", 2))}, {NullCell(), NullCell()}});
    TableRows empty({{"c", "BOOLEAN", 3}}, {});
    EXPECT_EQ(Printed("json", {&rows, nullptr, &empty}),
              "[{\"status\":1,\"affected\":0,\"error\":\"\",\"columns\":[{\"name\":\"a\",\"type\":\"INTEGER\","
              "\"field_type\":9},{\"name\":\"b\",\"type\":\"BLOB\",\"field_type\":23}],\"rows\":[\n"
              "[9223372036854775807,{\"hex\":\"00ff\"}],\n[null,null]]},"
              "{\"status\":3,\"affected\":2,\"error\":\"\",\"columns\":[],\"rows\":[]},"
              "{\"status\":1,\"affected\":0,\"error\":\"\",\"columns\":[{\"name\":\"c\",\"type\":\"BOOLEAN\","
              "\"field_type\":3}],\"rows\":[]}]\n");
    EXPECT_EQ(Printed("json", {}), "[]\n");
}

TEST(Json, LinesHaveAnObjectEach)
{
    TableRows rows({{"a", "", 0}, {"a", "", 0}, {"a_1", "", 0}, {"a", "", 0}},
                   {{BooleanCell(true), TextCell("x"), NullCell(), NumberCell("-0.0")}});
    EXPECT_EQ(Printed("ndjson", {&rows, nullptr}), "{\"a\":true,\"a_2\":\"x\",\"a_1\":null,\"a_3\":-0.0}\n");
}

TEST(Json, NamesStayDistinct)
{
    const struct
    {
        QStringList given, wanted;
    } cases[] = {
        {{"a", "b"}, {"a", "b"}},
        {{"a", "a", "a"}, {"a", "a_1", "a_2"}},
        {{"a", "a", "a_1"}, {"a", "a_2", "a_1"}},
        {{"a_1", "a", "a"}, {"a_1", "a", "a_2"}},
        {{"a", "A"}, {"a", "A"}},
    };
    for (const auto& c : cases) {
        QList<Column> columns;
        for (const QString& name : c.given)
            columns.append({name, {}, 0});
        const QStringList names = DistinctNames(columns);
        EXPECT_EQ(QSet<QString>(names.begin(), names.end()).size(), names.size());
        EXPECT_EQ(names, c.wanted) << c.given.join(' ').toStdString();
    }
}

TEST(Json, ValuesKeepTheirDigits)
{
    const struct
    {
        rc::Ref<HF::I_LSqlValue> value;
        Cell::Kind kind;
        const char* text;
    } cases[] = {
        {rc::make<HF::LValueBoolean>(true), Cell::Boolean, "true"},
        {rc::make<HF::LValueInt16>(std::int16_t(-32768)), Cell::Number, "-32768"},
        {rc::make<HF::LValueUInt8>(std::uint8_t(255)), Cell::Number, "255"},
        {rc::make<HF::LValueInt64>(INT64_MIN), Cell::Number, "-9223372036854775808"},
        {rc::make<HF::LValueUInt64>(std::uint64_t(INT64_MAX)), Cell::Number, "9223372036854775807"},
        {rc::make<HF::LValueUInt64>(std::uint64_t(INT64_MAX) + 1), Cell::Text, "9223372036854775808"},
        {rc::make<HF::LValueDouble>(0.1), Cell::Number, "0.1"},
        {rc::make<HF::LValueDouble>(1e16), Cell::Number, "1e+16"},
        {rc::make<HF::LValueDouble>(-0.0), Cell::Number, "-0.0"},
        {rc::make<HF::LValueDouble>(std::numeric_limits<double>::infinity()), Cell::Text, "inf"},
        {rc::make<HF::LValueDouble>(std::numeric_limits<double>::quiet_NaN()), Cell::Text, "nan"},
        {rc::make<HF::LValueFloat>(0.1f), Cell::Number, "0.1"},
        {rc::make<HF::LValueDecimal>(38, 2, u"123456789012345678901234567890123456.78"), Cell::Text,
         "123456789012345678901234567890123456.78"},
        {rc::make<HF::LValueDate>(QDate(2024, 2, 29)), Cell::Text, "2024-02-29"},
        {rc::make<HF::LValueString>(u"5"), Cell::Text, "5"},
        {rc::make<HF::LValueString>(u"x", true), Cell::Null, ""},
        {rc::make<HF::LValueByteArray>(QByteArray("\0a", 2)), Cell::Bytes, "\\x00a"},
    };
    for (const auto& c : cases) {
        const Cell cell = ToCell(*c.value);
        EXPECT_EQ(cell.kind, c.kind) << c.text;
        EXPECT_EQ(cell.text, c.text);
        EXPECT_EQ(cell.kind == Cell::Bytes, !cell.bytes.isEmpty());
    }
}
