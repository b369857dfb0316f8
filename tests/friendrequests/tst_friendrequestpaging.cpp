#include "FriendRequestFixture.h"
#include "FriendRequestModel.h"
#include "FriendRequestModelProbe.h"
#include "FriendRequestTreeRecorder.h"
#include "ModelTesterComplaints.h"

#include <QAbstractItemModelTester>
#include <QElapsedTimer>
#include <QTimer>
#include <QtConcurrent>
#include <QtTest>
#include <memory>

using namespace Fr;
using VyrEngine::FriendRequestInfo;
using VyrEngine::NoticeEngine;
using Probe = FriendRequestModelProbe;
using namespace FriendRequest;

// Later pages on the global thread pool, and live records from other threads meanwhile.
class TestFriendRequestPaging : public QObject
{
    Q_OBJECT
private slots:
    void init();
    void cleanup();

    void emptyTreeStartsNoTask();
    void pageAnchorsOnLastRowInModelOrder();
    void slowPageLeavesGuiThreadTurning();
    void pageOfKnownPeopleAddsNothingButSignalsOnce();
    void pageSkipsOwnRefusedAndNextAnchorIsLastAdded();
    void pageRowsGoToEndOfDayOrNewGroupAtEnd();
    void failingPageChangesNothing();
    void emptyAnswerStillSignalsOnce();
    void overlappingPagesLeaveOneRowPerPerson();
    void recordsFromAnotherThreadDuringAPage();
    void deleteOfLastRowFromAnotherThreadFlipsToEmpty();
    void pageWithDuplicatesAndDisorder();

private:
    void fill(const QList<FriendRequestInfo>& records);
    QString tree() const { return FriendRequestTree::text(m_model.get()); }

    std::unique_ptr<FriendRequestModel> m_model;
    std::unique_ptr<FriendRequestTreeRecorder> m_recorder;
    std::unique_ptr<ModelTesterComplaints> m_complaints;
    std::unique_ptr<QAbstractItemModelTester> m_tester;
};

void TestFriendRequestPaging::init()
{
    resetKit();
    m_model = std::make_unique<FriendRequestModel>();
    m_recorder = std::make_unique<FriendRequestTreeRecorder>(m_model.get());
    // A page that makes a group behind others trips the tester with lastAdd's
    // intended second insert; that complaint alone is allowed here (see cleanup).
    m_complaints = std::make_unique<ModelTesterComplaints>();
    m_tester = std::make_unique<QAbstractItemModelTester>(m_model.get(),
                                                          QAbstractItemModelTester::FailureReportingMode::Warning);
}

void TestFriendRequestPaging::cleanup()
{
    settle();
    const QStringList other = m_complaints->unexpected({QStringLiteral("rowCount(parent)")});
    m_tester.reset();
    m_complaints.reset();
    m_recorder.reset();
    m_model.reset();
    resetKit();
    QCOMPARE(other, QStringList());
}

// Live records into the tree, then a clean recorder.
void TestFriendRequestPaging::fill(const QList<FriendRequestInfo>& records)
{
    for (const FriendRequestInfo& info : records)
        m_model->contactorAddNoticeSlot(info);
    m_recorder->clear();
}

// With no row there is no anchor, and no task starts.
void TestFriendRequestPaging::emptyTreeStartsNoTask()
{
    NoticeEngine::instance()->putFriendRequest(from(7, 1, 4, at(0)));
    m_model->loadMoreUiData();
    settle();
    QCOMPARE(NoticeEngine::instance()->friendRequestQueries().size(), 0);
    QCOMPARE(m_recorder->joined(), QString());
}

// The page asks 30 records after the last row of the last group, in model order, off the GUI thread.
void TestFriendRequestPaging::pageAnchorsOnLastRowInModelOrder()
{
    // Live records put newer rows on top; the last row in model order is the oldest of the oldest day.
    fill({from(3, 30, 4, at(2, 10)), from(4, 31, 4, at(2, 9)), from(5, 32, 4, at(0))});
    QCOMPARE(tree(), QStringLiteral("[%1[p5] %2[p4 p3]]").arg(day(0), day(2)));
    m_model->loadMoreUiData();
    settle();
    const auto queries = NoticeEngine::instance()->friendRequestQueries();
    QCOMPARE(queries.size(), 1);
    QCOMPARE(queries.first().count, 30);
    QCOMPARE(queries.first().date, at(2, 10));
    QCOMPARE(queries.first().sequenceId, 30);
    QVERIFY(!queries.first().onEngineThread);
}

// A page whose query takes 300 ms keeps the GUI thread's timers running meanwhile.
void TestFriendRequestPaging::slowPageLeavesGuiThreadTurning()
{
    fill({from(3, 30, 4, at(1))});
    NoticeEngine::instance()->putFriendRequest(from(8, 20, 4, at(2)));
    NoticeEngine::instance()->setFriendRequestsDelay(300);
    int ticks = 0;
    qint64 worstGap = 0;
    QElapsedTimer clock;
    clock.start();
    qint64 last = 0;
    QTimer probe;
    connect(&probe, &QTimer::timeout, this, [&]() {
        ++ticks;
        worstGap = qMax(worstGap, clock.elapsed() - last);
        last = clock.elapsed();
    });
    probe.start(10);
    QElapsedTimer spent;
    spent.start();
    m_model->loadMoreUiData();
    // loadMoreUiData itself returns at once.
    QVERIFY2(spent.elapsed() < 100, qPrintable(QString::number(spent.elapsed())));
    QTRY_COMPARE_WITH_TIMEOUT(m_model->rowCount(), 2, 5000);
    probe.stop();
    QVERIFY2(spent.elapsed() >= 290, qPrintable(QString::number(spent.elapsed())));
    QVERIFY2(ticks >= 10, qPrintable(QString::number(ticks)));
    QVERIFY2(worstGap < 150, qPrintable(QString::number(worstGap)));
    QCOMPARE(tree(), QStringLiteral("[%1[p3] %2[p8]]").arg(day(1), day(2)));
}

// A page in which everybody already has a row adds nothing and still signals a change once.
void TestFriendRequestPaging::pageOfKnownPeopleAddsNothingButSignalsOnce()
{
    fill({from(3, 30, 4, at(1)), from(5, 31, 4, at(0))});
    NoticeEngine::instance()->queueFriendRequestsAnswer({from(3, 10, 2, at(3)), from(5, 11, 2, at(4))});
    const QString rows = FriendRequestTree::rows(m_model.get());
    m_model->loadMoreUiData();
    settle();
    QCOMPARE(FriendRequestTree::rows(m_model.get()), rows);
    QCOMPARE(m_recorder->joined(), QStringLiteral("change"));
}

// The user's own refused request in a page is skipped, so the next anchor is the last row really added.
void TestFriendRequestPaging::pageSkipsOwnRefusedAndNextAnchorIsLastAdded()
{
    auto* engine = NoticeEngine::instance();
    fill({from(3, 30, 4, at(0))});
    engine->putFriendRequest(from(8, 20, 4, at(2)));
    engine->putFriendRequest(to(9, 10, RefusedByPeer, at(3)));
    m_model->loadMoreUiData();
    settle();
    QCOMPARE(tree(), QStringLiteral("[%1[p3] %2[p8]]").arg(day(0), day(2)));
    m_recorder->clear();
    m_model->loadMoreUiData();
    settle();
    const auto queries = engine->friendRequestQueries();
    QCOMPARE(queries.size(), 2);
    QCOMPARE(queries.at(1).date, at(2));
    QCOMPARE(queries.at(1).sequenceId, 20);
    // The second page holds only the refused record again: nothing added, one change.
    QCOMPARE(tree(), QStringLiteral("[%1[p3] %2[p8]]").arg(day(0), day(2)));
    QCOMPARE(m_recorder->joined(), QStringLiteral("change"));
}

// A page's new person on a day with a group goes to its end; on a new day, a new group at the root's end.
void TestFriendRequestPaging::pageRowsGoToEndOfDayOrNewGroupAtEnd()
{
    fill({from(3, 30, 4, at(1, 20)), from(5, 31, 4, at(0))});
    NoticeEngine::instance()->queueFriendRequestsAnswer({from(6, 12, 4, at(1, 8)), from(7, 11, 4, at(4))});
    m_model->loadMoreUiData();
    settle();
    QCOMPARE(tree(), QStringLiteral("[%1[p5] %2[p3 p6] %3[p7]]").arg(day(0), day(1), day(4)));
    QCOMPARE(m_recorder->joined(), QStringLiteral("ins(1:1) expand change ins(-:2) ins(-:3) expand change change"));
}

// A page that fails ends without a trace.
void TestFriendRequestPaging::failingPageChangesNothing()
{
    fill({from(3, 30, 4, at(1))});
    NoticeEngine::instance()->putFriendRequest(from(8, 20, 4, at(2)));
    NoticeEngine::instance()->setFriendRequestsFail(true);
    m_model->loadMoreUiData();
    settle();
    QCOMPARE(NoticeEngine::instance()->friendRequestQueries().size(), 1);
    QCOMPARE(tree(), QStringLiteral("[%1[p3]]").arg(day(1)));
    QCOMPARE(m_recorder->joined(), QString());
}

// An answer of true with no record still tells the page once.
void TestFriendRequestPaging::emptyAnswerStillSignalsOnce()
{
    fill({from(3, 30, 4, at(1))});
    NoticeEngine::instance()->queueFriendRequestsAnswer({}, true);
    m_model->loadMoreUiData();
    settle();
    QCOMPARE(m_recorder->joined(), QStringLiteral("change"));
    // Reaching the end again asks again: no state says everything is loaded.
    m_model->loadMoreUiData();
    settle();
    QCOMPARE(NoticeEngine::instance()->friendRequestQueries().size(), 2);
}

// Two pages with the same anchor running at once leave one row for each person.
void TestFriendRequestPaging::overlappingPagesLeaveOneRowPerPerson()
{
    auto* engine = NoticeEngine::instance();
    fill({from(3, 30, 4, at(0))});
    for (int i = 0; i < 6; ++i)
        engine->putFriendRequest(from(10 + i, 20 - i, 4, at(1 + i / 2, 12 - i)));
    engine->setFriendRequestsHeld(true);
    m_model->loadMoreUiData();
    m_model->loadMoreUiData();
    QVERIFY(engine->waitForFriendRequestsCalls(2, 5000));
    const auto queries = engine->friendRequestQueries();
    QCOMPARE(queries.at(0).date, queries.at(1).date);
    QCOMPARE(queries.at(0).sequenceId, queries.at(1).sequenceId);
    engine->setFriendRequestsHeld(false);
    settle();
    QCOMPARE(tree(), QStringLiteral("[%1[p3] %2[p10 p11] %3[p12 p13] %4[p14 p15]]").arg(day(0), day(1), day(2), day(3)));
    QCOMPARE(m_recorder->count(QStringLiteral("change")), 6 + 2);
}

// Live records emitted from another thread while a page is out are folded in
// with it; the newer live record keeps the person's row.
void TestFriendRequestPaging::recordsFromAnotherThreadDuringAPage()
{
    auto* engine = NoticeEngine::instance();
    fill({from(3, 30, 4, at(0, 8)), from(4, 31, 4, at(1))});
    engine->putFriendRequest(from(5, 20, 5, at(2), QStringLiteral("paged")));
    engine->putFriendRequest(from(6, 19, 5, at(2, 11)));
    engine->setFriendRequestsHeld(true);
    m_model->loadMoreUiData();
    QVERIFY(engine->waitForFriendRequestsCalls(1, 5000));
    QThread* guiThread = QThread::currentThread();
    QThread* emitter = nullptr;
    QObject listener;
    QObject::connect(engine, &NoticeEngine::signalContactorAddNotice, &listener,
                     [&emitter](const FriendRequestInfo&) { emitter = QThread::currentThread(); },
                     Qt::DirectConnection);
    engine->emitRecordSignalFromThread(NoticeEngine::ContactorAdd, from(5, 40, 4, at(0, 9), QStringLiteral("live")));
    engine->emitDeleteSignalFromThread(4);
    engine->waitForThreadEmissions();
    QVERIFY(emitter && emitter != guiThread);
    engine->setFriendRequestsHeld(false);
    settle();
    QCOMPARE(tree(), QStringLiteral("[%1[p5 p3] %2[p6]]").arg(day(0), day(2)));
    QCOMPARE(FriendRequestTree::rows(m_model.get()).section(QLatin1Char(' '), 0, 0), QStringLiteral("p5:4:live:40:5>1000"));
}

// The engine's delete of the last row, from another thread, empties the tree and the page hears it.
void TestFriendRequestPaging::deleteOfLastRowFromAnotherThreadFlipsToEmpty()
{
    fill({from(3, 30, 4, at(0))});
    NoticeEngine::instance()->emitDeleteSignalFromThread(3);
    NoticeEngine::instance()->waitForThreadEmissions();
    QCOMPARE(m_model->rowCount(), 1);
    settle();
    QVERIFY(m_model->isFriendRequestEmpty());
    QCOMPARE(m_recorder->joined(), QStringLiteral("rem(-:0) expand change"));
}

// A page answer with one person thrice and days out of order still leaves one row each.
void TestFriendRequestPaging::pageWithDuplicatesAndDisorder()
{
    fill({from(3, 30, 4, at(0))});
    NoticeEngine::instance()->queueFriendRequestsAnswer({from(4, 12, 4, at(3), QStringLiteral("first")),
                                                         from(6, 14, 4, at(1)), from(4, 11, 4, at(2)),
                                                         from(3, 10, 4, at(5)), from(4, 13, 4, at(6)),
                                                         from(7, 15, 4, at(3, 1))});
    m_model->loadMoreUiData();
    settle();
    QCOMPARE(tree(), QStringLiteral("[%1[p3] %2[p4 p7] %3[p6]]").arg(day(0), day(3), day(1)));
    QCOMPARE(Probe::dates(m_model.get()).value(4), at(3));
}

QTEST_MAIN(TestFriendRequestPaging)
#include "tst_friendrequestpaging.moc"
