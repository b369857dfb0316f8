#include "HostilePictures.h"

#include <QBuffer>
#include <QImage>

namespace {

quint32 crc32(const QByteArray& bytes)
{
    quint32 crc = 0xFFFFFFFFu;
    for (char byte : bytes) {
        crc ^= quint8(byte);
        for (int bit = 0; bit < 8; ++bit)
            crc = (crc >> 1) ^ (0xEDB88320u & (0u - (crc & 1u)));
    }
    return ~crc;
}

QByteArray bigEndian32(quint32 value)
{
    QByteArray out;
    for (int shift = 24; shift >= 0; shift -= 8)
        out.append(char((value >> shift) & 0xFF));
    return out;
}

QByteArray pngChunk(const QByteArray& type, const QByteArray& data)
{
    return bigEndian32(quint32(data.size())) + type + data + bigEndian32(crc32(type + data));
}

// Byte by byte: the compiler cannot see a QByteArray's size behind data().
void putLittle(QByteArray& bytes, int at, quint32 value, int size)
{
    for (int i = 0; i < size; ++i)
        bytes[at + i] = char((value >> (8 * i)) & 0xFF);
}

void putBig16(QByteArray& bytes, int at, int value)
{
    bytes[at] = char((value >> 8) & 0xFF);
    bytes[at + 1] = char(value & 0xFF);
}

} // namespace

namespace HostilePictures {

QByteArray picture(const QColor& colour, const QSize& size, const char* format)
{
    QByteArray bytes;
    QBuffer buffer(&bytes);
    buffer.open(QIODevice::WriteOnly);
    QImage image(size, QImage::Format_RGB32);
    image.fill(colour);
    image.save(&buffer, format);
    return bytes;
}

QByteArray pngDeclaring(const QSize& size)
{
    QByteArray header = bigEndian32(quint32(size.width())) + bigEndian32(quint32(size.height()));
    header.append(char(8)).append(char(6)).append(char(0)).append(char(0)).append(char(0));
    // A zlib stream of a few zero bytes: the start of the first rows.
    QByteArray data = qCompress(QByteArray(64, '\0')).mid(4);
    return QByteArray("\x89PNG\r\n\x1a\n", 8) + pngChunk("IHDR", header) + pngChunk("IDAT", data)
           + pngChunk("IEND", QByteArray());
}

QByteArray jpegDeclaring(const QSize& size)
{
    QByteArray bytes = picture(Qt::gray, QSize(8, 8), "JPG");
    const int frame = bytes.indexOf(QByteArray("\xFF\xC0", 2));
    if (frame < 0)
        return QByteArray();
    // Marker, length, precision, then height and width.
    putBig16(bytes, frame + 5, size.height());
    putBig16(bytes, frame + 7, size.width());
    return bytes;
}

QByteArray gifDeclaring(const QSize& size)
{
    QByteArray bytes("GIF89a");
    QByteArray screen(7, '\0');
    putLittle(screen, 0, quint32(size.width()), 2);
    putLittle(screen, 2, quint32(size.height()), 2);
    screen[4] = char(0x80); // a global colour table of two entries
    bytes += screen;
    bytes += QByteArray("\x00\x00\x00\xFF\xFF\xFF", 6);
    QByteArray image(10, '\0');
    image[0] = 0x2C;
    putLittle(image, 5, quint32(size.width()), 2);
    putLittle(image, 7, quint32(size.height()), 2);
    bytes += image;
    // Minimum code size 2, one block of LZW data, the block terminator, the trailer.
    bytes += QByteArray("\x02\x02\x4C\x01\x00\x3B", 6);
    return bytes;
}

QByteArray bmpDeclaring(const QSize& size)
{
    QByteArray bytes = picture(Qt::gray, QSize(8, 8), "BMP");
    putLittle(bytes, 18, quint32(size.width()), 4);
    putLittle(bytes, 22, quint32(size.height()), 4);
    return bytes;
}

QByteArray svgDeclaring(const QSize& size, const QColor& fill)
{
    return QStringLiteral("<svg xmlns=\"http://www.w3.org/2000/svg\" width=\"%1\" height=\"%2\">"
                          "<rect width=\"%1\" height=\"%2\" fill=\"%3\"/></svg>")
        .arg(size.width())
        .arg(size.height())
        .arg(fill.name())
        .toUtf8();
}

} // namespace HostilePictures
