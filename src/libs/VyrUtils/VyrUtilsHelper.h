#pragma once

#include <QFontMetrics>
#include <QString>

/**
 * Text helpers of the client that need font metrics.
 *
 * Host side: none; the operations are pure functions of their arguments.
 */
class VyrUtilsHelper
{
public:
    /**
     * @p text as it stands if it fits @p width pixels in @p metrics, else cut
     * with an ellipsis where @p mode says. A width of 0 or less gives "".
     */
    static QString limitString(const QFontMetrics& metrics, const QString& text, int width, Qt::TextElideMode mode);
};
