#pragma once

#include <QString>
#include <QtGlobal>

namespace VyrEngine {

/** Details of a lesson (or, from courseInfoFuture, of its course) fetched by the course engine. */
class LessonInfo
{
public:
    quint64 id = 0;
    QString name;
};

} // namespace VyrEngine
