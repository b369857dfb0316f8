// The friend-request page SHOWN (FriendRequestWidget with its real proxy and
// view, offscreen), at 10,000 and 100,000 requests:
// - the longest GUI-thread gap while a later page of 30 loads (query of
//   500 ms on the worker, rows folded in on the GUI thread);
// - one live update (a person's new request moves the row to today), up to
//   the view laid out and painted again; and one that changes the first
//   shown row in place (same day, another status), the baseline setting that
//   row's data;
// - filling the shown page with n records in one go, 1,000 to 100,000, with
//   the growth exponent (log-log slope);
// - scrolling a page at a time from the top to the end of 10,000 rows, three
//   page loads included: the longest step or wait.
// Each has a baseline in the same run: a QStandardItemModel with the same day
// groups and rows, a QSortFilterProxyModel sorting by date, and a shown
// QTreeView of the same size doing the same work. Gaps are the GUI thread's
// CPU time between two ticks of a 1 ms timer; update and fill are CPU time. Every figure is
// printed as a ratio against its baseline at the end.
//
// Run: QT_QPA_PLATFORM=offscreen build-rel/bench/bench_friendrequestpage --benchmark_repetitions=3

#include "ContactsEngine.h"
#include "CoreEngine.h"
#include "FriendRequestInfo.h"
#include "FriendRequestModel.h"
#include "FriendRequestWidget.h"
#include "NoticeEngine.h"
#include "UserInfo.h"

#include <QElapsedTimer>
#include <QImage>
#include <QScrollBar>
#include <QSortFilterProxyModel>
#include <QStandardItemModel>
#include <QThreadPool>
#include <QTimer>
#include <QTreeView>
#include <benchmark/benchmark.h>

#include "BenchMain.h"
#include <ctime>
#include <cstdio>
#include <map>
#include <memory>
#include <thread>
#include <vector>

using VyrEngine::FriendRequestInfo;
using namespace FriendRequest;

namespace {

const quint64 kMe = 1000;
const qint64 kNow = 1800000000;
const int kStatuses[] = {4, 0, 5, 1, 6, 2, 3};
const int kPageQueryMs = 500;
const int kPageSize = 30;

// Person number `i`, the i-th newest: 72 people a day, every status.
FriendRequestInfo record(int i)
{
    const quint64 peer = 100000 + quint64(i);
    const int status = kStatuses[i % 7];
    const bool mine = status == 2 || status == 5;
    FriendRequestInfo info;
    info.setSequenceId(i + 1);
    info.setSourceId(mine ? kMe : peer);
    info.setTargetId(mine ? peer : kMe);
    info.setStatus(status);
    info.setDate(quint64(kNow) - 60 - quint64(i) * 1200);
    info.setMessage(QStringLiteral("Hello, I am in your class and would like to ask about the homework, %1").arg(i));
    return info;
}

// People first..first+count-1, newest first, as the engine answers.
QVector<FriendRequestInfo> records(int first, int count)
{
    static int known = 0;
    for (; known < first + count; ++known)
        VyrEngine::ContactsEngine::instance()->putUser(
            VyrEngine::UserInfo(100000 + quint64(known), QStringLiteral("Person %1").arg(known)));
    QVector<FriendRequestInfo> out;
    out.reserve(count);
    for (int i = first; i < first + count; ++i)
        out << record(i);
    return out;
}

QDate dayOf(quint64 seconds)
{
    return QDateTime::fromSecsSinceEpoch(qint64(seconds)).date();
}

// The baseline: the same two-level tree in a QStandardItemModel, a sorting
// proxy and a plain shown tree view.
struct Baseline
{
    QStandardItemModel model;
    QSortFilterProxyModel proxy;
    QTreeView view;
    QMap<QDate, QStandardItem*> groups;
    QHash<quint64, QStandardItem*> rows;

    Baseline()
    {
        proxy.setSourceModel(&model);
        proxy.setSortRole(DateRole);
        proxy.setDynamicSortFilter(true);
        proxy.sort(0, Qt::DescendingOrder);
        view.setHeaderHidden(true);
        view.setRootIsDecorated(false);
        view.setModel(&proxy);
        view.resize(640, 620);
        view.show();
    }

    QStandardItem* groupFor(quint64 date, bool onTop)
    {
        QStandardItem*& group = groups[dayOf(date)];
        if (!group) {
            group = new QStandardItem();
            group->setData(qulonglong(date), DateRole);
            if (onTop)
                model.insertRow(0, group);
            else
                model.appendRow(group);
            view.expand(proxy.mapFromSource(group->index()));
        }
        return group;
    }

    void add(const FriendRequestInfo& info, bool onTop)
    {
        const quint64 person = info.sourceId() == kMe ? info.targetId() : info.sourceId();
        auto* row = new QStandardItem(QStringLiteral("Person %1").arg(person));
        row->setData(qulonglong(info.date()), DateRole);
        row->setData(info.message(), MessageRole);
        row->setData(info.status(), StatusRole);
        QStandardItem* group = groupFor(info.date(), onTop);
        if (onTop)
            group->insertRow(0, row);
        else
            group->appendRow(row);
        rows.insert(person, row);
    }

    // A person's new request: the row leaves its day (and the day when empty) for the new one.
    void move(quint64 person, quint64 date)
    {
        QStandardItem* row = rows.value(person);
        QStandardItem* group = row->parent();
        const QDate oldDay = dayOf(row->data(DateRole).toULongLong());
        if (group->rowCount() == 1) {
            groups.remove(oldDay);
            model.removeRow(group->row());
        } else {
            group->removeRow(row->row());
        }
        FriendRequestInfo info = record(int(person - 100000));
        info.setDate(date);
        add(info, true);
    }
};

struct Page
{
    std::unique_ptr<FriendRequestWidget> widget;
    QTreeView* view = nullptr;
    FriendRequestModel* model = nullptr;
    int rows = 0;
};

void settle()
{
    for (int i = 0; i < 3; ++i)
        QCoreApplication::processEvents();
}

// A shown page filled with `n` people in one answer.
std::unique_ptr<Page> shownPage(int n)
{
    auto* engine = VyrEngine::NoticeEngine::instance();
    engine->setFriendRequestsDelay(0);
    engine->queueFriendRequestsAnswer(records(0, n));
    engine->setUiDataReady(true);
    auto page = std::make_unique<Page>();
    page->widget.reset(new FriendRequestWidget);
    page->widget->resize(720, 780);
    page->widget->show();
    settle();
    page->view = page->widget->findChild<QTreeView*>(QStringLiteral("friendRequestView"));
    page->model = page->view->findChild<FriendRequestModel*>();
    page->rows = n;
    return page;
}

std::unique_ptr<Baseline> shownBaseline(int n)
{
    auto base = std::make_unique<Baseline>();
    const QVector<FriendRequestInfo> all = records(0, n);
    for (int i = n - 1; i >= 0; --i)
        base->add(all.at(i), true);
    settle();
    return base;
}

// The page (or baseline) of each size is made once and kept for the benchmarks that only add to it;
// they go before the application does.
std::map<int, std::unique_ptr<Page>> s_pages;
std::map<int, std::unique_ptr<Baseline>> s_bases;

Page& pageOf(int n)
{
    auto& page = s_pages[n];
    if (!page)
        page = shownPage(n);
    return *page;
}

Baseline& baselineOf(int n)
{
    auto& base = s_bases[n];
    if (!base)
        base = shownBaseline(n);
    return *base;
}

// The GUI thread's own CPU time, in ns: on a machine shared with builds the
// wall clock mostly measures the other work, the thread's time what it did.
qint64 threadNs()
{
    timespec ts;
    clock_gettime(CLOCK_THREAD_CPUTIME_ID, &ts);
    return qint64(ts.tv_sec) * 1000000000 + ts.tv_nsec;
}

// Runs the GUI thread's event loop from `start` until `done` and 30 ms more,
// ticking a 1 ms timer; answers the longest GUI-thread time between two
// ticks, in ms: how long the thread was held from answering.
template <typename Start, typename Done>
double longestGapMs(Start start, Done done)
{
    QElapsedTimer clock;
    clock.start();
    qint64 last = threadNs();
    qint64 longest = 0;
    QTimer probe;
    probe.setTimerType(Qt::PreciseTimer);
    QObject::connect(&probe, &QTimer::timeout, [&]() {
        const qint64 now = threadNs();
        longest = qMax(longest, now - last);
        last = now;
    });
    probe.start(1);
    start();
    while (!done())
        QCoreApplication::processEvents(QEventLoop::WaitForMoreEvents, 5);
    const qint64 doneAt = clock.elapsed();
    while (clock.elapsed() < doneAt + 30)
        QCoreApplication::processEvents(QEventLoop::WaitForMoreEvents, 5);
    probe.stop();
    return double(longest) / 1e6;
}

// The page's later page: the engine answers the next 30 people after `delayMs` on the worker.
// The model tells the page once the page's rows are in.
double pageLoadGap(Page& page, int delayMs)
{
    auto* engine = VyrEngine::NoticeEngine::instance();
    engine->queueFriendRequestsAnswer(records(page.rows, kPageSize));
    engine->setFriendRequestsDelay(delayMs);
    page.rows += kPageSize;
    bool arrived = false;
    const QMetaObject::Connection told = QObject::connect(
        page.model, &FriendRequestModel::friendRequestChangeSignal, [&arrived]() { arrived = true; });
    const double gap = longestGapMs([&]() { page.model->loadMoreUiData(); }, [&]() { return arrived; });
    QObject::disconnect(told);
    engine->setFriendRequestsDelay(0);
    return gap;
}

double baselineLoadGap(Baseline& base, int& rows, int delayMs)
{
    const QVector<FriendRequestInfo> page = records(rows, kPageSize);
    rows += kPageSize;
    bool arrived = false;
    std::thread worker;
    const double gap = longestGapMs(
        [&]() {
            worker = std::thread([&]() {
                std::this_thread::sleep_for(std::chrono::milliseconds(delayMs));
                QMetaObject::invokeMethod(
                    &base.model,
                    [&]() {
                        for (const FriendRequestInfo& info : page)
                            base.add(info, false);
                        arrived = true;
                    },
                    Qt::QueuedConnection);
            });
        },
        [&]() { return arrived; });
    worker.join();
    return gap;
}

void BM_PageLoadGap(benchmark::State& state)
{
    Page& page = pageOf(int(state.range(0)));
    for (auto _ : state)
        state.SetIterationTime(pageLoadGap(page, kPageQueryMs) / 1000.0);
    state.counters["rows"] = page.rows;
}
BENCHMARK(BM_PageLoadGap)->Arg(10000)->Arg(100000)->Iterations(2)->UseManualTime()->Unit(benchmark::kMillisecond);

void BM_BaselineLoadGap(benchmark::State& state)
{
    const int n = int(state.range(0));
    Baseline& base = baselineOf(n);
    static std::map<int, int> rows;
    if (!rows.count(n))
        rows[n] = n;
    for (auto _ : state)
        state.SetIterationTime(baselineLoadGap(base, rows[n], kPageQueryMs) / 1000.0);
}
BENCHMARK(BM_BaselineLoadGap)->Arg(10000)->Arg(100000)->Iterations(2)->UseManualTime()->Unit(benchmark::kMillisecond);

// One move, up to the view laid out; a function of its own so that a profiler can single it out.
Q_NEVER_INLINE void movePerson(Page& page, int person, quint64 date)
{
    FriendRequestInfo info = record(person);
    info.setDate(date);
    page.model->contactorAddNoticeSlot(info);
    QCoreApplication::processEvents();
    // Lays out now whatever the view left for later, so the figure holds all of it.
    benchmark::DoNotOptimize(page.view->visualRect(page.view->model()->index(0, 0)));
}

Q_NEVER_INLINE void movePerson(Baseline& base, int person, quint64 date)
{
    base.move(100000 + quint64(person), date);
    QCoreApplication::processEvents();
    benchmark::DoNotOptimize(base.view.visualRect(base.proxy.index(0, 0)));
}

// One live update: a person of an old day asks again now; the row moves to today's group.
void BM_PageLiveUpdate(benchmark::State& state)
{
    Page& page = pageOf(int(state.range(0)));
    // Each repetition moves other people: one already moved would only change in place.
    static std::map<int, int> next;
    int& person = next.emplace(int(state.range(0)), page.rows / 2).first->second;
    static quint64 date = quint64(kNow);
    for (auto _ : state)
        movePerson(page, person++, ++date);
}
BENCHMARK(BM_PageLiveUpdate)->Arg(10000)->Arg(100000)->Iterations(50)->Unit(benchmark::kMillisecond);

void BM_BaselineLiveUpdate(benchmark::State& state)
{
    Baseline& base = baselineOf(int(state.range(0)));
    static std::map<int, int> next;
    int& person = next.emplace(int(state.range(0)), int(state.range(0)) / 2).first->second;
    static quint64 date = quint64(kNow);
    for (auto _ : state)
        movePerson(base, person++, ++date);
}
BENCHMARK(BM_BaselineLiveUpdate)->Arg(10000)->Arg(100000)->Iterations(50)->Unit(benchmark::kMillisecond);

// One live update in place: the person in the first shown row changes status on the same day; the
// row stays where it is and is painted anew. The baseline sets the status on its first shown row.
int inPlaceStatus(int round)
{
    return kStatuses[round % 7];
}

QModelIndex firstShownRow(QAbstractItemModel* shown)
{
    return shown->index(0, 0, shown->index(0, 0));
}

void BM_PageLiveUpdateInPlace(benchmark::State& state)
{
    Page& page = pageOf(int(state.range(0)));
    int round = 0;
    for (auto _ : state) {
        const QModelIndex first = firstShownRow(page.view->model());
        FriendRequestInfo info = record(int(first.data(DisplayIdRole).toULongLong() - 100000));
        info.setDate(first.data(DateRole).toULongLong());
        info.setStatus(inPlaceStatus(++round));
        page.model->contactorAddNoticeSlot(info);
        QCoreApplication::processEvents();
        benchmark::DoNotOptimize(page.view->visualRect(page.view->model()->index(0, 0)));
    }
}
BENCHMARK(BM_PageLiveUpdateInPlace)->Arg(10000)->Arg(100000)->Iterations(50)->Unit(benchmark::kMillisecond);

void BM_BaselineLiveUpdateInPlace(benchmark::State& state)
{
    Baseline& base = baselineOf(int(state.range(0)));
    int round = 0;
    for (auto _ : state) {
        QStandardItem* row = base.model.itemFromIndex(base.proxy.mapToSource(firstShownRow(&base.proxy)));
        row->setData(inPlaceStatus(++round), StatusRole);
        QCoreApplication::processEvents();
        benchmark::DoNotOptimize(base.view.visualRect(base.proxy.index(0, 0)));
    }
}
BENCHMARK(BM_BaselineLiveUpdateInPlace)->Arg(10000)->Arg(100000)->Iterations(50)->Unit(benchmark::kMillisecond);

// Filling the shown page (or baseline) with n records in one answer, until it is laid out and painted;
// taking it down is not timed.
template <typename Make>
void fillShown(benchmark::State& state, Make make)
{
    const int n = int(state.range(0));
    records(0, n);
    for (auto _ : state) {
        auto shown = make(n);
        state.PauseTiming();
        shown.reset();
        state.ResumeTiming();
    }
}

void BM_PageFill(benchmark::State& state)
{
    fillShown(state, shownPage);
}
BENCHMARK(BM_PageFill)->Arg(1000)->Arg(3000)->Arg(10000)->Arg(30000)->Arg(100000)->Iterations(1)
    ->Unit(benchmark::kMillisecond);

void BM_BaselineFill(benchmark::State& state)
{
    fillShown(state, shownBaseline);
}
BENCHMARK(BM_BaselineFill)->Arg(1000)->Arg(3000)->Arg(10000)->Arg(30000)->Arg(100000)->Iterations(1)
    ->Unit(benchmark::kMillisecond);

// Steps a page at a time to the end, repainting as the backing store would; reaching the end
// loads a later page (query on the worker, kScrollQueryMs), and the scroll goes on to the new
// end, three loads in all. Answers the longest step or wait, in ms.
const int kScrollQueryMs = 50;

// Which of the two the longest was, for the counters: the wait for a load, or a step.
double s_longestLoad = 0;
double s_longestStep = 0;

template <typename Prepare, typename Start, typename Grown>
double scrollToTheEnd(QTreeView* view, Prepare prepare, Start start, Grown grown)
{
    s_longestLoad = 0;
    s_longestStep = 0;
    QImage canvas(view->viewport()->size(), QImage::Format_ARGB32_Premultiplied);
    QScrollBar* bar = view->verticalScrollBar();
    bar->setValue(0);
    settle();
    double longest = 0;
    for (int loads = 0; loads < 3;) {
        const int next = qMin(bar->maximum(), bar->value() + qMax(1, bar->pageStep()));
        const bool reachesEnd = next >= bar->maximum();
        if (reachesEnd)
            prepare();
        const qint64 stepStart = threadNs();
        bar->setValue(next);
        view->viewport()->render(&canvas);
        QCoreApplication::processEvents();
        s_longestStep = qMax(s_longestStep, double(threadNs() - stepStart) / 1e6);
        if (reachesEnd) {
            s_longestLoad = qMax(s_longestLoad, longestGapMs(start, grown));
            ++loads;
        }
        longest = qMax(s_longestStep, s_longestLoad);
    }
    return longest;
}

void BM_PageScrollToEnd(benchmark::State& state)
{
    auto page = shownPage(10000);
    auto* engine = VyrEngine::NoticeEngine::instance();
    bool arrived = false;
    QObject::connect(page->model, &FriendRequestModel::friendRequestChangeSignal, [&arrived]() { arrived = true; });
    for (auto _ : state) {
        const double longest = scrollToTheEnd(
            page->view,
            [&]() {
                arrived = false;
                // The scroll bar at its end asks the engine; this is its answer.
                engine->queueFriendRequestsAnswer(records(page->rows, kPageSize));
                engine->setFriendRequestsDelay(kScrollQueryMs);
                page->rows += kPageSize;
            },
            []() {}, [&]() { return arrived; });
        state.SetIterationTime(longest / 1000.0);
        state.counters["stepMs"] = s_longestStep;
        state.counters["loadMs"] = s_longestLoad;
    }
    engine->setFriendRequestsDelay(0);
    QThreadPool::globalInstance()->waitForDone();
    settle();
}
BENCHMARK(BM_PageScrollToEnd)->Iterations(1)->UseManualTime()->Unit(benchmark::kMillisecond);

void BM_BaselineScrollToEnd(benchmark::State& state)
{
    auto base = shownBaseline(10000);
    int rows = 10000;
    for (auto _ : state) {
        bool arrived = false;
        std::vector<std::thread> workers;
        const double longest = scrollToTheEnd(
            &base->view, []() {},
            [&]() {
                arrived = false;
                const QVector<FriendRequestInfo> page = records(rows, kPageSize);
                rows += kPageSize;
                workers.emplace_back([&, page]() {
                    std::this_thread::sleep_for(std::chrono::milliseconds(kScrollQueryMs));
                    QMetaObject::invokeMethod(
                        &base->model,
                        [&, page]() {
                            for (const FriendRequestInfo& info : page)
                                base->add(info, false);
                            arrived = true;
                        },
                        Qt::QueuedConnection);
                });
            },
            [&]() { return arrived; });
        for (std::thread& worker : workers)
            worker.join();
        state.SetIterationTime(longest / 1000.0);
        state.counters["stepMs"] = s_longestStep;
        state.counters["loadMs"] = s_longestLoad;
    }
}
BENCHMARK(BM_BaselineScrollToEnd)->Iterations(1)->UseManualTime()->Unit(benchmark::kMillisecond);

const std::vector<int> kFillSizes = {1000, 3000, 10000, 30000, 100000};

void setUp()
{
    VyrEngine::CoreEngine::instance()->setCurrentUid(kMe);
    VyrEngine::CoreEngine::instance()->setCurrentTime(kNow);
}

// Gaps and the scroll set their own time (GUI-thread CPU time of the longest wait); the rest is CPU time.
void printRatios(const MedianReporter& reporter)
{
    std::printf("A 60 Hz frame is 16.7 ms.\n");
    for (const std::string n : {"10000", "100000"}) {
        VyrBench::printRatio(reporter, "longest GUI gap, page of 30 loads, " + n, "BM_PageLoadGap/" + n,
                             "BM_BaselineLoadGap/" + n, false);
        VyrBench::printRatio(reporter, "one live update (moves to today), " + n, "BM_PageLiveUpdate/" + n,
                             "BM_BaselineLiveUpdate/" + n);
        VyrBench::printRatio(reporter, "one live update in place, " + n, "BM_PageLiveUpdateInPlace/" + n,
                             "BM_BaselineLiveUpdateInPlace/" + n);
    }
    for (int n : kFillSizes) {
        const std::string s = std::to_string(n);
        VyrBench::printRatio(reporter, "fill in one go, " + s, "BM_PageFill/" + s, "BM_BaselineFill/" + s);
    }
    VyrBench::printGrowthExponent(reporter, "fill in one go, page (n log n is about 1.1 here)", "BM_PageFill",
                                  kFillSizes);
    VyrBench::printGrowthExponent(reporter, "fill in one go, baseline", "BM_BaselineFill", kFillSizes);
    VyrBench::printRatio(reporter, "longest step, scroll 10,000 + 3 loads", "BM_PageScrollToEnd",
                         "BM_BaselineScrollToEnd", false);
    // The shown pages go before the application does.
    QThreadPool::globalInstance()->waitForDone();
    s_pages.clear();
    s_bases.clear();
}

} // namespace

VYR_BENCH_MAIN_SETUP(setUp, printRatios)
