#pragma once

#include "CoreEngine.h"
#include "FriendRequestInfo.h"
#include "FriendRequestModel.h"
#include "NoticeEngine.h"

#include <QDate>
#include <QDateTime>
#include <QThreadPool>
#include <QTime>
#include <QtTest>

// Records and a clean kit for the friend-request tests. Days count back from
// Friday 2026-11-20 (day 0) in local time; the user is uid 1000.
namespace Fr {

const quint64 Me = 1000;

inline quint64 at(int daysBack, int hour = 12, int minute = 0, int second = 0)
{
    return static_cast<quint64>(
        QDateTime(QDate(2026, 11, 20).addDays(-daysBack), QTime(hour, minute, second), Qt::LocalTime).toSecsSinceEpoch());
}

inline VyrEngine::FriendRequestInfo rec(int seq, quint64 source, quint64 target, int status, quint64 date,
                                        const QString& message = QString())
{
    VyrEngine::FriendRequestInfo info;
    info.setSequenceId(seq);
    info.setSourceId(source);
    info.setTargetId(target);
    info.setStatus(status);
    info.setDate(date);
    info.setMessage(message.isNull() ? QStringLiteral("m%1").arg(seq) : message);
    return info;
}

// A request that `peer` sent to the user.
inline VyrEngine::FriendRequestInfo from(quint64 peer, int seq, int status, quint64 date,
                                         const QString& message = QString())
{
    return rec(seq, peer, Me, status, date, message);
}

// A request that the user sent to `peer`.
inline VyrEngine::FriendRequestInfo to(quint64 peer, int seq, int status, quint64 date,
                                       const QString& message = QString())
{
    return rec(seq, Me, peer, status, date, message);
}

inline QString day(int daysBack)
{
    return QDate(2026, 11, 20).addDays(-daysBack).toString(Qt::ISODate);
}

// Waits for every page task, then lets their queued results arrive.
inline void settle()
{
    QThreadPool::globalInstance()->waitForDone();
    for (int i = 0; i < 3; ++i) {
        QCoreApplication::processEvents(QEventLoop::AllEvents);
        QCoreApplication::sendPostedEvents();
    }
}

inline void resetKit()
{
    settle();
    VyrEngine::NoticeEngine::instance()->clear();
    VyrEngine::CoreEngine::instance()->setCurrentUid(Me);
    VyrEngine::CoreEngine::instance()->setCurrentTime(static_cast<qint64>(at(-1)));
}

// The row of `peer` in a tree of day groups (the page's proxy or model), or an invalid index.
inline QModelIndex leafOf(const QAbstractItemModel* model, quint64 peer)
{
    for (int g = 0; g < model->rowCount(); ++g) {
        const QModelIndex group = model->index(g, 0);
        for (int r = 0; r < model->rowCount(group); ++r) {
            const QModelIndex leaf = model->index(r, 0, group);
            if (leaf.data(FriendRequest::DisplayIdRole).toULongLong() == peer)
                return leaf;
        }
    }
    return QModelIndex();
}

} // namespace Fr
