// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "hf/sql_value.h"
#include "nub/value.h"

/// Kernel values of the host's values, for binding. Both keep the order; they
/// differ in how much of a value's class survives.
namespace Binds {

/// For the run of a text: each class has its kernel class; a value of no known
/// class leaves an empty slot.
nub::ValueArray ForText(const RcList<HF::I_LSqlValue>& values);

/// For a prepared statement: whole numbers become 64-bit, floats doubles, what
/// is neither number nor bytes its text.
nub::ValueArray ForStatement(const RcList<HF::I_LSqlValue>& values);

} // namespace Binds
