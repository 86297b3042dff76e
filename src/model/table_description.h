// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "hf/connection.h"

/// A check constraint of a described table.
struct CheckDescription
{
    QString expression;
    QString name;
    bool operator==(const CheckDescription& other) const { return expression == other.expression; }
};

/// A unique constraint of a described table; the same as another by its columns.
struct UniqueDescription
{
    QStringList columns;
    QString name;
    bool operator==(const UniqueDescription& other) const { return columns == other.columns; }
};

/// A column of a described table, plain or generated.
struct FieldDescription
{
    bool isNew = false;
    bool notNull = false;
    QString collation;
    QString comment;
    QString defaultText;
    QString generatedExpression; ///< empty: a plain column
    QString name;
    QString oldName; ///< in the table that there is; empty: the same
    QString typeText;

    bool IsGenerated() const { return !generatedExpression.isEmpty(); }
};

/// A foreign key; all names unquoted.
struct LinkDescription
{
    QStringList columns;
    QStringList parentColumns;
    QString name;
    QString table;
    QString parentTable;
    bool operator==(const LinkDescription& other) const = default;
};

/// An index of a described table.
struct IndexDescription
{
    bool unique = false;
    QStringList columns;    ///< names, and expressions as the engine prints them
    QString name;
    QString schema;
    QString table;
    QString comment;
    rc::Ptr<HF::I_LConnection> connection; ///< whose words decide on quotes
    QStringList tableColumns; ///< names that `columns` may mean; anything else is an expression
};

/// A table apart from the objects that it was read from, so that whoever makes
/// it anew may change it first.
struct orbDuckDB_DescTable
{
    QList<CheckDescription> checks;
    QList<FieldDescription> fields; ///< plain ones first
    QList<IndexDescription> indexes;
    QList<LinkDescription> links;   ///< those of other tables to this one as well
    QList<UniqueDescription> uniques;
    QString comment;
    QString name;
    QString schema; ///< empty for a temporary table
    QStringList primaryKey;
    bool temporary = false;
    rc::Ptr<HF::I_LConnection> connection; ///< whose words decide on quotes
    /// The schema is not where the engine looks first: names of other tables need it.
    bool schemaNeeded = false;

    /// Foreign keys that stand in this table, to itself or others.
    QList<LinkDescription> OwnLinks() const;
};

/// Describes a table of the catalogue, or a model object with what is pending.
/// Waits for lists that have not been read.
orbDuckDB_DescTable DescribeTable(const rc::Ref<const HF::I_LSchemaObject>& table);
LinkDescription DescribeLink(const rc::Ref<const HF::I_LSchemaObject>& link);
IndexDescription DescribeIndex(const rc::Ref<const HF::I_LSchemaObject>& index);

/// The children of a table that are to be in it.
class orbDuckDB_ChildFilter
{
public:
    explicit orbDuckDB_ChildFilter(const rc::Ref<const HF::I_LSchemaObject>& table);
    bool Passes(const rc::Ref<const HF::I_LSchemaObject>& child) const;

private:
    bool m_all;
};

/// What keeps a description from being whole: a list of the table's parts that cannot be read,
/// which would look like an empty one. Empty when all is there. Reads what was not read yet.
QString UnreadParts(const HF::I_LSchemaObject& table);
/// Whether an existing link belongs to the table's twin: one of the two is temporary,
/// and both have one name.
bool IsOfTwin(const HF::I_LSchemaObject& link, const HF::I_LSchemaObject& table);
/// The links that stand in a table or point to it, pending ones and those to be
/// dropped included.
RcList<HF::I_LSchemaObject> LinksOfTable(const rc::Ref<const HF::I_LSchemaObject>& table);
