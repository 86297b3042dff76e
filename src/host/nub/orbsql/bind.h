// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "nub/orbsql/handle.h"
#include "nub/value.h"

#include <string>

namespace nub::orbsql {

enum class BindExtent {
    Own, ///< the statement's parameters take the leading values; the others wait
    All, ///< a value without a parameter is an error
};

/// Gives the values to the parameters of the statement by their numbers. An
/// empty slot leaves its parameter unbound, so that the engine names it when
/// the statement runs. The text of the first failure, or an empty text.
std::string BindParameters(const PreparedHandle& statement, const ValueArray& values, BindExtent extent);

} // namespace nub::orbsql
