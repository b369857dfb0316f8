#pragma once

#include <QMetaType>
#include <QString>
#include <QVector>
#include <QtGlobal>

namespace VyrEngine {

/**
 * One friend request between the user and another person, as the notice
 * engine stores and signals it. `status` holds a friend-request status
 * (0 agreed by me ... 6 overdue); `date` is seconds since the epoch.
 *
 * The record and QVector<FriendRequestInfo> cross queued signals: both are
 * declared meta types here, registered under "VyrEngine::FriendRequestInfo"
 * and "QVector<VyrEngine::FriendRequestInfo>" on first use.
 *
 * Host side: none; a plain record built with its setters.
 */
class FriendRequestInfo
{
public:
    int sequenceId() const { return m_sequenceId; }
    void setSequenceId(int value) { m_sequenceId = value; }
    quint64 sourceId() const { return m_sourceId; }
    void setSourceId(quint64 value) { m_sourceId = value; }
    quint64 targetId() const { return m_targetId; }
    void setTargetId(quint64 value) { m_targetId = value; }
    int status() const { return m_status; }
    void setStatus(int value) { m_status = value; }
    QString message() const { return m_message; }
    void setMessage(const QString& value) { m_message = value; }
    quint64 date() const { return m_date; }
    void setDate(quint64 value) { m_date = value; }
    bool unread() const { return m_unread; }
    void setUnread(bool value) { m_unread = value; }

    bool operator==(const FriendRequestInfo& other) const;

private:
    int m_sequenceId = 0;
    quint64 m_sourceId = 0;
    quint64 m_targetId = 0;
    int m_status = 0;
    QString m_message;
    quint64 m_date = 0;
    bool m_unread = true;
};

} // namespace VyrEngine

Q_DECLARE_METATYPE(VyrEngine::FriendRequestInfo)
