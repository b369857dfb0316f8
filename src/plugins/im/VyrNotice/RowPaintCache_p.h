#pragma once

// Private to the library: the painted picture of each recently painted row, so
// that repainting an unchanged row is one blit instead of shaping its texts and
// cutting its avatar again. Shared by the gathered-notice and friend-request
// row delegates.
//
// A picture is kept per row together with what it was painted from: the
// delegate's `Inputs` (texts, states, the keys of its pictures) and the
// surface (size, pixel ratio, image format, font, render hints). A paint whose
// inputs or surface differ paints the row again, so no picture is ever shown
// for data it was not made from. Pictures are bounded in bytes and the least
// recently painted go first; they go with the cache.
//
// The cached area must be covered opaquely by what `draw` paints first (the
// row's background): the picture is then pixel for pixel what `draw` gives on
// the painter itself.

#include <QCache>
#include <QFont>
#include <QImage>
#include <QPaintEngine>
#include <QPainter>
#include <QtMath>

#include <cmath>

// What a row's picture depends on besides the delegate's inputs.
struct RowPaintSurface
{
    QSize size;
    qreal ratio = 1;
    QImage::Format format = QImage::Format_Invalid;
    QFont font;
    QPainter::RenderHints hints;

    bool operator==(const RowPaintSurface& other) const
    {
        return size == other.size && ratio == other.ratio && format == other.format && hints == other.hints
            && font == other.font;
    }
    bool operator!=(const RowPaintSurface& other) const { return !(*this == other); }

    // The surface `area` of `painter` has; invalid when the painter can't be
    // painted from a picture exactly (scaled, rotated, blended, not raster, or
    // an area off the device's pixel grid).
    static RowPaintSurface of(QPainter* painter, const QRect& area)
    {
        RowPaintSurface surface;
        const QTransform& transform = painter->worldTransform();
        if (transform.type() > QTransform::TxTranslate || painter->opacity() != 1.0
            || painter->compositionMode() != QPainter::CompositionMode_SourceOver || !painter->paintEngine()
            || painter->paintEngine()->type() != QPaintEngine::Raster || !painter->device())
            return surface;
        QPaintDevice* target = painter->paintEngine()->paintDevice();
        if (!target || target->devType() != QInternal::Image)
            return surface;
        const QImage::Format format = static_cast<QImage*>(target)->format();
        if (format != QImage::Format_RGB32 && format != QImage::Format_ARGB32
            && format != QImage::Format_ARGB32_Premultiplied)
            return surface;
        surface.ratio = painter->device()->devicePixelRatioF();
        const QPointF origin = transform.map(QPointF(area.topLeft())) * surface.ratio;
        if (origin.x() != std::floor(origin.x()) || origin.y() != std::floor(origin.y()))
            return RowPaintSurface();
        surface.size = area.size();
        surface.format = format;
        surface.font = painter->font();
        surface.hints = painter->renderHints();
        return surface;
    }
    bool isValid() const { return format != QImage::Format_Invalid && !size.isEmpty(); }
};

template <typename Inputs>
class RowPaintCache
{
public:
    // About a hundred gathered rows at ratio 1, or the rows of two screens at ratio 2.
    static constexpr int DefaultKilobytes = 8 * 1024;

    explicit RowPaintCache(int maxKilobytes = DefaultKilobytes) { m_pictures.setMaxCost(maxKilobytes); }

    // Paints the part `area` of row `row` from its kept picture; `draw(painter)`
    // paints the whole row and makes the picture when there is none for these
    // inputs and this painter. Outside `area` the row is the caller's to paint.
    template <typename Draw>
    void paint(QPainter* painter, quint64 row, const QRect& area, const Inputs& inputs, Draw&& draw)
    {
        const RowPaintSurface surface = RowPaintSurface::of(painter, area);
        if (!surface.isValid()) {
            draw(painter);
            return;
        }
        Picture* kept = m_pictures.object(row);
        if (!kept || kept->surface != surface || !(kept->inputs == inputs)) {
            auto* picture = new Picture{inputs, surface, makeImage(painter, area, surface, draw)};
            ++m_picturesMade;
            const int cost = int(picture->image.sizeInBytes() / 1024) + 1;
            // A row too big to keep is painted all the same.
            if (!m_pictures.insert(row, picture, cost)) {
                draw(painter);
                return;
            }
            kept = picture;
        }
        painter->drawImage(area.topLeft(), kept->image);
    }

    void clear() { m_pictures.clear(); }
    int count() const { return m_pictures.count(); }
    int kilobytes() const { return m_pictures.totalCost(); }
    int maxKilobytes() const { return m_pictures.maxCost(); }
    // Pictures painted so far, kept or not.
    int picturesMade() const { return m_picturesMade; }

private:
    struct Picture
    {
        Inputs inputs;
        RowPaintSurface surface;
        QImage image;
    };

    template <typename Draw>
    static QImage makeImage(QPainter* painter, const QRect& area, const RowPaintSurface& surface, Draw&& draw)
    {
        const QSize pixels(qCeil(area.width() * surface.ratio), qCeil(area.height() * surface.ratio));
        QImage image(pixels, surface.format);
        image.setDevicePixelRatio(surface.ratio);
        image.fill(Qt::transparent);
        QPainter imagePainter(&image);
        // The painter's own state, in the row's coordinates.
        imagePainter.setRenderHints(painter->renderHints(), true);
        imagePainter.setRenderHints(~painter->renderHints(), false);
        imagePainter.setFont(painter->font());
        imagePainter.setPen(painter->pen());
        imagePainter.setBrush(painter->brush());
        imagePainter.setLayoutDirection(painter->layoutDirection());
        imagePainter.translate(-area.topLeft());
        draw(&imagePainter);
        return image;
    }

    QCache<quint64, Picture> m_pictures;
    int m_picturesMade = 0;
};
