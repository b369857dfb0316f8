#pragma once

#include "VyrNoticeExport.h"

#include <QRect>

// Where the notice windows sit: the bottom right corner of the work area,
// measured with the lengths that the taskbar's edge selects.
//
// current() asks queryTaskbarEdge() and the primary screen. A host that
// simulates a screen (a test, a demo) can put its own edge and rectangles in
// their place with setOverride() until clearOverride().
class VYRNOTICE_EXPORT ScreenCorner
{
public:
    struct Screen
    {
        int taskbarEdge = 3;
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
