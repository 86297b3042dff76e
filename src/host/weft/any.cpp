// SPDX-License-Identifier: GPL-3.0-or-later
#include "weft/any.h"

#include "weft/class.h"
#include "weft/function.h"
#include "weft/type.h"
#include "weft/values.h"

#include <functional>
#include <vector>

namespace weft {

Any::Any(const String& text) : Any(adopt(new internal::object_value_string(text))) {}

Any::Any(const ByteArray& bytes) : Any(adopt(new internal::object_value_bytes(bytes))) {}

Any::Any(const Error& error) : Any(adopt(new internal::object_value_error(error))) {}

Any Any::adopt(internal::object_value* value) noexcept
{
    Any any;
    if (value) {
        any.m_kind = Kind::Object;
        any.m_value.object = value;
    }
    return any;
}

Any Any::ref(internal::object_value* value) noexcept
{
    if (value)
        value->add_ref();
    return adopt(value);
}

Type Any::type() const
{
    switch (m_kind) {
    case Kind::None: return None::typeMask();
    case Kind::Boolean: return Boolean::typeMask();
    case Kind::Integer: return Integer::typeMask();
    case Kind::Float: return Float::typeMask();
    case Kind::Object: break;
    }
    return m_value.object->type();
}

Any Any::fieldValue(const method_ident& field) const
{
    return isObject() ? m_value.object->get_field(field) : Any();
}

bool Any::setFieldValue(const method_ident& field, const Any& value) const
{
    return isObject() && m_value.object->set_field(field, value);
}

Any Any::invoke(const method_ident& method, std::span<const Any> arguments) const
{
    const Class_Generic cls = Class_Generic::of(*this);
    const class_entry* entry = cls.find(method);
    if (!entry || entry->function.isNone())
        throw Error(String(QStringLiteral("%1 has no method \"%2\".").arg(type().name().ToQString(), method.text())));
    std::vector<Any> all;
    all.reserve(arguments.size() + 1);
    all.push_back(*this);
    all.insert(all.end(), arguments.begin(), arguments.end());
    return I_Invokable_Generic::cast(entry->function).invoke(all);
}

bool Any::operator==(const Any& other) const
{
    if (m_kind != other.m_kind) {
        if (isInteger() && other.isFloat())
            return static_cast<double>(integer()) == other.real();
        return isFloat() && other.isInteger() && real() == static_cast<double>(other.integer());
    }
    switch (m_kind) {
    case Kind::None: return true;
    case Kind::Boolean:
    case Kind::Integer: return integer() == other.integer();
    case Kind::Float: return real() == other.real();
    case Kind::Object: break;
    }
    return object() == other.object() || object()->equals(*other.object());
}

std::size_t Any::hash() const
{
    switch (m_kind) {
    case Kind::None: return 0;
    case Kind::Boolean:
    case Kind::Integer: return std::hash<double>()(static_cast<double>(integer()));
    case Kind::Float: return std::hash<double>()(real()); // as an equal integer
    case Kind::Object: break;
    }
    return object()->hash();
}

} // namespace weft
