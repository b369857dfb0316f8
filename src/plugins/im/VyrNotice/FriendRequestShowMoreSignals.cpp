#include "FriendRequestShowMoreSignals_p.h"

#include <QDebug>

FriendRequestShowMoreSignals::FriendRequestShowMoreSignals()
    : QObject(nullptr)
{
}

FriendRequestShowMoreSignals::~FriendRequestShowMoreSignals()
{
    qDebug() << "FriendRequestShowMoreSignals::~FriendRequestShowMoreSignals";
}
