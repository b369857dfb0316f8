#pragma once

#include "AppendixDataPod.h"
#include "SnapshotLesson.h"

#include "HostPart.h"

#include <QJsonObject>
#include <QSharedPointer>

class StudyActivityNoticeWidgetDisplayPod;

// The host's side of the study activity, micro-course and study report
// pop-ups, as the client shows them: each window is created, wired to a
// handler that logs what the user asked for, handed to the stacker and
// popped; no pointer is kept, since each window deletes itself.
class LearningPopupHost : public HostPart
{
    Q_OBJECT
public:
    LearningPopupHost(Say say, NoticeStacker* stacker, QObject* parent = nullptr);

    void showStudyActivity(QSharedPointer<AppendixDataPod> pod,
                           QSharedPointer<StudyActivityNoticeWidgetDisplayPod> display);
    void showMicroCourse(quint64 id, int type, const QJsonObject& info);
    void showStudyReport(QSharedPointer<VyrEngine::SnapshotLesson> lesson);

private:
    void adopt(PopNoticeBaseWidget* window, const QString& name);
};
