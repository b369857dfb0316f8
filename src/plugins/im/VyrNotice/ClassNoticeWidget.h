#pragma once

#include "PopNoticeBaseWidget.h"
#include "RoomType.h"
#include "NoticeMetaTypes.h"
#include "SnapshotLesson.h"
#include "VyrNoticeExport.h"

#include <QSharedPointer>
#include <tuple>
#include <vector>

class ClassAheadNoticeWidget;
class ClassPrepareNoticeWidget;
class ClassStartNoticeWidget;
class QStackedLayout;

// The pop-up of one lesson: one card with three pages (the lesson starts
// later, is about to start, has started) that follows the lesson while it
// is on the screen.
//
// A host asks ClassNoticeManager::isExistTheNotice() first; if false it
// creates the window, calls popNotice() and ClassNoticeManager::addClassNotice(),
// and keeps no pointer. To turn an open window to another page it emits
// ClassNoticeManager::classTypeAndDataChange(). The window closes itself when
// the lesson is removed, ends, loses the user's role or is closed, when the
// classroom is entered (ImSignalObject), on the user's word, on log-out and
// 16 seconds after it popped; a prepare or start window then emits
// ClassNoticeManager::closeStartNoticeWidget. The enter button only asks
// the host, through startClass(), to enter the classroom.
class VYRNOTICE_EXPORT ClassNoticeWidget : public PopNoticeBaseWidget
{
    Q_OBJECT
public:
    // Also the page's index in the window.
    enum ClassNoticeType
    {
        AheadNotice = 0,
        PrepareNotice = 1,
        StartNotice = 2,
    };
    Q_ENUM(ClassNoticeType)

    // Builds all three pages, shows the page of `type` and fills them from `lesson`.
    ClassNoticeWidget(ClassNoticeType type, QSharedPointer<VyrEngine::SnapshotLesson> lesson,
                      QWidget* parent = nullptr);
    // Takes the lesson out of ClassNoticeManager and, for a prepare or start
    // window, emits closeStartNoticeWidget there.
    ~ClassNoticeWidget() override;

signals:
    // The user asks to enter the lesson's classroom; the host decides.
    void startClass(QSharedPointer<VyrEngine::SnapshotLesson> lesson);

private slots:
    void isHaveEnterClass(qulonglong schoolId, qulonglong classId, qulonglong courseId, RoomType roomType,
                          bool forceEnter);
    void isHaveEnterLocalClass(qulonglong classId, qulonglong courseId, qulonglong schoolId, QString courseName,
                               RoomType type);
    void updateTypeAndData(int type, QSharedPointer<VyrEngine::SnapshotLesson> lesson);
    void setNoticeType(int type);
    void updateData(QSharedPointer<VyrEngine::SnapshotLesson> lesson);
    void closeWidget();
    void onSnapLessonChanged(qulonglong schoolId, qulonglong courseId, qulonglong lessonId);
    void onSnapLessonsChanged(std::vector<std::tuple<quint64, quint64, quint64>> lessons);
    void closeNotice(qulonglong schoolId, qulonglong courseId, qulonglong lessonId);
    void classRemoveSlot(qulonglong schoolId, qulonglong courseId, qulonglong lessonId);
    void enterClassroom(qulonglong lessonId);

private:
    void initUi();
    void trackClick(const QString& pushBody, bool checkUp);
    quint64 lessonId() const;

    QStackedLayout* m_stackedLayout = nullptr;
    ClassAheadNoticeWidget* m_aheadWidget = nullptr;
    ClassPrepareNoticeWidget* m_prepareWidget = nullptr;
    ClassStartNoticeWidget* m_startWidget = nullptr;
    QSharedPointer<VyrEngine::SnapshotLesson> m_lesson;
    int m_noticeType = AheadNotice;
};
