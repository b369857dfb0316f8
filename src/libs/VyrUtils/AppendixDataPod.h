#pragma once

#include <QSharedPointer>
#include <QString>

/** What an activity is about: the course it belongs to. */
struct ActivityCourseDataPod
{
    quint32 courseId = 0;
    quint32 schoolId = 0;
    QString courseName;
};

/**
 * The engine's record of a study activity that was pushed to the user.
 *
 * Host side: a plain record; fill its fields and wrap it in a QSharedPointer.
 */
class AppendixDataPod
{
public:
    quint64 activityId = 0;
    int activityType = 0;
    QString activityName;
    QSharedPointer<ActivityCourseDataPod> courseData;

    /** True when both records stand for one activity (same id and type). */
    bool isSameActivity(QSharedPointer<AppendixDataPod> other) const;
};
