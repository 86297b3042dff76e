// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "hf/sql_value.h"

#include <QDateTime>

#include <cstdint>
#include <cstring>
#include <optional>
#include <string_view>

namespace HF {

/// Base of all values. A grid holds one of these for each cell, so they are
/// small: members start in the padding that the counts leave, and memory comes
/// from the pool. Made by rc::make only. Any thread may read.
class HF_EXPORT LValue : public I_LSqlValue
{
public:
    bool get_IsNull() const final { return m_null; }
    QByteArray get_Data() const override;
    long get_Length() const override;

protected:
    explicit LValue(bool isNull) : m_null(isNull) {}
    /// Same class and same null flag; a null is the same whatever it holds.
    bool IsSameKind(const I_LSqlValue& other) const;

    bool m_null;
};

/// Stands where there is no value at all, such as a separator among field types.
class HF_EXPORT LValueInvalid final : public LValue
{
public:
    LValueInvalid() : LValue(true) {}
    /// The one that all share.
    static rc::Ref<LValueInvalid> Instance();

    QString get_String() const override;
    QVariant ToQVariant() const override;
    rc::Ref<I_LSqlValue> FromString(const QString& text) const override;
    rc::Ref<I_LSqlValue> CreateEmpty(bool isNull) const override;
    bool IsSame(const I_LSqlValue& other) const override;
};

/// "true" and "false".
class HF_EXPORT LValueBoolean final : public LValue
{
public:
    explicit LValueBoolean(bool value = false, bool isNull = false) : LValue(isNull), m_value(value) {}

    bool get_Boolean() const { return m_value; }
    QString get_String() const override;
    QVariant ToQVariant() const override;
    rc::Ref<I_LSqlValue> FromString(const QString& text) const override;
    rc::Ref<I_LSqlValue> CreateEmpty(bool isNull) const override;
    bool IsSame(const I_LSqlValue& other) const override;

private:
    bool m_value;
};

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

/// A text, and base of all values that are carried as one and bind as one. Up to
/// InlineCapacity UTF-16 units stand in the object itself.
class HF_EXPORT LValueString : public LValue
{
public:
    static constexpr int InlineCapacity = 15;

    LValueString() : LValueString(std::u16string_view()) {}
    explicit LValueString(std::u16string_view text, bool isNull = false) : LValue(isNull) { Store(text); }
    explicit LValueString(const QString& text, bool isNull = false) : LValue(isNull) { Store(text); }
    ~LValueString() override
    {
        if (m_size == Long)
            m_text.~QString();
    }

    /// The text without a copy; valid as long as the value.
    std::u16string_view get_Chars() const
    {
        if (m_size == Long) [[unlikely]]
            return {reinterpret_cast<const char16_t*>(m_text.utf16()), static_cast<std::size_t>(m_text.size())};
        return {m_chars, m_size};
    }
    QString get_String() const override;
    QByteArray get_Data() const override;
    long get_Length() const override { return static_cast<long>(get_Chars().size()); }
    QVariant ToQVariant() const override;
    rc::Ref<I_LSqlValue> FromString(const QString& text) const override;
    rc::Ref<I_LSqlValue> CreateEmpty(bool isNull) const override;
    bool IsSame(const I_LSqlValue& other) const override;

private:
    static constexpr std::uint8_t Long = 0xFF;

    void Store(std::u16string_view text)
    {
        if (text.size() > InlineCapacity) [[unlikely]] {
            new (&m_text) QString(reinterpret_cast<const QChar*>(text.data()), static_cast<qsizetype>(text.size()));
            m_size = Long;
        } else {
            if (!text.empty()) // an empty view may have no address
                std::memcpy(m_chars, text.data(), text.size() * sizeof(char16_t));
            m_size = static_cast<std::uint8_t>(text.size());
        }
    }
    void Store(const QString& text);

    std::uint8_t m_size; ///< of the text in m_chars, or Long: it is m_text
    union {
        char16_t m_chars[InlineCapacity];
        QString m_text;
    };
};

/// Bytes; their text is the engine's ("a\x00b").
class HF_EXPORT LValueByteArray final : public LValue
{
public:
    explicit LValueByteArray(QByteArray bytes = {}, bool isNull = false) : LValue(isNull), m_bytes(std::move(bytes)) {}

    QString get_String() const override;
    QByteArray get_Data() const override { return m_bytes; }
    long get_Length() const override { return static_cast<long>(m_bytes.size()); }
    QVariant ToQVariant() const override;
    rc::Ref<I_LSqlValue> FromString(const QString& text) const override;
    rc::Ref<I_LSqlValue> CreateEmpty(bool isNull) const override;
    bool IsSame(const I_LSqlValue& other) const override;

private:
    QByteArray m_bytes;
};

/// A string of bits as the digits 0 and 1.
class HF_EXPORT LValueVarBitArray final : public LValueString
{
public:
    using LValueString::LValueString;

    rc::Ref<I_LSqlValue> FromString(const QString& text) const override;
    rc::Ref<I_LSqlValue> CreateEmpty(bool isNull) const override;
};

/// A UUID in lower-case hexadecimal with hyphens.
class HF_EXPORT LValueUUID final : public LValueString
{
public:
    using LValueString::LValueString;

    rc::Ref<I_LSqlValue> FromString(const QString& text) const override;
    rc::Ref<I_LSqlValue> CreateEmpty(bool isNull) const override;
};

/// A decimal number of at most `precision` digits, `scale` of them behind the
/// point, carried as its text so that no digit is lost.
class HF_EXPORT LValueDecimal final : public LValueString
{
public:
    LValueDecimal(int precision, int scale, std::u16string_view text, bool isNull = false)
        : LValueString(text, isNull), m_precision(precision), m_scale(scale)
    {
    }
    LValueDecimal(int precision, int scale, const QString& text, bool isNull = false)
        : LValueString(text, isNull), m_precision(precision), m_scale(scale)
    {
    }

    int get_Precision() const { return m_precision; }
    int get_Scale() const { return m_scale; }
    rc::Ref<I_LSqlValue> FromString(const QString& text) const override;
    rc::Ref<I_LSqlValue> CreateEmpty(bool isNull) const override;

private:
    int m_precision;
    int m_scale;
};

/// A day, and the text it came as.
class HF_EXPORT LValueDate final : public LValueString
{
public:
    explicit LValueDate(QDate date);
    LValueDate(QDate date, std::u16string_view text, bool isNull = false)
        : LValueString(text, isNull), m_julianDay(date.toJulianDay())
    {
    }

    /// "YYYY-MM-DD", the year in four to nine digits; nothing for any other text
    /// or a day that does not exist.
    static std::optional<QDate> ParseISO(QStringView text);

    QDate get_Date() const { return QDate::fromJulianDay(m_julianDay); }
    QVariant ToQVariant() const override;
    rc::Ref<I_LSqlValue> FromString(const QString& text) const override;
    rc::Ref<I_LSqlValue> CreateEmpty(bool isNull) const override;

private:
    qint64 m_julianDay;
};

/// A time of day, and the text it came as, which may hold more digits.
class HF_EXPORT LValueTime final : public LValueString
{
public:
    explicit LValueTime(QTime time);
    LValueTime(QTime time, std::u16string_view text, bool isNull = false) : LValueString(text, isNull), m_time(time) {}

    /// "HH:MM", "HH:MM:SS" or with a fraction of any number of digits, which is
    /// cut to milliseconds.
    static std::optional<QTime> ParseISO(QStringView text);

    QTime get_Time() const { return m_time; }
    QVariant ToQVariant() const override;
    rc::Ref<I_LSqlValue> FromString(const QString& text) const override;
    rc::Ref<I_LSqlValue> CreateEmpty(bool isNull) const override;

private:
    QTime m_time;
};

/// A point in time, and the text it came as. The date-time is invalid when the
/// text is none that Qt can hold.
class HF_EXPORT LValueDateTime final : public LValueString
{
public:
    explicit LValueDateTime(const QDateTime& value);
    LValueDateTime(const QDateTime& value, std::u16string_view text, bool isNull = false)
        : LValueString(text, isNull), m_value(value)
    {
    }

    /// A date and a time behind "T" or a blank, with "Z" or an offset
    /// ("+05:30", "-08") behind it or none; without one the time counts as UTC.
    static std::optional<QDateTime> ParseISO(QStringView text);

    QDateTime get_DateTime() const { return m_value; }
    QVariant ToQVariant() const override;
    rc::Ref<I_LSqlValue> FromString(const QString& text) const override;
    rc::Ref<I_LSqlValue> CreateEmpty(bool isNull) const override;

private:
    QDateTime m_value;
};

/// An SQL expression that stands for the value, such as nextval('s').
class HF_EXPORT LValueSqlExpression final : public LValueString
{
public:
    using LValueString::LValueString;

    rc::Ref<I_LSqlValue> FromString(const QString& text) const override;
    rc::Ref<I_LSqlValue> CreateEmpty(bool isNull) const override;
};

// A cell is the value, and a pointer in a list that may be half empty.
static_assert(sizeof(LValueBoolean) <= 40 && sizeof(LValueInt32) <= 40 && sizeof(LValueInt64) <= 40);
static_assert(sizeof(LValueFloat) <= 40 && sizeof(LValueDouble) <= 40);
static_assert(sizeof(LValueString) <= 64 && sizeof(LValueDate) <= 72 && sizeof(LValueDecimal) <= 72);

} // namespace HF
