// SPDX-License-Identifier: GPL-3.0-or-later
#include "cli/commands.h"
#include "cli/console.h"
#include "cli/exit_code.h"
#include "cli/table_argument.h"

#include "hf/values.h"

#include <QFile>
#include <QObject>
#include <QStringDecoder>

namespace orbis {

namespace {

/// What a command line of "edit" asks for.
struct Task
{
    enum Kind { Insert, Update, Delete };

    Kind kind = Insert;
    QList<ColumnText> values;
    QList<ColumnText> conditions;
    bool all = false;
};

std::optional<Task> Refuse(const QString& error)
{
    Console::Instance().Error(error);
    return std::nullopt;
}

/// False after telling which text is none.
bool ReadColumns(const QStringList& texts, QList<ColumnText>& columns)
{
    for (const QString& text : texts) {
        const std::optional<ColumnText> column = ParseColumnText(text);
        if (!column) {
            Refuse(QObject::tr("\"%1\" is no value; write COLUMN=VALUE, COLUMN=@FILE or COLUMN:null").arg(text));
            return false;
        }
        columns.append(*column);
    }
    return true;
}

std::optional<Task> ReadTask(const CommandLine& line)
{
    Task task;
    const QString kinds[] = {QStringLiteral("insert"), QStringLiteral("update"), QStringLiteral("delete")};
    int given = 0;
    for (int kind = Task::Insert; kind <= Task::Delete; ++kind)
        if (line.Has(kinds[kind])) {
            task.kind = Task::Kind(kind);
            ++given;
        }
    if (given != 1)
        return Refuse(QObject::tr("give one of --insert, --update and --delete"));
    if (task.kind != Task::Delete && !ReadColumns(line.Values(kinds[task.kind]), task.values))
        return std::nullopt;
    if (!ReadColumns(line.Values(QStringLiteral("where")), task.conditions))
        return std::nullopt;
    if (task.kind == Task::Update && task.values.isEmpty())
        return Refuse(QObject::tr("--update needs a value: %1").arg(QStringLiteral("COLUMN=VALUE")));
    task.all = line.Has(QStringLiteral("all"));
    if (task.kind == Task::Insert && (task.all || line.Has(QStringLiteral("where"))))
        return Refuse(QObject::tr("--insert takes neither --where nor --all"));
    QStringList names;
    for (const ColumnText& value : task.values) {
        if (names.contains(value.column, Qt::CaseInsensitive))
            return Refuse(QObject::tr("column \"%1\" stands twice").arg(value.column));
        names.append(value.column);
    }
    return task;
}

/// Turns texts into values of their columns.
class ValueReader
{
public:
    explicit ValueReader(HF::I_LTableCursor& cursor) : m_cursor(cursor) {}

    /// An ExitCode; what is wrong has been told.
    int Read(const QList<ColumnText>& texts, QList<HF::LColumnValue>& values)
    {
        for (const ColumnText& text : texts) {
            const int column = Find(text.column);
            if (column < 0) {
                Console::Instance().Error(QObject::tr("there is no column \"%1\" in \"%2\"")
                                              .arg(text.column, m_cursor.get_Name()));
                return ExitRefused;
            }
            const rc::Ptr<HF::I_LField> field = m_cursor.get_Field(column);
            if (text.kind == ColumnText::Null) {
                values.append({field->get_Name(), rc::make<HF::LValueString>(QString(), true)});
            } else if (text.kind == ColumnText::Text) {
                values.append({field->get_Name(), m_cursor.MakeValue(column, text.text)});
            } else if (const int exitCode = ReadBytes(text.text, column, values); exitCode != ExitDone) {
                return exitCode;
            }
        }
        return ExitDone;
    }

private:
    int Find(const QString& name) const
    {
        for (const Qt::CaseSensitivity sensitivity : {Qt::CaseSensitive, Qt::CaseInsensitive})
            for (int i = 0; i < m_cursor.get_FieldCount().Force(); ++i)
                if (m_cursor.get_Field(i)->get_Name().compare(name, sensitivity) == 0)
                    return i;
        return -1;
    }

    int ReadBytes(const QString& path, int column, QList<HF::LColumnValue>& values)
    {
        QFile file(path);
        QByteArray bytes;
        if (file.open(QIODevice::ReadOnly))
            bytes = file.readAll();
        if (!file.isOpen() || file.error() != QFileDevice::NoError) {
            Console::Instance().Error(QObject::tr("cannot read \"%1\": %2").arg(path, file.errorString()));
            return ExitCannotOpen;
        }
        const rc::Ptr<HF::I_LField> field = m_cursor.get_Field(column);
        if (field->get_Type().Force() == HF::FIELD_BLOB) {
            values.append({field->get_Name(), rc::make<HF::LValueByteArray>(bytes)});
        } else {
            QStringDecoder decoder(QStringDecoder::Utf8, QStringDecoder::Flag::ConvertInitialBom);
            const QString text = decoder.decode(bytes);
            if (decoder.hasError()) {
                Console::Instance().Error(
                    QObject::tr("\"%1\" is not UTF-8 text, which the column \"%2\" wants").arg(path, field->get_Name()));
                return ExitRefused;
            }
            values.append({field->get_Name(), m_cursor.MakeValue(column, text)});
        }
        return ExitDone;
    }

    HF::I_LTableCursor& m_cursor;
};

HF::LSaveResult Write(HF::I_LTableCursor& cursor, const Task& task, const QList<HF::LColumnValue>& values,
                      const QList<HF::LColumnValue>& conditions)
{
    switch (task.kind) {
    case Task::Insert: return cursor.InsertRow(values);
    case Task::Update: return cursor.UpdateRows(values, conditions, task.all);
    default: return cursor.DeleteRows(conditions, task.all);
    }
}

QString Words(Task::Kind kind, qint64 rows)
{
    switch (kind) {
    case Task::Insert: return rows == 1 ? QObject::tr("1 row inserted") : QObject::tr("%1 rows inserted").arg(rows);
    case Task::Update: return rows == 1 ? QObject::tr("1 row updated") : QObject::tr("%1 rows updated").arg(rows);
    default: return rows == 1 ? QObject::tr("1 row deleted") : QObject::tr("%1 rows deleted").arg(rows);
    }
}

} // namespace

int RunEdit(const CommandLine& line)
{
    const std::optional<Task> task = ReadTask(line);
    if (!task)
        return ExitUsage;
    OpenedTable opened = OpenTable(line);
    if (opened.exitCode != ExitDone)
        return opened.exitCode;
    rc::Ptr<HF::I_LTableCursor>& cursor = opened.cursor;
    QList<HF::LColumnValue> values, conditions;
    ValueReader reader(*cursor);
    if (const int exitCode = reader.Read(task->values, values); exitCode != ExitDone)
        return exitCode;
    if (const int exitCode = reader.Read(task->conditions, conditions); exitCode != ExitDone)
        return exitCode;
    const HF::LSaveResult result = Write(*cursor, *task, values, conditions);
    cursor.reset();
    if (!result.saved) {
        Console::Instance().Error(result.get_Error());
        return ExitRefused;
    }
    Console::Instance().Say(Words(task->kind, result.rows));
    if (!opened.session->Close()) {
        Console::Instance().Error(QObject::tr("the database did not close cleanly"));
        return ExitRefused;
    }
    return ExitDone;
}

} // namespace orbis
