#include "CourseEngine.h"
#include "KitFixture.h"

#include <QtTest>

using namespace VyrEngine;

// The course engine: lesson and course look-ups, held futures, snapshots and lesson kinds.
class TestVyrCourseEngine : public QObject
{
    Q_OBJECT
private slots:
    void init();
    void cleanup();

    void lessonFutureFinishesOnALaterTurn();
    void heldFuturesFinishOrCancelOnRequest();
    void releasingTheHoldFinishesWhatIsPending();
    void courseInHandIsFinishedAtOnce();
    void courseInHandWithoutRecord();
    void unknownLessonHasNoSnapshot();
    void knownLessonKind();
};

void TestVyrCourseEngine::init()
{
    CourseEngine::instance()->clear();
}

void TestVyrCourseEngine::cleanup()
{
    init();
}

// A future is never finished inside the call that makes it.
void TestVyrCourseEngine::lessonFutureFinishesOnALaterTurn()
{
    KitFixture::putLesson(1, QStringLiteral("Algebra"), 100);
    auto future = CourseEngine::instance()->lessonInfoFuture(7, 500, 1);
    QVERIFY(!future.isFinished());
    QTRY_VERIFY(future.isFinished());
    QVERIFY(!future.isCanceled());
    QCOMPARE(future.result()->name, QStringLiteral("Algebra"));
}


// Held futures wait until the host finishes or cancels them, and the pending count follows.
void TestVyrCourseEngine::heldFuturesFinishOrCancelOnRequest()
{
    auto* engine = CourseEngine::instance();
    KitFixture::putLesson(1, QStringLiteral("Algebra"), 100);
    engine->setHoldFutures(true);
    auto first = engine->lessonInfoFuture(7, 500, 1);
    auto second = engine->lessonInfoFuture(7, 500, 1);
    KitFixture::settle();
    QVERIFY(!first.isFinished());
    QCOMPARE(engine->pendingFutureCount(), 2);
    engine->cancelPendingFutures();
    QVERIFY(first.isCanceled() && second.isCanceled());
    auto third = engine->lessonInfoFuture(7, 500, 1);
    QCOMPARE(engine->pendingFutureCount(), 1);
    engine->finishPendingFutures();
    QVERIFY(third.isFinished());
    QVERIFY(!third.isCanceled());
    QCOMPARE(third.result()->name, QStringLiteral("Algebra"));
    QCOMPARE(engine->pendingFutureCount(), 0);
}


// Letting go of the hold finishes what was held, on a later turn.
void TestVyrCourseEngine::releasingTheHoldFinishesWhatIsPending()
{
    auto* engine = CourseEngine::instance();
    engine->setHoldFutures(true);
    auto future = engine->lessonInfoFuture(7, 500, 9);
    engine->setHoldFutures(false);
    QVERIFY(!future.isFinished());
    QTRY_VERIFY(future.isFinished());
    // An unknown lesson still yields a record, with an empty name.
    QVERIFY(future.result());
    QVERIFY(future.result()->name.isEmpty());
}


// A course in hand is finished inside the call; a fetched one later, from its record.
void TestVyrCourseEngine::courseInHandIsFinishedAtOnce()
{
    auto* engine = CourseEngine::instance();
    auto lesson = QSharedPointer<SnapshotLesson>::create();
    lesson->courseId = 500;
    engine->setCourseInHand(500, QStringLiteral("Mathematics"));
    auto inHand = engine->courseInfoFuture(lesson);
    QVERIFY(inHand.isFinished());
    QCOMPARE(inHand.resultAt(0)->name, QStringLiteral("Mathematics"));

    engine->dropCourseInHand(500);
    engine->putCourse(500, QStringLiteral("Maths record"), 3);
    auto fetched = engine->courseInfoFuture(lesson);
    QVERIFY(!fetched.isFinished());
    QTRY_VERIFY(fetched.isFinished());
    QCOMPARE(fetched.result()->name, QStringLiteral("Maths record"));
    QCOMPARE(engine->courseRecord(500)->courseType, qint16(3));
    QVERIFY(!engine->courseRecord(501));
}


// A course held without a record finishes its look-up at once with a null record, until put in hand.
void TestVyrCourseEngine::courseInHandWithoutRecord()
{
    auto* engine = CourseEngine::instance();
    auto lesson = QSharedPointer<SnapshotLesson>::create();
    lesson->courseId = 500;
    engine->setCourseInHandWithoutRecord(500);
    auto future = engine->courseInfoFuture(lesson);
    QVERIFY(future.isFinished());
    QCOMPARE(future.resultCount(), 1);
    QVERIFY(!future.resultAt(0));
    engine->setCourseInHand(500, QStringLiteral("Physics"));
    future = engine->courseInfoFuture(lesson);
    QVERIFY(future.isFinished());
    QCOMPARE(future.resultAt(0)->name, QStringLiteral("Physics"));
}


// Only a lesson the host put has a snapshot, and removing it takes the snapshot away.
void TestVyrCourseEngine::unknownLessonHasNoSnapshot()
{
    QVERIFY(!CourseEngine::instance()->lessonSnapshot(42));
    KitFixture::putLesson(42, QStringLiteral("x"), 5, 600, 3, 9);
    auto snapshot = CourseEngine::instance()->lessonSnapshot(42);
    QVERIFY(snapshot);
    QCOMPARE(snapshot->courseId, 600ull);
    QCOMPARE(snapshot->role, 3);
    QCOMPARE(snapshot->schoolId, 9ull);
    CourseEngine::instance()->removeLesson(42);
    QVERIFY(!CourseEngine::instance()->lessonSnapshot(42));
}


// Lesson kinds are false until the host marks them, and clear() forgets them.
void TestVyrCourseEngine::knownLessonKind()
{
    auto* engine = CourseEngine::instance();
    QVERIFY(!engine->isKnownLessonKind(5));
    engine->setKnownLessonKind(5, true);
    QVERIFY(engine->isKnownLessonKind(5));
    QVERIFY(!engine->isKnownLessonKind(6));
    engine->setKnownLessonKind(5, false);
    QVERIFY(!engine->isKnownLessonKind(5));
    engine->setKnownLessonKind(5, true);
    engine->clear();
    QVERIFY(!engine->isKnownLessonKind(5));
}


QTEST_MAIN(TestVyrCourseEngine)
#include "tst_vyrcourseengine.moc"
