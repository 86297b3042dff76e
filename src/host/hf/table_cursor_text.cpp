// SPDX-License-Identifier: GPL-3.0-or-later
// The texts of a table cursor.
#include "hf/table_cursor_base.h"

#include "hf/database.h"
#include "hf/engine.h"
#include "hf/schema_item_list.h"
#include "hf/sql_text.h"
#include "hf/values.h"

namespace HF {

namespace {

const QLatin1String And(" AND ");
/// The rows that a query names, within the statement that shows them.
const QLatin1String NamedRows("\"__orb_named\"");

} // namespace

QString LTableCursor::Placeholder(const RcList<I_LSqlValue>& binds) const
{
    const LDatabaseEngine* engine = get_DatabaseEngine();
    return engine ? engine->GetBindPlaceholder(int(binds.size())) : QStringLiteral("?");
}

QString LTableCursor::Quote(const QString& name) const
{
    return QuoteName(name, get_Source());
}

QString LTableCursor::EqualExpression(const QString& name, const rc::Ref<I_LSqlValue>& value,
                                      RcList<I_LSqlValue>& binds) const
{
    if (dynamic_cast<const LValueInvalid*>(value.get()))
        return QStringLiteral("FALSE"); // nobody knows what it was
    if (value->get_IsNull())
        return Quote(name) + QLatin1String(" IS NULL");
    const QString expression = ComparedBind(name, *value, Placeholder(binds));
    binds.append(value);
    return expression;
}

QString LTableCursor::AssignmentExpression(const QString& name, const rc::Ref<I_LSqlValue>& value,
                                           RcList<I_LSqlValue>& binds) const
{
    if (dynamic_cast<const LValueSqlExpression*>(value.get()) && !value->get_IsNull())
        return Quote(name) + QLatin1String(" = ") + value->get_String();
    const QString placeholder = Placeholder(binds);
    binds.append(value);
    return Quote(name) + QLatin1String(" = ") + AssignedBind(name, *value, placeholder);
}

QString LTableCursor::AssignedBind(const QString& name, const I_LSqlValue& value, const QString& placeholder) const
{
    return StoredBind(name, value, placeholder);
}

QString LTableCursor::UnchangedCondition(const QString& name, const rc::Ref<I_LSqlValue>& value,
                                         RcList<I_LSqlValue>& binds) const
{
    return EqualExpression(name, value, binds);
}

QString LTableCursor::Where_Condition_FieldsEqual(const QStringList& names, const orbTableCursorKey& key,
                                                  RcList<I_LSqlValue>& binds) const
{
    QStringList conditions;
    for (qsizetype i = 0; i < names.size() && i < key.get_Values().size(); ++i)
        conditions.append(EqualExpression(names[i], key.get_Values()[i], binds));
    return conditions.join(And);
}

QString LTableCursor::Where_Clause(const orbTableCursorKey& key, RcList<I_LSqlValue>& binds) const
{
    QStringList conditions;
    if (key.get_RowNumber() && !RowNumberName().isEmpty()) {
        // First, since the engine finds the row by it at once.
        conditions.append(RowNumberName() + QLatin1String(" = ") + Placeholder(binds));
        binds.append(rc::make<LValueInt64>(*key.get_RowNumber()));
    }
    if (const QString values = Where_Condition_FieldsEqual(KeyNames, key, binds); !values.isEmpty())
        conditions.append(values);
    return conditions.isEmpty() ? QString() : QLatin1String(" WHERE ") + conditions.join(And);
}

QString LTableCursor::Where_Condition_NotInSubQuery(const QStringList& names, const QString& query) const
{
    const rc::Ptr<I_LSchemaObject> source = get_Source();
    if (!source)
        return QString();
    QStringList equal;
    for (const QString& name : names)
        equal.append(NamedRows + u'.' + Quote(name) + QLatin1String(" IS NOT DISTINCT FROM ")
                     + Quote(source->get_Name()) + u'.' + Quote(name));
    return QStringLiteral("NOT EXISTS ( SELECT 1 FROM ( %1 ) AS %2 WHERE %3 )").arg(query, NamedRows, equal.join(And));
}

QString LTableCursor::ConditionClause(const QList<LColumnValue>& conditions, RcList<I_LSqlValue>& binds) const
{
    QStringList texts;
    for (const LColumnValue& condition : conditions)
        texts.append(EqualExpression(condition.column, condition.value, binds));
    return texts.isEmpty() ? QString() : QLatin1String(" WHERE ") + texts.join(And);
}

QString LTableCursor::OrderBy() const
{
    const rc::Ptr<I_LSchemaObject> source = get_Source();
    if (!source)
        return QString();
    // With the table's name in front: an item of the select list may bear the column's name.
    const QString prefix = Quote(source->get_Name()) + u'.';
    QStringList items;
    QStringList used;
    for (const LSortField& field : m_sorting) {
        items.append(prefix + Quote(field.name) + (field.descending ? QLatin1String(" DESC") : QLatin1String()));
        used.append(field.name);
    }
    if (HasKey) {
        for (const QString& name : KeyNames)
            if (!used.contains(name, Qt::CaseInsensitive))
                items.append(prefix + Quote(name));
    } else if (const QString number = RowNumberName(); !number.isEmpty()) {
        items.append(prefix + number);
    }
    return items.isEmpty() ? QString() : QLatin1String(" ORDER BY ") + items.join(QLatin1String(", "));
}

QString LTableCursor::LimitClause(unsigned long firstRow) const
{
    QString text = QStringLiteral(" LIMIT %1").arg(m_windowSize);
    if (firstRow > 0)
        text += QStringLiteral(" OFFSET %1").arg(firstRow);
    return text;
}

QString LTableCursor::FromClause() const
{
    const rc::Ptr<I_LSchemaObject> source = get_Source();
    return source ? QLatin1String(" FROM ") + source->get_NameForQuery(true) : QString();
}

void LTableCursor::RestrictTo(const QString& query, const RcList<I_LSqlValue>& binds)
{
    m_restriction = query;
    m_restrictionBinds = binds;
    m_count.reset();
    CountEstimated = true;
    Invalidate();
}

QString LTableCursor::RestrictionClause(RcList<I_LSqlValue>& binds) const
{
    // Their placeholders stand in the texts already: both come before all others.
    QStringList conditions;
    if (!m_restriction.isEmpty()) {
        conditions.append(Where_Condition_NotInSubQuery(KeyNames, ShiftPlaceholders(m_restriction, int(binds.size())))
                              .mid(4)); // without its NOT
        binds.append(m_restrictionBinds);
    }
    if (!m_filter.isEmpty()) {
        conditions.append(QLatin1String("( ") + ShiftPlaceholders(m_filter, int(binds.size())) + QLatin1String("\n)"));
        binds.append(m_filterBinds);
    }
    return conditions.isEmpty() ? QString() : QLatin1String(" WHERE ") + conditions.join(And);
}

QString LTableCursor::CurrentQuery(unsigned long firstRow, RcList<I_LSqlValue>& binds) const
{
    const rc::Ptr<I_LSchemaObject> source = get_Source();
    if (!source)
        return QString();
    QString items = SelectList(rc::Ref<I_LSchemaObject>(source), false, false, QString());
    if (const QString hidden = HiddenItem(); !hidden.isEmpty())
        items += QLatin1String(", ") + hidden;
    return QLatin1String("SELECT ") + items + FromClause() + RestrictionClause(binds) + OrderBy()
           + LimitClause(firstRow);
}

QString LTableCursor::OperationQuery(const rc::Ref<I_LSchemaObject>& table, ELSetOperation operation,
                                     const QString& columns, const QString& first, const QString& second,
                                     unsigned& counter) const
{
    switch (operation) {
    case SET_INTERSECTION: return first + QLatin1String(" INTERSECT ") + second;
    case SET_UNION: return first + QLatin1String(" UNION ") + second;
    case SET_EXCEPT: return first + QLatin1String(" EXCEPT ") + second;
    case SET_DIFFERENCE: return OperationDifference(table, first, columns, second, counter);
    }
    return QString();
}

} // namespace HF
