#include "ClassNoticeWidget.h"

#include "CardParts_p.h"
#include "ClassAheadNoticeWidget.h"
#include "ClassNoticeManager.h"
#include "ClassPrepareNoticeWidget.h"
#include "ClassStartNoticeWidget.h"
#include "ContactsEngine.h"
#include "CourseEngine.h"
#include "CourseUtilities.h"
#include "ImSignalObject.h"
#include "NoticeLog_p.h"
#include "PushTracking_p.h"

#include <QDebug>
#include <QStackedLayout>
#include <QToolButton>

ClassNoticeWidget::ClassNoticeWidget(ClassNoticeType type, QSharedPointer<VyrEngine::SnapshotLesson> lesson,
                                     QWidget* parent)
    : PopNoticeBaseWidget(parent)
    , m_lesson(lesson)
    , m_noticeType(type)
{
    initUi();
    setNoticeType(type);
    updateData(lesson);
}

ClassNoticeWidget::~ClassNoticeWidget()
{
    ClassNoticeManager::instance()->delClassNotice(lessonId());
    // A timed close counts too; an ahead notice never emits this.
    if (m_noticeType == PrepareNotice || m_noticeType == StartNotice)
        emit ClassNoticeManager::instance()->closeStartNoticeWidget(lessonId());
}

quint64 ClassNoticeWidget::lessonId() const
{
    // A window made without a lesson answers to no lesson id but 0.
    return m_lesson ? m_lesson->lessonId : 0;
}

void ClassNoticeWidget::trackClick(const QString& pushBody, bool checkUp)
{
    QMap<QString, QVariant> data = CardParts::clickData(pushBody, PushTracking::LessonScene, checkUp);
    trackClickPushMessage(data);
}

void ClassNoticeWidget::initUi()
{
    CardParts::fixCardSize(this, m_shadowMargins);
    setWindowTitle(qtTrId("ID_ClassAheadNotice_LessonNotice", -1));

    m_stackedLayout = new QStackedLayout();

    m_aheadWidget = new ClassAheadNoticeWidget(this);
    m_aheadWidget->setObjectName(QStringLiteral("classAheadNotice"));
    connect(m_aheadWidget, &ClassAheadNoticeWidget::signalClose, this, [this]() {
        trackClick(m_aheadWidget->pushBody(), false);
        closeWidget();
    });

    m_prepareWidget = new ClassPrepareNoticeWidget(this);
    m_prepareWidget->setObjectName(QStringLiteral("classPrepareNotice"));
    connect(m_prepareWidget, &ClassPrepareNoticeWidget::signalClose, this, [this]() {
        trackClick(m_prepareWidget->pushBody(), false);
        closeWidget();
    });
    connect(m_prepareWidget, &ClassPrepareNoticeWidget::signalEnterClassroom, this, [this](qulonglong lessonId) {
        // Intended: the prepare page's enter button reports the start page's text.
        trackClick(m_startWidget->pushBody(), true);
        enterClassroom(lessonId);
    });

    m_startWidget = new ClassStartNoticeWidget(this);
    m_startWidget->setObjectName(QStringLiteral("classStartNotice"));
    connect(m_startWidget, &ClassStartNoticeWidget::signalClose, this, [this]() {
        // Intended: the start page closes first and tracks after.
        closeWidget();
        trackClick(m_startWidget->pushBody(), false);
    });
    connect(m_startWidget, &ClassStartNoticeWidget::signalEnterClassroom, this, [this](qulonglong lessonId) {
        trackClick(m_startWidget->pushBody(), true);
        enterClassroom(lessonId);
    });

    // Intended: the close button reports the ahead page's text on every page,
    // and only tracks: the base's own connection closes the window.
    connect(m_closeBtn, &QToolButton::clicked, this, [this]() { trackClick(m_aheadWidget->pushBody(), false); });

    m_stackedLayout->insertWidget(AheadNotice, m_aheadWidget);
    m_stackedLayout->insertWidget(PrepareNotice, m_prepareWidget);
    m_stackedLayout->insertWidget(StartNotice, m_startWidget);
    m_contentWidget->setLayout(m_stackedLayout);

    ImSignalObject* imSignals = ImSignalObject::instance();
    VyrEngine::CourseEngine* engine = VyrEngine::CourseEngine::instance();
    connect(imSignals, &ImSignalObject::signalStartupClassroom, this, &ClassNoticeWidget::isHaveEnterClass);
    connect(imSignals, &ImSignalObject::signalStartupLocalClassroom, this, &ClassNoticeWidget::isHaveEnterLocalClass);
    connect(engine, &VyrEngine::CourseEngine::signalRemoveLesson, this, &ClassNoticeWidget::classRemoveSlot);
    connect(engine, &VyrEngine::CourseEngine::signalLessonRoleInvalid, this, &ClassNoticeWidget::onSnapLessonChanged);
    connect(engine, &VyrEngine::CourseEngine::signalLessonInfoChanged, this, &ClassNoticeWidget::onSnapLessonChanged);
    connect(engine, &VyrEngine::CourseEngine::signalLessonsInfoChanged, this,
            &ClassNoticeWidget::onSnapLessonsChanged);
    connect(engine, &VyrEngine::CourseEngine::signalLessonEnd, this, &ClassNoticeWidget::closeNotice);
    connect(ClassNoticeManager::instance(), &ClassNoticeManager::classTypeAndDataChange, this,
            &ClassNoticeWidget::updateTypeAndData);
}

void ClassNoticeWidget::isHaveEnterClass(qulonglong schoolId, qulonglong classId, qulonglong courseId,
                                         RoomType roomType, bool forceEnter)
{
    Q_UNUSED(schoolId)
    Q_UNUSED(courseId)
    Q_UNUSED(roomType)
    Q_UNUSED(forceEnter)
    // Entering the classroom closes the notice on any page.
    if (m_lesson && classId == m_lesson->lessonId)
        closeWidget();
}

void ClassNoticeWidget::isHaveEnterLocalClass(qulonglong classId, qulonglong courseId, qulonglong schoolId,
                                              QString courseName, RoomType type)
{
    Q_UNUSED(courseId)
    Q_UNUSED(schoolId)
    Q_UNUSED(courseName)
    Q_UNUSED(type)
    // Intended: a local classroom closes only an ahead notice; prepare and start stay up.
    if (m_lesson && classId == m_lesson->lessonId && m_noticeType == AheadNotice)
        closeWidget();
}

void ClassNoticeWidget::updateTypeAndData(int type, QSharedPointer<VyrEngine::SnapshotLesson> lesson)
{
    if (!lesson || !m_lesson || lesson->lessonId != m_lesson->lessonId)
        return;
    setNoticeType(type);
    updateData(lesson);
}

void ClassNoticeWidget::setNoticeType(int type)
{
    // Intended: not range-checked; a type outside 0 to 2 shows no page as current.
    m_noticeType = type;
    m_aheadWidget->setCurrentPage(type == AheadNotice);
    m_prepareWidget->setCurrentPage(type == PrepareNotice);
    m_startWidget->setCurrentPage(type == StartNotice);
    m_stackedLayout->setCurrentIndex(type);
}

void ClassNoticeWidget::updateData(QSharedPointer<VyrEngine::SnapshotLesson> lesson)
{
    if (!lesson || !m_lesson || lesson->lessonId != m_lesson->lessonId)
        return;

    const std::shared_ptr<VyrEngine::ClusterInfo> cluster = CardParts::lessonCluster(m_lesson->courseId);

    auto* engine = VyrEngine::CourseEngine::instance();
    const VyrEngine::CourseEngine::LessonInfoFuture courseInfo = engine->courseInfoFuture(lesson);
    const QSharedPointer<VyrEngine::CourseRecord> course = engine->courseRecord(lesson->courseId);

    // Not translated: the name of a course nobody knows.
    QString name = QStringLiteral("Unknown");
    if (cluster) {
        name = cluster->name();
    } else if (courseInfo.isFinished() && courseInfo.isResultReadyAt(0) && courseInfo.resultAt(0)) {
        name = courseInfo.resultAt(0)->name;
    } else if (course) {
        name = course->name;
    } else {
        qCInfo(lcVyrNotice) << "oops, no cluster info for id:" << m_lesson->courseId;
    }

    m_aheadWidget->setLessonData(lesson, name);
    m_prepareWidget->setLessonData(lesson, name);
    m_startWidget->setLessonData(lesson, name);
}

void ClassNoticeWidget::closeWidget()
{
    QWidget::close();
}

void ClassNoticeWidget::onSnapLessonChanged(qulonglong schoolId, qulonglong courseId, qulonglong lessonId)
{
    Q_UNUSED(schoolId)
    Q_UNUSED(courseId)
    if (!m_lesson || lessonId != m_lesson->lessonId)
        return;
    const QSharedPointer<VyrEngine::SnapshotLesson> snapshot =
        VyrEngine::CourseEngine::instance()->lessonSnapshot(lessonId);
    // A lesson the engine no longer knows leaves the window as it is.
    if (!snapshot)
        return;
    if (snapshot->role == 0 || snapshot->closedFlag) {
        closeWidget();
        return;
    }
    updateData(snapshot);
}

void ClassNoticeWidget::onSnapLessonsChanged(std::vector<std::tuple<quint64, quint64, quint64>> lessons)
{
    QMap<quint64, QPair<quint64, QVector<quint64>>> bySchool;
    VyrEngine::CourseUtilities::convertLessonsInfo(lessons, bySchool);
    for (auto school = bySchool.cbegin(); school != bySchool.cend(); ++school) {
        const quint64 courseId = school.value().first;
        for (quint64 lessonId : school.value().second)
            onSnapLessonChanged(school.key(), courseId, lessonId);
    }
}

void ClassNoticeWidget::closeNotice(qulonglong schoolId, qulonglong courseId, qulonglong lessonId)
{
    Q_UNUSED(schoolId)
    Q_UNUSED(courseId)
    if (m_lesson && lessonId == m_lesson->lessonId)
        closeWidget();
}

void ClassNoticeWidget::classRemoveSlot(qulonglong schoolId, qulonglong courseId, qulonglong lessonId)
{
    Q_UNUSED(schoolId)
    Q_UNUSED(courseId)
    if (m_lesson && lessonId == m_lesson->lessonId)
        closeWidget();
}

void ClassNoticeWidget::enterClassroom(qulonglong lessonId)
{
    // The only check here; every other one is the host's.
    if (m_lesson && lessonId == m_lesson->lessonId)
        emit startClass(m_lesson);
}
