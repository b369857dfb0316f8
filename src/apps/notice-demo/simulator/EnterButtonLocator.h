#pragma once

#include <QColor>
#include <QRect>

class QImage;

// Finds a row's enter-classroom button the way a user's eye does: the largest
// solid patch of the button's green in a picture of the row. The lesson's
// name may be written in the same green, but glyph strokes are too thin to
// hold a solid 5x5 block, so text never counts.
class EnterButtonLocator
{
public:
    static QColor buttonColor();
    // The patch's bounding box in the image's pixels; null when the row has no button.
    static QRect find(const QImage& row);
};
