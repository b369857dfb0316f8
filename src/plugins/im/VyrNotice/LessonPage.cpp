#include "LessonPage_p.h"

#include "CardParts_p.h"
#include "CourseEngine.h"
#include "FutureObserver_p.h"
#include "PopNoticeBaseWidget.h"

#include <QBoxLayout>
#include <QTextBrowser>

LessonPage::LessonPage(QWidget* parent, const QString& heading, bool coverWithRatio)
    : QWidget(parent)
    , m_ownerWindow(qobject_cast<PopNoticeBaseWidget*>(parent))
    , m_coverWithRatio(coverWithRatio)
{
    m_topRow = CardParts::buildTopRow(this, m_ownerWindow, heading, &m_iconLabel, &m_headingLabel, &m_contentBrowser);
    connect(VyrEngine::CourseEngine::instance(), &VyrEngine::CourseEngine::signalCoursePixmapChanged, this,
            &LessonPage::onCoursePixmapChanged);
}

void LessonPage::setLessonData(QSharedPointer<VyrEngine::SnapshotLesson> lesson, QString name)
{
    CardParts::setHeading(m_headingLabel, name);
    if (!lesson)
        return;
    m_lessonId = lesson->lessonId;
    m_schoolId = lesson->schoolId;
    m_courseId = lesson->courseId;
    // The lesson is held until the details arrive.
    observeFuture(this,
                  VyrEngine::CourseEngine::instance()->lessonInfoFuture(lesson->schoolId, lesson->courseId,
                                                                        lesson->lessonId),
                  [this, lesson](const QSharedPointer<VyrEngine::LessonInfo>& info) {
                      applyText(lesson, info ? info->name : QString());
                  });
}

void LessonPage::loadCover()
{
    CardParts::loadCover(m_iconLabel, this, m_courseId, m_coverWithRatio);
}

void LessonPage::keepPushBody(const QString& pushBody)
{
    m_pushBody = pushBody;
    CardParts::reportPush(m_ownerWindow, m_isCurrentPage, m_pushBody);
}

void LessonPage::setCurrentPage(bool isCurrentPage)
{
    m_isCurrentPage = isCurrentPage;
}

QString LessonPage::pushBody()
{
    if (m_pushBody.isEmpty())
        return m_contentBrowser->toPlainText();
    return m_pushBody;
}

void LessonPage::onCoursePixmapChanged(qulonglong schoolId, qulonglong courseId)
{
    if (schoolId != m_schoolId || courseId != m_courseId)
        return;
    loadCover();
}
