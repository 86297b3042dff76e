// SPDX-License-Identifier: GPL-3.0-or-later
#include "bridge/event_ref.h"
#include "bridge_handles.h"

#include <QChildEvent>
#include <QKeyEvent>

namespace weft::qt::details {

namespace {

thread_local event_scope* innermost = nullptr;

} // namespace

event_scope::event_scope() : m_outer(innermost)
{
    innermost = this;
}

event_scope::~event_scope()
{
    innermost = m_outer;
    for (const event_ref& event : m_events)
        event->event = nullptr;
}

event_ref event_scope::make(::QEvent* event)
{
    auto box = std::make_shared<event_box>();
    if (innermost) {
        box->event = event;
        innermost->m_events.push_back(box);
    }
    return box;
}

::QEvent& event_argument(const Any& any)
{
    return living(QEvent::cast(any).get());
}

::QEvent& living(const event_ref& event)
{
    if (!event || !event->event)
        throw internal::bad_argument(QEvent::typeMask(), {}, "The event is over.");
    return *event->event;
}

::QChildEvent& child_event(const event_ref& event)
{
    return static_cast<::QChildEvent&>(living(event));
}

::QTimerEvent& timer_event(const event_ref& event)
{
    return static_cast<::QTimerEvent&>(living(event));
}

int event_key(const event_ref& event)
{
    const auto* key = dynamic_cast<::QKeyEvent*>(&living(event));
    return key ? key->key() : 0;
}

QString event_text(const event_ref& event)
{
    const auto* key = dynamic_cast<::QKeyEvent*>(&living(event));
    return key ? key->text() : QString();
}

::QPoint event_position(const event_ref& event)
{
    const auto* point = dynamic_cast<::QSinglePointEvent*>(&living(event));
    return point ? point->position().toPoint() : ::QPoint();
}

int event_button(const event_ref& event)
{
    const auto* point = dynamic_cast<::QSinglePointEvent*>(&living(event));
    return point ? point->button() : 0;
}

Any event_to_any(::QEvent* event)
{
    if (!event)
        return {};
    const event_ref box = event_scope::make(event);
    switch (event->type()) {
    case ::QEvent::ChildAdded:
    case ::QEvent::ChildPolished:
    case ::QEvent::ChildRemoved: return QChildEvent(box).any();
    case ::QEvent::Timer: return QTimerEvent(box).any();
    default: return QEvent(box).any();
    }
}

} // namespace weft::qt::details
