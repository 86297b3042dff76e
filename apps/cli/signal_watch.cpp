// SPDX-License-Identifier: GPL-3.0-or-later
#include "cli/signal_watch.h"

#include <atomic>
#include <cerrno>

#include <fcntl.h>
#include <signal.h>
#include <unistd.h>

namespace orbis {

namespace {

constexpr int Signals[] = {SIGINT, SIGTERM, SIGHUP};
std::atomic<int> firstSignal{0};
int wakePipe[2] = {-1, -1};

static_assert(std::atomic<int>::is_always_lock_free);

void OnSignal(int signal)
{
    const int error = errno;
    int none = 0;
    firstSignal.compare_exchange_strong(none, signal);
    const char byte = 0;
    // A full pipe wakes the loop just as well.
    [[maybe_unused]] const ssize_t written = ::write(wakePipe[1], &byte, 1);
    errno = error;
}

} // namespace

SignalWatch::SignalWatch(std::function<void()> onSignal) : m_onSignal(std::move(onSignal))
{
    if (wakePipe[0] < 0 && ::pipe2(wakePipe, O_CLOEXEC | O_NONBLOCK) != 0)
        return; // signals then keep their default effect
    m_notifier = std::make_unique<QSocketNotifier>(wakePipe[0], QSocketNotifier::Read);
    QObject::connect(m_notifier.get(), &QSocketNotifier::activated, [this] {
        char bytes[64];
        while (::read(wakePipe[0], bytes, sizeof bytes) > 0) {
        }
        m_onSignal();
    });
    struct sigaction action{};
    action.sa_handler = OnSignal;
    sigemptyset(&action.sa_mask);
    action.sa_flags = SA_RESTART;
    for (const int signal : Signals) {
        struct sigaction former{};
        ::sigaction(signal, nullptr, &former);
        if (former.sa_handler != SIG_IGN) // such as under nohup
            ::sigaction(signal, &action, nullptr);
    }
}

SignalWatch::~SignalWatch() = default;

int SignalWatch::get_Signal()
{
    return firstSignal.load();
}

} // namespace orbis
