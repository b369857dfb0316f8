#include "DemoHost.h"

#include "ContactsEngine.h"
#include "CoreEngine.h"
#include "CourseEngine.h"
#include "GatheredNoticeHost.h"
#include "NoticeListModel.h"
#include "ScenarioPlayer.h"
#include "ScreenshotTaker.h"
#include "VyrTrack.h"
#include "WindowActions.h"

#include <QCoreApplication>
#include <QJsonArray>
#include <QJsonDocument>

namespace {

QString categoryName(VyrEngine::NoticeCategory category)
{
    return category == VyrEngine::Lesson ? QStringLiteral("Lesson") : QStringLiteral("Activity");
}

const QHash<QString, VyrEngine::NoticeType>& noticeTypes()
{
    static const QHash<QString, VyrEngine::NoticeType> types = {
        {QStringLiteral("ContactorAdd"), VyrEngine::ContactorAdd},
        {QStringLiteral("ClusterNoticeRemind"), VyrEngine::ClusterNoticeRemind},
        {QStringLiteral("LessonAhead"), VyrEngine::LessonAhead},
        {QStringLiteral("LessonPrepare"), VyrEngine::LessonPrepare},
        {QStringLiteral("LessonStart"), VyrEngine::LessonStart},
        {QStringLiteral("StudyReport"), VyrEngine::StudyReport},
        {QStringLiteral("StudyActivity"), VyrEngine::StudyActivity},
    };
    return types;
}

quint64 idOf(const QJsonObject& object, const char* key)
{
    return quint64(object.value(QLatin1String(key)).toDouble());
}

// The host composes a study activity's words itself and hands them over beside the engine's record.
void addStudyActivity(const QJsonObject& step)
{
    auto pod = QSharedPointer<AppendixDataPod>::create();
    pod->activityId = idOf(step, "activityId");
    pod->activityName = step.value(QStringLiteral("heading")).toString();
    pod->courseData = QSharedPointer<ActivityCourseDataPod>::create();
    pod->courseData->courseId = quint32(idOf(step, "courseId"));
    auto text = [&step](const char* key) { return step.value(QLatin1String(key)).toString(); };
    auto display = QSharedPointer<StudyActivityNoticeWidgetDisplayPod>::create(
        text("windowTitle"), text("content"), false, false, false, QString(), false, QString(), QString(), false,
        false, false, false, text("heading"), text("pushScenes"), text("pushBody"), false);
    NoticeListModel::instance()->addStudyActivityNotice(pod, display);
}

} // namespace

DemoHost::DemoHost(const QString& screenshotFolder, QObject* parent)
    : QObject(parent)
    , m_out(stdout)
    , m_screenshots(new ScreenshotTaker(screenshotFolder))
{
    NoticeListModel* model = NoticeListModel::instance();
    // Reported before the windows' handlers run, so the log reads cause, then effect.
    connect(model, &NoticeListModel::popupNoticeListWidget, this, &DemoHost::onPopupNoticeListWidget);
    connect(model, &NoticeListModel::removeNoticeListItem, this, &DemoHost::onRemoveNoticeListItem);
    m_gathered.reset(new GatheredNoticeHost([this](const QString& line) { say(line); }));
    m_windowActions = new WindowActions(m_gathered.get(), m_screenshots.get(), this);
    connect(m_windowActions, &WindowActions::said, this, &DemoHost::say);
    connect(model, &NoticeListModel::lessonNoticeUpdated, this, [this]() { say(QStringLiteral("model: lessonNoticeUpdated")); });
    connect(VyrTrack::instance(), &VyrTrack::tracked, this, &DemoHost::onTracked);
}

DemoHost::~DemoHost() = default;

void DemoHost::seed(const QJsonObject& scenario)
{
    auto* core = VyrEngine::CoreEngine::instance();
    const qint64 now = qint64(scenario.value(QStringLiteral("clock")).toDouble());
    if (now > 0)
        core->setCurrentTime(now);
    core->setCurrentUid(idOf(scenario, "uid"));

    for (const QJsonValue& value : scenario.value(QStringLiteral("clusters")).toArray()) {
        const QJsonObject cluster = value.toObject();
        VyrEngine::ContactsEngine::instance()->putCluster(idOf(cluster, "id"), cluster.value(QStringLiteral("name")).toString());
    }
    auto* courses = VyrEngine::CourseEngine::instance();
    for (const QJsonValue& value : scenario.value(QStringLiteral("courses")).toArray()) {
        const QJsonObject course = value.toObject();
        courses->putCourse(idOf(course, "id"), course.value(QStringLiteral("name")).toString(),
                           qint16(course.value(QStringLiteral("courseType")).toInt()));
    }
    for (const QJsonValue& value : scenario.value(QStringLiteral("lessons")).toArray()) {
        const QJsonObject object = value.toObject();
        VyrEngine::SnapshotLesson lesson;
        lesson.lessonId = idOf(object, "id");
        lesson.courseId = idOf(object, "courseId");
        lesson.schoolId = idOf(object, "schoolId");
        lesson.courseType = qint16(object.value(QStringLiteral("courseType")).toInt());
        lesson.startTime = core->currentTime() + qint64(object.value(QStringLiteral("startIn")).toDouble());
        lesson.role = object.value(QStringLiteral("role")).toInt(1);
        courses->putLesson(lesson, object.value(QStringLiteral("name")).toString());
    }
    say(QStringLiteral("seeded: %1 clusters, %2 courses, %3 lessons")
            .arg(scenario.value(QStringLiteral("clusters")).toArray().size())
            .arg(scenario.value(QStringLiteral("courses")).toArray().size())
            .arg(scenario.value(QStringLiteral("lessons")).toArray().size()));
}

void DemoHost::registerActions(ScenarioPlayer* player)
{
    player->addAction(QStringLiteral("lessonNotice"), [this](const QJsonObject& step) {
        const QString typeName = step.value(QStringLiteral("type")).toString();
        if (!noticeTypes().contains(typeName)) {
            say(QStringLiteral("step: unknown notice type %1").arg(typeName));
            return;
        }
        NoticeListModel::instance()->addLessonNotice(noticeTypes().value(typeName), idOf(step, "lessonId"));
    });
    player->addAction(QStringLiteral("contactorAdd"),
                      [](const QJsonObject&) { NoticeListModel::instance()->addContactorAddNotice(); });
    player->addAction(QStringLiteral("studyReport"), [](const QJsonObject& step) {
        NoticeListModel::instance()->addStudyReportNotice(idOf(step, "lessonId"));
    });
    player->addAction(QStringLiteral("studyActivity"), [](const QJsonObject& step) { addStudyActivity(step); });
    player->addAction(QStringLiteral("clusterNotice"), [](const QJsonObject& step) {
        NoticeListModel::instance()->addClusterNoticeRemindNotice(step.value(QStringLiteral("content")).toString(),
                                                                  idOf(step, "contentId"), idOf(step, "clusterId"),
                                                                  idOf(step, "creatorId"));
    });
    player->addAction(QStringLiteral("advanceClock"), [](const QJsonObject& step) {
        VyrEngine::CoreEngine::instance()->advanceTime(qint64(step.value(QStringLiteral("seconds")).toDouble()));
    });
    player->addAction(QStringLiteral("printRows"), [this](const QJsonObject&) { printRows(); });
    player->addAction(QStringLiteral("quit"), [](const QJsonObject&) { QCoreApplication::exit(0); });
    m_windowActions->registerActions(player);
}

bool DemoHost::isWaitingToQuit() const
{
    return m_windowActions->isWaitingToQuit();
}

void DemoHost::printRows()
{
    NoticeListModel* model = NoticeListModel::instance();
    say(QStringLiteral("rows: %1 (Lesson %2, Activity %3)")
            .arg(model->rowCount())
            .arg(model->getNoticeItemNum(VyrEngine::Lesson))
            .arg(model->getNoticeItemNum(VyrEngine::Activity)));
    for (int row = 0; row < model->rowCount(); ++row) {
        const auto notice = model->data(model->index(row), Qt::UserRole).value<VyrEngine::GatherNoticePtr>();
        if (!notice)
            continue;
        say(QStringLiteral("  [%1] type=%2 %3 title=\"%4\" lesson=\"%5\" time=%6")
                .arg(row)
                .arg(int(notice->type()))
                .arg(categoryName(notice->category()), notice->title(), notice->lessonName())
                .arg(notice->time()));
    }
}

void DemoHost::announceStep(int index, const QJsonObject& step)
{
    QJsonObject shown = step;
    shown.remove(QStringLiteral("at"));
    say(QStringLiteral("step %1 @%2ms: %3")
            .arg(index)
            .arg(step.value(QStringLiteral("at")).toInt())
            .arg(QString::fromUtf8(QJsonDocument(shown).toJson(QJsonDocument::Compact))));
}

void DemoHost::onPopupNoticeListWidget(VyrEngine::NoticeCategory category)
{
    say(QStringLiteral("model: popupNoticeListWidget(%1)").arg(categoryName(category)));
}

void DemoHost::onRemoveNoticeListItem(VyrEngine::NoticeCategory category)
{
    say(QStringLiteral("model: removeNoticeListItem(%1)").arg(categoryName(category)));
}

void DemoHost::onTracked(const QString& event, const QVariantMap& data)
{
    const QByteArray json = QJsonDocument(QJsonObject::fromVariantMap(data)).toJson(QJsonDocument::Compact);
    say(QStringLiteral("track: %1 %2").arg(event, QString::fromUtf8(json)));
}

void DemoHost::say(const QString& line)
{
    m_out << line << '\n';
    m_out.flush();
}
