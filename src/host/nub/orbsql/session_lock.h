// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <condition_variable>
#include <memory>
#include <mutex>
#include <optional>
#include <thread>
#include <utility>

namespace nub::orbsql {

/// The lock of a session: one thread may hold it many times over, and any
/// thread may give a hold back, since results travel.
class SessionLock
{
public:
    void Acquire()
    {
        std::unique_lock lock(m_mutex);
        m_free.wait(lock, [this] { return m_holds == 0 || m_owner == std::this_thread::get_id(); });
        m_owner = std::this_thread::get_id();
        ++m_holds;
    }
    /// False when another thread holds it.
    bool TryAcquire()
    {
        const std::lock_guard lock(m_mutex);
        if (m_holds != 0 && m_owner != std::this_thread::get_id())
            return false;
        m_owner = std::this_thread::get_id();
        ++m_holds;
        return true;
    }
    /// A further hold beside one that the caller knows of.
    void Again() noexcept
    {
        const std::lock_guard lock(m_mutex);
        ++m_holds;
    }
    void Release() noexcept
    {
        const std::lock_guard lock(m_mutex);
        if (--m_holds == 0) {
            m_owner = {};
            m_free.notify_one();
        }
    }

private:
    std::mutex m_mutex;
    std::condition_variable m_free;
    std::thread::id m_owner;
    int m_holds = 0;
};

/// One hold of a session's lock; keeps the lock's memory too.
class SessionHold
{
public:
    SessionHold() noexcept = default;
    /// Waits for the lock.
    explicit SessionHold(std::shared_ptr<SessionLock> lock) : m_lock(std::move(lock)) { m_lock->Acquire(); }
    /// Without waiting; nothing when another thread holds the lock.
    static std::optional<SessionHold> Try(std::shared_ptr<SessionLock> lock)
    {
        if (!lock->TryAcquire())
            return std::nullopt;
        SessionHold result;
        result.m_lock = std::move(lock);
        return result;
    }
    /// One more hold for a caller that owns one, on whichever thread it was taken.
    static SessionHold Further(std::shared_ptr<SessionLock> lock) noexcept
    {
        lock->Again();
        SessionHold result;
        result.m_lock = std::move(lock);
        return result;
    }
    SessionHold(SessionHold&&) noexcept = default;
    SessionHold& operator=(SessionHold&& other) noexcept
    {
        std::swap(m_lock, other.m_lock);
        return *this;
    }
    ~SessionHold() { Release(); }

    void Release() noexcept
    {
        if (m_lock)
            m_lock->Release();
        m_lock.reset();
    }

private:
    std::shared_ptr<SessionLock> m_lock;
};

} // namespace nub::orbsql
