#include "ImageOp.h"

#include <QPainter>
#include <QPainterPath>
#include <QtMath>

namespace {

// The largest part of `source` with the aspect ratio of `target`, centred.
QRectF centredCrop(const QSizeF& source, const QSizeF& target)
{
    const qreal scale = qMax(target.width() / source.width(), target.height() / source.height());
    const QSizeF crop(target.width() / scale, target.height() / scale);
    return QRectF(QPointF((source.width() - crop.width()) / 2.0, (source.height() - crop.height()) / 2.0), crop);
}

} // namespace

QPixmap ImageOp::roundedRectCoursePixmap(const QPixmap& source, const QSizeF& size, double devicePixelRatio)
{
    return clippedPixmap(source, size, devicePixelRatio, false);
}

QPixmap ImageOp::magicAvatarSvg(const QPixmap& source, const QSize& size, double devicePixelRatio)
{
    return clippedPixmap(source, QSizeF(size), devicePixelRatio, true);
}

QPixmap ImageOp::clippedPixmap(const QPixmap& source, const QSizeF& size, double devicePixelRatio, bool round)
{
    const double ratio = devicePixelRatio > 0.0 ? devicePixelRatio : 1.0;
    const QSize physical(qCeil(size.width() * ratio), qCeil(size.height() * ratio));
    if (physical.isEmpty())
        return {};

    QPixmap out(physical);
    out.fill(Qt::transparent);
    if (!source.isNull()) {
        QPainter painter(&out);
        painter.setRenderHints(QPainter::Antialiasing | QPainter::SmoothPixmapTransform);
        const QRectF target(QPointF(0, 0), QSizeF(physical));
        QPainterPath path;
        if (round) {
            const qreal side = qMin(target.width(), target.height());
            path.addEllipse(QRectF(target.center() - QPointF(side / 2, side / 2), QSizeF(side, side)));
        } else {
            const qreal radius = qMin(target.width(), target.height()) * CornerRadiusRatio;
            path.addRoundedRect(target, radius, radius);
        }
        painter.setClipPath(path);
        // Source rectangles are in the pixmap's own pixels, whatever its ratio.
        painter.drawPixmap(target, source, centredCrop(QSizeF(source.size()), target.size()));
    }
    out.setDevicePixelRatio(ratio);
    return out;
}
