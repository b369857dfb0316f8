#include "DemoHost.h"

#include "ClassNoticeHost.h"
#include "CourseWorkHost.h"
#include "SinglePopupHost.h"
#include "FriendRequestPageHost.h"
#include "GatheredNoticeHost.h"
#include "NoticeListModel.h"
#include "NoticeListWidget.h"
#include "NoticeStacker.h"
#include "LearningPopupHost.h"
#include "VyrTrack.h"

#include <QJsonDocument>
#include <QJsonObject>

namespace {

QString categoryName(VyrEngine::NoticeCategory category)
{
    return category == VyrEngine::Lesson ? QStringLiteral("Lesson") : QStringLiteral("Activity");
}

} // namespace

DemoHost::DemoHost(QObject* parent)
    : QObject(parent)
    , m_out(stdout)
{
    NoticeListModel* model = NoticeListModel::instance();
    // Reported before the windows' handlers run, so the log reads cause, then effect.
    connect(model, &NoticeListModel::popupNoticeListWidget, this, &DemoHost::onPopupNoticeListWidget);
    connect(model, &NoticeListModel::removeNoticeListItem, this, &DemoHost::onRemoveNoticeListItem);
    m_stacker.reset(new NoticeStacker);
    const auto sayLine = [this](const QString& line) { say(line); };
    m_gathered.reset(new GatheredNoticeHost(sayLine, m_stacker.get()));
    connect(m_gathered.get(), &GatheredNoticeHost::windowHidden, this, &DemoHost::windowHidden);
    m_classNotices.reset(new ClassNoticeHost(sayLine, m_stacker.get()));
    connect(m_classNotices.get(), &ClassNoticeHost::classNoticeClosed, this, &DemoHost::classNoticeClosed);
    m_courseWork.reset(new CourseWorkHost(sayLine, m_stacker.get()));
    connect(m_courseWork.get(), &CourseWorkHost::courseWorkNoticeClosed, this, &DemoHost::courseWorkNoticeClosed);
    m_singlePopups.reset(new SinglePopupHost(sayLine, m_stacker.get()));
    connect(m_singlePopups.get(), &SinglePopupHost::friendRequestPageWanted, this, &DemoHost::openFriendRequestPage);
    m_friendRequestPage.reset(new FriendRequestPageHost(sayLine));
    m_learningPopups.reset(new LearningPopupHost(sayLine, m_stacker.get()));
    connect(model, &NoticeListModel::lessonNoticeUpdated, this, [this]() { say(QStringLiteral("model: lessonNoticeUpdated")); });
    connect(VyrTrack::instance(), &VyrTrack::tracked, this, &DemoHost::onTracked);
    // The windows pick the lesson name's form from the locale they were made in.
    say(QStringLiteral("windows: locale %1").arg(window(VyrEngine::Lesson)->locale().name()));
}

DemoHost::~DemoHost() = default;

void DemoHost::lessonNoticeArrived(VyrEngine::NoticeType type, quint64 lessonId)
{
    NoticeListModel::instance()->addLessonNotice(type, lessonId);
}

void DemoHost::openFriendRequestPage()
{
    m_friendRequestPage->open();
}

void DemoHost::friendRequestArrived()
{
    NoticeListModel::instance()->addContactorAddNotice();
}

void DemoHost::studyReportArrived(quint64 lessonId)
{
    NoticeListModel::instance()->addStudyReportNotice(lessonId);
}

void DemoHost::studyActivityArrived(quint64 activityId, quint32 courseId, const ActivityWords& words)
{
    auto pod = QSharedPointer<AppendixDataPod>::create();
    pod->activityId = activityId;
    pod->activityName = words.heading;
    pod->courseData = QSharedPointer<ActivityCourseDataPod>::create();
    pod->courseData->courseId = courseId;
    auto display = QSharedPointer<StudyActivityNoticeWidgetDisplayPod>::create(
        words.windowTitle, words.content, false, false, false, QString(), false, QString(), QString(), false, false,
        false, false, words.heading, words.pushScenes, words.pushBody, false);
    NoticeListModel::instance()->addStudyActivityNotice(pod, display);
}

void DemoHost::clusterNoticeArrived(const QString& content, quint64 contentId, quint64 clusterId, quint64 creatorId)
{
    NoticeListModel::instance()->addClusterNoticeRemindNotice(content, contentId, clusterId, creatorId);
}

void DemoHost::classNoticeDue(int type, quint64 lessonId)
{
    m_classNotices->classNoticeDue(type, lessonId);
}

void DemoHost::turnClassNotice(int type, quint64 lessonId)
{
    m_classNotices->turnClassNotice(type, lessonId);
}

void DemoHost::startClassroom(quint64 lessonId, bool local)
{
    m_classNotices->startClassroom(lessonId, local);
}

void DemoHost::logOut()
{
    m_classNotices->logOut();
}

NoticeListWidget* DemoHost::window(VyrEngine::NoticeCategory category) const
{
    return m_gathered->window(category);
}

bool DemoHost::anyWindowVisible() const
{
    return m_gathered->anyVisible() || m_classNotices->openCount() > 0 || m_courseWork->openCount() > 0
        || m_learningPopups->openCount() > 0;
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

void DemoHost::say(const QString& line)
{
    m_out << line << '\n';
    m_out.flush();
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
