// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "hf/action.h"
#include "hf/enums.h"
#include "hf/lazy.h"
#include "hf/rc_list.h"
#include "rc/spin_flag.h"

#include <QPointer>
#include <QString>

#include <atomic>
#include <mutex>
#include <vector>

class QMenu;
class QWidget;

namespace HF {

class LAction;
class LObserver;

/// A node of the host's tree: a name, a parent, children, observers.
///
/// The name is guarded by the spin flag, children and observers by a mutex; any
/// thread may read and change. Children are held strongly. A child holds its
/// parent strongly too; DeleteChild and Detach end that circle.
class HF_EXPORT LTreeItem : public rc::RefCounted
{
public:
    ~LTreeItem() override;

    /// The current name, copied under the spin flag.
    virtual QString get_Name() const;
    /// Name as statements write it; the bare name unless a kind of object knows better.
    virtual QString get_NameQuoted() const { return get_Name(); }
    virtual QString get_NameForViews() const { return get_Name(); }
    virtual int get_ObjectType() const { return TYPE_NONE; }
    /// Lower-case noun, untranslated: "table".
    virtual QString get_ObjectTypeName() const { return QString(); }
    /// Path of the icon; behind a line feed the path of an overlay.
    virtual LLazy<QString, false> get_Icon() const { return QString(); }
    virtual LLazy<QString, false> get_Info() const { return QString(); }
    virtual LLazy<QString, false> get_Tip() const { return QString(); }
    virtual bool get_CanHasChildren() const;
    virtual rc::Ptr<LAction> get_Action(const QString& id) const;
    virtual rc::Ptr<LAction> get_DefaultAction() const { return nullptr; }
    /// Actions of the context menu; a null entry is a separator.
    virtual QList<rc::Ptr<LAction>> get_ActionsForMenu() const { return {}; }
    virtual QList<rc::Ptr<LAction>> get_ActionsForToolbar() const { return {}; }
    /// The context menu, owned by the caller; null without actions. Main thread.
    virtual QMenu* get_Menu();
    virtual QPointer<QWidget> CreateEditor(QPointer<QWidget> parent);

    virtual rc::Ptr<LTreeItem> get_ParentObject() const;
    void put_ParentObject(const rc::Ptr<LTreeItem>& parent);
    /// The same for an item that the parent outlives: a weak tie.
    void put_ParentObjectWeak(const rc::Ptr<LTreeItem>& parent);
    virtual RcList<LTreeItem> get_Children() const;
    virtual void AddChildBack(const rc::Ref<LTreeItem>& child);
    /// Removes a child and cuts its tie to this parent.
    virtual void DeleteChild(const rc::Ref<LTreeItem>& child);
    void DeleteAllChildren();
    /// The item has left the list it stood in. Its children are let go, so that no
    /// circle keeps it. Whoever holds it may use it on: its parents stay in reach,
    /// and lists below it may be read again, with weak ties from then on.
    virtual void Detach();
    bool IsDetached() const { return m_detached.load(); }

    /// Observers are held weakly.
    void AddObserver(const rc::Ref<LObserver>& observer);
    void RemoveObserver(const LObserver* observer);
    void DetachObservers();

protected:
    LTreeItem() = default;
    void Destroy() override;
    /// Stores the name; true when it differs.
    bool StoreName(const QString& name);

    enum class Change { Children, Name, Property };
    void NotifyObservers(Change change, int property = -1);

    mutable rc::SpinFlag m_nameFlag;
    mutable std::mutex m_treeMutex;

private:
    QString m_name;
    rc::Ptr<LTreeItem> m_parent;
    rc::Weak<LTreeItem> m_weakParent; ///< in place of m_parent
    std::atomic<bool> m_detached{false};
    RcList<LTreeItem> m_children;
    std::vector<rc::Weak<LObserver>> m_observers;

    friend class LObserver;
};

/// Told of changes of the items it is attached to. Calls come on the thread of
/// the change.
class HF_EXPORT LObserver : public rc::RefCounted
{
public:
    virtual void ChildrenChanged(const rc::Ref<LTreeItem>& item) {}
    virtual void NameChanged(const rc::Ref<LTreeItem>& item) {}
    virtual void PropertyChanged(const rc::Ref<LTreeItem>& item, int property) {}

    /// Subscribes to the item without a first notification.
    void AttachSubjectSilent(const rc::Ref<LTreeItem>& item);
    /// Subscribes and tells of the children at once.
    void AttachSubject(const rc::Ref<LTreeItem>& item);
};

} // namespace HF
