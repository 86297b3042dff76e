// SPDX-License-Identifier: GPL-3.0-or-later
#include "hf/database_object.h"

#include "hf/database.h"
#include "hf/database_model.h"
#include "hf/engine.h"
#include "hf/schema_item_list.h"
#include "hf/sql_text.h"
#include "uik/settings.h"

#include <QUrl>

namespace HF {

namespace {

rc::Ptr<LDatabaseObject_Impl> ParentOf(const LDatabaseObject_Impl& object)
{
    return rc::cast<LDatabaseObject_Impl>(object.get_ParentObject());
}

/// A count that the catalogue guessed stays a guess until somebody asks for it.
bool IsEstimate(const LProperty& property)
{
    return property.id == PROP_RECORD_COUNT && property.value.ToString().startsWith(QLatin1Char('~'));
}

/// The catalogue that has to stand in front of a table's schema, where the engine would find a temporary
/// object of its name otherwise or take the schema for a catalogue; empty where two names will do.
QString CatalogBefore(const LDatabaseObject_Impl& object, const QString& schema)
{
    const rc::Ptr<I_LDatabase> database = object.get_Database();
    if (!database)
        return QString();
    const auto isSchema = [&](const QString& name) { return schema.compare(name, Qt::CaseInsensitive) == 0; };
    bool hidden = false;
    if (const auto parent = rc::cast<LDatabaseObject_Impl>(object.get_ParentObject()); parent && isSchema(QStringLiteral("main")))
        for (const int type : {TYPE_TABLE, TYPE_VIEW})
            if (const rc::Ptr<LSchemaItemList> list = parent->get_ChildList(type))
                hidden = hidden || list->HasTemporary(object.get_Name());
    if (!hidden && !isSchema(database->get_Name()) && !isSchema(QStringLiteral("memory")))
        return QString();
    const QString catalog = database->get_CatalogName();
    return hidden || isSchema(catalog) ? catalog : QString();
}

/// One element of a settings key.
QString KeyElement(const QString& text)
{
    return QString::fromLatin1(QUrl::toPercentEncoding(text));
}

} // namespace

LDatabaseObject_Impl::~LDatabaseObject_Impl() = default;

void LDatabaseObject_Impl::Destroy()
{
    DropChildLists();
    LTreeItem::Destroy();
}

// Tree

bool LDatabaseObject_Impl::get_CanHasChildren() const
{
    {
        std::lock_guard guard(m_treeMutex);
        if (!m_childLists.empty())
            return true;
    }
    return LTreeItem::get_CanHasChildren();
}

QMenu* LDatabaseObject_Impl::get_Menu()
{
    return LTreeItem::get_Menu();
}

rc::Ptr<LAction> LDatabaseObject_Impl::get_Action(const QString& id) const
{
    if (id != QLatin1String(DO_REFRESH))
        return LTreeItem::get_Action(id);
    static const auto refresh = rc::make<LAction>(
        DO_REFRESH, QObject::tr("Refresh"),
        [](const RcList<LTreeItem>& items, const QVariant&) {
            for (const rc::Ref<LTreeItem>& item : items) {
                if (const auto list = rc::cast<LSchemaItemList>(item)) {
                    list->ReloadObjects();
                } else if (const auto object = rc::cast<LDatabaseObject_Impl>(item)) {
                    object->ReloadProperties();
                    for (const rc::Ref<LSchemaItemList>& below : object->get_ChildLists())
                        if (below->IsBuilt())
                            below->ReloadObjects();
                }
            }
        },
        LAction::UpdateFunction(), QStringLiteral(":/weft/icons/reload_thin.svg"));
    return refresh;
}

QString LDatabaseObject_Impl::get_NameForQuery(bool qualified) const
{
    const LDatabaseEngine* engine = get_DatabaseEngine();
    const rc::Ptr<I_LConnection> connection = get_Connection();
    const auto quote = [&](const QString& name) {
        return engine ? engine->QuoteName(name, connection) : HF::QuoteName(name, nullptr);
    };
    const QString name = quote(get_Name());
    const int type = get_ObjectType();
    if (!qualified || type == TYPE_FIELD || type == TYPE_METHOD || type == TYPE_SCHEMA || type == TYPE_DATABASE
        || GetBool(PROP_TEMPORARY))
        return name;
    QString schema = GetString(PROP_SCHEMA_NAME);
    rc::Ptr<LTreeItem> parent = get_ParentObject();
    for (int level = 0; level < 2 && schema.isEmpty() && parent; ++level, parent = parent->get_ParentObject()) {
        if (parent->get_ObjectType() == TYPE_SCHEMA)
            schema = parent->get_Name();
        else if (const auto object = rc::cast<LDatabaseObject_Impl>(parent); object && object->GetBool(PROP_TEMPORARY))
            return name;
    }
    if (schema.isEmpty())
        return name;
    const QString catalog = type == TYPE_TABLE || type == TYPE_VIEW ? CatalogBefore(*this, schema) : QString();
    return (catalog.isEmpty() ? QString() : quote(catalog) + QLatin1Char('.')) + quote(schema) + QLatin1Char('.') + name;
}

rc::Ptr<I_LDatabase> LDatabaseObject_Impl::get_Database() const
{
    const auto parent = ParentOf(*this);
    return parent ? parent->get_Database() : nullptr;
}

rc::Ptr<I_LConnection> LDatabaseObject_Impl::get_Connection() const
{
    const auto parent = ParentOf(*this);
    return parent ? parent->get_Connection() : nullptr;
}

const LDatabaseEngine* LDatabaseObject_Impl::get_DatabaseEngine() const
{
    const auto parent = ParentOf(*this);
    return parent ? parent->get_DatabaseEngine() : nullptr;
}

bool LDatabaseObject_Impl::get_IsClosing() const
{
    const rc::Ptr<I_LDatabase> database = get_Database();
    return database && static_cast<const LDatabaseObject_Impl*>(database.get()) != this && database->get_IsClosing();
}

RcList<LTreeItem> LDatabaseObject_Impl::get_Children() const
{
    RcList<LTreeItem> children;
    for (const rc::Ref<LSchemaItemList>& list : get_ChildLists())
        children.append(list);
    return children + LTreeItem::get_Children();
}

void LDatabaseObject_Impl::DeleteChild(const rc::Ref<LTreeItem>& child)
{
    const rc::Ref<LTreeItem> held = child;
    if (const rc::Ptr<LSchemaItemList> list = get_ChildList(held->get_ObjectType()))
        list->DeleteChild(held);
    LTreeItem::DeleteChild(held);
}

void LDatabaseObject_Impl::Detach()
{
    LTreeItem::Detach();
    for (const rc::Ref<LSchemaItemList>& list : get_ChildLists())
        list->Detach();
}

// Child lists

void LDatabaseObject_Impl::AddChildList(const rc::Ref<LSchemaItemList>& list)
{
    std::lock_guard guard(m_treeMutex);
    m_childLists.push_back(list);
}

void LDatabaseObject_Impl::DropChildLists()
{
    std::vector<rc::Ref<LSchemaItemList>> lists;
    {
        std::lock_guard guard(m_treeMutex);
        lists.swap(m_childLists);
    }
    for (const rc::Ref<LSchemaItemList>& list : lists)
        list->Detach();
}

QList<rc::Ref<LSchemaItemList>> LDatabaseObject_Impl::get_ChildLists() const
{
    std::lock_guard guard(m_treeMutex);
    return {m_childLists.begin(), m_childLists.end()};
}

QList<int> LDatabaseObject_Impl::get_ChildListsTypes() const
{
    QList<int> types;
    std::lock_guard guard(m_treeMutex);
    for (const rc::Ref<LSchemaItemList>& list : m_childLists)
        types.append(list->get_ItemType());
    return types;
}

rc::Ptr<LSchemaItemList> LDatabaseObject_Impl::get_ChildList(int type) const
{
    std::lock_guard guard(m_treeMutex);
    for (const rc::Ref<LSchemaItemList>& list : m_childLists)
        if (list->get_ItemType() == type)
            return list;
    return nullptr;
}

bool LDatabaseObject_Impl::HasChildList(int type) const
{
    return get_ChildList(type).get() != nullptr;
}

bool LDatabaseObject_Impl::HasChildObjects(int type) const
{
    const rc::Ptr<LSchemaItemList> list = get_ChildList(type);
    return list && list->get_Count() > 0;
}

LLazy<RcList<I_LSchemaObject>, false> LDatabaseObject_Impl::get_ChildObjects(int type) const
{
    const rc::Ptr<LSchemaItemList> list = get_ChildList(type);
    if (!list)
        return RcList<I_LSchemaObject>();
    return list->get_Items();
}

LLazy<rc::Ptr<I_LSchemaObject>, false> LDatabaseObject_Impl::get_ChildObject(int type, const QString& name) const
{
    const rc::Ptr<LSchemaItemList> list = get_ChildList(type);
    if (!list)
        return rc::Ptr<I_LSchemaObject>();
    if (list->IsBuilt())
        return list->get_ChildItem(name);
    return LLazy<rc::Ptr<I_LSchemaObject>, false>::FromBody([weak = rc::Weak<LSchemaItemList>(list), name] {
        const rc::Ptr<LSchemaItemList> list = weak.lock();
        return list ? list->get_ChildItem(name) : nullptr;
    });
}

QStringList LDatabaseObject_Impl::get_ChildObjectsNames(int type) const
{
    const rc::Ptr<LSchemaItemList> list = get_ChildList(type);
    return list ? list->get_Names() : QStringList();
}

bool LDatabaseObject_Impl::UpdateChildObjects(int type)
{
    const rc::Ptr<LSchemaItemList> list = get_ChildList(type);
    return list && list->ReloadObjects();
}

// Properties

bool LDatabaseObject_Impl::DeclareProperties(Properties& properties) const
{
    const LDatabaseEngine* engine = get_DatabaseEngine();
    if (!engine)
        return false;
    if (const I_LDatabaseModel* model = engine->GetModel(static_cast<ELObjectType>(get_ObjectType())))
        model->CreateProperties(properties);
    return true;
}

LProperty LDatabaseObject_Impl::get_Property(int id) const
{
    return LHasProperties::get_Property(id);
}

void LDatabaseObject_Impl::AssignName(const QString& name)
{
    const bool renamed = StoreName(name);
    LHasProperties::AssignName(name);
    if (!renamed)
        return;
    if (const auto parent = ParentOf(*this))
        if (const rc::Ptr<LSchemaItemList> list = parent->get_ChildList(get_ObjectType()))
            list->ForgetNames();
    NotifyObservers(Change::Name);
}

void LDatabaseObject_Impl::NotifyPropertyChanged(int id)
{
    NotifyObservers(Change::Property, id);
}

void LDatabaseObject_Impl::NotifyPropertyChangedLater(int id)
{
    RunOnMainThreadLater([weak = rc::Weak<LDatabaseObject_Impl>(this), id] {
        if (const rc::Ptr<LDatabaseObject_Impl> object = weak.lock())
            object->NotifyPropertyChanged(id);
    });
}

LLazy<bool, true> LDatabaseObject_Impl::ProcessProperty(int id, const LVariant& value)
{
    const auto take = [weak = rc::Weak<LDatabaseObject_Impl>(this), id, value](bool applied) {
        const rc::Ptr<LDatabaseObject_Impl> object = weak.lock();
        if (!applied || !object)
            return false;
        return object->LHasProperties::ProcessProperty(id, value).Force();
    };
    const LLazy<bool, true> applied = ApplyPropertyValue(id, value);
    if (applied.IsResolved())
        return take(applied.Force());
    return applied.Map(take);
}

LLazy<bool, true> LDatabaseObject_Impl::RunModel(ELQueryKind kind, int id, const LVariant& value)
{
    const LDatabaseEngine* engine = get_DatabaseEngine();
    const auto object = rc::cast<I_LSchemaObject>(rc::self(this));
    const rc::Ptr<I_LDatabase> database = get_Database();
    if (!engine || !object || !database || database->get_IsClosing())
        return false;
    // The model reads the object now; only the statements wait for the force.
    const rc::Ref<I_LSchemaObject> known(object);
    const QStringList statements = FlattenQueryNodes(engine->GetQueryNodes(known, kind, id, value));
    if (statements.isEmpty())
        return false;
    const bool transactable = engine->IsTransactable(known);
    return LLazy<bool, true>::FromBody([weak = rc::Weak<I_LDatabase>(database), statements, transactable] {
        const rc::Ptr<I_LDatabase> database = weak.lock();
        return database && RunStatements(rc::Ref(database), statements, transactable);
    });
}

LLazy<bool, true> LDatabaseObject_Impl::ApplyPropertyValue(int id, const LVariant& value)
{
    return RunModel(KIND_CHANGE_PROPERTY, id, value);
}

LLazy<bool, true> LDatabaseObject_Impl::Rename(const QString& name)
{
    return RunModel(KIND_CHANGE_PROPERTY, PROP_NAME, name)
        .Map([weak = rc::Weak<LDatabaseObject_Impl>(this), name](bool renamed) {
            const rc::Ptr<LDatabaseObject_Impl> object = weak.lock();
            if (renamed && object)
                object->AssignName(name);
            return renamed;
        });
}

LLazy<bool, true> LDatabaseObject_Impl::Drop()
{
    return RunModel(KIND_DROP, -1, LVariant())
        .Map([weak = rc::Weak<LDatabaseObject_Impl>(this)](bool dropped) {
            const rc::Ptr<LDatabaseObject_Impl> object = weak.lock();
            if (dropped && object) {
                object->RemoveExternalProperty(QString());
                if (const rc::Ptr<LTreeItem> parent = object->get_ParentObject())
                    parent->DeleteChild(rc::Ref<LTreeItem>(*object));
            }
            return dropped;
        });
}

LLazy<bool, true> LDatabaseObject_Impl::UpdatePropertyImpl(int id)
{
    // A count comes with its list.
    for (const rc::Ref<LSchemaItemList>& list : get_ChildLists()) {
        if (list->get_ListInfo().countProperty != id)
            continue;
        if (list->IsBuilt())
            return true;
        return LLazy<bool, true>::FromBody([weak = rc::Weak<LSchemaItemList>(list)] {
            const rc::Ptr<LSchemaItemList> list = weak.lock();
            return list && list->BuildList();
        });
    }
    return true;
}

LLazy<bool, true> LDatabaseObject_Impl::UpdatePropertyIfNeed(int id)
{
    const std::optional<LProperty> known = HasProperty(id);
    // A selection that is only declared holds its choices.
    if (known && (id != PROP_LINK_CARDINALITY || !known->selection.isEmpty()))
        return true;
    return UpdatePropertyImpl(id);
}

LLazy<bool, true> LDatabaseObject_Impl::ReloadProperties()
{
    std::vector<int> known;
    {
        std::lock_guard guard(m_propertyMutex);
        for (const LProperty& property : std::as_const(m_properties).All())
            if (!property.value.IsEmpty() && !IsEstimate(property))
                known.push_back(property.id);
    }
    bool success = true;
    for (const int id : known)
        success = UpdatePropertyImpl(id).Force() && success;
    return success;
}

LVariant LDatabaseObject_Impl::ShowPropertyEditor(int id, QPoint at, bool)
{
    const LDatabaseEngine* engine = get_DatabaseEngine();
    const auto object = rc::cast<I_LSchemaObject>(rc::self(this));
    const I_LDatabaseModel* model = engine ? engine->GetModel(static_cast<ELObjectType>(get_ObjectType())) : nullptr;
    if (!model || !object)
        return LVariant::Empty();
    return model->ShowPropertyEditor(rc::Ref(object), id, get_Database(), at);
}

void LDatabaseObject_Impl::FromQuery(const rc::Ref<const I_LCursor>&) {}

// External properties

QString LDatabaseObject_Impl::ExternalKey() const
{
    const rc::Ptr<I_LDatabase> database = get_Database();
    if (!database)
        return QString();
    QString path = QString::number(get_ObjectType()) + QLatin1Char(':') + KeyElement(get_Name());
    for (rc::Ptr<LTreeItem> item = get_ParentObject(); item && item->get_ObjectType() != TYPE_DATABASE;
         item = item->get_ParentObject())
        path = QString::number(item->get_ObjectType()) + QLatin1Char(':') + KeyElement(item->get_Name())
               + QLatin1Char('/') + path;
    return database->ExternalKey() + QLatin1Char('/') + path;
}

QString LDatabaseObject_Impl::ExternalPropertyKey(const QString& name) const
{
    static const QString prefix = QStringLiteral("External/");
    QString key = ExternalKey();
    if (key.isEmpty())
        return QString();
    if (!key.startsWith(prefix))
        key.prepend(prefix);
    return name.isEmpty() ? key : key + QLatin1Char('/') + name;
}

QVariant LDatabaseObject_Impl::get_ExternalProperty(const QString& name, const QVariant& otherwise) const
{
    const QString key = ExternalPropertyKey(name);
    return key.isEmpty() ? otherwise : uik::settings().value(key, otherwise);
}

LLazy<bool, true> LDatabaseObject_Impl::put_ExternalProperty(const QString& name, const QVariant& value)
{
    if (const QString key = ExternalPropertyKey(name); !key.isEmpty() && !name.isEmpty())
        uik::settings().setValue(key, value);
    return true;
}

bool LDatabaseObject_Impl::HasExternalProperty(const QString& name) const
{
    const QString key = ExternalPropertyKey(name);
    return !key.isEmpty() && !name.isEmpty() && uik::settings().contains(key);
}

void LDatabaseObject_Impl::RemoveExternalProperty(const QString& name)
{
    if (const QString key = ExternalPropertyKey(name); !key.isEmpty())
        uik::settings().remove(key);
}

// Script objects

void LDatabaseObject_Impl::SetScriptWatcher(std::shared_ptr<I_LScriptWatcher> watcher)
{
    std::lock_guard guard(m_treeMutex);
    m_scriptWatcher.swap(watcher);
}

void LDatabaseObject_Impl::NotifyScriptWatchers(int event, const QVariant& argument) const
{
    std::shared_ptr<I_LScriptWatcher> watcher;
    {
        std::lock_guard guard(m_treeMutex);
        watcher = m_scriptWatcher;
    }
    if (watcher)
        watcher->Notify(event, argument);
}

} // namespace HF
