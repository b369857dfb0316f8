#include "LearningPopupHost.h"

#include "ImSignalObject.h"
#include "MicroCourseNoticeWidget.h"
#include "PopNoticeBaseWidget.h"
#include "StudyActivityNoticeWidget.h"
#include "StudyReportNoticeWidget.h"

LearningPopupHost::LearningPopupHost(Say say, NoticeStacker* stacker, QObject* parent)
    : HostPart(std::move(say), stacker, parent)
{
    // The report's details button asks the client through the signal hub, not through the window.
    connect(ImSignalObject::instance(), &ImSignalObject::signalStudyReportClicked, this,
            [this](const QSharedPointer<VyrEngine::SnapshotLesson>& lesson, int source, QSharedPointer<OpaqueCommonPod>) {
                m_say(QStringLiteral("host: signalStudyReportClicked(lesson %1, source %2): opening the report")
                          .arg(lesson ? lesson->lessonId : 0)
                          .arg(source));
            });
}

void LearningPopupHost::showStudyActivity(QSharedPointer<AppendixDataPod> pod,
                                        QSharedPointer<StudyActivityNoticeWidgetDisplayPod> display)
{
    auto* notice = new StudyActivityNoticeWidget(pod, display);
    connect(notice, &StudyActivityNoticeWidget::signalSeeDetails, this, [this](QSharedPointer<AppendixDataPod> seen) {
        m_say(QStringLiteral("host: study activity signalSeeDetails(%1): opening the activity")
                  .arg(seen ? seen->activityId : 0));
    });
    adopt(notice, QStringLiteral("study activity %1").arg(pod ? pod->activityId : 0));
}

void LearningPopupHost::showMicroCourse(quint64 id, int type, const QJsonObject& info)
{
    auto* notice = new MicroCourseNoticeWidget(id, type, info);
    connect(notice, &MicroCourseNoticeWidget::signalSeeDetails, this,
            [this, id]() { m_say(QStringLiteral("host: micro-course signalSeeDetails(): opening lecture %1").arg(id)); });
    adopt(notice, QStringLiteral("micro-course %1").arg(id));
}

void LearningPopupHost::showStudyReport(QSharedPointer<VyrEngine::SnapshotLesson> lesson)
{
    auto* notice = new StudyReportNoticeWidget(lesson);
    adopt(notice, QStringLiteral("study report of lesson %1").arg(lesson ? lesson->lessonId : 0));
}

void LearningPopupHost::adopt(PopNoticeBaseWidget* window, const QString& name)
{
    popCounted(window, QStringLiteral("pop-up: closed (%1)").arg(name));
    m_say(QStringLiteral("pop-up: created (%1)").arg(name));
}
