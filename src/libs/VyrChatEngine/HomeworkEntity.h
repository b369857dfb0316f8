#pragma once

#include <QString>
#include <QtGlobal>

/**
 * One piece of homework as the chat engine hands it to a notice: a plain record.
 *
 * Host side: fill the fields and pass it in a std::shared_ptr.
 */
struct HomeworkEntity
{
    quint64 courseId = 0;
    quint64 homeworkId = 0;
    /** The study activity the homework belongs to; sent with a details request. */
    quint64 activityId = 0;
    QString name;
    /** How many units are left before the homework expires; only shown. */
    qint32 expireCount = 0;
    /** The homework was handed back to be revised. */
    bool revised = false;
};
