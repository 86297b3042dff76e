// SPDX-License-Identifier: GPL-3.0-or-later
// The menus of the main window and what their entries do.
#include "hf/background.h"
#include "hf/database.h"
#include "hf/services.h"
#include "studio/appearance.h"
#include "studio/connect_dialog.h"
#include "studio/data_tab.h"
#include "studio/main_window.h"
#include "studio/preferences_dialog.h"
#include "studio/sql_editor_tab.h"
#include "studio/tree_model.h"

#include <QAction>
#include <QFileDialog>
#include <QMenuBar>
#include <QMessageBox>
#include <QTabWidget>
#include <QToolBar>
#include <QTreeView>

void MainWindow::MakeActions()
{
    QMenu* file = menuBar()->addMenu(tr("&File"));
    QAction* open = file->addAction(PaletteIcon(QStringLiteral(":/icons/open.svg")), tr("&Open Database..."),
                                    QKeySequence(QKeySequence::Open), this, &MainWindow::ConnectDialogShown);
    QAction* create = file->addAction(PaletteIcon(QStringLiteral(":/icons/new.svg")), tr("&Create Database..."), this,
                                      &MainWindow::CreateDatabaseShown);
    file->addAction(tr("New Database in &Memory"), this, &MainWindow::CreateMemoryDatabase);
    file->addSeparator();
    file->addAction(tr("Open S&QL File..."), this, &MainWindow::OpenSqlFile);
    file->addAction(tr("&Save"), QKeySequence(QKeySequence::Save), this, [this] { Save(false); });
    file->addAction(tr("Save &As..."), QKeySequence(QKeySequence::SaveAs), this, [this] { Save(true); });
    file->addSeparator();
    file->addAction(tr("&Preferences..."), this, &MainWindow::PreferencesShown);
    file->addSeparator();
    file->addAction(tr("&Quit"), QKeySequence(QKeySequence::Quit), this, &QWidget::close);

    QMenu* query = menuBar()->addMenu(tr("&Query"));
    QAction* sql = query->addAction(PaletteIcon(QStringLiteral(":/icons/sql-editor.svg")), tr("New SQL &Editor"),
                                    QKeySequence(QStringLiteral("Ctrl+T")), this,
                                    [this] { OpenSqlTab(CurrentDatabase()); });
    query->addAction(tr("&Run All"), this, [this] {
        if (SqlEditorTab* tab = CurrentSqlTab())
            tab->RunAll();
    });
    query->addAction(tr("Run &Selection or Statement at Cursor"), this, [this] {
        if (SqlEditorTab* tab = CurrentSqlTab())
            tab->RunSelection();
    });
    query->addAction(tr("S&top"), this, [this] {
        if (SqlEditorTab* tab = CurrentSqlTab())
            tab->Stop();
    });

    MakeScriptMenu();

    QMenu* view = menuBar()->addMenu(tr("&View"));
    QAction* system = view->addAction(tr("Show &System Objects"));
    system->setCheckable(true);
    connect(system, &QAction::toggled, m_model, &TreeModel::ShowSystemObjects);
    view->addAction(tr("&Refresh"), QKeySequence(QStringLiteral("Ctrl+R")), this,
                    [this] { m_model->Refresh(m_tree->currentIndex()); });

    QMenu* help = menuBar()->addMenu(tr("&Help"));
    help->addAction(tr("&About Orbis Studio"), this, [this] {
        QMessageBox::about(this, tr("About Orbis Studio"),
                           QStringLiteral("<b>Orbis Studio</b> %1<br>%2<br>%3")
                               .arg(QCoreApplication::applicationVersion(),
                                    m_connection ? m_connection->get_Info().Force() : QString(),
                                    tr("Licensed under the GNU General Public License, version 3 or later.")));
    });

    QToolBar* bar = addToolBar(tr("Main"));
    bar->setObjectName(QStringLiteral("mainToolBar"));
    bar->setIconSize(QSize(20, 20));
    bar->addActions({open, create});
    bar->addSeparator();
    bar->addAction(sql);
}

void MainWindow::ConnectDialogShown()
{
    if (!m_factory)
        return;
    ConnectDialog dialog(rc::Ref<HF::I_LConnectionFactory>(m_factory), this);
    if (dialog.exec() == QDialog::Accepted && dialog.get_Database())
        ShowObject(rc::Ref<HF::LTreeItem>(rc::Ptr<HF::LTreeItem>(dialog.get_Database())), 1);
}

void MainWindow::CreateDatabaseShown()
{
    if (!m_connection)
        return;
    const RcList<HF::I_LSchemaObject> made = m_connection->CreateChildObjectDialog(HF::TYPE_DATABASE).Force();
    if (!made.isEmpty())
        ShowObject(made.first(), 1);
}

void MainWindow::CreateMemoryDatabase()
{
    if (!m_connection)
        return;
    QStringList known;
    for (const rc::Ref<HF::I_LDatabase>& database : m_connection->get_Databases())
        known.append(database->get_Name());
    QString name = tr("memory");
    for (int number = 2; known.contains(name); ++number)
        name = tr("memory %1").arg(number);
    const auto made = m_connection->CreateDatabase(name, {{QStringLiteral("location"), 1}}).Force();
    if (made)
        ShowObject(rc::Ref<HF::LTreeItem>(rc::Ptr<HF::LTreeItem>(made)), 1);
}

void MainWindow::PreferencesShown()
{
    PreferencesDialog dialog(m_plugin, this);
    dialog.exec();
}

void MainWindow::OpenSqlFile()
{
    const QString path = QFileDialog::getOpenFileName(this, tr("Open SQL File"), QString(),
                                                      tr("SQL Files") + QLatin1String(" (*.sql);;") + tr("All Files")
                                                          + QLatin1String(" (*)"));
    if (path.isEmpty())
        return;
    if (SqlEditorTab* tab = OpenSqlTab(CurrentDatabase())) {
        QString error;
        if (!tab->OpenFile(path, &error))
            HF::Alert(error);
    }
}

void MainWindow::Save(bool askName)
{
    if (DataTab* tab = CurrentDataTab())
        tab->Save();
    else if (CurrentScriptTab())
        SaveScript(askName);
    else
        SaveSqlFile(askName);
}

void MainWindow::SaveSqlFile(bool askName)
{
    SqlEditorTab* tab = CurrentSqlTab();
    if (!tab)
        return;
    QString path = tab->get_FilePath();
    if (askName || path.isEmpty())
        path = QFileDialog::getSaveFileName(this, tr("Save SQL"), path, tr("SQL Files") + QLatin1String(" (*.sql)"));
    QString error;
    if (!path.isEmpty() && !tab->SaveFile(path, &error))
        HF::Alert(error);
}
