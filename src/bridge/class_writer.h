// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "bridge/closure.h"
#include "weft/builders.h"

#include <QMetaObject>

namespace weft::qt::details {

/// Writes the description of one bound class; the code generated from the
/// tables calls it line by line. Texts are static.
class class_writer
{
public:
    template <std::size_t N, std::size_t M>
    class_writer(const char16_t (&name)[N], const char16_t (&doc)[M])
        : m_name(String::fromStatic(name)), m_builder(m_name, String::fromStatic(doc))
    {
        m_builder.module(String::fromStatic(u"qt"));
    }

    internal::class_builder_base& builder() { return m_builder; }
    /// The native class; properties, signals and slots that Qt tells of it and
    /// the table does not are added by `build`.
    void meta(const ::QMetaObject& meta) { m_meta = &meta; }

    void method(const char* name, const char16_t* signature, const char16_t* doc,
                internal::object_value_function* function,
                class_entry::Kind kind = class_entry::Kind::Method);
    /// `setter` may be null.
    void property(const char* name, const char16_t* type, const char16_t* doc,
                  internal::object_value_function* getter, internal::object_value_function* setter);
    /// One that Qt has as a property.
    void meta_property(const char* name, const char16_t* type, const char16_t* doc);
    /// `qtSignature` is empty where the name alone finds the signal.
    void signal(const char* name, const char16_t* parameters, const char16_t* doc, const char* qtSignature = "");
    /// A signal-like property with a getter of its own.
    void signal_of(const char* name, const char16_t* parameters, const char16_t* doc,
                   internal::object_value_function* getter);
    void enumeration(const char16_t* name, const char16_t* values, const char16_t* doc);

    Class_Generic build();

private:
    bool has(const QByteArray& name) const;
    void add_meta_entries();

    const String m_name;
    internal::class_builder_base m_builder;
    const ::QMetaObject* m_meta = nullptr;
};

/// Sets the native value of a fresh object.
template <typename T>
void set_value(const Any& self, const std::type_identity_t<T>& value)
{
    self.setFieldValue(Class_Generic::of(self).content().nativeField,
                       Any::adopt(new internal::object_value_foreign<T>(value)));
}

/// An object that holds a native value.
template <typename T>
Any make_value(const Class_Generic& cls, const T& value)
{
    const Any self = internal::unsafe_create_instance(cls);
    set_value<T>(self, value);
    return self;
}

template <typename H, typename T>
void register_value_class()
{
    if constexpr (!std::is_same_v<T, ::QVariant> && std::is_default_constructible_v<T>) {
        register_value_type(QMetaType::fromType<T>(),
                            {[](const void* value) { return H(*static_cast<const T*>(value)).any(); },
                             [](const Any& any, void* value) {
                                 *static_cast<T*>(value) = argument<T>::from(any);
                                 return true;
                             }});
        register_class_type(QMetaType::fromType<T>(), H::getClass());
    }
}

/// Enumerations of the runtime that stand for one of Qt's.
Class_Generic build_enum(const char16_t* name, const char16_t* values, const char16_t* doc);

} // namespace weft::qt::details
