#include "FriendRequestSortFilterProxyModel_p.h"

#include "FriendRequestModel.h"

FriendRequestSortFilterProxyModel::FriendRequestSortFilterProxyModel(QAbstractItemModel* source, QObject* parent)
    : QSortFilterProxyModel(parent)
{
    setSourceModel(source);
    setSortRole(DateRole);
    setDynamicSortFilter(true);
    sort(0, Qt::DescendingOrder);
}

bool FriendRequestSortFilterProxyModel::lessThan(const QModelIndex& left, const QModelIndex& right) const
{
    // Headers and leaves compare alike: a header's date lies in its own day.
    const quint64 leftDate = sourceModel()->data(left, DateRole).toULongLong();
    const quint64 rightDate = sourceModel()->data(right, DateRole).toULongLong();
    return leftDate < rightDate;
}
