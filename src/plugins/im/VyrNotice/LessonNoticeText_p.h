#pragma once

#include "VyrNoticeExport.h"
#include "GatherNotice.h"

#include <QString>

// The words of a lesson notice, shared by the painted row and the tracking
// event. `nameArg` goes into the template as given: the row passes a styled
// span, tracking passes the bare name.
class VYRNOTICE_TESTS_EXPORT LessonNoticeText
{
public:
    // Seconds left at or under which the text counts minutes instead of showing the start time.
    static constexpr qint64 MinutesThreshold = 3600;

    // The template of a lesson that starts later and the text for its %2:
    // whole minutes left (truncated, negative once the start has passed) at
    // or under the threshold, else the start as "yyyy-MM-dd hh:mm".
    struct Ahead
    {
        QString textTemplate;
        QString timeText;
    };

    static Ahead ahead(qint64 startTime, qint64 now);
    static QString body(bool isAhead, const QString& nameArg, quint32 lessonStartTime, qint64 now);
};
