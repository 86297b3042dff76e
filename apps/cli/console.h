// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <QString>

#include <mutex>

namespace orbis {

/// The error stream: words for people, and on a terminal a status line that
/// other words push aside. Any thread.
class Console
{
public:
    static Console& Instance();

    /// A line that begins with the program's name: something went wrong.
    void Error(const QString& text);
    /// A line of plain words.
    void Say(const QString& text);
    /// Shows the status line; nothing off a terminal.
    void ShowStatus(const QString& text);
    void ClearStatus();

    /// How many errors were told so far.
    int get_ErrorCount() const;
    /// The text of the last one.
    QString get_LastError() const;
    bool IsTerminal() const { return m_isTerminal; }

private:
    Console();
    void WriteLine(const QString& text);
    void EraseStatus();

    mutable std::mutex m_mutex;
    bool m_isTerminal;
    bool m_statusShown = false;
    int m_errorCount = 0;
    QString m_lastError;
};

/// True when standard output is a terminal that may be coloured.
bool UseColor();

} // namespace orbis
