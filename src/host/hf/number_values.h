// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "hf/value_base.h"

#include <cstdint>
#include <type_traits>

namespace HF {

/// Base of whole numbers.
class HF_EXPORT LValueIntegral : public LValue
{
public:
    /// An unsigned 64-bit value above the signed range comes with its bits.
    virtual std::int64_t get_Int64() const = 0;
    virtual std::uint64_t get_UInt64() const = 0;
    virtual bool get_IsSigned() const = 0;

protected:
    using LValue::LValue;
};

/// Whole number of `Bits` bits in a T.
template <class T, int Bits>
class HF_EXPORT LValueInteger final : public LValueIntegral
{
public:
    explicit LValueInteger(T value = 0, bool isNull = false) : LValueIntegral(isNull), m_value(value) {}

    static constexpr T Lowest() { return std::is_signed_v<T> ? T(-(std::int64_t(1) << (Bits - 2)) * 2) : T(0); }
    static constexpr T Highest()
    {
        return std::is_signed_v<T> ? T((std::uint64_t(1) << (Bits - 1)) - 1) : T(~std::uint64_t(0) >> (64 - Bits));
    }

    T get_Value() const { return m_value; }
    std::int64_t get_Int64() const override { return static_cast<std::int64_t>(m_value); }
    std::uint64_t get_UInt64() const override { return static_cast<std::uint64_t>(m_value); }
    bool get_IsSigned() const override { return std::is_signed_v<T>; }
    QString get_String() const override;
    QVariant ToQVariant() const override;
    rc::Ref<I_LSqlValue> FromString(const QString& text) const override;
    rc::Ref<I_LSqlValue> CreateEmpty(bool isNull) const override;
    bool IsSame(const I_LSqlValue& other) const override;

private:
    T m_value;
};

using LValueInt16 = LValueInteger<std::int16_t, 16>;
using LValueInt24 = LValueInteger<std::int32_t, 24>;
using LValueInt32 = LValueInteger<std::int32_t, 32>;
using LValueInt64 = LValueInteger<std::int64_t, 64>;
using LValueUInt8 = LValueInteger<std::uint8_t, 8>;
using LValueUInt16 = LValueInteger<std::uint16_t, 16>;
using LValueUInt24 = LValueInteger<std::uint32_t, 24>;
using LValueUInt32 = LValueInteger<std::uint32_t, 32>;
using LValueUInt64 = LValueInteger<std::uint64_t, 64>;

extern template class LValueInteger<std::int16_t, 16>;
extern template class LValueInteger<std::int32_t, 24>;
extern template class LValueInteger<std::int32_t, 32>;
extern template class LValueInteger<std::int64_t, 64>;
extern template class LValueInteger<std::uint8_t, 8>;
extern template class LValueInteger<std::uint16_t, 16>;
extern template class LValueInteger<std::uint32_t, 24>;
extern template class LValueInteger<std::uint32_t, 32>;
extern template class LValueInteger<std::uint64_t, 64>;

/// Floating-point number; its text is the engine's, the shortest that gives the
/// same number back ("1.5", "1e+16", "inf", "nan", "-0.0").
template <class T>
class HF_EXPORT LValueFloating final : public LValue
{
public:
    explicit LValueFloating(T value = 0, bool isNull = false) : LValue(isNull), m_value(value) {}

    T get_Value() const { return m_value; }
    QString get_String() const override;
    QVariant ToQVariant() const override;
    rc::Ref<I_LSqlValue> FromString(const QString& text) const override;
    rc::Ref<I_LSqlValue> CreateEmpty(bool isNull) const override;
    /// By bits: a "not a number" is the same as itself, 0.0 is not -0.0.
    bool IsSame(const I_LSqlValue& other) const override;

private:
    T m_value;
};

using LValueFloat = LValueFloating<float>;
using LValueDouble = LValueFloating<double>;

extern template class LValueFloating<float>;
extern template class LValueFloating<double>;

} // namespace HF
