// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "hf/engine.h"

/// The types that a field can have, in menu order, with separators between the
/// groups. The prototypes are shared by all who use the list.
QList<HF::LFieldInfo> DuckDBFieldTypes();
