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
 * current() asks the system for the taskbar's edge and the primary screen. A
 * host that simulates a screen (a test, a demo) can put its own edge and
 * rectangles in their place with setOverride() until clearOverride(). The
 * override is process-wide and read at every placement; GUI thread only.
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

    // Where a window of some size stands at the corner.
    struct Corner
    {
        QPoint start; // the window's top on the work area's bottom edge
        QPoint end;   // where the window appears
    };

    /**
     * The override if one is set; otherwise the system's taskbar edge and the
     * primary screen's rectangles (empty rectangles when there is no screen).
     */
    static Screen current();

    /**
     * The width and height that the corner is measured from, by the taskbar's
     * edge: left takes the width of geometry and the height of
     * availableGeometry, top the other way round, right and bottom both from
     * availableGeometry. Only sizes count, never the rectangles' origin, so
     * the corner is that of a screen at (0, 0).
     * False, with nothing written, for any other edge value.
     */
    static bool screenLengths(const Screen& screen, int* screenWidth, int* screenHeight);

    // The corner of current() for a window of `windowSize`, raised by
    // `bottomOffset` pixels. The notice windows, gathered and single, all
    // take their place from here. False, with nothing written, for an edge
    // that is none of the four.
    static bool cornerFor(const QSize& windowSize, int bottomOffset, Corner* corner);

    /** Makes current() return @p screen from now on, for every window. */
    static void setOverride(const Screen& screen);
    /** Back to the system's screen. */
    static void clearOverride();
    /** Whether setOverride() is in force. */
    static bool hasOverride();
};
