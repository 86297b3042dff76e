// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "nub/orbsql/handle.h"

#include <optional>
#include <string>
#include <vector>

namespace nub::orbsql {

/// Outcome of one of the kernel's own small queries.
struct QueryRows
{
    std::string error; ///< empty on success
    std::vector<std::vector<std::optional<std::string>>> rows;
    bool failed() const noexcept { return !error.empty(); }
};

/// Runs the statement on the connection and reads its rows. The columns have
/// to be VARCHAR, BOOLEAN or BIGINT (signed or not); others read as null. Ends
/// a streaming result of the connection.
QueryRows RunQuery(duckdb_connection connection, const std::string& sql);

/// The next chunk that holds rows, or an empty handle at the end and on failure.
ChunkHandle FetchChunk(ResultHandle& result);

/// `text` in double quotes, and in single ones.
std::string QuotedName(const std::string& text);
std::string QuotedText(const std::string& text);

} // namespace nub::orbsql
