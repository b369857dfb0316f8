#include "VyrUtils.h"

#include <QBuffer>
#include <QFontMetrics>
#include <QGuiApplication>
#include <QImageReader>
#include <QLocale>
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

QString VyrUtils::formatTime(qint64 secsSinceEpoch, bool withTime)
{
    const QDateTime local = QDateTime::fromSecsSinceEpoch(secsSinceEpoch, Qt::LocalTime);
    return local.toString(withTime ? QStringLiteral("yyyy-MM-dd hh:mm") : QStringLiteral("yyyy-MM-dd"));
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

QString& VyrUtils::domainStore()
{
    static QString domain = QStringLiteral("www.vyr.example");
    return domain;
}

void VyrUtils::setServiceDomain(const QString& domain)
{
    domainStore() = domain;
}

QString VyrUtils::serviceDomain()
{
    return domainStore();
}

QString VyrUtils::getDomainUrl(bool secure, bool withScheme)
{
    if (!withScheme)
        return serviceDomain();
    return (secure ? QStringLiteral("https://") : QStringLiteral("http://")) + serviceDomain();
}

QString VyrUtils::genTavlaUrl(TAVLA_URL_TYPE type)
{
    QString path;
    switch (type) {
    case TAVLA_URL_HELP: path = QStringLiteral("/help"); break;
    case TAVLA_URL_SCHOOL_CERTIFICATION: path = QStringLiteral("/school/certification"); break;
    case TAVLA_URL_HOME:
    default: path = QStringLiteral("/"); break;
    }
    return urlSplicing({getDomainUrl(true, true), path});
}

QString VyrUtils::urlSplicing(std::initializer_list<QString> parts)
{
    QString joined;
    for (const QString& part : parts) {
        if (part.isEmpty())
            continue;
        if (joined.isEmpty()) {
            joined = part;
            continue;
        }
        while (joined.endsWith(QLatin1Char('/')))
            joined.chop(1);
        int start = 0;
        while (start < part.size() && part.at(start) == QLatin1Char('/'))
            ++start;
        joined += QLatin1Char('/') + part.mid(start);
    }
    return joined;
}

QString VyrUtils::getMessageBoxTitle(QMessageBox::Icon icon)
{
    const bool zh = QLocale().language() == QLocale::Chinese;
    switch (icon) {
    case QMessageBox::Warning:
        return zh ? QStringLiteral("警告") : QStringLiteral("Warning");
    case QMessageBox::Critical:
        return zh ? QStringLiteral("错误") : QStringLiteral("Error");
    case QMessageBox::Question:
        return zh ? QStringLiteral("询问") : QStringLiteral("Question");
    case QMessageBox::Information:
    case QMessageBox::NoIcon:
        break;
    }
    return zh ? QStringLiteral("提示") : QStringLiteral("Notice");
}

QPixmap VyrUtils::loadFromData(QByteArray data, bool detectFormat)
{
    // Downloaded bytes: the header is read first, since a few bytes can
    // declare a picture of gigabytes.
    if (data.size() > MaxPictureBytes) {
        qInfo() << "picture refused, bytes:" << data.size();
        return QPixmap();
    }
    QBuffer buffer(&data);
    buffer.open(QIODevice::ReadOnly);
    QImageReader reader(&buffer, detectFormat ? QByteArray() : QByteArray("PNG"));
    // Bytes that are no picture (of the asked format) stay a quiet null, as ever.
    if (!reader.canRead())
        return QPixmap();
    const QByteArray format = reader.format().toLower();
    // An SVG names files and sizes of its own; pictures from outside are raster.
    if (format == "svg" || format == "svgz") {
        qInfo() << "picture refused, vector format:" << format;
        return QPixmap();
    }
    const QSize size = reader.size();
    if (!size.isValid() || size.width() > MaxPictureSide || size.height() > MaxPictureSide) {
        qInfo() << "picture refused, declared size:" << size.width() << size.height();
        return QPixmap();
    }
    return QPixmap::fromImage(reader.read());
}
