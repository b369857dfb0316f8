#pragma once

#include <QString>

namespace VyrEngine {

/**
 * One person as the contacts engine knows them.
 *
 * Host side: build one with the constructor and give it to
 * ContactsEngine::putUser(); setRemark() sets the name the user gave them.
 */
class UserInfo
{
public:
    UserInfo() = default;
    UserInfo(quint64 uid, const QString& nickname, const QString& telephone = QString());

    quint64 uid() const { return m_uid; }
    QString nickname() const { return m_nickname; }
    QString telephone() const { return m_telephone; }
    QString remark() const { return m_remark; }
    /** The name to show: the remark, else the nickname, else the telephone. */
    QString displayName() const;

    void setRemark(const QString& remark) { m_remark = remark; }

private:
    quint64 m_uid = 0;
    QString m_nickname;
    QString m_telephone;
    QString m_remark;
};

} // namespace VyrEngine
