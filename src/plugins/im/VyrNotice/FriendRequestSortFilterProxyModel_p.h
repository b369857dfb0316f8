#pragma once

#include "VyrNoticeExport.h"

#include <QSortFilterProxyModel>

// Orders the friend-request tree for the view: day headers newest first, and
// inside a day the rows newest first. It filters nothing. Rows of the same
// second keep the order the model gives them, since the sort is stable.
class VYRNOTICE_TESTS_EXPORT FriendRequestSortFilterProxyModel : public QSortFilterProxyModel
{
    Q_OBJECT
public:
    // Sets `source`, sorts by the date role, descending, and keeps sorting as the source changes.
    FriendRequestSortFilterProxyModel(QAbstractItemModel* source, QObject* parent = nullptr);

protected:
    bool lessThan(const QModelIndex& left, const QModelIndex& right) const override;
};
