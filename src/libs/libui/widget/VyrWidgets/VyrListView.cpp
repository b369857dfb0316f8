#include "VyrListView.h"

#include "ClientViewLook_p.h"

VyrListView::VyrListView(QWidget* parent)
    : QListView(parent)
{
    applyClientViewLook(this);
    setUniformItemSizes(true);
}
