#pragma once

#include "ExamInfo.h"
#include "HomeworkEntity.h"

#include "HostPart.h"

#include <memory>

// The host's side of the test and homework pop-ups: a card is created for
// each notice the server sends, its details request is answered (here:
// logged) and no pointer is kept; each card deletes itself when it closes.
class CourseWorkHost : public HostPart
{
    Q_OBJECT
public:
    CourseWorkHost(Say say, NoticeStacker* stacker, QObject* parent = nullptr);

    // A test's notice in `state`; `userId` is the submitting user on the review side.
    void examNoticeDue(quint64 userId, int state, const ExamInfo& info, bool reviewSide);
    // A homework's notice in `state`; `userId` is the submitting user on the review side.
    void homeworkNoticeDue(quint64 userId, int state, const HomeworkEntity& info, bool reviewSide);

signals:
    void courseWorkNoticeClosed();

private:
    template <class Notice>
    void sayDetailsRequests(Notice* notice, const QString& kind);
    void adopt(PopNoticeBaseWidget* notice, const QString& what);
};
