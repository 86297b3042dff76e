// SPDX-License-Identifier: GPL-3.0-or-later
// The window: open, look around, run, read.
#include "hf/recents.h"
#include "studio/completion.h"
#include "studio/copy_text.h"
#include "studio/cursor_model.h"
#include "studio/property_sheet.h"
#include "studio/result_grid.h"
#include "studio/sql_text_edit.h"
#include "studio/window_fixture.h"

#include <QFile>
#include <QIcon>
#include <QKeyEvent>
#include <QMessageBox>
#include <QPushButton>

using namespace Qt::StringLiterals;

namespace {

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
    const QPersistentModelIndex shop = Child(root, QStringLiteral("shop"));
    const QPersistentModelIndex tables = Child(shop, QStringLiteral("Tables"));
    const QPersistentModelIndex lines = Child(tables, QStringLiteral("order_lines"));
    for (const char* list : {"Checks", "Fields", "Indexes", "Links", "Methods", "Uniques"})
        Child(lines, QLatin1String(list));
    Child(shop, QStringLiteral("Sequences"));
    const QPersistentModelIndex views = Child(Child(root, QStringLiteral("reports")), QStringLiteral("Views"));
    const QPersistentModelIndex view = Child(views, QStringLiteral("order_totals"));
    EXPECT_EQ(Child(view, QStringLiteral("number")).data().toString().section(u' ', 0, 0), u"number");
    const QPersistentModelIndex fields = Child(lines, QStringLiteral("Fields"));
    m_window->get_TreeView()->setCurrentIndex(lines);
    EXPECT_TRUE(WaitFor([&] { return m_window->get_Sheet()->topLevelItemCount() > 0; }));
    Child(Child(lines, QStringLiteral("Methods")), QStringLiteral("total"));
    Child(fields, QStringLiteral("quantity"));
    Run(database, QStringLiteral("SELECT * FROM reports.order_totals ORDER BY number;\n\n"
                                 "SELECT c.country, count(*) AS orders\nFROM shop.orders o JOIN shop.customers c ON "
                                 "c.id = o.customer\nGROUP BY ALL ORDER BY orders DESC;\n"));
    Keep("window.png");
}

TEST_F(Window, DatabasesInMemoryHaveNamesAndLeaveNoTrace)
{
    for (QPushButton* button : m_window->findChildren<QPushButton*>())
        if (button->text() == u"New Database in Memory") {
            button->click();
            button->click();
        }
    const RcList<HF::I_LDatabase> databases = Databases();
    ASSERT_EQ(databases.size(), 2);
    for (int i = 0; i < 2; ++i) {
        const QString name = i == 0 ? QStringLiteral("memory") : QStringLiteral("memory 2");
        EXPECT_EQ(databases[i]->get_Name(), name);
        const QModelIndex row = m_window->get_TreeModel()->IndexOf(databases[i].get());
        Child(row, QStringLiteral("main"));
        EXPECT_EQ(row.data().toString().section(u"  "_s, 0, 0), name) << "no word of a file that is gone";
    }
    EXPECT_TRUE(databases[0]->SqlExecute(QStringLiteral("CREATE TABLE only_here(a INTEGER)")));
    EXPECT_FALSE(databases[1]->SqlExecute(QStringLiteral("SELECT * FROM only_here")));
    for (const auto& recent : databases[0]->get_Connection()->get_RecentDatabases()->get_Items())
        EXPECT_FALSE(recent->get_Name().startsWith(u"memory")) << "it cannot be opened again";
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
    const auto database = OpenWith(QStringLiteral("CREATE TABLE people(id INTEGER, first_name VARCHAR, \"odd name\" INTEGER, \"order\" INTEGER, name VARCHAR)"));
    ASSERT_TRUE(database);
    SqlEditorTab* tab = m_window->OpenSqlTab(database);
    ASSERT_TRUE(WaitFor([&] { return !tab->get_Editor()->get_CompletionWords().idents.isEmpty(); }));
    const QString text = QStringLiteral("SELECT p. FROM people AS p");
    const Completion found = CompleteAt(text, int(text.indexOf(u'.')) + 1, tab->get_Editor()->get_CompletionWords());
    EXPECT_EQ(found.words, QStringList({QStringLiteral("\"odd name\""), QStringLiteral("\"order\""), QStringLiteral("first_name"),
                                        QStringLiteral("id"), QStringLiteral("name")}));
    EXPECT_FALSE(tab->get_Editor()->get_CompletionWords().keywords.isEmpty());

    // The same by hand: the list opens behind the dot, and is taken with Enter.
    SqlTextEdit* editor = tab->get_Editor();
    const auto type = [&](const QString& typed, const QString& chosen) {
        editor->setText(QStringLiteral("SELECT  FROM people AS p"));
        editor->setCursorPosition(0, 7);
        const auto press = [&](int key, const QString& text) {
            QKeyEvent event(QEvent::KeyPress, key, Qt::NoModifier, text);
            QApplication::sendEvent(editor, &event);
        };
        for (const QChar c : typed)
            press(0, QString(c));
        EXPECT_TRUE(WaitFor([&] { return editor->isListActive(); }, 5000)) << typed.toStdString();
        press(Qt::Key_Return, QStringLiteral("\r"));
        EXPECT_EQ(editor->text().toStdString(), "SELECT " + chosen.toStdString() + " FROM people AS p");
    };
    type(QStringLiteral("p."), QStringLiteral("p.\"odd name\""));
    type(QStringLiteral("p.fi"), QStringLiteral("p.first_name"));
    type(QStringLiteral("peo"), QStringLiteral("people"));
    type(QStringLiteral("p.or"), QStringLiteral("p.\"order\""));
    type(QStringLiteral("p.na"), QStringLiteral("p.name"));
    type(QStringLiteral("p.\"odd"), QStringLiteral("p.\"odd name\""));
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

TEST_F(Window, ATextThatIsNotSavedDoesNotGoUnasked)
{
    const auto database = OpenWith(QStringLiteral("SELECT 1"));
    ASSERT_TRUE(database);
    const auto open = [&](const char* typed) {
        SqlEditorTab* tab = Run(database, QStringLiteral("SELECT 1"));
        tab->get_Editor()->setText(QLatin1String(typed));
        return tab;
    };
    SqlEditorTab* tab = open("SELECT 'typed'");
    QTabWidget* tabs = m_window->get_Tabs();
    const std::function<void()> ways[] = {
        [&] { emit tabs->tabCloseRequested(tabs->indexOf(tab)); },
        [&] { EXPECT_FALSE(m_window->close()); },
        [&] { database->get_Action(QString::fromLatin1(HF::DO_CLOSE))->Run({rc::Ref<HF::LTreeItem>(rc::Ptr<HF::LTreeItem>(database))}); },
    };
    for (const auto& close : ways) {
        const ModalWindow<QMessageBox> question([](QMessageBox& box) { box.button(QMessageBox::No)->click(); });
        close();
        EXPECT_TRUE(question.WasSeen());
        EXPECT_GE(tabs->indexOf(tab), 0);
        EXPECT_EQ(Databases().size(), 1);
    }
    for (const char* text : {"", " \n\t"}) {
        const int count = tabs->count();
        emit tabs->tabCloseRequested(tabs->indexOf(open(text)));
        EXPECT_EQ(tabs->count(), count);
    }
    SqlEditorTab* untouched = Run(database, QStringLiteral("SELECT 1"));
    emit tabs->tabCloseRequested(tabs->indexOf(untouched));
    EXPECT_LT(tabs->indexOf(untouched), 0);
    // With the files of its database the text does not go.
    support::Prompter prompter;
    database->get_Action(QString::fromLatin1(HF::DO_DELETE_PHYSICALLY))->Run({rc::Ref<HF::LTreeItem>(rc::Ptr<HF::LTreeItem>(database))});
    EXPECT_FALSE(QFile::exists(database->get_Path()));
    ASSERT_GE(tabs->indexOf(tab), 0);
    EXPECT_TRUE(WaitFor([&] { return tabs->tabText(tabs->indexOf(tab)).endsWith(u"closed"); }, 5000));
    {
        const ModalWindow<QMessageBox> question([](QMessageBox& box) { box.button(QMessageBox::Yes)->click(); });
        emit tabs->tabCloseRequested(tabs->indexOf(tab));
        EXPECT_TRUE(question.WasSeen());
        EXPECT_LT(tabs->indexOf(tab), 0);
    }
}

TEST_F(Window, IconsFollowThePalette)
{
    const auto database = OpenWith(QStringLiteral("SELECT 1"));
    ASSERT_TRUE(database);
    m_window->OpenSqlTab(database);
    const QModelIndex row = m_window->get_TreeModel()->IndexOf(database.get());
    const std::function<QIcon()> places[] = {
        [&] { return Action(QStringLiteral("Open Database..."))->icon(); },
        [&] { return m_window->get_Tabs()->tabIcon(1); },
        [&] { return row.data(Qt::DecorationRole).value<QIcon>(); },
    };
    const QPalette before = QApplication::palette();
    for (const auto& icon : places) {
        const QIcon kept = icon();
        QApplication::setPalette(QPalette(Qt::black, Qt::white));
        const QImage light = kept.pixmap(20).toImage();
        QApplication::setPalette(QPalette(Qt::white, Qt::black));
        EXPECT_FALSE(light.isNull());
        EXPECT_NE(kept.pixmap(20).toImage(), light);
    }
    QApplication::setPalette(before);
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

TEST_F(Window, ANewReadingKeepsWhatIsOpen)
{
    const auto database = OpenWith(QStringLiteral("CREATE TABLE t(a INTEGER); CREATE TABLE z(a INTEGER)"));
    ASSERT_TRUE(database);
    TreeModel* model = m_window->get_TreeModel();
    const QPersistentModelIndex tables =
        Child(Child(model->IndexOf(database.get()), QStringLiteral("main")), QStringLiteral("Tables"));
    const QPersistentModelIndex t = Child(tables, QStringLiteral("t"));
    const QPersistentModelIndex fields = Child(t, QStringLiteral("Fields"));
    const QPersistentModelIndex z = Child(tables, QStringLiteral("z"));
    m_window->get_TreeView()->setCurrentIndex(Child(fields, QStringLiteral("a")));
    ASSERT_TRUE(HF::IsQuerySuccess(database->SqlQuery(
        QStringLiteral("ALTER TABLE t ADD COLUMN b INTEGER; CREATE TABLE m(a INTEGER); DROP TABLE z"), 0, {}, 1, 2, 1)));
    const auto before = model->ItemAt(t);
    model->Refresh(tables);
    ASSERT_TRUE(WaitFor([&] { return model->rowCount(tables) == 2 && !z.isValid() && model->rowCount(fields) == 2; }, 10000));
    EXPECT_NE(model->ItemAt(t).get(), before.get());
    EXPECT_TRUE(m_window->get_TreeView()->isExpanded(t) && m_window->get_TreeView()->isExpanded(fields));
    EXPECT_EQ(Child(fields, QStringLiteral("b")).row(), 1);
    EXPECT_EQ(m_window->get_TreeView()->currentIndex().data(Qt::EditRole).toString().toStdString(), "a");
    EXPECT_TRUE(m_window->get_TreeView()->currentIndex().parent() == fields);
    EXPECT_TRUE(WaitFor([&] {
        return m_window->findChild<PropertySheet*>()->get_Item().get() == model->ItemAt(m_window->get_TreeView()->currentIndex()).get();
    }, 5000));
    Child(tables, QStringLiteral("m"));
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
