#pragma once

#include <QList>
#include <QObject>
#include <QPointer>
#include <QUrl>
#include <QWidget>

#include <functional>

class NoticeStacker;

// The host's side of the cluster notice reminder, the school certification
// reminder and the friend-request pop-up: each window is created, shown and
// forgotten; what the user asks for is answered here (the detail page of a
// cluster notice, an address opened, the friend-request page).
class SinglePopupHost : public QObject
{
    Q_OBJECT
public:
    using Say = std::function<void(const QString&)>;

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
    Say m_say;
    NoticeStacker* m_stacker;
    QList<QPointer<QWidget>> m_popups;
    QPointer<QWidget> m_certificationWindow;
};
