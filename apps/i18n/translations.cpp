// SPDX-License-Identifier: GPL-3.0-or-later
#include "i18n/translations.h"

#include <QCoreApplication>
#include <QLibraryInfo>
#include <QLocale>
#include <QTranslator>

namespace {

/// Loads "NAME_de_DE" or "NAME_de" from the folder and installs it.
bool Install(QCoreApplication& application, const QString& folder, const QString& name, const QLocale& language)
{
    auto* translator = new QTranslator(&application);
    if (translator->load(name + u'_' + language.name(), folder)) // cuts the name at "_" by itself
        return QCoreApplication::installTranslator(translator);
    delete translator;
    return false;
}

} // namespace

void InstallTranslations(QCoreApplication& application)
{
    const QString chosen = qEnvironmentVariable("ORBIS_LANGUAGE");
    const QStringList languages = chosen.isEmpty() ? QLocale().uiLanguages() : QStringList(chosen);
    for (const QString& name : languages) {
        const QLocale language(name);
        // What stands in front of a known language in the user's list counts.
        if (language.language() == QLocale::C || language.language() == QLocale::English)
            break;
        if (Install(application, QStringLiteral(":/i18n"), QStringLiteral("orbis"), language)) {
            Install(application, QLibraryInfo::path(QLibraryInfo::TranslationsPath), QStringLiteral("qtbase"), language);
            return;
        }
    }
    Install(application, QStringLiteral(":/i18n"), QStringLiteral("orbis"), QLocale(QLocale::English)); // its plurals
}

void RemoveTranslations(QCoreApplication& application)
{
    for (QTranslator* translator : application.findChildren<QTranslator*>())
        delete translator; // takes itself out of the application
}
