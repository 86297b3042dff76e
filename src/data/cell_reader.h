// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "data/field.h"
#include "nub/value.h"

/// Turns the kernel's cells of one column into values, appended to the column.
/// This is the inner loop of every result: one value object a cell, no QString
/// for texts that fit into the object.
class CellReader
{
public:
    explicit CellReader(orbDuckDB_Field& column);
    /// May use the bytes of `cell` only during the call.
    void Append(nub::I_Value& cell);

    HF::I_LSqlValue* MakeNull();
    HF::I_LSqlValue* MakeEmpty();

private:
    using Maker = HF::I_LSqlValue* (*)(CellReader&, nub::I_Value&);
    static Maker MakerFor(const nub::I_Value& cell);

    /// The kernel fills one object again and again; how it is read is found once.
    const nub::I_Value* m_cell = nullptr;
    Maker m_make = nullptr;
    orbDuckDB_Field& m_column;
    RcList<HF::I_LSqlValue>& m_values;
    rc::Ptr<HF::I_LSqlValue> m_null; ///< shared by all nulls of the column
};
