#include "FriendRequestFixture.h"
#include "FriendRequestModel.h"
#include "FriendRequestModelProbe.h"
#include "FriendRequestTreeRecorder.h"
#include "LocalDays_p.h"
#include "LogCapture.h"

#include <QAbstractItemModelTester>
#include <QtTest>
#include <memory>
#include <time.h>

using namespace Fr;
using Probe = FriendRequestModelProbe;

namespace {

// Puts the process into another time zone, as a change of the system's zone
// would, and back when it goes.
class ZoneSwitch
{
public:
    explicit ZoneSwitch(const QByteArray& zone)
        : m_wasSet(qEnvironmentVariableIsSet("TZ"))
        , m_previous(qgetenv("TZ"))
    {
        qputenv("TZ", zone);
        tzset();
    }
    ~ZoneSwitch()
    {
        if (m_wasSet)
            qputenv("TZ", m_previous);
        else
            qunsetenv("TZ");
        tzset();
    }

private:
    bool m_wasSet;
    QByteArray m_previous;
};

qint64 utc(int day, int hour)
{
    return QDateTime(QDate(2026, 11, day), QTime(hour, 0), Qt::UTC).toSecsSinceEpoch();
}

} // namespace

// Day groups when the system's time zone changes while the client runs. Runs
// in UTC; Pacific/Honolulu is UTC-10 all year.
class TestFriendRequestZone : public QObject
{
    Q_OBJECT
private slots:
    void init();
    void cleanup();

    void qtFollowsTheZoneAtOnce();
    void knownDaysGoWithTheZone_data();
    void knownDaysGoWithTheZone();
    void requestAfterAZoneChangeLandsInItsNewDay();
};

void TestFriendRequestZone::init()
{
    resetKit();
}

void TestFriendRequestZone::cleanup()
{
    resetKit();
}

// What the cached days have to follow: Qt 5.15 re-reads TZ on each local
// conversion and for the system zone's id; nothing of Qt's own is stale.
void TestFriendRequestZone::qtFollowsTheZoneAtOnce()
{
    QCOMPARE(qgetenv("TZ"), QByteArray("UTC"));
    QCOMPARE(QDateTime::fromSecsSinceEpoch(utc(19, 5)).date(), QDate(2026, 11, 19));
    ZoneSwitch honolulu("Pacific/Honolulu");
    QCOMPARE(QDateTime::fromSecsSinceEpoch(utc(19, 5)).date(), QDate(2026, 11, 18));
    QCOMPARE(QTimeZone::systemTimeZoneId(), QByteArray("Pacific/Honolulu"));
    QCOMPARE(QTimeZone::systemTimeZone().offsetFromUtc(QDateTime::fromSecsSinceEpoch(utc(19, 5), Qt::UTC)), -36000);
}

void TestFriendRequestZone::knownDaysGoWithTheZone_data()
{
    QTest::addColumn<QByteArray>("zone");
    QTest::addColumn<qint64>("after");
    QTest::addColumn<QDate>("day");
    QTest::addColumn<int>("knownDays");
    QTest::newRow("same zone, a second on") << QByteArray("UTC") << qint64(1000) << QDate(2026, 11, 19) << 1;
    QTest::newRow("new zone, within the second") << QByteArray("Pacific/Honolulu") << qint64(999)
                                                 << QDate(2026, 11, 19) << 1;
    QTest::newRow("new zone, a second on") << QByteArray("Pacific/Honolulu") << qint64(1000) << QDate(2026, 11, 18)
                                           << 1;
    QTest::newRow("new zone, much later") << QByteArray("Asia/Shanghai") << qint64(3600000) << QDate(2026, 11, 19)
                                          << 1;
}

// Remembered day bounds are dropped when the zone changed, found by a look at
// the zone at most once a second (on a clock the test drives).
void TestFriendRequestZone::knownDaysGoWithTheZone()
{
    QFETCH(QByteArray, zone);
    QFETCH(qint64, after);
    QFETCH(QDate, day);
    QFETCH(int, knownDays);
    qint64 clock = 0;
    LocalDays days([&clock]() { return clock; });
    QCOMPARE(days.dayOf(utc(19, 5)), QDate(2026, 11, 19));
    QCOMPARE(days.knownDays(), 1);
    ZoneSwitch other(zone);
    clock = after;
    QCOMPARE(days.dayOf(utc(19, 5)), day);
    QCOMPARE(days.knownDays(), knownDays);
}

// After the system's zone changed, the next update, page or delete first
// moves the rows whose day changed to their new day's group (two groups that
// now lie in one day become one), then does its own work by the new zone's
// days; the person's next request finds the moved row.
void TestFriendRequestZone::requestAfterAZoneChangeLandsInItsNewDay()
{
    struct Page
    {
        FriendRequestModel model;
        QAbstractItemModelTester tester{&model, QAbstractItemModelTester::FailureReportingMode::QtTest};
        FriendRequestTreeRecorder recorder{&model};
    };
    // 12:00, 06:00, 05:00, 04:00 and 07:00 UTC are one day in UTC; in Honolulu
    // 12:00 is 02:00 on the 19th and the others lie on the evening of the 18th.
    Page updated, paged, deleted, merged;
    // Two days in UTC, one in Honolulu: 20:00 on the 19th and 02:00 on the 20th.
    Probe::update(&merged.model, from(5, 10, 4, quint64(utc(19, 20))));
    Probe::update(&merged.model, from(6, 11, 4, quint64(utc(20, 2))));
    QCOMPARE(FriendRequestTree::text(&merged.model), QStringLiteral("[2026-11-20[p6] 2026-11-19[p5]]"));
    merged.recorder.clear();
    for (Page* page : {&updated, &paged, &deleted}) {
        Probe::update(&page->model, from(1, 1, 4, quint64(utc(19, 12))));
        Probe::update(&page->model, from(3, 2, 4, quint64(utc(19, 6))));
        QCOMPARE(FriendRequestTree::text(&page->model), QStringLiteral("[2026-11-19[p3 p1]]"));
        page->recorder.clear();
    }
    ZoneSwitch honolulu("Pacific/Honolulu");
    // The zone is looked at once a second at most.
    QTest::qSleep(int(LocalDays::ZoneCheckInterval) + 50);

    LogCapture log;
    Probe::update(&updated.model, from(2, 3, 4, quint64(utc(19, 5))));
    QCOMPARE(FriendRequestTree::text(&updated.model), QStringLiteral("[2026-11-19[p1] 2026-11-18[p2 p3]]"));
    QCOMPARE(updated.recorder.joined(), QStringLiteral("rem(0:0) ins(-:1) ins(1:0) ins(1:0) change need(1) expand"));
    const auto lines = log.matching(QStringLiteral("time zone changed, friend requests regrouped by day, rows moved: 1"));
    QCOMPARE(lines.size(), 1);
    QCOMPARE(lines[0].type, QtInfoMsg);
    QVERIFY(lines[0].file.endsWith(QLatin1String("src/plugins/im/VyrNotice/FriendRequestModel.cpp")));
    // The moved row keeps its whole record.
    QCOMPARE(FriendRequestTree::rows(&updated.model),
             QStringLiteral("p1:4:m1:1:1>1000 p2:4:m3:3:2>1000 p3:4:m2:2:3>1000"));
    updated.recorder.clear();
    Probe::update(&updated.model, from(3, 4, 2, quint64(utc(19, 7))));
    QCOMPARE(FriendRequestTree::text(&updated.model), QStringLiteral("[2026-11-19[p1] 2026-11-18[p2 p3]]"));
    QCOMPARE(updated.recorder.joined(), QStringLiteral("data(1) expand"));
    QCOMPARE(FriendRequestTree::rows(&updated.model),
             QStringLiteral("p1:4:m1:1:1>1000 p2:4:m3:3:2>1000 p3:2:m4:2:3>1000"));

    Probe::page(&paged.model, {from(4, 5, 4, quint64(utc(19, 4)))});
    QCOMPARE(FriendRequestTree::text(&paged.model), QStringLiteral("[2026-11-19[p1] 2026-11-18[p3 p4]]"));
    QCOMPARE(paged.recorder.joined(), QStringLiteral("rem(0:0) ins(-:1) ins(1:0) ins(1:1) expand change change"));

    QVERIFY(deleted.model.deleteOneNoticeSlot(3));
    QCOMPARE(FriendRequestTree::text(&deleted.model), QStringLiteral("[2026-11-19[p1]]"));
    QCOMPARE(deleted.recorder.joined(), QStringLiteral("rem(0:0) ins(-:1) ins(1:0) rem(-:1) expand change"));
    QVERIFY(!Probe::dates(&deleted.model).contains(3));

    // Two groups that now lie in one day become one, so the day's next request makes one row.
    Probe::update(&merged.model, from(7, 12, 4, quint64(utc(19, 22))));
    QCOMPARE(FriendRequestTree::text(&merged.model), QStringLiteral("[2026-11-19[p7 p6 p5]]"));
    QCOMPARE(merged.recorder.joined(), QStringLiteral("rem(-:1) ins(0:1) ins(0:0) change need(0) expand"));
}

QTEST_MAIN(TestFriendRequestZone)
#include "tst_friendrequestzone.moc"
