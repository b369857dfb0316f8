#include "ClassNoticeManager.h"

ClassNoticeManager* ClassNoticeManager::m_pInstance = nullptr;

ClassNoticeManager::ClassNoticeManager(QObject* parent)
    : QObject(parent)
{
    // The lesson travels in queued signals too.
    qRegisterMetaType<QSharedPointer<VyrEngine::SnapshotLesson>>("QSharedPointer<VyrEngine::SnapshotLesson>");
    init();
}

ClassNoticeManager::~ClassNoticeManager()
{
    // Intended: the destructor schedules the deletion of the instance pointer
    // and clears it, so that the next instance() builds a fresh registry.
    if (m_pInstance) {
        m_pInstance->deleteLater();
        m_pInstance = nullptr;
    }
}

ClassNoticeManager* ClassNoticeManager::instance()
{
    if (!m_pInstance)
        m_pInstance = new ClassNoticeManager(nullptr);
    return m_pInstance;
}

void ClassNoticeManager::addClassNotice(quint64 lessonId)
{
    // Intended: no check for a duplicate.
    m_noticeIds.append(lessonId);
}

void ClassNoticeManager::delClassNotice(quint64 lessonId)
{
    // A later duplicate stays.
    m_noticeIds.removeOne(lessonId);
}

bool ClassNoticeManager::isExistTheNotice(quint64 lessonId)
{
    // Intended: runs over a copy to the end, without stopping at the first hit.
    const QList<quint64> ids = m_noticeIds;
    bool found = false;
    for (quint64 id : ids) {
        if (id == lessonId)
            found = true;
    }
    return found;
}

void ClassNoticeManager::init()
{
    // Intended: an empty hook that the constructor calls.
}
