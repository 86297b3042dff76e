// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "rc/export.h"

#include <string>
#include <string_view>

namespace nub {

/// Text of the kernel: UTF-16, zero-terminated, a value.
class ORB_KERNEL String
{
public:
    String() = default;
    String(std::u16string text) : m_text(std::move(text)) {}
    String(std::u16string_view text) : m_text(text) {}
    String(const char16_t* text) : m_text(text) {}
    String(const char16_t* text, std::size_t length) : m_text(text, length) {}

    /// From UTF-8; malformed sequences become U+FFFD.
    static String FromUtf8(std::string_view utf8);
    /// To UTF-8; lone surrogates become U+FFFD.
    std::string ToUtf8() const;

    const char16_t* c_str() const noexcept { return m_text.c_str(); }
    std::size_t length() const noexcept { return m_text.size(); }
    bool empty() const noexcept { return m_text.empty(); }
    std::u16string_view view() const noexcept { return m_text; }
    /// Without white space (by the Unicode of ASCII and U+00A0) at both ends.
    String Trimmed() const;

    bool operator==(const String&) const = default;

private:
    std::u16string m_text;
};

/// Appends UTF-8 to UTF-16 text, once, without a copy between; the road of
/// every text cell. ASCII runs take a fast path.
ORB_KERNEL void AppendUtf8(std::u16string& out, const char* utf8, std::size_t size);
ORB_KERNEL void AppendUtf16(std::string& out, const char16_t* text, std::size_t length);

} // namespace nub
