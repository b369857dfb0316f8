#include "UserInfo.h"

namespace VyrEngine {

UserInfo::UserInfo(quint64 uid, const QString& nickname, const QString& telephone)
    : m_uid(uid)
    , m_nickname(nickname)
    , m_telephone(telephone)
{
}

QString UserInfo::displayName() const
{
    if (!m_remark.isEmpty())
        return m_remark;
    if (!m_nickname.isEmpty())
        return m_nickname;
    return m_telephone;
}

} // namespace VyrEngine
