#include "ContactsEngine.h"
#include "CoreEngine.h"
#include "CourseEngine.h"
#include "Model.h"
#include "TestKit.h"
#include "VyrTrack.h"
#include "VyrUtils.h"

#include <QFutureWatcher>
#include <QJsonDocument>
#include <QJsonObject>
#include <QTemporaryDir>
#include <QtTest>

using namespace VyrEngine;

class TestKitEngines : public QObject
{
    Q_OBJECT
private slots:
    void init() { TestKit::resetAll(); }
    void lessonFutureFinishesOnALaterTurn();
    void heldFuturesFinishOrCancelOnRequest();
    void releasingTheHoldFinishesWhatIsPending();
    void courseInHandIsFinishedAtOnce();
    void unknownLessonHasNoSnapshot();
    void clockStopsAdvancesAndFollowsSystem();
    void clustersAndClassrooms();
    void classroomModelComesAndGoes();
    void trackKeepsSignalsAndWritesJsonLines();
    void utilsFormatAndEscape();
};

// A future is never finished inside the call that makes it.
void TestKitEngines::lessonFutureFinishesOnALaterTurn()
{
    TestKit::putLesson(1, QStringLiteral("Algebra"), 100);
    auto future = CourseEngine::instance()->lessonInfoFuture(7, 500, 1);
    QVERIFY(!future.isFinished());
    QTRY_VERIFY(future.isFinished());
    QVERIFY(!future.isCanceled());
    QCOMPARE(future.result()->name, QStringLiteral("Algebra"));
}

void TestKitEngines::heldFuturesFinishOrCancelOnRequest()
{
    auto* engine = CourseEngine::instance();
    TestKit::putLesson(1, QStringLiteral("Algebra"), 100);
    engine->setHoldFutures(true);
    auto first = engine->lessonInfoFuture(7, 500, 1);
    auto second = engine->lessonInfoFuture(7, 500, 1);
    TestKit::settle();
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

void TestKitEngines::releasingTheHoldFinishesWhatIsPending()
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

void TestKitEngines::courseInHandIsFinishedAtOnce()
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

void TestKitEngines::unknownLessonHasNoSnapshot()
{
    QVERIFY(!CourseEngine::instance()->lessonSnapshot(42));
    TestKit::putLesson(42, QStringLiteral("x"), 5, 600, 3, 9);
    auto snapshot = CourseEngine::instance()->lessonSnapshot(42);
    QVERIFY(snapshot);
    QCOMPARE(snapshot->courseId, 600ull);
    QCOMPARE(snapshot->role, 3);
    QCOMPARE(snapshot->schoolId, 9ull);
    CourseEngine::instance()->removeLesson(42);
    QVERIFY(!CourseEngine::instance()->lessonSnapshot(42));
}

void TestKitEngines::clockStopsAdvancesAndFollowsSystem()
{
    auto* core = CoreEngine::instance();
    core->setCurrentTime(1000);
    QCOMPARE(core->currentTime(), 1000);
    core->advanceTime(-30);
    QCOMPARE(core->currentTime(), 970);
    QCOMPARE(core->currentDateTime().toSecsSinceEpoch(), 970);
    core->useSystemClock();
    QVERIFY(qAbs(core->currentTime() - QDateTime::currentSecsSinceEpoch()) <= 1);
    core->setCurrentUid(77);
    QCOMPARE(core->currentUid(), 77ull);
}

void TestKitEngines::clustersAndClassrooms()
{
    auto* contacts = ContactsEngine::instance();
    QVERIFY(!contacts->clusterInfoById(ClusterID(5, 0), false));
    contacts->putCluster(5, QStringLiteral("Class 5"));
    QCOMPARE(contacts->clusterInfoById(ClusterID(5, 0), false)->name(), QStringLiteral("Class 5"));
    contacts->setClassroomCluster(1, 2, 5);
    QCOMPARE(contacts->clusterIdForClassroom(1, 2).id(), 5ull);
    QCOMPARE(contacts->clusterIdForClassroom(1, 3).id(), 0ull);
    contacts->removeCluster(5);
    QVERIFY(!contacts->clusterInfoById(ClusterID(5, 0), false));
}

void TestKitEngines::classroomModelComesAndGoes()
{
    QVERIFY(!Model::getInstance());
    Model::createInstance(3, 4);
    QPointer<Model> model = Model::getInstance();
    QVERIFY(model);
    QCOMPARE(model->getCourseId(), 3ull);
    QCOMPARE(model->getClassroomId(), 4ull);
    Model::dropInstance();
    QVERIFY(!model);
    QVERIFY(!Model::getInstance());
}

void TestKitEngines::trackKeepsSignalsAndWritesJsonLines()
{
    QTemporaryDir dir;
    const QString path = dir.filePath(QStringLiteral("track.jsonl"));
    auto* track = VyrTrack::instance();
    track->setLogFile(path);
    QSignalSpy spy(track, &VyrTrack::tracked);
    track->track(QStringLiteral("PushClick"), {{QStringLiteral("check_up"), true}});
    track->track(QStringLiteral("PushSend"), {{QStringLiteral("push_body"), QStringLiteral("体育课")}});
    track->setLogFile(QString());
    QCOMPARE(spy.count(), 2);
    QCOMPARE(track->events().size(), 2);
    QCOMPARE(track->events().at(0).first, QStringLiteral("PushClick"));

    QFile file(path);
    QVERIFY(file.open(QIODevice::ReadOnly));
    const QList<QByteArray> lines = file.readAll().split('\n');
    QCOMPARE(lines.size(), 3);
    const QJsonObject second = QJsonDocument::fromJson(lines.at(1)).object();
    QCOMPARE(second.value("event").toString(), QStringLiteral("PushSend"));
    QCOMPARE(second.value("data").toObject().value("push_body").toString(), QStringLiteral("体育课"));
    QCOMPARE(QJsonDocument::fromJson(lines.at(0)).object().value("data").toObject().value("check_up").toBool(), true);
}

void TestKitEngines::utilsFormatAndEscape()
{
    QVERIFY(!VyrUtils::createUuid().contains(QLatin1Char('{')));
    QVERIFY(VyrUtils::createUuid() != VyrUtils::createUuid());
    QCOMPARE(VyrUtils::toString(QDateTime::fromSecsSinceEpoch(0, Qt::UTC), QStringLiteral("yyyy-MM-dd hh:mm")),
             QDateTime::fromSecsSinceEpoch(0).toLocalTime().toString(QStringLiteral("yyyy-MM-dd hh:mm")));
    QCOMPARE(VyrUtils::escapeHtmlTag(QStringLiteral("<a href=\"x\">Tom & 'Jerry'</a>")),
             QStringLiteral("&lt;a href=&quot;x&quot;&gt;Tom &amp; &#39;Jerry&#39;&lt;/a&gt;"));
    QString inPlace = QStringLiteral("a <b>");
    QCOMPARE(VyrUtils::escapeHtmlTag(inPlace, false), QStringLiteral("a &lt;b&gt;"));
    QCOMPARE(inPlace, QStringLiteral("a &lt;b&gt;"));
    QString spaced = QStringLiteral("a b");
    QCOMPARE(VyrUtils::escapeHtmlTag(spaced, true), QStringLiteral("a&nbsp;b"));
}

QTEST_MAIN(TestKitEngines)
#include "tst_kit.moc"
