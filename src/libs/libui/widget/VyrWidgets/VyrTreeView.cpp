#include "VyrTreeView.h"

#include "ClientViewLook_p.h"

VyrTreeView::VyrTreeView(QWidget* parent)
    : QTreeView(parent)
{
    applyClientViewLook(this);
    setHorizontalScrollBarPolicy(Qt::ScrollBarAlwaysOff);
}
