// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

namespace orbis {

/// How the program ended, for the shell.
enum ExitCode : int {
    ExitDone = 0,
    ExitRefused = 1,    ///< the engine said no
    ExitUsage = 2,      ///< a command line, script or bind that makes no sense
    ExitCannotOpen = 3, ///< a database, plug-in or file that does not open
    ExitSignal = 128,   ///< plus the number of the signal that ended it
};

} // namespace orbis
