#include "GlobalStyle.h"
#include "Movable.h"
#include "VyrListView.h"
#include "VyrPauseableTimer.h"

#include <QScrollBar>
#include <QToolButton>
#include <QtTest>

// The kit's pauseable timer, drag helper, list view and theme styles.
class TestKitWidgets : public QObject
{
    Q_OBJECT
private slots:
    void timerStartsFullInterval();
    void timerPauseKeepsRemainderAndResumeGoesOn();
    void pausedTimerDoesNotFireWhileTimePasses();
    void timerResetElapsedWhilePausedGivesFullInterval();
    void timerStopEndsCountAndPausedState();
    void timerPauseOrResumeWhenIdleDoesNothing();
    void timerTimesOutForReal();
    void timerRepeatsWhenNotSingleShot();
    void movableDragsByTriggerStripOnly_data();
    void movableDragsByTriggerStripOnly();
    void movableWholeAndNoneTypes();
    void listViewHasNoFrame();
    void closeGrayStyleChangesTheLook();
    void unknownStyleIsRecordedOnly();
    void fontSizeAndWeight();
};

// start() runs the whole interval, also when the timer runs already.
void TestKitWidgets::timerStartsFullInterval()
{
    VyrPauseableTimer timer;
    timer.setSingleShot(true);
    timer.setInterval(5000);
    QCOMPARE(timer.remainingTime(), -1);
    timer.start();
    QVERIFY(timer.isActive());
    QTRY_VERIFY(timer.remainingTime() < 4980);
    timer.start();
    QVERIFY(timer.remainingTime() > 4980);
}

// pause() freezes what remains; resume() goes on from there.
void TestKitWidgets::timerPauseKeepsRemainderAndResumeGoesOn()
{
    VyrPauseableTimer timer;
    timer.setSingleShot(true);
    timer.setInterval(5000);
    QSignalSpy paused(&timer, &VyrPauseableTimer::paused);
    timer.start();
    QTRY_VERIFY(timer.remainingTime() < 4980);
    timer.pause();
    QVERIFY(timer.isPaused());
    QVERIFY(!timer.isActive());
    QCOMPARE(paused.count(), 1);
    const int kept = timer.remainingTime();
    // Frozen: no count runs while paused.
    QTRY_VERIFY(timer.remainingTime() == kept && !timer.isActive());
    timer.resume();
    QVERIFY(!timer.isPaused());
    QVERIFY(timer.isActive());
    QVERIFY(timer.remainingTime() <= kept);
    QVERIFY(timer.remainingTime() > kept - 20);
}

// A paused count really stands still: three times what remained passes without a timeout, and after
// resume() the count runs out with what it kept.
void TestKitWidgets::pausedTimerDoesNotFireWhileTimePasses()
{
    VyrPauseableTimer timer;
    timer.setSingleShot(true);
    timer.setInterval(50);
    QSignalSpy timeout(&timer, &VyrPauseableTimer::timeout);
    timer.start();
    timer.pause();
    QVERIFY(timer.isPaused());
    const int kept = timer.remainingTime();
    QVERIFY(kept > 40 && kept <= 50);
    QElapsedTimer clock;
    clock.start();
    QTest::qWait(150);
    QVERIFY(clock.elapsed() >= 150);
    QCOMPARE(timeout.count(), 0);
    QVERIFY(timer.isPaused());
    QVERIFY(!timer.isActive());
    QCOMPARE(timer.remainingTime(), kept);

    qint64 firedAfter = -1;
    connect(&timer, &VyrPauseableTimer::timeout, &timer, [&firedAfter, &clock]() { firedAfter = clock.elapsed(); });
    clock.restart();
    timer.resume();
    QVERIFY(timer.isActive());
    QVERIFY(timer.remainingTime() > kept - 20);
    QTRY_COMPARE_WITH_TIMEOUT(timeout.count(), 1, 2000);
    // Not before what was kept has run.
    QVERIFY2(firedAfter >= kept - 5, qPrintable(QStringLiteral("%1 ms").arg(firedAfter)));
    QVERIFY(!timer.isActive());
}

// resetElapsedTime() while paused: resume runs the full interval.
void TestKitWidgets::timerResetElapsedWhilePausedGivesFullInterval()
{
    VyrPauseableTimer timer;
    timer.setInterval(5000);
    timer.start();
    QTRY_VERIFY(timer.remainingTime() < 4980);
    timer.pause();
    timer.resetElapsedTime();
    QVERIFY(timer.isPaused());
    QCOMPARE(timer.remainingTime(), 5000);
    timer.resume();
    QVERIFY(timer.remainingTime() > 4980);
}

// stop() ends the count and leaves the paused state; no timeout follows.
void TestKitWidgets::timerStopEndsCountAndPausedState()
{
    VyrPauseableTimer timer;
    timer.setSingleShot(true);
    timer.setInterval(20);
    QSignalSpy timeout(&timer, &VyrPauseableTimer::timeout);
    timer.start();
    timer.pause();
    timer.stop();
    QVERIFY(!timer.isPaused());
    QVERIFY(!timer.isActive());
    timer.resume();
    QVERIFY(!timer.isActive());
    QVERIFY(!timer.expire());
    QCOMPARE(timeout.count(), 0);
}

// Pausing an idle timer or resuming one that isn't paused does nothing.
void TestKitWidgets::timerPauseOrResumeWhenIdleDoesNothing()
{
    VyrPauseableTimer timer;
    timer.setInterval(1000);
    timer.pause();
    QVERIFY(!timer.isPaused());
    timer.resume();
    QVERIFY(!timer.isActive());
    timer.start();
    timer.resume();
    QVERIFY(timer.isActive());
    QVERIFY(!timer.isPaused());
}

// A short single-shot count really times out, once.
void TestKitWidgets::timerTimesOutForReal()
{
    VyrPauseableTimer timer;
    timer.setSingleShot(true);
    timer.setInterval(30);
    QSignalSpy timeout(&timer, &VyrPauseableTimer::timeout);
    timer.start();
    QTRY_COMPARE(timeout.count(), 1);
    // Single shot: nothing left to run.
    QVERIFY(!timer.isActive());
    QCOMPARE(timer.remainingTime(), -1);
    // expire() on a running count fires it at once.
    timer.start();
    QVERIFY(timer.expire());
    QCOMPARE(timeout.count(), 2);
    QVERIFY(!timer.isActive());
}

// Without single shot the count starts again after each timeout.
void TestKitWidgets::timerRepeatsWhenNotSingleShot()
{
    VyrPauseableTimer timer;
    timer.setInterval(10);
    QSignalSpy timeout(&timer, &VyrPauseableTimer::timeout);
    timer.start();
    QTRY_VERIFY(timeout.count() >= 3);
    QVERIFY(timer.isActive());
    timer.stop();
}

// Move type 2 drags only from the top strip; the signal reports each move.
void TestKitWidgets::movableDragsByTriggerStripOnly_data()
{
    QTest::addColumn<int>("pressY");
    QTest::addColumn<bool>("moves");
    QTest::newRow("top") << 0 << true;
    QTest::newRow("inside") << 30 << true;
    QTest::newRow("last-pixel") << 61 << true;
    QTest::newRow("below") << 62 << false;
}

void TestKitWidgets::movableDragsByTriggerStripOnly()
{
    QFETCH(int, pressY);
    QFETCH(bool, moves);
    QWidget target;
    target.resize(200, 200);
    target.move(100, 100);
    auto* movable = new Movable(&target, Movable::MoveByTopArea);
    QCOMPARE(movable->parent(), &target);
    movable->setMoveTriggerArea(62);
    QSignalSpy changed(movable, &Movable::signalPosChanged);
    const QPoint grip(50, pressY);
    QTest::mousePress(&target, Qt::LeftButton, Qt::NoModifier, grip);
    QMouseEvent move(QEvent::MouseMove, grip + QPoint(30, 40), target.mapToGlobal(grip) + QPoint(30, 40),
                     Qt::NoButton, Qt::LeftButton, Qt::NoModifier);
    QCoreApplication::sendEvent(&target, &move);
    QCOMPARE(movable->isDragging(), moves);
    QTest::mouseRelease(&target, Qt::LeftButton, Qt::NoModifier, grip);
    QVERIFY(!movable->isDragging());
    QCOMPARE(target.pos(), moves ? QPoint(130, 140) : QPoint(100, 100));
    QCOMPARE(changed.count(), moves ? 1 : 0);
}

// Type 0 drags from anywhere, type 1 never.
void TestKitWidgets::movableWholeAndNoneTypes()
{
    for (Movable::MoveType type : {Movable::MoveWhole, Movable::MoveNone}) {
        QWidget target;
        target.move(0, 0);
        target.resize(100, 100);
        new Movable(&target, type);
        const QPoint grip(50, 90);
        QTest::mousePress(&target, Qt::LeftButton, Qt::NoModifier, grip);
        QMouseEvent move(QEvent::MouseMove, grip + QPoint(20, 0), target.mapToGlobal(grip) + QPoint(20, 0),
                         Qt::NoButton, Qt::LeftButton, Qt::NoModifier);
        QCoreApplication::sendEvent(&target, &move);
        QCOMPARE(target.pos(), type == Movable::MoveWhole ? QPoint(20, 0) : QPoint(0, 0));
    }
}

// The client's list view: frameless with a slim scroll bar.
void TestKitWidgets::listViewHasNoFrame()
{
    VyrListView view;
    QCOMPARE(view.frameShape(), QFrame::NoFrame);
    QVERIFY(view.verticalScrollBar()->styleSheet().contains(QLatin1String("width: 6px")));
}

// "QToolButton_CloseGrayBg" gives a round grey background and a painted cross.
void TestKitWidgets::closeGrayStyleChangesTheLook()
{
    QWidget host;
    host.setStyleSheet(QStringLiteral("background: white;"));
    auto* plain = new QToolButton(&host);
    auto* styled = new QToolButton(&host);
    for (QToolButton* button : {plain, styled})
        button->setFixedSize(18, 18);
    GlobalStyle::getInstance()->applyCurrentStyle(styled, QStringLiteral("QToolButton_CloseGrayBg"), true);
    QCOMPARE(styled->property("GlobalStyle").toString(), QStringLiteral("QToolButton_CloseGrayBg"));
    QVERIFY(!styled->icon().isNull());
    QCOMPARE(styled->iconSize(), QSize(8, 8));
    const QImage image = styled->grab().toImage();
    // Grey background near the edge of the circle, darker cross in the middle.
    const QColor edge = image.pixelColor(3, 9);
    QVERIFY(edge.alpha() == 255 && edge.red() < 250 && edge.red() > 200);
    const QColor centre = image.pixelColor(9, 9);
    QVERIFY2(centre.red() < edge.red(), qPrintable(centre.name()));
    // Corners stay outside the circle.
    const QImage plainImage = plain->grab().toImage();
    QVERIFY(plainImage != image);
}

// An unknown name is recorded but leaves the look alone.
void TestKitWidgets::unknownStyleIsRecordedOnly()
{
    QToolButton button;
    button.setStyleSheet(QStringLiteral("QToolButton { color: red; }"));
    GlobalStyle::getInstance()->applyCurrentStyle(&button, QStringLiteral("NoSuchStyle"), false);
    QCOMPARE(button.property("GlobalStyle").toString(), QStringLiteral("NoSuchStyle"));
    QCOMPARE(button.styleSheet(), QStringLiteral("QToolButton { color: red; }"));
    QVERIFY(GlobalStyle::getInstance()->styleNames().contains(QStringLiteral("QToolButton_CloseGrayBg")));
}

// applyCurrentFontSize: the application font at that pixel size and weight.
void TestKitWidgets::fontSizeAndWeight()
{
    QWidget widget;
    GlobalStyle::getInstance()->applyCurrentFontSize(&widget, 13, QFont::Medium);
    QCOMPARE(widget.font().pixelSize(), 13);
    QCOMPARE(widget.font().weight(), int(QFont::Medium));
    QCOMPARE(widget.font().family(), QApplication::font().family());
}

QTEST_MAIN(TestKitWidgets)
#include "tst_kitwidgets.moc"
