// SPDX-License-Identifier: GPL-3.0-or-later
#include "studio/completion.h"

#include <QRegularExpression>

namespace {

/// More than a person would look through.
constexpr int MostWords = 2000;

bool IsNamePart(QChar c)
{
    return c.isLetterOrNumber() || c == u'_' || c == u'$';
}

QString Unquoted(QString name)
{
    if (name.size() >= 2 && name.startsWith(u'"') && name.endsWith(u'"'))
        return name.mid(1, name.size() - 2).replace(QLatin1String("\"\""), QLatin1String("\""));
    return name;
}

QString Written(const QString& name, const QStringList& reserved)
{
    bool plain = !name.isEmpty() && !name.front().isDigit() && name.front() != u'$'
                 && !reserved.contains(name, Qt::CaseInsensitive);
    for (const QChar c : name)
        plain = plain && IsNamePart(c);
    return plain ? name : u'"' + QString(name).replace(u'"', QLatin1String("\"\"")) + u'"';
}

/// Where the quoted name begins whose last quote stands before `end`; -1 for nowhere.
int QuotedStart(const QString& text, int end)
{
    int at = end - 2;
    while (at >= 0) {
        if (text[at] != u'"')
            --at;
        else if (at > 0 && text[at - 1] == u'"') // one quote within the name
            at -= 2;
        else
            break;
    }
    return at;
}

/// The dotted path that ends at `end` (behind its last dot), outermost first.
QStringList PathBefore(const QString& text, int end)
{
    QStringList path;
    while (end > 0 && text[end - 1] == u'.') {
        --end;
        int start = end;
        if (start > 0 && text[start - 1] == u'"') {
            start = QuotedStart(text, start);
            if (start < 0)
                break;
        } else {
            while (start > 0 && IsNamePart(text[start - 1]))
                --start;
        }
        if (start == end)
            break;
        path.prepend(Unquoted(text.mid(start, end - start)));
        end = start;
    }
    return path;
}

/// The table's path that stands for an alias; empty when the name is no alias.
/// A reserved word is neither a table nor an alias. What may be an alias stays in the
/// text: it may also be the JOIN that begins the next table.
QStringList ResolveAlias(const QString& statement, const QString& alias, const QStringList& reserved)
{
    static const QString name = QStringLiteral(R"((?:"(?:[^"]|"")*"|[\p{L}_][\p{L}\p{N}_$]*))");
    static const QRegularExpression pattern(
        QStringLiteral(R"((?:\b(?:FROM|JOIN|UPDATE|INTO)\b|,)\s*(%1(?:\s*\.\s*%1)*)(?=\s+(?:AS\s+)?(%1)))").arg(name),
        QRegularExpression::CaseInsensitiveOption | QRegularExpression::UseUnicodePropertiesOption);
    static const QRegularExpression part(name, QRegularExpression::UseUnicodePropertiesOption);
    QRegularExpressionMatch match;
    for (qsizetype at = 0; (match = pattern.match(statement, at)).hasMatch();) {
        const bool isTable = !reserved.contains(match.captured(1), Qt::CaseInsensitive);
        at = isTable ? match.capturedEnd() : match.capturedStart(1);
        if (!isTable || reserved.contains(match.captured(2), Qt::CaseInsensitive)
            || Unquoted(match.captured(2)).compare(alias, Qt::CaseInsensitive) != 0)
            continue;
        QStringList path;
        auto parts = part.globalMatch(match.captured(1));
        while (parts.hasNext())
            path.append(Unquoted(parts.next().captured()));
        return path;
    }
    return {};
}

bool SameName(QStringView a, QStringView b)
{
    return a.compare(b, Qt::CaseInsensitive) == 0;
}

/// True when the ident lies directly below the path: its elements before the
/// last end with the path's names.
bool IsBelow(const HF::LIdent& ident, const QStringList& path)
{
    const qsizetype parents = ident.get_Depth() - 1;
    if (parents < path.size() || path.isEmpty())
        return false;
    for (qsizetype i = 0; i < path.size(); ++i)
        if (!SameName(ident.get_NameAt(parents - path.size() + i), path[i]))
            return false;
    return true;
}

void Add(QStringList& list, const QString& word, const QString& prefix)
{
    if (word.startsWith(prefix, Qt::CaseInsensitive))
        list.append(word);
}

/// Where the quoted name begins that is still open at the end of the text; -1 for none.
qsizetype OpenQuote(QStringView text)
{
    static const QRegularExpression quoted(QStringLiteral(R"('(?:[^']|'')*(?:'|$)|--[^\n]*|"(?:[^"]|"")*("|$))"));
    for (auto all = quoted.globalMatch(text.toString()); all.hasNext();)
        if (const auto match = all.next(); match.captured().startsWith(u'"') && match.captured(1).isEmpty())
            return match.capturedStart();
    return -1;
}

} // namespace

int WordStart(const QString& text, int position)
{
    if (const qsizetype quote = OpenQuote(QStringView(text).left(position)); quote >= 0)
        return int(quote);
    while (position > 0 && IsNamePart(text[position - 1]))
        --position;
    return position;
}

Completion CompleteAt(const QString& statement, int position, const CompletionWords& words)
{
    position = qBound(0, position, int(statement.size()));
    const int start = WordStart(statement, position);
    QString prefix = statement.mid(start, position - start);
    const bool quoted = prefix.startsWith(u'"');
    if (quoted)
        prefix = prefix.mid(1).replace(QLatin1String("\"\""), QLatin1String("\""));

    Completion result;
    result.prefixLength = position - start;
    const auto addName = [&](const HF::LIdent& ident) {
        if (!ident.IsEmpty() && ident.get_NameAt(ident.get_Depth() - 1).startsWith(prefix, Qt::CaseInsensitive))
            result.words.append(Written(ident.get_Name(), words.reserved));
    };
    const QStringList path = PathBefore(statement, start);
    if (!path.isEmpty()) {
        QStringList target = path;
        if (path.size() == 1)
            if (const QStringList table = ResolveAlias(statement, path.first(), words.reserved); !table.isEmpty())
                target = table;
        // A catalogue in front of the schema is not part of the idents.
        while (target.size() > 2)
            target.removeFirst();
        for (const HF::LIdent& ident : words.idents)
            if (IsBelow(ident, target))
                addName(ident);
    } else {
        for (const HF::LIdent& ident : words.idents)
            addName(ident);
        if (!quoted) {
            for (const QString& keyword : words.keywords)
                Add(result.words, keyword.toUpper(), prefix);
            for (const QString& function : words.functions)
                Add(result.words, function, prefix);
        }
    }
    result.words.sort(Qt::CaseInsensitive);
    result.words.removeDuplicates();
    if (result.words.size() > MostWords)
        result.words.resize(MostWords);
    return result;
}
