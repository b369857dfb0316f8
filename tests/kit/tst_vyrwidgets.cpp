#include "Movable.h"
#include "VyrListView.h"

#include <QScrollBar>
#include <QtTest>

// The client's widgets: the drag helper and the list view.
class TestVyrWidgets : public QObject
{
    Q_OBJECT
private slots:
    void movableDragsByTriggerStripOnly_data();
    void movableDragsByTriggerStripOnly();
    void movableWholeAndNoneTypes();
    void listViewHasNoFrame();
};

// Move type 2 drags only from the top strip; the signal reports each move.
void TestVyrWidgets::movableDragsByTriggerStripOnly_data()
{
    QTest::addColumn<int>("pressY");
    QTest::addColumn<bool>("moves");
    QTest::newRow("top") << 0 << true;
    QTest::newRow("inside") << 30 << true;
    QTest::newRow("last-pixel") << 61 << true;
    QTest::newRow("below") << 62 << false;
}


void TestVyrWidgets::movableDragsByTriggerStripOnly()
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
void TestVyrWidgets::movableWholeAndNoneTypes()
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
void TestVyrWidgets::listViewHasNoFrame()
{
    VyrListView view;
    QCOMPARE(view.frameShape(), QFrame::NoFrame);
    QVERIFY(view.verticalScrollBar()->styleSheet().contains(QLatin1String("width: 6px")));
}


QTEST_MAIN(TestVyrWidgets)
#include "tst_vyrwidgets.moc"
