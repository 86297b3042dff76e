// SPDX-License-Identifier: GPL-3.0-or-later
#include "nub/orbsql/literal_rows.h"

#include "nub/exception.h"

namespace nub::orbsql {

LiteralRows::LiteralRows(std::shared_ptr<Rows> rows, CodePointTest canWrite)
    : m_rows(std::move(rows)), m_canWrite(std::move(canWrite)), m_types(m_rows->ColumnTypes())
{
    m_columns.reserve(m_types.size());
    for (const TypeHandle& type : m_types) {
        m_columns.emplace_back(type.get(), m_canWrite);
        m_known.push_back(m_columns.back().IsKnown());
    }
}

bool LiteralRows::IsBytes(int column) const
{
    return m_columns[static_cast<std::size_t>(column)].IsBytes();
}

bool LiteralRows::NextChunk()
{
    if (!m_rows->NextChunk())
        return false;
    for (std::size_t i = 0; i < m_columns.size(); ++i)
        if (m_known[i])
            m_columns[i].SetVector(duckdb_data_chunk_get_vector(m_rows->Chunk(), i));
    return true;
}

void LiteralRows::AppendCells(std::string& out, std::size_t row, int first, int count)
{
    int i = first;
    try {
        for (; i < first + count; ++i) {
            if (i != first)
                out += ", ";
            if (m_known[static_cast<std::size_t>(i)])
                m_columns[static_cast<std::size_t>(i)].Append(out, row);
            else
                AppendEngineText(out, i, row);
        }
    } catch (const xException& failure) {
        throw xException(("Column \"" + m_rows->Reader().Name(i).ToUtf8() + "\": " + failure.what()).c_str());
    }
}

/// Types that only the engine can take apart go by its text.
void LiteralRows::AppendEngineText(std::string& out, int column, std::size_t row)
{
    const I_Value* const value = m_rows->Reader().Peek(column, row);
    if (m_columns[static_cast<std::size_t>(column)].HoldsVariant())
        throw xException("The engine's text of a value does not tell the types of a VARIANT in it");
    if (value->get_IsNull()) {
        out += "NULL";
        return;
    }
    m_text.clear();
    const std::u16string_view text = value->get_Chars();
    AppendUtf16(m_text, text.data(), text.size());
    AppendTextLiteral(out, m_text, m_canWrite, false);
}

std::optional<std::string_view> LiteralRows::GetBytes(int column, std::size_t row) const
{
    const LiteralColumn& bytes = m_columns[static_cast<std::size_t>(column)];
    if (bytes.IsNull(row))
        return std::nullopt;
    return bytes.Bytes(row);
}

} // namespace nub::orbsql
