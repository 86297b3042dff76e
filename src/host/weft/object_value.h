// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "weft/export.h"

#include <atomic>
#include <cstddef>
#include <cstdint>

class QObject;

namespace weft {

class Any;
class Type;
class method_ident;

namespace internal {

class object_value_function;

/// Base of every value of the runtime that lives on the heap. Made by `new`
/// only; its two counts stand in front of it and outlive it, until the last
/// weak reference goes. A fresh value has one strong reference, which an `Any`
/// adopts. Counts may change on any thread; the rest is for one thread at a
/// time.
class ORB_SHARED object_value
{
public:
    static void* operator new(std::size_t size);
    static void operator delete(void* memory);
    object_value(const object_value&) = delete;
    object_value& operator=(const object_value&) = delete;

    void add_ref() const noexcept;
    /// With the last strong reference runs `finalize` and the destructor.
    void release() const noexcept;
    void add_weak() const noexcept;
    void release_weak() const noexcept;
    /// Takes a strong reference unless the value is gone or going.
    bool try_add_ref() const noexcept;
    int strong_count() const noexcept;

    /// The type of the value, for checks and for error texts.
    virtual Type type() const = 0;
    /// A copy with its own contents; values that nobody can change give
    /// themselves.
    virtual Any clone() const;
    /// The value as one of the wanted type; none when there is no such form.
    virtual Any tryInto(const Type& wanted) const;
    virtual bool equals(const object_value& other) const { return this == &other; }
    virtual std::size_t hash() const { return reinterpret_cast<std::size_t>(this) >> 4; }

    // Fields, of instances only: others have none and refuse to be written.
    virtual Any get_field(const method_ident& name) const;
    virtual bool set_field(const method_ident& name, const Any& value);

    virtual object_value_function* as_function() { return nullptr; }
    /// The native object that the value points to; null for all others, and when
    /// the object is gone.
    virtual QObject* native_object() const { return nullptr; }

    /// How many values live, for tests of leaks.
    static std::int64_t live_count() noexcept;

protected:
    object_value() = default;
    virtual ~object_value() = default;
    /// The value goes, and is still whole. It may hand out references for the
    /// time of the call; a weak reference no longer finds it.
    virtual void finalize() {}

private:
    struct header;
    header& head() const noexcept;
};

} // namespace internal
} // namespace weft
