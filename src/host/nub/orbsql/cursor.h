// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "nub/counted.h"
#include "nub/orbsql/duckdb_database.h"
#include "nub/orbsql/rows.h"

namespace nub::orbsql {

/// A row of its own over the rows of a result.
class Cursor final : public Counted<I_Cursor>
{
public:
    explicit Cursor(std::shared_ptr<Rows> rows) : m_rows(std::move(rows)), m_columnCount(m_rows->Reader().ColumnCount()) {}

    int get_ColumnCount() const override;
    String get_ColumnName(int column) const override;
    String get_ColumnTypeName(int column) const override;
    bool NextRow() override;
    I_Value* get_Value(int column) override;
    I_Value& PeekValue(int column) override;
    bool First() override { return m_atStart && NextRow(); }
    bool Next() override { return NextRow(); }
    I_Field* get_Field(int column) override;

private:
    bool HasColumn(int column) const { return column >= 0 && column < m_columnCount; }
    bool HasRow() const { return !m_atStart && m_row < m_rows->Size(); }

    const std::shared_ptr<Rows> m_rows;
    const int m_columnCount;
    idx_t m_row = 0;
    bool m_atStart = true;
};

} // namespace nub::orbsql
