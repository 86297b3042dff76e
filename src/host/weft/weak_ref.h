// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "weft/any.h"

#include <utility>

namespace weft {

/// Finds a value of the heap as long as it lives, without keeping it. Copies
/// find the same one; immediate values are not found. Any thread.
class ORB_SHARED WeakRef_Generic
{
public:
    WeakRef_Generic() = default;
    explicit WeakRef_Generic(const Any& target) : m_target(target.object())
    {
        if (m_target)
            m_target->add_weak();
    }
    WeakRef_Generic(const WeakRef_Generic& other) : m_target(other.m_target)
    {
        if (m_target)
            m_target->add_weak();
    }
    WeakRef_Generic(WeakRef_Generic&& other) noexcept : m_target(std::exchange(other.m_target, nullptr)) {}
    WeakRef_Generic& operator=(WeakRef_Generic other) noexcept
    {
        std::swap(m_target, other.m_target);
        return *this;
    }
    ~WeakRef_Generic()
    {
        if (m_target)
            m_target->release_weak();
    }

    /// The value; none when it is gone or going.
    Any lock() const { return m_target && m_target->try_add_ref() ? Any::adopt(m_target) : Any(); }

private:
    internal::object_value* m_target = nullptr;
};

} // namespace weft
