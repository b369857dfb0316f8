#include "EnterButtonLocator.h"

#include <QImage>
#include <QVector>
#include <cstdlib>

namespace {

const int kTolerance = 6;   // per channel, for rounding in the paint engine
// Smaller patches are glyphs (a filled square in a lesson's name), not a button.
const QSize kMinimumButton(24, 16);
// A button is mostly green around its white label; a word in green is mostly background.
const double kMinimumFill = 0.5;

bool isButtonColour(QRgb pixel)
{
    const QColor button = EnterButtonLocator::buttonColor();
    return std::abs(qRed(pixel) - button.red()) <= kTolerance && std::abs(qGreen(pixel) - button.green()) <= kTolerance
        && std::abs(qBlue(pixel) - button.blue()) <= kTolerance;
}

QVector<bool> colourMask(const QImage& image)
{
    const int w = image.width();
    QVector<bool> mask(w * image.height());
    for (int y = 0; y < image.height(); ++y) {
        const QRgb* line = reinterpret_cast<const QRgb*>(image.constScanLine(y));
        for (int x = 0; x < w; ++x)
            mask[y * w + x] = isButtonColour(line[x]);
    }
    return mask;
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
    QVector<bool> mask = colourMask(image);
    const QSize minimum = kMinimumButton * row.devicePixelRatio();
    QRect best;
    int bestSize = 0;
    for (int i = 0; i < mask.size(); ++i) {
        if (!mask[i])
            continue;
        int size = 0;
        const QRect patch = takePatch(mask, image.width(), i, &size);
        const bool buttonLike = patch.width() >= minimum.width() && patch.height() >= minimum.height()
            && size >= kMinimumFill * patch.width() * patch.height();
        if (buttonLike && size > bestSize) {
            best = patch;
            bestSize = size;
        }
    }
    return best;
}
