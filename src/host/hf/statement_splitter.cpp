// SPDX-License-Identifier: GPL-3.0-or-later
#include "hf/statement_splitter.h"

#include <algorithm>

namespace HF {

namespace {

bool IsDigit(char16_t c)
{
    return c >= u'0' && c <= u'9';
}

/// The engine takes the blanks of Unicode for blanks, and everything else
/// beyond ASCII for letters.
bool IsBlank(char16_t c)
{
    return c == u' ' || (c >= u'\t' && c <= u'\r') || (c >= 0x80 && QChar(c).isSpace());
}

bool IsNameStart(char16_t c)
{
    return (c >= u'a' && c <= u'z') || (c >= u'A' && c <= u'Z') || c == u'_' || (c >= 0x80 && !QChar(c).isSpace());
}

bool IsTagPart(char16_t c)
{
    return IsNameStart(c) || IsDigit(c);
}

constexpr qsizetype CompactAbove = 1 << 20;

} // namespace

void LStatementSplitter::Feed(QStringView text)
{
    Compact();
    m_text.append(text);
}

/// Drops what no statement needs any more.
void LStatementSplitter::Compact()
{
    const qsizetype unused = m_start < 0 ? m_at : m_start;
    if (unused < CompactAbove && unused < m_text.size())
        return;
    m_text.remove(0, unused);
    m_at -= unused;
    if (m_start >= 0)
        m_start = 0;
}

char16_t LStatementSplitter::Peek(qsizetype offset) const
{
    return m_at + offset < m_text.size() ? m_text.at(m_at + offset).unicode() : u'\0';
}

void LStatementSplitter::Pass(qsizetype count)
{
    const QStringView passed = QStringView(m_text).mid(m_at, count);
    m_line += std::count(passed.begin(), passed.end(), QChar(u'\n'));
    m_at += passed.size();
}

void LStatementSplitter::BeginToken()
{
    if (m_start >= 0)
        return;
    m_start = m_at;
    m_startLine = m_line;
}

std::optional<LStatementText> LStatementSplitter::TakeStatement(qsizetype end, bool complete)
{
    if (m_start < 0)
        return std::nullopt;
    // Some engines stumble over wide blanks at the end.
    while (end > m_start && IsBlank(m_text.at(end - 1).unicode()))
        --end;
    LStatementText statement{m_text.mid(m_start, end - m_start), m_startLine, m_line, complete};
    m_start = -1;
    return statement;
}

std::optional<LStatementText> LStatementSplitter::Next()
{
    while (m_at < m_text.size()) {
        if (!Step())
            return std::nullopt; // what follows decides
        if (!m_semicolon)
            continue;
        m_semicolon = false;
        if (auto statement = TakeStatement(m_at - 1, true))
            return statement;
    }
    if (!m_finished)
        return std::nullopt;
    // A comment that does not end hides whatever was to come.
    if (m_state == State::BlockComment && m_start < 0) {
        m_start = m_at;
        m_startLine = m_commentLine;
    }
    m_state = State::Plain;
    return TakeStatement(m_text.size(), false);
}

/// Passes at least one character; false when that needs more text.
bool LStatementSplitter::Step()
{
    switch (m_state) {
    case State::String: return StepQuotes(u'\'');
    case State::Quoted: return StepQuotes(u'"');
    case State::Escaped: return StepEscaped();
    case State::Dollar: return StepDollarQuoted();
    case State::LineComment: return StepLineComment();
    case State::BlockComment: return StepBlockComment();
    default: break;
    }
    const char16_t* const text = reinterpret_cast<const char16_t*>(m_text.constData());
    const qsizetype size = m_text.size();
    const qsizetype from = m_at;
    if (m_state == State::Name) {
        while (m_at < size && (IsTagPart(text[m_at]) || text[m_at] == u'$'))
            ++m_at;
        if (m_at < size)
            m_state = State::Plain;
        if (m_at > from)
            return true;
    } else if (m_state == State::Number) {
        while (m_at < size && (IsDigit(text[m_at]) || text[m_at] == u'_' || text[m_at] == u'.'))
            ++m_at;
        if (m_at > from)
            return true;
        if ((text[m_at] | 0x20) == u'e') {
            if (!IsFollowed(2))
                return false;
            const bool isSigned = Peek(1) == u'+' || Peek(1) == u'-';
            if (IsDigit(Peek(isSigned ? 2 : 1))) {
                m_at += isSigned ? 3 : 2;
                return true;
            }
        }
        m_state = State::Plain;
    }
    return StepPlain(text[m_at]);
}

bool LStatementSplitter::StepPlain(char16_t c)
{
    if (IsBlank(c)) {
        m_line += c == u'\n';
        ++m_at;
        return true;
    }
    switch (c) {
    case u';':
        ++m_at;
        m_semicolon = true;
        return true;
    case u'\'':
    case u'"':
        BeginToken();
        m_state = c == u'"' ? State::Quoted : State::String;
        ++m_at;
        return true;
    case u'$':
        return StepDollar();
    case u'-':
    case u'/':
        if (!IsFollowed(1))
            return false;
        if (Peek(1) == (c == u'-' ? u'-' : u'*')) {
            m_state = c == u'-' ? State::LineComment : State::BlockComment;
            m_depth = 1;
            m_commentLine = m_line;
            m_at += 2;
            return true;
        }
        break;
    case u'e':
    case u'E':
        if (!IsFollowed(1))
            return false;
        if (Peek(1) == u'\'') {
            BeginToken();
            m_state = State::Escaped;
            m_at += 2;
            return true;
        }
        break;
    default: break;
    }
    BeginToken();
    if (IsDigit(c))
        m_state = State::Number;
    else if (IsNameStart(c))
        m_state = State::Name;
    ++m_at;
    return true;
}

/// At a dollar sign: a parameter, or the tag of a quote.
bool LStatementSplitter::StepDollar()
{
    qsizetype end = 1;
    if (IsNameStart(Peek(1)))
        while (IsTagPart(Peek(end)))
            ++end;
    if (!IsFollowed(end))
        return false;
    BeginToken();
    if (Peek(end) != u'$') {
        ++m_at;
        return true;
    }
    m_tag = m_text.mid(m_at, end + 1);
    m_at += end + 1;
    m_state = State::Dollar;
    return true;
}

bool LStatementSplitter::StepQuotes(char16_t quote)
{
    const qsizetype found = m_text.indexOf(QChar(quote), m_at);
    if (found != m_at) {
        Pass((found < 0 ? m_text.size() : found) - m_at);
        return true;
    }
    if (!IsFollowed(1))
        return false;
    if (Peek(1) == quote) {
        m_at += 2;
        return true;
    }
    ++m_at;
    m_state = State::Plain;
    return true;
}

bool LStatementSplitter::StepEscaped()
{
    const char16_t c = Peek(0);
    if ((c == u'\'' || c == u'\\') && !IsFollowed(1))
        return false;
    if (c == u'\'' && Peek(1) != u'\'') {
        ++m_at;
        m_state = State::Plain;
        return true;
    }
    Pass(c == u'\'' || c == u'\\' ? 2 : 1);
    return true;
}

bool LStatementSplitter::StepDollarQuoted()
{
    const qsizetype found = m_text.indexOf(m_tag, m_at);
    if (found >= 0) {
        Pass(found + m_tag.size() - m_at);
        m_state = State::Plain;
        return true;
    }
    // The end may have been cut in two.
    const qsizetype rest = m_finished ? 0 : m_tag.size() - 1;
    const qsizetype count = m_text.size() - rest - m_at;
    if (count <= 0)
        return false;
    Pass(count);
    return true;
}

bool LStatementSplitter::StepLineComment()
{
    while (m_at < m_text.size()) {
        const char16_t c = Peek(0);
        ++m_at;
        m_line += c == u'\n';
        if (c == u'\n' || c == u'\r') {
            m_state = State::Plain;
            break;
        }
    }
    return true;
}

bool LStatementSplitter::StepBlockComment()
{
    const char16_t c = Peek(0);
    if (c != u'*' && c != u'/') {
        Pass(1);
        return true;
    }
    if (!IsFollowed(1))
        return false;
    const bool opens = c == u'/' && Peek(1) == u'*';
    const bool closes = c == u'*' && Peek(1) == u'/';
    m_depth += opens ? 1 : closes ? -1 : 0;
    m_at += opens || closes ? 2 : 1;
    if (m_depth == 0)
        m_state = State::Plain;
    return true;
}

} // namespace HF
