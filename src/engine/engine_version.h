// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <QString>

/// The engine's version as it is shown: "1.5.6", without the leading "v". Empty
/// without an engine. Any thread; never throws.
QString EngineVersionString();

/// 10000 * major + 100 * minor + patch of the engine at hand, by which the
/// catalogue queries choose their text; 0 without an engine. Any thread.
int EngineVersionNumber();

/// The number of a version text. A leading "v" is dropped; a piece that is no
/// number counts 0, and pieces behind the third are ignored.
int ParseEngineVersion(QString text);
