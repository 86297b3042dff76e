// SPDX-License-Identifier: GPL-3.0-or-later
#include "weft/ident.h"

#include <map>
#include <mutex>

namespace weft {

method_ident method_ident_untyped(const ByteArray& name)
{
    struct Table
    {
        std::mutex mutex;
        std::map<QByteArray, const QByteArray*> names;
    };
    static Table* table = new Table;
    std::lock_guard guard(table->mutex);
    const auto [place, isNew] = table->names.try_emplace(name.ToQByteArray(), nullptr);
    if (isNew)
        place->second = &place->first;
    return method_ident(place->second);
}

method_ident method_ident_untyped(const QString& name)
{
    return method_ident_untyped(ByteArray(name.toUtf8()));
}

} // namespace weft
