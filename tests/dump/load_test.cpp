// SPDX-License-Identifier: GPL-3.0-or-later
// Loading texts: encodings, groups, failures, transactions, cancelling.
#include "support/database_place.h"

#include "hf/encoded_text.h"
#include "hf/task_load_dump.h"

#include <QBuffer>
#include <QTemporaryDir>

#include <thread>

namespace {

using namespace Qt::StringLiterals;

struct Outcome
{
    HF::ELTaskState state;
    QString error;
    QList<HF::LLoadError> errors;
    qint64 failed = 0;
    qint64 done = 0;

    /// "line: first words" of each failure.
    QStringList Short() const
    {
        QStringList texts;
        for (const HF::LLoadError& each : errors)
            texts << QString::number(each.Line) + u": "_s + each.Text.section(u'\n', 0, 0);
        return texts;
    }
};

class LoadTest : public support::DatabasePlace
{
protected:
    rc::Ref<HF::LTask_LoadDumpSQL> Task(const QByteArray& bytes, bool multiple = true, bool stop = false,
                                        const QString& encoding = u"UTF-8"_s, HF::LLoadProgress progress = {})
    {
        const auto task = rc::make<HF::LTask_LoadDumpSQL>(rc::self<HF::LTreeItem>(&Database()), QString(), encoding,
                                                          multiple, stop, std::move(progress));
        auto device = std::make_unique<QBuffer>();
        device->setData(bytes);
        device->open(QIODevice::ReadOnly);
        task->put_Input(std::move(device));
        return task;
    }
    static Outcome Run(const rc::Ref<HF::LTask_LoadDumpSQL>& task)
    {
        task->run();
        return {task->get_State(), task->get_Error(), task->get_Errors(), task->get_ErrorCount(),
                task->get_StatementCount()};
    }
    Outcome Load(const QByteArray& bytes, bool multiple = true, bool stop = false, const QString& encoding = u"UTF-8"_s)
    {
        return Run(Task(bytes, multiple, stop, encoding));
    }
    using DatabasePlace::Run;
};

TEST_F(LoadTest, TogetherAndOneByOneGiveTheSame)
{
    const QByteArray text = "CREATE TABLE t(i INTEGER PRIMARY KEY);\n"
                            "INSERT INTO t VALUES (1); INSERT INTO t VALUES (1);\n"
                            "-- note\nINSERT INTO nosuch VALUES (2);\nINSERT INTO t VALUES (3);\n"
                            "SELEC 4;\nINSERT INTO t VALUES\n(5),\n(x);\nINSERT INTO t VALUES (6);\n"
                            "PRAGMA nosuch; INSERT INTO t VALUES (7);\n";
    for (const bool multiple : {false, true}) {
        Run(u"DROP TABLE IF EXISTS t"_s);
        const Outcome outcome = Load(text, multiple);
        EXPECT_EQ(outcome.state, HF::TASK_DONE);
        EXPECT_EQ(Column(u"FROM t ORDER BY i"_s), u"1 3 6 7"_s) << multiple;
        EXPECT_EQ(outcome.failed, 5);
        EXPECT_EQ(outcome.done, 5);
        ASSERT_EQ(outcome.errors.size(), 5);
        const QStringList shown = outcome.Short();
        EXPECT_TRUE(shown[0].startsWith(u"2: Constraint Error"_s)) << shown[0].toStdString();
        EXPECT_TRUE(shown[1].startsWith(u"4: Catalog Error: Table with name nosuch"_s));
        EXPECT_TRUE(shown[2].startsWith(u"6: Parser Error"_s)) << shown[2].toStdString();
        EXPECT_TRUE(shown[3].startsWith(u"7: "_s));
        EXPECT_TRUE(shown[4].startsWith(u"11: "_s)) << shown[4].toStdString();
        EXPECT_EQ(outcome.errors[3].Statement, u"INSERT INTO t VALUES\n(5),\n(x)"_s);
        EXPECT_TRUE(errors.isEmpty()); // they are the task's
    }
    Run(u"DROP TABLE t"_s);
    const Outcome stopped = Load(text, true, true);
    EXPECT_EQ(stopped.state, HF::TASK_FAILED);
    EXPECT_EQ(stopped.failed, 1);
    EXPECT_TRUE(stopped.error.startsWith(u"line 2: Constraint Error"_s));
    EXPECT_EQ(Column(u"FROM t"_s), u"1"_s);
}

TEST_F(LoadTest, AFailedTransactionIsTakenBackAsAWhole)
{
    const QByteArray text = "CREATE TABLE t(i INTEGER PRIMARY KEY);\nBEGIN TRANSACTION;\nINSERT INTO t VALUES (1);\n"
                            "INSERT INTO t VALUES (1);\nINSERT INTO t VALUES (2);\nINSERT INTO t VALUES (3);\nCOMMIT;\n"
                            "INSERT INTO t VALUES (4);";
    for (const bool multiple : {false, true}) {
        Run(u"DROP TABLE IF EXISTS t"_s);
        const Outcome outcome = Load(text, multiple);
        EXPECT_EQ(Column(u"FROM t"_s), u"4"_s) << multiple;
        // What could not run any more counts, and is told once.
        EXPECT_EQ(outcome.failed, 4) << multiple;
        ASSERT_EQ(outcome.errors.size(), 2) << outcome.Short().join(u'\n').toStdString();
        EXPECT_EQ(outcome.errors[0].Line, 4);
        EXPECT_EQ(outcome.errors[1].Line, 7);
        EXPECT_TRUE(outcome.errors[1].Text.contains(u"rolled it back"_s));
    }
}

TEST_F(LoadTest, WhatBreaksOff)
{
    const struct
    {
        const char* text;
        const char* rows;
        int line;
        const char* words;
    } cases[] = {
        {"INSERT INTO t VALUES (1);\n\nINSERT INTO t VALUES\n(2)", "1", 3, "breaks off"},
        {"INSERT INTO t VALUES (1);\nINSERT INTO t VALUES (2), ('", "1", 2, "breaks off"},
        {"INSERT INTO t VALUES (1);\n/* ", "1", 2, "breaks off"},
        {"INSERT INTO t VALUES (1);\nBEGIN;\nINSERT INTO t VALUES (2);", "1", 2, "taken back"},
        {"INSERT INTO t VALUES (1);\nBEGIN;\nINSERT INTO t VALUES (2);\nINSERT INTO t", "1", 4, "breaks off"},
    };
    for (const auto& each : cases)
        for (const bool multiple : {false, true}) {
            Run(u"CREATE OR REPLACE TABLE t(i INTEGER)"_s);
            const Outcome outcome = Load(each.text, multiple);
            ASSERT_FALSE(outcome.errors.isEmpty()) << each.text;
            EXPECT_EQ(outcome.errors.first().Line, each.line) << each.text;
            EXPECT_TRUE(outcome.errors.first().Text.contains(QString::fromUtf8(each.words))) << each.text;
            EXPECT_EQ(Column(u"FROM t"_s), QString::fromUtf8(each.rows)) << each.text;
            // Nothing is left open behind it.
            EXPECT_TRUE(HF::IsQuerySuccess(Run(u"BEGIN; ROLLBACK"_s)));
        }
}

TEST_F(LoadTest, Encodings)
{
    const QString text = u"CREATE OR REPLACE TABLE t(s VARCHAR);\nINSERT INTO t VALUES ('aÄöß');\n"_s;
    const auto units = [&](bool bigEndian, int size, const QByteArray& mark) {
        QByteArray bytes = mark;
        for (const QChar c : text)
            for (int i = 0; i < size; ++i) {
                const int place = bigEndian ? size - 1 - i : i;
                bytes.append(place < 2 ? char(c.unicode() >> (8 * place)) : '\0');
            }
        return bytes;
    };
    const std::pair<QByteArray, const char*> good[] = {
        {text.toUtf8(), "UTF-8"},
        {text.toUtf8(), ""},
        {"\xEF\xBB\xBF" + text.toUtf8(), "ISO-8859-1"}, // the mark knows better
        {text.toLatin1(), "ISO-8859-1"},
        {text.toLatin1(), "windows-1252"},
        {units(false, 2, {}), "UTF-16LE"},
        {units(true, 2, {}), "UTF-16BE"},
        {units(false, 2, "\xFF\xFE"), "UTF-8"},
        {units(true, 2, "\xFE\xFF"), "UTF-8"},
        {units(false, 4, QByteArray("\xFF\xFE\0\0", 4)), "UTF-8"},
        {units(true, 4, QByteArray("\0\0\xFE\xFF", 4)), "UTF-8"},
    };
    for (const auto& [bytes, encoding] : good) {
        const Outcome outcome = Load(bytes, true, false, QString::fromLatin1(encoding));
        EXPECT_EQ(outcome.failed, 0) << encoding << outcome.Short().join(u'\n').toStdString();
        EXPECT_EQ(Column(u"FROM t"_s), u"aÄöß"_s) << encoding;
    }
    const struct
    {
        QByteArray bytes;
        const char* encoding;
        int line;
    } bad[] = {
        {"CREATE OR REPLACE TABLE t(s VARCHAR);\nINSERT INTO t VALUES\n('\xE4');\nINSERT INTO t VALUES ('x');", "UTF-8", 3},
        {"CREATE OR REPLACE TABLE t(s VARCHAR);\nINSERT INTO t VALUES\n('\xED\xA0\x80');\nINSERT INTO t VALUES ('x');", "UTF-8", 3},
        {"CREATE OR REPLACE TABLE t(s VARCHAR);\nINSERT INTO t VALUES ('a@b');\nINSERT INTO t VALUES ('x');", "UTF-8", 2},
        {"CREATE OR REPLACE TABLE t(s VARCHAR);\nINSERT INTO t VALUES ('x');\n-- \xE4", "UTF-8", 3},
        {QByteArray("CREATE OR REPLACE TABLE t(s VARCHAR);\nINSERT INTO t VALUES ('\xFF\xFF');\nINSERT INTO t VALUES ('x');"),
         "EUC-JP", 2},
    };
    for (const auto& each : bad) {
        QByteArray bytes = each.bytes;
        bytes.replace('@', '\0');
        const Outcome outcome = Load(bytes, true, false, QString::fromLatin1(each.encoding));
        ASSERT_EQ(outcome.failed, 1) << bytes.toStdString();
        const QString told = QString::number(outcome.errors[0].Line) + outcome.errors[0].Text;
        EXPECT_TRUE(told.contains(u"line "_s + QString::number(each.line)) || outcome.errors[0].Line == each.line) << told.toStdString();
        // The good statements ran, nothing was stored with question marks.
        EXPECT_EQ(Column(u"FROM t"_s), u"x"_s);
    }
}

/// A character may lie on the border of any block.
TEST_F(LoadTest, BlocksCutCharacters)
{
    for (const QByteArray& c : {QByteArray("é"), QByteArray("€"), QByteArray("😀")})
        for (int shift = 0; shift < 4; ++shift) {
            auto device = std::make_unique<QBuffer>();
            const QByteArray bytes = QByteArray(256 * 1024 - shift, 'a') + c + "b\n" + QByteArray(300000, 'c') + "\xFF";
            device->setData(bytes);
            device->open(QIODevice::ReadOnly);
            HF::LEncodedReader reader(std::move(device), u"UTF-8"_s);
            QString text, block;
            QList<qint64> bad;
            while (reader.Read(block)) {
                text += block;
                bad += reader.get_BadLines();
            }
            EXPECT_EQ(text, QString::fromUtf8(bytes));
            EXPECT_EQ(bad, QList<qint64>{2});
            EXPECT_EQ(reader.get_Position(), bytes.size());
        }
}

TEST_F(LoadTest, ProgressAndCancel)
{
    QByteArray text = "CREATE TABLE t(i INTEGER);\n";
    for (int i = 0; i < 4000; ++i)
        text += "INSERT INTO t VALUES (" + QByteArray::number(i) + ");\n";
    unsigned long bytes = 0, total = 0, statements = 0;
    rc::Ptr<HF::LTask_LoadDumpSQL> running;
    unsigned long cancelAt = 0;
    const auto progress = [&](unsigned long done, unsigned long all, unsigned long count) {
        EXPECT_GE(done, bytes);
        EXPECT_GE(count, statements);
        bytes = done;
        total = all;
        statements = count;
        if (cancelAt && count >= cancelAt)
            running->Cancel();
    };
    EXPECT_EQ(Run(Task(text, true, false, u"UTF-8"_s, progress)).state, HF::TASK_DONE);
    EXPECT_EQ(bytes, static_cast<unsigned long>(text.size()));
    EXPECT_EQ(total, bytes);
    EXPECT_EQ(statements, 4001u);

    Run(u"DROP TABLE t"_s);
    bytes = statements = 0;
    cancelAt = 500;
    running = Task(text.insert(text.indexOf('\n'), "\nBEGIN;"), true, false, u"UTF-8"_s, progress);
    const Outcome cancelled = Run(rc::Ref<HF::LTask_LoadDumpSQL>(running));
    EXPECT_EQ(cancelled.state, HF::TASK_CANCELLED);
    EXPECT_LT(cancelled.done, 2000);
    EXPECT_EQ(cancelled.failed, 0);
    EXPECT_TRUE(HF::IsQuerySuccess(Run(u"BEGIN; ROLLBACK"_s)));

    // A statement that runs long ends with the cancel.
    cancelAt = 0;
    statements = bytes = 0;
    running = Task("SELECT count(*) FROM range(1000000) a, range(1000000) b WHERE a.range + b.range = -1;\n"
                   "CREATE TABLE never(i INTEGER);");
    std::thread stopper([&] {
        std::this_thread::sleep_for(std::chrono::milliseconds(300));
        running->Cancel();
    });
    EXPECT_EQ(Run(rc::Ref<HF::LTask_LoadDumpSQL>(running)).state, HF::TASK_CANCELLED);
    stopper.join();
    EXPECT_EQ(Column(u"SELECT count(*) FROM duckdb_tables() WHERE table_name = 'never'"_s), u"0"_s);
    // One that was cancelled before it began does nothing.
    running = Task("CREATE TABLE never(i INTEGER);");
    running->Cancel();
    EXPECT_EQ(Run(rc::Ref<HF::LTask_LoadDumpSQL>(running)).state, HF::TASK_CANCELLED);
    EXPECT_EQ(Column(u"SELECT count(*) FROM duckdb_tables() WHERE table_name = 'never'"_s), u"0"_s);
}

TEST_F(LoadTest, FilesThatCannotBeRead)
{
    const auto task = rc::make<HF::LTask_LoadDumpSQL>(rc::self<HF::LTreeItem>(&Database()), u"/nosuch/x.sql"_s, QString(),
                                                      true, false, HF::LLoadProgress());
    const Outcome outcome = Run(task);
    EXPECT_EQ(outcome.state, HF::TASK_FAILED);
    EXPECT_TRUE(outcome.error.contains(u"/nosuch/x.sql"_s));
}

} // namespace
