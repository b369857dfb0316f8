#include "FriendRequestShowMoreSignals.h"

#include <QDebug>

FriendRequestShowMoreSignals::FriendRequestShowMoreSignals()
    : QObject(nullptr)
{
}

FriendRequestShowMoreSignals::~FriendRequestShowMoreSignals()
{
    qDebug() << "FriendRequestShowMoreSignals::~FriendRequestShowMoreSignals";
}
