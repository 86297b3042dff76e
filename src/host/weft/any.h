// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "weft/object_value.h"
#include "weft/string.h"

#include <concepts>
#include <span>
#include <utility>

namespace weft {

class ByteArray;
class Error;

/// Any value of the runtime: none, a boolean, an integer or a float in itself,
/// or a strong reference to a value on the heap. A value, 16 bytes; copies of
/// one reference share their value.
class ORB_SHARED Any
{
public:
    enum class Kind : std::uint8_t { None, Boolean, Integer, Float, Object };

    Any() noexcept = default;
    template <std::same_as<bool> B>
    Any(B value) noexcept : m_kind(Kind::Boolean)
    {
        m_value.integer = value;
    }
    template <std::integral I>
        requires(!std::same_as<I, bool>)
    Any(I value) noexcept : m_kind(Kind::Integer)
    {
        m_value.integer = static_cast<std::int64_t>(value);
    }
    Any(double value) noexcept : m_kind(Kind::Float) { m_value.real = value; }
    Any(const String& text);
    Any(const QString& text) : Any(String(text)) {}
    Any(const ByteArray& bytes);
    Any(const Error& error);
    Any(const Any& other) noexcept : m_kind(other.m_kind), m_value(other.m_value) { keep(); }
    Any(Any&& other) noexcept : m_kind(std::exchange(other.m_kind, Kind::None)), m_value(other.m_value) {}
    Any& operator=(Any other) noexcept
    {
        std::swap(m_kind, other.m_kind);
        std::swap(m_value, other.m_value);
        return *this;
    }
    ~Any()
    {
        if (m_kind == Kind::Object)
            m_value.object->release();
    }

    /// Takes over the reference that a fresh value comes with. Null gives none.
    static Any adopt(internal::object_value* value) noexcept;
    /// Takes a reference of its own.
    static Any ref(internal::object_value* value) noexcept;

    Kind kind() const { return m_kind; }
    bool isNone() const { return m_kind == Kind::None; }
    bool isBoolean() const { return m_kind == Kind::Boolean; }
    bool isInteger() const { return m_kind == Kind::Integer; }
    bool isFloat() const { return m_kind == Kind::Float; }
    bool isObject() const { return m_kind == Kind::Object; }

    // Each for its own kind only.
    bool boolean() const { return m_value.integer != 0; }
    std::int64_t integer() const { return m_value.integer; }
    double real() const { return m_value.real; }
    /// Null for immediates.
    internal::object_value* object() const { return isObject() ? m_value.object : nullptr; }
    /// The object as one of a class of heap values; null when it is another.
    template <typename T>
    T* as() const
    {
        return dynamic_cast<T*>(object());
    }

    Type type() const;
    /// Fields of an instance; none and false for anything else.
    Any fieldValue(const method_ident& field) const;
    bool setFieldValue(const method_ident& field, const Any& value) const;
    /// Calls the method of the value's class, the value itself in front. Throws
    /// an Error when there is no such method, and what the method throws.
    Any invoke(const method_ident& method, std::span<const Any> arguments = {}) const;

    /// Numbers, texts, lists and maps by content, all else by identity.
    bool operator==(const Any& other) const;
    std::size_t hash() const;

private:
    void keep() const noexcept
    {
        if (m_kind == Kind::Object)
            m_value.object->add_ref();
    }

    Kind m_kind = Kind::None;
    union {
        std::int64_t integer;
        double real;
        internal::object_value* object;
    } m_value{0};
};

} // namespace weft
