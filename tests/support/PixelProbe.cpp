#include "PixelProbe.h"

#include <QAbstractItemDelegate>
#include <QPainter>
#include <QSet>
#include <QStyleOptionViewItem>
#include <QWidget>

namespace PixelProbe {

namespace {
// Calls `visit` for each pixel of `area` inside the image, row by row; stops when it returns false.
void forEachPixel(const QImage& image, const QRect& area, const std::function<bool(int, int)>& visit)
{
    const QRect clipped = area.intersected(image.rect());
    for (int y = clipped.top(); y <= clipped.bottom(); ++y) {
        for (int x = clipped.left(); x <= clipped.right(); ++x) {
            if (!visit(x, y))
                return;
        }
    }
}

QRect boundsOf(const QImage& image, const std::function<bool(int, int)>& test)
{
    QRect bounds;
    forEachPixel(image, image.rect(), [&](int x, int y) {
        if (test(x, y))
            bounds |= QRect(x, y, 1, 1);
        return true;
    });
    return bounds;
}
} // namespace

QImage grab(QWidget* widget)
{
    return widget->grab().toImage().convertToFormat(QImage::Format_ARGB32);
}

QImage paint(const QSize& size, const QColor& fill, const std::function<void(QPainter&)>& draw)
{
    QImage image(size, QImage::Format_ARGB32);
    image.fill(fill);
    if (draw) {
        QPainter painter(&image);
        draw(painter);
    }
    return image;
}

QPixmap pixmap(const QSize& size, const QColor& fill)
{
    return QPixmap::fromImage(paint(size, fill));
}

QImage renderDelegate(const QAbstractItemDelegate& delegate, const QStyleOptionViewItem& option,
                      const QModelIndex& index, const QSize& size, const QColor& underlay)
{
    return paint(size, underlay, [&](QPainter& painter) { delegate.paint(&painter, option, index); });
}

QColor colourAt(const QImage& image, int x, int y)
{
    return image.pixelColor(x, y);
}

QColor colourAt(const QImage& image, const QPoint& point)
{
    return image.pixelColor(point);
}

QColor colourAt(const QPixmap& pixmap, int x, int y)
{
    return pixmap.toImage().pixelColor(x, y);
}

int distance(const QColor& a, const QColor& b)
{
    return qMax(qMax(qAbs(a.red() - b.red()), qAbs(a.green() - b.green())),
                qMax(qAbs(a.blue() - b.blue()), qAbs(a.alpha() - b.alpha())));
}

bool isNear(const QImage& image, const QPoint& point, const QColor& colour, int tolerance)
{
    return image.rect().contains(point) && distance(image.pixelColor(point), colour) <= tolerance;
}

int countPixels(const QImage& image, const QRect& area, const std::function<bool(QRgb)>& test)
{
    int count = 0;
    forEachPixel(image, area, [&](int x, int y) {
        count += test(image.pixel(x, y)) ? 1 : 0;
        return true;
    });
    return count;
}

int countColour(const QImage& image, const QRect& area, const QColor& colour, int tolerance)
{
    int count = 0;
    forEachPixel(image, area, [&](int x, int y) {
        count += distance(image.pixelColor(x, y), colour) <= tolerance ? 1 : 0;
        return true;
    });
    return count;
}

bool containsColour(const QImage& image, const QRect& area, const QColor& colour, int tolerance)
{
    bool found = false;
    forEachPixel(image, area, [&](int x, int y) {
        found = distance(image.pixelColor(x, y), colour) <= tolerance;
        return !found;
    });
    return found;
}

QStringList colourNames(const QImage& image, const QRect& area, const QColor& except)
{
    QSet<QString> names;
    forEachPixel(image, area, [&](int x, int y) {
        const QColor colour = image.pixelColor(x, y);
        if (colour != except)
            names.insert(colour.name());
        return true;
    });
    QStringList list = names.values();
    list.sort();
    return list;
}

QColor darkest(const QImage& image, const QRect& area)
{
    QRgb found = qRgb(255, 255, 255);
    forEachPixel(image, area, [&](int x, int y) {
        if (qGray(image.pixel(x, y)) < qGray(found))
            found = image.pixel(x, y);
        return true;
    });
    return QColor(found);
}

QRect opaqueBounds(const QImage& image)
{
    return boundsOf(image, [&](int x, int y) { return image.pixelColor(x, y).alpha() > 0; });
}

QRect colourBounds(const QImage& image, const QColor& colour, int tolerance)
{
    return boundsOf(image, [&](int x, int y) { return distance(image.pixelColor(x, y), colour) <= tolerance; });
}

int rightmostColumn(const QImage& image, const QRect& area, const std::function<bool(QRgb)>& test)
{
    const QRect clipped = area.intersected(image.rect());
    for (int x = clipped.right(); x >= clipped.left(); --x) {
        for (int y = clipped.top(); y <= clipped.bottom(); ++y) {
            if (test(image.pixel(x, y)))
                return x;
        }
    }
    return -1;
}

int differingPixels(const QImage& a, const QImage& b, const QRect& area)
{
    int count = 0;
    forEachPixel(a, area.intersected(b.rect()), [&](int x, int y) {
        count += a.pixel(x, y) != b.pixel(x, y) ? 1 : 0;
        return true;
    });
    return count;
}

} // namespace PixelProbe
