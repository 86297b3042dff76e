// SPDX-License-Identifier: GPL-3.0-or-later
#include "hf/background.h"
#include "hf/plugin.h"
#include "hf/services.h"
#include "i18n/translations.h"
#include "studio/appearance.h"
#include "studio/main_window.h"
#include "uik/settings.h"

#include <QApplication>
#include <QCommandLineParser>
#include <QMessageBox>

#include <cstdio>

int main(int argc, char** argv)
{
    QApplication application(argc, argv);
    QCoreApplication::setApplicationName(QStringLiteral("orbis-studio"));
    QCoreApplication::setApplicationVersion(QStringLiteral(ORBIS_VERSION));
    InstallTranslations(application);

    QCommandLineParser parser;
    parser.setApplicationDescription(QObject::tr("A window on DuckDB databases."));
    parser.addHelpOption();
    parser.addVersionOption();
    parser.addOption({QStringLiteral("plugin"), QObject::tr("The driver to load."), QStringLiteral("file")});
    parser.addOption({QStringLiteral("settings"), QObject::tr("Another settings file."), QStringLiteral("file")});
    parser.addOption({QStringLiteral("read-only"), QObject::tr("Open the databases read-only.")});
    parser.addPositionalArgument(QStringLiteral("databases"), QObject::tr("Databases to open."),
                                 QStringLiteral("[databases...]"));
    parser.process(application);
    if (parser.isSet(QStringLiteral("settings")))
        uik::SetSettingsFile(parser.value(QStringLiteral("settings")));
    ApplyAppearance();

    const QString path = parser.isSet(QStringLiteral("plugin"))
                             ? parser.value(QStringLiteral("plugin"))
                             : QCoreApplication::applicationDirPath() + QStringLiteral("/orb_duckdb.so");
    const HF::LLoadedPlugin loaded = HF::LoadPlugin(path);
    if (!loaded.plugin) {
        std::fprintf(stderr, "orbis-studio: %s\n", qPrintable(loaded.error));
        QMessageBox::critical(nullptr, QStringLiteral("Orbis Studio"), loaded.error);
        return 3;
    }

    int code = 0;
    {
        MainWindow window(*loaded.plugin);
        window.show();
        for (const QString& location : parser.positionalArguments())
            window.OpenLocation(HF::AbsoluteLocation(location), parser.isSet(QStringLiteral("read-only")));
        code = application.exec();
    }
    HF::WaitForWorkers(5000);
    return code;
}
