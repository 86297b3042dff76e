// SPDX-License-Identifier: GPL-3.0-or-later
#include "connection/file_filter.h"

#include <QObject>

QString DatabaseFileFilter(const QStringList& extensions)
{
    QString patterns;
    for (const QString& extension : extensions)
        patterns += QLatin1String(" *.") + extension;
    return QObject::tr("Database Files") + QLatin1String(" (") + patterns.trimmed() + QLatin1String(");;") +
           QObject::tr("All Files") + QLatin1String(" (*)");
}
