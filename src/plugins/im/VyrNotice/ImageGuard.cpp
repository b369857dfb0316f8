#include "ImageGuard_p.h"

#include "FutureObserver_p.h"
#include "NoticeLog_p.h"

#include <QBuffer>
#include <QImageReader>
#include <QRegularExpression>
#include <QXmlStreamReader>
#include <QtConcurrent>
#include <QtMath>

#include <atomic>
#include <cmath>

namespace {

std::atomic<ImageGuard::DecodeHook> s_decodeHook{nullptr};

// Raster formats a cover or avatar comes in, and SVG. Other decoders Qt may
// carry (XPM, PPM, TGA, ICO...) guess formats from loose signatures and are
// not worth exposing to a server.
bool isAcceptedFormat(const QByteArray& format)
{
    static const QList<QByteArray> accepted = {"png", "jpeg", "jpg", "gif", "bmp", "webp", "svg"};
    return accepted.contains(format);
}

bool withinLimit(const QSize& size)
{
    return size.width() <= ImageGuard::MaxSide && size.height() <= ImageGuard::MaxSide;
}

QString sizeText(const QSize& size)
{
    return QStringLiteral("%1x%2").arg(size.width()).arg(size.height());
}

// An SVG length in pixels, as Qt's SVG reader converts it; units take the
// larger of Qt's and CSS's factor, so nothing is underestimated. A relative
// length (percent) sets `relative` and gives its share of 1.
bool svgLength(QString text, double* pixels, bool* relative)
{
    static const QRegularExpression length(
        QStringLiteral("^([+]?(?:\\d+\\.?\\d*|\\.\\d+)(?:[eE][+-]?\\d+)?)\\s*(px|pt|pc|mm|cm|in|%)?$"));
    const QRegularExpressionMatch match = length.match(text.trimmed());
    if (!match.hasMatch())
        return false;
    bool ok = false;
    const double value = match.captured(1).toDouble(&ok);
    if (!ok || !std::isfinite(value))
        return false;
    const QString unit = match.captured(2);
    *relative = unit == QLatin1String("%");
    double factor = 1.0;
    if (unit == QLatin1String("pt"))
        factor = 4.0 / 3.0;
    else if (unit == QLatin1String("pc"))
        factor = 16.0;
    else if (unit == QLatin1String("mm"))
        factor = 96.0 / 25.4;
    else if (unit == QLatin1String("cm"))
        factor = 960.0 / 25.4;
    else if (unit == QLatin1String("in"))
        factor = 96.0;
    else if (*relative)
        factor = 0.01;
    *pixels = value * factor;
    return true;
}

// One side of the root: its width or height, else the viewBox's, scaled by a
// percentage. Negative when it can't be told.
double svgSide(const QString& attribute, double viewBoxSide)
{
    double value = 0.0;
    bool relative = false;
    if (attribute.isEmpty())
        return viewBoxSide;
    if (!svgLength(attribute, &value, &relative))
        return -1.0;
    if (relative)
        return viewBoxSide < 0.0 ? -1.0 : viewBoxSide * value;
    return value;
}

// Reads the whole document without rendering it: the root's declared size,
// and whether anything in it points outside the document. Qt's SVG reader
// would load an <image>'s file or decode its embedded picture unchecked.
ImageGuard::Header svgHeader(const QByteArray& data)
{
    ImageGuard::Header header;
    header.format = "svg";
    QXmlStreamReader xml(data);
    // As Qt's SVG reader reads it: prefixes are part of the names.
    xml.setNamespaceProcessing(false);
    bool atRoot = true;
    while (!xml.atEnd()) {
        const QXmlStreamReader::TokenType token = xml.readNext();
        if (token == QXmlStreamReader::DTD && !xml.entityDeclarations().isEmpty()) {
            header.refusal = QStringLiteral("svg declares entities");
            return header;
        }
        if (token == QXmlStreamReader::EntityReference) {
            header.refusal = QStringLiteral("svg uses an undeclared entity");
            return header;
        }
        if (token != QXmlStreamReader::StartElement)
            continue;
        const QXmlStreamAttributes attributes = xml.attributes();
        for (const QXmlStreamAttribute& attribute : attributes) {
            const auto name = attribute.qualifiedName();
            const bool isReference = name == QLatin1String("href") || name.endsWith(QLatin1String(":href"));
            if (isReference && !attribute.value().trimmed().startsWith(QLatin1Char('#'))) {
                header.refusal = QStringLiteral("svg refers to a resource outside the document");
                return header;
            }
        }
        if (!atRoot)
            continue;
        atRoot = false;
        if (xml.qualifiedName().split(QLatin1Char(':')).last() != QLatin1String("svg")) {
            header.refusal = QStringLiteral("svg without an <svg> root");
            return header;
        }
        double boxWidth = -1.0;
        double boxHeight = -1.0;
        const QString viewBox = attributes.value(QLatin1String("viewBox")).toString();
        if (!viewBox.isEmpty()) {
            const QStringList parts =
                viewBox.split(QRegularExpression(QStringLiteral("[\\s,]+")), Qt::SkipEmptyParts);
            if (parts.size() == 4) {
                boxWidth = parts.at(2).toDouble();
                boxHeight = parts.at(3).toDouble();
            }
            if (!(boxWidth > 0.0 && boxHeight > 0.0) || boxWidth > ImageGuard::MaxSide
                || boxHeight > ImageGuard::MaxSide) {
                header.refusal = QStringLiteral("svg viewBox \"%1\" not within %2x%2")
                                     .arg(viewBox.left(64))
                                     .arg(ImageGuard::MaxSide);
                return header;
            }
        }
        const double width = svgSide(attributes.value(QLatin1String("width")).toString(), boxWidth);
        const double height = svgSide(attributes.value(QLatin1String("height")).toString(), boxHeight);
        if (!(width > 0.0 && height > 0.0)) {
            header.refusal = QStringLiteral("svg size unknown");
            return header;
        }
        // Clamped before rounding so that a huge value stays huge.
        header.size = QSize(qCeil(qMin(width, 1e9)), qCeil(qMin(height, 1e9)));
    }
    if (xml.hasError())
        header.refusal = QStringLiteral("svg unreadable: %1").arg(xml.errorString());
    else if (atRoot)
        header.refusal = QStringLiteral("svg without an <svg> root");
    return header;
}

// Reads what `reader` (over `data`) declares; decodes nothing.
ImageGuard::Header readHeader(QImageReader& reader, const QByteArray& data)
{
    ImageGuard::Header header;
    if (data.size() > ImageGuard::MaxBytes) {
        header.refusal = QStringLiteral("%1 bytes over %2").arg(data.size()).arg(ImageGuard::MaxBytes);
        return header;
    }
    header.format = reader.format().toLower();
    if (header.format.isEmpty()) {
        header.refusal = QStringLiteral("no picture format recognised");
        return header;
    }
    if (!isAcceptedFormat(header.format)) {
        header.refusal = QStringLiteral("format %1 not accepted").arg(QString::fromLatin1(header.format));
        return header;
    }
    if (header.format == "svg") {
        // Checked before Qt's SVG reader sees it: that one would already
        // follow references while telling the size.
        header = svgHeader(data);
        if (header.refusal.isEmpty() && withinLimit(header.size)) {
            const QSize told = reader.size();
            header.size = told.isValid() ? header.size.expandedTo(told) : QSize();
        }
    } else {
        header.size = reader.size();
    }
    if (!header.refusal.isEmpty())
        return header;
    if (!header.size.isValid() || header.size.isEmpty())
        header.refusal = QStringLiteral("%1 size unknown").arg(QString::fromLatin1(header.format));
    else if (!withinLimit(header.size))
        header.refusal = QStringLiteral("%1 declares %2, over %3x%3")
                             .arg(QString::fromLatin1(header.format), sizeText(header.size))
                             .arg(ImageGuard::MaxSide);
    return header;
}

// The smallest size of `declared`'s shape that covers twice `shownAt`, or
// `declared` itself when it is no larger.
QSize decodeSize(const QSize& declared, const QSize& shownAt)
{
    if (shownAt.isEmpty())
        return declared;
    const double factor = qMax(2.0 * shownAt.width() / declared.width(), 2.0 * shownAt.height() / declared.height());
    if (factor >= 1.0)
        return declared;
    return QSize(qMax(1, qCeil(declared.width() * factor)), qMax(1, qCeil(declared.height() * factor)));
}

} // namespace

ImageGuard::Header ImageGuard::inspect(const QByteArray& data)
{
    QBuffer buffer;
    buffer.setData(data);
    buffer.open(QIODevice::ReadOnly);
    QImageReader reader(&buffer);
    return readHeader(reader, data);
}

QImage ImageGuard::decode(const QByteArray& data, const QSize& shownAt)
{
    QBuffer buffer;
    buffer.setData(data);
    buffer.open(QIODevice::ReadOnly);
    QImageReader reader(&buffer);
    const Header header = readHeader(reader, data);
    if (!header.refusal.isEmpty()) {
        qCInfo(lcVyrNotice).noquote() << "picture refused:" << header.refusal;
        return QImage();
    }
    const QSize size = decodeSize(header.size, shownAt);
    // Always set for SVG: it then renders at the checked size, whatever it
    // would have made of its own attributes.
    if (size != header.size || header.format == "svg")
        reader.setScaledSize(size);
    if (DecodeHook hook = s_decodeHook.load())
        hook(header.size);
    const QImage image = reader.read();
    if (image.isNull())
        qCInfo(lcVyrNotice).noquote() << "picture refused:" << QString::fromLatin1(header.format) << "not decoded,"
                          << reader.errorString();
    return image;
}

void ImageGuard::decodeLater(QObject* context, const QByteArray& data, const QSize& shownAt,
                             std::function<void(const QImage&)> completion)
{
    observeFuture(context, QtConcurrent::run(&ImageGuard::decode, data, shownAt),
                  [completion](const QImage& image) { completion(image); });
}

void ImageGuard::setDecodeHook(DecodeHook hook)
{
    s_decodeHook.store(hook);
}
