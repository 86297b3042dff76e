// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "hf/schema_object.h"

#include <QHash>

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
    LLazy<QString, false> get_Icon() const override;
    rc::Ptr<LTreeItem> get_ParentObject() const override;
    rc::Ptr<I_LSchemaObject> get_Owner() const { return m_owner.lock(); }
    const LSchemaItemListInfo& get_ListInfo() const { return m_info; }
    int get_ItemType() const { return m_info.type; }
    rc::Ptr<I_LDatabase> get_Database() const override;

    /// Reads the list unless it has been read; false when the query failed.
    bool BuildList();
    /// Reads it anew; the old items go once the new ones are there.
    bool ReloadObjects();
    bool IsBuilt() const;
    /// The items; builds the list when forced.
    LLazy<RcList<I_LSchemaObject>, false> get_Items() const;
    /// By name, as the engine compares names; null when there is none. Builds.
    virtual rc::Ptr<I_LSchemaObject> get_ChildItem(const QString& name) const;
    QStringList get_Names() const;
    /// Names hidden unless the user asks for them.
    virtual QList<QString> get_DefaultFilteredNames() const { return {}; }
    QList<QString> get_FilteredNames() const;

    void put_Actions(const QList<rc::Ptr<LAction>>& actions);
    QList<rc::Ptr<LAction>> get_ActionsForMenu() const override;

    void AddChildBack(const rc::Ref<LTreeItem>& child) override;
    void DeleteChild(const rc::Ref<LTreeItem>& child) override;
    /// Forgets the items without a query.
    void Clear();

protected:
    /// The query with the names of owner and owner's parent put in.
    virtual QString MakeQuery(const rc::Ref<I_LSchemaObject>& owner) const;
    /// Reads the items; null when that failed.
    virtual std::optional<RcList<I_LSchemaObject>> ReadItems();
    void Publish(RcList<I_LSchemaObject> items);

private:
    const LSchemaItemListInfo& m_info;
    rc::Weak<I_LSchemaObject> m_owner;
    mutable std::recursive_mutex m_buildMutex;
    mutable std::mutex m_itemsMutex;
    RcList<I_LSchemaObject> m_items;
    QHash<QString, int> m_byName; ///< lower-case name -> first index
    bool m_built = false;
    QList<rc::Ptr<LAction>> m_actions;
};

} // namespace HF
