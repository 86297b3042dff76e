// SPDX-License-Identifier: GPL-3.0-or-later
#include "studio/translations.h"

#include <QCoreApplication>
#include <QLibraryInfo>
#include <QLocale>
#include <QTranslator>

void InstallTranslations(QCoreApplication& application)
{
    const QString chosen = qEnvironmentVariable("ORBIS_LANGUAGE");
    if (chosen == u"C")
        return;
    const QLocale locale = chosen.isEmpty() ? QLocale() : QLocale(chosen);
    auto* own = new QTranslator(&application);
    if (own->load(locale, QStringLiteral("orbis"), QStringLiteral("_"), QStringLiteral(":/i18n")))
        QCoreApplication::installTranslator(own);
    auto* qt = new QTranslator(&application);
    if (qt->load(locale, QStringLiteral("qtbase"), QStringLiteral("_"),
                 QLibraryInfo::path(QLibraryInfo::TranslationsPath)))
        QCoreApplication::installTranslator(qt);
}
