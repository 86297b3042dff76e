// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "hf/value_base.h"

#include <cstdint>
#include <cstring>
#include <string_view>

namespace HF {

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

/// An SQL expression that stands for the value, such as nextval('s').
class HF_EXPORT LValueSqlExpression final : public LValueString
{
public:
    using LValueString::LValueString;

    rc::Ref<I_LSqlValue> FromString(const QString& text) const override;
    rc::Ref<I_LSqlValue> CreateEmpty(bool isNull) const override;
};

} // namespace HF
