#pragma once

#include "FriendRequestWidget.h"
#include "friendrequesttreeview.h"

#include <QStackedWidget>

// The tests' window on the page's private parts.
class FriendRequestWidgetProbe
{
public:
    static QStackedWidget* stack(FriendRequestWidget* page) { return page->m_stackedWidget; }
    static FriendRequestTreeView* treeView(FriendRequestWidget* page) { return page->m_treeView; }
    static QWidget* emptyPage(FriendRequestWidget* page) { return page->m_emptyPage; }
};
