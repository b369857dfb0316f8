#pragma once

#include "LessonInfo.h"
#include "SnapshotLesson.h"
#include "VyrNoticeExport.h"

#include <QPointer>
#include <QSharedPointer>
#include <QString>
#include <QWidget>

class PopNoticeBaseWidget;
class QBoxLayout;
class QLabel;
class QPushButton;
class QTextBrowser;

// Private to the library: what the three class notice pages are alike. Each
// shows the course's cover, a heading and one sentence in rich text, keeps a
// plain form of the sentence for tracking and reports it when it is the page
// shown. A page adds its buttons and writes its sentence.
class VYRNOTICE_TESTS_EXPORT LessonPage : public QWidget
{
    Q_OBJECT
public:
    // Sets `name` as the heading; with a lesson, fetches its details and fills the text.
    void setLessonData(QSharedPointer<VyrEngine::SnapshotLesson> lesson, QString name);
    void setCurrentPage(bool isCurrentPage);
    // The text that tracking reports: the whole lesson name, no markup.
    QString pushBody();

signals:
    void signalClose();

protected:
    // Builds the top row under `heading` (m_topRow, for the page's layout);
    // `coverWithRatio` gives the cover the screen's ratio.
    LessonPage(QWidget* parent, const QString& heading, bool coverWithRatio);

    // Writes the page's sentence once the lesson's details have arrived.
    virtual void applyText(const QSharedPointer<VyrEngine::SnapshotLesson>& lesson, const QString& lessonName) = 0;
    void loadCover();
    // Keeps the plain sentence for tracking and reports it if this page is shown.
    void keepPushBody(const QString& pushBody);

    QPointer<PopNoticeBaseWidget> m_ownerWindow;
    // Read by the pages with an enter button only.
    quint64 m_lessonId = 0;
    QLabel* m_iconLabel = nullptr;
    QLabel* m_headingLabel = nullptr;
    QTextBrowser* m_contentBrowser = nullptr;
    QPushButton* m_enterBtn = nullptr;
    QBoxLayout* m_topRow = nullptr;

private slots:
    void onCoursePixmapChanged(qulonglong schoolId, qulonglong courseId);

private:
    quint64 m_schoolId = 0;
    quint64 m_courseId = 0;
    bool m_coverWithRatio = false;
    bool m_isCurrentPage = false;
    QString m_pushBody;
};
