#pragma once

#include <QMetaType>
#include <QtGlobal>

#include <vector>

namespace VyrEngine {

enum ClusterType
{
    ClusterTypeClass = 0,
    ClusterTypeGroup = 1,
};

/** Identity of a cluster (a class group): the number and its kind. */
class ClusterID
{
public:
    ClusterID() = default;
    ClusterID(quint64 id, ClusterType type);
    ClusterID(quint64 id, int type);

    quint64 id() const { return m_id; }
    ClusterType type() const { return m_type; }
    bool isValid() const { return m_id != 0; }

    bool operator==(const ClusterID& other) const { return m_id == other.m_id && m_type == other.m_type; }
    bool operator!=(const ClusterID& other) const { return !(*this == other); }

private:
    quint64 m_id = 0;
    ClusterType m_type = ClusterTypeClass;
};

} // namespace VyrEngine

/** A cluster's id, and a list of them, travel in QVariants and queued signals. */
Q_DECLARE_METATYPE(VyrEngine::ClusterID)
Q_DECLARE_METATYPE(std::vector<VyrEngine::ClusterID>)
