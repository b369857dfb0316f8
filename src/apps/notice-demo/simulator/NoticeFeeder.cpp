#include "NoticeFeeder.h"

#include "DemoHost.h"
#include "ScenarioFormat.h"
#include "ScenarioPlayer.h"

namespace {

quint64 idOf(const QJsonObject& step, const char* key)
{
    return quint64(step.value(QLatin1String(key)).toDouble());
}

QString text(const QJsonObject& step, const char* key)
{
    return step.value(QLatin1String(key)).toString();
}

// The checker lets only the lesson types through, in this order.
VyrEngine::NoticeType lessonTypeOf(const QJsonObject& step)
{
    const int index = ScenarioFormat::choices(ScenarioFormat::Type::NoticeType).indexOf(text(step, "type"));
    return static_cast<VyrEngine::NoticeType>(VyrEngine::LessonAhead + qMax(0, index));
}

// The checker lets only the three class notice types through, in the order of their values.
int classNoticeTypeOf(const QJsonObject& step)
{
    return qMax(0, ScenarioFormat::choices(ScenarioFormat::Type::ClassNoticeType).indexOf(text(step, "type")));
}

} // namespace

void NoticeFeeder::registerActions(ScenarioPlayer* player, DemoHost* host)
{
    player->addAction(QStringLiteral("lessonNotice"), [host](const QJsonObject& step) {
        host->lessonNoticeArrived(lessonTypeOf(step), idOf(step, "lessonId"));
    });
    player->addAction(QStringLiteral("contactorAdd"), [host](const QJsonObject&) { host->friendRequestArrived(); });
    player->addAction(QStringLiteral("studyReport"),
                      [host](const QJsonObject& step) { host->studyReportArrived(idOf(step, "lessonId")); });
    player->addAction(QStringLiteral("studyActivity"), [host](const QJsonObject& step) {
        const DemoHost::ActivityWords words = {text(step, "windowTitle"), text(step, "content"), text(step, "heading"),
                                               text(step, "pushScenes"), text(step, "pushBody")};
        host->studyActivityArrived(idOf(step, "activityId"), quint32(idOf(step, "courseId")), words);
    });
    player->addAction(QStringLiteral("clusterNotice"), [host](const QJsonObject& step) {
        host->clusterNoticeArrived(text(step, "content"), idOf(step, "contentId"), idOf(step, "clusterId"),
                                   idOf(step, "creatorId"));
    });
    player->addAction(QStringLiteral("classNotice"), [host](const QJsonObject& step) {
        host->classNoticeDue(classNoticeTypeOf(step), idOf(step, "lessonId"));
    });
    player->addAction(QStringLiteral("turnClassNotice"), [host](const QJsonObject& step) {
        host->turnClassNotice(classNoticeTypeOf(step), idOf(step, "lessonId"));
    });
    player->addAction(QStringLiteral("classroomStart"), [host](const QJsonObject& step) {
        host->startClassroom(idOf(step, "lessonId"), step.value(QStringLiteral("local")).toBool());
    });
    player->addAction(QStringLiteral("logOut"), [host](const QJsonObject&) { host->logOut(); });
}
