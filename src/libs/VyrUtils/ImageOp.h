#pragma once

#include <QPixmap>
#include <QSizeF>

/**
 * Picture helpers of the client.
 *
 * Host side: none; the operations are pure functions of their arguments.
 */
class ImageOp
{
public:
    /** Corner radius of a rounded picture, as a share of its shorter side. */
    static constexpr double CornerRadiusRatio = 1.0 / 6.0;

    /**
     * @p source scaled to cover @p size (logical pixels), centred, cut to a
     * rounded rectangle. The result holds size * devicePixelRatio physical
     * pixels and carries that ratio. A null source gives a transparent
     * picture of the size; an empty size gives a null pixmap.
     */
    static QPixmap roundedRectCoursePixmap(const QPixmap& source, const QSizeF& size, double devicePixelRatio);

    /**
     * A person's avatar as the client shows it: @p source scaled to cover
     * @p size (logical pixels), centred, cut to the inscribed circle; outside
     * it the picture is transparent. The result holds size * devicePixelRatio
     * physical pixels and carries that ratio. A null source gives a
     * transparent picture; an empty size gives a null pixmap.
     */
    static QPixmap magicAvatarSvg(const QPixmap& source, const QSize& size, double devicePixelRatio);

private:
    static QPixmap clippedPixmap(const QPixmap& source, const QSizeF& size, double devicePixelRatio, bool round);
};
