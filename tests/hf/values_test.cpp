// SPDX-License-Identifier: GPL-3.0-or-later
#include "hf/values.h"

#include "hf/engine_place.h"

#include <gtest/gtest.h>

#include <malloc.h>

#include <limits>
#include <thread>

using namespace HF;

namespace {

template <class T>
bool Is(const rc::Ref<I_LSqlValue>& value)
{
    return dynamic_cast<const T*>(value.get()) != nullptr;
}

struct RoundTrip
{
    const char* type; ///< of the engine
    rc::Ref<I_LSqlValue> prototype;
    QStringList texts; ///< as the engine reads them
    QStringList refused;
};

QList<RoundTrip> RoundTrips()
{
    const QString hundred = QString(100, u'7');
    return {
        {"BOOLEAN", rc::make<LValueBoolean>(), {"true", "false", "TRUE", "t", "f", "1", "0", "yes", "no"}, {"2", "", "ja"}},
        {"SMALLINT", rc::make<LValueInt16>(), {"-32768", "32767", "0", "-1"}, {"32768", "-32769", "x", ""}},
        {"INTEGER", rc::make<LValueInt32>(), {"-2147483648", "2147483647", " 12 ", "007"}, {"2147483648", "1 2", "--1"}},
        {"BIGINT", rc::make<LValueInt64>(), {"-9223372036854775808", "9223372036854775807"}, {"9223372036854775808"}},
        {"UTINYINT", rc::make<LValueUInt8>(), {"0", "255"}, {"256", "-1"}},
        {"USMALLINT", rc::make<LValueUInt16>(), {"65535"}, {"65536"}},
        {"UINTEGER", rc::make<LValueUInt32>(), {"4294967295"}, {"4294967296"}},
        {"UBIGINT", rc::make<LValueUInt64>(), {"18446744073709551615"}, {"18446744073709551616", "-1"}},
        {"FLOAT", rc::make<LValueFloat>(),
         {"0.1", "16777216", "16777217", "3.4028235e38", "1e-45", "-0", "inf", "-inf", "nan", "1e15", "1e16", "0.00001"},
         {"1e39", "x", "1,5"}},
        {"DOUBLE", rc::make<LValueDouble>(),
         {"0.1", "0.30000000000000004", "1e15", "1e16", "123456789012345680", "1e-5", "0.0001", "-0.0",
          "1.7976931348623157e308", "5e-324", "inf", "-inf", "nan", "100", "1e300"},
         {"1e309", "", "1.5 m"}},
        {"VARCHAR", rc::make<LValueString>(),
         {"", "a", "fifteen units..", "sixteen units...", hundred, QString::fromUtf8("Grüße 😀 \xC2\xA0"), "'", "\\"}, {}},
        {"BLOB", rc::make<LValueByteArray>(),
         {"", "abc", "a\\x00b", "\\xFF\\x5C\\x27", "\\x22", " "}, {"\\x", "\\xG0", "\\a", QString::fromUtf8("ä")}},
        {"BIT", rc::make<LValueVarBitArray>(), {"0", "1", "0101010", QString(100, u'1')}, {"2", ""}},
        {"UUID", rc::make<LValueUUID>(),
         {"00000000-0000-0000-0000-000000000000", "FFFFFFFF-FFFF-FFFF-FFFF-FFFFFFFFFFFF",
          "{123e4567-e89b-12d3-a456-426614174000}", "123e4567e89b12d3a456426614174000"},
         {"123e4567", "123e4567-e89b-12d3-a456-42661417400g"}},
        {"DECIMAL(18,3)", rc::make<LValueDecimal>(18, 3, u"0"),
         {"999999999999999.999", "-999999999999999.999", "0.000", "12.500"},
         {"1000000000000000", "x", ".", "1.2.3", "1e2e3"}},
        {"DATE", rc::make<LValueDate>(QDate(1970, 1, 1)),
         {"1970-01-01", "0001-01-01", "9999-12-31", "2024-02-29", "5881580-07-10", "10000-01-01"},
         {"2023-02-29", "2024-13-01"}},
        {"TIME", rc::make<LValueTime>(QTime(0, 0)),
         {"00:00:00", "23:59:59.999999", "12:34:05.1", "01:02:03"}, {"25:00:00", "12:60:00", "noon"}},
        {"TIMESTAMP", rc::make<LValueDateTime>(QDateTime()),
         {"2024-02-29 23:59:59.123456", "1970-01-01 00:00:00", "12024-01-01 10:00:00"}, {"2024-02-30 00:00:00", "x"}},
    };
}

} // namespace

TEST(Values, TextsAreTheEnginesOwn)
{
    test::EnginePlace engine;
    for (const RoundTrip& trip : RoundTrips()) {
        for (const QString& text : trip.texts) {
            SCOPED_TRACE(std::string(trip.type) + " " + text.toStdString());
            const auto value = trip.prototype->FromString(text);
            const auto& prototype = *trip.prototype;
            ASSERT_EQ(typeid(*value), typeid(prototype));
            EXPECT_FALSE(value->get_IsNull());
            const QString literal = u'\'' + QString(text).replace(u'\'', QLatin1String("''")) + u'\'';
            EXPECT_EQ(value->get_String(),
                      engine.Ask(QStringLiteral("SELECT CAST(CAST(%1 AS %2) AS VARCHAR)").arg(literal, trip.type)));
            // What it prints, it reads back as itself.
            EXPECT_TRUE(value->FromString(value->get_String())->IsSame(*value));
            EXPECT_EQ(value->get_Length(), Is<LValueByteArray>(value) ? value->get_Data().size()
                                                                      : value->get_String().size());
        }
        for (const QString& text : trip.refused) {
            SCOPED_TRACE(std::string(trip.type) + " refuses " + text.toStdString());
            const auto value = trip.prototype->FromString(text);
            EXPECT_EQ(typeid(*value), typeid(LValueString));
            EXPECT_EQ(value->get_String(), text);
        }
    }
}

TEST(Values, NullsKeepTheirClassAndHoldNothing)
{
    QList<rc::Ref<I_LSqlValue>> all;
    for (const RoundTrip& trip : RoundTrips())
        all.append(trip.prototype);
    all.append(rc::make<LValueInt24>());
    all.append(rc::make<LValueUInt24>());
    all.append(rc::make<LValueSqlExpression>(u"nextval('s')"));
    for (const auto& prototype : all) {
        SCOPED_TRACE(typeid(*prototype.get()).name());
        const auto null = prototype->CreateEmpty(true), empty = prototype->CreateEmpty(false);
        EXPECT_EQ(typeid(*null.get()), typeid(*prototype.get()));
        EXPECT_TRUE(null->get_IsNull());
        EXPECT_EQ(null->get_String(), QString());
        EXPECT_EQ(null->get_Data(), QByteArray());
        EXPECT_FALSE(null->ToQVariant().isValid());
        EXPECT_FALSE(empty->get_IsNull());
        EXPECT_TRUE(empty->IsSame(*prototype->CreateEmpty(false)));
        EXPECT_FALSE(empty->IsSame(*null));
        // The same text in another class is another value.
        EXPECT_EQ(rc::make<LValueString>(empty->get_String())->IsSame(*empty),
                  typeid(*prototype.get()) == typeid(LValueString));
    }
    EXPECT_TRUE(LValueInvalid::Instance()->get_IsNull());
    EXPECT_EQ(LValueInvalid::Instance()->CreateEmpty(false), LValueInvalid::Instance());
}

TEST(Values, NarrowNumbersKnowTheirRange)
{
    EXPECT_TRUE(Is<LValueInt24>(rc::make<LValueInt24>()->FromString("-8388608")));
    EXPECT_FALSE(Is<LValueInt24>(rc::make<LValueInt24>()->FromString("8388608")));
    EXPECT_TRUE(Is<LValueUInt24>(rc::make<LValueUInt24>()->FromString("16777215")));
    EXPECT_FALSE(Is<LValueUInt24>(rc::make<LValueUInt24>()->FromString("16777216")));

    const auto top = rc::make<LValueUInt64>(std::numeric_limits<std::uint64_t>::max());
    EXPECT_EQ(top->get_Int64(), -1);
    EXPECT_FALSE(top->get_IsSigned());
    EXPECT_EQ(top->ToQVariant().toULongLong(), std::numeric_limits<std::uint64_t>::max());
    EXPECT_EQ(rc::make<LValueInt64>(std::numeric_limits<std::int64_t>::min())->ToQVariant().toLongLong(),
              std::numeric_limits<std::int64_t>::min());
}

TEST(Values, TextsBindAsTexts)
{
    // A bind asks for a text by its class; these have none of their own in the engine.
    for (const RoundTrip& trip : RoundTrips()) {
        const bool text = QStringList{"VARCHAR", "BIT", "UUID", "DECIMAL(18,3)", "DATE", "TIME", "TIMESTAMP"}.contains(
            QLatin1String(trip.type));
        EXPECT_EQ(Is<LValueString>(trip.prototype), text) << trip.type;
    }
    EXPECT_TRUE(Is<LValueString>(rc::make<LValueSqlExpression>(u"now()")));
}

TEST(Values, DatesAndTimesAreReadStrictly)
{
    using Date = std::optional<QDate>;
    const auto date = [](const char* text) { return LValueDate::ParseISO(QString::fromLatin1(text)); };
    EXPECT_EQ(date("2024-02-29"), Date(QDate(2024, 2, 29)));
    EXPECT_EQ(date("5881580-07-10"), Date(QDate(5881580, 7, 10)));
    for (const char* none : {"", "2024", "2024-2-29", "2024-02-29 ", " 2024-02-29", "24-02-29", "-2024-02-29",
                             "0000-01-01", "2024-02-30", "0044-03-15 (BC)", "infinity", "2024-02-29T00:00:00",
                             "2024/02/29", "12345678901-01-01"})
        EXPECT_EQ(date(none), std::nullopt) << none;
    // Digits of other scripts are not the engine's.
    EXPECT_EQ(LValueDate::ParseISO(u"٢٠٢٤-٠٢-٢٩"), std::nullopt);

    using Time = std::optional<QTime>;
    const auto time = [](const char* text) { return LValueTime::ParseISO(QString::fromLatin1(text)); };
    EXPECT_EQ(time("12:34"), Time(QTime(12, 34)));
    EXPECT_EQ(time("12:34:56.5"), Time(QTime(12, 34, 56, 500)));
    EXPECT_EQ(time("12:34:56.123999"), Time(QTime(12, 34, 56, 123)));
    for (const char* none : {"", "24:00:00", "12", "12:3", "12:34:", "12:34:56.", "12:34:56+01", "1:02:03"})
        EXPECT_EQ(time(none), std::nullopt) << none;

    const auto moment = [](const char* text) { return LValueDateTime::ParseISO(QString::fromLatin1(text)); };
    const QDateTime noon(QDate(2024, 1, 2), QTime(12, 0), Qt::UTC);
    for (const char* same : {"2024-01-02 12:00:00", "2024-01-02T12:00Z", "2024-01-02 12:00:00.000+00",
                             "2024-01-02 17:30:00+05:30", "2024-01-02 17:30:00+0530", "2024-01-02 04:00:00-08"})
        EXPECT_EQ(moment(same), std::optional(noon)) << same;
    for (const char* none : {"2024-01-02", "2024-01-02 12", "2024-01-02 12:00:00 ", "2024-01-02 12:00:00+5",
                             "2024-01-02 12:00:00+05:", "2024-01-02 12:00:00+05:99", "2024-01-02 12:00:00 UTC"})
        EXPECT_EQ(moment(none), std::nullopt) << none;

    const auto kept = rc::make<LValueDateTime>(QDateTime(), u"infinity");
    EXPECT_FALSE(kept->get_DateTime().isValid());
    EXPECT_EQ(kept->ToQVariant(), QVariant("infinity"));
    EXPECT_EQ(rc::make<LValueTime>(QTime(1, 2, 3, 4))->get_String(), "01:02:03.004");
}

TEST(Values, TextsAroundTheInlineLimit)
{
    for (int length = 0; length <= 40; ++length) {
        const QString text = QString::fromUtf8("äb\0c", 5).repeated(12).left(length);
        const std::u16string_view view(reinterpret_cast<const char16_t*>(text.utf16()), length);
        for (const rc::Ref<LValueString>& value : {rc::make<LValueString>(text), rc::make<LValueString>(view)}) {
            EXPECT_EQ(value->get_String(), text);
            EXPECT_EQ(value->get_Chars(), view);
            EXPECT_EQ(value->get_Length(), length);
            EXPECT_EQ(value->get_Data(), text.toUtf8());
        }
    }
}

#if !defined(__SANITIZE_ADDRESS__) && !defined(__SANITIZE_THREAD__)

namespace {

template <class Make>
double BytesPerCell(Make make)
{
    constexpr int count = 200'001; // just past a doubling of the list is the worst case
    const auto used = [] {
        const struct mallinfo2 info = mallinfo2();
        return info.uordblks + info.hblkhd;
    };
    const std::size_t before = used();
    RcList<LValue> cells;
    for (int i = 0; i < count; ++i)
        cells.append(make(i));
    return double(used() - before) / count;
}

} // namespace

TEST(Values, CellsStaySmall)
{
    EXPECT_LE(BytesPerCell([](int i) { return rc::make<LValueBoolean>(i % 2); }), 64);
    EXPECT_LE(BytesPerCell([](int i) { return rc::make<LValueInt32>(i); }), 64);
    EXPECT_LE(BytesPerCell([](int i) { return rc::make<LValueUInt64>(i); }), 64);
    EXPECT_LE(BytesPerCell([](int i) { return rc::make<LValueDouble>(i); }), 64);
    EXPECT_LE(BytesPerCell([](int) { return rc::make<LValueString>(u"fifteen units.."); }), 136);
    EXPECT_LE(BytesPerCell([](int i) { return rc::make<LValueDate>(QDate(2024, 1, 1).addDays(i), u"2024-01-01"); }), 136);
}

TEST(Values, MemoryComesBackWhateverThreadLetsGo)
{
    const auto used = [] { return mallinfo2().uordblks + mallinfo2().hblkhd; };
    const auto fill = [] {
        RcList<LValue> cells;
        for (int i = 0; i < 50'000; ++i)
            cells.append(rc::make<LValueString>(QString::number(i) + QString(i % 30, u'x')));
        return cells;
    };
    const std::size_t before = used();
    for (int round = 0; round < 4; ++round) {
        RcList<LValue> cells = fill();
        std::thread([moved = std::move(cells)]() mutable { moved.clear(); }).join();
    }
    EXPECT_LT(double(used()) - double(before), 1 << 20);
}

#endif
