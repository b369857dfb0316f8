#include "ContactsEngine.h"
#include "CoreEngine.h"
#include "CourseEngine.h"
#include "LessonNoticeText_p.h"
#include "LogCapture.h"
#include "Model.h"
#include "ModelSignalRecorder.h"
#include "NoticeListModel.h"
#include "NoticeModelTestCase.h"
#include "TestKit.h"
#include "VyrTrack.h"

#include <QRegularExpression>
#include <QtTest>

using namespace VyrEngine;

namespace {
const qint64 kNow = 1800000000;
const quint64 kCourse = 500;
const QString kModelFile = QStringLiteral("src/plugins/im/VyrNotice/NoticeListModel.cpp");

CourseEngine* course() { return CourseEngine::instance(); }
NoticeListModel* model() { return NoticeListModel::instance(); }

GatherNoticePtr noticeAt(int row)
{
    return TestKit::noticeAt(model(), row);
}

QList<VyrTrack::Event> pushSends()
{
    return KitFixture::trackedEvents(QStringLiteral("PushSend"));
}
} // namespace

class TestLessonIntake : public NoticeModelTestCase
{
    Q_OBJECT
public:
    TestLessonIntake()
        : NoticeModelTestCase(kNow)
    {
    }

private slots:
    void rowAppearsOnlyAfterTheLookUp();
    void laterEventUpdatesTheRowInPlace();
    void twoCallsBeforeTheFutureFinishGiveOneRow();
    void unknownLessonGivesNothing();
    void roleZeroGivesNothing();
    void nonLessonTypeWithoutRowIsDropped();
    void nonLessonTypeWithRowMovesItToActivity();
    void cancelledFutureGivesNoRow();
    void releasedModelNeverCompletes();
    void rowTakesSnapshotOfTheCall();
    void titleRule_data();
    void titleRule();
    void unknownTitleLogsOnce();
    void fieldsFromTheRecords();
    void trackingEventBeforeRow();
    void updateTracksAgainWithNewPushId();
    void trackingBody_data();
    void trackingBody();
    void rowFoundAfterListChanged_data();
    void rowFoundAfterListChanged();
};

// The call returns before the row exists: the name is looked up first.
void TestLessonIntake::rowAppearsOnlyAfterTheLookUp()
{
    TestKit::putLesson(1, QStringLiteral("Algebra"), kNow + 600);
    ModelSignalRecorder recorder(model());
    model()->addLessonNotice(LessonAhead, 1);
    QCOMPARE(model()->rowCount(), 0);
    QCOMPARE(course()->pendingFutureCount(), 1);
    TestKit::settle();
    QCOMPARE(model()->rowCount(), 1);
    QCOMPARE(recorder.joined(), QStringLiteral("reset popup(Lesson)"));
}

// Ahead then start for one lesson: one row of type 4, same id, newer time, one popup and one update.
void TestLessonIntake::laterEventUpdatesTheRowInPlace()
{
    TestKit::putLesson(1, QStringLiteral("Algebra"), kNow + 600);
    ModelSignalRecorder recorder(model());
    model()->addLessonNotice(LessonAhead, 1);
    TestKit::settle();
    QCOMPARE(model()->rowCount(), 1);
    const GatherNoticePtr first = noticeAt(0);
    const QString firstId = first->noticeId();
    const quint32 firstTime = first->time();

    CoreEngine::instance()->advanceTime(90);
    model()->addLessonNotice(LessonStart, 1);
    TestKit::settle();
    QCOMPARE(model()->rowCount(), 1);
    const GatherNoticePtr row = noticeAt(0);
    QCOMPARE(row->type(), LessonStart);
    QCOMPARE(row->noticeId(), firstId);
    QVERIFY(row->time() > firstTime);
    QCOMPARE(row->time(), quint32(kNow + 90));
    QCOMPARE(recorder.count(QStringLiteral("popup(Lesson)")), 1);
    QCOMPARE(recorder.count(QStringLiteral("updated")), 1);
    QCOMPARE(recorder.joined(), QStringLiteral("reset popup(Lesson) reset updated"));
}

// The duplicate search runs in the completion, so two quick calls still end in one row.
void TestLessonIntake::twoCallsBeforeTheFutureFinishGiveOneRow()
{
    TestKit::putLesson(2, QStringLiteral("Biology"), kNow + 600);
    course()->setHoldFutures(true);
    ModelSignalRecorder recorder(model());
    model()->addLessonNotice(LessonAhead, 2);
    model()->addLessonNotice(LessonPrepare, 2);
    QCOMPARE(course()->pendingFutureCount(), 2);
    course()->finishPendingFutures();
    TestKit::settle();
    QCOMPARE(model()->rowCount(), 1);
    QCOMPARE(noticeAt(0)->type(), LessonPrepare);
    QCOMPARE(recorder.joined(), QStringLiteral("reset popup(Lesson) reset updated"));
    QCOMPARE(pushSends().size(), 2);
}

// A lesson the engine does not know gives no row, no look-up and no tracking event.
void TestLessonIntake::unknownLessonGivesNothing()
{
    ModelSignalRecorder recorder(model());
    LogCapture log;
    model()->addLessonNotice(LessonStart, 999);
    QCOMPARE(course()->pendingFutureCount(), 0);
    TestKit::settle();
    QCOMPARE(model()->rowCount(), 0);
    QCOMPARE(VyrTrack::instance()->events().size(), 0);
    QCOMPARE(recorder.joined(), QString());
    QCOMPARE(log.lines().size(), 0);
}

// Role 0 means the user has no part in the lesson: no notice at all.
void TestLessonIntake::roleZeroGivesNothing()
{
    TestKit::putLesson(3, QStringLiteral("Chemistry"), kNow + 600, kCourse, 0);
    model()->addLessonNotice(LessonStart, 3);
    QCOMPARE(course()->pendingFutureCount(), 0);
    TestKit::settle();
    QCOMPARE(model()->rowCount(), 0);
    QCOMPARE(VyrTrack::instance()->events().size(), 0);
}

// A non-lesson type with no row: the look-up runs, and the record is dropped in silence.
void TestLessonIntake::nonLessonTypeWithoutRowIsDropped()
{
    TestKit::putLesson(4, QStringLiteral("Drama"), kNow + 600);
    course()->setHoldFutures(true);
    ModelSignalRecorder recorder(model());
    LogCapture log;
    model()->addLessonNotice(StudyReport, 4);
    QCOMPARE(course()->pendingFutureCount(), 1);
    course()->finishPendingFutures();
    TestKit::settle();
    QCOMPARE(model()->rowCount(), 0);
    QCOMPARE(recorder.joined(), QString());
    QCOMPARE(VyrTrack::instance()->events().size(), 0);
    QCOMPARE(log.lines().size(), 0);
}

// The update takes any type: a lesson row given type 5 becomes an activity (a study report).
void TestLessonIntake::nonLessonTypeWithRowMovesItToActivity()
{
    TestKit::putLesson(5, QStringLiteral("Economics"), kNow + 600);
    model()->addLessonNotice(LessonStart, 5);
    TestKit::settle();
    const QString id = noticeAt(0)->noticeId();
    ModelSignalRecorder recorder(model());
    model()->addLessonNotice(StudyReport, 5);
    TestKit::settle();
    QCOMPARE(model()->rowCount(), 1);
    QCOMPARE(noticeAt(0)->type(), StudyReport);
    QCOMPARE(noticeAt(0)->category(), Activity);
    QCOMPARE(noticeAt(0)->noticeId(), id);
    QCOMPARE(model()->getNoticeItemNum(Lesson), 0);
    QCOMPARE(model()->getNoticeItemNum(Activity), 1);
    QCOMPARE(recorder.joined(), QStringLiteral("reset updated"));
}

// A cancelled look-up never completes.
void TestLessonIntake::cancelledFutureGivesNoRow()
{
    TestKit::putLesson(6, QStringLiteral("French"), kNow + 600);
    course()->setHoldFutures(true);
    model()->addLessonNotice(LessonStart, 6);
    course()->cancelPendingFutures();
    TestKit::settle();
    QCOMPARE(model()->rowCount(), 0);
    QCOMPARE(VyrTrack::instance()->events().size(), 0);
}

// A model released while its look-up is pending is gone before the completion; the new model stays empty.
void TestLessonIntake::releasedModelNeverCompletes()
{
    TestKit::putLesson(7, QStringLiteral("Geography"), kNow + 600);
    course()->setHoldFutures(true);
    model()->addLessonNotice(LessonStart, 7);
    QVERIFY(releaseModel());
    course()->finishPendingFutures();
    TestKit::settle();
    QCOMPARE(model()->rowCount(), 0);
    QCOMPARE(VyrTrack::instance()->events().size(), 0);
}

// The completion works on the snapshot of the call: a role changed meanwhile is not tested again.
void TestLessonIntake::rowTakesSnapshotOfTheCall()
{
    TestKit::putLesson(8, QStringLiteral("History"), kNow + 600);
    course()->setHoldFutures(true);
    model()->addLessonNotice(LessonStart, 8);
    TestKit::putLesson(8, QStringLiteral("History"), kNow + 900, kCourse, 0);
    course()->finishPendingFutures();
    TestKit::settle();
    QCOMPARE(model()->rowCount(), 1);
    QCOMPARE(noticeAt(0)->lessonStartTime(), quint32(kNow + 600));
}

// The title: the cluster, else the classroom's cluster, else a finished course future, else the course record.
void TestLessonIntake::titleRule_data()
{
    QTest::addColumn<bool>("cluster");
    QTest::addColumn<bool>("classroomCluster");
    QTest::addColumn<bool>("courseInHand");
    QTest::addColumn<bool>("courseRecord");
    QTest::addColumn<QString>("title");
    QTest::newRow("cluster wins") << true << true << true << true << "Cluster name";
    QTest::newRow("classroom cluster") << false << true << true << true << "Classroom cluster";
    QTest::newRow("finished course future") << false << false << true << true << "Course in hand";
    QTest::newRow("course record") << false << false << false << true << "Course record";
    QTest::newRow("nothing") << false << false << false << false << "Unknown";
}

void TestLessonIntake::titleRule()
{
    QFETCH(bool, cluster);
    QFETCH(bool, classroomCluster);
    QFETCH(bool, courseInHand);
    QFETCH(bool, courseRecord);
    QFETCH(QString, title);
    auto* contacts = ContactsEngine::instance();
    if (cluster)
        contacts->putCluster(kCourse, QStringLiteral("Cluster name"));
    if (classroomCluster) {
        contacts->putCluster(900, QStringLiteral("Classroom cluster"));
        contacts->setClassroomCluster(31, 32, 900);
        Model::createInstance(31, 32);
    }
    if (courseInHand)
        course()->setCourseInHand(kCourse, QStringLiteral("Course in hand"));
    if (courseRecord)
        course()->putCourse(kCourse, QStringLiteral("Course record"), 1);
    TestKit::putLesson(9, QStringLiteral("Informatics"), kNow + 600);
    model()->addLessonNotice(LessonPrepare, 9);
    TestKit::settle();
    QCOMPARE(model()->rowCount(), 1);
    QCOMPARE(noticeAt(0)->title(), title);
}

// Unknown cluster, a course future still running and no course record: "Unknown" and one log line.
void TestLessonIntake::unknownTitleLogsOnce()
{
    TestKit::putLesson(10, QStringLiteral("Japanese"), kNow + 600, 777);
    course()->setHoldFutures(true);
    model()->addLessonNotice(LessonAhead, 10);
    LogCapture log;
    course()->finishPendingFutures();
    TestKit::settle();
    QCOMPARE(model()->rowCount(), 1);
    QCOMPARE(noticeAt(0)->title(), QStringLiteral("Unknown"));
    // The course future asked during the fill is still pending: only polled, never waited for.
    QCOMPARE(course()->pendingFutureCount(), 1);
    const auto lines = log.startingWith(QStringLiteral("oops"));
    QCOMPARE(lines.size(), 1);
    QCOMPARE(lines.first().text, QStringLiteral("oops, no cluster info for id: 777"));
    QCOMPARE(lines.first().type, QtInfoMsg);
    QCOMPARE(lines.first().file, kModelFile);
}

void TestLessonIntake::fieldsFromTheRecords()
{
    ContactsEngine::instance()->putCluster(kCourse, QStringLiteral("Class 3"));
    TestKit::putLesson(11, QStringLiteral("Korean"), kNow + 1200, kCourse, 2, 77);
    model()->addLessonNotice(LessonPrepare, 11);
    TestKit::settle();
    const GatherNoticePtr n = noticeAt(0);
    QCOMPARE(n->type(), LessonPrepare);
    QCOMPARE(n->category(), Lesson);
    QCOMPARE(n->lessonId(), 11ull);
    QCOMPARE(n->clusterId(), kCourse);
    QCOMPARE(n->lessonName(), QStringLiteral("Korean"));
    QCOMPARE(n->lessonStartTime(), quint32(kNow + 1200));
    QCOMPARE(n->time(), quint32(kNow));
    QCOMPARE(n->title(), QStringLiteral("Class 3"));
    QVERIFY(!QUuid::fromString(n->noticeId()).isNull());
}

// "PushSend" goes out before the row exists, with the lesson vocabulary.
void TestLessonIntake::trackingEventBeforeRow()
{
    TestKit::putLesson(12, QStringLiteral("Latin"), kNow + 7200);
    int rowsWhenTracked = -1;
    QMetaObject::Connection c = connect(VyrTrack::instance(), &VyrTrack::tracked, this,
                                        [&](const QString&, const QVariantMap&) { rowsWhenTracked = model()->rowCount(); });
    model()->addLessonNotice(LessonStart, 12);
    TestKit::settle();
    disconnect(c);
    QCOMPARE(rowsWhenTracked, 0);
    QCOMPARE(model()->rowCount(), 1);
    const auto events = VyrTrack::instance()->events();
    QCOMPARE(events.size(), 1);
    QCOMPARE(events[0].first, QStringLiteral("PushSend"));
    const QMap<QString, QVariant> data = events[0].second;
    QCOMPARE(data.keys(), (QStringList{"app_scene", "push_body", "push_id", "push_scenes", "push_title"}));
    QCOMPARE(data.value("push_scenes").toString(), QStringLiteral("上课通知"));
    QCOMPARE(data.value("app_scene").toString(), QStringLiteral("前台唤起"));
    QCOMPARE(data.value("push_title").toString(), qtTrId("ID_ClassAheadNotice_LessonNotice"));
    QCOMPARE(data.value("push_title").toString(), QStringLiteral("Lesson Notice"));
    QCOMPARE(data.value("push_body").toString(), QStringLiteral("Latin has started"));
    const QString pushId = data.value("push_id").toString();
    QVERIFY(QRegularExpression(QStringLiteral("^\\{[0-9a-f-]{36}\\}$")).match(pushId).hasMatch());
    QVERIFY(pushId != QLatin1Char('{') + noticeAt(0)->noticeId() + QLatin1Char('}'));
}

// Every in-place update is tracked like a new notice, with a new "push_id".
void TestLessonIntake::updateTracksAgainWithNewPushId()
{
    TestKit::putLesson(13, QStringLiteral("Music"), kNow + 600);
    model()->addLessonNotice(LessonAhead, 13);
    TestKit::settle();
    model()->addLessonNotice(LessonStart, 13);
    TestKit::settle();
    const auto events = pushSends();
    QCOMPARE(events.size(), 2);
    QVERIFY(events[0].second.value("push_id") != events[1].second.value("push_id"));
    QCOMPARE(events[0].second.value("push_body").toString(), QStringLiteral("Music will start in 10 minutes"));
    QCOMPARE(events[1].second.value("push_body").toString(), QStringLiteral("Music has started"));
}

// Minutes up to and including 3600 seconds, the date beyond; overdue counts below zero; the name stands bare.
void TestLessonIntake::trackingBody_data()
{
    QTest::addColumn<qint64>("secondsLeft");
    QTest::addColumn<QString>("name");
    QTest::addColumn<QString>("body");
    const QString dateText = QDateTime::fromSecsSinceEpoch(kNow + 3601).toLocalTime().toString("yyyy-MM-dd hh:mm");
    QTest::newRow("3600 counts 60") << qint64(3600) << "Art" << "Art will start in 60 minutes";
    QTest::newRow("3601 gives date") << qint64(3601) << "Art" << QStringLiteral("Art will start at %1").arg(dateText);
    QTest::newRow("59 seconds is 0") << qint64(59) << "Art" << "Art will start in 0 minutes";
    QTest::newRow("overdue 125s") << qint64(-125) << "Art" << "Art will start in -2 minutes";
    QTest::newRow("name not escaped") << qint64(120) << "<b>R&D</b>" << "<b>R&D</b> will start in 2 minutes";
}

void TestLessonIntake::trackingBody()
{
    QFETCH(qint64, secondsLeft);
    QFETCH(QString, name);
    QFETCH(QString, body);
    TestKit::putLesson(14, name, kNow + secondsLeft);
    model()->addLessonNotice(LessonAhead, 14);
    TestKit::settle();
    const auto events = pushSends();
    QCOMPARE(events.size(), 1);
    QCOMPARE(events[0].second.value("push_body").toString(), body);
    QCOMPARE(LessonNoticeText::body(true, name, quint32(kNow + secondsLeft), kNow), body);
}

namespace {
// What happens to the list between a lesson's first completion and its second.
enum class Change { RemoveOther, RemoveAllLessons, MoveToActivity, RemoveOwnRow };

QString lessonRows()
{
    QStringList rows;
    for (int row = 0; row < model()->rowCount(); ++row)
        rows << QStringLiteral("%1:%2").arg(noticeAt(row)->lessonId()).arg(int(noticeAt(row)->type()));
    return rows.join(QLatin1Char(' '));
}
} // namespace

Q_DECLARE_METATYPE(Change)

// After removals and a row turned activity, a lesson's next event still finds
// its one lesson row, or makes a new one when none is left.
void TestLessonIntake::rowFoundAfterListChanged_data()
{
    QTest::addColumn<Change>("change");
    QTest::addColumn<QString>("rows");
    QTest::addColumn<bool>("sameRow");
    QTest::newRow("other removed") << Change::RemoveOther << "22:4" << true;
    QTest::newRow("lessons cleared") << Change::RemoveAllLessons << "22:2" << false;
    QTest::newRow("moved to activity") << Change::MoveToActivity << "21:3 22:5 22:2" << false;
    QTest::newRow("own row removed") << Change::RemoveOwnRow << "21:3 22:2" << false;
}

void TestLessonIntake::rowFoundAfterListChanged()
{
    QFETCH(Change, change);
    QFETCH(QString, rows);
    QFETCH(bool, sameRow);
    TestKit::putLesson(21, QStringLiteral("Art"), kNow + 600);
    TestKit::putLesson(22, QStringLiteral("Music"), kNow + 600);
    model()->addLessonNotice(LessonPrepare, 21);
    model()->addLessonNotice(LessonAhead, 22);
    TestKit::settle();
    QCOMPARE(model()->rowCount(), 2);
    const QString firstId = noticeAt(1)->noticeId();

    switch (change) {
    case Change::RemoveOther:
        model()->delNotice(noticeAt(0)->noticeId());
        break;
    case Change::RemoveAllLessons:
        model()->delNotice(Lesson);
        break;
    case Change::MoveToActivity:
        model()->addLessonNotice(StudyReport, 22);
        break;
    case Change::RemoveOwnRow:
        model()->delNotice(model()->index(1, 0));
        break;
    }
    TestKit::settle();
    model()->addLessonNotice(change == Change::RemoveOther ? LessonStart : LessonAhead, 22);
    TestKit::settle();

    QCOMPARE(lessonRows(), rows);
    const GatherNoticePtr last = noticeAt(model()->rowCount() - 1);
    QCOMPARE(last->noticeId() == firstId, sameRow);
    QCOMPARE(last->category(), Lesson);
}

QTEST_MAIN(TestLessonIntake)
#include "tst_lessonintake.moc"
