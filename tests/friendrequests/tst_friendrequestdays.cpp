#include "FriendRequestFixture.h"
#include "FriendRequestModel.h"
#include "FriendRequestModelProbe.h"
#include "FriendRequestTreeRecorder.h"

#include <QAbstractItemModelTester>
#include <QtTest>
#include <memory>

using namespace Fr;
using VyrEngine::FriendRequestInfo;
using Probe = FriendRequestModelProbe;
using namespace FriendRequest;

// Day groups follow the local calendar day. CTest runs this in UTC, in
// Asia/Shanghai (UTC+8, no daylight saving), in America/Sao_Paulo (whose
// clocks skipped from midnight to one o'clock on 2018-11-04) and in
// America/New_York (whose clocks skipped from two to three on 2018-03-11);
// FRIEND_REQUEST_OFFSET says which, so a zone that was not applied fails
// instead of passing.
class TestFriendRequestDays : public QObject
{
    Q_OBJECT
private slots:
    void init();
    void cleanup();

    void zoneIsTheOneAskedFor();
    void localDayBoundary_data();
    void localDayBoundary();
    void sameUtcDayCanBeTwoLocalDays_data();
    void sameUtcDayCanBeTwoLocalDays();
    void updateAcrossMidnightMovesTheRow();
    void groupsFollowLocalDaysAcrossClockChanges();
    void firstPageAnchorIsEngineTimeInSeconds();

private:
    std::unique_ptr<FriendRequestModel> m_model;
    std::unique_ptr<QAbstractItemModelTester> m_tester;
};

void TestFriendRequestDays::init()
{
    resetKit();
    m_model = std::make_unique<FriendRequestModel>();
    m_tester = std::make_unique<QAbstractItemModelTester>(m_model.get(),
                                                          QAbstractItemModelTester::FailureReportingMode::QtTest);
}

void TestFriendRequestDays::cleanup()
{
    m_tester.reset();
    m_model.reset();
    resetKit();
}

// The process really runs in the zone its registration set.
void TestFriendRequestDays::zoneIsTheOneAskedFor()
{
    const QByteArray expected = qgetenv("FRIEND_REQUEST_OFFSET");
    QVERIFY(!expected.isEmpty());
    QCOMPARE(QDateTime::fromSecsSinceEpoch(1795103999).offsetFromUtc(), expected.toInt());
}

// 23:59:59 and 00:00:00 local time stand in two groups; a whole local day in one.
void TestFriendRequestDays::localDayBoundary_data()
{
    QTest::addColumn<quint64>("first");
    QTest::addColumn<quint64>("second");
    QTest::addColumn<QString>("treeText");
    QTest::newRow("last second, then first second of the next day")
        << at(1, 23, 59, 59) << at(0, 0, 0, 0) << QStringLiteral("[%1[p2] %2[p1]]").arg(day(0), day(1));
    QTest::newRow("first and last second of one day")
        << at(1, 0, 0, 0) << at(1, 23, 59, 59) << QStringLiteral("[%1[p2 p1]]").arg(day(1));
    QTest::newRow("midnight, then one second before it")
        << at(0, 0, 0, 0) << at(1, 23, 59, 59) << QStringLiteral("[%1[p2] %2[p1]]").arg(day(1), day(0));
}

void TestFriendRequestDays::localDayBoundary()
{
    QFETCH(quint64, first);
    QFETCH(quint64, second);
    QFETCH(QString, treeText);
    Probe::update(m_model.get(), from(1, 1, 4, first));
    Probe::update(m_model.get(), from(2, 2, 4, second));
    QCOMPARE(FriendRequestTree::text(m_model.get()), treeText);
}

// Two instants of one UTC day, 15:59:59 and 16:00:00 UTC, are two days in Shanghai (one
// in UTC, Sao Paulo and New York); each zone's run checks its own row.
void TestFriendRequestDays::sameUtcDayCanBeTwoLocalDays_data()
{
    QTest::addColumn<int>("offset");
    QTest::addColumn<QString>("treeText");
    QTest::newRow("UTC") << 0 << QStringLiteral("[2026-11-19[p2 p1]]");
    QTest::newRow("Asia/Shanghai") << 8 * 3600 << QStringLiteral("[2026-11-20[p2] 2026-11-19[p1]]");
    QTest::newRow("America/Sao_Paulo") << -3 * 3600 << QStringLiteral("[2026-11-19[p2 p1]]");
    QTest::newRow("America/New_York") << -5 * 3600 << QStringLiteral("[2026-11-19[p2 p1]]");
}

void TestFriendRequestDays::sameUtcDayCanBeTwoLocalDays()
{
    QFETCH(int, offset);
    QFETCH(QString, treeText);
    if (qgetenv("FRIEND_REQUEST_OFFSET").toInt() != offset)
        QSKIP("this row belongs to the other zone's run");
    Probe::update(m_model.get(), from(1, 1, 4, 1795103999));
    Probe::update(m_model.get(), from(2, 2, 4, 1795104000));
    QCOMPARE(FriendRequestTree::text(m_model.get()), treeText);
}

// Every twenty minutes over five days around the two clock changes of 2018 in
// Sao Paulo, midnight skipped in November and repeated in February, and New
// York's 02:00 skipped in March, a 23-hour day whose end is not a day after its
// start (the remembered day bounds must agree with Qt's own local date at each
// one): each row's day is its group's day, and no day has two groups.
void TestFriendRequestDays::groupsFollowLocalDaysAcrossClockChanges()
{
    const qint64 sinceUtc[] = {QDateTime(QDate(2018, 11, 2), QTime(0, 0), Qt::UTC).toSecsSinceEpoch(),
                               QDateTime(QDate(2018, 2, 16), QTime(0, 0), Qt::UTC).toSecsSinceEpoch(),
                               QDateTime(QDate(2018, 3, 9), QTime(0, 0), Qt::UTC).toSecsSinceEpoch()};
    quint64 person = 1;
    QSet<QDate> expectedDays;
    for (const qint64 start : sinceUtc) {
        for (qint64 t = start; t < start + 5 * 86400; t += 20 * 60, ++person) {
            Probe::update(m_model.get(), from(person, person, 4, quint64(t)));
            expectedDays.insert(QDateTime::fromSecsSinceEpoch(t).date());
        }
    }
    const auto localDay = [](const QModelIndex& index) {
        return QDateTime::fromSecsSinceEpoch(qint64(index.data(DateRole).toULongLong())).date();
    };
    QSet<QDate> groupDays;
    int rows = 0;
    for (int g = 0; g < m_model->rowCount(); ++g) {
        const QModelIndex group = m_model->index(g, 0);
        const QDate day = localDay(group);
        QVERIFY2(!groupDays.contains(day), qPrintable(day.toString(Qt::ISODate)));
        groupDays.insert(day);
        for (int r = 0; r < m_model->rowCount(group); ++r, ++rows)
            QCOMPARE(localDay(m_model->index(r, 0, group)), day);
    }
    QCOMPARE(rows, int(person - 1));
    QCOMPARE(groupDays, expectedDays);
}

// A new request one local second after midnight moves the person to the new day.
void TestFriendRequestDays::updateAcrossMidnightMovesTheRow()
{
    Probe::update(m_model.get(), from(1, 1, 4, at(1, 23, 59, 59)));
    Probe::update(m_model.get(), from(1, 2, 2, at(0, 0, 0, 0)));
    QCOMPARE(FriendRequestTree::text(m_model.get()), QStringLiteral("[%1[p1]]").arg(day(0)));
    Probe::update(m_model.get(), from(1, 3, 6, at(0, 23, 59, 59)));
    QCOMPARE(FriendRequestTree::rows(m_model.get()), QStringLiteral("p1:6:m3:2:1>1000"));
}

// The first page's date anchor is the engine's clock in seconds, whatever the zone.
void TestFriendRequestDays::firstPageAnchorIsEngineTimeInSeconds()
{
    VyrEngine::CoreEngine::instance()->setCurrentTime(1795104000);
    m_model->initUiData();
    QCOMPARE(VyrEngine::NoticeEngine::instance()->friendRequestQueries().first().date, quint64(1795104000));
}

QTEST_MAIN(TestFriendRequestDays)
#include "tst_friendrequestdays.moc"
