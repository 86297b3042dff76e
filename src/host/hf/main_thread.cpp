// SPDX-License-Identifier: GPL-3.0-or-later
#include "hf/main_thread.h"

#include <QCoreApplication>
#include <QThread>

#include <chrono>
#include <thread>

namespace HF {

namespace {
const std::thread::id LoadingThread = std::this_thread::get_id();
}

bool IsMainThread()
{
    if (const QCoreApplication* application = QCoreApplication::instance())
        return application->thread() == QThread::currentThread();
    return std::this_thread::get_id() == LoadingThread;
}

void LYield()
{
    QCoreApplication::processEvents(QEventLoop::AllEvents, 10);
    std::this_thread::sleep_for(std::chrono::microseconds(200));
}

} // namespace HF
