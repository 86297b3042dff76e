// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "nub/string.h"

#include <cstdint>

namespace nub::text {

/// Texts of flat values, to the letter those of the engine's cast to VARCHAR.
/// Each function writes ASCII from `out` on and returns the end; a buffer of
/// BufferSize is enough for all of them.
constexpr std::size_t BufferSize = 96;

__extension__ typedef __int128 Int128;
__extension__ typedef unsigned __int128 UInt128;

ORB_KERNEL char* WriteInteger(char* out, std::int64_t value);
ORB_KERNEL char* WriteUnsigned(char* out, std::uint64_t value);
ORB_KERNEL char* WriteInteger128(char* out, Int128 value);
ORB_KERNEL char* WriteUnsigned128(char* out, UInt128 value);
/// Shortest digits that give the same number back; always told from an integer.
ORB_KERNEL char* WriteFloat(char* out, float value);
ORB_KERNEL char* WriteDouble(char* out, double value);
char* WriteDecimal(char* out, Int128 value, int width, int scale);
/// Days since 1970-01-01.
char* WriteDate(char* out, std::int32_t days);
/// Units since midnight; `digits` is the number of fractional digits of a unit.
char* WriteTime(char* out, std::int64_t units, int digits);
/// The engine's packed form: microseconds in the upper 40 bits, offset below.
char* WriteTimeTz(char* out, std::uint64_t bits);
/// Units since 1970-01-01 00:00:00; `digits` as for WriteTime.
char* WriteTimestamp(char* out, std::int64_t units, int digits);
/// Microseconds since 1970-01-01 00:00:00 UTC, shown in UTC.
char* WriteTimestampUtc(char* out, std::int64_t micros);
char* WriteInterval(char* out, std::int32_t months, std::int32_t days, std::int64_t micros);
/// The engine's stored form: the topmost bit is flipped.
char* WriteUuid(char* out, std::uint64_t upper, std::uint64_t lower);

/// Appends bytes as the engine shows them: printable ASCII as it is, "\xAA" otherwise.
ORB_KERNEL void AppendBlob(std::u16string& out, const unsigned char* bytes, std::size_t size);
/// Appends the digits of a bit string in its stored form: a byte with the
/// number of padding bits, then the bits.
void AppendBits(std::u16string& out, const unsigned char* bytes, std::size_t size);

/// Replaces the text by what was written into a buffer of BufferSize, up to
/// `end`; the text's memory is used again.
inline void AssignAscii(std::u16string& text, const char* buffer, const char* end)
{
    // Whole blocks are widened; what lies behind the end is not used.
    constexpr std::size_t block = 16;
    static_assert(BufferSize % block == 0);
    char16_t wide[BufferSize];
    const auto length = static_cast<std::size_t>(end - buffer);
    for (std::size_t i = 0; i < length; i += block)
        for (std::size_t j = 0; j < block; ++j)
            wide[i + j] = static_cast<unsigned char>(buffer[i + j]);
    text.assign(wide, length);
}

} // namespace nub::text
