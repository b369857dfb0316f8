#include "PopupEvents.h"

#include "CourseEngine.h"
#include "DemoHost.h"
#include "DemoHttpServer.h"
#include "ScenarioPlayer.h"
#include "LearningPopupHost.h"
#include "StudyActivityMessagePushManager.h"
#include "StudyActivityNoticeWidgetDisplayPod.h"

#include <QJsonObject>

namespace {

quint64 idOf(const QJsonObject& step, const char* key)
{
    return quint64(step.value(QLatin1String(key)).toDouble());
}

QString text(const QJsonObject& step, const char* key)
{
    return step.value(QLatin1String(key)).toString();
}

QSharedPointer<AppendixDataPod> appendixOf(const QJsonObject& step)
{
    auto pod = QSharedPointer<AppendixDataPod>::create();
    pod->activityId = idOf(step, "activityId");
    pod->activityType = step.value(QStringLiteral("activityType")).toInt();
    return pod;
}

void showStudyActivity(DemoHost* host, const QJsonObject& step)
{
    QSharedPointer<AppendixDataPod> pod = appendixOf(step);
    pod->activityName = text(step, "heading");
    // Without a course the window's details button does nothing, which a step may want to show.
    if (step.value(QStringLiteral("withCourse")).toBool()) {
        pod->courseData = QSharedPointer<ActivityCourseDataPod>::create();
        pod->courseData->courseId = quint32(idOf(step, "courseId"));
    }
    auto display = QSharedPointer<StudyActivityNoticeWidgetDisplayPod>::create(
        text(step, "windowTitle"), text(step, "content"), false, false, false, QString(), false, QString(), QString(),
        false, false, false, false, text(step, "heading"), text(step, "pushScenes"), text(step, "pushBody"), false);
    host->learningPopups()->showStudyActivity(pod, display);
}

void showMicroCourse(DemoHost* host, const QJsonObject& step)
{
    QJsonObject info;
    info.insert(QStringLiteral("auditStatus"), step.value(QStringLiteral("auditStatus")).toInt());
    info.insert(QStringLiteral("lectureName"), text(step, "lectureName"));
    info.insert(QStringLiteral("coverUrl"), text(step, "coverUrl"));
    host->learningPopups()->showMicroCourse(idOf(step, "id"), step.value(QStringLiteral("type")).toInt(), info);
}

void showStudyReport(DemoHost* host, const QJsonObject& step)
{
    const quint64 lessonId = idOf(step, "lessonId");
    const QSharedPointer<VyrEngine::SnapshotLesson> known =
        VyrEngine::CourseEngine::instance()->lessonSnapshot(lessonId);
    if (!known) {
        host->say(QStringLiteral("study report: lesson %1 is not known").arg(lessonId));
        return;
    }
    // A copy: the step may show the report to another role than the seeded one.
    auto lesson = QSharedPointer<VyrEngine::SnapshotLesson>::create(*known);
    const int role = step.value(QStringLiteral("role")).toInt();
    if (role >= 0)
        lesson->role = role;
    host->learningPopups()->showStudyReport(lesson);
}

} // namespace

void PopupEvents::registerActions(ScenarioPlayer* player, DemoHost* host, DemoHttpServer* server)
{
    player->addAction(QStringLiteral("studyActivityPopup"),
                      [host](const QJsonObject& step) { showStudyActivity(host, step); });
    player->addAction(QStringLiteral("withdrawActivity"), [host](const QJsonObject& step) {
        host->say(QStringLiteral("chat engine: activity %1 withdrawn").arg(idOf(step, "activityId")));
        StudyActivityMessagePushManager::instance().deleteActivity(appendixOf(step));
    });
    player->addAction(QStringLiteral("microCoursePopup"),
                      [host](const QJsonObject& step) { showMicroCourse(host, step); });
    player->addAction(QStringLiteral("studyReportPopup"),
                      [host](const QJsonObject& step) { showStudyReport(host, step); });
    player->addAction(QStringLiteral("coverServer"), [host, server](const QJsonObject& step) {
        DemoHttpServer::CoverAnswer answer = DemoHttpServer::CoverAnswer::Normal;
        if (!DemoHttpServer::coverAnswerOf(text(step, "answer"), &answer)) {
            host->say(QStringLiteral("cover server: unknown answer \"%1\"").arg(text(step, "answer")));
            return;
        }
        server->setCoverAnswer(answer, step.value(QStringLiteral("delay")).toInt());
        host->say(QStringLiteral("cover server: covers now answer \"%1\"").arg(text(step, "answer")));
    });
}
