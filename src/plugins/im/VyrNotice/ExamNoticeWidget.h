#pragma once

#include "ExamInfo.h"
#include "PopNoticeBaseWidget.h"
#include "VyrNoticeExport.h"

#include <memory>
#include <vector>

namespace VyrEngine {
class ClusterID;
}
struct WorkCard;

// The pop-up of one test: the course's cover, one sentence and the buttons
// "View details" and "Later".
//
// The sentence depends on the state and the side; the test's name and the
// user's name are shown in green (English quotes the test's name, as below):
//
//   side      state  what the user reads
//   working   1      The test "<name>" has started. Please submit it on time.
//   working   4      Your test "<name>" has been reviewed. Check it now.
//   working   5      Your test "<name>" has been reviewed again. Check it now.
//   working   8      The test "<name>" closes in <expireCount> hours. Please submit it in time.
//   review    3      <user> submitted the test "<name>". Review it now.
//   review    9      <user> submitted the test "<name>" late. Review it now.
//
// The working side is the learner who takes the test; the review side is the
// teacher who receives the submissions, and <user> is the display name of
// `userId` (empty when the contacts engine doesn't know the user). Any other
// state, for the side given, closes the window as soon as it is built, so a
// host need not filter states.
//
// A host creates the window, connects signalSeeDetails(), calls popNotice()
// and keeps no pointer. The window closes itself when ExamManager withdraws
// the test, when the course's cluster is deleted, on log-out and on the
// user's word; those engine signals are taken on a later turn of the event
// loop, never inside the constructor.
//
// "View details" reports "PushClick" with "check_up" true, then emits, then
// closes; "Later" reports with "check_up" false, then closes; the close
// button reports "check_up" false once the card has closed.
class VYRNOTICE_EXPORT ExamNoticeWidget : public PopNoticeBaseWidget
{
    Q_OBJECT
public:
    // Builds the hidden window for test `info` (not null) in `state`;
    // `userId` is the submitting user, read only when `reviewSide` is true.
    ExamNoticeWidget(quint64 userId, int state, std::shared_ptr<ExamInfo> info, bool reviewSide,
                     QWidget* parent = nullptr);
    ~ExamNoticeWidget() override;

signals:
    // The user wants the test's page: its course, the test and its study activity.
    void signalSeeDetails(qulonglong courseId, qulonglong examId, qulonglong activityId);

private slots:
    void onViewDetailsClicked();
    void onLaterClicked();
    void onCloseClicked();
    void onExamDeleted(quint64 courseId, quint64 examId);
    void onClusterDeleted(const std::vector<VyrEngine::ClusterID>& ids);

private:
    void initUi();
    void updateData();
    void connectOutside();
    QString templateKey() const;
    void trackClick(bool checkUp);

    quint64 m_userId = 0;
    int m_noticeState = 0;
    std::shared_ptr<ExamInfo> m_info;
    bool m_isReviewSide = false;
    // The icon, the hidden heading, the sentence and the two buttons.
    std::unique_ptr<WorkCard> m_card;
};
