#pragma once

#include <QString>
#include <QtGlobal>

namespace VyrEngine {

/** The course engine's record of a course. */
struct CourseRecord
{
    quint64 courseId = 0;
    QString name;
    qint16 courseType = 0;
};

} // namespace VyrEngine
