// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <QList>
#include <QString>
#include <QStringList>

#include <map>
#include <random>

namespace support {

/// A set of tables as a test wants them, apart from any database and from the
/// code under test. Columns are known by numbers, so that names may change.
struct World
{
    struct Column
    {
        int id = 0;
        QString name;
        QString type;
        QString values;      ///< expression of the row number i
        QString defaultText; ///< as SQL; empty: none
        QString comment;
        QString collation;
        bool nullable = true;
        bool distinct = false; ///< its values differ from row to row
        QString later;         ///< set once all rows are there, %1 is the row number's column
        QString expression;  ///< of a generated column, %1 is column `source`
        int source = -1;

        bool IsGenerated() const { return !expression.isEmpty(); }
    };
    struct Check
    {
        QString expression; ///< with %1
        int column = 0;
    };
    struct Index
    {
        QString name;
        bool unique = false;
        QList<int> columns;
        QString expression; ///< instead of columns, with %1 as columns[0]
        QString comment;
    };
    struct ForeignKey
    {
        QList<int> columns;
        int parent = 0; ///< table number, its own for a key to itself
        QList<int> parentColumns;
    };
    struct Table
    {
        int id = 0;
        QString schema;
        QString name;
        bool temporary = false;
        bool hasRows = true;
        QString comment;
        QList<Column> columns; ///< the first one is the row number
        QList<int> key;
        QList<QList<int>> uniques;
        QList<Check> checks;
        QList<Index> indexes;
        QList<ForeignKey> links;

        Column& Get(int column);
        const Column& Get(int column) const { return const_cast<Table*>(this)->Get(column); }
        bool Has(const QString& columnName) const;
        /// Anything but the column itself that speaks of it.
        bool Uses(int column) const;
        QString Qualified() const;
    };

    std::map<int, Table> tables;
    int next = 1;

    QList<int> Children(int table) const;
    /// Whether a foreign key has the column, at either end.
    bool IsLinked(int column) const;
    /// Statements that make the world, with its rows.
    QString Script(bool rows) const;
};

/// Quoted, whatever it is.
QString Ident(QString name);
QString Literal(QString text);

/// Makes worlds, names and columns by a seed.
class WorldMaker
{
public:
    WorldMaker(unsigned seed, bool commentsOnTemporary) : m_random(seed), m_temporaryComments(commentsOnTemporary) {}

    World Make();
    int Below(int limit) { return int(m_random() % unsigned(limit)); }
    bool Chance(int percent) { return Below(100) < percent; }
    QString Name(const QString& prefix);
    World::Column NewColumn(World& world, const World::Table& table);
    World::Column NewGenerated(World& world, const World::Table& table);
    /// A foreign key of the table to another one or to itself, with columns for it; false without a target.
    bool AddForeignKey(World& world, World::Table& table, const World::Table& parent);
    World::Table NewTable(World& world, const QString& schema, bool temporary);
    bool MayComment(const World::Table& table) const { return m_temporaryComments || !table.temporary; }
    /// A type that every value of the column has a counterpart in; empty without one.
    QString OtherType(const World::Column& column);
    QString OtherDefault(const World::Column& column);

    static constexpr int Rows = 7;

private:
    std::mt19937 m_random;
    bool m_temporaryComments;
    int m_number = 0;
    /// Names that mean something to the engine, each to be had once.
    QStringList m_words = {"select", "Order", "table", "group", "END", "begin", "references", "check", "rowid2", "values"};
};

} // namespace support
