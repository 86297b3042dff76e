// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "weft/string.h"

#include <QByteArray>
#include <QString>

#include <functional>

namespace weft {

/// Bytes of the runtime: immutable, cheap to copy. A value.
class ORB_SHARED ByteArray
{
public:
    ByteArray() = default;
    explicit ByteArray(const QByteArray& bytes) : m_bytes(bytes) {}
    /// Bytes of a literal, used where they stand.
    template <std::size_t N>
    static ByteArray fromStatic(const char (&literal)[N])
    {
        return ByteArray(QByteArray::fromRawData(literal, N - 1));
    }

    const QByteArray& ToQByteArray() const { return m_bytes; }
    std::size_t length() const { return static_cast<std::size_t>(m_bytes.size()); }
    bool operator==(const ByteArray&) const = default;

private:
    QByteArray m_bytes;
};

/// The name of a method or a field, made once for the life of the process: two
/// of one name are the same pointer. A value; empty by default. Any thread.
class ORB_SHARED method_ident
{
public:
    method_ident() = default;

    bool isEmpty() const { return !m_name; }
    QByteArray name() const { return m_name ? *m_name : QByteArray(); }
    QString text() const { return QString::fromUtf8(name()); }
    bool operator==(const method_ident&) const = default;
    std::size_t hash() const { return std::hash<const void*>()(m_name); }

private:
    friend ORB_SHARED method_ident method_ident_untyped(const ByteArray& name);
    explicit method_ident(const QByteArray* name) : m_name(name) {}

    const QByteArray* m_name = nullptr;
};

/// The identifier of a name.
ORB_SHARED method_ident method_ident_untyped(const ByteArray& name);
ORB_SHARED method_ident method_ident_untyped(const QString& name);

namespace internal::helpers {

/// The identifier of a literal; the name is not copied.
template <std::size_t N>
method_ident create_literal_method_identifier(const char (&name)[N])
{
    return method_ident_untyped(ByteArray::fromStatic(name));
}

} // namespace internal::helpers
} // namespace weft

template <>
struct std::hash<weft::method_ident>
{
    std::size_t operator()(const weft::method_ident& ident) const { return ident.hash(); }
};
