#include "TaskbarEdge_p.h"

#if defined(_WIN32)

#include <windows.h>
#include <shellapi.h>

#if defined(_WIN64)
static_assert(sizeof(APPBARDATA) == 48, "the shell expects a 48-byte APPBARDATA on 64-bit Windows");
#endif

TaskbarEdge queryTaskbarEdge()
{
    APPBARDATA data = {};
    data.cbSize = sizeof(APPBARDATA);
    // The result is not looked at: a failed query leaves uEdge 0, read as a taskbar on the left.
    SHAppBarMessage(ABM_GETTASKBARPOS, &data);
    return static_cast<TaskbarEdge>(data.uEdge);
}

#else

#include <QGuiApplication>
#include <QRect>
#include <QScreen>

TaskbarEdge queryTaskbarEdge()
{
    const QScreen* screen = QGuiApplication::primaryScreen();
    if (!screen)
        return TaskbarEdge::Bottom;
    const QRect whole = screen->geometry();
    const QRect available = screen->availableGeometry();
    if (available.left() > whole.left())
        return TaskbarEdge::Left;
    if (available.top() > whole.top())
        return TaskbarEdge::Top;
    if (available.right() < whole.right())
        return TaskbarEdge::Right;
    return TaskbarEdge::Bottom;
}

#endif
