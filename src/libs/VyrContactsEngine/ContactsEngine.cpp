#include "ContactsEngine.h"

namespace VyrEngine {

ContactsEngine* ContactsEngine::m_pInstance = nullptr;

ContactsEngine::ContactsEngine(QObject* parent)
    : QObject(parent)
{
}

ContactsEngine* ContactsEngine::instance()
{
    if (!m_pInstance)
        m_pInstance = new ContactsEngine();
    return m_pInstance;
}

std::shared_ptr<ClusterInfo> ContactsEngine::clusterInfoById(const ClusterID& id, bool requestIfMissing)
{
    Q_UNUSED(requestIfMissing)
    ++m_lookups;
    return m_clusters.value(id.id());
}

ClusterID ContactsEngine::clusterIdForClassroom(quint64 courseId, quint64 classroomId) const
{
    return ClusterID(m_classroomClusters.value(qMakePair(courseId, classroomId)), ClusterTypeClass);
}

void ContactsEngine::putCluster(quint64 clusterId, const QString& name)
{
    m_clusters.insert(clusterId, std::make_shared<ClusterInfo>(ClusterID(clusterId, ClusterTypeClass), name));
}

void ContactsEngine::removeCluster(quint64 clusterId)
{
    m_clusters.remove(clusterId);
}

void ContactsEngine::setClassroomCluster(quint64 courseId, quint64 classroomId, quint64 clusterId)
{
    m_classroomClusters.insert(qMakePair(courseId, classroomId), clusterId);
}

void ContactsEngine::clear()
{
    m_clusters.clear();
    m_classroomClusters.clear();
    m_lookups = 0;
}

} // namespace VyrEngine
