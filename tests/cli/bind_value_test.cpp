// SPDX-License-Identifier: GPL-3.0-or-later
#include "cli/bind_value.h"

#include "hf/values.h"

#include <QSet>
#include <QTemporaryFile>

#include <gtest/gtest.h>

#include <typeinfo>

using namespace orbis;

TEST(BindValue, ReadsEveryType)
{
    const struct
    {
        const char* text;
        const std::type_info& type;
        const char* value;
    } cases[] = {
        {"boolean=true", typeid(HF::LValueBoolean), "true"},
        {"boolean=0", typeid(HF::LValueBoolean), "false"},
        {"int16=-32768", typeid(HF::LValueInt16), "-32768"},
        {"int24=8388607", typeid(HF::LValueInt24), "8388607"},
        {"int32=-2147483648", typeid(HF::LValueInt32), "-2147483648"},
        {"int64=9223372036854775807", typeid(HF::LValueInt64), "9223372036854775807"},
        {"uint8=255", typeid(HF::LValueUInt8), "255"},
        {"uint16=65535", typeid(HF::LValueUInt16), "65535"},
        {"uint24=16777215", typeid(HF::LValueUInt24), "16777215"},
        {"uint32=4294967295", typeid(HF::LValueUInt32), "4294967295"},
        {"uint64=18446744073709551615", typeid(HF::LValueUInt64), "18446744073709551615"},
        {"float=0.1", typeid(HF::LValueFloat), "0.1"},
        {"double=1e300", typeid(HF::LValueDouble), "1e+300"},
        {"decimal=-12.50", typeid(HF::LValueDecimal), "-12.50"},
        {"string=", typeid(HF::LValueString), ""},
        {"STRING=a=b", typeid(HF::LValueString), "a=b"},
        {"string= x ", typeid(HF::LValueString), " x "},
        {"blob=00ff", typeid(HF::LValueByteArray), "\\x00\\xFF"},
        {"blob=", typeid(HF::LValueByteArray), ""},
        {"bits=0101", typeid(HF::LValueVarBitArray), "0101"},
        {"uuid=00000000-0000-0000-0000-00000000000a", typeid(HF::LValueUUID), "00000000-0000-0000-0000-00000000000a"},
        {"date=2024-02-29", typeid(HF::LValueDate), "2024-02-29"},
        {"time=23:59:59.123", typeid(HF::LValueTime), "23:59:59.123"},
        {"datetime=2024-02-29 12:00:00", typeid(HF::LValueDateTime), "2024-02-29 12:00:00"},
        {"expression=1 + 1", typeid(HF::LValueSqlExpression), "1 + 1"},
    };
    QSet<QString> covered{"null"};
    for (const auto& c : cases) {
        const ParsedBind bind = ParseBind(c.text);
        ASSERT_TRUE(bind.value) << c.text << ": " << bind.error.toStdString();
        EXPECT_EQ(typeid(*bind.value).name(), std::string(c.type.name())) << c.text;
        EXPECT_FALSE(bind.value->get_IsNull());
        EXPECT_EQ(bind.value->get_String(), c.value) << c.text;
        covered.insert(QString(c.text).section('=', 0, 0).toLower());
    }
    const QStringList types = BindTypes();
    EXPECT_EQ(covered, QSet<QString>(types.begin(), types.end()));
    EXPECT_TRUE(ParseBind("null").value->get_IsNull());
    EXPECT_TRUE(ParseBind("NULL=").value->get_IsNull());
}

TEST(BindValue, RefusesWhatDoesNotFit)
{
    for (const char* bad :
         {"", "=", "5", "int32", "int33=1", "boolean=maybe", "int16=32768", "int24=8388608", "int32=1.5", "int32=",
          "int32= x", "int64=9223372036854775808", "uint8=-1", "uint8=256", "uint24=16777216",
          "uint64=18446744073709551616", "float=one", "double=", "decimal=", "decimal=.", "decimal=1e5",
          "decimal=123456789012345678901234567890123456789", "blob=0", "blob=xy", "bits=012", "uuid=123",
          "date=2024-02-30", "date=yesterday", "time=25:00:00", "datetime=2024-01-01T25:00", "null=1",
          "blob=@no/such/file"}) {
        const ParsedBind bind = ParseBind(bad);
        EXPECT_FALSE(bind.value) << bad;
        EXPECT_FALSE(bind.error.isEmpty()) << bad;
    }
}

TEST(BindValue, ReadsBytesFromAFile)
{
    QTemporaryFile file;
    ASSERT_TRUE(file.open());
    const QByteArray bytes("\0\xFF\n@", 4);
    file.write(bytes);
    file.flush();
    const ParsedBind bind = ParseBind("blob=@" + file.fileName());
    ASSERT_TRUE(bind.value) << bind.error.toStdString();
    EXPECT_EQ(bind.value->get_Data(), bytes);
}
