#pragma once

#include "HostPart.h"

#include <QList>
#include <QPointer>
#include <QUrl>
#include <QWidget>

// The host's side of the cluster notice reminder, the school certification
// reminder and the friend-request pop-up: each window is created, shown and
// forgotten; what the user asks for is answered here (the detail page of a
// cluster notice, an address opened, the friend-request page).
class SinglePopupHost : public HostPart
{
    Q_OBJECT
public:
    SinglePopupHost(Say say, NoticeStacker* stacker, QObject* parent = nullptr);
    ~SinglePopupHost() override;

    void clusterNoticeRemind(const QString& message, quint64 contentId, quint64 clusterId, quint64 creatorId);
    void schoolCertification();
    void friendRequestPopup();

    // The windows of this host now on the screen, with a name each, for screenshots.
    QList<QPair<QString, QWidget*>> visibleWindows() const;

signals:
    // The user clicked the friend-request pop-up: the page should open.
    void friendRequestPageWanted();

public slots:
    // Stands in for the browser: the address is logged, nothing is started.
    void openUrl(const QUrl& url);

private:
    QList<QPointer<QWidget>> m_popups;
    QPointer<QWidget> m_certificationWindow;
};
