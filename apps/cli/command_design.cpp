// SPDX-License-Identifier: GPL-3.0-or-later
#include "cli/changes_file.h"
#include "cli/commands.h"
#include "cli/console.h"
#include "cli/exit_code.h"
#include "cli/host_session.h"
#include "cli/json_writer.h"

#include <QFile>
#include <QJsonDocument>
#include <QObject>

#include <unistd.h>

namespace orbis {

namespace {

const char* Word(HF::LDesignReport::State state)
{
    switch (state) {
    case HF::LDesignReport::Done: return "done";
    case HF::LDesignReport::Failed: return "failed";
    case HF::LDesignReport::TakenBack: return "taken back";
    default: return "not run";
    }
}

/// The plan as a report in which nothing has run.
HF::LDesignReport Preview(const HF::LDesignPlan& plan)
{
    HF::LDesignReport report;
    report.success = plan.problems.isEmpty();
    report.error = plan.problems.join(u'\n');
    report.warnings = plan.warnings;
    for (const QString& statement : plan.statements + plan.afterwards)
        report.steps.append({statement, HF::LDesignReport::NotRun});
    return report;
}

void WriteJson(Output& output, const HF::LDesignReport& report, bool applied, bool inTransaction)
{
    JsonWriter json(output);
    json.BeginObject();
    json.Key(u"applied");
    json.Boolean(applied && report.success);
    json.Key(u"transaction");
    json.Boolean(inTransaction);
    json.Key(u"error");
    report.error.isEmpty() ? json.Null() : json.Text(report.error);
    json.Key(u"warnings");
    json.TextList(report.warnings);
    json.Key(u"statements");
    json.BeginArray();
    for (const HF::LDesignReport::Step& step : report.steps) {
        json.BreakLine();
        json.BeginObject();
        json.Key(u"sql");
        json.Text(step.statement);
        json.Key(u"state");
        json.Text(QString::fromLatin1(Word(step.state)));
        json.EndObject();
    }
    json.EndArray();
    json.EndObject();
    json.Finish();
}

void WriteText(Output& output, const HF::LDesignReport& report, const HF::LDesignPlan& plan, bool applied)
{
    for (qsizetype i = 0; i < report.steps.size(); ++i) {
        if (!applied && plan.inTransaction && i == 0)
            output.Write(QStringLiteral("BEGIN;\n"));
        if (applied)
            output.Write(QStringLiteral("-- %1\n").arg(QLatin1String(Word(report.steps[i].state))));
        output.Write(report.steps[i].statement + QLatin1String(";\n"));
        if (!applied && plan.inTransaction && i + 1 == plan.statements.size())
            output.Write(QStringLiteral("COMMIT;\n"));
    }
}

} // namespace

int RunDesign(const CommandLine& line)
{
    QFile file(line.arguments[1]);
    const bool open = line.arguments[1] == u"-" ? file.open(stdin, QIODevice::ReadOnly) : file.open(QIODevice::ReadOnly);
    if (!open) {
        Console::Instance().Error(QObject::tr("cannot read \"%1\": %2").arg(line.arguments[1], file.errorString()));
        return ExitCannotOpen;
    }
    QJsonParseError wrong;
    const QJsonDocument changes = QJsonDocument::fromJson(file.readAll(), &wrong);
    if (!changes.isArray()) {
        Console::Instance().Error(QObject::tr("\"%1\" holds no list of changes: %2")
                                      .arg(line.arguments[1], wrong.error ? wrong.errorString() : QString()));
        return ExitUsage;
    }
    const std::unique_ptr<HostSession> session = HostSession::Load(line);
    const rc::Ptr<HF::I_LDatabase> database = session ? session->Open(line.arguments[0]) : nullptr;
    if (!database)
        return ExitCannotOpen;

    const auto design = rc::make<HF::LDesign>(rc::Ref(database));
    if (const QString problem = ReadChanges(design, changes.array()); !problem.isEmpty()) {
        Console::Instance().Error(problem);
        return ExitUsage;
    }
    const bool apply = line.Has(QStringLiteral("apply"));
    const HF::LDesignPlan plan = design->get_Plan();
    for (const QString& warning : plan.warnings)
        Console::Instance().Say(QObject::tr("warning: %1").arg(warning));
    const bool runs = apply && plan.problems.isEmpty();
    const HF::LDesignReport report = runs ? design->Apply() : Preview(plan);
    // What the engine said is in the error log, which this program shows.
    if (!runs && !report.error.isEmpty())
        Console::Instance().Error(report.error);
    Output output(STDOUT_FILENO);
    if (line.Has(QStringLiteral("json")))
        WriteJson(output, report, apply, plan.inTransaction);
    else
        WriteText(output, report, plan, runs);
    const int written = FinishOutput(output);
    return written != ExitDone ? written : report.success ? ExitDone : ExitRefused;
}

} // namespace orbis
