#include "CoreEngine.h"
#include "LocalHttpServer.h"
#include "MicroCourseNoticeWidget.h"
#include "NoticeClickRecorder.h"
#include "PixelProbe.h"
#include "PopupHarness.h"
#include "TestKit.h"
#include "VyrTrack.h"

#include <QBuffer>
#include <QJsonObject>
#include <QLabel>
#include <QPointer>
#include <QPushButton>
#include <QToolButton>
#include <QtTest>

namespace H = PopupHarness;
namespace P = PixelProbe;
using VyrDev::HttpReply;
using VyrDev::LocalHttpServer;

namespace {

const QColor kCoverColour(30, 160, 90);
// The fallback cover's ground.
const QColor kFallbackColour(0xC9, 0xD3, 0xDF);

QByteArray imageBytes(const QColor& colour, const char* format)
{
    QByteArray bytes;
    QBuffer buffer(&bytes);
    buffer.open(QIODevice::WriteOnly);
    QImage image(QSize(72, 40), QImage::Format_RGB32);
    image.fill(colour);
    image.save(&buffer, format);
    return bytes;
}

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

QJsonObject lecture(const QString& coverUrl, const QJsonValue& status = 4,
                    const QJsonValue& name = QStringLiteral("Fractions in five minutes"))
{
    QJsonObject info;
    info.insert(QStringLiteral("auditStatus"), status);
    info.insert(QStringLiteral("lectureName"), name);
    info.insert(QStringLiteral("coverUrl"), coverUrl);
    return info;
}

} // namespace

// The micro-course pop-up: its type and status checks, the cover over HTTP or the fallback, its buttons.
class TestMicroCourseNotice : public QObject
{
    Q_OBJECT
private slots:
    void initTestCase();
    void init();
    void cleanup();

    void typeAndStatus_data();
    void typeAndStatus();
    void textsAndSize();
    void headingIsCutAt180Pixels();
    void emptyCoverUrlStartsNoDownloadAndShowsTheFallback();
    void downloadedCoverStandsInTheLabel();
    void failedDownloadShowsTheFallback_data();
    void failedDownloadShowsTheFallback();
    void bodyThatIsNoImageShowsTheFallback();
    void coverIsReadByItsContent();
    void answerAfterTheWindowClosedDeliversNothing();
    void buttonOrder_data();
    void buttonOrder();
    void trackingPayload();
    void chineseTexts();

private:
    MicroCourseNoticeWidget* open(int type, const QJsonObject& info);
    // The label's colour at `point` of the label, as the screen shows it.
    QColor iconColour(const QPoint& point);
    void waitForCover();

    LocalHttpServer m_server;
    QPointer<MicroCourseNoticeWidget> m_window;
};

void TestMicroCourseNotice::initTestCase()
{
    QVERIFY(TestKit::loadTranslations(QStringLiteral("en")));
}

void TestMicroCourseNotice::init()
{
    TestKit::resetAll();
    H::useTestScreen();
    QVERIFY(m_server.start());
    m_server.clearRequests();
    m_server.setReply("/covers/a.png", HttpReply::png(pngBytes(kCoverColour)));
    // A trailing slash on the prefix and a leading one on the path join to one.
    VyrEngine::CoreEngine::instance()->setFileServerPrefix(m_server.baseUrl().toString() + QLatin1Char('/'));
}

void TestMicroCourseNotice::cleanup()
{
    delete m_window;
    H::runDeferredDeletes();
    m_server.stop();
    VyrEngine::CoreEngine::instance()->setFileServerPrefix(QString());
}

MicroCourseNoticeWidget* TestMicroCourseNotice::open(int type, const QJsonObject& info)
{
    m_window = new MicroCourseNoticeWidget(77, type, info);
    m_window->popNotice();
    H::finish(H::animation(m_window, "m_showAnimation"));
    return m_window;
}

QColor TestMicroCourseNotice::iconColour(const QPoint& point)
{
    QLabel* icon = H::label(m_window, "m_iconLabel");
    return P::colourAt(P::grab(m_window), icon->mapTo(m_window, point));
}

void TestMicroCourseNotice::waitForCover()
{
    QLabel* icon = H::label(m_window, "m_iconLabel");
    QTRY_VERIFY_WITH_TIMEOUT(!icon->pixmap(Qt::ReturnByValue).isNull(), 5000);
}

// Only type 2 with "auditStatus" 4 stays; any other closes at once, without a download.
void TestMicroCourseNotice::typeAndStatus_data()
{
    QTest::addColumn<int>("type");
    QTest::addColumn<QJsonValue>("status");
    QTest::addColumn<bool>("stays");
    QTest::newRow("type 2, status 4") << 2 << QJsonValue(4) << true;
    QTest::newRow("type 1, status 4") << 1 << QJsonValue(4) << false;
    QTest::newRow("type 0, status 4") << 0 << QJsonValue(4) << false;
    QTest::newRow("type 2, status 3") << 2 << QJsonValue(3) << false;
    QTest::newRow("type 2, status 5") << 2 << QJsonValue(5) << false;
    QTest::newRow("type 2, status missing") << 2 << QJsonValue(QJsonValue::Undefined) << false;
    QTest::newRow("type 2, status \"4\" as text") << 2 << QJsonValue(QStringLiteral("4")) << false;
}

void TestMicroCourseNotice::typeAndStatus()
{
    QFETCH(int, type);
    QFETCH(QJsonValue, status);
    QFETCH(bool, stays);
    QJsonObject info = lecture(QStringLiteral("/covers/a.png"), status);
    if (status.isUndefined())
        info.remove(QStringLiteral("auditStatus"));
    m_window = new MicroCourseNoticeWidget(77, type, info);
    NoticeClickRecorder recorder(m_window);
    m_window->popNotice();
    H::runDeferredDeletes();
    QCOMPARE(m_window.isNull(), !stays);
    if (stays) {
        waitForCover();
        QCOMPARE(m_server.requestCount("/covers/a.png"), 1);
    } else {
        QTest::qWait(100);
        QCOMPARE(m_server.requestCount(), 0);
        // Closing for the type or status tracks nothing.
        QVERIFY(KitFixture::trackedEvents(QStringLiteral("PushClick")).isEmpty());
    }
}

// Title, heading from the JSON, the failure sentence, the 36 by 20 cover label and the card's size.
void TestMicroCourseNotice::textsAndSize()
{
    open(2, lecture(QString()));
    QCOMPARE(m_window->size(), QSize(328, 184));
    QCOMPARE(H::titleLabel(m_window)->text(), QStringLiteral("Micro-lecture notice"));
    QCOMPARE(H::label(m_window, "m_headingLabel")->text(), QStringLiteral("Fractions in five minutes"));
    QCOMPARE(H::label(m_window, "m_contentLabel")->text(),
             QStringLiteral("Your micro-lecture did not pass the review. Please revise it."));
    QVERIFY(H::label(m_window, "m_contentLabel")->wordWrap());
    QCOMPARE(H::label(m_window, "m_iconLabel")->size(), QSize(36, 20));
    QCOMPARE(H::label(m_window, "m_headingLabel")->height(), 19);
    // The cover's column starts 16 pixels below the heading's top.
    QCOMPARE(H::label(m_window, "m_iconLabel")->y() - H::label(m_window, "m_headingLabel")->y(), 16);
}

// A long name is cut at 180 pixels, shorter than the other headings' 200; markup stays text.
void TestMicroCourseNotice::headingIsCutAt180Pixels()
{
    open(2, lecture(QString(), 4, QStringLiteral("<b>A very long micro-lecture name that never ends</b>")));
    QLabel* heading = H::label(m_window, "m_headingLabel");
    const QFontMetrics metrics = heading->fontMetrics();
    const QString name = QStringLiteral("<b>A very long micro-lecture name that never ends</b>");
    QCOMPARE(heading->text(), metrics.elidedText(name, Qt::ElideRight, 180));
    QVERIFY(heading->text() != metrics.elidedText(name, Qt::ElideRight, 200));
    QVERIFY(heading->text().startsWith(QStringLiteral("<b>A very")));
    QVERIFY(heading->text().endsWith(QChar(0x2026)));
    QVERIFY(metrics.horizontalAdvance(heading->text()) <= 180);
    // Not escaped, so the label must not read it as markup.
    QCOMPARE(heading->textFormat(), Qt::PlainText);
    // A mistyped name reads as empty.
    delete m_window;
    open(2, lecture(QString(), 4, 12345));
    QCOMPARE(H::label(m_window, "m_headingLabel")->text(), QString());
}

// An empty "coverUrl" asks nothing of the server and shows the fallback cover.
void TestMicroCourseNotice::emptyCoverUrlStartsNoDownloadAndShowsTheFallback()
{
    open(2, lecture(QString()));
    QVERIFY(!H::label(m_window, "m_iconLabel")->pixmap(Qt::ReturnByValue).isNull());
    QTest::qWait(100);
    QCOMPARE(m_server.requestCount(), 0);
    QVERIFY(P::distance(iconColour(QPoint(4, 10)), kFallbackColour) <= 8);
    // A missing key is the same as an empty one.
    QJsonObject info = lecture(QString());
    info.remove(QStringLiteral("coverUrl"));
    delete m_window;
    open(2, info);
    QTest::qWait(50);
    QCOMPARE(m_server.requestCount(), 0);
    QVERIFY(P::distance(iconColour(QPoint(4, 10)), kFallbackColour) <= 8);
}

// The cover comes from the file server's prefix plus the path, and fills the 36 by 20 label.
void TestMicroCourseNotice::downloadedCoverStandsInTheLabel()
{
    open(2, lecture(QStringLiteral("/covers/a.png")));
    waitForCover();
    QCOMPARE(m_server.requestCount("/covers/a.png"), 1);
    const QPixmap pixmap = H::label(m_window, "m_iconLabel")->pixmap(Qt::ReturnByValue);
    QCOMPARE(pixmap.size() / pixmap.devicePixelRatio(), QSize(36, 20));
    QVERIFY(P::distance(iconColour(QPoint(18, 10)), kCoverColour) <= 8);
    QVERIFY(P::distance(iconColour(QPoint(2, 10)), kCoverColour) <= 8);
    QVERIFY(P::distance(iconColour(QPoint(33, 10)), kCoverColour) <= 8);
    // Rounded corners: the card's white shows at the label's corner.
    QVERIFY(P::distance(iconColour(QPoint(0, 0)), kCoverColour) > 40);
}

// A 404, a server error, a refused connection: each shows the fallback cover, with no retry.
void TestMicroCourseNotice::failedDownloadShowsTheFallback_data()
{
    QTest::addColumn<QString>("failure");
    QTest::newRow("404") << "404";
    QTest::newRow("500") << "500";
    QTest::newRow("refused") << "refused";
}

void TestMicroCourseNotice::failedDownloadShowsTheFallback()
{
    QFETCH(QString, failure);
    if (failure == QLatin1String("refused")) {
        // Answered once, so the server is surely listening before it stops.
        open(2, lecture(QStringLiteral("/covers/a.png")));
        waitForCover();
        delete m_window;
        m_server.stop();
    } else {
        m_server.setReply("/covers/a.png", HttpReply::error(failure.toInt(), "nope"));
    }
    open(2, lecture(QStringLiteral("/covers/a.png")));
    waitForCover();
    // The fallback fills the 36 by 20 label.
    const QPixmap shown = H::label(m_window, "m_iconLabel")->pixmap(Qt::ReturnByValue);
    QCOMPARE(shown.size() / shown.devicePixelRatio(), QSize(36, 20));
    QVERIFY(P::distance(iconColour(QPoint(4, 10)), kFallbackColour) <= 8);
    QVERIFY(P::distance(iconColour(QPoint(31, 10)), kFallbackColour) <= 8);
    QTest::qWait(100);
    if (failure != QLatin1String("refused"))
        QCOMPARE(m_server.requestCount("/covers/a.png"), 1);
}

// A body that is no picture arrives as a success; it is refused like any bad picture: the fallback.
void TestMicroCourseNotice::bodyThatIsNoImageShowsTheFallback()
{
    HttpReply html = HttpReply::json("<html>not a picture</html>");
    html.contentType = "text/html";
    m_server.setReply("/covers/a.png", html);
    open(2, lecture(QStringLiteral("/covers/a.png")));
    waitForCover();
    QVERIFY(P::distance(iconColour(QPoint(4, 10)), kFallbackColour) <= 8);
}

// The picture's kind is found from its bytes: a JPEG behind a ".png" path still shows.
void TestMicroCourseNotice::coverIsReadByItsContent()
{
    HttpReply jpeg = HttpReply::png(imageBytes(kCoverColour, "JPG"));
    jpeg.contentType = "image/jpeg";
    m_server.setReply("/covers/a.png", jpeg);
    open(2, lecture(QStringLiteral("/covers/a.png")));
    waitForCover();
    QVERIFY(P::distance(iconColour(QPoint(18, 10)), kCoverColour) <= 10);
}

// A window closed while its cover is on the way takes nothing and nothing crashes.
void TestMicroCourseNotice::answerAfterTheWindowClosedDeliversNothing()
{
    HttpReply slow = HttpReply::png(pngBytes(kCoverColour));
    slow.delayMs = 300;
    m_server.setReply("/covers/a.png", slow);
    open(2, lecture(QStringLiteral("/covers/a.png")));
    QTRY_COMPARE_WITH_TIMEOUT(m_server.requestCount("/covers/a.png"), 1, 5000);
    QLabel* icon = H::label(m_window, "m_iconLabel");
    QVERIFY(icon->pixmap(Qt::ReturnByValue).isNull());
    m_window->close();
    H::runDeferredDeletes();
    QVERIFY(m_window.isNull());
    QTest::qWait(500);
    // A new window still works after the orphaned answer.
    m_server.setReply("/covers/a.png", HttpReply::png(pngBytes(kCoverColour)));
    open(2, lecture(QStringLiteral("/covers/a.png")));
    waitForCover();
}

// Act first, track after: view details emits and closes, later closes, the close button closes.
void TestMicroCourseNotice::buttonOrder_data()
{
    QTest::addColumn<QString>("button");
    QTest::addColumn<QString>("expected");
    QTest::newRow("view details") << "m_viewDetailsBtn" << "details(yes) close PushClick(true,no)";
    QTest::newRow("later") << "m_laterBtn" << "close PushClick(false,no)";
    QTest::newRow("close button") << "close" << "close PushClick(false,no)";
}

void TestMicroCourseNotice::buttonOrder()
{
    QFETCH(QString, button);
    QFETCH(QString, expected);
    open(2, lecture(QString()));
    NoticeClickRecorder recorder(m_window);
    connect(m_window, &MicroCourseNoticeWidget::signalSeeDetails, &recorder,
            [&recorder]() { recorder.mark(QStringLiteral("details")); });
    QAbstractButton* target = button == QLatin1String("close")
                                  ? static_cast<QAbstractButton*>(H::closeButton(m_window))
                                  : m_window->findChild<QPushButton*>(button);
    target->click();
    QCOMPARE(recorder.joined(), expected);
    H::runDeferredDeletes();
    QVERIFY(m_window.isNull());
}

// The click reports the sentence as body, "发布微课" as scene and the title.
void TestMicroCourseNotice::trackingPayload()
{
    open(2, lecture(QString()));
    m_window->findChild<QPushButton*>(QStringLiteral("m_viewDetailsBtn"))->click();
    const QList<VyrTrack::Event> clicks = KitFixture::trackedEvents(QStringLiteral("PushClick"));
    QCOMPARE(clicks.size(), 1);
    const QVariantMap data = clicks.first().second;
    QCOMPARE(data.value("push_scenes").toString(), QStringLiteral("发布微课"));
    QCOMPARE(data.value("push_body").toString(),
             QStringLiteral("Your micro-lecture did not pass the review. Please revise it."));
    QCOMPARE(data.value("push_title").toString(), QStringLiteral("Micro-lecture notice"));
    QCOMPARE(data.value("check_up"), QVariant(true));
}

// The Chinese words of the window.
void TestMicroCourseNotice::chineseTexts()
{
    QVERIFY(TestKit::loadTranslations(QStringLiteral("zh_CN")));
    open(2, lecture(QString()));
    QCOMPARE(H::titleLabel(m_window)->text(), QStringLiteral("微课通知"));
    QCOMPARE(H::label(m_window, "m_contentLabel")->text(), QStringLiteral("你的微课未通过审核，请修改后重新提交"));
    QVERIFY(TestKit::loadTranslations(QStringLiteral("en")));
}

QTEST_MAIN(TestMicroCourseNotice)
#include "tst_microcoursenotice.moc"
