// SPDX-License-Identifier: GPL-3.0-or-later
#include "nub/orbsql/query.h"

#include "nub/orbsql/type_name.h"

namespace nub::orbsql {

namespace {

std::optional<std::string> cell(duckdb_data_chunk chunk, idx_t column, idx_t row)
{
    duckdb_vector vector = duckdb_data_chunk_get_vector(chunk, column);
    if (auto* validity = duckdb_vector_get_validity(vector); validity && !duckdb_validity_row_is_valid(validity, row))
        return std::nullopt;
    const TypeHandle type(duckdb_vector_get_column_type(vector));
    void* data = duckdb_vector_get_data(vector);
    switch (duckdb_get_type_id(type.get())) {
    case DUCKDB_TYPE_VARCHAR: {
        auto* text = static_cast<duckdb_string_t*>(data) + row;
        return std::string(duckdb_string_t_data(text), duckdb_string_t_length(*text));
    }
    case DUCKDB_TYPE_BOOLEAN:
        return static_cast<bool*>(data)[row] ? "true" : "false";
    case DUCKDB_TYPE_BIGINT:
        return std::to_string(static_cast<std::int64_t*>(data)[row]);
    case DUCKDB_TYPE_UBIGINT:
        return std::to_string(static_cast<std::uint64_t*>(data)[row]);
    default:
        return std::nullopt;
    }
}

} // namespace

QueryRows RunQuery(duckdb_connection connection, const std::string& sql)
{
    QueryRows answer;
    ResultHandle result;
    if (duckdb_query(connection, sql.c_str(), result.out()) == DuckDBError) {
        const char* error = duckdb_result_error(&result.get());
        answer.error = error && *error ? error : "Unknown error";
        return answer;
    }
    const idx_t columns = duckdb_column_count(&result.get());
    while (const ChunkHandle chunk = FetchChunk(result)) {
        const idx_t size = duckdb_data_chunk_get_size(chunk.get());
        for (idx_t row = 0; row < size; ++row) {
            auto& cells = answer.rows.emplace_back();
            for (idx_t column = 0; column < columns; ++column)
                cells.push_back(cell(chunk.get(), column, row));
        }
    }
    return answer;
}

ChunkHandle FetchChunk(ResultHandle& result)
{
    for (;;) {
        ChunkHandle chunk(duckdb_fetch_chunk(result.get()));
        if (!chunk || duckdb_data_chunk_get_size(chunk.get()) > 0)
            return chunk;
    }
}

std::string QuotedName(const std::string& text)
{
    std::string result;
    AppendQuoted(result, text.c_str(), '"');
    return result;
}

std::string QuotedText(const std::string& text)
{
    std::string result;
    AppendQuoted(result, text.c_str(), '\'');
    return result;
}

} // namespace nub::orbsql
