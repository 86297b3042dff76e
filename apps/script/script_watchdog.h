// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <QTimer>

#include <atomic>
#include <chrono>
#include <condition_variable>
#include <functional>
#include <mutex>
#include <thread>

namespace orbis {

/// Looks from a thread of its own whether the event loop of the main thread still
/// turns. Made and destroyed on the main thread.
class ScriptWatchdog
{
public:
    /// `onSilence` is called once, on the watchdog's thread, when the loop has not
    /// turned for so many milliseconds.
    ScriptWatchdog(int milliseconds, std::function<void()> onSilence);
    ~ScriptWatchdog();
    ScriptWatchdog(const ScriptWatchdog&) = delete;
    ScriptWatchdog& operator=(const ScriptWatchdog&) = delete;

private:
    using Clock = std::chrono::steady_clock;

    void Watch();
    void Beat() { m_beat.store(Clock::now().time_since_epoch().count()); }

    const Clock::duration m_limit;
    const std::function<void()> m_onSilence;
    std::atomic<Clock::rep> m_beat;
    QTimer m_heart;
    std::mutex m_mutex;
    std::condition_variable m_wake;
    bool m_isEnding = false;
    std::thread m_thread; ///< last: it uses the others
};

} // namespace orbis
