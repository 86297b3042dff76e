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

/// Names that the query joined: in column `exact` by NUL, or, where the result has
/// no such column, in `column` by line feeds. Empty for a NULL.
inline QStringList ColumnNames(const rc::Ref<const HF::I_LCursor>& cursor, const char* exact, const char* column)
{
    const bool isExact = HasColumn(cursor, exact);
    const QString names = ColumnText(cursor, isExact ? exact : column);
    return names.isEmpty() ? QStringList() : names.split(isExact ? u'\0' : u'\n');
}
