// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "nub/orbsql/session.h"

#include <deque>

namespace nub::orbsql {

/// The rows of one result, chunk by chunk. Holds the session until the last
/// chunk has been passed.
class Rows final : public SessionChild
{
public:
    /// `first` is a chunk that was fetched already, or empty.
    Rows(std::shared_ptr<Session> session, std::uint64_t text, std::unique_ptr<ResultHandle> result,
         const SessionSettings& settings, ChunkHandle first);
    ~Rows();

    RowReader& Reader() noexcept { return *m_reader; }
    /// The types of the columns; only before the first chunk.
    std::vector<TypeHandle> ColumnTypes();
    /// The current chunk, or null.
    duckdb_data_chunk Chunk() const noexcept { return m_current.get(); }
    /// To the next chunk; false at the end. Throws xException with the engine's text.
    bool NextChunk();
    /// Rows of the current chunk.
    idx_t Size() const noexcept { return m_size; }

    bool IsStreaming() const noexcept { return m_streaming; }
    /// Reads all that is left into memory. A failure waits for NextChunk.
    void Keep() noexcept;
    void DropHandles() noexcept override;

private:
    void Fetch();
    void EndResult() noexcept;
    void Show(ChunkHandle chunk);

    const std::shared_ptr<Session> m_session;
    const std::uint64_t m_text;
    std::mutex m_mutex; ///< reading and keeping may meet when a cursor went to another thread
    SessionHold m_hold;
    std::unique_ptr<ResultHandle> m_result;
    std::unique_ptr<RowReader> m_reader;
    std::deque<ChunkHandle> m_kept;
    ChunkHandle m_current;
    idx_t m_size = 0;
    std::string m_error;
    bool m_streaming = false;
    bool m_dropped = false;
};

} // namespace nub::orbsql
