// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <QString>

#include <chrono>
#include <mutex>

namespace orbis {

/// The text of a bar: share done, rate in units a second, time that is left.
/// `total` 0: nobody knows, and the bar is left out.
QString ProgressText(qint64 done, qint64 total, double seconds, const QString& unit);

/// Shows how far a long work is, on the status line of a terminal. Any thread.
class ProgressBar
{
public:
    explicit ProgressBar(const QString& unit);
    /// At most a few times a second something is shown.
    void Show(qint64 done, qint64 total);

private:
    using Clock = std::chrono::steady_clock;
    const QString m_unit;
    const Clock::time_point m_start = Clock::now();
    std::mutex m_mutex;
    Clock::time_point m_shown;
};

} // namespace orbis
