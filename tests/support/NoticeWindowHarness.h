#pragma once

#include "GatherNotice.h"
#include "TaskbarEdge.h"

#include <QObject>
#include <QPoint>

class NoticeListWidget;
class QPropertyAnimation;
class VyrPauseableTimer;

// Test-side access to a notice window, through its public operations and its
// named children only.
namespace NoticeWindowHarness {

// The simulated screen of the window tests: 800 x 600 with a 40-pixel taskbar at the bottom.
void useTestScreen(TaskbarEdge taskbarEdge = TaskbarEdge::Bottom);

VyrPauseableTimer* closeTimer(NoticeListWidget* window);
// "m_popAnimation", "m_posAnimation" or "m_opacityAnimation"; null when not running.
QPropertyAnimation* animation(NoticeListWidget* window, const char* name);
// Runs an animation to its end now, as if its 500 ms had passed.
void finish(QPropertyAnimation* animation);
// Height of the list (0 when the window counts itself empty).
int listHeight(NoticeListWidget* window);
int rowCount(NoticeListWidget* window);
QString title(NoticeListWidget* window);
// Puts the pointer at `globalPos` (the offscreen platform sends real enter and leave events).
void movePointer(const QPoint& globalPos);
// A point on the window's panel, in global coordinates.
QPoint pointOn(NoticeListWidget* window);
// A point on no window.
QPoint pointOffWindows();

} // namespace NoticeWindowHarness

// Wires the model's two signals to one window the way a host does: a new
// notice of the window's category sizes it first and then pops it (hidden) or
// slides it (visible); a removal calls adjustListHeight(1).
class HostWiring : public QObject
{
    Q_OBJECT
public:
    HostWiring(NoticeListWidget* window, VyrEngine::NoticeCategory category);

private:
    NoticeListWidget* m_window;
    VyrEngine::NoticeCategory m_category;
};
