// SPDX-License-Identifier: GPL-3.0-or-later
#include "hf/log.h"

#include "hf/cursor.h"

#include <deque>
#include <mutex>

namespace HF {

namespace {

/// Keeps the last entries and hands each to the sink, one at a time.
template <class Entry>
class Journal
{
public:
    void Add(const Entry& entry)
    {
        std::lock_guard guard(m_mutex);
        m_entries.push_back(entry);
        if (m_entries.size() > Limit)
            m_entries.pop_front();
        if (m_sink)
            m_sink(entry);
    }
    void SetSink(std::function<void(const Entry&)> sink)
    {
        std::lock_guard guard(m_mutex);
        m_sink = std::move(sink);
    }
    std::vector<Entry> Entries() const
    {
        std::lock_guard guard(m_mutex);
        return {m_entries.begin(), m_entries.end()};
    }

private:
    static constexpr std::size_t Limit = 1000;

    mutable std::mutex m_mutex;
    std::deque<Entry> m_entries;
    std::function<void(const Entry&)> m_sink;
};

// On the heap: objects that end with the process may still have something to log.
Journal<QString>& Errors()
{
    static auto* const journal = new Journal<QString>;
    return *journal;
}

Journal<LQueryLogEntry>& Queries()
{
    static auto* const journal = new Journal<LQueryLogEntry>;
    return *journal;
}

} // namespace

void LogError(const QString& text)
{
    Errors().Add(text);
}

void LogQuery(const QString& workspace, const QString& connectionIcon, const QString& connectionName,
              const QString& databaseIcon, const QString& databaseName, const QString& text,
              const LQueryResult& result, qint64 milliseconds, bool byUser)
{
    LQueryLogEntry entry;
    entry.time = QDateTime::currentDateTime();
    entry.workspace = workspace;
    entry.connectionIcon = connectionIcon;
    entry.connectionName = connectionName;
    entry.databaseIcon = databaseIcon;
    entry.databaseName = databaseName;
    entry.text = text;
    entry.error = result.Error;
    entry.status = result.Status;
    entry.affected = result.AffectedRecords;
    entry.milliseconds = milliseconds;
    entry.byUser = byUser;
    Queries().Add(entry);
}

void SetErrorLogSink(std::function<void(const QString&)> sink)
{
    Errors().SetSink(std::move(sink));
}

void SetQueryLogSink(std::function<void(const LQueryLogEntry&)> sink)
{
    Queries().SetSink(std::move(sink));
}

std::vector<QString> ErrorLogEntries()
{
    return Errors().Entries();
}

std::vector<LQueryLogEntry> QueryLogEntries()
{
    return Queries().Entries();
}

} // namespace HF
