// SPDX-License-Identifier: GPL-3.0-or-later
#include "nub/orbsql/literal_text.h"

#include <cstring>
#include <string>

namespace nub::orbsql {
namespace {

/// The code point at `p`, which is well-formed UTF-8; `p` moves behind it.
char32_t NextCodePoint(const char*& p)
{
    const auto first = static_cast<unsigned char>(*p++);
    const auto tail = [&p] { return static_cast<char32_t>(static_cast<unsigned char>(*p++) & 0x3F); };
    if (first < 0x80)
        return first;
    if (first < 0xE0) {
        const char32_t high = static_cast<char32_t>(first & 0x1F) << 6;
        return high | tail();
    }
    char32_t code = first < 0xF0 ? first & 0x0F : first & 0x07;
    code = code << 6 | tail();
    code = code << 6 | tail();
    return first < 0xF0 ? code : code << 6 | tail();
}

void AppendQuotedRun(std::string& out, const char* text, const char* end)
{
    out += '\'';
    while (const void* found = std::memchr(text, '\'', static_cast<std::size_t>(end - text))) {
        const char* const quote = static_cast<const char*>(found);
        out.append(text, quote + 1);
        out += '\'';
        text = quote + 1;
    }
    out.append(text, end);
    out += '\'';
}

void AppendEscape(std::string& out, char32_t unit)
{
    static constexpr char Digits[] = "0123456789abcdef";
    out += "\\u";
    for (int shift = 12; shift >= 0; shift -= 4)
        out += Digits[unit >> shift & 15];
}

} // namespace

bool IsWritable(std::string_view utf8, const CodePointTest& test)
{
    const char* const end = utf8.data() + utf8.size();
    for (const char* p = utf8.data(); p != end;)
        if (const char32_t code = NextCodePoint(p); !code || (code >= 0x80 && test && !test(code)))
            return false;
    return true;
}

/// Parts of a text that chr() alone can write; a longer one is written as its bytes.
constexpr int MostParts = 200;

void AppendTextLiteral(std::string& out, std::string_view utf8, const CodePointTest& test, bool nested)
{
    const char* const end = utf8.data() + utf8.size();
    const bool plain = !test && (utf8.empty() || !std::memchr(utf8.data(), 0, utf8.size()));
    if (plain) {
        AppendQuotedRun(out, utf8.data(), end);
        return;
    }
    const std::size_t start = out.size();
    int parts = 0;
    const auto join = [&] {
        if (parts++)
            out += " || ";
        return parts <= MostParts;
    };
    // The engine takes expressions only so deep.
    const auto asBytes = [&] {
        out.resize(start);
        out += "decode( ";
        AppendBytesLiteral(out, reinterpret_cast<const unsigned char*>(utf8.data()), utf8.size());
        out += " )";
    };
    const char* run = utf8.data();
    for (const char* p = run; p != end;) {
        const char* const at = p;
        const char32_t code = NextCodePoint(p);
        if (code && (code < 0x80 || !test || test(code)))
            continue;
        if (run != at && join())
            AppendQuotedRun(out, run, at);
        if (!join())
            return asBytes();
        out += "chr(" + std::to_string(static_cast<unsigned>(code)) + ')';
        run = p;
    }
    if (run != end || !parts) {
        join();
        AppendQuotedRun(out, run, end);
    }
    if (nested && parts > 1) {
        out.insert(start, 1, '(');
        out += ')';
    }
}

void AppendBytesLiteral(std::string& out, const unsigned char* bytes, std::size_t size)
{
    static constexpr char Digits[] = "0123456789abcdef";
    out += "unhex( '";
    std::size_t at = out.size();
    out.resize(at + 2 * size);
    for (std::size_t i = 0; i < size; ++i) {
        out[at++] = Digits[bytes[i] >> 4];
        out[at++] = Digits[bytes[i] & 15];
    }
    out += "' )";
}

void AppendJsonString(std::string& out, std::string_view utf8, const CodePointTest& test)
{
    out += '"';
    const char* const end = utf8.data() + utf8.size();
    for (const char* p = utf8.data(); p != end;) {
        const char* const at = p;
        const char32_t code = NextCodePoint(p);
        if (code == U'"' || code == U'\\') {
            out += '\\';
            out += *at;
        } else if (code >= 0x20 && (code < 0x80 || !test || test(code))) {
            out.append(at, p);
        } else if (code < 0x10000) {
            AppendEscape(out, code);
        } else {
            AppendEscape(out, 0xD800 + ((code - 0x10000) >> 10));
            AppendEscape(out, 0xDC00 + ((code - 0x10000) & 0x3FF));
        }
    }
    out += '"';
}

} // namespace nub::orbsql
