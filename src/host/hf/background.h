// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "hf/export.h"

#include <QObject>
#include <QPointer>

#include <functional>
#include <memory>

namespace HF {

/// Runs the work on a worker of the host's pool, bracketed for the kernel.
/// Exceptions end there, in the error log.
HF_EXPORT void RunOnWorker(std::function<void()> work);
/// Waits until no worker runs any more; for the end of a program and tests.
/// With an event loop the main thread keeps it turning. False after the time-out
/// in milliseconds.
HF_EXPORT bool WaitForWorkers(int milliseconds);

/// Runs `work` on a worker and hands its result to `done` on the thread of
/// `context`, unless that is gone by then.
template <class Work, class Done>
void RunInBackground(Work work, QObject* context, Done done)
{
    using Result = std::invoke_result_t<Work>;
    // Only a QObject of the context's thread may look at the pointer, so the
    // relay lives there too.
    auto* relay = new QObject;
    relay->moveToThread(context->thread());
    RunOnWorker([work = std::move(work), guard = QPointer<QObject>(context), relay, done = std::move(done)]() mutable {
        auto result = std::make_shared<Result>(work());
        QMetaObject::invokeMethod(
            relay,
            [result, guard, relay, done = std::move(done)]() mutable {
                relay->deleteLater();
                if (guard)
                    done(*result);
            },
            Qt::QueuedConnection);
    });
}

} // namespace HF
