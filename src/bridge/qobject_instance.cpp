// SPDX-License-Identifier: GPL-3.0-or-later
#include "bridge/qobject_instance.h"

#include "bridge/foreign.h"
#include "bridge/hooks.h"
#include "bridge_handles.h"
#include "weft/builders.h"
#include "weft/errors.h"
#include "weft/lazy.h"

#include <QHash>
#include <QMetaEnum>
#include <QStringList>

#include <mutex>

namespace weft::qt::details {

namespace {

using Pointer = QPointer<::QObject>;

struct Known
{
    std::recursive_mutex mutex; ///< an object may go while another is looked for
    QHash<QByteArray, Class_Generic> classes;           ///< by the native class's name
    QHash<const ::QObject*, WeakRef_Generic> instances; ///< of native objects that no script made
    qsizetype pruned = 0;                               ///< how many were left the last time

    /// Native objects that went first leave their places behind.
    void Prune()
    {
        if (instances.size() < 2 * pruned + 64)
            return;
        instances.removeIf([](const auto& place) { return place.value().lock().isNone(); });
        pruned = instances.size();
    }
};

Known& TheKnown()
{
    static auto* known = new Known;
    return *known;
}

Any MakeInstance(::QObject* object, const Class_Generic& cls, bool owned)
{
    const Any self = internal::unsafe_create_instance(cls);
    self.setFieldValue(qobject_field(), Any::adopt(new internal::object_value_foreign<Pointer>(Pointer(object))));
    self.setFieldValue(owned_field(), owned);
    return self;
}

const Pointer* PointerOf(const Any& any)
{
    const auto* foreign = any.fieldValue(qobject_field()).as<internal::object_value_foreign<Pointer>>();
    return foreign ? &foreign->value : nullptr;
}

} // namespace

const method_ident& owned_field()
{
    static const method_ident ident = internal::helpers::create_literal_method_identifier("_owned");
    return ident;
}

const method_ident& qobject_field()
{
    static const method_ident ident = internal::helpers::create_literal_method_identifier("_qobject");
    return ident;
}

Any create_qobject_instance(::QObject* object, const Class_Generic& cls)
{
    if (!object)
        return {};
    if (const companion* half = companion::of(object))
        if (const Any self = half->lock(); !self.isNone())
            return self;
    Class_Generic nearest = class_of_meta_object(*object->metaObject());
    if (!cls.isEmpty() && !nearest.isDerivedFrom(cls))
        nearest = cls;
    std::lock_guard guard(TheKnown().mutex);
    TheKnown().Prune();
    WeakRef_Generic& place = TheKnown().instances[object];
    // The address may be that of an object long gone.
    if (const Any self = place.lock(); !self.isNone() && PointerOf(self) && *PointerOf(self) == object)
        return self;
    const Any self = MakeInstance(object, nearest, false);
    place = WeakRef_Generic(self);
    return self;
}

Any create_owned_instance(::QObject* object)
{
    const Any self = create_qobject_instance(object, {});
    if (object && !companion::of(object))
        self.setFieldValue(owned_field(), true);
    return self;
}

void adopt_qobject(const Any& self, ::QObject* object)
{
    self.setFieldValue(qobject_field(), Any::adopt(new internal::object_value_foreign<Pointer>(Pointer(object))));
    self.setFieldValue(owned_field(), true);
    if (companion* half = companion::of(object)) {
        half->attach(self);
    } else {
        std::lock_guard guard(TheKnown().mutex);
        TheKnown().instances[object] = WeakRef_Generic(self);
    }
}

::QObject* qobject_of(const Any& any)
{
    const Pointer* pointer = any.isObject() ? PointerOf(any) : nullptr;
    return pointer ? pointer->data() : nullptr;
}

::QObject* qobject_argument(const Any& any, const ::QMetaObject& wanted)
{
    Class_Generic cls = class_of_meta_object(wanted);
    if (cls.isEmpty())
        cls = QObject::getClass();
    const Pointer* pointer = any.isObject() ? PointerOf(any) : nullptr;
    if (!pointer)
        throw internal::bad_argument(cls.instanceType(), any);
    if (pointer->isNull())
        throw internal::bad_argument(cls.instanceType(), any,
                                     QStringLiteral("The %1 is gone.").arg(any.type().name().ToQString()));
    if (!wanted.cast(pointer->data()))
        throw internal::bad_argument(cls.instanceType(), any,
                                     QStringLiteral("%1 expected, got %2.")
                                         .arg(QLatin1String(wanted.className()), any.type().name().ToQString()));
    return pointer->data();
}

void register_object_class(const ::QMetaObject& meta, const Class_Generic& cls)
{
    std::lock_guard guard(TheKnown().mutex);
    TheKnown().classes.insert(QByteArray(meta.className()), cls);
}

Class_Generic class_of_meta_object(const ::QMetaObject& meta)
{
    std::lock_guard guard(TheKnown().mutex);
    for (const ::QMetaObject* one = &meta; one; one = one->superClass())
        if (const auto place = TheKnown().classes.constFind(QByteArray::fromRawData(one->className(), qstrlen(one->className())));
            place != TheKnown().classes.cend())
            return *place;
    return {};
}

void finalize_qobject(const Any& self)
{
    const Pointer* pointer = PointerOf(self);
    if (!pointer)
        return;
    ::QObject* const object = pointer->data();
    if (object) {
        std::lock_guard guard(TheKnown().mutex);
        const auto place = TheKnown().instances.find(object);
        if (place != TheKnown().instances.end() && place->lock().isNone())
            TheKnown().instances.erase(place);
    }
    Any owned = self.fieldValue(owned_field());
    try {
        if (const auto lazy = Lazy_Generic::cast(owned))
            owned = lazy->wait();
    } catch (...) {
        internal::report_error("_owned", internal::current_exception_text());
    }
    if (owned == Any(true) && object)
        object->deleteLater();
}

Class_Generic create_qobject_enum(const QMetaEnum& meta)
{
    QStringList values;
    for (int i = 0; i < meta.keyCount(); ++i)
        values.append(QStringLiteral("%1 = %2").arg(QLatin1String(meta.key(i))).arg(meta.value(i)));
    return internal::enum_builder(QString::fromLatin1(meta.enumName()), values.join(QLatin1String(", "))).build();
}

Class_Generic create_qobject_enum(const Class_Generic& cls)
{
    if (cls.isEmpty() || cls.content().isEnum)
        return cls;
    for (const class_entry& entry : cls.content().entries)
        if (entry.kind == class_entry::Kind::Enum)
            return Class_Generic(entry.value);
    return cls;
}

} // namespace weft::qt::details
