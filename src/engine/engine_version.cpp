// SPDX-License-Identifier: GPL-3.0-or-later
#include "engine/engine_version.h"

#include "engine/kernel_text.h"

#include "nub/orbsql/duckdb_database.h"

#include <QStringList>

namespace {

QString VersionText()
{
    const nub::smart_ptr<nub::orbsql::I_LocalConnection> connection = nub::orbsql::GetLocalConnection();
    if (!connection)
        return QString();
    return KernelText::ToQString(connection->get_VersionText());
}

QString WithoutPrefix(const QString& text)
{
    return text.startsWith(u'v') ? text.mid(1) : text;
}

} // namespace

QString EngineVersionString()
{
    try {
        return WithoutPrefix(VersionText());
    } catch (...) {
        return QString();
    }
}

int EngineVersionNumber()
{
    static const int number = ParseEngineVersion(EngineVersionString());
    return number;
}

int ParseEngineVersion(QString text)
{
    static constexpr int Weights[] = {10000, 100, 1};
    const QStringList pieces = WithoutPrefix(text).split(u'.');
    int number = 0;
    for (int i = 0; i < 3 && i < pieces.size(); ++i)
        number += Weights[i] * pieces[i].toInt();
    return number;
}
