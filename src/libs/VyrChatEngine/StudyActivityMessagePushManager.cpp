#include "StudyActivityMessagePushManager.h"

#include <thread>

StudyActivityMessagePushManager* StudyActivityMessagePushManager::m_pInstance = nullptr;

StudyActivityMessagePushManager::StudyActivityMessagePushManager(QObject* parent)
    : QObject(parent)
{
    qRegisterMetaType<QSharedPointer<AppendixDataPod>>("QSharedPointer<AppendixDataPod>");
}

StudyActivityMessagePushManager& StudyActivityMessagePushManager::instance()
{
    if (!m_pInstance)
        m_pInstance = new StudyActivityMessagePushManager();
    return *m_pInstance;
}

void StudyActivityMessagePushManager::deleteActivity(QSharedPointer<AppendixDataPod> pod)
{
    m_deleted << pod;
    emit signalActivityDeleteNoticeSingal(pod);
}

void StudyActivityMessagePushManager::deleteActivityFromThread(QSharedPointer<AppendixDataPod> pod)
{
    m_deleted << pod;
    // A plain thread: the emission really happens off the GUI thread, and the join orders it before return.
    std::thread worker([this, pod]() { emit signalActivityDeleteNoticeSingal(pod); });
    worker.join();
}

QList<QSharedPointer<AppendixDataPod>> StudyActivityMessagePushManager::deletedActivities() const
{
    return m_deleted;
}

void StudyActivityMessagePushManager::clear()
{
    m_deleted.clear();
}
