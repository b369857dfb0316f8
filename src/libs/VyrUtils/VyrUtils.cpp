#include "VyrUtils.h"

#include <QUuid>

QString VyrUtils::createUuid()
{
    return QUuid::createUuid().toString(QUuid::WithoutBraces);
}

QString VyrUtils::toString(const QDateTime& dateTime, const QString& format)
{
    return dateTime.toLocalTime().toString(format);
}

QString VyrUtils::escapeHtmlTag(QString&& text)
{
    QString copy = std::move(text);
    return escapeHtmlTag(copy, false);
}

QString VyrUtils::escapeHtmlTag(QString& text, bool escapeSpace)
{
    QString out;
    out.reserve(text.size() + 16);
    for (const QChar c : text) {
        switch (c.unicode()) {
        case '&': out += QLatin1String("&amp;"); break;
        case '<': out += QLatin1String("&lt;"); break;
        case '>': out += QLatin1String("&gt;"); break;
        case '"': out += QLatin1String("&quot;"); break;
        case '\'': out += QLatin1String("&#39;"); break;
        case ' ':
            if (escapeSpace) {
                out += QLatin1String("&nbsp;");
                break;
            }
            out += c;
            break;
        default: out += c;
        }
    }
    text = out;
    return out;
}
