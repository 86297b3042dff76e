// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <QIcon>
#include <QPalette>

/// Light or dark. The desktop's choice is what the system palette says.
enum class Appearance { Desktop = 0, Light = 1, Dark = 2 };

Appearance StoredAppearance();
/// Stores and applies it.
void StoreAppearance(Appearance appearance);
/// Applies the stored appearance; once at the start, after QApplication is made.
void ApplyAppearance();
/// True when the palette in use is a dark one.
bool IsDark(const QPalette& palette);
/// The icon of a path that suits the palette in use whenever it is painted, for what
/// stays open while the palette changes.
QIcon PaletteIcon(const QString& path);
