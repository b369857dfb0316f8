#include "ClassStartNoticeWidget.h"

#include "AvatarManager.h"
#include "ClassNoticePage_p.h"
#include "ClusterID.h"
#include "ImageOp.h"
#include "CourseEngine.h"
#include "FutureObserver_p.h"
#include "PopNoticeBaseWidget.h"

#include <QBoxLayout>
#include <QLabel>
#include <QPushButton>
#include <QTextBrowser>

ClassStartNoticeWidget::ClassStartNoticeWidget(QWidget* parent)
    : QWidget(parent)
    , m_ownerWindow(qobject_cast<PopNoticeBaseWidget*>(parent))
{
    initUi();
    connect(VyrEngine::CourseEngine::instance(), &VyrEngine::CourseEngine::signalCoursePixmapChanged, this,
            &ClassStartNoticeWidget::onCoursePixmapChanged);
}

void ClassStartNoticeWidget::initUi()
{
    QBoxLayout* topRow =
        ClassNoticePage::buildTopRow(this, m_ownerWindow, qtTrId("ID_LMSClassPrepareNotice_LessonStart", -1),
                                     &m_iconLabel, &m_headingLabel, &m_contentBrowser);

    ClassNoticePage::buildEnterAndLater(this, &m_enterBtn, &m_laterBtn);
    connect(m_enterBtn, &QPushButton::clicked, this, &ClassStartNoticeWidget::enterClassroom);
    connect(m_laterBtn, &QPushButton::clicked, this, &ClassStartNoticeWidget::signalClose);

    auto* outer = new QVBoxLayout(this);
    ClassNoticePage::setOuterMargins(outer);
    outer->addLayout(topRow);
    outer->addSpacing(12);
    outer->addLayout(ClassNoticePage::buildButtonRow({m_enterBtn, m_laterBtn}));

    // The default cluster picture stands until the first cover arrives.
    const QPixmap avatar = AvatarManager::instance().getClusterAvatar(VyrEngine::ClusterID(0, 0), false);
    QPixmap picture = ImageOp::roundedRectCoursePixmap(avatar, QSizeF(m_iconLabel->size()),
                                                       m_iconLabel->devicePixelRatioF());
    picture.setDevicePixelRatio(m_iconLabel->devicePixelRatio());
    m_iconLabel->setPixmap(picture);
}

void ClassStartNoticeWidget::setLessonData(QSharedPointer<VyrEngine::SnapshotLesson> lesson, QString name)
{
    ClassNoticePage::setHeading(m_headingLabel, name);
    if (!lesson)
        return;
    m_lessonId = lesson->lessonId;
    m_schoolId = lesson->schoolId;
    m_courseId = lesson->courseId;
    observeFuture(this,
                  VyrEngine::CourseEngine::instance()->lessonInfoFuture(lesson->schoolId, lesson->courseId,
                                                                        lesson->lessonId),
                  [this, lesson](const QSharedPointer<VyrEngine::LessonInfo>& info) {
                      // The lesson is held until the details arrive.
                      Q_UNUSED(lesson)
                      applyText(info);
                  });
}

void ClassStartNoticeWidget::applyText(const QSharedPointer<VyrEngine::LessonInfo>& info)
{
    // This page loads the cover first of all.
    loadCover();
    const QString lessonName = info ? info->name : QString();
    const QString textTemplate = qtTrId("ID_LMS_ClassStartNotice_LessonStart", -1);
    m_contentBrowser->setText(textTemplate.arg(ClassNoticePage::nameSpan(this, m_contentBrowser, lessonName)));
    m_contentBrowser->setWordWrapMode(QTextOption::WrapAtWordBoundaryOrAnywhere);
    m_pushBody = textTemplate.arg(lessonName);
    ClassNoticePage::reportPush(m_ownerWindow, m_isCurrentPage, m_pushBody);
}

void ClassStartNoticeWidget::loadCover()
{
    ClassNoticePage::loadCover(m_iconLabel, this, m_courseId, true);
}

void ClassStartNoticeWidget::setCurrentPage(bool isCurrentPage)
{
    m_isCurrentPage = isCurrentPage;
}

QString ClassStartNoticeWidget::pushBody()
{
    if (m_pushBody.isEmpty())
        return m_contentBrowser->toPlainText();
    return m_pushBody;
}

void ClassStartNoticeWidget::onCoursePixmapChanged(qulonglong schoolId, qulonglong courseId)
{
    if (schoolId != m_schoolId || courseId != m_courseId)
        return;
    loadCover();
}

void ClassStartNoticeWidget::enterClassroom()
{
    emit signalEnterClassroom(m_lessonId);
}
