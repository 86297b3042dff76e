// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "cli/command_line.h"

namespace orbis {

class Output;

/// Writes out what is left. ExitDone, unless writing failed, which it tells; a
/// reader that went away is no failure.
int FinishOutput(Output& output);

/// Options that every command takes.
const std::vector<OptionSpec>& GlobalOptions();

/// The commands of the program, in the order of its help.
const std::vector<CommandSpec>& Commands();

// What runs behind the commands: an ExitCode each.
int RunInfo(const CommandLine& line);
int RunSql(const CommandLine& line);
int RunCreate(const CommandLine& line);
int RunProbe(const CommandLine& line);
int RunBackup(const CommandLine& line);
int RunIdents(const CommandLine& line);
int RunTree(const CommandLine& line);
int RunDdl(const CommandLine& line);
int RunDesign(const CommandLine& line);
int RunRows(const CommandLine& line);
int RunEdit(const CommandLine& line);
int RunDump(const CommandLine& line);
int RunLoad(const CommandLine& line);
int RunScript(const CommandLine& line);

} // namespace orbis
