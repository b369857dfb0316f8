#pragma once

#include "CourseRecord.h"
#include "CourseUtilities.h"
#include "LessonInfo.h"
#include "SnapshotLesson.h"

#include <QFuture>
#include <QFutureInterface>
#include <QHash>
#include <QMetaType>
#include <QObject>
#include <QPixmap>
#include <QSet>
#include <QSharedPointer>
#include <functional>
#include <memory>
#include <vector>

namespace VyrEngine {

/**
 * The client's course engine: lessons, their details and courses.
 *
 * Futures finish on a later turn of the event loop, never inside the call,
 * except courseInfoFuture for a course the engine has in hand, which is
 * finished at once.
 *
 * Host side:
 *   putLesson(snapshot, name)        know a lesson (replaces one with the same id)
 *   removeLesson(lessonId)           forget it
 *   putCourse(id, name, courseType)  know a course record
 *   removeCourse(id)                 forget it
 *   setCourseInHand(id, name)        the course's details are cached: courseInfoFuture finishes at once
 *   dropCourseInHand(id)             not cached any more: courseInfoFuture has to fetch
 *   setCourseInHandWithoutRecord(id) cached as unavailable: courseInfoFuture finishes at once
 *                                    with a null record
 *   setKnownLessonKind(lessonId, b)  what isKnownLessonKind answers for the lesson (default false)
 *   setHoldFutures(true)             futures stay pending until finishPendingFutures() or
 *                                    cancelPendingFutures(); false lets them finish on the next turn
 *   pendingFutureCount()             how many futures are pending
 *   clear()                          forget everything and cancel what is pending
 *                                    (downloaded covers included)
 *   putCoursePixmap(school, course, pixmap)
 *                                    the course's downloaded cover; emits signalCoursePixmapChanged
 *   removeCoursePixmap(school, course)
 *                                    back to the generated cover; emits signalCoursePixmapChanged
 *   signal coursePixmapAsked(id)     emitted inside each coursePixmap() call, before it returns
 *   the lesson signals               the host emits them on the instance, from the GUI thread
 *                                    or any other (the argument types are registered, so
 *                                    receivers get them queued on their own thread):
 *       emit CourseEngine::instance()->signalLessonEnd(school, course, lesson);
 *       emit CourseEngine::instance()->signalLessonsInfoChanged({{school, course, lesson}});
 */
class CourseEngine : public QObject
{
    Q_OBJECT
public:
    using LessonInfoFuture = QFuture<QSharedPointer<LessonInfo>>;

    static CourseEngine* instance();

    QSharedPointer<SnapshotLesson> lessonSnapshot(quint64 lessonId) const;
    LessonInfoFuture lessonInfoFuture(quint64 schoolId, quint64 courseId, quint64 lessonId);
    LessonInfoFuture courseInfoFuture(QSharedPointer<SnapshotLesson> lesson);
    QSharedPointer<CourseRecord> courseRecord(quint64 courseId) const;
    /** Whether the lesson is of a kind whose course name may stand for it; answers at once. */
    bool isKnownLessonKind(quint64 lessonId) const;
    /**
     * The course's cover: the downloaded one, else a picture generated for
     * the course (see CourseCover), made once and kept.
     */
    QPixmap coursePixmap(quint64 courseId);

    // Host side.
    void putLesson(const SnapshotLesson& lesson, const QString& name);
    void removeLesson(quint64 lessonId);
    void putCourse(quint64 courseId, const QString& name, qint16 courseType);
    void removeCourse(quint64 courseId);
    void setCourseInHand(quint64 courseId, const QString& name);
    void dropCourseInHand(quint64 courseId);
    void setCourseInHandWithoutRecord(quint64 courseId);
    void setKnownLessonKind(quint64 lessonId, bool known);
    void setHoldFutures(bool hold);
    bool holdFutures() const { return m_holdFutures; }
    int pendingFutureCount() const { return int(m_pending.size()); }
    void finishPendingFutures();
    void cancelPendingFutures();
    void clear();
    void putCoursePixmap(quint64 schoolId, quint64 courseId, const QPixmap& pixmap);
    void removeCoursePixmap(quint64 schoolId, quint64 courseId);

signals:
    /** The lesson was deleted. */
    void signalRemoveLesson(quint64 schoolId, quint64 courseId, quint64 lessonId);
    /** The user's role in the lesson was withdrawn. */
    void signalLessonRoleInvalid(quint64 schoolId, quint64 courseId, quint64 lessonId);
    /** The lesson's details changed; lessonSnapshot() gives the new state. */
    void signalLessonInfoChanged(quint64 schoolId, quint64 courseId, quint64 lessonId);
    /** The lesson is over. */
    void signalLessonEnd(quint64 schoolId, quint64 courseId, quint64 lessonId);
    /** Several lessons changed at once: (school, course, lesson) triples. */
    void signalLessonsInfoChanged(std::vector<std::tuple<quint64, quint64, quint64>> lessons);
    /** A course's cover changed; coursePixmap() gives the new one. */
    void signalCoursePixmapChanged(qulonglong schoolId, qulonglong courseId);
    // Host side: coursePixmap() was called for `courseId`.
    void coursePixmapAsked(quint64 courseId);

private:
    struct Pending
    {
        QFutureInterface<QSharedPointer<LessonInfo>> promise;
        std::function<QSharedPointer<LessonInfo>()> produce;
    };
    using PendingPtr = std::shared_ptr<Pending>;

    explicit CourseEngine(QObject* parent = nullptr);
    static LessonInfoFuture finishedAtOnce(const QSharedPointer<LessonInfo>& info);
    LessonInfoFuture startPending(std::function<QSharedPointer<LessonInfo>()> produce);
    void scheduleFinish(const PendingPtr& pending);
    bool takePending(const PendingPtr& pending);
    static void finish(const PendingPtr& pending);

    static CourseEngine* m_pInstance;
    QHash<quint64, SnapshotLesson> m_lessons;
    QHash<quint64, QString> m_lessonNames;
    QHash<quint64, CourseRecord> m_courses;
    QHash<quint64, QString> m_coursesInHand;
    QSet<quint64> m_coursesInHandWithoutRecord;
    QSet<quint64> m_knownLessonKinds;
    QHash<quint64, QPixmap> m_downloadedCovers;
    QHash<quint64, QPixmap> m_generatedCovers;
    std::vector<PendingPtr> m_pending;
    bool m_holdFutures = false;
};

} // namespace VyrEngine

Q_DECLARE_METATYPE(std::vector<VyrEngine::CourseUtilities::LessonTriple>)
