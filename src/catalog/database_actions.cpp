// SPDX-License-Identifier: GPL-3.0-or-later
#include "catalog/database.h"

#include "catalog/makers.h"
#include "connection/dumpable_connection.h"
#include "connection/location.h"
#include "hf/background.h"
#include "hf/engine.h"
#include "hf/main_thread.h"
#include "hf/schema_item_list.h"
#include "hf/services.h"

#include <QAction>
#include <QActionGroup>
#include <QApplication>
#include <QFileDialog>
#include <QFileInfo>
#include <QMenu>
#include <QScopeGuard>
#include <QUrl>

#include <algorithm>
#include <atomic>
#include <memory>

namespace {

rc::Ptr<orbDuckDB_Database> FirstDatabase(const RcList<HF::LTreeItem>& items)
{
    return items.isEmpty() ? nullptr : rc::cast<orbDuckDB_Database>(items.first());
}

void RunBackup(const RcList<HF::LTreeItem>& items, const QVariant& argument)
{
    const rc::Ptr<orbDuckDB_Database> database = FirstDatabase(items);
    if (!database)
        return;
    QString folder = argument.toString();
    if (folder.isEmpty())
        folder = QFileDialog::getExistingDirectory(QApplication::activeWindow(), QObject::tr("Select backup folder"),
                                                   QString(), QFileDialog::ShowDirsOnly);
    if (folder.isEmpty())
        return;
    if (!HF::IsMainThread()) {
        database->Backup(folder);
        return;
    }
    // A copy of a large file takes its time, and the window goes on meanwhile.
    const auto done = std::make_shared<std::atomic<bool>>(false);
    HF::RunOnWorker([database, folder, done] {
        const auto atEnd = qScopeGuard([&] { done->store(true); });
        database->Backup(folder);
    });
    while (!done->load())
        HF::LYield();
}

void ShowOnDisk(const RcList<HF::LTreeItem>& items, const QVariant&)
{
    if (const rc::Ptr<orbDuckDB_Database> database = FirstDatabase(items))
        HF::OpenURL(QUrl::fromUserInput(QFileInfo(database->get_Path()).path()).toString());
}

void UpdateShowOnDisk(QAction& action, const RcList<HF::LTreeItem>& items, const QVariant&)
{
    const rc::Ptr<orbDuckDB_Database> database = FirstDatabase(items);
    const rc::Ptr<HF::I_LConnection> connection = database ? database->get_Connection() : nullptr;
    const bool onDisk = connection && connection->get_IsFileBased() && !IsInMemoryLocation(database->get_Path());
    action.setEnabled(onDisk);
    action.setVisible(onDisk);
}

const rc::Ref<HF::LAction>& ActionBackup()
{
    static const rc::Ref<HF::LAction> action =
        rc::make<HF::LAction>(HF::DO_BACKUP, QObject::tr("Backup"), RunBackup, HF::LAction::UpdateFunction(),
                              QStringLiteral(":/icons/backup.svg"));
    return action;
}

const rc::Ref<HF::LAction>& ActionShowOnDisk()
{
    static const rc::Ref<HF::LAction> action =
        rc::make<HF::LAction>(HF::DO_SHOW_ON_DISK, QObject::tr("Show on Disk"), ShowOnDisk, UpdateShowOnDisk,
                              QStringLiteral(":/icons/disk.svg"));
    return action;
}

/// A name as a menu shows it: an "&" would mark a shortcut.
QString MenuText(QString name)
{
    return name.replace(u'&', QLatin1String("&&"));
}

} // namespace

rc::Ptr<HF::LAction> orbDuckDB_Database::get_Action(const QString& id) const
{
    if (id == QLatin1String(HF::DO_BACKUP))
        return ActionBackup();
    if (id == QLatin1String(HF::DO_SHOW_ON_DISK))
        return ActionShowOnDisk();
    return LDatabase::get_Action(id);
}

QList<rc::Ptr<HF::LAction>> orbDuckDB_Database::get_ActionsForMenu() const
{
    static const QList<rc::Ptr<HF::LAction>> actions = {
        ActionOpenQueryEditor(), ActionOpenQueryBuilder(), nullptr, ActionClose(),      nullptr,
        ActionSetupVirtualLinks(), nullptr,                ActionBackup(), ActionShowOnDisk(), nullptr,
        ActionDumpCreate(),      ActionDumpLoad(),         nullptr, ActionDeletePhysically()};
    return actions;
}

// Schemas

HF::LLazy<RcList<HF::I_LSchemaObject>, true> orbDuckDB_Database::CreateChildObjectDialog(HF::ELObjectType type)
{
    return type == HF::TYPE_SCHEMA ? CreateSchema() : LDatabase::CreateChildObjectDialog(type);
}

RcList<HF::I_LSchemaObject> orbDuckDB_Database::CreateSchema()
{
    const std::optional<QString> answer =
        HF::InputTextWithTitle(QObject::tr("Create Schema"), QObject::tr("Enter a schema name:"), QString(),
                               QObject::tr("Create"));
    if (!answer)
        return {};
    const QString name = answer->trimmed();
    const rc::Ptr<HF::LSchemaItemList> schemas = get_ChildList(HF::TYPE_SCHEMA);
    if (schemas && schemas->get_ChildItem(name)) {
        HF::Alert(QObject::tr("Schema with such name already exists: %1").arg(name));
        return {};
    }
    if (name.isEmpty()) {
        HF::Alert(QObject::tr("Name of schema cannot be empty!"));
        return {};
    }
    const QString text =
        QLatin1String("CREATE SCHEMA ") + get_DatabaseEngine()->QuoteName(name, get_Connection()) + u';';
    if (!HF::IsQuerySuccess(SqlQuery(text, 0, {}, HF::CURSOR_CLIENT, HF::LOCK_OPTIMISTIC, HF::CURSOR_FORWARD)))
        return {};
    UpdateChildObjects(HF::TYPE_SCHEMA);
    const rc::Ptr<HF::I_LSchemaObject> schema = get_ChildObject(HF::TYPE_SCHEMA, name).Force();
    return schema ? RcList<HF::I_LSchemaObject>{rc::Ref<HF::I_LSchemaObject>(schema)} : RcList<HF::I_LSchemaObject>();
}

void orbDuckDB_Database::ApplyDefaultSchemas(const QStringList& names)
{
    ProcessProperty(PROP_SEARCH_PATH, names).Force();
    put_SearchPathCache(std::nullopt);
}

void orbDuckDB_Database::UpdateDefaultSchemasAction(QAction& action)
{
    action.setVisible(true);
    action.setEnabled(true);
    if (QMenu* old = action.menu<QMenu*>())
        old->deleteLater();
    auto* menu = new QMenu(qobject_cast<QWidget*>(action.parent()));
    auto* group = new QActionGroup(menu);
    group->setExclusive(false);

    const QStringList chosen = GetStringList(PROP_SEARCH_PATH);
    QStringList others;
    for (const QString& name : get_ChildObjectsNames(HF::TYPE_SCHEMA))
        if (!chosen.contains(name))
            others.append(name);

    QAction* all = menu->addAction(QObject::tr("Select All Schemas"));
    QAction* none = menu->addAction(QObject::tr("Deselect All Schemas"));
    menu->addSeparator();
    const auto addNames = [&](const QStringList& names, bool checked) {
        for (const QString& name : names) {
            QAction* entry = group->addAction(menu->addAction(MenuText(name)));
            entry->setData(name);
            entry->setCheckable(true);
            entry->setChecked(checked);
        }
    };
    addNames(chosen, true);
    menu->addSeparator();
    addNames(others, false);

    const rc::Weak<orbDuckDB_Database> weak(this);
    QObject::connect(group, &QActionGroup::triggered, menu, [weak](const QAction* entry) {
        const rc::Ptr<orbDuckDB_Database> database = weak.lock();
        if (!database)
            return;
        QStringList names = database->GetStringList(PROP_SEARCH_PATH);
        const QString name = entry->data().toString();
        if (!entry->isChecked())
            names.removeAll(name);
        else if (!names.contains(name))
            names.append(name);
        database->ApplyDefaultSchemas(names);
    });
    all->setEnabled(!others.isEmpty());
    if (all->isEnabled())
        QObject::connect(all, &QAction::triggered, menu, [weak] {
            const rc::Ptr<orbDuckDB_Database> database = weak.lock();
            if (!database)
                return;
            QStringList names = database->GetStringList(PROP_SEARCH_PATH);
            for (const QString& name : database->get_ChildObjectsNames(HF::TYPE_SCHEMA))
                if (!names.contains(name))
                    names.append(name);
            database->ApplyDefaultSchemas(names);
        });
    none->setEnabled(!chosen.isEmpty());
    if (none->isEnabled())
        QObject::connect(none, &QAction::triggered, menu, [weak] {
            if (const rc::Ptr<orbDuckDB_Database> database = weak.lock())
                database->ApplyDefaultSchemas(QStringList());
        });
    action.setMenu(menu);

    const QString title = QObject::tr("Default schemas");
    if (chosen.isEmpty())
        action.setText(QObject::tr("None"));
    else if (chosen.size() == 1)
        action.setText(MenuText(chosen.first()));
    else
        action.setText(QObject::tr("%n schemas", "", int(chosen.size())));
    QString tip = title;
    if (chosen.size() > 1)
        tip = QLatin1String("<b>") + title + QLatin1String("</b><br>") + chosen.join(QLatin1String("<br>"));
    action.setToolTip(tip);
}

// Dumps

QPointer<QWidget> orbDuckDB_Database::CreateDumpOptionsWidget(int kind)
{
    if (kind != HF::DUMP_KIND_SQL || !CatalogMakers().dumpOptions)
        return nullptr;
    return CatalogMakers().dumpOptions();
}

QPointer<QWidget> orbDuckDB_Database::CreateLoadDumpPage(int kind)
{
    auto* const connection = dynamic_cast<orb_I_DumpableConnection*>(get_Connection().get());
    return connection ? connection->CreateDumpOptionsWidget(kind) : nullptr;
}

rc::Ptr<HF::LTask> orbDuckDB_Database::LoadDump(const QString& path, const QString& encoding, QPointer<QWidget> page,
                                                HF::LLoadProgress progress)
{
    const orbDuckDB_CatalogMakers& makers = CatalogMakers();
    if (!makers.loadTask)
        return nullptr;
    orbDuckDB_LoadOptions options;
    if (page && makers.readLoadOptions)
        makers.readLoadOptions(*page, options);
    return makers.loadTask(rc::self<HF::I_LDatabase>(this), path, encoding, options, progress);
}

rc::Ptr<HF::LTask> orbDuckDB_Database::MakeDump(const QString& path, int kind, HF::ELDumpData data,
                                                const QString& encoding, QPointer<QWidget> page,
                                                const RcList<HF::LTreeItem>& selection, HF::LDumpProgress progress)
{
    const orbDuckDB_CatalogMakers& makers = CatalogMakers();
    if (kind != HF::DUMP_KIND_SQL || !makers.dumpTask)
        return nullptr;
    orbDuckDB_DumpRequest request{rc::self<HF::I_LDatabase>(this),
                                  path,
                                  data,
                                  encoding,
                                  HF::LSQLDumpOptions(),
                                  std::move(progress),
                                  QObject::tr("Make dump of database \"%1\"").arg(get_Name()),
                                  orbDuckDB_DumpRequest::WholeDatabase,
                                  {},
                                  {},
                                  {}};
    if (page && makers.readDumpOptions)
        makers.readDumpOptions(*page, request.options);
    if (selection.isEmpty()) {
        request.schemas = get_ChildObjects(HF::TYPE_SCHEMA).Force();
    } else if (selection.first()->get_ObjectType() == HF::TYPE_SCHEMA) {
        request.scope = orbDuckDB_DumpRequest::GivenSchemas;
        for (const rc::Ref<HF::LTreeItem>& item : selection)
            if (const auto schema = rc::cast<HF::I_LSchemaObject>(item))
                request.schemas.append(rc::Ref<HF::I_LSchemaObject>(schema));
    } else {
        request.scope = orbDuckDB_DumpRequest::TablesOnly;
        for (const rc::Ref<HF::LTreeItem>& item : selection)
            if (const auto table = rc::cast<HF::I_LTable>(item))
                request.tables.append(rc::Ref<HF::I_LTable>(table));
    }
    for (const rc::Ref<HF::I_LSchemaObject>& object : request.schemas)
        if (const auto schema = rc::cast<HF::I_LSchema>(object))
            request.tables += schema->get_Tables();
    std::sort(request.tables.begin(), request.tables.end(), [](const auto& a, const auto& b) {
        const int bySchema = a->GetString(PROP_SCHEMA_NAME).compare(b->GetString(PROP_SCHEMA_NAME));
        return bySchema ? bySchema < 0 : a->get_Name() < b->get_Name();
    });
    for (const rc::Ref<HF::I_LTable>& table : request.tables)
        request.names[table->GetString(PROP_SCHEMA_NAME)].append(table->get_Name());
    return makers.dumpTask(request);
}
