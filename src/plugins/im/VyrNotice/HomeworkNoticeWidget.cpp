#include "HomeworkNoticeWidget.h"

#include "CardParts_p.h"
#include "NoticeLog_p.h"
#include "ContactsEngine.h"
#include "CoreEngine.h"
#include "HomeworkManager.h"

#include <QDebug>
#include <QLabel>
#include <QPushButton>
#include <QTextBrowser>
#include <QToolButton>
#include <algorithm>

namespace {
const QString kScene = QStringLiteral("发布作业");
const char* const kExpiryKey = "ID_HomeworkNotice_TestWillExpire";
} // namespace

HomeworkNoticeWidget::HomeworkNoticeWidget(quint64 userId, int state, std::shared_ptr<HomeworkEntity> info,
                                           bool reviewSide, QWidget* parent)
    : PopNoticeBaseWidget(parent)
    , m_userId(userId)
    , m_noticeState(state)
    , m_info(std::move(info))
    , m_isReviewSide(reviewSide)
{
    initUi();
    updateData();
    connectOutside();
}

// Out of line: the card's parts are a private type.
HomeworkNoticeWidget::~HomeworkNoticeWidget() = default;

void HomeworkNoticeWidget::initUi()
{
    m_card = CardParts::buildWorkCard(this, m_contentWidget, m_shadowMargins, qtTrId("ID_HomeworkNotice_TaskNotice", -1));

    connect(m_card->details, &QPushButton::clicked, this, &HomeworkNoticeWidget::onViewDetailsClicked);
    connect(m_card->later, &QPushButton::clicked, this, &HomeworkNoticeWidget::onLaterClicked);
    // Only tracks: the card's own connection, made first, has closed the window.
    connect(m_closeBtn, &QToolButton::clicked, this, &HomeworkNoticeWidget::onCloseClicked);
}

QString HomeworkNoticeWidget::templateKey() const
{
    return m_isReviewSide ? reviewSideKey() : workingSideKey();
}

QString HomeworkNoticeWidget::workingSideKey() const
{
    switch (m_noticeState) {
    case 1: return QStringLiteral("ID_HomeworkNotice_TestStartedSubmitOnTime");
    case 4:
        return m_info->revised ? QStringLiteral("ID_HomeworkNotice_TaskNeedBeRevised")
                               : QStringLiteral("ID_HomeworkNotice_TaskNeedBeReviewCheck");
    case 5: return QStringLiteral("ID_HomeworkNotice_TaskNeedBeReviewAgainCheck");
    case 6: return QStringLiteral("ID_HomeworkNotice_TaskUnFinishedSubmitInTime");
    case 10: return QLatin1String(kExpiryKey);
    case 12: return QStringLiteral("ID_HomeworkNotice_RemindStuSubmitAgain");
    default: return QString();
    }
}

QString HomeworkNoticeWidget::reviewSideKey() const
{
    switch (m_noticeState) {
    case 3:
    case 9:
        return m_info->revised ? QStringLiteral("ID_HomeworkNotice_RevisedTaskCheck")
                               : QStringLiteral("ID_HomeworkNotice_TestBeSubmitCkeck");
    // Intended: a late submission reads the same whether or not it is a revision.
    case 11: return QStringLiteral("ID_HomeworkNotice_TestBeSubmitLaterCkeck");
    default: return QString();
    }
}

void HomeworkNoticeWidget::updateData()
{
    // A window without a homework has nothing to show.
    if (!m_info) {
        close();
        return;
    }
    const QString key = templateKey();
    CardParts::showWork(this, *m_card,
                        {key, m_info->name, key == QLatin1String(kExpiryKey), m_info->expireCount, m_isReviewSide,
                         m_userId, m_info->courseId},
                        QMessageLogger(QT_MESSAGELOG_FILE, QT_MESSAGELOG_LINE, QT_MESSAGELOG_FUNC, lcVyrNotice().categoryName()));
}

void HomeworkNoticeWidget::connectOutside()
{
    // Queued: a withdrawal that arrives while the window is being built takes effect after.
    connect(HomeworkManager::instance(), &HomeworkManager::homeworkDeleteNoticeSingal, this,
            &HomeworkNoticeWidget::onHomeworkDeleted, Qt::QueuedConnection);
    VyrEngine::ContactsEngine* contacts = VyrEngine::ContactsEngine::instance();
    connect(contacts, &VyrEngine::ContactsEngine::signalDelCluster, this, &HomeworkNoticeWidget::onClusterDeleted,
            Qt::QueuedConnection);
    connect(contacts, &VyrEngine::ContactsEngine::updateUserInfo, this, &HomeworkNoticeWidget::onUserInfoUpdated,
            Qt::QueuedConnection);
}

void HomeworkNoticeWidget::trackClick(bool checkUp)
{
    QMap<QString, QVariant> data = CardParts::clickData(m_card->browser->toPlainText(), kScene, checkUp);
    trackClickPushMessage(data);
}

void HomeworkNoticeWidget::onViewDetailsClicked()
{
    // Intended: the homework acts first and reports after, the reverse of the test window.
    if (m_info)
        emit signalSeeDetails(m_info->courseId, m_info->homeworkId, m_info->activityId);
    close();
    trackClick(true);
}

void HomeworkNoticeWidget::onLaterClicked()
{
    // Intended: closes before it reports, the reverse of the test window.
    close();
    trackClick(false);
}

void HomeworkNoticeWidget::onCloseClicked()
{
    trackClick(false);
}

void HomeworkNoticeWidget::onHomeworkDeleted(quint64 courseId, quint64 homeworkId)
{
    Q_UNUSED(courseId)
    if (!m_info || homeworkId != m_info->homeworkId)
        return;
    close();
}

void HomeworkNoticeWidget::onClusterDeleted(const std::vector<VyrEngine::ClusterID>& ids)
{
    if (m_info && CardParts::namesCourse(ids, m_info->courseId))
        close();
}

void HomeworkNoticeWidget::onUserInfoUpdated(const std::vector<quint64>& uids)
{
    // Intended: compared with the logged-in user, not the submitting one, so
    // a change of the student's name doesn't refresh a review notice.
    const quint64 current = VyrEngine::CoreEngine::instance()->currentUid();
    if (std::find(uids.begin(), uids.end(), current) == uids.end())
        return;
    updateData();
}
