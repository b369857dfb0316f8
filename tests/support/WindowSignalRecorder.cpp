#include "WindowSignalRecorder.h"

#include "AppendixDataPod.h"
#include "NoticeListWidget.h"
#include "StudyActivityNoticeWidgetDisplayPod.h"

WindowSignalRecorder::WindowSignalRecorder(NoticeListWidget* window)
    : SignalRecorder(window)
{
    auto add = [this](const QString& event) { record(event); };
    connect(window, &NoticeListWidget::viewFriendRequestDetails, this, [add]() { add(QStringLiteral("friend")); });
    connect(window, &NoticeListWidget::viewClusterNoticeDetails, this,
            [add](qulonglong id) { add(QStringLiteral("cluster(%1)").arg(id)); });
    connect(window, &NoticeListWidget::viewStudyReportNoticeDetails, this,
            [add](qulonglong id) { add(QStringLiteral("report(%1)").arg(id)); });
    connect(window, &NoticeListWidget::viewLessonNoticeDetails, this,
            [add](qulonglong id) { add(QStringLiteral("lesson(%1)").arg(id)); });
    connect(window, &NoticeListWidget::viewStudyActivityNoticeDetails, this,
            [add](QSharedPointer<AppendixDataPod> pod, QSharedPointer<StudyActivityNoticeWidgetDisplayPod> display) {
                add(QStringLiteral("activity(%1%2)")
                        .arg(pod ? pod->activityId : 0)
                        .arg(display ? QStringLiteral(",") + display->headingText : QString()));
            });
    connect(window, &NoticeListWidget::enterClassRoom, this,
            [add](qulonglong id) { add(QStringLiteral("enter(%1)").arg(id)); });
    connect(window, &NoticeListWidget::noticeWidgetHidden, this,
            [add](VyrEngine::NoticeCategory category, bool isPosChanged) {
                add(QStringLiteral("hidden(%1,%2)")
                        .arg(category == VyrEngine::Lesson ? QStringLiteral("Lesson") : QStringLiteral("Activity"),
                             isPosChanged ? QStringLiteral("true") : QStringLiteral("false")));
            });
    connect(window, &NoticeListWidget::pauseLessonStartAlert, this,
            [add](qulonglong id) { add(QStringLiteral("pause(%1)").arg(id)); });
}
