// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <QSocketNotifier>

#include <functional>
#include <memory>

namespace orbis {

/// While it lives, the signals that ask the program to end (Ctrl-C, terminate,
/// hang up) call a function from the main loop instead of killing it. After it
/// they are only noted, so that an impatient second Ctrl-C does not cut the
/// closing of a database short. One at a time; main thread.
class SignalWatch
{
public:
    explicit SignalWatch(std::function<void()> onSignal);
    ~SignalWatch();
    SignalWatch(const SignalWatch&) = delete;
    SignalWatch& operator=(const SignalWatch&) = delete;

    /// The first signal that came in the life of the program; 0 when none did.
    static int get_Signal();

private:
    std::function<void()> m_onSignal;
    std::unique_ptr<QSocketNotifier> m_notifier;
};

} // namespace orbis
