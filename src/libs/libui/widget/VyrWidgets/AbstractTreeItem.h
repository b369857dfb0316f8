#pragma once

#include <QList>
#include <QString>

/**
 * One node of an AbstractTreeModel: it owns its children and frees them with
 * itself. Subclasses add the fields and say how they copy (`clone`) and how
 * they name themselves (`idText`).
 *
 * Host side: none beyond the interface; a test builds items, attaches them
 * with appendChild/insertChild and reads them back.
 *   child(row)            null for any row out of range, negative ones included
 *   insertChild(row, c)   a row outside 0..childCount() appends; takes ownership
 *   removeChild(c)        detaches and deletes `c`; a stranger is left alone
 *   row()                 the item's place under its parent, 0 for a parentless item
 */
class AbstractTreeItem
{
public:
    explicit AbstractTreeItem(AbstractTreeItem* parent = nullptr);
    virtual ~AbstractTreeItem();

    AbstractTreeItem(const AbstractTreeItem&) = delete;
    AbstractTreeItem& operator=(const AbstractTreeItem&) = delete;

    virtual AbstractTreeItem* clone() const = 0;
    virtual QString idText() const = 0;

    AbstractTreeItem* parentItem() const { return m_parent; }
    int childCount() const;
    AbstractTreeItem* child(int row) const;
    QList<AbstractTreeItem*> children() const;
    int row() const;

    void appendChild(AbstractTreeItem* item);
    void insertChild(int row, AbstractTreeItem* item);
    void removeChild(AbstractTreeItem* item);

private:
    AbstractTreeItem* m_parent = nullptr;
    QList<AbstractTreeItem*> m_children;
};
