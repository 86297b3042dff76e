// SPDX-License-Identifier: GPL-3.0-or-later
#include "hf/database.h"
#include "hf/sql_text.h"

#include "hf/engine_place.h"
#include "hf/log.h"
#include "hf/query_result.h"

#include <gtest/gtest.h>

#include <thread>

using namespace HF;

TEST(SqlText, FinishQueryClosesOnce)
{
    struct Case
    {
        const char* text;
        const char* finished; ///< with one line break
    };
    const Case cases[] = {
        {"", ""},
        {" \n\t ", ""},
        {"SELECT 1", "SELECT 1;\n"},
        {"  SELECT 1 ;  \n", "SELECT 1 ;\n"},
        {"SELECT 1;", "SELECT 1;\n"},
        {"SELECT 1 -- one", "SELECT 1 -- one\n;\n"},
        {"SELECT 1 -- one;", "SELECT 1 -- one;\n;\n"},
        {"SELECT 1; -- one", "SELECT 1; -- one\n"},
        {"SELECT 1 /* one; */", "SELECT 1 /* one; */;\n"},
        {"SELECT 1 /* a /* b */ c; */", "SELECT 1 /* a /* b */ c; */;\n"},
        {"SELECT '--'", "SELECT '--';\n"},
        {"SELECT 'it''s --;", "SELECT 'it''s --;;\n"}, // broken as it came
        {"SELECT \"a--b\" FROM t;", "SELECT \"a--b\" FROM t;\n"},
        {"SELECT $$ -- $$", "SELECT $$ -- $$;\n"},
        {"SELECT $x$ -- $$ ; $x$ -- e", "SELECT $x$ -- $$ ; $x$ -- e\n;\n"},
        {"SELECT a$b$c -- e", "SELECT a$b$c -- e\n;\n"},
        {"SELECT e'\\'--' ", "SELECT e'\\'--';\n"},
        {"SELECT $1 -- e", "SELECT $1 -- e\n;\n"},
        {"-- Will be changed by indexes\n", "-- Will be changed by indexes\n"},
        {"/* nothing */", "/* nothing */\n"},
    };
    for (const Case& c : cases) {
        QString text = QString::fromLatin1(c.text);
        FinishQuery(text, 1);
        EXPECT_EQ(text, QLatin1String(c.finished)) << c.text;
        if (text.contains(QLatin1String(";;")))
            continue;
        QString again = text;
        FinishQuery(again, 1);
        EXPECT_EQ(again, text) << c.text;
    }
    QString many = QStringLiteral("SELECT 1");
    FinishQuery(many, 0);
    EXPECT_EQ(many, "SELECT 1;");
    FinishQuery(many, 3);
    EXPECT_EQ(many, "SELECT 1;\n\n\n");
}

TEST(SqlText, WhatFollowsAFinishedTextIsAnotherStatement)
{
    test::EnginePlace engine;
    for (const char* text :
         {"SELECT 1 AS a", "SELECT 1 -- one", "SELECT 1 -- one;", "SELECT ';' /* ; */", "SELECT $$ -- ; $$",
          "SELECT $x$ $$ -- $x$ -- e;", "SELECT '''--''' /* a /* b */ ; */ -- ;", "SELECT e'\\'--;'", "-- nothing",
          "SELECT 1 AS \"a--;\"", "SELECT 1; -- ;", "SELECT 1 AS a$b$c --;"}) {
        QString finished = QString::fromLatin1(text);
        FinishQuery(finished, 1);
        EXPECT_EQ(engine.Ask(finished + QLatin1String("SELECT 42")), "42") << text;
    }
}

TEST(SqlText, LiteralsAndNamesWithoutADatabase)
{
    test::EnginePlace engine;
    for (const QString& text : {QString(), QStringLiteral("it's"), QStringLiteral("''"), QStringLiteral("a\\'b\n--")})
        EXPECT_EQ(engine.Ask(QLatin1String("SELECT ") + QuoteText(text)), text);
    EXPECT_EQ(QuoteName(QStringLiteral("a\"b"), nullptr), "\"a\"\"b\"");
    EXPECT_EQ(JoinIdentifiers({"a", "b c"}, nullptr), "\"a\", \"b c\"");
    EXPECT_EQ(JoinIdentifiers({}, nullptr), "");
    EXPECT_EQ(EvaluateSQL(nullptr, QStringLiteral("SELECT 1")), std::nullopt);
}

TEST(SqlText, OutcomeOfResults)
{
    LQueryResult good, bad, silent;
    good.Status = LQueryResult::Done;
    bad.Error = QStringLiteral("Parser Error");
    EXPECT_FALSE(IsQuerySuccess({}));
    EXPECT_TRUE(IsQuerySuccess({good, good}));
    EXPECT_FALSE(IsQuerySuccess({good, silent}));
    good.Error = QStringLiteral("not looked at");
    EXPECT_EQ(GetQueryErrors({good, bad, silent, bad}), "Parser Error\nParser Error");
}

TEST(Log, KeepsTheLastThousandAndTellsTheSink)
{
    int told = 0;
    SetErrorLogSink([&](const QString&) { ++told; });
    std::thread writers[4];
    for (std::thread& writer : writers)
        writer = std::thread([] {
            for (int i = 0; i < 300; ++i)
                LogError(QString::number(i));
        });
    for (std::thread& writer : writers)
        writer.join();
    LogError(QStringLiteral("last"));
    SetErrorLogSink({});
    LogError(QStringLiteral("after"));
    EXPECT_EQ(told, 1201);
    EXPECT_EQ(ErrorLogEntries().size(), 1000u);
    EXPECT_EQ(ErrorLogEntries().back(), "after");

    LQueryResult result;
    result.Error = QStringLiteral("no");
    result.AffectedRecords = 7;
    LogQuery("w", "ci", "cn", "di", "dn", "SELECT", result, 12, false);
    const LQueryLogEntry entry = QueryLogEntries().back();
    EXPECT_EQ(entry.databaseName, "dn");
    EXPECT_EQ(entry.error, "no");
    EXPECT_EQ(entry.affected, 7);
    EXPECT_EQ(entry.milliseconds, 12);
    EXPECT_FALSE(entry.byUser);
}
