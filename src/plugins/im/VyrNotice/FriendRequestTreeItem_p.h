#pragma once

#include "AbstractTreeItem.h"
#include "VyrNoticeExport.h"

#include <QString>
#include <QtGlobal>

// One node of the friend-request tree: a day group or a person's row. A group
// is made from the same record as its first row; only its date is used.
class VYRNOTICE_TESTS_EXPORT FriendRequestTreeItem : public AbstractTreeItem
{
public:
    FriendRequestTreeItem(int sequenceId, quint64 displayId, quint64 date, QString message, int status,
                          quint64 sourceId, quint64 targetId, AbstractTreeItem* parent);
    ~FriendRequestTreeItem() override;

    AbstractTreeItem* clone() const override;
    QString idText() const override;

    int sequenceId() const { return m_sequenceId; }
    quint64 displayId() const { return m_displayId; }
    quint64 date() const { return m_date; }
    QString message() const { return m_message; }
    int status() const { return m_status; }
    quint64 sourceId() const { return m_sourceId; }
    quint64 targetId() const { return m_targetId; }

    void setDate(quint64 date) { m_date = date; }
    void setMessage(const QString& message) { m_message = message; }
    void setStatus(int status) { m_status = status; }

private:
    int m_sequenceId = 0;
    quint64 m_displayId = 0;
    quint64 m_date = 0;
    QString m_message;
    int m_status = 0;
    quint64 m_sourceId = 0;
    quint64 m_targetId = 0;
};
