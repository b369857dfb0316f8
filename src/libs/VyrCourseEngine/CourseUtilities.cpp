#include "CourseUtilities.h"

namespace VyrEngine {

void CourseUtilities::convertLessonsInfo(const std::vector<LessonTriple>& lessons,
                                         QMap<quint64, QPair<quint64, QVector<quint64>>>& result)
{
    for (const LessonTriple& lesson : lessons) {
        QPair<quint64, QVector<quint64>>& entry = result[std::get<0>(lesson)];
        entry.first = std::get<1>(lesson);
        entry.second.append(std::get<2>(lesson));
    }
}

} // namespace VyrEngine
