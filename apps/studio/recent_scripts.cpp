// SPDX-License-Identifier: GPL-3.0-or-later
#include "studio/recent_scripts.h"

#include "uik/settings.h"

namespace {

const QString Key = QStringLiteral("Studio/Script/Recent");
constexpr qsizetype Maximum = 10;

} // namespace

QStringList RecentScripts::All()
{
    QStringList paths = uik::settings().value(Key, QStringList()).toStringList();
    paths.removeAll(QString());
    return paths.mid(0, Maximum);
}

void RecentScripts::Add(const QString& path)
{
    QStringList paths = All();
    paths.removeAll(path);
    paths.prepend(path);
    uik::settings().setValue(Key, paths.mid(0, Maximum));
}

void RecentScripts::Remove(const QString& path)
{
    QStringList paths = All();
    paths.removeAll(path);
    uik::settings().setValue(Key, paths);
}

void RecentScripts::Clear()
{
    uik::settings().setValue(Key, QStringList());
}
