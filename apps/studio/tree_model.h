// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "hf/schema_item_list.h"

#include <QAbstractItemModel>

#include <memory>
#include <vector>

/// The host's tree for a view: connections, databases, their lists and items.
///
/// Nodes are made when the view opens them. A list reads its items on a worker;
/// meanwhile it shows one line that says so. What could not be read says so in
/// its row, and the rest stays. After a new reading an object of the same name takes
/// the node of the former one, with what is open below it. System objects and the names that a list hides by
/// default show on demand.
class TreeModel : public QAbstractItemModel
{
    Q_OBJECT

public:
    explicit TreeModel(QObject* parent = nullptr);
    ~TreeModel() override;

    void AddConnection(const rc::Ref<HF::I_LConnection>& connection);
    void ShowSystemObjects(bool on);
    bool get_ShowsSystemObjects() const { return m_showSystem; }

    /// The object of a node; null for the line of a list that is being read.
    rc::Ptr<HF::LTreeItem> ItemAt(const QModelIndex& index) const;
    /// Place of an object among the nodes made so far.
    QModelIndex IndexOf(const HF::LTreeItem* item) const;
    /// Reads the node's list, or the lists below an object, anew.
    void Refresh(const QModelIndex& index);

    QModelIndex index(int row, int column, const QModelIndex& parent = {}) const override;
    QModelIndex parent(const QModelIndex& child) const override;
    int rowCount(const QModelIndex& parent = {}) const override;
    int columnCount(const QModelIndex& parent = {}) const override { return 1; }
    bool hasChildren(const QModelIndex& parent = {}) const override;
    QVariant data(const QModelIndex& index, int role) const override;
    bool canFetchMore(const QModelIndex& parent) const override;
    void fetchMore(const QModelIndex& parent) override;

signals:
    /// A list has been read and its nodes stand.
    void Loaded(const QModelIndex& index);

private:
    struct Node;
    class Watcher;

    Node* NodeAt(const QModelIndex& index) const;
    QModelIndex IndexOfNode(const Node* node) const;
    Node* Find(Node* from, const HF::LTreeItem* item) const;
    std::vector<rc::Ref<HF::LTreeItem>> ChildItems(const Node& node, bool& failed) const;
    void Load(Node* node);
    void RemoveChildren(Node* node, int first, int last);
    void InsertChildren(Node* node, int first, std::vector<std::unique_ptr<Node>> added);
    void SetChildren(Node* node, const std::vector<rc::Ref<HF::LTreeItem>>& items, const QString& note);
    void ChildrenChanged(const rc::Ref<HF::LTreeItem>& item);
    void Watch(const Node& node);
    void SetProblem(Node* node, const QString& problem);
    void CheckFile(Node* node);

    std::unique_ptr<Node> m_root;
    rc::Ptr<Watcher> m_watcher;
    bool m_showSystem = false;
};
