// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "nub/orbsql/session.h"

namespace nub::orbsql {

/// Writes a copy of the session's database into the folder: of a file, by its
/// bytes after a checkpoint; of what has no file, by the engine. What other
/// sessions commit meanwhile is either in it whole or not at all. The caller
/// holds the session. Session::Interrupt ends it. Throws xException; then
/// nothing is left in the folder.
void BackupDatabase(Session& session, const Location& location, const std::string& folder);

} // namespace nub::orbsql
