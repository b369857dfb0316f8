#include "CourseCover.h"

#include <QLinearGradient>
#include <QPainter>
#include <QPainterPath>

namespace VyrEngine {

QColor CourseCover::baseColor(quint64 courseId)
{
    // Neighbouring ids land far apart on the colour wheel.
    const int hue = int((courseId * 83u + 20u) % 360u);
    return QColor(QColor::fromHsv(hue, 170, 210).rgb());
}

QPixmap CourseCover::generate(quint64 courseId, const QString& courseName)
{
    QPixmap pixmap(Size, Size);
    pixmap.fill(Qt::transparent);
    QPainter painter(&pixmap);
    painter.setRenderHint(QPainter::Antialiasing);

    const QColor base = baseColor(courseId);
    QLinearGradient gradient(0, 0, Size, Size);
    gradient.setColorAt(0.0, base);
    gradient.setColorAt(1.0, base.darker(135));
    painter.fillRect(pixmap.rect(), gradient);

    // An open book: two pages meeting at the spine.
    const qreal unit = Size / 12.0;
    const QString initial = courseName.trimmed().left(1).toUpper();
    const qreal bookTop = initial.isEmpty() ? 3.5 * unit : 2.0 * unit;
    painter.setPen(Qt::NoPen);
    painter.setBrush(Qt::white);
    for (int side : {-1, 1}) {
        QPainterPath page;
        const qreal spine = Size / 2.0 + side * 0.25 * unit;
        const qreal outer = Size / 2.0 + side * 4.0 * unit;
        page.moveTo(spine, bookTop + 0.6 * unit);
        page.quadTo((spine + outer) / 2, bookTop - 0.4 * unit, outer, bookTop);
        page.lineTo(outer, bookTop + 4.2 * unit);
        page.quadTo((spine + outer) / 2, bookTop + 3.8 * unit, spine, bookTop + 4.8 * unit);
        page.closeSubpath();
        painter.drawPath(page);
    }

    if (!initial.isEmpty()) {
        QFont font;
        font.setPixelSize(int(3.6 * unit));
        font.setBold(true);
        painter.setFont(font);
        painter.setPen(Qt::white);
        painter.drawText(QRectF(0, 7.0 * unit, Size, 4.6 * unit), Qt::AlignCenter, initial);
    }
    painter.end();
    return pixmap;
}

} // namespace VyrEngine
