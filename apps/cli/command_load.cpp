// SPDX-License-Identifier: GPL-3.0-or-later
#include "cli/background_work.h"
#include "cli/commands.h"
#include "cli/console.h"
#include "cli/exit_code.h"
#include "cli/host_session.h"
#include "cli/progress_bar.h"
#include "cli/signal_watch.h"

#include "hf/encoded_text.h"
#include "hf/task_load_dump.h"

#include <QFile>

#include <unistd.h>

namespace orbis {

namespace {

constexpr qsizetype ShownErrors = 20;

/// What failed, line by line, and how much.
void TellFailures(const HF::LTask_LoadDumpSQL& task)
{
    Console& console = Console::Instance();
    const QList<HF::LLoadError> errors = task.get_Errors();
    for (qsizetype i = 0; i < std::min(errors.size(), ShownErrors); ++i)
        console.Error(errors[i].Line ? QObject::tr("line %1: %2").arg(errors[i].Line).arg(errors[i].Text) : errors[i].Text);
    if (errors.size() > ShownErrors)
        console.Say(QObject::tr("... and %n more", nullptr, static_cast<int>(errors.size() - ShownErrors)));
    if (task.get_ErrorCount())
        console.Error(QObject::tr("%1 of %2 statements failed")
                          .arg(task.get_ErrorCount())
                          .arg(task.get_ErrorCount() + task.get_StatementCount()));
}

} // namespace

int RunLoad(const CommandLine& line)
{
    Console& console = Console::Instance();
    const QString path = line.arguments[1];
    const QString encoding = line.Value(QStringLiteral("encoding"), QStringLiteral("UTF-8"));
    if (!HF::DumpEncodings().contains(encoding, Qt::CaseInsensitive)) {
        console.Error(QObject::tr("unknown encoding \"%1\"").arg(encoding));
        return ExitUsage;
    }
    auto input = std::make_unique<QFile>(path);
    if (path == u"-" ? !input->open(STDIN_FILENO, QIODevice::ReadOnly) : !input->open(QIODevice::ReadOnly)) {
        console.Error(QObject::tr("cannot open \"%1\": %2").arg(path, input->errorString()));
        return ExitCannotOpen;
    }
    const std::unique_ptr<HostSession> session = HostSession::Load(line);
    const rc::Ptr<HF::I_LDatabase> opened = session ? session->Open(line.arguments[0]) : nullptr;
    const auto database = opened ? rc::cast<HF::LDatabase>(rc::Ref<HF::I_LDatabase>(*opened)) : nullptr;
    if (!database)
        return ExitCannotOpen;

    ProgressBar bar(QObject::tr("bytes"));
    const auto progress = [&bar](unsigned long done, unsigned long total, unsigned long) {
        bar.Show(static_cast<qint64>(done), static_cast<qint64>(total));
    };
    const rc::Ptr<HF::LTask> made = database->LoadDump(path, encoding, nullptr, progress);
    const auto task = made ? rc::cast<HF::LTask_LoadDumpSQL>(rc::Ref<HF::LTask>(*made)) : nullptr;
    if (!task) {
        console.Error(QObject::tr("nothing can be loaded into this database"));
        return ExitRefused;
    }
    task->put_Options(!line.Has(QStringLiteral("one-by-one")), line.Has(QStringLiteral("stop-on-error")));
    task->put_Input(std::move(input));
    BackgroundWork work([&task] { task->Cancel(); });
    const bool ended = work.Run([&task] { task->run(); });
    TellFailures(*task);
    int exitCode = ExitDone;
    if (!ended) {
        exitCode = ExitSignal + SignalWatch::get_Signal();
    } else if (task->get_State() != HF::TASK_DONE || task->get_ErrorCount()) {
        if (!task->get_ErrorCount())
            console.Error(task->get_Error());
        exitCode = ExitRefused;
    }
    if (!session->Close() && exitCode == ExitDone)
        exitCode = ExitRefused;
    return exitCode;
}

} // namespace orbis
