#include "HostWiring.h"
#include "LogCapture.h"
#include "Movable.h"
#include "NoticeListModel.h"
#include "NoticeListWidget.h"
#include "NoticeWindowHarness.h"
#include "NoticeWindowTestCase.h"
#include "ScreenCorner.h"
#include "ScreenCornerOverride_p.h"
#include "TestKit.h"
#include "VyrPauseableTimer.h"
#include "VyrTrack.h"
#include "WindowSignalRecorder.h"

#include <QPropertyAnimation>
#include <QScreen>
#include <QToolButton>
#include <QRandomGenerator>
#include <QtTest>

using namespace VyrEngine;
namespace H = NoticeWindowHarness;

namespace {
// Appends the window's position at every move it makes.
class MoveRecorder : public QObject
{
public:
    MoveRecorder(QWidget* window, QList<QPoint>* positions)
        : m_window(window)
        , m_positions(positions)
    {
        window->installEventFilter(this);
    }
    ~MoveRecorder() override
    {
        if (m_window)
            m_window->removeEventFilter(this);
    }

protected:
    bool eventFilter(QObject* watched, QEvent* event) override
    {
        if (watched == m_window && event->type() == QEvent::Move)
            m_positions->append(static_cast<QMoveEvent*>(event)->pos());
        return false;
    }

private:
    QPointer<QWidget> m_window;
    QList<QPoint>* m_positions;
};

void invoke(NoticeListWidget* window, const char* slot)
{
    QVERIFY(QMetaObject::invokeMethod(window, slot, Qt::DirectConnection));
}

// The two states a shown window rests in: open, or held by the pointer over it.
void addOpenAndHeldRows()
{
    QTest::addColumn<bool>("held");
    QTest::newRow("open") << false;
    QTest::newRow("held") << true;
}

} // namespace

// Height, placement, hold time, pointer, fade and drag of the notice window.
class TestNoticeWindowTiming : public NoticeWindowTestCase
{
    Q_OBJECT
public:
    TestNoticeWindowTiming()
        : NoticeWindowTestCase(NoticeWindowFixture::RecordSignals)
    {
    }

private slots:
    // Height
    void heightGoingUp_data();
    void heightGoingUp();
    void heightGoingDown_data();
    void heightGoingDown();
    void fifthNoticeChangesTitleAndHoldButNotSize();
    void otherChangeValuesOnlyReapplyHeight();
    void sizingNeverMovesTheWindow();
    void adjustLogsCategoryAsNumber();

    // Placement
    void cornerForEachTaskbarEdge_data();
    void cornerForEachTaskbarEdge();
    void unknownEdgeKeepsLastPopPositionAndMovesToNullPoint();
    void primaryScreenIsUsedWithoutOverride();

    // Animations
    void popFadesInOver500msAndDeletesItself();
    void secondPopRestartsSameAnimation();
    void moveSlidesFromWhereItStands();
    void popLeavesTimerAlone();

    // State table, one case per row
    void hiddenAdjustAdd();
    void hiddenPop();
    void openAdjustAddRestartsFullHold();
    void openLessonUpdateRestartsFullHold();
    void openPointerEntersHolds();
    void heldPointerLeavesResumesWithWhatRemained();
    void heldAdjustAddResetsPausedCount();
    void heldLessonUpdateResetsPausedCount();
    void openOrHeldRemoveKeepingRows_data();
    void openOrHeldRemoveKeepingRows();
    void openOrHeldRemoveLastRowHides_data();
    void openOrHeldRemoveLastRowHides();
    void openTimeoutStartsFadeOut();
    void fadingOutEndHidesAndDeletesCategory();
    void closeButtonHidesFromEachVisibleState_data();
    void closeButtonHidesFromEachVisibleState();
    void hiddenSignalAgainstTheHideOnEachPath_data();
    void hiddenSignalAgainstTheHideOnEachPath();

    // Edge cases
    void pointerDuringFadeOutDoesNotStopIt();
    void noticeAddedDuringFadeOutIsLost();
    void popDuringFadeOutTakesOverOpacity();
    void closeDuringFadeOutEmitsHiddenTwice();
    void putOffMoveRunsOnLeaveWithOffsetZeroOnce();
    void severalPutOffCallsStartOneMove();
    void needAdjustPosSurvivesHide();
    void cursorTestIncludesFarEdges_data();
    void cursorTestIncludesFarEdges();
    void dragByTitleSetsFlagUntilHidden();
    void dragBelowTitleStripDoesNothing();
    void popupTimeIsPlainStore();
    void anyOrderOfOperationsStaysConsistent();
};

// 1, 2, 3 rows: 88 each; the fourth adds half a row; from the fifth on nothing grows.
void TestNoticeWindowTiming::heightGoingUp_data()
{
    QTest::addColumn<int>("count");
    QTest::addColumn<int>("height");
    QTest::newRow("1") << 1 << 88;
    QTest::newRow("2") << 2 << 176;
    QTest::newRow("3") << 3 << 264;
    QTest::newRow("4") << 4 << 308;
    QTest::newRow("5") << 5 << 308;
    QTest::newRow("7") << 7 << 308;
}

void TestNoticeWindowTiming::heightGoingUp()
{
    QFETCH(int, count);
    QFETCH(int, height);
    NoticeListWidget* window = m_fixture.makeWindow();
    H::addActivityNotices(window, count);
    QCOMPARE(H::listHeight(window), height);
    QCOMPARE(window->getContentWidgetSize(), QSize(384, height + 50));
    QCOMPARE(window->height(), height + 90);
    QCOMPARE(window->minimumHeight(), height + 90);
    QCOMPARE(window->maximumHeight(), height + 90);
    auto* view = window->findChild<QWidget*>(QStringLiteral("noticeListView"));
    QCOMPARE(view->minimumHeight(), height);
    QCOMPARE(view->maximumHeight(), height);
    QCOMPARE(H::title(window), QStringLiteral("Activity notices (%1)").arg(count));
}

// Removing: 5 and more keep 308, 3 rows 264, 2 rows 176, 1 row 88, none hides.
void TestNoticeWindowTiming::heightGoingDown_data()
{
    QTest::addColumn<int>("before");
    QTest::addColumn<int>("height");
    QTest::addColumn<bool>("visible");
    QTest::newRow("6to5") << 6 << 308 << true;
    QTest::newRow("5to4") << 5 << 308 << true;
    QTest::newRow("4to3") << 4 << 264 << true;
    QTest::newRow("3to2") << 3 << 176 << true;
    QTest::newRow("2to1") << 2 << 88 << true;
    QTest::newRow("1to0") << 1 << 0 << false;
}

void TestNoticeWindowTiming::heightGoingDown()
{
    QFETCH(int, before);
    QFETCH(int, height);
    QFETCH(bool, visible);
    NoticeListWidget* window = m_fixture.openWindow(before);
    QVERIFY(window);
    H::removeNewestNotice(window);
    QCOMPARE(H::listHeight(window), height);
    QCOMPARE(window->isVisible(), visible);
    QCOMPARE(H::title(window), QStringLiteral("Activity notices (%1)").arg(before - 1));
    if (visible)
        QCOMPARE(window->height(), height + 90);
}

// The fifth notice: same size, but the title counts it and the hold starts again.
void TestNoticeWindowTiming::fifthNoticeChangesTitleAndHoldButNotSize()
{
    NoticeListWidget* window = m_fixture.openWindow(4);
    QVERIFY(window);
    VyrPauseableTimer* timer = H::closeTimer(window);
    QTRY_VERIFY(timer->remainingTime() < 14960);
    H::addActivityNotices(window, 1);
    QCOMPARE(H::listHeight(window), 308);
    QCOMPARE(window->height(), 398);
    QCOMPARE(H::title(window), QStringLiteral("Activity notices (5)"));
    QVERIFY(timer->remainingTime() > 14960);
}

// A change value other than 0 and 1 updates the title and re-applies the height.
void TestNoticeWindowTiming::otherChangeValuesOnlyReapplyHeight()
{
    NoticeListWidget* window = m_fixture.openWindow(2);
    QVERIFY(window);
    NoticeListModel::instance()->addContactorAddNotice();
    window->setFixedHeight(100);
    window->adjustListHeight(7);
    QCOMPARE(H::listHeight(window), 176);
    QCOMPARE(window->height(), 266);
    QCOMPARE(H::title(window), QStringLiteral("Activity notices (3)"));
}

// The top left corner stays where it is while the window grows or shrinks.
void TestNoticeWindowTiming::sizingNeverMovesTheWindow()
{
    NoticeListWidget* window = m_fixture.openWindow(1);
    QVERIFY(window);
    const QPoint pos = window->pos();
    H::addActivityNotices(window, 2);
    QCOMPARE(window->pos(), pos);
    H::removeNewestNotice(window);
    QCOMPARE(window->pos(), pos);
}

// Each call logs the category as a number, at info level, from the window's source.
void TestNoticeWindowTiming::adjustLogsCategoryAsNumber()
{
    NoticeListWidget* window = m_fixture.makeWindow(Lesson);
    LogCapture log;
    window->adjustListHeight(3);
    const auto lines = log.matching(QStringLiteral("adjust NoticeListWidget Height, noticeCategory: 1"));
    QCOMPARE(lines.size(), 1);
    QCOMPARE(lines.first().type, QtInfoMsg);
    QCOMPARE(lines.first().file, H::sourceFile());
    QVERIFY(lines.first().function.contains(QLatin1String("NoticeListWidget::adjustListHeight")));
}

// The edge picks which rectangle gives the width and which the height; the origin never counts.
void TestNoticeWindowTiming::cornerForEachTaskbarEdge_data()
{
    QTest::addColumn<int>("edge");
    QTest::addColumn<QRect>("geometry");
    QTest::addColumn<QRect>("available");
    QTest::addColumn<int>("offset");
    QTest::addColumn<QPoint>("expected");
    // Window: 424 wide, 88 + 90 = 178 high.
    QTest::newRow("left") << 0 << QRect(0, 0, 1000, 700) << QRect(60, 0, 940, 700) << 0 << QPoint(576, 522);
    QTest::newRow("top") << 1 << QRect(0, 0, 1000, 700) << QRect(0, 50, 1000, 650) << 0 << QPoint(576, 522);
    QTest::newRow("right") << 2 << QRect(0, 0, 1000, 700) << QRect(0, 0, 940, 700) << 0 << QPoint(516, 522);
    QTest::newRow("bottom") << 3 << QRect(0, 0, 1000, 700) << QRect(0, 0, 1000, 650) << 0 << QPoint(576, 472);
    QTest::newRow("bottom-offset") << 3 << QRect(0, 0, 1000, 700) << QRect(0, 0, 1000, 650) << 100
                                   << QPoint(576, 372);
    QTest::newRow("origin-ignored") << 3 << QRect(1920, 300, 1000, 700) << QRect(1920, 300, 1000, 650) << 0
                                    << QPoint(576, 472);
    QTest::newRow("left-origin-ignored") << 0 << QRect(500, 500, 1000, 700) << QRect(560, 500, 940, 700) << 0
                                         << QPoint(576, 522);
}

void TestNoticeWindowTiming::cornerForEachTaskbarEdge()
{
    QFETCH(int, edge);
    QFETCH(QRect, geometry);
    QFETCH(QRect, available);
    QFETCH(int, offset);
    QFETCH(QPoint, expected);
    ScreenCornerOverride::set({static_cast<TaskbarEdge>(edge), geometry, available});
    NoticeListWidget* window = m_fixture.makeWindow();
    H::addActivityNotices(window, 1);
    window->popNoticeListWidget(offset);
    QCOMPARE(window->pos(), expected);

    // The slide goes to the same corner.
    window->move(10, 10);
    window->adjustNoticeListWidgetPos(offset);
    QPropertyAnimation* slide = H::animation(window, "m_posAnimation");
    QVERIFY(slide);
    QCOMPARE(slide->endValue().toPoint(), expected);
    H::finish(slide);
    QCOMPARE(window->pos(), expected);
}

// An edge that is none of the four: the pop keeps the last positions, the slide goes to the null point.
void TestNoticeWindowTiming::unknownEdgeKeepsLastPopPositionAndMovesToNullPoint()
{
    NoticeListWidget* window = m_fixture.makeWindow();
    H::addActivityNotices(window, 1);
    window->popNoticeListWidget(0);
    const QPoint corner = window->pos();
    QCOMPARE(corner, QPoint(376, 382));
    ScreenCornerOverride::set({static_cast<TaskbarEdge>(7), QRect(0, 0, 1000, 700), QRect(0, 0, 1000, 700)});
    window->move(5, 5);
    window->popNoticeListWidget(0);
    QCOMPARE(window->pos(), corner);
    window->adjustNoticeListWidgetPos(0);
    QCOMPARE(H::animation(window, "m_posAnimation")->endValue().toPoint(), QPoint());
}

// Without a stand-in screen the primary screen and the derived edge place the window.
void TestNoticeWindowTiming::primaryScreenIsUsedWithoutOverride()
{
    ScreenCornerOverride::clear();
    const ScreenCorner::Screen screen = ScreenCorner::current();
    QCOMPARE(screen.geometry, QGuiApplication::primaryScreen()->geometry());
    QCOMPARE(screen.availableGeometry, QGuiApplication::primaryScreen()->availableGeometry());
    // The offscreen screen has no taskbar: the edge reads as bottom.
    QCOMPARE(screen.taskbarEdge, TaskbarEdge::Bottom);
    NoticeListWidget* window = m_fixture.makeWindow();
    H::addActivityNotices(window, 1);
    window->popNoticeListWidget(0);
    const QRect available = QGuiApplication::primaryScreen()->availableGeometry();
    QCOMPARE(window->pos(), QPoint(available.width() - 424, available.height() - 178));
}

// The fade-in runs 500 ms from 0 to 1, linear, and its object goes when it ends.
void TestNoticeWindowTiming::popFadesInOver500msAndDeletesItself()
{
    NoticeListWidget* window = m_fixture.makeWindow();
    H::addActivityNotices(window, 1);
    window->popNoticeListWidget(0);
    QVERIFY(window->isVisible());
    QPointer<QPropertyAnimation> fade = H::animation(window, "m_popAnimation");
    QVERIFY(fade);
    QCOMPARE(fade->propertyName(), QByteArray("windowOpacity"));
    QCOMPARE(fade->targetObject(), window);
    QCOMPARE(fade->duration(), 500);
    QCOMPARE(fade->startValue().toDouble(), 0.0);
    QCOMPARE(fade->endValue().toDouble(), 1.0);
    QCOMPARE(fade->easingCurve().type(), QEasingCurve::Linear);
    QCOMPARE(fade->state(), QAbstractAnimation::Running);
    H::finish(fade);
    QVERIFY(fade.isNull());
    QCOMPARE(window->windowOpacity(), 1.0);
    // Left alone it also ends by itself.
    window->popNoticeListWidget(0);
    fade = H::animation(window, "m_popAnimation");
    QTRY_VERIFY_WITH_TIMEOUT(fade.isNull(), 3000);
}

// stop() emits no finished(): a second pop restarts the same object, from 0, with its one connection.
void TestNoticeWindowTiming::secondPopRestartsSameAnimation()
{
    NoticeListWidget* window = m_fixture.makeWindow();
    H::addActivityNotices(window, 1);
    window->popNoticeListWidget(0);
    QPointer<QPropertyAnimation> fade = H::animation(window, "m_popAnimation");
    fade->setCurrentTime(300);
    QSignalSpy finished(fade.data(), &QAbstractAnimation::finished);
    window->popNoticeListWidget(0);
    QCOMPARE(finished.count(), 0);
    QCOMPARE(H::animation(window, "m_popAnimation"), fade.data());
    QCOMPARE(fade->currentTime(), 0);
    QCOMPARE(fade->state(), QAbstractAnimation::Running);
    QCOMPARE(window->findChildren<QPropertyAnimation*>().size(), 1);
    H::finish(fade);
    QVERIFY(fade.isNull());
    QVERIFY(window->findChildren<QPropertyAnimation*>().isEmpty());
}

// The slide starts where the window stands, also when it cuts off a slide under way.
void TestNoticeWindowTiming::moveSlidesFromWhereItStands()
{
    NoticeListWidget* window = m_fixture.openWindow(1);
    QVERIFY(window);
    window->move(100, 100);
    window->adjustNoticeListWidgetPos(0);
    QPointer<QPropertyAnimation> slide = H::animation(window, "m_posAnimation");
    QCOMPARE(slide->propertyName(), QByteArray("pos"));
    QCOMPARE(slide->duration(), 500);
    QCOMPARE(slide->startValue().toPoint(), QPoint(100, 100));
    QCOMPARE(slide->endValue().toPoint(), QPoint(376, 382));
    slide->setCurrentTime(250);
    const QPoint halfway = window->pos();
    QVERIFY(halfway != QPoint(100, 100));
    window->adjustNoticeListWidgetPos(50);
    QCOMPARE(H::animation(window, "m_posAnimation"), slide.data());
    QCOMPARE(slide->startValue().toPoint(), halfway);
    QCOMPARE(slide->endValue().toPoint(), QPoint(376, 332));
    H::finish(slide);
    QVERIFY(slide.isNull());
    QCOMPARE(window->pos(), QPoint(376, 332));
}

// The pop doesn't start the hold: that is adjustListHeight's.
void TestNoticeWindowTiming::popLeavesTimerAlone()
{
    NoticeListWidget* window = m_fixture.makeWindow();
    window->popNoticeListWidget(0);
    QVERIFY(!H::closeTimer(window)->isActive());
    QVERIFY(!H::closeTimer(window)->isPaused());
}

// Hidden --adjustListHeight(0)--> Hidden: flag cleared, 15 s single-shot hold started, list grown.
void TestNoticeWindowTiming::hiddenAdjustAdd()
{
    NoticeListWidget* window = m_fixture.makeWindow();
    // A drag while hidden sets the flag; the hidden window's adjust clears it.
    QMouseEvent press(QEvent::MouseButtonPress, QPoint(100, 30), QPoint(100, 30), Qt::LeftButton, Qt::LeftButton,
                      Qt::NoModifier);
    QMouseEvent move(QEvent::MouseMove, QPoint(160, 80), QPoint(160, 80), Qt::NoButton, Qt::LeftButton,
                     Qt::NoModifier);
    QCoreApplication::sendEvent(window, &press);
    QCoreApplication::sendEvent(window, &move);
    QVERIFY(window->isPosChanged());
    H::addActivityNotices(window, 1);
    QVERIFY(!window->isPosChanged());
    VyrPauseableTimer* timer = H::closeTimer(window);
    QVERIFY(timer->isActive());
    QVERIFY(timer->isSingleShot());
    QCOMPARE(timer->interval(), 15000);
    QCOMPARE(H::listHeight(window), 88);
    QVERIFY(!window->isVisible());
}

// Hidden --pop--> Open: in the corner, shown, fading in.
void TestNoticeWindowTiming::hiddenPop()
{
    NoticeListWidget* window = m_fixture.makeWindow();
    H::addActivityNotices(window, 1);
    window->popNoticeListWidget(0);
    QVERIFY(window->isVisible());
    QCOMPARE(window->pos(), QPoint(376, 382));
    QVERIFY(H::animation(window, "m_popAnimation"));
    QVERIFY(H::closeTimer(window)->isActive());
}

// Open --adjustListHeight(0)--> Open: the hold starts again at the full 15000 ms.
void TestNoticeWindowTiming::openAdjustAddRestartsFullHold()
{
    NoticeListWidget* window = m_fixture.openWindow(1);
    QVERIFY(window);
    VyrPauseableTimer* timer = H::closeTimer(window);
    QTRY_VERIFY(timer->remainingTime() < 14960);
    H::addActivityNotices(window, 1);
    QVERIFY(timer->remainingTime() > 14960);
    QCOMPARE(H::listHeight(window), 176);
}

// Open --onLessonNoticeUpdated--> Open: the hold starts again at the full 15000 ms.
void TestNoticeWindowTiming::openLessonUpdateRestartsFullHold()
{
    NoticeListWidget* window = m_fixture.openWindow(1);
    QVERIFY(window);
    VyrPauseableTimer* timer = H::closeTimer(window);
    QTRY_VERIFY(timer->remainingTime() < 14960);
    invoke(window, "onLessonNoticeUpdated");
    QVERIFY(timer->remainingTime() > 14960);
    QVERIFY(!timer->isPaused());
}

// Open --pointer enters--> Held: the hold is paused.
void TestNoticeWindowTiming::openPointerEntersHolds()
{
    NoticeListWidget* window = m_fixture.openWindow(1);
    QVERIFY(window);
    H::movePointer(H::pointOn(window));
    QTRY_VERIFY(H::closeTimer(window)->isPaused());
    QVERIFY(window->underMouse());
}

// Held --pointer leaves--> Open: the count goes on with what remained.
void TestNoticeWindowTiming::heldPointerLeavesResumesWithWhatRemained()
{
    NoticeListWidget* window = m_fixture.openWindow(1);
    QVERIFY(window);
    VyrPauseableTimer* timer = H::closeTimer(window);
    QTRY_VERIFY(timer->remainingTime() < 14960);
    H::movePointer(H::pointOn(window));
    QTRY_VERIFY(timer->isPaused());
    const int kept = timer->remainingTime();
    QVERIFY(kept < 14960);
    H::movePointer(H::pointOffWindows());
    QTRY_VERIFY(!timer->isPaused());
    QVERIFY(timer->isActive());
    // What remained, less only the moment since the leave: neither the full interval nor a shorter count.
    const int resumed = timer->remainingTime();
    QVERIFY2(resumed <= kept, qPrintable(QStringLiteral("%1 > %2").arg(resumed).arg(kept)));
    QVERIFY2(resumed >= kept - 200, qPrintable(QStringLiteral("%1 < %2 - 200").arg(resumed).arg(kept)));
    QVERIFY(resumed < 15000);
}

// Held --adjustListHeight(0)--> Held: the paused count is reset, not started; the full 15 s run after leaving.
void TestNoticeWindowTiming::heldAdjustAddResetsPausedCount()
{
    NoticeListWidget* window = m_fixture.openWindow(1);
    QVERIFY(window);
    VyrPauseableTimer* timer = H::closeTimer(window);
    QTRY_VERIFY(timer->remainingTime() < 14960);
    H::movePointer(H::pointOn(window));
    QTRY_VERIFY(timer->isPaused());
    H::addActivityNotices(window, 1);
    QVERIFY(timer->isPaused());
    QVERIFY(!timer->isActive());
    QCOMPARE(timer->remainingTime(), 15000);
    H::movePointer(H::pointOffWindows());
    QTRY_VERIFY(timer->isActive());
    QVERIFY(timer->remainingTime() > 14960);
}

// Held --onLessonNoticeUpdated--> Held: the paused count is reset, not started.
void TestNoticeWindowTiming::heldLessonUpdateResetsPausedCount()
{
    NoticeListWidget* window = m_fixture.openWindow(1);
    QVERIFY(window);
    VyrPauseableTimer* timer = H::closeTimer(window);
    QTRY_VERIFY(timer->remainingTime() < 14960);
    H::movePointer(H::pointOn(window));
    QTRY_VERIFY(timer->isPaused());
    invoke(window, "onLessonNoticeUpdated");
    QVERIFY(timer->isPaused());
    QCOMPARE(timer->remainingTime(), 15000);
}

// Open or Held --adjustListHeight(1) leaving 88 or more--> unchanged: title, shrink, timer untouched.
void TestNoticeWindowTiming::openOrHeldRemoveKeepingRows_data()
{
    addOpenAndHeldRows();
}

void TestNoticeWindowTiming::openOrHeldRemoveKeepingRows()
{
    QFETCH(bool, held);
    NoticeListWidget* window = m_fixture.openWindow(3);
    QVERIFY(window);
    VyrPauseableTimer* timer = H::closeTimer(window);
    QTRY_VERIFY(timer->remainingTime() < 14960);
    if (held) {
        H::movePointer(H::pointOn(window));
        QTRY_VERIFY(timer->isPaused());
    }
    H::removeNewestNotice(window);
    QCOMPARE(H::listHeight(window), 176);
    QCOMPARE(H::title(window), QStringLiteral("Activity notices (2)"));
    QVERIFY(window->isVisible());
    QCOMPARE(timer->isPaused(), held);
    QVERIFY(timer->remainingTime() < 14960);
    QCOMPARE(m_fixture.recorder()->joined(), QString());
}

// Open or Held --adjustListHeight(1) leaving less than 88--> Hidden: signal, log, flag cleared, timer stopped.
void TestNoticeWindowTiming::openOrHeldRemoveLastRowHides_data()
{
    addOpenAndHeldRows();
}

void TestNoticeWindowTiming::openOrHeldRemoveLastRowHides()
{
    QFETCH(bool, held);
    NoticeListWidget* window = m_fixture.openWindow(1);
    QVERIFY(window);
    if (held) {
        H::movePointer(H::pointOn(window));
        QTRY_VERIFY(H::closeTimer(window)->isPaused());
    }
    window->findChild<Movable*>()->signalPosChanged();
    LogCapture log;
    H::removeNewestNotice(window);
    QCOMPARE(m_fixture.recorder()->joined(), QStringLiteral("hidden(Activity,true)"));
    const auto lines = log.matching(QStringLiteral("hide NoticeListWidget, noticeCategory: 0 true"));
    QCOMPARE(lines.size(), 1);
    QCOMPARE(lines.first().type, QtInfoMsg);
    QCOMPARE(lines.first().file, H::sourceFile());
    QVERIFY(!window->isVisible());
    QVERIFY(!window->isPosChanged());
    QCOMPARE(H::listHeight(window), 0);
    QVERIFY(!H::closeTimer(window)->isActive());
    QVERIFY(!H::closeTimer(window)->isPaused());
}

// Open --timeout--> FadingOut: a 500 ms fade from 1 to 0.
void TestNoticeWindowTiming::openTimeoutStartsFadeOut()
{
    NoticeListWidget* window = m_fixture.openWindow(1);
    QVERIFY(window);
    QVERIFY(H::closeTimer(window)->expire());
    QPropertyAnimation* fade = H::animation(window, "m_opacityAnimation");
    QVERIFY(fade);
    QCOMPARE(fade->propertyName(), QByteArray("windowOpacity"));
    QCOMPARE(fade->duration(), 500);
    QCOMPARE(fade->startValue().toDouble(), 1.0);
    QCOMPARE(fade->endValue().toDouble(), 0.0);
    QCOMPARE(fade->state(), QAbstractAnimation::Running);
    QVERIFY(window->isVisible());
    QCOMPARE(m_fixture.recorder()->joined(), QString());
}

// FadingOut --end--> Hidden: hidden, signal, all notices of the category gone (no removal signal), nothing tracked.
void TestNoticeWindowTiming::fadingOutEndHidesAndDeletesCategory()
{
    NoticeListWidget* window = m_fixture.openWindow(2);
    QVERIFY(window);
    TestKit::addLessonNotice(1, LessonStart);
    window->findChild<Movable*>()->signalPosChanged();
    int removals = 0;
    connect(NoticeListModel::instance(), &NoticeListModel::removeNoticeListItem, this, [&removals]() { ++removals; });
    VyrTrack::instance()->clearEvents();
    H::closeTimer(window)->expire();
    QPointer<QPropertyAnimation> fade = H::animation(window, "m_opacityAnimation");
    H::finish(fade);
    QVERIFY(fade.isNull());
    QVERIFY(!window->isVisible());
    QCOMPARE(m_fixture.recorder()->joined(), QStringLiteral("hidden(Activity,true)"));
    QVERIFY(!window->isPosChanged());
    QCOMPARE(H::listHeight(window), 0);
    QCOMPARE(NoticeListModel::instance()->getNoticeItemNum(Activity), 0);
    QCOMPARE(NoticeListModel::instance()->getNoticeItemNum(Lesson), 1);
    QCOMPARE(removals, 0);
    QVERIFY(VyrTrack::instance()->events().isEmpty());
}

// Open, Held, FadingOut --close button--> Hidden at once.
void TestNoticeWindowTiming::closeButtonHidesFromEachVisibleState_data()
{
    QTest::addColumn<QString>("state");
    QTest::newRow("open") << QStringLiteral("open");
    QTest::newRow("held") << QStringLiteral("held");
    QTest::newRow("fadingOut") << QStringLiteral("fadingOut");
}

void TestNoticeWindowTiming::closeButtonHidesFromEachVisibleState()
{
    QFETCH(QString, state);
    NoticeListWidget* window = m_fixture.openWindow(2);
    QVERIFY(window);
    if (state == QLatin1String("held")) {
        H::movePointer(H::pointOn(window));
        QTRY_VERIFY(H::closeTimer(window)->isPaused());
    } else if (state == QLatin1String("fadingOut")) {
        H::closeTimer(window)->expire();
    }
    window->findChild<QToolButton*>()->click();
    QVERIFY(!window->isVisible());
    QCOMPARE(H::listHeight(window), 0);
    QVERIFY(!H::closeTimer(window)->isActive());
    QCOMPARE(m_fixture.recorder()->joined(), QStringLiteral("hidden(Activity,false)"));
    QCOMPARE(NoticeListModel::instance()->getNoticeItemNum(Activity), 0);
}

// The removal hides after telling the host, so the signal still finds the window shown; the fade's end
// and the close button hide first. Both of those tell the host before the category's notices go.
void TestNoticeWindowTiming::hiddenSignalAgainstTheHideOnEachPath_data()
{
    QTest::addColumn<QString>("path");
    QTest::addColumn<QString>("seen");
    QTest::newRow("removal") << QStringLiteral("removal") << QStringLiteral("visible=1 rows=0 timer=1");
    QTest::newRow("fadeEnd") << QStringLiteral("fadeEnd") << QStringLiteral("visible=0 rows=2 timer=0");
    QTest::newRow("close") << QStringLiteral("close") << QStringLiteral("visible=0 rows=2 timer=1");
}

void TestNoticeWindowTiming::hiddenSignalAgainstTheHideOnEachPath()
{
    QFETCH(QString, path);
    QFETCH(QString, seen);
    NoticeListWidget* window = m_fixture.openWindow(path == QLatin1String("removal") ? 1 : 2);
    QVERIFY(window);
    QStringList atSignal;
    QObject context;
    connect(window, &NoticeListWidget::noticeWidgetHidden, &context, [&atSignal, window](NoticeCategory, bool) {
        atSignal << QStringLiteral("visible=%1 rows=%2 timer=%3")
                        .arg(window->isVisible())
                        .arg(NoticeListModel::instance()->getNoticeItemNum(Activity))
                        .arg(H::closeTimer(window)->isActive());
    });
    if (path == QLatin1String("removal")) {
        H::removeNewestNotice(window);
    } else if (path == QLatin1String("fadeEnd")) {
        QVERIFY(H::closeTimer(window)->expire());
        H::finish(H::animation(window, "m_opacityAnimation"));
    } else {
        window->findChild<QToolButton*>()->click();
    }
    QCOMPARE(atSignal, QStringList{seen});
    QVERIFY(!window->isVisible());
    QCOMPARE(H::listHeight(window), 0);
    QVERIFY(!H::closeTimer(window)->isActive());
    QCOMPARE(NoticeListModel::instance()->getNoticeItemNum(Activity), 0);
}

// The pointer coming on during the fade-out pauses nothing: the timer has already fired.
void TestNoticeWindowTiming::pointerDuringFadeOutDoesNotStopIt()
{
    NoticeListWidget* window = m_fixture.openWindow(1);
    QVERIFY(window);
    H::closeTimer(window)->expire();
    QPropertyAnimation* fade = H::animation(window, "m_opacityAnimation");
    H::movePointer(H::pointOn(window));
    QTRY_VERIFY(window->underMouse());
    QCOMPARE(fade->state(), QAbstractAnimation::Running);
    QVERIFY(!H::closeTimer(window)->isPaused());
    QTRY_VERIFY_WITH_TIMEOUT(!window->isVisible(), 3000);
    QCOMPARE(m_fixture.recorder()->joined(), QStringLiteral("hidden(Activity,false)"));
}

// A notice added during the fade-out is lost with the others: the fade goes on and its end takes them all.
void TestNoticeWindowTiming::noticeAddedDuringFadeOutIsLost()
{
    NoticeListWidget* window = m_fixture.makeWindow();
    new HostWiring(window, Activity);
    NoticeListModel::instance()->addContactorAddNotice();
    QVERIFY(QTest::qWaitForWindowExposed(window));
    H::finish(H::animation(window, "m_popAnimation"));
    H::closeTimer(window)->expire();
    QPointer<QPropertyAnimation> fadeOut = H::animation(window, "m_opacityAnimation");
    // The host sizes and slides the visible window; the fade is not cancelled.
    NoticeListModel::instance()->addContactorAddNotice();
    QCOMPARE(H::title(window), QStringLiteral("Activity notices (2)"));
    QCOMPARE(fadeOut->state(), QAbstractAnimation::Running);
    H::finish(fadeOut);
    QVERIFY(fadeOut.isNull());
    QVERIFY(!window->isVisible());
    QCOMPARE(NoticeListModel::instance()->getNoticeItemNum(Activity), 0);
    QCOMPARE(H::listHeight(window), 0);
    QCOMPARE(m_fixture.recorder()->joined(), QStringLiteral("hidden(Activity,false)"));
}

// A pop during the fade-out starts a fade-in on the same property; Qt lets only one animation drive a
// property, so the fade-in takes over and the fade-out stops without ending. The window stays up with its
// rows, and the next notice's hold brings the fade-out back, which then hides and empties it.
void TestNoticeWindowTiming::popDuringFadeOutTakesOverOpacity()
{
    NoticeListWidget* window = m_fixture.openWindow(1);
    QVERIFY(window);
    H::closeTimer(window)->expire();
    QPointer<QPropertyAnimation> fadeOut = H::animation(window, "m_opacityAnimation");
    fadeOut->setCurrentTime(200);
    window->popNoticeListWidget(0);
    QPointer<QPropertyAnimation> fadeIn = H::animation(window, "m_popAnimation");
    QCOMPARE(fadeIn->state(), QAbstractAnimation::Running);
    QCOMPARE(fadeOut->state(), QAbstractAnimation::Stopped);
    H::finish(fadeIn);
    QVERIFY(window->isVisible());
    QCOMPARE(window->windowOpacity(), 1.0);
    QCOMPARE(m_fixture.recorder()->joined(), QString());
    QCOMPARE(NoticeListModel::instance()->getNoticeItemNum(Activity), 1);
    // The kept animation object is reused by the next fade-out.
    QCOMPARE(window->findChildren<QPropertyAnimation*>().size(), 1);
    H::addActivityNotices(window, 1);
    H::closeTimer(window)->expire();
    QCOMPARE(H::animation(window, "m_opacityAnimation"), fadeOut.data());
    H::finish(fadeOut);
    QVERIFY(!window->isVisible());
    QCOMPARE(NoticeListModel::instance()->getNoticeItemNum(Activity), 0);
    QVERIFY(window->findChildren<QPropertyAnimation*>().isEmpty());
}

// Close during the fade-out hides at once; the fade's end emits noticeWidgetHidden again, with false.
void TestNoticeWindowTiming::closeDuringFadeOutEmitsHiddenTwice()
{
    NoticeListWidget* window = m_fixture.openWindow(1);
    QVERIFY(window);
    window->findChild<Movable*>()->signalPosChanged();
    H::closeTimer(window)->expire();
    QPointer<QPropertyAnimation> fade = H::animation(window, "m_opacityAnimation");
    window->findChild<QToolButton*>()->click();
    QVERIFY(!window->isVisible());
    QCOMPARE(m_fixture.recorder()->joined(), QStringLiteral("hidden(Activity,true)"));
    H::finish(fade);
    QVERIFY(fade.isNull());
    QCOMPARE(m_fixture.recorder()->joined(), QStringLiteral("hidden(Activity,true) hidden(Activity,false)"));
    QVERIFY(!window->isVisible());
    QCOMPARE(H::listHeight(window), 0);
}

// With the pointer on the window, auto-adjust is put off; leaving makes one move, at offset 0.
void TestNoticeWindowTiming::putOffMoveRunsOnLeaveWithOffsetZeroOnce()
{
    NoticeListWidget* window = m_fixture.makeWindow();
    H::addActivityNotices(window, 1);
    window->popNoticeListWidget(100);
    QVERIFY(QTest::qWaitForWindowExposed(window));
    QCOMPARE(window->pos(), QPoint(376, 282));
    H::movePointer(H::pointOn(window));
    QTRY_VERIFY(H::closeTimer(window)->isPaused());
    H::addActivityNotices(window, 1);
    window->autoAdjustNoticeListWidgetPos();
    window->autoAdjustNoticeListWidgetPos();
    window->autoAdjustNoticeListWidgetPos();
    QVERIFY(!H::animation(window, "m_posAnimation"));
    QCOMPARE(window->pos(), QPoint(376, 282));

    // Every place the window stands from here on.
    QList<QPoint> passedThrough;
    MoveRecorder moves(window, &passedThrough);
    H::movePointer(H::pointOffWindows());
    QTRY_VERIFY(!H::closeTimer(window)->isPaused());
    QPointer<QPropertyAnimation> slide = H::animation(window, "m_posAnimation");
    QVERIFY(slide);
    // Offset 0, whatever offset the window stood at; one slide from where it stood.
    QCOMPARE(slide->startValue().toPoint(), QPoint(376, 282));
    QCOMPARE(slide->endValue().toPoint(), QPoint(376, 560 - 266));
    QCOMPARE(slide->currentTime(), 0);
    QVERIFY(passedThrough.isEmpty());
    for (int ms = 100; ms <= 500; ms += 100)
        slide->setCurrentTime(ms);
    QVERIFY(slide.isNull());
    // One straight way down to the corner, a step for each tick and never back.
    QCOMPARE(passedThrough.size(), 5);
    for (int i = 0; i < passedThrough.size(); ++i) {
        QCOMPARE(passedThrough[i].x(), 376);
        QVERIFY(passedThrough[i].y() > (i == 0 ? 282 : passedThrough[i - 1].y()));
    }
    QCOMPARE(passedThrough.last(), QPoint(376, 294));
    QCOMPARE(window->pos(), QPoint(376, 294));
    QTest::qWait(20);
    QCOMPARE(passedThrough.size(), 5);
    // A second leave finds nothing put off.
    H::movePointer(H::pointOn(window));
    QTRY_VERIFY(H::closeTimer(window)->isPaused());
    H::movePointer(H::pointOffWindows());
    QTRY_VERIFY(!H::closeTimer(window)->isPaused());
    QVERIFY(!H::animation(window, "m_posAnimation"));
}

// Several auto-adjusts with the pointer on the window start no move at all; the leave starts exactly one.
// A slide left paused beforehand keeps the animation object, so every start of a move shows on it.
void TestNoticeWindowTiming::severalPutOffCallsStartOneMove()
{
    NoticeListWidget* window = m_fixture.openWindow(1);
    QVERIFY(window);
    window->adjustNoticeListWidgetPos(0);
    QPointer<QPropertyAnimation> slide = H::animation(window, "m_posAnimation");
    QVERIFY(slide);
    slide->pause();
    QStringList starts;
    QObject context;
    connect(slide.data(), &QAbstractAnimation::stateChanged, &context,
            [&starts, &slide](QAbstractAnimation::State state) {
                if (state != QAbstractAnimation::Running)
                    return;
                const QPoint to = slide->endValue().toPoint();
                starts << QStringLiteral("to(%1,%2)").arg(to.x()).arg(to.y());
            });
    H::movePointer(H::pointOn(window));
    QTRY_VERIFY(H::closeTimer(window)->isPaused());
    H::addActivityNotices(window, 2);
    for (int i = 0; i < 3; ++i)
        window->autoAdjustNoticeListWidgetPos();
    QCOMPARE(starts, QStringList());
    QCOMPARE(slide->state(), QAbstractAnimation::Paused);
    QCOMPARE(window->pos(), QPoint(376, 382));

    H::movePointer(H::pointOffWindows());
    QTRY_VERIFY(!H::closeTimer(window)->isPaused());
    // Three rows: 264 + 90 high, so the corner is at 560 - 354.
    QCOMPARE(starts, QStringList{QStringLiteral("to(376,206)")});
    QCOMPARE(H::animation(window, "m_posAnimation"), slide.data());
    QCOMPARE(slide->state(), QAbstractAnimation::Running);
    QCOMPARE(slide->startValue().toPoint(), QPoint(376, 382));
    H::finish(slide);
    QVERIFY(slide.isNull());
    QCOMPARE(window->pos(), QPoint(376, 206));
    QCOMPARE(starts.size(), 1);
}

// The put-off flag is cleared only by leaveEvent: it outlives a hide and runs at the next leave.
void TestNoticeWindowTiming::needAdjustPosSurvivesHide()
{
    NoticeListWidget* window = m_fixture.openWindow(1);
    QVERIFY(window);
    H::movePointer(H::pointOn(window));
    QTRY_VERIFY(H::closeTimer(window)->isPaused());
    window->autoAdjustNoticeListWidgetPos();
    window->findChild<QToolButton*>()->click();
    QVERIFY(!window->isVisible());
    QVERIFY(!H::animation(window, "m_posAnimation"));

    H::addActivityNotices(window, 1);
    window->popNoticeListWidget(120);
    QCOMPARE(window->pos(), QPoint(376, 262));
    QVERIFY(!H::animation(window, "m_posAnimation"));
    // The pointer, still where it was, now leaves the shown window.
    H::movePointer(H::pointOffWindows());
    QTRY_VERIFY(H::animation(window, "m_posAnimation"));
    QCOMPARE(H::animation(window, "m_posAnimation")->endValue().toPoint(), QPoint(376, 382));
}

// The pointer test takes all four bounds inclusive: x = left + width still counts as on the window.
void TestNoticeWindowTiming::cursorTestIncludesFarEdges_data()
{
    QTest::addColumn<QPoint>("offset");
    QTest::addColumn<bool>("putOff");
    QTest::newRow("top-left") << QPoint(0, 0) << true;
    QTest::newRow("right-edge-plus-one") << QPoint(424, 10) << true;
    QTest::newRow("bottom-edge-plus-one") << QPoint(10, 178) << true;
    QTest::newRow("far-corner") << QPoint(424, 178) << true;
    QTest::newRow("beyond-right") << QPoint(425, 10) << false;
    QTest::newRow("beyond-bottom") << QPoint(10, 179) << false;
    QTest::newRow("left-of") << QPoint(-1, 10) << false;
}

void TestNoticeWindowTiming::cursorTestIncludesFarEdges()
{
    QFETCH(QPoint, offset);
    QFETCH(bool, putOff);
    NoticeListWidget* window = m_fixture.openWindow(1);
    QVERIFY(window);
    const QPoint origin = window->mapToGlobal(QPoint(0, 0));
    QCursor::setPos(origin + offset);
    window->autoAdjustNoticeListWidgetPos();
    QCOMPARE(H::animation(window, "m_posAnimation") == nullptr, putOff);
}

// Dragging the title strip moves the window and sets the flag; it is sent with the hide and then cleared.
void TestNoticeWindowTiming::dragByTitleSetsFlagUntilHidden()
{
    NoticeListWidget* window = m_fixture.openWindow(1);
    QVERIFY(window);
    auto* movable = window->findChild<Movable*>();
    QVERIFY(movable);
    QCOMPARE(movable->moveTriggerArea(), 62);
    const QPoint start = window->pos();
    const QPoint grip(200, 61);
    QTest::mousePress(window, Qt::LeftButton, Qt::NoModifier, grip);
    QMouseEvent move(QEvent::MouseMove, grip + QPoint(-50, -30), window->mapToGlobal(grip) + QPoint(-50, -30),
                     Qt::NoButton, Qt::LeftButton, Qt::NoModifier);
    QCoreApplication::sendEvent(window, &move);
    QTest::mouseRelease(window, Qt::LeftButton, Qt::NoModifier, grip + QPoint(-50, -30));
    QCOMPARE(window->pos(), start + QPoint(-50, -30));
    QVERIFY(window->isPosChanged());
    // The window's own moves don't look at the flag.
    window->adjustNoticeListWidgetPos(0);
    H::finish(H::animation(window, "m_posAnimation"));
    QCOMPARE(window->pos(), start);
    QVERIFY(window->isPosChanged());
    H::removeNewestNotice(window);
    QCOMPARE(m_fixture.recorder()->joined(), QStringLiteral("hidden(Activity,true)"));
    QVERIFY(!window->isPosChanged());
}

// A press below the 62-pixel strip (on the list) starts no drag.
void TestNoticeWindowTiming::dragBelowTitleStripDoesNothing()
{
    NoticeListWidget* window = m_fixture.openWindow(1);
    QVERIFY(window);
    const QPoint start = window->pos();
    const QPoint grip(200, 62);
    QMouseEvent press(QEvent::MouseButtonPress, grip, window->mapToGlobal(grip), Qt::LeftButton, Qt::LeftButton,
                      Qt::NoModifier);
    QCoreApplication::sendEvent(window, &press);
    QMouseEvent move(QEvent::MouseMove, grip + QPoint(-50, -30), window->mapToGlobal(grip) + QPoint(-50, -30),
                     Qt::NoButton, Qt::LeftButton, Qt::NoModifier);
    QCoreApplication::sendEvent(window, &move);
    QCOMPARE(window->pos(), start);
    QVERIFY(!window->isPosChanged());
}

// updatePopupTime and popupTime only store and load.
void TestNoticeWindowTiming::popupTimeIsPlainStore()
{
    NoticeListWidget* window = m_fixture.makeWindow();
    window->updatePopupTime(Q_UINT64_C(18446744073709551615));
    QCOMPARE(window->popupTime(), Q_UINT64_C(18446744073709551615));
    window->updatePopupTime(42);
    QCOMPARE(window->popupTime(), quint64(42));
    QVERIFY(!window->isVisible());
}

// Pops, moves, adds, removes, timeouts, fade ends and closes in any order: no crash, no stray animation,
// and after every hide (a close, a fade's end, a removal of the last row) the window is hidden and counts
// itself empty.
void TestNoticeWindowTiming::anyOrderOfOperationsStaysConsistent()
{
    NoticeListWidget* window = m_fixture.makeWindow();
    new HostWiring(window, Activity);
    int hides = 0;
    QObject context;
    connect(window, &NoticeListWidget::noticeWidgetHidden, &context, [&hides]() { ++hides; });
    int closes = 0;
    int fadeEnds = 0;
    int removalHides = 0;
    QRandomGenerator random(20240607);
    for (int step = 0; step < 600; ++step) {
        const int op = int(random.bounded(9));
        const int hidesBefore = hides;
        const QPointer<QPropertyAnimation> fade = H::animation(window, "m_opacityAnimation");
        const bool fading = !fade.isNull();
        switch (op) {
        case 0: NoticeListModel::instance()->addContactorAddNotice(); break;
        case 1:
            if (NoticeListModel::instance()->rowCount() > 0)
                NoticeListModel::instance()->delNotice(NoticeListModel::instance()->index(0));
            break;
        case 2: window->popNoticeListWidget(int(random.bounded(200))); break;
        case 3: window->adjustNoticeListWidgetPos(int(random.bounded(200))); break;
        case 4: window->autoAdjustNoticeListWidgetPos(); break;
        case 5: H::closeTimer(window)->expire(); break;
        case 6:
            for (const char* name : {"m_popAnimation", "m_posAnimation", "m_opacityAnimation"}) {
                if (random.bounded(2))
                    H::finish(H::animation(window, name));
            }
            break;
        case 7: window->findChild<QToolButton*>()->click(); break;
        case 8: window->adjustListHeight(int(random.bounded(3))); break;
        }
        QVERIFY(window->findChildren<QPropertyAnimation*>().size() <= 3);
        for (const char* name : {"m_popAnimation", "m_posAnimation", "m_opacityAnimation"}) {
            QVERIFY(window->findChildren<QPropertyAnimation*>(QLatin1String(name)).size() <= 1);
        }
        const bool closed = op == 7;
        const bool fadeEnded = fading && fade.isNull();
        const bool removedLast = (op == 1 || op == 8) && hides > hidesBefore;
        if (closed || fadeEnded || removedLast) {
            const QString where = QStringLiteral("step %1, op %2").arg(step).arg(op);
            QVERIFY2(hides > hidesBefore, qPrintable(where));
            QVERIFY2(!window->isVisible(), qPrintable(where));
            const int height = H::listHeight(window);
            QVERIFY2(height == 0, qPrintable(where + QStringLiteral(", height %1").arg(height)));
        }
        closes += closed ? 1 : 0;
        fadeEnds += fadeEnded ? 1 : 0;
        removalHides += removedLast ? 1 : 0;
    }
    // The sequence goes down every hide path, several times.
    QVERIFY2(closes > 3, qPrintable(QString::number(closes)));
    QVERIFY2(fadeEnds > 3, qPrintable(QString::number(fadeEnds)));
    QVERIFY2(removalHides > 3, qPrintable(QString::number(removalHides)));
    // Ending everything that runs leaves no animation object behind.
    for (const char* name : {"m_popAnimation", "m_posAnimation", "m_opacityAnimation"})
        H::finish(H::animation(window, name));
    QVERIFY(window->findChildren<QPropertyAnimation*>().isEmpty());
    // A fade that ends always leaves the window hidden and empty.
    NoticeListModel::instance()->addContactorAddNotice();
    H::closeTimer(window)->expire();
    H::finish(H::animation(window, "m_opacityAnimation"));
    QVERIFY(!window->isVisible());
    QCOMPARE(H::listHeight(window), 0);
}

QTEST_MAIN(TestNoticeWindowTiming)
#include "tst_noticewindowtiming.moc"
