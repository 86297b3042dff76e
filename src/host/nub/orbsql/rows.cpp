// SPDX-License-Identifier: GPL-3.0-or-later
#include "nub/orbsql/rows.h"

#include "nub/orbsql/query.h"

namespace nub::orbsql {

Rows::Rows(std::shared_ptr<Session> session, std::uint64_t text, std::unique_ptr<ResultHandle> result,
           const SessionSettings& settings, ChunkHandle first)
    : m_session(std::move(session)), m_text(text), m_hold(m_session->FurtherHold()), m_result(std::move(result)),
      m_reader(std::make_unique<RowReader>(m_result->get(), settings))
{
    if (first)
        m_kept.push_back(std::move(first));
    m_streaming = duckdb_result_is_streaming(m_result->get());
    if (m_streaming)
        ++m_session->OpenStreams();
    m_session->Attach(this);
}

Rows::~Rows()
{
    m_session->Detach(this);
    EndResult();
}

std::vector<TypeHandle> Rows::ColumnTypes()
{
    const std::lock_guard lock(m_mutex);
    std::vector<TypeHandle> types;
    for (idx_t i = 0, count = m_result ? duckdb_column_count(&m_result->get()) : 0; i < count; ++i)
        types.emplace_back(duckdb_column_logical_type(&m_result->get(), i));
    return types;
}

void Rows::EndResult() noexcept
{
    if (!m_result)
        return;
    m_result.reset();
    if (m_streaming)
        --m_session->OpenStreams();
}

bool Rows::NextChunk()
{
    const std::lock_guard lock(m_mutex);
    Show({});
    if (m_dropped)
        throw xException("The database has been closed");
    if (m_kept.empty() && m_result)
        Fetch();
    if (!m_kept.empty()) {
        ChunkHandle chunk = std::move(m_kept.front());
        m_kept.pop_front();
        Show(std::move(chunk));
        return true;
    }
    m_hold.Release();
    if (!m_error.empty())
        throw xException(m_error.c_str());
    return false;
}

void Rows::Keep() noexcept
{
    const std::lock_guard lock(m_mutex);
    while (m_result)
        Fetch();
}

void Rows::DropHandles() noexcept
{
    const std::lock_guard lock(m_mutex);
    m_dropped = true;
    Show({});
    m_kept.clear();
    EndResult();
    m_hold.Release();
}

/// One more chunk to the kept ones, or the end of the result.
void Rows::Fetch()
{
    if (ChunkHandle chunk = FetchChunk(*m_result)) {
        m_kept.push_back(std::move(chunk));
        return;
    }
    if (const char* error = duckdb_result_error(&m_result->get()); error && *error)
        m_error = m_session->Words(error);
    EndResult();
    if (!m_error.empty())
        m_session->FailText(m_text);
}

void Rows::Show(ChunkHandle chunk)
{
    m_reader->SetChunk(chunk.get());
    m_size = chunk ? duckdb_data_chunk_get_size(chunk.get()) : 0;
    m_current = std::move(chunk);
}

} // namespace nub::orbsql
