#pragma once

#include "AppendixDataPod.h"
#include "StudyActivityNoticeWidgetDisplayPod.h"

#include <QMetaType>
#include <QSharedPointer>
#include <QString>
#include <memory>

namespace VyrEngine {

enum NoticeType : qint32
{
    ContactorAdd = 0,
    ClusterNoticeRemind = 1,
    LessonAhead = 2,
    LessonPrepare = 3,
    LessonStart = 4,
    StudyReport = 5,
    StudyActivity = 6,
};

enum NoticeCategory : qint32
{
    Activity = 0,
    Lesson = 1,
};

// One gathered notice: a row of the notice list window.
class GatherNotice
{
public:
    GatherNotice() = default;
    explicit GatherNotice(NoticeType type)
        : m_type(type)
    {
    }

    // Never stored: a record whose type is overwritten changes category at once.
    NoticeCategory category() const { return (m_type >= LessonAhead && m_type <= LessonStart) ? Lesson : Activity; }

    NoticeType type() const { return m_type; }
    void setType(NoticeType type) { m_type = type; }
    quint32 time() const { return m_time; }
    void setTime(quint32 time) { m_time = time; }
    QString content() const { return m_content; }
    void setContent(const QString& content) { m_content = content; }
    QString displayContent() const { return m_displayContent; }
    void setDisplayContent(const QString& displayContent) { m_displayContent = displayContent; }
    quint64 contentId() const { return m_contentId; }
    void setContentId(quint64 contentId) { m_contentId = contentId; }
    quint64 clusterId() const { return m_clusterId; }
    void setClusterId(quint64 clusterId) { m_clusterId = clusterId; }
    // Written by the intake and read by nobody here: the setter alone is intended.
    void setCreatorId(quint64 creatorId) { m_creatorId = creatorId; }
    quint64 lessonId() const { return m_lessonId; }
    void setLessonId(quint64 lessonId) { m_lessonId = lessonId; }
    QString title() const { return m_title; }
    void setTitle(const QString& title) { m_title = title; }
    QString lessonName() const { return m_lessonName; }
    void setLessonName(const QString& lessonName) { m_lessonName = lessonName; }
    quint32 lessonStartTime() const { return m_lessonStartTime; }
    void setLessonStartTime(quint32 lessonStartTime) { m_lessonStartTime = lessonStartTime; }
    // Written by the intake and read by nobody here: the setter alone is intended.
    void setSchoolId(quint64 schoolId) { m_schoolId = schoolId; }
    QString noticeId() const { return m_noticeId; }
    void setNoticeId(const QString& noticeId) { m_noticeId = noticeId; }
    QSharedPointer<AppendixDataPod> appendixPod() const { return m_appendixPod; }
    void setAppendixPod(const QSharedPointer<AppendixDataPod>& pod) { m_appendixPod = pod; }
    QSharedPointer<StudyActivityNoticeWidgetDisplayPod> displayPod() const { return m_displayPod; }
    void setDisplayPod(const QSharedPointer<StudyActivityNoticeWidgetDisplayPod>& pod) { m_displayPod = pod; }
    int reportRole() const { return m_reportRole; }
    void setReportRole(int reportRole) { m_reportRole = reportRole; }

private:
    NoticeType m_type = static_cast<NoticeType>(-1);
    quint32 m_time = 0;
    QString m_content;   // kept as the host gave it; rows show m_displayContent
    QString m_displayContent;
    quint64 m_contentId = 0;
    quint64 m_clusterId = 0;
    quint64 m_creatorId = 0;
    quint64 m_lessonId = 0;
    QString m_title;
    QString m_lessonName;
    quint32 m_lessonStartTime = 0;
    quint64 m_schoolId = 0;
    QString m_noticeId;
    QSharedPointer<AppendixDataPod> m_appendixPod;
    QSharedPointer<StudyActivityNoticeWidgetDisplayPod> m_displayPod;
    // Intended: neither constructor sets it; only the study-report intake writes it, and only type 5 reads it.
    int m_reportRole;
};

using GatherNoticePtr = std::shared_ptr<GatherNotice>;

} // namespace VyrEngine

Q_DECLARE_METATYPE(VyrEngine::GatherNoticePtr)
