// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <functional>
#include <string>

namespace nub::orbsql {

enum class CopyOutcome {
    Done,
    Changed, ///< the first `guarded` bytes were others at the end than at the start
    Stopped,
};

/// Copies a file that this process has open through the engine. A child process
/// does it: opening and closing the file here would drop the engine's lock on
/// it. `to` must not exist. `stop` is asked now and then. Throws xException.
CopyOutcome CopyOpenFile(const std::string& from, const std::string& to, std::size_t guarded,
                         const std::function<bool()>& stop);

} // namespace nub::orbsql
