// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "weft/function.h"
#include "weft/ident.h"

#include <functional>
#include <memory>
#include <unordered_map>
#include <vector>

namespace weft {

class Class_Generic;

/// A property of a class: functions that read and write it. A value that shares
/// its description.
class ORB_SHARED Property
{
public:
    struct description
    {
        String name;
        Type type;
        Any getter; ///< takes the object
        Any setter; ///< takes the object and the value; none: read only
        String doc;
    };

    Property() = default;
    explicit Property(description data) : m_data(std::make_shared<description>(std::move(data))) {}

    bool isEmpty() const { return !m_data; }
    const description& operator*() const { return *m_data; }
    const description* operator->() const { return m_data.get(); }
    bool isReadOnly() const { return m_data->setter.isNone(); }
    Any read(const Any& object) const;
    /// Throws an Error for one that is read only.
    void write(const Any& object, const Any& value) const;

private:
    std::shared_ptr<const description> m_data;
};

/// One thing that a class offers.
struct ORB_SHARED class_entry
{
    enum class Kind { Method, StaticMethod, Hook, Property, Signal, Field, Enum };

    Kind kind = Kind::Method;
    method_ident name;
    Any function;      ///< of methods and hooks; none: abstract
    Property property; ///< of properties and signals
    Any value;         ///< the class of an enum
    Type type;         ///< of a field
    String doc;
    bool isMeta = false; ///< found in Qt's description of the class at run time
};

namespace internal {

class object_value_instance;

/// The content of a class. Made once, set up by one thread, then only read.
class ORB_SHARED object_value_class final : public object_value
{
public:
    Type type() const override { return Type::basic(Type::Kind::Class); }

    String name, doc, example;
    std::vector<Class_Generic> bases;
    std::vector<class_entry> entries;
    std::vector<std::pair<String, std::int64_t>> enumerators; ///< duplicates stay, the first one answers
    bool isEnum = false;
    bool isRuntimeOnly = false;
    bool isConvertible = false;
    bool isScript = false;    ///< made by a script
    Any constructor;          ///< none: no instances of its own
    method_ident nativeField; ///< of instances: holds the native value
    std::function<void(const Any&)> finalizer;
    std::unordered_map<method_ident, std::size_t> places;
};

/// An object of a class: a few fields.
class ORB_SHARED object_value_instance final : public object_value
{
public:
    explicit object_value_instance(const Class_Generic& cls);
    Type type() const override;
    Any tryInto(const Type& wanted) const override;
    Any clone() const override;
    bool equals(const object_value& other) const override;
    Any get_field(const method_ident& name) const override;
    bool set_field(const method_ident& name, const Any& value) override;
    object_value_class& cls() const { return *static_cast<object_value_class*>(m_class.object()); }
    const Any& classValue() const { return m_class; }

protected:
    void finalize() override;

private:
    const Any m_class;
    std::vector<std::pair<method_ident, Any>> m_fields;
};

/// An object whose constructor has not run.
ORB_SHARED Any unsafe_create_instance(const Class_Generic& cls);
/// The object as one of the class; throws bad_argument when it is none.
ORB_SHARED const Any& cast_object(const Any& any, const Class_Generic& cls);
/// The number of an enumerator, given as a number or by its name; throws
/// bad_argument for anything else.
ORB_SHARED std::int64_t enum_cast(const Any& any, const Class_Generic& cls);
ORB_SHARED Type enum_type(const Class_Generic& cls);

} // namespace internal

/// A class. Copies are the same class. Classes are made by builders and live as
/// long as the process, except those of scripts.
class ORB_SHARED Class_Generic
{
public:
    Class_Generic() = default;
    explicit Class_Generic(const Any& any) : m_any(any) {}
    /// The class of an instance; empty for anything else.
    static Class_Generic of(const Any& value);
    /// Nothing when the value is no class.
    static std::optional<Class_Generic> cast(const Any& any);
    static Type typeMask() { return Type::basic(Type::Kind::Class); }

    bool isEmpty() const { return m_any.isNone(); }
    const Any& any() const { return m_any; }
    operator Any() const { return m_any; }
    bool operator==(const Class_Generic& other) const { return m_any.object() == other.m_any.object(); }

    const internal::object_value_class& content() const { return *static_cast<internal::object_value_class*>(m_any.object()); }
    String name() const { return isEmpty() ? String() : content().name; }
    bool isDerivedFrom(const Class_Generic& base) const;
    /// Of this class or its bases; null when there is none.
    const class_entry* find(const method_ident& name) const;
    /// The nearest class made by a script that has the method; null when only
    /// native classes have it.
    const class_entry* findOverride(const method_ident& name) const;
    Type instanceType() const;
    /// A new object. Throws an Error for a class that makes none, and what the
    /// constructor throws.
    Any construct(std::span<const Any> arguments) const;

private:
    const Any& constructor() const;

    Any m_any;
};

} // namespace weft
