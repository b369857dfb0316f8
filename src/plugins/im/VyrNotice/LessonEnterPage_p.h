#pragma once

#include "LessonPage_p.h"

// Private to the library: the prepare and start pages, one page with the
// enter and later buttons that differ only in when the cover is loaded, its
// ratio and their first picture.
class VYRNOTICE_TESTS_EXPORT LessonEnterPage : public LessonPage
{
    Q_OBJECT
public:
    enum CoverStep
    {
        CoverFirst,
        CoverAfterText,
    };

signals:
    void signalEnterClassroom(qulonglong lessonId);

protected:
    LessonEnterPage(QWidget* parent, CoverStep coverStep, bool coverWithRatio);
    void applyText(const QSharedPointer<VyrEngine::SnapshotLesson>& lesson, const QString& lessonName) override;

private slots:
    void enterClassroom();

private:
    QPushButton* m_laterBtn = nullptr;
    CoverStep m_coverStep = CoverFirst;
};
