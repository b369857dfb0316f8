#pragma once

#include "VyrNoticeExport.h"

#include <QPointer>
#include <QSortFilterProxyModel>

class FriendRequestModel;

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

private:
    quint64 dateOf(const QModelIndex& index) const;

    QPointer<FriendRequestModel> m_tree; // the source, when it is the friend-request tree
};
