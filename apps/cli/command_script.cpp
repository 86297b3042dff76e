// SPDX-License-Identifier: GPL-3.0-or-later
#include "cli/command_line.h"
#include "cli/commands.h"
#include "cli/console.h"
#include "cli/exit_code.h"
#include "cli/host_session.h"
#include "cli/output.h"
#include "cli/script_text.h"
#include "cli/signal_watch.h"

#include "script/script_engine.h"

#include <QThread>

#include <memory>

#include <unistd.h>

namespace orbis {

namespace {

/// Hears signals on a thread of its own: the main one may be in a loop of the
/// script that never ends.
class StopThread final : public QThread
{
public:
    explicit StopThread(ScriptEngine& engine) : m_engine(engine) { start(); }
    ~StopThread() override
    {
        quit();
        wait();
    }

protected:
    void run() override
    {
        const SignalWatch watch([this] { m_engine.Stop(); });
        exec();
    }

private:
    ScriptEngine& m_engine;
};

} // namespace

int RunScript(const CommandLine& line)
{
    Console& console = Console::Instance();
    const bool isText = line.Has(QStringLiteral("eval"));
    if (!isText && line.arguments.isEmpty()) {
        console.Error(QObject::tr("give a script file, or its text by --eval"));
        return ExitUsage;
    }
    QStringList arguments = line.arguments;
    QString text = line.Value(QStringLiteral("eval"));
    QString name = QStringLiteral("eval");
    if (!isText) {
        name = arguments.takeFirst();
        const ScriptText script = ReadScript(name);
        if (!script.error.isEmpty()) {
            console.Error(script.error);
            return script.isUnreadable ? ExitCannotOpen : ExitUsage;
        }
        text = script.text;
    }
    const std::unique_ptr<HostSession> session = HostSession::Load(line);
    if (!session)
        return ExitCannotOpen;

    Output output(STDOUT_FILENO);
    int exitCode = ExitDone;
    {
        ScriptEngine engine{rc::Ptr<HF::I_LConnectionFactory>(session->get_Factory())};
        engine.SetOutput(
            [&output](const QString& words) {
                output.Write(QString(words + u'\n'));
                output.Flush();
            },
            [&console](const QString& words) { console.Say(words); });
        const StopThread stop(engine);
        exitCode = engine.Run(text, name, arguments);
    }
    if (SignalWatch::get_Signal() != 0)
        return ExitSignal + SignalWatch::get_Signal();
    const int written = FinishOutput(output);
    return exitCode != ExitDone ? exitCode : written;
}

} // namespace orbis
