#pragma once

#include "PopNoticeBaseWidget.h"
#include "VyrNoticeExport.h"

#include <QString>

class QLabel;
class QPushButton;
class QTimer;
class WaitingSpinnerWidget;

// The second reminder of a cluster notice: the cluster's avatar, the
// sender's nickname and the notice text on at most two lines, the cluster's
// name, and the buttons "View now" and "Later".
//
// A host creates the window with the notice's text and ids, calls
// popNotice() and keeps no pointer; the card (PopNoticeBaseWidget) shows,
// holds for 15 seconds, fades out and deletes it, and closes it on log-out.
//
// "View now" asks the server (VyrHttpManager::requestClusterNoticeDetails)
// whether the notice still exists, with a spinner over the window. If it
// does, ImSignalObject::signalViewClusterNoticeDetails(2, contentId) asks the
// host to open its detail page and the window closes; on any other answer or
// failure the window closes and a three-second message saying the notice
// was deleted stands where it was. An answer that comes after the window is
// gone is dropped. The hold timer keeps running during the request.
//
// Both buttons and the close button report "PushClick": "View now" with
// "check_up" true as soon as it is clicked, the other two with false.
class VYRNOTICE_EXPORT NoticeRemindNoticeWidget : public PopNoticeBaseWidget
{
    Q_OBJECT
public:
    // `message`: the notice's text; `contentId`: its id on the server; `gid`:
    // the cluster; `creatorId`: the sender, whose nickname in the cluster
    // leads the text.
    NoticeRemindNoticeWidget(QString message, quint64 contentId, quint64 gid, quint64 creatorId,
                             QWidget* parent = nullptr);

signals:
    // Declared for hosts that look for it; never emitted, the detail page
    // goes through ImSignalObject.
    void signalViewDetails(qulonglong contentId);

private:
    void initUi();
    void initLoadingWidget(QWidget* parent);
    void startLoading(QString text, QWidget* parent);
    void stopLoading();
    void loadingTimeOutSlot();

    QString messageText() const;
    QString clusterName() const;
    void onViewNow();
    void trackClick(bool checkUp);

    WaitingSpinnerWidget* m_waitingSpinner = nullptr;
    QTimer* m_loadingTimer = nullptr;
    QString m_message;
    quint64 m_contentId = 0;
    quint64 m_gid = 0;
    quint64 m_creatorId = 0;
    QLabel* m_avatarLabel = nullptr;
    QLabel* m_messageContentLabel = nullptr;
    QLabel* m_clusterNameLabel = nullptr;
    QPushButton* m_viewNowBtn = nullptr;
    QPushButton* m_laterBtn = nullptr;
};
