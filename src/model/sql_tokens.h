// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <QHash>
#include <QSet>
#include <QString>
#include <QStringList>

/// Pieces of the engine's own texts: expressions as it prints them, and the
/// CREATE TABLE of a table. They are looked at token by token, so that what
/// stands in quotes never counts.
namespace SqlTokens {

/// Whether an expression may name one of the columns, ignoring case.
bool Mentions(const QString& expression, const QString& column);
/// The expression with columns renamed; keys of `names` in lower case. What is
/// no column (a function, a type behind AS, a field of a struct) stays.
QString Rename(const QString& expression, const QHash<QString, QString>& names);
/// Column name in lower case -> collation, from the text of a CREATE TABLE.
QHash<QString, QString> Collations(const QString& createTable);
/// `CAST(x AS type)` without its cast, any other text as it is. The engine puts one
/// around the expression of each generated column, whatever stands there already.
QString WithoutCast(const QString& expression);
/// The type of such a cast; empty for any other text.
QString TypeOfCast(const QString& expression);

/// Objects in lower case by their schema, in lower case.
using Objects = QHash<QString, QSet<QString>>;
/// A statement without the name of the catalogue that its objects are in, also where
/// nextval() and currval() get it in a string: the text then works in a database of
/// another name. `catalog.schema.object` goes where `objects` has it. `catalog.object`
/// becomes `main.object` unless `mayBeOther`: something else bears that name too.
QString WithoutCatalog(const QString& statement, const QString& catalog, const Objects& objects, bool mayBeOther);

} // namespace SqlTokens
