// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <QString>

namespace HF {

/// A statement snippet. `<#name#>` marks a part that the user fills in.
struct LSqlTemplate
{
    QString category;
    QString title;
    QString text;
};

} // namespace HF
