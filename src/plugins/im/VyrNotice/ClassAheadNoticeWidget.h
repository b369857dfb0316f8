#pragma once

#include "LessonPage_p.h"

// The class notice page of a lesson that starts later: the course's cover,
// the heading, when the lesson starts, and the known button, which only
// dismisses the notice.
class VYRNOTICE_TESTS_EXPORT ClassAheadNoticeWidget : public LessonPage
{
    Q_OBJECT
public:
    explicit ClassAheadNoticeWidget(QWidget* parent);

protected:
    void applyText(const QSharedPointer<VyrEngine::SnapshotLesson>& lesson, const QString& lessonName) override;
};
