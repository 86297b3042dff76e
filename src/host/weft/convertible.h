// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "weft/any.h"
#include "weft/ident.h"
#include "weft/type.h"

#include <optional>

namespace weft {

class Class_Generic;

/// A native face of a runtime object: holds the object. Empty by default.
class ORB_SHARED handle
{
public:
    handle() = default;
    explicit handle(const Any& any) : m_any(any) {}
    const Any& any() const { return m_any; }
    operator Any() const { return m_any; }
    bool isEmpty() const { return m_any.isNone(); }

private:
    Any m_any;
};

/// An object that gives itself in other forms.
class ORB_SHARED I_Convertible : public handle
{
public:
    using handle::handle;
    /// The name of the method that does it.
    static const method_ident& tryInto_ident();
    /// The value as one of the type, through its `tryInto` method where a class
    /// has one; none when there is no such form.
    static Any tryInto(const Any& value, const Type& wanted);
};

/// A class whose objects come from native code only.
class ORB_SHARED I_RuntimeOnly : public handle
{
public:
    using handle::handle;
};

/// A signal of an object.
class ORB_SHARED I_Signal : public handle
{
public:
    using handle::handle;
};

/// Types of native values.
class ORB_SHARED Foreign_Generic
{
public:
    /// The type of a native value by the compiler's name for it, which stays. A
    /// foreign value is opaque: it has neither element nor key nor class, and is
    /// neither shared between threads nor kept by weak references.
    static Type genericInstance(const char* typeName, bool isCopyable, bool isShared, bool isWeak,
                                std::optional<Type> element, std::optional<Type> key, std::optional<Type> cls);
    /// The type of the objects of a bound class.
    static Type typeMaskInstance(const char* typeName, const Class_Generic& cls);
};

} // namespace weft
