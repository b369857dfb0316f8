#include "ClusterID.h"

namespace VyrEngine {

ClusterID::ClusterID(quint64 id, ClusterType type)
    : m_id(id)
    , m_type(type)
{
}

ClusterID::ClusterID(quint64 id, int type)
    : ClusterID(id, static_cast<ClusterType>(type))
{
}

} // namespace VyrEngine
