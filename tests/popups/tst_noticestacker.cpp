#include "NoticeListWidget.h"
#include "NoticeStacker.h"
#include "NoticeWindowMetrics_p.h"
#include "PopupHarness.h"
#include "ScreenCornerOverride_p.h"
#include "TestKit.h"

#include <QPair>

#include <QLayout>
#include <QPropertyAnimation>
#include <QToolButton>
#include <QtTest>

Q_DECLARE_METATYPE(TaskbarEdge)

namespace H = PopupHarness;

namespace {

// The bottom of the work area on the test screen (800 x 560 available).
const int kBottom = 560;
const int kRight = 800;

QMouseEvent moveEvent(QWidget* window, const QPoint& local)
{
    return QMouseEvent(QEvent::MouseMove, local, window->mapToGlobal(local), Qt::NoButton, Qt::LeftButton,
                       Qt::NoModifier);
}

void drag(QWidget* window, const QPoint& grip, const QPoint& by)
{
    QTest::mousePress(window, Qt::LeftButton, Qt::NoModifier, grip);
    QMouseEvent move = moveEvent(window, grip + by);
    QCoreApplication::sendEvent(window, &move);
    QTest::mouseRelease(window, Qt::LeftButton, Qt::NoModifier, grip + by);
}

} // namespace

// The opt-in helper that keeps notice windows at the corner from covering each other.
class TestNoticeStacker : public QObject
{
    Q_OBJECT
private slots:
    void init();
    void cleanup();
    void withoutStackerPopupsCoverEachOther();
    void stacksTwoThreeFour_data();
    void stacksTwoThreeFour();
    void closingOneClosesTheGap();
    void draggedWindowStaysAndLeavesItsPlace();
    void draggedWindowRejoinsOnItsNextShowing();
    void windowMovedByTheStackWhilePressedIsNotDragged();
    void differentHeightsAndSpacing();
    void panelsShareOneRightEdge();
    void shadowMetricsAreTheWindowsOwn();
    void hiddenWindowLeavesItsPlace();
    void addingTwiceAndRemoving();
    void staysInsideTheWorkArea_data();
    void staysInsideTheWorkArea();
    void fullScreenStandsAtTheTop();

private:
    TestCard* popped(NoticeStacker* stacker);
    QList<QPointer<TestCard>> m_cards;
};

void TestNoticeStacker::init()
{
    TestKit::resetAll();
    H::useTestScreen();
}

void TestNoticeStacker::cleanup()
{
    for (const QPointer<TestCard>& card : m_cards)
        delete card;
    m_cards.clear();
    H::runDeferredDeletes();
    ScreenCornerOverride::clear();
}

TestCard* TestNoticeStacker::popped(NoticeStacker* stacker)
{
    auto* card = new TestCard();
    m_cards << card;
    if (stacker)
        stacker->addWindow(card);
    card->popNotice();
    return card;
}

// Without the helper every pop-up takes the same corner: the library's own behaviour is unchanged.
void TestNoticeStacker::withoutStackerPopupsCoverEachOther()
{
    TestCard* first = popped(nullptr);
    TestCard* second = popped(nullptr);
    QCOMPARE(first->pos(), second->pos());
    QCOMPARE(first->pos(), QPoint(kRight - 328, kBottom - 184));
}

void TestNoticeStacker::stacksTwoThreeFour_data()
{
    QTest::addColumn<int>("count");
    QTest::newRow("two") << 2;
    QTest::newRow("three") << 3;
    QTest::newRow("four") << 4;
}

// Each later pop-up stands on the one before; the first keeps the corner; none overlaps.
void TestNoticeStacker::stacksTwoThreeFour()
{
    QFETCH(int, count);
    NoticeStacker stacker;
    QList<TestCard*> cards;
    for (int i = 0; i < count; ++i)
        cards << popped(&stacker);
    // Three cards fill the 560 pixels of the work area's height: the fourth starts a column on the left.
    for (int i = 0; i < count; ++i)
        QCOMPARE(cards.at(i)->pos(), QPoint(kRight - 328 * (1 + i / 3), kBottom - 184 * (1 + i % 3)));
    for (int i = 0; i < count; ++i)
        for (int j = i + 1; j < count; ++j)
            QVERIFY(!cards.at(i)->geometry().intersects(cards.at(j)->geometry()));
    QCOMPARE(stacker.windows().size(), count);
}

// When one goes, the ones above it move down to close the gap; its place is taken in order.
void TestNoticeStacker::closingOneClosesTheGap()
{
    NoticeStacker stacker;
    TestCard* a = popped(&stacker);
    TestCard* b = popped(&stacker);
    TestCard* c = popped(&stacker);
    QPointer<TestCard> gone = b;
    QTest::mouseClick(H::closeButton(b), Qt::LeftButton);
    QCOMPARE(a->pos(), QPoint(kRight - 328, kBottom - 184));
    QCOMPARE(c->pos(), QPoint(kRight - 328, kBottom - 368));
    H::runDeferredDeletes();
    QVERIFY(!gone);
    QCOMPARE(stacker.windows(), (QList<QWidget*>{a, c}));
    // The bottom one goes by its own timed fade: the other comes down to the corner.
    H::finish(H::animation(a, "m_showAnimation"));
    QMetaObject::invokeMethod(H::closeTimer(a), "timeout");
    H::finish(H::animation(a, "m_opacityAnimation"));
    QCOMPARE(c->pos(), QPoint(kRight - 328, kBottom - 184));
    H::runDeferredDeletes();
    QCOMPARE(stacker.windows(), QList<QWidget*>{c});
}

// A window the user dragged stays where it was dropped; the others close up without it.
void TestNoticeStacker::draggedWindowStaysAndLeavesItsPlace()
{
    NoticeStacker stacker;
    TestCard* a = popped(&stacker);
    TestCard* b = popped(&stacker);
    TestCard* c = popped(&stacker);
    drag(b, QPoint(100, 20), QPoint(-200, -50));
    const QPoint dropped = QPoint(kRight - 328 - 200, kBottom - 368 - 50);
    QCOMPARE(b->pos(), dropped);
    QVERIFY(stacker.isDragged(b));
    QVERIFY(!stacker.isDragged(a));
    QCOMPARE(c->pos(), QPoint(kRight - 328, kBottom - 368));
    // Later changes don't move it.
    TestCard* d = popped(&stacker);
    QCOMPARE(d->pos(), QPoint(kRight - 328, kBottom - 3 * 184));
    QTest::mouseClick(H::closeButton(a), Qt::LeftButton);
    QCOMPARE(b->pos(), dropped);
    QCOMPARE(c->pos(), QPoint(kRight - 328, kBottom - 184));
}

// A drag counts for one showing: shown again, the window takes its place in the stack.
void TestNoticeStacker::draggedWindowRejoinsOnItsNextShowing()
{
    NoticeStacker stacker;
    TestCard* a = popped(&stacker);
    TestCard* b = popped(&stacker);
    drag(a, QPoint(100, 20), QPoint(-100, -300));
    QVERIFY(stacker.isDragged(a));
    QCOMPARE(b->pos(), QPoint(kRight - 328, kBottom - 184));
    a->hide();
    QVERIFY(!stacker.isDragged(a));
    a->show();
    QCOMPARE(a->pos(), QPoint(kRight - 328, kBottom - 368));
}

// A window held down by the mouse and moved by the stack (not by the user) is no drag: it keeps its place.
void TestNoticeStacker::windowMovedByTheStackWhilePressedIsNotDragged()
{
    NoticeStacker stacker;
    TestCard* a = popped(&stacker);
    TestCard* b = popped(&stacker);
    QTest::mousePress(b, Qt::LeftButton, Qt::NoModifier, QPoint(100, 20));
    a->hide();
    QCOMPARE(b->pos(), QPoint(kRight - 328, kBottom - 184));
    QTest::mouseRelease(b, Qt::LeftButton, Qt::NoModifier, QPoint(100, 20));
    QVERIFY(!stacker.isDragged(b));
    a->show();
    QCOMPARE(b->pos(), QPoint(kRight - 328, kBottom - 184));
    QCOMPARE(a->pos(), QPoint(kRight - 328, kBottom - 368));
}

// Windows of other heights stack by their own height, with the spacing asked for.
void TestNoticeStacker::differentHeightsAndSpacing()
{
    NoticeStacker stacker;
    stacker.setSpacing(6);
    QCOMPARE(stacker.spacing(), 6);
    auto* tall = new QWidget(nullptr, Qt::Tool | Qt::FramelessWindowHint);
    tall->setFixedSize(424, 178);
    stacker.addWindow(tall);
    tall->show();
    TestCard* card = popped(&stacker);
    // A plain window has no shadow border: it stands 10 pixels in, level with the card's panel.
    QCOMPARE(tall->pos(), QPoint(kRight - 424 - 10, kBottom - 178));
    QCOMPARE(card->pos(), QPoint(kRight - 328, kBottom - 178 - 6 - 184));
    // A window that grows pushes the ones above it up.
    tall->setFixedSize(424, 266);
    QCOMPARE(card->pos(), QPoint(kRight - 328, kBottom - 266 - 6 - 184));
    delete tall;
    QCOMPARE(card->pos(), QPoint(kRight - 328, kBottom - 184));
}

// A card and a gathered window line up their white panels on the right, whatever their shadow borders.
void TestNoticeStacker::panelsShareOneRightEdge()
{
    NoticeStacker stacker;
    NoticeListWidget window(VyrEngine::Lesson);
    stacker.addWindow(&window);
    window.show();
    TestCard* card = popped(&stacker);
    const int gatheredShadow = 20;
    const int cardShadow = 10;
    QCOMPARE(window.pos().x() + window.width(), kRight);
    QCOMPARE(card->pos().x() + card->width() - cardShadow, window.pos().x() + window.width() - gatheredShadow);
    // Alone again, the card goes back to its own corner.
    window.hide();
    QCOMPARE(card->pos(), QPoint(kRight - 328, kBottom - 184));
}

// The borders the stacker lines up by are those the windows put around their panels.
void TestNoticeStacker::shadowMetricsAreTheWindowsOwn()
{
    NoticeListWidget window(VyrEngine::Lesson);
    const int gathered = NoticeWindowMetrics::GatheredShadow;
    QCOMPARE(window.layout()->contentsMargins(), QMargins(gathered, gathered, gathered, gathered));
    TestCard* card = popped(nullptr);
    const int cardShadow = NoticeWindowMetrics::CardShadow;
    QCOMPARE(card->layout()->contentsMargins(), QMargins(cardShadow, cardShadow, cardShadow, cardShadow));
}

// A hidden window keeps no place.
void TestNoticeStacker::hiddenWindowLeavesItsPlace()
{
    NoticeStacker stacker;
    TestCard* a = popped(&stacker);
    TestCard* b = popped(&stacker);
    a->hide();
    QCOMPARE(b->pos(), QPoint(kRight - 328, kBottom - 184));
    a->show();
    QCOMPARE(a->pos(), QPoint(kRight - 328, kBottom - 368));
}

// A window handed over twice counts once; a window let go stays where it is and leaves the stack.
void TestNoticeStacker::addingTwiceAndRemoving()
{
    NoticeStacker stacker;
    TestCard* a = popped(&stacker);
    stacker.addWindow(a);
    TestCard* b = popped(&stacker);
    QCOMPARE(stacker.windows().size(), 2);
    stacker.removeWindow(a);
    QCOMPARE(a->pos(), QPoint(kRight - 328, kBottom - 184));
    QCOMPARE(b->pos(), QPoint(kRight - 328, kBottom - 184));
    QCOMPARE(stacker.windows(), QList<QWidget*>{b});
}

namespace {

ScreenCorner::Screen screenOf(const QSize& size, TaskbarEdge edge)
{
    ScreenCorner::Screen screen;
    screen.taskbarEdge = edge;
    screen.geometry = QRect(QPoint(0, 0), size);
    const int bar = 40;
    switch (edge) {
    case TaskbarEdge::Left: screen.availableGeometry = screen.geometry.adjusted(bar, 0, 0, 0); break;
    case TaskbarEdge::Top: screen.availableGeometry = screen.geometry.adjusted(0, bar, 0, 0); break;
    case TaskbarEdge::Right: screen.availableGeometry = screen.geometry.adjusted(0, 0, -bar, 0); break;
    default: screen.availableGeometry = screen.geometry.adjusted(0, 0, 0, -bar); break;
    }
    return screen;
}

} // namespace

void TestNoticeStacker::staysInsideTheWorkArea_data()
{
    QTest::addColumn<QSize>("size");
    QTest::addColumn<TaskbarEdge>("edge");
    const QList<QSize> sizes{{1024, 768}, {1280, 800}, {1366, 768}, {1920, 1080}};
    const QList<QPair<TaskbarEdge, const char*>> edges{
        {TaskbarEdge::Left, "left"}, {TaskbarEdge::Top, "top"}, {TaskbarEdge::Right, "right"},
        {TaskbarEdge::Bottom, "bottom"}};
    for (const QSize& size : sizes)
        for (const auto& edge : edges)
            QTest::addRow("%dx%d-%s", size.width(), size.height(), edge.second) << size << edge.first;
}

// A gathered window and five cards on common screens, the taskbar at each edge: all inside the work area, none covering another.
void TestNoticeStacker::staysInsideTheWorkArea()
{
    QFETCH(QSize, size);
    QFETCH(TaskbarEdge, edge);
    const ScreenCorner::Screen screen = screenOf(size, edge);
    ScreenCornerOverride::set(screen);
    NoticeStacker stacker;
    NoticeListWidget gathered(VyrEngine::Lesson);
    stacker.addWindow(&gathered);
    gathered.show();
    QList<QWidget*> windows{&gathered};
    // Five cards fit beside a gathered window on the smallest of these screens: 1024x728 holds it and two cards, then three.
    for (int i = 0; i < 5; ++i)
        windows << popped(&stacker);
    for (QWidget* window : windows)
        QVERIFY2(screen.availableGeometry.contains(window->geometry()),
                 qPrintable(QStringLiteral("%1,%2 %3x%4")
                                .arg(window->x())
                                .arg(window->y())
                                .arg(window->width())
                                .arg(window->height())));
    for (int i = 0; i < windows.size(); ++i)
        for (int j = i + 1; j < windows.size(); ++j)
            QVERIFY(!windows.at(i)->geometry().intersects(windows.at(j)->geometry()));
}

// When no further column fits, the window stands at the top of the last column, still inside the work area.
void TestNoticeStacker::fullScreenStandsAtTheTop()
{
    const ScreenCorner::Screen screen = screenOf(QSize(1024, 768), TaskbarEdge::Bottom);
    ScreenCornerOverride::set(screen);
    NoticeStacker stacker;
    QList<TestCard*> cards;
    // 728 pixels hold three cards a column; 1024 hold three columns.
    for (int i = 0; i < 10; ++i)
        cards << popped(&stacker);
    for (TestCard* card : cards)
        QVERIFY(screen.availableGeometry.contains(card->geometry()));
    QCOMPARE(cards.at(8)->pos(), QPoint(1024 - 3 * 328, 728 - 3 * 184));
    QCOMPARE(cards.at(9)->pos(), QPoint(1024 - 3 * 328, 0));
    // One going frees its place: the stack closes up and nothing covers anything.
    QTest::mouseClick(H::closeButton(cards.at(0)), Qt::LeftButton);
    for (int i = 1; i < 10; ++i)
        for (int j = i + 1; j < 10; ++j)
            QVERIFY(!cards.at(i)->geometry().intersects(cards.at(j)->geometry()));
}

QTEST_MAIN(TestNoticeStacker)
#include "tst_noticestacker.moc"
