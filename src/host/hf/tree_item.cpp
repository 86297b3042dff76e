// SPDX-License-Identifier: GPL-3.0-or-later
#include "hf/tree_item.h"

#include "hf/action.h"
#include "hf/services.h"

#include <QAction>
#include <QMenu>

#include <algorithm>

namespace HF {

LTreeItem::~LTreeItem() = default;

void LTreeItem::Destroy()
{
    DetachObservers();
    DeleteAllChildren();
}

QString LTreeItem::get_Name() const
{
    std::lock_guard guard(m_nameFlag);
    return m_name;
}

bool LTreeItem::StoreName(const QString& name)
{
    QString old = name; // freed after the flag
    {
        std::lock_guard guard(m_nameFlag);
        if (m_name == name)
            return false;
        m_name.swap(old);
    }
    return true;
}

bool LTreeItem::get_CanHasChildren() const
{
    std::lock_guard guard(m_treeMutex);
    return !m_children.isEmpty();
}

rc::Ptr<LAction> LTreeItem::get_Action(const QString&) const
{
    return nullptr;
}

QMenu* LTreeItem::get_Menu()
{
    const QList<rc::Ptr<LAction>> actions = get_ActionsForMenu();
    if (actions.isEmpty())
        return nullptr;
    auto* menu = new QMenu;
    const RcList<LTreeItem> items{rc::self(this)};
    for (const rc::Ptr<LAction>& action : actions) {
        if (!action) {
            menu->addSeparator();
            continue;
        }
        QAction* entry = menu->addAction(action->get_Text());
        if (!action->get_Icon().isEmpty())
            entry->setIcon(LoadCachedIcon(action->get_Icon()));
        QObject::connect(entry, &QAction::triggered, menu, [action, items] { action->Run(items); });
        action->Update(*entry, items);
    }
    return menu;
}

QPointer<QWidget> LTreeItem::CreateEditor(QPointer<QWidget>)
{
    return nullptr;
}

rc::Ptr<LTreeItem> LTreeItem::get_ParentObject() const
{
    std::lock_guard guard(m_treeMutex);
    return m_parent ? m_parent : m_weakParent.lock();
}

// What a tie held may end with it, so that is left to the end of the locks.

void LTreeItem::put_ParentObject(const rc::Ptr<LTreeItem>& parent)
{
    rc::Ptr<LTreeItem> strong = parent;
    rc::Weak<LTreeItem> weak;
    std::lock_guard guard(m_treeMutex);
    m_parent.swap(strong);
    m_weakParent.swap(weak);
}

void LTreeItem::put_ParentObjectWeak(const rc::Ptr<LTreeItem>& parent)
{
    rc::Ptr<LTreeItem> strong;
    rc::Weak<LTreeItem> weak(parent);
    std::lock_guard guard(m_treeMutex);
    m_parent.swap(strong);
    m_weakParent.swap(weak);
}

RcList<LTreeItem> LTreeItem::get_Children() const
{
    std::lock_guard guard(m_treeMutex);
    return m_children;
}

void LTreeItem::AddChildBack(const rc::Ref<LTreeItem>& child)
{
    {
        std::lock_guard guard(m_treeMutex);
        m_children.append(child);
    }
    if (!child->get_ParentObject())
        child->put_ParentObject(rc::self(this));
    NotifyObservers(Change::Children);
}

void LTreeItem::DeleteChild(const rc::Ref<LTreeItem>& child)
{
    const rc::Ref<LTreeItem> held = child; // the argument may be the list's own
    {
        std::lock_guard guard(m_treeMutex);
        const qsizetype index = m_children.indexOf(held);
        if (index < 0)
            return;
        m_children.removeAt(index);
    }
    if (held->get_ParentObject().get() == this)
        held->put_ParentObject(nullptr);
    held->Detach();
    NotifyObservers(Change::Children);
}

void LTreeItem::DeleteAllChildren()
{
    RcList<LTreeItem> children;
    {
        std::lock_guard guard(m_treeMutex);
        children.swap(m_children);
    }
    if (children.isEmpty())
        return;
    for (const rc::Ref<LTreeItem>& child : std::as_const(children)) {
        if (child->get_ParentObject().get() == this)
            child->put_ParentObject(nullptr);
        child->Detach();
    }
    NotifyObservers(Change::Children);
}

void LTreeItem::Detach()
{
    m_detached.store(true);
    DeleteAllChildren();
}

void LTreeItem::AddObserver(const rc::Ref<LObserver>& observer)
{
    std::vector<rc::Ptr<LObserver>> alive; // may end when the lock is gone
    std::lock_guard guard(m_treeMutex);
    std::erase_if(m_observers, [&](const rc::Weak<LObserver>& known) {
        alive.push_back(known.lock());
        return !alive.back() || alive.back() == observer;
    });
    m_observers.emplace_back(observer);
}

void LTreeItem::RemoveObserver(const LObserver* observer)
{
    std::vector<rc::Ptr<LObserver>> alive; // may end when the lock is gone
    std::lock_guard guard(m_treeMutex);
    std::erase_if(m_observers, [&](const rc::Weak<LObserver>& known) {
        alive.push_back(known.lock());
        return alive.back().get() == observer;
    });
}

void LTreeItem::DetachObservers()
{
    std::vector<rc::Weak<LObserver>> observers;
    std::lock_guard guard(m_treeMutex);
    observers.swap(m_observers);
}

void LTreeItem::NotifyObservers(Change change, int property)
{
    std::vector<rc::Ptr<LObserver>> observers;
    {
        std::lock_guard guard(m_treeMutex);
        if (m_observers.empty())
            return;
        for (const rc::Weak<LObserver>& observer : m_observers)
            if (rc::Ptr<LObserver> alive = observer.lock())
                observers.push_back(std::move(alive));
    }
    if (!TryAddStrong())
        return; // about to end: nobody can look at it any more
    const rc::Ref<LTreeItem> item(this, rc::impl::Adopt{});
    for (const rc::Ptr<LObserver>& observer : observers)
        switch (change) {
        case Change::Children:
            observer->ChildrenChanged(item);
            break;
        case Change::Name:
            observer->NameChanged(item);
            break;
        case Change::Property:
            observer->PropertyChanged(item, property);
            break;
        }
}

void LObserver::AttachSubjectSilent(const rc::Ref<LTreeItem>& item)
{
    item->AddObserver(rc::self(this));
}

void LObserver::AttachSubject(const rc::Ref<LTreeItem>& item)
{
    AttachSubjectSilent(item);
    ChildrenChanged(item);
}

} // namespace HF
