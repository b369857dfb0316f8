#pragma once

#include "TaskbarEdge.h"
#include "VyrNoticeExport.h"

#include <QPoint>
#include <QRect>
#include <QSize>

// Where the notice windows sit: the bottom right corner of the work area,
// measured with the lengths that the taskbar's edge selects.
//
// current() asks the system for the taskbar's edge and the primary screen. A host that
// simulates a screen (a test, a demo) can put its own edge and rectangles in
// their place with setOverride() until clearOverride().
class VYRNOTICE_EXPORT ScreenCorner
{
public:
    struct Screen
    {
        TaskbarEdge taskbarEdge = TaskbarEdge::Bottom;
        QRect geometry;
        QRect availableGeometry;
    };

    // Where a window of some size stands at the corner.
    struct Corner
    {
        QPoint start; // the window's top on the work area's bottom edge
        QPoint end;   // where the window appears
    };

    static Screen current();

    // The width and height that the corner is measured from, by the taskbar's
    // edge: left takes the width of geometry() and the height of
    // availableGeometry(), top the other way round, right and bottom both from
    // availableGeometry(). Only sizes count, never the rectangles' origin.
    // False, with nothing written, for any other edge value.
    static bool screenLengths(const Screen& screen, int* screenWidth, int* screenHeight);

    // The corner of current() for a window of `windowSize`, raised by
    // `bottomOffset` pixels. The notice windows, gathered and single, all
    // take their place from here. False, with nothing written, for an edge
    // that is none of the four.
    static bool cornerFor(const QSize& windowSize, int bottomOffset, Corner* corner);

    static void setOverride(const Screen& screen);
    static void clearOverride();
    static bool hasOverride();
};
