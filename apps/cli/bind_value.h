// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "hf/rc_list.h"
#include "hf/sql_value.h"

#include <QString>
#include <QStringList>

namespace orbis {

/// A bind as the user wrote it, or why it is none.
struct ParsedBind
{
    rc::Ptr<HF::I_LSqlValue> value;
    QString error;
};

/// Reads "TYPE=VALUE": a word of BindTypes(), in any case, and a text that fits
/// it. Bytes are hexadecimal digits, or "@" and the file that holds them.
/// "null" stands alone.
ParsedBind ParseBind(const QString& text);

/// The words for types.
QStringList BindTypes();

} // namespace orbis
