// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "hf/keywords.h"

/// The reserved words of the engine, read from a private database in memory.
/// Any thread. Throws nub::xException.
HF::LDatabaseKeywords FetchEngineKeywords();

/// The built-in functions, likewise; of overloads the last one counts. Neither
/// functions of users nor those of extensions are among them.
HF::LSQLFunctions FetchEngineFunctions();
