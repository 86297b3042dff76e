// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "hf/database_object.h"

namespace HF {

class LRecentsList;

/// One recently used thing. Its data is what opens it again. The property 45
/// marks one that does not live on disk.
class HF_EXPORT LRecentItem : public LDatabaseObject_Impl
{
public:
    LRecentItem(const rc::Ref<LRecentsList>& list, const QString& name, const QVariant& data);

    int get_ObjectType() const override { return TYPE_RECENT_ITEM; }
    LLazy<QString, false> get_Icon() const override;
    LLazy<QString, false> get_Tip() const override;
    QVariant get_ItemData() const;
    void put_ItemData(const QVariant& data);

private:
    rc::Weak<LRecentsList> m_list;
    QVariant m_data;
};

/// List of recently used things, newest first, kept in the settings store under
/// "Recents/" and its key. Any thread.
class HF_EXPORT LRecentsList : public LDatabaseObject_Impl
{
public:
    int get_ObjectType() const override { return TYPE_RECENTS; }

    RcList<LRecentItem> get_Items() const;
    /// Puts an item in front: moves the one with the same data, or makes one.
    void AddRecent(const QString& name, const QVariant& data);
    void DeleteRecentByData(const QVariant& data);
    void DeleteRecent(const rc::Ref<LRecentItem>& item);
    void DeleteAllRecents();
    /// Makes room for one more item: the oldest goes.
    virtual void CheckLimitBeforeAdding();
    /// Writes the list to the settings store.
    virtual void Flush();
    /// Reads items that another installation exported, a JSON list of
    /// {"name","data"}, behind its own and up to the limit; what does not parse is
    /// left alone.
    virtual void FromFile(const QString& path);
    virtual QString GetItemIcon(const rc::Ref<const LRecentItem>& item) const;
    virtual void OpenItem(const rc::Ref<LRecentItem>& item) = 0;
    virtual QString GetItemTip(const rc::Ref<const LRecentItem>& item) const;
    virtual bool IsEditable() const { return true; }

    QString get_SettingsKey() const { return m_settingsKey; }
    int get_MaximumCount() const { return m_maximum; }
    QString get_Title() const { return m_title; }

protected:
    /// Reads the stored items; called by the derived constructor once the members are set.
    void Load();

    QString m_settingsKey;
    int m_maximum = 10;
    QString m_itemIcon;
    QString m_title;
    bool m_ofWorkspace = false;

private:
    /// Adds the items of a JSON list behind the others, up to the limit.
    bool Append(const QByteArray& json);
    qsizetype IndexOf(const QVariant& data) const;
    QString StoredKey() const;
    void Changed();

    mutable std::recursive_mutex m_itemsMutex;
    RcList<LRecentItem> m_items;
};

class HF_EXPORT LRecentsList_Private : public LRecentsList
{
};

/// A list that also offers the examples which ship with the program.
class HF_EXPORT LRecentsListWithExamples : public LRecentsList_Private
{
public:
    /// Files of the examples folder for this kind of engine.
    QStringList get_Examples() const;

protected:
    QString m_examplesWord;
};

/// The tree of the window at the front, for actions that select in it.
class HF_EXPORT LTree
{
public:
    virtual ~LTree() = default;
    /// Selects the object; false when the tree does not show it.
    virtual bool SelectItem(const rc::Ref<LTreeItem>& item) = 0;
    virtual void ExpandSelected() = 0;

    /// Null without a window.
    static LTree* ActiveMenuTree();
    static void SetActiveMenuTree(LTree* tree);
};

} // namespace HF
