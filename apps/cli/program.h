// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

namespace orbis {

/// The whole program; an ExitCode.
int RunProgram(int argc, char** argv);

} // namespace orbis
