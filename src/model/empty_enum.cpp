// SPDX-License-Identifier: GPL-3.0-or-later
#include "model/empty_enum.h"

#include "hf/sql_text.h"

#include <QRegularExpression>

namespace {

const QLatin1String SessionType("\"__orb_empty_enum\"");

/// What stands in quotes matches as a whole, so that nothing inside of it does.
QRegularExpression Pattern()
{
    return QRegularExpression(QStringLiteral("'(?:[^']|'')*'|\"(?:[^\"]|\"\")*\"|\\bENUM\\s*\\(\\s*\\)"),
                              QRegularExpression::CaseInsensitiveOption);
}

} // namespace

namespace EmptyEnum {

bool Is(const QString& type)
{
    return Named(type, QStringLiteral("?")) == u"?";
}

QString Definition()
{
    return QStringLiteral("ENUM ( SELECT '' WHERE false )");
}

QString Named(const QString& type, const QString& name)
{
    if (!type.contains(QLatin1String("ENUM"), Qt::CaseInsensitive))
        return type;
    QString result;
    qsizetype done = 0;
    const QRegularExpression pattern = Pattern();
    for (QRegularExpressionMatchIterator found = pattern.globalMatch(type); found.hasNext();) {
        const QRegularExpressionMatch match = found.next();
        if (match.capturedView().startsWith(u'\'') || match.capturedView().startsWith(u'"'))
            continue;
        result += QStringView(type).mid(done, match.capturedStart() - done);
        result += name.isEmpty() ? QString(SessionType) : name;
        done = match.capturedEnd();
    }
    result += QStringView(type).mid(done);
    return result;
}

QString WithType(QString statement, bool temporary)
{
    if (!statement.contains(SessionType))
        return statement;
    HF::FinishQuery(statement, 0);
    return QLatin1String("CREATE OR REPLACE TEMP TYPE ") + SessionType + QLatin1String(" AS ") + Definition()
        + QLatin1String(";\n\n") + statement
        + (temporary ? QString() : QString(QLatin1String("\n\nDROP TYPE temp.") + SessionType + u';'));
}

} // namespace EmptyEnum
