// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <atomic>
#include <thread>

namespace rc {

/// A lock for a few instructions: copying a name or a pointer. Never held over
/// a call that may block. Works with std::lock_guard.
class SpinFlag
{
public:
    void lock() noexcept
    {
        for (int spins = 0; m_flag.test_and_set(std::memory_order_acquire); ++spins)
            if (spins > 64)
                std::this_thread::yield();
    }
    void unlock() noexcept { m_flag.clear(std::memory_order_release); }

private:
    std::atomic_flag m_flag = ATOMIC_FLAG_INIT;
};

} // namespace rc
