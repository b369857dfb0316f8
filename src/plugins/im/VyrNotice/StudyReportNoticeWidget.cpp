#include "StudyReportNoticeWidget.h"

#include "CardParts_p.h"
#include "ContactsEngine.h"
#include "CourseEngine.h"
#include "FutureObserver_p.h"
#include "ImSignalObject.h"
#include "NameSpan_p.h"
#include "NoticeLog_p.h"
#include "OpaqueCommonPod.h"

#include <QBoxLayout>
#include <QDebug>
#include <QFontMetrics>
#include <QLabel>
#include <QPushButton>
#include <QTextDocument>
#include <QToolButton>

namespace {
const QString kLearningScene = QStringLiteral("发布学习报告");
const QString kTeachingScene = QStringLiteral("发布教学报告");
// Course type whose name may stand for a missing cluster.
constexpr qint16 kNamedCourseType = 3;
} // namespace

StudyReportNoticeWidget::StudyReportNoticeWidget(QSharedPointer<VyrEngine::SnapshotLesson> lesson, QWidget* parent)
    : PopNoticeBaseWidget(parent)
    , m_lesson(lesson)
{
    initUi();
    updateData();
}

bool StudyReportNoticeWidget::isLearner() const
{
    return m_lesson && m_lesson->role == 1;
}

void StudyReportNoticeWidget::initUi()
{
    CardParts::fixCardSize(this, m_shadowMargins);
    setWindowTitle(qtTrId("ID_StudyReportNotice_LearningReport", -1));

    m_iconLabel = new QLabel(m_contentWidget);
    m_iconLabel->setObjectName(QStringLiteral("m_iconLabel"));
    m_iconLabel->setFixedSize(CardParts::IconSize, CardParts::IconSize);
    CardParts::setFirstPicture(m_iconLabel);

    // The heading becomes the cluster's or the course's name.
    m_headingLabel = CardParts::buildHeadingLabel(this, m_contentWidget);
    m_headingLabel->setText(isLearner() ? qtTrId("ID_StudyReportNotice_LearningReport", -1)
                                        : qtTrId("ID_StudyReportNotice_TeachingReport", -1));
    if (!isLearner())
        setWindowTitle(qtTrId("ID_StudyReportNotice_TeachingReport", -1));

    m_contentLabel = CardParts::buildContentLabel(this, m_contentWidget);
    m_contentLabel->setAlignment(Qt::AlignTop);

    QBoxLayout* topRow = CardParts::buildPictureAndText(m_iconLabel, 0, m_headingLabel, m_contentLabel);
    CardParts::buildDetailsAndLater(m_contentWidget, &m_viewDetailsBtn, &m_laterBtn);
    CardParts::installBody(m_contentWidget, topRow, {m_viewDetailsBtn, m_laterBtn});

    connect(m_viewDetailsBtn, &QPushButton::clicked, this, &StudyReportNoticeWidget::onViewDetails);
    connect(m_laterBtn, &QPushButton::clicked, this, &StudyReportNoticeWidget::onLater);
    // Only tracks: the card's own connection closes the window.
    connect(m_closeBtn, &QToolButton::clicked, this, [this]() { trackClick(false, false); });
}

QString StudyReportNoticeWidget::clusterName() const
{
    const std::shared_ptr<VyrEngine::ClusterInfo> cluster = CardParts::lessonCluster(m_lesson->courseId);
    return cluster ? cluster->name() : QString();
}

bool StudyReportNoticeWidget::mayUseCourseName() const
{
    auto* engine = VyrEngine::CourseEngine::instance();
    if (engine->isKnownLessonKind(m_lesson->lessonId))
        return true;
    if (m_lesson->courseType == kNamedCourseType)
        return true;
    const QSharedPointer<VyrEngine::CourseRecord> course = engine->courseRecord(m_lesson->courseId);
    return course && course->courseType == kNamedCourseType;
}

void StudyReportNoticeWidget::updateData()
{
    // Intended: the misspelling is what the client has always shown.
    QString name = QStringLiteral("Unkown");
    if (m_lesson) {
        const QString cluster = clusterName();
        if (!cluster.isNull()) {
            name = cluster;
        } else if (mayUseCourseName()) {
            // Polled, not waited for: a future still running keeps the placeholder, silently.
            const VyrEngine::CourseEngine::LessonInfoFuture course =
                VyrEngine::CourseEngine::instance()->courseInfoFuture(m_lesson);
            if (course.isFinished() && course.resultCount() > 0 && course.resultAt(0))
                name = course.resultAt(0)->name;
        } else {
            qCInfo(lcVyrNotice) << "oops, failed to get cluster name" << m_lesson->courseId;
        }
    }
    CardParts::setHeading(m_headingLabel, name);

    if (!m_lesson) {
        close();
        return;
    }
    if (isLearner()) {
        m_textTemplate = qtTrId("ID_StudyReportNotice_GoodJobInLesson", -1);
        m_pushScenes = kLearningScene;
    } else {
        m_textTemplate = qtTrId("ID_StudyReportNotice_TeachingReportOK", -1);
        m_pushScenes = kTeachingScene;
    }
    const quint64 courseId = m_lesson->courseId;
    observeFuture(this,
                  VyrEngine::CourseEngine::instance()->lessonInfoFuture(m_lesson->schoolId, courseId,
                                                                        m_lesson->lessonId),
                  [this, courseId](const QSharedPointer<VyrEngine::LessonInfo>& info) {
                      CardParts::loadCover(m_iconLabel, this, courseId, false);
                      applyLessonInfo(info ? info->name : QString());
                  });
}

void StudyReportNoticeWidget::applyLessonInfo(const QString& lessonName)
{
    const QString markup = NameSpan::elidedEscaped(lessonName, QFontMetrics(m_contentLabel->font()));
    // Intended: one span for every country, unlike the other notices.
    m_contentLabel->setText(m_textTemplate.arg(NameSpan::padded(markup)));
}

QString StudyReportNoticeWidget::toPlainText(const QString& html)
{
    QTextDocument document;
    document.setHtml(html);
    return document.toPlainText();
}

void StudyReportNoticeWidget::trackClick(bool checkUp, bool withTitle)
{
    QMap<QString, QVariant> data = CardParts::clickData(
        toPlainText(m_contentLabel->text()), m_pushScenes.isEmpty() ? kLearningScene : m_pushScenes, checkUp);
    // Intended: put in empty and replaced by the tracking with the title.
    if (withTitle)
        data.insert(QStringLiteral("push_title"), QString());
    trackClickPushMessage(data);
}

void StudyReportNoticeWidget::onViewDetails()
{
    if (!m_lesson) {
        qCDebug(lcVyrNotice) << "lesson is null";
        close();
        return;
    }
    trackClick(true, true);
    emit ImSignalObject::instance()->signalStudyReportClicked(m_lesson, 2, QSharedPointer<OpaqueCommonPod>());
    close();
}

void StudyReportNoticeWidget::onLater()
{
    trackClick(false, false);
    close();
}
