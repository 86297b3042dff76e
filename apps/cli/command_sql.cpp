// SPDX-License-Identifier: GPL-3.0-or-later
#include "cli/background_work.h"
#include "cli/bind_value.h"
#include "cli/commands.h"
#include "cli/console.h"
#include "cli/exit_code.h"
#include "cli/host_session.h"
#include "cli/result_printer.h"
#include "cli/script_text.h"
#include "cli/signal_watch.h"

#include <memory>

#include <unistd.h>

namespace orbis {

namespace {

/// What a command line of "sql" asks for.
struct SqlTask
{
    QStringList texts; ///< one after another, each with any number of statements
    RcList<HF::I_LSqlValue> binds;
    int exitCode = ExitDone; ///< not ExitDone: the task makes no sense, and that was told
};

SqlTask Refuse(int exitCode, const QString& error)
{
    Console::Instance().Error(error);
    return {{}, {}, exitCode};
}

/// Everything is read before the database is opened, so that a mistake leaves
/// nothing behind.
SqlTask ReadTask(const CommandLine& line)
{
    SqlTask task;
    const QString format = line.Value(QStringLiteral("format"), ResultFormats().first());
    if (!ResultFormats().contains(format))
        return Refuse(ExitUsage, QObject::tr("unknown format \"%1\"; formats: %2")
                                     .arg(format, ResultFormats().join(QLatin1String(", "))));
    for (const QString& text : line.Values(QStringLiteral("bind"))) {
        const ParsedBind bind = ParseBind(text);
        if (!bind.value)
            return Refuse(ExitUsage, bind.error);
        task.binds.append(rc::Ref<HF::I_LSqlValue>(bind.value));
    }
    task.texts = line.Values(QStringLiteral("command"));
    const bool hasFile = line.arguments.size() > 1;
    if (!task.texts.isEmpty()) {
        if (hasFile)
            return Refuse(ExitUsage, QObject::tr("give either -c or a file, not both"));
        return task;
    }
    if (!hasFile && ::isatty(STDIN_FILENO) == 1)
        return Refuse(ExitUsage, QObject::tr("give the text by -c SQL, a file, or \"-\" for standard input"));
    const ScriptText script = ReadScript(hasFile ? line.arguments[1] : QStringLiteral("-"));
    if (!script.error.isEmpty())
        return Refuse(script.isUnreadable ? ExitCannotOpen : ExitUsage, script.error);
    task.texts.append(script.text);
    return task;
}

/// Runs the texts one after another and prints what they give. Lives on a worker.
class SqlRun
{
public:
    SqlRun(const SqlTask& task, const rc::Ref<HF::I_LDatabase>& database, ResultPrinter& printer, Output& output)
        : m_task(task), m_query(database->MakeSqlQuery()), m_printer(printer), m_output(output),
          m_work([this] { Stop(); })
    {
        m_query->SetInterruptible(true);
    }

    /// An ExitCode.
    int Run()
    {
        const bool ended = m_work.Run([this] { RunTexts(); });
        if (!ended)
            return ExitSignal + SignalWatch::get_Signal();
        return m_exitCode;
    }

private:
    void Stop()
    {
        m_output.Cancel();
        m_query->Interrupt();
    }

    void RunTexts()
    {
        m_printer.Begin();
        bool ended = false;
        for (const QString& text : m_task.texts) {
            if (ended || m_output.IsClosed() || m_work.IsStopping())
                break;
            m_work.StepBegins();
            QList<HF::LQueryResult> results = m_query->Execute(text, HF::QUERY_SILENT_ERROR, m_task.binds);
            m_work.StepEnds();
            // A result goes as soon as it is printed: its rows may be large.
            while (!results.isEmpty() && !ended && !m_work.IsStopping())
                ended = !PrintResult(results.takeFirst());
            m_output.Flush(); // whoever reads need not wait for the next text
        }
        m_printer.End();
        m_output.Flush();
    }

    /// False when the statement failed.
    bool PrintResult(const HF::LQueryResult& result)
    {
        Outcome outcome{result.Status, result.AffectedRecords, result.Error};
        // A cursor whose reading failed has lost its connection; the log told why.
        const bool cutShort = result.Cursor && !result.Cursor->get_Connection();
        if (cutShort)
            outcome.error = Console::Instance().get_LastError();
        if (result.Cursor) {
            CursorRows rows{rc::Ref<HF::I_LCursor>(result.Cursor)};
            m_printer.Print(outcome, &rows);
        } else {
            m_printer.Print(outcome, nullptr);
        }
        if (result.Status != HF::LQueryResult::Failed && !cutShort)
            return true;
        m_output.Flush();
        if (!cutShort)
            Console::Instance().Error(result.Error.isEmpty() ? QObject::tr("the statement did not run")
                                                             : result.Error);
        m_exitCode = ExitRefused;
        return false;
    }

    const SqlTask& m_task;
    rc::Ref<HF::I_LSqlQuery> m_query;
    ResultPrinter& m_printer;
    Output& m_output;
    BackgroundWork m_work;
    int m_exitCode = ExitDone;
};

} // namespace

int RunSql(const CommandLine& line)
{
    const SqlTask task = ReadTask(line);
    if (task.exitCode != ExitDone)
        return task.exitCode;
    const std::unique_ptr<HostSession> session = HostSession::Load(line);
    if (!session)
        return ExitCannotOpen;
    const rc::Ptr<HF::I_LDatabase> database = session->Open(line.arguments[0]);
    if (!database)
        return ExitCannotOpen;

    Output output(STDOUT_FILENO);
    const auto printer =
        MakeResultPrinter(line.Value(QStringLiteral("format"), ResultFormats().first()), output,
                          [](const QString& words) { Console::Instance().Say(words); }, UseColor());
    int exitCode = SqlRun(task, rc::Ref<HF::I_LDatabase>(database), *printer, output).Run();
    if (exitCode == ExitDone)
        exitCode = FinishOutput(output);
    if (!session->Close() && exitCode == ExitDone) {
        Console::Instance().Error(QObject::tr("the database did not close cleanly"));
        exitCode = ExitRefused;
    }
    return exitCode;
}

} // namespace orbis
