// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <QList>
#include <QString>

#include <optional>

namespace orbis {

/// One step of a path in the tree: a name, and the kind where the name alone is
/// ambiguous.
struct TreeStep
{
    QString kind; ///< empty: any
    QString name;
    bool operator==(const TreeStep&) const = default;
};

/// Words of the kinds that a step may name.
const QList<QString>& TreeKinds();

/// Takes "schema/name/..." apart. A step may begin with a kind and a colon; a
/// name with "/" or ":" inside stands in double quotes, doubled inside. Nothing
/// for an empty step or an open quote.
std::optional<QList<TreeStep>> ParseTreePath(const QString& path);

} // namespace orbis
