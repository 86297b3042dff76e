// SPDX-License-Identifier: GPL-3.0-or-later
#include "studio/tree_model.h"

#include "hf/background.h"
#include "hf/database.h"
#include "hf/log.h"
#include "studio/appearance.h"
#include "studio/object_text.h"

#include <QApplication>
#include <QBrush>
#include <QFileInfo>
#include <QHash>
#include <QIcon>
#include <QPalette>

#include <functional>
#include <utility>

struct TreeModel::Node
{
    rc::Ptr<HF::LTreeItem> item; ///< null for a note
    QString note;
    Node* parent = nullptr;
    int row = 0;
    std::vector<std::unique_ptr<Node>> children;
    bool loaded = false;
    bool loading = false;
    QString problem; ///< of the last reading; shown behind the name
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
    Watch(*m_root->children.back());
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
        HF::RunInBackground([list] { return list->ReloadObjects(); }, this, [this, item = node->item](bool read) {
            if (Node* open = Find(m_root.get(), item.get())) {
                open->loading = false;
                open->loaded = false;
                // What was there stands as it is when it could not be read again.
                SetProblem(open, read ? QString() : tr("could not be read"));
                Load(open);
                CheckFile(open);
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
    if (node->children.empty())
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
        SetProblem(open, read ? QString() : tr("could not be read"));
        CheckFile(open);
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

void TreeModel::RemoveChildren(Node* node, int first, int last)
{
    beginRemoveRows(IndexOfNode(node), first, last);
    node->children.erase(node->children.begin() + first, node->children.begin() + last + 1);
    for (size_t row = size_t(first); row < node->children.size(); ++row)
        node->children[row]->row = int(row);
    endRemoveRows();
}

void TreeModel::InsertChildren(Node* node, int first, std::vector<std::unique_ptr<Node>> added)
{
    beginInsertRows(IndexOfNode(node), first, first + int(added.size()) - 1);
    node->children.insert(node->children.begin() + first, std::make_move_iterator(added.begin()),
                          std::make_move_iterator(added.end()));
    for (size_t row = size_t(first); row < node->children.size(); ++row) {
        node->children[row]->parent = node;
        node->children[row]->row = int(row);
    }
    endInsertRows();
}

namespace {

/// Items by their names; a name that stands twice says nothing.
QHash<QString, size_t> PlacesByName(size_t count, const std::function<HF::LTreeItem*(size_t)>& itemAt)
{
    QHash<QString, size_t> result;
    for (size_t i = 0; i < count; ++i)
        if (const HF::LTreeItem* item = itemAt(i)) {
            const QString name = item->get_Name();
            result.insert(name, result.contains(name) ? count : i);
        }
    return result;
}

} // namespace

/// Items that stay, or come back under the same name from a reading, keep their
/// nodes, and so what a person opened below them.
void TreeModel::SetChildren(Node* node, const std::vector<rc::Ref<HF::LTreeItem>>& items, const QString& note)
{
    node->loaded = true;
    const auto& children = node->children;
    const QHash<QString, size_t> wanted = PlacesByName(items.size(), [&](size_t i) { return items[i].get(); });
    const QHash<QString, size_t> known = PlacesByName(children.size(), [&](size_t i) { return children[i]->item.get(); });
    // Where each child goes; behind the last item when it goes away.
    std::vector<size_t> places(children.size(), items.size());
    size_t previous = 0;
    bool inOrder = true;
    for (size_t i = 0; i < children.size(); ++i) {
        if (!children[i]->item)
            continue;
        const QString name = children[i]->item->get_Name();
        if (known.value(name) != i)
            continue;
        places[i] = wanted.value(name, items.size());
        if (places[i] < items.size())
            inOrder = inOrder && places[i] >= std::exchange(previous, places[i]);
    }
    if (!inOrder)
        places.assign(children.size(), items.size());
    for (size_t last = children.size(); last > 0; --last) {
        if (places[last - 1] < items.size())
            continue;
        size_t first = last - 1;
        while (first > 0 && places[first - 1] == items.size())
            --first;
        RemoveChildren(node, int(first), int(last) - 1);
        last = first + 1;
    }

    std::vector<std::unique_ptr<Node>> added;
    if (items.empty() && !note.isEmpty()) {
        added.push_back(std::make_unique<Node>());
        added.back()->note = note;
        InsertChildren(node, 0, std::move(added));
        return;
    }
    std::erase(places, items.size());
    std::vector<QPersistentModelIndex> stale; // what follows may let the event loop run
    for (size_t row = 0, next = 0; row < items.size(); ++row) {
        const size_t first = row;
        for (; row < items.size() && (next == places.size() || places[next] != row); ++row) {
            added.push_back(std::make_unique<Node>());
            added.back()->item = items[row];
            Watch(*added.back());
        }
        if (row > first)
            InsertChildren(node, int(first), std::exchange(added, {}));
        if (row < items.size()) {
            Node* child = children[row].get();
            child->iconKnown = false;
            if (child->item.get() != items[row].get()) {
                child->item = items[row];
                child->problem.clear();
                Watch(*child);
                if (child->loaded || child->loading)
                    stale.emplace_back(IndexOfNode(child));
            }
            ++next;
        }
    }
    const QPersistentModelIndex first = children.empty() ? QModelIndex() : IndexOfNode(children.front().get());
    const QPersistentModelIndex last = children.empty() ? QModelIndex() : IndexOfNode(children.back().get());
    // What was read below an item of the former reading is read again.
    for (const QPersistentModelIndex& index : stale)
        if (index.isValid()) {
            Node* child = NodeAt(index);
            child->loaded = child->loading = false;
            Load(child);
        }
    if (first.isValid() && last.isValid())
        emit dataChanged(first, last);
}

void TreeModel::Watch(const Node& node)
{
    if (const auto list = node.List())
        m_watcher->AttachSubjectSilent(rc::Ref<HF::LTreeItem>(rc::Ptr<HF::LTreeItem>(list)));
}

void TreeModel::SetProblem(Node* node, const QString& problem)
{
    if (node->problem == problem)
        return;
    node->problem = problem;
    const QModelIndex at = IndexOfNode(node);
    emit dataChanged(at, at);
}

/// The engine goes on with a file that somebody deleted, and loses all when it
/// closes: the database's row says so.
void TreeModel::CheckFile(Node* node)
{
    while (node->parent && !rc::cast<HF::I_LDatabase>(node->item))
        node = node->parent;
    const auto database = rc::cast<HF::LDatabase>(node->item);
    if (!database)
        return;
    const QString path = database->get_Path();
    const bool isFile = !path.isEmpty() && database->CanBeOpenedAgain() && !path.startsWith(QLatin1String(":memory:"))
                        && !path.startsWith(QLatin1String("md:")) && !path.startsWith(QLatin1String("file:"));
    const QString problem = isFile && !QFileInfo::exists(path) ? tr("the file is gone") : QString();
    if (!problem.isEmpty() && node->problem.isEmpty())
        HF::LogError(tr("The file \"%1\" of the open database \"%2\" is gone.").arg(path, database->get_Name()));
    SetProblem(node, problem);
}

void TreeModel::ChildrenChanged(const rc::Ref<HF::LTreeItem>& item)
{
    const auto list = rc::cast<HF::LSchemaItemList>(item);
    if (list && list->IsDetached())
        return; // emptied on its way out; what takes its place comes with the list above
    Node* node = Find(m_root.get(), item.get());
    if (!node && list)
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
        return node->problem.isEmpty() ? TreeText(*node->item)
                                       : TreeText(*node->item) + QStringLiteral("  (%1)").arg(node->problem);
    case Qt::ForegroundRole:
        return node->problem.isEmpty() ? QVariant() : QVariant(QBrush(QColor(0xc6, 0x28, 0x28)));
    case Qt::EditRole:
        return node->item->get_Name();
    case Qt::DecorationRole:
        if (!node->iconKnown) {
            node->icon = PaletteIcon(node->item->get_Icon().Force());
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
