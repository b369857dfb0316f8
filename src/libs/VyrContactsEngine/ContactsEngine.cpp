#include "ContactsEngine.h"

namespace VyrEngine {

ContactsEngine* ContactsEngine::m_pInstance = nullptr;

ContactsEngine::ContactsEngine(QObject* parent)
    : QObject(parent)
{
    qRegisterMetaType<std::vector<ClusterID>>("std::vector<VyrEngine::ClusterID>");
    qRegisterMetaType<std::vector<quint64>>("std::vector<quint64>");
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

std::shared_ptr<UserInfo> ContactsEngine::userInfoById(quint64 userId)
{
    ++m_userLookups;
    return m_users.value(userId);
}

std::shared_ptr<UserInfo> ContactsEngine::userInfo(quint64 uid, int flags)
{
    Q_UNUSED(flags)
    return userInfoById(uid);
}

QString ContactsEngine::userDisplayName(quint64 uid, int flags)
{
    const std::shared_ptr<UserInfo> user = userInfo(uid, flags);
    return user ? user->displayName() : QString();
}

std::map<quint64, QString> ContactsEngine::clusterMemberNicknames(const ClusterID& cluster,
                                                                  const std::vector<quint64>& uids,
                                                                  const QString& defaultName, bool requestIfMissing)
{
    Q_UNUSED(defaultName)
    Q_UNUSED(requestIfMissing)
    std::map<quint64, QString> names;
    for (quint64 uid : uids) {
        const auto it = m_memberNicknames.constFind(qMakePair(cluster.id(), uid));
        if (it != m_memberNicknames.constEnd())
            names[uid] = it.value();
    }
    return names;
}

void ContactsEngine::putUser(const UserInfo& user)
{
    m_users.insert(user.uid(), std::make_shared<UserInfo>(user));
}

void ContactsEngine::removeUser(quint64 uid)
{
    m_users.remove(uid);
}

void ContactsEngine::setClusterMemberNickname(quint64 clusterId, quint64 uid, const QString& nickname)
{
    m_memberNicknames.insert(qMakePair(clusterId, uid), nickname);
}

void ContactsEngine::deleteClusters(const std::vector<quint64>& clusterIds)
{
    std::vector<ClusterID> ids;
    for (quint64 id : clusterIds) {
        m_clusters.remove(id);
        ids.push_back(ClusterID(id, ClusterTypeClass));
    }
    emit signalDelCluster(ids);
}

void ContactsEngine::changeUsers(const std::vector<quint64>& uids)
{
    emit updateUserInfo(uids);
}

void ContactsEngine::clear()
{
    m_clusters.clear();
    m_classroomClusters.clear();
    m_users.clear();
    m_memberNicknames.clear();
    m_lookups = 0;
    m_userLookups = 0;
}

} // namespace VyrEngine
