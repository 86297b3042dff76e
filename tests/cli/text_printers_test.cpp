// SPDX-License-Identifier: GPL-3.0-or-later
#include "cli/table_rows.h"

#include <gtest/gtest.h>

using namespace orbis;

TEST(TablePrinter, AlignsColumns)
{
    TableRows rows({{"id", "INTEGER", 9}, {"place", "VARCHAR", 20}, {"note", "VARCHAR", 20}},
                   {{NumberCell("1"), TextCell("京都"), TextCell("a\nb\tc")},
                    {NumberCell("-200"), TextCell("Ko\u0308ln"), NullCell()},
                    {NullCell(), TextCell(""), TextCell("NULL")}});
    QStringList notes;
    EXPECT_EQ(QString::fromUtf8(Printed("table", {&rows}, &notes)), QString("   id | place | note\n"
                                                                            "------+-------+--------\n"
                                                                            "    1 | 京都  | a␊b␉c\n"
                                                                            " -200 | Ko\u0308ln  | NULL\n"
                                                                            " NULL |       | 'NULL'\n"));
    EXPECT_EQ(notes, QStringList("3 rows"));
}

TEST(TablePrinter, SeparatesResultsAndTellsOfTheOthers)
{
    TableRows one({{"a", "INTEGER", 9}}, {{NumberCell("1")}});
    TableRows none({{"b\x1b", "VARCHAR", 20}}, {});
    QStringList notes;
    EXPECT_EQ(QString::fromUtf8(Printed("table", {&one, nullptr, &none}, &notes)), QString(" a\n---\n 1\n\n b␛\n----\n"));
    EXPECT_EQ(notes, QStringList({"1 row", "2 rows affected", "0 rows"}));
}

TEST(TablePrinter, TellsOfStatementsThatChangedNothingTogether)
{
    QStringList notes;
    Output output(-1);
    const auto printer = MakeResultPrinter(
        "table", output, [&](const QString& words) { notes.append(words); }, false);
    TableRows rows({{"a", "INTEGER", 9}}, {});
    for (const qint64 affected : {0, 0, 0, 1, 0, 12})
        printer->Print({3, affected, {}}, nullptr);
    printer->Print({3, 0, {}}, nullptr);
    printer->Print({0, 0, "failed"}, nullptr);
    EXPECT_EQ(notes, QStringList({"3 statements, 0 rows affected", "1 row affected", "0 rows affected",
                                  "12 rows affected", "0 rows affected"}));
    printer->Print({3, 0, {}}, nullptr);
    printer->Print({3, 0, {}}, nullptr);
    printer->End();
    EXPECT_EQ(notes.last(), "2 statements, 0 rows affected");
}

TEST(TablePrinter, ColoursOnlyOnRequest)
{
    TableRows rows({{"a", "INTEGER", 9}}, {{NullCell()}});
    EXPECT_FALSE(Printed("table", {&rows}).contains('\x1b'));
    EXPECT_EQ(Printed("table", {&rows}, nullptr, true), "    \x1b[1ma\x1b[0m\n------\n \x1b[2mNULL\x1b[0m\n");
}

TEST(CsvPrinter, FollowsTheRfc)
{
    const struct
    {
        Cell cell;
        const char* field;
    } cases[] = {
        {NullCell(), ""},
        {TextCell(""), "\"\""},
        {TextCell("plain"), "plain"},
        {TextCell("a,b"), "\"a,b\""},
        {TextCell("say \"x\""), "\"say \"\"x\"\"\""},
        {TextCell("two\nlines"), "\"two\nlines\""},
        {TextCell("\r"), "\"\r\""},
        {TextCell(" x"), "\" x\""},
        {TextCell("x "), "\"x \""},
        {TextCell("a;b'c|d\te"), "a;b'c|d\te"},
        {NumberCell("-1.5"), "-1.5"},
        {BooleanCell(false), "false"},
        {BytesCell(QByteArray("\0,", 2)), "\"\\x00,\""},
        {TextCell("NULL"), "NULL"},
    };
    QList<QList<Cell>> rows;
    QByteArray expected = "n,\"x \"\"\"\r\n";
    for (const auto& c : cases) {
        rows.append({NumberCell("7"), c.cell});
        expected += QByteArray("7,") + c.field + "\r\n";
    }
    TableRows source({{"n", "INTEGER", 9}, {"x \"", "VARCHAR", 20}}, rows);
    EXPECT_EQ(Printed("csv", {&source}), expected);
}

TEST(CsvPrinter, SeparatesResults)
{
    TableRows one({{"a", "INTEGER", 9}}, {{NumberCell("1")}});
    TableRows two({{"b", "INTEGER", 9}}, {});
    EXPECT_EQ(Printed("csv", {&one, nullptr, &two}), "a\r\n1\r\n\r\nb\r\n");
}

TEST(MarkdownPrinter, EscapesWhatMarkdownReads)
{
    TableRows rows({{"a|b", "INTEGER", 9}, {"text", "VARCHAR", 20}},
                   {{NumberCell("1"), TextCell("x|y\n<b>\\*_`&")}, {NullCell(), TextCell("\r\nz\r")}});
    EXPECT_EQ(Printed("markdown", {&rows}), "| a\\|b | text |\n| ---: | --- |\n"
                                            "| 1 | x\\|y<br>&lt;b>\\\\\\*\\_\\`&amp; |\n"
                                            "| *NULL* | <br>z<br> |\n");
}
