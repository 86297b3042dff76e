// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <QString>

namespace orbis {

/// Columns that a character takes on a terminal: 0 for combining and other
/// invisible ones, 2 for wide ones, else 1.
int CharacterWidth(char32_t character);

/// Columns that a text takes on a terminal.
int TextWidth(QStringView text);

/// The text with its control characters as visible signs (a line feed as U+240A),
/// so that a cell stays on its line and reaches no terminal as a command.
QString VisibleText(const QString& text);

} // namespace orbis
