#include "LessonNoticeText.h"

#include "VyrUtils.h"

#include <QDateTime>

QString LessonNoticeText::startTimeText(quint32 lessonStartTime)
{
    return VyrUtils::toString(QDateTime::fromSecsSinceEpoch(qint64(lessonStartTime)),
                              QStringLiteral("yyyy-MM-dd hh:mm"));
}

QString LessonNoticeText::body(bool isAhead, const QString& nameArg, quint32 lessonStartTime, qint64 now)
{
    if (!isAhead)
        return qtTrId("ID_LMS_ClassStartNotice_LessonStart", -1).arg(nameArg);

    const qint64 secondsLeft = qint64(lessonStartTime) - now;
    if (secondsLeft <= MinutesThreshold) {
        const QString minutes = QStringLiteral("%1").arg(secondsLeft / 60);
        return qtTrId("ID_LMSClassAheadNotice_LessonWillStartAfter", -1).arg(nameArg, minutes);
    }
    return qtTrId("ID_ClassAheadNotice_LessonWillStartAfterOneHour", -1).arg(nameArg, startTimeText(lessonStartTime));
}
