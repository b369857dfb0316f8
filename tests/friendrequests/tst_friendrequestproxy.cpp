#include "FriendRequestFixture.h"
#include "FriendRequestModel.h"
#include "FriendRequestModelProbe.h"
#include "FriendRequestSortFilterProxyModel_p.h"
#include "FriendRequestTreeRecorder.h"

#include <QAbstractItemModelTester>
#include <QStandardItemModel>
#include <QtTest>
#include <memory>

using namespace Fr;
using Probe = FriendRequestModelProbe;
using namespace FriendRequest;

// The proxy between the friend-request tree and its view: settings, the
// newest-first order of days and rows, unsigned dates, and what Qt does with
// rows of the same second.
class TestFriendRequestProxy : public QObject
{
    Q_OBJECT
private slots:
    void init();
    void cleanup();

    void constructorSortsByDateDescendingAndDynamically();
    void daysAndRowsStandNewestFirst();
    void filtersNothing();
    void datesCompareUnsigned();
    void tiesWhenSortedAtOnce_data();
    void tiesWhenSortedAtOnce();
    void tieArrivingLive();
    void liveRecordOfANewDayGoesOnTop();
    void pageOpeningADayLeavesABlankProxyRow();
    void inPlaceUpdateLeavesTheRowWhereItStands();
    void deletionFollows();

private:
    void attach();
    QString source() const { return FriendRequestTree::text(m_model.get()); }
    QString view() const { return FriendRequestTree::text(m_proxy.get()); }

    std::unique_ptr<FriendRequestModel> m_model;
    std::unique_ptr<FriendRequestSortFilterProxyModel> m_proxy;
    std::unique_ptr<QAbstractItemModelTester> m_tester;
};

void TestFriendRequestProxy::init()
{
    resetKit();
    m_model = std::make_unique<FriendRequestModel>();
}

void TestFriendRequestProxy::cleanup()
{
    m_tester.reset();
    m_proxy.reset();
    m_model.reset();
}

void TestFriendRequestProxy::attach()
{
    m_proxy = std::make_unique<FriendRequestSortFilterProxyModel>(m_model.get());
    m_tester = std::make_unique<QAbstractItemModelTester>(m_proxy.get(),
                                                          QAbstractItemModelTester::FailureReportingMode::QtTest);
}

// The constructor sets the source, sorts column 0 by the date role, descending, and keeps sorting.
void TestFriendRequestProxy::constructorSortsByDateDescendingAndDynamically()
{
    QObject owner;
    FriendRequestSortFilterProxyModel proxy(m_model.get(), &owner);
    QCOMPARE(proxy.sourceModel(), m_model.get());
    QCOMPARE(proxy.parent(), &owner);
    QCOMPARE(proxy.sortRole(), 102);
    QCOMPARE(proxy.sortColumn(), 0);
    QCOMPARE(proxy.sortOrder(), Qt::DescendingOrder);
    QVERIFY(proxy.dynamicSortFilter());
}

// Whatever order the model holds, days stand newest first and rows inside a day newest first.
void TestFriendRequestProxy::daysAndRowsStandNewestFirst()
{
    // Pages fill in at the end, oldest last; a later page may bring an older row of a shown day.
    Probe::loadMore(m_model.get(), from(1, 1, 4, at(0, 9)));
    Probe::loadMore(m_model.get(), from(2, 2, 4, at(0, 8)));
    Probe::loadMore(m_model.get(), from(3, 3, 4, at(2, 10)));
    Probe::loadMore(m_model.get(), from(4, 4, 4, at(0, 11)));
    Probe::update(m_model.get(), from(5, 5, 4, at(1, 7)));
    QCOMPARE(source(), QStringLiteral("[%1[p5] %2[p1 p2 p4] %3[p3]]").arg(day(1), day(0), day(2)));
    attach();
    QCOMPARE(view(), QStringLiteral("[%1[p4 p1 p2] %2[p5] %3[p3]]").arg(day(0), day(1), day(2)));
}

// Every row of the model is in the proxy, unknown statuses and blank dates included.
void TestFriendRequestProxy::filtersNothing()
{
    Probe::update(m_model.get(), from(1, 1, 99, at(0)));
    Probe::update(m_model.get(), from(2, 2, -3, 0));
    Probe::update(m_model.get(), from(3, 3, 6, at(0, 1)));
    attach();
    QCOMPARE(m_proxy->rowCount(), m_model->rowCount());
    QCOMPARE(view(), QStringLiteral("[%1[p1 p3] %2[p2]]").arg(day(0), QStringLiteral("1970-01-01")));
}

// Dates are read as unsigned 64-bit numbers: one past the signed range is the newest, not the oldest.
void TestFriendRequestProxy::datesCompareUnsigned()
{
    QStandardItemModel plain;
    const QList<quint64> dates = {5, Q_UINT64_C(0x8000000000000000), 0, Q_UINT64_C(0xFFFFFFFFFFFFFFFF), 1800000000};
    for (quint64 date : dates) {
        auto* item = new QStandardItem();
        item->setData(QVariant::fromValue<qulonglong>(date), DateRole);
        plain.appendRow(item);
    }
    FriendRequestSortFilterProxyModel proxy(&plain);
    QStringList order;
    for (int r = 0; r < proxy.rowCount(); ++r)
        order << QString::number(proxy.index(r, 0).data(DateRole).toULongLong());
    QCOMPARE(order.join(' '), QStringLiteral("18446744073709551615 9223372036854775808 1800000000 5 0"));
}

void TestFriendRequestProxy::tiesWhenSortedAtOnce_data()
{
    QTest::addColumn<bool>("live");
    QTest::addColumn<QString>("model");
    QTest::newRow("preAdd-puts-in-front") << true << "[%1[p3 p2 p1]]";
    QTest::newRow("lastAdd-puts-behind") << false << "[%1[p1 p2 p3]]";
}

// Rows of the same second, sorted in one go, keep the model's order: the sort is stable.
void TestFriendRequestProxy::tiesWhenSortedAtOnce()
{
    QFETCH(bool, live);
    QFETCH(QString, model);
    for (quint64 peer : {1, 2, 3}) {
        if (live)
            Probe::update(m_model.get(), from(peer, int(peer), 4, at(0, 9)));
        else
            Probe::loadMore(m_model.get(), from(peer, int(peer), 4, at(0, 9)));
    }
    QCOMPARE(source(), model.arg(day(0)));
    attach();
    QCOMPARE(view(), model.arg(day(0)));
}

// A row of an existing second that arrives while the proxy is attached goes behind its equals.
void TestFriendRequestProxy::tieArrivingLive()
{
    Probe::update(m_model.get(), from(1, 1, 4, at(0, 9)));
    attach();
    Probe::update(m_model.get(), from(2, 2, 4, at(0, 9)));
    QCOMPARE(source(), QStringLiteral("[%1[p2 p1]]").arg(day(0)));
    // Qt places an inserted row after the rows it compares equal to, whatever its place in the model;
    // only a full sort (a new proxy, or invalidate()) brings back the model's order.
    QCOMPARE(view(), QStringLiteral("[%1[p1 p2]]").arg(day(0)));
    m_proxy->invalidate();
    QCOMPARE(view(), QStringLiteral("[%1[p2 p1]]").arg(day(0)));
}

// A live record of a new day makes a group that stands first, however the model placed it.
void TestFriendRequestProxy::liveRecordOfANewDayGoesOnTop()
{
    Probe::loadMore(m_model.get(), from(1, 1, 4, at(2)));
    attach();
    Probe::update(m_model.get(), from(2, 2, 4, at(0)));
    Probe::update(m_model.get(), from(3, 3, 4, at(1)));
    QCOMPARE(source(), QStringLiteral("[%1[p3] %2[p2] %3[p1]]").arg(day(1), day(0), day(2)));
    QCOMPARE(view(), QStringLiteral("[%1[p2] %2[p3] %3[p1]]").arg(day(0), day(1), day(2)));
}

// A page that opens a day behind two others: the model's second insertion names the root, so the
// proxy gains a row with no source behind it. It reads as date 0, which the delegate gives no space.
void TestFriendRequestProxy::pageOpeningADayLeavesABlankProxyRow()
{
    Probe::loadMore(m_model.get(), from(1, 1, 4, at(0)));
    Probe::loadMore(m_model.get(), from(2, 2, 4, at(1)));
    attach();
    Probe::loadMore(m_model.get(), from(3, 3, 4, at(2)));
    QCOMPARE(source(), QStringLiteral("[%1[p1] %2[p2] %3[p3]]").arg(day(0), day(1), day(2)));
    QCOMPARE(view(), QStringLiteral("[%1[p1] %2[p2] %3[p3] 1970-01-01[]]").arg(day(0), day(1), day(2)));
    QCOMPARE(m_proxy->index(3, 0).data(DateRole).toULongLong(), 0u);
}

// A later request of the same day updates the row in place; the model signals another index, so the proxy
// doesn't sort again and the row keeps its place until the next full sort.
void TestFriendRequestProxy::inPlaceUpdateLeavesTheRowWhereItStands()
{
    Probe::update(m_model.get(), from(1, 1, 4, at(0, 9)));
    Probe::update(m_model.get(), from(2, 2, 4, at(0, 10)));
    attach();
    QCOMPARE(view(), QStringLiteral("[%1[p2 p1]]").arg(day(0)));
    Probe::update(m_model.get(), from(1, 11, 4, at(0, 11)));
    QCOMPARE(view(), QStringLiteral("[%1[p2 p1]]").arg(day(0)));
    m_proxy->invalidate();
    QCOMPARE(view(), QStringLiteral("[%1[p1 p2]]").arg(day(0)));
}

// A removed row and an emptied day leave the proxy too.
void TestFriendRequestProxy::deletionFollows()
{
    Probe::update(m_model.get(), from(1, 1, 4, at(0, 9)));
    Probe::update(m_model.get(), from(2, 2, 4, at(0, 10)));
    Probe::update(m_model.get(), from(3, 3, 4, at(1, 10)));
    attach();
    m_model->deleteOneNoticeSlot(2);
    m_model->deleteOneNoticeSlot(3);
    QCOMPARE(view(), QStringLiteral("[%1[p1]]").arg(day(0)));
}

QTEST_MAIN(TestFriendRequestProxy)
#include "tst_friendrequestproxy.moc"
