// SPDX-License-Identifier: GPL-3.0-or-later
#include "weft/values.h"

#include "weft/list.h"

#include <QLocale>
#include <QStringList>

namespace weft {

namespace internal {

Type object_value_string::type() const
{
    return string_type();
}

bool object_value_string::equals(const object_value& other) const
{
    const auto* text = dynamic_cast<const object_value_string*>(&other);
    return text && text->value == value;
}

Type object_value_bytes::type() const
{
    return Type::basic(Type::Kind::ByteArray);
}

bool object_value_bytes::equals(const object_value& other) const
{
    const auto* bytes = dynamic_cast<const object_value_bytes*>(&other);
    return bytes && bytes->value == value;
}

Type object_value_error::type() const
{
    return Type::basic(Type::Kind::Error);
}

} // namespace internal

std::optional<Boolean> Boolean::cast(const Any& any)
{
    return any.isBoolean() ? std::optional(Boolean{any.boolean()}) : std::nullopt;
}

std::optional<Integer> Integer::cast(const Any& any)
{
    return any.isInteger() ? std::optional(Integer{any.integer()}) : std::nullopt;
}

std::optional<Float> Float::cast(const Any& any)
{
    if (any.isInteger())
        return Float{static_cast<double>(any.integer())};
    return any.isFloat() ? std::optional(Float{any.real()}) : std::nullopt;
}

Type string_type()
{
    return Type::basic(Type::Kind::String);
}

std::optional<String> cast_string(const Any& any)
{
    const auto* text = any.as<internal::object_value_string>();
    return text ? std::optional(text->value) : std::nullopt;
}

std::optional<ByteArray> cast_bytes(const Any& any)
{
    const auto* bytes = any.as<internal::object_value_bytes>();
    return bytes ? std::optional(bytes->value) : std::nullopt;
}

std::optional<Error> cast_error(const Any& any)
{
    const auto* error = any.as<internal::object_value_error>();
    return error ? std::optional(error->value) : std::nullopt;
}

String to_text(const Any& any)
{
    switch (any.kind()) {
    case Any::Kind::None: return "none";
    case Any::Kind::Boolean: return any.boolean() ? "true" : "false";
    case Any::Kind::Integer: return QString::number(any.integer());
    case Any::Kind::Float: return QString::number(any.real(), 'g', QLocale::FloatingPointShortest);
    case Any::Kind::Object: break;
    }
    if (const auto text = cast_string(any))
        return *text;
    if (const auto bytes = cast_bytes(any))
        return QString::fromUtf8(bytes->ToQByteArray());
    if (const auto error = cast_error(any))
        return error->message();
    QStringList parts;
    if (const auto list = List::cast(any)) {
        for (const Any& item : list->items())
            parts.append(to_text(item).ToQString());
        return QStringLiteral("[%1]").arg(parts.join(QLatin1String(", ")));
    }
    if (const auto map = HashMap::cast(any)) {
        for (const auto& [key, value] : map->entries())
            parts.append(to_text(key).ToQString() + QLatin1String(": ") + to_text(value).ToQString());
        return QStringLiteral("{%1}").arg(parts.join(QLatin1String(", ")));
    }
    return any.type().name();
}

} // namespace weft
