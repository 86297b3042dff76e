// SPDX-License-Identifier: GPL-3.0-or-later
// The rows of other tables that belong to a table cursor's rows.
#include "hf/table_cursor_base.h"

#include "hf/database.h"
#include "hf/schema_item_list.h"
#include "hf/sql_text.h"

namespace HF {

namespace {

const QLatin1String LinkedAlias("alias1");
const QLatin1String MarkedAlias("alias2");
const QLatin1String ParentAlias("\"__orb_parent\"");

LSaveResult Refused(const QString& error)
{
    LSaveResult result;
    result.errors.append({-1, 0, {}, error});
    return result;
}

} // namespace

QString LTableCursor::Join_Condition(const rc::Ref<I_LLink>& link) const
{
    const rc::Ptr<I_LSchemaObject> source = get_Source();
    const rc::Ptr<I_LTable> parent = link->get_Table(1);
    if (!source || !parent)
        return QString();
    QStringList own = link->GetStringList(PROP_LINK_COLUMNS);
    QStringList other = link->GetStringList(PROP_KEY_COLUMNS);
    // The marked rows are the referenced ones when this is the table they stand in.
    const bool sourceIsParent = parent.get() == source.get();
    QStringList conditions;
    for (qsizetype i = 0; i < own.size() && i < other.size(); ++i)
        conditions.append(QStringLiteral("%1.%2 = %3.%4")
                              .arg(LinkedAlias, Quote(sourceIsParent ? own[i] : other[i]), MarkedAlias,
                                   Quote(sourceIsParent ? other[i] : own[i])));
    return conditions.join(QLatin1String(" AND "));
}

QString LTableCursor::JoinWith(const rc::Ref<I_LSchemaObject>& table, const rc::Ref<I_LLink>& link,
                               const QString& marked) const
{
    const QString condition = Join_Condition(link);
    if (condition.isEmpty())
        return QString();
    return QStringLiteral("SELECT DISTINCT %1 FROM %2 AS %3 INNER JOIN %4 AS %5 ON %6")
        .arg(SelectList(table, true, true, LinkedAlias), table->get_NameForQuery(true), LinkedAlias, marked, MarkedAlias,
             condition);
}

QString LTableCursor::Join_Query(const rc::Ref<I_LSchemaObject>& table, const rc::Ref<I_LLink>& link,
                                 RcList<I_LSqlValue>* binds) const
{
    const rc::Ptr<I_LSchemaObject> source = get_Source();
    if (!source)
        return QString();
    QString marked = source->get_NameForQuery(true);
    if (binds && !AllMarked && !Marks.empty()) {
        QStringList rows;
        for (const auto& [key, row] : Marks)
            if (const QString where = Where_Clause(key, *binds); !where.isEmpty())
                rows.append(where.mid(int(qstrlen(" WHERE "))));
        marked = QLatin1String("( SELECT *") + FromClause() + QLatin1String(" WHERE ( ")
                 + rows.join(QLatin1String(" ) OR ( ")) + QLatin1String(" ) )");
    }
    return JoinWith(table, link, marked);
}

/// What each marked row is linked to, one operation after the other.
QString LTableCursor::CombinedLinks(const rc::Ref<I_LSchemaObject>& table, ELSetOperation operation,
                                    const rc::Ref<I_LLink>& link, RcList<I_LSqlValue>& binds) const
{
    const QString columns = SelectList(table, false, true, QString());
    unsigned counter = 0;
    QString query;
    for (const auto& [key, row] : Marks) {
        const QString one = JoinWith(table, link, QLatin1String("( SELECT *") + FromClause() + Where_Clause(key, binds)
                                                      + QLatin1String(" )"));
        query = query.isEmpty() ? one : OperationQuery(table, operation, columns, query, one, counter);
    }
    return query;
}

rc::Ptr<I_LTableCursor> LTableCursor::get_LinkedRecords(const rc::Ref<I_LSchemaObject>& table, int mode,
                                                        ELSetOperation operation, const rc::Ref<I_LLink>& link)
{
    if (!get_Source() || (mode != LINKED_TO_MARKED && mode != LINKED_TO_ANY))
        return nullptr;
    RcList<I_LSqlValue> binds;
    const bool combined = mode == LINKED_TO_MARKED && !AllMarked && Marks.size() > 1 && operation != SET_UNION;
    const QString query = combined ? CombinedLinks(table, operation, link, binds)
                                   : Join_Query(table, link, mode == LINKED_TO_MARKED ? &binds : nullptr);
    if (query.isEmpty())
        return nullptr;
    return CreateCursorFromQuery(query, QString(), table, binds, {});
}

LSaveResult LTableCursor::LinkToMarked(const rc::Ref<I_LTableCursor>& other, const rc::Ref<I_LLink>& link)
{
    return ChangeLinks(other, link, true);
}

LSaveResult LTableCursor::UnlinkFromMarked(const rc::Ref<I_LTableCursor>& other, const rc::Ref<I_LLink>& link)
{
    return ChangeLinks(other, link, false);
}

LSaveResult LTableCursor::ChangeLinks(const rc::Ref<I_LTableCursor>& other, const rc::Ref<I_LLink>& link, bool tie)
{
    auto* const marked = dynamic_cast<LTableCursor*>(other.get());
    const rc::Ptr<I_LSchemaObject> source = get_Source();
    const rc::Ptr<I_LSchemaObject> otherSource = other->get_Source();
    const rc::Ptr<I_LTable> childTable = link->get_Table(0), parentTable = link->get_Table(1);
    if (!marked || !source || !otherSource || !childTable || !parentTable)
        return Refused(QObject::tr("The table is gone."));
    // Of a table that references itself, the row at the position is the one that refers.
    const bool refers = source.get() == childTable.get() && otherSource.get() == parentTable.get();
    if (!refers && (source.get() != parentTable.get() || otherSource.get() != childTable.get()))
        return Refused(QObject::tr("The link does not tie these two tables."));
    const unsigned long row = *Position;
    if (row >= FirstAddedRow || !IsRowLoaded(row) || RowKeys[qsizetype(row - *FirstRow)].IsInvalid())
        return Refused(QObject::tr("There is no row to link."));
    if (refers && tie && marked->get_MarkedCount() != 1)
        return Refused(QObject::tr("A row can be linked to one marked row, not to %1.").arg(marked->get_MarkedCount()));

    LTableCursor& children = refers ? *this : *marked;
    const LTableCursor& parents = refers ? *marked : *this;
    const QStringList own = link->GetStringList(PROP_LINK_COLUMNS), referenced = link->GetStringList(PROP_KEY_COLUMNS);
    const orbTableCursorKey& here = RowKeys[qsizetype(row - *FirstRow)];
    const auto plan = [&](const orbTableCursorKey* mark, unsigned long markRow) {
        LEditStatement statement;
        const orbTableCursorKey* const childKey = refers ? &here : mark;
        const orbTableCursorKey* const parentKey = refers ? mark : &here;
        const auto where = [&statement](const LTableCursor& cursor, const orbTableCursorKey* key) {
            const QString clause =
                key ? cursor.Where_Clause(*key, statement.binds) : cursor.RestrictionClause(statement.binds);
            return clause.isEmpty() ? QStringLiteral(" WHERE ") : clause + QLatin1String(" AND ");
        };
        const QString from = parents.FromClause() + QLatin1String(" AS ") + ParentAlias + where(parents, parentKey);
        QStringList assignments, ties;
        for (qsizetype i = 0; i < own.size() && i < referenced.size(); ++i) {
            const QString name = children.Quote(own[i]), parentName = ParentAlias + u'.' + parents.Quote(referenced[i]);
            assignments.append(name + QLatin1String(" = ")
                               + (tie ? QStringLiteral("( SELECT %1%2TRUE )").arg(parentName, from) : QStringLiteral("NULL")));
            ties.append(parentName + QLatin1String(" = ") + childTable->get_NameForQuery(true) + u'.' + name);
        }
        // The row that is referred to may have gone meanwhile.
        statement.text = QStringLiteral("UPDATE %1 SET %2").arg(childTable->get_NameForQuery(true),
                                                                assignments.join(QLatin1String(", ")))
                         + where(children, childKey) + QLatin1String("EXISTS ( SELECT 1") + from
                         + (tie ? QStringLiteral("TRUE") : ties.join(QLatin1String(" AND "))) + QLatin1String(" )");
        statement.anyNumber = !tie || !childKey;
        statement.row = refers ? row : markRow;
        if (childKey) {
            statement.key = *childKey;
            statement.rowName = children.RowName(*childKey);
            children.AddCounts(statement, {});
        }
        return statement;
    };
    QList<LEditStatement> statements;
    if (marked->AllMarked)
        statements.append(plan(nullptr, 0));
    else
        for (const auto& [key, markRow] : marked->Marks)
            statements.append(plan(&key, markRow));
    if (statements.isEmpty())
        return Refused(QObject::tr("No row is marked."));
    return children.RunNow(statements, true);
}

} // namespace HF
