#pragma once

#include <QColor>
#include <QImage>
#include <QPixmap>
#include <QRect>
#include <QStringList>
#include <functional>

class QAbstractItemDelegate;
class QModelIndex;
class QPainter;
class QStyleOptionViewItem;
class QWidget;

// Pixel checks for painting tests: pictures taken of widgets and delegates, and
// questions about their colours. Images made here are ARGB32, so a pixel reads
// back as painted, not premultiplied. Areas are clipped to the image.
namespace PixelProbe {

// The widget as it paints itself.
QImage grab(QWidget* widget);
// A canvas of `size` filled with `fill`, with `draw` done on it.
QImage paint(const QSize& size, const QColor& fill, const std::function<void(QPainter&)>& draw = {});
// A pixmap of `size` in one colour, as a source picture.
QPixmap pixmap(const QSize& size, const QColor& fill);
// `delegate` painting `index` with `option` on a canvas of `size` filled with `underlay`.
QImage renderDelegate(const QAbstractItemDelegate& delegate, const QStyleOptionViewItem& option,
                      const QModelIndex& index, const QSize& size, const QColor& underlay);

// The colour at a point, alpha included.
QColor colourAt(const QImage& image, int x, int y);
QColor colourAt(const QImage& image, const QPoint& point);
QColor colourAt(const QPixmap& pixmap, int x, int y);
// The largest difference over red, green, blue and alpha, 0 to 255 (0: the same colour).
int distance(const QColor& a, const QColor& b);
// Whether the pixel at `point` is within `tolerance` of `colour` on every channel.
bool isNear(const QImage& image, const QPoint& point, const QColor& colour, int tolerance = 0);

// Pixels of `area` for which `test` holds.
int countPixels(const QImage& image, const QRect& area, const std::function<bool(QRgb)>& test);
// Pixels of `area` within `tolerance` of `colour`.
int countColour(const QImage& image, const QRect& area, const QColor& colour, int tolerance = 0);
// Whether `area` holds at least one pixel within `tolerance` of `colour`.
bool containsColour(const QImage& image, const QRect& area, const QColor& colour, int tolerance = 0);
// The distinct colours of `area` other than `except`, by name ("#rrggbb"), sorted.
QStringList colourNames(const QImage& image, const QRect& area, const QColor& except);
// The darkest pixel of `area`, by grey value.
QColor darkest(const QImage& image, const QRect& area);

// The smallest rectangle holding every pixel that is not fully transparent; null when there is none.
QRect opaqueBounds(const QImage& image);
// The smallest rectangle holding every pixel within `tolerance` of `colour`; null when there is none.
QRect colourBounds(const QImage& image, const QColor& colour, int tolerance = 0);
// The rightmost column of `area` holding a pixel for which `test` holds, or -1.
int rightmostColumn(const QImage& image, const QRect& area, const std::function<bool(QRgb)>& test);

// Pixels of `area` where the two images differ.
int differingPixels(const QImage& a, const QImage& b, const QRect& area);

} // namespace PixelProbe
