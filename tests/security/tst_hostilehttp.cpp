#include "CoreEngine.h"
#include "ContactsEngine.h"
#include "FileDownloader.h"
#include "ImSignalObject.h"
#include "LocalHttpServer.h"
#include "LogCapture.h"
#include "MicroCourseNoticeWidget.h"
#include "NoticeRemindNoticeWidget.h"
#include "PixelProbe.h"
#include "PopupHarness.h"
#include "ResourceSpy.h"
#include "SimpleMessagePopup.h"
#include "TestKit.h"
#include "VyrHttpManager.h"

#include <QBuffer>
#include <QFile>
#include <QJsonObject>
#include <QLabel>
#include <QPointer>
#include <QPushButton>
#include <QSignalSpy>
#include <QTemporaryDir>
#include <QtTest>

namespace H = PopupHarness;
namespace P = PixelProbe;
using VyrDev::HttpReply;
using VyrDev::LocalHttpServer;

namespace {

const qint64 kHuge = 600LL * 1024 * 1024;
// What the kernel's socket buffers may take beyond what the client read.
const qint64 kInFlight = 16LL * 1024 * 1024;
const QColor kCoverColour(30, 160, 90);
const QColor kFallbackColour(0xC9, 0xD3, 0xDF);
const QString kDeleted = QStringLiteral("This notice has been deleted");
const QByteArray kExists = R"({"error_info":{"errno":1,"error":""}})";
const quint64 kContentId = 77;
const quint64 kGid = 5;
const quint64 kCreator = 9;

QByteArray pngBytes(const QColor& colour)
{
    QByteArray bytes;
    QBuffer buffer(&bytes);
    buffer.open(QIODevice::WriteOnly);
    QImage image(QSize(72, 40), QImage::Format_ARGB32);
    image.fill(colour);
    image.save(&buffer, "PNG");
    return bytes;
}

QJsonObject lecture(const QString& coverUrl)
{
    return TestKit::microCourseLecture(coverUrl, QStringLiteral("Fractions"));
}

QByteArray detailsPath()
{
    return VyrHttpManager::ClusterNoticeDetailsPath.toUtf8();
}

// A body that never ends, one byte at a time.
HttpReply endlessDrip(const QByteArray& contentType)
{
    HttpReply drip = HttpReply::huge(kHuge, contentType);
    drip.dripBytes = 1;
    drip.dripIntervalMs = 20;
    return drip;
}

// A local picture that no address a server names may reach; empty when it can't be written.
QString writeSecretPicture(const QTemporaryDir& dir)
{
    const QString path = dir.filePath(QStringLiteral("secret.png"));
    QFile file(path);
    if (!file.open(QIODevice::WriteOnly) || file.write(pngBytes(kCoverColour)) <= 0)
        return QString();
    return path;
}

} // namespace

// Hostile HTTP servers against the micro-course cover and the cluster notice reminder:
// what a user sees, what the logs say and what went over the wire.
class TestHostileHttp : public QObject
{
    Q_OBJECT
private slots:
    void initTestCase();
    void init();
    void cleanup();

    void coverAnswers_data();
    void coverAnswers();
    void coverAddresses_data();
    void coverAddresses();
    void reminderAnswers_data();
    void reminderAnswers();
    void reminderClosedMidTransfer_data();
    void reminderClosedMidTransfer();
    void downloaderFetchesOnlyHttp_data();
    void downloaderFetchesOnlyHttp();

private:
    MicroCourseNoticeWidget* openCover(const QString& coverUrl);
    NoticeRemindNoticeWidget* openReminder();
    QColor iconColour(const QPoint& point) const;
    HttpReply hostile(const QString& kind, const QByteArray& contentType, const QByteArray& goodBody,
                      const QByteArray& otherPath);

    LocalHttpServer m_server;
    LocalHttpServer m_other;
    QPointer<MicroCourseNoticeWidget> m_cover;
    QPointer<NoticeRemindNoticeWidget> m_reminder;
};

void TestHostileHttp::initTestCase()
{
    QVERIFY(TestKit::loadTranslations(QStringLiteral("en")));
    // Qt scans its image and network plugins once; before any spy is armed.
    QVERIFY(!QImage::fromData(pngBytes(Qt::red)).isNull());
    QVERIFY(m_server.start());
    m_server.setReply("/covers/a.png", HttpReply::png(pngBytes(kCoverColour)));
    VyrEngine::CoreEngine::instance()->setFileServerPrefix(m_server.baseUrl().toString());
    openCover(QStringLiteral("/covers/a.png"));
    QTRY_VERIFY_WITH_TIMEOUT(!m_cover->findChild<QLabel*>(QStringLiteral("m_iconLabel"))->pixmap(Qt::ReturnByValue).isNull(), 5000);
    delete m_cover;
    m_server.stop();
}

void TestHostileHttp::init()
{
    TestKit::resetAll();
    H::useTestScreen();
    auto* contacts = VyrEngine::ContactsEngine::instance();
    contacts->putCluster(kGid, QStringLiteral("Class 7A"));
    contacts->setClusterMemberNickname(kGid, kCreator, QStringLiteral("Ms Lin"));
    QVERIFY(m_server.start());
    QVERIFY(m_other.start());
    m_server.clearRequests();
    m_other.clearRequests();
    m_server.setDefaultReply(HttpReply::error(404, "not found"));
    m_other.setDefaultReply(HttpReply::png(pngBytes(Qt::red)));
    VyrEngine::CoreEngine::instance()->setFileServerPrefix(m_server.baseUrl().toString() + QLatin1Char('/'));
    VyrHttpManager::setBaseUrl(m_server.baseUrl());
}

void TestHostileHttp::cleanup()
{
    delete m_cover;
    delete m_reminder;
    H::runDeferredDeletes();
    m_server.stop();
    m_other.stop();
    QTRY_COMPARE(VyrHttpManager::pendingRequestCount(), 0);
    for (SimpleMessagePopup* popup : SimpleMessagePopup::openPopups())
        delete popup;
    FileDownloader::setDefaultTimeout(30000);
    FileDownloader::setStallTimeout(10000);
    VyrHttpManager::setDefaultTimeout(30000);
    VyrHttpManager::setStallTimeout(10000);
    VyrEngine::CoreEngine::instance()->setFileServerPrefix(QString());
}

MicroCourseNoticeWidget* TestHostileHttp::openCover(const QString& coverUrl)
{
    m_cover = new MicroCourseNoticeWidget(1, 2, lecture(coverUrl));
    m_cover->popNotice();
    H::finish(H::animation(m_cover, "m_showAnimation"));
    return m_cover;
}

NoticeRemindNoticeWidget* TestHostileHttp::openReminder()
{
    m_reminder = new NoticeRemindNoticeWidget(QStringLiteral("Bring your atlas"), kContentId, kGid, kCreator);
    m_reminder->popNotice();
    H::finish(H::animation(m_reminder, "m_showAnimation"));
    return m_reminder;
}

QColor TestHostileHttp::iconColour(const QPoint& point) const
{
    QLabel* icon = m_cover->findChild<QLabel*>(QStringLiteral("m_iconLabel"));
    return P::colourAt(P::grab(m_cover), icon->mapTo(m_cover, point));
}

// The answer of one hostile kind; `goodBody` is what an honest server would send.
HttpReply TestHostileHttp::hostile(const QString& kind, const QByteArray& contentType, const QByteArray& goodBody,
                                   const QByteArray& otherPath)
{
    HttpReply good = HttpReply::json(goodBody);
    good.contentType = contentType;
    if (kind == QLatin1String("ordinary"))
        return good;
    if (kind == QLatin1String("huge chunked"))
        return HttpReply::huge(kHuge, contentType);
    if (kind == QLatin1String("huge length"))
        return HttpReply::huge(kHuge, contentType, true);
    if (kind == QLatin1String("lying length")) {
        HttpReply liar = HttpReply::huge(kHuge, contentType, true);
        liar.declaredLength = 1000;
        return liar;
    }
    if (kind == QLatin1String("gzip bomb"))
        return HttpReply::gzipBomb(32 * 1024 * 1024, contentType);
    if (kind == QLatin1String("gzip small"))
        return HttpReply::gzip(goodBody, contentType);
    if (kind == QLatin1String("stall")) {
        HttpReply hang;
        hang.hang = true;
        return hang;
    }
    if (kind == QLatin1String("endless drip"))
        return endlessDrip(contentType);
    if (kind == QLatin1String("other port")) {
        m_other.setReply(otherPath, good);
        return HttpReply::redirect(m_other.url(QString::fromLatin1(otherPath)).toEncoded(), 307);
    }
    if (kind == QLatin1String("same origin")) {
        m_server.setReply("/moved", good);
        return HttpReply::redirect("/moved", 307);
    }
    if (kind == QLatin1String("302 no location")) {
        good.status = 302;
        return good;
    }
    if (kind == QLatin1String("300")) {
        good.status = 300;
        return good;
    }
    qFatal("unknown kind");
    return good;
}

// Each hostile answer to the cover download ends in the fallback picture, aborted within its bounds.
void TestHostileHttp::coverAnswers_data()
{
    QTest::addColumn<QString>("kind");
    QTest::addColumn<bool>("showsCover");
    QTest::addColumn<int>("code");
    QTest::addColumn<QString>("logged");
    QTest::addColumn<qint64>("receivedAtLeast");
    QTest::addColumn<qint64>("receivedAtMost");
    const qint64 cap = FileDownloader::MaxBytes;
    const int canceled = QNetworkReply::OperationCanceledError;
    QTest::newRow("ordinary") << "ordinary" << true << 0 << QString() << qint64(100) << qint64(10000);
    QTest::newRow("huge chunked") << "huge chunked" << false << canceled
                                  << "transfer aborted: answer over the limit of 8388608 bytes" << cap + 1 << cap + 1;
    QTest::newRow("huge length") << "huge length" << false << canceled
                                 << "transfer aborted: answer of 629145600 bytes over the limit of 8388608"
                                 << qint64(0) << qint64(0);
    QTest::newRow("gzip bomb") << "gzip bomb" << false << canceled
                               << "transfer aborted: content encoding not asked for: gzip" << qint64(0) << qint64(0);
    QTest::newRow("stall") << "stall" << false << canceled << "transfer aborted: no data for 300 ms" << qint64(0)
                           << qint64(0);
    QTest::newRow("endless drip") << "endless drip" << false << canceled
                                  << "transfer aborted: took longer than 400 ms" << qint64(1) << qint64(10000);
    QTest::newRow("other port") << "other port" << false << int(QNetworkReply::InsecureRedirectError)
                                << "transfer aborted: redirect to another origin refused" << qint64(0) << qint64(0);
    QTest::newRow("same origin") << "same origin" << true << 0 << QString() << qint64(100) << qint64(10000);
    // Qt fails a redirect without an address itself; a 300 it lets through is failed here.
    QTest::newRow("302 no location") << "302 no location" << false << int(QNetworkReply::ProtocolUnknownError)
                                     << QString() << qint64(0) << qint64(10000);
    QTest::newRow("300") << "300" << false << int(QNetworkReply::UnknownContentError) << QString() << qint64(100)
                         << qint64(10000);
}

void TestHostileHttp::coverAnswers()
{
    QFETCH(QString, kind);
    QFETCH(bool, showsCover);
    QFETCH(int, code);
    QFETCH(QString, logged);
    QFETCH(qint64, receivedAtLeast);
    QFETCH(qint64, receivedAtMost);
    FileDownloader::setStallTimeout(300);
    if (kind == QLatin1String("endless drip"))
        FileDownloader::setDefaultTimeout(400);
    m_server.setReply("/covers/a.png", hostile(kind, "image/png", pngBytes(kCoverColour), "/covers/a.png"));
    LogCapture log;
    openCover(QStringLiteral("/covers/a.png"));
    auto* downloader = m_cover->findChild<FileDownloader*>();
    QVERIFY(downloader);
    QSignalSpy failed(downloader, &FileDownloader::error);
    QLabel* icon = m_cover->findChild<QLabel*>(QStringLiteral("m_iconLabel"));
    QTRY_VERIFY_WITH_TIMEOUT(!icon->pixmap(Qt::ReturnByValue).isNull(), 10000);

    // What the user sees.
    QVERIFY(P::distance(iconColour(QPoint(4, 10)), showsCover ? kCoverColour : kFallbackColour) <= 8);
    // How the transfer ended and how much of it was read.
    QCOMPARE(failed.count(), showsCover ? 0 : 1);
    if (!showsCover)
        QCOMPARE(failed[0][0].toInt(), code);
    QVERIFY2(downloader->bytesReceived() >= receivedAtLeast && downloader->bytesReceived() <= receivedAtMost,
             qPrintable(QString::number(downloader->bytesReceived())));
    const QList<LogCapture::Line> aborted = log.startingWith(QStringLiteral("transfer aborted:"));
    QCOMPARE(aborted.size(), logged.isEmpty() ? 0 : 1);
    if (!logged.isEmpty())
        QVERIFY2(aborted[0].text.startsWith(logged), qPrintable(aborted[0].text));
    // What went over the wire: identity asked for, the rest of a huge body never sent.
    const VyrDev::HttpRequestRecord first = m_server.requests().value(0);
    QCOMPARE(first.headers.value("accept-encoding"), QByteArray("identity"));
    if (kind.startsWith(QLatin1String("huge"))) {
        QTRY_VERIFY_WITH_TIMEOUT(m_server.lastRequest().answered, 10000);
        QVERIFY(m_server.lastRequest().dropped);
        QVERIFY2(m_server.lastRequest().bytesSent < FileDownloader::MaxBytes + kInFlight,
                 qPrintable(QString::number(m_server.lastRequest().bytesSent)));
    }
    QCOMPARE(m_other.requestCount(), 0);
}

// A cover path that would leave the file server is refused in the library: logged, fallback, no request, no file read.
void TestHostileHttp::coverAddresses_data()
{
    QTest::addColumn<QString>("prefix");
    QTest::addColumn<QString>("coverUrl");
    QTest::addColumn<QString>("refusal");
    // "@S" is the file server's address, "@O" another port, "@F" a local file.
    QTest::newRow("ordinary") << "@S/" << "/covers/a.png" << QString();
    QTest::newRow("at in name") << "@S/" << "/covers/a@2x.png" << QString();
    QTest::newRow("blank in name") << "@S" << "covers/my cover.png" << QString();
    QTest::newRow("in folder") << "@S/files/" << "covers/a.png" << QString();
    QTest::newRow("no prefix, file") << "" << "file://@F" << "no file server address";
    QTest::newRow("no prefix, http") << "" << "@O/covers/a.png" << "no file server address";
    QTest::newRow("no prefix, userinfo") << "" << "@S@127.0.0.1:1/covers/a.png" << "no file server address";
    QTest::newRow("file") << "@S/" << "file://@F" << "the path is an address of its own";
    QTest::newRow("data") << "@S/" << "data:image/png;base64,iVBORw0KGgo=" << "the path is an address of its own";
    QTest::newRow("other port") << "@S/" << "@O/covers/a.png" << "the path is an address of its own";
    QTest::newRow("host:port") << "@S/" << "127.0.0.1:1/covers/a.png" << "the path is an address of its own";
    QTest::newRow("userinfo") << "@S" << "@127.0.0.1:1/covers/a.png" << "the path is an address of its own";
    QTest::newRow("network path") << "@S/" << "//127.0.0.1:1/covers/a.png" << "the path names another host";
    QTest::newRow("dot dot") << "@S/files/" << "../covers/a.png" << "the path has dot segments";
    QTest::newRow("encoded dot dot") << "@S/files/" << "%2e%2e/covers/a.png" << "the path has dot segments";
    QTest::newRow("backslash") << "@S/files/" << "..\\covers\\a.png" << "the path has a backslash or control character";
    QTest::newRow("prefix userinfo") << "http://u:p@127.0.0.1:1/" << "/covers/a.png"
                                     << "the file server address carries more than a folder";
    QTest::newRow("prefix file") << "file:///" << "/covers/a.png" << "the file server address is no http address";
}

void TestHostileHttp::coverAddresses()
{
    QFETCH(QString, prefix);
    QFETCH(QString, coverUrl);
    QFETCH(QString, refusal);
    QTemporaryDir dir;
    QVERIFY(dir.isValid());
    const QString secret = writeSecretPicture(dir);
    QVERIFY(!secret.isEmpty());
    const auto fill = [this, &secret](QString text) {
        return text.replace(QLatin1String("@S"), m_server.baseUrl().toString())
            .replace(QLatin1String("@O"), m_other.baseUrl().toString())
            .replace(QLatin1String("@F"), secret);
    };
    const QByteArray cover = pngBytes(kCoverColour);
    for (const char* path : {"/covers/a.png", "/covers/a@2x.png", "/covers/my cover.png", "/files/covers/a.png"})
        m_server.setReply(path, HttpReply::png(cover));
    VyrEngine::CoreEngine::instance()->setFileServerPrefix(fill(prefix));

    LogCapture log;
    ResourceSpy spy;
    openCover(fill(coverUrl));
    QLabel* icon = m_cover->findChild<QLabel*>(QStringLiteral("m_iconLabel"));
    QTRY_VERIFY_WITH_TIMEOUT(!icon->pixmap(Qt::ReturnByValue).isNull(), 5000);

    const QList<LogCapture::Line> refused = log.startingWith(QStringLiteral("micro-course cover refused:"));
    if (refusal.isEmpty()) {
        QVERIFY(refused.isEmpty());
        QVERIFY(P::distance(iconColour(QPoint(18, 10)), kCoverColour) <= 8);
        QCOMPARE(m_server.requestCount(), 1);
        return;
    }
    QCOMPARE(refused.size(), 1);
    QCOMPARE(refused[0].type, QtInfoMsg);
    QVERIFY2(refused[0].text.contains(refusal), qPrintable(refused[0].text));
    QVERIFY(refused[0].file.endsWith(QLatin1String("MicroCourseNoticeWidget.cpp")));
    QVERIFY(P::distance(iconColour(QPoint(4, 10)), kFallbackColour) <= 8);
    // No request anywhere, no local file read, and the downloader never started.
    QTest::qWait(50);
    QCOMPARE(m_server.requestCount() + m_other.requestCount(), 0);
    QVERIFY2(spy.outsideNames().isEmpty(), qPrintable(spy.outsideNames().join(QLatin1Char(' '))));
    QVERIFY(m_cover->findChild<FileDownloader*>()->targetUrl().isEmpty());
}

// Each hostile answer to the reminder's request reads as a deleted notice, aborted within its bounds.
void TestHostileHttp::reminderAnswers_data()
{
    QTest::addColumn<QString>("kind");
    QTest::addColumn<bool>("opened");
    QTest::addColumn<QString>("errorString");
    QTest::addColumn<qint64>("receivedAtLeast");
    QTest::addColumn<qint64>("receivedAtMost");
    const qint64 cap = VyrHttpManager::MaxBodyBytes;
    QTest::newRow("ordinary") << "ordinary" << true << QString() << qint64(10) << qint64(1000);
    QTest::newRow("huge chunked") << "huge chunked" << false << "answer over the limit of 1048576 bytes" << cap + 1
                                  << cap + 1;
    QTest::newRow("huge length") << "huge length" << false
                                 << "answer of 629145600 bytes over the limit of 1048576" << qint64(0) << qint64(0);
    // A length that claims 1000 bytes: no more is read, and zeros are no JSON (errno 0).
    QTest::newRow("lying length") << "lying length" << false << QString() << qint64(1000) << qint64(1000);
    QTest::newRow("gzip bomb") << "gzip bomb" << false << "content encoding not asked for: gzip" << qint64(0)
                               << qint64(0);
    QTest::newRow("gzip small") << "gzip small" << false << "content encoding not asked for: gzip" << qint64(0)
                                << qint64(0);
    QTest::newRow("stall") << "stall" << false << "no data for 300 ms" << qint64(0) << qint64(0);
    QTest::newRow("endless drip") << "endless drip" << false << "took longer than 400 ms" << qint64(1)
                                  << qint64(10000);
    QTest::newRow("other port") << "other port" << false << "redirect to another origin refused" << qint64(0)
                                << qint64(0);
    QTest::newRow("same origin") << "same origin" << true << QString() << qint64(10) << qint64(1000);
    // Qt's own text for a redirect without an address.
    QTest::newRow("302 no location") << "302 no location" << false << QString() << qint64(0) << qint64(1000);
    QTest::newRow("300") << "300" << false << "HTTP status 300" << qint64(10) << qint64(1000);
}

void TestHostileHttp::reminderAnswers()
{
    QFETCH(QString, kind);
    QFETCH(bool, opened);
    QFETCH(QString, errorString);
    QFETCH(qint64, receivedAtLeast);
    QFETCH(qint64, receivedAtMost);
    VyrHttpManager::setStallTimeout(300);
    if (kind == QLatin1String("endless drip"))
        VyrHttpManager::setDefaultTimeout(400);
    m_server.setReply(detailsPath(), hostile(kind, "application/json", kExists, detailsPath()));
    openReminder();
    QSignalSpy details(ImSignalObject::instance(), &ImSignalObject::signalViewClusterNoticeDetails);
    LogCapture log;
    QTest::mouseClick(m_reminder->findChild<QPushButton*>(QStringLiteral("viewNowBtn")), Qt::LeftButton);
    QTRY_VERIFY_WITH_TIMEOUT(!m_reminder || !m_reminder->isVisible(), 10000);

    // What the user sees: the details page, or the "deleted" message in the card's place.
    QCOMPARE(details.count(), opened ? 1 : 0);
    QCOMPARE(SimpleMessagePopup::openPopups().size(), opened ? 0 : 1);
    if (!opened) {
        QCOMPARE(SimpleMessagePopup::openPopups()[0]->text(), kDeleted);
        // errorNo keeps its initial 1 after a failure, and the reason is the pod's text.
        const QList<LogCapture::Line> lines = log.startingWith(QStringLiteral("url:"));
        QCOMPARE(lines.size(), 1);
        if (kind == QLatin1String("lying length")) {
            QVERIFY2(lines[0].text.endsWith(QStringLiteral("errorNo=0, errorString:")), qPrintable(lines[0].text));
        } else {
            const QString failure = lines[0].text.section(QStringLiteral("errorNo=1, errorString:"), 1);
            QVERIFY2(errorString.isEmpty() ? !failure.isEmpty() : failure.startsWith(errorString),
                     qPrintable(lines[0].text));
        }
    }
    // How the transfer ended and how much of it was read.
    const QSharedPointer<ResponsePod> pod = VyrHttpManager::lastResponse();
    QVERIFY(pod);
    QCOMPARE(pod->networkError == 0, opened || kind == QLatin1String("lying length"));
    QVERIFY2(pod->bytesReceived >= receivedAtLeast && pod->bytesReceived <= receivedAtMost,
             qPrintable(QString::number(pod->bytesReceived)));
    const QList<LogCapture::Line> aborted = log.startingWith(QStringLiteral("transfer aborted:"));
    const bool cut = !opened && !errorString.isEmpty() && kind != QLatin1String("300");
    QCOMPARE(aborted.size(), cut ? 1 : 0);
    if (cut)
        QVERIFY2(aborted[0].text.startsWith(QStringLiteral("transfer aborted: ") + errorString),
                 qPrintable(aborted[0].text));
    // What went over the wire.
    QCOMPARE(m_server.requests().value(0).headers.value("accept-encoding"), QByteArray("identity"));
    if (kind.startsWith(QLatin1String("huge")) || kind == QLatin1String("lying length")) {
        QTRY_VERIFY_WITH_TIMEOUT(m_server.lastRequest().answered, 10000);
        QVERIFY(m_server.lastRequest().dropped);
        QVERIFY2(m_server.lastRequest().bytesSent < VyrHttpManager::MaxBodyBytes + kInFlight,
                 qPrintable(QString::number(m_server.lastRequest().bytesSent)));
    }
    QCOMPARE(m_other.requestCount(), 0);
    QCOMPARE(VyrHttpManager::pendingRequestCount(), 0);
}

// The reminder closed while its answer is on the way: the transfer is aborted, not merely ignored.
void TestHostileHttp::reminderClosedMidTransfer_data()
{
    QTest::addColumn<bool>("dripping");
    QTest::newRow("body dripping") << true;
    QTest::newRow("no answer yet") << false;
}

void TestHostileHttp::reminderClosedMidTransfer()
{
    QFETCH(bool, dripping);
    HttpReply hang;
    hang.hang = true;
    m_server.setReply(detailsPath(), dripping ? endlessDrip("application/json") : hang);
    openReminder();
    QSignalSpy details(ImSignalObject::instance(), &ImSignalObject::signalViewClusterNoticeDetails);
    QTest::mouseClick(m_reminder->findChild<QPushButton*>(QStringLiteral("viewNowBtn")), Qt::LeftButton);
    QTRY_COMPARE_WITH_TIMEOUT(m_server.requestCount(detailsPath()), 1, 5000);
    if (dripping)
        QTRY_VERIFY_WITH_TIMEOUT(m_server.lastRequest().bytesSent >= 2, 5000);
    QCOMPARE(VyrHttpManager::pendingRequestCount(), 1);

    LogCapture log;
    m_reminder->findChild<QPushButton*>(QStringLiteral("m_laterBtn"))->click();
    H::runDeferredDeletes();
    QVERIFY(m_reminder.isNull());
    QCOMPARE(VyrHttpManager::pendingRequestCount(), 0);
    QCOMPARE(log.matching(QStringLiteral("transfer aborted: its owner is gone url: ")
                              .append(m_server.url(VyrHttpManager::ClusterNoticeDetailsPath).toDisplayString()))
                 .size(),
             1);
    // The server sees the connection dropped.
    if (dripping) {
        QTRY_VERIFY_WITH_TIMEOUT(m_server.lastRequest().answered, 5000);
        QVERIFY(m_server.lastRequest().dropped);
    }
    QCOMPARE(details.count(), 0);
    QVERIFY(SimpleMessagePopup::openPopups().isEmpty());
    QVERIFY(log.startingWith(QStringLiteral("url:")).isEmpty());
}

// The kit's downloader itself fetches nothing but http and https: no local file, no data: or resource address.
void TestHostileHttp::downloaderFetchesOnlyHttp_data()
{
    QTest::addColumn<QString>("address");
    QTest::addColumn<bool>("fetched");
    QTest::newRow("http") << "@S/covers/a.png" << true;
    QTest::newRow("file") << "file://@F" << false;
    QTest::newRow("data") << "data:image/png;base64,iVBORw0KGgo=" << false;
    QTest::newRow("qrc") << "qrc:/chat/images/chat/cover.svg" << false;
    QTest::newRow("ftp") << "ftp://127.0.0.1:1/a.png" << false;
}

void TestHostileHttp::downloaderFetchesOnlyHttp()
{
    QFETCH(QString, address);
    QFETCH(bool, fetched);
    QTemporaryDir dir;
    QVERIFY(dir.isValid());
    const QString secret = writeSecretPicture(dir);
    QVERIFY(!secret.isEmpty());
    m_server.setReply("/covers/a.png", HttpReply::png(pngBytes(kCoverColour)));
    address.replace(QLatin1String("@S"), m_server.baseUrl().toString()).replace(QLatin1String("@F"), secret);

    FileDownloader downloader(nullptr, {});
    QSignalSpy finished(&downloader, &FileDownloader::finished);
    QSignalSpy failed(&downloader, &FileDownloader::error);
    ResourceSpy spy;
    downloader.setTargetUrl(QUrl(address));
    downloader.download(QNetworkRequest::PreferNetwork);
    QTRY_COMPARE_WITH_TIMEOUT(finished.count() + failed.count(), 1, 5000);
    QCOMPARE(finished.count(), fetched ? 1 : 0);
    QCOMPARE(m_server.requestCount(), fetched ? 1 : 0);
    if (!fetched) {
        QCOMPARE(failed[0][0].toInt(), int(QNetworkReply::ProtocolUnknownError));
        QVERIFY(downloader.downloadedData().isEmpty());
        QVERIFY2(spy.names().isEmpty(), qPrintable(spy.names().join(QLatin1Char(' '))));
    }
}

QTEST_MAIN(TestHostileHttp)
#include "tst_hostilehttp.moc"
