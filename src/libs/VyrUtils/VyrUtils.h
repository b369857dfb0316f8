#pragma once

#include <QByteArray>
#include <QDateTime>
#include <QMessageBox>
#include <QPixmap>
#include <QString>
#include <initializer_list>
#include <tuple>

class QWidget;

/** Pages of the service that genTavlaUrl() builds addresses for; the values are fixed by the client's protocol. */
enum TAVLA_URL_TYPE {
    TAVLA_URL_HOME = 0,
    TAVLA_URL_HELP = 1,
    TAVLA_URL_SCHOOL_CERTIFICATION = 14,
};

/**
 * String, time and address helpers of the client.
 *
 * Host side (addresses):
 *   setServiceDomain(domain)   the service's host name, "www.vyr.example" by
 *                              default; getDomainUrl() and genTavlaUrl() follow it
 *   serviceDomain()            the host name in use
 *
 * Host side (pictures): loadFromData() reads a picture's header before it
 * decodes. It gives a null pixmap, with an info line "picture refused, ...",
 * for bytes over MaxPictureBytes (8 MB), a header declaring more than
 * MaxPictureSide (4096) pixels on a side or no size at all, and for SVG,
 * which names sizes and files of its own. It decodes on the calling thread.
 */
class VyrUtils
{
public:
    static constexpr int MaxPictureSide = 4096;
    static constexpr int MaxPictureBytes = 8 * 1024 * 1024;

    /** A new unique id, without braces. */
    static QString createUuid();
    /** @p dateTime in local time with a QDateTime format string. */
    static QString toString(const QDateTime& dateTime, const QString& format);
    /** Replaces the characters that HTML treats as markup (& < > " ') by entities. */
    static QString escapeHtmlTag(QString&& text);
    /** In-place form; with @p escapeSpace true, spaces also become &nbsp;. */
    static QString escapeHtmlTag(QString& text, bool escapeSpace);

    /** @p text cut to @p pixels in @p widget's font with @p mode; the second element tells whether anything was cut. */
    static std::tuple<QString, bool> elidedTextToPixelLength(const QWidget* widget, const QString& text, int pixels,
                                                             Qt::TextElideMode mode);
    /**
     * Device pixels per logical pixel of the screen @p widget stands on (of
     * the primary screen for a widget not yet shown, 1 without any screen).
     */
    static qreal screenDeviceRatio(const QWidget* widget);
    /** Makes the text of @p widget bold, keeping the rest of its font. */
    static void styleBold(QWidget* widget);

    /**
     * The service's base address: @p secure picks https over http, @p withScheme
     * puts "<scheme>://" in front of the host name. Never ends with "/".
     */
    static QString getDomainUrl(bool secure, bool withScheme);
    /**
     * The full address of a page of the service: getDomainUrl(true, true)
     * followed by the page's path. An unknown type gives the home page.
     */
    static QString genTavlaUrl(TAVLA_URL_TYPE type);
    /**
     * Joins the parts to one address with exactly one "/" between parts;
     * empty parts are skipped, the first part's leading and the last part's
     * trailing characters are kept.
     */
    static QString urlSplicing(std::initializer_list<QString> parts);
    /**
     * A picture from downloaded bytes. With @p detectFormat the format is read
     * from the bytes themselves, whatever the address said; without it only
     * PNG is tried. Bytes that are no picture, or a picture refused by the
     * limits above, give a null pixmap.
     */
    static QPixmap loadFromData(QByteArray data, bool detectFormat);

    /**
     * The date of @p secsSinceEpoch in local time as the client writes a day,
     * "yyyy-MM-dd"; with @p withTime the time follows, " hh:mm".
     */
    static QString formatTime(qint64 secsSinceEpoch, bool withTime);

    /**
     * The title of a message box with this icon, in the user's language
     * (Chinese when the default locale is Chinese, else English).
     */
    static QString getMessageBoxTitle(QMessageBox::Icon icon);

    // Host side.
    static void setServiceDomain(const QString& domain);
    static QString serviceDomain();

private:
    static QString& domainStore();
};
