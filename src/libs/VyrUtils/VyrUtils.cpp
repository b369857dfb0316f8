#include "VyrUtils.h"

#include <QFontMetrics>
#include <QGuiApplication>
#include <QScreen>
#include <QUuid>
#include <QWidget>

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

std::tuple<QString, bool> VyrUtils::elidedTextToPixelLength(const QWidget* widget, const QString& text, int pixels,
                                                            Qt::TextElideMode mode)
{
    if (!widget)
        return std::make_tuple(text, false);
    const QString elided = widget->fontMetrics().elidedText(text, mode, pixels);
    return std::make_tuple(elided, elided != text);
}

qreal VyrUtils::screenDeviceRatio(const QWidget* widget)
{
    if (widget && widget->screen())
        return widget->screen()->devicePixelRatio();
    if (const QScreen* primary = QGuiApplication::primaryScreen())
        return primary->devicePixelRatio();
    return 1.0;
}

void VyrUtils::styleBold(QWidget* widget)
{
    if (!widget)
        return;
    QFont font = widget->font();
    font.setBold(true);
    widget->setFont(font);
}
