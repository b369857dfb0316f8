#pragma once

#include <QString>
#include <QtGlobal>

// What a test and a piece of homework record alike, as the chat engine hands
// them to a notice: the base of ExamInfo and HomeworkEntity.
//
// Host side: fill the fields of the derived record.
struct CourseWorkRecord
{
    quint64 courseId = 0;
    // The study activity the work belongs to; sent with a details request.
    quint64 activityId = 0;
    QString name;
    // How many units are left before the work expires; only shown.
    qint32 expireCount = 0;
};
