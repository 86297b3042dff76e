// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "hf/schema_object.h"

#include <QHash>
#include <QSet>

#include <atomic>
#include <thread>

namespace HF {

/// Constant description of a child list.
struct HF_EXPORT LSchemaItemListInfo
{
    /// Makes the object of one row; `name` comes from the name column.
    using Factory = rc::Ref<I_LSchemaObject> (*)(const rc::Ref<I_LSchemaObject>& owner, const QString& name);

    Factory factory = nullptr;
    QString nameColumn;
    QString icon;
    ELObjectType type = TYPE_NONE;
    QString word; ///< lower-case noun
    int countProperty = -1;
    QString query; ///< may hold $NAME and $PNAME
    /// Takes the place of `query` for engines where that one no longer fits; null
    /// when it always does. Gets the owner.
    QString (*queryFor)(const rc::Ref<I_LSchemaObject>& owner) = nullptr;
};

/// Replaces $NAME, $PNAME and $PPNAME in one pass by string literals of the
/// names; what a name holds is not looked at again.
HF_EXPORT QString SubstituteNames(const QString& query, const QString& name, const QString& parentName,
                                  const QString& grandparentName = {});

/// A list of catalogue objects below an owner, filled by one query, lazily.
///
/// Empty until BuildList or ReloadObjects runs. A rebuild makes new objects.
/// Where two columns of the result carry the name column's name the last one
/// counts. The count is published as the count property of the owner. Any thread.
class HF_EXPORT LSchemaItemList : public LDatabaseObject_Impl
{
public:
    LSchemaItemList(const LSchemaItemListInfo& info, const rc::Ref<I_LSchemaObject>& owner);
    ~LSchemaItemList() override;

    int get_ObjectType() const override { return TYPE_LIST; }
    /// The plural of the item word, "Tables".
    QString get_Name() const override;
    QString get_NameQuoted() const override { return get_Name(); }
    /// The name in the user's language.
    QString get_NameForViews() const override;
    bool get_CanHasChildren() const override { return true; }
    RcList<LTreeItem> get_Children() const override;
    LLazy<QString, false> get_Icon() const override;
    rc::Ptr<LTreeItem> get_ParentObject() const override;
    rc::Ptr<I_LSchemaObject> get_Owner() const { return m_owner.lock(); }
    const LSchemaItemListInfo& get_ListInfo() const { return m_info; }
    int get_ItemType() const { return m_info.type; }
    rc::Ptr<I_LDatabase> get_Database() const override;

    /// Reads the list unless it has been read; false when the query failed.
    bool BuildList();
    /// Reads it anew; the old items go once the new ones are there.
    virtual bool ReloadObjects();
    bool IsBuilt() const;
    /// Items there are now, without a query.
    RcList<I_LSchemaObject> get_ItemsNow() const;
    int get_Count() const;
    /// True when one of the items there are now is temporary and has the name, in any case.
    bool HasTemporary(const QString& name) const;
    /// The items; builds the list when forced.
    LLazy<RcList<I_LSchemaObject>, false> get_Items() const;
    /// By name, as the engine compares names; null when there is none. Builds.
    virtual rc::Ptr<I_LSchemaObject> get_ChildItem(const QString& name) const;
    QStringList get_Names() const;
    /// Names hidden unless the user asks for them.
    virtual QList<QString> get_DefaultFilteredNames() const { return {}; }
    QList<QString> get_FilteredNames() const;
    /// The user's choice of hidden names; kept with the owner.
    void put_FilteredNames(const QList<QString>& names);

    /// Actions of this one list; without them the menu is the owner's choice: refresh.
    void put_Actions(const QList<rc::Ptr<LAction>>& actions);
    QList<rc::Ptr<LAction>> get_ActionsForMenu() const override;

    void AddChildBack(const rc::Ref<LTreeItem>& child) override;
    void DeleteChild(const rc::Ref<LTreeItem>& child) override;
    /// Forgets the items without a query.
    void Clear();

    void Detach() override;
    /// An item's name changed: look-ups by name start afresh.
    void ForgetNames();

protected:
    void Destroy() override;
    /// The query with the names of owner and owner's parent put in.
    virtual QString MakeQuery(const rc::Ref<I_LSchemaObject>& owner) const;
    /// Reads the items; nothing when that failed. A list without a query keeps
    /// the items that were put into it.
    virtual std::optional<RcList<I_LSchemaObject>> ReadItems();
    /// Takes new items in place of the old ones, which are detached.
    void Publish(RcList<I_LSchemaObject> items);
    /// Called when a read has ended well and no lock is held.
    virtual void AfterBuild() {}
    /// A list that only shows the items of another one does not end them.
    virtual bool OwnsItems() const { return true; }

    /// Values of the name column of the items that ReadItems gives, where they
    /// are not the items' names.
    QStringList m_readKeys;

private:
    bool Build(bool anew);
    /// Puts the items in place; gives those that left.
    RcList<I_LSchemaObject> Take(RcList<I_LSchemaObject> items, QStringList keys);
    void Announce();
    void LetGo(const RcList<I_LSchemaObject>& items);
    void FillNames(bool caseSensitive) const;

    const LSchemaItemListInfo& m_info;
    rc::Weak<I_LSchemaObject> m_owner;
    std::mutex m_buildMutex;
    std::atomic<std::thread::id> m_builder{};
    mutable std::mutex m_itemsMutex;
    RcList<I_LSchemaObject> m_items;
    /// Key of an item -> first index. Keys are the values of the name column and
    /// the items' own names, as lower case where the engine ignores case.
    mutable QHash<QString, int> m_byName;
    mutable std::optional<QSet<QString>> m_temporaryNames; ///< in lower case; nothing when not gathered
    QStringList m_keys; ///< by item, where the name column differs from the names
    mutable bool m_namesFilled = false;
    mutable bool m_caseTwins = false; ///< names that differ by case alone
    bool m_built = false;
    QList<rc::Ptr<LAction>> m_actions;
};

/// A list whose order is that of the columns in their table.
class HF_EXPORT LSortableDatabaseObjectList : public LSchemaItemList
{
public:
    using LSchemaItemList::LSchemaItemList;

protected:
    std::optional<RcList<I_LSchemaObject>> ReadItems() override;
};

/// The schemas of a database.
class HF_EXPORT LDatabaseSchemasList : public LSchemaItemList
{
public:
    using LSchemaItemList::LSchemaItemList;
};

/// Links of a schema. Beside the foreign keys of the catalogue it knows the
/// virtual links, ties between tables that the user made and the engine does
/// not know. They are kept as external property of the owner and are no items,
/// so that no statement is ever made of them.
class HF_EXPORT LLinksList : public LSchemaItemList
{
public:
    using LSchemaItemList::LSchemaItemList;

    struct VirtualLink
    {
        QString table;
        QStringList columns;
        QString parentTable;
        QStringList parentColumns;
        bool operator==(const VirtualLink&) const = default;
    };

    /// Reads the virtual links that were kept.
    void InitVirtualLinks();
    QList<VirtualLink> get_VirtualLinks() const;
    void put_VirtualLinks(const QList<VirtualLink>& links);

private:
    mutable std::mutex m_virtualMutex;
    QList<VirtualLink> m_virtualLinks;
};

class LSchemaItemListChild;

/// A list from which the objects below its owner show a part each.
class HF_EXPORT LSchemaItemListParent : public LLinksList
{
public:
    using LLinksList::LLinksList;

    /// `list` shows the items of this one in which `property` or `otherProperty`
    /// is `name`, or the name of the list's owner when that is empty. Held weakly.
    void AddChildList(const rc::Ref<LSchemaItemListChild>& list, int property, int otherProperty, const QString& name);

protected:
    void AfterBuild() override;

private:
    friend class LSchemaItemListChild;
    /// From now on the list is read again whenever this one is.
    void Follow(const rc::Ref<LSchemaItemListChild>& list);

    std::mutex m_childrenMutex;
    std::vector<rc::Weak<LSchemaItemListChild>> m_children;
    std::size_t m_pruneAt = 64;
};

/// The part of another list that concerns its owner. Building it builds that
/// list; reloading reloads it.
class HF_EXPORT LSchemaItemListChild : public LSchemaItemList
{
public:
    using LSchemaItemList::LSchemaItemList;

    bool ReloadObjects() override;

protected:
    std::optional<RcList<I_LSchemaObject>> ReadItems() override;
    bool OwnsItems() const override { return false; }

private:
    friend class LSchemaItemListParent;
    /// The other list was read anew.
    void Refilter();

    std::mutex m_sourceMutex;
    rc::Weak<LSchemaItemListParent> m_source;
    bool m_follows = false;
    int m_property = -1;
    int m_otherProperty = -1;
    QString m_filterName;
};

} // namespace HF
