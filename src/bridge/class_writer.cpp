// SPDX-License-Identifier: GPL-3.0-or-later
#include "bridge/class_writer.h"

#include "bridge/meta_method.h"
#include "bridge/qsignal.h"
#include "bridge_handles.h"
#include "weft/errors.h"

#include <QMetaProperty>

#include <algorithm>

namespace weft::qt::details {

namespace {

String Text(const char16_t* text)
{
    return QString::fromUtf16(text);
}

String Join(const String& className, const char* name)
{
    return QString(className.ToQString() + u'.' + QLatin1String(name));
}

/// Reads one of Qt's properties.
class property_getter final : public internal::object_value_closure_base
{
public:
    explicit property_getter(const QMetaProperty& property) : object_value_closure_base(1), m_property(property) {}

protected:
    Any call(std::span<const Any> arguments) override
    {
        ::QObject* object = qobject_argument(arguments[0], *m_property.enclosingMetaObject());
        const ::QVariant value = m_property.read(object);
        return m_property.metaType().id() == QMetaType::QVariant ? to_any(value)
                                                                 : from_meta_type(value.metaType(), value.constData());
    }

private:
    const QMetaProperty m_property;
};

/// Writes one.
class property_setter final : public internal::object_value_closure_base
{
public:
    explicit property_setter(const QMetaProperty& property) : object_value_closure_base(2), m_property(property) {}

protected:
    Any call(std::span<const Any> arguments) override
    {
        ::QObject* object = qobject_argument(arguments[0], *m_property.enclosingMetaObject());
        const QMetaType type = m_property.metaType();
        ::QVariant value(type);
        if (type.id() == QMetaType::QVariant)
            value = to_qvariant(arguments[1]);
        else
            into_meta_type(arguments[1], type, value.data());
        m_property.write(object, value);
        return {};
    }

private:
    const QMetaProperty m_property;
};

bool IsBindable(const QMetaProperty& property)
{
    return property.isReadable() && property.metaType().isValid();
}

QString TypeName(QMetaType type)
{
    const Type known = type_of_meta_type(type);
    if (known.kind() != Type::Kind::Any)
        return known.name().ToQString();
    QString name = QString::fromLatin1(type.name());
    name.remove(u'*');
    return name.startsWith(u'Q') && !name.contains(u'<') ? name : QStringLiteral("Any");
}

/// "( self, text: String )" of a method of Qt's.
String SignatureOf(const ::QMetaMethod& method, bool withSelf)
{
    QStringList parts;
    if (withSelf)
        parts.append(QStringLiteral("self"));
    const QList<QByteArray> names = method.parameterNames();
    for (int i = 0; i < method.parameterCount(); ++i) {
        const QString name =
            names[i].isEmpty() ? QStringLiteral("value%1").arg(i + 1) : QString::fromLatin1(names[i]);
        parts.append(QStringLiteral("%1: %2").arg(name, TypeName(method.parameterMetaType(i))));
    }
    return QStringLiteral("( %1 )").arg(parts.join(QLatin1String(", ")));
}

} // namespace

void class_writer::method(const char* name, const char16_t* signature, const char16_t* doc,
                          internal::object_value_function* function, class_entry::Kind kind)
{
    const int native = function->parameterCount();
    internal::method_builder_base method(m_name, name);
    method.signature(Text(signature)).doc(Text(doc)).kind(kind).assign_func(function);
    m_builder.add_entry(method.build());
    if (function->parameterCount() != native)
        internal::log_assert_error(qPrintable(
            QStringLiteral("[class] %1 and its signature disagree.").arg(function->name().ToQString())));
}

void class_writer::property(const char* name, const char16_t* type, const char16_t* doc,
                            internal::object_value_function* getter, internal::object_value_function* setter)
{
    internal::property_builder<Any> property(m_name, name);
    property.assign_getter_value(Any::adopt(getter)).assign_doc(Text(doc));
    getter->set_signature(Signature(String(QStringLiteral("( self ) -> %1").arg(QStringView(type)))));
    if (setter) {
        setter->set_signature(Signature(String(QStringLiteral("( self, value: %1 )").arg(QStringView(type)))));
        property.assign_setter_value(Any::adopt(setter));
    }
    m_builder.property_entry(property);
}

void class_writer::meta_property(const char* name, const char16_t* type, const char16_t* doc)
{
    const int index = m_meta ? m_meta->indexOfProperty(name) : -1;
    if (index < 0)
        return internal::log_assert_error(
            qPrintable(QStringLiteral("[class] %1 is no property.").arg(Join(m_name, name).ToQString())));
    const QMetaProperty property = m_meta->property(index);
    this->property(name, type, doc, new property_getter(property),
                   property.isWritable() ? new property_setter(property) : nullptr);
}

void class_writer::signal(const char* name, const char16_t* parameters, const char16_t* doc, const char* qtSignature)
{
    const ::QMetaMethod found = find_signal(*m_meta, *qtSignature ? qtSignature : name);
    if (!found.isValid())
        return internal::log_assert_error(
            qPrintable(QStringLiteral("[class] %1 is no signal.").arg(Join(m_name, name).ToQString())));
    signal_of(name, parameters, doc, make_signal_getter(found));
}

void class_writer::signal_of(const char* name, const char16_t* parameters, const char16_t* doc,
                             internal::object_value_function* getter)
{
    property(name, u"QSignal", doc, getter, nullptr);
    class_entry entry = m_builder.parts().entries.back();
    entry.kind = class_entry::Kind::Signal;
    // What a connected function gets.
    entry.value = Text(parameters);
    m_builder.replace_last_entry(std::move(entry));
}

void class_writer::enumeration(const char16_t* name, const char16_t* values, const char16_t* doc)
{
    m_builder.enum_entry(internal::enum_builder(Text(name), Text(values)).doc(Text(doc)).build());
}

Class_Generic build_enum(const char16_t* name, const char16_t* values, const char16_t* doc)
{
    return internal::enum_builder(Text(name), Text(values))
        .doc(Text(doc))
        .parent_module(String::fromStatic(u"qt"))
        .build();
}

bool class_writer::has(const QByteArray& name) const
{
    const method_ident ident = method_ident_untyped(ByteArray(name));
    const auto& entries = m_builder.parts().entries;
    return std::any_of(entries.begin(), entries.end(), [&](const class_entry& entry) { return entry.name == ident; });
}

void class_writer::add_meta_entries()
{
    const QByteArray own = m_name.ToQString().toUtf8();
    const auto note = [this] {
        class_entry entry = m_builder.parts().entries.back();
        entry.isMeta = true;
        m_builder.replace_last_entry(std::move(entry));
    };
    for (int i = m_meta->propertyOffset(); i < m_meta->propertyCount(); ++i) {
        const QMetaProperty property = m_meta->property(i);
        if (has(property.name()) || !IsBindable(property))
            continue;
        const QString type = TypeName(property.metaType());
        meta_property(property.name(), reinterpret_cast<const char16_t*>(type.utf16()), u"");
        note();
    }
    for (int i = m_meta->methodOffset(); i < m_meta->methodCount(); ++i) {
        const ::QMetaMethod method = m_meta->method(i);
        if (method.name().startsWith('_') || method.access() == ::QMetaMethod::Private || has(method.name()))
            continue;
        if (method.methodType() == ::QMetaMethod::Signal) {
            const ::QMetaMethod whole = find_signal(*m_meta, method.name().constData());
            const QString parameters = SignatureOf(whole, false).ToQString();
            signal_of(method.name().constData(), reinterpret_cast<const char16_t*>(parameters.utf16()), u"",
                      make_signal_getter(whole));
            note();
        } else if (method.access() == ::QMetaMethod::Public && method.methodType() != ::QMetaMethod::Constructor) {
            if (internal::object_value_function* function = make_meta_method(*m_meta, method.name())) {
                internal::method_builder_base builder(m_name, method.name().constData());
                builder.assign_func(function);
                m_builder.add_entry(builder.build());
                note();
            }
        }
    }
}

Class_Generic class_writer::build()
{
    if (m_meta)
        add_meta_entries();
    const Class_Generic result = m_builder.build();
    if (m_meta)
        register_object_class(*m_meta, result);
    return result;
}

} // namespace weft::qt::details
