#pragma once

#include "AbstractTreeModel.h"
#include "FriendRequestInfo.h"
#include "VyrNoticeExport.h"

#include <QDate>
#include <QHash>
#include <QMap>
#include <QVector>

class FriendRequestShowMoreSignals;
class FriendRequestTreeItem;

// The friend-request page's own words, kept out of the host's global scope:
// what a request's status means, and the item data roles of its tree.
namespace FriendRequest {

// What a friend request's status means.
enum FriendRequestStatus
{
    AgreedByMe = 0,
    RefusedByMe = 1,
    AgreedByPeer = 2,
    RefusedByPeer = 3, // a record of the user's own with this status is never shown
    AwaitingMyAnswer = 4,
    AwaitingPeerAnswer = 5,
    Overdue = 6,
};

// The item data roles of the friend-request tree.
enum FriendRequestItemRole
{
    SequenceIdRole = 100,
    DisplayIdRole = 101,
    DateRole = 102,
    MessageRole = 103,
    StatusRole = 104,
    SourceIdRole = 105,
    TargetIdRole = 106,
};

} // namespace FriendRequest

// The friend-request page's tree: one group for each local calendar day, one
// row for each other person under it. Every change comes from the notice
// engine, through queued connections; later pages are fetched on the global
// thread pool. When the system's time zone has changed, the next change first
// moves the rows whose local day moved.
class VYRNOTICE_EXPORT FriendRequestModel : public AbstractTreeModel
{
    Q_OBJECT
public:
    explicit FriendRequestModel(QObject* parent = nullptr);
    ~FriendRequestModel() override;

    bool isFriendRequestEmpty() const;
    QModelIndex index(int row, int column, const QModelIndex& parent = QModelIndex()) const override;
    int columnCount(const QModelIndex& parent = QModelIndex()) const override;
    QVariant data(const QModelIndex& index, int role) const override;
    Qt::ItemFlags flags(const QModelIndex& index) const override;

public slots:
    bool deleteOneNoticeSlot(quint64 id);
    void contactorAddNoticeSlot(VyrEngine::FriendRequestInfo info);
    void contactorAddReplyNoticeSlot(VyrEngine::FriendRequestInfo info);
    void contactsAddConfirmNoticeSlot(VyrEngine::FriendRequestInfo info);
    void setContactsAddOverdueSlot(VyrEngine::FriendRequestInfo info);
    void initUiData();
    void loadMoreUiData();

signals:
    void expandAllSignal();
    void friendRequestChangeSignal();
    void needUpdate(QModelIndex index);

private slots:
    void syncLoadMoreSlot(QVector<VyrEngine::FriendRequestInfo> vec);

private:
    friend class FriendRequestModelProbe; // the tests' window on the private operations

    void preAdd(VyrEngine::FriendRequestInfo info, const QModelIndex& parent);
    void lastAdd(VyrEngine::FriendRequestInfo info, const QModelIndex& parent);
    void update(VyrEngine::FriendRequestInfo info);
    void loadMore(VyrEngine::FriendRequestInfo info);
    void printAllFriendRequest();
    quint64 getDisplayId(VyrEngine::FriendRequestInfo info);
    static void syncLoadMore(int count, quint64 date, int sequenceId);
    static FriendRequestShowMoreSignals* showMoreSignals();

    bool isHiddenRecord(const VyrEngine::FriendRequestInfo& info);
    FriendRequestTreeItem* makeItem(const VyrEngine::FriendRequestInfo& info, quint64 displayId) const;
    FriendRequestTreeItem* groupAt(int row) const;
    int leafRowOf(FriendRequestTreeItem* group, quint64 displayId) const;
    void removeRowOf(int groupRow, int leafRow);
    FriendRequestTreeItem* copyOf(const FriendRequestTreeItem* item) const;
    void regroupIfZoneChanged();
    void appendToItsDay(FriendRequestTreeItem* row);

    // Which groups stand for which day, so a record finds its day's groups
    // without converting every group's date. Kept beside the root's children.
    struct GroupStop
    {
        int row;
        FriendRequestTreeItem* group;
    };
    void indexGroup(FriendRequestTreeItem* group);
    void unindexGroup(FriendRequestTreeItem* group);
    void rebuildDayIndex();
    void keepDayIndexInZone();
    QVector<GroupStop> groupsOfDay(const QDate& day) const;
    int firstGroupRowOfDay(const QDate& day) const;

    QMap<quint64, quint64> m_dateByDisplayId;
    int m_zoneChanges = 0; // the zone changes the groups were last made for
    QHash<QDate, QVector<FriendRequestTreeItem*>> m_groupsByDay;
    QHash<const FriendRequestTreeItem*, QDate> m_dayOfGroup;
    int m_indexZoneChanges = 0; // the zone changes the day index was made for
};
