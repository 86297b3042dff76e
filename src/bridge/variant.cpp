// SPDX-License-Identifier: GPL-3.0-or-later
#include "bridge/variant.h"

#include "bridge/convert.h"
#include "bridge_handles.h"

namespace weft {

namespace {

template <typename T>
std::optional<T> Converted(const QVariant& variant)
{
    T result;
    if (!QMetaType::convert(variant.metaType(), variant.constData(), QMetaType::fromType<T>(), &result))
        return std::nullopt;
    return result;
}

/// A sequence as a list; none when it is no sequence. Texts and integers keep
/// their element type.
std::optional<Any> SequenceToAny(const QVariant& variant)
{
    const QMetaType type = variant.metaType();
    if (type == QMetaType::fromType<QStringList>())
        return qt::details::result(*static_cast<const QStringList*>(variant.constData()));
    if (type == QMetaType::fromType<QList<int>>())
        return qt::details::result(*static_cast<const QList<int>*>(variant.constData()));
    if (const auto variants = Converted<QVariantList>(variant)) {
        const List list;
        for (const QVariant& item : *variants)
            list.append(to_any(item));
        return list;
    }
    if (const auto texts = Converted<QStringList>(variant))
        return qt::details::result(*texts);
    if (const auto integers = Converted<QList<int>>(variant))
        return qt::details::result(*integers);
    return std::nullopt;
}

QVariant ListToVariant(const List& list)
{
    const Type element = list.elementType();
    if (element == Integer::typeMask()) {
        QList<int> integers;
        for (const Any& item : list.items())
            integers.append(qt::details::argument<int>::from(item));
        return QVariant::fromValue(integers);
    }
    if (element == string_type()) {
        QStringList texts;
        for (const Any& item : list.items())
            texts.append(qt::details::string_argument(item));
        return texts;
    }
    QVariantList variants;
    for (const Any& item : list.items())
        variants.append(to_qvariant(item));
    return variants;
}

} // namespace

Any to_any(const QVariant& variant)
{
    const QMetaType type = variant.metaType();
    // A null text is a text; every other null value is none.
    if (!type.isValid() || (variant.isNull() && type.id() != QMetaType::QString))
        return {};
    switch (type.id()) {
    case QMetaType::Bool: return variant.toBool();
    case QMetaType::Int:
    case QMetaType::Short:
    case QMetaType::Char:
    case QMetaType::SChar:
    case QMetaType::Char16:
    case QMetaType::Char32: return variant.toInt();
    case QMetaType::UInt:
    case QMetaType::UChar: return variant.toUInt();
    case QMetaType::LongLong:
    case QMetaType::Long: return variant.toLongLong();
    case QMetaType::ULongLong:
    case QMetaType::ULong:
    case QMetaType::UShort: return variant.toULongLong();
    case QMetaType::Double:
    case QMetaType::Float: return variant.toDouble();
    case QMetaType::QString: return String(variant.toString());
    case QMetaType::QByteArray: return ByteArray(variant.toByteArray());
    case QMetaType::QSize: return qt::QSize(variant.toSize()).any();
    case QMetaType::Void:
    case QMetaType::Nullptr: return {};
    default: break;
    }
    if (type == QMetaType::fromType<Any>())
        return *static_cast<const Any*>(variant.constData());
    if (const auto list = SequenceToAny(variant))
        return *list;
    return qt::QVariant(variant).any();
}

QVariant to_qvariant(const Any& any)
{
    switch (any.kind()) {
    case Any::Kind::None: return {};
    case Any::Kind::Boolean: return any.boolean();
    case Any::Kind::Integer: return static_cast<qlonglong>(any.integer());
    case Any::Kind::Float: return any.real();
    case Any::Kind::Object: break;
    }
    if (const auto bytes = cast_bytes(any))
        return bytes->ToQByteArray();
    if (const auto text = cast_string(any))
        return text->ToQString();
    if (const Class_Generic cls = Class_Generic::of(any); !cls.isEmpty()) {
        Any answer = I_Convertible::tryInto(any, qt::QVariant::typeMask());
        if (const auto lazy = Lazy_Generic::cast(answer))
            answer = lazy->wait();
        if (!internal::is_error_result(answer) && qt::QVariant::typeMask().matches(answer))
            return qt::QVariant::cast(answer).get();
    }
    if (const auto list = List::cast(any))
        return ListToVariant(*list);
    return QVariant::fromValue(any);
}

} // namespace weft
