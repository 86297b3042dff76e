// SPDX-License-Identifier: GPL-3.0-or-later
#include "cli/background_work.h"
#include "cli/commands.h"
#include "cli/console.h"
#include "cli/exit_code.h"
#include "cli/host_session.h"
#include "cli/progress_bar.h"
#include "cli/signal_watch.h"

#include "hf/encoded_text.h"
#include "hf/safe_target.h"
#include "hf/task_dump_tables.h"

#include <QFile>
#include <QFileInfo>

#include <unistd.h>

namespace orbis {

namespace {

/// What a command line of "dump" asks for.
struct DumpOrder
{
    HF::LSQLDumpOptions options;
    HF::ELDumpData data = HF::DUMP_BOTH;
    QString encoding;
    QString error;
};

/// A number from 0 up; the option's default without it.
bool ReadNumber(const CommandLine& line, const QString& option, int& number)
{
    if (!line.Has(option))
        return true;
    bool good = false;
    number = line.Value(option).toInt(&good);
    return good && number >= 0;
}

DumpOrder ReadOrder(const CommandLine& line)
{
    DumpOrder order;
    order.options = {.Clean = line.Has(QStringLiteral("clean")),
                     .Transaction = !line.Has(QStringLiteral("no-transaction")),
                     .MultiRowInsert = !line.Has(QStringLiteral("single-row")),
                     .Replace = line.Has(QStringLiteral("replace")),
                     .InsertLimitRows = 250,
                     .InsertLimitData = 250};
    const QStringList kinds{QStringLiteral("data"), QStringLiteral("structure"), QStringLiteral("both")};
    const qsizetype kind = kinds.indexOf(line.Value(QStringLiteral("data"), kinds.last()));
    order.encoding = line.Value(QStringLiteral("encoding"), QStringLiteral("UTF-8"));
    if (kind < 0)
        order.error = QObject::tr("--data takes one of: %1").arg(kinds.join(QLatin1String(", ")));
    else if (!HF::DumpEncodings().contains(order.encoding, Qt::CaseInsensitive))
        order.error = QObject::tr("unknown encoding \"%1\"").arg(order.encoding);
    else if (!ReadNumber(line, QStringLiteral("insert-rows"), order.options.InsertLimitRows)
             || !ReadNumber(line, QStringLiteral("insert-kib"), order.options.InsertLimitData))
        order.error = QObject::tr("--insert-rows and --insert-kib take a number, 0 for no limit");
    else if (line.Has(QStringLiteral("schema")) && line.Has(QStringLiteral("table")))
        order.error = QObject::tr("give either schemas or tables, not both");
    order.data = HF::ELDumpData(std::max<qsizetype>(kind, 0));
    if (!order.options.MultiRowInsert)
        order.options.InsertLimitRows = order.options.InsertLimitData = 0;
    return order;
}

/// The objects that the command line names; `missing` is the first that there is not.
RcList<HF::LTreeItem> Select(const CommandLine& line, const HF::I_LDatabase& database, QString& missing)
{
    RcList<HF::LTreeItem> selection;
    const RcList<HF::I_LSchemaObject> schemas = database.get_ChildObjects(HF::TYPE_SCHEMA).Force();
    for (const QString& name : line.Values(QStringLiteral("schema"))) {
        const qsizetype before = selection.size();
        for (const rc::Ref<HF::I_LSchemaObject>& schema : schemas)
            if (schema->get_Name() == name)
                selection.append(schema);
        if (selection.size() == before && missing.isEmpty())
            missing = name;
    }
    // Names may hold dots, so each schema is tried.
    for (const QString& name : line.Values(QStringLiteral("table"))) {
        const qsizetype before = selection.size();
        for (const rc::Ref<HF::I_LSchemaObject>& each : schemas) {
            const auto schema = rc::cast<HF::I_LSchema>(each);
            const QString prefix = each->get_Name() + u'.';
            rc::Ptr<HF::I_LTable> table;
            if (schema && name.startsWith(prefix))
                table = schema->get_Table(name.mid(prefix.size()));
            else if (schema && each->get_Name() == u"main")
                table = schema->get_Table(name);
            if (table)
                selection.append(rc::Ref<HF::LTreeItem>(*table));
        }
        if (selection.size() == before && missing.isEmpty())
            missing = name;
    }
    return selection;
}

bool IsPlainTarget(const QString& path)
{
    const QFileInfo info(path);
    return !info.exists() || info.isFile();
}

/// Runs the task on a worker with a bar; an ExitCode. The file beside the target
/// is made while signals are heard, so that it does not outlive the run.
int RunTask(const rc::Ref<HF::LTask_DumpTablesToSQL>& task, const QString& path, std::unique_ptr<HF::LSafeTarget>& target)
{
    QString noFile;
    BackgroundWork work([&task] { task->Cancel(); });
    const bool ended = work.Run([&] {
        auto output = std::make_unique<QFile>();
        if (path == u"-") {
            output->open(STDOUT_FILENO, QIODevice::WriteOnly);
        } else if (IsPlainTarget(path)) {
            target = std::make_unique<HF::LSafeTarget>(path);
            noFile = target->get_Error();
            output->setFileName(target->get_WorkPath());
        } else {
            output->setFileName(path);
        }
        if (noFile.isEmpty() && !output->isOpen() && !output->open(QIODevice::WriteOnly))
            noFile = output->errorString();
        if (!noFile.isEmpty())
            return;
        task->put_Output(std::move(output));
        task->run();
    });
    Console& console = Console::Instance();
    if (!ended)
        return ExitSignal + SignalWatch::get_Signal();
    if (!noFile.isEmpty()) {
        console.Error(QObject::tr("cannot write \"%1\": %2").arg(path, noFile));
        return ExitCannotOpen;
    }
    if (!task->get_OutputError().isEmpty()) {
        console.Error(QObject::tr("cannot write the dump: %1").arg(task->get_OutputError()));
        return ExitRefused;
    }
    if (task->get_State() != HF::TASK_DONE) {
        console.Error(task->get_Error());
        return ExitRefused;
    }
    return ExitDone;
}

} // namespace

int RunDump(const CommandLine& line)
{
    Console& console = Console::Instance();
    const DumpOrder order = ReadOrder(line);
    const QString path = line.arguments[1];
    if (!order.error.isEmpty()) {
        console.Error(order.error);
        return ExitUsage;
    }
    const QString source = QFileInfo(line.arguments[0]).canonicalFilePath();
    if (path != u"-" && !source.isEmpty() && source == QFileInfo(path).canonicalFilePath()) {
        console.Error(QObject::tr("the dump would take the place of the database"));
        return ExitUsage;
    }
    const std::unique_ptr<HostSession> session = HostSession::Load(line);
    const rc::Ptr<HF::I_LDatabase> opened = session ? session->Open(line.arguments[0]) : nullptr;
    const auto database = opened ? rc::cast<HF::LDatabase>(rc::Ref<HF::I_LDatabase>(*opened)) : nullptr;
    if (!database)
        return ExitCannotOpen;
    QString missing;
    const RcList<HF::LTreeItem> selection = Select(line, *database, missing);
    if (!missing.isEmpty()) {
        console.Error(QObject::tr("there is no schema or table \"%1\"").arg(missing));
        return ExitRefused;
    }

    ProgressBar bar(QObject::tr("rows"));
    rc::Ptr<HF::LTask_DumpTablesToSQL> task;
    long tablesDone = 0, rowsBefore = 0, rowsOfTable = 0;
    const auto progress = [&](long table, long done, long) {
        if (table != tablesDone) {
            rowsBefore += rowsOfTable;
            tablesDone = table;
        }
        rowsOfTable = std::max(done, 0l);
        bar.Show(rowsBefore + rowsOfTable, task->get_RowCount());
        if (!task->get_OutputError().isEmpty())
            task->Cancel(); // there is nobody to write for
    };
    const rc::Ptr<HF::LTask> made = database->MakeDump(path, HF::DUMP_KIND_SQL, order.data, order.encoding, nullptr, selection,
                                                       progress);
    task = made ? rc::cast<HF::LTask_DumpTablesToSQL>(rc::Ref<HF::LTask>(*made)) : nullptr;
    if (!task) {
        console.Error(QObject::tr("this database cannot be dumped"));
        return ExitRefused;
    }
    task->put_Options(order.options);
    // A dump that is cut short must not stand under its name.
    std::unique_ptr<HF::LSafeTarget> target;
    int exitCode = RunTask(rc::Ref<HF::LTask_DumpTablesToSQL>(*task), path, target);
    if (exitCode == ExitDone && target && !target->Commit()) {
        console.Error(QObject::tr("cannot write \"%1\": %2").arg(path, target->get_Error()));
        exitCode = ExitRefused;
    }
    if (!session->Close() && exitCode == ExitDone)
        exitCode = ExitRefused;
    return exitCode;
}

} // namespace orbis
