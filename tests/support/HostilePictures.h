#pragma once

#include <QByteArray>
#include <QColor>
#include <QSize>

// Pictures a hostile server sends: tiny files whose headers declare a huge
// size, and ordinary ones to compare with. The declared size is what Qt's
// readers report; the bytes behind it are few.
namespace HostilePictures {

// A real picture in one colour, written by Qt ("PNG", "JPG", "BMP").
QByteArray picture(const QColor& colour, const QSize& size, const char* format = "PNG");

// A PNG signature and IHDR declaring `size` (RGBA, 8 bits), a scrap of image data and the end.
QByteArray pngDeclaring(const QSize& size);
// A real small JPEG whose frame header is patched to `size` (at most 65535 a side).
QByteArray jpegDeclaring(const QSize& size);
// A GIF whose screen and one image declare `size` (at most 65535 a side).
QByteArray gifDeclaring(const QSize& size);
// A real small BMP whose info header is patched to `size`.
QByteArray bmpDeclaring(const QSize& size);
// About 120 bytes of SVG declaring `size` by its width and height, filled with `fill`.
QByteArray svgDeclaring(const QSize& size, const QColor& fill = Qt::red);

} // namespace HostilePictures
