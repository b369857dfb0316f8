#pragma once

#include "SignalRecorder.h"

#include <QModelIndex>
#include <QString>

class FriendRequestModel;
class QAbstractItemModel;

// Records the friend-request model's signals as short strings, in order:
//   "ins(-:0)"   rows inserted under the root, row 0 ("-" is the invalid index)
//   "ins(2:0)"   rows inserted under top-level row 2
//   "rem(-:1)", "rem(0:3)"  rows removed likewise
//   "data(3)", "data(-)"    dataChanged with equal corners, by top-level row or "-"
//   "expand", "change", "need(-)", "need(1)"  the model's own three signals
class FriendRequestTreeRecorder : public SignalRecorder
{
    Q_OBJECT
public:
    explicit FriendRequestTreeRecorder(FriendRequestModel* model);

    // "-" for an invalid index, "r" for a top-level row, "r/c" below it.
    static QString indexText(const QModelIndex& index);
};

namespace FriendRequestTree {

// The tree as one line in model order: "[2026-11-20[p7 p3] 2026-11-19[p5]]",
// a group by its local day, a row by its person.
QString text(const QAbstractItemModel* model);

// Each row as "p<person>:<status>:<message>:<seq>:<source>><target>", in model order.
QString rows(const QAbstractItemModel* model);

} // namespace FriendRequestTree
