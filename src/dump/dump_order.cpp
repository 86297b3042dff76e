// SPDX-License-Identifier: GPL-3.0-or-later
#include "dump/dump_order.h"

#include "model/sql_tokens.h"

#include <QHash>

#include <algorithm>

namespace {

QString Reference(const SqlTokens::Name& name)
{
    const qsizetype size = name.parts.size();
    return ((size > 1 ? name.parts[size - 2].text : QString()) + u'\n' + name.parts.last().text).toLower();
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
            for (const QString& relation : references.relations + references.quoted)
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
    for (const SqlTokens::Name& name : SqlTokens::Names(text)) {
        const QString last = name.parts.last().text.toLower();
        if (name.isString || name.parts.size() == 1)
            references.words.insert(last);
        if (name.isString) {
            // What query() and query_table() get names relations as well.
            for (const SqlTokens::Name& inner : SqlTokens::Names(QLatin1String("FROM ") + name.parts[0].text))
                if (!inner.isString)
                    references.quoted.insert(Reference(inner));
        } else if (name.isCall) {
            references.calls.insert(Reference(name));
        } else if (name.isRelation) {
            references.relations.insert(Reference(name));
        }
    }
    return references;
}

QList<orbDuckDB_DumpObject> SortByUse(const QList<orbDuckDB_DumpObject>& objects)
{
    return Sorter(objects).Run();
}
