#include "FriendRequestInfo.h"
#include "NoticeEngine.h"

#include <QElapsedTimer>
#include <QSignalSpy>
#include <QThread>
#include <atomic>
#include <thread>
#include <QtTest>
#include <memory>

using VyrEngine::FriendRequestInfo;
using VyrEngine::NoticeEngine;

namespace {
FriendRequestInfo record(int seq, quint64 date, quint64 source = 7, quint64 target = 1000)
{
    FriendRequestInfo info;
    info.setSequenceId(seq);
    info.setDate(date);
    info.setSourceId(source);
    info.setTargetId(target);
    info.setStatus(4);
    info.setMessage(QStringLiteral("m%1").arg(seq));
    return info;
}

// Runs `work` on a thread of its own and joins it. (Not a QtConcurrent future:
// waiting on one may run a task that has not started on the waiting thread.)
template <typename Work>
void runOnOwnThread(Work work)
{
    std::thread thread(work);
    thread.join();
}

QString seqs(const QVector<FriendRequestInfo>& records)
{
    QStringList out;
    for (const FriendRequestInfo& info : records)
        out << QString::number(info.sequenceId());
    return out.join(QLatin1Char(' '));
}
} // namespace

// The kit's notice engine: its store and page query, its signals from any thread, and the calls going out.
class TestVyrNoticeEngine : public QObject
{
    Q_OBJECT
private slots:
    void init() { NoticeEngine::instance()->clear(); }
    void cleanup() { NoticeEngine::instance()->clear(); }

    void recordAndVectorAreMetaTypes();
    void instanceIsOneFromAnyThread();
    void pagesAreNewestFirstAfterTheAnchor_data();
    void pagesAreNewestFirstAfterTheAnchor();
    void sameSequenceReplacesAndRemoveForgets();
    void failAnswersFalseWithNothing();
    void delayBlocksTheCaller();
    void heldCallsWaitForRelease();
    void scriptedAnswerComesFirst();
    void queriesRecordTheirThread();
    void readinessAndInitSignal();
    void recordSignalsFromThisOrAnotherThread_data();
    void recordSignalsFromThisOrAnotherThread();
    void answersAreRecordedStoredAndEchoed();
    void failedAnswerIsOnlyRecorded();
    void overdueAndDeleteAreRecordedAndEchoed();
    void touchMarksReadAndCounts();
    void connectionsAreRecordedInOrder();
    void errorNoticeCarriesText();
};

// The record and its vector are meta types under their full names.
void TestVyrNoticeEngine::recordAndVectorAreMetaTypes()
{
    QCOMPARE(QByteArray(QMetaType::typeName(qMetaTypeId<FriendRequestInfo>())), QByteArray("VyrEngine::FriendRequestInfo"));
    QCOMPARE(QByteArray(QMetaType::typeName(qMetaTypeId<QVector<FriendRequestInfo>>())),
             QByteArray("QVector<VyrEngine::FriendRequestInfo>"));
    const FriendRequestInfo info = record(3, 100);
    QCOMPARE(QVariant::fromValue(info).value<FriendRequestInfo>(), info);
    FriendRequestInfo copy;
    copy = info;
    copy.setUnread(false);
    QVERIFY(!copy.unread());
    QVERIFY(!(copy == info));
}

// instance() gives one engine, whichever thread asks first, living on the thread that made it.
void TestVyrNoticeEngine::instanceIsOneFromAnyThread()
{
    NoticeEngine* here = NoticeEngine::instance();
    NoticeEngine* there = nullptr;
    runOnOwnThread([&there]() { there = NoticeEngine::instance(); });
    QCOMPARE(here, there);
}

// Newest first by date then sequence id, after the anchor, at most `count`; false when nothing comes.
void TestVyrNoticeEngine::pagesAreNewestFirstAfterTheAnchor_data()
{
    QTest::addColumn<int>("count");
    QTest::addColumn<quint64>("date");
    QTest::addColumn<int>("sequenceId");
    QTest::addColumn<QString>("expected");
    QTest::addColumn<bool>("result");
    QTest::newRow("no sequence anchor takes the date in") << 10 << quint64(300) << -1 << "5 4 3 2 1" << true;
    QTest::newRow("count caps") << 2 << quint64(300) << -1 << "5 4" << true;
    QTest::newRow("date before the newest") << 10 << quint64(250) << -1 << "3 2 1" << true;
    QTest::newRow("same date, lower sequence only") << 10 << quint64(200) << 3 << "2 1" << true;
    QTest::newRow("after the last") << 10 << quint64(100) << 1 << "" << false;
    QTest::newRow("count 0") << 0 << quint64(300) << -1 << "" << false;
}

void TestVyrNoticeEngine::pagesAreNewestFirstAfterTheAnchor()
{
    QFETCH(int, count);
    QFETCH(quint64, date);
    QFETCH(int, sequenceId);
    QFETCH(QString, expected);
    QFETCH(bool, result);
    auto* engine = NoticeEngine::instance();
    for (const FriendRequestInfo& info : {record(2, 200), record(5, 300), record(1, 100), record(3, 200), record(4, 300)})
        engine->putFriendRequest(info);
    QVector<FriendRequestInfo> out;
    QCOMPARE(engine->friendRequests(out, count, date, sequenceId), result);
    QCOMPARE(seqs(out), expected);
    QCOMPARE(seqs(engine->storedFriendRequests()), QStringLiteral("5 4 3 2 1"));
}

// A record with a known sequence id replaces the stored one; remove forgets it.
void TestVyrNoticeEngine::sameSequenceReplacesAndRemoveForgets()
{
    auto* engine = NoticeEngine::instance();
    engine->putFriendRequest(record(1, 100));
    FriendRequestInfo changed = record(1, 150);
    changed.setStatus(6);
    engine->putFriendRequest(changed);
    QCOMPARE(engine->storedFriendRequests().size(), 1);
    QCOMPARE(engine->storedFriendRequests().first().status(), 6);
    engine->removeFriendRequest(1);
    QVERIFY(engine->storedFriendRequests().isEmpty());
}

// A failing query answers false and leaves the vector empty.
void TestVyrNoticeEngine::failAnswersFalseWithNothing()
{
    auto* engine = NoticeEngine::instance();
    engine->putFriendRequest(record(1, 100));
    engine->setFriendRequestsFail(true);
    QVector<FriendRequestInfo> out;
    QVERIFY(!engine->friendRequests(out, 10, 200, -1));
    QVERIFY(out.isEmpty());
}

// A delay really blocks the caller for that long.
void TestVyrNoticeEngine::delayBlocksTheCaller()
{
    auto* engine = NoticeEngine::instance();
    engine->putFriendRequest(record(1, 100));
    engine->setFriendRequestsDelay(120);
    QElapsedTimer timer;
    timer.start();
    QVector<FriendRequestInfo> out;
    QVERIFY(engine->friendRequests(out, 10, 200, -1));
    QVERIFY2(timer.elapsed() >= 115, qPrintable(QString::number(timer.elapsed())));
}

// Held calls enter, wait, and answer once released.
void TestVyrNoticeEngine::heldCallsWaitForRelease()
{
    auto* engine = NoticeEngine::instance();
    engine->putFriendRequest(record(1, 100));
    engine->setFriendRequestsHeld(true);
    std::atomic<int> answered{0};
    auto call = [&answered]() {
        QVector<FriendRequestInfo> out;
        NoticeEngine::instance()->friendRequests(out, 10, 200, -1);
        answered += out.size();
    };
    std::thread first(call);
    std::thread second(call);
    QVERIFY(engine->waitForFriendRequestsCalls(2, 5000));
    QThread::msleep(30);
    QCOMPARE(answered.load(), 0);
    QVERIFY(!engine->waitForFriendRequestsCalls(3, 10));
    engine->setFriendRequestsHeld(false);
    first.join();
    second.join();
    QCOMPARE(answered.load(), 2);
}

// A queued answer is given exactly once, before the store is asked.
void TestVyrNoticeEngine::scriptedAnswerComesFirst()
{
    auto* engine = NoticeEngine::instance();
    engine->putFriendRequest(record(1, 100));
    engine->queueFriendRequestsAnswer({record(9, 900), record(9, 900)}, true);
    engine->queueFriendRequestsAnswer({record(8, 1)}, false);
    QVector<FriendRequestInfo> out;
    QVERIFY(engine->friendRequests(out, 1, 0, -1));
    QCOMPARE(seqs(out), QStringLiteral("9 9"));
    out.clear();
    QVERIFY(!engine->friendRequests(out, 10, 200, -1));
    QCOMPARE(seqs(out), QStringLiteral("8"));
    out.clear();
    QVERIFY(engine->friendRequests(out, 10, 200, -1));
    QCOMPARE(seqs(out), QStringLiteral("1"));
}

// Each query is recorded with its arguments and whether it ran on the engine's thread.
void TestVyrNoticeEngine::queriesRecordTheirThread()
{
    auto* engine = NoticeEngine::instance();
    QVector<FriendRequestInfo> out;
    engine->friendRequests(out, 200, 1800000000, -1);
    runOnOwnThread([]() {
        QVector<FriendRequestInfo> out;
        NoticeEngine::instance()->friendRequests(out, 30, 1700000000, 12);
    });
    const auto queries = engine->friendRequestQueries();
    QCOMPARE(queries.size(), 2);
    QCOMPARE(queries.at(0).count, 200);
    QCOMPARE(queries.at(0).date, quint64(1800000000));
    QCOMPARE(queries.at(0).sequenceId, -1);
    QVERIFY(queries.at(0).onEngineThread);
    QCOMPARE(queries.at(1).count, 30);
    QCOMPARE(queries.at(1).sequenceId, 12);
    QVERIFY(!queries.at(1).onEngineThread);
}

// Readiness is what the host set; setting it true announces the data, every time.
void TestVyrNoticeEngine::readinessAndInitSignal()
{
    auto* engine = NoticeEngine::instance();
    QSignalSpy init(engine, &NoticeEngine::signalInitUiData);
    QVERIFY(!engine->isUiDataReady());
    engine->setUiDataReady(true);
    engine->setUiDataReady(true);
    QVERIFY(engine->isUiDataReady());
    QCOMPARE(init.count(), 2);
    engine->setUiDataReady(false);
    QVERIFY(!engine->isUiDataReady());
    QCOMPARE(init.count(), 2);
}

// Each record signal comes on the calling thread, or from the engine's worker thread in order.
void TestVyrNoticeEngine::recordSignalsFromThisOrAnotherThread_data()
{
    QTest::addColumn<int>("kind");
    QTest::addColumn<QString>("name");
    QTest::newRow("ContactorAdd") << int(NoticeEngine::ContactorAdd) << "add";
    QTest::newRow("ContactorAddReply") << int(NoticeEngine::ContactorAddReply) << "reply";
    QTest::newRow("ContactsAddConfirm") << int(NoticeEngine::ContactsAddConfirm) << "confirm";
    QTest::newRow("FriendRequestOverdue") << int(NoticeEngine::FriendRequestOverdue) << "overdue";
}

void TestVyrNoticeEngine::recordSignalsFromThisOrAnotherThread()
{
    QFETCH(int, kind);
    QFETCH(QString, name);
    auto* engine = NoticeEngine::instance();
    QStringList heard;
    QList<QThread*> threads;
    auto hear = [&](const QString& what) {
        return [&, what](const FriendRequestInfo& info) {
            heard << QStringLiteral("%1:%2").arg(what).arg(info.sequenceId());
            threads << QThread::currentThread();
        };
    };
    QObject context;
    connect(engine, &NoticeEngine::signalContactorAddNotice, &context, hear(QStringLiteral("add")), Qt::DirectConnection);
    connect(engine, &NoticeEngine::signalContactorAddReplyNotice, &context, hear(QStringLiteral("reply")), Qt::DirectConnection);
    connect(engine, &NoticeEngine::signalContactsAddConfirmNotice, &context, hear(QStringLiteral("confirm")), Qt::DirectConnection);
    connect(engine, &NoticeEngine::signalSetFriendRequestOverdue, &context, hear(QStringLiteral("overdue")), Qt::DirectConnection);
    const auto which = static_cast<NoticeEngine::RecordSignal>(kind);
    engine->emitRecordSignal(which, record(1, 100));
    engine->emitRecordSignalFromThread(which, record(2, 100));
    engine->emitRecordSignalFromThread(which, record(3, 100));
    engine->waitForThreadEmissions();
    QCOMPARE(heard, QStringList({name + QStringLiteral(":1"), name + QStringLiteral(":2"), name + QStringLiteral(":3")}));
    QCOMPARE(threads.at(0), QThread::currentThread());
    QVERIFY(threads.at(1) != QThread::currentThread());
    QVERIFY(threads.at(2) != QThread::currentThread());
}

// An answer is recorded, stored, and confirmed by a signal on a later turn.
void TestVyrNoticeEngine::answersAreRecordedStoredAndEchoed()
{
    auto* engine = NoticeEngine::instance();
    engine->putFriendRequest(record(1, 100));
    QSignalSpy confirm(engine, &NoticeEngine::signalContactsAddConfirmNotice);
    FriendRequestInfo answer = record(1, 100);
    answer.setStatus(0);
    QCOMPARE(engine->answerFriendRequest(answer), 0);
    QCOMPARE(engine->answers().size(), 1);
    QCOMPARE(engine->storedFriendRequests().first().status(), 0);
    QCOMPARE(confirm.count(), 0);
    QCoreApplication::sendPostedEvents();
    QCOMPARE(confirm.count(), 1);
    QCOMPARE(confirm.first().first().value<FriendRequestInfo>().status(), 0);
}

// A failing answer returns the host's result and is only recorded.
void TestVyrNoticeEngine::failedAnswerIsOnlyRecorded()
{
    auto* engine = NoticeEngine::instance();
    engine->putFriendRequest(record(1, 100));
    engine->setAnswerResult(3);
    QSignalSpy confirm(engine, &NoticeEngine::signalContactsAddConfirmNotice);
    FriendRequestInfo answer = record(1, 100);
    answer.setStatus(1);
    QCOMPARE(engine->answerFriendRequest(answer), 3);
    QCoreApplication::sendPostedEvents();
    QCOMPARE(confirm.count(), 0);
    QCOMPARE(engine->answers().size(), 1);
    QCOMPARE(engine->storedFriendRequests().first().status(), 4);
}

// Overdue marks and deletes are recorded, applied to the store and echoed later.
void TestVyrNoticeEngine::overdueAndDeleteAreRecordedAndEchoed()
{
    auto* engine = NoticeEngine::instance();
    engine->putFriendRequest(record(1, 100, 7, 1000));
    engine->putFriendRequest(record(2, 100, 1000, 7));
    engine->putFriendRequest(record(3, 100, 8, 1000));
    QSignalSpy overdue(engine, &NoticeEngine::signalSetFriendRequestOverdue);
    QSignalSpy deleted(engine, &NoticeEngine::signalDeleteOneAddNotice);
    FriendRequestInfo late = record(3, 100, 8, 1000);
    late.setStatus(6);
    engine->markFriendRequestOverdue(late);
    engine->deleteFriendRequest(7, false);
    QCOMPARE(overdue.count() + deleted.count(), 0);
    QCoreApplication::sendPostedEvents();
    QCOMPARE(overdue.count(), 1);
    QCOMPARE(deleted.count(), 1);
    QCOMPARE(deleted.first().first().toULongLong(), quint64(7));
    QCOMPARE(engine->overdueMarks().size(), 1);
    QCOMPARE(engine->deletes(), (QList<QPair<quint64, bool>>{qMakePair(quint64(7), false)}));
    QCOMPARE(seqs(engine->storedFriendRequests()), QStringLiteral("3"));
    QCOMPARE(engine->storedFriendRequests().first().status(), 6);
}

// Touching marks every stored request read and is counted.
void TestVyrNoticeEngine::touchMarksReadAndCounts()
{
    auto* engine = NoticeEngine::instance();
    for (int seq = 1; seq <= 3; ++seq)
        engine->putFriendRequest(record(seq, 100 * quint64(seq)));
    for (const FriendRequestInfo& info : engine->storedFriendRequests())
        QVERIFY(info.unread());
    engine->touchFriendRequests();
    engine->touchFriendRequests();
    QCOMPARE(engine->touchCount(), 2);
    const auto stored = engine->storedFriendRequests();
    QCOMPARE(stored.size(), 3);
    for (const FriendRequestInfo& info : stored)
        QVERIFY2(!info.unread(), qPrintable(QString::number(info.sequenceId())));
}

// Connections to the engine's signals are recorded in the order they were made.
void TestVyrNoticeEngine::connectionsAreRecordedInOrder()
{
    auto* engine = NoticeEngine::instance();
    QObject receiver;
    connect(engine, &NoticeEngine::signalDeleteOneAddNotice, &receiver, [](quint64) {});
    connect(engine, &NoticeEngine::signalInitUiData, &receiver, []() {});
    QCOMPARE(engine->connectedSignals(),
             QStringList({QStringLiteral("signalDeleteOneAddNotice"), QStringLiteral("signalInitUiData")}));
}

// The error notice carries the host's text.
void TestVyrNoticeEngine::errorNoticeCarriesText()
{
    auto* engine = NoticeEngine::instance();
    QSignalSpy error(engine, &NoticeEngine::signalFriendRequestErrorNotice);
    engine->emitErrorNotice(QStringLiteral("busy"));
    QCOMPARE(error.count(), 1);
    QCOMPARE(error.first().first().toString(), QStringLiteral("busy"));
}

QTEST_MAIN(TestVyrNoticeEngine)
#include "tst_vyrnoticeengine.moc"
