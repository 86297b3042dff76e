// SPDX-License-Identifier: GPL-3.0-or-later
#include "cli/background_work.h"

#include "cli/console.h"
#include "cli/signal_watch.h"

#include "hf/background.h"

#include <QEventLoop>
#include <QTimer>

namespace orbis {

namespace {
constexpr int TickMilliseconds = 200;
using Clock = std::chrono::steady_clock;
} // namespace

void BackgroundWork::StepBegins()
{
    m_stepStart.store(Clock::now().time_since_epoch().count());
}

bool BackgroundWork::Run(const std::function<void()>& work)
{
    QEventLoop loop;
    SignalWatch watch([this] {
        m_stopping.store(true);
        m_stop();
    });
    QTimer timer;
    QObject::connect(&timer, &QTimer::timeout, [this, waits = 0]() mutable {
        if (!m_stopping.load())
            return UpdateStatus();
        m_stop(); // a step that began just now may not have heard the first call
        if (++waits == 2000 / TickMilliseconds)
            Console::Instance().ShowStatus(QObject::tr("waiting for the engine to stop, Ctrl-\\ kills it"));
    });
    timer.start(TickMilliseconds);

    bool done = false;
    HF::RunOnWorker([&] {
        try {
            work();
        } catch (const std::exception& error) {
            Console::Instance().Error(QString::fromUtf8(error.what()));
        } catch (...) {
            Console::Instance().Error(QObject::tr("Unknown error"));
        }
        QMetaObject::invokeMethod(
            &loop,
            [&] {
                done = true;
                loop.quit();
            },
            Qt::QueuedConnection);
    });
    while (!done)
        loop.exec(); // the program asks nobody else to quit it
    Console::Instance().ClearStatus();
    return !m_stopping.load() && SignalWatch::get_Signal() == 0;
}

void BackgroundWork::UpdateStatus()
{
    const auto start = m_stepStart.load();
    const auto elapsed = std::chrono::duration_cast<std::chrono::seconds>(Clock::now().time_since_epoch()
                                                                          - Clock::duration(start));
    if (start == 0 || elapsed.count() < 1) {
        if (m_statusShown)
            Console::Instance().ClearStatus();
        m_statusShown = false;
        return;
    }
    Console::Instance().ShowStatus(QObject::tr("running for %1 s, Ctrl-C stops it").arg(elapsed.count()));
    m_statusShown = true;
}

} // namespace orbis
