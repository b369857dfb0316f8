#include "FriendRequestNotice.h"
#include "NoticeListWidget.h"
#include "PopupHarness.h"
#include "ScreenCornerOverride_p.h"
#include "ShadowMask_p.h"
#include "TestKit.h"

#include <QGuiApplication>
#include <QtTest>

namespace H = PopupHarness;

namespace {

// The window under test, shown as a host shows it, and the width of its shadow border.
struct Shown
{
    QWidget* window = nullptr;
    int shadow = 0;
};

Shown showWindow(const QString& kind)
{
    if (kind == QLatin1String("gathered")) {
        auto* window = new NoticeListWidget(VyrEngine::Lesson);
        window->show();
        return {window, 20};
    }
    PopNoticeBaseWidget* card = nullptr;
    if (kind == QLatin1String("friend"))
        card = new FriendRequestNotice();
    else
        card = new TestCard();
    card->setAttribute(Qt::WA_DeleteOnClose, false);
    card->popNotice();
    return {card, 10};
}

} // namespace

// Frameless translucent windows without a compositing manager: the shadow border is masked away.
class TestShadowMask : public QObject
{
    Q_OBJECT
private slots:
    void init();
    void cleanup();
    void maskedOnlyWithoutCompositor_data();
    void maskedOnlyWithoutCompositor();
    void maskFollowsTheHeight();
    void compositorStartingClearsTheMask();
    void systemAnswer();
};

void TestShadowMask::init()
{
    TestKit::resetAll();
    H::useTestScreen();
}

void TestShadowMask::cleanup()
{
    ShadowMask::setDecision({});
    ScreenCornerOverride::clear();
    H::runDeferredDeletes();
}

void TestShadowMask::maskedOnlyWithoutCompositor_data()
{
    QTest::addColumn<QString>("kind");
    QTest::addColumn<bool>("compositing");
    for (const char* kind : {"card", "gathered", "friend"}) {
        QTest::addRow("%s-composited", kind) << QString::fromLatin1(kind) << true;
        QTest::addRow("%s-opaque", kind) << QString::fromLatin1(kind) << false;
    }
}

// With a compositor nothing changes; without, only the panel shows and it stays where it was.
void TestShadowMask::maskedOnlyWithoutCompositor()
{
    QFETCH(QString, kind);
    QFETCH(bool, compositing);
    ShadowMask::setDecision([] { return true; });
    const Shown reference = showWindow(kind);
    const QRect placed = reference.window->geometry();
    QVERIFY(reference.window->mask().isEmpty());
    delete reference.window;

    ShadowMask::setDecision([compositing] { return compositing; });
    const Shown shown = showWindow(kind);
    QScopedPointer<QWidget> owner(shown.window);
    QCOMPARE(shown.window->geometry(), placed);
    if (compositing) {
        QVERIFY(shown.window->mask().isEmpty());
    } else {
        const QRect panel = shown.window->rect().adjusted(shown.shadow, shown.shadow, -shown.shadow, -shown.shadow);
        QCOMPARE(shown.window->mask(), QRegion(panel));
    }
}

// A gathered window that grows keeps its mask on its panel.
void TestShadowMask::maskFollowsTheHeight()
{
    ShadowMask::setDecision([] { return false; });
    NoticeListWidget window(VyrEngine::Activity);
    window.show();
    const int grown = window.height() + 88;
    window.setFixedHeight(grown);
    QCOMPARE(window.mask(), QRegion(QRect(20, 20, window.width() - 40, grown - 40)));
}

// Shown again after a compositor started, the card gets its shadow back.
void TestShadowMask::compositorStartingClearsTheMask()
{
    bool compositing = false;
    ShadowMask::setDecision([&compositing] { return compositing; });
    TestCard card;
    card.setAttribute(Qt::WA_DeleteOnClose, false);
    card.show();
    QVERIFY(!card.mask().isEmpty());
    card.hide();
    compositing = true;
    card.show();
    QVERIFY(card.mask().isEmpty());
}

// The system's answer: offscreen composites; plain Xvfb (no compositing manager) doesn't, and the card is masked.
void TestShadowMask::systemAnswer()
{
    const bool onX11 = QGuiApplication::platformName() == QLatin1String("xcb");
    const QByteArray expected = qgetenv("VYR_EXPECT_PLATFORM");
    if (!expected.isEmpty())
        QCOMPARE(QGuiApplication::platformName(), QString::fromLatin1(expected));
    QCOMPARE(ShadowMask::systemComposites(), !onX11);
    TestCard card;
    card.setAttribute(Qt::WA_DeleteOnClose, false);
    card.popNotice();
    QCOMPARE(card.mask().isEmpty(), !onX11);
}

QTEST_MAIN(TestShadowMask)
#include "tst_shadowmask.moc"
