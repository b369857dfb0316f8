#include "CourseWorkHost.h"

#include "ExamNoticeWidget.h"
#include "HomeworkNoticeWidget.h"

CourseWorkHost::CourseWorkHost(Say say, NoticeStacker* stacker, QObject* parent)
    : HostPart(std::move(say), stacker, parent)
{
}

namespace {

QString sideOf(bool reviewSide)
{
    return reviewSide ? QStringLiteral("review side") : QStringLiteral("working side");
}

} // namespace

// Tests and homework ask for their details with the same three ids.
template <class Notice>
void CourseWorkHost::sayDetailsRequests(Notice* notice, const QString& kind)
{
    connect(notice, &Notice::signalSeeDetails, this,
            [this, kind](qulonglong courseId, qulonglong workId, qulonglong activityId) {
                m_say(QStringLiteral("%1 notice: signalSeeDetails(course %2, %1 %3, activity %4)")
                          .arg(kind)
                          .arg(courseId)
                          .arg(workId)
                          .arg(activityId));
            });
}

void CourseWorkHost::examNoticeDue(quint64 userId, int state, const ExamInfo& info, bool reviewSide)
{
    auto* notice = new ExamNoticeWidget(userId, state, std::make_shared<ExamInfo>(info), reviewSide);
    sayDetailsRequests(notice, QStringLiteral("exam"));
    adopt(notice, QStringLiteral("exam notice: exam %1, state %2, %3").arg(info.examId).arg(state).arg(sideOf(reviewSide)));
}

void CourseWorkHost::homeworkNoticeDue(quint64 userId, int state, const HomeworkEntity& info, bool reviewSide)
{
    auto* notice = new HomeworkNoticeWidget(userId, state, std::make_shared<HomeworkEntity>(info), reviewSide);
    sayDetailsRequests(notice, QStringLiteral("homework"));
    adopt(notice, QStringLiteral("homework notice: homework %1, state %2%3, %4")
                      .arg(info.homeworkId)
                      .arg(state)
                      .arg(info.revised ? QStringLiteral(" (revised)") : QString())
                      .arg(sideOf(reviewSide)));
}

void CourseWorkHost::adopt(PopNoticeBaseWidget* notice, const QString& what)
{
    popCounted(notice, QStringLiteral("%1: closed").arg(what), [this]() { emit courseWorkNoticeClosed(); });
    m_say(QStringLiteral("%1: created").arg(what));
}
