#pragma once

#include "friendrequesttreeview.h"

// The tests' window on the view's private parts.
class FriendRequestTreeViewProbe
{
public:
    static bool isCheckRequestOverdue(FriendRequestTreeView* view, VyrEngine::FriendRequestInfo& info)
    {
        return view->isCheckRequestOverdue(info);
    }
    static FriendRequestModel* model(FriendRequestTreeView* view) { return view->m_model; }
    static FriendRequestViewItem* viewItem(FriendRequestTreeView* view) { return view->m_viewItem; }
    static QModelIndex currentIndex(FriendRequestTreeView* view) { return view->m_currentIndex; }
};
