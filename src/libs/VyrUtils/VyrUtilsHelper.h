#pragma once

#include <QFontMetrics>
#include <QString>

// Text helpers of the client that need font metrics.
//
// Host side: none; the operations are pure functions of their arguments.
class VyrUtilsHelper
{
public:
    // `text` as it stands if it fits `width` pixels in `metrics`, else cut
    // with an ellipsis where `mode` says. A width of 0 or less gives "".
    static QString limitString(const QFontMetrics& metrics, const QString& text, int width, Qt::TextElideMode mode);
};
