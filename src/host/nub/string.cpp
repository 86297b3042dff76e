// SPDX-License-Identifier: GPL-3.0-or-later
#include "nub/string.h"

#include <cstdint>
#include <cstring>

#if defined(__SSE2__)
#include <emmintrin.h>
#endif

namespace nub {
namespace {

constexpr char32_t Replacement = 0xFFFD;

/// Widens the ASCII run at the start of [in, end); how many bytes it took.
std::size_t WidenAscii(const unsigned char* in, const unsigned char* end, char16_t* out)
{
    const unsigned char* p = in;
#if defined(__SSE2__)
    const __m128i zero = _mm_setzero_si128();
    for (; end - p >= 16; p += 16, out += 16) {
        const __m128i bytes = _mm_loadu_si128(reinterpret_cast<const __m128i*>(p));
        if (_mm_movemask_epi8(bytes))
            break;
        _mm_storeu_si128(reinterpret_cast<__m128i*>(out), _mm_unpacklo_epi8(bytes, zero));
        _mm_storeu_si128(reinterpret_cast<__m128i*>(out + 8), _mm_unpackhi_epi8(bytes, zero));
    }
#else
    for (; end - p >= 8; p += 8, out += 8) {
        std::uint64_t bytes;
        std::memcpy(&bytes, p, 8);
        if (bytes & 0x8080808080808080u)
            break;
        for (int i = 0; i < 8; ++i)
            out[i] = p[i];
    }
#endif
    while (p != end && *p < 0x80)
        *out++ = *p++;
    return static_cast<std::size_t>(p - in);
}

/// Decodes the sequence at `p`, which is not ASCII, and moves `p` behind it. A
/// malformed one gives the replacement for its longest valid beginning.
char32_t DecodeUtf8(const unsigned char*& p, const unsigned char* end)
{
    const unsigned char lead = *p++;
    int more;
    char32_t code;
    unsigned char low = 0x80, high = 0xBF; // range of the second byte: no overlong forms, no surrogates
    if (lead >= 0xC2 && lead <= 0xDF) {
        more = 1;
        code = lead & 0x1F;
    } else if (lead >= 0xE0 && lead <= 0xEF) {
        more = 2;
        code = lead & 0x0F;
        if (lead == 0xE0)
            low = 0xA0;
        else if (lead == 0xED)
            high = 0x9F;
    } else if (lead >= 0xF0 && lead <= 0xF4) {
        more = 3;
        code = lead & 0x07;
        if (lead == 0xF0)
            low = 0x90;
        else if (lead == 0xF4)
            high = 0x8F;
    } else {
        return Replacement;
    }
    for (; more; --more) {
        if (p == end || *p < low || *p > high)
            return Replacement;
        code = code << 6 | (*p++ & 0x3F);
        low = 0x80;
        high = 0xBF;
    }
    return code;
}

bool IsBlank(char16_t unit)
{
    return unit == u' ' || (unit >= 0x09 && unit <= 0x0D) || unit == 0xA0;
}

} // namespace

void AppendUtf8(std::u16string& out, const char* utf8, std::size_t size)
{
    if (!size)
        return;
    // Short plain text, the common cell, goes by the stack: growing a string
    // in place would clear the memory first.
    if (constexpr std::size_t shortSize = 64; size <= shortSize) {
        char16_t wide[shortSize];
        const auto* bytes = reinterpret_cast<const unsigned char*>(utf8);
        if (WidenAscii(bytes, bytes + size, wide) == size) {
            out.append(wide, size);
            return;
        }
    }
    // UTF-16 never takes more units than UTF-8 takes bytes.
    const std::size_t start = out.size();
    out.resize(start + size);
    char16_t* to = out.data() + start;
    const auto* p = reinterpret_cast<const unsigned char*>(utf8);
    const unsigned char* const end = p + size;
    for (;;) {
        const std::size_t run = WidenAscii(p, end, to);
        p += run;
        to += run;
        if (p == end)
            break;
        while (p != end && *p >= 0x80) {
            const char32_t code = DecodeUtf8(p, end);
            if (code < 0x10000) {
                *to++ = static_cast<char16_t>(code);
            } else {
                *to++ = static_cast<char16_t>(0xD7C0 + (code >> 10));
                *to++ = static_cast<char16_t>(0xDC00 | (code & 0x3FF));
            }
        }
    }
    out.resize(static_cast<std::size_t>(to - out.data()));
}

void AppendUtf16(std::string& out, const char16_t* text, std::size_t length)
{
    // Three bytes a unit is the most; a surrogate pair takes four for two.
    const std::size_t start = out.size();
    out.resize(start + length * 3);
    char* to = out.data() + start;
    const char16_t* const end = text + length;
    while (text != end) {
        char32_t code = *text++;
        if (code < 0x80) {
            *to++ = static_cast<char>(code);
            continue;
        }
        if (code < 0x800) {
            *to++ = static_cast<char>(0xC0 | code >> 6);
            *to++ = static_cast<char>(0x80 | (code & 0x3F));
            continue;
        }
        if (code >= 0xD800 && code <= 0xDFFF) {
            if (code < 0xDC00 && text != end && *text >= 0xDC00 && *text <= 0xDFFF) {
                code = 0x10000 + ((code - 0xD800) << 10) + (*text++ - 0xDC00u);
                *to++ = static_cast<char>(0xF0 | code >> 18);
                *to++ = static_cast<char>(0x80 | (code >> 12 & 0x3F));
                *to++ = static_cast<char>(0x80 | (code >> 6 & 0x3F));
                *to++ = static_cast<char>(0x80 | (code & 0x3F));
                continue;
            }
            code = Replacement;
        }
        *to++ = static_cast<char>(0xE0 | code >> 12);
        *to++ = static_cast<char>(0x80 | (code >> 6 & 0x3F));
        *to++ = static_cast<char>(0x80 | (code & 0x3F));
    }
    out.resize(static_cast<std::size_t>(to - out.data()));
}

String String::FromUtf8(std::string_view utf8)
{
    std::u16string text;
    AppendUtf8(text, utf8.data(), utf8.size());
    return String(std::move(text));
}

std::string String::ToUtf8() const
{
    std::string utf8;
    AppendUtf16(utf8, m_text.data(), m_text.size());
    return utf8;
}

String String::Trimmed() const
{
    std::size_t first = 0, last = m_text.size();
    while (first < last && IsBlank(m_text[first]))
        ++first;
    while (last > first && IsBlank(m_text[last - 1]))
        --last;
    return String(m_text.data() + first, last - first);
}

} // namespace nub
