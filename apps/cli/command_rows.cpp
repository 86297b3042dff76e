// SPDX-License-Identifier: GPL-3.0-or-later
#include "cli/background_work.h"
#include "cli/commands.h"
#include "cli/console.h"
#include "cli/exit_code.h"
#include "cli/json_printer.h"
#include "cli/signal_watch.h"
#include "cli/table_argument.h"
#include "cli/text_printers.h"

#include <QObject>

#include <unistd.h>

namespace orbis {

namespace {

struct Task
{
    unsigned long offset = 0;
    unsigned long limit = 1000;
    QList<HF::LSortField> order;
};

/// Nothing after telling what makes no sense.
std::optional<Task> ReadTask(const CommandLine& line)
{
    Task task;
    const auto number = [&line](const QString& option, unsigned long least, unsigned long& value) {
        if (!line.Has(option))
            return true;
        bool isNumber = false;
        value = line.Value(option).toULong(&isNumber);
        if (isNumber && value >= least && value <= 1ul << 60)
            return true;
        Console::Instance().Error(QObject::tr("--%1 takes a whole number from %2 on, not \"%3\"")
                                      .arg(option, QString::number(least), line.Value(option)));
        return false;
    };
    if (!number(QStringLiteral("offset"), 0, task.offset) || !number(QStringLiteral("limit"), 1, task.limit))
        return std::nullopt;
    for (const QString& text : line.Values(QStringLiteral("order"))) {
        const std::optional<HF::LSortField> field = ParseSortField(text);
        if (!field) {
            Console::Instance().Error(QObject::tr("\"%1\" is not an order; write COLUMN or COLUMN:desc").arg(text));
            return std::nullopt;
        }
        task.order.append(*field);
    }
    return task;
}

/// The window of a cursor.
class WindowRows final : public RowSource
{
public:
    explicit WindowRows(const rc::Ref<HF::I_LTableCursor>& cursor) : m_cursor(cursor), m_row(cursor->get_FirstRow())
    {
        for (int i = 0; i < cursor->get_FieldCount().Force(); ++i)
            if (const rc::Ptr<HF::I_LField> field = cursor->get_Field(i))
                m_columns.append({field->get_Name(), field->get_Property(PROP_TYPE_NAME).value.ToString(),
                                  field->get_Type().Force()});
    }

    const QList<Column>& get_Columns() const override { return m_columns; }
    bool First() override
    {
        m_row = m_cursor->get_FirstRow();
        return m_cursor->IsRowLoaded(m_row);
    }
    bool Next() override { return m_cursor->IsRowLoaded(++m_row); }
    Cell get_Cell(int column) const override
    {
        const rc::Ptr<HF::I_LSqlValue> value = m_cursor->ValueAt(m_row, column);
        return value ? ToCell(*value) : Cell();
    }

private:
    rc::Ref<HF::I_LTableCursor> m_cursor;
    QList<Column> m_columns;
    unsigned long m_row;
};

void PrintJson(Output& output, HF::I_LTableCursor& cursor, RowSource& rows, const QString& count)
{
    JsonWriter json(output);
    json.BeginObject();
    json.Key(u"columns");
    json.BeginArray();
    for (const Column& column : rows.get_Columns())
        json.Text(column.name);
    json.EndArray();
    json.Key(u"rows");
    json.BeginArray();
    const int columns = static_cast<int>(rows.get_Columns().size());
    for (bool more = rows.First(); more && !output.IsClosed(); more = rows.Next()) {
        json.BreakLine();
        json.BeginArray();
        for (int i = 0; i < columns; ++i)
            WriteCell(json, rows.get_Cell(i));
        json.EndArray();
    }
    json.EndArray();
    json.Key(u"keys");
    json.TextList(cursor.get_KeyNames());
    json.Key(u"count");
    json.Text(count);
    json.Key(u"sql");
    json.Text(cursor.get_WindowText());
    json.EndObject();
    json.Finish();
}

/// Reads the window and counts, on a worker, so that Ctrl-C ends it. An ExitCode.
int Read(HF::I_LTableCursor& cursor, const Task& task, bool count, QString& countText)
{
    const rc::Ptr<HF::LWindowRequest> window = cursor.RequestRows(task.offset);
    const rc::Ptr<HF::LCountRequest> counting = count ? cursor.RequestCount() : nullptr;
    if (!window || (count && !counting))
        return ExitRefused;
    BackgroundWork work([&] {
        window->Cancel();
        if (counting)
            counting->Cancel();
    });
    const bool ended = work.Run([&] {
        work.StepBegins();
        window->Run();
        if (counting && window->get_Rows())
            counting->Run();
        work.StepEnds();
    });
    if (!ended)
        return ExitSignal + SignalWatch::get_Signal();
    const auto shown = cursor.ShowWindow(rc::Ref<HF::LWindowRequest>(window));
    const QString error = !shown ? window->get_Error() : counting ? counting->get_Error() : QString();
    if (!shown || !error.isEmpty()) {
        Console::Instance().Error(error);
        return ExitRefused;
    }
    if (counting) {
        cursor.ShowCount(rc::Ref<HF::LCountRequest>(counting));
        countText = QString::number(cursor.get_RecordCount().Force());
    } else {
        countText = cursor.GetRecordCountText();
    }
    return ExitDone;
}

} // namespace

int RunRows(const CommandLine& line)
{
    const std::optional<Task> task = ReadTask(line);
    if (!task)
        return ExitUsage;
    const OpenedTable opened = OpenTable(line);
    if (opened.exitCode != ExitDone)
        return opened.exitCode;
    const rc::Ptr<HF::I_LTableCursor>& cursor = opened.cursor;
    cursor->put_UpdateBlocked(true);
    cursor->put_ShowMethods(line.Has(QStringLiteral("methods")));
    cursor->put_WindowSize(task->limit);
    cursor->SetSorting(task->order);
    QString count;
    if (const int exitCode = Read(*cursor, *task, line.Has(QStringLiteral("count")), count); exitCode != ExitDone)
        return exitCode;

    Output output(STDOUT_FILENO);
    WindowRows rows{rc::Ref<HF::I_LTableCursor>(cursor)};
    if (line.Has(QStringLiteral("json"))) {
        PrintJson(output, *cursor, rows, count);
    } else {
        const Outcome outcome{HF::LQueryResult::HasCursor, 0, {}};
        TablePrinter printer(output, [](const QString& words) { Console::Instance().Say(words); }, UseColor());
        printer.Print(outcome, &rows);
        printer.End();
        if (line.Has(QStringLiteral("count")))
            Console::Instance().Say(count == QLatin1String("1") ? QObject::tr("1 row in all")
                                                                : QObject::tr("%1 rows in all").arg(count));
    }
    return FinishOutput(output);
}

} // namespace orbis
