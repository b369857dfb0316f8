#pragma once

#include "AppendixDataPod.h"

#include <QList>
#include <QMetaType>
#include <QObject>
#include <QSharedPointer>

/**
 * The chat engine's part that receives study activities pushed by the server
 * and tells when one was withdrawn.
 *
 * Host side:
 *   deleteActivity(pod)           the server withdrew the activity: emits
 *                                 signalActivityDeleteNoticeSingal(pod) at once
 *   deleteActivityFromThread(pod) the same, emitted on a short-lived worker thread
 *   deletedActivities()           every activity withdrawn so far; clear() forgets them
 * The pointer type is a registered meta type, so queued receivers get it.
 */
class StudyActivityMessagePushManager : public QObject
{
    Q_OBJECT
public:
    static StudyActivityMessagePushManager& instance();

    // Host side.
    void deleteActivity(QSharedPointer<AppendixDataPod> pod);
    void deleteActivityFromThread(QSharedPointer<AppendixDataPod> pod);
    QList<QSharedPointer<AppendixDataPod>> deletedActivities() const;
    void clear();

signals:
    /** The activity was withdrawn; the name is the client's, spelling included. */
    void signalActivityDeleteNoticeSingal(QSharedPointer<AppendixDataPod> pod);

private:
    explicit StudyActivityMessagePushManager(QObject* parent = nullptr);

    static StudyActivityMessagePushManager* m_pInstance;
    QList<QSharedPointer<AppendixDataPod>> m_deleted;
};

Q_DECLARE_METATYPE(QSharedPointer<AppendixDataPod>)
