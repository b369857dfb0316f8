#pragma once

#include "CourseWorkRecord.h"

/**
 * One test (exam) as the chat engine hands it to a notice: a plain record.
 *
 * Host side: fill the fields and pass it in a std::shared_ptr.
 */
struct ExamInfo : CourseWorkRecord
{
    quint64 examId = 0;
};
