#pragma once

#include "TaskbarEdge.h"

#include <QModelIndex>
#include <QPoint>
#include <QString>

class NoticeListViewItem;
class NoticeListWidget;
class QListView;
class QPropertyAnimation;
class VyrPauseableTimer;

// Test-side access to a notice window, through its public operations and its
// named children only: the simulated screen, timers and animations, the list
// and its rows, the pointer, and notices added the way a host sizes for them.
namespace NoticeWindowHarness {

// The simulated screen of the window tests: 800 x 600 with a 40-pixel taskbar at the bottom.
void useTestScreen(TaskbarEdge taskbarEdge = TaskbarEdge::Bottom);
// The window's source file, as its log lines name it.
QString sourceFile();

VyrPauseableTimer* closeTimer(NoticeListWidget* window);
// "m_popAnimation", "m_posAnimation" or "m_opacityAnimation"; null when not running.
QPropertyAnimation* animation(NoticeListWidget* window, const char* name);
// Runs an animation to its end now, as if its 500 ms had passed.
void finish(QPropertyAnimation* animation);
// Height of the list (0 when the window counts itself empty).
int listHeight(NoticeListWidget* window);
QString title(NoticeListWidget* window);

// The window's list view ("noticeListView"); its model is the window's proxy.
QListView* view(NoticeListWidget* window);
// The row delegate of the window's list.
NoticeListViewItem* delegate(NoticeListWidget* window);
// Rows the window's proxy shows.
int rowCount(NoticeListWidget* window);
// Index of `row` in the window's proxy.
QModelIndex rowIndex(NoticeListWidget* window, int row);

// Adds `count` Activity notices, sizing the window for each as a host does.
void addActivityNotices(NoticeListWidget* window, int count);
// Removes the newest Activity notice and tells the window.
void removeNewestNotice(NoticeListWidget* window);

// Puts the pointer at `globalPos` (the offscreen platform sends real enter and leave events).
void movePointer(const QPoint& globalPos);
// A point on the window's panel, in global coordinates.
QPoint pointOn(NoticeListWidget* window);
// A point on no window.
QPoint pointOffWindows();

} // namespace NoticeWindowHarness
