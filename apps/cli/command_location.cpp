// SPDX-License-Identifier: GPL-3.0-or-later
#include "cli/commands.h"
#include "cli/console.h"
#include "cli/exit_code.h"
#include "cli/host_session.h"
#include "cli/output.h"

#include <QFileInfo>

#include <memory>

#include <unistd.h>

namespace orbis {

int RunCreate(const CommandLine& line)
{
    const QString location = line.arguments[0];
    Console& console = Console::Instance();
    if (line.Has(QStringLiteral("read-only"))) {
        console.Error(QObject::tr("a new database cannot be read-only"));
        return ExitUsage;
    }
    const std::unique_ptr<HostSession> session = HostSession::Load(line);
    if (!session)
        return ExitCannotOpen;
    const rc::Ptr<HF::I_LConnection> connection = session->get_Connection();
    if (!connection || location.isEmpty()) {
        console.Error(QObject::tr("the name of the database is empty"));
        return ExitUsage;
    }
    const bool existed = QFileInfo::exists(location);
    const int errors = console.get_ErrorCount();
    const rc::Ptr<HF::I_LDatabase> database =
        connection->CreateDatabase(location, {{QStringLiteral("location"), 0}}).Force();
    if (!database) {
        if (console.get_ErrorCount() == errors)
            console.Error(QObject::tr("cannot create \"%1\"").arg(location));
        return existed ? ExitRefused : ExitCannotOpen;
    }
    return database->Close().Force() ? ExitDone : ExitRefused;
}

int RunProbe(const CommandLine& line)
{
    const std::unique_ptr<HostSession> session = HostSession::Load(line);
    if (!session)
        return ExitCannotOpen;
    const bool reachable =
        session->get_Factory()->ProbeLocation(session->MakeParameters(line.arguments[0])) == HF::PROBE_REACHABLE;
    Output output(STDOUT_FILENO);
    output.Write(reachable ? QStringLiteral("reachable\n") : QStringLiteral("unreachable\n"));
    const int exitCode = FinishOutput(output);
    return reachable ? exitCode : ExitCannotOpen;
}

int RunBackup(const CommandLine& line)
{
    Console& console = Console::Instance();
    const QString folder = line.arguments[1];
    if (!QFileInfo(folder).isDir()) {
        console.Error(QObject::tr("\"%1\" is not a folder").arg(folder));
        return ExitCannotOpen;
    }
    const std::unique_ptr<HostSession> session = HostSession::Load(line);
    if (!session)
        return ExitCannotOpen;
    const rc::Ptr<HF::I_LDatabase> database = session->Open(line.arguments[0]);
    if (!database)
        return ExitCannotOpen;
    const rc::Ptr<HF::LAction> action = database->get_Action(QString::fromLatin1(HF::DO_BACKUP));
    if (!action) {
        console.Error(QObject::tr("this database cannot be backed up"));
        return ExitRefused;
    }
    // The action takes the folder as its argument instead of asking for one, and
    // tells of a failure in the error log only.
    const int errors = console.get_ErrorCount();
    action->Run({rc::Ref<HF::LTreeItem>(*database)}, folder);
    const bool failed = console.get_ErrorCount() != errors;
    return session->Close() && !failed ? ExitDone : ExitRefused;
}

} // namespace orbis
