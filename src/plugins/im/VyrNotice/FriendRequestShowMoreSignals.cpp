#include "FriendRequestShowMoreSignals_p.h"
#include "NoticeLog_p.h"

#include <QDebug>

FriendRequestShowMoreSignals::FriendRequestShowMoreSignals()
    : QObject(nullptr)
{
}

FriendRequestShowMoreSignals::~FriendRequestShowMoreSignals()
{
    qCDebug(lcVyrNotice) << "FriendRequestShowMoreSignals::~FriendRequestShowMoreSignals";
}
