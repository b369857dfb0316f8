#include "LogCapture.h"
#include "ModelSignalRecorder.h"
#include "NoticeListModel.h"
#include "TestKit.h"

#include <QAbstractItemModelTester>
#include <QtTest>

using namespace VyrEngine;

namespace {
const QString kModelFile = QStringLiteral("src/plugins/im/VyrNotice/NoticeListModel.cpp");

using TestKit::noticeAt;

// Activity rows arrive at once; lesson rows after their look-up.
void addActivities(int count)
{
    for (int i = 0; i < count; ++i)
        NoticeListModel::instance()->addContactorAddNotice();
}

void addLessons(QList<quint64> ids)
{
    for (quint64 id : ids)
        TestKit::addLessonNotice(id, LessonStart);
}

QStringList noticeIds(NoticeListModel* model)
{
    QStringList ids;
    for (int row = 0; row < model->rowCount(); ++row)
        ids << noticeAt(model, row)->noticeId();
    return ids;
}
} // namespace

class TestNoticeListModel : public QObject
{
    Q_OBJECT
private slots:
    void initTestCase();
    void init();
    void cleanup();

    void dataServesOnlyUserRole_data();
    void dataServesOnlyUserRole();
    void dataForInvalidIndexOrRowPastEnd();
    void rowCountCountsBothCategories();
    void setDataChangesNothing();
    void operationsTable_data();
    void operationsTable();
    void delNoticeInvalidIndexLogsAndEmitsNothing();
    void delNoticeRowPastEndLogsRowAndSize();
    void delNoticeByIndexRemovesThatRow();
    void delNoticeEmptyIdStillResetsAndSignals();
    void delNoticeByIdRemovesOnlyThatNotice();
    void delNoticeCategoryKeepsOtherCategoryInOrder();
    void releaseGivesNewEmptyModel();
    void twoContactRequestsGiveTwoRows();

private:
    NoticeListModel* model() const { return NoticeListModel::instance(); }
    QAbstractItemModelTester* m_tester = nullptr;
};

void TestNoticeListModel::initTestCase()
{
    QVERIFY(TestKit::loadTranslations());
}

void TestNoticeListModel::init()
{
    TestKit::resetAll();
    m_tester = TestKit::attachNoticeModelTester(model(), this);
}

void TestNoticeListModel::cleanup()
{
    delete m_tester;
    m_tester = nullptr;
    TestKit::resetAll();
}

// Display, decoration, size and any other role give nothing: only Qt::UserRole serves the record.
void TestNoticeListModel::dataServesOnlyUserRole_data()
{
    QTest::addColumn<int>("role");
    QTest::addColumn<bool>("valid");
    QTest::newRow("display") << int(Qt::DisplayRole) << false;
    QTest::newRow("decoration") << int(Qt::DecorationRole) << false;
    QTest::newRow("tooltip") << int(Qt::ToolTipRole) << false;
    QTest::newRow("size hint") << int(Qt::SizeHintRole) << false;
    QTest::newRow("user+1") << int(Qt::UserRole + 1) << false;
    QTest::newRow("user") << int(Qt::UserRole) << true;
}

void TestNoticeListModel::dataServesOnlyUserRole()
{
    QFETCH(int, role);
    QFETCH(bool, valid);
    addActivities(1);
    const QVariant value = model()->data(model()->index(0), role);
    QCOMPARE(value.isValid(), valid);
    if (valid) {
        QCOMPARE(QByteArray(value.typeName()), QByteArray("VyrEngine::GatherNoticePtr"));
        QVERIFY(value.value<GatherNoticePtr>());
        QCOMPARE(value.value<GatherNoticePtr>()->type(), ContactorAdd);
    }
}

void TestNoticeListModel::dataForInvalidIndexOrRowPastEnd()
{
    QVERIFY(!model()->data(QModelIndex(), Qt::UserRole).isValid());
    addActivities(1);
    // An index kept from before the row went now points one past the end.
    const QModelIndex stale = model()->index(0);
    model()->delNotice(noticeAt(model(), 0)->noticeId());
    QCOMPARE(model()->rowCount(), 0);
    QVERIFY(stale.isValid());
    QVERIFY(!model()->data(stale, Qt::UserRole).isValid());
}

// rowCount counts both categories and equals the sum of the per-category counts.
void TestNoticeListModel::rowCountCountsBothCategories()
{
    QCOMPARE(model()->rowCount(), 0);
    addActivities(3);
    addLessons({10, 11});
    QCOMPARE(model()->rowCount(), 5);
    QCOMPARE(model()->rowCount(model()->index(0)), 5);
    QCOMPARE(model()->getNoticeItemNum(Activity), 3);
    QCOMPARE(model()->getNoticeItemNum(Lesson), 2);
    QCOMPARE(model()->getNoticeItemNum(Activity) + model()->getNoticeItemNum(Lesson), model()->rowCount());
}

// setData refuses every edit and leaves the record as it was.
void TestNoticeListModel::setDataChangesNothing()
{
    addActivities(1);
    const GatherNoticePtr before = noticeAt(model(), 0);
    const GatherNotice snapshot = *before;
    auto other = std::make_shared<GatherNotice>(LessonStart);
    ModelSignalRecorder recorder(model());
    QCOMPARE(model()->setData(model()->index(0), QVariant::fromValue(other), Qt::UserRole), false);
    QCOMPARE(model()->setData(model()->index(0), QStringLiteral("x"), Qt::EditRole), false);
    QCOMPARE(noticeAt(model(), 0), before);
    QCOMPARE(before->type(), snapshot.type());
    QCOMPARE(before->noticeId(), snapshot.noticeId());
    QCOMPARE(recorder.joined(), QString());
}

// Which operation resets the model and which signal it sends.
void TestNoticeListModel::operationsTable_data()
{
    QTest::addColumn<QString>("operation");
    QTest::addColumn<QString>("expected");
    QTest::newRow("add activity") << "addActivity" << "reset popup(Activity)";
    QTest::newRow("add lesson") << "addLesson" << "reset popup(Lesson)";
    QTest::newRow("update lesson in place") << "updateLesson" << "reset updated";
    QTest::newRow("del index in range") << "delIndex" << "reset remove(Lesson)";
    QTest::newRow("del index bad") << "delBadIndex" << "";
    QTest::newRow("del id match") << "delId" << "reset remove(Lesson)";
    QTest::newRow("del id no match") << "delUnknownId" << "reset remove(Activity)";
    QTest::newRow("del category") << "delCategory" << "reset";
    QTest::newRow("del empty category") << "delEmptyCategory" << "reset";
}

void TestNoticeListModel::operationsTable()
{
    QFETCH(QString, operation);
    QFETCH(QString, expected);
    addLessons({20});
    ModelSignalRecorder recorder(model());
    if (operation == QLatin1String("addActivity")) {
        addActivities(1);
    } else if (operation == QLatin1String("addLesson")) {
        addLessons({21});
    } else if (operation == QLatin1String("updateLesson")) {
        model()->addLessonNotice(LessonAhead, 20);
        TestKit::settle();
    } else if (operation == QLatin1String("delIndex")) {
        model()->delNotice(model()->index(0));
    } else if (operation == QLatin1String("delBadIndex")) {
        model()->delNotice(QModelIndex());
    } else if (operation == QLatin1String("delId")) {
        model()->delNotice(noticeAt(model(), 0)->noticeId());
    } else if (operation == QLatin1String("delUnknownId")) {
        model()->delNotice(QStringLiteral("no-such-id"));
    } else if (operation == QLatin1String("delCategory")) {
        model()->delNotice(Lesson);
    } else if (operation == QLatin1String("delEmptyCategory")) {
        model()->delNotice(Activity);
    }
    QCOMPARE(recorder.joined(), expected);
}

// An invalid index logs one line and neither resets nor signals.
void TestNoticeListModel::delNoticeInvalidIndexLogsAndEmitsNothing()
{
    addActivities(2);
    ModelSignalRecorder recorder(model());
    LogCapture log;
    model()->delNotice(QModelIndex());
    const auto lines = log.matching(QStringLiteral("delete notice, index is invalid"));
    QCOMPARE(lines.size(), 1);
    QCOMPARE(lines.first().type, QtInfoMsg);
    QCOMPARE(lines.first().file, kModelFile);
    QVERIFY(lines.first().function.contains(QLatin1String("NoticeListModel::delNotice")));
    QCOMPARE(recorder.joined(), QString());
    QCOMPARE(model()->rowCount(), 2);
}

// Row 5 of a list of 5 logs the row and the size and leaves the list alone.
void TestNoticeListModel::delNoticeRowPastEndLogsRowAndSize()
{
    addActivities(6);
    const QModelIndex row5 = model()->index(5);
    model()->delNotice(noticeAt(model(), 0)->noticeId());
    QCOMPARE(model()->rowCount(), 5);
    const QStringList before = noticeIds(model());

    ModelSignalRecorder recorder(model());
    LogCapture log;
    model()->delNotice(row5);
    const auto lines = log.matching(QStringLiteral("delete notice, index row abnormal, row: 5 notice size: 5"));
    QCOMPARE(lines.size(), 1);
    QCOMPARE(lines.first().type, QtInfoMsg);
    QCOMPARE(lines.first().file, kModelFile);
    QCOMPARE(recorder.joined(), QString());
    QCOMPARE(noticeIds(model()), before);
}

void TestNoticeListModel::delNoticeByIndexRemovesThatRow()
{
    addActivities(2);
    addLessons({30});
    const QStringList before = noticeIds(model());
    ModelSignalRecorder recorder(model());
    model()->delNotice(model()->index(1));
    QCOMPARE(noticeIds(model()), (QStringList{before[0], before[2]}));
    QCOMPARE(recorder.joined(), QStringLiteral("reset remove(Activity)"));
}

// An id that matches nothing removes nothing, yet resets and signals.
void TestNoticeListModel::delNoticeEmptyIdStillResetsAndSignals()
{
    addActivities(3);
    const QStringList before = noticeIds(model());
    ModelSignalRecorder recorder(model());
    LogCapture log;
    model()->delNotice(QString());
    QCOMPARE(noticeIds(model()), before);
    QCOMPARE(recorder.count(QStringLiteral("reset")), 1);
    QCOMPARE(recorder.events().size(), 2);
    QVERIFY(recorder.events().last().startsWith(QLatin1String("remove(")));
    QCOMPARE(log.lines().size(), 0);
}

void TestNoticeListModel::delNoticeByIdRemovesOnlyThatNotice()
{
    addActivities(2);
    addLessons({40, 41});
    QStringList ids = noticeIds(model());
    const QString lessonId = noticeAt(model(), 3)->noticeId();
    ModelSignalRecorder recorder(model());
    model()->delNotice(lessonId);
    ids.removeAll(lessonId);
    QCOMPARE(noticeIds(model()), ids);
    QCOMPARE(recorder.joined(), QStringLiteral("reset remove(Lesson)"));
}

// Removing the lesson category leaves every activity, in order, and sends no removal signal.
void TestNoticeListModel::delNoticeCategoryKeepsOtherCategoryInOrder()
{
    addActivities(1);
    addLessons({50});
    addActivities(1);
    addLessons({51});
    addActivities(1);
    QStringList activityIds;
    for (int row = 0; row < model()->rowCount(); ++row) {
        if (noticeAt(model(), row)->category() == Activity)
            activityIds << noticeAt(model(), row)->noticeId();
    }
    QCOMPARE(activityIds.size(), 3);
    ModelSignalRecorder recorder(model());
    model()->delNotice(Lesson);
    QCOMPARE(noticeIds(model()), activityIds);
    QCOMPARE(model()->getNoticeItemNum(Lesson), 0);
    QCOMPARE(recorder.joined(), QStringLiteral("reset"));
}

// After release() the next instance() is a new, empty model; the old one goes with the event loop.
void TestNoticeListModel::releaseGivesNewEmptyModel()
{
    delete m_tester;
    m_tester = nullptr;
    addActivities(2);
    QPointer<NoticeListModel> old = model();
    NoticeListModel::release();
    QVERIFY(old);
    NoticeListModel* fresh = NoticeListModel::instance();
    QVERIFY(fresh != old.data());
    QCOMPARE(fresh->rowCount(), 0);
    QVERIFY(old);
    QCoreApplication::sendPostedEvents(nullptr, QEvent::DeferredDelete);
    QVERIFY(!old);
    QCOMPARE(NoticeListModel::instance(), fresh);
    NoticeListModel::release();
    NoticeListModel::release(); // a second release with no model is harmless
    QCoreApplication::sendPostedEvents(nullptr, QEvent::DeferredDelete);
}

// Contact requests have no rule against duplicates.
void TestNoticeListModel::twoContactRequestsGiveTwoRows()
{
    ModelSignalRecorder recorder(model());
    addActivities(2);
    QCOMPARE(model()->rowCount(), 2);
    QVERIFY(noticeAt(model(), 0)->noticeId() != noticeAt(model(), 1)->noticeId());
    QVERIFY(!noticeAt(model(), 0)->noticeId().isEmpty());
    QCOMPARE(recorder.count(QStringLiteral("popup(Activity)")), 2);
    QCOMPARE(noticeAt(model(), 0)->time(), 1800000000u);
}

QTEST_MAIN(TestNoticeListModel)
#include "tst_noticelistmodel.moc"
