#include "FriendRequestModel.h"

#include "CoreEngine.h"
#include "FriendRequestShowMoreSignals_p.h"
#include "FriendRequestTreeItem_p.h"
#include "LocalDays_p.h"
#include "NoticeEngine.h"
#include "NoticeLog_p.h"

#include <QDate>
#include <QDateTime>
#include <QMap>
#include <QTime>
#include <QDebug>
#include <QHash>
#include <QThreadPool>
#include <QtConcurrent>

#include <algorithm>

using VyrEngine::FriendRequestInfo;
using namespace FriendRequest;

namespace {

const int FirstPageSize = 200;
const int LaterPageSize = 30;

// Counts the debug lines at the top of preAdd; they and it vanish together in release builds.
int s_preAddLineCount = 0;

// The local calendar day of a time in seconds since the epoch.
QDate dayOf(quint64 seconds)
{
    return LocalDays::forThisThread().dayOf(static_cast<qint64>(seconds));
}

} // namespace

FriendRequestModel::FriendRequestModel(QObject* parent)
    : AbstractTreeModel(new FriendRequestTreeItem(0, 0, 0, QString(), 0, 0, 0, nullptr), parent)
{
    auto* engine = VyrEngine::NoticeEngine::instance();
    connect(engine, &VyrEngine::NoticeEngine::signalContactsAddConfirmNotice, this,
            &FriendRequestModel::contactsAddConfirmNoticeSlot, Qt::QueuedConnection);
    connect(engine, &VyrEngine::NoticeEngine::signalContactorAddReplyNotice, this,
            &FriendRequestModel::contactorAddReplyNoticeSlot, Qt::QueuedConnection);
    connect(engine, &VyrEngine::NoticeEngine::signalContactorAddNotice, this,
            &FriendRequestModel::contactorAddNoticeSlot, Qt::QueuedConnection);
    connect(engine, &VyrEngine::NoticeEngine::signalDeleteOneAddNotice, this,
            &FriendRequestModel::deleteOneNoticeSlot, Qt::QueuedConnection);
    connect(engine, &VyrEngine::NoticeEngine::signalSetFriendRequestOverdue, this,
            &FriendRequestModel::setContactsAddOverdueSlot, Qt::QueuedConnection);
    connect(showMoreSignals(), &FriendRequestShowMoreSignals::syncLoadMore, this,
            &FriendRequestModel::syncLoadMoreSlot, Qt::QueuedConnection);
    m_zoneChanges = LocalDays::forThisThread().zoneChanges();
    m_indexZoneChanges = m_zoneChanges;
}

// The items belong to the base class, which frees them with the root.
FriendRequestModel::~FriendRequestModel() = default;

FriendRequestShowMoreSignals* FriendRequestModel::showMoreSignals()
{
    static FriendRequestShowMoreSignals instance;
    return &instance;
}

bool FriendRequestModel::isFriendRequestEmpty() const
{
    return root()->childCount() == 0;
}

// The base's answer without its two virtual counts: the view asks for every
// row (through the proxy) on each layout, so this is a hot path at 100,000 rows.
QModelIndex FriendRequestModel::index(int row, int column, const QModelIndex& parent) const
{
    if (row < 0 || column != 0 || parent.column() > 0)
        return QModelIndex();
    const AbstractTreeItem* parentItem = parent.isValid() ? static_cast<AbstractTreeItem*>(parent.internalPointer())
                                                          : root();
    AbstractTreeItem* item = parentItem ? parentItem->child(row) : nullptr;
    return item ? createIndex(row, 0, item) : QModelIndex();
}

int FriendRequestModel::columnCount(const QModelIndex&) const
{
    return 1;
}

QVariant FriendRequestModel::data(const QModelIndex& index, int role) const
{
    if (!index.isValid())
        return QVariant();
    const auto* item = static_cast<FriendRequestTreeItem*>(index.internalPointer());
    switch (role) {
    case SequenceIdRole: return item->sequenceId();
    case DisplayIdRole: return qulonglong(item->displayId());
    case DateRole: return qulonglong(item->date());
    case MessageRole: return item->message();
    case StatusRole: return item->status();
    case SourceIdRole: return qulonglong(item->sourceId());
    case TargetIdRole: return qulonglong(item->targetId());
    default: return QVariant();
    }
}

Qt::ItemFlags FriendRequestModel::flags(const QModelIndex& index) const
{
    if (!index.isValid())
        return QAbstractItemModel::flags(index);
    // A person's row never has children: the view need not look under it.
    if (static_cast<AbstractTreeItem*>(index.internalPointer())->parentItem() != root())
        return Qt::ItemIsSelectable | Qt::ItemIsEnabled | Qt::ItemNeverHasChildren;
    return Qt::ItemIsSelectable | Qt::ItemIsEnabled;
}

bool FriendRequestModel::isHiddenRecord(const FriendRequestInfo& info)
{
    // A request of the user's own that the other side refused is never shown.
    return info.sourceId() == VyrEngine::CoreEngine::instance()->currentUid() && info.status() == RefusedByPeer;
}

quint64 FriendRequestModel::getDisplayId(FriendRequestInfo info)
{
    if (info.sourceId() == VyrEngine::CoreEngine::instance()->currentUid())
        return info.targetId();
    return info.sourceId();
}

FriendRequestTreeItem* FriendRequestModel::makeItem(const FriendRequestInfo& info, quint64 displayId) const
{
    return new FriendRequestTreeItem(info.sequenceId(), displayId, info.date(), info.message(), info.status(),
                                     info.sourceId(), info.targetId(), nullptr);
}

FriendRequestTreeItem* FriendRequestModel::groupAt(int row) const
{
    return static_cast<FriendRequestTreeItem*>(root()->child(row));
}

int FriendRequestModel::leafRowOf(FriendRequestTreeItem* group, quint64 displayId) const
{
    for (int row = 0; row < group->childCount(); ++row) {
        if (static_cast<FriendRequestTreeItem*>(group->child(row))->displayId() == displayId)
            return row;
    }
    return -1;
}

// Removes a row, or its whole group when it is the group's last row.
void FriendRequestModel::removeRowOf(int groupRow, int leafRow)
{
    FriendRequestTreeItem* group = groupAt(groupRow);
    if (group->childCount() >= 2) {
        beginRemoveRows(index(groupRow, 0, QModelIndex()), leafRow, leafRow);
        group->removeChild(group->child(leafRow));
        endRemoveRows();
    } else {
        beginRemoveRows(QModelIndex(), groupRow, groupRow);
        unindexGroup(group);
        root()->removeChild(group);
        endRemoveRows();
    }
}

FriendRequestTreeItem* FriendRequestModel::copyOf(const FriendRequestTreeItem* item) const
{
    return new FriendRequestTreeItem(item->sequenceId(), item->displayId(), item->date(), item->message(),
                                     item->status(), item->sourceId(), item->targetId(), nullptr);
}

// After the system's time zone changed, each day's rows belong to the first
// group whose own date lies in that day: the others move to the end of it, or
// of a new group at the end, and groups left empty go. The proxy sorts them.
void FriendRequestModel::regroupIfZoneChanged()
{
    const int zoneChanges = LocalDays::forThisThread().zoneChanges();
    if (zoneChanges == m_zoneChanges)
        return;
    m_zoneChanges = zoneChanges;
    QHash<QDate, const FriendRequestTreeItem*> home;
    for (int i = root()->childCount() - 1; i >= 0; --i)
        home.insert(dayOf(groupAt(i)->date()), groupAt(i));
    QList<FriendRequestTreeItem*> moved;
    int groupRow = 0;
    while (groupRow < root()->childCount()) {
        FriendRequestTreeItem* group = groupAt(groupRow);
        bool groupGone = false;
        int leafRow = 0;
        while (leafRow < group->childCount()) {
            const auto* leaf = static_cast<FriendRequestTreeItem*>(group->child(leafRow));
            if (home.value(dayOf(leaf->date())) == group) {
                ++leafRow;
                continue;
            }
            moved << copyOf(leaf);
            groupGone = group->childCount() == 1;
            if (groupGone && home.value(dayOf(group->date())) == group)
                home.remove(dayOf(group->date()));
            removeRowOf(groupRow, leafRow);
            if (groupGone)
                break;
        }
        if (!groupGone)
            ++groupRow;
    }
    for (FriendRequestTreeItem* row : moved)
        appendToItsDay(row);
    rebuildDayIndex();
    qCInfo(lcVyrNotice) << "time zone changed, friend requests regrouped by day, rows moved:" << moved.size();
}

void FriendRequestModel::indexGroup(FriendRequestTreeItem* group)
{
    const QDate day = dayOf(group->date());
    m_groupsByDay[day].append(group);
    m_dayOfGroup.insert(group, day);
}

void FriendRequestModel::unindexGroup(FriendRequestTreeItem* group)
{
    const auto found = m_dayOfGroup.find(group);
    if (found == m_dayOfGroup.end())
        return;
    const auto groups = m_groupsByDay.find(found.value());
    if (groups != m_groupsByDay.end()) {
        groups->removeOne(group);
        if (groups->isEmpty())
            m_groupsByDay.erase(groups);
    }
    m_dayOfGroup.erase(found);
}

void FriendRequestModel::rebuildDayIndex()
{
    m_groupsByDay.clear();
    m_dayOfGroup.clear();
    for (int i = 0; i < root()->childCount(); ++i)
        indexGroup(groupAt(i));
    m_indexZoneChanges = LocalDays::forThisThread().zoneChanges();
}

// A conversion may be the one that notices a new zone: the days are then
// worked out again, as a walk converting each group's date would see them.
void FriendRequestModel::keepDayIndexInZone()
{
    if (LocalDays::forThisThread().zoneChanges() != m_indexZoneChanges)
        rebuildDayIndex();
}

QVector<FriendRequestModel::GroupStop> FriendRequestModel::groupsOfDay(const QDate& day) const
{
    QVector<GroupStop> stops;
    const auto groups = m_groupsByDay.constFind(day);
    if (groups == m_groupsByDay.constEnd())
        return stops;
    for (FriendRequestTreeItem* group : *groups)
        stops.append(GroupStop{group->row(), group});
    return stops;
}

int FriendRequestModel::firstGroupRowOfDay(const QDate& day) const
{
    int first = -1;
    for (const GroupStop& stop : groupsOfDay(day)) {
        if (first < 0 || stop.row < first)
            first = stop.row;
    }
    return first;
}

void FriendRequestModel::appendToItsDay(FriendRequestTreeItem* row)
{
    const QDate day = dayOf(row->date());
    for (int i = 0; i < root()->childCount(); ++i) {
        FriendRequestTreeItem* group = groupAt(i);
        if (dayOf(group->date()) != day)
            continue;
        const int n = group->childCount();
        beginInsertRows(index(i, 0, QModelIndex()), n, n);
        group->appendChild(row);
        endInsertRows();
        return;
    }
    const int n = root()->childCount();
    beginInsertRows(QModelIndex(), n, n);
    root()->appendChild(copyOf(row));
    indexGroup(groupAt(n));
    endInsertRows();
    beginInsertRows(index(n, 0, QModelIndex()), 0, 0);
    root()->child(n)->appendChild(row);
    endInsertRows();
}

void FriendRequestModel::update(FriendRequestInfo info)
{
    if (isHiddenRecord(info))
        return;
    regroupIfZoneChanged();
    const quint64 id = getDisplayId(info);
    // Whether the person has a row is the map's answer; a date too large for
    // QDateTime has a null day and must still count as a row.
    const bool hasRow = m_dateByDisplayId.contains(id);
    const QDate oldDay = hasRow ? dayOf(m_dateByDisplayId.value(id)) : QDate();
    const QDate newDay = dayOf(info.date());
    bool placed = false;
    keepDayIndexInZone();
    // Only the groups of the two days take part in the walk over all groups,
    // so only they are visited, in the walk's order. Intended: the walk steps
    // on after removing a whole group, so the group that moves into the
    // removed one's place is skipped; a second group of one day (left by that
    // skip) gets a row of its own too.
    QVector<GroupStop> stops = groupsOfDay(newDay);
    if (hasRow && oldDay != newDay)
        stops += groupsOfDay(oldDay);
    std::sort(stops.begin(), stops.end(), [](const GroupStop& a, const GroupStop& b) { return a.row < b.row; });
    int removedGroups = 0;
    int skippedRow = -1;
    for (const GroupStop& stop : stops) {
        if (stop.row == skippedRow)
            continue;
        const int i = stop.row - removedGroups;
        FriendRequestTreeItem* group = stop.group;
        if (m_dayOfGroup.value(group) == newDay) {
            const int leafRow = leafRowOf(group, id);
            if (leafRow >= 0) {
                auto* leaf = static_cast<FriendRequestTreeItem*>(group->child(leafRow));
                leaf->setDate(info.date());
                leaf->setMessage(info.message());
                leaf->setStatus(info.status());
                // Intended: the top-level index with the leaf's row number, not the
                // leaf; the view repaints on the expandAllSignal that follows.
                const QModelIndex changed = index(leafRow, 0, QModelIndex());
                emit dataChanged(changed, changed, {});
            } else {
                preAdd(info, index(i, 0, QModelIndex()));
            }
            placed = true;
        } else {
            const int leafRow = leafRowOf(group, id);
            if (leafRow < 0)
                continue;
            const bool wholeGroup = group->childCount() < 2;
            removeRowOf(i, leafRow);
            if (wholeGroup) {
                ++removedGroups;
                skippedRow = stop.row + 1;
            }
        }
    }
    if (!placed)
        preAdd(info, QModelIndex());
    m_dateByDisplayId[id] = info.date();
    emit expandAllSignal();
}

void FriendRequestModel::preAdd(FriendRequestInfo info, const QModelIndex& parent)
{
    if (isHiddenRecord(info))
        return;
    qCDebug(lcVyrNotice) << "==========" << info.message() << ", " << s_preAddLineCount++;
    const quint64 id = getDisplayId(info);
    bool madeGroup = false;
    beginInsertRows(parent, 0, 0);
    if (!parent.isValid()) {
        root()->insertChild(0, makeItem(info, id));
        indexGroup(groupAt(0));
        madeGroup = true;
    } else {
        itemFromIndex(parent)->insertChild(0, makeItem(info, id));
    }
    endInsertRows();
    if (madeGroup) {
        beginInsertRows(index(0, 0, parent), 0, 0);
        root()->child(0)->insertChild(0, makeItem(info, id));
        endInsertRows();
    }
    emit friendRequestChangeSignal();
    emit needUpdate(parent);
}

void FriendRequestModel::lastAdd(FriendRequestInfo info, const QModelIndex& parent)
{
    if (isHiddenRecord(info))
        return;
    const quint64 id = getDisplayId(info);
    bool madeGroup = false;
    const int n = rowCount(parent);
    beginInsertRows(parent, n, n);
    if (!parent.isValid()) {
        root()->appendChild(makeItem(info, id));
        indexGroup(groupAt(root()->childCount() - 1));
        madeGroup = true;
    } else {
        itemFromIndex(parent)->appendChild(makeItem(info, id));
    }
    endInsertRows();
    if (madeGroup) {
        const int m = rowCount(parent);
        // Intended: the column equals the row and the rows are the root's, not
        // the new group's. With more than one group the index is invalid, so
        // this announces a top-level row that never comes.
        beginInsertRows(index(m - 1, m - 1, parent), m, m);
        root()->child(m - 1)->appendChild(makeItem(info, id));
        endInsertRows();
    }
    emit expandAllSignal();
    emit friendRequestChangeSignal();
}

void FriendRequestModel::loadMore(FriendRequestInfo info)
{
    if (isHiddenRecord(info))
        return;
    const quint64 id = getDisplayId(info);
    // The newer record already made this person's row.
    if (m_dateByDisplayId.contains(id))
        return;
    regroupIfZoneChanged();
    const QDate day = dayOf(info.date());
    keepDayIndexInZone();
    // The first group of the day, as a walk from the top would find it.
    const int i = firstGroupRowOfDay(day);
    if (i >= 0) {
        if (leafRowOf(groupAt(i), id) >= 0)
            return;
        lastAdd(info, index(i, 0, QModelIndex()));
        m_dateByDisplayId[id] = info.date();
        return;
    }
    lastAdd(info, QModelIndex());
    m_dateByDisplayId[id] = info.date();
}

bool FriendRequestModel::deleteOneNoticeSlot(quint64 id)
{
    if (!m_dateByDisplayId.contains(id))
        return true;
    regroupIfZoneChanged();
    const QDate day = dayOf(m_dateByDisplayId.value(id));
    keepDayIndexInZone();
    // Only the first group of the day is looked at.
    const int i = firstGroupRowOfDay(day);
    if (i >= 0) {
        const int leafRow = leafRowOf(groupAt(i), id);
        if (leafRow >= 0) {
            removeRowOf(i, leafRow);
            m_dateByDisplayId.remove(id);
            emit expandAllSignal();
        }
    }
    emit friendRequestChangeSignal();
    return true;
}

void FriendRequestModel::printAllFriendRequest()
{
    for (AbstractTreeItem* groupItem : root()->children()) {
        auto* group = static_cast<FriendRequestTreeItem*>(groupItem);
        qCDebug(lcVyrNotice) << "#######parent: " << group->childCount() << group->displayId() << dayOf(group->date())
                 << group->message();
        for (AbstractTreeItem* leafItem : group->children()) {
            auto* leaf = static_cast<FriendRequestTreeItem*>(leafItem);
            // Intended: the group's sequence id and day, beside the row's person and message.
            qCDebug(lcVyrNotice) << "#######child: " << group->sequenceId() << leaf->displayId() << dayOf(group->date())
                     << leaf->message();
        }
    }
}

void FriendRequestModel::contactorAddNoticeSlot(FriendRequestInfo info)
{
    update(info);
}

void FriendRequestModel::contactorAddReplyNoticeSlot(FriendRequestInfo info)
{
    update(info);
}

void FriendRequestModel::contactsAddConfirmNoticeSlot(FriendRequestInfo info)
{
    update(info);
}

void FriendRequestModel::setContactsAddOverdueSlot(FriendRequestInfo info)
{
    update(info);
}

void FriendRequestModel::initUiData()
{
    QVector<FriendRequestInfo> records;
    const quint64 now = static_cast<quint64>(VyrEngine::CoreEngine::instance()->currentDateTime().toSecsSinceEpoch());
    // The answer is not looked at: the rows are whatever the vector holds.
    VyrEngine::NoticeEngine::instance()->friendRequests(records, FirstPageSize, now, -1);
    // Newest first in the answer; oldest first into update, so the newest ends on top.
    for (int i = records.size() - 1; i >= 0; --i)
        update(records.at(i));
}

void FriendRequestModel::loadMoreUiData()
{
    AbstractTreeItem* lastGroup = root()->child(root()->childCount() - 1);
    if (!lastGroup)
        return;
    auto* lastRow = static_cast<FriendRequestTreeItem*>(lastGroup->child(lastGroup->childCount() - 1));
    if (!lastRow)
        return;
    // Nobody waits on this task and nobody cancels it.
    QtConcurrent::run(QThreadPool::globalInstance(), &FriendRequestModel::syncLoadMore, LaterPageSize,
                      lastRow->date(), lastRow->sequenceId());
}

void FriendRequestModel::syncLoadMore(int count, quint64 date, int sequenceId)
{
    QVector<FriendRequestInfo> records;
    if (VyrEngine::NoticeEngine::instance()->friendRequests(records, count, date, sequenceId))
        emit showMoreSignals()->syncLoadMore(records);
}

void FriendRequestModel::syncLoadMoreSlot(QVector<FriendRequestInfo> vec)
{
    for (const FriendRequestInfo& info : vec)
        loadMore(info);
    emit friendRequestChangeSignal();
}
