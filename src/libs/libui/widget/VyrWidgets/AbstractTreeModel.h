#pragma once

#include "AbstractTreeItem.h"

#include <QAbstractItemModel>

/**
 * A tree model over AbstractTreeItem nodes: an index's internal pointer is its
 * item, the root stands for the invalid index. The model owns the root and so
 * every item under it.
 *
 * Host side: none beyond the interface.
 *   index(row, column, parent)  invalid for a row or a column out of range
 *                               (columnCount() of the parent decides)
 *   rowCount(parent)            the item's child count; 0 below column 0
 *   columnCount()               1 unless a subclass says otherwise
 *   data()                      the item's idText() for Qt::DisplayRole
 */
class AbstractTreeModel : public QAbstractItemModel
{
    Q_OBJECT
public:
    AbstractTreeModel(AbstractTreeItem* root, QObject* parent = nullptr);
    ~AbstractTreeModel() override;

    QModelIndex index(int row, int column, const QModelIndex& parent = QModelIndex()) const override;
    QModelIndex parent(const QModelIndex& child) const override;
    int rowCount(const QModelIndex& parent = QModelIndex()) const override;
    int columnCount(const QModelIndex& parent = QModelIndex()) const override;
    QVariant data(const QModelIndex& index, int role = Qt::DisplayRole) const override;

protected:
    AbstractTreeItem* root() const { return m_root; }
    /** The item of @p index, or the root for an invalid one. */
    AbstractTreeItem* itemFromIndex(const QModelIndex& index) const;

private:
    AbstractTreeItem* m_root = nullptr;
};
