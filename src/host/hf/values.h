// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

// All kinds of values at once.
#include "hf/number_values.h"
#include "hf/text_values.h"
#include "hf/time_values.h"

namespace HF {

// A cell is the value, and a pointer in a list that may be half empty.
static_assert(sizeof(LValueBoolean) <= 40 && sizeof(LValueInt32) <= 40 && sizeof(LValueInt64) <= 40);
static_assert(sizeof(LValueFloat) <= 40 && sizeof(LValueDouble) <= 40);
static_assert(sizeof(LValueString) <= 64 && sizeof(LValueDate) <= 72 && sizeof(LValueDecimal) <= 72);

} // namespace HF
