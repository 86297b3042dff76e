// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "weft/export.h"

#include <functional>

namespace weft::internal {

/// Steps of the runtime's start, run in ascending order.
using init_level = int;

/// Keeps code for the runtime's start. May be called from static initialisers,
/// also of an object that is loaded later. Any thread.
ORB_SHARED void add_init_handler(init_level level, std::function<void()> handler);

/// Runs the handlers that have not run yet up to and with the level: by level,
/// and within one in the order they were added. A handler that throws does not
/// keep the others from running. A program calls this after it loaded its
/// plug-ins.
ORB_SHARED void run_init_handlers(init_level upTo);

} // namespace weft::internal
