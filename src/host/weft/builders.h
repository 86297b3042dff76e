// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "weft/class.h"
#include "weft/list.h"

#include <functional>
#include <vector>

namespace weft::internal {

/// What a class is made of, in the order in which it was told.
struct ORB_SHARED class_parts
{
    String name, doc, example, module;
    std::vector<Class_Generic> bases;
    std::vector<class_entry> entries;
    Any constructor;
    method_ident nativeField;
    bool isRuntimeOnly = false, isConvertible = false, isScript = false;
    std::function<void(const Any&)> finalizer;
};

/// Turns the collected parts into the class, and puts it into its module where
/// it names one.
ORB_SHARED Class_Generic defclass_impl(class_parts parts);

/// Publishes a property under its name, as an entry of a class.
ORB_SHARED class_entry register_property(const String& name, const Property& property);

/// The key under which the name of an entry stands in a language.
ORB_SHARED String lang_name_js();

/// Builds one method.
class ORB_SHARED method_builder_base
{
public:
    method_builder_base(const String& className, const char* name);
    method_builder_base& signature(const String& text);
    method_builder_base& doc(const String& text);
    method_builder_base& kind(class_entry::Kind kind);
    /// Takes over a fresh function.
    method_builder_base& assign_func(object_value_function* function);
    /// Hands the function to a decorator, whose result takes its place.
    method_builder_base& decorate(const Any& decorator);
    /// A function without a body: calling it is an error that names it. The type
    /// is asked for when it is called.
    method_builder_base& create_abstract_function(std::function<Type()> typeGetter);
    class_entry build();

private:
    String m_className;
    class_entry m_entry;
    String m_signature;
};

/// Builds one property.
class ORB_SHARED property_builder_base
{
public:
    property_builder_base(const String& className, const char* name, const Type& type);

    /// A function that takes the object.
    property_builder_base& assign_getter_value(const Any& function);
    /// A function that takes the object and the value.
    property_builder_base& assign_setter_value(const Any& function);
    /// Backed by a field of the object.
    property_builder_base& assign_get_field(const method_ident& field, const Type& type);
    property_builder_base& assign_get_set_field(const method_ident& field, const Type& type);
    property_builder_base& assign_doc(const String& text);
    /// Parameters of a function that a call must give.
    static int function_defaults_count(const Any& function);

    /// Finishes it.
    operator Property() const { return Property(m_data); }

private:
    Any named(const Any& function) const;

    String m_className;
    Property::description m_data;
};

/// Builds a property with values of type T.
template <typename T>
class property_builder : public property_builder_base
{
public:
    property_builder(const String& className, const char* name)
        : property_builder_base(className, name, std::remove_const_t<T>::typeMask())
    {
    }
};
template <>
class property_builder<Any> : public property_builder_base
{
public:
    property_builder(const String& className, const char* name, const Type& type = Type())
        : property_builder_base(className, name, type)
    {
    }
};

/// Builds an enum from a text such as "SingleSelection = 1, MultiSelection = 2";
/// names without a number count up.
class ORB_SHARED enum_builder
{
public:
    enum_builder(const String& name, const String& values);
    enum_builder& doc(const String& text);
    enum_builder& parent_module(const String& name);
    Class_Generic build();

private:
    class_parts m_parts;
    String m_values;
};

/// Collects the parts of a class.
class ORB_SHARED class_builder_base
{
public:
    class_builder_base(const String& name, const String& doc);

    class_builder_base& base(const Class_Generic& cls);
    class_builder_base& convertible();
    class_builder_base& runtime_only();
    class_builder_base& script_class();
    class_builder_base& example(const String& expression);
    class_builder_base& module(const String& name);
    /// `function` gets the fresh object in front of its arguments.
    class_builder_base& constructor(const String& signature, object_value_function* function);
    /// The field that holds the native value of an object.
    class_builder_base& native_field(const method_ident& name);
    /// Runs when an object goes; gets the object, which is still whole.
    class_builder_base& finalizer(std::function<void(const Any&)> function);

    class_builder_base& add_entry(class_entry entry);
    class_builder_base& add_entry(const std::vector<class_entry>& entries);
    class_builder_base& replace_last_entry(class_entry entry);
    class_builder_base& field_entry(const char* name, const Type& type);
    class_builder_base& property_entry(const property_builder_base& builder);
    class_builder_base& enum_entry(const Class_Generic& cls);
    const class_parts& parts() const { return m_parts; }
    Class_Generic build() { return defclass_impl(std::move(m_parts)); }

private:
    class_parts m_parts;
};

} // namespace weft::internal
