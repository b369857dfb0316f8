#pragma once

#include <QDateTime>
#include <QString>
#include <tuple>

class QWidget;

// String and time helpers of the client.
class VyrUtils
{
public:
    // A new unique id, without braces.
    static QString createUuid();
    // `dateTime` in local time with a QDateTime format string.
    static QString toString(const QDateTime& dateTime, const QString& format);
    // Replaces the characters that HTML treats as markup (& < > " ') by entities.
    static QString escapeHtmlTag(QString&& text);
    // In-place form; with `escapeSpace` true, spaces also become &nbsp;.
    static QString escapeHtmlTag(QString& text, bool escapeSpace);

    // `text` cut to `pixels` in `widget`'s font with `mode`; the second
    // element tells whether anything was cut.
    static std::tuple<QString, bool> elidedTextToPixelLength(const QWidget* widget, const QString& text, int pixels,
                                                             Qt::TextElideMode mode);
    // Device pixels per logical pixel of the screen `widget` stands on (of
    // the primary screen for a widget not yet shown, 1 without any screen).
    static qreal screenDeviceRatio(const QWidget* widget);
    // Makes the text of `widget` bold, keeping the rest of its font.
    static void styleBold(QWidget* widget);
};
