#pragma once

#include "CourseEngine.h"
#include "VyrTrack.h"

#include <QList>
#include <QString>

// Kit-side set-up that needs no notice library, so the kit's own tests can
// use it: lessons put into the course engine, the event loop run until the
// engine's futures are done, and the tracking events of one name.
namespace KitFixture {

// Puts a lesson into the course engine and returns its snapshot.
VyrEngine::SnapshotLesson putLesson(quint64 lessonId, const QString& name, qint64 startTime, quint64 courseId = 500,
                                    qint32 role = 1, quint64 schoolId = 7);

// Runs the event loop until the course engine's futures and their completions are done.
void settle();

// The tracked events called `name`, oldest first.
QList<VyrTrack::Event> trackedEvents(const QString& name);

} // namespace KitFixture
