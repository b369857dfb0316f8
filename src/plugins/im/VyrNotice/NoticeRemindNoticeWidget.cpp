#include "NoticeRemindNoticeWidget.h"

#include "AvatarManager.h"
#include "CardParts_p.h"
#include "ClusterID.h"
#include "ClusterInfo.h"
#include "CommonPostParamPod.h"
#include "ContactsEngine.h"
#include "GlobalStyle.h"
#include "ImSignalObject.h"
#include "ImageOp.h"
#include "NoticeLog_p.h"
#include "NoticeRemindText_p.h"
#include "OutsideText_p.h"
#include "ResponsePod.h"
#include "SimpleMessagePopup.h"
#include "VyrHttpManager.h"
#include "WaitingSpinnerWidget.h"

#include <QDebug>
#include <QFontMetrics>
#include <QHBoxLayout>
#include <QJsonDocument>
#include <QJsonObject>
#include <QLabel>
#include <QPushButton>
#include <QTimer>
#include <QToolButton>
#include <QVBoxLayout>

#include <map>
#include <vector>

namespace {
constexpr int kTextWidth = 215;
constexpr int kLoadingTimeoutMs = 300000;
constexpr int kMessageDurationMs = 3000;
// The kind of detail page the host opens for a cluster notice.
constexpr int kClusterNoticePage = 2;
const QString kScene = QStringLiteral("学生端：收到通知二次提醒");

// A line of the card in its own style sheet, 215 wide; the text comes from other people and shows as typed.
QLabel* buildTextLabel(QWidget* parent, const QString& name, int height, const QString& color, const QString& text)
{
    auto* label = new QLabel(parent);
    label->setObjectName(name);
    label->setFixedSize(kTextWidth, height);
    label->setStyleSheet(
        QStringLiteral("QLabel#%1{font-size: 14px;font-weight: 400;color: %2;background-color:transparent;}")
            .arg(name, color));
    OutsideText::makePlain(label);
    label->setText(text);
    return label;
}

// A plain 86 x 26 button in a theme style, 13 px.
QPushButton* buildButton(QWidget* parent, const QString& text, const QString& name, const QString& style)
{
    auto* button = new QPushButton(text, parent);
    button->setObjectName(name);
    button->setFixedSize(CardParts::ButtonWidth, CardParts::ButtonHeight);
    GlobalStyle::getInstance()->applyCurrentFontSize(button, 13, 50);
    GlobalStyle::getInstance()->applyCurrentStyle(button, style, false);
    return button;
}
} // namespace

NoticeRemindNoticeWidget::NoticeRemindNoticeWidget(QString message, quint64 contentId, quint64 gid,
                                                   quint64 creatorId, QWidget* parent)
    : PopNoticeBaseWidget(parent)
    , m_message(message)
    , m_contentId(contentId)
    , m_gid(gid)
    , m_creatorId(creatorId)
{
    initUi();
}

void NoticeRemindNoticeWidget::initUi()
{
    CardParts::fixCardSize(this, m_shadowMargins);
    setWindowTitle(qtTrId("ID_Cluster_Notice_Title_Notice", -1));

    m_avatarLabel = new QLabel(this);
    m_avatarLabel->setFixedSize(CardParts::IconSize, CardParts::IconSize);
    const QPixmap avatar = AvatarManager::instance().getClusterAvatar(VyrEngine::ClusterID(m_gid, 0), false);
    QPixmap rounded = ImageOp::roundedRectCoursePixmap(avatar, QSizeF(m_avatarLabel->size()),
                                                       m_avatarLabel->devicePixelRatioF());
    rounded.setDevicePixelRatio(m_avatarLabel->devicePixelRatio());
    m_avatarLabel->setPixmap(rounded);

    m_messageContentLabel = buildTextLabel(this, QStringLiteral("messageContentLabel"), 40,
                                           QStringLiteral("#232323"), messageText());
    m_clusterNameLabel =
        buildTextLabel(this, QStringLiteral("clusterNameLabel"), 20, QStringLiteral("#999999"), clusterName());
    m_viewNowBtn = buildButton(this, qtTrId("ID_Notice_ViewNow", -1), QStringLiteral("viewNowBtn"),
                               QStringLiteral("QPushButton_IMButton_Style1"));
    m_laterBtn = buildButton(this, qtTrId("ID_ClassNotice_Later", -1), QStringLiteral("m_laterBtn"),
                             QStringLiteral("QPushButton_IMButton_Style4"));

    auto* left = new QVBoxLayout();
    left->setContentsMargins(0, 0, 0, 0);
    left->setSpacing(0);
    left->addWidget(m_avatarLabel);
    left->addStretch(0);

    auto* right = new QVBoxLayout();
    right->setContentsMargins(0, 0, 0, 0);
    right->setSpacing(0);
    right->addWidget(m_messageContentLabel);
    right->addSpacing(6);
    right->addWidget(m_clusterNameLabel);
    right->addStretch(0);

    auto* top = new QHBoxLayout();
    top->setContentsMargins(0, 0, 0, 0);
    top->setSpacing(0);
    top->addLayout(left);
    top->addSpacing(12);
    top->addLayout(right);

    CardParts::installBody(m_contentWidget, top, {m_viewNowBtn, m_laterBtn});

    connect(m_viewNowBtn, &QPushButton::clicked, this, &NoticeRemindNoticeWidget::onViewNow);
    connect(m_laterBtn, &QPushButton::clicked, this, [this]() {
        close();
        trackClick(false);
    });
    // Only tracks: the card's own connection closes the window.
    connect(m_closeBtn, &QToolButton::clicked, this, [this]() { trackClick(false); });
}

QString NoticeRemindNoticeWidget::messageText() const
{
    qCInfo(lcVyrNotice) << "get cluster member nickname, gid" << m_gid << "creatorId:" << m_creatorId;
    std::map<quint64, QString> nicknames = VyrEngine::ContactsEngine::instance()->clusterMemberNicknames(
        VyrEngine::ClusterID(m_gid, 0), std::vector<quint64>{m_creatorId}, QString(), false);
    // The subscript gives an empty name for a sender the cluster doesn't know.
    return NoticeRemindText::compose(nicknames[m_creatorId], m_message);
}

QString NoticeRemindNoticeWidget::clusterName() const
{
    const auto info = VyrEngine::ContactsEngine::instance()->clusterInfoById(VyrEngine::ClusterID(m_gid, 0), false);
    if (!info)
        return QString();
    QFont font;
    font.setWeight(50);
    font.setPixelSize(14);
    return QFontMetrics(font).elidedText(info->name().simplified(), Qt::ElideRight, kTextWidth);
}

void NoticeRemindNoticeWidget::onViewNow()
{
    startLoading(qtTrId("ID_Requesting", -1), this);
    auto param = QSharedPointer<CommonPostParamPod>::create(0, QPointer<QObject>(this), false, false);
    // The window is the request's context: no answer reaches a window that is gone.
    VyrHttpManager::requestClusterNoticeDetails(
        QString::number(m_contentId),
        [this](QSharedPointer<ResponsePod> response) {
            stopLoading();
            int errorNo = 1;
            const int networkError = response->networkError;
            if (networkError == 0) {
                const QJsonObject object = QJsonDocument::fromJson(response->body).object();
                const QJsonObject errorInfo = object.value(QStringLiteral("error_info")).toObject();
                errorNo = errorInfo.value(QStringLiteral("errno")).toInt();
                // Intended: read and not used; the log line carries the pod's text instead.
                const QString error = errorInfo.value(QStringLiteral("error")).toString();
                Q_UNUSED(error)
                if (errorNo == 1) {
                    emit ImSignalObject::instance()->signalViewClusterNoticeDetails(kClusterNoticePage, m_contentId);
                    qCInfo(lcVyrNotice) << "emit signalViewClusterNoticeDetails, m_contentId" << m_contentId;
                    close();
                }
            }
            if (networkError != 0 || errorNo != 1) {
                const QSize windowSize = size();
                const QPoint windowPos = pos();
                close();
                // Every failure, a network one included, reads as a deleted notice.
                SimpleMessagePopup::popupSimpleMessage(qtTrId("ID_Notice_NoticeDeleted", -1), kMessageDurationMs,
                                                       windowSize, windowPos);
                // Intended: after a network failure errorNo is still its initial 1.
                qCInfo(lcVyrNotice).noquote() << QStringLiteral("url:%1, errorNo=%2, errorString:%3")
                               .arg(response->url.toString())
                               .arg(errorNo)
                               .arg(response->errorString);
            }
        },
        param);
    // Intended: tracked at once, not after the answer.
    trackClick(true);
}

void NoticeRemindNoticeWidget::trackClick(bool checkUp)
{
    QMap<QString, QVariant> data = CardParts::clickData(m_messageContentLabel->text(), kScene, checkUp);
    trackClickPushMessage(data);
}

void NoticeRemindNoticeWidget::initLoadingWidget(QWidget* parent)
{
    // Intended: a second request replaces the members and leaves the first
    // spinner and timer to their parent until the window goes.
    m_waitingSpinner = new WaitingSpinnerWidget(parent, true, true);
    m_waitingSpinner->setInnerRadius(4);
    m_waitingSpinner->setLineLength(15);
    m_waitingSpinner->setLineWidth(6);
    m_waitingSpinner->setBorderRaius(4.0);
    m_waitingSpinner->setOpacity(0.5);
    m_loadingTimer = new QTimer(this);
    m_loadingTimer->setInterval(kLoadingTimeoutMs);
    connect(m_loadingTimer, &QTimer::timeout, this, &NoticeRemindNoticeWidget::loadingTimeOutSlot);
}

void NoticeRemindNoticeWidget::startLoading(QString text, QWidget* parent)
{
    initLoadingWidget(parent);
    m_waitingSpinner->stop();
    m_waitingSpinner->setText(text, true);
    m_waitingSpinner->start();
    m_loadingTimer->start();
}

void NoticeRemindNoticeWidget::stopLoading()
{
    // Already stopped (timed out, or the other request's answer came first).
    if (!m_waitingSpinner || !m_loadingTimer)
        return;
    if (m_loadingTimer->isActive())
        m_loadingTimer->stop();
    m_waitingSpinner->stop();
    m_waitingSpinner->hide();
    m_waitingSpinner->update();
    delete m_waitingSpinner;
    delete m_loadingTimer;
    m_waitingSpinner = nullptr;
    m_loadingTimer = nullptr;
}

void NoticeRemindNoticeWidget::loadingTimeOutSlot()
{
    // Back to idle; the request itself is left to end on its own.
    stopLoading();
}
