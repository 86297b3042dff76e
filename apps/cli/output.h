// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <QString>

#include <atomic>
#include <string>
#include <string_view>

namespace orbis {

/// Buffered writer on a file descriptor. A reader that went away is no error:
/// the output is closed from then on, and writes do nothing. One thread
/// writes; Cancel comes from any.
class Output
{
public:
    explicit Output(int descriptor);
    ~Output();
    Output(const Output&) = delete;
    Output& operator=(const Output&) = delete;

    void Write(std::string_view bytes);
    void Write(QStringView text); ///< as UTF-8
    void Flush();
    /// Ends a write that waits, and all further ones.
    void Cancel() { m_cancelled.store(true); }

    /// Nothing more will be written.
    bool IsClosed() const { return m_closed || m_cancelled.load(std::memory_order_relaxed); }
    /// The reader has closed its end.
    bool IsReaderGone() const { return m_readerGone; }
    /// Why writing failed, such as a full disk; empty when nobody minds.
    const QString& get_Error() const { return m_error; }

private:
    bool WaitWritable();

    int m_descriptor;
    bool m_isFile;
    bool m_closed = false;
    bool m_readerGone = false;
    std::atomic<bool> m_cancelled{false};
    std::string m_buffer;
    QString m_error;
};

} // namespace orbis
