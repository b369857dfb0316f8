#include "SinglePopupHost.h"

#include "FriendRequestNotice.h"
#include "ImSignalObject.h"
#include "NotAuthSchoolNotice.h"
#include "NoticeRemindNoticeWidget.h"
#include "NoticeStacker.h"
#include "SimpleMessagePopup.h"

#include <QDesktopServices>
#include <QVBoxLayout>

SinglePopupHost::SinglePopupHost(Say say, NoticeStacker* stacker, QObject* parent)
    : HostPart(std::move(say), stacker, parent)
{
    // No browser in the demo: an address the library opens is logged.
    QDesktopServices::setUrlHandler(QStringLiteral("http"), this, "openUrl");
    QDesktopServices::setUrlHandler(QStringLiteral("https"), this, "openUrl");
    connect(ImSignalObject::instance(), &ImSignalObject::signalViewClusterNoticeDetails, this,
            [this](int type, quint64 contentId) {
                m_say(QStringLiteral("host: open the detail page of cluster notice %1 (page type %2)")
                          .arg(contentId)
                          .arg(type));
            });
}

SinglePopupHost::~SinglePopupHost()
{
    QDesktopServices::unsetUrlHandler(QStringLiteral("http"));
    QDesktopServices::unsetUrlHandler(QStringLiteral("https"));
    delete m_certificationWindow;
}

void SinglePopupHost::clusterNoticeRemind(const QString& message, quint64 contentId, quint64 clusterId,
                                          quint64 creatorId)
{
    auto* notice = new NoticeRemindNoticeWidget(message, contentId, clusterId, creatorId);
    m_stacker->addWindow(notice);
    m_popups.append(notice);
    notice->popNotice();
}

void SinglePopupHost::schoolCertification()
{
    if (m_certificationWindow)
        return;
    // The reminder is content; the host gives it a window and closes that on signalClose.
    auto* window = new QWidget(nullptr, Qt::Dialog);
    window->setAttribute(Qt::WA_DeleteOnClose);
    window->setWindowTitle(QStringLiteral("VyrNotice"));
    auto* layout = new QVBoxLayout(window);
    auto* notice = new NotAuthSchoolNotice(window);
    layout->addWidget(notice);
    connect(notice, &NotAuthSchoolNotice::signalClose, window, &QWidget::close);
    connect(notice, &NotAuthSchoolNotice::signalClose, this,
            [this]() { m_say(QStringLiteral("host: certification window closed")); });
    window->resize(420, 180);
    window->move(40, 40);
    window->show();
    m_certificationWindow = window;
}

void SinglePopupHost::friendRequestPopup()
{
    auto* notice = new FriendRequestNotice();
    connect(notice, &FriendRequestNotice::contentClickSignal, this,
            [this]() {
                m_say(QStringLiteral("host: open the friend-request page"));
                emit friendRequestPageWanted();
            });
    m_stacker->addWindow(notice);
    m_popups.append(notice);
    notice->popNotice();
}

QList<QPair<QString, QWidget*>> SinglePopupHost::visibleWindows() const
{
    QList<QPair<QString, QWidget*>> windows;
    for (const QPointer<QWidget>& popup : m_popups) {
        if (popup && popup->isVisible())
            windows.append({QString::fromLatin1(popup->metaObject()->className()), popup.data()});
    }
    if (m_certificationWindow && m_certificationWindow->isVisible())
        windows.append({QStringLiteral("NotAuthSchoolNotice"), m_certificationWindow.data()});
    for (SimpleMessagePopup* message : SimpleMessagePopup::openPopups())
        windows.append({QStringLiteral("SimpleMessage"), message});
    return windows;
}

void SinglePopupHost::openUrl(const QUrl& url)
{
    m_say(QStringLiteral("host: open in the browser %1").arg(url.toString()));
}
