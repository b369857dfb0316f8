#pragma once

#include "ClusterID.h"

#include <QString>

namespace VyrEngine {

/** A cluster (class group) as the contacts engine knows it. */
class ClusterInfo
{
public:
    ClusterInfo() = default;
    ClusterInfo(const ClusterID& id, const QString& name);

    ClusterID clusterId() const { return m_id; }
    QString name() const { return m_name; }
    void setName(const QString& name) { m_name = name; }

private:
    ClusterID m_id;
    QString m_name;
};

} // namespace VyrEngine
