#include "ClusterInfo.h"

namespace VyrEngine {

ClusterInfo::ClusterInfo(const ClusterID& id, const QString& name)
    : m_id(id)
    , m_name(name)
{
}

} // namespace VyrEngine
