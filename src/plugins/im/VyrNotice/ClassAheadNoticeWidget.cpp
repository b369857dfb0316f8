#include "ClassAheadNoticeWidget.h"

#include "ClassNoticePage_p.h"
#include "CoreEngine.h"
#include "CourseEngine.h"
#include "FutureObserver_p.h"
#include "LessonNoticeText_p.h"
#include "PopNoticeBaseWidget.h"

#include <QBoxLayout>
#include <QLabel>
#include <QPushButton>
#include <QTextBrowser>

ClassAheadNoticeWidget::ClassAheadNoticeWidget(QWidget* parent)
    : QWidget(parent)
    , m_ownerWindow(qobject_cast<PopNoticeBaseWidget*>(parent))
{
    initUi();
    connect(VyrEngine::CourseEngine::instance(), &VyrEngine::CourseEngine::signalCoursePixmapChanged, this,
            &ClassAheadNoticeWidget::onCoursePixmapChanged);
}

void ClassAheadNoticeWidget::initUi()
{
    QBoxLayout* topRow =
        ClassNoticePage::buildTopRow(this, m_ownerWindow, qtTrId("ID_ClassAheadNotice_LessonNotice", -1),
                                     &m_iconLabel, &m_headingLabel, &m_contentBrowser);

    // Intended: named like the enter button, but on this page it is the known button.
    m_enterBtn = ClassNoticePage::buildButton(this, qtTrId("ID_ClassAheadNotice_Known", -1),
                                              QStringLiteral("enterClassBtn"),
                                              QStringLiteral("QPushButton_IMButton_Style1"));
    connect(m_enterBtn, &QPushButton::clicked, this, &ClassAheadNoticeWidget::signalClose);

    auto* outer = new QVBoxLayout(this);
    ClassNoticePage::setOuterMargins(outer);
    outer->addLayout(topRow);
    outer->addStretch();
    outer->addLayout(ClassNoticePage::buildButtonRow({m_enterBtn}));
}

void ClassAheadNoticeWidget::setLessonData(QSharedPointer<VyrEngine::SnapshotLesson> lesson, QString name)
{
    ClassNoticePage::setHeading(m_headingLabel, name);
    if (!lesson)
        return;
    m_schoolId = lesson->schoolId;
    m_courseId = lesson->courseId;
    observeFuture(this,
                  VyrEngine::CourseEngine::instance()->lessonInfoFuture(lesson->schoolId, lesson->courseId,
                                                                        lesson->lessonId),
                  [this, lesson](const QSharedPointer<VyrEngine::LessonInfo>& info) { applyText(lesson, info); });
}

void ClassAheadNoticeWidget::applyText(const QSharedPointer<VyrEngine::SnapshotLesson>& lesson,
                                       const QSharedPointer<VyrEngine::LessonInfo>& info)
{
    const QString lessonName = info ? info->name : QString();
    const LessonNoticeText::Ahead text =
        LessonNoticeText::ahead(lesson->startTime, VyrEngine::CoreEngine::instance()->currentTime());
    // This page loads the cover after the time and before the text.
    loadCover();
    const QString span = ClassNoticePage::nameSpan(this, m_contentBrowser, lessonName);
    m_contentBrowser->setText(text.textTemplate.arg(span).arg(text.timeText));
    m_pushBody = text.textTemplate.arg(lessonName).arg(text.timeText);
    ClassNoticePage::reportPush(m_ownerWindow, m_isCurrentPage, m_pushBody);
}

void ClassAheadNoticeWidget::loadCover()
{
    ClassNoticePage::loadCover(m_iconLabel, this, m_courseId, true);
}

void ClassAheadNoticeWidget::setCurrentPage(bool isCurrentPage)
{
    m_isCurrentPage = isCurrentPage;
}

QString ClassAheadNoticeWidget::pushBody()
{
    if (m_pushBody.isEmpty())
        return m_contentBrowser->toPlainText();
    return m_pushBody;
}

void ClassAheadNoticeWidget::onCoursePixmapChanged(qulonglong schoolId, qulonglong courseId)
{
    if (schoolId != m_schoolId || courseId != m_courseId)
        return;
    loadCover();
}
