// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "hf/export.h"

namespace HF {

/// True on the thread of QCoreApplication; before there is one, on the thread
/// that loaded the library.
HF_EXPORT bool IsMainThread();

/// Lets the main loop run for a moment: handles waiting events, then rests for
/// a fraction of a millisecond. Main thread only.
HF_EXPORT void LYield();

/// Runs `function` from the main loop, soon. Any thread. Without an application
/// object it runs at once on the calling thread.
template <class F> void RunOnMainThreadLater(F function);

} // namespace HF

#include <QCoreApplication>
#include <QMetaObject>

template <class F>
void HF::RunOnMainThreadLater(F function)
{
    if (QCoreApplication* application = QCoreApplication::instance())
        QMetaObject::invokeMethod(application, std::move(function), Qt::QueuedConnection);
    else
        function();
}
