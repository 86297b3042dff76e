// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "hf/sql_value.h"
#include "hf/tree_item.h"

/// The cells of a grid, for what takes them out of it.
class CellSource
{
public:
    virtual ~CellSource() = default;
    /// The whole value of a cell; null when out of range.
    virtual rc::Ptr<HF::I_LSqlValue> Value(int row, int column) const = 0;
    virtual QString ColumnName(int column) const = 0;
    /// An object of the database, for the quoting of names.
    virtual rc::Ptr<const HF::LTreeItem> get_Item() const = 0;
};
