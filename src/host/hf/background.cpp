// SPDX-License-Identifier: GPL-3.0-or-later
#include "hf/background.h"

#include "hf/log.h"
#include "hf/main_thread.h"
#include "nub/disk_location.h"

#include <QElapsedTimer>
#include <QThreadPool>

namespace HF {

namespace {

/// Room for a long query in each of a few windows beside catalogue work.
constexpr int Workers = 16;

QThreadPool& Pool()
{
    static QThreadPool* pool = [] {
        auto* made = new QThreadPool;
        made->setMaxThreadCount(Workers);
        return made;
    }();
    return *pool;
}

} // namespace

void RunOnWorker(std::function<void()> work)
{
    Pool().start([work = std::move(work)] {
        nub::OrbisThreadInit();
        try {
            work();
        } catch (const std::exception& error) {
            LogError(QString::fromUtf8(error.what()));
        } catch (...) {
            LogError(QObject::tr("Unknown error"));
        }
        nub::OrbisThreadShutDown();
    });
}

bool WaitForWorkers(int milliseconds)
{
    QElapsedTimer timer;
    timer.start();
    while (!Pool().waitForDone(IsMainThread() ? 5 : milliseconds)) {
        if (timer.elapsed() >= milliseconds)
            return false;
        if (IsMainThread())
            LYield();
    }
    return true;
}

} // namespace HF
