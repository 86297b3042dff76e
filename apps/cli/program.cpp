// SPDX-License-Identifier: GPL-3.0-or-later
#include "cli/program.h"

#include "cli/commands.h"
#include "cli/console.h"
#include "cli/exit_code.h"
#include "cli/output.h"
#include "cli/text_encoding.h"

#include "uik/settings.h"

#include <QCoreApplication>

#include <clocale>
#include <csignal>
#include <cstdlib>
#include <cstring>

#include <langinfo.h>
#include <unistd.h>

namespace orbis {

namespace {

/// Qt takes file names and words by the locale, and complains when that is not
/// UTF-8, as it is not on many a server.
void UseUtf8Locale()
{
    std::setlocale(LC_ALL, "");
    if (std::strcmp(::nl_langinfo(CODESET), "UTF-8") == 0)
        return;
    ::setenv("LC_ALL", "C.UTF-8", 1);
    std::setlocale(LC_ALL, "");
}

int Print(const QString& text)
{
    Output output(STDOUT_FILENO);
    output.Write(text);
    return FinishOutput(output);
}

} // namespace

int FinishOutput(Output& output)
{
    output.Flush();
    if (output.get_Error().isEmpty())
        return ExitDone;
    Console::Instance().Error(QObject::tr("cannot write the results: %1").arg(output.get_Error()));
    return ExitRefused;
}

int RunProgram(int argc, char** argv)
{
    std::signal(SIGPIPE, SIG_IGN); // a closed pipe shows at the write
    UseUtf8Locale();
    QCoreApplication application(argc, argv);
    QCoreApplication::setApplicationName(QStringLiteral("orbis"));

    Console& console = Console::Instance();
    QStringList arguments;
    for (int i = 1; i < argc; ++i) {
        const DecodedText decoded = DecodeUtf8(QByteArray(argv[i]));
        if (!decoded.error.isEmpty()) {
            console.Error(QObject::tr("argument %1 is not valid UTF-8").arg(i));
            return ExitUsage;
        }
        arguments.append(decoded.text);
    }
    const CommandLine line = ParseCommandLine(arguments, GlobalOptions(), Commands());
    if (line.Has(QStringLiteral("help")))
        return Print(line.command ? CommandHelp(*line.command, GlobalOptions())
                                  : ProgramHelp(GlobalOptions(), Commands()));
    if (line.Has(QStringLiteral("version")))
        return Print(QStringLiteral("orbis " ORBIS_VERSION "\n"));
    if (!line.error.isEmpty()) {
        console.Error(line.error);
        console.Say(QObject::tr("\"orbis --help\" tells more."));
        return ExitUsage;
    }
    if (line.Has(QStringLiteral("settings")))
        uik::SetSettingsFile(line.Value(QStringLiteral("settings")));
    try {
        return line.command->run(line);
    } catch (const std::exception& error) {
        console.Error(QString::fromUtf8(error.what()));
        return ExitRefused;
    }
}

} // namespace orbis
