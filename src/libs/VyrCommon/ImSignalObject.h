#pragma once

#include "OpaqueCommonPod.h"
#include "RoomType.h"
#include "SnapshotLesson.h"

#include <QObject>
#include <QSharedPointer>
#include <QString>

/**
 * The client's hub of application-wide announcements: log-out and the start
 * of a classroom. Whoever decides such a thing emits the signal here; every
 * window that cares listens.
 *
 * Host side: the signals themselves. A host (or a test) emits them on the
 * instance, from the GUI thread or from any other thread: the argument types
 * are registered, so receivers on the GUI thread get them queued there.
 *   emit ImSignalObject::instance()->signalLogOut();
 *   emit ImSignalObject::instance()->signalStartupClassroom(school, lesson, course, RoomTypeLive, false);
 *   emit ImSignalObject::instance()->signalStartupLocalClassroom(lesson, course, school, name, RoomTypeLocal);
 * The host connects signalViewClusterNoticeDetails to what opens a cluster
 * notice's detail page.
 * menuAddContacts goes the other way: a window asks the host to open its
 * add-contact function, and the host connects to it.
 * The study report request goes the other way: a notice emits it and the host
 * connects to it (directly: its pointer types are declared by the notice library).
 */
class ImSignalObject : public QObject
{
    Q_OBJECT
public:
    static ImSignalObject* instance();

signals:
    /** The user logs out of the client. */
    void signalLogOut();
    /** A classroom is being entered. @p classId is the lesson's id. */
    void signalStartupClassroom(qulonglong schoolId, qulonglong classId, qulonglong courseId, RoomType roomType,
                                bool forceEnter);
    /** A local (offline) classroom is being entered; the ids stand in another order. */
    void signalStartupLocalClassroom(qulonglong classId, qulonglong courseId, qulonglong schoolId,
                                     QString courseName, RoomType roomType);
    /** Asks the host to open its add-contact function; @p from names the place it was asked from. */
    void menuAddContacts(const QString& keyword, const QString& from);

    /**
     * Open the detail page of a cluster notice. @p type says which kind of
     * page (2: a notice of a cluster); @p contentId is the notice's id on the server.
     */
    void signalViewClusterNoticeDetails(int type, quint64 contentId);
    /**
     * The user asked for a lesson's study report. @p source tells where from
     * (2: a pop-up notice); @p extra is the client's own record, often null.
     */
    void signalStudyReportClicked(const QSharedPointer<VyrEngine::SnapshotLesson>& lesson, int source,
                                  QSharedPointer<OpaqueCommonPod> extra);

private:
    explicit ImSignalObject(QObject* parent = nullptr);

    static ImSignalObject* m_pInstance;
};
