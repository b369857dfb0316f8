#include "ExamNoticeWidget.h"

#include "ClassNoticePage_p.h"
#include "ContactsEngine.h"
#include "ExamManager.h"
#include "WorkNoticeParts_p.h"

#include <QDebug>
#include <QLabel>
#include <QPushButton>
#include <QTextBrowser>
#include <QToolButton>

namespace {
const QString kScene = QStringLiteral("发布测验");
const char* const kExpiryKey = "ID_ExamNotice_TestWillExpire";
} // namespace

ExamNoticeWidget::ExamNoticeWidget(quint64 userId, int state, std::shared_ptr<ExamInfo> info, bool reviewSide,
                                   QWidget* parent)
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

void ExamNoticeWidget::initUi()
{
    const WorkNoticeParts::Widgets parts =
        WorkNoticeParts::build(this, m_contentWidget, m_shadowMargins, qtTrId("ID_ExamNotice_TestNotice", -1));
    m_iconLabel = parts.icon;
    m_headingLabel = parts.heading;
    m_contentBrowser = parts.browser;
    m_viewDetailsBtn = parts.details;
    m_laterBtn = parts.later;

    connect(m_viewDetailsBtn, &QPushButton::clicked, this, &ExamNoticeWidget::onViewDetailsClicked);
    connect(m_laterBtn, &QPushButton::clicked, this, &ExamNoticeWidget::onLaterClicked);
    // Only tracks: the card's own connection, made first, has closed the window.
    connect(m_closeBtn, &QToolButton::clicked, this, &ExamNoticeWidget::onCloseClicked);
}

QString ExamNoticeWidget::templateKey() const
{
    if (m_isReviewSide) {
        switch (m_noticeState) {
        case 3: return QStringLiteral("ID_ExamNotice_TestBeSubmitCkeck");
        case 9: return QStringLiteral("ID_ExamNotice_TestBeSubmitLaterCkeck");
        default: return QString();
        }
    }
    switch (m_noticeState) {
    case 1: return QStringLiteral("ID_ExamNotice_TestStartedSubmitOnTime");
    case 4: return QStringLiteral("ID_ExamNotice_TestBeReviewedCheck");
    case 5: return QStringLiteral("ID_ExamNotice_TestBeReviewedAgainCheck");
    case 8: return QLatin1String(kExpiryKey);
    default: return QString();
    }
}

void ExamNoticeWidget::updateData()
{
    // A window without a test has nothing to show.
    if (!m_info) {
        close();
        return;
    }
    const QString key = templateKey();
    // Intended: an unknown state closes the window and the rest still runs, with no template.
    if (key.isEmpty())
        close();

    loadCover();
    if (!m_isReviewSide) {
        m_contentBrowser->setText(WorkNoticeParts::workingText(this, m_contentBrowser, key, m_info->name,
                                                               key == QLatin1String(kExpiryKey),
                                                               m_info->expireCount));
        return;
    }
    const std::shared_ptr<VyrEngine::UserInfo> user = VyrEngine::ContactsEngine::instance()->userInfoById(m_userId);
    QString userName;
    if (user)
        userName = user->displayName();
    else
        qInfo() << "can not find user info:" << m_userId;
    m_contentBrowser->setText(WorkNoticeParts::reviewText(this, m_contentBrowser, key, userName, m_info->name));
}

void ExamNoticeWidget::loadCover()
{
    ClassNoticePage::loadCover(m_iconLabel, m_iconLabel, m_info->courseId, false);
}

void ExamNoticeWidget::connectOutside()
{
    // Queued: a withdrawal that arrives while the window is being built takes effect after.
    connect(ExamManager::instance(), &ExamManager::examDeleteNoticeSingal, this, &ExamNoticeWidget::onExamDeleted,
            Qt::QueuedConnection);
    connect(VyrEngine::ContactsEngine::instance(), &VyrEngine::ContactsEngine::signalDelCluster, this,
            &ExamNoticeWidget::onClusterDeleted, Qt::QueuedConnection);
}

void ExamNoticeWidget::trackClick(bool checkUp)
{
    QMap<QString, QVariant> data;
    data.insert(QStringLiteral("push_body"), m_contentBrowser->toPlainText());
    data.insert(QStringLiteral("push_scenes"), kScene);
    data.insert(QStringLiteral("check_up"), checkUp);
    trackClickPushMessage(data);
}

void ExamNoticeWidget::onViewDetailsClicked()
{
    // The test reports before it acts; the homework window acts first.
    trackClick(true);
    if (m_info)
        emit signalSeeDetails(m_info->courseId, m_info->examId, m_info->activityId);
    close();
}

void ExamNoticeWidget::onLaterClicked()
{
    trackClick(false);
    close();
}

void ExamNoticeWidget::onCloseClicked()
{
    trackClick(false);
}

void ExamNoticeWidget::onExamDeleted(quint64 courseId, quint64 examId)
{
    Q_UNUSED(courseId)
    if (!m_info || examId != m_info->examId)
        return;
    close();
}

void ExamNoticeWidget::onClusterDeleted(const std::vector<VyrEngine::ClusterID>& ids)
{
    if (!m_info)
        return;
    for (const VyrEngine::ClusterID& id : ids) {
        if (id.id() == m_info->courseId) {
            close();
            break;
        }
    }
}
