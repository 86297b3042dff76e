// SPDX-License-Identifier: GPL-3.0-or-later
// The window, driven as a person would: open, look around, run, read. With
// ORBIS_SCREENSHOTS naming a folder each stage is also kept as a picture.
#include "hf/background.h"
#include "hf/database.h"
#include "hf/log.h"
#include "hf/plugin.h"
#include "hf/recents.h"
#include "studio/copy_text.h"
#include "studio/cursor_model.h"
#include "studio/log_panel.h"
#include "studio/main_window.h"
#include "studio/property_sheet.h"
#include "studio/result_grid.h"
#include "studio/sql_editor_tab.h"
#include "studio/sql_text_edit.h"
#include "studio/tree_model.h"

#include <gtest/gtest.h>

#include <QApplication>
#include <QElapsedTimer>
#include <QFile>
#include <QTabWidget>
#include <QTemporaryDir>
#include <QTreeView>

namespace {

bool WaitFor(const std::function<bool()>& condition, int milliseconds = 30000)
{
    QElapsedTimer timer;
    timer.start();
    while (!condition()) {
        if (timer.elapsed() > milliseconds)
            return false;
        QCoreApplication::processEvents(QEventLoop::AllEvents, 20);
    }
    return true;
}

HF::I_LPlugin& Plugin()
{
    static HF::LLoadedPlugin loaded =
        HF::LoadPlugin(qEnvironmentVariable("ORBIS_BIN") + QStringLiteral("/orb_duckdb.so"));
    if (!loaded.plugin)
        throw std::runtime_error(loaded.error.toStdString());
    return *loaded.plugin;
}

class Window : public testing::Test
{
protected:
    void SetUp() override
    {
        m_window = std::make_unique<MainWindow>(Plugin());
        m_window->resize(1280, 800);
        m_window->show();
    }

    void TearDown() override
    {
        for (const auto& database : Databases())
            database->Close().Force();
        m_window.reset();
        HF::WaitForWorkers(20000);
    }

    RcList<HF::I_LDatabase> Databases() const
    {
        RcList<HF::I_LDatabase> result;
        for (const auto& connection : HF::AppCtrlInstance().get_Connections())
            result += connection->get_Databases();
        return result;
    }

    /// Opens a new database with the text run in it.
    rc::Ptr<HF::I_LDatabase> OpenWith(const QString& sql)
    {
        const QString path = m_folder.filePath(QStringLiteral("db%1.duckdb").arg(++m_count));
        const auto connections = HF::AppCtrlInstance().get_Connections();
        if (connections.isEmpty())
            return nullptr;
        const auto made = connections.first()->CreateDatabase(path, {}).Force();
        if (!made)
            return nullptr;
        const auto results = made->SqlQuery(sql, HF::QUERY_NO_LOG, {}, 1, 2, 1);
        EXPECT_TRUE(HF::IsQuerySuccess(results)) << HF::GetQueryErrors(results).toStdString();
        EXPECT_TRUE(m_window->ShowObject(rc::Ref<HF::LTreeItem>(rc::Ptr<HF::LTreeItem>(made)), 1));
        return made;
    }

    /// The child of a node whose text begins with the words; expands the node.
    QModelIndex Child(const QModelIndex& parent, const QString& text)
    {
        TreeModel* model = m_window->get_TreeModel();
        m_window->get_TreeView()->expand(parent);
        QModelIndex found;
        WaitFor(
            [&] {
                if (model->canFetchMore(parent))
                    model->fetchMore(parent);
                for (int row = 0; row < model->rowCount(parent); ++row) {
                    const QModelIndex child = model->index(row, 0, parent);
                    if (child.data().toString() == text || child.data().toString().startsWith(text + u' ')) {
                        found = child;
                        return true;
                    }
                }
                return false;
            },
            5000);
        EXPECT_TRUE(found.isValid()) << text.toStdString() << " is not below " << parent.data().toString().toStdString();
        return found;
    }

    /// Runs the text in a new tab and waits for its results.
    SqlEditorTab* Run(const rc::Ptr<HF::I_LDatabase>& database, const QString& text)
    {
        SqlEditorTab* tab = m_window->OpenSqlTab(database, text);
        bool finished = false;
        QObject::connect(tab->get_Runner(), &QueryRunner::Finished, tab, [&finished] { finished = true; });
        tab->RunAll();
        EXPECT_TRUE(WaitFor([&] { return finished; }, 120000));
        return tab;
    }

    void Keep(const char* name)
    {
        const QString folder = qEnvironmentVariable("ORBIS_SCREENSHOTS");
        if (folder.isEmpty())
            return;
        WaitFor([] { return false; }, 500); // let everything be painted
        EXPECT_TRUE(m_window->grab().save(folder + u'/' + QLatin1String(name)));
    }

    QTemporaryDir m_folder;
    std::unique_ptr<MainWindow> m_window;
    int m_count = 0;
};

QString ReadFile(const char* path)
{
    QFile file{QString::fromUtf8(path)};
    EXPECT_TRUE(file.open(QIODevice::ReadOnly)) << path;
    return QString::fromUtf8(file.readAll());
}

} // namespace

TEST_F(Window, ShowsEveryKindOfObjectOfTheSample)
{
    const auto database = OpenWith(ReadFile(ORBIS_SOURCE_DIR "/examples/sample.sql"));
    ASSERT_TRUE(database);
    Keep("start.png");
    const QModelIndex root = m_window->get_TreeModel()->IndexOf(database.get());
    ASSERT_TRUE(root.isValid());
    const QModelIndex shop = Child(root, QStringLiteral("shop"));
    const QModelIndex tables = Child(shop, QStringLiteral("Tables"));
    const QModelIndex lines = Child(tables, QStringLiteral("order_lines"));
    for (const char* list : {"Checks", "Fields", "Indexes", "Links", "Methods", "Uniques"})
        Child(lines, QLatin1String(list));
    Child(shop, QStringLiteral("Sequences"));
    const QModelIndex views = Child(Child(root, QStringLiteral("reports")), QStringLiteral("Views"));
    const QModelIndex view = Child(views, QStringLiteral("order_totals"));
    EXPECT_EQ(Child(view, QStringLiteral("number")).data().toString().section(u' ', 0, 0), u"number");
    const QModelIndex fields = Child(lines, QStringLiteral("Fields"));
    m_window->get_TreeView()->setCurrentIndex(lines);
    EXPECT_TRUE(WaitFor([&] { return m_window->get_Sheet()->topLevelItemCount() > 0; }));
    Child(Child(lines, QStringLiteral("Methods")), QStringLiteral("total"));
    Child(fields, QStringLiteral("quantity"));
    Run(database, QStringLiteral("SELECT * FROM reports.order_totals ORDER BY number;\n\n"
                                 "SELECT c.country, count(*) AS orders\nFROM shop.orders o JOIN shop.customers c ON "
                                 "c.id = o.customer\nGROUP BY ALL ORDER BY orders DESC;\n"));
    Keep("window.png");
}

TEST_F(Window, AFailureInTheMiddleKeepsWhatCameBefore)
{
    const auto database = OpenWith(QStringLiteral("CREATE TABLE t(a INTEGER)"));
    ASSERT_TRUE(database);
    SqlEditorTab* tab = Run(database, QStringLiteral("INSERT INTO t VALUES (1); SELECT a FROM t; SELECT nosuch FROM t; "
                                                     "INSERT INTO t VALUES (2);"));
    ASSERT_EQ(tab->get_Results()->count(), 2); // one grid, the messages
    const auto* grid = qobject_cast<ResultGrid*>(tab->get_Results()->widget(0));
    ASSERT_TRUE(grid);
    EXPECT_EQ(grid->get_Model()->rowCount(), 1);
    EXPECT_EQ(grid->get_Model()->index(0, 0).data(Qt::DisplayRole).toString(), u"1");
    EXPECT_TRUE(WaitFor([&] { return m_window->get_Log()->ErrorText().contains(u"nosuch"); }));
    const auto count = database->SqlSelect(QStringLiteral("SELECT count(*) FROM t"), 0, {}, 1, 2, 1);
    ASSERT_TRUE(count && count->FirstRecord());
    EXPECT_EQ(count->get_Column(0)->get_String(), u"1"); // nothing behind the failure ran
}

TEST_F(Window, CompletesAColumnBehindAnAlias)
{
    const auto database = OpenWith(QStringLiteral("CREATE TABLE people(id INTEGER, first_name VARCHAR, \"odd name\" INTEGER)"));
    ASSERT_TRUE(database);
    SqlEditorTab* tab = m_window->OpenSqlTab(database);
    ASSERT_TRUE(WaitFor([&] { return !tab->get_Editor()->get_CompletionWords().idents.isEmpty(); }));
    const QString text = QStringLiteral("SELECT p. FROM people AS p");
    const Completion found = CompleteAt(text, int(text.indexOf(u'.')) + 1, tab->get_Editor()->get_CompletionWords());
    EXPECT_EQ(found.words, QStringList({QStringLiteral("\"odd name\""), QStringLiteral("first_name"), QStringLiteral("id")}));
    EXPECT_FALSE(tab->get_Editor()->get_CompletionWords().keywords.isEmpty());
}

TEST_F(Window, AMillionRowsAndEveryLookOfACell)
{
    const auto database = OpenWith(QStringLiteral("SELECT 1"));
    ASSERT_TRUE(database);
    SqlEditorTab* tab = Run(database, QStringLiteral("SELECT i, 'row ' || i AS t, NULL::INTEGER AS n, '\\xAA\\xBB'::BLOB AS b "
                                                     "FROM range(1000000) r(i)"));
    const auto* grid = qobject_cast<ResultGrid*>(tab->get_Results()->widget(0));
    ASSERT_TRUE(grid);
    CursorModel* model = grid->get_Model();
    ASSERT_EQ(model->rowCount(), 1000000);
    EXPECT_EQ(model->index(999999, 0).data().toString(), u"999999");
    EXPECT_EQ(model->index(999999, 1).data().toString(), u"row 999999");
    EXPECT_EQ(model->index(5, 2).data().toString(), u"NULL");
    EXPECT_TRUE(model->index(5, 2).data(CursorModel::NullRole).toBool());
    EXPECT_EQ(model->index(5, 3).data().toString(), u"aabb");
    EXPECT_EQ(CopyText(*model, {1}, {0, 1, 2, 3}, CopyForm::Text, {}), u"1\trow 1\t\taabb");
    EXPECT_EQ(CopyText(*model, {1}, {0, 1, 2, 3}, CopyForm::Csv, {}), u"i,t,n,b\n1,row 1,,aabb\n");
    EXPECT_EQ(CopyText(*model, {1}, {0, 1, 2, 3}, CopyForm::Insert, QStringLiteral("t")),
              u"INSERT INTO t (i, t, n, b) VALUES (1, 'row 1', NULL, unhex('aabb'));\n");
}

TEST_F(Window, StopEndsARunningStatementAndTheSessionGoesOn)
{
    const auto database = OpenWith(QStringLiteral("SELECT 1"));
    ASSERT_TRUE(database);
    SqlEditorTab* tab = m_window->OpenSqlTab(
        database, QStringLiteral("SELECT sum(a.range * b.range) FROM range(1000000) a, range(1000000) b"));
    tab->RunAll();
    ASSERT_TRUE(WaitFor([&] { return tab->get_Runner()->IsRunning(); }));
    WaitFor([] { return false; }, 300);
    tab->Stop();
    EXPECT_TRUE(WaitFor([&] { return !tab->get_Runner()->IsRunning(); }, 20000));
    SqlEditorTab* next = Run(database, QStringLiteral("SELECT 7 AS seven"));
    EXPECT_EQ(next->get_Results()->count(), 2);
}

TEST_F(Window, SystemObjectsShowOnDemand)
{
    const auto database = OpenWith(QStringLiteral("SELECT 1"));
    ASSERT_TRUE(database);
    TreeModel* model = m_window->get_TreeModel();
    const QModelIndex root = model->IndexOf(database.get());
    Child(root, QStringLiteral("main"));
    auto names = [&] {
        QStringList result;
        const QModelIndex at = model->IndexOf(database.get());
        for (int row = 0; row < model->rowCount(at); ++row)
            result.append(model->index(row, 0, at).data(Qt::EditRole).toString());
        return result;
    };
    EXPECT_EQ(names(), QStringList({QStringLiteral("main")}));
    model->ShowSystemObjects(true);
    EXPECT_EQ(names(), QStringList({QStringLiteral("information_schema"), QStringLiteral("main"), QStringLiteral("pg_catalog")}));
}

TEST_F(Window, ADatabaseThatClosesLeavesTheTreeWhole)
{
    const auto first = OpenWith(QStringLiteral("CREATE TABLE t(a INTEGER)"));
    const auto second = OpenWith(QStringLiteral("CREATE TABLE u(a INTEGER)"));
    ASSERT_TRUE(first && second);
    TreeModel* model = m_window->get_TreeModel();
    Child(model->IndexOf(first.get()), QStringLiteral("main"));
    first->Close().Force();
    EXPECT_TRUE(WaitFor([&] { return !model->IndexOf(first.get()).isValid(); }, 5000));
    ASSERT_TRUE(model->IndexOf(second.get()).isValid());
    Child(Child(Child(model->IndexOf(second.get()), QStringLiteral("main")), QStringLiteral("Tables")), QStringLiteral("u"));
}
