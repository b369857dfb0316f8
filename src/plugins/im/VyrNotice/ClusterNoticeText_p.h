#pragma once

#include "VyrNoticeExport.h"
#include <QString>

// The body of a cluster notice row: the notice text broken into at most two
// lines of the row's width. The row draws it as it stands, so the breaks are
// settled once, when the notice is taken in.
class VYRNOTICE_TESTS_EXPORT ClusterNoticeText
{
public:
    static constexpr int MaxLines = 2;
    static constexpr int LineWidth = 294;
    static constexpr int FontPixelSize = 14;
    static constexpr int FontWeight = 50;

    // "[label]content", fitted.
    static QString displayContent(const QString& content);
    // `source` fitted into MaxLines lines of LineWidth pixels.
    static QString fit(const QString& source);
};
