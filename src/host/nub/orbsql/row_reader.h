// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "nub/orbsql/handle.h"
#include "nub/value.h"

#include <memory>
#include <string>
#include <vector>

namespace nub::orbsql {

class EngineText;
using TypeList = std::vector<TypeHandle>;

/// What of a session changes the text of values: its settings at the time the
/// statement ran.
struct SessionSettings
{
    std::string timeZone = "UTC";        ///< current_setting('TimeZone')
    std::string calendar = "gregorian";  ///< current_setting('Calendar')
    bool operator==(const SessionSettings&) const = default;
};

/// Turns the vectors of one result's chunks into kernel values. Numbers,
/// booleans, dates, times and bytes keep their kernel type; everything else is
/// a String with the text of the engine's own cast to VARCHAR. One thread at a
/// time. Throws xException when the engine cannot tell a text.
class RowReader
{
public:
    /// Takes names and types from the result; keeps no hold on it. The result
    /// must be a success.
    RowReader(duckdb_result& result, SessionSettings settings);
    ~RowReader();
    RowReader(const RowReader&) = delete;
    RowReader& operator=(const RowReader&) = delete;

    int ColumnCount() const noexcept;
    const String& Name(int column) const;
    /// The engine's type text: INTEGER, DECIMAL(18,3), STRUCT(a INTEGER).
    const String& TypeName(int column);
    /// The rows to read from now on. The caller keeps the chunk alive until the
    /// next SetChunk or the end of the reader. Null: no rows.
    void SetChunk(duckdb_data_chunk chunk);
    /// The cell; the caller owns one reference. The same object is filled again
    /// by the next Read of the column when nobody else holds it by then.
    /// `column` and `row` must be in range.
    I_Value* Read(int column, idx_t row);
    /// The same without a reference; filled again by the next Read or Peek of the column.
    I_Value* Peek(int column, idx_t row);

private:
    struct Column;
    template <class V> V* Vacant(Column& column);
    template <class V, class T> I_Value* ReadNumber(Column& column, idx_t row);
    template <class V> I_Value* ReadFormatted(Column& column, idx_t row);
    I_Value* ReadText(Column& column, idx_t row);
    I_Value* ReadEngineText(Column& column, idx_t row);
    I_Value* ReadElements(Column& column, idx_t row);
    I_Value* ReadBytes(Column& column, idx_t row);
    static void ReadWords(Column& column);
    EngineText& Engine();

    SessionSettings m_settings;
    std::shared_ptr<TypeList> m_types;
    std::vector<Column> m_columns;
    duckdb_data_chunk m_chunk = nullptr;
    std::unique_ptr<EngineText> m_engineText; ///< made when a column needs it
    std::vector<int> m_engineColumns;
    bool m_typeNamesKnown = false;
    bool m_formatted = false; ///< the engine's texts of this chunk are there
};

} // namespace nub::orbsql
