// SPDX-License-Identifier: GPL-3.0-or-later
#include "data/cursor.h"

#include "engine/engine.h"
#include "hf/database.h"
#include "hf/log.h"
#include "hf/sql_text.h"
#include "hf/table_lookup.h"

#include <QMap>
#include <QObject>

namespace {

/// Levels of a cursor's error logger.
enum LogLevel { LogFailure = 4, LogWritten = 512 };

QString Describe(const rc::Ref<HF::I_LSqlValue>& value)
{
    return value->get_IsNull() ? QStringLiteral("NULL") : value->get_String();
}

} // namespace

/// One UPDATE statement being put together.
struct orbDuckDB_Cursor::Update
{
    QString text;
    RcList<HF::I_LSqlValue> binds;
    RcList<HF::I_LSqlValue> oldValues; ///< of the first binds, in their order

    QString Bind(const rc::Ref<HF::I_LSqlValue>& value)
    {
        const QString placeholder = orbDuckDB_Engine::Instance().GetBindPlaceholder(int(binds.size()));
        binds.append(value);
        return placeholder;
    }
};

rc::Ptr<HF::I_LTable> orbDuckDB_Cursor::SourceTable(const rc::Ptr<HF::I_LDatabase>& database, const QString& name) const
{
    if (const auto table = rc::cast<HF::I_LTable>(database->get_ChildObject(HF::TYPE_TABLE, name).Force()))
        return table;
    // The database itself lists schemas only: the table is in one of them.
    return rc::cast<HF::I_LTable>(HF::FindTable(rc::Ref<HF::I_LDatabase>(database), name, false));
}

void orbDuckDB_Cursor::StartUpdate(Update& update, const HF::I_LTable& table, const Columns& columns,
                                   unsigned long row) const
{
    const rc::Ptr<const HF::LTreeItem> item(&table);
    update.text = QLatin1String("UPDATE ") + table.get_NameForQuery(true) + QLatin1String(" SET ");
    for (const orbDuckDB_Field* column : columns) {
        const auto pending = column->Pending().constFind(row);
        if (pending == column->Pending().constEnd() || column->get_SourceColumn().isEmpty())
            continue;
        if (!update.binds.isEmpty())
            update.text += QLatin1String(", ");
        update.text += HF::QuoteName(column->get_SourceColumn(), item) + QLatin1String(" = ") + update.Bind(*pending);
        const rc::Ptr<HF::I_LSqlValue> old = column->OldValue(row);
        update.oldValues.append(old ? rc::Ref<HF::I_LSqlValue>(old) : column->CreateEmptyValue(true));
    }
}

void orbDuckDB_Cursor::AddCondition(Update& update, const HF::I_LTable& table, const Columns& columns,
                                    unsigned long row) const
{
    const rc::Ptr<const HF::LTreeItem> item(&table);
    update.text += QLatin1String(" WHERE ");
    bool first = true;
    for (const orbDuckDB_Field* column : columns) {
        const rc::Ptr<HF::I_LSqlValue> old = column->OldValue(row);
        if (!std::exchange(first, false))
            update.text += QLatin1String(" AND ");
        update.text += HF::QuoteName(column->get_SourceColumn(), item) + QLatin1String(" = ")
            + update.Bind(old ? rc::Ref<HF::I_LSqlValue>(old) : column->CreateEmptyValue(true));
    }
}

QString orbDuckDB_Cursor::Diagnostic(const Update& update, const QString& errors) const
{
    QString text = errors + QLatin1String("\n--\n") + update.text;
    for (qsizetype i = 0; i < update.binds.size(); ++i) {
        QString value = Describe(update.binds[i]);
        if (i < update.oldValues.size())
            value = QObject::tr("%1 instead of: %2").arg(value, Describe(update.oldValues[i]));
        text += QLatin1String("\n-- ") + orbDuckDB_Engine::Instance().GetBindPlaceholder(int(i)) + QLatin1String(" : ")
            + value;
    }
    return text;
}

void orbDuckDB_Cursor::FinishRow(const HF::I_LTable& table, const Columns& columns, unsigned long row)
{
    for (orbDuckDB_Field* column : columns)
        column->MovePendingToSaved(row);
    const auto argument = QVariant::fromValue<qulonglong>(row);
    table.NotifyScriptWatchers(HF::SCRIPT_EVENT_ROW, argument);
    NotifyScriptWatchers(HF::SCRIPT_EVENT_ROW, argument);
}

QString orbDuckDB_Cursor::UpdateRecord()
{
    const rc::Ptr<HF::I_LDatabase> database = get_Database();
    if (!database)
        return QStringLiteral("[orbDuckDB_Cursor::UpdateRecord] The cursor was deleted.");
    const unsigned long row = *m_position;
    // The changed columns alone tell the row: their old values stand in the condition.
    QMap<QString, Columns> changed;
    for (const rc::Ref<orbDuckDB_Field>& column : m_columns)
        if (column->Pending().contains(row))
            changed[column->get_SourceTable()].append(column.get());
    for (auto entry = changed.cbegin(); entry != changed.cend(); ++entry) {
        const rc::Ptr<HF::I_LTable> table = SourceTable(database, entry.key());
        if (!table)
            continue;
        Update update;
        StartUpdate(update, *table, entry.value(), row);
        AddCondition(update, *table, entry.value(), row);
        const QList<HF::LQueryResult> results =
            database->SqlQuery(update.text, HF::QUERY_SILENT_ERROR, update.binds, HF::CURSOR_CLIENT,
                               HF::LOCK_OPTIMISTIC, HF::CURSOR_FORWARD);
        if (!HF::IsQuerySuccess(results)) {
            const QString text = Diagnostic(update, HF::GetQueryErrors(results));
            HF::LogError(text);
            return text;
        }
        FinishRow(*table, entry.value(), row);
    }
    return QString();
}

void orbDuckDB_Cursor::SaveAllRecords()
{
    const rc::Ptr<HF::I_LDatabase> database = get_Database();
    if (!database)
        return;
    QMap<QString, Columns> keys;
    QMap<QString, QMap<unsigned long, Columns>> changed;
    for (const rc::Ref<orbDuckDB_Field>& column : m_columns) {
        if (column->get_IsKey())
            keys[column->get_SourceTable()].append(column.get());
        for (auto edit = column->Pending().keyBegin(); edit != column->Pending().keyEnd(); ++edit)
            changed[column->get_SourceTable()][*edit].append(column.get());
    }
    for (auto entry = changed.cbegin(); entry != changed.cend(); ++entry) {
        const Columns keyColumns = keys.value(entry.key());
        const rc::Ptr<HF::I_LTable> table = keyColumns.isEmpty() ? nullptr : SourceTable(database, entry.key());
        if (!table)
            continue;
        for (auto edits = entry->cbegin(); edits != entry->cend(); ++edits) {
            const unsigned long row = edits.key();
            *m_position = row;
            Update update;
            StartUpdate(update, *table, edits.value(), row);
            AddCondition(update, *table, keyColumns, row);
            if (*m_position != row)
                return; // whoever watches the edits took over the position
            const QList<HF::LQueryResult> results =
                database->SqlQuery(update.text, HF::QUERY_SILENT_ERROR, update.binds, HF::CURSOR_CLIENT,
                                   HF::LOCK_OPTIMISTIC, HF::CURSOR_FORWARD);
            if (HF::IsQuerySuccess(results)) {
                FinishRow(*table, edits.value(), row);
                if (ErrorLogger)
                    ErrorLogger->Log(LogWritten, Diagnostic(update, QString()));
                continue;
            }
            const QString text = Diagnostic(update, HF::GetQueryErrors(results));
            if (ErrorLogger)
                ErrorLogger->Log(LogFailure, text);
            else
                HF::LogError(text);
        }
    }
}
