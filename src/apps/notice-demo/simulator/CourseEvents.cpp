#include "CourseEvents.h"

#include "CourseEngine.h"
#include "ScenarioPlayer.h"

#include <QColor>
#include <QJsonArray>
#include <QPainter>
#include <QPixmap>

namespace {

quint64 idOf(const QJsonObject& object, const char* key)
{
    return quint64(object.value(QLatin1String(key)).toDouble());
}

VyrEngine::CourseEngine* engine()
{
    return VyrEngine::CourseEngine::instance();
}

// The lesson as the engine knows it; an unknown lesson has only its id (the windows ignore it).
VyrEngine::SnapshotLesson snapshotOf(quint64 lessonId)
{
    const QSharedPointer<VyrEngine::SnapshotLesson> known = engine()->lessonSnapshot(lessonId);
    VyrEngine::SnapshotLesson lesson = known ? *known : VyrEngine::SnapshotLesson();
    lesson.lessonId = lessonId;
    return lesson;
}

// A downloaded cover: a plain square in the colour, as a course's picture might be.
QPixmap coverOf(const QString& color)
{
    QPixmap cover(72, 72);
    cover.fill(Qt::transparent);
    QPainter painter(&cover);
    painter.setRenderHint(QPainter::Antialiasing);
    painter.setPen(Qt::NoPen);
    painter.setBrush(QColor(color));
    painter.drawRoundedRect(cover.rect(), 12, 12);
    painter.setBrush(Qt::white);
    painter.drawEllipse(QRectF(24, 24, 24, 24));
    return cover;
}

} // namespace

void CourseEvents::registerActions(ScenarioPlayer* player)
{
    const QHash<quint64, QString> names = lessonNames(player->scenario());
    player->addAction(QStringLiteral("lessonRemoved"),
                      [](const QJsonObject& step) { lessonRemoved(idOf(step, "lessonId")); });
    player->addAction(QStringLiteral("lessonRoleInvalid"), [names](const QJsonObject& step) {
        lessonRoleInvalid(idOf(step, "lessonId"), names.value(idOf(step, "lessonId")));
    });
    player->addAction(QStringLiteral("lessonInfoChanged"), [names](const QJsonObject& step) {
        const quint64 lessonId = idOf(step, "lessonId");
        lessonChanged(lessonId, names.value(lessonId), step.value(QStringLiteral("closed")).toBool());
        const VyrEngine::SnapshotLesson lesson = snapshotOf(lessonId);
        emit engine()->signalLessonInfoChanged(lesson.schoolId, lesson.courseId, lessonId);
    });
    player->addAction(QStringLiteral("lessonsInfoChanged"), [names](const QJsonObject& step) {
        std::vector<std::tuple<quint64, quint64, quint64>> batch;
        const QJsonArray ids = step.value(QStringLiteral("lessonIds")).toArray();
        for (const QJsonValue& id : ids) {
            const quint64 lessonId = quint64(id.toDouble());
            lessonChanged(lessonId, names.value(lessonId), step.value(QStringLiteral("closed")).toBool());
            const VyrEngine::SnapshotLesson lesson = snapshotOf(lessonId);
            batch.emplace_back(lesson.schoolId, lesson.courseId, lessonId);
        }
        emit engine()->signalLessonsInfoChanged(batch);
    });
    player->addAction(QStringLiteral("lessonEnd"), [](const QJsonObject& step) { lessonEnd(idOf(step, "lessonId")); });
    const QHash<quint64, quint64> schools = courseSchools(player->scenario());
    player->addAction(QStringLiteral("coursePixmapChanged"), [schools](const QJsonObject& step) {
        const quint64 courseId = idOf(step, "courseId");
        coursePixmapChanged(schools.value(courseId), courseId, step.value(QStringLiteral("color")).toString());
    });
}

QHash<quint64, QString> CourseEvents::lessonNames(const QJsonObject& scenario)
{
    QHash<quint64, QString> names;
    const QJsonArray lessons = scenario.value(QStringLiteral("lessons")).toArray();
    for (const QJsonValue& value : lessons) {
        const QJsonObject lesson = value.toObject();
        names.insert(idOf(lesson, "id"), lesson.value(QStringLiteral("name")).toString());
    }
    return names;
}

QHash<quint64, quint64> CourseEvents::courseSchools(const QJsonObject& scenario)
{
    QHash<quint64, quint64> schools;
    const QJsonArray lessons = scenario.value(QStringLiteral("lessons")).toArray();
    for (const QJsonValue& value : lessons) {
        const QJsonObject lesson = value.toObject();
        if (!schools.contains(idOf(lesson, "courseId")))
            schools.insert(idOf(lesson, "courseId"), idOf(lesson, "schoolId"));
    }
    return schools;
}

void CourseEvents::lessonRemoved(quint64 lessonId)
{
    const VyrEngine::SnapshotLesson lesson = snapshotOf(lessonId);
    engine()->removeLesson(lessonId);
    emit engine()->signalRemoveLesson(lesson.schoolId, lesson.courseId, lessonId);
}

void CourseEvents::lessonRoleInvalid(quint64 lessonId, const QString& name)
{
    VyrEngine::SnapshotLesson lesson = snapshotOf(lessonId);
    if (engine()->lessonSnapshot(lessonId)) {
        lesson.role = 0;
        engine()->putLesson(lesson, name);
    }
    emit engine()->signalLessonRoleInvalid(lesson.schoolId, lesson.courseId, lessonId);
}

// The engine's record changes before the signal; an unknown lesson stays unknown.
void CourseEvents::lessonChanged(quint64 lessonId, const QString& name, bool closed)
{
    if (!engine()->lessonSnapshot(lessonId))
        return;
    VyrEngine::SnapshotLesson lesson = snapshotOf(lessonId);
    lesson.closedFlag = closed;
    engine()->putLesson(lesson, name);
}

void CourseEvents::lessonEnd(quint64 lessonId)
{
    const VyrEngine::SnapshotLesson lesson = snapshotOf(lessonId);
    emit engine()->signalLessonEnd(lesson.schoolId, lesson.courseId, lessonId);
}

void CourseEvents::coursePixmapChanged(quint64 schoolId, quint64 courseId, const QString& color)
{
    engine()->putCoursePixmap(schoolId, courseId, coverOf(color));
}
