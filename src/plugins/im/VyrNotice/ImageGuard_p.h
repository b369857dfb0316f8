#pragma once

// Private to the library: the one way bytes from outside become a picture.

#include "VyrNoticeExport.h"

#include <QByteArray>
#include <QImage>
#include <QSize>
#include <QString>

#include <functional>

class QObject;

// A server can declare a picture far larger than its bytes (a 100-byte PNG or
// SVG saying 20000 by 20000 wants gigabytes), and an SVG can name files of its
// own. So the header is read first and nothing is decoded unless it is one of
// the accepted formats, at most MaxBytes long, declares at most MaxSide on
// each side, and, for SVG, refers to nothing outside the document. A refused
// picture gives a null image and one info line "picture refused: <why>".
class VYRNOTICE_TESTS_EXPORT ImageGuard
{
public:
    static constexpr int MaxSide = 4096;
    static constexpr int MaxBytes = 8 * 1024 * 1024;

    // What the bytes declare, read without decoding them. `refusal` is empty
    // when the picture may be decoded.
    struct Header
    {
        QByteArray format;
        QSize size;
        QString refusal;
    };
    static Header inspect(const QByteArray& data);

    // The picture, decoded on the calling thread, or a null image if refused.
    // `shownAt`: the device pixels it will be shown in; a larger picture is
    // decoded down to twice that, which still covers it smoothly.
    static QImage decode(const QByteArray& data, const QSize& shownAt = QSize());

    // decode() on the global thread pool, so the GUI thread never waits for a
    // decoder. `completion` runs on the GUI thread, and only while `context`
    // lives.
    static void decodeLater(QObject* context, const QByteArray& data, const QSize& shownAt,
                            std::function<void(const QImage&)> completion);

    // For tests: called on the decoding thread just before a decoder runs,
    // with the declared size. Null by default.
    using DecodeHook = void (*)(const QSize& declared);
    static void setDecodeHook(DecodeHook hook);
};
