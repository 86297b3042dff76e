// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "nub/orbsql/engine_api.h"

#include <memory>
#include <utility>

namespace nub::orbsql {

/// Sole owner of a handle of the engine's C API that is a pointer. Move-only.
template <class H, void (*DestroyHandle)(H*)>
class Handle
{
public:
    Handle() noexcept = default;
    explicit Handle(H handle) noexcept : m_handle(handle) {}
    Handle(Handle&& other) noexcept : m_handle(std::exchange(other.m_handle, nullptr)) {}
    Handle& operator=(Handle&& other) noexcept
    {
        std::swap(m_handle, other.m_handle);
        return *this;
    }
    ~Handle() { reset(); }

    void reset() noexcept
    {
        if (m_handle)
            DestroyHandle(&m_handle);
        m_handle = nullptr;
    }
    H get() const noexcept { return m_handle; }
    /// Empties the handle; for calls that fill it in.
    H* out() noexcept
    {
        reset();
        return &m_handle;
    }
    explicit operator bool() const noexcept { return m_handle != nullptr; }

private:
    H m_handle = nullptr;
};

using DatabaseHandle = Handle<duckdb_database, duckdb_close>;
using ConnectionHandle = Handle<duckdb_connection, duckdb_disconnect>;
using ConfigHandle = Handle<duckdb_config, duckdb_destroy_config>;
using PreparedHandle = Handle<duckdb_prepared_statement, duckdb_destroy_prepare>;
using PendingHandle = Handle<duckdb_pending_result, duckdb_destroy_pending>;
using ExtractedHandle = Handle<duckdb_extracted_statements, duckdb_destroy_extracted>;
using ChunkHandle = Handle<duckdb_data_chunk, duckdb_destroy_data_chunk>;
using TypeHandle = Handle<duckdb_logical_type, duckdb_destroy_logical_type>;
using ValueHandle = Handle<duckdb_value, duckdb_destroy_value>;
using AppenderHandle = Handle<duckdb_appender, +[](duckdb_appender* appender) { duckdb_appender_destroy(appender); }>;

/// Sole owner of a result, which the API passes by value.
class ResultHandle
{
public:
    ResultHandle() noexcept = default;
    ResultHandle(ResultHandle&& other) noexcept : m_result(std::exchange(other.m_result, {})) {}
    ResultHandle& operator=(ResultHandle&& other) noexcept
    {
        std::swap(m_result, other.m_result);
        return *this;
    }
    ~ResultHandle() { duckdb_destroy_result(&m_result); }

    duckdb_result& get() noexcept { return m_result; }
    /// Empties the handle; for calls that fill it in.
    duckdb_result* out() noexcept
    {
        duckdb_destroy_result(&m_result);
        m_result = {};
        return &m_result;
    }

private:
    duckdb_result m_result{};
};

/// Memory that the engine hands out.
struct FreeByEngine
{
    void operator()(const void* memory) const noexcept { duckdb_free(const_cast<void*>(memory)); }
};
template <class T> using EngineMemory = std::unique_ptr<T, FreeByEngine>;

} // namespace nub::orbsql
