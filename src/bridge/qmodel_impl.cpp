// SPDX-License-Identifier: GPL-3.0-or-later
#include "bridge/qmodel_impl.h"

namespace weft::internal {

namespace {

/// Overrides are not const: what a script does is its own business.
qmodel_impl& Self(const qmodel_impl* self)
{
    return const_cast<qmodel_impl&>(*self);
}

} // namespace

QModelIndex qmodel_impl::buddy(const QModelIndex& index) const
{
    QModelIndex result{};
    if (Self(this).run(hook::buddy, &result, index))
        return result;
    return QAbstractItemModel::buddy(index);
}

bool qmodel_impl::canDropMimeData(const QMimeData* data, Qt::DropAction action, int row, int column, const QModelIndex& parent) const
{
    bool result{};
    if (Self(this).run(hook::canDropMimeData, &result, static_cast<QObject*>(const_cast<QMimeData*>(data)), action, row, column, parent))
        return result;
    return QAbstractItemModel::canDropMimeData(data, action, row, column, parent);
}

bool qmodel_impl::canFetchMore(const QModelIndex& parent) const
{
    bool result{};
    if (Self(this).run(hook::canFetchMore, &result, parent))
        return result;
    return QAbstractItemModel::canFetchMore(parent);
}

bool qmodel_impl::clearItemData(const QModelIndex& index)
{
    bool result{};
    if (run(hook::clearItemData, &result, index))
        return result;
    return QAbstractItemModel::clearItemData(index);
}

int qmodel_impl::columnCount(const QModelIndex& parent) const
{
    int result{};
    if (Self(this).run(hook::columnCount, &result, parent))
        return result;
    return 0;
}

QVariant qmodel_impl::data(const QModelIndex& index, int role) const
{
    QVariant result{};
    if (Self(this).run(hook::data, &result, index, role))
        return result;
    return {};
}

bool qmodel_impl::dropMimeData(const QMimeData* data, Qt::DropAction action, int row, int column, const QModelIndex& parent)
{
    bool result{};
    if (run(hook::dropMimeData, &result, static_cast<QObject*>(const_cast<QMimeData*>(data)), action, row, column, parent))
        return result;
    return QAbstractItemModel::dropMimeData(data, action, row, column, parent);
}

void qmodel_impl::fetchMore(const QModelIndex& parent)
{
    if (!run_void(hook::fetchMore, parent))
        QAbstractItemModel::fetchMore(parent);
}

Qt::ItemFlags qmodel_impl::flags(const QModelIndex& index) const
{
    Qt::ItemFlags result{};
    if (Self(this).run(hook::flags, &result, index))
        return result;
    return QAbstractItemModel::flags(index);
}

bool qmodel_impl::hasChildren(const QModelIndex& parent) const
{
    bool result{};
    if (Self(this).run(hook::hasChildren, &result, parent))
        return result;
    return QAbstractItemModel::hasChildren(parent);
}

QVariant qmodel_impl::headerData(int section, Qt::Orientation orientation, int role) const
{
    QVariant result{};
    if (Self(this).run(hook::headerData, &result, section, orientation, role))
        return result;
    return QAbstractItemModel::headerData(section, orientation, role);
}

QModelIndex qmodel_impl::index(int row, int column, const QModelIndex& parent) const
{
    QModelIndex result{};
    if (Self(this).run(hook::index, &result, row, column, parent))
        return result;
    return hasIndex(row, column, parent) ? createIndex(row, column) : QModelIndex();
}

bool qmodel_impl::insertColumns(int column, int count, const QModelIndex& parent)
{
    bool result{};
    if (run(hook::insertColumns, &result, column, count, parent))
        return result;
    return QAbstractItemModel::insertColumns(column, count, parent);
}

bool qmodel_impl::insertRows(int row, int count, const QModelIndex& parent)
{
    bool result{};
    if (run(hook::insertRows, &result, row, count, parent))
        return result;
    return QAbstractItemModel::insertRows(row, count, parent);
}

QMap<int, QVariant> qmodel_impl::itemData(const QModelIndex& index) const
{
    QMap<int, QVariant> result{};
    if (Self(this).run(hook::itemData, &result, index))
        return result;
    return QAbstractItemModel::itemData(index);
}

QModelIndexList qmodel_impl::match(const QModelIndex& start, int role, const QVariant& value, int hits, Qt::MatchFlags flags) const
{
    QModelIndexList result{};
    if (Self(this).run(hook::match, &result, start, role, value, hits, flags))
        return result;
    return QAbstractItemModel::match(start, role, value, hits, flags);
}

QMimeData* qmodel_impl::mimeData(const QModelIndexList& indexes) const
{
    QMimeData* result{};
    if (Self(this).run(hook::mimeData, &result, indexes))
        return result;
    return QAbstractItemModel::mimeData(indexes);
}

QStringList qmodel_impl::mimeTypes() const
{
    QStringList result{};
    if (Self(this).run(hook::mimeTypes, &result))
        return result;
    return QAbstractItemModel::mimeTypes();
}

bool qmodel_impl::moveColumns(const QModelIndex& sourceParent, int sourceColumn, int count, const QModelIndex& destinationParent, int destinationChild)
{
    bool result{};
    if (run(hook::moveColumns, &result, sourceParent, sourceColumn, count, destinationParent, destinationChild))
        return result;
    return QAbstractItemModel::moveColumns(sourceParent, sourceColumn, count, destinationParent, destinationChild);
}

bool qmodel_impl::moveRows(const QModelIndex& sourceParent, int sourceRow, int count, const QModelIndex& destinationParent, int destinationChild)
{
    bool result{};
    if (run(hook::moveRows, &result, sourceParent, sourceRow, count, destinationParent, destinationChild))
        return result;
    return QAbstractItemModel::moveRows(sourceParent, sourceRow, count, destinationParent, destinationChild);
}

QModelIndex qmodel_impl::parent(const QModelIndex& index) const
{
    QModelIndex result{};
    if (Self(this).run(hook::parent, &result, index))
        return result;
    return {};
}

bool qmodel_impl::removeColumns(int column, int count, const QModelIndex& parent)
{
    bool result{};
    if (run(hook::removeColumns, &result, column, count, parent))
        return result;
    return QAbstractItemModel::removeColumns(column, count, parent);
}

bool qmodel_impl::removeRows(int row, int count, const QModelIndex& parent)
{
    bool result{};
    if (run(hook::removeRows, &result, row, count, parent))
        return result;
    return QAbstractItemModel::removeRows(row, count, parent);
}

void qmodel_impl::revert()
{
    if (!run_void(hook::revert))
        QAbstractItemModel::revert();
}

QHash<int, QByteArray> qmodel_impl::roleNames() const
{
    QHash<int, QByteArray> result{};
    if (Self(this).run(hook::roleNames, &result))
        return result;
    return QAbstractItemModel::roleNames();
}

int qmodel_impl::rowCount(const QModelIndex& parent) const
{
    int result{};
    if (Self(this).run(hook::rowCount, &result, parent))
        return result;
    return 0;
}

bool qmodel_impl::setData(const QModelIndex& index, const QVariant& value, int role)
{
    bool result{};
    if (run(hook::setData, &result, index, value, role))
        return result;
    return QAbstractItemModel::setData(index, value, role);
}

bool qmodel_impl::setHeaderData(int section, Qt::Orientation orientation, const QVariant& value, int role)
{
    bool result{};
    if (run(hook::setHeaderData, &result, section, orientation, value, role))
        return result;
    return QAbstractItemModel::setHeaderData(section, orientation, value, role);
}

bool qmodel_impl::setItemData(const QModelIndex& index, const QMap<int, QVariant>& roles)
{
    bool result{};
    if (run(hook::setItemData, &result, index, roles))
        return result;
    return QAbstractItemModel::setItemData(index, roles);
}

QModelIndex qmodel_impl::sibling(int row, int column, const QModelIndex& index) const
{
    QModelIndex result{};
    if (Self(this).run(hook::sibling, &result, row, column, index))
        return result;
    return QAbstractItemModel::sibling(row, column, index);
}

void qmodel_impl::sort(int column, Qt::SortOrder order)
{
    if (!run_void(hook::sort, column, order))
        QAbstractItemModel::sort(column, order);
}

QSize qmodel_impl::span(const QModelIndex& index) const
{
    QSize result{};
    if (Self(this).run(hook::span, &result, index))
        return result;
    return QAbstractItemModel::span(index);
}

bool qmodel_impl::submit()
{
    bool result{};
    if (run(hook::submit, &result))
        return result;
    return QAbstractItemModel::submit();
}

Qt::DropActions qmodel_impl::supportedDragActions() const
{
    Qt::DropActions result{};
    if (Self(this).run(hook::supportedDragActions, &result))
        return result;
    return QAbstractItemModel::supportedDragActions();
}

Qt::DropActions qmodel_impl::supportedDropActions() const
{
    Qt::DropActions result{};
    if (Self(this).run(hook::supportedDropActions, &result))
        return result;
    return QAbstractItemModel::supportedDropActions();
}

} // namespace weft::internal
