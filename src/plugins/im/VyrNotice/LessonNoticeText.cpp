#include "LessonNoticeText_p.h"

#include "VyrUtils.h"

#include <QDateTime>

namespace {
QString formatStart(qint64 startTime)
{
    return VyrUtils::toString(QDateTime::fromSecsSinceEpoch(startTime), QStringLiteral("yyyy-MM-dd hh:mm"));
}
} // namespace

LessonNoticeText::Ahead LessonNoticeText::ahead(qint64 startTime, qint64 now)
{
    const qint64 secondsLeft = startTime - now;
    if (secondsLeft <= MinutesThreshold)
        return {qtTrId("ID_LMSClassAheadNotice_LessonWillStartAfter", -1), QStringLiteral("%1").arg(secondsLeft / 60)};
    return {qtTrId("ID_ClassAheadNotice_LessonWillStartAfterOneHour", -1), formatStart(startTime)};
}

QString LessonNoticeText::body(bool isAhead, const QString& nameArg, quint32 lessonStartTime, qint64 now)
{
    if (!isAhead)
        return qtTrId("ID_LMS_ClassStartNotice_LessonStart", -1).arg(nameArg);

    const Ahead text = ahead(qint64(lessonStartTime), now);
    return text.textTemplate.arg(nameArg, text.timeText);
}
