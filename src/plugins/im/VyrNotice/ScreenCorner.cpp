#include "ScreenCorner.h"

#include "ScreenCornerOverride_p.h"
#include "TaskbarEdge_p.h"

#include <QGuiApplication>
#include <QScreen>

namespace {
bool s_hasOverride = false;
ScreenCorner::Screen s_override;
} // namespace

ScreenCorner::Screen ScreenCorner::current()
{
    if (s_hasOverride)
        return s_override;
    Screen screen;
    screen.taskbarEdge = queryTaskbarEdge();
    if (const QScreen* primary = QGuiApplication::primaryScreen()) {
        screen.geometry = primary->geometry();
        screen.availableGeometry = primary->availableGeometry();
    }
    return screen;
}

bool ScreenCorner::screenLengths(const Screen& screen, int* screenWidth, int* screenHeight)
{
    switch (screen.taskbarEdge) {
    case TaskbarEdge::Left:
        *screenWidth = screen.geometry.width();
        *screenHeight = screen.availableGeometry.height();
        return true;
    case TaskbarEdge::Top:
        *screenWidth = screen.availableGeometry.width();
        *screenHeight = screen.geometry.height();
        return true;
    case TaskbarEdge::Right:
    case TaskbarEdge::Bottom:
        *screenWidth = screen.availableGeometry.width();
        *screenHeight = screen.availableGeometry.height();
        return true;
    default:
        return false;
    }
}

bool ScreenCorner::cornerFor(const QSize& windowSize, int bottomOffset, Corner* corner)
{
    int screenWidth = 0;
    int screenHeight = 0;
    if (!screenLengths(current(), &screenWidth, &screenHeight))
        return false;
    const int x = screenWidth - windowSize.width();
    corner->start = QPoint(x, screenHeight - bottomOffset);
    corner->end = QPoint(x, screenHeight - (windowSize.height() + bottomOffset));
    return true;
}

void ScreenCornerOverride::set(const ScreenCorner::Screen& screen)
{
    s_override = screen;
    s_hasOverride = true;
}

void ScreenCornerOverride::clear()
{
    s_hasOverride = false;
}
