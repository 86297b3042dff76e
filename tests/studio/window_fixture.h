// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "hf/background.h"
#include "hf/database.h"
#include "hf/log.h"
#include "hf/plugin.h"
#include "studio/log_panel.h"
#include "studio/main_window.h"
#include "studio/sql_editor_tab.h"
#include "studio/tree_model.h"
#include "support/own_settings.h"

#include <QApplication>
#include <QElapsedTimer>
#include <QTabWidget>
#include <QTimer>
#include <QTreeView>

/// Lets the program run until the condition holds; false when it never does.
inline bool WaitFor(const std::function<bool()>& condition, int milliseconds = 30000)
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

/// The driver, loaded once.
inline HF::I_LPlugin& Plugin()
{
    static HF::LLoadedPlugin loaded =
        HF::LoadPlugin(qEnvironmentVariable("ORBIS_BIN") + QStringLiteral("/orb_duckdb.so"));
    if (!loaded.plugin)
        throw std::runtime_error(loaded.error.toStdString());
    return *loaded.plugin;
}

/// A main window with settings of its own, driven as a person would. With
/// ORBIS_SCREENSHOTS naming a folder, stages are also kept as pictures.
class Window : public support::OwnSettings
{
protected:
    void SetUp() override
    {
        OwnSettings::SetUp();
        m_window = std::make_unique<MainWindow>(Plugin());
        m_window->resize(1280, 800);
        m_window->show();
        m_window->activateWindow(); // without a window manager nobody else does, and shortcuts stay dead
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
    QModelIndex Child(const QPersistentModelIndex& parent, const QString& text)
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

    void Keep(const char* name) { Keep(name, *m_window); }
    static void Keep(const char* name, QWidget& widget)
    {
        const QString folder = qEnvironmentVariable("ORBIS_SCREENSHOTS");
        if (folder.isEmpty())
            return;
        WaitFor([] { return false; }, 500); // let everything be painted
        EXPECT_TRUE(widget.grab().save(folder + u'/' + QLatin1String(name)));
    }

    /// The action of a menu by its text without the mnemonic's mark.
    QAction* Action(const QString& text) const
    {
        for (QAction* action : m_window->findChildren<QAction*>())
            if (action->text().remove(u'&') == text)
                return action;
        ADD_FAILURE() << "no action " << text.toStdString();
        return nullptr;
    }

    /// Calls the function with the next modal window of the class once that is
    /// open; false when none came up by the time the returned object is asked.
    template <class Dialog>
    class ModalWindow
    {
    public:
        explicit ModalWindow(std::function<void(Dialog&)> use) : m_use(std::move(use))
        {
            QObject::connect(&m_timer, &QTimer::timeout, &m_timer, [this] {
                if (auto* dialog = qobject_cast<Dialog*>(QApplication::activeModalWidget()); dialog && !m_seen) {
                    m_seen = true;
                    m_timer.stop();
                    m_use(*dialog);
                }
            });
            m_timer.start(20);
        }
        bool WasSeen() const { return m_seen; }

    private:
        std::function<void(Dialog&)> m_use;
        QTimer m_timer;
        bool m_seen = false;
    };

    std::unique_ptr<MainWindow> m_window;
    int m_count = 0;
};
