// SPDX-License-Identifier: GPL-3.0-or-later
#include "model/table_script.h"

#include "engine/engine.h"
#include "engine/engine_version.h"
#include "hf/connection.h"
#include "hf/sql_text.h"
#include "model/empty_enum.h"
#include "model/text_helpers.h"

const QString TemporaryTableName = QStringLiteral("__orb_temp_table");

namespace {

bool SameName(const QString& one, const QString& other)
{
    return one.compare(other, Qt::CaseInsensitive) == 0;
}

using Connection = rc::Ptr<HF::I_LConnection>;

QString Q(const QString& name, const Connection& connection)
{
    return orbDuckDB_Engine::Instance().QuoteName(name, connection);
}

QString Idents(const QStringList& names)
{
    QStringList quoted;
    for (const QString& name : names)
        quoted.append(QuoteIdent(name));
    return quoted.join(QLatin1String(", "));
}

QString ConstraintHead(const QString& quotedName)
{
    return QLatin1String("CONSTRAINT ") + quotedName + u' ';
}

QString ColumnLine(const FieldDescription& field, const orbDuckDB_DescTable& table)
{
    QString line = Q(field.name, table.connection) + u' ' + field.typeText;
    if (field.notNull && !field.IsGenerated())
        line += QLatin1String(" NOT NULL");
    if (!field.defaultText.isEmpty())
        line += QLatin1String(" DEFAULT ") + DefaultLiteral(field.defaultText);
    if (table.primaryKey.size() == 1 && SameName(table.primaryKey.first(), field.name))
        line += QLatin1String(" PRIMARY KEY");
    // Behind a generated column's type the engine takes no collation.
    if (!field.collation.isEmpty() && field.collation.toUpper() != QLatin1String("BINARY") && !field.IsGenerated())
        line += QLatin1String(" COLLATE ") + field.collation;
    if (field.IsGenerated())
        line += QLatin1String(" AS (") + field.generatedExpression + u')';
    return line;
}

QString ForeignKey(const orbDuckDB_DescTable& table, const LinkDescription& link, const QString& newName)
{
    QString text = link.name.isEmpty() ? QString() : ConstraintHead(Q(link.name, table.connection));
    // A key to the table itself follows it to its new name.
    const QString parent = SameName(link.parentTable, table.name) ? newName : link.parentTable;
    text += QLatin1String("FOREIGN KEY ( ") + Idents(link.columns) + QLatin1String(" ) REFERENCES ");
    text += table.schemaNeeded ? QualifiedName(table.schema, parent) : Q(parent, table.connection);
    if (!link.parentColumns.isEmpty())
        text += QLatin1String("( ") + Idents(link.parentColumns) + QLatin1String(" )");
    return text;
}

QString CreateText(const orbDuckDB_DescTable& table, const QString& newName)
{
    if (table.fields.isEmpty())
        return QLatin1String("-- Need to add at least one column to create table '") + newName + u'\'';
    QString text = QLatin1String("CREATE ") + (table.temporary ? QLatin1String("TEMP ") : QLatin1String());
    text += QLatin1String("TABLE ") + QualifiedName(table.schema, newName) + u'(';
    for (qsizetype i = 0; i < table.fields.size(); ++i)
        text += QLatin1String(i ? ",\n\t" : "\n\t") + ColumnLine(table.fields[i], table);
    for (const LinkDescription& link : table.OwnLinks()) {
        if (text.endsWith(u'\n'))
            text.chop(1);
        text += QLatin1String(",\n\t") + ForeignKey(table, link, newName) + u'\n';
    }
    if (table.primaryKey.size() > 1)
        text += QLatin1String(",\n\tPRIMARY KEY ( ") + Idents(table.primaryKey) + QLatin1String(" )");
    for (const CheckDescription& check : table.checks)
        text += QLatin1String(",\n\t") + (check.name.isEmpty() ? QString() : ConstraintHead(QuoteIdent(check.name)))
                + QLatin1String("CHECK ( ") + check.expression + QLatin1String(" )");
    for (const UniqueDescription& unique : table.uniques)
        if (!unique.columns.isEmpty())
            text += QLatin1String(",\n\t")
                    + (unique.name.isEmpty() ? QString() : ConstraintHead(QuoteIdent(unique.name)))
                    + QLatin1String("UNIQUE( ") + Idents(unique.columns) + QLatin1String(" )");
    return EmptyEnum::WithType(text + QLatin1String(" );"), table.temporary);
}

/// The plain columns that both tables have: their names there and here.
struct CopiedColumns
{
    QStringList into;
    QStringList from;
};

CopiedColumns Copied(const orbDuckDB_DescTable& table)
{
    CopiedColumns columns;
    for (const FieldDescription& field : table.fields) {
        if (field.isNew || field.IsGenerated())
            continue;
        columns.into.append(Q(field.name, table.connection));
        columns.from.append(Q(field.oldName.isEmpty() ? field.name : field.oldName, table.connection));
    }
    return columns;
}

/// Without a column to copy there is no row that could come along, and no such statement.
QString CopyText(const QString& target, const CopiedColumns& columns, const QString& source)
{
    if (columns.into.isEmpty())
        return QString();
    return QLatin1String("\n\nINSERT INTO ") + target + u'(' + columns.into.join(QLatin1String(", "))
           + QLatin1String(")\n\tSELECT ") + columns.from.join(QLatin1String(", ")) + QLatin1String(" FROM ") + source
           + QLatin1String(";\n");
}

QString CommentsText(const orbDuckDB_DescTable& table, const QString& target)
{
    QString text;
    if (!table.comment.isEmpty())
        text += QLatin1String("\nCOMMENT ON TABLE ") + target + QLatin1String(" IS ")
                + QuoteStringLiteral(table.comment) + QLatin1String(";\n");
    for (const FieldDescription& field : table.fields)
        if (!field.comment.isEmpty())
            text += QLatin1String("\nCOMMENT ON COLUMN ") + target + u'.' + Q(field.name, table.connection) + QLatin1String(" IS ")
                    + QuoteStringLiteral(field.comment) + QLatin1String(";\n");
    return text;
}

QString IndexesText(const orbDuckDB_DescTable& table, const QString& target)
{
    QString text;
    for (IndexDescription index : table.indexes) {
        index.schema = table.schema;
        index.table = target;
        text += IndexScript(index);
    }
    return text;
}

/// Foreign keys of the table to itself.
QList<LinkDescription> SelfLinks(const orbDuckDB_DescTable& table)
{
    QList<LinkDescription> links = table.OwnLinks();
    links.removeIf([&](const LinkDescription& link) { return !SameName(link.parentTable, table.name); });
    return links;
}

/// The rows of a table that refers to itself. The engine wants each row that another one points to
/// to be there before, in an earlier batch at least; the rounds of a recursion are such batches.
QString CopyBackText(const orbDuckDB_DescTable& table, const QString& target, const QString& copy)
{
    const CopiedColumns columns = Copied(table);
    const auto inCopy = [&](const QString& name) {
        for (qsizetype i = 0; i < columns.into.size(); ++i)
            if (SameName(columns.into[i], Q(name, table.connection)))
                return columns.from[i];
        return QString();
    };
    QStringList pairs;
    for (const LinkDescription& link : SelfLinks(table)) {
        const QStringList& parents = link.parentColumns.isEmpty() ? table.primaryKey : link.parentColumns;
        QStringList same;
        for (qsizetype i = 0; i < std::min(link.columns.size(), parents.size()); ++i)
            if (const QString child = inCopy(link.columns[i]), parent = inCopy(parents[i]); !child.isEmpty() && !parent.isEmpty())
                same.append(QLatin1String("c.") + child + QLatin1String(" = p.") + parent);
        if (!same.isEmpty())
            pairs.append(QLatin1String("SELECT c.\"__orb_row\", p.\"__orb_row\" FROM \"__orb_rows\" c JOIN \"__orb_rows\" p ON ")
                         + same.join(QLatin1String(" AND ")));
    }
    if (pairs.isEmpty())
        return CopyText(target, columns, copy);
    // Rows that no round reaches come with the first one, so that the engine refuses them: none gets lost.
    return QLatin1String("\n\nINSERT INTO ") + target + u'(' + columns.into.join(QLatin1String(", "))
           + QLatin1String(")\n\tWITH RECURSIVE \"__orb_rows\" AS MATERIALIZED (SELECT row_number() OVER () AS "
                           "\"__orb_row\", * FROM ")
           + copy + QLatin1String("),\n\t\"__orb_pairs\"(\"__orb_child\", \"__orb_parent\") AS MATERIALIZED (")
           + pairs.join(QLatin1String(" UNION "))
           + QLatin1String(
               "),\n\t\"__orb_steps\"(\"__orb_step\", \"__orb_depth\") AS (SELECT \"__orb_row\", 0 FROM \"__orb_rows\" ANTI JOIN "
               "\"__orb_pairs\" ON \"__orb_child\" = \"__orb_row\" UNION SELECT \"__orb_child\", \"__orb_depth\" + 1 FROM \"__orb_steps\" "
               "JOIN \"__orb_pairs\" ON \"__orb_parent\" = \"__orb_step\"),\n\t\"__orb_levels\" AS MATERIALIZED (SELECT "
               "coalesce(max(\"__orb_depth\"), 0) AS \"__orb_level\", r.* FROM \"__orb_rows\" r LEFT JOIN \"__orb_steps\" ON \"__orb_step\" = "
               "\"__orb_row\" GROUP BY ALL),\n\t\"__orb_rounds\" AS (SELECT * FROM \"__orb_levels\" WHERE \"__orb_level\" = 0 UNION "
               "ALL SELECT l.* FROM (SELECT max(\"__orb_level\") + 1 AS \"__orb_next\" FROM \"__orb_rounds\") JOIN "
               "\"__orb_levels\" l ON \"__orb_level\" = \"__orb_next\")\n\tSELECT ")
           + columns.from.join(QLatin1String(", ")) + QLatin1String(" FROM \"__orb_rounds\";\n");
}

/// The engine ties a foreign key to the name of its table, and a rename leaves
/// the referenced table with the name that is gone: nothing of it could be
/// deleted any more. A temporary table was no longer known as one after a
/// rename before 1.5.
bool MayNotBeRenamed(const orbDuckDB_DescTable& table)
{
    return !table.OwnLinks().isEmpty() || (table.temporary && EngineVersionNumber() < 10500);
}

} // namespace

QString IndexText(const IndexDescription& description)
{
    QStringList items;
    for (const QString& item : description.columns) {
        // Whatever is no column of the table is an expression, and stands as it is.
        const bool quoted = item.size() > 1 && item.startsWith(u'"') && item.endsWith(u'"');
        QString inner = quoted ? item.mid(1, item.size() - 2) : item;
        inner.replace(QLatin1String("\"\""), QLatin1String("\""));
        const bool known = description.tableColumns.contains(item, Qt::CaseInsensitive);
        const bool knownInner = quoted && description.tableColumns.contains(inner, Qt::CaseInsensitive);
        const bool expression = !description.tableColumns.isEmpty() && !known && !knownInner;
        items.append(expression ? item : Q(known ? item : inner, description.connection));
    }
    return QLatin1String("CREATE") + (description.unique ? QLatin1String(" UNIQUE") : QLatin1String())
           + QLatin1String(" INDEX ") + Q(description.name, description.connection) + QLatin1String(" ON ")
           + QualifiedName(description.schema, description.table) + QLatin1String("( ")
           + items.join(QLatin1String(", ")) + QLatin1String(" )");
}

QString IndexScript(const IndexDescription& description)
{
    QString text = IndexText(description);
    HF::FinishQuery(text, 1);
    if (!description.comment.isEmpty())
        text += CommentStatement(QStringLiteral("INDEX"), QualifiedName(description.schema, description.name),
                                 description.comment)
                + u'\n';
    return text;
}

QString UniqueText(const rc::Ref<const HF::I_LSchemaObject>& object)
{
    const QStringList columns = object->GetStringList(PROP_COLUMNS);
    if (columns.isEmpty())
        return QString();
    return (object->get_Name().isEmpty() ? QString() : ConstraintHead(object->get_NameQuoted()))
           + QLatin1String("UNIQUE( ") + HF::JoinIdentifiers(columns, rc::Ptr<const HF::LTreeItem>(object))
           + QLatin1String(" )");
}

QString TableScript(const orbDuckDB_DescTable& description, const QString& newName, int parts)
{
    const QString target = QualifiedName(description.schema, newName);
    const QString old = QualifiedName(description.schema, description.name);
    QString text;
    if (parts & SCRIPT_CREATE)
        text += CreateText(description, newName);
    if (parts & SCRIPT_COPY_ROWS && !description.name.isEmpty())
        text += CopyText(target, Copied(description), old);
    if (parts & SCRIPT_COMMENTS) {
        HF::FinishQuery(text, 2);
        text += CommentsText(description, target);
    }
    if (parts & SCRIPT_DROP_OLD)
        text += QLatin1String("\nDROP TABLE IF EXISTS ") + old + QLatin1String(";\n");
    if (parts & SCRIPT_INDEXES) {
        constexpr int OnNewName = SCRIPT_CREATE | 16;
        HF::FinishQuery(text, 2);
        text += IndexesText(description, parts & OnNewName ? newName : description.name);
    }
    return text;
}

QString RebuildScript(const orbDuckDB_DescTable& description)
{
    return RebuildScript(description, description.name);
}

QString RebuildScript(const orbDuckDB_DescTable& description, const QString& finalName)
{
    if (MayNotBeRenamed(description))
        return TakeOutScript(description, TemporaryTableName)
               + PutBackScript(description, finalName, TemporaryTableName);
    const QString temporary = QualifiedName(description.schema, TemporaryTableName);
    constexpr int AllButIndexes = SCRIPT_CREATE | SCRIPT_COPY_ROWS | SCRIPT_COMMENTS | SCRIPT_DROP_OLD;
    orbDuckDB_DescTable final = description;
    final.name = finalName;
    return QLatin1String("DROP TABLE IF EXISTS ") + temporary + QLatin1String(";\n\n")
           + TableScript(description, TemporaryTableName, AllButIndexes) + QLatin1String("\nALTER TABLE ") + temporary
           + QLatin1String(" RENAME TO ") + Q(finalName, description.connection) + QLatin1String(";\n\n")
           + TableScript(final, TemporaryTableName, SCRIPT_INDEXES);
}

QString TakeOutScript(const orbDuckDB_DescTable& description, const QString& copyName)
{
    const QString copy = QualifiedName(description.schema, copyName);
    const QString old = QualifiedName(description.schema, description.name);
    const QStringList columns = Copied(description).from;
    QString text = QLatin1String("DROP TABLE IF EXISTS ") + copy + QLatin1String(";\n\n");
    if (!columns.isEmpty())
        text += QLatin1String("CREATE ") + (description.temporary ? QLatin1String("TEMP ") : QLatin1String())
                + QLatin1String("TABLE ") + copy + QLatin1String(" AS\n\tSELECT ")
                + columns.join(QLatin1String(", ")) + QLatin1String(" FROM ") + old + QLatin1String(";\n\n");
    return text + QLatin1String("DROP TABLE IF EXISTS ") + old + QLatin1String(";\n\n");
}

QString PutBackScript(const orbDuckDB_DescTable& description, const QString& finalName, const QString& copyName)
{
    const QString copy = QualifiedName(description.schema, copyName);
    const QString target = QualifiedName(description.schema, finalName);
    QString text = CreateText(description, finalName) + CopyBackText(description, target, copy);
    HF::FinishQuery(text, 1);
    if (!Copied(description).from.isEmpty())
        text += QLatin1String("\nDROP TABLE ") + copy + QLatin1String(";\n");
    // Before 1.5 a comment makes a temporary table unfit for indexes.
    const QString indexes = IndexesText(description, finalName);
    return text + (indexes.isEmpty() ? QString() : u'\n' + indexes) + CommentsText(description, target);
}
