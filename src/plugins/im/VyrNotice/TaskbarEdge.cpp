#include "TaskbarEdge.h"

#if defined(_WIN32)

#include <windows.h>
#include <shellapi.h>

#if defined(_WIN64)
static_assert(sizeof(APPBARDATA) == 48, "the shell expects a 48-byte APPBARDATA on 64-bit Windows");
#endif

int queryTaskbarEdge()
{
    APPBARDATA data = {};
    data.cbSize = sizeof(APPBARDATA);
    // The result is not looked at: a failed query leaves uEdge 0, read as a taskbar on the left.
    SHAppBarMessage(ABM_GETTASKBARPOS, &data);
    return int(data.uEdge);
}

#else

#include <QGuiApplication>
#include <QRect>
#include <QScreen>

int queryTaskbarEdge()
{
    enum { Left = 0, Top = 1, Right = 2, Bottom = 3 };
    const QScreen* screen = QGuiApplication::primaryScreen();
    if (!screen)
        return Bottom;
    const QRect whole = screen->geometry();
    const QRect available = screen->availableGeometry();
    if (available.left() > whole.left())
        return Left;
    if (available.top() > whole.top())
        return Top;
    if (available.right() < whole.right())
        return Right;
    return Bottom;
}

#endif
