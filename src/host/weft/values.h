// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "weft/any.h"
#include "weft/error.h"
#include "weft/ident.h"
#include "weft/type.h"

#include <QHashFunctions>

#include <optional>

namespace weft {

namespace internal {

/// Text, bytes and errors on the heap. They never change.
class ORB_SHARED object_value_string final : public object_value
{
public:
    explicit object_value_string(const String& text) : value(text) {}
    Type type() const override;
    bool equals(const object_value& other) const override;
    std::size_t hash() const override { return qHash(value.ToQString()); }
    const String value;
};
/// Bytes on the heap.
class ORB_SHARED object_value_bytes final : public object_value
{
public:
    explicit object_value_bytes(const ByteArray& bytes) : value(bytes) {}
    Type type() const override;
    bool equals(const object_value& other) const override;
    std::size_t hash() const override { return qHash(value.ToQByteArray()); }
    const ByteArray value;
};
/// An error on the heap.
class ORB_SHARED object_value_error final : public object_value
{
public:
    explicit object_value_error(const Error& error) : value(error) {}
    Type type() const override;
    const Error value;
};

} // namespace internal

/// The typed faces of the simple values: `typeMask()` is their type, `cast`
/// gives the content or nothing when the value is another.
struct ORB_SHARED None
{
    static Type typeMask() { return Type::basic(Type::Kind::None); }
    static std::optional<None> cast(const Any& any) { return any.isNone() ? std::optional<None>(None()) : std::nullopt; }
    operator Any() const { return {}; }
};
/// True or false.
struct ORB_SHARED Boolean
{
    bool value = false;
    static Type typeMask() { return Type::basic(Type::Kind::Boolean); }
    static std::optional<Boolean> cast(const Any& any);
    operator Any() const { return value; }
};
/// A whole number of 64 bits.
struct ORB_SHARED Integer
{
    std::int64_t value = 0;
    static Type typeMask() { return Type::basic(Type::Kind::Integer); }
    static std::optional<Integer> cast(const Any& any);
    operator Any() const { return value; }
};
/// A number with a fraction.
struct ORB_SHARED Float
{
    double value = 0;
    static Type typeMask() { return Type::basic(Type::Kind::Float); }
    /// Integers too.
    static std::optional<Float> cast(const Any& any);
    operator Any() const { return value; }
};

// The same for values that are classes of their own.
ORB_SHARED std::optional<String> cast_string(const Any& any);
ORB_SHARED std::optional<ByteArray> cast_bytes(const Any& any);
ORB_SHARED std::optional<Error> cast_error(const Any& any);
ORB_SHARED Type string_type();

/// A value for people: numbers and texts as they stand, lists and maps in
/// brackets, objects by their class.
ORB_SHARED String to_text(const Any& any);

/// A type that takes a value of any of its members, such as
/// Union<String, None>; None stands for an absent argument.
template <typename... Members>
class Union
{
public:
    Union() = default;
    explicit Union(const Any& any) : m_any(any) {}
    const Any& any() const { return m_any; }
    bool isNone() const { return m_any.isNone(); }
    template <typename T>
    auto get() const
    {
        return T::cast(m_any);
    }

private:
    Any m_any;
};

} // namespace weft
