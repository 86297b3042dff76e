// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "hf/sql_value.h"

#include <optional>

namespace HF {

/// What a row of a table is known by: the values of the cursor's key columns in
/// their order. A table without a real key may hold two equal rows; there the
/// engine's number of the row tells them apart as well. Ordered, so that marks
/// and edits can be kept by it.
class HF_EXPORT orbTableCursorKey
{
public:
    orbTableCursorKey() = default;
    explicit orbTableCursorKey(RcList<I_LSqlValue> values, std::optional<qint64> rowNumber = std::nullopt)
        : m_values(std::move(values)), m_rowNumber(rowNumber)
    {
    }

    const RcList<I_LSqlValue>& get_Values() const { return m_values; }
    const std::optional<qint64>& get_RowNumber() const { return m_rowNumber; }
    void Append(const rc::Ref<I_LSqlValue>& value) { m_values.append(value); }
    void Clear() { *this = orbTableCursorKey(); }
    bool IsEmpty() const { return m_values.isEmpty() && !m_rowNumber; }
    /// A column of the key was missing from the rows: such a row is shown but not found again.
    bool IsInvalid() const;

    /// Below, equal to or above 0. Some order that stays the same, not the engine's.
    int Compare(const orbTableCursorKey& other) const;
    bool operator==(const orbTableCursorKey& other) const { return Compare(other) == 0; }
    bool operator<(const orbTableCursorKey& other) const { return Compare(other) < 0; }

private:
    RcList<I_LSqlValue> m_values;
    std::optional<qint64> m_rowNumber;
};

} // namespace HF
