// SPDX-License-Identifier: GPL-3.0-or-later
#include "cli/tree_path.h"

namespace orbis {

const QList<QString>& TreeKinds()
{
    static const QList<QString> kinds{
        QStringLiteral("schema"), QStringLiteral("table"),  QStringLiteral("view"),  QStringLiteral("function"),
        QStringLiteral("field"),  QStringLiteral("method"), QStringLiteral("index"), QStringLiteral("unique"),
        QStringLiteral("check"),  QStringLiteral("link"),   QStringLiteral("sequence")};
    return kinds;
}

std::optional<QList<TreeStep>> ParseTreePath(const QString& path)
{
    QList<TreeStep> steps;
    qsizetype at = 0;
    while (at < path.size()) {
        TreeStep step;
        for (const QString& kind : TreeKinds())
            if (path.mid(at).startsWith(kind + u':')) {
                step.kind = kind;
                at += kind.size() + 1;
                break;
            }
        if (at < path.size() && path[at] == u'"') {
            bool closed = false;
            for (++at; at < path.size(); ++at) {
                if (path[at] != u'"') {
                    step.name += path[at];
                } else if (at + 1 < path.size() && path[at + 1] == u'"') {
                    step.name += u'"';
                    ++at;
                } else {
                    closed = true;
                    ++at;
                    break;
                }
            }
            if (!closed || (at < path.size() && path[at] != u'/'))
                return std::nullopt;
        } else {
            const qsizetype slash = path.indexOf(u'/', at);
            const qsizetype end = slash < 0 ? path.size() : slash;
            step.name = path.mid(at, end - at);
            at = end;
        }
        if (step.name.isEmpty())
            return std::nullopt;
        steps.append(step);
        if (at < path.size() && ++at == path.size())
            return std::nullopt; // a slash at the end
    }
    return steps;
}

} // namespace orbis
