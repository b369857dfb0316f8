#pragma once

#include <QString>
#include <QtGlobal>

/**
 * One test (exam) as the chat engine hands it to a notice: a plain record.
 *
 * Host side: fill the fields and pass it in a std::shared_ptr.
 */
struct ExamInfo
{
    quint64 courseId = 0;
    quint64 examId = 0;
    /** The study activity the test belongs to; sent with a details request. */
    quint64 activityId = 0;
    QString name;
    /** How many units are left before the test expires; only shown. */
    qint32 expireCount = 0;
};
