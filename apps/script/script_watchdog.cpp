// SPDX-License-Identifier: GPL-3.0-or-later
#include "script/script_watchdog.h"

#include <algorithm>

namespace orbis {

ScriptWatchdog::ScriptWatchdog(int milliseconds, std::function<void()> onSilence)
    : m_limit(std::chrono::milliseconds(milliseconds)), m_onSilence(std::move(onSilence))
{
    Beat();
    QObject::connect(&m_heart, &QTimer::timeout, &m_heart, [this] { Beat(); });
    m_heart.start(std::clamp(milliseconds / 10, 5, 200));
    m_thread = std::thread([this] { Watch(); });
}

ScriptWatchdog::~ScriptWatchdog()
{
    {
        std::lock_guard guard(m_mutex);
        m_isEnding = true;
    }
    m_wake.notify_all();
    m_thread.join();
}

void ScriptWatchdog::Watch()
{
    std::unique_lock lock(m_mutex);
    while (!m_isEnding) {
        const Clock::time_point end = Clock::time_point(Clock::duration(m_beat.load())) + m_limit;
        if (Clock::now() >= end) {
            lock.unlock();
            m_onSilence();
            return;
        }
        m_wake.wait_until(lock, end);
    }
}

} // namespace orbis
