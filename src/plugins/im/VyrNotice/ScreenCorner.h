#pragma once

#include "TaskbarEdge.h"
#include "VyrNoticeExport.h"

#include <QRect>

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

    static Screen current();

    // The width and height that the corner is measured from, by the taskbar's
    // edge: left takes the width of geometry() and the height of
    // availableGeometry(), top the other way round, right and bottom both from
    // availableGeometry(). Only sizes count, never the rectangles' origin.
    // False, with nothing written, for any other edge value.
    static bool screenLengths(const Screen& screen, int* screenWidth, int* screenHeight);

    static void setOverride(const Screen& screen);
    static void clearOverride();
    static bool hasOverride();
};
