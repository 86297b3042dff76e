// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "bridge/foreign.h"
#include "bridge/qobject_instance.h"
#include "bridge/variant.h"
#include "weft/class.h"
#include "weft/errors.h"
#include "weft/lazy.h"
#include "weft/list.h"

#include <QEvent>
#include <QFlags>
#include <QHash>
#include <QList>
#include <QMap>
#include <QMetaType>
#include <QStringList>

#include <limits>
#include <optional>
#include <type_traits>

class QItemSelection;

/// From values of the runtime to native ones and back. Every conversion of an
/// argument throws bad_argument for a value of another type, and
/// integer_overflow for a number out of range.
namespace weft::qt::details {

// What does the work, once for all types.
std::int64_t integer_argument(const Any& any);
[[noreturn]] void throw_overflow(std::int64_t value, const char* nativeType);
bool boolean_argument(const Any& any);
double real_argument(const Any& any);
QString string_argument(const Any& any);
QByteArray bytes_argument(const Any& any);
std::vector<Any> list_argument(const Any& any);
/// The native value inside an object of a bound class.
void* foreign_argument(const Any& any, const std::type_info& wanted, const Class_Generic& cls);

/// Converts by Qt's type of a value: how a value class gets in and out, where
/// only its type is known.
struct value_type
{
    Any (*from)(const void* value);
    bool (*into)(const Any& any, void* value);
};
void register_value_type(QMetaType type, value_type conversions);
/// The type whose values the objects of a class hold.
void register_class_type(QMetaType type, const Class_Generic& cls);
/// None for a type that nothing is known of but QVariant.
Any from_meta_type(QMetaType type, const void* value);
/// Assigns to a value that exists; throws bad_argument.
void into_meta_type(const Any& any, QMetaType type, void* value);
/// The runtime's type for one of Qt's.
Type type_of_meta_type(QMetaType type);

/// The bound class of a native value class, declared by the generated handles.
template <typename T>
struct handle_of
{
    using type = void;
};
template <typename T>
concept BoundValue = !std::is_void_v<typename handle_of<T>::type>;
template <typename T>
concept NativeObject = std::is_base_of_v<::QObject, T>;

template <typename T>
struct argument;

template <std::integral I>
    requires(!std::same_as<I, bool>)
struct argument<I>
{
    static I from(const Any& any)
    {
        const std::int64_t value = integer_argument(any);
        if (!std::in_range<I>(value))
            throw_overflow(value, QMetaType::fromType<I>().name());
        return static_cast<I>(value);
    }
};
template <>
struct argument<bool>
{
    static bool from(const Any& any) { return boolean_argument(any); }
};
template <std::floating_point F>
struct argument<F>
{
    static F from(const Any& any) { return static_cast<F>(real_argument(any)); }
};
template <typename E>
    requires std::is_enum_v<E>
struct argument<E>
{
    // Flags with the topmost bit are written as positive numbers.
    static E from(const Any& any)
    {
        const std::int64_t value = integer_argument(any);
        if (!std::in_range<int>(value) && !std::in_range<unsigned>(value))
            throw_overflow(value, "int");
        return static_cast<E>(value);
    }
};
template <typename E>
struct argument<QFlags<E>>
{
    static QFlags<E> from(const Any& any) { return QFlags<E>::fromInt(static_cast<int>(argument<E>::from(any))); }
};
template <>
struct argument<QString>
{
    static QString from(const Any& any) { return string_argument(any); }
};
template <>
struct argument<QByteArray>
{
    static QByteArray from(const Any& any) { return bytes_argument(any); }
};
template <>
struct argument<::QVariant>
{
    static ::QVariant from(const Any& any) { return to_qvariant(any); }
};
template <>
struct argument<Any>
{
    static const Any& from(const Any& any) { return any; }
};
template <>
struct argument<I_Invokable_Generic>
{
    static I_Invokable_Generic from(const Any& any) { return I_Invokable_Generic::cast(any); }
};
template <typename T>
struct argument<std::optional<T>>
{
    static std::optional<T> from(const Any& any)
    {
        return any.isNone() ? std::nullopt : std::optional<T>(argument<T>::from(any));
    }
};
/// Pointers to objects may be none; references may not.
template <NativeObject T>
struct argument<T*>
{
    static T* from(const Any& any)
    {
        return any.isNone() ? nullptr : static_cast<T*>(qobject_argument(any, T::staticMetaObject));
    }
};
template <NativeObject T>
struct argument<T>
{
    static T& from(const Any& any) { return *static_cast<T*>(qobject_argument(any, T::staticMetaObject)); }
};
template <BoundValue T>
struct argument<T>
{
    static T& from(const Any& any)
    {
        return *static_cast<T*>(foreign_argument(any, typeid(T), handle_of<T>::type::getClass()));
    }
};
/// Events as long as they are delivered.
::QEvent& event_argument(const Any& any);
template <typename E>
    requires std::is_base_of_v<::QEvent, E>
struct argument<E*>
{
    static E* from(const Any& any)
    {
        auto* event = dynamic_cast<E*>(&event_argument(any));
        if (!event)
            throw internal::bad_argument(Type::foreign(typeid(E).name()), any, "This event is of another kind.");
        return event;
    }
};
template <>
struct argument<::QItemSelection>
{
    static ::QItemSelection from(const Any& any);
};
/// The handles themselves.
template <std::derived_from<handle> H>
struct argument<H>
{
    static H from(const Any& any) { return H::cast(any); }
};
template <typename T>
struct argument<QList<T>>
{
    static QList<T> from(const Any& any)
    {
        QList<T> result;
        for (const Any& item : list_argument(any))
            result.append(argument<T>::from(item));
        return result;
    }
};
template <>
struct argument<QMap<int, ::QVariant>>
{
    static QMap<int, ::QVariant> from(const Any& any);
};

/// The argument for a parameter as it is declared; a lazy is waited for.
template <typename Parameter>
decltype(auto) arg(const Any& any)
{
    using T = std::remove_cvref_t<Parameter>;
    if constexpr (!std::same_as<T, Any>) {
        if (any.isObject())
            if (const auto lazy = Lazy_Generic::cast(any)) {
                if constexpr (std::is_reference_v<decltype(argument<T>::from(any))>)
                    throw internal::bad_argument(Type(), any);
                else
                    return argument<T>::from(lazy->wait());
            }
    }
    return argument<T>::from(any);
}

// Results.
inline Any result(bool value) { return value; }
template <std::integral I>
    requires(!std::same_as<I, bool>)
Any result(I value)
{
    return static_cast<std::int64_t>(value);
}
inline Any result(double value) { return value; }
template <typename E>
    requires std::is_enum_v<E>
Any result(E value)
{
    return static_cast<std::int64_t>(value);
}
template <typename E>
Any result(QFlags<E> value)
{
    return static_cast<std::int64_t>(value.toInt());
}
inline Any result(const QString& value) { return String(value); }
inline Any result(const QByteArray& value) { return ByteArray(value); }
inline Any result(const Any& value) { return value; }
inline Any result(const handle& value) { return value.any(); }
inline Any result(void* value) { return static_cast<std::int64_t>(reinterpret_cast<std::intptr_t>(value)); }
inline Any result(const void* value) { return result(const_cast<void*>(value)); }
inline Any result(const ::QVariant& value) { return to_any(value); }
template <typename T>
    requires NativeObject<std::remove_const_t<T>>
Any result(T* value)
{
    return create_qobject_instance(const_cast<std::remove_const_t<T>*>(value), {});
}
template <BoundValue T>
Any result(const T& value)
{
    return typename handle_of<T>::type(value).any();
}
template <typename T>
Type element_type()
{
    if constexpr (std::is_same_v<T, QString>)
        return string_type();
    else if constexpr (std::is_integral_v<T>)
        return Integer::typeMask();
    else
        return Type();
}
template <typename T>
Any result(const QList<T>& values)
{
    const List list(element_type<T>());
    for (const T& value : values)
        list.append(result(value));
    return list;
}
template <typename K, typename V>
Any map_result(const auto& values)
{
    const HashMap map;
    for (auto it = values.begin(); it != values.end(); ++it)
        map.set(result(it.key()), result(it.value()));
    return map;
}
inline Any result(const QMap<int, ::QVariant>& values) { return map_result<int, ::QVariant>(values); }
inline Any result(const QHash<int, QByteArray>& values) { return map_result<int, QByteArray>(values); }

/// Calls a method of an object by name, for the members of handles.
template <typename... Args>
Any invoke_member(const handle& self, const method_ident& name, const Args&... args)
{
    const std::vector<Any> all{Any(args)...};
    return self.any().invoke(name, all);
}

} // namespace weft::qt::details
