// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "hf/sql_query.h"
#include "hf/rc_list.h"

#include <atomic>
#include <optional>

namespace HF {

class I_LDatabase;
class I_LCursor;

/// A part of a table's rows that is still to be read: made by a table cursor on
/// its thread, run on any, shown by the cursor again. What was read is shown only
/// when the cursor's order, filter and columns are still the same.
class HF_EXPORT LWindowRequest : public rc::RefCounted
{
public:
    LWindowRequest(const rc::Ref<I_LDatabase>& database, const QString& text, const RcList<I_LSqlValue>& binds,
                   unsigned long firstRow, unsigned long generation);

    /// Reads the rows; once. Any thread, with the kernel's bracket around it (RunOnWorker has one).
    void Run();
    /// Ends the statement that runs, and keeps one from starting. Any thread.
    void Cancel();

    const QString& get_Text() const { return m_text; }
    const RcList<I_LSqlValue>& get_Binds() const { return m_binds; }
    /// Number of the first row in the table, from 0.
    unsigned long get_FirstRow() const { return m_firstRow; }
    unsigned long get_Generation() const { return m_generation; }
    /// Null until Run has ended, and when it failed.
    const rc::Ptr<I_LCursor>& get_Rows() const { return m_rows; }
    /// Why Run failed.
    const QString& get_Error() const { return m_error; }
    bool IsCancelled() const { return m_cancelled.load(); }

private:
    rc::Ref<I_LSqlQuery> m_query;
    QString m_text;
    RcList<I_LSqlValue> m_binds;
    unsigned long m_firstRow;
    unsigned long m_generation;
    rc::Ptr<I_LCursor> m_rows;
    QString m_error;
    std::atomic<bool> m_cancelled{false};
};

/// The exact number of rows under the cursor's filter, still to be counted.
class HF_EXPORT LCountRequest : public rc::RefCounted
{
public:
    LCountRequest(const rc::Ref<I_LDatabase>& database, const QString& text, const RcList<I_LSqlValue>& binds,
                  unsigned long generation);

    /// Counts; once. Any thread, like LWindowRequest::Run.
    void Run();
    void Cancel();

    unsigned long get_Generation() const { return m_generation; }
    /// Nothing until Run has ended, and when it failed.
    const std::optional<unsigned long>& get_Count() const { return m_count; }
    const QString& get_Error() const { return m_error; }

private:
    rc::Ref<I_LSqlQuery> m_query;
    QString m_text;
    RcList<I_LSqlValue> m_binds;
    unsigned long m_generation;
    std::optional<unsigned long> m_count;
    QString m_error;
    std::atomic<bool> m_cancelled{false};
};

} // namespace HF
