// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "rc/ref_counted.h"

#include <functional>
#include <type_traits>
#include <utility>

namespace rc {

template <class T> class Ref;
template <class T> class Ptr;
template <class T> class Weak;

namespace impl {
struct Adopt {};
}

/// Strong reference that may be null.
template <class T>
class Ptr
{
public:
    using element_type = T;

    Ptr() noexcept = default;
    Ptr(std::nullptr_t) noexcept {}
    /// Takes a further reference to an object that somebody holds.
    explicit Ptr(T* object) noexcept : m_object(object) { add(); }
    Ptr(T* object, impl::Adopt) noexcept : m_object(object) {}
    Ptr(const Ptr& other) noexcept : m_object(other.m_object) { add(); }
    Ptr(Ptr&& other) noexcept : m_object(std::exchange(other.m_object, nullptr)) {}
    template <class U, class = std::enable_if_t<std::is_convertible_v<U*, T*>>>
    Ptr(const Ptr<U>& other) noexcept : m_object(other.get()) { add(); }
    template <class U, class = std::enable_if_t<std::is_convertible_v<U*, T*>>>
    Ptr(Ptr<U>&& other) noexcept : m_object(other.release()) {}
    template <class U, class = std::enable_if_t<std::is_convertible_v<U*, T*>>>
    Ptr(const Ref<U>& other) noexcept : m_object(other.get()) { add(); }
    template <class U, class = std::enable_if_t<std::is_convertible_v<U*, T*>>>
    Ptr(Ref<U>&& other) noexcept : m_object(other.get()) { add(); }
    ~Ptr() { drop(); }

    Ptr& operator=(const Ptr& other) noexcept
    {
        Ptr(other).swap(*this);
        return *this;
    }
    Ptr& operator=(Ptr&& other) noexcept
    {
        Ptr(std::move(other)).swap(*this);
        return *this;
    }

    T* get() const noexcept { return m_object; }
    T* operator->() const noexcept { return m_object; }
    T& operator*() const noexcept { return *m_object; }
    explicit operator bool() const noexcept { return m_object != nullptr; }
    void reset() noexcept { Ptr().swap(*this); }
    void swap(Ptr& other) noexcept { std::swap(m_object, other.m_object); }
    /// Gives the reference away; the caller has to release it.
    T* release() noexcept { return std::exchange(m_object, nullptr); }

private:
    void add() noexcept
    {
        if (m_object)
            m_object->AddStrong();
    }
    void drop() noexcept
    {
        if (m_object)
            m_object->ReleaseStrong();
    }
    T* m_object = nullptr;
};

/// Strong reference that is never null. Moving from it copies.
template <class T>
class Ref
{
public:
    using element_type = T;

    /// Takes a further reference to an object that somebody holds.
    explicit Ref(T& object) noexcept : m_object(&object) { m_object->AddStrong(); }
    Ref(T* object, impl::Adopt) noexcept : m_object(object) {}
    /// From a Ptr that the caller knows not to be null.
    explicit Ref(const Ptr<T>& other) noexcept : m_object(other.get()) { m_object->AddStrong(); }
    Ref(const Ref& other) noexcept : m_object(other.m_object) { m_object->AddStrong(); }
    template <class U, class = std::enable_if_t<std::is_convertible_v<U*, T*>>>
    Ref(const Ref<U>& other) noexcept : m_object(other.get()) { m_object->AddStrong(); }
    ~Ref() { m_object->ReleaseStrong(); }

    Ref& operator=(const Ref& other) noexcept
    {
        T* old = m_object;
        other.m_object->AddStrong();
        m_object = other.m_object;
        old->ReleaseStrong();
        return *this;
    }

    T* get() const noexcept { return m_object; }
    T* operator->() const noexcept { return m_object; }
    T& operator*() const noexcept { return *m_object; }

private:
    T* m_object;
};

/// Weak reference: lock() gives a strong one while the object lives.
template <class T>
class Weak
{
public:
    Weak() noexcept = default;
    Weak(std::nullptr_t) noexcept {}
    explicit Weak(T* object) noexcept : m_object(object) { add(); }
    Weak(const Weak& other) noexcept : m_object(other.m_object) { add(); }
    Weak(Weak&& other) noexcept : m_object(std::exchange(other.m_object, nullptr)) {}
    template <class U, class = std::enable_if_t<std::is_convertible_v<U*, T*>>>
    Weak(const Ref<U>& other) noexcept : m_object(other.get()) { add(); }
    template <class U, class = std::enable_if_t<std::is_convertible_v<U*, T*>>>
    Weak(const Ptr<U>& other) noexcept : m_object(other.get()) { add(); }
    ~Weak() { drop(); }

    Weak& operator=(const Weak& other) noexcept
    {
        Weak(other).swap(*this);
        return *this;
    }
    Weak& operator=(Weak&& other) noexcept
    {
        Weak(std::move(other)).swap(*this);
        return *this;
    }

    /// The object, or null when its strong count has fallen to zero.
    Ptr<T> lock() const noexcept
    {
        return m_object && m_object->TryAddStrong() ? Ptr<T>(m_object, impl::Adopt{}) : Ptr<T>();
    }
    void reset() noexcept { Weak().swap(*this); }
    void swap(Weak& other) noexcept { std::swap(m_object, other.m_object); }

private:
    void add() noexcept
    {
        if (m_object)
            m_object->AddWeak();
    }
    void drop() noexcept
    {
        if (m_object)
            m_object->ReleaseWeak();
    }
    T* m_object = nullptr;
};

/// Makes an object and hands over its first reference.
template <class T, class... Args>
Ref<T> make(Args&&... args)
{
    return Ref<T>(new T(std::forward<Args>(args)...), impl::Adopt{});
}

/// A strong reference to the object itself, for its own operations. Throws
/// std::logic_error when the strong count is zero (in a destructor).
template <class T>
Ref<T> self(T* object)
{
    if (!object->TryAddStrong())
        impl::throw_dead_self();
    return Ref<T>(object, impl::Adopt{});
}

template <class T, class U>
Ptr<T> cast(const Ptr<U>& other) noexcept
{
    return Ptr<T>(dynamic_cast<T*>(other.get()));
}
template <class T, class U>
Ptr<T> cast(const Ref<U>& other) noexcept
{
    return Ptr<T>(dynamic_cast<T*>(other.get()));
}

template <class T, class U> bool operator==(const Ref<T>& a, const Ref<U>& b) noexcept { return a.get() == b.get(); }
template <class T, class U> bool operator==(const Ptr<T>& a, const Ptr<U>& b) noexcept { return a.get() == b.get(); }
template <class T, class U> bool operator==(const Ptr<T>& a, const Ref<U>& b) noexcept { return a.get() == b.get(); }
template <class T> bool operator==(const Ptr<T>& a, std::nullptr_t) noexcept { return !a.get(); }

} // namespace rc
