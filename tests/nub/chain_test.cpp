// SPDX-License-Identifier: GPL-3.0-or-later
#include "nub/database_fixture.h"

#include <atomic>
#include <chrono>
#include <thread>

using namespace nub;
using namespace nub::test;
using Outline = std::vector<std::string>;
using namespace std::chrono_literals;

TEST(Chain, WhatEachStatementGives)
{
    const DatabasePtr db = OpenMemory();
    const struct
    {
        const char* text;
        Outline outline;
    } cases[] = {
        {"", {}},
        {" ; -- nothing\n /* at all */ ;", {}},
        {"CREATE TABLE t(a INTEGER PRIMARY KEY, b VARCHAR)", {"0"}},
        {"INSERT INTO t VALUES (1, 'x'), (2, 'y'), (3, NULL); UPDATE t SET b = 'z' WHERE a > 1; DELETE FROM t WHERE a = 9",
         {"3", "2", "0"}},
        {"INSERT INTO t VALUES (4, 'w') RETURNING a", {"[4]"}},
        {"SELECT * FROM t ORDER BY a", {"[1|x 2|z 3|z 4|w]"}},
        {"SELECT 1 WHERE false", {"[]"}},
        {"CHECKPOINT; SET threads = 2; BEGIN; COMMIT; PRAGMA enable_checkpoint_on_shutdown", {"0", "0", "0", "0", "0"}},
        {"EXPLAIN SELECT 1; CALL pragma_table_info('t')", {}}, // text of the plan: only that there are rows, below
        {"CREATE TABLE n AS SELECT 7 AS x; SELECT x FROM n; DROP TABLE n", {"0", "[7]", "0"}},
        {"SELECT 1; SELECT nosuch; SELECT 3", {"[1]", "!Binder Error: Referenced column \"nosuch\""}},
        {"SELECT 1; SELECT 'a'::INTEGER; SELECT 3", {"[1]", "!Conversion Error: Could not convert string 'a' to INT32"}},
        {"SELECT 1; SELEC 2", {"!Parser Error: syntax error at or near \"SELEC\""}},
        {"INSERT INTO t VALUES (50, 'never'); PRAGMA nosuch", {"!Catalog Error: Pragma Function with name nosuch"}},
        {"SELECT count(*) FROM t WHERE a = 50", {"[0]"}},
        {"INSERT INTO t VALUES (1, 'again')", {"!Constraint Error: Duplicate key"}},
        {"PIVOT t ON b USING count(*) GROUP BY a ORDER BY a", {"0", "[1|0|1|0 2|0|0|1 3|0|0|1 4|1|0|0]"}},
        {"SELECT 'a;b', $$c;d$$, \"x\" FROM (SELECT 1 AS \"x\")", {"[a;b|c;d|1]"}},
    };
    for (const auto& c : cases) {
        SCOPED_TRACE(c.text);
        const Outline got = Chain(*db, c.text);
        if (std::string(c.text).starts_with("EXPLAIN")) {
            ASSERT_EQ(got.size(), 2u);
            EXPECT_TRUE(got[0].starts_with("[physical_plan|"));
            EXPECT_TRUE(Has(got[1], "0|a|INTEGER"));
            continue;
        }
        ASSERT_EQ(got.size(), c.outline.size()) << (got.empty() ? "" : got.back());
        for (std::size_t i = 0; i < got.size(); ++i) {
            if (c.outline[i].starts_with("!"))
                EXPECT_TRUE(got[i].starts_with(c.outline[i])) << got[i];
            else
                EXPECT_EQ(got[i], c.outline[i]);
        }
    }
}

// A long INSERT takes a way of its own, on which nothing may be different.
TEST(Chain, LengthChangesNothing)
{
    for (const char* text :
         {"INSERT INTO t VALUES (5, 'x'), (6, NULL)", "insert into t select a + 10, b from t", "INSERT INTO t VALUES (7, 'y') RETURNING a",
          "INSERT INTO t(a) VALUES (1)", "INSERT INTO t VALUES (8, 'a'); INSERT INTO t VALUES (9, 'b')",
          "INSERT INTO t VALUES (8, 'a;b'); -- end\rBEGIN", "INSERT INTO t VALUES (8, $$;$$)", "INSERT INTO t VALUES (8, 'q'", "INSERT INTO nosuch VALUES (1)",
          "INSERT INTO t VALUES (?, 'p')", "INSERT INTO t VALUES (2, 'z') ON CONFLICT DO NOTHING", "INSERT INTO t VALUES ('a', 'b')"}) {
        SCOPED_TRACE(text);
        const auto run = [&](const char* before, const std::string& pad) {
            const DatabasePtr db = OpenMemory();
            Script(*db, "CREATE TABLE t(a INTEGER PRIMARY KEY, b VARCHAR); INSERT INTO t VALUES (1, 'one'), (2, 'two')");
            Chain(*db, before);
            Outline outline = Chain(*db, std::string(text).insert(6, pad));
            for (std::string& each : outline)
                each = each.substr(0, each.find("\n\nLINE"));
            for (const char* after : {"SELECT * FROM t ORDER BY a", "COMMIT", "SELECT * FROM t ORDER BY a"})
                for (const std::string& each : Chain(*db, after))
                    outline.push_back(each);
            return outline;
        };
        for (const char* before : {"SELECT 1", "BEGIN; INSERT INTO t VALUES (3, 'three')"})
            EXPECT_EQ(run(before, std::string(5000, ' ')), run(before, " "));
    }
}

TEST(Chain, RunsAStatementOnlyWhenAsked)
{
    const DatabasePtr db = OpenMemory();
    Script(*db, "CREATE TABLE t(a INTEGER)");
    {
        const ResultPtr first = Start(*db, "INSERT INTO t VALUES (1); INSERT INTO t VALUES (2); INSERT INTO t VALUES (3)");
        EXPECT_EQ(Ask(*db, "SELECT count(*) FROM t"), "1");
        const ResultPtr second = ResultPtr::adopt(first->NextResult());
        EXPECT_EQ(Ask(*db, "SELECT count(*) FROM t"), "2");
        EXPECT_EQ(second->get_AffectedRows(), 1);
    }
    EXPECT_EQ(Ask(*db, "SELECT count(*) FROM t"), "2");
}

TEST(Chain, OpenCursorsSurviveFurtherStatements)
{
    const DatabasePtr db = OpenMemory();
    Script(*db, "CREATE TABLE big AS SELECT range AS i FROM range(300000)");
    const auto slow = CursorPtr::adopt(db->SqlSelect(u"SELECT i FROM big ORDER BY i", 1, {}));
    ASSERT_TRUE(slow->First());
    const ResultPtr other = Start(*db, "SELECT i FROM big; SELECT max(i) FROM big");
    const auto held = CursorPtr::adopt(other->get_Cursor());
    EXPECT_EQ(other->get_Cursor(), nullptr);
    const ResultPtr last = ResultPtr::adopt(other->NextResult());
    const auto biggest = CursorPtr::adopt(last->get_Cursor());
    EXPECT_EQ(Drain(*biggest), "299999");
    std::int64_t rows = 1, heldRows = 0, sum = 0;
    for (; slow->Next(); ++rows)
        sum += smart_ptr<I_Value>::adopt(slow->get_Value(0))->get_LLong();
    while (held->NextRow())
        ++heldRows;
    EXPECT_EQ(rows, 300000);
    EXPECT_EQ(sum, 299999LL * 300000 / 2);
    EXPECT_EQ(heldRows, 300000);
    EXPECT_FALSE(slow->Next());
    EXPECT_FALSE(slow->First());
}

TEST(Chain, ARowThatFailsEndsTheChain)
{
    const DatabasePtr db = OpenMemory();
    Script(*db, "CREATE TABLE big AS SELECT range AS i FROM range(1000000); CREATE TABLE log(x INTEGER)");
    const std::string bad = "SELECT CASE WHEN i = 900000 THEN error('boom') ELSE i::VARCHAR END FROM big";
    const ResultPtr first = Start(*db, bad + "; INSERT INTO log VALUES (1)");
    ASSERT_FALSE(Failed(first));
    const auto cursor = CursorPtr::adopt(first->get_Cursor());
    std::int64_t rows = 0;
    EXPECT_EQ(Thrown([&] {
                  while (cursor->NextRow())
                      ++rows;
              }),
              "Invalid Input Error: boom");
    EXPECT_GT(rows, 0);
    EXPECT_EQ(first->NextResult(), nullptr);
    EXPECT_EQ(Ask(*db, "SELECT count(*) FROM log"), "0");
    // Read ahead for another statement, the failure waits for the row.
    const auto kept = CursorPtr::adopt(db->SqlSelect(String::FromUtf8(bad), 1, {}));
    EXPECT_EQ(Ask(*db, "SELECT 5"), "5");
    EXPECT_EQ(Thrown([&] { Drain(*kept); }), "Invalid Input Error: boom");
}

TEST(Transactions, AChainThatFailsTakesItsOwnTransactionBack)
{
    const char* aborted = "!TransactionContext Error: Current transaction is aborted";
    const struct
    {
        const char* earlier;
        const char* text;
        const char* check; ///< afterwards, in the same session
        const char* result;
    } cases[] = {
        {"", "BEGIN; INSERT INTO t VALUES (1); SELECT nosuch", "SELECT count(*) FROM t", "[0]"},
        {"", "BEGIN; INSERT INTO t VALUES (1); SELECT 'a'::INTEGER", "SELECT count(*) FROM t", "[0]"},
        {"", "START TRANSACTION; INSERT INTO t VALUES (1)", "ROLLBACK; SELECT count(*) FROM t", "[0]"},
        {"", "BEGIN; INSERT INTO t VALUES (1); COMMIT; SELECT nosuch", "SELECT count(*) FROM t", "[1]"},
        {"", "BEGIN; INSERT INTO t VALUES (1); COMMIT; BEGIN; INSERT INTO t VALUES (2); SELECT nosuch", "SELECT sum(a) FROM t", "[1]"},
        {"", "BEGIN; BEGIN", "SELECT 1", "[1]"},
        {"BEGIN; INSERT INTO t VALUES (7)", "SELECT nosuch", "COMMIT; SELECT a FROM t", "[7]"},
        {"BEGIN; INSERT INTO t VALUES (7)", "SELECT 'a'::INTEGER", "SELECT 1", aborted},
        {"BEGIN; INSERT INTO t VALUES (7)", "COMMIT; BEGIN; INSERT INTO t VALUES (8); SELECT nosuch", "SELECT sum(a) FROM t", "[7]"},
        {"", "/* BEGIN */ SELECT ';BEGIN;'; SELECT nosuch", "SELECT count(*) FROM t", "[0]"},
        {"", "INSERT INTO t VALUES (3); ROLLBACK", "SELECT a FROM t", "[3]"},
    };
    for (const auto& c : cases) {
        SCOPED_TRACE(std::string(c.earlier) + " / " + c.text);
        const DatabasePtr db = OpenMemory();
        Script(*db, "CREATE TABLE t(a INTEGER)");
        if (*c.earlier)
            Chain(*db, c.earlier);
        Chain(*db, c.text);
        const std::string last = Chain(*db, c.check).back();
        EXPECT_TRUE(last.starts_with(c.result)) << last;
    }
}

TEST(Transactions, CommitOfAnAbortedOneIsAFailure)
{
    for (const char* commit : {"COMMIT", "/* ; */ end transaction;", "COMMIT; SELECT 1"}) {
        const DatabasePtr db = OpenMemory();
        Script(*db, "CREATE TABLE t(a INTEGER); BEGIN; INSERT INTO t VALUES (1)");
        Chain(*db, "SELECT 'a'::INTEGER");
        const Outline outline = Chain(*db, commit);
        ASSERT_EQ(outline.size(), 1u) << commit;
        EXPECT_TRUE(Has(outline[0], "COMMIT has rolled it back")) << outline[0];
        EXPECT_EQ(Chain(*db, "SELECT count(*) FROM t"), Outline{"[0]"});
    }
    const DatabasePtr db = OpenMemory();
    Script(*db, "BEGIN");
    Chain(*db, "SELECT 'a'::INTEGER");
    EXPECT_EQ(Chain(*db, "ROLLBACK; SELECT 1"), (Outline{"0", "[1]"}));
}

TEST(Transactions, LeavingAChainEndsWhatItsTextBegan)
{
    const DatabasePtr db = OpenMemory();
    Script(*db, "CREATE TABLE t(a INTEGER)");
    {
        const ResultPtr first = Start(*db, "BEGIN; INSERT INTO t VALUES (1); COMMIT");
        const ResultPtr second = ResultPtr::adopt(first->NextResult());
    }
    EXPECT_TRUE(Has(Chain(*db, "ROLLBACK")[0], "no transaction is active"));
    Chain(*db, "BEGIN; INSERT INTO t VALUES (2)");
    { const ResultPtr first = Start(*db, "INSERT INTO t VALUES (3); INSERT INTO t VALUES (4)"); }
    Chain(*db, "COMMIT");
    EXPECT_EQ(Ask(*db, "SELECT sum(a) FROM t"), "5");
}

TEST(Transactions, FailingScriptThrowsAndLeavesNone)
{
    const DatabasePtr db = OpenMemory();
    const std::string error =
        Thrown([&] { Script(*db, "CREATE TABLE t(a INTEGER); BEGIN; INSERT INTO t VALUES (1); SELECT nosuch; INSERT INTO t VALUES (2)"); });
    EXPECT_TRUE(error.starts_with("Binder Error")) << error;
    EXPECT_EQ(Ask(*db, "SELECT count(*) FROM t"), "0");
    EXPECT_TRUE(Thrown([&] { Script(*db, "SELEC"); }).starts_with("Parser Error"));
    EXPECT_EQ(Ask(*db, "INSERT INTO t VALUES (5)"), "no cursor");
    EXPECT_EQ(Ask(*db, "SELECT a FROM t"), "5");
}

namespace {

const char* const Endless = "SELECT count(*) FROM range(1000000000000) r(i) WHERE hash(i) % 7 = 9";

/// Interrupts again and again until told to stop, since the statement may not have begun.
class Interrupter
{
public:
    explicit Interrupter(I_DuckDBDatabase& database)
        : m_thread([this, &database] {
              while (!m_stop) {
                  std::this_thread::sleep_for(30ms);
                  database.Interrupt();
              }
          })
    {
    }
    ~Interrupter()
    {
        m_stop = true;
        m_thread.join();
    }

private:
    std::atomic<bool> m_stop{false};
    std::thread m_thread;
};

} // namespace

TEST(Interrupt, EndsTheStatementThatRuns)
{
    const DatabasePtr db = OpenMemory();
    Script(*db, "CREATE TABLE t(a INTEGER)");
    const std::string text = std::string("INSERT INTO t VALUES (1); ") + Endless + "; INSERT INTO t VALUES (2)";
    {
        const Interrupter interrupter(*db);
        // Whichever statement the first interrupt meets, the chain ends there.
        const Outline outline = Chain(*db, text);
        EXPECT_TRUE(Has(outline.back(), "INTERRUPT Error: Interrupted!")) << outline.back();
        EXPECT_TRUE(Has(Thrown([&] { Script(*db, Endless); }), "INTERRUPT"));
        EXPECT_TRUE(Has(Ask(*db, Endless), "INTERRUPT"));
        const auto statement = smart_ptr<I_Statement>::adopt(db->Prepare(String::FromUtf8(Endless)));
        EXPECT_TRUE(Has(Thrown([&] { statement->Execute(1); }), "INTERRUPT"));
    }
    EXPECT_EQ(Ask(*db, "SELECT count(*) FILTER (a = 2) FROM t"), "0");
    EXPECT_EQ(Ask(*db, "SELECT 1"), "1");
}

TEST(Interrupt, BetweenResultsKeepsTheRestFromRunning)
{
    const DatabasePtr db = OpenMemory();
    Script(*db, "CREATE TABLE t(a INTEGER)");
    db->Interrupt(); // idle: of no effect on what comes
    const ResultPtr first = Start(*db, "INSERT INTO t VALUES (1); INSERT INTO t VALUES (2)");
    EXPECT_FALSE(Failed(first));
    db->Interrupt();
    const ResultPtr second = ResultPtr::adopt(first->NextResult());
    ASSERT_TRUE(second);
    EXPECT_TRUE(Failed(second));
    EXPECT_EQ(second->get_ErrorMessage().ToUtf8(), "INTERRUPT Error: Interrupted!");
    EXPECT_EQ(second->NextResult(), nullptr);
    EXPECT_EQ(Ask(*db, "SELECT sum(a) FROM t"), "1");
}

TEST(Interrupt, StopsTheReadingOfRows)
{
    const DatabasePtr db = OpenMemory();
    Script(*db, "CREATE TABLE big AS SELECT range AS i FROM range(3000000)");
    const auto cursor = CursorPtr::adopt(db->SqlSelect(u"SELECT i FROM big", 1, {}));
    ASSERT_TRUE(cursor->NextRow());
    db->Interrupt();
    EXPECT_TRUE(Has(Thrown([&] { Drain(*cursor); }), "INTERRUPT"));
    EXPECT_EQ(Ask(*db, "SELECT count(*) FROM big"), "3000000");
}

TEST(Session, ThreadsWaitForOneAnother)
{
    const DatabasePtr db = OpenMemory();
    Script(*db, "CREATE TABLE t(a INTEGER)");
    std::vector<std::thread> threads;
    for (int n = 0; n < 4; ++n)
        threads.emplace_back([&] {
            OrbisThreadInit();
            for (int i = 0; i < 25; ++i) {
                // With the lock held for all of a chain, no other thread's statement gets between.
                const Outline outline = Chain(*db, "BEGIN; INSERT INTO t SELECT count(*) FROM t; SELECT a FROM t; COMMIT");
                EXPECT_EQ(outline.size(), 4u) << outline.back();
            }
            OrbisThreadShutDown();
        });
    for (std::thread& thread : threads)
        thread.join();
    EXPECT_EQ(Ask(*db, "SELECT count(*), count(DISTINCT a), max(a) FROM t"), "100|100|99");
}

TEST(Session, AReadCursorHoldsNothing)
{
    const DatabasePtr db = OpenMemory();
    const auto done = CursorPtr::adopt(db->SqlSelect(u"SELECT 1", 1, {}));
    EXPECT_EQ(Drain(*done), "1");
    const ResultPtr left = Start(*db, "SELECT 1; SELECT 2");
    const ResultPtr last = ResultPtr::adopt(left->NextResult());
    const auto second = CursorPtr::adopt(last->get_Cursor());
    EXPECT_EQ(Drain(*second), "2");
    std::string answer;
    std::thread([&] { answer = Ask(*db, "SELECT 3"); }).join(); // would wait for ever
    EXPECT_EQ(answer, "3");
}

TEST(Session, TellsHowFarAQueryIs)
{
    const DatabasePtr db = OpenMemory();
    EXPECT_EQ(db->get_Progress(), -1);
    Script(*db, "SET enable_progress_bar=true; SET enable_progress_bar_print=false");
    Script(*db, "CREATE TABLE big AS SELECT range AS i FROM range(1000000)");
    std::atomic<bool> stop{false};
    double most = -1;
    std::thread watcher([&] {
        while (!stop) {
            most = std::max(most, db->get_Progress());
            std::this_thread::sleep_for(5ms);
        }
    });
    Ask(*db, "SELECT count(DISTINCT i * 7), max(sin(i) * cos(i)) FROM big");
    stop = true;
    watcher.join();
    EXPECT_GT(most, 0);
    EXPECT_LE(most, 100);
}

TEST(Cursor, FieldsAndEnds)
{
    const DatabasePtr db = OpenMemory();
    const auto cursor =
        CursorPtr::adopt(db->SqlSelect(u"SELECT 'a' AS \"n m\", NULL::VARCHAR AS z, 1.50::DECIMAL(5,2) AS d UNION ALL SELECT 'b', 'q', 2", 1, {}));
    EXPECT_EQ(cursor->get_ColumnCount(), 3);
    EXPECT_EQ(cursor->get_ColumnName(0).ToUtf8(), "n m");
    EXPECT_EQ(cursor->get_ColumnTypeName(2).ToUtf8(), "DECIMAL(12,2)");
    EXPECT_TRUE(cursor->get_ColumnName(3).empty());
    EXPECT_EQ(cursor->get_Field(0), nullptr);
    EXPECT_TRUE(Has(Thrown([&] { cursor->get_Value(0); }), "no such cell"));
    ASSERT_TRUE(cursor->First());
    const auto field = smart_ptr<orbsql::I_Field>::adopt(cursor->get_Field(0));
    EXPECT_EQ(cursor->get_Field(1), nullptr);
    EXPECT_EQ(cursor->get_Field(-1), nullptr);
    EXPECT_EQ(cursor->get_Field(3), nullptr);
    ASSERT_TRUE(cursor->Next());
    EXPECT_EQ(field->get_String().ToUtf8(), "a"); // kept by its holder while the cursor moves on
    const auto next = smart_ptr<orbsql::I_Field>::adopt(cursor->get_Field(1));
    EXPECT_EQ(next->get_String().ToUtf8(), "q");
    EXPECT_FALSE(cursor->Next());
    EXPECT_EQ(cursor->get_Field(0), nullptr);
}
