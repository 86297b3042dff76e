// SPDX-License-Identifier: GPL-3.0-or-later
#include "nub/value_text.h"

#include <bit>
#include <charconv>
#include <cmath>
#include <cstring>

namespace nub::text {
namespace {

char* WriteLiteral(char* out, std::string_view text)
{
    std::memcpy(out, text.data(), text.size());
    return out + text.size();
}

/// Lays the shortest digits out as the engine does: plain between 1e-4 and
/// 1e16, with an exponent of at least two digits otherwise.
template <class T>
char* WriteFloating(char* out, T value)
{
    if (std::isnan(value))
        return WriteLiteral(out, std::signbit(value) ? "-nan" : "nan");
    if (std::isinf(value))
        return WriteLiteral(out, value < 0 ? "-inf" : "inf");
    if (value == 0)
        return WriteLiteral(out, std::signbit(value) ? "-0.0" : "0.0");

    char shortest[40];
    const char* const end = std::to_chars(shortest, shortest + sizeof shortest, value, std::chars_format::scientific).ptr;
    const char* p = shortest;
    if (*p == '-')
        *out++ = *p++;
    char digits[24];
    int count = 0;
    for (; *p != 'e'; ++p)
        if (*p != '.')
            digits[count++] = *p;
    int exponent = 0;
    const bool negative = p[1] == '-';
    std::from_chars(p + 2, end, exponent);
    if (negative)
        exponent = -exponent;

    if (exponent < -4 || exponent >= 16) {
        *out++ = digits[0];
        if (count > 1) {
            *out++ = '.';
            out = WriteLiteral(out, {digits + 1, static_cast<std::size_t>(count - 1)});
        }
        *out++ = 'e';
        *out++ = negative ? '-' : '+';
        const int size = negative ? -exponent : exponent;
        if (size < 10)
            *out++ = '0';
        return WriteInteger(out, size);
    }
    if (exponent < 0) {
        out = WriteLiteral(out, "0.");
        for (int i = -1; i > exponent; --i)
            *out++ = '0';
        return WriteLiteral(out, {digits, static_cast<std::size_t>(count)});
    }
    for (int i = 0; i <= exponent; ++i)
        *out++ = i < count ? digits[i] : '0';
    *out++ = '.';
    if (count <= exponent + 1)
        *out++ = '0';
    else
        out = WriteLiteral(out, {digits + exponent + 1, static_cast<std::size_t>(count - exponent - 1)});
    return out;
}

/// 10^exponent as significand * 2^binary, rounded to 64 bits.
struct Power
{
    std::uint64_t significand;
    int binary;
};

/// For the exponents -44, -36, ... 52: enough for every float.
constexpr int FirstPower = -44, PowerStep = 8;
constexpr Power CachedPowers[] = {
    {0xe45c10c42a2b3b06, -210}, {0xaa242499697392d3, -183}, {0xfd87b5f28300ca0e, -157}, {0xbce5086492111aeb, -130},
    {0x8cbccc096f5088cc, -103}, {0xd1b71758e219652c, -77},  {0x9c40000000000000, -50},  {0xe8d4a51000000000, -24},
    {0xad78ebc5ac620000, 3},    {0x813f3978f8940984, 30},   {0xc097ce7bc90715b3, 56},   {0x8f7e32ce7bea5c70, 83},
    {0xd5d238a4abe98068, 109},
};

std::uint64_t MultiplyRounded(std::uint64_t a, std::uint64_t b)
{
    const UInt128 product = static_cast<UInt128>(a) * b;
    return static_cast<std::uint64_t>(product >> 64) + (static_cast<std::uint64_t>(product) >> 63);
}

/// The last step of Grisu3: whether the digits found so far are surely the
/// closest of the shortest, given that all scaled numbers may be off by `unit`.
bool IsClosest(std::uint64_t divisor, std::uint64_t remainder, std::uint64_t range, std::uint64_t distance,
               std::uint64_t unit)
{
    const std::uint64_t nearer = (distance - 1) * unit, farther = (distance + 1) * unit;
    while (remainder < nearer && range - remainder >= divisor
           && (remainder + divisor < nearer || nearer - remainder >= remainder + divisor - nearer))
        remainder += divisor;
    if (remainder < farther && range - remainder >= divisor
        && (remainder + divisor < farther || farther - remainder > remainder + divisor - farther))
        return false;
    return 2 * unit <= remainder && remainder <= range - 4 * unit;
}

/// Whether Grisu3 finds the shortest digits of a positive float. Where it does
/// not, the engine falls back to the digits of the number as a double, so that
/// 353544.125f shows all of them.
bool IsFoundByGrisu(float value)
{
    constexpr std::uint64_t hidden = std::uint64_t(1) << 52;
    constexpr int lowestNormal = -125 - 53;
    const auto bits = std::bit_cast<std::uint64_t>(static_cast<double>(value));
    const std::uint64_t significand = (bits & (hidden - 1)) | hidden;
    const int exponent = static_cast<int>(bits >> 52) - 1075;
    // Half the distance to the neighbours among floats.
    std::uint64_t half = std::uint64_t(1) << 28;
    if (exponent < lowestNormal)
        half <<= lowestNormal - exponent;
    const std::uint64_t above = significand + half;
    const std::uint64_t below = significand - (significand == hidden && exponent > lowestNormal ? half >> 1 : half);
    const int shiftAbove = std::countl_zero(above), shift = std::countl_zero(significand);

    const int least = -60 - (exponent - shift + 64);
    const int decimal = static_cast<int>(std::ceil((least + 63) * 0.30102999566398114));
    const int index = decimal <= FirstPower ? 0 : (decimal - FirstPower - 1) / PowerStep + 1;
    const Power power = CachedPowers[index];
    const std::uint64_t middle = MultiplyRounded(significand << shift, power.significand);
    const std::uint64_t upper = MultiplyRounded(above << shiftAbove, power.significand) + 1;
    const std::uint64_t lower = MultiplyRounded(below << shiftAbove, power.significand) - 1;
    const int point = -(exponent - shift + power.binary + 64);

    std::uint64_t range = upper - lower;
    const std::uint64_t distance = upper - middle;
    const std::uint64_t one = std::uint64_t(1) << point;
    auto whole = static_cast<std::uint32_t>(upper >> point);
    std::uint64_t fraction = upper & (one - 1);
    std::uint32_t divisor = 1;
    while (whole / divisor >= 10)
        divisor *= 10;
    for (; divisor; divisor /= 10) {
        whole %= divisor;
        const std::uint64_t remainder = (static_cast<std::uint64_t>(whole) << point) + fraction;
        if (remainder < range)
            return IsClosest(static_cast<std::uint64_t>(divisor) << point, remainder, range, distance, 1);
    }
    for (std::uint64_t unit = 10;; unit *= 10) {
        fraction *= 10;
        range *= 10;
        fraction &= one - 1;
        if (fraction < range)
            return IsClosest(one, fraction, range, distance, unit);
    }
}

} // namespace

char* WriteFloat(char* out, float value)
{
    if (std::isfinite(value) && value != 0 && !IsFoundByGrisu(std::fabs(value)))
        return WriteFloating(out, static_cast<double>(value));
    return WriteFloating(out, value);
}

char* WriteDouble(char* out, double value)
{
    return WriteFloating(out, value);
}

} // namespace nub::text
