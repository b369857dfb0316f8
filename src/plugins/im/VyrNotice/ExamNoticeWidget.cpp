#include "ExamNoticeWidget.h"

#include "CardParts_p.h"
#include "NoticeLog_p.h"
#include "ContactsEngine.h"
#include "ExamManager.h"

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

// Out of line: the card's parts are a private type.
ExamNoticeWidget::~ExamNoticeWidget() = default;

void ExamNoticeWidget::initUi()
{
    m_card = CardParts::buildWorkCard(this, m_contentWidget, m_shadowMargins, qtTrId("ID_ExamNotice_TestNotice", -1));

    connect(m_card->details, &QPushButton::clicked, this, &ExamNoticeWidget::onViewDetailsClicked);
    connect(m_card->later, &QPushButton::clicked, this, &ExamNoticeWidget::onLaterClicked);
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
    CardParts::showWork(this, *m_card,
                        {key, m_info->name, key == QLatin1String(kExpiryKey), m_info->expireCount, m_isReviewSide,
                         m_userId, m_info->courseId},
                        QMessageLogger(QT_MESSAGELOG_FILE, QT_MESSAGELOG_LINE, QT_MESSAGELOG_FUNC, lcVyrNotice().categoryName()));
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
    QMap<QString, QVariant> data = CardParts::clickData(m_card->browser->toPlainText(), kScene, checkUp);
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
    if (m_info && CardParts::namesCourse(ids, m_info->courseId))
        close();
}
