#pragma once

#include "AppendixDataPod.h"
#include "SnapshotLesson.h"

#include <QJsonObject>
#include <QObject>
#include <QSharedPointer>
#include <functional>

class NoticeStacker;
class PopNoticeBaseWidget;
class StudyActivityNoticeWidgetDisplayPod;

// The host's side of the study activity, micro-course and study report
// pop-ups, as the client shows them: each window is created, wired to a
// handler that logs what the user asked for, handed to the stacker and
// popped; no pointer is kept, since each window deletes itself.
class LearningPopupHost : public QObject
{
    Q_OBJECT
public:
    using Say = std::function<void(const QString&)>;

    LearningPopupHost(Say say, NoticeStacker* stacker, QObject* parent = nullptr);

    void showStudyActivity(QSharedPointer<AppendixDataPod> pod,
                           QSharedPointer<StudyActivityNoticeWidgetDisplayPod> display);
    void showMicroCourse(quint64 id, int type, const QJsonObject& info);
    void showStudyReport(QSharedPointer<VyrEngine::SnapshotLesson> lesson);
    // Pop-ups created and not yet destroyed.
    int openCount() const { return m_openCount; }

private:
    void adopt(PopNoticeBaseWidget* window, const QString& name);

    Say m_say;
    NoticeStacker* m_stacker;
    int m_openCount = 0;
};
