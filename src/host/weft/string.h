// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "weft/export.h"

#include <QString>

#include <string>
#include <string_view>

namespace weft {

/// Text of the runtime: immutable UTF-16, cheap to copy. A value.
class ORB_SHARED String
{
public:
    String() = default;
    String(const QString& text) : m_text(text) {}
    String(const char* utf8) : m_text(QString::fromUtf8(utf8)) {}
    /// The text of a literal, whose characters are used where they stand.
    template <std::size_t N>
    static String fromStatic(const char16_t (&literal)[N])
    {
        return String(QString(QStringPrivate(nullptr, const_cast<char16_t*>(literal), N - 1)));
    }

    bool empty() const { return m_text.isEmpty(); }
    std::size_t length() const { return static_cast<std::size_t>(m_text.size()); }
    /// Zero-terminated.
    const char16_t* data() const { return reinterpret_cast<const char16_t*>(m_text.utf16()); }
    bool startsWith(std::u16string_view prefix) const;
    QString ToQString() const { return m_text; }

    bool operator==(const String&) const = default;
    bool operator<(const String& other) const { return m_text < other.m_text; }

private:
    QString m_text;
};

/// Builds a String piece by piece.
class ORB_SHARED string_builder
{
public:
    string_builder& append(const String& text);
    string_builder& append(char16_t unit);
    String str() const { return String(m_text); }

private:
    QString m_text;
};

} // namespace weft
