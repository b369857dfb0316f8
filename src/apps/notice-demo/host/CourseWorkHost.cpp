#include "CourseWorkHost.h"

#include "ExamNoticeWidget.h"
#include "HomeworkNoticeWidget.h"
#include "NoticeStacker.h"

CourseWorkHost::CourseWorkHost(Say say, NoticeStacker* stacker, QObject* parent)
    : QObject(parent)
    , m_say(std::move(say))
    , m_stacker(stacker)
{
}

void CourseWorkHost::examNoticeDue(quint64 userId, int state, const ExamInfo& info, bool reviewSide)
{
    auto* notice = new ExamNoticeWidget(userId, state, std::make_shared<ExamInfo>(info), reviewSide);
    connect(notice, &ExamNoticeWidget::signalSeeDetails, this,
            [this](qulonglong courseId, qulonglong examId, qulonglong activityId) {
                m_say(QStringLiteral("exam notice: signalSeeDetails(course %1, exam %2, activity %3)")
                          .arg(courseId)
                          .arg(examId)
                          .arg(activityId));
            });
    adopt(notice, QStringLiteral("exam notice: exam %1, state %2, %3")
                      .arg(info.examId)
                      .arg(state)
                      .arg(reviewSide ? QStringLiteral("review side") : QStringLiteral("working side")));
}

void CourseWorkHost::homeworkNoticeDue(quint64 userId, int state, const HomeworkEntity& info, bool reviewSide)
{
    auto* notice = new HomeworkNoticeWidget(userId, state, std::make_shared<HomeworkEntity>(info), reviewSide);
    connect(notice, &HomeworkNoticeWidget::signalSeeDetails, this,
            [this](qulonglong courseId, qulonglong homeworkId, qulonglong activityId) {
                m_say(QStringLiteral("homework notice: signalSeeDetails(course %1, homework %2, activity %3)")
                          .arg(courseId)
                          .arg(homeworkId)
                          .arg(activityId));
            });
    adopt(notice, QStringLiteral("homework notice: homework %1, state %2%3, %4")
                      .arg(info.homeworkId)
                      .arg(state)
                      .arg(info.revised ? QStringLiteral(" (revised)") : QString())
                      .arg(reviewSide ? QStringLiteral("review side") : QStringLiteral("working side")));
}

void CourseWorkHost::adopt(PopNoticeBaseWidget* notice, const QString& what)
{
    ++m_openCount;
    connect(notice, &QObject::destroyed, this, [this, what]() {
        --m_openCount;
        m_say(QStringLiteral("%1: closed").arg(what));
        emit courseWorkNoticeClosed();
    });
    // Before it pops, so that it takes its place in the stack as it shows.
    m_stacker->addWindow(notice);
    notice->popNotice();
    m_say(QStringLiteral("%1: created").arg(what));
}
