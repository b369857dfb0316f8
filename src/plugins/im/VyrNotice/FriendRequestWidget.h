#pragma once

#include "VyrNoticeExport.h"

#include <QWidget>

class FriendRequestTreeView;
class QStackedWidget;

// The friend-request page: a title, a bordered centre panel with a subtitle,
// and either the list of requests or, while there is none, an empty page
// with an add-friend button.
//
// A host creates the page, places it where it likes and owns it. The page
// fills itself from the notice engine: at once when the engine's UI data is
// ready, else (and again each time) on the engine's signalInitUiData. The
// add-friend button asks the host through
// ImSignalObject::instance()->menuAddContacts("", "联系人-新的好友").
class VYRNOTICE_EXPORT FriendRequestWidget : public QWidget
{
    Q_OBJECT
public:
    explicit FriendRequestWidget(QWidget* parent = nullptr);

    // Reads the first page of requests from the engine.
    void initUiData();

private:
    friend class FriendRequestWidgetProbe; // the tests' window on the private parts

    void initWidget();
    void onFriendRequestChange();
    QWidget* makeEmptyPage();

    QStackedWidget* m_stackedWidget = nullptr;
    FriendRequestTreeView* m_treeView = nullptr;
    QWidget* m_emptyPage = nullptr;
};
