#include "ClientViewLook_p.h"

#include <QAbstractItemView>
#include <QScrollBar>

namespace {
const char* const kSlimScrollBar =
    "QScrollBar:vertical { background: transparent; width: 6px; margin: 0px; }"
    "QScrollBar::handle:vertical { background: #D5D8DD; border-radius: 3px; min-height: 24px; }"
    "QScrollBar::handle:vertical:hover { background: #B9BDC4; }"
    "QScrollBar::add-line:vertical, QScrollBar::sub-line:vertical { height: 0px; }"
    "QScrollBar::add-page:vertical, QScrollBar::sub-page:vertical { background: transparent; }";
}

void applyClientViewLook(QAbstractItemView* view)
{
    view->setFrameShape(QFrame::NoFrame);
    view->viewport()->setAutoFillBackground(false);
    view->verticalScrollBar()->setStyleSheet(QString::fromLatin1(kSlimScrollBar));
}
