// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "bridge/qobject_impl.h"

#include <QAbstractItemModel>
#include <QMimeData>
#include <QSize>

namespace weft::internal {

/// A model that a script made. What the script does not override behaves as a
/// plain table without rows: indexes have no parents.
class qmodel_impl : public qobject_impl<::QAbstractItemModel>
{
public:
    using Base = ::QAbstractItemModel;
    using qobject_impl::qobject_impl;

    // What a model tells its views, which native models keep to themselves.
    using Base::beginInsertColumns;
    using Base::beginInsertRows;
    using Base::beginMoveColumns;
    using Base::beginMoveRows;
    using Base::beginRemoveColumns;
    using Base::beginRemoveRows;
    using Base::beginResetModel;
    using Base::createIndex;
    using Base::endInsertColumns;
    using Base::endInsertRows;
    using Base::endMoveColumns;
    using Base::endMoveRows;
    using Base::endRemoveColumns;
    using Base::endRemoveRows;
    using Base::endResetModel;
    using ::QObject::parent;

    QModelIndex buddy(const QModelIndex& index) const override;
    bool canDropMimeData(const QMimeData* data, Qt::DropAction action, int row, int column, const QModelIndex& parent) const override;
    bool canFetchMore(const QModelIndex& parent) const override;
    bool clearItemData(const QModelIndex& index) override;
    int columnCount(const QModelIndex& parent) const override;
    QVariant data(const QModelIndex& index, int role) const override;
    bool dropMimeData(const QMimeData* data, Qt::DropAction action, int row, int column, const QModelIndex& parent) override;
    void fetchMore(const QModelIndex& parent) override;
    Qt::ItemFlags flags(const QModelIndex& index) const override;
    bool hasChildren(const QModelIndex& parent) const override;
    QVariant headerData(int section, Qt::Orientation orientation, int role) const override;
    QModelIndex index(int row, int column, const QModelIndex& parent) const override;
    bool insertColumns(int column, int count, const QModelIndex& parent) override;
    bool insertRows(int row, int count, const QModelIndex& parent) override;
    QMap<int, QVariant> itemData(const QModelIndex& index) const override;
    QModelIndexList match(const QModelIndex& start, int role, const QVariant& value, int hits, Qt::MatchFlags flags) const override;
    QMimeData* mimeData(const QModelIndexList& indexes) const override;
    QStringList mimeTypes() const override;
    bool moveColumns(const QModelIndex& sourceParent, int sourceColumn, int count, const QModelIndex& destinationParent, int destinationChild) override;
    bool moveRows(const QModelIndex& sourceParent, int sourceRow, int count, const QModelIndex& destinationParent, int destinationChild) override;
    QModelIndex parent(const QModelIndex& index) const override;
    bool removeColumns(int column, int count, const QModelIndex& parent) override;
    bool removeRows(int row, int count, const QModelIndex& parent) override;
    void revert() override;
    QHash<int, QByteArray> roleNames() const override;
    int rowCount(const QModelIndex& parent) const override;
    bool setData(const QModelIndex& index, const QVariant& value, int role) override;
    bool setHeaderData(int section, Qt::Orientation orientation, const QVariant& value, int role) override;
    bool setItemData(const QModelIndex& index, const QMap<int, QVariant>& roles) override;
    QModelIndex sibling(int row, int column, const QModelIndex& index) const override;
    void sort(int column, Qt::SortOrder order) override;
    QSize span(const QModelIndex& index) const override;
    bool submit() override;
    Qt::DropActions supportedDragActions() const override;
    Qt::DropActions supportedDropActions() const override;
};

} // namespace weft::internal
