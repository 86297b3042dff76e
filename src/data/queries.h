// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <QString>

/// Texts of statements on columns.
namespace queries {

/// Select item that gives a value whole, or its first `maxLength` bytes or characters.
/// The engine's substr() takes no BLOB and counts from 1, so that bytes go by
/// their hexadecimal digits.
inline QString LongValue(const QString& quotedName, bool isBlob, long maxLength)
{
    if (maxLength < 0)
        return quotedName;
    if (isBlob)
        return QStringLiteral("unhex( substring( to_hex( %1 ), 1, %2 ) ) AS %1").arg(quotedName, QString::number(2 * maxLength));
    return QStringLiteral("substr( %1, 1, %2 ) AS %1").arg(quotedName, QString::number(maxLength));
}

/// Select item that gives the first `limit` bytes of a BLOB: two digits each.
inline QString Preview(const QString& name, long limit)
{
    return QStringLiteral("unhex( substring( to_hex( %1 ), 1, %2 ) )").arg(name, QString::number(limit * 2));
}

/// Whether a column is indexed (any row) and unique (a true).
inline const QString& FieldFlags()
{
    static const QString text = QStringLiteral(
        "(  SELECT TRUE AS is_unique FROM duckdb_constraints() WHERE constraint_type IN ( 'UNIQUE', 'PRIMARY KEY' ) "
        "AND array_length( constraint_column_names ) = 1 AND database_name IN ( current_catalog(),'temp' ) "
        "AND schema_name = $PPNAME AND table_name = $PNAME AND constraint_column_names[1] = $NAME ) "
        "UNION (SELECT is_unique FROM duckdb_indexes() WHERE database_name IN ( current_catalog(), 'temp' ) "
        "AND schema_name = $PPNAME AND table_name = $PNAME AND contains( sql, $INDEX_ON ) )");
    return text;
}

/// The same within one catalogue, from 1.1 on: a temporary table and one that it hides
/// have indexes of their own. $CATALOG is an SQL expression.
inline const QString& FieldFlagsSince101()
{
    static const QString text = QString(FieldFlags())
                                    .replace(QLatin1String("IN ( current_catalog(),'temp' )"), QLatin1String("= $CATALOG"))
                                    .replace(QLatin1String("IN ( current_catalog(), 'temp' )"), QLatin1String("= $CATALOG"));
    return text;
}

} // namespace queries
