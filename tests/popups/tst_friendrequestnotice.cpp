#include "FriendRequestNotice.h"
#include "ImSignalObject.h"
#include "PixelProbe.h"
#include "PopupHarness.h"
#include "NoticeClickRecorder.h"
#include "TestKit.h"
#include "VyrTrack.h"

#include <QLabel>
#include <QLayout>
#include <QMetaMethod>
#include <QPointer>
#include <QSignalSpy>
#include <QToolButton>
#include <QWindow>
#include <QtTest>

namespace H = PopupHarness;

namespace {

const QString kScene = QStringLiteral("添加好友申请");

// The content panel where the screen shows it, in the window's coordinates.
QRect drawnPanel(QWidget* window)
{
    QWidget* panel = H::contentWidget(window);
    return QRect(panel->mapTo(window, QPoint(0, 0)), panel->size());
}

// A label's rectangle in the window's coordinates.
QRect rectOf(QWidget* window, QWidget* child)
{
    return QRect(child->mapTo(window, QPoint(0, 0)), child->size());
}

// Whether the window still exists and is on the screen; a click that closes
// it may already have let the event loop delete it.
bool shown(const QPointer<FriendRequestNotice>& window)
{
    return window && window->isVisible();
}

// A press and release through the window system, so the child under the
// point gets them and passes them up as a real click would.
void clickAt(QWidget* window, const QPoint& pos, Qt::MouseButton button = Qt::LeftButton)
{
    QTest::mouseClick(window->windowHandle(), button, Qt::NoModifier, pos);
}

// The recorder of the window's clicks, with the content signal marked: "content(yes)".
void markContent(NoticeClickRecorder* recorder, FriendRequestNotice* window)
{
    QObject::connect(window, &FriendRequestNotice::contentClickSignal, recorder,
                     [recorder]() { recorder->mark(QStringLiteral("content")); });
}

} // namespace

// The friend-request pop-up: its fixed face, its hit area, its clicks and their tracking.
class TestFriendRequestNotice : public QObject
{
    Q_OBJECT
private slots:
    void initTestCase();
    void init();
    void cleanup();

    void sizeAndTexts();
    void countIsAlwaysOne();
    void layoutOfContent();
    void hitAreaAtPanelEdges_data();
    void hitAreaAtPanelEdges();
    void contentClickEmitsClosesThenTracks();
    void contentClickTracksItsMap();
    void anyButtonReleaseOnContentCounts();
    void releaseOffContentDoesNothing();
    void closeButtonTracksFalseWithoutSignal();
    void showingAndTimedCloseTrackNothing();
    void logOutClosesWithoutTracking();
    void chineseTexts();
    void panelPixels();
    void screenshots();

private:
    FriendRequestNotice* open();
    QPointer<FriendRequestNotice> m_window;
};

void TestFriendRequestNotice::initTestCase()
{
    QVERIFY(TestKit::loadTranslations(QStringLiteral("en")));
}

void TestFriendRequestNotice::init()
{
    TestKit::resetAll();
    H::useTestScreen();
}

void TestFriendRequestNotice::cleanup()
{
    delete m_window;
    H::runDeferredDeletes();
}

FriendRequestNotice* TestFriendRequestNotice::open()
{
    m_window = new FriendRequestNotice();
    m_window->popNotice();
    H::finish(H::animation(m_window, "m_showAnimation"));
    return m_window;
}

// The card is 277 by 87 plus the 10-pixel shadow all round, titled and labelled.
void TestFriendRequestNotice::sizeAndTexts()
{
    m_window = new FriendRequestNotice();
    QCOMPARE(m_window->size(), QSize(297, 107));
    QCOMPARE(m_window->minimumSize(), QSize(297, 107));
    QCOMPARE(m_window->maximumSize(), QSize(297, 107));
    QCOMPARE(H::titleLabel(m_window)->text(), QStringLiteral("New Message"));
    QCOMPARE(H::label(m_window, "nameLabel")->text(), QStringLiteral("Friend request"));
    QCOMPARE(H::label(m_window, "countLabel")->text(), QStringLiteral("1"));
    QCOMPARE(H::label(m_window, "nameLabel")->property("PropertyStyle").toString(), QStringLiteral("QLabel_MessageTitle"));
    QCOMPARE(H::label(m_window, "countLabel")->property("PropertyStyle").toString(),
             QStringLiteral("QLabel_MessageTitle"));
    QCOMPARE(H::label(m_window, "nameLabel")->font().pixelSize(), 14);
    QCOMPARE(H::label(m_window, "countLabel")->font().weight(), int(QFont::Medium));
    QLabel* icon = H::label(m_window, "iconLabel");
    QCOMPARE(icon->size(), QSize(20, 20));
    const QPixmap pixmap = icon->pixmap(Qt::ReturnByValue);
    QVERIFY(!pixmap.isNull());
    QCOMPARE(pixmap.size(), QSize(20, 20));
    QVERIFY(!m_window->isVisible());
}

// The count reads "1" in every window, however many requests wait; nothing can set another.
void TestFriendRequestNotice::countIsAlwaysOne()
{
    QList<QPointer<FriendRequestNotice>> windows;
    for (int i = 0; i < 5; ++i) {
        windows << new FriendRequestNotice();
        windows.last()->popNotice();
    }
    for (const QPointer<FriendRequestNotice>& window : windows)
        QCOMPARE(H::label(window, "countLabel")->text(), QStringLiteral("1"));
    // Intended: the class adds one signal and no way to change the count.
    const QMetaObject* meta = &FriendRequestNotice::staticMetaObject;
    QCOMPARE(meta->methodCount() - meta->superClass()->methodCount(), 1);
    QCOMPARE(meta->method(meta->methodOffset()).methodSignature(), QByteArray("contentClickSignal()"));
    QCOMPARE(meta->propertyCount(), meta->superClass()->propertyCount());
    for (const QPointer<FriendRequestNotice>& window : windows)
        delete window;
}

// Icon, 12 pixels, label, stretch, count; 35 and 13 pixels of margin.
void TestFriendRequestNotice::layoutOfContent()
{
    open();
    QLayout* layout = H::contentWidget(m_window)->layout();
    QVERIFY(qobject_cast<QHBoxLayout*>(layout));
    QCOMPARE(layout->contentsMargins(), QMargins(35, 13, 35, 13));
    QCOMPARE(layout->spacing(), 0);
    QCOMPARE(layout->count(), 5);
    QCOMPARE(layout->itemAt(0)->widget(), H::label(m_window, "iconLabel"));
    QCOMPARE(layout->itemAt(1)->spacerItem()->sizeHint().width(), 12);
    QCOMPARE(layout->itemAt(2)->widget(), H::label(m_window, "nameLabel"));
    QVERIFY(layout->itemAt(3)->spacerItem());
    QCOMPARE(layout->itemAt(4)->widget(), H::label(m_window, "countLabel"));
    // The panel under the 30-pixel title, inside the shadow.
    QCOMPARE(drawnPanel(m_window), QRect(10, 40, 277, 57));
    const QRect icon = rectOf(m_window, H::label(m_window, "iconLabel"));
    QCOMPARE(icon.left(), 10 + 35);
    QCOMPARE(rectOf(m_window, H::label(m_window, "nameLabel")).left(), icon.right() + 1 + 12);
    QCOMPARE(rectOf(m_window, H::label(m_window, "countLabel")).right(), 286 - 35);
}

// Clicks at the drawn panel's four edges: the hit area is the panel moved 10 pixels up and left.
void TestFriendRequestNotice::hitAreaAtPanelEdges_data()
{
    QTest::addColumn<QPoint>("pos");
    QTest::addColumn<bool>("hits");
    // Drawn panel: x 10..286, y 40..96. Hit area: x 0..276, y 30..86.
    QTest::newRow("left: first column of the panel") << QPoint(10, 60) << true;
    QTest::newRow("left: shadow 1 px left of the panel") << QPoint(9, 60) << true;
    QTest::newRow("left: outermost shadow column") << QPoint(0, 60) << true;
    QTest::newRow("right: 11th column from the panel's right") << QPoint(276, 60) << true;
    QTest::newRow("right: 10th column from the panel's right") << QPoint(277, 60) << false;
    QTest::newRow("right: last column of the panel") << QPoint(286, 60) << false;
    QTest::newRow("top: first row of the panel") << QPoint(150, 40) << true;
    QTest::newRow("top: title row, 10 px above the panel") << QPoint(150, 30) << true;
    QTest::newRow("top: title row, 11 px above the panel") << QPoint(150, 29) << false;
    QTest::newRow("bottom: 11th row from the panel's bottom") << QPoint(150, 86) << true;
    QTest::newRow("bottom: 10th row from the panel's bottom") << QPoint(150, 87) << false;
    QTest::newRow("bottom: last row of the panel") << QPoint(150, 96) << false;
    QTest::newRow("on the icon") << QPoint(55, 68) << true;
    QTest::newRow("on the count, drawn") << QPoint(248, 68) << true;
}

void TestFriendRequestNotice::hitAreaAtPanelEdges()
{
    QFETCH(QPoint, pos);
    QFETCH(bool, hits);
    open();
    QCOMPARE(drawnPanel(m_window), QRect(10, 40, 277, 57));
    QSignalSpy spy(m_window.data(), &FriendRequestNotice::contentClickSignal);
    clickAt(m_window, pos);
    QCOMPARE(spy.count(), hits ? 1 : 0);
    QCOMPARE(shown(m_window), !hits);
    QCOMPARE(H::clicks().size(), hits ? 1 : 0);
    H::runDeferredDeletes();
    QCOMPARE(m_window.isNull(), hits);
}

// Emit while still shown, close, then track "check_up" true once the window is hidden.
void TestFriendRequestNotice::contentClickEmitsClosesThenTracks()
{
    open();
    NoticeClickRecorder recorder(m_window);
    markContent(&recorder, m_window);
    clickAt(m_window, QPoint(150, 60));
    // Intended order: signal, close, tracking.
    QCOMPARE(recorder.joined(), QStringLiteral("content(yes) close PushClick(true,no)"));
    H::runDeferredDeletes();
    QVERIFY(m_window.isNull());
}

// The click's event: the count as body, the scene literal, true, the title, a fresh id.
void TestFriendRequestNotice::contentClickTracksItsMap()
{
    open();
    clickAt(m_window, QPoint(150, 60));
    QCOMPARE(VyrTrack::instance()->events().size(), 1);
    const QMap<QString, QVariant> data = H::clicks().value(0).second;
    QCOMPARE(data.value(QStringLiteral("push_body")), QVariant(QStringLiteral("1")));
    QCOMPARE(data.value(QStringLiteral("push_scenes")), QVariant(kScene));
    QCOMPARE(data.value(QStringLiteral("check_up")), QVariant(true));
    QCOMPARE(data.value(QStringLiteral("push_title")), QVariant(QStringLiteral("New Message")));
    QCOMPARE(data.value(QStringLiteral("app_scene")), QVariant(QStringLiteral("前台唤起")));
    QVERIFY(!QUuid(data.value(QStringLiteral("push_id")).toString()).isNull());
    QCOMPARE(data.size(), 6);
}

// Intended: the release isn't asked which button it was; a right click on the content counts too.
void TestFriendRequestNotice::anyButtonReleaseOnContentCounts()
{
    open();
    QSignalSpy spy(m_window.data(), &FriendRequestNotice::contentClickSignal);
    clickAt(m_window, QPoint(150, 60), Qt::RightButton);
    QCOMPARE(spy.count(), 1);
    QVERIFY(!shown(m_window));
}

// A release off the hit area leaves the window up, emits nothing, tracks nothing.
void TestFriendRequestNotice::releaseOffContentDoesNothing()
{
    open();
    NoticeClickRecorder recorder(m_window);
    markContent(&recorder, m_window);
    clickAt(m_window, QPoint(150, 20));
    clickAt(m_window, QPoint(280, 90));
    QCOMPARE(recorder.joined(), QString());
    QVERIFY(m_window->isVisible());
    QCOMPARE(H::stateOf(m_window), QStringLiteral("Holding"));
    QVERIFY(VyrTrack::instance()->events().isEmpty());
}

// The close button: closed by the card, then "check_up" false, and no content signal.
void TestFriendRequestNotice::closeButtonTracksFalseWithoutSignal()
{
    open();
    NoticeClickRecorder recorder(m_window);
    markContent(&recorder, m_window);
    QTest::mouseClick(H::closeButton(m_window), Qt::LeftButton);
    QCOMPARE(recorder.joined(), QStringLiteral("close PushClick(false,no)"));
    QCOMPARE(H::clicks().size(), 1);
    const QMap<QString, QVariant> data = H::clicks().value(0).second;
    QCOMPARE(data.value(QStringLiteral("push_body")), QVariant(QStringLiteral("1")));
    QCOMPARE(data.value(QStringLiteral("push_scenes")), QVariant(kScene));
    QCOMPARE(data.value(QStringLiteral("check_up")), QVariant(false));
    QCOMPARE(data.value(QStringLiteral("push_title")), QVariant(QStringLiteral("New Message")));
    H::runDeferredDeletes();
    QVERIFY(m_window.isNull());
}

// Being shown, held and faded out sends no event at all.
void TestFriendRequestNotice::showingAndTimedCloseTrackNothing()
{
    open();
    QCOMPARE(H::stateOf(m_window), QStringLiteral("Holding"));
    QMetaObject::invokeMethod(m_window, "startOpacityAnimation");
    H::finish(H::animation(m_window, "m_opacityAnimation"));
    H::runDeferredDeletes();
    QVERIFY(m_window.isNull());
    QVERIFY(VyrTrack::instance()->events().isEmpty());
}

// A log-out closes it at once, with no signal and no event.
void TestFriendRequestNotice::logOutClosesWithoutTracking()
{
    open();
    QSignalSpy spy(m_window.data(), &FriendRequestNotice::contentClickSignal);
    emit ImSignalObject::instance()->signalLogOut();
    QVERIFY(!m_window->isVisible());
    QCOMPARE(spy.count(), 0);
    QVERIFY(VyrTrack::instance()->events().isEmpty());
}

// Chinese texts; the tracked scene stays the same literal in every language.
void TestFriendRequestNotice::chineseTexts()
{
    QVERIFY(TestKit::loadTranslations(QStringLiteral("zh_CN")));
    open();
    QCOMPARE(H::titleLabel(m_window)->text(), QStringLiteral("新消息"));
    QCOMPARE(H::label(m_window, "nameLabel")->text(), QStringLiteral("好友申请"));
    QCOMPARE(H::label(m_window, "countLabel")->text(), QStringLiteral("1"));
    clickAt(m_window, QPoint(150, 60));
    QCOMPARE(H::clicks().value(0).second.value(QStringLiteral("push_scenes")), QVariant(kScene));
    QCOMPARE(H::clicks().value(0).second.value(QStringLiteral("push_title")), QVariant(QStringLiteral("新消息")));
    QVERIFY(TestKit::loadTranslations(QStringLiteral("en")));
}

// Grabbed: clear shadow, white panel, the blue icon, dark label and count, white to the right of the count.
void TestFriendRequestNotice::panelPixels()
{
    open();
    const QImage image = H::grabCard(m_window);
    QCOMPARE(image.size(), QSize(297, 107));
    QCOMPARE(PixelProbe::colourAt(image, 0, 0).alpha(), 0);
    QVERIFY(PixelProbe::colourAt(image, 5, 60).alpha() < 255);
    const QColor white(255, 255, 255);
    QVERIFY(PixelProbe::isNear(image, QPoint(150, 92), white));
    QVERIFY(PixelProbe::isNear(image, QPoint(270, 68), white));
    QVERIFY(PixelProbe::isNear(image, QPoint(20, 68), white));
    // The icon: blue strokes within its 20 by 20 pixels.
    const QRect icon = rectOf(m_window, H::label(m_window, "iconLabel"));
    QCOMPARE(icon, QRect(45, 58, 20, 20));
    const int blue = PixelProbe::countPixels(image, icon, [](QRgb p) {
        return qBlue(p) > 200 && qRed(p) < 120 && qAlpha(p) == 255;
    });
    QVERIFY2(blue > 40, qPrintable(QString::number(blue)));
    // Dark text in the label and in the count.
    const auto dark = [](QRgb p) { return qGray(p) < 110; };
    QVERIFY(PixelProbe::countPixels(image, rectOf(m_window, H::label(m_window, "nameLabel")), dark) > 20);
    const QRect count = rectOf(m_window, H::label(m_window, "countLabel"));
    QVERIFY(PixelProbe::countPixels(image, count, dark) > 3);
    // Nothing dark between the count and the panel's right edge.
    QCOMPARE(PixelProbe::countPixels(image, QRect(count.right() + 1, 41, 286 - count.right(), 55), dark), 0);
}

// With VYR_SCREENSHOT_DIR set, the pop-up is saved as a picture in both languages (to look at).
void TestFriendRequestNotice::screenshots()
{
    const QString dir = H::screenshotDir();
    if (dir.isEmpty())
        QSKIP("VYR_SCREENSHOT_DIR not set");
    for (const QString& language : {QStringLiteral("en"), QStringLiteral("zh_CN")}) {
        QVERIFY(TestKit::loadTranslations(language));
        open();
        QVERIFY(H::saveOnCanvas(m_window, QStringLiteral("%1/friend-request-%2.png").arg(dir, language)));
        delete m_window;
        H::runDeferredDeletes();
    }
    QVERIFY(TestKit::loadTranslations(QStringLiteral("en")));
}

QTEST_MAIN(TestFriendRequestNotice)
#include "tst_friendrequestnotice.moc"
