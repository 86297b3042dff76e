// SPDX-License-Identifier: GPL-3.0-or-later
#include "catalog/schema.h"

#include "catalog/list_infos.h"
#include "catalog/makers.h"
#include "hf/app_controller.h"

#include <QObject>

namespace {

/// An action that hands its first schema to the application controller.
template <class F>
rc::Ref<HF::LAction> MakeAction(const char* id, const QString& text, const char* icon, F run)
{
    return rc::make<HF::LAction>(
        id, text,
        [run](const RcList<HF::LTreeItem>& items, const QVariant&) {
            if (!items.isEmpty())
                run(items.first());
        },
        HF::LAction::UpdateFunction(), QString::fromLatin1(icon));
}

const rc::Ref<HF::LAction>& ActionDump()
{
    static const rc::Ref<HF::LAction> action =
        MakeAction(HF::DO_DUMP_CREATE, QObject::tr("Create Dump"), ":/icons/export.svg", [](const auto& item) {
            const auto schema = rc::cast<HF::I_LSchemaObject>(item);
            const rc::Ptr<HF::I_LDatabase> database = schema ? schema->get_Database() : nullptr;
            if (!database)
                return;
            if (const rc::Ptr<HF::LSchemaItemList> list = database->get_ChildList(HF::TYPE_SCHEMA))
                HF::AppCtrlInstance().StartDump(rc::Ref<HF::LTreeItem>(*list));
        });
    return action;
}

const rc::Ref<HF::LAction>& ActionExportCsv()
{
    static const rc::Ref<HF::LAction> action =
        MakeAction(HF::DO_EXPORT_CSV, QObject::tr("Export to CSV"), ":/icons/export.svg",
                   [](const auto& item) { HF::AppCtrlInstance().StartExportCsv(item); });
    return action;
}

const rc::Ref<HF::LAction>& ActionImportCsv()
{
    static const rc::Ref<HF::LAction> action =
        MakeAction(HF::DO_IMPORT_CSV, QObject::tr("Import from CSV"), ":/icons/import.svg",
                   [](const auto& item) { HF::AppCtrlInstance().StartImportCsv(item); });
    return action;
}

} // namespace

const QList<QString>& SystemSchemaNames()
{
    static const QList<QString> names = {QStringLiteral("information_schema"), QStringLiteral("pg_catalog")};
    return names;
}

rc::Ref<HF::I_LSchemaObject> MakeSchema(const rc::Ref<HF::I_LSchemaObject>& owner, const QString& name)
{
    const rc::Ref<HF::I_LSchemaObject> schema = rc::make<orbDuckDB_Schema>(owner, name);
    const auto links = rc::make<HF::LSchemaItemListParent>(ListInfos::LinksOfSchema, schema);
    schema->AddChildList(rc::make<HF::LSchemaItemList>(ListInfos::Functions, schema));
    schema->AddChildList(links);
    schema->AddChildList(rc::make<HF::LSchemaItemList>(ListInfos::Tables, schema));
    schema->AddChildList(rc::make<HF::LSchemaItemList>(ListInfos::Views, schema));
    schema->AddChildList(rc::make<HF::LSchemaItemList>(ListInfos::Sequences, schema));
    links->InitVirtualLinks();
    return schema;
}

orbDuckDB_Schema::orbDuckDB_Schema(const rc::Ref<HF::I_LSchemaObject>& owner, const QString& name)
{
    put_ParentObject(owner);
    AssignName(name);
}

HF::LLazy<bool, true> orbDuckDB_Schema::ReloadProperties()
{
    HF::LLazy<bool, true> last(true);
    for (const int id : {PROP_NAME, PROP_COUNT_LINKS, PROP_COUNT_TABLES, PROP_COUNT_VIEWS, PROP_COUNT_SEQUENCES})
        last = UpdatePropertyIfNeed(id);
    return get_Database() ? HF::LLazy<bool, true>(true) : last;
}

HF::LLazy<bool, true> orbDuckDB_Schema::ApplyPropertyValue(int id, const HF::LVariant& value)
{
    if (id != PROP_NAME)
        return LDatabaseObject::ApplyPropertyValue(id, value);
    const QString name = value.ToString();
    if (name == get_Name())
        return false;
    return Rename(name);
}

QString orbDuckDB_Schema::get_ObjectTypeName() const
{
    return QString::fromLatin1(HF::OBJECT_SCHEMA);
}

rc::Ptr<HF::LAction> orbDuckDB_Schema::get_Action(const QString& id) const
{
    if (id == QLatin1String(HF::DO_DUMP_CREATE))
        return ActionDump();
    if (id == QLatin1String(HF::DO_EXPORT_CSV))
        return ActionExportCsv();
    if (id == QLatin1String(HF::DO_IMPORT_CSV))
        return ActionImportCsv();
    return LDatabaseObject::get_Action(id);
}

QList<rc::Ptr<HF::LAction>> orbDuckDB_Schema::get_ActionsForMenu() const
{
    static const QList<rc::Ptr<HF::LAction>> actions = {ActionDump()};
    return actions;
}

HF::LLazy<QString, false> orbDuckDB_Schema::get_Icon() const
{
    return get_IsSystem() ? QStringLiteral(":/icons/schema-sys.svg") : QStringLiteral(":/icons/schema.svg");
}

HF::LLazy<RcList<HF::I_LSchemaObject>, true> orbDuckDB_Schema::CreateChildObjectDialog(HF::ELObjectType type)
{
    switch (type) {
    case HF::TYPE_FUNCTION:
        if (!get_Database() || !CatalogMakers().createFunctionDialog)
            return RcList<HF::I_LSchemaObject>();
        return CatalogMakers().createFunctionDialog(rc::self<HF::I_LSchema>(this));
    case HF::TYPE_LINK:
    case HF::TYPE_SEQUENCE:
    case HF::TYPE_TABLE:
    case HF::TYPE_VIEW: return HF::AppCtrlInstance().RunDesigner(rc::self<HF::I_LSchemaObject>(this), type);
    default: return LDatabaseObject::CreateChildObjectDialog(type);
    }
}

rc::Ptr<HF::I_LSchemaObject> orbDuckDB_Schema::ResolveIdent(const HF::LIdent& ident) const
{
    if (ident.get_Type() != HF::DBOBJ_FUNCTION)
        return LDatabaseObject::ResolveIdent(ident);
    // The list may know a function by another key than its name.
    const QString name = ident.get_Name();
    for (const rc::Ref<HF::I_LSchemaObject>& function : get_ChildObjects(HF::TYPE_FUNCTION).Force())
        if (function->GetString(PROP_NAME) == name)
            return function;
    return nullptr;
}

void orbDuckDB_Schema::FromQuery(const rc::Ref<const HF::I_LCursor>& cursor)
{
    ReadProperty(cursor, PROP_OBJECT_ID, "oid");
}

bool orbDuckDB_Schema::get_IsSystem() const
{
    return SystemSchemaNames().contains(get_Name());
}

rc::Ptr<HF::I_LTable> orbDuckDB_Schema::get_Table(const QString& name) const
{
    const rc::Ptr<HF::LSchemaItemList> tables = get_ChildList(HF::TYPE_TABLE);
    return tables ? rc::cast<HF::I_LTable>(tables->get_ChildItem(name)) : nullptr;
}

RcList<HF::I_LTable> orbDuckDB_Schema::get_Tables() const
{
    RcList<HF::I_LTable> result;
    for (const rc::Ref<HF::I_LSchemaObject>& item : get_ChildObjects(HF::TYPE_TABLE).Force())
        if (const auto table = rc::cast<HF::I_LTable>(item))
            result.append(rc::Ref<HF::I_LTable>(table));
    return result;
}
