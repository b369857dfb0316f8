#pragma once

#include "LessonInfo.h"
#include "SnapshotLesson.h"
#include "VyrNoticeExport.h"

#include <QPointer>
#include <QSharedPointer>
#include <QString>
#include <QWidget>

class PopNoticeBaseWidget;
class QLabel;
class QPushButton;
class QTextBrowser;

// The class notice page of a lesson that has started: the course's cover
// (the default cluster picture until it arrives), the heading, the lesson's
// name, and the enter and later buttons.
class VYRNOTICE_TESTS_EXPORT ClassStartNoticeWidget : public QWidget
{
    Q_OBJECT
public:
    explicit ClassStartNoticeWidget(QWidget* parent);

    // Sets `name` as the heading; with a lesson, fetches its details and fills the text.
    void setLessonData(QSharedPointer<VyrEngine::SnapshotLesson> lesson, QString name);
    void setCurrentPage(bool isCurrentPage);
    // The text that tracking reports: the whole lesson name, no markup.
    QString pushBody();

signals:
    void signalClose();
    void signalEnterClassroom(qulonglong lessonId);

private slots:
    void onCoursePixmapChanged(qulonglong schoolId, qulonglong courseId);
    void enterClassroom();

private:
    void initUi();
    void applyText(const QSharedPointer<VyrEngine::LessonInfo>& info);
    void loadCover();

    QPointer<PopNoticeBaseWidget> m_ownerWindow;
    quint64 m_lessonId = 0;
    QLabel* m_iconLabel = nullptr;
    QLabel* m_headingLabel = nullptr;
    QTextBrowser* m_contentBrowser = nullptr;
    QPushButton* m_enterBtn = nullptr;
    QPushButton* m_laterBtn = nullptr;
    quint64 m_schoolId = 0;
    quint64 m_courseId = 0;
    bool m_isCurrentPage = false;
    QString m_pushBody;
};
