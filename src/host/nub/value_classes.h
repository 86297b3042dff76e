// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "nub/value.h"
#include "nub/value_text.h"

#include <algorithm>
#include <atomic>
#include <cmath>
#include <cstring>
#include <limits>
#include <string>
#include <type_traits>
#include <utility>
#include <vector>

namespace nub {

/// What a value class is told of the type it holds.
template <class T>
struct type_traits
{
    using value_type = T;
};

/// Storage policy: the number lies in the value object itself.
template <class Traits>
class policyInPlace
{
public:
    using value_type = typename Traits::value_type;

protected:
    value_type m_value{};
};

/// Counting and the answers that most values share. Made by new, with one
/// reference that belongs to the maker (smart_ptr::adopt).
class CountedValue : public I_Value
{
public:
    CountedValue(const CountedValue&) = delete;
    CountedValue& operator=(const CountedValue&) = delete;

    void AddRef() const noexcept final { AddRefs(1); }
    void Release() const noexcept final { ReleaseRefs(1); }
    /// Many references at once, for an owner that hands them out by itself.
    void AddRefs(std::int32_t count) const noexcept { m_count.fetch_add(count, std::memory_order_relaxed); }
    void ReleaseRefs(std::int32_t count) const noexcept
    {
        if (m_count.fetch_sub(count, std::memory_order_acq_rel) == count)
            delete this;
    }
    /// Equal to the references an owner knows of: nobody else has one.
    std::int32_t RefCount() const noexcept { return m_count.load(std::memory_order_acquire); }

    bool get_IsNull() const override { return false; }
    bool get_Boolean() const override { return false; }
    std::int64_t get_LLong() const override { return 0; }
    std::uint64_t get_ULLong() const override { return 0; }
    double get_Double() const override { return 0; }
    std::u16string_view get_Chars() const override { return {}; }
    void* QueryInterface(int) override { return nullptr; }

protected:
    CountedValue() = default;
    virtual ~CountedValue() = default;

private:
    mutable std::atomic<std::int32_t> m_count{1};
};

/// A number or a boolean that is never null. `Type` is its kernel type,
/// `Count` how many numbers it holds.
template <int Type, int Count, class Policy>
class Value_Numeric : public CountedValue, protected Policy
{
    static_assert(Count == 1);

public:
    using value_type = typename Policy::value_type;

    Value_Numeric() = default;
    explicit Value_Numeric(value_type value) { this->m_value = value; }

    value_type get_Number() const noexcept { return this->m_value; }

    int get_Type() const override { return Type; }
    std::uint32_t get_ByteLength() const override { return this->get_IsNull() ? 0 : sizeof(value_type); }
    bool get_Boolean() const override { return this->m_value != value_type(); }
    std::int64_t get_LLong() const override { return Convert<std::int64_t>(); }
    std::uint64_t get_ULLong() const override { return Convert<std::uint64_t>(); }
    double get_Double() const override { return static_cast<double>(this->m_value); }
    String get_String() const override
    {
        if (this->get_IsNull())
            return {};
        char buffer[text::BufferSize];
        char* end;
        if constexpr (std::is_same_v<value_type, bool>)
            return this->m_value ? u"true" : u"false";
        else if constexpr (std::is_same_v<value_type, float>)
            end = text::WriteFloat(buffer, this->m_value);
        else if constexpr (std::is_same_v<value_type, double>)
            end = text::WriteDouble(buffer, this->m_value);
        else if constexpr (std::is_signed_v<value_type>)
            end = text::WriteInteger(buffer, this->m_value);
        else
            end = text::WriteUnsigned(buffer, this->m_value);
        std::u16string result;
        text::AssignAscii(result, buffer, end);
        return String(std::move(result));
    }

private:
    /// The number in another type; 0 when it does not fit.
    template <class T>
    T Convert() const
    {
        const value_type value = this->m_value;
        if constexpr (std::is_floating_point_v<value_type>) {
            // The bounds are powers of two, so that they are exact.
            constexpr double above = std::is_signed_v<T> ? 0x1p63 : 0x1p64;
            constexpr double below = std::is_signed_v<T> ? -0x1p63 : 0.0;
            const double whole = std::trunc(static_cast<double>(value));
            return whole >= below && whole < above ? static_cast<T>(whole) : 0;
        } else if constexpr (std::is_same_v<value_type, bool>) {
            return value;
        } else {
            return std::in_range<T>(value) ? static_cast<T>(value) : 0;
        }
    }
};

/// The same with a null flag. A null answers 0 to the typed getters.
template <int Type, int Count, class Policy>
class Value_Numeric_Nullable : public Value_Numeric<Type, Count, Policy>
{
    using Base = Value_Numeric<Type, Count, Policy>;

public:
    using value_type = typename Base::value_type;

    /// A null.
    Value_Numeric_Nullable() = default;
    explicit Value_Numeric_Nullable(value_type value, bool isNull = false)
        : Base(isNull ? value_type() : value), m_isNull(isNull) {}

    void Assign(value_type value) noexcept
    {
        this->m_value = value;
        m_isNull = false;
    }
    void AssignNull() noexcept
    {
        this->m_value = value_type();
        m_isNull = true;
    }
    bool get_IsNull() const override { return m_isNull; }

private:
    bool m_isNull = true;
};

/// Text, or a date or time by its text; nullable.
template <int Type>
class Value_Text : public CountedValue
{
public:
    /// A null.
    Value_Text() = default;
    explicit Value_Text(std::u16string text, bool isNull = false)
        : m_text(isNull ? std::u16string() : std::move(text)), m_isNull(isNull) {}

    /// The text to be written anew; its memory is used again. Not null from now on.
    std::u16string& Renew() noexcept
    {
        m_isNull = false;
        m_text.clear();
        return m_text;
    }
    void AssignNull() noexcept
    {
        m_text.clear();
        m_isNull = true;
    }
    bool get_IsNull() const override { return m_isNull; }
    int get_Type() const override { return Type; }
    std::uint32_t get_ByteLength() const override
    {
        return static_cast<std::uint32_t>(m_text.size() * sizeof(char16_t));
    }
    String get_String() const override { return String(std::u16string_view(m_text)); }
    std::u16string_view get_Chars() const override { return m_text; }

private:
    std::u16string m_text;
    bool m_isNull = true;
};

/// A row of items without a null flag. `Type` is its kernel type.
template <class Traits, int Type>
class Value_Raw_T : public CountedValue, public I_RawData
{
public:
    using value_type = typename Traits::value_type;
    static_assert(sizeof(value_type) == 1);

    Value_Raw_T() = default;
    /// Copies the bytes.
    Value_Raw_T(const void* bytes, std::uint32_t length) { CopyFrom(bytes, length); }
    /// `length` zero bytes.
    explicit Value_Raw_T(std::uint32_t length) : m_bytes(length) {}

    int get_Type() const override { return Type; }
    std::uint32_t get_ByteLength() const override { return get_Length(); }
    String get_String() const override
    {
        std::u16string result;
        text::AppendBlob(result, m_bytes.data(), m_bytes.size());
        return String(std::move(result));
    }
    void* QueryInterface(int id) override
    {
        return id == InterfaceId_RawData ? static_cast<I_RawData*>(this) : nullptr;
    }

    std::uint32_t get_Length() const override { return static_cast<std::uint32_t>(m_bytes.size()); }
    void CopyTo(void* buffer, std::uint32_t length) const override
    {
        const std::size_t count = std::min<std::size_t>(length, m_bytes.size());
        if (count)
            std::memcpy(buffer, m_bytes.data(), count);
    }
    void CopyFrom(const void* buffer, std::uint32_t length) override
    {
        const auto* first = static_cast<const value_type*>(buffer);
        m_bytes.assign(first, first + length);
    }

protected:
    std::vector<value_type> m_bytes;
};

/// The same with a null flag.
template <class Traits, int Type>
class Value_Raw_Null_T : public Value_Raw_T<Traits, Type>
{
    using Base = Value_Raw_T<Traits, Type>;

public:
    /// A null.
    Value_Raw_Null_T() = default;
    Value_Raw_Null_T(const void* bytes, std::uint32_t length, bool isNull = false)
        : Base(isNull ? nullptr : bytes, isNull ? 0 : length), m_isNull(isNull) {}
    explicit Value_Raw_Null_T(std::uint32_t length, bool isNull = false)
        : Base(isNull ? 0 : length), m_isNull(isNull) {}

    void CopyFrom(const void* buffer, std::uint32_t length) override
    {
        Base::CopyFrom(buffer, length);
        m_isNull = false;
    }
    void AssignNull() noexcept
    {
        this->m_bytes.clear();
        m_isNull = true;
    }
    bool get_IsNull() const override { return m_isNull; }

private:
    bool m_isNull = true;
};

template <int Type, class T>
using Value_Number = Value_Numeric_Nullable<Type, 1, policyInPlace<type_traits<T>>>;

using Value_Boolean = Value_Number<ValueType_Boolean, bool>;
using Value_Byte = Value_Number<ValueType_Byte, std::uint8_t>;
using Value_Short = Value_Number<ValueType_Short, std::int16_t>;
using Value_UShort = Value_Number<ValueType_UShort, std::uint16_t>;
using Value_Medium = Value_Number<ValueType_Medium, std::int32_t>;
using Value_UMedium = Value_Number<ValueType_UMedium, std::uint32_t>;
using Value_Long = Value_Number<ValueType_Long, int>;
using Value_ULong = Value_Number<ValueType_ULong, std::uint32_t>;
using Value_LLong = Value_Number<ValueType_LLong, long>;
using Value_ULLong = Value_Number<ValueType_ULLong, std::uint64_t>;
using Value_Float = Value_Number<ValueType_Float, float>;
using Value_Double = Value_Number<ValueType_Double, double>;
using Value_String = Value_Text<ValueType_String>;
using Value_Date = Value_Text<ValueType_Date>;
using Value_Time = Value_Text<ValueType_Time>;
using Value_VarBinary = Value_Raw_Null_T<type_traits<unsigned char>, ValueType_VarBinary>;

} // namespace nub
