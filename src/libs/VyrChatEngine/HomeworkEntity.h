#pragma once

#include "CourseWorkRecord.h"

/**
 * One piece of homework as the chat engine hands it to a notice: a plain record.
 *
 * Host side: fill the fields and pass it in a std::shared_ptr.
 */
struct HomeworkEntity : CourseWorkRecord
{
    quint64 homeworkId = 0;
    /** The homework was handed back to be revised. */
    bool revised = false;
};
