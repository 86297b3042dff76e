// SPDX-License-Identifier: GPL-3.0-or-later
#include "hf/schema_item_list.h"

#include "hf/database.h"
#include "hf/engine.h"
#include "hf/row_reading.h"
#include "hf/services.h"

#include <QCoreApplication>
#include <QSet>

namespace HF {

namespace {

QString Literal(QString text)
{
    text.replace(QLatin1Char('\''), QLatin1String("''"));
    return QLatin1Char('\'') + text + QLatin1Char('\'');
}

QString FilterProperty(const LSchemaItemListInfo& info)
{
    return QLatin1String("FilteredNames/") + info.word;
}

} // namespace

QString SubstituteNames(const QString& query, const QString& name, const QString& parentName,
                        const QString& grandparentName)
{
    const std::pair<QLatin1String, const QString&> names[] = {
        {QLatin1String("$PPNAME"), grandparentName},
        {QLatin1String("$PNAME"), parentName},
        {QLatin1String("$NAME"), name},
    };
    QString result;
    qsizetype done = 0;
    for (qsizetype at = query.indexOf(u'$'); at >= 0; at = query.indexOf(u'$', at)) {
        const QStringView rest = QStringView(query).mid(at);
        qsizetype length = 1;
        for (const auto& [word, value] : names) {
            if (!rest.startsWith(word))
                continue;
            result += QStringView(query).mid(done, at - done);
            result += Literal(value);
            length = word.size();
            done = at + length;
            break;
        }
        at += length;
    }
    result += QStringView(query).mid(done);
    return result;
}

LSchemaItemList::LSchemaItemList(const LSchemaItemListInfo& info, const rc::Ref<I_LSchemaObject>& owner)
    : m_info(info), m_owner(owner)
{
}

LSchemaItemList::~LSchemaItemList() = default;

void LSchemaItemList::Destroy()
{
    Detach();
    LDatabaseObject_Impl::Destroy();
}

QString LSchemaItemList::get_Name() const
{
    QString name = PluralStr(m_info.word);
    if (!name.isEmpty())
        name[0] = name[0].toUpper();
    return name;
}

QString LSchemaItemList::get_NameForViews() const
{
    static const char* const names[] = {
        QT_TRANSLATE_NOOP("QObject", "Checks"),    QT_TRANSLATE_NOOP("QObject", "Databases"),
        QT_TRANSLATE_NOOP("QObject", "Fields"),    QT_TRANSLATE_NOOP("QObject", "Functions"),
        QT_TRANSLATE_NOOP("QObject", "Indexes"),   QT_TRANSLATE_NOOP("QObject", "Links"),
        QT_TRANSLATE_NOOP("QObject", "Methods"),   QT_TRANSLATE_NOOP("QObject", "Schemas"),
        QT_TRANSLATE_NOOP("QObject", "Sequences"), QT_TRANSLATE_NOOP("QObject", "Tables"),
        QT_TRANSLATE_NOOP("QObject", "Uniques"),   QT_TRANSLATE_NOOP("QObject", "Views"),
    };
    const QString name = get_Name();
    for (const char* known : names)
        if (name == QLatin1String(known))
            return QObject::tr(known);
    return name;
}

LLazy<QString, false> LSchemaItemList::get_Icon() const
{
    return m_info.icon;
}

rc::Ptr<LTreeItem> LSchemaItemList::get_ParentObject() const
{
    return m_owner.lock();
}

rc::Ptr<I_LDatabase> LSchemaItemList::get_Database() const
{
    const rc::Ptr<I_LSchemaObject> owner = m_owner.lock();
    return owner ? owner->get_Database() : nullptr;
}

// Reading

bool LSchemaItemList::IsBuilt() const
{
    std::lock_guard guard(m_itemsMutex);
    return m_built;
}

bool LSchemaItemList::BuildList()
{
    return Build(false);
}

bool LSchemaItemList::ReloadObjects()
{
    return Build(true);
}

bool LSchemaItemList::Build(bool anew)
{
    if (!anew && IsBuilt())
        return true;
    if (m_builder.load() == std::this_thread::get_id())
        return false; // asked for by its own query or by what the event loop ran meanwhile
    const rc::Ref<LSchemaItemList> held = rc::self(this);
    std::unique_lock building(m_buildMutex, std::defer_lock);
    if (IsMainThread())
        while (!building.try_lock())
            LYield();
    else
        building.lock();
    if (!anew && IsBuilt())
        return true;

    m_builder.store(std::this_thread::get_id());
    m_readKeys.clear();
    std::optional<RcList<I_LSchemaObject>> items;
    try {
        items = ReadItems();
    } catch (...) {
        items.reset(); // an object that cannot be read leaves the list as it was
    }
    RcList<I_LSchemaObject> old;
    if (items)
        old = Take(std::move(*items), std::exchange(m_readKeys, {}));
    m_builder.store(std::thread::id());
    building.unlock();
    if (!items)
        return false;

    LetGo(old);
    Announce();
    AfterBuild();
    return true;
}

QString LSchemaItemList::MakeQuery(const rc::Ref<I_LSchemaObject>& owner) const
{
    QString query = m_info.queryFor ? m_info.queryFor(owner) : QString();
    if (query.isEmpty())
        query = m_info.query;
    if (!query.contains(u'$'))
        return query;
    const rc::Ptr<LTreeItem> parent = owner->get_ParentObject();
    return SubstituteNames(query, owner->get_Name(), parent ? parent->get_Name() : QString());
}

std::optional<RcList<I_LSchemaObject>> LSchemaItemList::ReadItems()
{
    const rc::Ptr<I_LSchemaObject> known = m_owner.lock();
    if (!known)
        return std::nullopt;
    const rc::Ref<I_LSchemaObject> owner(known);
    const QString query = MakeQuery(owner);
    if (query.isEmpty())
        return get_ItemsNow();
    const rc::Ptr<I_LDatabase> database = get_Database();
    if (!database || database->get_IsClosing())
        return std::nullopt;
    const rc::Ptr<I_LCursor> cursor = database->SelectCatalog(query);
    if (!cursor)
        return std::nullopt;

    // "SELECT *, ... AS constraint_name" has two columns of that name where the
    // engine has one of its own; the query's stands behind it.
    rc::Ptr<I_LField> names;
    for (int i = cursor->get_FieldCount().Force() - 1; i >= 0 && !names; --i)
        if (rc::Ptr<I_LField> column = cursor->get_Field(i);
            column && column->get_Name().compare(m_info.nameColumn, Qt::CaseInsensitive) == 0)
            names = std::move(column);
    if (!names)
        return std::nullopt;

    const rc::Ref<const I_LCursor> rows(cursor);
    impl::RowReading scope(rows);
    RcList<I_LSchemaObject> items;
    items.reserve(static_cast<qsizetype>(cursor->get_RecordCount().Force()));
    bool keysDiffer = false;
    for (bool more = cursor->FirstRecord(); more; more = cursor->NextRecord()) {
        const QString key = names->get_String();
        rc::Ref<I_LSchemaObject> item = m_info.factory(owner, key);
        item->FromQuery(rows);
        keysDiffer = keysDiffer || item->get_Name() != key;
        m_readKeys.append(key);
        items.append(std::move(item));
    }
    if (!keysDiffer)
        m_readKeys.clear();
    return items;
}

RcList<I_LSchemaObject> LSchemaItemList::Take(RcList<I_LSchemaObject> items, QStringList keys)
{
    const RcList<I_LSchemaObject> fresh = items;
    {
        std::lock_guard guard(m_itemsMutex);
        m_items.swap(items);
        m_keys.swap(keys);
        m_built = true;
        m_namesFilled = false;
        m_temporaryNames.reset();
    }
    // Below an object that left the tree nothing ends the circle of strong ties.
    // Detach marks the owner first and empties the lists then, so one of the two sees the other.
    const rc::Ptr<I_LSchemaObject> owner = m_owner.lock();
    if (OwnsItems() && (!owner || owner->IsDetached()))
        for (const rc::Ref<I_LSchemaObject>& item : fresh) {
            item->Detach();
            item->put_ParentObjectWeak(item->get_ParentObject());
        }
    if (items.isEmpty() || fresh.isEmpty())
        return items;
    QSet<const I_LSchemaObject*> kept;
    for (const rc::Ref<I_LSchemaObject>& item : fresh)
        kept.insert(item.get());
    items.removeIf([&](const rc::Ref<I_LSchemaObject>& item) { return kept.contains(item.get()); });
    return items;
}

void LSchemaItemList::Publish(RcList<I_LSchemaObject> items)
{
    LetGo(Take(std::move(items), {}));
    Announce();
}

void LSchemaItemList::LetGo(const RcList<I_LSchemaObject>& items)
{
    if (OwnsItems())
        for (const rc::Ref<I_LSchemaObject>& item : items)
            item->Detach();
}

void LSchemaItemList::Announce()
{
    if (m_info.countProperty >= 0)
        if (const rc::Ptr<I_LSchemaObject> owner = m_owner.lock())
            owner->AssignPropertyValue(m_info.countProperty, get_Count());
    NotifyObservers(Change::Children);
}

// Items

RcList<I_LSchemaObject> LSchemaItemList::get_ItemsNow() const
{
    std::lock_guard guard(m_itemsMutex);
    return m_items;
}

int LSchemaItemList::get_Count() const
{
    std::lock_guard guard(m_itemsMutex);
    return static_cast<int>(m_items.size());
}

RcList<LTreeItem> LSchemaItemList::get_Children() const
{
    const RcList<I_LSchemaObject> items = get_ItemsNow();
    return {items.begin(), items.end()};
}

LLazy<RcList<I_LSchemaObject>, false> LSchemaItemList::get_Items() const
{
    {
        std::lock_guard guard(m_itemsMutex);
        if (m_built)
            return m_items;
    }
    // Building is not a change of the list's meaning; const readers cause it.
    auto* list = const_cast<LSchemaItemList*>(this);
    return LLazy<RcList<I_LSchemaObject>, false>::FromBody([weak = rc::Weak<LSchemaItemList>(list)] {
        const rc::Ptr<LSchemaItemList> list = weak.lock();
        if (!list)
            return RcList<I_LSchemaObject>();
        list->BuildList();
        return list->get_ItemsNow();
    });
}

void LSchemaItemList::FillNames(bool caseSensitive) const
{
    if (m_namesFilled)
        return;
    m_byName.clear();
    m_byName.reserve(m_items.size());
    m_caseTwins = false;
    const auto add = [&](const QString& name, int index) {
        const QString key = caseSensitive ? name : name.toLower();
        if (const auto known = m_byName.constFind(key); known == m_byName.constEnd())
            m_byName.insert(key, index);
        else if (*known != index)
            m_caseTwins = true;
    };
    for (int i = 0; i < m_items.size(); ++i)
        add(m_items.at(i)->get_Name(), i);
    for (int i = 0; i < m_keys.size(); ++i)
        add(m_keys.at(i), i);
    m_namesFilled = true;
}

rc::Ptr<I_LSchemaObject> LSchemaItemList::get_ChildItem(const QString& name) const
{
    const_cast<LSchemaItemList*>(this)->BuildList();
    const LDatabaseEngine* engine = get_DatabaseEngine();
    const bool caseSensitive = engine && engine->GetCaseSensitivity(nullptr) == CASE_SENSITIVE;
    std::lock_guard guard(m_itemsMutex);
    FillNames(caseSensitive);
    const auto found = m_byName.constFind(caseSensitive ? name : name.toLower());
    if (found == m_byName.constEnd())
        return nullptr;
    if (m_caseTwins && m_items.at(*found)->get_Name() != name)
        for (const rc::Ref<I_LSchemaObject>& item : std::as_const(m_items))
            if (item->get_Name() == name)
                return item;
    return m_items.at(*found);
}

bool LSchemaItemList::HasTemporary(const QString& name) const
{
    std::lock_guard guard(m_itemsMutex);
    if (!m_temporaryNames) {
        m_temporaryNames.emplace();
        for (const rc::Ref<I_LSchemaObject>& item : m_items)
            if (item->GetBool(PROP_TEMPORARY))
                m_temporaryNames->insert(item->get_Name().toLower());
    }
    return !m_temporaryNames->isEmpty() && m_temporaryNames->contains(name.toLower());
}

QStringList LSchemaItemList::get_Names() const
{
    QStringList names;
    const RcList<I_LSchemaObject> items = get_Items().Force();
    for (const rc::Ref<I_LSchemaObject>& item : items)
        names.append(item->get_Name());
    return names;
}

void LSchemaItemList::ForgetNames()
{
    std::lock_guard guard(m_itemsMutex);
    m_namesFilled = false;
    m_temporaryNames.reset();
}

QList<QString> LSchemaItemList::get_FilteredNames() const
{
    const rc::Ptr<I_LSchemaObject> owner = m_owner.lock();
    if (owner && owner->HasExternalProperty(FilterProperty(m_info)))
        return owner->get_ExternalProperty(FilterProperty(m_info)).toStringList();
    return get_DefaultFilteredNames();
}

void LSchemaItemList::put_FilteredNames(const QList<QString>& names)
{
    if (const rc::Ptr<I_LSchemaObject> owner = m_owner.lock())
        owner->put_ExternalProperty(FilterProperty(m_info), QStringList(names));
    NotifyObservers(Change::Children);
}

void LSchemaItemList::put_Actions(const QList<rc::Ptr<LAction>>& actions)
{
    std::lock_guard guard(m_itemsMutex);
    m_actions = actions;
}

QList<rc::Ptr<LAction>> LSchemaItemList::get_ActionsForMenu() const
{
    {
        std::lock_guard guard(m_itemsMutex);
        if (!m_actions.isEmpty())
            return m_actions;
    }
    return {get_Action(QString::fromLatin1(DO_REFRESH))};
}

void LSchemaItemList::AddChildBack(const rc::Ref<LTreeItem>& child)
{
    const rc::Ptr<I_LSchemaObject> item = rc::cast<I_LSchemaObject>(child);
    if (!item)
        return;
    if (!item->get_ParentObject())
        item->put_ParentObject(m_owner.lock());
    {
        std::lock_guard guard(m_itemsMutex);
        if (!m_keys.isEmpty())
            m_keys.append(item->get_Name());
        m_items.append(rc::Ref(item));
        m_namesFilled = false;
        m_temporaryNames.reset();
    }
    Announce();
}

void LSchemaItemList::DeleteChild(const rc::Ref<LTreeItem>& child)
{
    const rc::Ref<LTreeItem> held = child;
    {
        std::lock_guard guard(m_itemsMutex);
        qsizetype index = 0;
        while (index < m_items.size() && m_items.at(index).get() != held.get())
            ++index;
        if (index == m_items.size())
            return;
        m_items.removeAt(index);
        if (index < m_keys.size())
            m_keys.removeAt(index);
        m_namesFilled = false;
        m_temporaryNames.reset();
    }
    if (OwnsItems()) {
        const rc::Ptr<LTreeItem> parent = held->get_ParentObject();
        if (parent && parent.get() == m_owner.lock().get())
            held->put_ParentObject(nullptr);
        held->Detach();
    }
    Announce();
}

void LSchemaItemList::Clear()
{
    RcList<I_LSchemaObject> items;
    {
        std::lock_guard guard(m_itemsMutex);
        items.swap(m_items);
        m_keys.clear();
        m_byName.clear();
        m_namesFilled = false;
        m_temporaryNames.reset();
        m_built = false;
    }
    LetGo(items);
    if (!items.isEmpty())
        NotifyObservers(Change::Children);
}

void LSchemaItemList::Detach()
{
    LDatabaseObject_Impl::Detach();
    Clear();
}

} // namespace HF
