#include "SinglePopupFeeder.h"

#include "ContactsEngine.h"
#include "CoreEngine.h"
#include "DemoHost.h"
#include "SchoolSettingManager.h"
#include "DemoHttpServer.h"
#include "ScenarioPlayer.h"
#include "SinglePopupHost.h"
#include "VyrHttpManager.h"

#include <QCoreApplication>
#include <QJsonObject>
#include <QMouseEvent>
#include <QPushButton>

namespace {

quint64 idOf(const QJsonObject& step, const char* key)
{
    return quint64(step.value(QLatin1String(key)).toDouble());
}

// The newest visible window of `className`.
QWidget* newest(DemoHost* host, const char* className)
{
    const auto windows = host->singlePopups()->visibleWindows();
    for (int i = windows.size() - 1; i >= 0; --i) {
        if (windows.at(i).second->inherits(className))
            return windows.at(i).second;
    }
    return nullptr;
}

void clickButton(DemoHost* host, QWidget* window, const QString& name)
{
    auto* button = window ? window->findChild<QPushButton*>(name) : nullptr;
    if (!button) {
        host->say(QStringLiteral("user: no button %1 to click").arg(name));
        return;
    }
    host->say(QStringLiteral("user: clicks %1").arg(name));
    button->click();
}

VyrDev::HttpReply answerFor(const QString& answer, int delayMs)
{
    if (answer == QLatin1String("deleted"))
        return VyrDev::HttpReply::json(R"({"error_info":{"errno":2,"error":"notice deleted"}})");
    if (answer == QLatin1String("notJson"))
        return VyrDev::HttpReply::json("<html>maintenance</html>");
    if (answer == QLatin1String("httpError"))
        return VyrDev::HttpReply::error(500, "internal error");
    VyrDev::HttpReply exists = VyrDev::HttpReply::json(R"({"error_info":{"errno":1,"error":""}})");
    if (answer == QLatin1String("slow"))
        exists.delayMs = delayMs;
    return exists;
}

} // namespace

void SinglePopupFeeder::registerActions(ScenarioPlayer* player, DemoHost* host, DemoHttpServer* server)
{
    player->addAction(QStringLiteral("clusterNoticeRemind"), [host](const QJsonObject& step) {
        const QString nickname = step.value(QStringLiteral("nickname")).toString();
        if (!nickname.isEmpty())
            VyrEngine::ContactsEngine::instance()->setClusterMemberNickname(idOf(step, "clusterId"),
                                                                           idOf(step, "creatorId"), nickname);
        host->singlePopups()->clusterNoticeRemind(step.value(QStringLiteral("content")).toString(),
                                                  idOf(step, "contentId"), idOf(step, "clusterId"),
                                                  idOf(step, "creatorId"));
    });
    player->addAction(QStringLiteral("noticeServer"), [host, server](const QJsonObject& step) {
        const QString answer = step.value(QStringLiteral("answer")).toString();
        if (answer == QLatin1String("gone")) {
            server->stop();
            host->say(QStringLiteral("server: gone"));
            return;
        }
        server->setRouteReply(VyrHttpManager::ClusterNoticeDetailsPath.toUtf8(),
                          answerFor(answer, step.value(QStringLiteral("delay")).toInt()));
        host->say(QStringLiteral("server: notice details answer %1").arg(answer));
    });
    player->addAction(QStringLiteral("clickNoticeRemind"), [host](const QJsonObject& step) {
        const bool view = step.value(QStringLiteral("button")).toString() == QLatin1String("view");
        clickButton(host, newest(host, "NoticeRemindNoticeWidget"),
                    view ? QStringLiteral("viewNowBtn") : QStringLiteral("m_laterBtn"));
    });
    player->addAction(QStringLiteral("schoolCertification"), [host](const QJsonObject&) {
        // The school's own domain is known, so the certify button is enabled.
        Org::SchoolSettingManager::getInstance()->putDomain(VyrEngine::CoreEngine::instance()->currentUid(), 1,
                                                            QStringLiteral("school7.vyr.example"));
        host->singlePopups()->schoolCertification();
    });
    player->addAction(QStringLiteral("clickCertification"), [host](const QJsonObject& step) {
        const bool certify = step.value(QStringLiteral("button")).toString() == QLatin1String("certify");
        QWidget* window = nullptr;
        for (const auto& entry : host->singlePopups()->visibleWindows()) {
            if (entry.first == QLatin1String("NotAuthSchoolNotice"))
                window = entry.second;
        }
        clickButton(host, window,
                    certify ? QStringLiteral("IM_GreenBgWhiteText_Button") : QStringLiteral("IM_WhiteBgBlackText_Button"));
    });
    player->addAction(QStringLiteral("friendRequestPopup"),
                      [host](const QJsonObject&) { host->singlePopups()->friendRequestPopup(); });
    player->addAction(QStringLiteral("clickFriendRequestPopup"), [host](const QJsonObject&) {
        QWidget* notice = newest(host, "FriendRequestNotice");
        if (!notice) {
            host->say(QStringLiteral("user: no friend-request pop-up to click"));
            return;
        }
        host->say(QStringLiteral("user: clicks the friend-request pop-up"));
        // A press and release in the middle of the card, as the window system delivers them.
        const QPointF pos(150, 60);
        QMouseEvent press(QEvent::MouseButtonPress, pos, Qt::LeftButton, Qt::LeftButton, Qt::NoModifier);
        QCoreApplication::sendEvent(notice, &press);
        QMouseEvent release(QEvent::MouseButtonRelease, pos, Qt::LeftButton, Qt::NoButton, Qt::NoModifier);
        QCoreApplication::sendEvent(notice, &release);
    });
}
