// The friend-request tree: the first page (initUiData of 200 records), one
// live update at 1,000 to 100,000 rows, one later page of 30 at 10,000 and 100,000 rows,
// and how late the GUI thread's timers run while a page whose query takes
// 500 ms loads on the thread pool. Each figure has a baseline measured in the
// same run: a QStandardItemModel tree with the same groups and rows doing the
// same change (building, moving one row, appending 30), and for the lateness
// the same probe on an idle event loop.
//
// Run: QT_QPA_PLATFORM=offscreen build-rel/bench/bench_friendrequestmodel --benchmark_repetitions=3

#include "CoreEngine.h"
#include "FriendRequestModel.h"
#include "NoticeEngine.h"

#include <QCoreApplication>
#include <QDateTime>
#include <QElapsedTimer>
#include <QStandardItemModel>
#include <QThreadPool>
#include <QTimer>
#include <benchmark/benchmark.h>

#include "BenchMain.h"
#include <map>
#include <memory>

using VyrEngine::FriendRequestInfo;
using namespace FriendRequest;

namespace {

const quint64 Me = 1000000;
const qint64 Day0 = QDateTime(QDate(2026, 11, 20), QTime(0, 0)).toSecsSinceEpoch();

// Person `person` asks on day `daysBack`, `second` seconds after its midnight.
FriendRequestInfo request(quint64 person, int daysBack, int second, int seq)
{
    FriendRequestInfo info;
    info.setSequenceId(seq);
    info.setSourceId(person);
    info.setTargetId(Me);
    info.setStatus(4);
    info.setMessage(QStringLiteral("Hello, I am a classmate of yours"));
    info.setDate(quint64(QDateTime::fromSecsSinceEpoch(Day0).addDays(-daysBack).toSecsSinceEpoch() + second));
    return info;
}

// `rows` people spread over `groups` days, oldest first (the order update wants).
QVector<FriendRequestInfo> treeRecords(int rows, int groups)
{
    QVector<FriendRequestInfo> records;
    for (int i = rows - 1; i >= 0; --i)
        records << request(quint64(i + 1), i % groups, 60 + i / groups, i + 1);
    return records;
}

std::unique_ptr<FriendRequestModel> modelWith(int rows, int groups)
{
    auto model = std::make_unique<FriendRequestModel>();
    for (const FriendRequestInfo& info : treeRecords(rows, groups))
        model->contactorAddNoticeSlot(info);
    return model;
}

// The same groups and rows in a QStandardItemModel.
std::unique_ptr<QStandardItemModel> standardWith(const QVector<FriendRequestInfo>& records)
{
    auto model = std::make_unique<QStandardItemModel>();
    QMap<QDate, QStandardItem*> groups;
    for (int i = records.size() - 1; i >= 0; --i) {
        const FriendRequestInfo& info = records.at(i);
        const QDate day = QDateTime::fromSecsSinceEpoch(qint64(info.date())).date();
        QStandardItem*& group = groups[day];
        if (!group) {
            group = new QStandardItem();
            group->setData(qulonglong(info.date()), DateRole);
            model->appendRow(group);
        }
        auto* row = new QStandardItem();
        row->setData(info.sequenceId(), SequenceIdRole);
        row->setData(qulonglong(info.sourceId()), DisplayIdRole);
        row->setData(qulonglong(info.date()), DateRole);
        row->setData(info.message(), MessageRole);
        row->setData(info.status(), StatusRole);
        row->setData(qulonglong(info.sourceId()), SourceIdRole);
        row->setData(qulonglong(info.targetId()), TargetIdRole);
        group->appendRow(row);
    }
    return model;
}

void BM_InitUiData200(benchmark::State& state)
{
    auto* engine = VyrEngine::NoticeEngine::instance();
    engine->clear();
    for (const FriendRequestInfo& info : treeRecords(200, 20))
        engine->putFriendRequest(info);
    for (auto _ : state) {
        state.PauseTiming();
        auto model = std::make_unique<FriendRequestModel>();
        state.ResumeTiming();
        model->initUiData();
        state.PauseTiming();
        model.reset();
        state.ResumeTiming();
    }
    engine->clear();
}
BENCHMARK(BM_InitUiData200)->Iterations(200)->Unit(benchmark::kMicrosecond);

void BM_BaselineStandardBuild200(benchmark::State& state)
{
    const QVector<FriendRequestInfo> records = treeRecords(200, 20);
    for (auto _ : state) {
        auto model = standardWith(records);
        state.PauseTiming();
        model.reset();
        state.ResumeTiming();
    }
}
BENCHMARK(BM_BaselineStandardBuild200)->Iterations(200)->Unit(benchmark::kMicrosecond);

// One live record moves the newest group's last person to the oldest day and back.
void BM_LiveUpdate(benchmark::State& state)
{
    const int rows = int(state.range(0));
    const int groups = int(state.range(1));
    auto model = modelWith(rows, groups);
    const quint64 person = 1; // stands in the newest group
    int seq = rows + 10;
    bool toOldest = true;
    for (auto _ : state) {
        model->contactorAddNoticeSlot(request(person, toOldest ? groups - 1 : 0, 80000, ++seq));
        toOldest = !toOldest;
    }
}
BENCHMARK(BM_LiveUpdate)->Args({1000, 20})->Args({1000, 200})->Args({10000, 20})->Args({10000, 200})
    ->Args({100000, 1400})->Iterations(400)->Unit(benchmark::kMicrosecond);

QStandardItem* findRow(QStandardItem* group, quint64 person)
{
    for (int r = 0; r < group->rowCount(); ++r) {
        if (group->child(r)->data(DisplayIdRole).toULongLong() == person)
            return group->child(r);
    }
    return nullptr;
}

void BM_BaselineStandardMove(benchmark::State& state)
{
    const int rows = int(state.range(0));
    const int groups = int(state.range(1));
    auto model = standardWith(treeRecords(rows, groups));
    QStandardItem* newest = model->item(0);
    QStandardItem* oldest = model->item(model->rowCount() - 1);
    bool toOldest = true;
    for (auto _ : state) {
        QStandardItem* from = toOldest ? newest : oldest;
        QStandardItem* to = toOldest ? oldest : newest;
        QStandardItem* row = findRow(from, 1);
        QList<QStandardItem*> taken = from->takeRow(row->row());
        to->insertRow(0, taken);
        toOldest = !toOldest;
    }
}
BENCHMARK(BM_BaselineStandardMove)->Args({1000, 20})->Args({1000, 200})->Args({10000, 20})->Args({10000, 200})
    ->Args({100000, 1400})->Iterations(400)->Unit(benchmark::kMicrosecond);

// A later page of 30 new people, on the oldest day and the one before it.
QVector<FriendRequestInfo> laterPage(int rows, int groups, int round)
{
    QVector<FriendRequestInfo> page;
    for (int i = 0; i < 30; ++i)
        page << request(quint64(rows + 100 + round * 30 + i), groups - 1 + i / 15, 10 + i, 1 + i);
    return page;
}

void BM_LaterPage30(benchmark::State& state)
{
    const int rows = int(state.range(0));
    const int groups = int(state.range(1));
    auto model = modelWith(rows, groups);
    int round = 0;
    for (auto _ : state) {
        state.PauseTiming();
        const QVector<FriendRequestInfo> page = laterPage(rows, groups, round++);
        state.ResumeTiming();
        QMetaObject::invokeMethod(model.get(), "syncLoadMoreSlot", Qt::DirectConnection,
                                  Q_ARG(QVector<VyrEngine::FriendRequestInfo>, page));
        state.PauseTiming();
        for (const FriendRequestInfo& info : page)
            model->deleteOneNoticeSlot(info.sourceId());
        state.ResumeTiming();
    }
}
BENCHMARK(BM_LaterPage30)->Args({10000, 20})->Args({10000, 200})->Args({100000, 1400})->Iterations(200)->Unit(benchmark::kMicrosecond);

void BM_BaselineStandardAppend30(benchmark::State& state)
{
    const int rows = int(state.range(0));
    const int groups = int(state.range(1));
    auto model = standardWith(treeRecords(rows, groups));
    int round = 0;
    for (auto _ : state) {
        state.PauseTiming();
        const QVector<FriendRequestInfo> page = laterPage(rows, groups, round++);
        state.ResumeTiming();
        auto* newGroup = new QStandardItem();
        model->appendRow(newGroup);
        for (const FriendRequestInfo& info : page) {
            QStandardItem* group = info.date() < quint64(model->item(model->rowCount() - 2)->data(DateRole).toULongLong())
                                       ? newGroup
                                       : model->item(model->rowCount() - 2);
            auto* row = new QStandardItem();
            row->setData(qulonglong(info.sourceId()), DisplayIdRole);
            row->setData(qulonglong(info.date()), DateRole);
            row->setData(info.message(), MessageRole);
            row->setData(info.status(), StatusRole);
            group->appendRow(row);
        }
        state.PauseTiming();
        model->item(model->rowCount() - 2)->removeRows(rows / groups, 15);
        model->removeRow(model->rowCount() - 1);
        state.ResumeTiming();
    }
}
BENCHMARK(BM_BaselineStandardAppend30)->Args({10000, 20})->Args({10000, 200})->Args({100000, 1400})->Iterations(200)
    ->Unit(benchmark::kMicrosecond);

// The worst lateness of a 1 ms probe timer from `start` until 30 ms after `done`.
template <typename Start, typename Done>
double worstLatenessMs(Start start, Done done, int atLeastMs)
{
    QElapsedTimer clock;
    clock.start();
    qint64 last = clock.nsecsElapsed();
    qint64 worst = 0;
    QTimer probe;
    probe.setTimerType(Qt::PreciseTimer);
    QObject::connect(&probe, &QTimer::timeout, [&]() {
        const qint64 now = clock.nsecsElapsed();
        worst = qMax(worst, now - last - 1000000);
        last = now;
    });
    probe.start(1);
    start();
    while (!done() || clock.elapsed() < atLeastMs)
        QCoreApplication::processEvents(QEventLoop::WaitForMoreEvents, 5);
    // Go on probing a little: the tick that comes late is the one after the work.
    const qint64 doneAt = clock.elapsed();
    while (clock.elapsed() < doneAt + 30)
        QCoreApplication::processEvents(QEventLoop::WaitForMoreEvents, 5);
    probe.stop();
    return double(worst) / 1e6;
}

void BM_GuiLatenessDuringSlowPage(benchmark::State& state)
{
    auto* engine = VyrEngine::NoticeEngine::instance();
    engine->clear();
    const int rows = int(state.range(0));
    const int groups = int(state.range(1));
    auto model = modelWith(rows, groups);
    int round = 0;
    for (auto _ : state) {
        engine->clear();
        for (const FriendRequestInfo& info : laterPage(rows, groups, round++))
            engine->putFriendRequest(info);
        engine->setFriendRequestsDelay(500);
        const int before = model->rowCount(model->index(model->rowCount() - 1, 0));
        const int groupsBefore = model->rowCount();
        QElapsedTimer wall;
        wall.start();
        const double late = worstLatenessMs([&]() { model->loadMoreUiData(); },
                                            [&]() {
                                                return model->rowCount() != groupsBefore
                                                       || model->rowCount(model->index(model->rowCount() - 1, 0))
                                                              != before;
                                            },
                                            0);
        state.SetIterationTime(late / 1000.0);
        state.counters["page_ms"] = double(wall.elapsed());
        int total = 0;
        for (int g = 0; g < model->rowCount(); ++g)
            total += model->rowCount(model->index(g, 0));
        state.counters["rows"] = double(total);
        QThreadPool::globalInstance()->waitForDone();
        QCoreApplication::processEvents();
        for (const FriendRequestInfo& info : engine->storedFriendRequests())
            model->deleteOneNoticeSlot(info.sourceId());
    }
    engine->clear();
}
BENCHMARK(BM_GuiLatenessDuringSlowPage)->Args({1000, 20})->Args({10000, 20})->Args({10000, 200})->Args({100000, 1400})->Iterations(5)->UseManualTime()
    ->Unit(benchmark::kMillisecond);

void BM_BaselineGuiLatenessIdle(benchmark::State& state)
{
    for (auto _ : state) {
        const double late = worstLatenessMs([]() {}, []() { return true; }, 500);
        state.SetIterationTime(late / 1000.0);
    }
}
BENCHMARK(BM_BaselineGuiLatenessIdle)->Args({1000, 20})->Args({10000, 20})->Args({10000, 200})->Args({100000, 1400})->Iterations(5)->UseManualTime()
    ->Unit(benchmark::kMillisecond);

void setUp()
{
    VyrEngine::CoreEngine::instance()->setCurrentUid(Me);
    VyrEngine::CoreEngine::instance()->setCurrentTime(Day0 + 86400 * 2);
}

// CPU time, but the lateness, which is the probe's own wall-clock figure.
void printRatios(const MedianReporter& reporter)
{
    VyrBench::printRatio(reporter, "initUiData, 200 records (20 days)", "BM_InitUiData200",
                         "BM_BaselineStandardBuild200");
    for (const std::string args : {"1000/20", "1000/200", "10000/20", "10000/200", "100000/1400"})
        VyrBench::printRatio(reporter, "live update, rows/groups " + args, "BM_LiveUpdate/" + args,
                             "BM_BaselineStandardMove/" + args);
    for (const std::string args : {"10000/20", "10000/200", "100000/1400"})
        VyrBench::printRatio(reporter, "later page of 30, rows/groups " + args, "BM_LaterPage30/" + args,
                             "BM_BaselineStandardAppend30/" + args);
    for (const std::string args : {"1000/20", "10000/20", "10000/200", "100000/1400"})
        VyrBench::printRatio(reporter, "worst GUI lateness, 500 ms page, rows/groups " + args,
                             "BM_GuiLatenessDuringSlowPage/" + args, "BM_BaselineGuiLatenessIdle/" + args, false);
}

} // namespace

VYR_BENCH_MAIN_SETUP(setUp, printRatios)
