// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <string>

namespace nub::orbsql {

bool PathExists(const std::string& path);

/// Removes the file and the engine's companions of it, whatever they hold. No
/// word about what is not there.
void RemoveDatabaseFiles(const std::string& path) noexcept;

/// Deletes a database file and its companions. Throws xException when the file
/// is missing, is no DuckDB file, or is open here or in another process.
void DeleteDatabase(const std::string& path);

/// Where to write a file that becomes `target` when it is complete.
std::string TemporaryBeside(const std::string& target);
/// Gives the file its final name; throws xException when that exists by now.
void RenameWithoutReplacing(const std::string& from, const std::string& to);

} // namespace nub::orbsql
