// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "nub/orbsql/engine_api.h"

#include <memory>
#include <utility>

namespace nub::orbsql {

/// Owner of one handle of the engine's C API; may be empty, moves only.
template <class Raw, void (*Destroy)(Raw*)>
class Handle
{
public:
    Handle() noexcept = default;
    explicit Handle(Raw raw) noexcept : m_raw(raw) {}
    Handle(Handle&& other) noexcept : m_raw(std::exchange(other.m_raw, nullptr)) {}
    Handle& operator=(Handle&& other) noexcept
    {
        if (this != &other) {
            reset();
            m_raw = std::exchange(other.m_raw, nullptr);
        }
        return *this;
    }
    ~Handle() { reset(); }

    Raw get() const noexcept { return m_raw; }
    explicit operator bool() const noexcept { return m_raw != nullptr; }
    /// Empties the handle and gives its place to a call that fills it.
    Raw* out() noexcept
    {
        reset();
        return &m_raw;
    }
    void reset() noexcept
    {
        if (m_raw)
            Destroy(&m_raw);
        m_raw = nullptr;
    }

private:
    Raw m_raw = nullptr;
};

using DatabaseHandle = Handle<duckdb_database, duckdb_close>;
using ConnectionHandle = Handle<duckdb_connection, duckdb_disconnect>;
using ConfigHandle = Handle<duckdb_config, duckdb_destroy_config>;
using ExtractedHandle = Handle<duckdb_extracted_statements, duckdb_destroy_extracted>;
using PreparedHandle = Handle<duckdb_prepared_statement, duckdb_destroy_prepare>;
using PendingHandle = Handle<duckdb_pending_result, duckdb_destroy_pending>;
using ChunkHandle = Handle<duckdb_data_chunk, duckdb_destroy_data_chunk>;
using LogicalTypeHandle = Handle<duckdb_logical_type, duckdb_destroy_logical_type>;

using ValueHandle = Handle<duckdb_value, duckdb_destroy_value>;
using AppenderHandle = Handle<duckdb_appender, +[](duckdb_appender* appender) { duckdb_appender_destroy(appender); }>;

/// Memory that the engine hands out.
struct FreeByEngine
{
    void operator()(void* memory) const noexcept { duckdb_free(memory); }
};
template <class T> using EngineMemory = std::unique_ptr<T, FreeByEngine>;

/// Owner of one result, which the API passes by value.
class ResultHandle
{
public:
    ResultHandle() noexcept = default;
    ResultHandle(ResultHandle&& other) noexcept : m_raw(std::exchange(other.m_raw, {})), m_set(std::exchange(other.m_set, false)) {}
    ResultHandle& operator=(ResultHandle&& other) noexcept
    {
        if (this != &other) {
            reset();
            m_raw = std::exchange(other.m_raw, {});
            m_set = std::exchange(other.m_set, false);
        }
        return *this;
    }
    ~ResultHandle() { reset(); }

    duckdb_result& get() noexcept { return m_raw; }
    explicit operator bool() const noexcept { return m_set; }
    duckdb_result* out() noexcept
    {
        reset();
        m_set = true;
        return &m_raw;
    }
    void reset() noexcept
    {
        if (std::exchange(m_set, false))
            duckdb_destroy_result(&m_raw);
        m_raw = {};
    }
    /// The next chunk that holds rows, or an empty handle at the end and on failure.
    ChunkHandle FetchChunk()
    {
        for (;;) {
            ChunkHandle chunk(duckdb_fetch_chunk(m_raw));
            if (!chunk || duckdb_data_chunk_get_size(chunk.get()) > 0)
                return chunk;
        }
    }

private:
    duckdb_result m_raw{};
    bool m_set = false;
};

} // namespace nub::orbsql
