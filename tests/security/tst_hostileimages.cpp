#include "CoreEngine.h"
#include "HostilePictures.h"
#include "ImageGuard_p.h"
#include "LocalHttpServer.h"
#include "LogCapture.h"
#include "MicroCourseNoticeWidget.h"
#include "PixelProbe.h"
#include "PopupHarness.h"
#include "ResourceSpy.h"
#include "TestKit.h"

#include <QJsonObject>
#include <QLabel>
#include <QMutex>
#include <QPointer>
#include <QTemporaryDir>
#include <QThread>
#include <QThreadPool>
#include <QtTest>

namespace H = PopupHarness;
namespace P = PixelProbe;
namespace Pic = HostilePictures;
using VyrDev::HttpReply;
using VyrDev::LocalHttpServer;

namespace {

const QColor kCoverColour(30, 160, 90);
// The fallback cover's ground.
const QColor kFallbackColour(0xC9, 0xD3, 0xDF);
const QString kRefused = QStringLiteral("picture refused:");

// What the decode hook saw: on which thread a decoder ran, for which declared size.
struct Decodes
{
    QMutex mutex;
    QList<QThread*> threads;
    QList<QSize> sizes;
};

Decodes& decodes()
{
    static Decodes seen;
    return seen;
}

void recordDecode(const QSize& declared)
{
    QMutexLocker lock(&decodes().mutex);
    decodes().threads.append(QThread::currentThread());
    decodes().sizes.append(declared);
}

QList<QThread*> decodeThreads()
{
    QMutexLocker lock(&decodes().mutex);
    return decodes().threads;
}

QList<QSize> decodeSizes()
{
    QMutexLocker lock(&decodes().mutex);
    return decodes().sizes;
}

void forgetDecodes()
{
    QMutexLocker lock(&decodes().mutex);
    decodes().threads.clear();
    decodes().sizes.clear();
}

// Made once: encoding 4096 by 4096 pixels takes a moment.
const QByteArray& bigCover()
{
    static const QByteArray bytes = Pic::picture(kCoverColour, QSize(4096, 4096));
    return bytes;
}

QByteArray garbage()
{
    QByteArray bytes;
    quint32 state = 12345;
    for (int i = 0; i < 4096; ++i) {
        state = state * 1103515245u + 12345u;
        bytes.append(char(state >> 24));
    }
    return bytes;
}

QByteArray svg(const QString& rootAttributes, const QString& body = QString())
{
    return QStringLiteral("<svg xmlns=\"http://www.w3.org/2000/svg\" xmlns:xlink=\"http://www.w3.org/1999/xlink\" %1>"
                          "<rect width=\"10\" height=\"10\" fill=\"red\"/>%2</svg>")
        .arg(rootAttributes, body)
        .toUtf8();
}

QJsonObject lecture(const QString& coverUrl)
{
    return TestKit::microCourseLecture(coverUrl, QStringLiteral("Fractions in five minutes"));
}

} // namespace

// Pictures a hostile server chooses: nothing over 4096 a side or 8 MB is decoded, an SVG
// reads no file, and decoding happens off the GUI thread; the cover label shows the fallback.
class TestHostileImages : public QObject
{
    Q_OBJECT
private slots:
    void initTestCase();
    void init();
    void cleanup();
    void cleanupTestCase();

    void headerIsReadBeforeDecoding_data();
    void headerIsReadBeforeDecoding();
    void largeAcceptedPictureIsDecodedSmall_data();
    void largeAcceptedPictureIsDecodedSmall();
    void laterDecodeRunsOffTheGuiThread();
    void laterDecodeDeliversNothingAfterItsContextWent();
    void coverFromAHostileServer_data();
    void coverFromAHostileServer();
    void svgReferenceReadsNothing_data();
    void svgReferenceReadsNothing();

private:
    void openCover(const HttpReply& reply);
    QColor iconColour(const QPoint& point);

    LocalHttpServer m_server;
    QPointer<MicroCourseNoticeWidget> m_window;
    QTemporaryDir m_dir;
    QString m_secret;
};

void TestHostileImages::initTestCase()
{
    QVERIFY(TestKit::loadTranslations(QStringLiteral("en")));
    QVERIFY(m_dir.isValid());
    // A real file an SVG could name; nothing may read it.
    m_secret = m_dir.filePath(QStringLiteral("secret.png"));
    QFile file(m_secret);
    QVERIFY(file.open(QIODevice::WriteOnly));
    file.write(Pic::picture(Qt::red, QSize(8, 8)));
    file.close();
    // Qt loads its image plugins once; do it before any spy is armed.
    for (const QByteArray& bytes : {Pic::picture(Qt::red, QSize(4, 4)), Pic::picture(Qt::red, QSize(4, 4), "JPG"),
                                    Pic::svgDeclaring(QSize(4, 4))})
        QVERIFY(!QImage::fromData(bytes).isNull());
    QVERIFY(!bigCover().isEmpty());
    ImageGuard::setDecodeHook(&recordDecode);
}

void TestHostileImages::init()
{
    TestKit::resetAll();
    H::useTestScreen();
    QVERIFY(m_server.start());
    m_server.clearRequests();
    VyrEngine::CoreEngine::instance()->setFileServerPrefix(m_server.baseUrl().toString());
    forgetDecodes();
}

void TestHostileImages::cleanup()
{
    delete m_window;
    H::runDeferredDeletes();
    QThreadPool::globalInstance()->waitForDone();
    m_server.stop();
    VyrEngine::CoreEngine::instance()->setFileServerPrefix(QString());
}

void TestHostileImages::cleanupTestCase()
{
    ImageGuard::setDecodeHook(nullptr);
}

void TestHostileImages::openCover(const HttpReply& reply)
{
    m_server.setReply("/covers/a.png", reply);
    m_window = new MicroCourseNoticeWidget(77, 2, lecture(QStringLiteral("/covers/a.png")));
    m_window->popNotice();
    H::finish(H::animation(m_window, "m_showAnimation"));
}

QColor TestHostileImages::iconColour(const QPoint& point)
{
    QLabel* icon = m_window->findChild<QLabel*>(QStringLiteral("m_iconLabel"));
    return P::colourAt(P::grab(m_window), icon->mapTo(m_window, point));
}

// The header tells format and size without decoding; over 4096 a side, over 8 MB, no size or
// an outside reference is refused.
void TestHostileImages::headerIsReadBeforeDecoding_data()
{
    QTest::addColumn<QByteArray>("bytes");
    QTest::addColumn<QByteArray>("format");
    QTest::addColumn<QSize>("size");
    QTest::addColumn<bool>("refused");
    const QSize huge(20000, 20000);
    QTest::newRow("png 20000") << Pic::pngDeclaring(huge) << QByteArray("png") << huge << true;
    QTest::newRow("png 16000") << Pic::pngDeclaring(QSize(16000, 16000)) << QByteArray("png") << QSize(16000, 16000)
                               << true;
    QTest::newRow("png 4097x1") << Pic::pngDeclaring(QSize(4097, 1)) << QByteArray("png") << QSize(4097, 1) << true;
    QTest::newRow("png 4096") << Pic::pngDeclaring(QSize(4096, 4096)) << QByteArray("png") << QSize(4096, 4096)
                              << false;
    QTest::newRow("jpeg 20000") << Pic::jpegDeclaring(huge) << QByteArray("jpeg") << huge << true;
    QTest::newRow("gif 20000") << Pic::gifDeclaring(huge) << QByteArray("gif") << huge << true;
    // Qt's own BMP reader gives up above 16384 squared, so the row stays below that.
    QTest::newRow("bmp 16000") << Pic::bmpDeclaring(QSize(16000, 16000)) << QByteArray("bmp") << QSize(16000, 16000)
                               << true;
    QTest::newRow("svg 20000") << Pic::svgDeclaring(huge) << QByteArray("svg") << huge << true;
    QTest::newRow("svg 4096") << Pic::svgDeclaring(QSize(4096, 4096)) << QByteArray("svg") << QSize(4096, 4096)
                              << false;
    QTest::newRow("svg viewBox 20000") << svg(QStringLiteral("viewBox=\"0 0 20000 20000\"")) << QByteArray("svg")
                                       << QSize() << true;
    QTest::newRow("svg viewBox 300x200") << svg(QStringLiteral("viewBox=\"0 0 300 200\"")) << QByteArray("svg")
                                         << QSize(300, 200) << false;
    QTest::newRow("svg 2000mm") << svg(QStringLiteral("width=\"2000mm\" height=\"10mm\"")) << QByteArray("svg")
                                << QSize(7560, 38) << true;
    QTest::newRow("svg percent only") << svg(QStringLiteral("width=\"100%\" height=\"100%\"")) << QByteArray("svg")
                                      << QSize() << true;
    QTest::newRow("svg em") << svg(QStringLiteral("width=\"2000em\" height=\"10em\"")) << QByteArray("svg")
                            << QSize() << true;
    QTest::newRow("svg no size") << svg(QString()) << QByteArray("svg") << QSize() << true;
    QTest::newRow("svg entities")
        << QByteArray("<?xml version=\"1.0\"?><!DOCTYPE svg [<!ENTITY a \"aaaaaaaaaa\"><!ENTITY b \"&a;&a;&a;\">]>"
                      "<svg xmlns=\"http://www.w3.org/2000/svg\" width=\"10\" height=\"10\"><text>&b;</text></svg>")
        << QByteArray("svg") << QSize() << true;
    // Compressed SVG could inflate far beyond its bytes; it is not read at all.
    QTest::newRow("svgz") << QByteArray("\x1f\x8b\x08\x00\x00\x00\x00\x00\x00\x03", 10) + qCompress(svg(QString()))
                          << QByteArray("svgz") << QSize() << true;
    QTest::newRow("9 MB") << Pic::picture(kCoverColour, QSize(72, 40)) + QByteArray(9 * 1024 * 1024, '\0')
                          << QByteArray() << QSize() << true;
    QTest::newRow("truncated png") << Pic::picture(kCoverColour, QSize(72, 40)).left(20) << QByteArray("png")
                                   << QSize() << true;
    QTest::newRow("garbage") << garbage() << QByteArray() << QSize() << true;
    QTest::newRow("html") << QByteArray("<html><body>not found</body></html>") << QByteArray() << QSize() << true;
    QTest::newRow("xpm") << QByteArray("/* XPM */\nstatic char *x[] = {\"1 1 1 1\", \"a c #000000\", \"a\"};\n")
                         << QByteArray("xpm") << QSize() << true;
    QTest::newRow("ordinary png") << Pic::picture(kCoverColour, QSize(72, 40)) << QByteArray("png") << QSize(72, 40)
                                  << false;
    QTest::newRow("ordinary jpeg") << Pic::picture(kCoverColour, QSize(72, 40), "JPG") << QByteArray("jpeg")
                                   << QSize(72, 40) << false;
    QTest::newRow("ordinary svg") << Pic::svgDeclaring(QSize(72, 40)) << QByteArray("svg") << QSize(72, 40) << false;
    QTest::newRow("svg with doctype")
        << QByteArray("<?xml version=\"1.0\"?><!DOCTYPE svg PUBLIC \"-//W3C//DTD SVG 1.1//EN\" "
                      "\"http://www.w3.org/Graphics/SVG/1.1/DTD/svg11.dtd\">")
               + Pic::svgDeclaring(QSize(72, 40))
        << QByteArray("svg") << QSize(72, 40) << false;
    QTest::newRow("svg use #id") << svg(QStringLiteral("width=\"72\" height=\"40\""),
                                        QStringLiteral("<defs><rect id=\"r\" width=\"5\" height=\"5\"/></defs>"
                                                       "<use xlink:href=\"#r\" x=\"20\"/>"))
                                 << QByteArray("svg") << QSize(72, 40) << false;
}

void TestHostileImages::headerIsReadBeforeDecoding()
{
    QFETCH(QByteArray, bytes);
    QFETCH(QByteArray, format);
    QFETCH(QSize, size);
    QFETCH(bool, refused);
    const ImageGuard::Header header = ImageGuard::inspect(bytes);
    QCOMPARE(header.format, format);
    if (size.isValid())
        QCOMPARE(header.size, size);
    QVERIFY2(header.refusal.isEmpty() != refused, qPrintable(header.refusal));
    QVERIFY(decodeThreads().isEmpty());

    // A refused picture reaches no decoder, gives a null image and one info line.
    LogCapture logs;
    const QImage image = ImageGuard::decode(bytes, QSize(36, 20));
    if (refused) {
        QVERIFY(image.isNull());
        QVERIFY(decodeThreads().isEmpty());
        const QList<LogCapture::Line> lines = logs.startingWith(kRefused);
        QCOMPARE(lines.size(), 1);
        QCOMPARE(lines.first().type, QtInfoMsg);
        QVERIFY(lines.first().file.endsWith(QLatin1String("src/plugins/im/VyrNotice/ImageGuard.cpp")));
    } else {
        QCOMPARE(decodeSizes(), QList<QSize>{size});
    }
}

// A large accepted picture is decoded no larger than twice the label it is shown in.
void TestHostileImages::largeAcceptedPictureIsDecodedSmall_data()
{
    QTest::addColumn<QByteArray>("bytes");
    QTest::newRow("png 4096") << bigCover();
    QTest::newRow("svg 4096") << Pic::svgDeclaring(QSize(4096, 4096), kCoverColour);
}

void TestHostileImages::largeAcceptedPictureIsDecodedSmall()
{
    QFETCH(QByteArray, bytes);
    const QImage image = ImageGuard::decode(bytes, QSize(36, 20));
    QCOMPARE(image.size(), QSize(72, 72));
    QVERIFY(P::distance(P::colourAt(image, 36, 36), kCoverColour) <= 2);
    QCOMPARE(decodeSizes(), QList<QSize>{QSize(4096, 4096)});
    // A picture already small enough keeps its size.
    QCOMPARE(ImageGuard::decode(Pic::picture(kCoverColour, QSize(72, 40)), QSize(36, 20)).size(), QSize(72, 40));
}

// decodeLater decodes on the thread pool and completes on the GUI thread.
void TestHostileImages::laterDecodeRunsOffTheGuiThread()
{
    QObject context;
    QImage result;
    QThread* completedOn = nullptr;
    ImageGuard::decodeLater(&context, bigCover(), QSize(36, 20), [&](const QImage& image) {
        result = image;
        completedOn = QThread::currentThread();
    });
    QTRY_VERIFY_WITH_TIMEOUT(!result.isNull(), 10000);
    QCOMPARE(completedOn, QThread::currentThread());
    QCOMPARE(decodeThreads().size(), 1);
    QVERIFY(decodeThreads().first() != QThread::currentThread());
    QCOMPARE(result.size(), QSize(72, 72));
}

// A context gone before the decode finished gets nothing.
void TestHostileImages::laterDecodeDeliversNothingAfterItsContextWent()
{
    bool ran = false;
    auto* context = new QObject;
    ImageGuard::decodeLater(context, bigCover(), QSize(36, 20), [&ran](const QImage&) { ran = true; });
    delete context;
    QThreadPool::globalInstance()->waitForDone();
    // The finished decode has posted its result by now: deliver it, if anything would.
    QCoreApplication::sendPostedEvents();
    QCoreApplication::processEvents();
    QVERIFY(!ran);
}

// Through the real window: a hostile cover shows the fallback with a log line and reaches no
// decoder; an accepted one shows and was decoded off the GUI thread.
void TestHostileImages::coverFromAHostileServer_data()
{
    QTest::addColumn<QByteArray>("bytes");
    QTest::addColumn<QSize>("decoded");
    // The line that names the refusal: the picture guard's, or the download's own cap.
    QTest::addColumn<QString>("refusal");
    const QSize huge(20000, 20000);
    QTest::newRow("png 20000") << Pic::pngDeclaring(huge) << QSize() << kRefused;
    QTest::newRow("png 16000") << Pic::pngDeclaring(QSize(16000, 16000)) << QSize() << kRefused;
    QTest::newRow("svg 20000") << Pic::svgDeclaring(huge) << QSize() << kRefused;
    QTest::newRow("jpeg 20000") << Pic::jpegDeclaring(huge) << QSize() << kRefused;
    QTest::newRow("gif 20000") << Pic::gifDeclaring(huge) << QSize() << kRefused;
    QTest::newRow("bmp 16000") << Pic::bmpDeclaring(QSize(16000, 16000)) << QSize() << kRefused;
    QTest::newRow("9 MB") << Pic::picture(kCoverColour, QSize(72, 40)) + QByteArray(9 * 1024 * 1024, '\0') << QSize() << QStringLiteral("transfer aborted:");
    QTest::newRow("truncated png") << Pic::picture(kCoverColour, QSize(72, 40)).left(20) << QSize() << kRefused;
    QTest::newRow("garbage") << garbage() << QSize() << kRefused;
    QTest::newRow("png 4096") << bigCover() << QSize(4096, 4096) << kRefused;
    QTest::newRow("ordinary png") << Pic::picture(kCoverColour, QSize(72, 40)) << QSize(72, 40) << kRefused;
    QTest::newRow("ordinary svg") << Pic::svgDeclaring(QSize(72, 40), kCoverColour) << QSize(72, 40) << kRefused;
}

void TestHostileImages::coverFromAHostileServer()
{
    QFETCH(QByteArray, bytes);
    QFETCH(QSize, decoded);
    QFETCH(QString, refusal);
    LogCapture logs;
    openCover(HttpReply::png(bytes));
    QLabel* icon = m_window->findChild<QLabel*>(QStringLiteral("m_iconLabel"));
    QTRY_VERIFY_WITH_TIMEOUT(!icon->pixmap(Qt::ReturnByValue).isNull(), 10000);
    QCOMPARE(m_server.requestCount("/covers/a.png"), 1);
    const QPixmap shown = icon->pixmap(Qt::ReturnByValue);
    QCOMPARE(shown.size() / shown.devicePixelRatio(), QSize(36, 20));
    if (decoded.isValid()) {
        QVERIFY(P::distance(iconColour(QPoint(18, 10)), kCoverColour) <= 8);
        QVERIFY(P::distance(iconColour(QPoint(3, 10)), kCoverColour) <= 8);
        QVERIFY(logs.startingWith(kRefused).isEmpty());
        QCOMPARE(decodeSizes(), QList<QSize>{decoded});
        QVERIFY(decodeThreads().first() != QThread::currentThread());
    } else {
        QVERIFY(P::distance(iconColour(QPoint(4, 10)), kFallbackColour) <= 8);
        QVERIFY(P::distance(iconColour(QPoint(31, 10)), kFallbackColour) <= 8);
        QCOMPARE(logs.startingWith(refusal).size(), 1);
        QVERIFY(decodeThreads().isEmpty());
    }
}

// An SVG naming a file, or embedding a picture, is refused before Qt's SVG reader could load it.
void TestHostileImages::svgReferenceReadsNothing_data()
{
    QTest::addColumn<QString>("reference");
    QTest::newRow("file url") << QStringLiteral("file://%1");
    QTest::newRow("path") << QStringLiteral("%1");
    QTest::newRow("svg2 href") << QStringLiteral("svg2:%1");
    QTest::newRow("data png 20000") << QStringLiteral("data");
}

void TestHostileImages::svgReferenceReadsNothing()
{
    QFETCH(QString, reference);
    QString attribute;
    if (reference == QLatin1String("data")) {
        attribute = QStringLiteral("xlink:href=\"data:image/png;base64,%1\"")
                        .arg(QString::fromLatin1(Pic::pngDeclaring(QSize(20000, 20000)).toBase64()));
    } else if (reference.startsWith(QLatin1String("svg2:"))) {
        attribute = QStringLiteral("href=\"%1\"").arg(m_secret);
    } else {
        attribute = QStringLiteral("xlink:href=\"%1\"").arg(reference.arg(m_secret));
    }
    const QByteArray bytes =
        svg(QStringLiteral("width=\"36\" height=\"20\""),
            QStringLiteral("<image x=\"0\" y=\"0\" width=\"36\" height=\"20\" %1/>").arg(attribute));

    LogCapture logs;
    ResourceSpy spy;
    openCover(HttpReply::png(bytes));
    QLabel* icon = m_window->findChild<QLabel*>(QStringLiteral("m_iconLabel"));
    QTRY_VERIFY_WITH_TIMEOUT(!icon->pixmap(Qt::ReturnByValue).isNull(), 10000);
    QStringList read = spy.names().filter(QStringLiteral("secret"));
    QVERIFY2(read.isEmpty(), qPrintable(read.join(QLatin1Char(' '))));
    // The helper alone reads nothing either.
    const bool refused = ImageGuard::decode(bytes).isNull();
    read = spy.names().filter(QStringLiteral("secret"));
    QVERIFY2(read.isEmpty(), qPrintable(read.join(QLatin1Char(' '))));
    QVERIFY(refused);
    QVERIFY(decodeThreads().isEmpty());
    QCOMPARE(logs.startingWith(kRefused).size(), 2);
    QVERIFY(P::distance(iconColour(QPoint(4, 10)), kFallbackColour) <= 8);
}

QTEST_MAIN(TestHostileImages)
#include "tst_hostileimages.moc"
