// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "weft/any.h"

#include <QEvent>

#include <memory>
#include <vector>

namespace weft::qt::details {

/// An event as a script holds it: valid while Qt delivers it.
struct event_box
{
    ::QEvent* event = nullptr;
};
using event_ref = std::shared_ptr<event_box>;

/// While it lives, events may be handed to the runtime; afterwards what a script
/// kept of them is dead. Nests; one thread.
class event_scope
{
public:
    event_scope();
    ~event_scope();
    event_scope(const event_scope&) = delete;
    event_scope& operator=(const event_scope&) = delete;

    /// The event of the innermost scope.
    static event_ref make(::QEvent* event);

private:
    event_scope* m_outer;
    std::vector<event_ref> m_events;
};

/// The runtime object of an event: a qt.QEvent or one of its kinds.
Any event_to_any(::QEvent* event);

} // namespace weft::qt::details
