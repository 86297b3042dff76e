// SPDX-License-Identifier: GPL-3.0-or-later
#include "cli/bind_value.h"

#include "cli/text_encoding.h"

#include "hf/values.h"

#include <QFile>
#include <QObject>
#include <QRegularExpression>

#include <functional>
#include <typeinfo>
#include <utility>
#include <vector>

namespace orbis {

namespace {

using Value = rc::Ptr<HF::I_LSqlValue>;

/// A value of the prototype's class; null when the text does not fit it.
Value FromText(const rc::Ref<HF::I_LSqlValue>& prototype, const QString& text)
{
    const rc::Ref<HF::I_LSqlValue> value = prototype->FromString(text);
    if (typeid(*value) != typeid(*prototype))
        return nullptr;
    return value;
}

template <class T>
Value Simple(const QString& text)
{
    return FromText(rc::make<T>(), text);
}

template <class T>
Value OfText(const QString& text)
{
    return FromText(rc::make<T>(QString()), text);
}

Value Decimal(const QString& text)
{
    // As many digits as there are: the engine rounds to the column, if it must.
    static const QRegularExpression pattern(QStringLiteral("^[+-]?([0-9]*)(?:\\.([0-9]*))?$"));
    const QRegularExpressionMatch match = pattern.match(text);
    const int whole = static_cast<int>(match.capturedLength(1));
    const int scale = static_cast<int>(match.capturedLength(2));
    if (!match.hasMatch() || whole + scale == 0 || whole + scale > 38)
        return nullptr;
    return FromText(rc::make<HF::LValueDecimal>(whole + scale, scale, QStringLiteral("0")), text);
}

Value Date(const QString& text)
{
    return FromText(rc::make<HF::LValueDate>(QDate(1970, 1, 1)), text);
}

Value Time(const QString& text)
{
    return FromText(rc::make<HF::LValueTime>(QTime(0, 0)), text);
}

Value DateTime(const QString& text)
{
    return FromText(rc::make<HF::LValueDateTime>(QDateTime(QDate(1970, 1, 1), QTime(0, 0), Qt::UTC)), text);
}

Value Bytes(const QString& text)
{
    const std::optional<QByteArray> bytes = DecodeHex(text);
    if (!bytes)
        return nullptr;
    return rc::make<HF::LValueByteArray>(*bytes);
}

struct BindType
{
    QString word;
    Value (*parse)(const QString& text);
    QString expected;
};

const std::vector<BindType>& Types()
{
    const auto range = [](auto low, auto high) {
        return QObject::tr("a whole number from %1 to %2").arg(low).arg(high);
    };
    static const std::vector<BindType> types{
        {QStringLiteral("boolean"), Simple<HF::LValueBoolean>, QObject::tr("true or false")},
        {QStringLiteral("int16"), Simple<HF::LValueInt16>, range(-32768, 32767)},
        {QStringLiteral("int24"), Simple<HF::LValueInt24>, range(-8388608, 8388607)},
        {QStringLiteral("int32"), Simple<HF::LValueInt32>, range(INT32_MIN, INT32_MAX)},
        {QStringLiteral("int64"), Simple<HF::LValueInt64>, range(qint64(INT64_MIN), qint64(INT64_MAX))},
        {QStringLiteral("uint8"), Simple<HF::LValueUInt8>, range(0, 255)},
        {QStringLiteral("uint16"), Simple<HF::LValueUInt16>, range(0, 65535)},
        {QStringLiteral("uint24"), Simple<HF::LValueUInt24>, range(0, 16777215)},
        {QStringLiteral("uint32"), Simple<HF::LValueUInt32>, range(0, UINT32_MAX)},
        {QStringLiteral("uint64"), Simple<HF::LValueUInt64>, range(0, quint64(UINT64_MAX))},
        {QStringLiteral("float"), Simple<HF::LValueFloat>, QObject::tr("a number")},
        {QStringLiteral("double"), Simple<HF::LValueDouble>, QObject::tr("a number")},
        {QStringLiteral("decimal"), Decimal, QObject::tr("a decimal number of at most 38 digits")},
        {QStringLiteral("string"), OfText<HF::LValueString>, QString()},
        {QStringLiteral("blob"), Bytes, QObject::tr("pairs of hexadecimal digits, or @FILE")},
        {QStringLiteral("bits"), OfText<HF::LValueVarBitArray>, QObject::tr("digits 0 and 1")},
        {QStringLiteral("uuid"), OfText<HF::LValueUUID>, QObject::tr("a UUID")},
        {QStringLiteral("date"), Date, QStringLiteral("YYYY-MM-DD")},
        {QStringLiteral("time"), Time, QStringLiteral("HH:MM:SS.mmm")},
        {QStringLiteral("datetime"), DateTime, QStringLiteral("YYYY-MM-DD HH:MM:SS.mmm")},
        {QStringLiteral("expression"), OfText<HF::LValueSqlExpression>, QString()},
    };
    return types;
}

ParsedBind ReadFileBytes(const QString& path)
{
    QFile file(path);
    if (!file.open(QIODevice::ReadOnly))
        return {nullptr, QObject::tr("cannot read \"%1\": %2").arg(path, file.errorString())};
    const QByteArray bytes = file.readAll();
    if (file.error() != QFileDevice::NoError)
        return {nullptr, QObject::tr("cannot read \"%1\": %2").arg(path, file.errorString())};
    return {rc::make<HF::LValueByteArray>(bytes), {}};
}

} // namespace

QStringList BindTypes()
{
    QStringList words{QStringLiteral("null")};
    for (const BindType& type : Types())
        words.append(type.word);
    return words;
}

ParsedBind ParseBind(const QString& text)
{
    const qsizetype equals = text.indexOf(u'=');
    const QString word = (equals < 0 ? text : text.left(equals)).toLower();
    if (word == QLatin1String("null")) {
        if (equals >= 0 && equals + 1 < text.size())
            return {nullptr, QObject::tr("bind \"%1\": null takes no value").arg(text)};
        return {HF::LValueInvalid::Instance(), {}};
    }
    for (const BindType& type : Types()) {
        if (type.word != word)
            continue;
        if (equals < 0)
            return {nullptr, QObject::tr("bind \"%1\": write TYPE=VALUE").arg(text)};
        const QString value = text.mid(equals + 1);
        if (type.parse == Bytes && value.startsWith(u'@'))
            return ReadFileBytes(value.mid(1));
        if (const Value parsed = type.parse(value))
            return {parsed, {}};
        return {nullptr, QObject::tr("bind \"%1\": \"%2\" is not %3").arg(word, value, type.expected)};
    }
    return {nullptr, QObject::tr("bind \"%1\": unknown type; types: %2").arg(text, BindTypes().join(QLatin1String(", ")))};
}

} // namespace orbis
