// SPDX-License-Identifier: GPL-3.0-or-later
#include "hf/database.h"
#include "hf/engine.h"
#include "hf/schema_item_list.h"

#include <QJsonArray>
#include <QJsonDocument>
#include <QJsonObject>

#include <algorithm>
#include <numeric>

namespace HF {

// Columns in the order of their table

std::optional<RcList<I_LSchemaObject>> LSortableDatabaseObjectList::ReadItems()
{
    std::optional<RcList<I_LSchemaObject>> items = LSchemaItemList::ReadItems();
    if (!items)
        return items;
    std::vector<long> positions;
    for (const rc::Ref<I_LSchemaObject>& item : *items)
        positions.push_back(item->GetLong(PROP_FIELD_POSITION));
    if (std::is_sorted(positions.begin(), positions.end()))
        return items;
    std::vector<qsizetype> order(positions.size());
    std::iota(order.begin(), order.end(), 0);
    std::stable_sort(order.begin(), order.end(), [&](qsizetype a, qsizetype b) { return positions[a] < positions[b]; });
    RcList<I_LSchemaObject> sorted;
    QStringList keys;
    for (const qsizetype index : order) {
        sorted.append(items->at(index));
        if (!m_readKeys.isEmpty())
            keys.append(m_readKeys.at(index));
    }
    m_readKeys = keys;
    return sorted;
}

// Virtual links

static const QString VirtualLinksProperty = QStringLiteral("VirtualLinks");

void LLinksList::InitVirtualLinks()
{
    const rc::Ptr<I_LSchemaObject> owner = get_Owner();
    if (!owner)
        return;
    const QString kept = owner->get_ExternalProperty(VirtualLinksProperty, QString()).toString();
    if (kept.isEmpty())
        return;
    QList<VirtualLink> links;
    for (const QJsonValue& entry : QJsonDocument::fromJson(kept.toUtf8()).array())
        links.append(VirtualLink{entry[u"table"].toString(), entry[u"columns"].toVariant().toStringList(),
                                 entry[u"parentTable"].toString(),
                                 entry[u"parentColumns"].toVariant().toStringList()});
    std::lock_guard guard(m_virtualMutex);
    m_virtualLinks = links;
}

QList<LLinksList::VirtualLink> LLinksList::get_VirtualLinks() const
{
    std::lock_guard guard(m_virtualMutex);
    return m_virtualLinks;
}

void LLinksList::put_VirtualLinks(const QList<VirtualLink>& links)
{
    {
        std::lock_guard guard(m_virtualMutex);
        m_virtualLinks = links;
    }
    QJsonArray array;
    for (const VirtualLink& link : links)
        array.append(QJsonObject{{"table", link.table},
                                 {"columns", QJsonArray::fromStringList(link.columns)},
                                 {"parentTable", link.parentTable},
                                 {"parentColumns", QJsonArray::fromStringList(link.parentColumns)}});
    if (const rc::Ptr<I_LSchemaObject> owner = get_Owner())
        owner->put_ExternalProperty(VirtualLinksProperty,
                                    QString::fromUtf8(QJsonDocument(array).toJson(QJsonDocument::Compact)));
}

// A list and those that show parts of it. The parent knows only the children
// that have been asked for, and tells them after its own lock is gone: a child
// that is being built builds the parent.

void LSchemaItemListParent::AddChildList(const rc::Ref<LSchemaItemListChild>& list, int property, int otherProperty,
                                         const QString& name)
{
    std::lock_guard guard(list->m_sourceMutex);
    list->m_source = rc::Weak<LSchemaItemListParent>(this);
    list->m_property = property;
    list->m_otherProperty = otherProperty;
    list->m_filterName = name;
}

void LSchemaItemListParent::Follow(const rc::Ref<LSchemaItemListChild>& list)
{
    std::vector<rc::Ptr<LSchemaItemListChild>> alive; // may end when the lock is gone
    std::lock_guard guard(m_childrenMutex);
    if (m_children.size() >= m_pruneAt) {
        std::erase_if(m_children, [&](const rc::Weak<LSchemaItemListChild>& child) {
            alive.push_back(child.lock());
            return !alive.back();
        });
        m_pruneAt = std::max<std::size_t>(64, m_children.size() * 2);
    }
    m_children.emplace_back(list);
}

void LSchemaItemListParent::AfterBuild()
{
    std::vector<rc::Ptr<LSchemaItemListChild>> children;
    {
        std::lock_guard guard(m_childrenMutex);
        for (const rc::Weak<LSchemaItemListChild>& child : m_children)
            children.push_back(child.lock());
    }
    for (const rc::Ptr<LSchemaItemListChild>& child : children)
        if (child)
            child->Refilter();
}

bool LSchemaItemListChild::ReloadObjects()
{
    rc::Ptr<LSchemaItemListParent> source;
    {
        std::lock_guard guard(m_sourceMutex);
        source = m_source.lock();
    }
    // Those children that have been built follow their source.
    return source && source->ReloadObjects() && BuildList();
}

void LSchemaItemListChild::Refilter()
{
    if (IsBuilt())
        LSchemaItemList::ReloadObjects();
}

std::optional<RcList<I_LSchemaObject>> LSchemaItemListChild::ReadItems()
{
    rc::Ptr<LSchemaItemListParent> source;
    QString name;
    int property = -1;
    int otherProperty = -1;
    {
        std::lock_guard guard(m_sourceMutex);
        source = m_source.lock();
        name = m_filterName;
        property = m_property;
        otherProperty = m_otherProperty;
        if (source && !std::exchange(m_follows, true))
            source->Follow(rc::self(this));
    }
    const rc::Ptr<I_LSchemaObject> owner = get_Owner();
    if (!source || !owner || !source->BuildList())
        return std::nullopt;
    if (name.isEmpty())
        name = owner->get_Name();
    const LDatabaseEngine* engine = get_DatabaseEngine();
    const bool caseSensitive = engine && engine->GetCaseSensitivity(nullptr) == CASE_SENSITIVE;
    const auto isName = [&](const QString& text) {
        return text.compare(name, caseSensitive ? Qt::CaseSensitive : Qt::CaseInsensitive) == 0;
    };
    const RcList<I_LSchemaObject> all = source->get_ItemsNow();
    RcList<I_LSchemaObject> items;
    // A temporary object may have the name of a lasting one.
    const bool temporary = owner->GetBool(PROP_TEMPORARY);
    for (const rc::Ref<I_LSchemaObject>& item : all)
        if ((isName(item->GetString(property)) || isName(item->GetString(otherProperty)))
            && item->GetBool(PROP_TEMPORARY) == temporary)
            items.append(item);
    return items;
}

} // namespace HF
