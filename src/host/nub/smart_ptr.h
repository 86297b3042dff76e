// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <cstddef>
#include <utility>

namespace nub {

/// Counted pointer whose add and release are the slots AddRef() and Release()
/// of T. May be null.
template <class T>
class smart_ptr
{
public:
    smart_ptr() noexcept = default;
    smart_ptr(std::nullptr_t) noexcept {}
    /// Takes over the reference that the maker of the object hands out.
    static smart_ptr adopt(T* object) noexcept
    {
        smart_ptr result;
        result.m_object = object;
        return result;
    }
    /// Takes a further reference.
    explicit smart_ptr(T* object) noexcept : m_object(object) { add(); }
    smart_ptr(const smart_ptr& other) noexcept : m_object(other.m_object) { add(); }
    smart_ptr(smart_ptr&& other) noexcept : m_object(std::exchange(other.m_object, nullptr)) {}
    ~smart_ptr()
    {
        if (m_object)
            m_object->Release();
    }
    smart_ptr& operator=(smart_ptr other) noexcept
    {
        std::swap(m_object, other.m_object);
        return *this;
    }

    T* get() const noexcept { return m_object; }
    T* operator->() const noexcept { return m_object; }
    T& operator*() const noexcept { return *m_object; }
    explicit operator bool() const noexcept { return m_object != nullptr; }
    bool operator==(const smart_ptr& other) const noexcept { return m_object == other.m_object; }

private:
    void add() noexcept
    {
        if (m_object)
            m_object->AddRef();
    }
    T* m_object = nullptr;
};

/// Slots of every counted object of the kernel. Counts are atomic.
class I_Counted
{
public:
    virtual void AddRef() const noexcept = 0;
    virtual void Release() const noexcept = 0;

protected:
    ~I_Counted() = default;
};

} // namespace nub
