#include "FriendRequestTreeItem_p.h"

FriendRequestTreeItem::FriendRequestTreeItem(int sequenceId, quint64 displayId, quint64 date, QString message,
                                             int status, quint64 sourceId, quint64 targetId,
                                             AbstractTreeItem* parent)
    : AbstractTreeItem(parent)
    , m_sequenceId(sequenceId)
    , m_displayId(displayId)
    , m_date(date)
    , m_message(std::move(message))
    , m_status(status)
    , m_sourceId(sourceId)
    , m_targetId(targetId)
{
}

FriendRequestTreeItem::~FriendRequestTreeItem() = default;

AbstractTreeItem* FriendRequestTreeItem::clone() const
{
    // Intended: only the person and the children are copied; the copy has
    // date 0, which the row painter treats as nothing to show.
    auto* copy = new FriendRequestTreeItem(0, 0, 0, QString(), 0, 0, 0, nullptr);
    copy->m_displayId = m_displayId;
    for (AbstractTreeItem* child : children())
        copy->appendChild(child->clone());
    return copy;
}

QString FriendRequestTreeItem::idText() const
{
    return QString::number(m_displayId, 10);
}
