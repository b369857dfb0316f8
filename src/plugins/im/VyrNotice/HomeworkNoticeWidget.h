#pragma once

#include "HomeworkEntity.h"
#include "PopNoticeBaseWidget.h"
#include "VyrNoticeExport.h"

#include <memory>
#include <vector>

namespace VyrEngine {
class ClusterID;
}
struct WorkCard;

// The pop-up of one piece of homework: the course's cover, one sentence and
// the buttons "View details" and "Later". The twin of ExamNoticeWidget, with
// its own texts and states, the record's `revised` flag, and the actions of
// its buttons in the other order.
//
// The working side (the learner) knows states 1 (assigned), 4 (reviewed, or
// sent back for revision when `revised`), 5 (reviewed again), 6 (not
// finished), 10 (about to expire, with the record's expireCount) and 12
// (submit again); the review side (the teacher) knows 3 and 9 (submitted,
// or a revision submitted when `revised`) and 11 (submitted late) and names
// the user `userId`. Any other state closes the window as soon as it is built.
//
// A host creates the window, connects signalSeeDetails(), calls popNotice()
// and keeps no pointer. The window closes itself when HomeworkManager
// withdraws the homework, when the course's cluster is deleted, on log-out
// and on the user's word; it builds its sentence again when
// ContactsEngine::updateUserInfo names the logged-in user. Those engine
// signals are taken on a later turn of the event loop.
//
// "View details" emits, closes, then reports "PushClick" with "check_up"
// true; "Later" closes, then reports "check_up" false; the close button
// reports "check_up" false once the card has closed.
class VYRNOTICE_EXPORT HomeworkNoticeWidget : public PopNoticeBaseWidget
{
    Q_OBJECT
public:
    // Builds the hidden window for homework `info` (not null) in `state`;
    // `userId` is the submitting user, read only when `reviewSide` is true.
    HomeworkNoticeWidget(quint64 userId, int state, std::shared_ptr<HomeworkEntity> info, bool reviewSide,
                         QWidget* parent = nullptr);
    ~HomeworkNoticeWidget() override;

signals:
    // The user wants the homework's page: its course, the homework and its study activity.
    void signalSeeDetails(qulonglong courseId, qulonglong homeworkId, qulonglong activityId);

private slots:
    void onViewDetailsClicked();
    void onLaterClicked();
    void onCloseClicked();
    void onHomeworkDeleted(quint64 courseId, quint64 homeworkId);
    void onClusterDeleted(const std::vector<VyrEngine::ClusterID>& ids);
    void onUserInfoUpdated(const std::vector<quint64>& uids);

private:
    void initUi();
    void updateData();
    void connectOutside();
    QString templateKey() const;
    QString workingSideKey() const;
    QString reviewSideKey() const;
    void trackClick(bool checkUp);

    quint64 m_userId = 0;
    int m_noticeState = 0;
    std::shared_ptr<HomeworkEntity> m_info;
    bool m_isReviewSide = false;
    // The icon, the hidden heading, the sentence and the two buttons.
    std::unique_ptr<WorkCard> m_card;
};
