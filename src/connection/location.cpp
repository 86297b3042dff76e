// SPDX-License-Identifier: GPL-3.0-or-later
#include "connection/location.h"

bool IsInMemoryLocation(const QString& location)
{
    if (location == QLatin1String(":memory:"))
        return true;
    if (!location.startsWith(QLatin1String("file:")))
        return false;
    const qsizetype query = location.indexOf(u'?', 5);
    return query >= 0 && location.indexOf(QLatin1String("mode=memory"), query + 1) >= 0;
}

bool IsCloudLocation(const QString& location)
{
    return location.startsWith(QLatin1String("md:"));
}
