// SPDX-License-Identifier: GPL-3.0-or-later
#include "cli/program.h"

#include "cli/commands.h"
#include "cli/console.h"
#include "cli/exit_code.h"
#include "cli/output.h"
#include "cli/text_encoding.h"
#include "i18n/translations.h"

#include "uik/settings.h"

#include <QApplication>
#include <QCoreApplication>

#include <algorithm>
#include <clocale>
#include <csignal>
#include <cstdio>
#include <cstdlib>
#include <cstring>
#include <memory>

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

/// Only what shows windows pays for them; without a display nobody sees them.
std::unique_ptr<QCoreApplication> MakeApplication(int& argc, char** argv, bool usesWindows)
{
    if (!usesWindows)
        return std::make_unique<QCoreApplication>(argc, argv);
    if (qEnvironmentVariableIsEmpty("QT_QPA_PLATFORM") && qEnvironmentVariableIsEmpty("DISPLAY") &&
        qEnvironmentVariableIsEmpty("WAYLAND_DISPLAY"))
        qputenv("QT_QPA_PLATFORM", "offscreen");
    // A server has no such folder, and nothing here needs it.
    const QtMessageHandler former = qInstallMessageHandler([](QtMsgType, const QMessageLogContext&, const QString& words) {
        if (!words.startsWith(QLatin1String("QStandardPaths: XDG_RUNTIME_DIR")))
            std::fprintf(stderr, "%s\n", qPrintable(words));
    });
    auto application = std::make_unique<QApplication>(argc, argv);
    qInstallMessageHandler(former);
    return application;
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
    // Made before the line is read, which takes a language.
    const bool usesWindows = std::any_of(argv + 1, argv + argc, [](const char* one) { return std::strcmp(one, "script") == 0; });
    const std::unique_ptr<QCoreApplication> made = MakeApplication(argc, argv, usesWindows);
    QCoreApplication& application = *made;
    QCoreApplication::setApplicationName(QStringLiteral("orbis"));
    InstallTranslations(application);

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
    // Documents for other programs are the same in every language.
    if (line.Has(QStringLiteral("json")) || line.Value(QStringLiteral("format")).endsWith(QLatin1String("json")))
        RemoveTranslations(application);
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
