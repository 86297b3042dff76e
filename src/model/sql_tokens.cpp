// SPDX-License-Identifier: GPL-3.0-or-later
#include "model/sql_tokens.h"

#include <QSet>

#include <algorithm>
#include <optional>
#include <vector>

namespace {

struct Token
{
    qsizetype start;
    qsizetype end;
    bool name = false; ///< a word or a name in quotes
    QString text;      ///< of a name without its quotes, of anything else as it stands
    bool quoted = false;
};

bool IsNameStart(QChar c)
{
    return c.isLetter() || c == u'_' || c.unicode() >= 128;
}

std::vector<Token> Split(const QString& text)
{
    std::vector<Token> tokens;
    for (qsizetype at = 0; at < text.size();) {
        const QChar c = text[at];
        if (c.isSpace()) {
            ++at;
            continue;
        }
        qsizetype end = at + 1;
        Token token{at, end, false, {}};
        if (c == u'"' || c == u'\'') {
            while (end < text.size() && (text[end] != c || (end + 1 < text.size() && text[end + 1] == c)))
                end += text[end] == c ? 2 : 1;
            const QStringView inner = QStringView(text).mid(at + 1, end - at - 1);
            end = std::min(end + 1, text.size());
            token.name = token.quoted = c == u'"';
            token.text = token.name ? inner.toString().replace(QString(2, c), QString(c)) : text.mid(at, end - at);
        } else if (IsNameStart(c)) {
            while (end < text.size() && (IsNameStart(text[end]) || text[end].isDigit() || text[end] == u'$'))
                ++end;
            token.name = true;
            token.text = text.mid(at, end - at);
        } else {
            if (c.isDigit())
                while (end < text.size() && (text[end].isLetterOrNumber() || text[end] == u'.'))
                    ++end;
            token.text = text.mid(at, end - at);
        }
        token.end = end;
        tokens.push_back(token);
        at = end;
    }
    return tokens;
}

/// Words that name a column only between quotes.
bool IsReserved(const Token& token)
{
    static const QSet<QString> words = [] {
        const QString all = QStringLiteral(
            "all analyse analyze and any array as asc asymmetric both case cast check collate column constraint create "
            "default deferrable desc describe distinct do else end except false fetch for foreign from glob group having "
            "ilike in initially intersect into is isnull lambda lateral leading like limit not notnull null offset on only "
            "or order pivot placing primary qualify references returning select show similar some summarize symmetric "
            "table then to trailing true union unique unpivot using variadic when where window with");
        const QStringList list = all.split(u' ');
        return QSet<QString>(list.begin(), list.end());
    }();
    return token.name && !token.quoted && words.contains(token.text.toLower());
}

bool IsWord(const Token& token, QLatin1String word)
{
    return token.name && !token.quoted && token.text.compare(word, Qt::CaseInsensitive) == 0;
}

/// Behind the type that begins at a token: its brackets, and what a time zone takes.
std::size_t BehindType(const std::vector<Token>& tokens, std::size_t i)
{
    int depth = 0;
    for (bool first = true; i < tokens.size(); ++i, first = false) {
        const Token& token = tokens[i];
        if (!token.name && (token.text == u"(" || token.text == u"[")) {
            ++depth;
        } else if (!token.name && (token.text == u")" || token.text == u"]")) {
            if (--depth < 0)
                return i;
        } else if (depth == 0 && !first
                   && !(token.name && (IsWord(token, QLatin1String("WITH")) || IsWord(token, QLatin1String("TIME"))
                                       || IsWord(token, QLatin1String("ZONE")) || IsWord(token, QLatin1String("PRECISION")))
                        && tokens[i - 1].name)
                   && !(token.text == u"." || tokens[i - 1].text == u".")) {
            return i;
        }
    }
    return i;
}

/// Whether the token stands where a column can stand.
bool MayBeColumn(const std::vector<Token>& tokens, std::size_t i)
{
    if (!tokens[i].name || IsReserved(tokens[i]))
        return false;
    if (i > 0 && (tokens[i - 1].text == u"." || IsWord(tokens[i - 1], QLatin1String("COLLATE"))))
        return false;
    if (i + 1 == tokens.size())
        return true;
    const QString& next = tokens[i + 1].text;
    const bool named = next == u":" && i + 2 < tokens.size() && tokens[i + 2].text == u"=";
    return !named && (next != u"(" || tokens[i + 1].name);
}

/// Expression and type of a text that is one cast as a whole.
std::optional<std::pair<QString, QString>> SplitCast(const QString& expression)
{
    const std::vector<Token> tokens = Split(expression);
    if (tokens.size() < 6 || tokens[0].text.compare(u"CAST", Qt::CaseInsensitive) != 0 || tokens[1].text != u"("
        || tokens.back().text != u")")
        return std::nullopt;
    int depth = 0;
    std::size_t as = 0;
    for (std::size_t i = 1; i < tokens.size(); ++i) {
        if (tokens[i].name) {
            if (depth == 1 && tokens[i].text.compare(u"AS", Qt::CaseInsensitive) == 0)
                as = i;
        } else if (tokens[i].text == u"(") {
            ++depth;
        } else if (tokens[i].text == u")" && --depth == 0 && i + 1 < tokens.size()) {
            return std::nullopt; // the cast is only the beginning
        }
    }
    if (as < 3)
        return std::nullopt;
    return std::pair(expression.mid(tokens[2].start, tokens[as].start - tokens[2].start).trimmed(),
                     expression.mid(tokens[as].end, tokens.back().start - tokens[as].end).trimmed());
}

QString Quoted(QString name)
{
    return u'"' + name.replace(u'"', QLatin1String("\"\"")) + u'"';
}

} // namespace

namespace SqlTokens {

bool Mentions(const QString& expression, const QString& column)
{
    for (const Token& token : Split(expression))
        if (token.name && !IsReserved(token) && token.text.compare(column, Qt::CaseInsensitive) == 0)
            return true;
    return false;
}

QString Rename(const QString& expression, const QHash<QString, QString>& names)
{
    if (names.isEmpty())
        return expression;
    const std::vector<Token> tokens = Split(expression);
    QString result;
    qsizetype done = 0;
    for (std::size_t i = 0; i < tokens.size(); ++i) {
        const bool isCast = IsWord(tokens[i], QLatin1String("AS"))
                            || (tokens[i].text == u":" && i > 0 && tokens[i - 1].text == u":" && !tokens[i].name);
        if (isCast) { // the fields of a type have names of their own
            i = BehindType(tokens, i + 1) - 1;
            continue;
        }
        const auto renamed = MayBeColumn(tokens, i) ? names.constFind(tokens[i].text.toLower()) : names.constEnd();
        if (renamed == names.constEnd())
            continue;
        result += QStringView(expression).mid(done, tokens[i].start - done);
        result += Quoted(*renamed);
        done = tokens[i].end;
    }
    result += QStringView(expression).mid(done);
    return result;
}

QHash<QString, QString> Collations(const QString& createTable)
{
    QHash<QString, QString> collations;
    const std::vector<Token> tokens = Split(createTable);
    int depth = 0;
    QString column;
    bool first = false; // the next token begins an item of the list
    for (std::size_t i = 0; i < tokens.size(); ++i) {
        const Token& token = tokens[i];
        if (!token.name && (token.text == u"(" || token.text == u"[" || token.text == u"{")) {
            first = ++depth == 1;
        } else if (!token.name && (token.text == u")" || token.text == u"]" || token.text == u"}")) {
            --depth;
        } else if (depth == 1 && token.text == u"," && !token.name) {
            first = true;
        } else if (depth == 1 && first) {
            first = false;
            column = token.name ? token.text : QString();
        } else if (depth == 1 && token.name && token.text.compare(u"COLLATE", Qt::CaseInsensitive) == 0
                   && i + 1 < tokens.size() && tokens[i + 1].name) {
            qsizetype end = tokens[++i].end;
            while (i + 2 < tokens.size() && tokens[i + 1].text == u"." && tokens[i + 2].name)
                end = tokens[i += 2].end;
            const qsizetype start = token.end;
            collations.insert(column.toLower(), createTable.mid(start, end - start).trimmed());
        }
    }
    return collations;
}

QString WithoutCast(const QString& expression)
{
    const auto cast = SplitCast(expression);
    return cast ? cast->first : expression;
}

QString TypeOfCast(const QString& expression)
{
    const auto cast = SplitCast(expression);
    return cast ? cast->second : QString();
}

QList<Name> Names(const QString& statement)
{
    QList<Name> names;
    const std::vector<Token> tokens = Split(statement);
    const auto isMark = [&](std::size_t i, char16_t mark) {
        return i < tokens.size() && !tokens[i].name && tokens[i].text == QChar(mark);
    };
    const auto isOneOf = [](const Token& token, std::initializer_list<const char*> words) {
        return std::any_of(words.begin(), words.end(), [&](const char* each) { return IsWord(token, QLatin1String(each)); });
    };
    std::vector<bool> inFrom{false};
    bool expected = false; // a relation comes next
    for (std::size_t i = 0; i < tokens.size(); ++i) {
        const Token& token = tokens[i];
        Name name;
        if (i >= 2 && isMark(i - 1, u'(') && tokens[i - 2].name)
            name.calledBy = tokens[i - 2].text;
        if (!token.name && token.text.startsWith(u'\'')) {
            name.isString = true;
            name.parts = {{token.text.mid(1, token.text.size() - 2).replace(QLatin1String("''"), QLatin1String("'")), token.start, token.end}};
            names.append(name);
            expected = false;
        } else if (!token.name) {
            if (isMark(i, u'('))
                inFrom.push_back(expected);
            else if (isMark(i, u')') && inFrom.size() > 1)
                inFrom.pop_back();
            expected = isMark(i, u'(') ? expected : isMark(i, u',') && inFrom.back();
        } else if (isOneOf(token, {"FROM", "JOIN", "PIVOT", "UNPIVOT", "DESCRIBE", "SUMMARIZE"})) {
            inFrom.back() = expected = true;
        } else if (expected && isOneOf(token, {"SELECT", "VALUES", "LATERAL", "WITH"})) {
            expected = inFrom.back() = false;
        } else if (isOneOf(token, {"WHERE", "GROUP", "HAVING", "ORDER", "LIMIT", "UNION", "EXCEPT", "INTERSECT", "QUALIFY",
                                   "WINDOW", "SELECT"})) {
            inFrom.back() = expected = false;
        } else {
            name.parts = {{token.text, token.start, token.end}};
            while (isMark(i + 1, u'.') && i + 2 < tokens.size() && tokens[i + 2].name) {
                i += 2;
                name.parts.append({tokens[i].text, tokens[i].start, tokens[i].end});
            }
            name.isCall = isMark(i + 1, u'(');
            name.isRelation = expected && !name.isCall;
            names.append(name);
            expected = false;
        }
    }
    return names;
}

QString WithoutCatalog(const QString& statement, const QString& catalog, const Objects& objects, OtherBearer other)
{
    if (!statement.contains(catalog, Qt::CaseInsensitive))
        return statement;
    const auto isCatalog = [&](const Piece& piece) { return piece.text.compare(catalog, Qt::CaseInsensitive) == 0; };
    const auto has = [&](const QString& schema, const Piece& piece) {
        return objects.value(schema.toLower()).contains(piece.text.toLower());
    };
    const QList<Name> names = Names(statement);
    bool isAlias = false; // or a column: it stands alone, or behind a dot
    QSet<QString> tables; // that are named by the catalogue and are not called otherwise
    for (const Name& name : names) {
        for (qsizetype i = name.parts.size() == 1 ? 0 : 1; i < name.parts.size(); ++i)
            isAlias |= !name.isString && !name.isCall && isCatalog(name.parts[i]);
        if (name.isRelation && name.parts.size() == 2 && isCatalog(name.parts[0]))
            tables.insert(name.parts[1].text.toLower());
    }
    QString result;
    qsizetype done = 0;
    const auto replace = [&](qsizetype from, qsizetype to, const QString& text) {
        result += QStringView(statement).mid(done, from - done);
        result += text;
        done = to;
    };
    for (const Name& name : names) {
        const QList<Piece>& parts = name.parts;
        if (name.isString) {
            if (name.calledBy.compare(u"nextval", Qt::CaseInsensitive) != 0 && name.calledBy.compare(u"currval", Qt::CaseInsensitive) != 0)
                continue;
            // The sequence's name is a name like a table's.
            const QString from = QStringLiteral("FROM ");
            QString shorter = WithoutCatalog(from + parts[0].text, catalog, objects, other).mid(from.size());
            if (shorter != parts[0].text)
                replace(parts[0].start, parts[0].end, u'\'' + shorter.replace(u'\'', QLatin1String("''")) + u'\'');
            continue;
        }
        if (parts.size() < 2 || !isCatalog(parts[0]))
            continue;
        const bool isPlace = name.isRelation || name.isCall; // where no column can stand
        if (parts.size() >= 3 && has(parts[1].text, parts[2]) && (isPlace || !isAlias))
            replace(parts[0].start, parts[1].start, QString());
        else if (other != OtherBearer::Schema && has(QStringLiteral("main"), parts[1])
                 && (isPlace || (!isAlias && (other == OtherBearer::None || tables.contains(parts[1].text.toLower())))))
            replace(parts[0].start, parts[1].start, QStringLiteral("main."));
    }
    result += QStringView(statement).mid(done);
    return result;
}

QString WithBareValues(const QString& statement)
{
    if (!statement.contains(QLatin1String("valueslist")))
        return statement;
    const std::vector<Token> tokens = Split(statement);
    std::vector<bool> dropped(tokens.size());
    const auto isMark = [&](std::size_t i, char16_t mark) {
        return i < tokens.size() && !tokens[i].name && tokens[i].text == QChar(mark);
    };
    const auto isWord = [&](std::size_t i, const char* word) {
        return i < tokens.size() && IsWord(tokens[i], QLatin1String(word));
    };
    std::vector<std::size_t> open; // brackets
    for (std::size_t i = 0; i < tokens.size(); ++i) {
        if (isMark(i, u'('))
            open.push_back(i);
        if (!isMark(i, u')') || open.empty())
            continue;
        const std::size_t bracket = open.back();
        open.pop_back();
        if (bracket < 3 || !isWord(bracket + 1, "VALUES") || !isWord(bracket - 1, "FROM") || !isMark(bracket - 2, u'*')
            || !isWord(bracket - 3, "SELECT") || !isWord(i + 1, "AS") || !isWord(i + 2, "valueslist"))
            continue;
        // No clause may follow, for a VALUES takes none of the SELECT's.
        const bool isEnd = i + 3 == tokens.size() || isMark(i + 3, u')') || isMark(i + 3, u';');
        for (const std::size_t each : {bracket - 3, bracket - 2, bracket - 1, bracket, i, i + 1, i + 2})
            dropped[each] = dropped[each] || isEnd;
    }
    QString result;
    qsizetype done = 0;
    for (std::size_t i = 0; i < tokens.size(); ++i)
        if (dropped[i]) {
            // With the blanks up to the next one, where one of both goes anyway.
            result += QStringView(statement).mid(done, tokens[i].start - done);
            done = i + 1 < tokens.size() ? tokens[i + 1].start : tokens[i].end;
        }
    result += QStringView(statement).mid(done);
    return result;
}

} // namespace SqlTokens
