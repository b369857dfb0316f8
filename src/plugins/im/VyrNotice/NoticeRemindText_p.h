#pragma once

#include "VyrNoticeExport.h"

#include <QFont>
#include <QString>

// The sender and text of a cluster notice reminder, fitted into at most two
// lines of the reminder's 215-pixel text label.
class VYRNOTICE_TESTS_EXPORT NoticeRemindText
{
public:
    static constexpr int MaxLines = 2;
    static constexpr int LineWidth = 215;
    static constexpr int FontPixelSize = 14;
    static constexpr int FontWeight = 50;

    // "nickname: message", fitted.
    static QString compose(const QString& nickname, const QString& message);
    // `text` with its line breaks made blanks, in MaxLines lines of LineWidth pixels.
    static QString fit(const QString& text);
    // The font the lines are measured in.
    static QFont font();
};
