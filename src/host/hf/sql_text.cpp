// SPDX-License-Identifier: GPL-3.0-or-later
#include "hf/sql_text.h"

#include "hf/cursor.h"
#include "hf/database.h"
#include "hf/engine.h"

namespace HF {

namespace {

/// How a text ends, as the engine's lexer sees it.
struct TextEnd
{
    bool empty = true;         ///< nothing but comments
    bool closed = false;       ///< the last thing that is no comment is a semicolon
    bool inLineComment = false;
};

bool IsNameUnit(QChar c)
{
    return c.isLetterOrNumber() || c == u'_' || c == u'$' || c.unicode() >= 128;
}

/// Whether the quote at `at` opens a string with backslash escapes.
bool IsEscapeString(QStringView text, qsizetype at)
{
    return text[at] == u'\'' && at > 0 && (text[at - 1] == u'e' || text[at - 1] == u'E')
           && (at < 2 || !IsNameUnit(text[at - 2]));
}

/// Behind the quote that closes a string or name opened at `at`.
qsizetype SkipQuoted(QStringView text, qsizetype at, bool escapes)
{
    const QChar quote = text[at++];
    for (; at < text.size(); ++at) {
        if (escapes && text[at] == u'\\')
            ++at;
        else if (text[at] == quote)
            return at + 1; // a doubled quote opens the next piece of the same string
    }
    return text.size();
}

/// Behind a comment that begins with "/*"; such comments nest.
qsizetype SkipBlockComment(QStringView text, qsizetype at)
{
    int depth = 0;
    while (at < text.size()) {
        const QStringView pair = text.mid(at, 2);
        if (pair == u"/*") {
            ++depth;
            at += 2;
        } else if (pair == u"*/") {
            at += 2;
            if (--depth == 0)
                break;
        } else {
            ++at;
        }
    }
    return at;
}

/// Behind a text such as $tag$...$tag$; `at` itself when there is none.
qsizetype SkipDollarQuoted(QStringView text, qsizetype at)
{
    qsizetype end = at + 1;
    if (end < text.size() && text[end].isDigit())
        return at; // a parameter
    while (end < text.size() && text[end] != u'$' && IsNameUnit(text[end]))
        ++end;
    if (end >= text.size() || text[end] != u'$')
        return at;
    const QStringView tag = text.mid(at, end + 1 - at);
    const qsizetype close = text.indexOf(tag, end + 1);
    return close < 0 ? text.size() : close + tag.size();
}

/// Goes through a text and tells `onSemicolon` of each semicolon outside quotes and comments.
template <class Function>
TextEnd Scan(QStringView text, Function onSemicolon)
{
    TextEnd end;
    bool inName = false; // a dollar sign inside a name opens nothing
    for (qsizetype at = 0; at < text.size();) {
        const QChar c = text[at];
        const QStringView pair = text.mid(at, 2);
        if (pair == u"--") {
            const qsizetype lineEnd = text.indexOf(u'\n', at);
            end.inLineComment = lineEnd < 0;
            at = lineEnd < 0 ? text.size() : lineEnd + 1;
            inName = false;
            continue;
        }
        if (pair == u"/*") {
            at = SkipBlockComment(text, at);
            inName = false;
            continue;
        }
        if (c.isSpace()) {
            ++at;
            inName = false;
            continue;
        }
        end.empty = false;
        end.closed = c == u';';
        if (c == u'\'' || c == u'"') {
            at = SkipQuoted(text, at, IsEscapeString(text, at));
            inName = false;
        } else if (c == u'$' && !inName) {
            const qsizetype behind = SkipDollarQuoted(text, at);
            inName = behind == at;
            at = behind == at ? at + 1 : behind;
        } else {
            inName = IsNameUnit(c);
            if (c == u';')
                onSemicolon(at);
            ++at;
        }
    }
    return end;
}

TextEnd ScanEnd(QStringView text)
{
    return Scan(text, [](qsizetype) {});
}

const LDatabaseObject_Impl* DatabaseObject(const rc::Ptr<const LTreeItem>& item)
{
    return dynamic_cast<const LDatabaseObject_Impl*>(item.get());
}

QString Quoted(const QString& text, QChar quote)
{
    return quote + QString(text).replace(quote, QString(2, quote)) + quote;
}

std::optional<QString> Evaluate(const rc::Ptr<I_LDatabase>& database, const QString& text, int flags,
                                const RcList<I_LSqlValue>& binds)
{
    if (!database)
        return std::nullopt;
    const rc::Ptr<I_LCursor> cursor =
        database->SqlSelect(text, flags, binds, CURSOR_CLIENT, LOCK_OPTIMISTIC, CURSOR_FORWARD);
    if (!cursor || !cursor->FirstRecord())
        return std::nullopt;
    const rc::Ptr<I_LField> column = cursor->get_Column(0);
    if (!column || column->get_IsNull())
        return std::nullopt;
    return column->get_String();
}

} // namespace

void FinishQuery(QString& text, int lineBreaks)
{
    text = text.trimmed();
    if (text.isEmpty())
        return;
    const bool mayComment = text.contains(QLatin1String("--")) || text.contains(QLatin1String("/*"));
    if (mayComment || !text.endsWith(QLatin1Char(';'))) {
        const TextEnd end = ScanEnd(text);
        // Comments alone are no statement that wants an end.
        if (!end.empty && !end.closed)
            text += end.inLineComment ? QLatin1String("\n;") : QLatin1String(";");
    }
    if (lineBreaks > 0)
        text += QString(lineBreaks, QLatin1Char('\n'));
}

bool IsSingleExpression(const QString& text)
{
    const QStringView view(text);
    int depth = 0;
    bool inName = false;
    for (qsizetype at = 0; at < view.size();) {
        const QChar c = view[at];
        const QStringView pair = view.mid(at, 2);
        if (c == u';' || (c == u')' && depth == 0))
            return false;
        if (c == u'\'' || c == u'"') {
            const bool escapes = IsEscapeString(view, at);
            const qsizetype behind = SkipQuoted(view, at, escapes);
            if (behind == at + 1 || view[behind - 1] != c) // runs into the end
                return false;
            at = behind;
        } else if (pair == u"--") {
            const qsizetype lineEnd = view.indexOf(u'\n', at);
            at = lineEnd < 0 ? view.size() : lineEnd;
        } else if (pair == u"/*") {
            at = SkipBlockComment(view, at);
            if (at < 2 || view.mid(at - 2, 2) != u"*/")
                return false;
        } else if (c == u'$' && !inName) {
            const qsizetype behind = SkipDollarQuoted(view, at);
            if (behind == view.size() && behind > at && view[behind - 1] != u'$')
                return false;
            at = behind == at ? at + 1 : behind;
        } else {
            depth += c == u'(' ? 1 : c == u')' ? -1 : 0;
            ++at;
        }
        inName = IsNameUnit(c);
    }
    return depth == 0;
}

QString ShiftPlaceholders(const QString& text, int offset)
{
    const QStringView view(text);
    QString result;
    bool inName = false;
    for (qsizetype at = 0; at < view.size();) {
        const QChar c = view[at];
        const QStringView pair = view.mid(at, 2);
        qsizetype behind = at + 1;
        if (c == u'\'' || c == u'"') {
            behind = SkipQuoted(view, at, IsEscapeString(view, at));
        } else if (pair == u"--") {
            const qsizetype lineEnd = view.indexOf(u'\n', at);
            behind = lineEnd < 0 ? view.size() : lineEnd;
        } else if (pair == u"/*") {
            behind = SkipBlockComment(view, at);
        } else if (c == u'$' && !inName) {
            while (behind < view.size() && view[behind].isDigit())
                ++behind;
            if (behind > at + 1) {
                result += u'$' + QString::number(view.mid(at + 1, behind - at - 1).toInt() + offset);
                at = behind;
                inName = false;
                continue;
            }
            behind = std::max(behind, SkipDollarQuoted(view, at));
        }
        result += view.mid(at, behind - at);
        inName = IsNameUnit(c);
        at = behind;
    }
    return result;
}

QStringList SplitStatements(const QString& text)
{
    QStringList statements;
    qsizetype start = 0;
    const auto take = [&](qsizetype end) {
        const QString piece = text.mid(start, end - start).trimmed();
        if (!piece.isEmpty() && !ScanEnd(piece).empty)
            statements.append(piece);
        start = end + 1;
    };
    Scan(text, take);
    take(text.size());
    return statements;
}

QString QuoteName(const QString& name, const rc::Ptr<const LTreeItem>& item)
{
    if (const LDatabaseObject_Impl* const object = DatabaseObject(item))
        if (const LDatabaseEngine* const engine = object->get_DatabaseEngine())
            return engine->QuoteName(name, object->get_Connection());
    return Quoted(name, QLatin1Char('"'));
}

QString QuoteText(const QString& text, const rc::Ptr<const LTreeItem>& item)
{
    const LDatabaseObject_Impl* const object = DatabaseObject(item);
    const rc::Ptr<I_LConnection> connection = object ? object->get_Connection() : rc::Ptr<I_LConnection>();
    const QString quote = connection ? connection->get_LiteralQuote() : QString();
    return Quoted(text, quote.isEmpty() ? QLatin1Char('\'') : quote.front());
}

QString JoinIdentifiers(const QStringList& names, const rc::Ptr<const LTreeItem>& item)
{
    QStringList quoted;
    quoted.reserve(names.size());
    for (const QString& name : names)
        quoted.append(QuoteName(name, item));
    return quoted.join(QLatin1String(", "));
}

std::optional<QString> EvaluateSQL(const rc::Ptr<I_LDatabase>& database, const QString& text,
                                   const RcList<I_LSqlValue>& binds)
{
    return Evaluate(database, text, QUERY_BACKGROUND, binds);
}

LLazy<QString, false> LazyEvaluateSQL(const rc::Ptr<I_LDatabase>& database, const QString& text, bool silent,
                                      const RcList<I_LSqlValue>& binds, bool background)
{
    const int flags = (silent ? QUERY_SILENT_ERROR : 0) | (background ? QUERY_BACKGROUND : 0);
    return LLazy<QString, false>::FromBody([weak = rc::Weak<I_LDatabase>(database), text, flags, binds] {
        return Evaluate(weak.lock(), text, flags, binds).value_or(QString());
    });
}

} // namespace HF
