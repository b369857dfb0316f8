#pragma once

#include "TaskbarEdge.h"
#include "VyrNoticeExport.h"

#include <QPoint>
#include <QRect>
#include <QSize>

/**
 * Where the notice windows sit: the bottom right corner of the work area,
 * measured with the lengths that the taskbar's edge selects.
 *
 * current() asks the system for the taskbar's edge and the primary screen,
 * at every placement. GUI thread only.
 */
class VYRNOTICE_EXPORT ScreenCorner
{
public:
    /** A taskbar edge and the two rectangles of one screen. */
    struct Screen
    {
        /** The edge the taskbar stands at; it picks which rectangle gives which length. */
        TaskbarEdge taskbarEdge = TaskbarEdge::Bottom;
        /** The whole screen, as QScreen::geometry(). */
        QRect geometry;
        /** The screen less the taskbar, as QScreen::availableGeometry(). */
        QRect availableGeometry;
    };

    /** Where a window of some size stands at the corner. */
    struct Corner
    {
        /** The window's top on the work area's bottom edge. */
        QPoint start;
        /** Where the window appears. */
        QPoint end;
    };

    /**
     * The system's taskbar edge and the primary screen's rectangles (empty
     * rectangles when there is no screen).
     */
    static Screen current();

    /**
     * The width and height that the corner is measured from, by the taskbar's
     * edge of @p screen: left takes the width of geometry and the height of
     * availableGeometry, top the other way round, right and bottom both from
     * availableGeometry. Only sizes count, never the rectangles' origin, so
     * the corner is that of a screen at (0, 0). The lengths go to
     * @p screenWidth and @p screenHeight.
     * False, with nothing written, for any other edge value.
     */
    static bool screenLengths(const Screen& screen, int* screenWidth, int* screenHeight);

    /**
     * The corner of current() for a window of @p windowSize, raised by
     * @p bottomOffset pixels, written to @p corner. The notice windows,
     * gathered and single, all take their place from here. False, with
     * nothing written, for an edge that is none of the four.
     */
    static bool cornerFor(const QSize& windowSize, int bottomOffset, Corner* corner);
};
