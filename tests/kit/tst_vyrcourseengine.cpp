#include "CourseCover.h"
#include "CourseEngine.h"
#include "CourseUtilities.h"
#include "KitFixture.h"

#include <QSignalSpy>
#include <QThread>
#include <QtTest>

using namespace VyrEngine;

// The course engine: lesson and course look-ups, held futures, snapshots, lesson kinds,
// lesson signals, course covers and utilities.
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

    void convertLessonsInfoGroupsBySchool();
    void generatedCoverIsPerCourse();
    void downloadedCoverReplacesAndSignals();
    void coverLookupIsAnnounced();
    void lessonSignalsFromAnotherThreadArriveQueued();
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


// Triples grouped by school: one course id per school (the last), the lessons in order.
void TestVyrCourseEngine::convertLessonsInfoGroupsBySchool()
{
    QMap<quint64, QPair<quint64, QVector<quint64>>> result;
    CourseUtilities::convertLessonsInfo({{7, 500, 1}, {8, 600, 2}, {7, 500, 3}, {7, 501, 4}}, result);
    QCOMPARE(result.keys(), (QList<quint64>{7, 8}));
    QCOMPARE(result.value(7).first, 501ull);
    QCOMPARE(result.value(7).second, (QVector<quint64>{1, 3, 4}));
    QCOMPARE(result.value(8).first, 600ull);
    QCOMPARE(result.value(8).second, QVector<quint64>{2});
    CourseUtilities::convertLessonsInfo({}, result);
    QCOMPARE(result.size(), 2);
}

// Each course gets its own picture: its colour, the book, its initial; made once and kept.
void TestVyrCourseEngine::generatedCoverIsPerCourse()
{
    auto* engine = CourseEngine::instance();
    engine->putCourse(500, QStringLiteral("Algebra"), 0);
    const QImage a = engine->coursePixmap(500).toImage();
    const QImage b = engine->coursePixmap(501).toImage();
    QCOMPARE(a.size(), QSize(CourseCover::Size, CourseCover::Size));
    QVERIFY(a != b);
    QCOMPARE(QColor(a.pixel(0, 0)), CourseCover::baseColor(500));
    QVERIFY(CourseCover::baseColor(500) != CourseCover::baseColor(501));
    // White pages of the book in the middle.
    QCOMPARE(QColor(a.pixel(CourseCover::Size / 2 - 12, CourseCover::Size / 3)), QColor(Qt::white));
    QCOMPARE(engine->coursePixmap(500).cacheKey(), engine->coursePixmap(500).cacheKey());
    // The name's initial makes a difference.
    QVERIFY(CourseCover::generate(500, QStringLiteral("Algebra")).toImage() !=
            CourseCover::generate(500, QString()).toImage());
}

// A downloaded cover stands in for the generated one; putting and removing it signals school and course.
void TestVyrCourseEngine::downloadedCoverReplacesAndSignals()
{
    auto* engine = CourseEngine::instance();
    QSignalSpy changed(engine, &CourseEngine::signalCoursePixmapChanged);
    QPixmap red(10, 10);
    red.fill(Qt::red);
    engine->putCoursePixmap(7, 500, red);
    QCOMPARE(engine->coursePixmap(500).toImage().pixel(5, 5), qRgb(255, 0, 0));
    engine->removeCoursePixmap(7, 500);
    QCOMPARE(engine->coursePixmap(500).size(), QSize(CourseCover::Size, CourseCover::Size));
    QCOMPARE(changed.size(), 2);
    QCOMPARE(changed.at(0).at(0).toULongLong(), 7ull);
    QCOMPARE(changed.at(0).at(1).toULongLong(), 500ull);
}

// Every look-up is announced, inside the call.
void TestVyrCourseEngine::coverLookupIsAnnounced()
{
    QSignalSpy asked(CourseEngine::instance(), &CourseEngine::coursePixmapAsked);
    CourseEngine::instance()->coursePixmap(9);
    CourseEngine::instance()->coursePixmap(9);
    QCOMPARE(asked.size(), 2);
    QCOMPARE(asked.first().first().toULongLong(), 9ull);
}

// The lesson signals emitted on another thread reach a GUI-thread receiver there, batch included.
void TestVyrCourseEngine::lessonSignalsFromAnotherThreadArriveQueued()
{
    auto* engine = CourseEngine::instance();
    QObject receiver;
    QStringList seen;
    auto record = [&](const QString& name) {
        return [&, name](quint64 school, quint64 course, quint64 lesson) {
            QCOMPARE(QThread::currentThread(), receiver.thread());
            seen << QStringLiteral("%1(%2,%3,%4)").arg(name).arg(school).arg(course).arg(lesson);
        };
    };
    connect(engine, &CourseEngine::signalRemoveLesson, &receiver, record(QStringLiteral("remove")));
    connect(engine, &CourseEngine::signalLessonRoleInvalid, &receiver, record(QStringLiteral("role")));
    connect(engine, &CourseEngine::signalLessonInfoChanged, &receiver, record(QStringLiteral("info")));
    connect(engine, &CourseEngine::signalLessonEnd, &receiver, record(QStringLiteral("end")));
    connect(engine, &CourseEngine::signalLessonsInfoChanged, &receiver,
            [&](std::vector<std::tuple<quint64, quint64, quint64>> lessons) {
                seen << QStringLiteral("batch(%1)").arg(lessons.size());
            });
    QThread* thread = QThread::create([engine]() {
        emit engine->signalRemoveLesson(7, 500, 1);
        emit engine->signalLessonRoleInvalid(7, 500, 2);
        emit engine->signalLessonInfoChanged(7, 500, 3);
        emit engine->signalLessonEnd(7, 500, 4);
        emit engine->signalLessonsInfoChanged({{7, 500, 5}, {7, 500, 6}});
    });
    thread->start();
    QVERIFY(thread->wait(5000));
    delete thread;
    QVERIFY(seen.isEmpty());
    QTRY_COMPARE(seen.size(), 5);
    QCOMPARE(seen.join(QLatin1Char(' ')),
             QStringLiteral("remove(7,500,1) role(7,500,2) info(7,500,3) end(7,500,4) batch(2)"));
}

QTEST_MAIN(TestVyrCourseEngine)
#include "tst_vyrcourseengine.moc"
