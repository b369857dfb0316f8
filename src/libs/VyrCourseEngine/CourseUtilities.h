#pragma once

#include <QMap>
#include <QPair>
#include <QVector>
#include <QtGlobal>
#include <tuple>
#include <vector>

namespace VyrEngine {

/**
 * Helpers over the course engine's records.
 *
 * Host side: none; the operations are pure functions of their arguments.
 */
class CourseUtilities
{
public:
    /** (school id, course id, lesson id), as signalLessonsInfoChanged carries them. */
    using LessonTriple = std::tuple<quint64, quint64, quint64>;

    /**
     * Groups the triples by school: each school key holds a course id and
     * the lesson ids, in the order given. One entry holds one course id, so
     * for a school that comes with several courses the last one is kept and
     * all of its lessons stand under it. Entries already in @p result are
     * added to.
     */
    static void convertLessonsInfo(const std::vector<LessonTriple>& lessons,
                                   QMap<quint64, QPair<quint64, QVector<quint64>>>& result);
};

} // namespace VyrEngine
