#include "FriendRequestSortFilterProxyModel_p.h"

#include "FriendRequestModel.h"
#include "FriendRequestTreeItem_p.h"

using namespace FriendRequest;

FriendRequestSortFilterProxyModel::FriendRequestSortFilterProxyModel(QAbstractItemModel* source, QObject* parent)
    : QSortFilterProxyModel(parent)
{
    setSourceModel(source);
    m_tree = qobject_cast<FriendRequestModel*>(source);
    setSortRole(DateRole);
    setDynamicSortFilter(true);
    sort(0, Qt::DescendingOrder);
}

bool FriendRequestSortFilterProxyModel::lessThan(const QModelIndex& left, const QModelIndex& right) const
{
    // Headers and leaves compare alike: a header's date lies in its own day.
    return dateOf(left) < dateOf(right);
}

// The tree's own items are read directly: a sort asks for the dates
// n log n times, and a QVariant for each would cost more than the compare.
quint64 FriendRequestSortFilterProxyModel::dateOf(const QModelIndex& index) const
{
    if (m_tree && index.model() == m_tree && sourceModel() == m_tree)
        return static_cast<const FriendRequestTreeItem*>(index.internalPointer())->date();
    return sourceModel()->data(index, DateRole).toULongLong();
}
