#pragma once

#include "PopNoticeBaseWidget.h"
#include "VyrNoticeExport.h"

class QLabel;
class QMouseEvent;

// The small pop-up that tells the user about a new friend request: an icon,
// the label "Friend request" and a count, which is always "1".
//
// A host creates the window, connects contentClickSignal() to the handler
// that opens the friend-request page, calls popNotice() and keeps no
// pointer: showing, the 15-second hold, the fade-out, the close button,
// log-out and deletion are all the card's (PopNoticeBaseWidget). A click on
// the content emits contentClickSignal() and closes the window at once;
// contentClickSignal() is the only way the host learns that the user wants
// the page. The window opens nothing itself.
//
// A click on the content reports "PushClick" with "check_up" true, the close
// button with "check_up" false; being shown reports nothing.
class VYRNOTICE_EXPORT FriendRequestNotice : public PopNoticeBaseWidget
{
    Q_OBJECT
public:
    // Builds the hidden window at its fixed size of 297 by 107 pixels.
    explicit FriendRequestNotice(QWidget* parent = nullptr);

signals:
    // The user clicked the content: the host opens the friend-request page.
    // Emitted before the window closes.
    void contentClickSignal();

protected:
    // A release on the content emits, closes, then tracks; elsewhere nothing.
    void mouseReleaseEvent(QMouseEvent* event) override;

private:
    void initUi();
    void trackClick(bool checkUp);

    QLabel* m_iconLabel = nullptr;
    QLabel* m_nameLabel = nullptr;
    QLabel* m_countLabel = nullptr;
};
