#pragma once

#include "GatherNotice.h"

#include <QObject>
#include <QTextStream>
#include <memory>

class ClassNoticeHost;
class CourseWorkHost;
class SinglePopupHost;
class FriendRequestPageHost;
class GatheredNoticeHost;
class NoticeListWidget;
class LearningPopupHost;
class NoticeStacker;

// The host program's messaging part, written against the notice library's
// exported API only, as the client would: takes notices in through the
// model's intakes, owns the gathered windows (GatheredNoticeHost), shows the
// class notices (ClassNoticeHost) and the test and homework pop-ups
// (CourseWorkHost), keeps them all apart with one
// NoticeStacker and prints what comes back (model signals, window signals,
// rows, tracking events).
class DemoHost : public QObject
{
    Q_OBJECT
public:
    // The words a host composes for a study activity beside the engine's record.
    struct ActivityWords
    {
        QString windowTitle;
        QString content;
        QString heading;
        QString pushScenes;
        QString pushBody;
    };

    explicit DemoHost(QObject* parent = nullptr);
    ~DemoHost() override;

    // Notices arriving from the server.
    void lessonNoticeArrived(VyrEngine::NoticeType type, quint64 lessonId);
    void friendRequestArrived();
    void studyReportArrived(quint64 lessonId);
    void studyActivityArrived(quint64 activityId, quint32 courseId, const ActivityWords& words);
    void clusterNoticeArrived(const QString& content, quint64 contentId, quint64 clusterId, quint64 creatorId);
    // A lesson's class notice: shown, or the open one turned (see ClassNoticeHost).
    void classNoticeDue(int type, quint64 lessonId);
    void turnClassNotice(int type, quint64 lessonId);
    // Announcements of the client: a classroom is entered, the user logs out.
    void startClassroom(quint64 lessonId, bool local);
    void logOut();
    // The test and homework pop-ups (see CourseWorkHost).
    CourseWorkHost* courseWork() const { return m_courseWork.get(); }

    // The cluster notice reminder, the certification reminder, the friend-request pop-up.
    SinglePopupHost* singlePopups() const { return m_singlePopups.get(); }

    NoticeListWidget* window(VyrEngine::NoticeCategory category) const;
    // Every window the host shows: the gathered ones and the single pop-ups.
    NoticeStacker* stacker() const { return m_stacker.get(); }
    // The study activity, micro-course and study report pop-ups.
    LearningPopupHost* learningPopups() const { return m_learningPopups.get(); }
    // A gathered window is up or a class notice is open.
    bool anyWindowVisible() const;

    // The friend-request page in its own window, made on first use; what the
    // friend-request pop-up's click leads to.
    void openFriendRequestPage();
    FriendRequestPageHost* friendRequestPage() const { return m_friendRequestPage.get(); }

    void printRows();
    void say(const QString& line);

signals:
    void windowHidden(VyrEngine::NoticeCategory category);
    void classNoticeClosed(quint64 lessonId);
    void courseWorkNoticeClosed();

private:
    void onPopupNoticeListWidget(VyrEngine::NoticeCategory category);
    void onRemoveNoticeListItem(VyrEngine::NoticeCategory category);
    void onTracked(const QString& event, const QVariantMap& data);

    QTextStream m_out;
    // First in, last out: the windows leave the stacker before it goes.
    std::unique_ptr<NoticeStacker> m_stacker;
    std::unique_ptr<GatheredNoticeHost> m_gathered;
    std::unique_ptr<ClassNoticeHost> m_classNotices;
    std::unique_ptr<CourseWorkHost> m_courseWork;
    std::unique_ptr<SinglePopupHost> m_singlePopups;
    std::unique_ptr<FriendRequestPageHost> m_friendRequestPage;
    std::unique_ptr<LearningPopupHost> m_learningPopups;
};
