// SPDX-License-Identifier: GPL-3.0-or-later
#include "weft/builders.h"

#include "weft/convertible.h"
#include "weft/errors.h"
#include "weft/module.h"

#include <QStringList>

namespace weft::internal {

namespace {

method_ident Ident(const char* name)
{
    return method_ident_untyped(ByteArray(QByteArray(name)));
}

/// A function over plain values that needs no name of its own yet.
Any Plain(const char16_t* signature, object_value_plain_function::body body)
{
    return I_Invokable_Generic::make(String(), Signature(String(QString::fromUtf16(signature))), std::move(body));
}

} // namespace

Class_Generic defclass_impl(class_parts parts)
{
    auto* cls = new object_value_class;
    const Class_Generic result(Any::adopt(cls));
    cls->name = parts.name;
    cls->doc = parts.doc;
    cls->example = parts.example;
    cls->bases = std::move(parts.bases);
    cls->entries = std::move(parts.entries);
    cls->constructor = parts.constructor;
    cls->isRuntimeOnly = parts.isRuntimeOnly;
    cls->isConvertible = parts.isConvertible;
    cls->isScript = parts.isScript;
    cls->finalizer = std::move(parts.finalizer);
    cls->nativeField = parts.nativeField;
    for (const Class_Generic& base : cls->bases)
        if (cls->nativeField.isEmpty())
            cls->nativeField = base.content().nativeField;
    // Overloads stand under one name: the first one answers a call.
    for (std::size_t i = 0; i < cls->entries.size(); ++i)
        cls->places.try_emplace(cls->entries[i].name, i);
    if (!parts.module.empty())
        find_module(parts.module).add(parts.name, result);
    return result;
}

class_entry register_property(const String& name, const Property& property)
{
    class_entry entry;
    entry.kind = class_entry::Kind::Property;
    entry.name = method_ident_untyped(name.ToQString());
    entry.property = property;
    entry.doc = property->doc;
    return entry;
}

String lang_name_js()
{
    return String::fromStatic(u"js");
}

method_builder_base::method_builder_base(const String& className, const char* name) : m_className(className)
{
    m_entry.name = Ident(name);
}

method_builder_base& method_builder_base::signature(const String& text)
{
    m_signature = text;
    return *this;
}

method_builder_base& method_builder_base::doc(const String& text)
{
    m_entry.doc = text;
    return *this;
}

method_builder_base& method_builder_base::kind(class_entry::Kind kind)
{
    m_entry.kind = kind;
    return *this;
}

method_builder_base& method_builder_base::assign_func(object_value_function* function)
{
    m_entry.function = Any::adopt(function);
    return *this;
}

method_builder_base& method_builder_base::decorate(const Any& decorator)
{
    m_entry.function = I_Invokable_Generic::cast(decorator)(m_entry.function);
    return *this;
}

method_builder_base& method_builder_base::create_abstract_function(std::function<Type()> typeGetter)
{
    const String name(m_className.ToQString() + u'.' + m_entry.name.text());
    m_entry.function = I_Invokable_Generic::make(name, Signature(m_signature), [name, typeGetter](auto) -> Any {
        throw Error(QStringLiteral("%1 must be overridden (%2).")
                        .arg(name.ToQString(), typeGetter().name().ToQString()));
    });
    return *this;
}

class_entry method_builder_base::build()
{
    if (object_value_function* function = m_entry.function.isObject() ? m_entry.function.object()->as_function() : nullptr) {
        function->set_name(QString(m_className.ToQString() + u'.' + m_entry.name.text()));
        function->set_signature(Signature(m_signature));
        function->set_doc(m_entry.doc);
    }
    return m_entry;
}

property_builder_base::property_builder_base(const String& className, const char* name, const Type& type)
    : m_className(className)
{
    m_data.name = QString::fromUtf8(name);
    m_data.type = type;
}

Any property_builder_base::named(const Any& function) const
{
    if (function.object() && function.object()->as_function())
        function.object()->as_function()->set_name(
            QString(m_className.ToQString() + u'.' + m_data.name.ToQString()));
    return function;
}

int property_builder_base::function_defaults_count(const Any& function)
{
    const object_value_function& it = I_Invokable_Generic::cast(function).function();
    return it.parameterCount() - it.defaultsCount();
}

property_builder_base& property_builder_base::assign_getter_value(const Any& function)
{
    if (function_defaults_count(function) > 1)
        log_assert_error("[property_builder::getter] Too many parameters in the getter function.");
    m_data.getter = named(function);
    return *this;
}

property_builder_base& property_builder_base::assign_setter_value(const Any& function)
{
    if (function_defaults_count(function) > 2)
        log_assert_error("[property_builder::setter] Too many parameters in the setter function.");
    m_data.setter = named(function);
    return *this;
}

property_builder_base& property_builder_base::assign_get_field(const method_ident& field, const Type& type)
{
    m_data.type = type;
    return assign_getter_value(Plain(u"self", [field](auto arguments) { return arguments[0].fieldValue(field); }));
}

property_builder_base& property_builder_base::assign_get_set_field(const method_ident& field, const Type& type)
{
    assign_get_field(field, type);
    return assign_setter_value(Plain(u"self, value", [field, type](auto arguments) -> Any {
        if (!type.matches(arguments[1]))
            throw bad_argument(type, arguments[1]);
        arguments[0].setFieldValue(field, arguments[1]);
        return {};
    }));
}

property_builder_base& property_builder_base::assign_doc(const String& text)
{
    m_data.doc = text;
    return *this;
}

enum_builder::enum_builder(const String& name, const String& values) : m_values(values)
{
    m_parts.name = name;
}

enum_builder& enum_builder::doc(const String& text)
{
    m_parts.doc = text;
    return *this;
}

enum_builder& enum_builder::parent_module(const String& name)
{
    m_parts.module = name;
    return *this;
}

Class_Generic enum_builder::build()
{
    const Class_Generic result = defclass_impl(m_parts);
    auto& cls = *static_cast<object_value_class*>(result.any().object());
    cls.isEnum = true;
    std::int64_t next = 0;
    for (const QString& part : m_values.ToQString().split(u',', Qt::SkipEmptyParts)) {
        if (part.contains(u'=')) {
            bool isNumber = false;
            next = part.section(u'=', 1).trimmed().toLongLong(&isNumber, 0);
            if (!isNumber)
                log_assert_error("[enum_builder] The value of an enumerator is no number.");
        }
        cls.enumerators.emplace_back(part.section(u'=', 0, 0).trimmed(), next++);
    }
    return result;
}

class_builder_base::class_builder_base(const String& name, const String& doc)
{
    m_parts.name = name;
    m_parts.doc = doc;
}

class_builder_base& class_builder_base::base(const Class_Generic& cls)
{
    m_parts.bases.push_back(cls);
    return *this;
}

class_builder_base& class_builder_base::convertible()
{
    m_parts.isConvertible = true;
    method_builder_base method(m_parts.name, "tryInto");
    method.signature(String::fromStatic(u"( self, type: Class ) -> Any"))
        .doc("Gives the value as one of another class, or none when there is no such form.")
        .assign_func(new object_value_plain_function(2, [](std::span<const Any> arguments) -> Any {
            const auto wanted = Class_Generic::cast(arguments[1]);
            if (!wanted)
                throw bad_argument(Class_Generic::typeMask(), arguments[1]);
            return arguments[0].isObject() ? arguments[0].object()->tryInto(wanted->instanceType()) : Any();
        }));
    return add_entry(method.build());
}

class_builder_base& class_builder_base::runtime_only()
{
    m_parts.isRuntimeOnly = true;
    return *this;
}

class_builder_base& class_builder_base::script_class()
{
    m_parts.isScript = true;
    return *this;
}

class_builder_base& class_builder_base::example(const String& expression)
{
    m_parts.example = expression;
    return *this;
}

class_builder_base& class_builder_base::module(const String& name)
{
    m_parts.module = name;
    return *this;
}

class_builder_base& class_builder_base::constructor(const String& signature, object_value_function* function)
{
    m_parts.constructor = Any::adopt(function);
    function->set_name(QStringLiteral("new %1").arg(m_parts.name.ToQString()));
    function->set_signature(Signature(signature));
    return *this;
}

class_builder_base& class_builder_base::native_field(const method_ident& name)
{
    m_parts.nativeField = name;
    return *this;
}

class_builder_base& class_builder_base::finalizer(std::function<void(const Any&)> function)
{
    m_parts.finalizer = std::move(function);
    return *this;
}

class_builder_base& class_builder_base::add_entry(class_entry entry)
{
    m_parts.entries.push_back(std::move(entry));
    return *this;
}

class_builder_base& class_builder_base::add_entry(const std::vector<class_entry>& entries)
{
    m_parts.entries.insert(m_parts.entries.end(), entries.begin(), entries.end());
    return *this;
}

class_builder_base& class_builder_base::replace_last_entry(class_entry entry)
{
    m_parts.entries.back() = std::move(entry);
    return *this;
}

class_builder_base& class_builder_base::field_entry(const char* name, const Type& type)
{
    class_entry entry;
    entry.kind = class_entry::Kind::Field;
    entry.name = Ident(name);
    entry.type = type;
    return add_entry(std::move(entry));
}

class_builder_base& class_builder_base::property_entry(const property_builder_base& builder)
{
    const Property property = builder;
    return add_entry(register_property(property->name, property));
}

class_builder_base& class_builder_base::enum_entry(const Class_Generic& cls)
{
    class_entry entry;
    entry.kind = class_entry::Kind::Enum;
    entry.name = method_ident_untyped(cls.name().ToQString());
    entry.value = cls;
    entry.doc = cls.content().doc;
    return add_entry(std::move(entry));
}

} // namespace weft::internal
