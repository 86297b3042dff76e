// SPDX-License-Identifier: GPL-3.0-or-later
#include "studio/statement_at.h"

namespace {

/// Behind the quoted text that begins at `at`; the size of the text when it never ends.
qsizetype SkipQuoted(const QString& text, qsizetype at, bool backslash)
{
    const QChar quote = text[at];
    for (++at; at < text.size(); ++at) {
        if (backslash && text[at] == u'\\')
            ++at;
        else if (text[at] == quote) {
            if (at + 1 < text.size() && text[at + 1] == quote)
                ++at;
            else
                return at + 1;
        }
    }
    return text.size();
}

qsizetype SkipBlockComment(const QString& text, qsizetype at)
{
    int depth = 0;
    for (; at < text.size(); ++at) {
        const QStringView two = QStringView(text).mid(at, 2);
        if (two == u"/*") {
            ++depth;
            ++at;
        } else if (two == u"*/") {
            ++at;
            if (--depth == 0)
                return at + 1;
        }
    }
    return text.size();
}

/// Length of the dollar quote's tag at `at` ("$$" or "$tag$"), 0 for none.
qsizetype DollarTag(const QString& text, qsizetype at)
{
    for (qsizetype end = at + 1; end < text.size(); ++end) {
        const QChar c = text[end];
        if (c == u'$')
            return end - at + 1;
        if (!(c.isLetter() || c == u'_' || (c.isDigit() && end > at + 1)))
            return 0;
    }
    return 0;
}

bool IsNamePart(QChar c)
{
    return c.isLetterOrNumber() || c == u'_' || c == u'$';
}

/// No line break between two places of the text.
bool OnOneLine(const QString& text, qsizetype from, qsizetype to)
{
    return !QStringView(text).mid(from, to - from).contains(u'\n');
}

StatementRange Trimmed(const QString& text, qsizetype start, qsizetype end)
{
    while (start < end && text[start].isSpace())
        ++start;
    while (end > start && text[end - 1].isSpace())
        --end;
    return {start, end};
}

} // namespace

StatementRange StatementAt(const QString& text, qsizetype position)
{
    StatementRange previous;
    qsizetype start = 0;
    qsizetype at = 0;
    while (at < text.size()) {
        const QChar c = text[at];
        if (c == u'\'') {
            const bool escape = at > 0 && (text[at - 1] == u'E' || text[at - 1] == u'e')
                                && (at < 2 || !IsNamePart(text[at - 2]));
            at = SkipQuoted(text, at, escape);
        } else if (c == u'"') {
            at = SkipQuoted(text, at, false);
        } else if (c == u'-' && at + 1 < text.size() && text[at + 1] == u'-') {
            at = text.indexOf(u'\n', at);
            if (at < 0)
                at = text.size();
        } else if (c == u'/' && at + 1 < text.size() && text[at + 1] == u'*') {
            at = SkipBlockComment(text, at);
        } else if (c == u'$' && (at == 0 || !IsNamePart(text[at - 1])) && DollarTag(text, at) > 0) {
            const QString tag = text.mid(at, DollarTag(text, at));
            const qsizetype close = text.indexOf(tag, at + tag.size());
            at = close < 0 ? text.size() : close + tag.size();
        } else if (c == u';') {
            ++at;
            const StatementRange range = Trimmed(text, start, at);
            if (position < at)
                return position < range.start && !previous.IsEmpty() && OnOneLine(text, previous.end, position) ? previous
                                                                                                                : range;
            previous = range;
            start = at;
        } else {
            ++at;
        }
    }
    const StatementRange last = Trimmed(text, start, text.size());
    if (!previous.IsEmpty()
        && (last.IsEmpty() || (position < last.start && OnOneLine(text, previous.end, position))))
        return previous;
    return last;
}
