// SPDX-License-Identifier: GPL-3.0-or-later
// The rows of a table in the window: windows of rows, edits, filter, order,
// copying and export.
#include "studio/cell_delegate.h"
#include "studio/clipboard_block.h"
#include "studio/data_tab.h"
#include "studio/filter_header.h"
#include "studio/table_export.h"
#include "studio/table_grid.h"
#include "studio/table_model.h"
#include "studio/value_dialog.h"
#include "studio/window_fixture.h"

#include "hf/log.h"

#include <QAction>
#include <QApplication>
#include <QClipboard>
#include <QComboBox>
#include <QDateEdit>
#include <QFile>
#include <QLineEdit>
#include <QMimeData>
#include <QPointer>
#include <QScrollBar>
#include <QTest>
#include <QThread>

namespace {

class DataGrid : public Window
{
protected:
    /// Opens a table's rows as a double click does, and waits for them.
    DataTab* Open(const rc::Ptr<HF::I_LDatabase>& database, const QString& table,
                  const QString& schemaName = QStringLiteral("main"))
    {
        const auto schema = database->get_ChildObject(HF::TYPE_SCHEMA, schemaName).Force();
        rc::Ptr<HF::I_LSchemaObject> object;
        for (const int type : {HF::TYPE_TABLE, HF::TYPE_VIEW})
            if (!object)
                object = schema->get_ChildObject(type, table).Force();
        if (!object)
            return nullptr;
        m_window->OpenEditor(QString::fromLatin1(HF::DO_OPEN_DATA_EDITOR), rc::Ref<HF::LTreeItem>(rc::Ptr<HF::LTreeItem>(object)));
        DataTab* tab = nullptr;
        WaitFor([&] {
            tab = qobject_cast<DataTab*>(m_window->get_Tabs()->currentWidget());
            return tab && Settled(tab);
        });
        return tab;
    }
    static bool Settled(DataTab* tab)
    {
        const TableModel* model = tab->get_Model();
        return !model->IsLoading() && !model->IsSaving() && !model->get_Cursor()->get_IsRecordCountEstimated();
    }
    static bool Wait(DataTab* tab)
    {
        WaitFor([] { return false; }, 30); // what was asked for starts first
        return WaitFor([&] { return Settled(tab); });
    }
    static QString Shown(const DataTab* tab, int row, int column)
    {
        return tab->get_Model()->index(row, column).data().toString();
    }
    static bool Set(const DataTab* tab, int row, int column, const QVariant& value)
    {
        return tab->get_Model()->setData(tab->get_Model()->index(row, column), value);
    }
    /// All cells of a query, rows by ";", cells by "|".
    static QString Read(const rc::Ptr<HF::I_LDatabase>& database, const QString& sql)
    {
        const auto cursor = database->SqlSelect(sql, HF::QUERY_NO_LOG, {}, 1, 2, 1);
        if (!cursor)
            return QStringLiteral("(failed)");
        QStringList rows;
        for (bool more = cursor->FirstRecord(); more; more = cursor->NextRecord()) {
            QStringList cells;
            for (int i = 0; i < cursor->get_FieldCount().Force(); ++i)
                cells.append(cursor->get_Column(i)->get_IsNull() ? QStringLiteral("NULL") : cursor->get_Column(i)->get_String());
            rows.append(cells.join(u'|'));
        }
        return rows.join(u';');
    }
};

} // namespace

TEST_F(DataGrid, EditsAreMarkedPreviewedAndWritten)
{
    const auto database = OpenWith(QStringLiteral(
        "CREATE TABLE t(id INTEGER PRIMARY KEY, name VARCHAR, ok BOOLEAN, day DATE, bytes BLOB, amount DECIMAL(10,2), "
        "twice INTEGER GENERATED ALWAYS AS (id * 2)); INSERT INTO t VALUES (1, 'one', true, '2020-01-01', '\\x00\\xFF', 1.5), "
        "(2, NULL, NULL, 'infinity', NULL, NULL), (3, '', false, '0044-03-15 (BC)', '', -0.01)"));
    ASSERT_TRUE(database);
    DataTab* tab = Open(database, QStringLiteral("t"));
    ASSERT_TRUE(tab);
    TableModel* model = tab->get_Model();
    ASSERT_EQ(model->rowCount(), 3) << tab->get_Error().toStdString();
    ASSERT_EQ(model->columnCount(), 7);
    EXPECT_EQ(Shown(tab, 0, 4), u"00ff");
    EXPECT_EQ(Shown(tab, 1, 1), u"NULL");
    EXPECT_EQ(Shown(tab, 1, 3), u"infinity");
    EXPECT_EQ(model->index(0, 2).data(Qt::CheckStateRole).toInt(), int(Qt::Checked));
    EXPECT_FALSE(model->flags(model->index(0, 6)) & Qt::ItemIsEditable); // generated

    EXPECT_TRUE(Set(tab, 0, 1, QStringLiteral("eins")));
    EXPECT_TRUE(Set(tab, 0, 4, QByteArray("\x01\x02", 2)));
    EXPECT_TRUE(model->setData(model->index(1, 2), Qt::Checked, Qt::CheckStateRole));
    EXPECT_TRUE(Set(tab, 1, 1, QString())); // the empty text is none NULL
    EXPECT_TRUE(Set(tab, 1, 5, QStringLiteral("99999999.99")));
    model->DeleteRows({2}, true);
    tab->get_Grid()->setCurrentIndex(model->index(0, 0));
    const int added = model->AddRow();
    ASSERT_EQ(added, 3);
    EXPECT_TRUE(Set(tab, added, 0, QStringLiteral("4")));
    EXPECT_TRUE(Set(tab, added, 3, QStringLiteral("2024-02-29")));
    EXPECT_EQ(model->get_EditCount(), 4);
    EXPECT_TRUE(model->index(0, 1).data(TableModel::EditedRole).toBool());
    EXPECT_TRUE(model->index(0, 1).data(Qt::BackgroundRole).isValid());
    EXPECT_EQ(model->index(2, 0).data(TableModel::StateRole).toInt(), int(HF::ROW_DELETED));
    EXPECT_EQ(model->Statements().size(), 4);
    EXPECT_TRUE(model->Statements().join(u'\n').contains(u"UPDATE"));
    EXPECT_TRUE(m_window->get_Tabs()->tabText(m_window->get_Tabs()->currentIndex()).startsWith(u'*'));
    Keep("data.png");
    EXPECT_EQ(Read(database, QStringLiteral("SELECT count(*) FROM t WHERE name = 'eins'")), u"0"); // not yet

    Action(QStringLiteral("Save"))->trigger();
    ASSERT_TRUE(Wait(tab));
    EXPECT_EQ(tab->get_Error(), QString());
    EXPECT_FALSE(tab->HasPendingEdits());
    EXPECT_EQ(Read(database, QStringLiteral("SELECT * FROM t ORDER BY id")),
              u"1|eins|true|2020-01-01|\\x01\\x02|1.50|2;2||true|infinity|NULL|99999999.99|4;4|NULL|NULL|2024-02-29|NULL|NULL|8");
    EXPECT_EQ(model->rowCount(), 3);
    EXPECT_EQ(Shown(tab, 0, 1), u"eins");
}

TEST_F(DataGrid, StepsAreTakenBackOneByOneOrAllAtOnce)
{
    const auto database = OpenWith(QStringLiteral("CREATE TABLE t(a INTEGER, b VARCHAR); INSERT INTO t VALUES (1, 'x'), (2, 'y')"));
    ASSERT_TRUE(database);
    DataTab* tab = Open(database, QStringLiteral("t"));
    ASSERT_TRUE(tab);
    TableModel* model = tab->get_Model();
    Set(tab, 0, 1, QStringLiteral("first"));
    Set(tab, 0, 1, QStringLiteral("second"));
    model->DeleteRows({1}, true);
    model->AddRow();
    ASSERT_EQ(model->rowCount(), 3);
    EXPECT_TRUE(model->TakeBack({}));
    EXPECT_EQ(model->rowCount(), 2);
    EXPECT_TRUE(model->TakeBack({}));
    EXPECT_EQ(model->index(1, 0).data(TableModel::StateRole).toInt(), int(HF::ROW_UNCHANGED));
    EXPECT_TRUE(model->TakeBack({}));
    EXPECT_EQ(Shown(tab, 0, 1), u"first");
    EXPECT_TRUE(model->TakeBack({}));
    EXPECT_EQ(Shown(tab, 0, 1), u"x");
    EXPECT_EQ(model->get_EditCount(), 0);
    EXPECT_FALSE(model->TakeBack({}));

    Set(tab, 0, 0, QStringLiteral("7"));
    model->AddRow();
    model->DeleteRows({1}, true);
    EXPECT_TRUE(tab->HasPendingEdits());
    model->RevertAll();
    EXPECT_FALSE(tab->HasPendingEdits());
    EXPECT_EQ(model->rowCount(), 2);
    EXPECT_EQ(Shown(tab, 0, 0), u"1");
}

TEST_F(DataGrid, ARefusedSaveChangesNothingAndLosesNothing)
{
    const auto database = OpenWith(QStringLiteral(
        "CREATE TABLE t(id INTEGER PRIMARY KEY, n INTEGER CHECK (n > 0)); INSERT INTO t VALUES (1, 1), (2, 2), (3, 3)"));
    ASSERT_TRUE(database);
    DataTab* tab = Open(database, QStringLiteral("t"));
    ASSERT_TRUE(tab);
    // One good edit and one that the engine refuses: neither is written.
    Set(tab, 0, 1, QStringLiteral("10"));
    Set(tab, 1, 1, QStringLiteral("-5"));
    tab->Save();
    ASSERT_TRUE(Wait(tab));
    EXPECT_TRUE(tab->get_Error().contains(u"CHECK")) << tab->get_Error().toStdString();
    EXPECT_EQ(tab->get_Model()->get_EditCount(), 2);
    EXPECT_EQ(Shown(tab, 0, 1), u"10");
    EXPECT_EQ(Read(database, QStringLiteral("FROM t ORDER BY id")), u"1|1;2|2;3|3");
    // A row that somebody deleted meanwhile.
    tab->get_Model()->RevertAll();
    Set(tab, 2, 1, QStringLiteral("30"));
    database->SqlExecute(QStringLiteral("DELETE FROM t WHERE id = 3"));
    tab->Save();
    ASSERT_TRUE(Wait(tab));
    EXPECT_TRUE(tab->get_Error().contains(u"not found")) << tab->get_Error().toStdString();
    EXPECT_TRUE(tab->HasPendingEdits());
    Set(tab, 0, 1, QStringLiteral("nonsense"));
    tab->Save();
    ASSERT_TRUE(Wait(tab));
    EXPECT_FALSE(tab->get_Error().isEmpty());
    EXPECT_EQ(Read(database, QStringLiteral("FROM t ORDER BY id")), u"1|1;2|2");
    tab->get_Model()->RevertAll();
}

TEST_F(DataGrid, ALargeTableIsSeenThroughAWindow)
{
    bool ok = false;
    const int wanted = qEnvironmentVariableIntValue("ORBIS_GRID_ROWS", &ok); // 100,000,000 for a look at memory
    const int rows = ok ? wanted : 3'000'000;
    const auto database =
        OpenWith(QStringLiteral("CREATE TABLE big AS SELECT range AS i, 'row ' || range AS t FROM range(%1)").arg(rows));
    ASSERT_TRUE(database);
    DataTab* tab = Open(database, QStringLiteral("big"));
    ASSERT_TRUE(tab);
    TableGrid* grid = tab->get_Grid();
    TableModel* model = tab->get_Model();
    EXPECT_EQ(model->get_TotalRows(), static_cast<unsigned long>(rows));
    EXPECT_LE(model->rowCount(), TableModel::SegmentRows);
    const auto resident = [] {
        QFile file(QStringLiteral("/proc/self/statm"));
        return file.open(QIODevice::ReadOnly) ? file.readAll().split(' ').value(1).toLongLong() * 4096 : 0;
    };
    const auto check = [&](unsigned long row) {
        const int at = int(row - model->get_SegmentStart());
        EXPECT_TRUE(WaitFor([&] { return Shown(tab, at, 0) == QString::number(row); })) << row;
        EXPECT_EQ(Shown(tab, at, 1), QStringLiteral("row %1").arg(row));
    };
    check(0);
    grid->GoTo(static_cast<unsigned long>(rows / 2));
    check(static_cast<unsigned long>(rows / 2));
    const qint64 before = resident();
    for (int i = 1; i <= 8; ++i) { // the bar of the whole table
        grid->get_Bar()->setValue(int(qint64(grid->get_Bar()->maximum()) * i / 8));
        check(grid->TopRow());
    }
    grid->GoTo(static_cast<unsigned long>(rows));
    check(static_cast<unsigned long>(rows - 1));
    // Over an edge of the segment, as a person scrolls.
    grid->GoTo(static_cast<unsigned long>(rows / 3));
    const unsigned long start = model->get_SegmentStart();
    for (int step = 0; step < 400 && model->get_SegmentStart() == start; ++step)
        grid->verticalScrollBar()->setValue(grid->verticalScrollBar()->value() + 400);
    EXPECT_NE(model->get_SegmentStart(), start);
    check(grid->TopRow());
    const qint64 grown = resident() - before;
    if (ok)
        std::printf("%d rows: grown by %lld KiB\n", rows, static_cast<long long>(grown / 1024));
    EXPECT_LT(grown, 100 << 20);
    // An edit belongs to its row, wherever the window goes.
    grid->GoTo(5);
    check(5);
    EXPECT_TRUE(Set(tab, 5, 1, QStringLiteral("mine")));
    grid->GoTo(static_cast<unsigned long>(rows));
    check(static_cast<unsigned long>(rows - 1));
    tab->Save();
    ASSERT_TRUE(Wait(tab));
    EXPECT_EQ(tab->get_Error(), QString());
    EXPECT_EQ(Read(database, QStringLiteral("SELECT i FROM big WHERE t = 'mine'")), u"5");
}

TEST_F(DataGrid, FilterAndOrder)
{
    const auto database = OpenWith(QStringLiteral(
        "CREATE TABLE t(id INTEGER, name VARCHAR, \"odd \"\"x\" DOUBLE); INSERT INTO t SELECT range, CASE range % 3 WHEN 0 THEN "
        "'Apple' WHEN 1 THEN 'it''s' END, range / 2 FROM range(100)"));
    ASSERT_TRUE(database);
    DataTab* tab = Open(database, QStringLiteral("t"));
    ASSERT_TRUE(tab);
    TableModel* model = tab->get_Model();
    const auto filter = [&](int column, const char* text) {
        for (int i = 0; i < 3; ++i)
            tab->get_Grid()->get_Header()->get_Field(i)->setText(i == column ? QString::fromUtf8(text) : QString());
        emit tab->get_Grid()->get_Header()->FilterChanged();
        EXPECT_TRUE(Wait(tab));
        return model->rowCount();
    };
    EXPECT_EQ(filter(0, "7"), 1);
    EXPECT_EQ(filter(0, ">= 90"), 10);
    EXPECT_EQ(filter(1, "app"), 34);
    EXPECT_EQ(filter(1, "it's"), 33);
    EXPECT_EQ(filter(1, "null"), 33);
    EXPECT_EQ(filter(1, "!NULL"), 67);
    EXPECT_EQ(filter(2, "< 0.75"), 2);
    EXPECT_EQ(filter(-1, ""), 100);
    auto* line = tab->findChild<QLineEdit*>(QStringLiteral("filter"));
    line->setText(QStringLiteral("id BETWEEN 10 AND 19 -- some"));
    tab->ApplyFilter();
    ASSERT_TRUE(Wait(tab));
    EXPECT_EQ(model->rowCount(), 10) << tab->get_Error().toStdString();
    // A filter that is none is told in the engine's words, and the old one stays.
    line->setText(QStringLiteral("nosuch = 1"));
    tab->ApplyFilter();
    ASSERT_TRUE(Wait(tab));
    EXPECT_TRUE(tab->get_Error().contains(u"nosuch")) << tab->get_Error().toStdString();
    EXPECT_EQ(model->rowCount(), 10);
    line->setText(QStringLiteral("id BETWEEN 10 AND 19 -- some"));
    tab->ApplyFilter();
    model->Sort({{QStringLiteral("odd \"x"), true}});
    ASSERT_TRUE(Wait(tab));
    EXPECT_EQ(Shown(tab, 0, 0), u"19");
    EXPECT_TRUE(model->headerData(2, Qt::Horizontal, Qt::DisplayRole).toString().contains(QChar(0x25BC)));
    EXPECT_EQ(Read(database, QStringLiteral("SELECT id FROM (%1) LIMIT 2").arg(tab->QueryText())), u"19;18");
}

TEST_F(DataGrid, ABlockIsCopiedAndPasted)
{
    const auto database = OpenWith(QStringLiteral(
        "CREATE TABLE t(id INTEGER, name VARCHAR, bytes BLOB); INSERT INTO t VALUES (1, E'tab\\tfeed\\nend', '\\xAB'), (2, NULL, NULL), (3, '', '')"));
    ASSERT_TRUE(database);
    DataTab* tab = Open(database, QStringLiteral("t"));
    ASSERT_TRUE(tab);
    TableGrid* grid = tab->get_Grid();
    grid->selectAll();
    grid->Copy(CopyForm::Text);
    grid->clearSelection();
    grid->setCurrentIndex(tab->get_Model()->index(2, 0));
    EXPECT_EQ(grid->Paste(), 9); // over the last row, and two new ones
    EXPECT_EQ(tab->get_Model()->rowCount(), 5);
    tab->Save();
    ASSERT_TRUE(Wait(tab));
    EXPECT_EQ(tab->get_Error(), QString());
    EXPECT_EQ(Read(database, QStringLiteral("SELECT id, name IS NULL, length(name), bytes FROM t ORDER BY id, bytes NULLS LAST")),
              u"1|false|12|\\xAB;1|false|12|\\xAB;2|true|NULL|NULL;2|true|NULL|NULL;3|false|0|");

    QMimeData text;
    text.setText(QStringLiteral("a\tb\r\n\"x\ty\n\"\"z\"\"\"\t\r\n"));
    EXPECT_EQ(TakeBlock(text), (QList<QVariantList>{{QStringLiteral("a"), QStringLiteral("b")},
                                                    {QStringLiteral("x\ty\n\"z\""), QString()}}));
}

TEST_F(DataGrid, InsertsNameTheTableAndLeaveOutWhatTheEngineMakes)
{
    const auto database = OpenWith(QStringLiteral(
        "CREATE SCHEMA \"odd one\"; CREATE TABLE \"odd one\".\"group\"(id INTEGER, g INTEGER GENERATED ALWAYS AS (id * 2), s VARCHAR); "
        "INSERT INTO \"odd one\".\"group\" VALUES (1, 'it''s'), (2, NULL)"));
    ASSERT_TRUE(database);
    DataTab* tab = Open(database, QStringLiteral("group"), QStringLiteral("odd one"));
    ASSERT_TRUE(tab);
    tab->findChild<QAction*>(QStringLiteral("rowIds"))->trigger();
    ASSERT_TRUE(Wait(tab));
    ASSERT_EQ(tab->get_Model()->columnCount(), 4);
    tab->get_Grid()->selectAll();
    tab->get_Grid()->Copy(CopyForm::Insert);
    const QString text = QApplication::clipboard()->text();
    EXPECT_TRUE(HF::IsQuerySuccess(database->SqlQuery(text, HF::QUERY_NO_LOG, {}, 1, 2, 1))) << text.toStdString();
    EXPECT_EQ(Read(database, QStringLiteral("FROM \"odd one\".\"group\" ORDER BY id")), u"1|2|it's;1|2|it's;2|4|NULL;2|4|NULL")
        << text.toStdString();
    tab->get_Grid()->Copy(CopyForm::Csv);
    EXPECT_EQ(QApplication::clipboard()->text().section(u'\n', 0, 0).count(u','), 3) << "only that form leaves any out";
}

TEST_F(DataGrid, ATabMayBeClosedWhileAValueIsRead)
{
    const auto database = OpenWith(QStringLiteral("CREATE TABLE t AS SELECT repeat('x', 5000)::BLOB AS b FROM range(2)"));
    ASSERT_TRUE(database);
    const std::function<void(TableGrid*)> ways[] = {
        [](TableGrid* grid) { grid->ShowValue(grid->model()->index(0, 0)); },
        [](TableGrid* grid) {
            grid->selectAll();
            grid->Copy(CopyForm::Text);
        },
    };
    for (const auto& read : ways) {
        const QPointer<DataTab> tab = Open(database, QStringLiteral("t"));
        ASSERT_TRUE(tab);
        const rc::Ref<HF::I_LSqlQuery> query = database->MakeSqlQuery();
        query->SetInterruptible(true);
        HF::RunOnWorker([query] {
            query->Execute(QStringLiteral("SELECT sum(a.range * b.range) FROM range(1000000) a, range(1000000) b"),
                           HF::QUERY_NO_LOG | HF::QUERY_SILENT_ERROR, {});
        });
        WaitFor([] { return false; }, 300); // the session is busy
        QTimer::singleShot(100, m_window.get(), [&] {
            emit m_window->get_Tabs()->tabCloseRequested(m_window->get_Tabs()->indexOf(tab));
        });
        QTimer::singleShot(600, m_window.get(), [&] {
            EXPECT_FALSE(tab) << "gone while the value was waited for";
            query->Interrupt();
        });
        read(tab->get_Grid());
        EXPECT_TRUE(WaitFor([&] { return !tab; }, 5000));
        query->Interrupt();
        EXPECT_TRUE(HF::WaitForWorkers(20000));
    }
}

TEST_F(DataGrid, ExportsOfEveryFormHoldTheRowsOfTheView)
{
    const auto database = OpenWith(QStringLiteral(
        "CREATE TABLE t(id INTEGER, name VARCHAR); INSERT INTO t SELECT range, 'n ''' || range FROM range(1000); "
        "CREATE VIEW endless AS SELECT a.range AS x FROM range(100000) a, range(1000000) b"));
    ASSERT_TRUE(database);
    const QString rows = QStringLiteral("SELECT * FROM main.t WHERE id >= 500 ORDER BY id DESC");
    const struct
    {
        ExportForm form;
        const char* name;
        const char* reader;
    } cases[] = {{ExportForm::Csv, "it's.csv", "read_csv"}, {ExportForm::Json, "out.json", "read_json"},
                 {ExportForm::Parquet, "out.parquet", "read_parquet"}};
    for (const auto& one : cases) {
        const QString path = Path(QLatin1String(one.name));
        ExportDialog dialog(rc::Ref<HF::I_LDatabase>(database), rows, QStringLiteral("t"), m_window.get());
        dialog.SetTarget(path, one.form);
        dialog.Start();
        ASSERT_TRUE(WaitFor([&] { return !dialog.IsRunning(); }));
        EXPECT_EQ(dialog.get_Error(), QString());
        EXPECT_EQ(Read(database, QStringLiteral("SELECT count(*), min(id), max(name) FROM %1(%2)")
                                     .arg(QLatin1String(one.reader), u'\'' + QString(path).replace(u'\'', QLatin1String("''")) + u'\'')),
                  u"500|500|n '999") << one.name;
    }
    // A stopped one leaves the old file as it was, and nothing beside it.
    ExportDialog dialog(rc::Ref<HF::I_LDatabase>(database), QStringLiteral("FROM endless"), QStringLiteral("t"), m_window.get());
    const QString path = Path(QStringLiteral("out.parquet"));
    const qint64 size = QFileInfo(path).size();
    dialog.SetTarget(path, ExportForm::Csv);
    dialog.Start();
    WaitFor([] { return false; }, 600);
    ASSERT_TRUE(dialog.IsRunning());
    dialog.Stop();
    ASSERT_TRUE(WaitFor([&] { return !dialog.IsRunning(); }));
    EXPECT_TRUE(dialog.get_Error().contains(u"Stopped"));
    EXPECT_EQ(QFileInfo(path).size(), size);
    EXPECT_FALSE(QFile::exists(Path(QStringLiteral(".out.parquet.part"))));
    dialog.SetTarget(Path({}), ExportForm::Csv);
    dialog.Start();
    EXPECT_TRUE(dialog.get_Error().contains(u"folder"));
}

TEST_F(DataGrid, EditorsSuitTheirColumnsAndKeepWhatIsLeftAlone)
{
    const auto database = OpenWith(QStringLiteral(
        "CREATE TABLE t(d DATE, s VARCHAR, b BLOB); INSERT INTO t VALUES ('2020-05-05', NULL, NULL), ('infinity', repeat('x', 300), ''), (NULL, 'a', NULL)"));
    ASSERT_TRUE(database);
    DataTab* tab = Open(database, QStringLiteral("t"));
    ASSERT_TRUE(tab);
    TableModel* model = tab->get_Model();
    const CellDelegate delegate;
    const auto editor = [&](int row, int column) {
        return std::unique_ptr<QWidget>(delegate.createEditor(tab, {}, model->index(row, column)));
    };
    EXPECT_TRUE(qobject_cast<QDateEdit*>(editor(0, 0).get()));
    EXPECT_TRUE(qobject_cast<QLineEdit*>(editor(1, 0).get()));
    EXPECT_TRUE(CellDelegate::WantsWindow(model->index(1, 1)));
    EXPECT_TRUE(CellDelegate::WantsWindow(model->index(0, 2)));
    EXPECT_FALSE(CellDelegate::WantsWindow(model->index(2, 1)));
    for (const auto& [row, column] : {std::pair{0, 0}, {0, 1}, {1, 0}, {2, 0}, {2, 1}}) {
        const auto untouched = editor(row, column);
        delegate.setEditorData(untouched.get(), model->index(row, column));
        delegate.setModelData(untouched.get(), model, model->index(row, column));
    }
    EXPECT_EQ(model->get_EditCount(), 0);
    const auto day = editor(0, 0);
    delegate.setEditorData(day.get(), model->index(0, 0));
    qobject_cast<QDateEdit*>(day.get())->setDate(QDate(2021, 12, 31));
    delegate.setModelData(day.get(), model, model->index(0, 0));
    EXPECT_EQ(Shown(tab, 0, 0), u"2021-12-31");
    model->RevertAll();
}

TEST_F(DataGrid, WordsOfAnEnumAreChosenFromAList)
{
    const auto database = OpenWith(QStringLiteral(
        "CREATE TABLE t(e ENUM('sad', 'it''s \"x\"', '', 'a, b')); INSERT INTO t VALUES ('sad'), (NULL), ('')"));
    ASSERT_TRUE(database);
    DataTab* tab = Open(database, QStringLiteral("t"));
    ASSERT_TRUE(tab);
    TableModel* model = tab->get_Model();
    const CellDelegate delegate;
    const auto choose = [&](int row, int word) {
        const std::unique_ptr<QWidget> editor(delegate.createEditor(tab, {}, model->index(row, 0)));
        auto* const combo = qobject_cast<QComboBox*>(editor.get());
        if (!combo)
            return QStringLiteral("no list");
        delegate.setEditorData(combo, model->index(row, 0));
        const QString before = combo->currentIndex() < 0 ? QStringLiteral("NULL") : combo->currentText();
        if (word >= 0)
            combo->setCurrentIndex(word);
        delegate.setModelData(combo, model, model->index(row, 0));
        return before;
    };
    EXPECT_EQ(choose(0, -1), u"sad");
    EXPECT_EQ(choose(1, -1), u"NULL");
    EXPECT_EQ(choose(2, -1), u"");
    EXPECT_EQ(model->get_EditCount(), 0) << "left alone";
    choose(0, 1);
    choose(1, 2); // the empty word, which is none NULL
    choose(2, 3);
    EXPECT_EQ(model->get_EditCount(), 3);
    tab->Save();
    ASSERT_TRUE(Wait(tab));
    EXPECT_EQ(tab->get_Error(), QString());
    EXPECT_EQ(Read(database, QStringLiteral("SELECT e FROM t ORDER BY rowid")), u"it's \"x\";;a, b");
}

TEST_F(DataGrid, AmbiguousValuesAreReadOnlyAndSayWhy)
{
    const auto database = OpenWith(QStringLiteral(
        "CREATE TABLE t(a VARCHAR[2], u UNION(n INTEGER, s VARCHAR)[]); INSERT INTO t VALUES (['x', 'y'], ['5'::VARCHAR]), (['x, y', 'z'], NULL)"));
    ASSERT_TRUE(database);
    DataTab* tab = Open(database, QStringLiteral("t"));
    ASSERT_TRUE(tab);
    TableModel* model = tab->get_Model();
    EXPECT_TRUE(model->flags(model->index(0, 0)) & Qt::ItemIsEditable);
    EXPECT_FALSE(model->flags(model->index(1, 0)) & Qt::ItemIsEditable);
    EXPECT_FALSE(model->flags(model->index(0, 1)) & Qt::ItemIsEditable);
    EXPECT_TRUE(model->index(1, 0).data(Qt::ToolTipRole).toString().contains(u"more than one way"));
    EXPECT_TRUE(model->index(0, 1).data(Qt::ToolTipRole).toString().contains(u"statement"));
    // A paste leaves them as they are.
    QApplication::clipboard()->setText(QStringLiteral("[p, q]\tx\n[r, s]\ty"));
    tab->get_Grid()->setCurrentIndex(model->index(0, 0));
    EXPECT_EQ(tab->get_Grid()->Paste(), 1);
    EXPECT_EQ(model->get_EditCount(), 1);
    tab->Save();
    ASSERT_TRUE(Wait(tab));
    EXPECT_EQ(Read(database, QStringLiteral("SELECT a[1], a[2], union_tag(u[1]) FROM t ORDER BY 1")), u"p|q|s;x, y|z|NULL");
}

TEST_F(DataGrid, ColumnsAreShownAndHiddenWithoutLosingEdits)
{
    const auto database = OpenWith(QStringLiteral(
        "CREATE TABLE t(id INTEGER, s VARCHAR, g INTEGER GENERATED ALWAYS AS (id * 2)); INSERT INTO t VALUES (1, 'a'), (2, 'b')"));
    ASSERT_TRUE(database);
    DataTab* tab = Open(database, QStringLiteral("t"));
    ASSERT_TRUE(tab);
    TableModel* model = tab->get_Model();
    ASSERT_EQ(model->columnCount(), 3);
    EXPECT_TRUE(Set(tab, 1, 1, QStringLiteral("mine")));
    const int added = model->AddRow();
    EXPECT_TRUE(Set(tab, added, 0, QStringLiteral("3")));
    tab->get_Grid()->get_Header()->get_Field(0)->setText(QStringLiteral(">= 0"));
    tab->findChild<QAction*>(QStringLiteral("rowIds"))->trigger();
    EXPECT_EQ(model->columnCount(), 4);
    ASSERT_TRUE(Wait(tab));
    EXPECT_EQ(Shown(tab, 1, 0), u"1");
    EXPECT_EQ(Shown(tab, 1, 2), u"mine");
    EXPECT_FALSE(model->flags(model->index(1, 0)) & Qt::ItemIsEditable);
    tab->findChild<QAction*>(QStringLiteral("generated"))->trigger();
    tab->findChild<QAction*>(QStringLiteral("rowIds"))->trigger();
    ASSERT_TRUE(Wait(tab));
    EXPECT_EQ(model->columnCount(), 2);
    EXPECT_EQ(model->get_EditCount(), 2);
    tab->Save();
    ASSERT_TRUE(Wait(tab));
    EXPECT_EQ(tab->get_Error(), QString());
    EXPECT_EQ(Read(database, QStringLiteral("FROM t ORDER BY id")), u"1|a|2;2|mine|4;3|NULL|6");
}

TEST_F(DataGrid, EscapeTakesBackAndAnotherWriterIsNotOverwritten)
{
    const auto database = OpenWith(
        QStringLiteral("CREATE TABLE t(id INTEGER PRIMARY KEY, s VARCHAR); INSERT INTO t VALUES (1, 'a'), (2, 'b')"));
    ASSERT_TRUE(database);
    DataTab* tab = Open(database, QStringLiteral("t"));
    ASSERT_TRUE(tab);
    TableModel* model = tab->get_Model();
    TableGrid* grid = tab->get_Grid();
    grid->setFocus();
    EXPECT_TRUE(Set(tab, 0, 1, QStringLiteral("first")));
    EXPECT_TRUE(Set(tab, 1, 1, QStringLiteral("second")));
    for (const int left : {1, 0, 0}) { // the last one goes first
        grid->setCurrentIndex(model->index(0, 0));
        QTest::keyClick(grid, Qt::Key_Escape);
        EXPECT_EQ(model->get_EditCount(), left);
        EXPECT_EQ(Shown(tab, 1, 1), u"b");
    }
    // Somebody writes between reading and saving: into another cell of the row, then into the very one.
    EXPECT_TRUE(Set(tab, 0, 1, QStringLiteral("mine")));
    database->SqlExecute(QStringLiteral("UPDATE t SET s = 'theirs' WHERE id = 1"));
    tab->Save();
    ASSERT_TRUE(Wait(tab));
    EXPECT_TRUE(tab->get_Error().contains(u"changed by somebody else")) << tab->get_Error().toStdString();
    EXPECT_EQ(Read(database, QStringLiteral("FROM t ORDER BY id")), u"1|theirs;2|b");
    EXPECT_EQ(model->get_EditCount(), 1) << "the edit is still there";
    model->RevertAll();
    model->Reload();
    ASSERT_TRUE(Wait(tab));
    EXPECT_EQ(Shown(tab, 0, 1), u"theirs");
}

TEST_F(DataGrid, TheFirstWindowIsReadOnAWorker)
{
    const auto database = OpenWith(QStringLiteral(
        "CREATE TABLE t(id INTEGER, g INTEGER GENERATED ALWAYS AS (id * 2)); INSERT INTO t SELECT range FROM range(10)"));
    ASSERT_TRUE(database);
    QList<bool> onMain;
    HF::SetQueryLogSink([&](const HF::LQueryLogEntry& entry) {
        if (entry.text.contains(QLatin1String("LIMIT 1000")))
            onMain.append(QThread::currentThread() == qApp->thread());
    });
    DataTab* tab = Open(database, QStringLiteral("t"));
    ASSERT_TRUE(tab);
    HF::SetQueryLogSink({});
    EXPECT_EQ(Shown(tab, 9, 1), u"18");
    EXPECT_EQ(onMain, QList<bool>{false});
}

TEST(ValueText, BytesAsDigits)
{
    for (const QByteArray& bytes : {QByteArray(), QByteArray("\0", 1), QByteArray(33, '\xAB')})
        EXPECT_EQ(ParseHex(HexText(bytes)), bytes);
    EXPECT_EQ(ParseHex(QStringLiteral(" 0A\n ff ")), QByteArray("\x0A\xFF"));
    for (const char* bad : {"0", "0g", "0x00", "00-11"})
        EXPECT_FALSE(ParseHex(QLatin1String(bad))) << bad;
}

TEST_F(DataGrid, NamesStandAboveTheirFilters)
{
    const auto database = OpenWith(QStringLiteral("CREATE TABLE t(first INTEGER, second VARCHAR); INSERT INTO t VALUES (1, 'x')"));
    ASSERT_TRUE(database);
    DataTab* tab = Open(database, QStringLiteral("t"));
    ASSERT_TRUE(tab);
    const FilterHeader* header = tab->get_Grid()->get_Header();
    WaitFor([] { return false; }, 100);
    for (int column = 0; column < 2; ++column) {
        const QRect field = header->get_Field(column)->geometry();
        EXPECT_GE(field.top(), header->fontMetrics().height()) << column;
        EXPECT_LE(field.bottom(), header->height()) << column;
        EXPECT_EQ(field.left(), header->sectionViewportPosition(column));
    }
    EXPECT_FALSE(tab->get_Model()->IsLoading());
}
