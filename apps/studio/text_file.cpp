// SPDX-License-Identifier: GPL-3.0-or-later
#include "studio/text_file.h"

#include <QFile>
#include <QObject>
#include <QSaveFile>
#include <QStringDecoder>

std::optional<QString> ReadTextFile(const QString& path, QString* error)
{
    QFile file(path);
    if (!file.open(QIODevice::ReadOnly)) {
        *error = QObject::tr("%1: %2").arg(path, file.errorString());
        return std::nullopt;
    }
    QStringDecoder decoder(QStringDecoder::Utf8);
    QString text = decoder.decode(file.readAll());
    if (decoder.hasError()) {
        *error = QObject::tr("%1 is not UTF-8 text").arg(path);
        return std::nullopt;
    }
    return text;
}

bool WriteTextFile(const QString& path, const QString& text, QString* error)
{
    QSaveFile file(path);
    if (file.open(QIODevice::WriteOnly) && file.write(text.toUtf8()) >= 0 && file.commit())
        return true;
    *error = QObject::tr("%1: %2").arg(path, file.errorString());
    return false;
}
