#pragma once

#include "AppendixDataPod.h"
#include "StudyActivityNoticeWidgetDisplayPod.h"

#include <QMetaType>
#include <QSharedPointer>
#include <QString>
#include <memory>

namespace VyrEngine {

/**
 * The kind of a gathered notice. A default-built GatherNotice has the value
 * -1, which no member names.
 */
enum NoticeType : qint32
{
    ContactorAdd = 0,        ///< somebody asked to become a contact; the row stands for the friend-request page
    ClusterNoticeRemind = 1, ///< a cluster (class group) notice is to be read
    LessonAhead = 2,         ///< a lesson will start; the row shows the minutes left, or the start beyond an hour
    LessonPrepare = 3,       ///< a lesson is about to start; the row has the enter-classroom button
    LessonStart = 4,         ///< a lesson has started; same row as LessonPrepare
    StudyReport = 5,         ///< a study report of a lesson is ready
    StudyActivity = 6,       ///< a study activity was published
};

/**
 * The two gathered-notice windows. Computed from the type, never stored.
 * No meta-type is registered for it: connect the signals that carry it
 * directly (the default within one thread), not queued.
 */
enum NoticeCategory : qint32
{
    Activity = 0, ///< every type but the three lesson types
    Lesson = 1,   ///< LessonAhead, LessonPrepare and LessonStart
};

/**
 * One gathered notice: a row of a notice list window.
 *
 * Made and filled by NoticeListModel's intakes and held by it as a
 * GatherNoticePtr; a host reads rows through the model's Qt::UserRole. Times
 * are seconds since the epoch by the engine's clock. Each comment below
 * covers a getter and its setter; getters return copies, and within the
 * library only the intakes write.
 */
class GatherNotice
{
public:
    /** Type -1 (counts as Activity); the other fields as in the next constructor. */
    GatherNotice() = default;
    /**
     * A notice of @p type, every other field empty or 0 but reportRole, which
     * only the study-report intake sets.
     */
    explicit GatherNotice(NoticeType type)
        : m_type(type)
    {
    }

    /**
     * Lesson for the types 2 to 4, Activity for any other. Never stored: a
     * record whose type is overwritten changes category at once.
     */
    NoticeCategory category() const { return (m_type >= LessonAhead && m_type <= LessonStart) ? Lesson : Activity; }

    /** The kind of notice; a lesson row's type changes with later lesson events. */
    NoticeType type() const { return m_type; }
    void setType(NoticeType type) { m_type = type; }
    /** When the notice was taken in or last updated; the windows sort on it, newest first, and show it as hh:mm. */
    quint32 time() const { return m_time; }
    void setTime(quint32 time) { m_time = time; }
    /** Cluster notice: the text as the host gave it. */
    QString content() const { return m_content; }
    void setContent(const QString& content) { m_content = content; }
    /** Cluster notice: the text the row shows, already broken into at most two lines. */
    QString displayContent() const { return m_displayContent; }
    void setDisplayContent(const QString& displayContent) { m_displayContent = displayContent; }
    /** Cluster notice: the content's id, sent out with viewClusterNoticeDetails(). */
    quint64 contentId() const { return m_contentId; }
    void setContentId(quint64 contentId) { m_contentId = contentId; }
    /** The cluster whose avatar the row shows; for lesson and report rows, the lesson's course. */
    quint64 clusterId() const { return m_clusterId; }
    void setClusterId(quint64 clusterId) { m_clusterId = clusterId; }
    /** Cluster notice: the author. Intended: written by the intake and read by nobody here, so a setter alone. */
    void setCreatorId(quint64 creatorId) { m_creatorId = creatorId; }
    /** Lesson and report rows: the lesson; a lesson's later events find its row by it. */
    quint64 lessonId() const { return m_lessonId; }
    void setLessonId(quint64 lessonId) { m_lessonId = lessonId; }
    /** The row's first line: a cluster or course name, "Unknown", or an activity's heading. */
    QString title() const { return m_title; }
    void setTitle(const QString& title) { m_title = title; }
    /** Lesson and report rows: the lesson's name. */
    QString lessonName() const { return m_lessonName; }
    void setLessonName(const QString& lessonName) { m_lessonName = lessonName; }
    /** Lesson rows: the planned start, the low 32 bits of the engine's value. */
    quint32 lessonStartTime() const { return m_lessonStartTime; }
    void setLessonStartTime(quint32 lessonStartTime) { m_lessonStartTime = lessonStartTime; }
    /**
     * Lesson and report rows: the lesson's school. Intended: written by the
     * intake and read by nobody here, so a setter alone.
     */
    void setSchoolId(quint64 schoolId) { m_schoolId = schoolId; }
    /** The notice's identity, a fresh UUID; the key of NoticeListModel::delNotice(const QString&). */
    QString noticeId() const { return m_noticeId; }
    void setNoticeId(const QString& noticeId) { m_noticeId = noticeId; }
    /** Study activity: the engine's record, sent back with viewStudyActivityNoticeDetails(). */
    QSharedPointer<AppendixDataPod> appendixPod() const { return m_appendixPod; }
    void setAppendixPod(const QSharedPointer<AppendixDataPod>& pod) { m_appendixPod = pod; }
    /** Study activity: the host's texts, sent back with viewStudyActivityNoticeDetails(). */
    QSharedPointer<StudyActivityNoticeWidgetDisplayPod> displayPod() const { return m_displayPod; }
    void setDisplayPod(const QSharedPointer<StudyActivityNoticeWidgetDisplayPod>& pod) { m_displayPod = pod; }
    /** Study report: the user's role in the lesson; 1 is a learning report, any other a teaching report. */
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

/**
 * The one form in which a finished notice travels: a std::shared_ptr, not a
 * QSharedPointer. What NoticeListModel::data() holds for Qt::UserRole; a
 * QVariant of any other type gives a null pointer.
 */
using GatherNoticePtr = std::shared_ptr<GatherNotice>;

} // namespace VyrEngine

/** Registered under the name "VyrEngine::GatherNoticePtr" on first use. */
Q_DECLARE_METATYPE(VyrEngine::GatherNoticePtr)
