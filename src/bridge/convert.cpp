// SPDX-License-Identifier: GPL-3.0-or-later
#include "bridge/convert.h"

#include "bridge/event_ref.h"
#include "bridge_handles.h"

#include <QItemSelection>

#include <mutex>
#include <unordered_map>

namespace weft {

namespace qt::details {

namespace {

struct Registry
{
    std::mutex mutex;
    std::unordered_map<int, value_type> types;
    std::unordered_map<const internal::object_value*, QMetaType> ofClass;
};

Registry& TheRegistry()
{
    static auto* registry = new Registry;
    return *registry;
}

std::optional<value_type> Find(QMetaType type)
{
    std::lock_guard guard(TheRegistry().mutex);
    const auto place = TheRegistry().types.find(type.id());
    return place == TheRegistry().types.end() ? std::nullopt : std::optional(place->second);
}

template <typename I>
void Assign(const Any& any, void* value)
{
    *static_cast<I*>(value) = argument<I>::from(any);
}

/// Containers that have no class of their own.
template <typename T>
constexpr value_type Container{
    [](const void* value) { return result(*static_cast<const T*>(value)); },
    [](const Any& any, void* value) {
        *static_cast<T*>(value) = argument<T>::from(any);
        return true;
    },
};

constexpr value_type Selection{
    [](const void* value) { return result(static_cast<const ::QItemSelection*>(value)->indexes()); },
    [](const Any& any, void* value) {
        *static_cast<::QItemSelection*>(value) = argument<::QItemSelection>::from(any);
        return true;
    },
};

constexpr value_type Event{
    [](const void* value) { return event_to_any(*static_cast<::QEvent* const*>(value)); },
    [](const Any&, void*) { return false; },
};

constexpr value_type RoleNames{
    [](const void* value) { return result(*static_cast<const QHash<int, QByteArray>*>(value)); },
    [](const Any& any, void* value) {
        auto& names = *static_cast<QHash<int, QByteArray>*>(value);
        names.clear();
        const QMap<int, ::QVariant> map = argument<QMap<int, ::QVariant>>::from(any);
        for (auto it = map.begin(); it != map.end(); ++it)
            names.insert(it.key(), it.value().toByteArray());
        return true;
    },
};

void RegisterContainers()
{
    static const bool done = [] {
        register_value_type(QMetaType::fromType<QStringList>(), Container<QStringList>);
        register_value_type(QMetaType::fromType<QList<int>>(), Container<QList<int>>);
        register_value_type(QMetaType::fromType<QModelIndexList>(), Container<QModelIndexList>);
        register_value_type(QMetaType::fromType<QMap<int, ::QVariant>>(), Container<QMap<int, ::QVariant>>);
        register_value_type(QMetaType::fromType<QHash<int, QByteArray>>(), RoleNames);
        register_value_type(QMetaType::fromType<::QItemSelection>(), Selection);
        register_value_type(QMetaType::fromType<::QEvent*>(), Event);
        return true;
    }();
    Q_UNUSED(done)
}

} // namespace

std::int64_t integer_argument(const Any& any)
{
    if (!any.isInteger())
        throw internal::bad_argument(Integer::typeMask(), any);
    return any.integer();
}

void throw_overflow(std::int64_t value, const char* nativeType)
{
    throw internal::integer_overflow(value, nativeType);
}

bool boolean_argument(const Any& any)
{
    if (!any.isBoolean())
        throw internal::bad_argument(Boolean::typeMask(), any);
    return any.boolean();
}

double real_argument(const Any& any)
{
    const auto value = Float::cast(any);
    if (!value)
        throw internal::bad_argument(Float::typeMask(), any);
    return value->value;
}

QString string_argument(const Any& any)
{
    const auto text = cast_string(any);
    if (!text)
        throw internal::bad_argument(string_type(), any);
    return text->ToQString();
}

QByteArray bytes_argument(const Any& any)
{
    if (const auto bytes = cast_bytes(any))
        return bytes->ToQByteArray();
    if (const auto text = cast_string(any))
        return text->ToQString().toUtf8();
    throw internal::bad_argument(Type::basic(Type::Kind::ByteArray), any);
}

std::vector<Any> list_argument(const Any& any)
{
    const auto list = List::cast(any);
    if (!list)
        throw internal::bad_argument(Type::basic(Type::Kind::List), any);
    return {list->items().begin(), list->items().end()};
}

void* foreign_argument(const Any& any, const std::type_info& wanted, const Class_Generic& cls)
{
    if (Class_Generic::of(any).isDerivedFrom(cls)) {
        const Any field = any.fieldValue(Class_Generic::of(any).content().nativeField);
        if (auto* foreign = field.as<internal::object_value_foreign_base>())
            if (void* native = foreign->pointer(wanted))
                return native;
        throw internal::bad_argument(cls.instanceType(), any,
                                     QStringLiteral("The %1 is gone.").arg(cls.name().ToQString()));
    }
    throw internal::bad_argument(cls.instanceType(), any);
}

QMap<int, ::QVariant> argument<QMap<int, ::QVariant>>::from(const Any& any)
{
    const auto map = HashMap::cast(any);
    if (!map)
        throw internal::bad_argument(Type::basic(Type::Kind::HashMap), any);
    QMap<int, ::QVariant> result;
    for (const auto& [key, value] : map->entries()) {
        // A script's own maps have texts for keys.
        bool isNumber = key.isInteger();
        int number = isNumber ? argument<int>::from(key) : 0;
        if (const auto text = cast_string(key))
            number = text->ToQString().toInt(&isNumber);
        if (!isNumber)
            throw internal::bad_argument(Integer::typeMask(), key);
        result.insert(number, to_qvariant(value));
    }
    return result;
}

::QItemSelection argument<::QItemSelection>::from(const Any& any)
{
    ::QItemSelection result;
    for (const ::QModelIndex& index : argument<QModelIndexList>::from(any))
        result.select(index, index);
    return result;
}

void register_value_type(QMetaType type, value_type conversions)
{
    std::lock_guard guard(TheRegistry().mutex);
    TheRegistry().types.insert_or_assign(type.id(), conversions);
}

void register_class_type(QMetaType type, const Class_Generic& cls)
{
    std::lock_guard guard(TheRegistry().mutex);
    TheRegistry().ofClass.insert_or_assign(cls.any().object(), type);
}

Any from_meta_type(QMetaType type, const void* value)
{
    if (!type.isValid() || type.id() == QMetaType::Void)
        return {};
    RegisterContainers();
    if (type.id() == QMetaType::QVariant)
        return to_any(*static_cast<const ::QVariant*>(value));
    if (const auto known = Find(type))
        return known->from(value);
    if (type.flags() & QMetaType::PointerToQObject)
        return create_qobject_instance(*static_cast<::QObject* const*>(value), {});
    if (type.flags() & QMetaType::IsEnumeration)
        switch (type.sizeOf()) {
        case 1: return *static_cast<const qint8*>(value);
        case 2: return *static_cast<const qint16*>(value);
        case 4: return *static_cast<const qint32*>(value);
        default: return *static_cast<const qint64*>(value);
        }
    return to_any(::QVariant(type, value));
}

void into_meta_type(const Any& any, QMetaType type, void* value)
{
    RegisterContainers();
    const auto known = Find(type);
    if (known && known->into(any, value))
        return;
    switch (type.id()) {
    case QMetaType::QVariant: *static_cast<::QVariant*>(value) = to_qvariant(any); return;
    case QMetaType::Bool: return Assign<bool>(any, value);
    case QMetaType::Int: return Assign<int>(any, value);
    case QMetaType::UInt: return Assign<unsigned>(any, value);
    case QMetaType::Short: return Assign<short>(any, value);
    case QMetaType::UShort: return Assign<unsigned short>(any, value);
    case QMetaType::Long: return Assign<long>(any, value);
    case QMetaType::ULong: return Assign<unsigned long>(any, value);
    case QMetaType::LongLong: return Assign<qlonglong>(any, value);
    case QMetaType::ULongLong: return Assign<qulonglong>(any, value);
    case QMetaType::Double: return Assign<double>(any, value);
    case QMetaType::Float: return Assign<float>(any, value);
    case QMetaType::QString: *static_cast<QString*>(value) = string_argument(any); return;
    case QMetaType::QByteArray: *static_cast<QByteArray*>(value) = bytes_argument(any); return;
    default: break;
    }
    if (type.flags() & QMetaType::PointerToQObject) {
        *static_cast<::QObject**>(value) = any.isNone() ? nullptr : qobject_argument(any, *type.metaObject());
        return;
    }
    if (type.flags() & QMetaType::IsEnumeration) {
        if (type.sizeOf() == 4)
            *static_cast<int*>(value) = static_cast<int>(argument<Qt::ItemFlag>::from(any));
        else if (type.sizeOf() == 1)
            *static_cast<qint8*>(value) = argument<qint8>::from(any);
        else
            throw internal::bad_argument(Integer::typeMask(), any);
        return;
    }
    ::QVariant variant = to_qvariant(any);
    if (variant.metaType() == QMetaType::fromType<Any>() || !variant.isValid() || !variant.convert(type))
        throw internal::bad_argument(Type::foreign(type.name()), any);
    type.destruct(value);
    type.construct(value, variant.constData());
}

Type type_of_meta_type(QMetaType type)
{
    if (type.flags() & QMetaType::IsEnumeration)
        return Integer::typeMask();
    switch (type.id()) {
    case QMetaType::Bool: return Boolean::typeMask();
    case QMetaType::Int:
    case QMetaType::UInt:
    case QMetaType::Short:
    case QMetaType::UShort:
    case QMetaType::Long:
    case QMetaType::ULong:
    case QMetaType::LongLong:
    case QMetaType::ULongLong: return Integer::typeMask();
    case QMetaType::Double:
    case QMetaType::Float: return Float::typeMask();
    case QMetaType::QString: return string_type();
    case QMetaType::QByteArray: return Type::basic(Type::Kind::ByteArray);
    default: return {};
    }
}

} // namespace qt::details

namespace internal {

Any object_value_foreign_base::tryInto(const Type& wanted) const
{
    const Any self = Any::ref(const_cast<object_value_foreign_base*>(this));
    if (wanted.matches(self))
        return self;
    if (wanted.kind() != Type::Kind::Instance || !metaType().isValid())
        return {};
    const bool isVariant = metaType() == QMetaType::fromType<::QVariant>();
    ::QVariant variant = isVariant ? *static_cast<const ::QVariant*>(data()) : ::QVariant(metaType(), data());
    const Class_Generic cls = wanted.instanceClass();
    if (cls == qt::QVariant::getClass())
        return qt::QVariant(variant).any();
    QMetaType target;
    {
        std::lock_guard guard(qt::details::TheRegistry().mutex);
        const auto& types = qt::details::TheRegistry().ofClass;
        if (const auto place = types.find(cls.any().object()); place != types.end())
            target = place->second;
    }
    if (!target.isValid() || !variant.convert(target))
        return {};
    return qt::details::from_meta_type(target, variant.constData());
}

bool object_value_foreign_base::equals(const object_value& other) const
{
    const auto* foreign = dynamic_cast<const object_value_foreign_base*>(&other);
    if (!foreign || !metaType().isValid() || foreign->metaType() != metaType() || !metaType().isEqualityComparable())
        return this == &other;
    return metaType().equals(data(), foreign->data());
}

} // namespace internal
} // namespace weft
