#include "ContactsEngine.h"
#include "CoreEngine.h"
#include "FriendRequestFixture.h"
#include "FriendRequestModel.h"
#include "FriendRequestTreeRecorder.h"
#include "FriendRequestTreeViewProbe.h"
#include "NoticeEngine.h"
#include "TestKit.h"
#include "UserInfo.h"
#include "friendrequesttreeview.h"

#include <QScrollBar>
#include <QSignalSpy>
#include <QSortFilterProxyModel>
#include <QtTest>
#include <memory>

using namespace Fr;
using namespace FriendRequest;
using Probe = FriendRequestTreeViewProbe;

// The page's day groups stay open by themselves through every kind of change,
// rows never have children, and odd answers give the rows they always gave.
class TestFriendRequestOpen : public QObject
{
    Q_OBJECT
private slots:
    void initTestCase();
    void init();
    void cleanup();

    void rowsNeverHaveChildrenGroupsMay_data();
    void rowsNeverHaveChildrenGroupsMay();
    void groupsOpenAfterEachChange_data();
    void groupsOpenAfterEachChange();
    void rowsAreNotKeptAsOpen();
    void emptyPageAnswerChangesNothing();
    void hugePageAnswerAtOnce();
    void deleteOfEveryRow();
    void updateForARowNotYetLoaded();
    void everyExpandSignalStillComes();

private:
    void showWithFirstPage(int people, int perDay);
    void checkAllOpen();
    QModelIndex leafOf(quint64 peer) const;
    int shownRows() const;
    QVector<VyrEngine::FriendRequestInfo> people(int first, int count, int perDay) const;

    std::unique_ptr<FriendRequestTreeView> m_view;
};

void TestFriendRequestOpen::initTestCase()
{
    QVERIFY(TestKit::loadTranslations(QStringLiteral("en")));
}

void TestFriendRequestOpen::init()
{
    resetKit();
    VyrEngine::CoreEngine::instance()->setCurrentTime(static_cast<qint64>(at(0, 15)));
}

void TestFriendRequestOpen::cleanup()
{
    m_view.reset();
    settle();
}

// People first..first+count-1 from person 3000 on, newest first, `perDay` a day from day 0 back.
QVector<VyrEngine::FriendRequestInfo> TestFriendRequestOpen::people(int first, int count, int perDay) const
{
    QVector<VyrEngine::FriendRequestInfo> out;
    out.reserve(count);
    for (int i = first; i < first + count; ++i)
        out << from(3000 + quint64(i), 3000 + i, AwaitingMyAnswer, at(i / perDay, 12) - quint64(i % perDay));
    return out;
}

void TestFriendRequestOpen::showWithFirstPage(int count, int perDay)
{
    VyrEngine::NoticeEngine::instance()->queueFriendRequestsAnswer(people(0, count, perDay));
    m_view = std::make_unique<FriendRequestTreeView>();
    m_view->resize(640, 400);
    m_view->show();
    QVERIFY(QTest::qWaitForWindowExposed(m_view.get()));
    m_view->initUiData();
    settle();
}

QModelIndex TestFriendRequestOpen::leafOf(quint64 peer) const
{
    return Fr::leafOf(m_view->model(), peer);
}

int TestFriendRequestOpen::shownRows() const
{
    QAbstractItemModel* model = m_view->model();
    int rows = 0;
    for (int g = 0; g < model->rowCount(); ++g)
        rows += model->rowCount(model->index(g, 0));
    return rows;
}

// Every group open through the proxy, every row laid out, and the rows in sight painted where they stand.
void TestFriendRequestOpen::checkAllOpen()
{
    QApplication::processEvents();
    QAbstractItemModel* model = m_view->model();
    for (int g = 0; g < model->rowCount(); ++g) {
        const QModelIndex group = model->index(g, 0);
        QVERIFY2(m_view->isExpanded(group), qPrintable(QStringLiteral("group %1").arg(g)));
        for (int r = 0; r < model->rowCount(group); ++r) {
            const QModelIndex leaf = model->index(r, 0, group);
            const QRect rect = m_view->visualRect(leaf);
            QVERIFY2(rect.height() > 0, qPrintable(QStringLiteral("row %1/%2").arg(g).arg(r)));
            if (m_view->viewport()->rect().contains(rect.center()))
                QCOMPARE(m_view->indexAt(rect.center()), leaf);
        }
    }
}

// A row reports that it never has children, through the model and through the proxy; a group does not.
void TestFriendRequestOpen::rowsNeverHaveChildrenGroupsMay_data()
{
    QTest::addColumn<bool>("throughProxy");
    QTest::newRow("model") << false;
    QTest::newRow("proxy") << true;
}

void TestFriendRequestOpen::rowsNeverHaveChildrenGroupsMay()
{
    QFETCH(bool, throughProxy);
    showWithFirstPage(5, 2);
    QAbstractItemModel* model = throughProxy ? m_view->model() : Probe::model(m_view.get());
    QVERIFY(model->rowCount() > 1);
    for (int g = 0; g < model->rowCount(); ++g) {
        const QModelIndex group = model->index(g, 0);
        QVERIFY(!(model->flags(group) & Qt::ItemNeverHasChildren));
        QVERIFY(model->hasChildren(group));
        for (int r = 0; r < model->rowCount(group); ++r) {
            const QModelIndex leaf = model->index(r, 0, group);
            QCOMPARE(model->flags(leaf),
                     Qt::ItemFlags(Qt::ItemIsSelectable | Qt::ItemIsEnabled | Qt::ItemNeverHasChildren));
        }
    }
}

// After a later page, a live record (new day, same day, older day), a delete, the groups are all open.
void TestFriendRequestOpen::groupsOpenAfterEachChange_data()
{
    QTest::addColumn<QString>("change");
    QTest::newRow("page") << "page";
    QTest::newRow("page-new-day") << "page-new-day";
    QTest::newRow("new-day") << "new-day";
    QTest::newRow("same-day") << "same-day";
    QTest::newRow("older-day") << "older-day";
    QTest::newRow("delete") << "delete";
    QTest::newRow("delete-day") << "delete-day";
}

void TestFriendRequestOpen::groupsOpenAfterEachChange()
{
    QFETCH(QString, change);
    showWithFirstPage(12, 3); // days 0..3, three people each
    checkAllOpen();
    auto* engine = VyrEngine::NoticeEngine::instance();
    const int groupsBefore = m_view->model()->rowCount();
    if (change == "page" || change == "page-new-day") {
        // The next people: one more on day 3 and, for a new day, two on days 4 and 5.
        auto page = people(change == "page" ? 11 : 12, 3, 3);
        if (change == "page")
            page = {from(4000, 4000, AwaitingMyAnswer, at(3, 1))};
        engine->queueFriendRequestsAnswer(page);
        m_view->verticalScrollBar()->setValue(m_view->verticalScrollBar()->maximum());
        Probe::model(m_view.get())->loadMoreUiData();
        settle();
        QVERIFY(shownRows() > 12);
    } else if (change == "new-day") {
        engine->emitRecordSignal(VyrEngine::NoticeEngine::ContactorAdd, from(4001, 4001, AwaitingMyAnswer, at(-1, 9)));
        settle();
        QCOMPARE(m_view->model()->rowCount(), groupsBefore + 1);
    } else if (change == "same-day") {
        engine->emitRecordSignal(VyrEngine::NoticeEngine::ContactorAdd, from(3004, 1, AgreedByMe, at(1, 13)));
        settle();
        QCOMPARE(leafOf(3004).data(StatusRole).toInt(), int(AgreedByMe));
    } else if (change == "older-day") {
        engine->emitRecordSignal(VyrEngine::NoticeEngine::ContactorAdd, from(3000, 1, AgreedByMe, at(7, 13)));
        settle();
        QCOMPARE(leafOf(3000).parent().data(DateRole).toULongLong(), at(7, 13));
    } else if (change == "delete") {
        engine->emitDeleteSignal(3004);
        settle();
        QVERIFY(!leafOf(3004).isValid());
    } else {
        for (quint64 peer : {3003, 3004, 3005})
            engine->emitDeleteSignal(peer);
        settle();
        QCOMPARE(m_view->model()->rowCount(), groupsBefore - 1);
    }
    checkAllOpen();
}

// Only groups are kept as open: a row has nothing to open.
void TestFriendRequestOpen::rowsAreNotKeptAsOpen()
{
    showWithFirstPage(6, 2);
    const QModelIndex leaf = leafOf(3001);
    QVERIFY(leaf.isValid());
    QVERIFY(m_view->isExpanded(leaf.parent()));
    QVERIFY(!m_view->isExpanded(leaf));
}

// A later page answered with no record adds nothing and still tells the page once.
void TestFriendRequestOpen::emptyPageAnswerChangesNothing()
{
    showWithFirstPage(6, 2);
    FriendRequestModel* model = Probe::model(m_view.get());
    const QString before = FriendRequestTree::text(model);
    QSignalSpy changes(m_view.get(), &FriendRequestTreeView::friendRequestChangeSignal);
    QSignalSpy expands(model, &FriendRequestModel::expandAllSignal);
    VyrEngine::NoticeEngine::instance()->queueFriendRequestsAnswer({}, true);
    model->loadMoreUiData();
    settle();
    QCOMPARE(FriendRequestTree::text(model), before);
    QCOMPARE(changes.count(), 1);
    QCOMPARE(expands.count(), 0);
    checkAllOpen();
}

// A later page of 100,000 records at once: every person gets one row, in its day, every day open.
void TestFriendRequestOpen::hugePageAnswerAtOnce()
{
    showWithFirstPage(3, 3);
    FriendRequestModel* model = Probe::model(m_view.get());
    QSignalSpy expands(model, &FriendRequestModel::expandAllSignal);
    const int huge = 100000;
    VyrEngine::NoticeEngine::instance()->queueFriendRequestsAnswer(people(3, huge, 500));
    model->loadMoreUiData();
    settle();
    QCOMPARE(shownRows(), huge + 3);
    QCOMPARE(model->rowCount(), (huge + 3 + 499) / 500);
    // Intended: each new day at the end also announces a top-level row that never comes; the
    // proxy shows it as an empty row, as it always did.
    QCOMPARE(m_view->model()->rowCount(), 2 * model->rowCount() - 1);
    // One expand for each row folded in, as before.
    QCOMPARE(expands.count(), huge);
    QApplication::processEvents();
    for (int g = 0; g < m_view->model()->rowCount(); ++g)
        QVERIFY(m_view->isExpanded(m_view->model()->index(g, 0)));
    // The newest first, the oldest last, and the oldest shown where the list ends.
    QCOMPARE(m_view->model()->index(0, 0, m_view->model()->index(0, 0)).data(DisplayIdRole).toULongLong(),
             quint64(3000));
    const QModelIndex lastGroup = model->index(model->rowCount() - 1, 0);
    const QModelIndex oldest = model->index(model->rowCount(lastGroup) - 1, 0, lastGroup);
    QCOMPARE(oldest.data(DisplayIdRole).toULongLong(), quint64(3000 + huge + 2));
    const QModelIndex shown = static_cast<QSortFilterProxyModel*>(m_view->model())->mapFromSource(oldest);
    m_view->scrollTo(shown);
    QApplication::processEvents();
    QVERIFY(m_view->viewport()->rect().contains(m_view->visualRect(shown).center()));
}

// Deleting every row, one by one, leaves an empty page; every step keeps the rest open.
void TestFriendRequestOpen::deleteOfEveryRow()
{
    showWithFirstPage(9, 3);
    FriendRequestModel* model = Probe::model(m_view.get());
    QSignalSpy expands(model, &FriendRequestModel::expandAllSignal);
    for (int i = 0; i < 9; ++i) {
        VyrEngine::NoticeEngine::instance()->emitDeleteSignal(3000 + quint64(i));
        settle();
        checkAllOpen();
        QCOMPARE(shownRows(), 8 - i);
    }
    QCOMPARE(expands.count(), 9);
    QVERIFY(m_view->isFriendRequestEmpty());
    QCOMPARE(m_view->model()->rowCount(), 0);
    QCOMPARE(FriendRequestTree::text(model), QStringLiteral("[]"));
}

// A live record for a person whose row would only come with a later page: its day's group stands
// first in the model, and the later page's older record of the person adds no second row.
void TestFriendRequestOpen::updateForARowNotYetLoaded()
{
    showWithFirstPage(6, 3); // days 0 and 1
    FriendRequestModel* model = Probe::model(m_view.get());
    auto* engine = VyrEngine::NoticeEngine::instance();
    engine->emitRecordSignal(VyrEngine::NoticeEngine::ContactorAdd, from(3007, 7, AgreedByMe, at(2, 20)));
    settle();
    QCOMPARE(FriendRequestTree::text(model),
             QStringLiteral("[%3[p3007] %1[p3000 p3001 p3002] %2[p3003 p3004 p3005]]")
                 .arg(day(0), day(1), day(2)));
    engine->queueFriendRequestsAnswer(people(6, 3, 3));
    model->loadMoreUiData();
    settle();
    QCOMPARE(FriendRequestTree::text(model),
             QStringLiteral("[%3[p3007 p3006 p3008] %1[p3000 p3001 p3002] %2[p3003 p3004 p3005]]")
                 .arg(day(0), day(1), day(2)));
    QCOMPARE(leafOf(3007).data(StatusRole).toInt(), int(AgreedByMe));
    checkAllOpen();
}

// The model still ends each update, folded-in row and delete with its expand signal, once each.
void TestFriendRequestOpen::everyExpandSignalStillComes()
{
    showWithFirstPage(3, 3);
    FriendRequestModel* model = Probe::model(m_view.get());
    QSignalSpy expands(model, &FriendRequestModel::expandAllSignal);
    auto* engine = VyrEngine::NoticeEngine::instance();
    engine->emitRecordSignal(VyrEngine::NoticeEngine::ContactorAdd, from(3001, 1, AgreedByMe, at(0, 13)));
    settle();
    QCOMPARE(expands.count(), 1);
    engine->queueFriendRequestsAnswer(people(3, 4, 2));
    model->loadMoreUiData();
    settle();
    QCOMPARE(expands.count(), 5);
    engine->emitDeleteSignal(3002);
    settle();
    QCOMPARE(expands.count(), 6);
    checkAllOpen();
}

QTEST_MAIN(TestFriendRequestOpen)
#include "tst_friendrequestopen.moc"
