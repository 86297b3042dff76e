// SPDX-License-Identifier: GPL-3.0-or-later
// Marked rows of a table cursor.
#include "hf/table_cursor_base.h"

#include "hf/database.h"
#include "hf/log.h"
#include "hf/schema_item_list.h"
#include "hf/sql_text.h"

#include <set>

namespace HF {

namespace {

/// Rows that one statement asks for by their keys.
constexpr int KeysAtOnce = 200;

QString ConditionOf(const QString& whereClause)
{
    return whereClause.mid(int(qstrlen(" WHERE ")));
}

/// Marks that a query named bear no number of the row.
orbTableCursorKey WithoutNumber(const orbTableCursorKey& key)
{
    return orbTableCursorKey(key.get_Values());
}

} // namespace

bool LTableCursor::MarkRecord()
{
    const unsigned long row = *Position;
    if (row >= FirstAddedRow || !IsRowLoaded(row) || RowKeys[qsizetype(row - *FirstRow)].IsInvalid())
        return false;
    Marks[RowKeys[qsizetype(row - *FirstRow)]] = row;
    return true;
}

bool LTableCursor::UnmarkRecord()
{
    const unsigned long row = *Position;
    if (row >= FirstAddedRow || !IsRowLoaded(row))
        return false;
    if (AllMarked) {
        // All but one: the others have to be named.
        AllMarked = false;
        RcList<I_LSqlValue> binds;
        const rc::Ptr<I_LSchemaObject> source = get_Source();
        if (source && !FillMarkedFromQuery(QLatin1String("SELECT * ") + FromClause() + RestrictionClause(binds), binds))
            return false;
    }
    const orbTableCursorKey& key = RowKeys[qsizetype(row - *FirstRow)];
    return Marks.erase(key) + Marks.erase(WithoutNumber(key)) > 0;
}

bool LTableCursor::get_IsRecordMarked() const
{
    const unsigned long row = *Position;
    if (row >= FirstAddedRow || !IsRowLoaded(row))
        return false;
    const orbTableCursorKey& key = RowKeys[qsizetype(row - *FirstRow)];
    return AllMarked || Marks.count(key) || Marks.count(WithoutNumber(key));
}

unsigned long LTableCursor::get_MarkedCount() const
{
    return AllMarked ? get_RecordCount().Force() : static_cast<unsigned long>(Marks.size());
}

void LTableCursor::SetAllToMarked()
{
    Marks.clear();
    AllMarked = true;
}

void LTableCursor::SetAllToNonMarked()
{
    Marks.clear();
    AllMarked = false;
}

bool LTableCursor::FillMarkedFromQuery(const QString& query, const RcList<I_LSqlValue>& binds)
{
    const rc::Ptr<I_LDatabase> database = get_Database();
    if (!database)
        return false;
    const rc::Ptr<I_LCursor> rows =
        database->SqlSelect(query, QUERY_DEFAULT, binds, CURSOR_CLIENT, LOCK_OPTIMISTIC, CURSOR_FORWARD);
    if (!rows)
        return false;
    QList<rc::Ptr<I_LField>> columns;
    for (const QString& name : std::as_const(KeyNames))
        columns.append(rows->get_Field(name));
    if (columns.contains(nullptr))
        return false;
    AllMarked = false;
    Marks.clear();
    for (bool more = rows->FirstRecord(); more; more = rows->NextRecord()) {
        orbTableCursorKey key;
        for (const rc::Ptr<I_LField>& column : std::as_const(columns))
            key.Append(rc::Ref<I_LSqlValue>(column->get_Value()));
        Marks[key] = rows->get_Position();
    }
    return true;
}

/// Drops the marks of rows that are gone: those in the window are known, the
/// others are asked for.
void LTableCursor::CheckMarks()
{
    const rc::Ptr<I_LDatabase> database = get_Database();
    const rc::Ptr<I_LSchemaObject> source = get_Source();
    if (Marks.empty() || !database || !source)
        return;
    std::set<orbTableCursorKey> alive(RowKeys.begin(), RowKeys.end());
    for (const orbTableCursorKey& key : std::as_const(RowKeys))
        alive.insert(WithoutNumber(key));
    QList<orbTableCursorKey> unknown;
    for (const auto& [key, row] : Marks)
        if (!alive.count(key))
            unknown.append(key);
    QString items = JoinIdentifiers(KeyNames, source);
    if (const QString hidden = HiddenItem(); !hidden.isEmpty())
        items += QLatin1String(", ") + hidden;
    for (qsizetype from = 0; from < unknown.size(); from += KeysAtOnce) {
        RcList<I_LSqlValue> binds;
        QStringList conditions;
        for (const orbTableCursorKey& key : unknown.mid(from, KeysAtOnce))
            if (const QString where = Where_Clause(key, binds); !where.isEmpty())
                conditions.append(ConditionOf(where));
        if (conditions.isEmpty())
            continue;
        const rc::Ptr<I_LCursor> rows = database->SqlSelect(
            QLatin1String("SELECT ") + items + FromClause() + QLatin1String(" WHERE ( ")
                + conditions.join(QLatin1String(" ) OR ( ")) + QLatin1String(" )"),
            QUERY_BACKGROUND, binds, CURSOR_CLIENT, LOCK_OPTIMISTIC, CURSOR_FORWARD);
        if (!rows)
            return; // nothing is known: the marks stay
        for (bool more = rows->FirstRecord(); more; more = rows->NextRecord()) {
            RcList<I_LSqlValue> values;
            for (const QString& name : std::as_const(KeyNames))
                values.append(rc::Ref<I_LSqlValue>(rows->get_Field(name)->get_Value()));
            alive.insert(orbTableCursorKey(values));
            if (const rc::Ptr<I_LField> number = rows->get_Field(int(KeyNames.size())))
                alive.insert(orbTableCursorKey(values, number->get_String().toLongLong()));
        }
    }
    std::erase_if(Marks, [&](const auto& mark) { return !alive.count(mark.first); });
}

LSaveResult LTableCursor::DeleteMarked()
{
    if (AllMarked)
        return DeleteAllRecords();
    QList<LEditStatement> statements;
    for (const auto& [key, row] : Marks)
        statements.append(PlanDelete(key, row));
    if (statements.isEmpty()) {
        LSaveResult nothing;
        nothing.saved = true;
        return nothing;
    }
    return RunNow(statements, true);
}

rc::Ptr<I_LTableCursor> LTableCursor::get_MarkedRecords()
{
    const rc::Ptr<I_LSchemaObject> source = get_Source();
    if (!source)
        return nullptr;
    RcList<I_LSqlValue> binds;
    QString condition;
    if (AllMarked) {
        condition = RestrictionClause(binds);
    } else {
        QStringList conditions;
        for (const auto& [key, row] : Marks)
            if (const QString where = Where_Clause(key, binds); !where.isEmpty())
                conditions.append(ConditionOf(where));
        condition = conditions.isEmpty() ? QStringLiteral(" WHERE FALSE")
                                         : QLatin1String(" WHERE ( ") + conditions.join(QLatin1String(" ) OR ( "))
                                               + QLatin1String(" )");
    }
    const rc::Ptr<I_LTableCursor> cursor =
        CreateCursorFromQuery(QLatin1String("SELECT ") + JoinIdentifiers(KeyNames, source) + FromClause() + condition,
                              QString(), rc::Ref<I_LSchemaObject>(source), binds, {});
    if (cursor)
        cursor->put_IsReadOnly(true);
    return cursor;
}

} // namespace HF
