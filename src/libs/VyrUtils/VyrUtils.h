#pragma once

#include <QDateTime>
#include <QString>

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
};
