#include "ExamManager.h"
#include "HomeworkManager.h"
#include "StudyActivityMessagePushManager.h"

#include <QSignalSpy>
#include <QThread>
#include <QtTest>

namespace {

QSharedPointer<AppendixDataPod> activity(quint64 id)
{
    auto pod = QSharedPointer<AppendixDataPod>::create();
    pod->activityId = id;
    pod->activityType = 1;
    return pod;
}

} // namespace

// The chat engine: tests, homework and study activities, the records kept and the withdrawal signals.
class TestVyrChatEngine : public QObject
{
    Q_OBJECT
private slots:
    void init();
    void examsAreKeptById();
    void withdrawingAnExamForgetsItThenSignals();
    void homeworkIsKeptById();
    void withdrawingHomeworkForgetsItThenSignals();
    void clearEmitsNothing();
    void signalsReachQueuedReceivers();

    void instanceIsOne();
    void deleteActivityEmitsAtOnce();
    void queuedReceiversGetThePointer();
    void deleteFromThreadArrivesOnTheReceiversThread();
};

void TestVyrChatEngine::init()
{
    ExamManager::instance()->clear();
    HomeworkManager::instance()->clear();
    StudyActivityMessagePushManager::instance().clear();
}

// A test put in is found by its id, a second put replaces it, an unknown id gives null.
void TestVyrChatEngine::examsAreKeptById()
{
    ExamInfo info;
    info.examId = 7;
    info.courseId = 3;
    info.name = QStringLiteral("Algebra");
    ExamManager::instance()->putExam(info);
    QCOMPARE(ExamManager::instance()->exam(7)->name, QStringLiteral("Algebra"));
    info.name = QStringLiteral("Geometry");
    ExamManager::instance()->putExam(info);
    QCOMPARE(ExamManager::instance()->exam(7)->name, QStringLiteral("Geometry"));
    QVERIFY(!ExamManager::instance()->exam(8));
}

// The withdrawal forgets the test first, then emits (course, test), so a receiver finds it gone.
void TestVyrChatEngine::withdrawingAnExamForgetsItThenSignals()
{
    ExamInfo info;
    info.examId = 7;
    ExamManager::instance()->putExam(info);
    bool goneWhenSignalled = false;
    QSignalSpy spy(ExamManager::instance(), &ExamManager::examDeleteNoticeSingal);
    connect(ExamManager::instance(), &ExamManager::examDeleteNoticeSingal, this,
            [&]() { goneWhenSignalled = !ExamManager::instance()->exam(7); });
    ExamManager::instance()->withdrawExam(3, 7);
    QCOMPARE(spy.count(), 1);
    QCOMPARE(spy.first().value(0).toULongLong(), 3ull);
    QCOMPARE(spy.first().value(1).toULongLong(), 7ull);
    QVERIFY(goneWhenSignalled);
    disconnect(ExamManager::instance(), nullptr, this, nullptr);
}

// Homework put in is found by its id with its revision flag; an unknown id gives null.
void TestVyrChatEngine::homeworkIsKeptById()
{
    HomeworkEntity info;
    info.homeworkId = 9;
    info.revised = true;
    HomeworkManager::instance()->putHomework(info);
    QVERIFY(HomeworkManager::instance()->homework(9)->revised);
    QVERIFY(!HomeworkManager::instance()->homework(10));
}

// Withdrawing homework forgets it, then emits (course, homework).
void TestVyrChatEngine::withdrawingHomeworkForgetsItThenSignals()
{
    HomeworkEntity info;
    info.homeworkId = 9;
    HomeworkManager::instance()->putHomework(info);
    QSignalSpy spy(HomeworkManager::instance(), &HomeworkManager::homeworkDeleteNoticeSingal);
    HomeworkManager::instance()->withdrawHomework(4, 9);
    QCOMPARE(spy.count(), 1);
    QCOMPARE(spy.first().value(0).toULongLong(), 4ull);
    QCOMPARE(spy.first().value(1).toULongLong(), 9ull);
    QVERIFY(!HomeworkManager::instance()->homework(9));
}

// Clearing forgets the records and tells nobody.
void TestVyrChatEngine::clearEmitsNothing()
{
    ExamInfo exam;
    exam.examId = 1;
    ExamManager::instance()->putExam(exam);
    HomeworkEntity homework;
    homework.homeworkId = 2;
    HomeworkManager::instance()->putHomework(homework);
    QSignalSpy exams(ExamManager::instance(), &ExamManager::examDeleteNoticeSingal);
    QSignalSpy homeworks(HomeworkManager::instance(), &HomeworkManager::homeworkDeleteNoticeSingal);
    ExamManager::instance()->clear();
    HomeworkManager::instance()->clear();
    QVERIFY(!ExamManager::instance()->exam(1));
    QVERIFY(!HomeworkManager::instance()->homework(2));
    QCOMPARE(exams.count() + homeworks.count(), 0);
}

// Both signals cross a queued connection and arrive on the next turn of the event loop.
void TestVyrChatEngine::signalsReachQueuedReceivers()
{
    QList<quint64> got;
    QObject context;
    connect(ExamManager::instance(), &ExamManager::examDeleteNoticeSingal, &context,
            [&](quint64, quint64 id) { got << id; }, Qt::QueuedConnection);
    connect(HomeworkManager::instance(), &HomeworkManager::homeworkDeleteNoticeSingal, &context,
            [&](quint64, quint64 id) { got << id; }, Qt::QueuedConnection);
    ExamManager::instance()->withdrawExam(1, 11);
    HomeworkManager::instance()->withdrawHomework(1, 12);
    QVERIFY(got.isEmpty());
    QCoreApplication::processEvents();
    QCOMPARE(got, (QList<quint64>{11, 12}));
}

// instance() gives the same object every time.
void TestVyrChatEngine::instanceIsOne()
{
    QCOMPARE(&StudyActivityMessagePushManager::instance(), &StudyActivityMessagePushManager::instance());
}

// deleteActivity emits the record itself, inside the call, and remembers it.
void TestVyrChatEngine::deleteActivityEmitsAtOnce()
{
    auto& manager = StudyActivityMessagePushManager::instance();
    QSharedPointer<AppendixDataPod> got;
    QMetaObject::Connection c = connect(&manager, &StudyActivityMessagePushManager::signalActivityDeleteNoticeSingal,
                                        this, [&got](QSharedPointer<AppendixDataPod> pod) { got = pod; });
    const auto pod = activity(5);
    manager.deleteActivity(pod);
    disconnect(c);
    QCOMPARE(got, pod);
    QCOMPARE(manager.deletedActivities().size(), 1);
    manager.clear();
    QVERIFY(manager.deletedActivities().isEmpty());
}

// The pointer is a registered meta type: a queued receiver gets it on the next turn.
void TestVyrChatEngine::queuedReceiversGetThePointer()
{
    auto& manager = StudyActivityMessagePushManager::instance();
    QVERIFY(QMetaType::type("QSharedPointer<AppendixDataPod>") != QMetaType::UnknownType);
    QList<quint64> got;
    QMetaObject::Connection c = connect(
        &manager, &StudyActivityMessagePushManager::signalActivityDeleteNoticeSingal, this,
        [&got](QSharedPointer<AppendixDataPod> pod) { got << pod->activityId; }, Qt::QueuedConnection);
    manager.deleteActivity(activity(9));
    QVERIFY(got.isEmpty());
    QTRY_COMPARE(got, QList<quint64>{9});
    disconnect(c);
}

// From a worker thread the signal reaches a GUI-thread receiver queued, on the GUI thread.
void TestVyrChatEngine::deleteFromThreadArrivesOnTheReceiversThread()
{
    auto& manager = StudyActivityMessagePushManager::instance();
    QThread* seenOn = nullptr;
    QMetaObject::Connection c =
        connect(&manager, &StudyActivityMessagePushManager::signalActivityDeleteNoticeSingal, this,
                [&seenOn](QSharedPointer<AppendixDataPod>) { seenOn = QThread::currentThread(); });
    manager.deleteActivityFromThread(activity(3));
    QVERIFY(!seenOn);
    QTRY_VERIFY(seenOn);
    QCOMPARE(seenOn, QThread::currentThread());
    disconnect(c);
}

QTEST_MAIN(TestVyrChatEngine)
#include "tst_vyrchatengine.moc"
