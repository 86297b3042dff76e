// SPDX-License-Identifier: GPL-3.0-or-later
#include "cli/script_text.h"

#include "cli/text_encoding.h"

#include <QFile>
#include <QObject>

#include <cstdio>

namespace orbis {

ScriptText ReadScript(const QString& path)
{
    QFile file;
    bool opened;
    QString name = path;
    if (path == QLatin1String("-")) {
        name = QObject::tr("standard input");
        opened = file.open(stdin, QIODevice::ReadOnly);
    } else {
        file.setFileName(path);
        opened = file.open(QIODevice::ReadOnly);
    }
    const auto unreadable = [&] {
        return ScriptText{{}, QObject::tr("cannot read %1: %2").arg(name, file.errorString()), true};
    };
    if (!opened)
        return unreadable();
    const QByteArray bytes = file.readAll();
    if (file.error() != QFileDevice::NoError)
        return unreadable();
    DecodedText decoded = DecodeUtf8(bytes);
    if (!decoded.error.isEmpty())
        return {{}, QStringLiteral("%1: %2").arg(name, decoded.error), false};
    return {decoded.text, {}, false};
}

} // namespace orbis
