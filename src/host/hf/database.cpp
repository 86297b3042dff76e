// SPDX-License-Identifier: GPL-3.0-or-later
#include "hf/database.h"

#include "hf/app_controller.h"
#include "hf/engine.h"
#include "hf/object_kinds.h"
#include "hf/recents.h"
#include "hf/schema_item_list.h"
#include "hf/services.h"
#include "weft/prompter.h"

#include <QAction>
#include <QCoreApplication>
#include <QFileInfo>
#include <QUrl>

namespace HF {

namespace {

/// Where the settings of a database stand: by its file, whatever way leads to
/// it. Each database in memory has a place of its own, since it ends with it.
QString SettingsKey(const QString& path)
{
    if (path == QLatin1String(":memory:")) {
        static std::atomic<int> number{0};
        return QStringLiteral("Memory/%1-%2").arg(QCoreApplication::applicationPid()).arg(++number);
    }
    const QString canonical = QFileInfo(path).canonicalFilePath();
    return QLatin1String("Databases/")
           + QString::fromLatin1(QUrl::toPercentEncoding(canonical.isEmpty() ? path : canonical));
}

template <class Function>
rc::Ref<LAction> MakeDatabaseAction(const char* id, const QString& text, const QString& icon, bool needsWindows,
                                    Function function)
{
    return rc::make<LAction>(
        id, text,
        [function](const RcList<LTreeItem>& items, const QVariant&) {
            for (const rc::Ref<LTreeItem>& item : items)
                if (const rc::Ptr<I_LDatabase> database = rc::cast<I_LDatabase>(item))
                    function(rc::Ref(database));
        },
        [needsWindows](QAction& action, const RcList<LTreeItem>& items, const QVariant&) {
            action.setVisible(!needsWindows || AppCtrlInstance().get_Ui());
            action.setEnabled(!items.isEmpty());
        },
        icon);
}

} // namespace

LDatabase::LDatabase(const rc::Ref<I_LConnection>& connection, const QString& path)
    : m_connection(connection), m_path(path), m_settingsKey(SettingsKey(path))
{
    put_ParentObject(connection);
}

LDatabase::~LDatabase() = default;

QString LDatabase::get_ObjectTypeName() const
{
    return QString::fromLatin1(OBJECT_DATABASE);
}

rc::Ptr<I_LDatabase> LDatabase::get_Database() const
{
    // Also asked while the object ends, when there is nothing to hand out.
    auto* const self = const_cast<LDatabase*>(this);
    return self->TryAddStrong() ? rc::Ptr<I_LDatabase>(self, rc::impl::Adopt{}) : rc::Ptr<I_LDatabase>();
}

const LDatabaseEngine* LDatabase::get_DatabaseEngine() const
{
    return &m_connection->get_Engine();
}

bool LDatabase::IsForeignChild(const rc::Ref<const LTreeItem>& child) const
{
    const auto* const object = dynamic_cast<const LDatabaseObject_Impl*>(child.get());
    return object && object->get_Database().get() != this;
}

rc::Ptr<LAction> LDatabase::get_Action(const QString& id) const
{
    for (const rc::Ref<LAction>& action :
         {ActionOpenQueryEditor(), ActionOpenQueryBuilder(), ActionClose(), ActionSetupVirtualLinks(),
          ActionDumpCreate(), ActionDumpLoad(), ActionDeletePhysically()})
        if (action->get_Id() == id)
            return action;
    return I_LDatabase::get_Action(id);
}

QString LDatabase::ExternalKey() const
{
    return m_settingsKey;
}

rc::Ptr<I_LTable> LDatabase::get_Table(const QString& name) const
{
    LIdent ident;
    ident.Append(DBOBJ_TABLE, name);
    return rc::cast<I_LTable>(ResolveIdent(ident));
}

RcList<I_LTable> LDatabase::get_Tables() const
{
    RcList<I_LTable> tables;
    for (const rc::Ref<I_LSchemaObject>& item : get_ChildObjects(TYPE_SCHEMA).Force())
        if (const rc::Ptr<I_LSchema> schema = rc::cast<I_LSchema>(item))
            tables.append(schema->get_Tables());
    return tables;
}

QList<LQueryResult> LDatabase::SqlQuery(const QString& text, int flags, const RcList<I_LSqlValue>& binds, int, int,
                                        int)
{
    return MakeSqlQuery()->Execute(text, flags, binds);
}

rc::Ptr<I_LCursor> LDatabase::SqlSelect(const QString& text, int flags, const RcList<I_LSqlValue>& binds,
                                        int location, int lockType, int direction)
{
    const QList<LQueryResult> results = SqlQuery(text, flags, binds, location, lockType, direction);
    if (!IsQuerySuccess(results))
        return nullptr;
    for (qsizetype i = results.size() - 1; i >= 0; --i)
        if (results[i].Cursor)
            return results[i].Cursor;
    return nullptr;
}

bool LDatabase::SqlExecute(const QString& text)
{
    return IsQuerySuccess(SqlQuery(text, QUERY_DEFAULT, {}, CURSOR_CLIENT, LOCK_OPTIMISTIC, CURSOR_FORWARD));
}

LLazy<QList<LIdent>, false> LDatabase::get_Idents()
{
    std::lock_guard guard(m_identsMutex);
    if (!m_idents)
        m_idents = FetchIdents();
    return *m_idents;
}

LLazy<QList<LIdent>, false> LDatabase::get_SystemIdents()
{
    std::lock_guard guard(m_identsMutex);
    if (!m_systemIdents)
        m_systemIdents = FetchSystemIdents();
    return *m_systemIdents;
}

void LDatabase::InvalidateIdents()
{
    std::lock_guard guard(m_identsMutex);
    m_idents.reset();
}

void LDatabase::InvalidateSystemIdents()
{
    std::lock_guard guard(m_identsMutex);
    m_systemIdents.reset();
}

void LDatabase::AddToRecents()
{
    if (!CanBeOpenedAgain())
        return;
    if (const rc::Ptr<LRecentsList> recents = m_connection->get_RecentDatabases())
        recents->AddRecent(get_Name(), AbsoluteLocation(m_path)); // it outlives the working folder
}

void LDatabase::InitVirtualLinks()
{
    for (const rc::Ref<LSchemaItemList>& list : get_ChildLists())
        if (const rc::Ptr<LLinksList> links = rc::cast<LLinksList>(list))
            links->InitVirtualLinks();
}

void LDatabase::DeleteSettings()
{
    RemoveExternalProperty(QString());
}

void LDatabase::DeleteSchemaCache()
{
    InvalidateIdents();
    InvalidateSystemIdents();
    for (const rc::Ref<LSchemaItemList>& list : get_ChildLists())
        list->Clear();
}

QPointer<QWidget> LDatabase::CreateMakeDumpPage(int)
{
    return nullptr;
}

QPointer<QWidget> LDatabase::CreateLoadDumpPage(int)
{
    return nullptr;
}

rc::Ptr<LTask> LDatabase::LoadDump(const QString&, const QString&, QPointer<QWidget>, LLoadProgress)
{
    return nullptr;
}

rc::Ptr<LTask> LDatabase::MakeDump(const QString&, int, ELDumpData, const QString&, QPointer<QWidget>,
                                   const RcList<LTreeItem>&, LDumpProgress)
{
    return nullptr;
}

rc::Ref<LAction> LDatabase::ActionOpenQueryEditor()
{
    static const rc::Ref<LAction> action = MakeEditorAction(DO_OPEN_QUERY_EDITOR, QObject::tr("Open SQL Editor"),
                                                            QStringLiteral(":/icons/sql-editor.svg"));
    return action;
}

rc::Ref<LAction> LDatabase::ActionOpenQueryBuilder()
{
    static const rc::Ref<LAction> action = MakeEditorAction(
        DO_OPEN_QUERY_BUILDER, QObject::tr("Open Query Builder"), QStringLiteral(":/icons/query-builder.svg"));
    return action;
}

rc::Ref<LAction> LDatabase::ActionClose()
{
    static const rc::Ref<LAction> action =
        MakeDatabaseAction(DO_CLOSE, QObject::tr("Close"), QStringLiteral(":/icons/close.svg"), false,
                           [](const rc::Ref<I_LDatabase>& database) {
                               if (!AppCtrlInstance().MayCloseDatabase(database))
                                   return;
                               AppCtrlInstance().DropDatabase(database);
                               database->Close().Force();
                           });
    return action;
}

rc::Ref<LAction> LDatabase::ActionSetupVirtualLinks()
{
    static const rc::Ref<LAction> action = MakeEditorAction(
        DO_SETUP_VIRTUAL_LINKS, QObject::tr("Virtual Links..."), QStringLiteral(":/weft/icons/link2.svg"));
    return action;
}

rc::Ref<LAction> LDatabase::ActionDumpCreate()
{
    static const rc::Ref<LAction> action = MakeDatabaseAction(
        DO_DUMP_CREATE, QObject::tr("Make Dump..."), QStringLiteral(":/icons/dump-make.svg"), true,
        [](const rc::Ref<I_LDatabase>& database) { AppCtrlInstance().StartDump(database); });
    return action;
}

rc::Ref<LAction> LDatabase::ActionDumpLoad()
{
    static const rc::Ref<LAction> action = MakeDatabaseAction(
        DO_DUMP_LOAD, QObject::tr("Load Dump..."), QStringLiteral(":/icons/dump-load.svg"), true,
        [](const rc::Ref<I_LDatabase>& database) {
            if (I_LApplicationUi* const ui = AppCtrlInstance().get_Ui())
                ui->StartLoad(database);
        });
    return action;
}

rc::Ref<LAction> LDatabase::ActionDeletePhysically()
{
    static const rc::Ref<LAction> action = MakeDatabaseAction(
        DO_DELETE_PHYSICALLY, QObject::tr("Delete Database..."), QStringLiteral(":/icons/delete.svg"), false,
        [](const rc::Ref<I_LDatabase>& database) {
            const QString question =
                QObject::tr("Do you really want to delete database \"%1\" and its files?").arg(database->get_Name());
            if (weft::ask(question, QMessageBox::No))
                database->ThrowOut().Force();
        });
    return action;
}

} // namespace HF
