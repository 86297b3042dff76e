// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "hf/tree_item.h"

#include <QString>

namespace HF {
class LHasProperties;
}

/// The type of a column as a person reads it: "Decimal(18, 3)", "Integer[3]",
/// "Struct(a INTEGER)".
QString FieldTypeText(const HF::LHasProperties& field);

/// What the tree shows for an item: its name, and what tells it from its
/// neighbours (type of a column, columns of an index, expression of a check).
QString TreeText(const HF::LTreeItem& item);
