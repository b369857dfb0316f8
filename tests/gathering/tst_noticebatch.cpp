#include "HostWiring.h"
#include "ModelSignalRecorder.h"
#include "NoticeListModel.h"
#include "NoticeListWidget.h"
#include "TestKit.h"
#include "CoreEngine.h"
#include "ContactsEngine.h"
#include "VyrTrack.h"

#include <QAbstractItemModelTester>
#include <QAbstractItemView>
#include <QPropertyAnimation>
#include <QLabel>
#include <QtTest>
#include <memory>

using namespace VyrEngine;

namespace {

const qint64 kNow = 1800000000;

// One step of a run, as a letter: 'f' friend request, 'c' cluster notice,
// 'l' lesson notice (LessonAhead) of lesson 1, 'L' of lesson 2, 'u' lesson 1
// again as LessonStart, 'r' a study report of lesson 1. A digit before a
// letter sets the engine clock to kNow + that digit for it (ties on purpose).
void runStep(QChar step, qint64 offset)
{
    NoticeListModel* model = NoticeListModel::instance();
    CoreEngine::instance()->setCurrentTime(kNow + offset);
    switch (step.toLatin1()) {
    case 'f':
        model->addContactorAddNotice();
        break;
    case 'c':
        model->addClusterNoticeRemindNotice(QStringLiteral("Bring books"), 7, 900, 1);
        break;
    case 'l':
        model->addLessonNotice(LessonAhead, 1);
        break;
    case 'L':
        model->addLessonNotice(LessonAhead, 2);
        break;
    case 'u':
        model->addLessonNotice(LessonStart, 1);
        break;
    case 'r':
        model->addStudyReportNotice(1);
        break;
    default:
        QFAIL("unknown step");
    }
    // Look-ups complete on the event loop, inside a batch as outside one.
    TestKit::settle();
}

void runSteps(const QString& steps)
{
    qint64 offset = 0;
    for (QChar step : steps) {
        if (step.isDigit())
            offset = step.digitValue();
        else
            runStep(step, offset);
    }
}

// A row as a user and the host would tell it apart: type, lesson, time, title.
QString describe(const GatherNoticePtr& notice)
{
    if (!notice)
        return QStringLiteral("null");
    return QStringLiteral("%1/%2/%3/%4")
        .arg(int(notice->type()))
        .arg(notice->lessonId())
        .arg(qint64(notice->time()) - kNow)
        .arg(notice->title());
}

QStringList rows(const QAbstractItemModel* model)
{
    QStringList described;
    for (int row = 0; row < model->rowCount(); ++row)
        described << describe(TestKit::noticeAt(model, row));
    return described;
}

// The tracking events without their fresh push ids.
QStringList tracked()
{
    QStringList events;
    for (const VyrTrack::Event& event : VyrTrack::instance()->events())
        events << event.first + QLatin1Char(':') + event.second.value(QStringLiteral("push_body")).toString();
    return events;
}

QString windowState(NoticeListWidget* window)
{
    return QStringLiteral("%1 h%2 %3")
        .arg(window->isVisible() ? QStringLiteral("shown") : QStringLiteral("hidden"))
        .arg(window->getContentWidgetSize().height())
        .arg(window->findChild<QLabel*>(QStringLiteral("titleLabel"))->text());
}

// Both windows, wired as a host wires them, with the model's signals recorded.
struct Host
{
    Host()
        : activity(new NoticeListWidget(Activity))
        , lesson(new NoticeListWidget(Lesson))
        , recorder(NoticeListModel::instance())
    {
        new HostWiring(activity.get(), Activity);
        new HostWiring(lesson.get(), Lesson);
    }

    // What a user and the host see at the end of a run.
    QStringList outcome() const
    {
        QStringList seen;
        seen << QStringLiteral("model: ") + rows(NoticeListModel::instance()).join(QLatin1Char(' '));
        for (NoticeListWidget* window : {activity.get(), lesson.get()}) {
            auto* view = window->findChild<QAbstractItemView*>();
            seen << windowState(window) + QStringLiteral(": ") + rows(view->model()).join(QLatin1Char(' '));
        }
        seen << tracked();
        return seen;
    }

    std::unique_ptr<NoticeListWidget> activity;
    std::unique_ptr<NoticeListWidget> lesson;
    ModelSignalRecorder recorder;
};

void putEngineRecords()
{
    ContactsEngine::instance()->putCluster(900, QStringLiteral("Class 4"));
    TestKit::putLesson(1, QStringLiteral("Algebra"), kNow + 3600);
    TestKit::putLesson(2, QStringLiteral("Biology"), kNow + 7200);
}

} // namespace

class TestNoticeBatch : public QObject
{
    Q_OBJECT
private slots:
    void initTestCase();
    void init();
    void cleanup();

    void batchEndsLikeSingles_data();
    void batchEndsLikeSingles();
    void batchSignalsOnceAtItsEnd_data();
    void batchSignalsOnceAtItsEnd();
    void nestedBatchesAnnounceAtOutermostEnd();
    void emptyBatchResetsNothing();
    void lessonUpdatedInsideBatch();
    void deleteInsideBatchAnnouncesWhatCameBefore();
    void modelShowsOldListUntilBatchEnds();
    void burstWhileWindowFadesEndsLikeSingles_data();
    void burstWhileWindowFadesEndsLikeSingles();
    void equalTimesKeepOrderOfAdding();
    void unmatchedEndIsLoggedAndIgnored();
    void scopeOutlivingModelIsHarmless();

private:
    QAbstractItemModelTester* m_tester = nullptr;
};

void TestNoticeBatch::initTestCase()
{
    QVERIFY(TestKit::loadTranslations());
}

void TestNoticeBatch::init()
{
    TestKit::resetAll(kNow);
    putEngineRecords();
    m_tester = TestKit::attachNoticeModelTester(NoticeListModel::instance(), this);
}

void TestNoticeBatch::cleanup()
{
    delete m_tester;
    m_tester = nullptr;
    TestKit::resetAll(kNow);
}

void TestNoticeBatch::batchEndsLikeSingles_data()
{
    QTest::addColumn<QString>("before");
    QTest::addColumn<QString>("steps");
    QTest::newRow("one") << QString() << QStringLiteral("f");
    QTest::newRow("four") << QString() << QStringLiteral("fcff");
    QTest::newRow("mixed") << QString() << QStringLiteral("3f1l2c1Lf5r0f");
    QTest::newRow("dedupe") << QString() << QStringLiteral("1l2f3u4l");
    QTest::newRow("ties") << QString() << QStringLiteral("2f2c2f2l2L2f");
    QTest::newRow("onto rows") << QStringLiteral("1f2l") << QStringLiteral("3f0f4u9c");
    QTest::newRow("onto many") << QStringLiteral("ffffff") << QStringLiteral("cfl");
}

// A batch ends with the rows, window order, tracking and window sizes of the single adds.
void TestNoticeBatch::batchEndsLikeSingles()
{
    QFETCH(QString, before);
    QFETCH(QString, steps);

    QStringList singles;
    {
        Host host;
        runSteps(before);
        runSteps(steps);
        singles = host.outcome();
    }
    cleanup();
    init();
    QStringList batched;
    {
        Host host;
        runSteps(before);
        {
            NoticeListModel::BatchScope scope;
            runSteps(steps);
        }
        batched = host.outcome();
    }
    QCOMPARE(batched, singles);
}

void TestNoticeBatch::batchSignalsOnceAtItsEnd_data()
{
    QTest::addColumn<QString>("before");
    QTest::addColumn<QString>("steps");
    QTest::addColumn<QString>("expected");
    QTest::newRow("activities") << QString() << QStringLiteral("fcf") << QStringLiteral("reset popup(Activity)");
    QTest::newRow("lesson first") << QString() << QStringLiteral("lfL")
                                  << QStringLiteral("reset popup(Lesson) popup(Activity)");
    QTest::newRow("added and updated") << QString() << QStringLiteral("lu")
                                       << QStringLiteral("reset popup(Lesson) updated");
    QTest::newRow("updated only") << QStringLiteral("l") << QStringLiteral("uu") << QStringLiteral("reset updated");
}

// One reset, one popup per category that got rows (first come first), one update signal.
void TestNoticeBatch::batchSignalsOnceAtItsEnd()
{
    QFETCH(QString, before);
    QFETCH(QString, steps);
    QFETCH(QString, expected);
    runSteps(before);
    ModelSignalRecorder recorder(NoticeListModel::instance());
    QMap<QString, int> counts;
    connect(NoticeListModel::instance(), &NoticeListModel::popupNoticeListWidget, this, [&](NoticeCategory category) {
        counts[category == Lesson ? QStringLiteral("Lesson") : QStringLiteral("Activity")] =
            NoticeListModel::instance()->batchAddedCount(category);
    });
    {
        NoticeListModel::BatchScope scope;
        runSteps(steps);
        QCOMPARE(recorder.joined(), QString());
    }
    QCOMPARE(recorder.joined(), expected);
    // Each popup tells how many rows of its category it stands for.
    int added = 0;
    for (int count : counts)
        added += count;
    QCOMPARE(added, NoticeListModel::instance()->rowCount() - before.size());
    QCOMPARE(NoticeListModel::instance()->batchAddedCount(Activity), 0);
}

// Only the outermost scope's end resets and signals.
void TestNoticeBatch::nestedBatchesAnnounceAtOutermostEnd()
{
    ModelSignalRecorder recorder(NoticeListModel::instance());
    {
        NoticeListModel::BatchScope outer;
        runSteps(QStringLiteral("f"));
        {
            NoticeListModel::BatchScope inner;
            runSteps(QStringLiteral("cl"));
            QVERIFY(NoticeListModel::instance()->isBatching());
        }
        QCOMPARE(recorder.joined(), QString());
        QCOMPARE(NoticeListModel::instance()->rowCount(), 0);
        NoticeListModel::instance()->beginBatch();
        runSteps(QStringLiteral("f"));
        NoticeListModel::instance()->endBatch();
        QCOMPARE(recorder.joined(), QString());
    }
    QVERIFY(!NoticeListModel::instance()->isBatching());
    QCOMPARE(recorder.joined(), QStringLiteral("reset popup(Activity) popup(Lesson)"));
    QCOMPARE(NoticeListModel::instance()->rowCount(), 4);
}

// A batch that takes nothing in resets nothing and says nothing.
void TestNoticeBatch::emptyBatchResetsNothing()
{
    runSteps(QStringLiteral("f"));
    ModelSignalRecorder recorder(NoticeListModel::instance());
    {
        NoticeListModel::BatchScope scope;
        // A lesson unknown to the engine brings no row.
        NoticeListModel::instance()->addLessonNotice(LessonAhead, 99);
        TestKit::settle();
    }
    QCOMPARE(recorder.joined(), QString());
    QCOMPARE(NoticeListModel::instance()->rowCount(), 1);
}

// A lesson row updated inside a batch changes in place, tracked at once, and rises at the end.
void TestNoticeBatch::lessonUpdatedInsideBatch()
{
    Host host;
    runSteps(QStringLiteral("1l2L"));
    auto* view = host.lesson->findChild<QAbstractItemView*>();
    QCOMPARE(TestKit::noticeAt(view->model(), 0)->lessonId(), quint64(2));
    host.recorder.clear();
    VyrTrack::instance()->clearEvents();
    {
        NoticeListModel::BatchScope scope;
        runSteps(QStringLiteral("5u"));
        QCOMPARE(tracked().size(), 1);
        QCOMPARE(host.recorder.joined(), QString());
    }
    QCOMPARE(host.recorder.joined(), QStringLiteral("reset updated"));
    const GatherNoticePtr top = TestKit::noticeAt(view->model(), 0);
    QCOMPARE(top->lessonId(), quint64(1));
    QCOMPARE(top->type(), LessonStart);
    QCOMPARE(qint64(top->time()), kNow + 5);
    QCOMPARE(NoticeListModel::instance()->rowCount(), 2);
}

// A removal inside a batch first announces the rows before it, then removes as usual.
void TestNoticeBatch::deleteInsideBatchAnnouncesWhatCameBefore()
{
    QStringList singles;
    {
        Host host;
        runSteps(QStringLiteral("1f2f3f"));
        NoticeListModel* model = NoticeListModel::instance();
        model->delNotice(model->index(0, 0));
        runSteps(QStringLiteral("c"));
        singles = host.outcome();
    }
    cleanup();
    init();
    Host host;
    runSteps(QStringLiteral("1f"));
    host.recorder.clear();
    {
        NoticeListModel::BatchScope scope;
        runSteps(QStringLiteral("2f3f"));
        NoticeListModel* model = NoticeListModel::instance();
        model->delNotice(model->index(0, 0));
        QCOMPARE(host.recorder.joined(), QStringLiteral("reset popup(Activity) reset remove(Activity)"));
        runSteps(QStringLiteral("c"));
        QCOMPARE(host.recorder.joined(), QStringLiteral("reset popup(Activity) reset remove(Activity)"));
    }
    QCOMPARE(host.recorder.joined(),
             QStringLiteral("reset popup(Activity) reset remove(Activity) reset popup(Activity)"));
    QCOMPARE(host.outcome(), singles);
}

// Inside a batch the item model shows the list as it stood; the counts and the lesson rule see all.
void TestNoticeBatch::modelShowsOldListUntilBatchEnds()
{
    runSteps(QStringLiteral("f"));
    NoticeListModel* model = NoticeListModel::instance();
    NoticeListModel::BatchScope scope;
    runSteps(QStringLiteral("cll"));
    QCOMPARE(model->rowCount(), 1);
    QVERIFY(!model->data(model->index(1, 0), Qt::UserRole).isValid());
    QCOMPARE(model->getNoticeItemNum(Activity), 2);
    QCOMPARE(model->getNoticeItemNum(Lesson), 1);
}

void TestNoticeBatch::burstWhileWindowFadesEndsLikeSingles_data()
{
    QTest::addColumn<bool>("batched");
    QTest::newRow("singles") << false;
    QTest::newRow("batch") << true;
}

// Notices that come while the window fades out go with the others when the fade ends.
void TestNoticeBatch::burstWhileWindowFadesEndsLikeSingles()
{
    QFETCH(bool, batched);
    Host host;
    runSteps(QStringLiteral("ff"));
    QVERIFY(host.activity->isVisible());
    QVERIFY(QMetaObject::invokeMethod(host.activity.get(), "onStartOpacityAnimation"));
    auto* fade = host.activity->findChild<QPropertyAnimation*>(QStringLiteral("m_opacityAnimation"));
    QVERIFY(fade);
    {
        std::unique_ptr<NoticeListModel::BatchScope> scope(batched ? new NoticeListModel::BatchScope : nullptr);
        runSteps(QStringLiteral("fcfff"));
    }
    QCOMPARE(NoticeListModel::instance()->getNoticeItemNum(Activity), 7);
    fade->setCurrentTime(fade->duration());
    QTRY_VERIFY(!host.activity->isVisible());
    QCOMPARE(NoticeListModel::instance()->rowCount(), 0);
    QCOMPARE(host.activity->getContentWidgetSize().height(), 50);
}

// Notices of the same time stand in the order they came, batch or not.
void TestNoticeBatch::equalTimesKeepOrderOfAdding()
{
    Host host;
    {
        NoticeListModel::BatchScope scope;
        CoreEngine::instance()->setCurrentTime(kNow);
        NoticeListModel::instance()->addClusterNoticeRemindNotice(QStringLiteral("a"), 1, 900, 1);
        NoticeListModel::instance()->addClusterNoticeRemindNotice(QStringLiteral("b"), 2, 900, 1);
        CoreEngine::instance()->setCurrentTime(kNow + 1);
        NoticeListModel::instance()->addClusterNoticeRemindNotice(QStringLiteral("c"), 3, 900, 1);
        CoreEngine::instance()->setCurrentTime(kNow);
        NoticeListModel::instance()->addClusterNoticeRemindNotice(QStringLiteral("d"), 4, 900, 1);
    }
    NoticeListModel::instance()->addClusterNoticeRemindNotice(QStringLiteral("e"), 5, 900, 1);
    QStringList contentIds;
    auto* view = host.activity->findChild<QAbstractItemView*>();
    for (int row = 0; row < view->model()->rowCount(); ++row)
        contentIds << QString::number(TestKit::noticeAt(view->model(), row)->contentId());
    QCOMPARE(contentIds, QStringList({"3", "1", "2", "4", "5"}));
}

// An end without a start changes nothing and says so.
void TestNoticeBatch::unmatchedEndIsLoggedAndIgnored()
{
    ModelSignalRecorder recorder(NoticeListModel::instance());
    QTest::ignoreMessage(QtInfoMsg, "end of a batch that was never begun, ignored");
    NoticeListModel::instance()->endBatch();
    QVERIFY(!NoticeListModel::instance()->isBatching());
    runSteps(QStringLiteral("f"));
    QCOMPARE(recorder.joined(), QStringLiteral("reset popup(Activity)"));
}

// A scope whose model was released in between ends quietly; the new model is not batching.
void TestNoticeBatch::scopeOutlivingModelIsHarmless()
{
    delete m_tester;
    m_tester = nullptr;
    {
        NoticeListModel::BatchScope scope;
        runSteps(QStringLiteral("f"));
        NoticeListModel::release();
        QCoreApplication::sendPostedEvents(nullptr, QEvent::DeferredDelete);
    }
    QVERIFY(!NoticeListModel::instance()->isBatching());
    QCOMPARE(NoticeListModel::instance()->rowCount(), 0);
}

QTEST_MAIN(TestNoticeBatch)
#include "tst_noticebatch.moc"
