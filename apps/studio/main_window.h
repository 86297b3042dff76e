// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "hf/app_controller.h"
#include "hf/plugin.h"
#include "hf/recents.h"

#include <QMainWindow>

#include <memory>

class DataTab;
struct DesignTarget;
class DesignTab;
class LogPanel;
class PropertySheet;
class QTabWidget;
class QTreeView;
class ScriptTab;
class SqlEditorTab;
class StartPage;
class StructureMenu;
class TreeModel;
namespace orbis {
class ConnectScripts;
}

/// The window: tree and property sheet on the left, tabs on the right, logs
/// below. It is the host's user interface towards the driver.
class MainWindow : public QMainWindow, public HF::I_LApplicationUi, public HF::LTree
{
    Q_OBJECT

public:
    /// `plugin` outlives the window.
    explicit MainWindow(HF::I_LPlugin& plugin, QWidget* parent = nullptr);
    ~MainWindow() override;

    /// Opens a location in the background and selects the database in the tree.
    void OpenLocation(const QString& location, bool readOnly = false);
    /// An SQL tab for the database; for the one of the selection without an argument.
    SqlEditorTab* OpenSqlTab(const rc::Ptr<HF::I_LDatabase>& database, const QString& text = {}, bool run = false);

    /// The rows of a table or view on a tab; SQL instead where there is no cursor for them.
    void OpenDataTab(const rc::Ref<HF::I_LSchemaObject>& object);
    /// The structure editor of an object, the one that is open already where there is one.
    DesignTab* OpenDesign(const rc::Ptr<HF::I_LDatabase>& database, const DesignTarget& target);
    /// A script on a tab: of the file, where one is named, else an empty one. Null
    /// when the file cannot be read.
    ScriptTab* OpenScript(const QString& path = {});
    StructureMenu* get_StructureMenu() const { return m_structure; }

    TreeModel* get_TreeModel() const { return m_model; }
    QTreeView* get_TreeView() const { return m_tree; }
    QTabWidget* get_Tabs() const { return m_tabs; }
    LogPanel* get_Log() const { return m_log; }
    PropertySheet* get_Sheet() const { return m_sheet; }

    // HF::I_LApplicationUi
    bool OpenNewWindow(int argument) override;
    bool ShowObject(const rc::Ref<HF::LTreeItem>& object, int flag) override;
    void OpenRecent(const rc::Ref<HF::LRecentItem>& item) override;
    RcList<HF::I_LSchemaObject> RunDesigner(const rc::Ref<HF::I_LSchemaObject>& parent, HF::ELObjectType type) override;
    void EditObject(const rc::Ref<HF::I_LSchemaObject>& object) override;
    void StartDump(const rc::Ref<HF::LTreeItem>& list) override;
    void StartLoad(const rc::Ref<HF::LTreeItem>& target) override;
    void StartExportCsv(const rc::Ref<HF::LTreeItem>& object) override;
    void StartImportCsv(const rc::Ref<HF::LTreeItem>& object) override;
    void OpenEditor(const QString& action, const rc::Ref<HF::LTreeItem>& object) override;
    bool MayCloseDatabase(const rc::Ref<HF::I_LDatabase>& database) override;
    void DropDatabase(const rc::Ref<HF::I_LDatabase>& database) override;

    // HF::LTree
    bool SelectItem(const rc::Ref<HF::LTreeItem>& item) override;
    /// Selects an item that the tree may still have to read; tries for a while.
    void Reveal(const rc::Ref<HF::LTreeItem>& item, int attempts = 100);
    void ExpandSelected() override;

protected:
    void closeEvent(QCloseEvent* event) override;

private:
    void MakeActions();
    void MakeTree();
    void ConnectDialogShown();
    void CreateDatabaseShown();
    void CreateMemoryDatabase();
    void PreferencesShown();
    void OpenSqlFile();
    void SaveSqlFile(bool askName);
    void Save(bool askName);
    void MakeScriptMenu();
    void InstallConnectScripts();
    void OpenScriptFile();
    void SaveScript(bool askName);
    bool MayCloseScripts();
    void ShowTreeMenu(const QPoint& at);
    void CloseTab(int index);
    bool MayCloseDesigns();
    bool MayCloseText(const SqlEditorTab& tab);
    bool MayCloseTexts();
    void StructureChanged(const rc::Ptr<HF::I_LDatabase>& database, const DesignTab* by);
    void UpdateTitles();
    void RestoreState();
    bool IsAnythingRunning() const;
    void Unavailable(const QString& what);
    rc::Ptr<HF::LTreeItem> CurrentItem() const;
    rc::Ptr<HF::I_LDatabase> CurrentDatabase() const;
    SqlEditorTab* CurrentSqlTab() const;
    DataTab* CurrentDataTab() const;
    ScriptTab* CurrentScriptTab() const;
    QList<DataTab*> DataTabs() const;

    HF::I_LPlugin& m_plugin;
    rc::Ptr<HF::I_LConnectionFactory> m_factory;
    rc::Ptr<HF::I_LConnection> m_connection;
    TreeModel* m_model;
    QTreeView* m_tree;
    PropertySheet* m_sheet;
    QTabWidget* m_tabs;
    LogPanel* m_log;
    StartPage* m_start = nullptr;
    StructureMenu* m_structure;
    std::unique_ptr<orbis::ConnectScripts> m_connectScripts;
    const HF::I_LDatabase* m_mayClose = nullptr; ///< a person agreed to lose what is not saved
};
