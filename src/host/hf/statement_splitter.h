// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "hf/export.h"

#include <QString>

#include <optional>

namespace HF {

/// One statement of a text.
struct HF_EXPORT LStatementText
{
    QString Text;         ///< from its first word to before its semicolon, without blanks at the end
    qint64 Line = 0;      ///< of the first word, from 1
    qint64 EndLine = 0;   ///< of the semicolon
    bool IsComplete = true; ///< false: the text ended before a semicolon came
};

/// Cuts a text that comes in pieces into statements, reading each character
/// once and keeping no more than the statement it is in. Knows strings with
/// doubled quotes, E'' strings, dollar quotes, quoted names, and line and
/// nested block comments as the engine does. One thread.
class HF_EXPORT LStatementSplitter
{
public:
    /// More of the text.
    void Feed(QStringView text);
    /// There is no more: a statement without a semicolon comes out incomplete.
    void Finish() { m_finished = true; }
    /// The next statement that is known to its end; nothing: feed more, or the end.
    std::optional<LStatementText> Next();
    /// Line of the next character to be looked at.
    qint64 get_Line() const { return m_line; }

private:
    enum class State { Plain, Name, Number, String, Escaped, Quoted, Dollar, LineComment, BlockComment };

    bool Step();
    bool StepPlain(char16_t c);
    bool StepDollar();
    bool StepQuotes(char16_t quote);
    bool StepEscaped();
    bool StepDollarQuoted();
    bool StepLineComment();
    bool StepBlockComment();
    bool IsFollowed(qsizetype count) const { return m_finished || m_at + count < m_text.size(); }
    char16_t Peek(qsizetype offset) const;
    void Pass(qsizetype count);
    void BeginToken();
    void Compact();
    std::optional<LStatementText> TakeStatement(qsizetype end, bool complete);

    QString m_text;
    qsizetype m_at = 0;
    qsizetype m_start = -1; ///< of the statement; -1 before its first word
    qint64 m_line = 1;
    qint64 m_startLine = 1;
    State m_state = State::Plain;
    int m_depth = 0; ///< of block comments
    qint64 m_commentLine = 1;
    QString m_tag;   ///< of the dollar quote, with both dollars
    bool m_finished = false;
    bool m_semicolon = false;
};

} // namespace HF
