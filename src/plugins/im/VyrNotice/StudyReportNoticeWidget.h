#pragma once

#include "PopNoticeBaseWidget.h"
#include "SnapshotLesson.h"
#include "VyrNoticeExport.h"

#include <QSharedPointer>

class QLabel;
class QPushButton;

// The pop-up that tells the user that the study report of a finished lesson
// is out: a learning report for a learner (role 1), a teaching report for
// any other role, in the same window with other words.
//
// The heading is the lesson's cluster name, or the course's name when the
// engine already has it in hand; the sentence names the lesson once its
// details have arrived. The view details button asks the host through
// ImSignalObject::signalStudyReportClicked(lesson, 2, null); signalClose()
// and signalSeeDetails() are part of the interface and never emitted.
//
// A host creates the window with the lesson's snapshot, calls popNotice()
// and keeps no pointer. It closes on the user's word, on log-out and 16
// seconds after it popped. A null lesson closes it at once.
class VYRNOTICE_EXPORT StudyReportNoticeWidget : public PopNoticeBaseWidget
{
    Q_OBJECT
public:
    StudyReportNoticeWidget(QSharedPointer<VyrEngine::SnapshotLesson> lesson, QWidget* parent = nullptr);

signals:
    // Declared for the host's code and never emitted: the details go out through ImSignalObject.
    void signalClose();
    void signalSeeDetails(qulonglong courseId, qulonglong examId);

private slots:
    void onViewDetails();
    void onLater();

private:
    void initUi();
    void updateData();
    QString clusterName() const;
    bool mayUseCourseName() const;
    void applyLessonInfo(const QString& lessonName);
    QString toPlainText(const QString& html);
    void trackClick(bool checkUp, bool withTitle);
    bool isLearner() const;

    QSharedPointer<VyrEngine::SnapshotLesson> m_lesson;
    QLabel* m_iconLabel = nullptr;
    QLabel* m_contentLabel = nullptr;
    QLabel* m_headingLabel = nullptr;
    QPushButton* m_viewDetailsBtn = nullptr;
    QPushButton* m_laterBtn = nullptr;
    QString m_pushScenes;
    QString m_textTemplate;
};
