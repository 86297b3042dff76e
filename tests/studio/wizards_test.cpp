// SPDX-License-Identifier: GPL-3.0-or-later
// The wizards of dumps: a dump made and loaded again, a failed statement led to.
#include "studio/dump_wizard.h"
#include "studio/load_wizard.h"
#include "studio/task_page.h"
#include "studio/window_fixture.h"

#include <QFile>
#include <QLineEdit>
#include <QTreeWidget>

namespace {

/// Walks to the last page and waits until its task has ended.
void Finish(QWizard& wizard, const QString& path)
{
    wizard.findChild<QLineEdit*>(QStringLiteral("path"))->setText(path);
    auto* const work = wizard.findChild<TaskPage*>();
    for (int i = 0; i < 5 && wizard.currentPage() != work; ++i)
        wizard.next();
    ASSERT_EQ(wizard.currentPage(), work);
    EXPECT_TRUE(WaitFor([&] { return work->isComplete(); }));
}

template <class W>
W* Shown(MainWindow& window)
{
    W* found = nullptr;
    WaitFor([&] { return (found = window.findChild<W*>()) != nullptr; });
    return found;
}

} // namespace

TEST_F(Window, ADumpIsMadeAndLoaded)
{
    const auto source = OpenWith(QStringLiteral(
        "CREATE SCHEMA s; CREATE TABLE s.t AS SELECT range AS i FROM range(5000); CREATE TABLE other(x INTEGER); "
        "CREATE VIEW v AS SELECT 1 AS one"));
    ASSERT_TRUE(source);
    const QString path = m_folder.filePath(QStringLiteral("made.sql"));
    m_window->StartDump(rc::Ref<HF::LTreeItem>(*source));
    auto* dump = Shown<DumpWizard>(*m_window);
    ASSERT_TRUE(dump);
    Keep("dump-first.png", *dump);
    dump->findChild<QLineEdit*>(QStringLiteral("path"))->setText(path);
    dump->next();
    Keep("dump-options.png", *dump);
    Finish(*dump, path);
    Keep("dump-done.png", *dump);
    dump->accept();
    QFile file(path);
    ASSERT_TRUE(file.open(QIODevice::ReadOnly));
    const QByteArray text = file.readAll();
    EXPECT_TRUE(text.contains("(4999);") && text.contains("CREATE VIEW") && text.contains("\"other\""));
    WaitFor([&] { return !m_window->findChild<DumpWizard*>(); });

    // What is picked in the tree is what is checked.
    const auto schema = source->get_ChildObject(HF::TYPE_SCHEMA, QStringLiteral("s")).Force();
    m_window->StartDump(rc::Ref<HF::LTreeItem>(*schema));
    dump = Shown<DumpWizard>(*m_window);
    ASSERT_TRUE(dump);
    const QString part = m_folder.filePath(QStringLiteral("part.sql"));
    Finish(*dump, part);
    dump->accept();
    QFile partFile(part);
    ASSERT_TRUE(partFile.open(QIODevice::ReadOnly));
    const QByteArray partText = partFile.readAll();
    EXPECT_TRUE(partText.contains("(4999);") && !partText.contains("other") && !partText.contains("VIEW"));

    const auto target = OpenWith(QStringLiteral("CREATE TABLE other(x INTEGER)"));
    ASSERT_TRUE(target);
    m_window->StartLoad(rc::Ref<HF::LTreeItem>(*target));
    auto* const load = Shown<LoadWizard>(*m_window);
    ASSERT_TRUE(load);
    Keep("load-first.png", *load);
    Finish(*load, path);
    Keep("load-done.png", *load);
    // The table that was there already is the one failure; it leads to its statement.
    auto* const errors = load->findChild<QTreeWidget*>(QStringLiteral("errors"));
    ASSERT_EQ(errors->topLevelItemCount(), 1);
    EXPECT_TRUE(errors->topLevelItem(0)->text(1).contains(QLatin1String("already exists")));
    const int tabs = m_window->get_Tabs()->count();
    emit errors->itemActivated(errors->topLevelItem(0), 0);
    EXPECT_EQ(m_window->get_Tabs()->count(), tabs + 1);
    load->accept();
    EXPECT_TRUE(WaitFor([&] { return target->get_ChildObject(HF::TYPE_SCHEMA, QStringLiteral("s")).Force() != nullptr; }));
}
