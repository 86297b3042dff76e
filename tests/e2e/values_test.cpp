// SPDX-License-Identifier: GPL-3.0-or-later
// What a value of each type is in JSON.
#include "e2e/orbis_process.h"

TEST_F(ProgramTest, JsonKeepsEveryValue)
{
    const struct
    {
        const char* expression;
        const char* json;
        const char* type;
    } cases[] = {
        {"NULL::INTEGER", "null", "INTEGER"},
        {"true", "true", "BOOLEAN"},
        {"(-128)::TINYINT", "-128", "TINYINT"},
        {"255::UTINYINT", "255", "UTINYINT"},
        {"(-32768)::SMALLINT", "-32768", "SMALLINT"},
        {"65535::USMALLINT", "65535", "USMALLINT"},
        {"(-2147483648)::INTEGER", "-2147483648", "INTEGER"},
        {"4294967295::UINTEGER", "4294967295", "UINTEGER"},
        {"9223372036854775807", "9223372036854775807", "BIGINT"},
        {"(-9223372036854775808)::BIGINT", "-9223372036854775808", "BIGINT"},
        {"9223372036854775807::UBIGINT", "9223372036854775807", "UBIGINT"},
        {"9223372036854775808::UBIGINT", "\"9223372036854775808\"", "UBIGINT"},
        {"18446744073709551615::UBIGINT", "\"18446744073709551615\"", "UBIGINT"},
        {"1::HUGEINT", "\"1\"", "HUGEINT"},
        {"'340282366920938463463374607431768211455'::UHUGEINT", "\"340282366920938463463374607431768211455\"", "UHUGEINT"},
        {"1.50::DECIMAL(18,3)", "\"1.500\"", "DECIMAL(18,3)"},
        {"0.1::FLOAT", "0.1", "FLOAT"},
        {"0.1::DOUBLE", "0.1", "DOUBLE"},
        {"1e16::DOUBLE", "1e+16", "DOUBLE"},
        {"1::DOUBLE", "1.0", "DOUBLE"},
        {"'-0.0'::DOUBLE", "-0.0", "DOUBLE"},
        {"2.2250738585072014e-308::DOUBLE", "2.2250738585072014e-308", "DOUBLE"},
        {"'nan'::DOUBLE", "\"nan\"", "DOUBLE"},
        {"'-inf'::FLOAT", "\"-inf\"", "FLOAT"},
        {"'5'", "\"5\"", "VARCHAR"},
        {"''", "\"\"", "VARCHAR"},
        {"'a\"\\' || chr(10) || chr(1)", "\"a\\\"\\\\\\n\\u0001\"", "VARCHAR"},
        {"'\\x00\\xFF'::BLOB", "{\"hex\":\"00ff\"}", "BLOB"},
        {"''::BLOB", "{\"hex\":\"\"}", "BLOB"},
        {"DATE '2024-02-29'", "\"2024-02-29\"", "DATE"},
        {"DATE 'infinity'", "\"infinity\"", "DATE"},
        {"DATE '0044-03-15 (BC)'", "\"0044-03-15 (BC)\"", "DATE"},
        {"TIME '24:00:00'", "\"24:00:00\"", "TIME"},
        {"TIME '12:34:56.789012'", "\"12:34:56.789012\"", "TIME"},
        {"TIMESTAMP '2024-02-29 12:34:56.789012'", "\"2024-02-29 12:34:56.789012\"", "TIMESTAMP"},
        {"TIMESTAMP_NS '2024-02-29 12:34:56.789012345'", "\"2024-02-29 12:34:56.789012345\"", "TIMESTAMP_NS"},
        {"INTERVAL '14 months 3 days 4 hours'", "\"1 year 2 months 3 days 04:00:00\"", "INTERVAL"},
        {"'00000000-0000-0000-0000-00000000000a'::UUID", "\"00000000-0000-0000-0000-00000000000a\"", "UUID"},
        {"'0101'::BIT", "\"0101\"", "BIT"},
        {"[1, NULL]", "\"[1, NULL]\"", "INTEGER[]"},
        {"{'k': 'v w', 'n': [1.5]}", "\"{'k': v w, 'n': [1.5]}\"", "STRUCT"},
        {"MAP {'k': 1}", "\"{k=1}\"", "MAP"},
        {"'b'::ENUM('a', 'b')", "\"b\"", "ENUM"},
        {"union_value(u := 7)", "\"7\"", "UNION"},
        {"array_value(1, 2)", "\"[1, 2]\"", "INTEGER[2]"},
        {"'{\"a\": [1]}'::JSON", "\"{\\\"a\\\": [1]}\"", "JSON"},
    };
    QStringList expressions;
    QByteArray row = "[";
    for (const auto& c : cases) {
        expressions.append(c.expression);
        row += (row.size() > 1 ? "," : "") + QByteArray(c.json);
    }
    const RunResult all = Run({"sql", ":memory:", "--format", "json", "-c", "SELECT " + expressions.join(", ")});
    ASSERT_EQ(all.exitCode, 0) << all.err.toStdString();
    EXPECT_TRUE(all.out.contains("\n" + row + "]")) << all.out.toStdString() << "\nwanted\n" << row.toStdString();
    const QJsonArray columns = all.Json().at(0)["columns"].toArray();
    ASSERT_EQ(columns.size(), static_cast<qsizetype>(std::size(cases)));
    for (qsizetype i = 0; i < columns.size(); ++i)
        EXPECT_EQ(columns[i]["type"].toString(), cases[i].type) << cases[i].expression;
}

TEST_F(ProgramTest, ManyRowsComeInOrder)
{
    const RunResult result =
        Run({"sql", ":memory:", "--format", "ndjson", "-c", "SELECT i, i::VARCHAR AS s FROM range(200000) t(i)"});
    ASSERT_EQ(result.exitCode, 0);
    const QList<QByteArray> lines = result.out.split('\n');
    ASSERT_EQ(lines.size(), 200001);
    for (int i = 0; i < 200000; i += 997)
        EXPECT_EQ(lines[i], "{\"i\":" + QByteArray::number(i) + ",\"s\":\"" + QByteArray::number(i) + "\"}");
    EXPECT_EQ(lines[199999], "{\"i\":199999,\"s\":\"199999\"}");
}
