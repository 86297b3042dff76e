// SPDX-License-Identifier: GPL-3.0-or-later
#include "hf/values.h"

#include "nub/value_text.h"

#include <charconv>
#include <typeinfo>

namespace HF {

namespace {

QString FromAscii(const char* begin, const char* end)
{
    return QString::fromLatin1(begin, static_cast<qsizetype>(end - begin));
}

std::u16string_view Chars(const QString& text)
{
    return {reinterpret_cast<const char16_t*>(text.utf16()), static_cast<std::size_t>(text.size())};
}

/// What stands for a text that the class at hand cannot hold.
rc::Ref<I_LSqlValue> AsString(const QString& text)
{
    return rc::make<LValueString>(text);
}

/// The trimmed text in ASCII; nothing when it holds anything else.
std::optional<QByteArray> Ascii(const QString& text)
{
    const QStringView trimmed = QStringView(text).trimmed();
    for (const QChar c : trimmed)
        if (c.unicode() >= 128)
            return std::nullopt;
    return trimmed.toLatin1();
}

/// A number that takes up the whole text.
template <class T>
std::optional<T> ParseNumber(const QString& text)
{
    const std::optional<QByteArray> ascii = Ascii(text);
    if (!ascii)
        return std::nullopt;
    const char* begin = ascii->constData();
    const char* const end = begin + ascii->size();
    if (begin != end && *begin == '+' && end - begin > 1 && begin[1] != '-')
        ++begin;
    T value{};
    const auto [stop, error] = std::from_chars(begin, end, value);
    if (error != std::errc() || stop != end)
        return std::nullopt;
    return value;
}

bool IsDigit(QChar c)
{
    return c.unicode() >= '0' && c.unicode() <= '9';
}

/// Reads digits from `at` on, at most `most` of them; -1 when there are fewer than `least`.
int ReadDigits(QStringView text, qsizetype& at, int least, int most)
{
    int value = 0, count = 0;
    for (; at < text.size() && count < most && IsDigit(text[at]); ++at, ++count)
        value = value * 10 + (text[at].unicode() - '0');
    return count < least ? -1 : value;
}

bool Skip(QStringView text, qsizetype& at, char c)
{
    if (at >= text.size() || text[at] != QLatin1Char(c))
        return false;
    ++at;
    return true;
}

std::optional<QDate> ReadDate(QStringView text, qsizetype& at)
{
    const int year = ReadDigits(text, at, 4, 9);
    if (year < 1 || !Skip(text, at, '-'))
        return std::nullopt;
    const int month = ReadDigits(text, at, 2, 2);
    if (!Skip(text, at, '-'))
        return std::nullopt;
    const int day = ReadDigits(text, at, 2, 2);
    const QDate date(year, month, day);
    return date.isValid() ? std::optional(date) : std::nullopt;
}

std::optional<QTime> ReadTime(QStringView text, qsizetype& at)
{
    const int hours = ReadDigits(text, at, 2, 2);
    if (!Skip(text, at, ':'))
        return std::nullopt;
    const int minutes = ReadDigits(text, at, 2, 2);
    int seconds = 0, milliseconds = 0;
    if (Skip(text, at, ':')) {
        seconds = ReadDigits(text, at, 2, 2);
        if (Skip(text, at, '.')) {
            const qsizetype start = at;
            milliseconds = ReadDigits(text, at, 1, 3);
            if (milliseconds < 0)
                return std::nullopt;
            for (qsizetype digits = at - start; digits < 3; ++digits)
                milliseconds *= 10;
            while (at < text.size() && IsDigit(text[at]))
                ++at;
        }
    }
    const QTime time(hours, minutes, seconds, milliseconds);
    return time.isValid() ? std::optional(time) : std::nullopt;
}

} // namespace

// LValue

QByteArray LValue::get_Data() const
{
    return get_String().toUtf8();
}

long LValue::get_Length() const
{
    return static_cast<long>(get_String().size());
}

bool LValue::IsSameKind(const I_LSqlValue& other) const
{
    return typeid(*this) == typeid(other) && m_null == other.get_IsNull();
}

// LValueInvalid

rc::Ref<LValueInvalid> LValueInvalid::Instance()
{
    // Never released: values outlive the statics of any one library.
    static const auto* const instance = new rc::Ref<LValueInvalid>(rc::make<LValueInvalid>());
    return *instance;
}

QString LValueInvalid::get_String() const
{
    return QString();
}

QVariant LValueInvalid::ToQVariant() const
{
    return QVariant();
}

rc::Ref<I_LSqlValue> LValueInvalid::FromString(const QString& text) const
{
    return AsString(text);
}

rc::Ref<I_LSqlValue> LValueInvalid::CreateEmpty(bool) const
{
    return Instance();
}

bool LValueInvalid::IsSame(const I_LSqlValue& other) const
{
    return IsSameKind(other);
}

// LValueBoolean

QString LValueBoolean::get_String() const
{
    if (m_null)
        return QString();
    return m_value ? QStringLiteral("true") : QStringLiteral("false");
}

QVariant LValueBoolean::ToQVariant() const
{
    return m_null ? QVariant() : QVariant(m_value);
}

rc::Ref<I_LSqlValue> LValueBoolean::FromString(const QString& text) const
{
    // The words that the engine's own cast takes.
    const QString word = text.trimmed().toLower();
    for (const char* yes : {"true", "t", "1", "yes", "y"})
        if (word == QLatin1String(yes))
            return rc::make<LValueBoolean>(true);
    for (const char* no : {"false", "f", "0", "no", "n"})
        if (word == QLatin1String(no))
            return rc::make<LValueBoolean>(false);
    return AsString(text);
}

rc::Ref<I_LSqlValue> LValueBoolean::CreateEmpty(bool isNull) const
{
    return rc::make<LValueBoolean>(false, isNull);
}

bool LValueBoolean::IsSame(const I_LSqlValue& other) const
{
    return IsSameKind(other) && (m_null || m_value == static_cast<const LValueBoolean&>(other).m_value);
}

// LValueInteger

template <class T, int Bits>
QString LValueInteger<T, Bits>::get_String() const
{
    if (m_null)
        return QString();
    char text[24];
    return FromAscii(text, std::to_chars(text, text + sizeof text, m_value).ptr);
}

template <class T, int Bits>
QVariant LValueInteger<T, Bits>::ToQVariant() const
{
    if (m_null)
        return QVariant();
    if constexpr (std::is_signed_v<T>)
        return sizeof(T) <= sizeof(int) ? QVariant(static_cast<int>(m_value)) : QVariant(static_cast<qlonglong>(m_value));
    else
        return sizeof(T) <= sizeof(int) ? QVariant(static_cast<uint>(m_value)) : QVariant(static_cast<qulonglong>(m_value));
}

template <class T, int Bits>
rc::Ref<I_LSqlValue> LValueInteger<T, Bits>::FromString(const QString& text) const
{
    using Wide = std::conditional_t<std::is_signed_v<T>, std::int64_t, std::uint64_t>;
    const std::optional<Wide> value = ParseNumber<Wide>(text);
    if (!value || *value < Lowest() || *value > Highest())
        return AsString(text);
    return rc::make<LValueInteger>(static_cast<T>(*value));
}

template <class T, int Bits>
rc::Ref<I_LSqlValue> LValueInteger<T, Bits>::CreateEmpty(bool isNull) const
{
    return rc::make<LValueInteger>(T(0), isNull);
}

template <class T, int Bits>
bool LValueInteger<T, Bits>::IsSame(const I_LSqlValue& other) const
{
    return IsSameKind(other) && (m_null || m_value == static_cast<const LValueInteger&>(other).m_value);
}

template class LValueInteger<std::int16_t, 16>;
template class LValueInteger<std::int32_t, 24>;
template class LValueInteger<std::int32_t, 32>;
template class LValueInteger<std::int64_t, 64>;
template class LValueInteger<std::uint8_t, 8>;
template class LValueInteger<std::uint16_t, 16>;
template class LValueInteger<std::uint32_t, 24>;
template class LValueInteger<std::uint32_t, 32>;
template class LValueInteger<std::uint64_t, 64>;

// LValueFloating

template <class T>
QString LValueFloating<T>::get_String() const
{
    if (m_null)
        return QString();
    char text[nub::text::BufferSize];
    if constexpr (std::is_same_v<T, float>)
        return FromAscii(text, nub::text::WriteFloat(text, m_value));
    else
        return FromAscii(text, nub::text::WriteDouble(text, m_value));
}

template <class T>
QVariant LValueFloating<T>::ToQVariant() const
{
    return m_null ? QVariant() : QVariant::fromValue(m_value);
}

template <class T>
rc::Ref<I_LSqlValue> LValueFloating<T>::FromString(const QString& text) const
{
    const std::optional<T> value = ParseNumber<T>(text);
    return value ? rc::Ref<I_LSqlValue>(rc::make<LValueFloating>(*value)) : AsString(text);
}

template <class T>
rc::Ref<I_LSqlValue> LValueFloating<T>::CreateEmpty(bool isNull) const
{
    return rc::make<LValueFloating>(T(0), isNull);
}

template <class T>
bool LValueFloating<T>::IsSame(const I_LSqlValue& other) const
{
    if (!IsSameKind(other))
        return false;
    const T value = static_cast<const LValueFloating&>(other).m_value;
    return m_null || std::memcmp(&m_value, &value, sizeof(T)) == 0;
}

template class LValueFloating<float>;
template class LValueFloating<double>;

// LValueString

void LValueString::Store(const QString& text)
{
    if (text.size() <= InlineCapacity)
        return Store(Chars(text));
    new (&m_text) QString(text); // shares the characters
    m_size = Long;
}

QString LValueString::get_String() const
{
    if (m_null)
        return QString();
    if (m_size == Long)
        return m_text;
    return QString(reinterpret_cast<const QChar*>(m_chars), m_size);
}

QByteArray LValueString::get_Data() const
{
    const std::u16string_view chars = get_Chars();
    return QStringView(chars.data(), static_cast<qsizetype>(chars.size())).toUtf8();
}

QVariant LValueString::ToQVariant() const
{
    return m_null ? QVariant() : QVariant(get_String());
}

rc::Ref<I_LSqlValue> LValueString::FromString(const QString& text) const
{
    return AsString(text);
}

rc::Ref<I_LSqlValue> LValueString::CreateEmpty(bool isNull) const
{
    return rc::make<LValueString>(std::u16string_view(), isNull);
}

bool LValueString::IsSame(const I_LSqlValue& other) const
{
    return IsSameKind(other) && (m_null || get_Chars() == static_cast<const LValueString&>(other).get_Chars());
}

// LValueByteArray

QString LValueByteArray::get_String() const
{
    if (m_null)
        return QString();
    std::u16string text;
    nub::text::AppendBlob(text, reinterpret_cast<const unsigned char*>(m_bytes.constData()),
                          static_cast<std::size_t>(m_bytes.size()));
    return QString::fromStdU16String(text);
}

QVariant LValueByteArray::ToQVariant() const
{
    return m_null ? QVariant() : QVariant(m_bytes);
}

rc::Ref<I_LSqlValue> LValueByteArray::FromString(const QString& text) const
{
    const auto nibble = [](QChar c) {
        const int unit = c.unicode();
        return unit >= '0' && unit <= '9'   ? unit - '0'
               : unit >= 'a' && unit <= 'f' ? unit - 'a' + 10
               : unit >= 'A' && unit <= 'F' ? unit - 'A' + 10
                                            : -1;
    };
    QByteArray bytes;
    bytes.reserve(text.size());
    for (qsizetype i = 0; i < text.size(); ++i) {
        const QChar c = text[i];
        if (c.unicode() >= 128)
            return AsString(text);
        if (c != u'\\') {
            bytes.append(static_cast<char>(c.unicode()));
            continue;
        }
        const int high = i + 3 < text.size() && text[i + 1] == u'x' ? nibble(text[i + 2]) : -1;
        const int low = high >= 0 ? nibble(text[i + 3]) : -1;
        if (low < 0)
            return AsString(text);
        bytes.append(static_cast<char>(high * 16 + low));
        i += 3;
    }
    return rc::make<LValueByteArray>(bytes);
}

rc::Ref<I_LSqlValue> LValueByteArray::CreateEmpty(bool isNull) const
{
    return rc::make<LValueByteArray>(QByteArray(), isNull);
}

bool LValueByteArray::IsSame(const I_LSqlValue& other) const
{
    return IsSameKind(other) && (m_null || m_bytes == static_cast<const LValueByteArray&>(other).m_bytes);
}

// LValueVarBitArray

rc::Ref<I_LSqlValue> LValueVarBitArray::FromString(const QString& text) const
{
    const QString bits = text.trimmed();
    for (const QChar c : bits)
        if (c != u'0' && c != u'1')
            return AsString(text);
    return bits.isEmpty() ? AsString(text) : rc::make<LValueVarBitArray>(bits);
}

rc::Ref<I_LSqlValue> LValueVarBitArray::CreateEmpty(bool isNull) const
{
    return rc::make<LValueVarBitArray>(std::u16string_view(), isNull);
}

// LValueUUID

rc::Ref<I_LSqlValue> LValueUUID::FromString(const QString& text) const
{
    QString digits = text.trimmed().toLower();
    if (digits.startsWith(u'{') && digits.endsWith(u'}'))
        digits = digits.mid(1, digits.size() - 2);
    digits.remove(u'-');
    if (digits.size() != 32)
        return AsString(text);
    for (const QChar c : std::as_const(digits))
        if (!IsDigit(c) && (c < u'a' || c > u'f'))
            return AsString(text);
    for (const int at : {8, 13, 18, 23})
        digits.insert(at, u'-');
    return rc::make<LValueUUID>(digits);
}

rc::Ref<I_LSqlValue> LValueUUID::CreateEmpty(bool isNull) const
{
    return rc::make<LValueUUID>(std::u16string_view(), isNull);
}

// LValueDecimal

rc::Ref<I_LSqlValue> LValueDecimal::FromString(const QString& text) const
{
    const QString number = text.trimmed();
    qsizetype at = number.startsWith(u'-') || number.startsWith(u'+') ? 1 : 0;
    const qsizetype first = at;
    int whole = 0, fraction = 0;
    for (; at < number.size() && IsDigit(number[at]); ++at)
        if (whole > 0 || number[at] != u'0')
            ++whole;
    const bool hasWhole = at > first;
    if (at < number.size() && number[at] == u'.')
        for (++at; at < number.size() && IsDigit(number[at]); ++at)
            ++fraction;
    if (at != number.size() || !(hasWhole || fraction) || whole > m_precision - m_scale || fraction > m_scale)
        return AsString(text);
    return rc::make<LValueDecimal>(m_precision, m_scale, number);
}

rc::Ref<I_LSqlValue> LValueDecimal::CreateEmpty(bool isNull) const
{
    return rc::make<LValueDecimal>(m_precision, m_scale, isNull ? std::u16string_view() : u"0", isNull);
}

// LValueDate

LValueDate::LValueDate(QDate date)
    : LValueString(date.toString(Qt::ISODate)), m_julianDay(date.toJulianDay())
{
}

std::optional<QDate> LValueDate::ParseISO(QStringView text)
{
    qsizetype at = 0;
    const std::optional<QDate> date = ReadDate(text, at);
    return at == text.size() ? date : std::nullopt;
}

QVariant LValueDate::ToQVariant() const
{
    return m_null ? QVariant() : QVariant(get_Date());
}

rc::Ref<I_LSqlValue> LValueDate::FromString(const QString& text) const
{
    const QString trimmed = text.trimmed();
    const std::optional<QDate> date = ParseISO(trimmed);
    return date ? rc::Ref<I_LSqlValue>(rc::make<LValueDate>(*date, Chars(trimmed))) : AsString(text);
}

rc::Ref<I_LSqlValue> LValueDate::CreateEmpty(bool isNull) const
{
    return rc::make<LValueDate>(QDate(1970, 1, 1), isNull ? std::u16string_view() : u"1970-01-01", isNull);
}

// LValueTime

LValueTime::LValueTime(QTime time)
    : LValueString(time.toString(time.msec() ? QStringLiteral("HH:mm:ss.zzz") : QStringLiteral("HH:mm:ss"))),
      m_time(time)
{
}

std::optional<QTime> LValueTime::ParseISO(QStringView text)
{
    qsizetype at = 0;
    const std::optional<QTime> time = ReadTime(text, at);
    return at == text.size() ? time : std::nullopt;
}

QVariant LValueTime::ToQVariant() const
{
    return m_null ? QVariant() : QVariant(m_time);
}

rc::Ref<I_LSqlValue> LValueTime::FromString(const QString& text) const
{
    const QString trimmed = text.trimmed();
    const std::optional<QTime> time = ParseISO(trimmed);
    return time ? rc::Ref<I_LSqlValue>(rc::make<LValueTime>(*time, Chars(trimmed))) : AsString(text);
}

rc::Ref<I_LSqlValue> LValueTime::CreateEmpty(bool isNull) const
{
    return rc::make<LValueTime>(QTime(0, 0), isNull ? std::u16string_view() : u"00:00:00", isNull);
}

// LValueDateTime

LValueDateTime::LValueDateTime(const QDateTime& value)
    : LValueString(value.toString(value.time().msec() ? QStringLiteral("yyyy-MM-dd HH:mm:ss.zzz")
                                                      : QStringLiteral("yyyy-MM-dd HH:mm:ss"))),
      m_value(value)
{
}

std::optional<QDateTime> LValueDateTime::ParseISO(QStringView text)
{
    qsizetype at = 0;
    const std::optional<QDate> date = ReadDate(text, at);
    if (!date || !(Skip(text, at, ' ') || Skip(text, at, 'T')))
        return std::nullopt;
    const std::optional<QTime> time = ReadTime(text, at);
    if (!time)
        return std::nullopt;
    int offset = 0;
    if (!Skip(text, at, 'Z') && at < text.size()) {
        const bool west = text[at] == u'-';
        if (!west && text[at] != u'+')
            return std::nullopt;
        ++at;
        const int hours = ReadDigits(text, at, 2, 2);
        const int minutes = Skip(text, at, ':') || at < text.size() ? ReadDigits(text, at, 2, 2) : 0;
        if (hours < 0 || minutes < 0 || minutes > 59)
            return std::nullopt;
        offset = (hours * 60 + minutes) * (west ? -60 : 60);
    }
    if (at != text.size())
        return std::nullopt;
    const QDateTime value = offset ? QDateTime(*date, *time, Qt::OffsetFromUTC, offset) : QDateTime(*date, *time, Qt::UTC);
    return value.isValid() ? std::optional(value) : std::nullopt;
}

QVariant LValueDateTime::ToQVariant() const
{
    if (m_null)
        return QVariant();
    return m_value.isValid() ? QVariant(m_value) : QVariant(get_String());
}

rc::Ref<I_LSqlValue> LValueDateTime::FromString(const QString& text) const
{
    const QString trimmed = text.trimmed();
    const std::optional<QDateTime> value = ParseISO(trimmed);
    return value ? rc::Ref<I_LSqlValue>(rc::make<LValueDateTime>(*value, Chars(trimmed))) : AsString(text);
}

rc::Ref<I_LSqlValue> LValueDateTime::CreateEmpty(bool isNull) const
{
    if (isNull)
        return rc::make<LValueDateTime>(QDateTime(), std::u16string_view(), true);
    return rc::make<LValueDateTime>(QDateTime(QDate(1970, 1, 1), QTime(0, 0), Qt::UTC));
}

// LValueSqlExpression

rc::Ref<I_LSqlValue> LValueSqlExpression::FromString(const QString& text) const
{
    return rc::make<LValueSqlExpression>(text);
}

rc::Ref<I_LSqlValue> LValueSqlExpression::CreateEmpty(bool isNull) const
{
    return rc::make<LValueSqlExpression>(std::u16string_view(), isNull);
}

} // namespace HF
