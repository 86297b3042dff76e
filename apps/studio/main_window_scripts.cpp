// SPDX-License-Identifier: GPL-3.0-or-later
// Scripts in the main window: their menu and their files.
#include "hf/connection.h"
#include "hf/database.h"
#include "hf/log.h"
#include "hf/services.h"
#include "script/connect_scripts.h"
#include "studio/appearance.h"
#include "studio/main_window.h"
#include "studio/recent_scripts.h"
#include "studio/script_tab.h"
#include "studio/script_text_edit.h"

#include <QAction>
#include <QDir>
#include <QFileDialog>
#include <QFileInfo>
#include <QMenu>
#include <QMenuBar>
#include <QStatusBar>
#include <QTabWidget>

void MainWindow::MakeScriptMenu()
{
    QMenu* menu = menuBar()->addMenu(tr("S&cript"));
    menu->addAction(PaletteIcon(QStringLiteral(":/icons/script.svg")), tr("&New Script"),
                    QKeySequence(QStringLiteral("Ctrl+Shift+T")), this, [this] { OpenScript(); });
    menu->addAction(tr("&Open Script..."), this, &MainWindow::OpenScriptFile);
    QMenu* recent = menu->addMenu(tr("Recent S&cripts"));
    connect(recent, &QMenu::aboutToShow, this, [this, recent] {
        recent->clear();
        for (const QString& path : RecentScripts::All())
            recent->addAction(QDir::toNativeSeparators(path), this, [this, path] { OpenScript(path); });
        recent->addSeparator();
        QAction* forget = recent->addAction(tr("Clear List"), this, [] { RecentScripts::Clear(); });
        forget->setEnabled(!RecentScripts::All().isEmpty());
    });
    menu->addSeparator();
    QAction* run = menu->addAction(tr("&Run Script"), this, [this] {
        if (ScriptTab* tab = CurrentScriptTab())
            tab->Run();
    });
    QAction* stop = menu->addAction(tr("S&top Script"), this, [this] {
        if (ScriptTab* tab = CurrentScriptTab())
            tab->Stop();
    });
    connect(menu, &QMenu::aboutToShow, this, [this, run, stop] {
        const ScriptTab* tab = CurrentScriptTab();
        run->setEnabled(tab && !tab->IsRunning());
        stop->setEnabled(tab && tab->IsRunning());
    });
}

void MainWindow::InstallConnectScripts()
{
    if (!m_factory)
        return;
    m_connectScripts = std::make_unique<orbis::ConnectScripts>(
        rc::Ref<HF::I_LConnectionFactory>(m_factory), [this](const QString& line, bool isError) {
            if (isError)
                HF::LogError(line);
            else
                statusBar()->showMessage(line, 15000);
        });
}

ScriptTab* MainWindow::CurrentScriptTab() const
{
    return qobject_cast<ScriptTab*>(m_tabs->currentWidget());
}

ScriptTab* MainWindow::OpenScript(const QString& path)
{
    for (int i = 0; i < m_tabs->count() && !path.isEmpty(); ++i)
        if (auto* open = qobject_cast<ScriptTab*>(m_tabs->widget(i));
            open && open->get_FilePath() == QFileInfo(path).absoluteFilePath()) {
            m_tabs->setCurrentIndex(i);
            return open;
        }
    auto* tab = new ScriptTab(m_factory, [this] { return CurrentDatabase(); }, m_tabs);
    QString error;
    if (!path.isEmpty() && !tab->OpenFile(path, &error)) {
        delete tab;
        RecentScripts::Remove(path);
        HF::Alert(error);
        return nullptr;
    }
    connect(tab, &ScriptTab::TitleChanged, this, &MainWindow::UpdateTitles);
    m_tabs->addTab(tab, PaletteIcon(QStringLiteral(":/icons/script.svg")), tab->Title());
    m_tabs->setCurrentWidget(tab);
    tab->get_Editor()->setFocus();
    return tab;
}

void MainWindow::OpenScriptFile()
{
    const QString path =
        QFileDialog::getOpenFileName(this, tr("Open Script"), QString(),
                                     tr("Scripts") + QLatin1String(" (*.js *.mjs);;") + tr("All Files") + QLatin1String(" (*)"));
    if (!path.isEmpty())
        OpenScript(path);
}

void MainWindow::SaveScript(bool askName)
{
    ScriptTab* tab = CurrentScriptTab();
    if (!tab)
        return;
    QString path = tab->get_FilePath();
    if (askName || path.isEmpty()) {
        path = QFileDialog::getSaveFileName(this, tr("Save Script"), path, tr("Scripts") + QLatin1String(" (*.js)"));
        if (!path.isEmpty() && QFileInfo(path).suffix().isEmpty())
            path += QLatin1String(".js");
    }
    QString error;
    if (!path.isEmpty() && !tab->SaveFile(path, &error))
        HF::Alert(error);
}

bool MainWindow::MayCloseScripts()
{
    for (int i = 0; i < m_tabs->count(); ++i)
        if (auto* script = qobject_cast<ScriptTab*>(m_tabs->widget(i))) {
            if (script->IsRunning() || script->HasUnsavedText())
                m_tabs->setCurrentIndex(i);
            if (!script->MayClose())
                return false;
        }
    return true;
}
