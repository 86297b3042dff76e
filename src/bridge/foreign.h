// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "weft/convertible.h"
#include "weft/object_value.h"

#include <QMetaType>
#include <QObject>
#include <QPointer>

#include <cstring>
#include <type_traits>
#include <typeinfo>

namespace weft::internal {

/// A native value in the runtime, whatever its type.
class object_value_foreign_base : public object_value
{
public:
    /// The value as one of the native type, itself or its native base; null when
    /// it is another.
    virtual void* pointer(const std::type_info& wanted) = 0;
    Any tryInto(const Type& wanted) const override;
    bool equals(const object_value& other) const override;

protected:
    /// Invalid for types that Qt's type system does not hold.
    virtual QMetaType metaType() const = 0;
    const void* data() const { return const_cast<object_value_foreign_base*>(this)->pointer(nativeType()); }
    virtual const std::type_info& nativeType() const = 0;
};

/// The native class that a native value class derives from, where a method of
/// the one works on the other.
template <typename T>
struct native_base
{
    using type = void;
};

/// Holds one native T by value.
template <typename T>
class object_value_foreign final : public object_value_foreign_base
{
public:
    explicit object_value_foreign(T native) : value(std::move(native)) {}

    Type type() const override
    {
        static const Type result = Foreign_Generic::genericInstance(typeid(T).name(), true, false, false, std::nullopt,
                                                                    std::nullopt, std::nullopt);
        return result;
    }
    Any clone() const override { return Any::adopt(new object_value_foreign(value)); }
    void* pointer(const std::type_info& wanted) override
    {
        using Base = typename native_base<T>::type;
        if (wanted == typeid(T))
            return &value;
        if constexpr (!std::is_void_v<Base>) {
            if (wanted == typeid(Base))
                return static_cast<Base*>(&value);
        }
        return nullptr;
    }

    ::QObject* native_object() const override
    {
        if constexpr (std::is_same_v<T, QPointer<::QObject>>)
            return value.data();
        return nullptr;
    }

    T value;

protected:
    QMetaType metaType() const override
    {
        if constexpr (std::is_default_constructible_v<T> && std::is_copy_constructible_v<T>)
            return QMetaType::fromType<T>();
        return {};
    }
    const std::type_info& nativeType() const override { return typeid(T); }
};

} // namespace weft::internal
