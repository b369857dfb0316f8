#pragma once

#include "FriendRequestViewItem.h"

#include <QPoint>
#include <QPushButton>

// The tests' window on the delegate's hover state and its style-source buttons.
class FriendRequestViewItemProbe
{
public:
    static int mouseState(const FriendRequestViewItem* d) { return d->m_mouseState; }
    static QPoint mousePos(const FriendRequestViewItem* d) { return d->m_mousePos; }
    static QPushButton* agreeButton(const FriendRequestViewItem* d) { return d->m_agreeButton; }
    static QPushButton* refuseButton(const FriendRequestViewItem* d) { return d->m_refuseButton; }
    static QPushButton* stateButton(const FriendRequestViewItem* d) { return d->m_stateButton; }
    static int keptRowPictures(const FriendRequestViewItem* d) { return d->keptRowPictureCount(); }
    static int rowPicturesMade(const FriendRequestViewItem* d) { return d->rowPicturesMade(); }
    static int rowPictureKilobytes(const FriendRequestViewItem* d) { return d->rowPictureKilobytes(); }
    static int maxRowPictureKilobytes(const FriendRequestViewItem* d) { return d->maxRowPictureKilobytes(); }
};
