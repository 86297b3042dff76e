// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "nub/orbsql/query.h"
#include "nub/orbsql/row_reader.h"

#include <optional>
#include <stdexcept>
#include <string>
#include <vector>

namespace nub::test {

/// A bare engine in memory, beside the kernel's own classes.
class EngineSession
{
public:
    EngineSession()
    {
        if (duckdb_open(nullptr, m_database.out()) != DuckDBSuccess
            || duckdb_connect(m_database.get(), m_connection.out()) != DuckDBSuccess)
            throw std::runtime_error("no engine");
    }
    duckdb_connection Connection() const { return m_connection.get(); }

    /// Runs the text; an error is thrown with the engine's words.
    void Run(const std::string& sql, orbsql::ResultHandle& result)
    {
        if (duckdb_query(m_connection.get(), sql.c_str(), result.out()) != DuckDBSuccess)
            throw std::runtime_error(sql + ": " + duckdb_result_error(&result.get()));
    }
    void Run(const std::string& sql)
    {
        orbsql::ResultHandle result;
        Run(sql, result);
    }
    bool Accepts(const std::string& sql)
    {
        orbsql::ResultHandle result;
        return duckdb_query(m_connection.get(), sql.c_str(), result.out()) == DuckDBSuccess;
    }
    /// The first cell's text.
    std::string Ask(const std::string& sql)
    {
        orbsql::ResultHandle result;
        Run(sql, result);
        const orbsql::ChunkHandle chunk = FetchChunk(result);
        return *Cell(chunk.get(), 0, 0);
    }
    orbsql::SessionSettings Settings()
    {
        return {Ask("SELECT current_setting('TimeZone')"), Ask("SELECT current_setting('Calendar')")};
    }
    /// A VARCHAR cell as the engine stores it.
    static std::optional<std::string> Cell(duckdb_data_chunk chunk, idx_t column, idx_t row)
    {
        const duckdb_vector vector = duckdb_data_chunk_get_vector(chunk, column);
        std::uint64_t* validity = duckdb_vector_get_validity(vector);
        if (validity && !duckdb_validity_row_is_valid(validity, row))
            return std::nullopt;
        auto& string = static_cast<duckdb_string_t*>(duckdb_vector_get_data(vector))[row];
        return std::string(duckdb_string_t_data(&string), duckdb_string_t_length(string));
    }

private:
    orbsql::DatabaseHandle m_database;
    orbsql::ConnectionHandle m_connection;
};

} // namespace nub::test
