// SPDX-License-Identifier: GPL-3.0-or-later
#include "weft/class.h"

#include "weft/convertible.h"
#include "weft/errors.h"

#include <algorithm>

namespace weft {

Any Property::read(const Any& object) const
{
    return I_Invokable_Generic::cast(m_data->getter)(object);
}

void Property::write(const Any& object, const Any& value) const
{
    if (isReadOnly())
        throw Error(QStringLiteral("%1.%2 cannot be changed.")
                        .arg(object.type().name().ToQString(), m_data->name.ToQString()));
    I_Invokable_Generic::cast(m_data->setter)(object, value);
}

namespace internal {

object_value_instance::object_value_instance(const Class_Generic& cls) : m_class(cls.any()) {}

Type object_value_instance::type() const
{
    return Class_Generic(m_class).instanceType();
}

Any object_value_instance::tryInto(const Type& wanted) const
{
    const Any self = Any::ref(const_cast<object_value_instance*>(this));
    if (wanted.matches(self))
        return self;
    for (const auto& [name, value] : m_fields)
        if (!cls().nativeField.isEmpty() && name == cls().nativeField && value.isObject())
            return value.object()->tryInto(wanted);
    return {};
}

Any object_value_instance::clone() const
{
    auto* copy = new object_value_instance(Class_Generic(m_class));
    for (const auto& [name, value] : m_fields)
        copy->m_fields.emplace_back(name, value.isObject() ? value.object()->clone() : value);
    return Any::adopt(copy);
}

bool object_value_instance::equals(const object_value& other) const
{
    const auto* instance = dynamic_cast<const object_value_instance*>(&other);
    if (!instance || instance->m_class.object() != m_class.object() || cls().nativeField.isEmpty())
        return this == &other;
    return get_field(cls().nativeField) == instance->get_field(cls().nativeField);
}

Any object_value_instance::get_field(const method_ident& name) const
{
    for (const auto& field : m_fields)
        if (field.first == name)
            return field.second;
    return {};
}

bool object_value_instance::set_field(const method_ident& name, const Any& value)
{
    for (auto& field : m_fields)
        if (field.first == name) {
            field.second = value;
            return true;
        }
    m_fields.emplace_back(name, value);
    return true;
}

void object_value_instance::finalize()
{
    const Any self = Any::ref(this);
    const std::function<void(const Class_Generic&)> run = [&](const Class_Generic& cls) {
        if (cls.content().finalizer)
            cls.content().finalizer(self);
        for (const Class_Generic& base : cls.content().bases)
            run(base);
    };
    run(Class_Generic(m_class));
}

Any unsafe_create_instance(const Class_Generic& cls)
{
    return Any::adopt(new object_value_instance(cls));
}

const Any& cast_object(const Any& any, const Class_Generic& cls)
{
    if (!Class_Generic::of(any).isDerivedFrom(cls))
        throw bad_argument(cls.instanceType(), any);
    return any;
}

std::int64_t enum_cast(const Any& any, const Class_Generic& cls)
{
    if (any.isInteger())
        return any.integer();
    if (const auto name = cast_string(any))
        for (const auto& [enumerator, value] : cls.content().enumerators)
            if (enumerator == *name)
                return value;
    throw bad_argument(Integer::typeMask(), any);
}

Type enum_type(const Class_Generic& cls)
{
    return cls.isEmpty() || cls.content().isEnum ? Integer::typeMask() : cls.instanceType();
}

} // namespace internal

Class_Generic Class_Generic::of(const Any& value)
{
    const auto* instance = value.as<internal::object_value_instance>();
    return instance ? Class_Generic(instance->classValue()) : Class_Generic();
}

std::optional<Class_Generic> Class_Generic::cast(const Any& any)
{
    return any.as<internal::object_value_class>() ? std::optional(Class_Generic(any)) : std::nullopt;
}

bool Class_Generic::isDerivedFrom(const Class_Generic& base) const
{
    if (isEmpty() || base.isEmpty())
        return false;
    if (*this == base)
        return true;
    const auto& bases = content().bases;
    return std::any_of(bases.begin(), bases.end(), [&](const Class_Generic& one) { return one.isDerivedFrom(base); });
}

const class_entry* Class_Generic::find(const method_ident& name) const
{
    if (isEmpty())
        return nullptr;
    if (const auto place = content().places.find(name); place != content().places.end())
        return &content().entries[place->second];
    for (const Class_Generic& base : content().bases)
        if (const class_entry* found = base.find(name))
            return found;
    return nullptr;
}

const class_entry* Class_Generic::findOverride(const method_ident& name) const
{
    if (isEmpty() || !content().isScript)
        return nullptr;
    if (const auto place = content().places.find(name); place != content().places.end())
        return &content().entries[place->second];
    return content().bases.empty() ? nullptr : content().bases[0].findOverride(name);
}

Type Class_Generic::instanceType() const
{
    return Type::instance("", *this);
}

const Any& Class_Generic::constructor() const
{
    // Native classes make instances by a constructor of their own only.
    if (content().isScript && content().constructor.isNone() && !content().bases.empty())
        return content().bases[0].constructor();
    return content().constructor;
}

Any Class_Generic::construct(std::span<const Any> arguments) const
{
    if (isEmpty() || constructor().isNone())
        throw Error(QStringLiteral("%1: there is nothing to create by itself.").arg(name().ToQString()));
    std::vector<Any> all{internal::unsafe_create_instance(*this)};
    all.insert(all.end(), arguments.begin(), arguments.end());
    I_Invokable_Generic::cast(constructor()).invoke(all);
    return all[0];
}

} // namespace weft
