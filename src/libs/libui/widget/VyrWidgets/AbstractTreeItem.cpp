#include "AbstractTreeItem.h"

AbstractTreeItem::AbstractTreeItem(AbstractTreeItem* parent)
    : m_parent(parent)
{
}

AbstractTreeItem::~AbstractTreeItem()
{
    qDeleteAll(m_children);
}

int AbstractTreeItem::childCount() const
{
    return m_children.size();
}

AbstractTreeItem* AbstractTreeItem::child(int row) const
{
    if (row < 0 || row >= m_children.size())
        return nullptr;
    return m_children.at(row);
}

QList<AbstractTreeItem*> AbstractTreeItem::children() const
{
    return m_children;
}

int AbstractTreeItem::row() const
{
    if (!m_parent)
        return 0;
    return m_parent->m_children.indexOf(const_cast<AbstractTreeItem*>(this));
}

void AbstractTreeItem::appendChild(AbstractTreeItem* item)
{
    insertChild(m_children.size(), item);
}

void AbstractTreeItem::insertChild(int row, AbstractTreeItem* item)
{
    if (!item)
        return;
    if (row < 0 || row > m_children.size())
        row = m_children.size();
    item->m_parent = this;
    m_children.insert(row, item);
}

void AbstractTreeItem::removeChild(AbstractTreeItem* item)
{
    if (!m_children.removeOne(item))
        return;
    delete item;
}
