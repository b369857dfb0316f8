#include "ContactsEngine.h"
#include "CoreEngine.h"
#include "NoticeListModel.h"
#include "NoticeListWidget.h"
#include "TestKit.h"

#include <QAbstractItemModelTester>
#include <QListView>
#include <QSortFilterProxyModel>
#include <QStandardItemModel>
#include <QtTest>
#include <algorithm>
#include <memory>

using namespace VyrEngine;

namespace {

GatherNoticePtr recordAt(const QAbstractItemModel* model, int row)
{
    return model->index(row, 0).data(Qt::UserRole).value<GatherNoticePtr>();
}

// What a window must show, worked out from the source alone: the rows of the
// category, newest first by unsigned time, equal times in source order.
QStringList expectedIds(const QAbstractItemModel* source, NoticeCategory category)
{
    QList<GatherNoticePtr> rows;
    for (int row = 0; row < source->rowCount(); ++row) {
        GatherNoticePtr notice = recordAt(source, row);
        if (notice && notice->category() == category)
            rows << notice;
    }
    std::stable_sort(rows.begin(), rows.end(),
                     [](const GatherNoticePtr& a, const GatherNoticePtr& b) { return a->time() > b->time(); });
    QStringList ids;
    for (const GatherNoticePtr& notice : rows)
        ids << notice->noticeId();
    return ids;
}

QStringList shownIds(const QAbstractItemModel* proxy)
{
    QStringList ids;
    for (int row = 0; row < proxy->rowCount(); ++row)
        ids << recordAt(proxy, row)->noticeId();
    return ids;
}

// A lesson notice arrives after its look-up; the clock at that moment gives its time.
void addLesson(quint64 lessonId)
{
    TestKit::putLesson(lessonId, QStringLiteral("Lesson %1").arg(lessonId), 1800000000 + 7200);
    NoticeListModel::instance()->addLessonNotice(LessonStart, lessonId);
    TestKit::settle();
}

// The i-th notice of a run: every fourth a lesson notice, the others friend
// requests and cluster notices in turn.
void addNth(int i)
{
    NoticeListModel* model = NoticeListModel::instance();
    if (i % 4 == 3)
        addLesson(quint64(1000 + i));
    else if (i % 2 == 0)
        model->addContactorAddNotice();
    else
        model->addClusterNoticeRemindNotice(QStringLiteral("n%1").arg(i), quint64(i), 900, 1);
}

// Records a proxy's structural signals as short strings, in order.
class ProxySignals : public QObject
{
public:
    explicit ProxySignals(QAbstractItemModel* model)
    {
        auto note = [this](const char* name) { return [this, name]() { m_events << QLatin1String(name); }; };
        connect(model, &QAbstractItemModel::modelAboutToBeReset, this, note("aboutToReset"));
        connect(model, &QAbstractItemModel::modelReset, this, note("reset"));
        connect(model, &QAbstractItemModel::layoutAboutToBeChanged, this, note("aboutToLayout"));
        connect(model, &QAbstractItemModel::layoutChanged, this, note("layout"));
        connect(model, &QAbstractItemModel::rowsInserted, this, note("inserted"));
        connect(model, &QAbstractItemModel::rowsRemoved, this, note("removed"));
        connect(model, &QAbstractItemModel::rowsMoved, this, note("moved"));
        connect(model, &QAbstractItemModel::dataChanged, this, note("changed"));
    }
    QString joined() const { return m_events.join(QLatin1Char(' ')); }

private:
    QStringList m_events;
};

} // namespace

#define VERIFY_WINDOWS(when)                                                                                           \
    do {                                                                                                               \
        const QString difference = windowsDiffer(when);                                                                \
        QVERIFY2(difference.isEmpty(), qPrintable(difference));                                                        \
    } while (false)

class TestNoticeListProxy : public QObject
{
    Q_OBJECT
private slots:
    void initTestCase();
    void init();
    void cleanup();

    void everyAddShowsCategoryRowsInOrder_data();
    void everyAddShowsCategoryRowsInOrder();
    void removedRowGoesAndReaddedRowTakesItsPlace();
    void updatedLessonRisesToTop();
    void addEmitsOnlyResetOnEachProxy();
    void otherSourceModelSortsAndFiltersAlike();
    void proxyFollowsNewNoticeModel();

private:
    QSortFilterProxyModel* proxy(NoticeCategory category) const;
    QString windowsDiffer(const QString& when) const;

    std::unique_ptr<NoticeListWidget> m_activity;
    std::unique_ptr<NoticeListWidget> m_lesson;
};

QSortFilterProxyModel* TestNoticeListProxy::proxy(NoticeCategory category) const
{
    NoticeListWidget* window = category == Activity ? m_activity.get() : m_lesson.get();
    return qobject_cast<QSortFilterProxyModel*>(
        window->findChild<QListView*>(QStringLiteral("noticeListView"))->model());
}

// Empty when both windows show what they must, else where they first part.
QString TestNoticeListProxy::windowsDiffer(const QString& when) const
{
    const NoticeListModel* source = NoticeListModel::instance();
    for (NoticeCategory category : {Activity, Lesson}) {
        const QStringList shown = shownIds(proxy(category));
        const QStringList expected = expectedIds(source, category);
        if (shown == expected)
            continue;
        const auto first = std::mismatch(shown.begin(), shown.end(), expected.begin(), expected.end()).first;
        return QStringLiteral("%1, category %2: %3 rows shown, %4 expected, first difference at row %5")
            .arg(when)
            .arg(int(category))
            .arg(shown.size())
            .arg(expected.size())
            .arg(first - shown.begin());
    }
    return {};
}

void TestNoticeListProxy::initTestCase()
{
    QVERIFY(TestKit::loadTranslations());
}

void TestNoticeListProxy::init()
{
    TestKit::resetAll();
    // Lesson notices find their cluster, so that the intake logs nothing.
    ContactsEngine::instance()->putCluster(500, QStringLiteral("Class 3"));
    m_activity.reset(new NoticeListWidget(Activity));
    m_lesson.reset(new NoticeListWidget(Lesson));
    QVERIFY(proxy(Activity));
    QVERIFY(proxy(Lesson));
}

void TestNoticeListProxy::cleanup()
{
    m_activity.reset();
    m_lesson.reset();
    TestKit::resetAll();
}

// After each of many adds, both windows hold exactly their category's rows, newest first by
// unsigned time, notices of equal time in the order they came.
void TestNoticeListProxy::everyAddShowsCategoryRowsInOrder_data()
{
    QTest::addColumn<QList<qint64>>("times");
    QTest::addColumn<int>("count");
    QList<qint64> scrambled;
    for (int i = 0; i < 37; ++i)
        scrambled << 1800000000 + (i * 11) % 37;
    QTest::newRow("out of order, ties") << scrambled << 160;
    QTest::newRow("all at one second") << QList<qint64>{1800000000} << 120;
    QTest::newRow("around 2^31") << QList<qint64>{Q_INT64_C(2147483647), Q_INT64_C(2147483648), 5,
                                                  Q_INT64_C(4294967295), Q_INT64_C(2147483648),
                                                  Q_INT64_C(3000000000), Q_INT64_C(2147483647), 0}
                                 << 160;
    QTest::newRow("clock going back") << QList<qint64>{1800000100, 1800000090, 1800000090, 1800000080} << 120;
}

void TestNoticeListProxy::everyAddShowsCategoryRowsInOrder()
{
    QFETCH(QList<qint64>, times);
    QFETCH(int, count);
    new QAbstractItemModelTester(proxy(Activity), QAbstractItemModelTester::FailureReportingMode::QtTest, this);
    new QAbstractItemModelTester(proxy(Lesson), QAbstractItemModelTester::FailureReportingMode::QtTest, this);
    for (int i = 0; i < count; ++i) {
        CoreEngine::instance()->setCurrentTime(times.at(i % times.size()));
        addNth(i);
        VERIFY_WINDOWS(QStringLiteral("after add ") + QString::number(i));
    }
    QCOMPARE(NoticeListModel::instance()->rowCount(), count);
    QCOMPARE(proxy(Lesson)->rowCount(), count / 4);
    QCOMPARE(proxy(Activity)->rowCount(), count - count / 4);
}

// A removed row leaves its window; added again it is a new row, placed by its new time.
void TestNoticeListProxy::removedRowGoesAndReaddedRowTakesItsPlace()
{
    auto* core = CoreEngine::instance();
    for (int i = 0; i < 60; ++i) {
        core->setCurrentTime(1800000000 + (i * 7) % 13);
        addNth(i);
    }
    NoticeListModel* model = NoticeListModel::instance();
    for (int round = 0; round < 5; ++round) {
        // The newest lesson notice goes, then its lesson comes again, at a tie with older ones.
        const GatherNoticePtr top = recordAt(proxy(Lesson), 0);
        model->delNotice(top->noticeId());
        QVERIFY(!shownIds(proxy(Lesson)).contains(top->noticeId()));
        VERIFY_WINDOWS(QStringLiteral("after removing a lesson, round ") + QString::number(round));
        core->setCurrentTime(1800000000 + 5);
        addLesson(top->lessonId());
        VERIFY_WINDOWS(QStringLiteral("after adding the lesson again, round ") + QString::number(round));
        // The newest of its tie: below every row of the same or a later time.
        const QString again = recordAt(model, model->rowCount() - 1)->noticeId();
        int notOlder = 0;
        for (int row = 0; row < proxy(Lesson)->rowCount(); ++row)
            notOlder += recordAt(proxy(Lesson), row)->time() >= quint32(1800000000 + 5) ? 1 : 0;
        QCOMPARE(shownIds(proxy(Lesson)).indexOf(again), notOlder - 1);

        // A friend request from the middle of its window goes by source index.
        const int middle = proxy(Activity)->rowCount() / 2;
        const QModelIndex sourceRow = proxy(Activity)->mapToSource(proxy(Activity)->index(middle, 0));
        const QString gone = recordAt(proxy(Activity), middle)->noticeId();
        model->delNotice(sourceRow);
        QVERIFY(!shownIds(proxy(Activity)).contains(gone));
        VERIFY_WINDOWS(QStringLiteral("after removing an activity, round ") + QString::number(round));
        model->addContactorAddNotice();
        VERIFY_WINDOWS(QStringLiteral("after adding an activity, round ") + QString::number(round));
    }
    QCOMPARE(model->rowCount(), 60);
}

// A lesson notice updated in place takes the new time and rises to the top of its window.
void TestNoticeListProxy::updatedLessonRisesToTop()
{
    auto* core = CoreEngine::instance();
    for (quint64 lesson = 1; lesson <= 20; ++lesson) {
        core->setCurrentTime(1800000000 + qint64(lesson % 3));
        addLesson(lesson);
    }
    const QString updated = recordAt(NoticeListModel::instance(), 4)->noticeId();
    QVERIFY(shownIds(proxy(Lesson)).indexOf(updated) > 0);
    core->setCurrentTime(1800000000 + 3);
    NoticeListModel::instance()->addLessonNotice(LessonAhead, 5);
    TestKit::settle();
    QCOMPARE(proxy(Lesson)->rowCount(), 20);
    QCOMPARE(shownIds(proxy(Lesson)).first(), updated);
    VERIFY_WINDOWS(QStringLiteral("after the update"));
}

// An add tells each window's proxy by a reset alone: no row, layout or data signal besides.
void TestNoticeListProxy::addEmitsOnlyResetOnEachProxy()
{
    for (int i = 0; i < 30; ++i) {
        CoreEngine::instance()->setCurrentTime(1800000000 + (i * 5) % 7);
        addNth(i);
    }
    ProxySignals activity(proxy(Activity));
    ProxySignals lesson(proxy(Lesson));
    NoticeListModel::instance()->addContactorAddNotice();
    QCOMPARE(activity.joined(), QStringLiteral("aboutToReset reset"));
    QCOMPARE(lesson.joined(), QStringLiteral("aboutToReset reset"));
    addLesson(77);
    QCOMPARE(activity.joined(), QStringLiteral("aboutToReset reset aboutToReset reset"));
    QCOMPARE(lesson.joined(), QStringLiteral("aboutToReset reset aboutToReset reset"));
}

// Given a source other than the notice model, the proxy reads its records through data() and
// keeps the same rules.
void TestNoticeListProxy::otherSourceModelSortsAndFiltersAlike()
{
    QStandardItemModel other;
    const quint32 times[] = {5u, 4294967295u, 5u, 2147483648u, 2147483647u, 5u, 0u, 4294967295u};
    int n = 0;
    for (quint32 time : times) {
        auto notice = std::make_shared<GatherNotice>(n % 3 == 2 ? LessonStart : ContactorAdd);
        notice->setTime(time);
        notice->setNoticeId(QStringLiteral("id%1").arg(n++));
        auto* item = new QStandardItem;
        item->setData(QVariant::fromValue(notice), Qt::UserRole);
        other.appendRow(item);
    }
    other.appendRow(new QStandardItem(QStringLiteral("no record")));
    for (NoticeCategory category : {Activity, Lesson})
        proxy(category)->setSourceModel(&other);
    QCOMPARE(shownIds(proxy(Activity)), (QStringList{"id1", "id7", "id3", "id4", "id0", "id6"}));
    QCOMPARE(shownIds(proxy(Lesson)), (QStringList{"id2", "id5"}));
    for (NoticeCategory category : {Activity, Lesson})
        QCOMPARE(shownIds(proxy(category)), expectedIds(&other, category));
}

// After the notice model is released the proxy shows nothing; set on the new model it shows its rows.
void TestNoticeListProxy::proxyFollowsNewNoticeModel()
{
    for (int i = 0; i < 12; ++i)
        addNth(i);
    QCOMPARE(proxy(Activity)->rowCount(), 9);
    NoticeListModel::release();
    QCoreApplication::sendPostedEvents(nullptr, QEvent::DeferredDelete);
    QCOMPARE(proxy(Activity)->rowCount(), 0);
    QCOMPARE(proxy(Lesson)->rowCount(), 0);

    for (NoticeCategory category : {Activity, Lesson})
        proxy(category)->setSourceModel(NoticeListModel::instance());
    auto* core = CoreEngine::instance();
    for (int i = 0; i < 40; ++i) {
        core->setCurrentTime(Q_INT64_C(2147483640) + (i * 3) % 17);
        addNth(i);
    }
    QCOMPARE(proxy(Activity)->rowCount(), 30);
    VERIFY_WINDOWS(QStringLiteral("on the new model"));
}

QTEST_MAIN(TestNoticeListProxy)
#include "tst_noticelistproxy.moc"
