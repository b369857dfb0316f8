#include "LessonEnterPage_p.h"

#include "CardParts_p.h"

#include <QPushButton>
#include <QTextBrowser>

LessonEnterPage::LessonEnterPage(QWidget* parent, CoverStep coverStep, bool coverWithRatio)
    : LessonPage(parent, qtTrId("ID_LMSClassPrepareNotice_LessonStart", -1), coverWithRatio)
    , m_coverStep(coverStep)
{
    CardParts::buildEnterAndLater(this, &m_enterBtn, &m_laterBtn);
    connect(m_enterBtn, &QPushButton::clicked, this, &LessonEnterPage::enterClassroom);
    connect(m_laterBtn, &QPushButton::clicked, this, &LessonEnterPage::signalClose);
    CardParts::installBody(this, m_topRow, {m_enterBtn, m_laterBtn});
}

void LessonEnterPage::applyText(const QSharedPointer<VyrEngine::SnapshotLesson>& lesson, const QString& lessonName)
{
    Q_UNUSED(lesson)
    if (m_coverStep == CoverFirst)
        loadCover();
    const QString textTemplate = qtTrId("ID_LMS_ClassStartNotice_LessonStart", -1);
    m_contentBrowser->setText(textTemplate.arg(CardParts::nameSpan(this, m_contentBrowser, lessonName)));
    m_contentBrowser->setWordWrapMode(QTextOption::WrapAtWordBoundaryOrAnywhere);
    if (m_coverStep == CoverAfterText)
        loadCover();
    keepPushBody(textTemplate.arg(lessonName));
}

void LessonEnterPage::enterClassroom()
{
    emit signalEnterClassroom(m_lessonId);
}
