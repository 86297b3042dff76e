// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "nub/orbsql/engine_api.h"

#include <string>

namespace nub::orbsql {

/// Appends the engine's name of a type (UTF-8). False, and nothing appended,
/// when only the engine itself can tell: named fields are quoted by the
/// engine's list of keywords, and later engines have types unknown here.
bool AppendTypeName(std::string& out, duckdb_logical_type type);

/// Doubles the quotes inside and puts one at either end.
void AppendQuoted(std::string& out, const char* text, char quote);

} // namespace nub::orbsql
