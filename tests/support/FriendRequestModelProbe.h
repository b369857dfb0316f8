#pragma once

#include "FriendRequestModel.h"
#include "FriendRequestShowMoreSignals_p.h"

#include <QMap>
#include <QModelIndex>

// The tests' window on the model's private operations and its person map.
class FriendRequestModelProbe
{
public:
    static void update(FriendRequestModel* m, const VyrEngine::FriendRequestInfo& i) { m->update(i); }
    static void loadMore(FriendRequestModel* m, const VyrEngine::FriendRequestInfo& i) { m->loadMore(i); }
    static void preAdd(FriendRequestModel* m, const VyrEngine::FriendRequestInfo& i, const QModelIndex& p)
    {
        m->preAdd(i, p);
    }
    static void lastAdd(FriendRequestModel* m, const VyrEngine::FriendRequestInfo& i, const QModelIndex& p)
    {
        m->lastAdd(i, p);
    }
    static void page(FriendRequestModel* m, const QVector<VyrEngine::FriendRequestInfo>& v) { m->syncLoadMoreSlot(v); }
    static void printAll(FriendRequestModel* m) { m->printAllFriendRequest(); }
    static quint64 displayId(FriendRequestModel* m, const VyrEngine::FriendRequestInfo& i)
    {
        return m->getDisplayId(i);
    }
    static QMap<quint64, quint64> dates(const FriendRequestModel* m) { return m->m_dateByDisplayId; }
    static FriendRequestShowMoreSignals* showMoreSignals() { return FriendRequestModel::showMoreSignals(); }
};
