#include "CourseEngine.h"

#include "CourseCover.h"

#include <QTimer>
#include <algorithm>

namespace VyrEngine {

namespace {

// The record a lesson or course future delivers: an id and its name.
QSharedPointer<LessonInfo> lessonInfoOf(quint64 id, const QString& name)
{
    auto info = QSharedPointer<LessonInfo>::create();
    info->id = id;
    info->name = name;
    return info;
}

} // namespace

CourseEngine* CourseEngine::m_pInstance = nullptr;

CourseEngine::CourseEngine(QObject* parent)
    : QObject(parent)
{
    // Queued delivery from another thread needs the batch's type by name.
    qRegisterMetaType<std::vector<CourseUtilities::LessonTriple>>();
    qRegisterMetaType<std::vector<CourseUtilities::LessonTriple>>("std::vector<std::tuple<quint64,quint64,quint64>>");
}

CourseEngine* CourseEngine::instance()
{
    if (!m_pInstance)
        m_pInstance = new CourseEngine();
    return m_pInstance;
}

QSharedPointer<SnapshotLesson> CourseEngine::lessonSnapshot(quint64 lessonId) const
{
    auto it = m_lessons.constFind(lessonId);
    if (it == m_lessons.constEnd())
        return {};
    return QSharedPointer<SnapshotLesson>::create(*it);
}

CourseEngine::LessonInfoFuture CourseEngine::lessonInfoFuture(quint64 schoolId, quint64 courseId, quint64 lessonId)
{
    Q_UNUSED(schoolId)
    Q_UNUSED(courseId)
    // The engine always delivers a record; a lesson it lost meanwhile has an empty name.
    return startPending([this, lessonId]() {
        return lessonInfoOf(lessonId, m_lessonNames.value(lessonId));
    });
}

CourseEngine::LessonInfoFuture CourseEngine::courseInfoFuture(QSharedPointer<SnapshotLesson> lesson)
{
    const quint64 courseId = lesson ? lesson->courseId : 0;
    if (m_coursesInHandWithoutRecord.contains(courseId))
        return finishedAtOnce(QSharedPointer<LessonInfo>());
    auto inHand = m_coursesInHand.constFind(courseId);
    if (inHand != m_coursesInHand.constEnd())
        return finishedAtOnce(lessonInfoOf(courseId, *inHand));
    return startPending([this, courseId]() {
        return lessonInfoOf(courseId, m_courses.value(courseId).name);
    });
}

QSharedPointer<CourseRecord> CourseEngine::courseRecord(quint64 courseId) const
{
    auto it = m_courses.constFind(courseId);
    if (it == m_courses.constEnd())
        return {};
    return QSharedPointer<CourseRecord>::create(*it);
}

bool CourseEngine::isKnownLessonKind(quint64 lessonId) const
{
    return m_knownLessonKinds.contains(lessonId);
}

QPixmap CourseEngine::coursePixmap(quint64 courseId)
{
    emit coursePixmapAsked(courseId);
    auto downloaded = m_downloadedCovers.constFind(courseId);
    if (downloaded != m_downloadedCovers.constEnd())
        return *downloaded;
    auto generated = m_generatedCovers.constFind(courseId);
    if (generated != m_generatedCovers.constEnd())
        return *generated;
    const QPixmap cover = CourseCover::generate(courseId, m_courses.value(courseId).name);
    m_generatedCovers.insert(courseId, cover);
    return cover;
}

void CourseEngine::putCoursePixmap(quint64 schoolId, quint64 courseId, const QPixmap& pixmap)
{
    m_downloadedCovers.insert(courseId, pixmap);
    emit signalCoursePixmapChanged(schoolId, courseId);
}

void CourseEngine::removeCoursePixmap(quint64 schoolId, quint64 courseId)
{
    m_downloadedCovers.remove(courseId);
    emit signalCoursePixmapChanged(schoolId, courseId);
}

void CourseEngine::putLesson(const SnapshotLesson& lesson, const QString& name)
{
    m_lessons.insert(lesson.lessonId, lesson);
    m_lessonNames.insert(lesson.lessonId, name);
}

void CourseEngine::removeLesson(quint64 lessonId)
{
    m_lessons.remove(lessonId);
    m_lessonNames.remove(lessonId);
}

void CourseEngine::putCourse(quint64 courseId, const QString& name, qint16 courseType)
{
    m_courses.insert(courseId, CourseRecord{courseId, name, courseType});
    // The generated cover shows the name's first letter.
    m_generatedCovers.remove(courseId);
}

void CourseEngine::removeCourse(quint64 courseId)
{
    m_courses.remove(courseId);
}

void CourseEngine::setCourseInHand(quint64 courseId, const QString& name)
{
    m_coursesInHandWithoutRecord.remove(courseId);
    m_coursesInHand.insert(courseId, name);
}

void CourseEngine::dropCourseInHand(quint64 courseId)
{
    m_coursesInHand.remove(courseId);
    m_coursesInHandWithoutRecord.remove(courseId);
}

void CourseEngine::setCourseInHandWithoutRecord(quint64 courseId)
{
    m_coursesInHand.remove(courseId);
    m_coursesInHandWithoutRecord.insert(courseId);
}

void CourseEngine::setKnownLessonKind(quint64 lessonId, bool known)
{
    if (known)
        m_knownLessonKinds.insert(lessonId);
    else
        m_knownLessonKinds.remove(lessonId);
}

void CourseEngine::setHoldFutures(bool hold)
{
    m_holdFutures = hold;
    if (!hold) {
        for (const PendingPtr& pending : m_pending)
            scheduleFinish(pending);
    }
}

void CourseEngine::finishPendingFutures()
{
    const std::vector<PendingPtr> pending = std::move(m_pending);
    m_pending.clear();
    for (const PendingPtr& p : pending)
        finish(p);
}

void CourseEngine::cancelPendingFutures()
{
    const std::vector<PendingPtr> pending = std::move(m_pending);
    m_pending.clear();
    for (const PendingPtr& p : pending) {
        p->promise.reportCanceled();
        p->promise.reportFinished();
    }
}

void CourseEngine::clear()
{
    cancelPendingFutures();
    m_lessons.clear();
    m_lessonNames.clear();
    m_courses.clear();
    m_coursesInHand.clear();
    m_coursesInHandWithoutRecord.clear();
    m_knownLessonKinds.clear();
    m_downloadedCovers.clear();
    m_generatedCovers.clear();
    m_holdFutures = false;
}

CourseEngine::LessonInfoFuture CourseEngine::finishedAtOnce(const QSharedPointer<LessonInfo>& info)
{
    QFutureInterface<QSharedPointer<LessonInfo>> promise;
    promise.reportStarted();
    promise.reportResult(info);
    promise.reportFinished();
    return promise.future();
}

CourseEngine::LessonInfoFuture CourseEngine::startPending(std::function<QSharedPointer<LessonInfo>()> produce)
{
    auto pending = std::make_shared<Pending>();
    pending->produce = std::move(produce);
    pending->promise.reportStarted();
    m_pending.push_back(pending);
    if (!m_holdFutures)
        scheduleFinish(pending);
    return pending->promise.future();
}

void CourseEngine::scheduleFinish(const PendingPtr& pending)
{
    std::weak_ptr<Pending> weak = pending;
    QTimer::singleShot(0, this, [this, weak]() {
        PendingPtr p = weak.lock();
        if (p && !m_holdFutures && takePending(p))
            finish(p);
    });
}

bool CourseEngine::takePending(const PendingPtr& pending)
{
    auto it = std::find(m_pending.begin(), m_pending.end(), pending);
    if (it == m_pending.end())
        return false;
    m_pending.erase(it);
    return true;
}

void CourseEngine::finish(const PendingPtr& pending)
{
    pending->promise.reportResult(pending->produce());
    pending->promise.reportFinished();
}

} // namespace VyrEngine
