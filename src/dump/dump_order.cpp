// SPDX-License-Identifier: GPL-3.0-or-later
#include "dump/dump_order.h"

#include <QHash>

#include <algorithm>

namespace {

struct Token
{
    QString text;
    bool isName = false;
    bool isString = false;
    bool isQuoted = false; ///< a name that is no keyword, whatever it reads
};

QList<Token> Tokens(const QString& text)
{
    QList<Token> tokens;
    for (qsizetype i = 0; i < text.size();) {
        const QChar c = text.at(i);
        if (c == u'\'' || c == u'"') {
            QString content;
            for (++i; i < text.size(); ++i) {
                if (text.at(i) == c) {
                    if (i + 1 >= text.size() || text.at(i + 1) != c)
                        break;
                    ++i;
                }
                content += text.at(i);
            }
            ++i;
            tokens.append({content, c == u'"', c == u'\'', c == u'"'});
        } else if (c.isLetterOrNumber() || c == u'_') {
            const qsizetype start = i;
            while (i < text.size() && (text.at(i).isLetterOrNumber() || text.at(i) == u'_' || text.at(i) == u'$'))
                ++i;
            tokens.append({text.mid(start, i - start), true, false});
        } else {
            if (!c.isSpace())
                tokens.append({c, false, false});
            ++i;
        }
    }
    return tokens;
}

bool IsOneOf(const Token& token, std::initializer_list<const char*> words)
{
    return !token.isQuoted && std::any_of(words.begin(), words.end(), [&](const char* each) {
        return token.text.compare(QLatin1String(each), Qt::CaseInsensitive) == 0;
    });
}

class Sorter
{
public:
    explicit Sorter(const QList<orbDuckDB_DumpObject>& objects) : m_objects(objects), m_states(objects.size(), State::New)
    {
        for (qsizetype i = 0; i < objects.size(); ++i)
            m_byName[objects[i].name.toLower()].append(i);
    }

    QList<orbDuckDB_DumpObject> Run()
    {
        for (qsizetype i = 0; i < m_objects.size(); ++i)
            Visit(i);
        return m_sorted;
    }

private:
    enum class State { New, Open, Done };

    void Visit(qsizetype index)
    {
        if (m_states[index] != State::New)
            return;
        m_states[index] = State::Open;
        for (const qsizetype needed : Needed(m_objects[index]))
            Visit(needed);
        m_states[index] = State::Done;
        m_sorted.append(m_objects[index]);
    }

    QList<qsizetype> Needed(const orbDuckDB_DumpObject& object) const
    {
        QList<qsizetype> needed;
        const auto add = [&](const QString& reference, auto isWanted) {
            const qsizetype border = reference.indexOf(u'\n');
            const QString schema = reference.left(border);
            for (const qsizetype i : m_byName.value(reference.mid(border + 1)))
                if (isWanted(m_objects[i].type)
                    && (schema.isEmpty() || m_objects[i].schema.compare(schema, Qt::CaseInsensitive) == 0))
                    needed.append(i);
        };
        const orbDuckDB_References references = ReferencesOf(object.text);
        for (const QString& call : references.calls)
            add(call, [](HF::ELObjectType type) { return type == HF::TYPE_FUNCTION; });
        // A table's text names other tables in its foreign keys only.
        if (object.type == HF::TYPE_TABLE)
            for (const QString& parent : object.parents)
                add(object.schema + u'\n' + parent.toLower(),
                    [](HF::ELObjectType type) { return type == HF::TYPE_TABLE; });
        else
            for (const QString& relation : references.relations)
                add(relation, [](HF::ELObjectType type) { return type != HF::TYPE_FUNCTION; });
        std::sort(needed.begin(), needed.end());
        return needed;
    }

    const QList<orbDuckDB_DumpObject>& m_objects;
    QList<State> m_states;
    QHash<QString, QList<qsizetype>> m_byName;
    QList<orbDuckDB_DumpObject> m_sorted;
};

} // namespace

orbDuckDB_References ReferencesOf(const QString& text)
{
    orbDuckDB_References references;
    const QList<Token> tokens = Tokens(text);
    const auto isMark = [&](qsizetype index, char16_t mark) {
        return index >= 0 && index < tokens.size() && !tokens[index].isName && !tokens[index].isString
            && tokens[index].text == QChar(mark);
    };
    QList<bool> inFrom{false};
    bool expected = false; // a relation comes next
    for (qsizetype i = 0; i < tokens.size(); ++i) {
        const Token& token = tokens[i];
        if (token.isString) {
            references.words.insert(token.text.toLower());
            expected = false;
        } else if (!token.isName) {
            if (isMark(i, u'('))
                inFrom.append(expected);
            else if (isMark(i, u')') && inFrom.size() > 1)
                inFrom.removeLast();
            expected = isMark(i, u'(') ? expected : isMark(i, u',') && inFrom.last();
        } else if (IsOneOf(token, {"FROM", "JOIN", "PIVOT", "UNPIVOT", "DESCRIBE", "SUMMARIZE"})) {
            inFrom.last() = expected = true;
        } else if (expected && IsOneOf(token, {"SELECT", "VALUES", "LATERAL", "WITH"})) {
            expected = false;
            inFrom.last() = false;
        } else if (IsOneOf(token, {"WHERE", "GROUP", "HAVING", "ORDER", "LIMIT", "UNION", "EXCEPT", "INTERSECT",
                                        "QUALIFY", "WINDOW", "SELECT"})) {
            inFrom.last() = expected = false;
        } else {
            // A name with what stands before its dots.
            QStringList parts{token.text};
            while (isMark(i + 1, u'.') && i + 2 < tokens.size() && tokens[i + 2].isName) {
                parts.append(tokens[i + 2].text);
                i += 2;
            }
            const QString last = parts.takeLast().toLower();
            const QString reference = (parts.isEmpty() ? QString() : parts.last().toLower()) + u'\n' + last;
            if (parts.isEmpty())
                references.words.insert(last);
            if (isMark(i + 1, u'('))
                references.calls.insert(reference);
            else if (expected)
                references.relations.insert(reference);
            expected = false;
        }
    }
    return references;
}

QList<orbDuckDB_DumpObject> SortByUse(const QList<orbDuckDB_DumpObject>& objects)
{
    return Sorter(objects).Run();
}
