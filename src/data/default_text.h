// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <QString>

/// The text that the user sees and edits for a column default, from the engine's
/// own text of it: quotes of a plain literal are dropped, but only where
/// DefaultLiteral puts the very same ones back; expressions stand in brackets.
QString DefaultFromCatalog(const QString& engineText);

/// The other way: the literal or expression that a statement writes for a
/// user's default. Texts in quotes or brackets, numbers and NULL stand as they
/// are; all else becomes a string literal.
QString DefaultLiteral(const QString& userText);
