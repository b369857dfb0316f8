#include "KitSeeder.h"

#include "ContactsEngine.h"
#include "CoreEngine.h"
#include "CourseEngine.h"
#include "ScenarioPlayer.h"

#include <QJsonArray>

namespace {

// Ids are JSON numbers; the checker has made sure they are integers.
quint64 idOf(const QJsonObject& object, const char* key)
{
    return quint64(object.value(QLatin1String(key)).toDouble());
}

QString text(const QJsonObject& object, const char* key)
{
    return object.value(QLatin1String(key)).toString();
}

} // namespace

QString KitSeeder::seed(const QJsonObject& scenario)
{
    auto* core = VyrEngine::CoreEngine::instance();
    const qint64 now = qint64(scenario.value(QStringLiteral("clock")).toDouble());
    if (now > 0)
        core->setCurrentTime(now);
    core->setCurrentUid(idOf(scenario, "uid"));

    const QJsonArray clusters = scenario.value(QStringLiteral("clusters")).toArray();
    for (const QJsonValue& value : clusters) {
        const QJsonObject cluster = value.toObject();
        VyrEngine::ContactsEngine::instance()->putCluster(idOf(cluster, "id"), text(cluster, "name"));
    }
    auto* courses = VyrEngine::CourseEngine::instance();
    const QJsonArray courseList = scenario.value(QStringLiteral("courses")).toArray();
    for (const QJsonValue& value : courseList) {
        const QJsonObject course = value.toObject();
        courses->putCourse(idOf(course, "id"), text(course, "name"), qint16(course.value(QStringLiteral("courseType")).toInt()));
    }
    const QJsonArray lessons = scenario.value(QStringLiteral("lessons")).toArray();
    for (const QJsonValue& value : lessons) {
        const QJsonObject object = value.toObject();
        VyrEngine::SnapshotLesson lesson;
        lesson.lessonId = idOf(object, "id");
        lesson.courseId = idOf(object, "courseId");
        lesson.schoolId = idOf(object, "schoolId");
        lesson.courseType = qint16(object.value(QStringLiteral("courseType")).toInt());
        lesson.startTime = core->currentTime() + qint64(object.value(QStringLiteral("startIn")).toDouble());
        lesson.role = object.value(QStringLiteral("role")).toInt();
        courses->putLesson(lesson, text(object, "name"));
    }
    return QStringLiteral("seeded: %1 clusters, %2 courses, %3 lessons")
        .arg(clusters.size())
        .arg(courseList.size())
        .arg(lessons.size());
}

void KitSeeder::registerActions(ScenarioPlayer* player)
{
    player->addAction(QStringLiteral("advanceClock"), [](const QJsonObject& step) {
        VyrEngine::CoreEngine::instance()->advanceTime(qint64(step.value(QStringLiteral("seconds")).toDouble()));
    });
}
