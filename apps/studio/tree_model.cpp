// SPDX-License-Identifier: GPL-3.0-or-later
#include "studio/tree_model.h"

#include "hf/background.h"
#include "hf/database.h"
#include "hf/services.h"
#include "studio/object_text.h"

#include <QApplication>
#include <QBrush>
#include <QIcon>
#include <QPalette>

struct TreeModel::Node
{
    rc::Ptr<HF::LTreeItem> item; ///< null for a note
    QString note;
    Node* parent = nullptr;
    int row = 0;
    std::vector<std::unique_ptr<Node>> children;
    bool loaded = false;
    bool loading = false;
    QIcon icon;
    bool iconKnown = false;

    /// The list that the node's children come from: the item itself, or the only
    /// list of an object, whose level the tree leaves out.
    rc::Ptr<HF::LSchemaItemList> List() const
    {
        if (auto list = rc::cast<HF::LSchemaItemList>(item))
            return list;
        if (const auto object = rc::cast<HF::LDatabaseObject_Impl>(item))
            if (const auto lists = object->get_ChildLists(); lists.size() == 1)
                return rc::Ptr<HF::LSchemaItemList>(lists.first());
        return nullptr;
    }
};

/// Hands changes, which come on any thread, to the model on the main thread.
class TreeModel::Watcher : public HF::LObserver
{
public:
    explicit Watcher(TreeModel* model) : m_model(model) {}

    void ChildrenChanged(const rc::Ref<HF::LTreeItem>& item) override
    {
        HF::RunOnMainThreadLater([model = m_model, item] {
            if (model)
                model->ChildrenChanged(item);
        });
    }

private:
    QPointer<TreeModel> m_model;
};

TreeModel::TreeModel(QObject* parent)
    : QAbstractItemModel(parent), m_root(std::make_unique<Node>()), m_watcher(rc::make<Watcher>(this))
{
    m_root->loaded = true;
}

TreeModel::~TreeModel() = default;

void TreeModel::AddConnection(const rc::Ref<HF::I_LConnection>& connection)
{
    const int row = int(m_root->children.size());
    beginInsertRows({}, row, row);
    auto node = std::make_unique<Node>();
    node->item = connection;
    node->parent = m_root.get();
    node->row = row;
    m_root->children.push_back(std::move(node));
    endInsertRows();
    m_watcher->AttachSubjectSilent(connection);
    if (const auto list = m_root->children.back()->List())
        m_watcher->AttachSubjectSilent(rc::Ref<HF::LTreeItem>(rc::Ptr<HF::LTreeItem>(list)));
}

void TreeModel::ShowSystemObjects(bool on)
{
    if (m_showSystem == on)
        return;
    m_showSystem = on;
    // Every list that stands is filtered anew; nothing is read again.
    std::vector<Node*> open{m_root.get()};
    while (!open.empty()) {
        Node* node = open.back();
        open.pop_back();
        const auto list = node->List();
        if (list && node->loaded && list->IsBuilt())
            ChildrenChanged(rc::Ref<HF::LTreeItem>(rc::Ptr<HF::LTreeItem>(list)));
        for (const auto& child : node->children)
            open.push_back(child.get());
    }
}

TreeModel::Node* TreeModel::NodeAt(const QModelIndex& index) const
{
    return index.isValid() ? static_cast<Node*>(index.internalPointer()) : m_root.get();
}

QModelIndex TreeModel::IndexOfNode(const Node* node) const
{
    return node == m_root.get() ? QModelIndex() : createIndex(node->row, 0, const_cast<Node*>(node));
}

rc::Ptr<HF::LTreeItem> TreeModel::ItemAt(const QModelIndex& index) const
{
    return index.isValid() ? NodeAt(index)->item : nullptr;
}

TreeModel::Node* TreeModel::Find(Node* from, const HF::LTreeItem* item) const
{
    if (from->item.get() == item)
        return from;
    for (const auto& child : from->children)
        if (Node* found = Find(child.get(), item))
            return found;
    return nullptr;
}

QModelIndex TreeModel::IndexOf(const HF::LTreeItem* item) const
{
    const Node* node = item ? Find(m_root.get(), item) : nullptr;
    return node ? IndexOfNode(node) : QModelIndex();
}

QModelIndex TreeModel::index(int row, int column, const QModelIndex& parent) const
{
    const Node* node = NodeAt(parent);
    if (column != 0 || row < 0 || row >= int(node->children.size()))
        return {};
    return createIndex(row, 0, node->children[size_t(row)].get());
}

QModelIndex TreeModel::parent(const QModelIndex& child) const
{
    return child.isValid() ? IndexOfNode(NodeAt(child)->parent) : QModelIndex();
}

int TreeModel::rowCount(const QModelIndex& parent) const
{
    return int(NodeAt(parent)->children.size());
}

bool TreeModel::hasChildren(const QModelIndex& parent) const
{
    const Node* node = NodeAt(parent);
    if (node == m_root.get() || node->loaded || node->loading)
        return !node->children.empty();
    return node->item && node->item->get_CanHasChildren();
}

bool TreeModel::canFetchMore(const QModelIndex& parent) const
{
    const Node* node = NodeAt(parent);
    return node->item && !node->loaded && !node->loading && node->item->get_CanHasChildren();
}

void TreeModel::fetchMore(const QModelIndex& parent)
{
    if (canFetchMore(parent))
        Load(NodeAt(parent));
}

void TreeModel::Refresh(const QModelIndex& index)
{
    Node* node = NodeAt(index);
    if (!node->item || node->loading)
        return;
    if (const auto list = node->List()) {
        node->loading = true;
        HF::RunInBackground([list] { return list->ReloadObjects(); }, this, [this, item = node->item](bool) {
            if (Node* open = Find(m_root.get(), item.get())) {
                open->loading = false;
                open->loaded = false;
                Load(open);
            }
        });
        return;
    }
    if (const auto object = rc::cast<HF::LDatabaseObject_Impl>(node->item))
        for (const auto& list : object->get_ChildLists())
            Refresh(IndexOf(list.get()));
}

void TreeModel::Load(Node* node)
{
    const auto list = node->List();
    if (!list) {
        bool failed = false;
        SetChildren(node, ChildItems(*node, failed), {});
        return;
    }
    if (list->IsBuilt()) {
        bool failed = false;
        SetChildren(node, ChildItems(*node, failed), {});
        return;
    }
    SetChildren(node, {}, tr("Reading..."));
    node->loaded = false;
    node->loading = true;
    // The node may be gone when the list has been read: look it up by its item.
    HF::RunInBackground([list] { return list->BuildList(); }, this, [this, item = node->item](bool read) {
        Node* open = Find(m_root.get(), item.get());
        if (!open)
            return;
        open->loading = false;
        bool failed = false;
        SetChildren(open, ChildItems(*open, failed),
                    read ? QString() : tr("The list could not be read; the error log tells why"));
        emit Loaded(IndexOfNode(open));
    });
}

std::vector<rc::Ref<HF::LTreeItem>> TreeModel::ChildItems(const Node& node, bool& failed) const
{
    std::vector<rc::Ref<HF::LTreeItem>> result;
    if (const auto list = node.List()) {
        const QList<QString> hidden = m_showSystem ? QList<QString>() : list->get_FilteredNames();
        for (const rc::Ref<HF::I_LSchemaObject>& item : list->get_ItemsNow())
            if (m_showSystem || (!hidden.contains(item->get_Name()) && !item->get_IsSystem()))
                result.push_back(item);
        if (list->get_ItemType() != HF::TYPE_FIELD && list->get_ItemType() != HF::TYPE_METHOD)
            std::stable_sort(result.begin(), result.end(), [](const auto& a, const auto& b) {
                return a->get_Name().compare(b->get_Name(), Qt::CaseInsensitive) < 0;
            });
    } else if (const auto object = rc::cast<HF::LDatabaseObject_Impl>(node.item)) {
        for (const rc::Ref<HF::LSchemaItemList>& list : object->get_ChildLists())
            result.push_back(list);
    }
    return result;
}

void TreeModel::SetChildren(Node* node, const std::vector<rc::Ref<HF::LTreeItem>>& items, const QString& note)
{
    const QModelIndex at = IndexOfNode(node);
    if (!node->children.empty()) {
        beginRemoveRows(at, 0, int(node->children.size()) - 1);
        node->children.clear();
        endRemoveRows();
    }
    node->loaded = true;
    const bool showsNote = items.empty() && !note.isEmpty();
    const int count = showsNote ? 1 : int(items.size());
    if (count == 0)
        return;
    beginInsertRows(at, 0, count - 1);
    node->children.reserve(size_t(count));
    for (int row = 0; row < count; ++row) {
        auto child = std::make_unique<Node>();
        child->parent = node;
        child->row = row;
        if (showsNote)
            child->note = note;
        else
            child->item = items[size_t(row)];
        node->children.push_back(std::move(child));
    }
    endInsertRows();
    for (const auto& child : node->children)
        if (child->item)
            if (const auto list = child->List())
                m_watcher->AttachSubjectSilent(rc::Ref<HF::LTreeItem>(rc::Ptr<HF::LTreeItem>(list)));
}

void TreeModel::ChildrenChanged(const rc::Ref<HF::LTreeItem>& item)
{
    Node* node = Find(m_root.get(), item.get());
    if (!node)
        if (const auto list = rc::cast<HF::LSchemaItemList>(item))
            if (const auto owner = list->get_Owner())
                node = Find(m_root.get(), owner.get()); // the level of an only list is left out
    if (!node || node == m_root.get() || node->loading || !node->loaded)
        return;
    bool failed = false;
    const auto items = ChildItems(*node, failed);
    const bool same = items.size() == node->children.size()
                      && std::equal(items.begin(), items.end(), node->children.begin(),
                                    [](const auto& a, const auto& b) { return a.get() == b->item.get(); });
    if (!same)
        SetChildren(node, items, {});
}

QVariant TreeModel::data(const QModelIndex& index, int role) const
{
    if (!index.isValid())
        return {};
    Node* node = NodeAt(index);
    if (!node->item) {
        if (role == Qt::DisplayRole)
            return node->note;
        if (role == Qt::ForegroundRole)
            return QBrush(QApplication::palette().color(QPalette::Disabled, QPalette::Text));
        return {};
    }
    switch (role) {
    case Qt::DisplayRole:
        return TreeText(*node->item);
    case Qt::EditRole:
        return node->item->get_Name();
    case Qt::DecorationRole:
        if (!node->iconKnown) {
            node->icon = HF::LoadCachedIcon(node->item->get_Icon().Force());
            node->iconKnown = true;
        }
        return node->icon;
    case Qt::ToolTipRole: {
        const auto tip = node->item->get_Tip();
        return tip.IsResolved() ? tip.Force() : QString();
    }
    default:
        return {};
    }
}
