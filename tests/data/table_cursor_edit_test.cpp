// SPDX-License-Identifier: GPL-3.0-or-later
// Edits through a table cursor: against a model in memory, beside other
// writers, in transactions of the user, and when something goes wrong.
#include "data/table_cursor_place.h"

#include "hf/sql_text.h"

#include <random>

namespace {

using namespace Qt::StringLiterals;

class TableEditTest : public TableCursorTest
{
protected:
    /// All rows of a query, each as its cells joined by "|", sorted.
    QStringList Sorted(const QString& query)
    {
        QStringList rows;
        const auto cursor = Select(query);
        for (bool more = cursor && cursor->FirstRecord(); more; more = cursor->NextRecord()) {
            QStringList cells;
            for (int i = 0; i < cursor->get_FieldCount().Force(); ++i)
                cells << Text(cursor->get_Field(i)->get_Value());
            rows << cells.join(u'|');
        }
        rows.sort();
        return rows;
    }
    int InTransaction()
    {
        return Column(u"SELECT txid_current()"_s) == Column(u"SELECT txid_current()"_s);
    }
};

/// Random edits, window by window, with everything that a user may do between two saves.
class RandomEdits : public TableEditTest, public testing::WithParamInterface<std::pair<const char*, unsigned>>
{
protected:
    static constexpr int Columns = 4;
    using Cells = std::array<QString, Columns>; ///< a null is "NULL"

    QString RandomCell(int column)
    {
        const int pick = int(m_random() % 6);
        switch (column) {
        case 0: return keyed ? QString::number(m_nextKey++) : pick == 0 ? u"NULL"_s : QString::number(pick % 3);
        case 1: return pick == 0 ? u"NULL"_s : pick == 1 ? u""_s : pick == 2 ? u"it's \"x\""_s : u"word %1"_s.arg(pick);
        case 2: return pick == 0 ? u"NULL"_s : u"%1.50"_s.arg(pick - 3);
        default: return pick == 0 ? u"NULL"_s : u"2020-02-%1 01:02:03.00000%1"_s.arg(pick + 10).left(26);
        }
    }
    void Put(orbDuckDB_TableCursor& cursor, unsigned long row, int column, const QString& cell)
    {
        if (cell == u"NULL")
            ASSERT_TRUE(cursor.SetNullAt(row, column));
        else
            ASSERT_TRUE(cursor.SetTextAt(row, column, cell));
    }
    static QString Shown(const Cells& cells)
    {
        return QStringList(cells.begin(), cells.end()).join(u'|');
    }
    QStringList Stored(const QString& order)
    {
        QStringList rows;
        const auto cursor = Select(u"SELECT * FROM t ORDER BY "_s + order);
        for (bool more = cursor && cursor->FirstRecord(); more; more = cursor->NextRecord()) {
            QStringList cells;
            for (int i = 0; i < Columns; ++i)
                cells << Text(cursor->get_Field(i)->get_Value());
            rows << cells.join(u'|');
        }
        return rows;
    }

    bool keyed = false;
    int m_nextKey = 1000;
    std::mt19937 m_random;
};

TEST_P(RandomEdits, EndEqualToTheModel)
{
    keyed = std::string(GetParam().first).find("PRIMARY") != std::string::npos;
    m_random.seed(GetParam().second);
    Run(u"CREATE TABLE t(a INTEGER%1, b VARCHAR, c DECIMAL(8,2), d TIMESTAMP%2)"_s.arg(
        keyed ? u" PRIMARY KEY"_s : QString(), QString::fromLatin1(GetParam().first).contains(u"LIST") ? u", e INTEGER[]"_s : QString()));
    for (int i = 0; i < 40; ++i)
        Run(u"INSERT INTO t(a, b, c) VALUES (%1, 'start', %2)"_s.arg(keyed ? i : i % 4).arg(i % 2));
    const Cursor cursor = Open(u"t"_s, 7);
    const QString order = keyed ? u"a"_s : u"rowid"_s;
    for (int round = 0; round < 25; ++round) {
        const QStringList start = Stored(order);
        QList<Cells> model;
        for (const QString& row : start) {
            const QStringList cells = row.split(u'|');
            model.append({cells[0], cells[1], cells[2], cells[3]});
        }
        QSet<int> deleted;
        QList<Cells> added;
        const int operations = 1 + int(m_random() % 20);
        for (int step = 0; step < operations; ++step) {
            const int kind = int(m_random() % 12);
            const auto row = static_cast<unsigned long>(model.isEmpty() ? 0 : m_random() % size_t(model.size()));
            if (kind == 0) { // a new row
                Cells cells;
                cells.fill(u"NULL"_s);
                const unsigned long at = cursor->AddRecord();
                for (int column = 0; column < Columns; ++column)
                    if (column == 0 || m_random() % 3) {
                        cells[size_t(column)] = RandomCell(column);
                        Put(*cursor, at, column, cells[size_t(column)]);
                    }
                added.append(cells);
                continue;
            }
            if (kind == 1 && !added.isEmpty()) { // and away with it
                const int index = int(m_random() % size_t(added.size()));
                cursor->RevertRow(HF::I_LTableCursor::FirstAddedRow + static_cast<unsigned long>(index));
                added.removeAt(index);
                continue;
            }
            if (kind == 2) {
                ASSERT_TRUE(cursor->RefreshWindow());
                continue;
            }
            if (model.isEmpty())
                continue;
            cursor->put_Position(row).Force();
            if (!cursor->IsRowLoaded(row))
                FAIL() << row;
            if (kind == 3) {
                ASSERT_TRUE(cursor->put_RowDeleted(row, true));
                deleted.insert(int(row));
            } else if (kind == 4) {
                cursor->RevertRow(row);
                deleted.remove(int(row));
                const QStringList cells = start[qsizetype(row)].split(u'|');
                model[qsizetype(row)] = {cells[0], cells[1], cells[2], cells[3]};
            } else {
                const int column = int(m_random() % Columns);
                const QString cell = RandomCell(column);
                Put(*cursor, row, column, cell);
                model[qsizetype(row)][size_t(column)] = cell;
            }
        }
        const HF::LSaveResult result = cursor->SaveEdits();
        ASSERT_TRUE(result.saved) << result.get_Error().toStdString();
        QStringList expected;
        for (int i = 0; i < model.size(); ++i)
            if (!deleted.contains(i))
                expected << Shown(model[i]);
        for (const Cells& cells : added)
            expected << Shown(cells);
        expected.sort();
        QStringList stored = Stored(order);
        stored.sort();
        ASSERT_EQ(stored.join(u'\n'), expected.join(u'\n')) << "round " << round;
        ASSERT_FALSE(cursor->get_IsDirty());
    }
    EXPECT_TRUE(errors.isEmpty()) << errors.join(u'\n').toStdString();
}

INSTANTIATE_TEST_SUITE_P(Tables, RandomEdits,
                         testing::Values(std::pair("PRIMARY KEY", 1u), std::pair("PRIMARY KEY", 2u),
                                         std::pair("", 3u), std::pair("", 4u), std::pair("LIST", 5u)));

TEST_F(TableEditTest, EqualRowsStayTwo)
{
    Run(u"CREATE TABLE t(a INTEGER, b VARCHAR, f DOUBLE, n BLOB); "
        "INSERT INTO t SELECT 1, NULL, 'nan', '\\x00' FROM range(3)"_s);
    const Cursor cursor = Open(u"t"_s);
    ASSERT_TRUE(cursor->SetTextAt(1, 1, u"second"_s));
    ASSERT_TRUE(cursor->put_RowDeleted(2, true));
    EXPECT_EQ(cursor->RowState(0), HF::ROW_UNCHANGED);
    EXPECT_EQ(cursor->RowState(1), HF::ROW_EDITED);
    EXPECT_EQ(cursor->RowState(2), HF::ROW_DELETED);
    const auto batch = cursor->MakeBatch();
    ASSERT_TRUE(batch);
    ASSERT_EQ(batch->get_Statements().size(), 2);
    EXPECT_EQ(batch->get_Statements()[0].get_Display(),
              u"DELETE FROM main.t WHERE rowid = $1 AND a = $2 AND b IS NULL AND f = $3 AND n = $4\n"
              "-- $1 : 2\n-- $2 : 1\n-- $3 : nan\n-- $4 : \\x00"_s);
    batch->Run();
    cursor->ShowSaved(rc::Ref<HF::LEditBatch>(batch));
    EXPECT_TRUE(batch->get_Result().saved) << batch->get_Result().get_Error().toStdString();
    EXPECT_EQ(Sorted(u"FROM t"_s).join(u' '), u"1|NULL|nan|\\x00 1|second|nan|\\x00"_s);
}

TEST_F(TableEditTest, OtherWritersAreNotOverwritten)
{
    const QString path = Path(u"shared.duckdb"_s);
    const auto mine = MakeDatabase(MakeEngine(path), path);
    const auto theirs = MakeDatabase(MakeEngine(path), path);
    const auto run = [](const rc::Ref<orbDuckDB_Database>& database, const QString& text) {
        EXPECT_TRUE(HF::IsQuerySuccess(database->SqlQuery(text, 0, {}, 1, 2, 1))) << text.toStdString();
    };
    const auto read = [&](const QString& text) {
        return HF::EvaluateSQL(rc::Ptr<HF::I_LDatabase>(mine), text).value_or(u"none"_s);
    };
    run(mine, u"CREATE TABLE k(id INTEGER PRIMARY KEY, a VARCHAR, b VARCHAR); CREATE TABLE n(id INTEGER, a VARCHAR)"_s);
    struct Case
    {
        const char* table;
        const char* other; ///< what the other session commits in between
        const char* said;  ///< null: saved
        const char* stored;
    };
    const Case cases[] = {
        {"k", "UPDATE k SET a = 'theirs' WHERE id = 1", "id = 1: the row has been changed", "theirs"},
        {"k", "UPDATE k SET b = 'theirs' WHERE id = 1", nullptr, "mine"},
        {"k", "DELETE FROM k WHERE id = 1", "id = 1: the row was not found", "none"},
        {"k", "UPDATE k SET id = 9 WHERE id = 1", "id = 1: the row was not found", "none"},
        {"k", "UPDATE k SET a = 'theirs' WHERE id = 2", nullptr, "mine"},
        {"n", "UPDATE n SET a = 'theirs' WHERE rowid = 0", "the row has been changed", "theirs"},
        {"n", "DELETE FROM n WHERE rowid = 0", "the row was not found", "none"},
        {"n", "UPDATE n SET a = 'theirs' WHERE rowid = 1", nullptr, "mine"},
    };
    for (const Case& each : cases) {
        SCOPED_TRACE(each.other);
        const QString table = QString::fromLatin1(each.table);
        run(mine, u"DELETE FROM k; DELETE FROM n; INSERT INTO k VALUES (1,'one','x'),(2,'two','y')"_s);
        run(mine, u"DROP TABLE n; CREATE TABLE n AS FROM (VALUES (1,'one'),(1,'one')) v(id,a)"_s);
        const Cursor cursor = Open(*mine, table);
        ASSERT_TRUE(cursor->SetTextAt(0, 1, u"mine"_s));
        run(theirs, QString::fromUtf8(each.other));
        const HF::LSaveResult result = cursor->SaveEdits();
        EXPECT_EQ(result.saved, each.said == nullptr) << result.get_Error().toStdString();
        if (each.said) {
            EXPECT_TRUE(result.get_Error().contains(QString::fromUtf8(each.said))) << result.get_Error().toStdString();
            EXPECT_EQ(Text(cursor->ValueAt(0, 1)), u"mine"_s) << "the edit is still there";
            // Reading the rows again does not turn the conflict into an overwrite.
            ASSERT_TRUE(cursor->RefreshWindow());
            EXPECT_FALSE(cursor->SaveEdits().saved);
        }
        const QString where = table == u"k"_s ? u"id = 1"_s : u"rowid = 0"_s;
        EXPECT_EQ(read(u"SELECT a FROM %1 WHERE %2"_s.arg(table, where)), QString::fromUtf8(each.stored));
        EXPECT_EQ(read(u"SELECT count(*) FROM %1 WHERE a = 'mine'"_s.arg(table)), each.said ? u"0"_s : u"1"_s);
    }
    mine->Close().Force();
    theirs->Close().Force();
}

TEST_F(TableEditTest, AFailureInTheMiddleChangesNothing)
{
    Run(u"CREATE TABLE t(id INTEGER PRIMARY KEY, v INTEGER CHECK (v < 100), s VARCHAR NOT NULL);"
        "INSERT INTO t SELECT i, i, 's' || i FROM range(10) r(i)"_s);
    const QStringList before = Sorted(u"FROM t"_s);
    struct Case
    {
        int row, column;
        const char* text;
        const char* said;
    };
    const Case cases[] = {{5, 1, "100", "CHECK"},          {5, 1, "word", "Could not convert"},
                          {5, 0, "6", "Duplicate key"},    {5, 2, nullptr, "NOT NULL"},
                          {5, 1, "99999999999", "INT32"}};
    for (const Case& each : cases) {
        SCOPED_TRACE(each.said);
        const Cursor cursor = Open(u"t"_s);
        ASSERT_TRUE(cursor->put_RowDeleted(0, true));
        ASSERT_TRUE(cursor->SetTextAt(1, 2, u"one"_s));
        ASSERT_TRUE(each.text ? cursor->SetTextAt(5, each.column, QString::fromUtf8(each.text))
                              : cursor->SetNullAt(5, each.column));
        const unsigned long added = cursor->AddRecord();
        ASSERT_TRUE(cursor->SetTextAt(added, 0, u"77"_s) && cursor->SetTextAt(added, 2, u"new"_s));
        const HF::LSaveResult result = cursor->SaveEdits();
        EXPECT_FALSE(result.saved);
        ASSERT_EQ(result.errors.size(), 1);
        EXPECT_TRUE(result.errors[0].text.contains(QString::fromUtf8(each.said))) << result.errors[0].text.toStdString();
        EXPECT_TRUE(result.errors[0].text.startsWith(u"id = 5: "_s));
        EXPECT_EQ(result.errors[0].row, 5u);
        EXPECT_EQ(Sorted(u"FROM t"_s), before);
        EXPECT_FALSE(InTransaction());
        EXPECT_EQ(cursor->get_PendingEdits().size(), 4) << "the edits are kept";
        cursor->RevertRow(5);
        EXPECT_TRUE(cursor->SaveEdits().saved);
        EXPECT_EQ(Column(u"SELECT s FROM t ORDER BY id"_s), u"one s2 s3 s4 s5 s6 s7 s8 s9 new"_s);
        Run(u"DELETE FROM t; INSERT INTO t SELECT i, i, 's' || i FROM range(10) r(i)"_s);
    }
}

TEST_F(TableEditTest, AllRowsThatAreNotThereAreTold)
{
    Run(u"CREATE TABLE t(id INTEGER PRIMARY KEY, v INTEGER); INSERT INTO t SELECT i, i FROM range(6) r(i)"_s);
    const Cursor cursor = Open(u"t"_s);
    for (unsigned long row = 0; row < 6; ++row)
        ASSERT_TRUE(cursor->SetTextAt(row, 1, u"50"_s));
    Run(u"DELETE FROM t WHERE id IN (1, 4); UPDATE t SET v = -1 WHERE id = 2"_s);
    const HF::LSaveResult result = cursor->SaveEdits();
    EXPECT_FALSE(result.saved);
    QStringList told;
    for (const HF::LRowError& error : result.errors)
        told << QString::number(error.row);
    EXPECT_EQ(told.join(u' '), u"1 2 4"_s);
    EXPECT_EQ(Column(u"SELECT v FROM t ORDER BY id"_s), u"0 -1 3 5"_s);
}

TEST_F(TableEditTest, TheUsersTransactionStaysTheUsers)
{
    Run(u"CREATE TABLE t(id INTEGER PRIMARY KEY, v INTEGER CHECK (v < 100)); INSERT INTO t VALUES (1,1),(2,2);"
        "CREATE TABLE log(x INTEGER)"_s);
    const Cursor cursor = Open(u"t"_s);
    Run(u"BEGIN"_s);
    Run(u"INSERT INTO log VALUES (1)"_s);
    ASSERT_TRUE(cursor->SetTextAt(0, 1, u"10"_s));
    HF::LSaveResult result = cursor->SaveEdits();
    EXPECT_TRUE(result.saved && result.inUserTransaction) << result.get_Error().toStdString();
    EXPECT_TRUE(InTransaction());

    // A row that is gone is refused before anything is written.
    Run(u"DELETE FROM t WHERE id = 2"_s);
    ASSERT_TRUE(cursor->SetTextAt(0, 1, u"20"_s) && cursor->SetTextAt(1, 1, u"30"_s));
    result = cursor->SaveEdits();
    EXPECT_FALSE(result.saved);
    EXPECT_TRUE(result.inUserTransaction);
    EXPECT_TRUE(InTransaction());
    EXPECT_EQ(Column(u"SELECT v FROM t"_s), u"10"_s);
    Run(u"ROLLBACK"_s);
    EXPECT_EQ(Column(u"SELECT v FROM t ORDER BY id"_s), u"1 2"_s);
    EXPECT_EQ(Column(u"SELECT count(*) FROM log"_s), u"0"_s);

    // What the engine refuses ends the transaction: that is said, and it is not ended behind the user's back.
    cursor->ReloadRows();
    Run(u"BEGIN"_s);
    Run(u"INSERT INTO log VALUES (2)"_s);
    ASSERT_TRUE(cursor->SetTextAt(1, 1, u"1000"_s));
    result = cursor->SaveEdits();
    EXPECT_FALSE(result.saved);
    EXPECT_TRUE(result.get_Error().contains(u"can only be rolled back"_s)) << result.get_Error().toStdString();
    result = cursor->SaveEdits();
    EXPECT_FALSE(result.saved);
    EXPECT_TRUE(result.get_Error().contains(u"aborted"_s)) << result.get_Error().toStdString();
    Run(u"ROLLBACK"_s);
    EXPECT_EQ(Column(u"SELECT count(*) FROM log"_s), u"0"_s);
}

TEST_F(TableEditTest, EditsSurviveSortFilterAndWindows)
{
    Run(u"CREATE TABLE t(id INTEGER PRIMARY KEY, v INTEGER); INSERT INTO t SELECT i, i FROM range(100) r(i)"_s);
    const Cursor cursor = Open(u"t"_s, 10);
    ASSERT_TRUE(cursor->SetTextAt(3, 1, u"1003"_s));
    cursor->put_Position(80).Force();
    ASSERT_TRUE(cursor->SetTextAt(80, 1, u"1080"_s));
    EXPECT_EQ(cursor->get_PendingEdits().size(), 2);
    ASSERT_TRUE(cursor->SortByField(u"v"_s, true));
    EXPECT_EQ(Row(*cursor, 0), u"99|99"_s);
    cursor->put_Position(19).Force();
    EXPECT_EQ(Row(*cursor, 19), u"80|1080"_s);
    EXPECT_EQ(Text(cursor->OldValueAt(19, 1)), u"80"_s);
    ASSERT_TRUE(cursor->put_Filter(u"id = 3"_s));
    EXPECT_EQ(Window(*cursor), u"3|1003"_s);
    cursor->RevertCell(0, 1);
    EXPECT_EQ(Window(*cursor), u"3|3"_s);
    EXPECT_EQ(cursor->get_PendingEdits().size(), 1);
    EXPECT_EQ(cursor->SaveEdits().rows, 1);
    EXPECT_EQ(Column(u"SELECT id FROM t WHERE v > 100"_s), u"80"_s);

    // An edit made while the batch runs is kept.
    ASSERT_TRUE(cursor->SetTextAt(0, 1, u"1"_s));
    const auto batch = cursor->MakeBatch();
    ASSERT_TRUE(cursor->SetTextAt(0, 1, u"2"_s));
    batch->Run();
    cursor->ShowSaved(rc::Ref<HF::LEditBatch>(batch));
    EXPECT_EQ(Text(cursor->ValueAt(0, 1)), u"2"_s);
    EXPECT_TRUE(cursor->SaveEdits().saved) << cursor->get_LastError().toStdString();
    EXPECT_EQ(Column(u"SELECT v FROM t WHERE id = 3"_s), u"2"_s);
}

TEST_F(TableEditTest, OneRecordAtATime)
{
    Run(u"CREATE SEQUENCE sq; CREATE TABLE t(id INTEGER PRIMARY KEY DEFAULT nextval('sq'), a VARCHAR DEFAULT 'none', "
        "b INTEGER); INSERT INTO t(a) VALUES ('x'),('y')"_s);
    const Cursor cursor = Open(u"t"_s);
    cursor->put_Position(1).Force();
    cursor->get_Field(1)->SetString(u"why"_s);
    cursor->put_Position(0).Force();
    cursor->get_Field(1)->SetString(u"ex"_s);
    EXPECT_EQ(cursor->UpdateRecord(), QString());
    EXPECT_EQ(Column(u"SELECT a FROM t ORDER BY id"_s), u"ex y"_s);
    EXPECT_TRUE(cursor->get_IsDirty());
    const unsigned long row = cursor->AddRecord();
    EXPECT_FALSE(cursor->SetTextAt(row, 0, u"5"_s)) << "the engine numbers it";
    ASSERT_TRUE(cursor->SetTextAt(row, 2, u"7"_s));
    EXPECT_EQ(cursor->UpdateRecord(), QString());
    EXPECT_EQ(Sorted(u"FROM t"_s).join(u' '), u"1|ex|NULL 2|y|NULL 3|none|7"_s);
    cursor->SaveAllRecords();
    EXPECT_EQ(Column(u"SELECT a FROM t ORDER BY id"_s), u"ex why none"_s);
    cursor->AllowIdentityInserts(true);
    const unsigned long own = cursor->AddRecord();
    ASSERT_TRUE(cursor->SetTextAt(own, 0, u"50"_s));
    EXPECT_TRUE(cursor->SaveEdits().saved);
    EXPECT_EQ(cursor->get_RecordCount().Force(), 4u);
    cursor->AddRecord();
    EXPECT_TRUE(cursor->SaveEdits().saved) << "a row of defaults";
    EXPECT_EQ(Column(u"SELECT id FROM t ORDER BY id"_s), u"1 2 3 4 50"_s);

    cursor->put_Position(0).Force();
    EXPECT_TRUE(cursor->DeleteRecord().saved);
    EXPECT_EQ(cursor->UpdateAllRecords(u"b"_s, rc::make<HF::LValueInt32>(9)).rows, 4);
    EXPECT_EQ(Column(u"SELECT id FROM t WHERE b = 9 ORDER BY id"_s), u"2 3 4 50"_s);
    ASSERT_TRUE(cursor->put_Filter(u"id > 3"_s));
    EXPECT_EQ(cursor->DeleteAllRecords().rows, 2);
    EXPECT_TRUE(cursor->Truncate().saved);
    EXPECT_EQ(Column(u"SELECT count(*) FROM t"_s), u"0"_s);
    EXPECT_TRUE(errors.isEmpty()) << errors.join(u'\n').toStdString();
}

TEST_F(TableEditTest, LongBytesAreReadAndWrittenWhole)
{
    Run(u"CREATE TABLE t(id INTEGER PRIMARY KEY, b BLOB); INSERT INTO t SELECT i, unhex(repeat('0' || i || 'ff', 300)) FROM range(3) r(i)"_s);
    const Cursor cursor = Open(u"t"_s);
    EXPECT_EQ(cursor->ValueAt(1, 1)->get_Length(), 128);
    cursor->put_Position(1).Force();
    EXPECT_EQ(cursor->get_Field(1)->get_Data().size(), 600);
    EXPECT_EQ(cursor->get_Field(1)->get_Data(200).size(), 200);
    ASSERT_TRUE(cursor->SetDataAt(1, 1, QByteArray(1000, 'z')));
    EXPECT_TRUE(cursor->SaveEdits().saved) << cursor->get_LastError().toStdString();
    EXPECT_EQ(Column(u"SELECT octet_length(b) FROM t ORDER BY id"_s), u"600 1000 600"_s);
    // The old value is known by its beginning alone: to set just that is a change, too.
    ASSERT_TRUE(cursor->SetDataAt(1, 1, QByteArray(128, 'z')));
    EXPECT_TRUE(cursor->SaveEdits().saved);
    EXPECT_EQ(Column(u"SELECT octet_length(b) FROM t ORDER BY id"_s), u"600 128 600"_s);
}

} // namespace
