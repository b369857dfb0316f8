#include "CourseWorkFeeder.h"

#include "ContactsEngine.h"
#include "CourseWorkHost.h"
#include "DemoHost.h"
#include "ExamManager.h"
#include "HomeworkManager.h"
#include "ScenarioPlayer.h"

namespace {

quint64 idOf(const QJsonObject& step, const char* key)
{
    return quint64(step.value(QLatin1String(key)).toDouble());
}

int numberOf(const QJsonObject& step, const char* key)
{
    return step.value(QLatin1String(key)).toInt();
}

ExamInfo examOf(const QJsonObject& step)
{
    ExamInfo info;
    info.courseId = idOf(step, "courseId");
    info.examId = idOf(step, "examId");
    info.activityId = idOf(step, "activityId");
    info.name = step.value(QStringLiteral("name")).toString();
    info.expireCount = numberOf(step, "expireCount");
    return info;
}

HomeworkEntity homeworkOf(const QJsonObject& step)
{
    HomeworkEntity info;
    info.courseId = idOf(step, "courseId");
    info.homeworkId = idOf(step, "homeworkId");
    info.activityId = idOf(step, "activityId");
    info.name = step.value(QStringLiteral("name")).toString();
    info.expireCount = numberOf(step, "expireCount");
    info.revised = step.value(QStringLiteral("revised")).toBool();
    return info;
}

} // namespace

void CourseWorkFeeder::registerActions(ScenarioPlayer* player, DemoHost* host)
{
    player->addAction(QStringLiteral("examNotice"), [host](const QJsonObject& step) {
        const ExamInfo info = examOf(step);
        // The engine knows what it sends.
        ExamManager::instance()->putExam(info);
        host->courseWork()->examNoticeDue(idOf(step, "userId"), numberOf(step, "state"), info,
                                          step.value(QStringLiteral("review")).toBool());
    });
    player->addAction(QStringLiteral("homeworkNotice"), [host](const QJsonObject& step) {
        const HomeworkEntity info = homeworkOf(step);
        HomeworkManager::instance()->putHomework(info);
        host->courseWork()->homeworkNoticeDue(idOf(step, "userId"), numberOf(step, "state"), info,
                                              step.value(QStringLiteral("review")).toBool());
    });
    player->addAction(QStringLiteral("knowUser"), [](const QJsonObject& step) {
        VyrEngine::ContactsEngine::instance()->putUser(
            VyrEngine::UserInfo(idOf(step, "uid"), step.value(QStringLiteral("nickname")).toString()));
    });
    player->addAction(QStringLiteral("withdrawExam"), [host](const QJsonObject& step) {
        host->say(QStringLiteral("chat engine: exam %1 withdrawn").arg(idOf(step, "examId")));
        ExamManager::instance()->withdrawExam(idOf(step, "courseId"), idOf(step, "examId"));
    });
    player->addAction(QStringLiteral("withdrawHomework"), [host](const QJsonObject& step) {
        host->say(QStringLiteral("chat engine: homework %1 withdrawn").arg(idOf(step, "homeworkId")));
        HomeworkManager::instance()->withdrawHomework(idOf(step, "courseId"), idOf(step, "homeworkId"));
    });
}
