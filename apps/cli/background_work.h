// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <atomic>
#include <chrono>
#include <functional>

namespace orbis {

/// Work on a worker of the host while the main loop turns: signals are heard, and
/// on a terminal the status line tells how long a step has been running.
class BackgroundWork
{
public:
    /// `stop` is called on the main thread when a signal asks to end, and again
    /// from time to time until the work has ended.
    explicit BackgroundWork(std::function<void()> stop) : m_stop(std::move(stop)) {}

    /// Runs it and waits; true when no signal came. Main thread. An exception
    /// out of the work ends it and is told.
    bool Run(const std::function<void()>& work);

    /// The work says that a step begins which may take long, and that it ended.
    void StepBegins();
    void StepEnds() { m_stepStart.store(0); }
    bool IsStopping() const { return m_stopping.load(); }

private:
    void UpdateStatus();

    std::function<void()> m_stop;
    std::atomic<bool> m_stopping{false};
    std::atomic<std::chrono::steady_clock::rep> m_stepStart{0}; ///< 0: no step
    bool m_statusShown = false;
};

} // namespace orbis
