// SPDX-License-Identifier: GPL-3.0-or-later
#include "cli/console.h"

#include "cli/text_encoding.h"
#include "cli/text_width.h"

#include <QByteArray>
#include <QStringList>

#include <cstdio>

#include <unistd.h>

namespace orbis {

Console& Console::Instance()
{
    static Console console;
    return console;
}

Console::Console() : m_isTerminal(::isatty(STDERR_FILENO) == 1)
{
}

void Console::WriteLine(const QString& text)
{
    std::string bytes;
    const QStringList lines = text.split(u'\n');
    for (const QString& line : lines) {
        AppendUtf8(bytes, m_isTerminal ? VisibleText(line) : line);
        bytes.push_back('\n');
    }
    std::fwrite(bytes.data(), 1, bytes.size(), stderr);
    std::fflush(stderr);
}

void Console::Error(const QString& text)
{
    std::lock_guard guard(m_mutex);
    EraseStatus();
    ++m_errorCount;
    m_lastError = text;
    WriteLine(QStringLiteral("orbis: ") + text.trimmed());
}

void Console::Say(const QString& text)
{
    std::lock_guard guard(m_mutex);
    EraseStatus();
    WriteLine(text);
}

void Console::ShowStatus(const QString& text)
{
    if (!m_isTerminal)
        return;
    std::lock_guard guard(m_mutex);
    std::string bytes = "\r\x1b[K";
    AppendUtf8(bytes, text);
    std::fwrite(bytes.data(), 1, bytes.size(), stderr);
    std::fflush(stderr);
    m_statusShown = true;
}

void Console::ClearStatus()
{
    std::lock_guard guard(m_mutex);
    EraseStatus();
}

void Console::EraseStatus()
{
    if (!m_statusShown)
        return;
    std::fputs("\r\x1b[K", stderr);
    std::fflush(stderr);
    m_statusShown = false;
}

int Console::get_ErrorCount() const
{
    std::lock_guard guard(m_mutex);
    return m_errorCount;
}

QString Console::get_LastError() const
{
    std::lock_guard guard(m_mutex);
    return m_lastError;
}

bool UseColor()
{
    // By common use any value but the empty one switches colours off.
    if (!qgetenv("NO_COLOR").isEmpty() || qgetenv("TERM") == "dumb")
        return false;
    return ::isatty(STDOUT_FILENO) == 1;
}

} // namespace orbis
