#include "AbstractTreeModel.h"

AbstractTreeModel::AbstractTreeModel(AbstractTreeItem* root, QObject* parent)
    : QAbstractItemModel(parent)
    , m_root(root)
{
}

AbstractTreeModel::~AbstractTreeModel()
{
    delete m_root;
}

AbstractTreeItem* AbstractTreeModel::itemFromIndex(const QModelIndex& index) const
{
    if (!index.isValid())
        return m_root;
    return static_cast<AbstractTreeItem*>(index.internalPointer());
}

QModelIndex AbstractTreeModel::index(int row, int column, const QModelIndex& parent) const
{
    if (!hasIndex(row, column, parent))
        return QModelIndex();
    AbstractTreeItem* parentItem = itemFromIndex(parent);
    AbstractTreeItem* item = parentItem ? parentItem->child(row) : nullptr;
    return item ? createIndex(row, column, item) : QModelIndex();
}

QModelIndex AbstractTreeModel::parent(const QModelIndex& child) const
{
    if (!child.isValid())
        return QModelIndex();
    AbstractTreeItem* parentItem = itemFromIndex(child)->parentItem();
    if (!parentItem || parentItem == m_root)
        return QModelIndex();
    return createIndex(parentItem->row(), 0, parentItem);
}

int AbstractTreeModel::rowCount(const QModelIndex& parent) const
{
    if (parent.column() > 0)
        return 0;
    AbstractTreeItem* item = itemFromIndex(parent);
    return item ? item->childCount() : 0;
}

int AbstractTreeModel::columnCount(const QModelIndex&) const
{
    return 1;
}

QVariant AbstractTreeModel::data(const QModelIndex& index, int role) const
{
    if (!index.isValid() || role != Qt::DisplayRole)
        return QVariant();
    return itemFromIndex(index)->idText();
}
