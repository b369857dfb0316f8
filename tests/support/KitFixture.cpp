#include "KitFixture.h"

#include <QCoreApplication>

namespace KitFixture {

VyrEngine::SnapshotLesson putLesson(quint64 lessonId, const QString& name, qint64 startTime, quint64 courseId,
                                    qint32 role, quint64 schoolId)
{
    VyrEngine::SnapshotLesson lesson;
    lesson.schoolId = schoolId;
    lesson.courseId = courseId;
    lesson.lessonId = lessonId;
    lesson.startTime = startTime;
    lesson.role = role;
    VyrEngine::CourseEngine::instance()->putLesson(lesson, name);
    return lesson;
}

void settle()
{
    // Futures finish on a zero timer; their watchers report through posted events.
    for (int i = 0; i < 5; ++i) {
        QCoreApplication::processEvents(QEventLoop::AllEvents);
        QCoreApplication::sendPostedEvents();
    }
}

QList<VyrTrack::Event> trackedEvents(const QString& name)
{
    QList<VyrTrack::Event> out;
    for (const VyrTrack::Event& event : VyrTrack::instance()->events()) {
        if (event.first == name)
            out << event;
    }
    return out;
}

} // namespace KitFixture
