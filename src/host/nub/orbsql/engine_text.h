// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "nub/orbsql/handle.h"

#include <memory>
#include <string>
#include <string_view>
#include <vector>

namespace nub::orbsql {

struct SessionSettings;
using TypeList = std::vector<TypeHandle>;

/// The engine's own texts of vectors and types, asked of a private in-memory
/// database that all of the process shares; the user's statements are not run
/// again and the user's database is not touched. One object serves one result
/// and one thread at a time. Throws xException with the engine's text.
class EngineText
{
public:
    /// Texts will be those of a session with these settings. `types` are all
    /// the columns of the chunks to come.
    EngineText(std::shared_ptr<const TypeList> types, const SessionSettings& settings);
    ~EngineText();
    EngineText(const EngineText&) = delete;
    EngineText& operator=(const EngineText&) = delete;

    /// The name of each column's type.
    std::vector<std::string> TypeNames();
    /// Casts these columns of the chunk, which stays the caller's and is free
    /// again afterwards. At most one chunk's texts are kept.
    void Format(duckdb_data_chunk chunk, const std::vector<int>& columns);
    /// A text of the last Format; `index` counts its columns. False for null.
    bool Text(std::size_t index, idx_t row, std::string_view& text) const;

private:
    class Service;
    struct Job;
    void Run(duckdb_data_chunk chunk, const std::vector<int>& columns);
    void RunThroughTable(duckdb_data_chunk chunk, const std::vector<int>& columns);
    void Execute(const std::string& sql);
    std::string Source() const;
    void KeepTexts(std::size_t columns, idx_t rows);

    std::shared_ptr<Service> m_service;
    ConnectionHandle m_connection;
    std::unique_ptr<Job> m_job;
    PreparedHandle m_statement;
    std::vector<int> m_prepared; ///< the columns that m_statement casts
    std::string m_table;         ///< for engines that cannot reference vectors
    ResultHandle m_result;
    ChunkHandle m_texts;
    struct Vector
    {
        const duckdb_string_t* data;
        const uint64_t* validity;
    };
    std::vector<Vector> m_vectors;
};

} // namespace nub::orbsql
