#include "EnterButtonLocator.h"

#include <QImage>
#include <QVector>
#include <cstdlib>

namespace {

const int kSolidRadius = 2;   // a 5x5 block
const int kTolerance = 6;     // per channel, for rounding in the paint engine

bool isButtonColour(QRgb pixel)
{
    const QColor button = EnterButtonLocator::buttonColor();
    return std::abs(qRed(pixel) - button.red()) <= kTolerance && std::abs(qGreen(pixel) - button.green()) <= kTolerance
        && std::abs(qBlue(pixel) - button.blue()) <= kTolerance;
}

// Pixels whose whole 5x5 neighbourhood is the button's colour.
QVector<bool> solidMask(const QImage& image)
{
    const int w = image.width();
    const int h = image.height();
    QVector<bool> colour(w * h);
    for (int y = 0; y < h; ++y) {
        const QRgb* line = reinterpret_cast<const QRgb*>(image.constScanLine(y));
        for (int x = 0; x < w; ++x)
            colour[y * w + x] = isButtonColour(line[x]);
    }
    QVector<bool> solid(w * h);
    for (int y = kSolidRadius; y < h - kSolidRadius; ++y) {
        for (int x = kSolidRadius; x < w - kSolidRadius; ++x) {
            bool all = true;
            for (int dy = -kSolidRadius; all && dy <= kSolidRadius; ++dy) {
                for (int dx = -kSolidRadius; all && dx <= kSolidRadius; ++dx)
                    all = colour[(y + dy) * w + x + dx];
            }
            solid[y * w + x] = all;
        }
    }
    return solid;
}

// The bounding box and size of the 4-connected patch of `mask` that holds `start`; clears it from the mask.
QRect takePatch(QVector<bool>& mask, int w, int start, int* size)
{
    QVector<int> pending = {start};
    mask[start] = false;
    QRect box;
    *size = 0;
    while (!pending.isEmpty()) {
        const int at = pending.takeLast();
        const int x = at % w;
        const int y = at / w;
        box |= QRect(x, y, 1, 1);
        ++*size;
        const int neighbours[] = {x > 0 ? at - 1 : -1, x < w - 1 ? at + 1 : -1, at - w, at + w};
        for (int next : neighbours) {
            if (next >= 0 && next < mask.size() && mask[next]) {
                mask[next] = false;
                pending.append(next);
            }
        }
    }
    return box;
}

} // namespace

QColor EnterButtonLocator::buttonColor()
{
    return QColor(0x00, 0x92, 0x65);
}

QRect EnterButtonLocator::find(const QImage& row)
{
    const QImage image = row.convertToFormat(QImage::Format_RGB32);
    QVector<bool> mask = solidMask(image);
    QRect best;
    int bestSize = 0;
    for (int i = 0; i < mask.size(); ++i) {
        if (!mask[i])
            continue;
        int size = 0;
        const QRect patch = takePatch(mask, image.width(), i, &size);
        if (size > bestSize) {
            best = patch;
            bestSize = size;
        }
    }
    // The solid test ate the patch's rim; give it back.
    return best.isNull() ? best : best.adjusted(-kSolidRadius, -kSolidRadius, kSolidRadius, kSolidRadius);
}
