// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <QHash>
#include <QList>
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

/// One part of a name or a string literal, where it stands in its text.
struct Piece
{
    QString text; ///< without quotes
    qsizetype start = 0;
    qsizetype end = 0;
};

/// A name with what stands before its dots, or a string literal.
struct Name
{
    QList<Piece> parts;
    bool isString = false;
    bool isRelation = false; ///< stands where a table may stand
    bool isCall = false;     ///< a bracket follows
    QString calledBy;        ///< the function whose first argument it is
};

/// All names and literals of a statement in their order, but for the words that
/// tell where a table may stand.
QList<Name> Names(const QString& statement);

/// Objects in lower case by their schema, in lower case.
using Objects = QHash<QString, QSet<QString>>;
/// What else bears the name of a catalogue.
enum class OtherBearer { None, Column, Schema };
/// A statement without the name of the catalogue that its objects are in, also where
/// nextval() and currval() get it in a string: the text then works in a database of
/// another name. `catalog.schema.object` goes where `objects` has it; `catalog.object`
/// becomes `main.object`, unless that may be something else of the name.
QString WithoutCatalog(const QString& statement, const QString& catalog, const Objects& objects, OtherBearer other);

/// `SELECT * FROM (VALUES ...) AS valueslist`, as the engine prints a bare VALUES, as the
/// latter: it would print one more such SELECT around it each time.
QString WithBareValues(const QString& statement);

} // namespace SqlTokens
