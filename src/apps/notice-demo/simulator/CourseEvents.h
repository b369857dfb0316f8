#pragma once

#include <QHash>
#include <QJsonObject>
#include <QString>

class ScenarioPlayer;

// Plays the course engine's events through the kit's host side: a lesson
// removed, its role withdrawn, its details changed (one lesson or a batch),
// its end, a course's new cover. The engine's records are changed first, as
// the engine would, and the signal then says so.
class CourseEvents
{
public:
    static void registerActions(ScenarioPlayer* player);

private:
    // The seeded lessons' names, which the engine wants back when a lesson is put again.
    static QHash<quint64, QString> lessonNames(const QJsonObject& scenario);
    // The school of each course, from the seeded lessons: the engine's signals name both.
    static QHash<quint64, quint64> courseSchools(const QJsonObject& scenario);
    static void lessonRemoved(quint64 lessonId);
    static void lessonRoleInvalid(quint64 lessonId, const QString& name);
    static void lessonChanged(quint64 lessonId, const QString& name, bool closed);
    static void lessonEnd(quint64 lessonId);
    static void coursePixmapChanged(quint64 schoolId, quint64 courseId, const QString& color);
};
