// SPDX-License-Identifier: GPL-3.0-or-later
// Writing of a table cursor's edits, and of many rows at once.
#include "hf/table_cursor_base.h"

#include "hf/database.h"
#include "hf/log.h"
#include "hf/schema_item_list.h"
#include "hf/values.h"

namespace HF {

namespace {

/// Levels of a cursor's error logger.
enum LogLevel { LogFailure = 4, LogWritten = 512 };

} // namespace

rc::Ptr<LEditBatch> LTableCursor::MakeBatch()
{
    const rc::Ptr<I_LDatabase> database = get_Database();
    if (!database || !get_Source() || ReadOnly)
        return nullptr;
    const QList<LEditStatement> statements = PlanAll(get_PendingEdits());
    if (statements.isEmpty())
        return nullptr;
    return rc::make<LEditBatch>(rc::Ref<I_LDatabase>(database), statements, m_generation);
}

/// Takes out of the store what a statement has written. An edit of a cell that
/// was made since stays, on what is stored by now.
void LTableCursor::ForgetWritten(const LEditStatement& statement)
{
    const auto found = m_edits.find(statement.key);
    if (found == m_edits.end())
        return;
    LRowEdit edit = found->second;
    m_edits.erase(found);
    RcList<I_LSqlValue> key = statement.key.get_Values();
    for (const LCellEdit& written : statement.cells) {
        edit.cells.removeIf([&](const LCellEdit& cell) {
            return written.column == cell.column && written.newValue.get() == cell.newValue.get();
        });
        for (LCellEdit& cell : edit.cells)
            if (cell.column == written.column)
                cell.oldValue = written.newValue;
        if (const qsizetype place = KeyNames.indexOf(written.column); place >= 0 && place < key.size())
            key[place] = written.newValue;
    }
    if (edit.cells.isEmpty())
        return;
    edit.key = orbTableCursorKey(key, statement.key.get_RowNumber());
    m_edits[edit.key] = edit;
}

void LTableCursor::ShowSaved(const rc::Ref<LEditBatch>& batch, bool refresh)
{
    if (!batch->get_Result().saved) {
        m_lastError = batch->get_Result().get_Error();
        return;
    }
    StashEdits(); // from here on they are all in one place
    qint64 added = 0;
    int dropped = 0;
    for (const LEditStatement& statement : batch->get_Statements()) {
        if (statement.state == ROW_ADDED) {
            ++added;
            DropAdded(int(statement.row - FirstAddedRow) - dropped++);
            continue;
        }
        if (statement.state == ROW_DELETED) {
            --added;
            m_deleted.erase(statement.key);
            m_edits.erase(statement.key);
            Marks.erase(statement.key);
            continue;
        }
        ForgetWritten(statement);
    }
    DropNoChanges();
    if (added)
        CountChanged(added, m_filter.isEmpty() && m_restriction.isEmpty());
    else
        CountEstimated = CountEstimated || !m_filter.isEmpty();
    Invalidate();
    RestoreEdits();
    if (refresh && !m_windowText.isEmpty())
        RefreshWindow();
}

LSaveResult LTableCursor::SaveEdits()
{
    const rc::Ptr<LEditBatch> batch = MakeBatch();
    if (!batch) {
        StashEdits();
        DropNoChanges();
        RestoreEdits();
        LSaveResult nothing;
        nothing.saved = true;
        return nothing;
    }
    batch->Run();
    ShowSaved(rc::Ref<LEditBatch>(batch), true);
    return batch->get_Result();
}

QString LTableCursor::UpdateRecord()
{
    const rc::Ptr<I_LDatabase> database = get_Database();
    if (!database || !get_Source())
        return QObject::tr("The table is gone.");
    if (ReadOnly)
        return QObject::tr("These rows cannot be changed.");
    if (!IsRowLoaded(*Position))
        return QString();
    const unsigned long row = *Position;
    QList<LRowEdit> edits;
    for (const LRowEdit& edit : get_PendingEdits())
        if (edit.row == row)
            edits.append(edit);
    const QList<LEditStatement> statements = PlanAll(edits);
    if (statements.isEmpty())
        return QString();
    const auto batch = rc::make<LEditBatch>(rc::Ref<I_LDatabase>(database), statements, m_generation);
    batch->Run();
    ShowSaved(batch, true);
    if (batch->get_Result().saved)
        return QString();
    const QString error = batch->get_Result().get_Error();
    LogError(error);
    return error;
}

void LTableCursor::SaveAllRecords()
{
    const rc::Ptr<LEditBatch> batch = MakeBatch();
    if (!batch)
        return;
    batch->Run();
    ShowSaved(rc::Ref<LEditBatch>(batch), true);
    const LSaveResult& result = batch->get_Result();
    if (!result.saved && !m_errorLogger)
        LogError(result.get_Error());
    else if (!result.saved)
        m_errorLogger->Log(LogFailure, result.get_Error());
    else if (m_errorLogger)
        for (const LEditStatement& statement : batch->get_Statements())
            m_errorLogger->Log(LogWritten, statement.get_Display());
}

LSaveResult LTableCursor::RunNow(const QList<LEditStatement>& statements, bool refresh)
{
    const rc::Ptr<I_LDatabase> database = get_Database();
    if (!database || !get_Source() || ReadOnly) {
        LSaveResult refused;
        refused.errors.append({-1, 0, {}, ReadOnly ? QObject::tr("These rows cannot be changed.")
                                                   : QObject::tr("The table is gone.")});
        return refused;
    }
    const auto batch = rc::make<LEditBatch>(rc::Ref<I_LDatabase>(database), statements, m_generation);
    LSaveResult result = batch->Run();
    if (!result.saved) {
        m_lastError = result.get_Error();
        return result;
    }
    m_count.reset();
    CountEstimated = true;
    for (const LEditStatement& statement : statements) {
        if (statement.state != ROW_DELETED)
            continue;
        m_edits.erase(statement.key);
        m_deleted.erase(statement.key);
        Marks.erase(statement.key);
    }
    Invalidate();
    if (refresh && !m_windowText.isEmpty())
        RefreshWindow();
    return result;
}

LSaveResult LTableCursor::DeleteRecord()
{
    const unsigned long row = *Position;
    if (IsRowLoaded(row) && row >= FirstAddedRow) {
        DropAdded(int(row - FirstAddedRow));
        LSaveResult dropped;
        dropped.saved = true;
        return dropped;
    }
    if (!IsRowLoaded(row) || RowKeys[qsizetype(row - *FirstRow)].IsInvalid()) {
        LSaveResult refused;
        refused.errors.append({-1, row, {}, QObject::tr("There is no row to delete.")});
        return refused;
    }
    return RunNow({PlanDelete(RowKeys[qsizetype(row - *FirstRow)], row)}, true);
}

LSaveResult LTableCursor::DeleteAllRecords()
{
    LEditStatement statement;
    statement.state = ROW_DELETED;
    statement.anyNumber = true;
    statement.text = QLatin1String("DELETE") + FromClause() + RestrictionClause(statement.binds);
    return RunNow({statement}, true);
}

LSaveResult LTableCursor::Truncate()
{
    LEditStatement statement;
    statement.state = ROW_DELETED;
    statement.anyNumber = true;
    const rc::Ptr<I_LSchemaObject> source = get_Source();
    statement.text = QLatin1String("TRUNCATE ") + (source ? source->get_NameForQuery(true) : QString());
    return RunNow({statement}, true);
}

LSaveResult LTableCursor::UpdateAllRecords(const QString& column, const rc::Ref<I_LSqlValue>& value)
{
    LEditStatement statement;
    statement.anyNumber = true;
    const rc::Ptr<I_LSchemaObject> source = get_Source();
    const QString condition = RestrictionClause(statement.binds);
    const QString assignment = AssignmentExpression(column, value, statement.binds);
    statement.text = QLatin1String("UPDATE ") + (source ? source->get_NameForQuery(true) : QString())
                     + QLatin1String(" SET ") + assignment + condition;
    return RunNow({statement}, true);
}

LSaveResult LTableCursor::InsertRow(const QList<LColumnValue>& values)
{
    return get_Source() ? RunNow({PlanInsert(values)}, true) : RunNow({}, false);
}

LSaveResult LTableCursor::UpdateRows(const QList<LColumnValue>& values, const QList<LColumnValue>& conditions, bool all)
{
    LEditStatement statement;
    statement.anyNumber = all;
    const rc::Ptr<I_LSchemaObject> source = get_Source();
    QStringList assignments;
    for (const LColumnValue& value : values)
        assignments.append(AssignmentExpression(value.column, value.value, statement.binds));
    statement.text = QLatin1String("UPDATE ") + (source ? source->get_NameForQuery(true) : QString())
                     + QLatin1String(" SET ") + assignments.join(QLatin1String(", "))
                     + ConditionClause(conditions, statement.binds);
    statement.countText = QLatin1String("SELECT count(*)") + FromClause()
                          + ConditionClause(conditions, statement.countBinds);
    statement.rowName = source ? source->get_Name() : QString();
    return RunNow({statement}, true);
}

LSaveResult LTableCursor::DeleteRows(const QList<LColumnValue>& conditions, bool all)
{
    LEditStatement statement;
    statement.state = ROW_DELETED;
    statement.anyNumber = all;
    const rc::Ptr<I_LSchemaObject> source = get_Source();
    statement.text = QLatin1String("DELETE") + FromClause() + ConditionClause(conditions, statement.binds);
    statement.countText = QLatin1String("SELECT count(*)") + FromClause()
                          + ConditionClause(conditions, statement.countBinds);
    statement.rowName = source ? source->get_Name() : QString();
    return RunNow({statement}, true);
}

} // namespace HF
