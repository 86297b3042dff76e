// SPDX-License-Identifier: GPL-3.0-or-later
#include "studio/main_window.h"

#include "hf/background.h"
#include "hf/database.h"
#include "hf/object_kinds.h"
#include "hf/services.h"
#include "hf/sql_text.h"
#include "studio/appearance.h"
#include "studio/connect_dialog.h"
#include "studio/data_tab.h"
#include "studio/design_tab.h"
#include "studio/log_panel.h"
#include "studio/object_tab.h"
#include "studio/open_database.h"
#include "script/connect_scripts.h"
#include "studio/property_sheet.h"
#include "studio/script_tab.h"
#include "studio/sql_editor_tab.h"
#include "studio/sql_text_edit.h"
#include "studio/start_page.h"
#include "studio/structure_menu.h"
#include "studio/tree_model.h"
#include "studio/wizards.h"
#include "uik/settings.h"

#include <QApplication>
#include <QCloseEvent>
#include <QDockWidget>
#include <QFileInfo>
#include <QMenu>
#include <QMessageBox>
#include <QSplitter>
#include <QStatusBar>
#include <QTabBar>
#include <QTabWidget>
#include <QTimer>
#include <QTreeView>

#include <utility>

namespace {

/// Rows that opening a table or view shows at once.
constexpr int FirstRows = 1000;

QDockWidget* MakeDock(MainWindow* window, const QString& title, const char* name, QWidget* content, Qt::DockWidgetArea area)
{
    auto* dock = new QDockWidget(title, window);
    dock->setObjectName(QLatin1String(name));
    dock->setWidget(content);
    window->addDockWidget(area, dock);
    return dock;
}

} // namespace

MainWindow::MainWindow(HF::I_LPlugin& plugin, QWidget* parent)
    : QMainWindow(parent)
    , m_plugin(plugin)
    , m_model(new TreeModel(this))
    , m_tree(new QTreeView(this))
    , m_sheet(new PropertySheet(this))
    , m_tabs(new QTabWidget(this))
    , m_log(new LogPanel(this))
    , m_structure(new StructureMenu(*this))
{
    setWindowTitle(QStringLiteral("Orbis Studio"));
    setWindowIcon(HF::LoadCachedIcon(QStringLiteral(":/icons/orbis.svg")));
    setDockOptions(AnimatedDocks | AllowNestedDocks);
    HF::AppCtrlInstance().SetUi(this);
    HF::LTree::SetActiveMenuTree(this);

    const RcList<HF::I_LConnectionFactory> factories = plugin.GetConnectionFactories();
    if (!factories.isEmpty()) {
        m_factory = factories.first();
        const auto found = HF::AppCtrlInstance().FindConnection(HF::ELConnectionFactoryId(m_factory->GetFactoryId()),
                                                                HF::GetActiveWorkspaceID());
        m_connection = rc::cast<HF::I_LConnection>(found);
    }

    MakeTree();
    auto* left = new QSplitter(Qt::Vertical, this);
    left->addWidget(m_tree);
    left->addWidget(m_sheet);
    left->setStretchFactor(0, 3);
    left->setStretchFactor(1, 2);
    QDockWidget* objects = MakeDock(this, tr("Database Objects"), "objects", left, Qt::LeftDockWidgetArea);
    QDockWidget* logs = MakeDock(this, tr("Logs"), "logs", m_log, Qt::BottomDockWidgetArea);
    resizeDocks({objects}, {340}, Qt::Horizontal);
    resizeDocks({logs}, {130}, Qt::Vertical);
    setCorner(Qt::BottomLeftCorner, Qt::LeftDockWidgetArea);

    m_tabs->setTabsClosable(true);
    m_tabs->setMovable(true);
    m_tabs->setDocumentMode(true);
    setCentralWidget(m_tabs);
    m_start = new StartPage(m_connection ? m_connection->get_RecentDatabases() : rc::Ptr<HF::LRecentsList>(), m_tabs);
    m_tabs->addTab(m_start, tr("Start"));
    m_tabs->tabBar()->setTabButton(0, QTabBar::RightSide, nullptr);
    connect(m_tabs, &QTabWidget::tabCloseRequested, this, &MainWindow::CloseTab);
    connect(m_start, &StartPage::OpenWanted, this, &MainWindow::ConnectDialogShown);
    connect(m_start, &StartPage::CreateWanted, this, &MainWindow::CreateDatabaseShown);
    connect(m_start, &StartPage::MemoryWanted, this, &MainWindow::CreateMemoryDatabase);
    connect(m_log, &LogPanel::ErrorLogged, this, [this](const QString& text) {
        statusBar()->showMessage(text.section(u'\n', 0, 0), 15000);
        m_log->setCurrentIndex(1);
    });
    connect(m_log, &LogPanel::StatementChosen, this, [this](const QString& text) { OpenSqlTab(CurrentDatabase(), text); });

    connect(m_structure, &StructureMenu::Changed, this,
            [this](const rc::Ptr<HF::I_LDatabase>& database) { StructureChanged(database, nullptr); });

    MakeActions();
    InstallConnectScripts();
    RestoreState();
    statusBar()->showMessage(m_connection ? m_connection->get_Info().Force() : QString());
}

MainWindow::~MainWindow()
{
    HF::LTree::SetActiveMenuTree(nullptr);
    HF::AppCtrlInstance().SetUi(nullptr);
}

void MainWindow::MakeTree()
{
    m_tree->setModel(m_model);
    m_tree->setHeaderHidden(true);
    m_tree->setUniformRowHeights(true);
    m_tree->setContextMenuPolicy(Qt::CustomContextMenu);
    m_tree->setExpandsOnDoubleClick(false);
    m_tree->setSelectionMode(QAbstractItemView::ExtendedSelection);
    connect(m_tree, &QWidget::customContextMenuRequested, this, &MainWindow::ShowTreeMenu);
    connect(m_tree->selectionModel(), &QItemSelectionModel::currentChanged, this,
            [this](const QModelIndex& current) { m_sheet->ShowObject(m_model->ItemAt(current)); });
    connect(m_model, &QAbstractItemModel::dataChanged, this, [this] {
        // The list was read anew, and the selected object with it.
        if (const auto item = m_model->ItemAt(m_tree->currentIndex()); item && item.get() != m_sheet->get_Item().get())
            m_sheet->ShowObject(item);
    });
    connect(m_tree, &QTreeView::doubleClicked, this, [this](const QModelIndex& index) {
        const rc::Ptr<HF::LTreeItem> item = m_model->ItemAt(index);
        const rc::Ptr<HF::LAction> action = item ? item->get_DefaultAction() : nullptr;
        if (action)
            action->Run({rc::Ref<HF::LTreeItem>(item)});
        else
            m_tree->setExpanded(index, !m_tree->isExpanded(index));
    });
    if (m_connection) {
        m_model->AddConnection(rc::Ref<HF::I_LConnection>(m_connection));
        m_tree->expand(m_model->index(0, 0));
    }
}

rc::Ptr<HF::LTreeItem> MainWindow::CurrentItem() const
{
    return m_model->ItemAt(m_tree->currentIndex());
}

rc::Ptr<HF::I_LDatabase> MainWindow::CurrentDatabase() const
{
    if (const auto object = rc::cast<HF::LDatabaseObject_Impl>(CurrentItem()))
        if (const auto database = object->get_Database())
            return database;
    if (const SqlEditorTab* tab = CurrentSqlTab())
        return tab->get_Database();
    if (const DataTab* tab = CurrentDataTab())
        return tab->get_Database();
    const RcList<HF::I_LDatabase> open = m_connection ? m_connection->get_Databases() : RcList<HF::I_LDatabase>();
    return open.isEmpty() ? nullptr : rc::Ptr<HF::I_LDatabase>(open.first());
}

SqlEditorTab* MainWindow::CurrentSqlTab() const
{
    return qobject_cast<SqlEditorTab*>(m_tabs->currentWidget());
}

DataTab* MainWindow::CurrentDataTab() const
{
    return qobject_cast<DataTab*>(m_tabs->currentWidget());
}

QList<DataTab*> MainWindow::DataTabs() const
{
    QList<DataTab*> tabs;
    for (int i = 0; i < m_tabs->count(); ++i)
        if (auto* tab = qobject_cast<DataTab*>(m_tabs->widget(i)))
            tabs.append(tab);
    return tabs;
}

void MainWindow::OpenLocation(const QString& location, bool readOnly)
{
    if (!m_factory)
        return;
    HF::LConnectionParameters parameters;
    parameters.Location = location;
    parameters.WorkspaceId = HF::GetActiveWorkspaceID();
    parameters.ReadOnly = readOnly;
    statusBar()->showMessage(tr("Opening %1...").arg(location));
    OpenInBackground(rc::Ref<HF::I_LConnectionFactory>(m_factory), parameters, this,
                     [this](const OpenOutcome& outcome) {
                         statusBar()->clearMessage();
                         if (outcome.database)
                             ShowObject(rc::Ref<HF::LTreeItem>(rc::Ptr<HF::LTreeItem>(outcome.database)), 1);
                         else
                             HF::Alert(outcome.error);
                     });
}

SqlEditorTab* MainWindow::OpenSqlTab(const rc::Ptr<HF::I_LDatabase>& database, const QString& text, bool run)
{
    if (!database) {
        HF::Alert(tr("Open a database first."));
        return nullptr;
    }
    auto* tab = new SqlEditorTab(rc::Ref<HF::I_LDatabase>(database), m_tabs);
    connect(tab, &SqlEditorTab::TitleChanged, this, &MainWindow::UpdateTitles);
    connect(tab->get_Editor(), &QsciScintilla::modificationChanged, this, &MainWindow::UpdateTitles);
    m_tabs->addTab(tab, PaletteIcon(QStringLiteral(":/icons/sql-editor.svg")), QString());
    m_tabs->setCurrentWidget(tab);
    if (!text.isEmpty())
        tab->get_Editor()->setText(text);
    tab->get_Editor()->setModified(false);
    UpdateTitles();
    tab->get_Editor()->setFocus();
    if (run)
        tab->RunAll();
    return tab;
}

void MainWindow::UpdateTitles()
{
    for (int i = 0; i < m_tabs->count(); ++i)
        if (const auto* design = qobject_cast<DesignTab*>(m_tabs->widget(i))) {
            m_tabs->setTabText(i, design->Title());
        } else if (const auto* tab = qobject_cast<SqlEditorTab*>(m_tabs->widget(i))) {
            const auto database = tab->get_Database();
            const QString name = tab->get_FilePath().isEmpty() ? tr("SQL") : QFileInfo(tab->get_FilePath()).fileName();
            m_tabs->setTabText(i, QStringLiteral("%1%2 - %3")
                                      .arg(tab->get_Editor()->isModified() ? QStringLiteral("*") : QString(), name,
                                           database && !database->get_IsClosing() ? database->get_Name() : tr("closed")));
        } else if (const auto* script = qobject_cast<ScriptTab*>(m_tabs->widget(i))) {
            m_tabs->setTabText(i, script->Title());
        } else if (const auto* rows = qobject_cast<DataTab*>(m_tabs->widget(i))) {
            const QString text = m_tabs->tabText(i);
            const QString name = text.startsWith(u'*') ? text.mid(1) : text;
            m_tabs->setTabText(i, rows->HasPendingEdits() ? u'*' + name : name);
        }
}

void MainWindow::OpenDataTab(const rc::Ref<HF::I_LSchemaObject>& object)
{
    // What the cursor asks for is read beforehand, without holding the window up.
    HF::RunInBackground(
        [object] {
            for (const int type : {HF::TYPE_FIELD, HF::TYPE_METHOD})
                object->get_ChildObjects(type).Force();
            return true;
        },
        this, [this, object](bool) {
            const rc::Ptr<HF::I_LTableCursor> cursor = object->OpenCursor(0, false, true, false);
            if (!cursor) {
                OpenSqlTab(object->get_Database(),
                           QStringLiteral("SELECT * FROM %1 LIMIT %2;\n").arg(object->get_NameForQuery(true)).arg(FirstRows),
                           true);
                return;
            }
            auto* tab = new DataTab(rc::Ref<HF::I_LTableCursor>(cursor), m_tabs);
            connect(tab, &DataTab::TitleChanged, this, &MainWindow::UpdateTitles);
            m_tabs->addTab(tab, PaletteIcon(object->get_Icon().Force()), object->get_Name());
            m_tabs->setCurrentWidget(tab);
        });
}

bool MainWindow::OpenNewWindow(int)
{
    return false; // one window, which ShowObject raises
}

bool MainWindow::ShowObject(const rc::Ref<HF::LTreeItem>& object, int)
{
    show();
    raise();
    if (m_model->canFetchMore(m_model->index(0, 0)))
        m_model->fetchMore(m_model->index(0, 0));
    QCoreApplication::processEvents(); // the change of the databases' list is on its way
    const bool found = SelectItem(object);
    if (found)
        ExpandSelected();
    return found;
}

bool MainWindow::SelectItem(const rc::Ref<HF::LTreeItem>& item)
{
    const QModelIndex index = m_model->IndexOf(item.get());
    if (!index.isValid())
        return false;
    m_tree->setCurrentIndex(index);
    m_tree->scrollTo(index);
    return true;
}

void MainWindow::Reveal(const rc::Ref<HF::LTreeItem>& item, int attempts)
{
    const auto parent = rc::cast<HF::I_LSchemaObject>(item->get_ParentObject());
    const rc::Ptr<HF::LSchemaItemList> list = parent ? parent->get_ChildList(item->get_ObjectType()) : nullptr;
    // It may have been read anew since.
    const rc::Ptr<HF::LTreeItem> now = list ? rc::Ptr<HF::LTreeItem>(list->get_ChildItem(item->get_Name())) : nullptr;
    if (SelectItem(now ? rc::Ref<HF::LTreeItem>(now) : item) || attempts <= 0)
        return;
    for (const HF::LTreeItem* above : {static_cast<const HF::LTreeItem*>(list.get()), static_cast<const HF::LTreeItem*>(parent.get())})
        if (const QModelIndex index = m_model->IndexOf(above); index.isValid()) {
            m_tree->expand(index);
            break;
        }
    QTimer::singleShot(50, this, [this, item, attempts] { Reveal(item, attempts - 1); });
}

void MainWindow::ExpandSelected()
{
    m_tree->expand(m_tree->currentIndex());
}

void MainWindow::OpenRecent(const rc::Ref<HF::LRecentItem>& item)
{
    OpenLocation(item->get_ItemData().toString());
}

void MainWindow::Unavailable(const QString& what)
{
    HF::Alert(tr("%1 is not part of this version.").arg(what));
}

RcList<HF::I_LSchemaObject> MainWindow::RunDesigner(const rc::Ref<HF::I_LSchemaObject>& parent, HF::ELObjectType type)
{
    DesignTarget target;
    target.type = type;
    target.schema = parent->get_Name();
    if (type == HF::TYPE_LINK)
        HF::Alert(tr("A foreign key is made in the structure editor of its table."));
    else
        OpenDesign(parent->get_Database(), target);
    return {}; // the object comes into being when the edits are applied
}

DesignTab* MainWindow::OpenDesign(const rc::Ptr<HF::I_LDatabase>& database, const DesignTarget& target)
{
    if (!database || target.type == HF::TYPE_NONE)
        return nullptr;
    for (int i = 0; i < m_tabs->count(); ++i)
        if (auto* open = qobject_cast<DesignTab*>(m_tabs->widget(i))) {
            const DesignTarget& other = open->get_Session()->get_Target();
            if (!target.name.isEmpty() && open->get_Session()->get_Database().get() == database.get()
                && other.type == target.type && other.schema == target.schema && other.name == target.name
                && (!other.source || !target.source || target.type != HF::TYPE_FUNCTION
                    || other.source.get() == target.source.get())) {
                m_tabs->setCurrentIndex(i);
                return open;
            }
        }
    auto* tab = new DesignTab(rc::Ref<HF::I_LDatabase>(database), target, m_tabs);
    connect(tab, &DesignTab::TitleChanged, this, &MainWindow::UpdateTitles);
    connect(tab, &DesignTab::StructureApplied, this,
            [this, tab] { StructureChanged(tab->get_Session()->get_Database(), tab); });
    m_tabs->addTab(tab, PaletteIcon(QStringLiteral(":/icons/design.svg")), tab->Title());
    m_tabs->setCurrentWidget(tab);
    return tab;
}

void MainWindow::StructureChanged(const rc::Ptr<HF::I_LDatabase>& database, const DesignTab* by)
{
    if (!database)
        return;
    database->InvalidateIdents();
    for (int i = 0; i < m_tabs->count(); ++i) {
        auto* design = qobject_cast<DesignTab*>(m_tabs->widget(i));
        if (design && design != by && design->get_Session()->get_Database().get() == database.get())
            design->StructureChanged();
        auto* sql = qobject_cast<SqlEditorTab*>(m_tabs->widget(i));
        if (sql && sql->get_Database().get() == database.get())
            sql->RefreshWords();
    }
}

bool MainWindow::MayCloseDesigns()
{
    for (int i = 0; i < m_tabs->count(); ++i)
        if (auto* design = qobject_cast<DesignTab*>(m_tabs->widget(i)); design && !design->MayClose())
            return false;
    return true;
}

bool MainWindow::MayCloseText(const SqlEditorTab& tab)
{
    return !tab.HasUnsavedText()
           || QMessageBox::question(this, tr("Close"), tr("The text has changes that are not saved. Close it all the same?"))
                  == QMessageBox::Yes;
}

bool MainWindow::MayCloseTexts()
{
    for (int i = 0; i < m_tabs->count(); ++i)
        if (const auto* tab = qobject_cast<SqlEditorTab*>(m_tabs->widget(i)); tab && tab->HasUnsavedText()) {
            m_tabs->setCurrentIndex(i);
            if (!MayCloseText(*tab))
                return false;
        }
    return true;
}

void MainWindow::EditObject(const rc::Ref<HF::I_LSchemaObject>& object)
{
    OpenEditor(QString::fromLatin1(HF::DO_DESIGN), object);
}

void MainWindow::StartDump(const rc::Ref<HF::LTreeItem>& item)
{
    ShowDumpWizard(*this, item);
}

void MainWindow::StartLoad(const rc::Ref<HF::LTreeItem>& item)
{
    ShowLoadWizard(*this, item, CurrentDatabase(), [this](const rc::Ref<HF::I_LDatabase>& database, const QString& text) {
        OpenSqlTab(database, text);
    });
}

void MainWindow::StartExportCsv(const rc::Ref<HF::LTreeItem>&)
{
    Unavailable(tr("The CSV export"));
}

void MainWindow::StartImportCsv(const rc::Ref<HF::LTreeItem>&)
{
    Unavailable(tr("The CSV import"));
}

void MainWindow::OpenEditor(const QString& action, const rc::Ref<HF::LTreeItem>& item)
{
    const auto object = rc::cast<HF::LDatabaseObject_Impl>(item);
    const rc::Ptr<HF::I_LDatabase> database = object ? object->get_Database() : CurrentDatabase();
    if (action == QLatin1String(HF::DO_OPEN_DATA_EDITOR) || action == QLatin1String(HF::DO_EXECUTE)) {
        if (const auto source = rc::cast<HF::I_LSchemaObject>(item))
            OpenDataTab(rc::Ref<HF::I_LSchemaObject>(source));
    } else if (action == QLatin1String(HF::DO_OPEN_QUERY_EDITOR)) {
        OpenSqlTab(database, object ? object->GetString(PROP_DEFINITION) : QString());
    } else if (action == QLatin1String(HF::DO_OPEN_PREFERENCES)) {
        PreferencesShown();
    } else if (action == QLatin1String(HF::DO_OPEN_DATABASE)) {
        ConnectDialogShown();
    } else if (const DesignTarget target = DesignTarget::Of(item);
               action == QLatin1String(HF::DO_DESIGN) && target.type != HF::TYPE_NONE) {
        if (DesignTab* tab = OpenDesign(database, target))
            tab->ShowPart(item->get_ObjectType(), item->get_Name());
    } else if (action == QLatin1String(HF::DO_DESIGN) && object) {
        auto* tab = new ObjectTab(rc::Ref<HF::LDatabaseObject_Impl>(object), m_tabs);
        m_tabs->addTab(tab, PaletteIcon(item->get_Icon().Force()), item->get_Name());
        m_tabs->setCurrentWidget(tab);
    } else {
        Unavailable(action);
    }
}

bool MainWindow::MayCloseDatabase(const rc::Ref<HF::I_LDatabase>& database)
{
    bool isRunning = false, hasEdits = false;
    for (int i = 0; i < m_tabs->count(); ++i) {
        if (const auto* sql = qobject_cast<SqlEditorTab*>(m_tabs->widget(i)); sql && sql->get_Database().get() == database.get()) {
            isRunning = isRunning || sql->get_Runner()->IsRunning();
            hasEdits = hasEdits || sql->HasUnsavedText();
        } else if (const auto* rows = qobject_cast<DataTab*>(m_tabs->widget(i));
                   rows && rows->get_Database().get() == database.get()) {
            hasEdits = hasEdits || rows->HasPendingEdits();
        } else if (auto* design = qobject_cast<DesignTab*>(m_tabs->widget(i));
                   design && design->get_Session()->get_Database().get() == database.get() && !design->MayClose()) {
            return false;
        }
    }
    const QString name = database->get_Name();
    if (isRunning
        && QMessageBox::question(this, tr("Close"), tr("A query on \"%1\" is still running. Stop it and close?").arg(name))
               != QMessageBox::Yes)
        return false;
    if (hasEdits
        && QMessageBox::question(this, tr("Close"),
                                 tr("\"%1\" has changes that are not saved. Close it all the same?").arg(name))
               != QMessageBox::Yes)
        return false;
    m_mayClose = database.get();
    return true;
}

void MainWindow::DropDatabase(const rc::Ref<HF::I_LDatabase>& database)
{
    // A database may also go without a question, by a script or with its files.
    const bool wasAsked = std::exchange(m_mayClose, nullptr) == database.get();
    const auto close = [this](int index, QWidget* tab) {
        m_tabs->removeTab(index);
        tab->deleteLater();
    };
    for (int i = m_tabs->count() - 1; i >= 0; --i) {
        QWidget* page = m_tabs->widget(i);
        if (auto* tab = qobject_cast<SqlEditorTab*>(page); tab && tab->get_Database().get() == database.get()) {
            tab->Stop();
            if (wasAsked || !tab->HasUnsavedText())
                close(i, tab); // else the text outlives it
        } else if (auto* rows = qobject_cast<DataTab*>(page); rows && rows->get_Database().get() == database.get()) {
            rows->Stop();
            close(i, rows);
        } else if (auto* design = qobject_cast<DesignTab*>(page);
                   design && design->get_Session()->get_Database().get() == database.get()) {
            design->get_Session()->Stop();
            close(i, design);
        }
    }
    QTimer::singleShot(0, this, &MainWindow::UpdateTitles); // once it is closed
}

void MainWindow::ShowTreeMenu(const QPoint& at)
{
    const QModelIndex index = m_tree->indexAt(at);
    const rc::Ptr<HF::LTreeItem> item = m_model->ItemAt(index);
    if (!item)
        return;
    RcList<HF::LTreeItem> selection;
    for (const QModelIndex& selected : m_tree->selectionModel()->selectedRows())
        if (const rc::Ptr<HF::LTreeItem> one = m_model->ItemAt(selected))
            selection.append(rc::Ref<HF::LTreeItem>(one));
    // A click beside the selection means the item alone.
    if (!m_tree->selectionModel()->isSelected(index))
        selection = {rc::Ref<HF::LTreeItem>(item)};
    std::unique_ptr<QMenu> menu(selection.size() > 1 ? nullptr : item->get_Menu());
    if (!menu)
        menu = std::make_unique<QMenu>();
    m_structure->AddActions(*menu, rc::Ref<HF::LTreeItem>(item), selection);
    if (!menu->isEmpty())
        menu->addSeparator();
    menu->addAction(HF::LoadCachedIcon(QStringLiteral(":/weft/icons/reload_thin.svg")), tr("Refresh"), this,
                    [this, index = QPersistentModelIndex(index)] { m_model->Refresh(index); });
    menu->exec(m_tree->viewport()->mapToGlobal(at));
}

void MainWindow::CloseTab(int index)
{
    if (auto* tab = qobject_cast<SqlEditorTab*>(m_tabs->widget(index))) {
        if (tab->get_Runner()->IsRunning()
            && QMessageBox::question(this, tr("Close"), tr("A query is still running in this tab. Stop it and close?"))
                   != QMessageBox::Yes)
            return;
        if (!MayCloseText(*tab))
            return;
        tab->Stop();
    } else if (auto* design = qobject_cast<DesignTab*>(m_tabs->widget(index)); design && !design->MayClose()) {
        return;
    } else if (auto* script = qobject_cast<ScriptTab*>(m_tabs->widget(index)); script && !script->MayClose()) {
        return;
    }
    QWidget* page = m_tabs->widget(index);
    if (page == m_start)
        return;
    if (auto* rows = qobject_cast<DataTab*>(page)) {
        if (rows->HasPendingEdits()
            && QMessageBox::question(this, tr("Close"), tr("The table has changes that are not saved. Close it all the same?"))
                   != QMessageBox::Yes)
            return;
        rows->Stop();
    }
    m_tabs->removeTab(index);
    page->deleteLater();
}

bool MainWindow::IsAnythingRunning() const
{
    for (int i = 0; i < m_tabs->count(); ++i)
        if (const auto* tab = qobject_cast<SqlEditorTab*>(m_tabs->widget(i)); tab && tab->get_Runner()->IsRunning())
            return true;
    return false;
}

void MainWindow::closeEvent(QCloseEvent* event)
{
    for (const DataTab* tab : DataTabs())
        if (tab->HasPendingEdits()) {
            m_tabs->setCurrentIndex(m_tabs->indexOf(tab));
            if (QMessageBox::question(this, tr("Quit"), tr("There are changes that are not saved. Quit all the same?"))
                != QMessageBox::Yes) {
                event->ignore();
                return;
            }
            break;
        }
    if (!MayCloseDesigns() || !MayCloseTexts() || !MayCloseScripts()) {
        event->ignore();
        return;
    }
    if (IsAnythingRunning()) {
        if (QMessageBox::question(this, tr("Quit"), tr("A query is still running. Stop it and quit?"))
            != QMessageBox::Yes) {
            event->ignore();
            return;
        }
        for (int i = 0; i < m_tabs->count(); ++i)
            if (auto* tab = qobject_cast<SqlEditorTab*>(m_tabs->widget(i)))
                tab->Stop();
    }
    for (DataTab* tab : DataTabs())
        tab->Stop();
    uik::settings().setValue(QStringLiteral("Studio/Window/Geometry"), saveGeometry());
    uik::settings().setValue(QStringLiteral("Studio/Window/State"), saveState());
    uik::settings().sync();
    event->accept();
    if (m_connection)
        m_connection->Close();
}

void MainWindow::RestoreState()
{
    resize(1280, 820);
    restoreGeometry(uik::settings().value(QStringLiteral("Studio/Window/Geometry")).toByteArray());
    restoreState(uik::settings().value(QStringLiteral("Studio/Window/State")).toByteArray());
}
