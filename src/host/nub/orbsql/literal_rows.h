// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "nub/counted.h"
#include "nub/orbsql/duckdb_database.h"
#include "nub/orbsql/literal_column.h"
#include "nub/orbsql/rows.h"

namespace nub::orbsql {

/// The rows of a result as literals, one chunk at a time.
class LiteralRows final : public Counted<I_LiteralRows>
{
public:
    LiteralRows(std::shared_ptr<Rows> rows, CodePointTest canWrite);

    int get_ColumnCount() const override { return static_cast<int>(m_columns.size()); }
    bool IsBytes(int column) const override;
    bool NextChunk() override;
    std::size_t get_RowCount() const override { return m_rows->Size(); }
    void AppendCells(std::string& out, std::size_t row, int first, int count) override;
    std::optional<std::string_view> GetBytes(int column, std::size_t row) const override;

private:
    void AppendEngineText(std::string& out, int column, std::size_t row);

    const std::shared_ptr<Rows> m_rows;
    const CodePointTest m_canWrite;
    std::vector<TypeHandle> m_types;
    std::vector<LiteralColumn> m_columns;
    std::vector<bool> m_known;
    std::string m_text;
};

} // namespace nub::orbsql
