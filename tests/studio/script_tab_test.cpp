// SPDX-License-Identifier: GPL-3.0-or-later
// Scripts on a tab of the window, as a person runs and stops them.
#include "studio/recent_scripts.h"
#include "studio/script_output.h"
#include "studio/script_tab.h"
#include "studio/script_text_edit.h"
#include "window_fixture.h"

#include <QAction>
#include <QFile>
#include <QMenu>
#include <QMessageBox>
#include <QMouseEvent>
#include <QPushButton>
#include <QSpinBox>
#include <QTextBlock>

#include <gtest/gtest.h>

namespace {

class ScriptWindow : public Window
{
protected:
    ScriptTab* Open(const QString& text)
    {
        ScriptTab* tab = m_window->OpenScript();
        tab->get_Editor()->setText(text);
        tab->get_Editor()->setModified(false);
        return tab;
    }
    /// Runs it to its end; what it printed.
    QString RunToEnd(ScriptTab* tab)
    {
        tab->Run();
        EXPECT_TRUE(WaitFor([&] { return !tab->IsRunning(); }));
        return tab->get_Output()->Text();
    }
    static QPushButton* ButtonOfScript()
    {
        for (QWidget* widget : QApplication::topLevelWidgets())
            if (auto* button = qobject_cast<QPushButton*>(widget); button && button->isVisible())
                return button;
        return nullptr;
    }
};

} // namespace

TEST_F(ScriptWindow, RunsWithTheDatabasesOfTheWindow)
{
    const auto database = OpenWith(QStringLiteral("CREATE TABLE t AS SELECT * FROM range(3) r(i)"));
    ASSERT_TRUE(database);
    ScriptTab* tab = Open(QStringLiteral(R"JS(
        console.log(db.current.query("SELECT sum(i) AS s FROM t")[0].s);
        console.log(db.connections.flatMap ? db.connections.length : 0, "", db.current.name);
        db.create(":memory:").execute("CREATE TABLE x(a INTEGER)");
        exit(3);
    )JS"));
    EXPECT_EQ(RunToEnd(tab).section(u'\n', 0, 0), QStringLiteral("3"));
    EXPECT_EQ(tab->get_ExitCode(), 3);
    EXPECT_EQ(Databases().size(), 1) << "what the script opened goes with it, what the window opened stays";
    EXPECT_TRUE(HF::IsQuerySuccess(database->SqlQuery(QStringLiteral("SELECT 1"), HF::QUERY_NO_LOG, {}, 1, 2, 1)));

    // What the script left goes when it is stopped.
    tab->get_Editor()->setText(QStringLiteral("const b = new qt.QPushButton(); b.detach(); b.show(); setInterval(() => console.log('t'), 5);"
                                              "db.create(':memory:')"));
    tab->Run();
    EXPECT_TRUE(tab->IsRunning());
    EXPECT_TRUE(WaitFor([&] { return tab->get_Output()->Text().count(u't') > 2; }));
    EXPECT_TRUE(ButtonOfScript());
    tab->Stop();
    EXPECT_FALSE(tab->IsRunning());
    EXPECT_FALSE(ButtonOfScript());
    EXPECT_EQ(Databases().size(), 1);
    EXPECT_TRUE(tab->Status().startsWith(QStringLiteral("Stopped"))) << tab->Status().toStdString();
    // Closing its last window ends a script as well.
    tab->get_Editor()->setText(QStringLiteral("const b = new qt.QPushButton(); b.show();"));
    tab->Run();
    ASSERT_TRUE(ButtonOfScript());
    ButtonOfScript()->close();
    EXPECT_TRUE(WaitFor([&] { return !tab->IsRunning(); }));
    EXPECT_EQ(tab->get_ExitCode(), 0);
}

TEST_F(ScriptWindow, ErrorsLeadToTheirLine)
{
    ScriptTab* tab = Open(QStringLiteral("console.log('one');\nconsole.warn('two');\n\nnew qt.QPoint('x');\n"));
    EXPECT_EQ(RunToEnd(tab).toStdString(),
              "one\ntwo\nscript:4: TypeError: new QPoint: Integer expected, got String \"x\".");
    EXPECT_EQ(tab->get_ExitCode(), 1);
    ScriptOutput* output = tab->get_Output();
    output->moveCursor(QTextCursor::Start);
    output->FollowLink();
    EXPECT_EQ(tab->get_Editor()->MarkedLine(), 0) << "a line of output is no link";
    output->moveCursor(QTextCursor::End);
    output->FollowLink();
    EXPECT_EQ(tab->get_Editor()->MarkedLine(), 4);
    int line = -1, column = -1;
    tab->get_Editor()->getCursorPosition(&line, &column);
    EXPECT_EQ(line, 3);
    Keep("script-error.png");
    tab->get_Editor()->setText(QStringLiteral("let x = ;"));
    EXPECT_EQ(tab->get_Editor()->MarkedLine(), 0);
    EXPECT_TRUE(RunToEnd(tab).startsWith(QStringLiteral("script:1: SyntaxError")));
    // In a slot, the rest goes on.
    tab->get_Editor()->setText(QStringLiteral("const b = new qt.QPushButton();\nb.clicked.connect(() => {\n  b.nothing();\n});\n"
                                              "b.click();\nconsole.log('on')"));
    const QString text = RunToEnd(tab);
    EXPECT_TRUE(text.startsWith(QStringLiteral("script:3: clicked: TypeError"))) << text.toStdString();
    EXPECT_TRUE(text.endsWith(QStringLiteral("\non")));
}

TEST_F(ScriptWindow, LoopsWithoutEndAreStopped)
{
    // Without a call the time limit ends it.
    ScriptTab* tab = Open(QStringLiteral("console.log('begin');\nwhile (true) {}"));
    tab->get_Limit()->setValue(1);
    QElapsedTimer timer;
    timer.start();
    const QString text = RunToEnd(tab);
    EXPECT_GE(timer.elapsed(), 900);
    EXPECT_EQ(text.toStdString(), "begin\nscript: The script did not return to the event loop for 1 s and was stopped.");
    EXPECT_EQ(tab->get_ExitCode(), 1);

    // With calls Stop is heard at once, and the window lives.
    for (const char* loop : {"while (true) console.log('line')", "const p = new qt.QPoint(1, 2); while (true) p.x",
                             "while (true) { try { new qt.QPoint('x') } catch (e) {} }",
                             "setTimeout(() => { for (;;) new qt.QSize() }, 1); sleep(100000)", "for (;;) sleep(1)",
                             "db.create(':memory:').query('SELECT count(*) FROM range(100000000000) a, range(1000) b')",
                             "new qt.QDialog().exec()"}) {
        tab->get_Editor()->setText(QLatin1String(loop));
        tab->get_Limit()->setValue(60);
        bool wasRunning = false;
        QTimer::singleShot(300, tab, [&] {
            wasRunning = tab->IsRunning();
            tab->Stop();
        });
        timer.start();
        RunToEnd(tab);
        EXPECT_TRUE(wasRunning) << loop;
        EXPECT_LT(timer.elapsed(), 20000) << loop;
        EXPECT_EQ(tab->get_ExitCode(), 1) << loop;
        EXPECT_FALSE(tab->get_Output()->Text().contains(QStringLiteral("did not return"))) << loop;
        EXPECT_LE(tab->get_Output()->document()->blockCount(), 10000);
    }
    tab->get_Editor()->setText(QStringLiteral("console.log('again')"));
    EXPECT_EQ(RunToEnd(tab), QStringLiteral("again"));
}

TEST_F(ScriptWindow, WhatHappensToItsWindowsWaitsForARunningScript)
{
    ScriptTab* tab = Open(QStringLiteral(R"JS(
        const b = new qt.QPushButton();
        b.text = "press";
        b.clicked.connect(() => { console.log("clicked"); exit(0); });
        b.show();
        setTimeout(() => console.log("timer"), 1);
        const end = Date.now() + 600;
        while (Date.now() < end) b.text;
        console.log("loop is over");
    )JS"));
    QTimer::singleShot(200, tab, [&] {
        QPushButton* button = ButtonOfScript();
        ASSERT_TRUE(button);
        for (const QEvent::Type type : {QEvent::MouseButtonPress, QEvent::MouseButtonRelease})
            QCoreApplication::postEvent(button, new QMouseEvent(type, QPointF(5, 5), button->mapToGlobal(QPointF(5, 5)),
                                                                Qt::LeftButton, Qt::LeftButton, Qt::NoModifier));
    });
    const QStringList lines = RunToEnd(tab).split(u'\n');
    ASSERT_GE(lines.size(), 2) << lines.join(u'|').toStdString();
    EXPECT_EQ(lines.first(), QStringLiteral("loop is over"));
    EXPECT_TRUE(lines.contains(QStringLiteral("clicked"))) << lines.join(u'|').toStdString();
    EXPECT_EQ(tab->get_ExitCode(), 0);
}

TEST_F(ScriptWindow, ClosingAsksAndTearsDown)
{
    ScriptTab* tab = Open(QStringLiteral("const b = new qt.QPushButton(); b.show(); setInterval(() => b.text = 'x', 1)"));
    tab->Run();
    ASSERT_TRUE(tab->IsRunning());
    const auto answer = [](QMessageBox::StandardButton button) {
        return [button](QMessageBox& box) { box.button(button)->click(); };
    };
    const int place = m_window->get_Tabs()->indexOf(tab);
    {
        const ModalWindow<QMessageBox> question(answer(QMessageBox::No));
        emit m_window->get_Tabs()->tabCloseRequested(place);
        EXPECT_TRUE(question.WasSeen());
        EXPECT_TRUE(tab->IsRunning());
    }
    {
        const ModalWindow<QMessageBox> question(answer(QMessageBox::No));
        EXPECT_FALSE(m_window->close());
        EXPECT_TRUE(question.WasSeen());
    }
    QPointer<ScriptTab> guard(tab);
    {
        const ModalWindow<QMessageBox> question(answer(QMessageBox::Yes));
        emit m_window->get_Tabs()->tabCloseRequested(place);
        EXPECT_TRUE(question.WasSeen());
    }
    QCoreApplication::sendPostedEvents(tab, QEvent::DeferredDelete);
    EXPECT_FALSE(guard);
    EXPECT_FALSE(ButtonOfScript());

    // While a call of the script is on the stack.
    guard = tab = Open(QStringLiteral("const b = new qt.QPushButton(); b.show(); for (;;) b.text;"));
    QTimer::singleShot(200, m_window.get(), [&] {
        const ModalWindow<QMessageBox> question(answer(QMessageBox::Yes));
        emit m_window->get_Tabs()->tabCloseRequested(m_window->get_Tabs()->indexOf(tab));
        EXPECT_TRUE(question.WasSeen());
    });
    tab->Run();
    EXPECT_TRUE(WaitFor([&] { return !guard && !ButtonOfScript(); }));

    // Text that is not saved.
    tab = Open({});
    tab->get_Editor()->setText(QStringLiteral("1"));
    {
        const ModalWindow<QMessageBox> question(answer(QMessageBox::No));
        emit m_window->get_Tabs()->tabCloseRequested(m_window->get_Tabs()->indexOf(tab));
        EXPECT_TRUE(question.WasSeen());
        EXPECT_GE(m_window->get_Tabs()->indexOf(tab), 0);
    }
    tab->get_Editor()->setModified(false);
}

TEST_F(ScriptWindow, FilesAndTheRecentOnes)
{
    ScriptTab* tab = Open(QStringLiteral("console.log(script.file.split('/').pop(), 'ä')"));
    EXPECT_EQ(tab->Title(), QStringLiteral("Script"));
    const QString path = m_folder.filePath(QStringLiteral("odd, name.js"));
    QString error;
    ASSERT_TRUE(tab->SaveFile(path, &error)) << error.toStdString();
    EXPECT_FALSE(tab->SaveFile(m_folder.filePath(QStringLiteral("no/such/x.js")), &error));
    EXPECT_EQ(RunToEnd(tab), QStringLiteral("odd, name.js ä"));
    EXPECT_EQ(RecentScripts::All(), QStringList{path});
    EXPECT_EQ(m_window->OpenScript(path), tab) << "one tab for one file";
    tab->get_Editor()->append(QStringLiteral("\n"));
    EXPECT_EQ(m_window->get_Tabs()->tabText(m_window->get_Tabs()->indexOf(tab)), QStringLiteral("*odd, name.js"));
    tab->get_Editor()->setModified(false);

    QStringList paths;
    for (int i = 0; i < 12; ++i) {
        const QString one = m_folder.filePath(QStringLiteral("s%1.js").arg(i));
        QFile file(one);
        ASSERT_TRUE(file.open(QIODevice::WriteOnly));
        file.write("1");
        file.close();
        ASSERT_TRUE(m_window->OpenScript(one));
        paths.prepend(one);
    }
    EXPECT_EQ(RecentScripts::All(), paths.mid(0, 10));
    QMenu* menu = Action(QStringLiteral("Recent Scripts"))->menu();
    ASSERT_TRUE(menu);
    emit menu->aboutToShow();
    EXPECT_EQ(menu->actions().size(), 12); // with a separator and what clears the list
    EXPECT_EQ(menu->actions().first()->text(), paths.first());
    QFile::remove(paths[0]);
    m_window->get_Tabs()->removeTab(m_window->get_Tabs()->count() - 1);
    {
        const ModalWindow<QMessageBox> alert([](QMessageBox& box) { box.accept(); });
        menu->actions().first()->trigger();
        EXPECT_TRUE(alert.WasSeen());
    }
    EXPECT_EQ(RecentScripts::All(), paths.mid(1, 9));
    emit menu->aboutToShow();
    menu->actions().last()->trigger();
    EXPECT_TRUE(RecentScripts::All().isEmpty());
}
