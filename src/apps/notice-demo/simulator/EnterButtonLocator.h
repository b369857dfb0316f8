#pragma once

#include <QColor>
#include <QRect>

class QImage;

// Finds a row's enter-classroom button the way a user's eye does: the largest
// patch of the button's green that is at least 24x16 (device-independent)
// pixels and mostly green. The lesson's name may be written in the same green,
// but its glyphs are small patches and a word's box is mostly background.
class EnterButtonLocator
{
public:
    static QColor buttonColor();
    // The patch's bounding box in the image's pixels (its devicePixelRatio
    // scales the smallest button); null when the row has no button.
    static QRect find(const QImage& row);
};
