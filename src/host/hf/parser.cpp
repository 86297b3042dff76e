// SPDX-License-Identifier: GPL-3.0-or-later
#include "hf/parser.h"

#include <QObject>

namespace HF {

namespace {

bool IsWordStart(QChar c)
{
    return c.isLetter() || c == u'_' || c == u'$' || c.unicode() >= 0x80;
}

bool IsWordPart(QChar c)
{
    return IsWordStart(c) || c.isDigit();
}

bool IsQuote(QChar c)
{
    return c == u'"' || c == u'\'' || c == u'`';
}

} // namespace

LParser::LParser(const QString& pattern) : m_pattern(pattern.split(u' ', Qt::SkipEmptyParts)) {}

LParser::~LParser() = default;

bool LParser::Parse(const QString& text)
{
    m_text = text;
    m_idents.clear();
    m_lists.clear();
    m_places.clear();
    m_words.clear();
    m_failedAt = -1;
    m_offset = 0;
    NextToken();
    bool stopped = false;
    m_matched = Match(0, m_pattern.size(), stopped);
    return m_matched;
}

QString LParser::get_Error() const
{
    if (m_matched)
        return QString();
    if (m_failedAt < 0 || m_failedAt >= m_text.size())
        return QObject::tr("The text ends too early.");
    constexpr qsizetype Shown = 30;
    const QString rest = m_text.mid(m_failedAt).section(u'\n', 0, 0);
    return QObject::tr("Unexpected text: %1").arg(rest.size() > Shown ? rest.left(Shown) + QChar(0x2026) : rest);
}

bool LParser::Fail()
{
    m_failedAt = std::max(m_failedAt, m_start);
    return false;
}

bool LParser::NextToken()
{
    const qsizetype size = m_text.size();
    qsizetype at = m_offset;
    for (;;) {
        while (at < size && m_text[at].isSpace())
            ++at;
        if (at + 1 < size && m_text[at] == u'-' && m_text[at + 1] == u'-') {
            while (at < size && m_text[at] != u'\n')
                ++at;
        } else if (at + 1 < size && m_text[at] == u'/' && m_text[at + 1] == u'*') {
            const qsizetype end = m_text.indexOf(QLatin1String("*/"), at + 2);
            at = end < 0 ? size : end + 2;
        } else {
            break;
        }
    }
    m_start = at;
    if (at >= size) {
        m_offset = size;
        m_token.clear();
        return false;
    }
    const QChar first = m_text[at];
    qsizetype end = at + 1;
    if (IsWordStart(first)) {
        while (end < size && IsWordPart(m_text[end]))
            ++end;
    } else if (first.isDigit()) {
        while (end < size && (IsWordPart(m_text[end]) || m_text[end] == u'.'))
            ++end;
    } else if (IsQuote(first)) {
        while (end < size) {
            if (m_text[end] == first) {
                if (end + 1 < size && m_text[end + 1] == first)
                    ++end;
                else
                    break;
            }
            ++end;
        }
        if (end < size)
            ++end; // behind the closing quote; an open one takes the rest
    }
    m_offset = end;
    m_token = m_text.mid(at, end - at);
    return true;
}

bool LParser::ReadExpressionUntilToken(const QString& delimiter)
{
    // Looks at the text, not at tokens: inside quotes nothing else has a meaning.
    qsizetype at = m_offset;
    for (;;) {
        at = m_text.indexOf(delimiter, at);
        if (at < 0) {
            m_start = m_offset = m_text.size();
            m_token.clear();
            return false;
        }
        if (m_text.mid(at + delimiter.size(), delimiter.size()) != delimiter)
            break;
        at += 2 * delimiter.size();
    }
    m_start = at;
    m_offset = at + delimiter.size();
    m_token = delimiter;
    return true;
}

QString LParser::Unquote(const QString& token)
{
    if (token.size() < 2 || !IsQuote(token.front()) || token.front() != token.back())
        return token;
    const QString quote(token.front());
    return token.mid(1, token.size() - 2).replace(quote + quote, quote);
}

QStringList LParser::ReadList()
{
    QStringList items;
    int depth = 0;
    qsizetype itemStart = m_start;
    auto take = [&](qsizetype end) { items.append(Unquote(m_text.mid(itemStart, end - itemStart).trimmed())); };
    while (!AtEnd()) {
        if (m_token == u"(" || m_token == u"[" || m_token == u"{") {
            ++depth;
        } else if (m_token == u")" || m_token == u"]" || m_token == u"}") {
            if (depth == 0) {
                if (m_start > itemStart || !items.isEmpty())
                    take(m_start);
                return items;
            }
            --depth;
        } else if (m_token == u"," && depth == 0) {
            take(m_start);
            itemStart = m_offset;
        }
        NextToken();
    }
    return items;
}

qsizetype LParser::ClosingBracket(qsizetype open) const
{
    int depth = 0;
    for (qsizetype i = open; i < m_pattern.size(); ++i) {
        if (m_pattern[i] == u"[")
            ++depth;
        else if (m_pattern[i] == u"]" && --depth == 0)
            return i;
    }
    return m_pattern.size();
}

bool LParser::Match(qsizetype from, qsizetype to, bool& stopped)
{
    for (qsizetype i = from; i < to && !stopped; ++i) {
        const QString& element = m_pattern[i];
        if (element == u"@STOP") {
            stopped = true;
            return true;
        }
        if (element == u"[") {
            const qsizetype close = ClosingBracket(i);
            const auto savedToken = m_token;
            const auto savedStart = m_start;
            const auto savedOffset = m_offset;
            const auto savedIdents = m_idents;
            const auto savedLists = m_lists;
            const auto savedPlaces = m_places;
            const auto savedWords = m_words;
            if (!Match(i + 1, close, stopped)) {
                m_token = savedToken;
                m_start = savedStart;
                m_offset = savedOffset;
                m_idents = savedIdents;
                m_lists = savedLists;
                m_places = savedPlaces;
                m_words = savedWords;
                stopped = false;
            }
            i = close;
            continue;
        }
        if (AtEnd() || !ProcessToken())
            return Fail();
        if (element.size() > 1 && element.startsWith(u'%')) {
            const QChar first = m_token.front();
            if (!IsWordStart(first) && first != u'"' && first != u'`')
                return Fail();
            m_idents.insert(element.mid(1), Unquote(m_token));
            m_places.insert(element.mid(1), {m_start + (IsQuote(first) ? 1 : 0), m_offset});
            NextToken();
        } else if (element.size() > 1 && element.startsWith(u'#')) {
            m_lists.insert(element.mid(1), ReadList());
            if (AtEnd())
                return i + 1 < to && m_pattern[i + 1] == u"@STOP" ? (stopped = true) : false;
        } else {
            if (m_token.compare(element, Qt::CaseInsensitive) != 0)
                return Fail();
            m_words.insert(element, m_start);
            NextToken();
        }
    }
    return true;
}

} // namespace HF
