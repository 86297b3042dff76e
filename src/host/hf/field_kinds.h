// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "hf/enums.h"

namespace HF {

/// True for the field types whose values are numbers: they stand at the right of
/// a column, and a reader may compute with their text.
constexpr bool IsNumberType(int type)
{
    switch (type) {
    case FIELD_SMALLINT:
    case FIELD_INTEGER:
    case FIELD_BIGINT:
    case FIELD_UHUGEINT:
    case FIELD_FLOAT:
    case FIELD_DOUBLE:
    case FIELD_DECIMAL:
        return true;
    default:
        return false;
    }
}

} // namespace HF
