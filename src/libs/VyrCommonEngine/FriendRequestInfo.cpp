#include "FriendRequestInfo.h"

namespace VyrEngine {

bool FriendRequestInfo::operator==(const FriendRequestInfo& other) const
{
    return m_sequenceId == other.m_sequenceId && m_sourceId == other.m_sourceId && m_targetId == other.m_targetId
           && m_status == other.m_status && m_message == other.m_message && m_date == other.m_date
           && m_unread == other.m_unread;
}

} // namespace VyrEngine
