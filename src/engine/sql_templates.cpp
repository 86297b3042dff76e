// SPDX-License-Identifier: GPL-3.0-or-later
#include "engine/sql_templates.h"

#include <QHash>

namespace {

constexpr const char* DocumentationSite = "https://duckdb.org";

/// A comment with the meaning, one with the page of the manual, an empty line, the syntax.
QString MakeText(const char* description, const char* page, const char* syntax)
{
    return QStringLiteral("-- %1\n-- %2%3\n\n").arg(QLatin1String(description), QLatin1String(DocumentationSite),
                                                   QLatin1String(page))
           + QLatin1String(syntax);
}

// Texts that stand under several categories, by title.
struct SharedText
{
    const char* title;
    const char* description;
    const char* page;
    const char* syntax;
};

constexpr SharedText SharedTexts[] = {
    {
        "Add Field",
        "Adds a new column to an existing table.",
        "/docs/sql/statements/alter_table",
        "ALTER TABLE <#table_name#>\n"
        "\tADD [ COLUMN ] [ IF NOT EXISTS ] <#column_def#>",
    },
    {
        "Drop Field",
        "Removes a column from an existing table.",
        "/docs/sql/statements/alter_table#drop-column",
        "ALTER TABLE <#table_name#>\n"
        "\tDROP [ COLUMN ] [ IF EXISTS ] <#column_name#>",
    },
    {
        "Rename Field",
        "Renames a column in an existing table.",
        "/docs/sql/statements/alter_table#rename-column",
        "ALTER TABLE <#table_name#>\n"
        "\tRENAME [ COLUMN ] <#column_name#> TO <#new_column_name#>",
    },
    {
        "Create Index",
        "The CREATE INDEX command.",
        "/docs/sql/statements/create_index",
        "CREATE [ UNIQUE ] INDEX [ IF NOT EXISTS ]\n"
        "\t<#index_name#> ON <#table_name#>( <#indexed_column#>[, <#indexed_column#> ... ])\n",
    },
    {
        "Drop Index",
        "The DROP INDEX statement removes an index added with the CREATE INDEX statement.",
        "/docs/sql/statements/create_index#drop-index",
        "DROP INDEX [IF EXISTS] <#index_name#>",
    },
    {
        "Create Table",
        "The \"CREATE TABLE\" command is used to create a new table in a DuckDB database.",
        "/docs/sql/statements/create_table",
        "CREATE [OR REPLACE] [ TEMP | TEMPORARY ] TABLE [ IF NOT EXISTS ] <#table_name#>\n"
        "\t( <#column_def#>[, ... ] [<#table_constraint#>[, ...]] )\n"
        "\t| AS <#select_stmt#>\n",
    },
    {
        "Drop Table",
        "The DROP TABLE statement removes a table added with the CREATE TABLE statement.",
        "/docs/sql/statements/drop",
        "DROP TABLE [IF EXISTS] <#table_name#>",
    },
    {
        "Delete Record(s)",
        "The DELETE command removes records from the table identified by the qualified-table-name.",
        "/docs/sql/statements/delete",
        "DELETE FROM <#table_name#>\n"
        "[ USING <#table_or_subquery#> ]\n"
        "\t[ WHERE\n"
        "\t<#expr#> ]",
    },
    {
        "Insert Record(s)",
        "Add new record to the table",
        "/docs/sql/statements/insert",
        "INSERT [ OR REPLACE | OR IGNORE ] INTO <#table_name#> [ AS <#alias#> ] [ ( <#column_name#> [, ...] ) ]\n"
        "\t{ DEFAULT VALUES | VALUES ( { <#expression#> | DEFAULT } [, ...] ) [, ...] | <#query#> }\n"
        "\t[ ON CONFLICT { DO NOTHING | DO UPDATE SET { <#column_name#> = { <#expression#> | DEFAULT } "
        "[ WHERE <#condition#> ] } } ]\n"
        "\t[ RETURNING * | <#output_expression#> [ [ AS ] <#output_name#> ] [, ...] ]",
    },
    {
        "Update Record(s)",
        "The UPDATE statement modifies the values of rows in a table.",
        "/docs/sql/statements/update",
        "UPDATE <#table_name#> [ * ] [ [ AS ] <#alias#> ]\n"
        "\tSET { <#column_name#> = { <#expression#>  | <#subquery#> } } [, ...]\n"
        "\t[ FROM <#from_item#> [, ...] ]\n"
        "\t[ WHERE <#condition#> ]\n"
        "\t[ RETURNING * | <#output_expression#> [ [ AS ] <#output_name#> ] [, ...] ]",
    },
    {
        "Create View",
        "The CREATE VIEW statement defines a new view in the catalog.",
        "/docs/sql/statements/create_view",
        "CREATE [ OR REPLACE ] [ TEMP | TEMPORARY ] VIEW [ IF NOT EXISTS ] <#view_name#> "
        "[ ( <#column_name#> [, ...] ) ]\n"
        "\tAS <#select_stmt#>",
    },
    {
        "Drop View",
        "The DROP VIEW statement removes a view created by the CREATE VIEW statement.",
        "/docs/sql/statements/drop",
        "DROP VIEW [ IF EXISTS ] <#view_name#>",
    },
};

using Entries = QList<std::pair<const char*, QString>>;

QList<HF::LSqlTemplate> MakeTemplates()
{
    QHash<QString, QString> shared;
    for (const SharedText& text : SharedTexts)
        shared.insert(QLatin1String(text.title), MakeText(text.description, text.page, text.syntax));

    QList<HF::LSqlTemplate> all;
    const auto add = [&all](const char* category, const Entries& entries) {
        for (const auto& [title, text] : entries)
            all.append({QLatin1String(category), QLatin1String(title), text});
    };
    const auto known = [&shared](std::initializer_list<const char*> titles) {
        Entries entries;
        for (const char* title : titles)
            entries.append({title, shared.value(QLatin1String(title))});
        return entries;
    };

    add("Database Commands",
        {{"Attach Database", MakeText(
             "The ATTACH statement adds a new database file to the catalog that can be read from and written to.",
             "/docs/sql/statements/attach",
             "ATTACH [ DATABASE ] [ IF NOT EXISTS ] <#filename#> [ AS <#alias#> ] <#attach_options#>")},
         {"Detach Database", MakeText(
             "The DETACH statement allows previously attached database files to be closed and detached, "
             "releasing any locks held on the database file.",
             "/docs/sql/statements/attach#detach",
             "DETACH [ DATABASE [ IF EXISTS ] ] <#database_name#>")}});
    add("Field Commands", known({"Add Field", "Drop Field", "Rename Field"}));
    add("Index Commands", known({"Create Index", "Drop Index"}));
    const Entries renameTable = {
        {"Rename Table", MakeText(
             "Renames the table.",
             "/docs/sql/statements/alter_table#rename-table",
             "ALTER TABLE <#table_name#>\n"
             "\tRENAME TO <#new_table_name#>")}};
    add("Table Commands", known({"Create Table", "Drop Table"}) + renameTable
                              + known({"Add Field", "Drop Field", "Rename Field", "Delete Record(s)",
                                       "Insert Record(s)", "Update Record(s)"}));
    add("View Commands", known({"Create View", "Drop View"}));
    add("Data Manipulation", known({"Delete Record(s)", "Insert Record(s)", "Update Record(s)"}));
    add("Schema Definition", known({"Create Index", "Create Table", "Create View"}));
    const Entries alterTable = {
        {"Alter Table", MakeText(
             "The ALTER TABLE statement changes the schema of an existing table in the catalog.",
             "/docs/sql/statements/alter_table",
             "ALTER TABLE <#table_name#>\n"
             "\tADD [ COLUMN ] [ IF NOT EXISTS ] <#column_def#>\n"
             "\t| DROP [ COLUMN ] [ IF EXISTS ] <#column_name#>\n"
             "\t| ALTER [ COLUMN ] <#column_name#> <#alter_column_options#>\n"
             "\t| RENAME [ COLUMN ] <#column_name#> TO <#new_column_name#>\n"
             "\t| RENAME TO <#new_table_name#>\n")}};
    add("Schema Manipulation", alterTable + known({"Drop Index", "Drop Table", "Drop View"}));
    add("Queries",
        {{"Select", MakeText(
             "The SELECT statement retrieves rows from the database.",
             "/docs/sql/statements/select",
             "SELECT <#select_list#>\n"
             "\tFROM <#tables#>\n"
             "\tUSING SAMPLE <#sample_expression#>\n"
             "\tWHERE <#condition#>\n"
             "\tGROUP BY <#groups#>\n"
             "\tHAVING <#group_filter#>\n"
             "\t\tWINDOW <#window_expression#>\n"
             "\t\tQUALIFY <#qualify_filter#>\n"
             "\tORDER BY <#order_expression#>\n"
             "\tLIMIT <#n#>")}});
    add("Utility",
        {{"Analyze", MakeText(
             "The ANALYZE statement recomputes the statistics on DuckDB's tables.",
             "/docs/sql/statements/analyze",
             "ANALYZE")},
         {"Checkpoint", MakeText(
             "The CHECKPOINT statement synchronizes data in the write-ahead log (WAL) to the database data file.",
             "/docs/sql/statements/checkpoint.html",
             "[FORCE] CHECKPOINT [<#database_name#>]")}});
    return all;
}

} // namespace

const QList<HF::LSqlTemplate>& DuckDBSqlTemplates()
{
    static const QList<HF::LSqlTemplate> templates = MakeTemplates();
    return templates;
}
