#include "VyrUtilsHelper.h"

QString VyrUtilsHelper::limitString(const QFontMetrics& metrics, const QString& text, int width, Qt::TextElideMode mode)
{
    if (width <= 0)
        return QString();
    if (metrics.horizontalAdvance(text) <= width)
        return text;
    return metrics.elidedText(text, mode, width);
}
