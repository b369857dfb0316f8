#pragma once

#include "ExamInfo.h"
#include "HomeworkEntity.h"

#include <QObject>
#include <functional>
#include <memory>

class NoticeStacker;
class PopNoticeBaseWidget;

// The host's side of the test and homework pop-ups: a card is created for
// each notice the server sends, its details request is answered (here:
// logged) and no pointer is kept; each card deletes itself when it closes.
class CourseWorkHost : public QObject
{
    Q_OBJECT
public:
    using Say = std::function<void(const QString&)>;

    CourseWorkHost(Say say, NoticeStacker* stacker, QObject* parent = nullptr);

    // A test's notice in `state`; `userId` is the submitting user on the review side.
    void examNoticeDue(quint64 userId, int state, const ExamInfo& info, bool reviewSide);
    // A homework's notice in `state`; `userId` is the submitting user on the review side.
    void homeworkNoticeDue(quint64 userId, int state, const HomeworkEntity& info, bool reviewSide);
    // Cards created and not yet destroyed.
    int openCount() const { return m_openCount; }

signals:
    void courseWorkNoticeClosed();

private:
    void adopt(PopNoticeBaseWidget* notice, const QString& what);

    Say m_say;
    NoticeStacker* m_stacker;
    int m_openCount = 0;
};
