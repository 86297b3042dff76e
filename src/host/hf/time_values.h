// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "hf/text_values.h"

#include <QDateTime>

#include <optional>

namespace HF {

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

} // namespace HF
