// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "rc/export.h"

#include <atomic>
#include <cstddef>
#include <cstdint>

namespace rc {

/// Base of every shared object: intrusive strong and weak counts.
///
/// An object starts with one strong and one weak count; rc::make hands the
/// strong one to its caller. When the last strong reference goes, Destroy()
/// runs once, with one temporary reference held; it may still hand out
/// references. If none was kept, the destructor runs. The memory stays until
/// the last weak reference goes. Counts are atomic: any thread may take and
/// drop references. Objects live on the heap only, made by rc::make.
class ORB_KERNEL RefCounted
{
public:
    RefCounted(const RefCounted&) = delete;
    RefCounted& operator=(const RefCounted&) = delete;

    void AddStrong() const noexcept { m_strong.fetch_add(1, std::memory_order_relaxed); }
    void ReleaseStrong() const noexcept
    {
        if (m_strong.fetch_sub(1, std::memory_order_acq_rel) == 1)
            LastStrongGone();
    }

    void AddWeak() const noexcept { m_weak.fetch_add(1, std::memory_order_relaxed); }
    void ReleaseWeak() const noexcept
    {
        if (m_weak.fetch_sub(1, std::memory_order_acq_rel) == 1)
            FreeMemory();
    }

    /// Raises the strong count unless it is below one; false then.
    bool TryAddStrong() const noexcept
    {
        std::int32_t count = m_strong.load(std::memory_order_relaxed);
        while (count >= 1)
            if (m_strong.compare_exchange_weak(count, count + 1, std::memory_order_acq_rel))
                return true;
        return false;
    }

    /// The strong count of this moment: 1 tells a sole owner that nobody else
    /// can have a reference, so that it may use the object again.
    std::int32_t StrongCount() const noexcept { return m_strong.load(std::memory_order_acquire); }

protected:
    RefCounted() noexcept : m_strong(1), m_weak(1), m_self(this) {}
    /// For classes whose operator new takes the memory from the pool.
    struct FromPool {};
    explicit RefCounted(FromPool) noexcept : m_strong(1), m_weak(1), m_self(this), m_pooled(true) {}
    virtual ~RefCounted() = default;

    /// Runs once, when the last strong reference goes.
    virtual void Destroy() {}

private:
    void LastStrongGone() const noexcept;
    void FreeMemory() const noexcept;

    mutable std::atomic<std::int32_t> m_strong;
    mutable std::atomic<std::int32_t> m_weak;
    mutable const void* m_self; ///< this object; the start of its memory once it is destroyed
    mutable bool m_destroying = false;
    const bool m_pooled = false;
};

namespace impl {

/// Throws std::logic_error: a strong reference to an object was asked for when
/// its strong count was zero. The text ends with a description of the place.
[[noreturn]] ORB_KERNEL void throw_dead_self();

/// Memory for small objects (at most 512 bytes): blocks are cut from slabs that
/// belong to one thread, and a slab is returned when its last block is. Any
/// thread may free. Throws std::bad_alloc.
ORB_KERNEL void* pool_allocate(std::size_t size);
ORB_KERNEL void pool_free(void* block) noexcept;

} // namespace impl

} // namespace rc
