#pragma once

#include "ClusterID.h"
#include "ClusterInfo.h"
#include "UserInfo.h"

#include <QHash>
#include <QObject>
#include <QPair>
#include <map>
#include <memory>
#include <vector>

namespace VyrEngine {

/**
 * The client's contacts engine: clusters (class groups), which cluster a
 * classroom belongs to, people and their nicknames inside clusters.
 *
 * Host side:
 *   putCluster(id, name)                          know a cluster (type 0)
 *   removeCluster(id)                             forget it
 *   setClassroomCluster(courseId, classroomId, clusterId)
 *                                                 the cluster of a classroom
 *   lookupCount()                                 clusterInfoById calls so far
 *   putUser(UserInfo) / removeUser(uid)           know a person, or forget them
 *   userLookupCount()                             userInfoById/userInfo calls so far
 *   setClusterMemberNickname(clusterId, uid, nickname)
 *                                                 a member's nickname inside a cluster
 *   deleteClusters(ids)                           forget the clusters, then emit signalDelCluster
 *   changeUsers(uids)                             emit updateUserInfo
 *   clear()                                       forget everything
 */
class ContactsEngine : public QObject
{
    Q_OBJECT
public:
    static ContactsEngine* instance();

    /**
     * @p requestIfMissing: ask the server for an unknown cluster. Its answer
     * would arrive later; the look-up itself gives null at once.
     */
    std::shared_ptr<ClusterInfo> clusterInfoById(const ClusterID& id, bool requestIfMissing);
    ClusterID clusterIdForClassroom(quint64 courseId, quint64 classroomId) const;

    /** A person, or null when unknown. */
    std::shared_ptr<UserInfo> userInfoById(quint64 userId);
    /** The same look-up with the client's flag word (unused here). */
    std::shared_ptr<UserInfo> userInfo(quint64 uid, int flags);
    /** The name to show for a person; empty when unknown. */
    QString userDisplayName(quint64 uid, int flags);
    /**
     * Nicknames inside a cluster for the given members. A member without a
     * nickname in the cluster is left out of the map; @p defaultName and
     * @p requestIfMissing are the client's (a fallback it doesn't apply here,
     * and a server query whose answer would come later).
     */
    std::map<quint64, QString> clusterMemberNicknames(const ClusterID& cluster, const std::vector<quint64>& uids,
                                                      const QString& defaultName, bool requestIfMissing);

    // Host side.
    void putCluster(quint64 clusterId, const QString& name);
    void removeCluster(quint64 clusterId);
    void setClassroomCluster(quint64 courseId, quint64 classroomId, quint64 clusterId);
    int lookupCount() const { return m_lookups; }
    void putUser(const UserInfo& user);
    void removeUser(quint64 uid);
    int userLookupCount() const { return m_userLookups; }
    void setClusterMemberNickname(quint64 clusterId, quint64 uid, const QString& nickname);
    void deleteClusters(const std::vector<quint64>& clusterIds);
    void changeUsers(const std::vector<quint64>& uids);
    void clear();

signals:
    /** Clusters that were deleted. */
    void signalDelCluster(const std::vector<VyrEngine::ClusterID>& ids);
    /** People whose data changed. */
    void updateUserInfo(const std::vector<quint64>& uids);

private:
    explicit ContactsEngine(QObject* parent = nullptr);

    static ContactsEngine* m_pInstance;
    QHash<quint64, std::shared_ptr<ClusterInfo>> m_clusters;
    QHash<QPair<quint64, quint64>, quint64> m_classroomClusters;
    QHash<quint64, std::shared_ptr<UserInfo>> m_users;
    QHash<QPair<quint64, quint64>, QString> m_memberNicknames;
    int m_lookups = 0;
    int m_userLookups = 0;
};

} // namespace VyrEngine

/** The user signal's argument travels over queued connections (the cluster list is declared beside ClusterID). */
Q_DECLARE_METATYPE(std::vector<quint64>)
