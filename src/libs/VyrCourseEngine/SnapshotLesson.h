#pragma once

#include <QString>
#include <QtGlobal>

namespace VyrEngine {

/** The course engine's snapshot of a lesson, as it stands at the moment of the look-up. */
struct SnapshotLesson
{
    quint64 schoolId = 0;
    quint64 courseId = 0;
    quint64 lessonId = 0;
    qint16 courseType = 0;
    qint64 startTime = 0;   // seconds since the epoch
    qint32 role = 0;        // 0 none, 1 learner, other values teaching roles
    bool closedFlag = false;
    qint64 endTime = 0;     // seconds since the epoch
};

} // namespace VyrEngine
