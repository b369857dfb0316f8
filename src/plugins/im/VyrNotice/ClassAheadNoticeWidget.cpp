#include "ClassAheadNoticeWidget.h"

#include "CardParts_p.h"
#include "CoreEngine.h"
#include "LessonNoticeText_p.h"

#include <QBoxLayout>
#include <QPushButton>
#include <QTextBrowser>

ClassAheadNoticeWidget::ClassAheadNoticeWidget(QWidget* parent)
    : LessonPage(parent, qtTrId("ID_ClassAheadNotice_LessonNotice", -1), /*coverWithRatio=*/true)
{
    // Intended: named like the enter button, but on this page it is the known button.
    m_enterBtn = CardParts::buildButton(this, qtTrId("ID_ClassAheadNotice_Known", -1), QStringLiteral("enterClassBtn"),
                                        QStringLiteral("QPushButton_IMButton_Style1"));
    connect(m_enterBtn, &QPushButton::clicked, this, &ClassAheadNoticeWidget::signalClose);

    auto* outer = new QVBoxLayout(this);
    CardParts::setOuterMargins(outer);
    outer->addLayout(m_topRow);
    outer->addStretch();
    outer->addLayout(CardParts::buildButtonRow({m_enterBtn}));
}

void ClassAheadNoticeWidget::applyText(const QSharedPointer<VyrEngine::SnapshotLesson>& lesson,
                                       const QString& lessonName)
{
    const LessonNoticeText::Ahead text =
        LessonNoticeText::ahead(lesson->startTime, VyrEngine::CoreEngine::instance()->currentTime());
    // This page loads the cover after the time and before the text.
    loadCover();
    const QString span = CardParts::nameSpan(this, m_contentBrowser, lessonName);
    m_contentBrowser->setText(text.textTemplate.arg(span).arg(text.timeText));
    keepPushBody(text.textTemplate.arg(lessonName).arg(text.timeText));
}
