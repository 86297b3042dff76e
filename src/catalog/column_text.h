// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "hf/cursor.h"

/// Text of a column in the cursor's current row; empty for NULL and for a
/// column that the result does not have.
inline QString ColumnText(const rc::Ref<const HF::I_LCursor>& cursor, const char* column)
{
    const rc::Ptr<HF::I_LField> field = cursor->get_Field(QString::fromLatin1(column));
    return field ? field->get_String() : QString();
}

inline bool HasColumn(const rc::Ref<const HF::I_LCursor>& cursor, const char* column)
{
    return bool(cursor->get_Field(QString::fromLatin1(column)));
}
