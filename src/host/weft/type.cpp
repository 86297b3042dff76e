// SPDX-License-Identifier: GPL-3.0-or-later
#include "weft/type.h"

#include "weft/any.h"
#include "weft/class.h"
#include "weft/values.h"

#include <QStringList>

#include <algorithm>
#include <array>
#include <cstring>

namespace weft {

struct Type::description
{
    Kind kind = Kind::Any;
    std::vector<Type> inner;           ///< element, or members of a union
    const char* foreignName = nullptr; ///< of a native type
    Any cls;                           ///< of instances
    bool isCopyable = true;
};

Type::Type() : Type(basic(Kind::Any)) {}

Type Type::basic(Kind kind)
{
    constexpr auto Count = static_cast<std::size_t>(Kind::Union) + 1;
    static const auto* all = [] {
        auto* made = new std::array<std::shared_ptr<const description>, Count>;
        for (std::size_t i = 0; i < Count; ++i)
            (*made)[i] = std::make_shared<description>(description{static_cast<Kind>(i), {}, nullptr, {}});
        return made;
    }();
    return Type((*all)[static_cast<std::size_t>(kind)]);
}

Type Type::list(const Type& element)
{
    return Type(std::make_shared<description>(description{Kind::List, {element}, nullptr, {}}));
}

Type Type::lazy(const Type& result)
{
    return Type(std::make_shared<description>(description{Kind::Lazy, {result}, nullptr, {}}));
}

Type Type::foreign(const char* typeName, bool isCopyable)
{
    return Type(std::make_shared<description>(description{Kind::Foreign, {}, typeName, {}, isCopyable}));
}

Type Type::instance(const char* typeName, const Class_Generic& cls)
{
    return Type(std::make_shared<description>(description{Kind::Instance, {}, typeName, cls.any()}));
}

Type Type::unite(const std::vector<Type>& members)
{
    return Type(std::make_shared<description>(description{Kind::Union, members, nullptr, {}}));
}

Type::Kind Type::kind() const
{
    return m_data->kind;
}

Type Type::element() const
{
    const bool has = (kind() == Kind::List || kind() == Kind::Lazy) && !m_data->inner.empty();
    return has ? m_data->inner[0] : Type();
}

bool Type::isCopyable() const
{
    return m_data->isCopyable;
}

Class_Generic Type::instanceClass() const
{
    return Class_Generic(m_data->cls);
}

String Type::name() const
{
    const auto inner = [this](const char* outer) {
        return m_data->inner.empty()
                   ? QString::fromLatin1(outer)
                   : QStringLiteral("%1<%2>").arg(QLatin1String(outer), m_data->inner[0].name().ToQString());
    };
    switch (kind()) {
    case Kind::Any: return "Any";
    case Kind::None: return "None";
    case Kind::Boolean: return "Boolean";
    case Kind::Integer: return "Integer";
    case Kind::Float: return "Float";
    case Kind::String: return "String";
    case Kind::ByteArray: return "ByteArray";
    case Kind::List: return inner("List");
    case Kind::HashMap: return "HashMap";
    case Kind::Function: return "Function";
    case Kind::Lazy: return inner("Lazy");
    case Kind::WeakRef: return "WeakRef";
    case Kind::Error: return "Error";
    case Kind::Class: return "Class";
    case Kind::Foreign: return QString::fromLatin1(m_data->foreignName);
    case Kind::Instance: return Class_Generic(m_data->cls).name();
    case Kind::Union: break;
    }
    QStringList names;
    for (const Type& member : m_data->inner)
        names.append(member.name().ToQString());
    return names.join(QLatin1String(" | "));
}

bool Type::matches(const Any& value) const
{
    switch (kind()) {
    case Kind::Any: return true;
    case Kind::None: return value.isNone();
    case Kind::Boolean: return value.isBoolean();
    case Kind::Integer: return value.isInteger();
    case Kind::Float: return value.isFloat() || value.isInteger();
    case Kind::Instance: return Class_Generic::of(value).isDerivedFrom(Class_Generic(m_data->cls));
    case Kind::Union:
        return std::any_of(m_data->inner.begin(), m_data->inner.end(),
                           [&](const Type& member) { return member.matches(value); });
    default: break;
    }
    if (!value.isObject())
        return false;
    const Type other = value.object()->type();
    if (other.kind() != kind())
        return false;
    if (kind() == Kind::Foreign)
        return std::strcmp(other.m_data->foreignName, m_data->foreignName) == 0;
    // A list or a lazy of anything is looked at when it is used.
    return m_data->inner.empty() || element().kind() == Kind::Any || other.element() == element();
}

bool Type::operator==(const Type& other) const
{
    if (m_data == other.m_data)
        return true;
    if (kind() != other.kind() || m_data->cls.object() != other.m_data->cls.object() || m_data->inner != other.m_data->inner)
        return false;
    return kind() != Kind::Foreign || std::strcmp(m_data->foreignName, other.m_data->foreignName) == 0;
}

} // namespace weft
