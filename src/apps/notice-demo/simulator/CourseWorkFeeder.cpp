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

// The fields a test and a homework step share.
void fillCourseWork(CourseWorkRecord& info, const QJsonObject& step)
{
    info.courseId = idOf(step, "courseId");
    info.activityId = idOf(step, "activityId");
    info.name = step.value(QStringLiteral("name")).toString();
    info.expireCount = numberOf(step, "expireCount");
}

ExamInfo examOf(const QJsonObject& step)
{
    ExamInfo info;
    fillCourseWork(info, step);
    info.examId = idOf(step, "examId");
    return info;
}

HomeworkEntity homeworkOf(const QJsonObject& step)
{
    HomeworkEntity info;
    fillCourseWork(info, step);
    info.homeworkId = idOf(step, "homeworkId");
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
