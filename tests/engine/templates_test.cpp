// SPDX-License-Identifier: GPL-3.0-or-later
#include "engine/engine.h"

#include <gtest/gtest.h>

#include <QRegularExpression>

namespace {

QString TextOf(const QString& category, const QString& title)
{
    QStringList found;
    for (const HF::LSqlTemplate& entry : orbDuckDB_Engine::Instance().GetSqlTemplates())
        if (entry.category == category && entry.title == title)
            found.append(entry.text);
    EXPECT_EQ(found.size(), 1) << (category + "/" + title).toStdString();
    return found.value(0);
}

TEST(Templates, OrderAndSharedTexts)
{
    const std::pair<const char*, const char*> expected[] = {
        {"Database Commands", "Attach Database,Detach Database"},
        {"Field Commands", "Add Field,Drop Field,Rename Field"},
        {"Index Commands", "Create Index,Drop Index"},
        {"Table Commands", "Create Table,Drop Table,Rename Table,Add Field,Drop Field,Rename Field,Delete Record(s),"
                           "Insert Record(s),Update Record(s)"},
        {"View Commands", "Create View,Drop View"},
        {"Data Manipulation", "Delete Record(s),Insert Record(s),Update Record(s)"},
        {"Schema Definition", "Create Index,Create Table,Create View"},
        {"Schema Manipulation", "Alter Table,Drop Index,Drop Table,Drop View"},
        {"Queries", "Select"},
        {"Utility", "Analyze,Checkpoint"},
    };
    QStringList order;
    for (const auto& [category, titles] : expected)
        for (const QString& title : QString(titles).split(','))
            order.append(QString(category) + '/' + title);

    QStringList found;
    QHash<QString, QString> texts;
    for (const HF::LSqlTemplate& entry : orbDuckDB_Engine::Instance().GetSqlTemplates()) {
        found.append(entry.category + '/' + entry.title);
        EXPECT_EQ(texts.value(entry.title, entry.text), entry.text) << entry.title.toStdString();
        texts.insert(entry.title, entry.text);
    }
    EXPECT_EQ(found, order);
    EXPECT_EQ(found.size(), 31);
}

TEST(Templates, ShapeOfEveryText)
{
    const QRegularExpression marker("^<#[a-z_]+#>");
    QStringList closed;
    for (const HF::LSqlTemplate& entry : orbDuckDB_Engine::Instance().GetSqlTemplates()) {
        const std::string where = entry.title.toStdString();
        const QStringList lines = entry.text.split('\n');
        ASSERT_GE(lines.size(), 4) << where;
        EXPECT_TRUE(lines[0].startsWith("-- ")) << where;
        EXPECT_TRUE(lines[1].startsWith("-- https://duckdb.org/docs/sql/statements/")) << where;
        EXPECT_EQ(lines[2], "") << where;
        EXPECT_FALSE(lines[3].startsWith(' ')) << where;
        EXPECT_FALSE(entry.text.contains('\r')) << where;
        EXPECT_FALSE(entry.text.contains("\n ")) << where;
        if (entry.text.endsWith('\n'))
            closed.append(entry.title);
        for (qsizetype at = entry.text.indexOf("<#"); at >= 0; at = entry.text.indexOf("<#", at + 1))
            EXPECT_TRUE(marker.match(entry.text.mid(at)).hasMatch()) << where;
        EXPECT_EQ(entry.text.count("<#"), entry.text.count("#>")) << where;
    }
    EXPECT_EQ(closed, QStringList({"Create Index", "Create Table", "Create Index", "Create Table", "Alter Table"}));
}

TEST(Templates, WholeTexts)
{
    EXPECT_EQ(TextOf("Utility", "Analyze"), "-- The ANALYZE statement recomputes the statistics on DuckDB's tables.\n"
                                            "-- https://duckdb.org/docs/sql/statements/analyze\n\nANALYZE");
    EXPECT_EQ(TextOf("Queries", "Select"), "-- The SELECT statement retrieves rows from the database.\n"
                                           "-- https://duckdb.org/docs/sql/statements/select\n\n"
                                           "SELECT <#select_list#>\n\tFROM <#tables#>\n\tUSING SAMPLE "
                                           "<#sample_expression#>\n\tWHERE <#condition#>\n\tGROUP BY <#groups#>\n\t"
                                           "HAVING <#group_filter#>\n\t\tWINDOW <#window_expression#>\n\t\tQUALIFY "
                                           "<#qualify_filter#>\n\tORDER BY <#order_expression#>\n\tLIMIT <#n#>");
    EXPECT_EQ(TextOf("Schema Manipulation", "Alter Table"),
              "-- The ALTER TABLE statement changes the schema of an existing table in the catalog.\n"
              "-- https://duckdb.org/docs/sql/statements/alter_table\n\n"
              "ALTER TABLE <#table_name#>\n\tADD [ COLUMN ] [ IF NOT EXISTS ] <#column_def#>\n"
              "\t| DROP [ COLUMN ] [ IF EXISTS ] <#column_name#>\n"
              "\t| ALTER [ COLUMN ] <#column_name#> <#alter_column_options#>\n"
              "\t| RENAME [ COLUMN ] <#column_name#> TO <#new_column_name#>\n\t| RENAME TO <#new_table_name#>\n");
}

} // namespace
