// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

namespace orbis {

/// A function of two arguments, the bridge and the global object, that gives
/// what the bridge calls in return.
extern const char* const Prelude;

} // namespace orbis
