#pragma once

#include "ClusterID.h"
#include "ClusterInfo.h"

#include <QHash>
#include <QObject>
#include <QPair>
#include <memory>

namespace VyrEngine {

// The client's contacts engine: clusters (class groups) and which cluster a classroom belongs to.
//
// Host side:
//   putCluster(id, name)                          know a cluster (type 0)
//   removeCluster(id)                             forget it
//   setClassroomCluster(courseId, classroomId, clusterId)
//                                                 the cluster of a classroom
//   lookupCount()                                 clusterInfoById calls so far
//   clear()                                       forget everything
class ContactsEngine : public QObject
{
    Q_OBJECT
public:
    static ContactsEngine* instance();

    // `requestIfMissing`: ask the server for an unknown cluster. Its answer
    // would arrive later; the look-up itself gives null at once.
    std::shared_ptr<ClusterInfo> clusterInfoById(const ClusterID& id, bool requestIfMissing);
    ClusterID clusterIdForClassroom(quint64 courseId, quint64 classroomId) const;

    // Host side.
    void putCluster(quint64 clusterId, const QString& name);
    void removeCluster(quint64 clusterId);
    void setClassroomCluster(quint64 courseId, quint64 classroomId, quint64 clusterId);
    int lookupCount() const { return m_lookups; }
    void clear();

private:
    explicit ContactsEngine(QObject* parent = nullptr);

    static ContactsEngine* m_pInstance;
    QHash<quint64, std::shared_ptr<ClusterInfo>> m_clusters;
    QHash<QPair<quint64, quint64>, quint64> m_classroomClusters;
    int m_lookups = 0;
};

} // namespace VyrEngine
