// SPDX-License-Identifier: GPL-3.0-or-later
// What goes wrong under an open window is told where it happened, and the rest
// stays.
#include "studio/data_tab.h"
#include "studio/window_fixture.h"

#include <QFile>

namespace {

class BadInput : public Window
{
protected:
    QString TextOf(const HF::LTreeItem* item) const
    {
        return m_window->get_TreeModel()->IndexOf(item).data().toString();
    }
    QModelIndex Tables(const rc::Ptr<HF::I_LDatabase>& database)
    {
        return Child(Child(m_window->get_TreeModel()->IndexOf(database.get()), QStringLiteral("main")),
                     QStringLiteral("Tables"));
    }
    /// Reads the node's list anew and waits for the outcome.
    void Refresh(const QModelIndex& index)
    {
        bool done = false;
        const auto watch = QObject::connect(m_window->get_TreeModel(), &QAbstractItemModel::dataChanged, m_window.get(),
                                            [&done] { done = true; });
        m_window->get_TreeModel()->Refresh(index);
        WaitFor([&] { return done; }, 1500);
        QObject::disconnect(watch);
    }
};

} // namespace

TEST_F(BadInput, ADatabaseFileThatVanishesIsToldInItsRow)
{
    const auto kept = OpenWith(QStringLiteral("CREATE TABLE kept(a INTEGER)"));
    const auto lost = OpenWith(QStringLiteral("CREATE TABLE lost(a INTEGER)"));
    ASSERT_TRUE(kept && lost);
    const QPersistentModelIndex tables = Tables(lost);
    Child(tables, QStringLiteral("lost"));
    Tables(kept);
    QFile::remove(lost->get_Path());
    QFile::remove(lost->get_Path() + QStringLiteral(".wal"));
    Refresh(tables);
    EXPECT_TRUE(TextOf(lost.get()).contains(u"the file is gone")) << TextOf(lost.get()).toStdString();
    EXPECT_FALSE(TextOf(kept.get()).contains(u"gone")) << TextOf(kept.get()).toStdString();
    EXPECT_TRUE(WaitFor([&] { return m_window->get_Log()->ErrorText().contains(lost->get_Path()); }));
    Child(Tables(kept), QStringLiteral("kept"));
}

TEST_F(BadInput, AListThatCannotBeReadSaysSoAndKeepsWhatItHad)
{
    const auto database = OpenWith(QStringLiteral("CREATE TABLE t(a INTEGER); CREATE VIEW v AS SELECT 1 AS a"));
    ASSERT_TRUE(database);
    const QPersistentModelIndex tables = Tables(database);
    Child(tables, QStringLiteral("t"));
    const QPersistentModelIndex views = Child(tables.parent(), QStringLiteral("Views"));
    // An aborted transaction refuses every query of the session.
    for (const char* text : {"BEGIN", "SELECT error('no more')"})
        database->SqlQuery(QLatin1String(text), HF::QUERY_SILENT_ERROR | HF::QUERY_NO_LOG, {}, 1, 2, 1);
    Refresh(tables);
    EXPECT_TRUE(tables.data().toString().contains(u"could not be read")) << tables.data().toString().toStdString();
    Child(tables, QStringLiteral("t"));
    // A list that was never read shows one row that says why there is nothing.
    Child(views, QStringLiteral("The list could not be read; the error log tells why"));
    EXPECT_TRUE(WaitFor([&] { return m_window->get_Log()->ErrorText().contains(u"aborted"); }));

    database->SqlQuery(QStringLiteral("ROLLBACK"), HF::QUERY_NO_LOG, {}, 1, 2, 1);
    Refresh(tables);
    Refresh(views);
    EXPECT_FALSE(tables.data().toString().contains(u"could not")) << tables.data().toString().toStdString();
    Child(tables, QStringLiteral("t"));
    Child(views, QStringLiteral("v"));
}

TEST_F(BadInput, AViewOverADroppedTableStandsAndItsDataSayWhatIsMissing)
{
    const auto database = OpenWith(QStringLiteral(
        "CREATE TABLE gone(a INTEGER); CREATE VIEW broken AS SELECT a FROM gone; CREATE VIEW fine AS SELECT 1 AS a; DROP TABLE gone"));
    ASSERT_TRUE(database);
    const QPersistentModelIndex views = Child(Tables(database).parent(), QStringLiteral("Views"));
    const QPersistentModelIndex broken = Child(views, QStringLiteral("broken"));
    Child(Child(views, QStringLiteral("fine")), QStringLiteral("a"));
    m_window->get_TreeView()->expand(broken);
    const auto item = m_window->get_TreeModel()->ItemAt(broken);
    ASSERT_TRUE(item && item->get_DefaultAction());
    item->get_DefaultAction()->Run({rc::Ref<HF::LTreeItem>(item)});
    DataTab* tab = nullptr;
    ASSERT_TRUE(WaitFor([&] {
        tab = qobject_cast<DataTab*>(m_window->get_Tabs()->currentWidget());
        return tab && !tab->get_Error().isEmpty();
    }));
    EXPECT_TRUE(tab->get_Error().contains(u"gone")) << tab->get_Error().toStdString();
}

TEST_F(BadInput, OpeningWhatIsNotThereTellsAndLeavesTheWindowUsable)
{
    support::Prompter prompter;
    m_window->OpenLocation(Path(QStringLiteral("nosuch.duckdb")));
    EXPECT_TRUE(WaitFor([&] { return !prompter.told.isEmpty(); }));
    ASSERT_FALSE(prompter.told.isEmpty());
    EXPECT_TRUE(prompter.told.first().contains(u"does not exist")) << prompter.told.first().toStdString();
    EXPECT_FALSE(QFile::exists(Path(QStringLiteral("nosuch.duckdb"))));
    EXPECT_TRUE(OpenWith(QStringLiteral("SELECT 1")));
}
