// SPDX-License-Identifier: GPL-3.0-or-later
#include "nub/value_text.h"

#include <charconv>
#include <cstring>
#include <limits>

namespace nub::text {
namespace {

constexpr std::int64_t Powers[] = {1, 10, 100, 1000, 10000, 100000, 1000000, 10000000, 100000000, 1000000000};
constexpr std::int64_t SecondsPerDay = 86400;

char* WriteLiteral(char* out, std::string_view text)
{
    std::memcpy(out, text.data(), text.size());
    return out + text.size();
}

char* WriteTwo(char* out, unsigned value)
{
    out[0] = static_cast<char>('0' + value / 10);
    out[1] = static_cast<char>('0' + value % 10);
    return out + 2;
}

/// Exactly `digits` digits, with leading zeros.
char* WritePadded(char* out, std::uint64_t value, int digits)
{
    for (int i = digits - 1; i >= 0; --i, value /= 10)
        out[i] = static_cast<char>('0' + value % 10);
    return out + digits;
}

/// ".5" of 500000 with six digits; nothing for zero.
char* WriteFraction(char* out, std::uint64_t value, int digits)
{
    if (!value)
        return out;
    *out++ = '.';
    out = WritePadded(out, value, digits);
    while (out[-1] == '0')
        --out;
    return out;
}

char* WriteClock(char* out, std::uint64_t seconds)
{
    const auto hours = static_cast<unsigned>(seconds / 3600);
    const auto rest = static_cast<unsigned>(seconds % 3600);
    out = WriteTwo(out, hours);
    *out++ = ':';
    out = WriteTwo(out, rest / 60);
    *out++ = ':';
    return WriteTwo(out, rest % 60);
}

/// Proleptic Gregorian date of any number of days that a timestamp can hold.
char* WriteDays(char* out, std::int64_t days)
{
    // Eras of 400 years that begin on 1 March, so that the leap day is last.
    days += 719468;
    const std::int64_t era = (days >= 0 ? days : days - 146096) / 146097;
    const auto dayOfEra = static_cast<unsigned>(days - era * 146097);
    const unsigned yearOfEra = (dayOfEra - dayOfEra / 1460 + dayOfEra / 36524 - dayOfEra / 146096) / 365;
    const unsigned dayOfYear = dayOfEra - (365 * yearOfEra + yearOfEra / 4 - yearOfEra / 100);
    const unsigned shifted = (5 * dayOfYear + 2) / 153;
    const unsigned day = dayOfYear - (153 * shifted + 2) / 5 + 1;
    const unsigned month = shifted < 10 ? shifted + 3 : shifted - 9;
    std::int64_t year = static_cast<std::int64_t>(yearOfEra) + era * 400 + (month <= 2);

    const bool beforeChrist = year <= 0;
    if (beforeChrist)
        year = 1 - year;
    if (year < 10000) {
        out = WriteTwo(out, static_cast<unsigned>(year / 100));
        out = WriteTwo(out, static_cast<unsigned>(year % 100));
    } else {
        out = WriteInteger(out, year);
    }
    *out++ = '-';
    out = WriteTwo(out, month);
    *out++ = '-';
    out = WriteTwo(out, day);
    return beforeChrist ? WriteLiteral(out, " (BC)") : out;
}

char* WritePart(char* out, const char* start, std::int64_t value, std::string_view unit)
{
    if (!value)
        return out;
    if (out != start)
        *out++ = ' ';
    out = WriteInteger(out, value);
    out = WriteLiteral(out, unit);
    if (value != 1 && value != -1)
        *out++ = 's';
    return out;
}

} // namespace

char* WriteInteger(char* out, std::int64_t value)
{
    return std::to_chars(out, out + 24, value).ptr;
}

char* WriteUnsigned(char* out, std::uint64_t value)
{
    return std::to_chars(out, out + 24, value).ptr;
}

char* WriteUnsigned128(char* out, UInt128 value)
{
    constexpr std::uint64_t limb = 10'000'000'000'000'000'000u;
    if (value <= std::numeric_limits<std::uint64_t>::max())
        return WriteUnsigned(out, static_cast<std::uint64_t>(value));
    out = WriteUnsigned128(out, value / limb);
    return WritePadded(out, static_cast<std::uint64_t>(value % limb), 19);
}

char* WriteInteger128(char* out, Int128 value)
{
    if (value >= 0)
        return WriteUnsigned128(out, static_cast<UInt128>(value));
    *out++ = '-';
    return WriteUnsigned128(out, -static_cast<UInt128>(value));
}

char* WriteDecimal(char* out, Int128 value, int width, int scale)
{
    if (scale == 0)
        return WriteInteger128(out, value);
    UInt128 magnitude = static_cast<UInt128>(value);
    if (value < 0) {
        *out++ = '-';
        magnitude = -magnitude;
    }
    if (scale < 10 && width > scale && magnitude <= std::numeric_limits<std::uint64_t>::max()) {
        const auto plain = static_cast<std::uint64_t>(magnitude), power = static_cast<std::uint64_t>(Powers[scale]);
        out = WriteUnsigned(out, plain / power);
        *out++ = '.';
        return WritePadded(out, plain % power, scale);
    }
    char digits[48];
    const int count = static_cast<int>(WriteUnsigned128(digits, magnitude) - digits);
    if (count > scale) {
        out = WriteLiteral(out, {digits, static_cast<std::size_t>(count - scale)});
        *out++ = '.';
        return WriteLiteral(out, {digits + count - scale, static_cast<std::size_t>(scale)});
    }
    // No zero stands in front when all digits are behind the point.
    if (width > scale)
        *out++ = '0';
    *out++ = '.';
    for (int i = count; i < scale; ++i)
        *out++ = '0';
    return WriteLiteral(out, {digits, static_cast<std::size_t>(count)});
}

char* WriteDate(char* out, std::int32_t days)
{
    constexpr std::int32_t infinity = std::numeric_limits<std::int32_t>::max();
    if (days == infinity || days == -infinity)
        return WriteLiteral(out, days < 0 ? "-infinity" : "infinity");
    return WriteDays(out, days);
}

char* WriteTime(char* out, std::int64_t units, int digits)
{
    const auto perSecond = static_cast<std::uint64_t>(Powers[digits]);
    const auto value = static_cast<std::uint64_t>(units);
    out = WriteClock(out, value / perSecond);
    return WriteFraction(out, value % perSecond, digits);
}

char* WriteTimeTz(char* out, std::uint64_t bits)
{
    constexpr int maxOffset = 16 * 3600 - 1;
    out = WriteTime(out, static_cast<std::int64_t>(bits >> 24), 6);
    int offset = maxOffset - static_cast<int>(bits & 0xFFFFFF);
    *out++ = offset < 0 ? '-' : '+';
    offset = offset < 0 ? -offset : offset;
    out = WriteTwo(out, static_cast<unsigned>(offset / 3600));
    // The engine leaves out zero minutes even when seconds follow.
    for (const int part : {offset / 60 % 60, offset % 60})
        if (part) {
            *out++ = ':';
            out = WriteTwo(out, static_cast<unsigned>(part));
        }
    return out;
}

char* WriteTimestamp(char* out, std::int64_t units, int digits)
{
    constexpr std::int64_t infinity = std::numeric_limits<std::int64_t>::max();
    if (units == infinity || units == -infinity)
        return WriteLiteral(out, units < 0 ? "-infinity" : "infinity");
    const std::int64_t perDay = SecondsPerDay * Powers[digits];
    std::int64_t days = units / perDay;
    std::int64_t rest = units % perDay;
    if (rest < 0) {
        rest += perDay;
        --days;
    }
    out = WriteDays(out, days);
    *out++ = ' ';
    return WriteTime(out, rest, digits);
}

char* WriteTimestampUtc(char* out, std::int64_t micros)
{
    constexpr std::int64_t infinity = std::numeric_limits<std::int64_t>::max();
    if (micros == infinity || micros == -infinity)
        return WriteTimestamp(out, micros, 6);
    // The engine's calendar counts milliseconds in a double, which rounds at
    // the far ends of the range.
    std::int64_t millis = micros / 1000, rest = micros % 1000;
    if (rest < 0) {
        rest += 1000;
        --millis;
    }
    millis = static_cast<std::int64_t>(static_cast<double>(millis));
    constexpr std::int64_t perDay = SecondsPerDay * 1000;
    std::int64_t days = millis / perDay;
    millis %= perDay;
    if (millis < 0) {
        millis += perDay;
        --days;
    }
    out = WriteDays(out, days);
    *out++ = ' ';
    out = WriteTime(out, millis * 1000 + rest, 6);
    return WriteLiteral(out, "+00");
}

char* WriteInterval(char* out, std::int32_t months, std::int32_t days, std::int64_t micros)
{
    char* const start = out;
    out = WritePart(out, start, months / 12, " year");
    out = WritePart(out, start, months % 12, " month");
    out = WritePart(out, start, days, " day");
    if (!micros)
        return out == start ? WriteLiteral(out, "00:00:00") : out;
    if (out != start)
        *out++ = ' ';
    auto magnitude = static_cast<std::uint64_t>(micros);
    if (micros < 0) {
        *out++ = '-';
        magnitude = -magnitude;
    }
    const std::uint64_t seconds = magnitude / 1000000;
    const std::uint64_t hours = seconds / 3600;
    if (hours < 100)
        out = WriteTwo(out, static_cast<unsigned>(hours));
    else
        out = WriteUnsigned(out, hours);
    *out++ = ':';
    out = WriteTwo(out, static_cast<unsigned>(seconds / 60 % 60));
    *out++ = ':';
    out = WriteTwo(out, static_cast<unsigned>(seconds % 60));
    return WriteFraction(out, magnitude % 1000000, 6);
}

char* WriteUuid(char* out, std::uint64_t upper, std::uint64_t lower)
{
    constexpr char hex[] = "0123456789abcdef";
    upper ^= std::uint64_t(1) << 63;
    for (int nibble = 0; nibble < 32; ++nibble) {
        if (nibble == 8 || nibble == 12 || nibble == 16 || nibble == 20)
            *out++ = '-';
        const std::uint64_t half = nibble < 16 ? upper : lower;
        *out++ = hex[half >> (60 - nibble % 16 * 4) & 15];
    }
    return out;
}

void AppendBlob(std::u16string& out, const unsigned char* bytes, std::size_t size)
{
    constexpr char16_t hex[] = u"0123456789ABCDEF";
    out.reserve(out.size() + size);
    for (const unsigned char* const end = bytes + size; bytes != end; ++bytes) {
        const unsigned char byte = *bytes;
        if (byte >= 0x20 && byte < 0x7F && byte != '\\' && byte != '\'' && byte != '"') {
            out += static_cast<char16_t>(byte);
        } else {
            out += u"\\x";
            out += hex[byte >> 4];
            out += hex[byte & 15];
        }
    }
}

void AppendBits(std::u16string& out, const unsigned char* bytes, std::size_t size)
{
    if (size < 2)
        return;
    const std::size_t first = bytes[0], count = (size - 1) * 8;
    out.reserve(out.size() + count);
    for (std::size_t bit = first; bit < count; ++bit)
        out += bytes[1 + bit / 8] >> (7 - bit % 8) & 1 ? u'1' : u'0';
}

} // namespace nub::text
