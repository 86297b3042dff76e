// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "bridge/hooks.h"

#include <QAbstractItemModel>
#include <QChildEvent>
#include <QMetaMethod>
#include <QObject>
#include <QTimerEvent>

namespace weft::internal {

using qt::hook;

/// A native object that a script made: its virtual functions go to the script's
/// class where that overrides them.
template <typename T>
class qobject_impl : public T, public qt::companion
{
public:
    using T::T;

    bool event(::QEvent* event) override
    {
        bool result = false;
        return run(hook::event, &result, event) ? result : T::event(event);
    }
    bool eventFilter(::QObject* watched, ::QEvent* event) override
    {
        bool result = false;
        return run(hook::eventFilter, &result, watched, event) ? result : T::eventFilter(watched, event);
    }

protected:
    void childEvent(::QChildEvent* event) override
    {
        if (!run_void(hook::childEvent, static_cast<::QEvent*>(event)))
            T::childEvent(event);
    }
    void customEvent(::QEvent* event) override
    {
        if (!run_void(hook::customEvent, event))
            T::customEvent(event);
    }
    void timerEvent(::QTimerEvent* event) override
    {
        if (!run_void(hook::timerEvent, static_cast<::QEvent*>(event)))
            T::timerEvent(event);
    }
    void connectNotify(const ::QMetaMethod& signal) override
    {
        if (!run_void(hook::connectNotify, signal))
            T::connectNotify(signal);
    }
    void disconnectNotify(const ::QMetaMethod& signal) override
    {
        if (!run_void(hook::disconnectNotify, signal))
            T::disconnectNotify(signal);
    }
};

} // namespace weft::internal
