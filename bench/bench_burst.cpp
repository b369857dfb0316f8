// Bursts of gathered notices with both windows (Activity and Lesson) up and
// wired the way a host wires them: each popupNoticeListWidget() sizes that
// window (adjustListHeight(0)) and pops it, or slides it when it is up; each
// removal shrinks it.
//
//   BM_BurstLoop/n      n adds from an empty list, the event loop run after
//                       each (the views lay out and paint as in the client)
//   BM_BurstRepaint/n   the same, and both windows repainted after each add
//   BM_AddNth/n         the n-th add (and its turn of the event loop) onto
//                       n - 1 rows, windows up
//   BM_Batch/n          n notices taken in inside one NoticeListModel::BatchScope,
//                       then one turn of the event loop
//
// Every figure has a baseline of the same name + "Baseline", measured in the
// same run: a QStandardItemModel reset on every add (once for the batch), two
// QSortFilterProxyModels (category filter, descending time sort, dynamic
// sort) and two shown QListViews of the window list's size, driven the same way.
//
//   QT_QPA_PLATFORM=offscreen ./bench_burst --benchmark_repetitions=3
//
// After the table it prints each figure's ratio to its baseline and the
// growth exponents (log-log slope of CPU time over n) of the bursts.

#include "ContactsEngine.h"
#include "CoreEngine.h"
#include "CourseEngine.h"
#include "BenchMain.h"
#include "MedianReporter.h"
#include "NoticeListModel.h"
#include "NoticeListWidget.h"

#include <QApplication>
#include <QListView>
#include <QSignalBlocker>
#include <QSortFilterProxyModel>
#include <QStandardItemModel>
#include <QTranslator>
#include <benchmark/benchmark.h>
#include <cmath>
#include <cstdio>
#include <map>
#include <memory>
#include <regex>
#include <string>

using namespace VyrEngine;

namespace {

const qint64 kNow = 1800000000;
const int kTimeRole = Qt::UserRole + 1;
const int kCategoryRole = Qt::UserRole + 2;

enum class Pace { Loop, Repaint };

// The i-th notice of a run: one in ten a lesson notice, one in ten a cluster
// notice, the rest friend requests; times out of order, with ties.
bool isLesson(int i)
{
    return i % 10 == 9;
}

quint32 timeOf(int i)
{
    return quint32(kNow + (i * 7919) % 1000);
}

quint64 lessonIdOf(int i)
{
    return quint64(i + 1);
}

void putLessons(int count)
{
    static int known = 0;
    auto* courses = CourseEngine::instance();
    for (int i = known; i < count; ++i) {
        if (!isLesson(i))
            continue;
        SnapshotLesson lesson;
        lesson.schoolId = 7;
        lesson.courseId = 500;
        lesson.lessonId = lessonIdOf(i);
        lesson.startTime = kNow + 3600;
        lesson.role = 1;
        courses->putLesson(lesson, QStringLiteral("Algebra"));
    }
    known = qMax(known, count);
}

void turnEventLoop()
{
    QCoreApplication::processEvents(QEventLoop::AllEvents);
}

// The notice model, both windows and a host's handlers.
class NoticeSide : public QObject
{
public:
    NoticeSide()
    {
        NoticeListModel::release();
        QCoreApplication::sendPostedEvents(nullptr, QEvent::DeferredDelete);
        m_model = NoticeListModel::instance();
        m_activity.reset(new NoticeListWidget(Activity));
        m_lesson.reset(new NoticeListWidget(Lesson));
        connect(m_model, &NoticeListModel::popupNoticeListWidget, this, [this](NoticeCategory category) {
            NoticeListWidget* window = windowOf(category);
            window->adjustListHeight(0);
            if (window->isVisible())
                window->autoAdjustNoticeListWidgetPos();
            else
                window->popNoticeListWidget(category == Lesson ? 400 : 0);
        });
        connect(m_model, &NoticeListModel::removeNoticeListItem, this,
                [this](NoticeCategory category) { windowOf(category)->adjustListHeight(1); });
    }

    // Adds the i-th notice; a lesson's look-up completes on the event loop, as in the client.
    void add(int i)
    {
        CoreEngine::instance()->setCurrentTime(timeOf(i));
        if (isLesson(i)) {
            m_model->addLessonNotice(LessonAhead, lessonIdOf(i));
            ++m_pendingLessons;
        } else if (i % 10 == 4) {
            m_model->addClusterNoticeRemindNotice(QStringLiteral("Bring your textbooks"), quint64(i), 900, 1);
        } else {
            m_model->addContactorAddNotice();
        }
    }

    // Lets pending look-ups complete, as the client's event loop would.
    void settle(int expectedRows)
    {
        for (int round = 0; round < 50 && m_pendingLessons > 0; ++round) {
            turnEventLoop();
            if (rows() >= expectedRows)
                m_pendingLessons = 0;
        }
    }

    // Inside a batch the new rows are counted, not shown.
    int rows() const
    {
        return m_model->isBatching() ? m_model->getNoticeItemNum(Activity) + m_model->getNoticeItemNum(Lesson)
                                     : m_model->rowCount();
    }

    void step(int i, Pace pace)
    {
        add(i);
        settle(i + 1);
        turnEventLoop();
        if (pace == Pace::Repaint) {
            m_activity->repaint();
            m_lesson->repaint();
        }
    }

    void batch(int n)
    {
        {
            NoticeListModel::BatchScope scope(m_model);
            for (int i = 0; i < n; ++i)
                add(i);
            settle(n);
        }
        turnEventLoop();
    }

    void removeLast() { m_model->delNotice(m_model->index(m_model->rowCount() - 1, 0)); }

private:
    NoticeListWidget* windowOf(NoticeCategory category) { return category == Lesson ? m_lesson.get() : m_activity.get(); }

    NoticeListModel* m_model = nullptr;
    std::unique_ptr<NoticeListWidget> m_activity;
    std::unique_ptr<NoticeListWidget> m_lesson;
    int m_pendingLessons = 0;
};

// A QStandardItemModel whose every change is a full reset, as the notice model's.
class ResettingItemModel : public QStandardItemModel
{
public:
    using QStandardItemModel::beginResetModel;
    using QStandardItemModel::endResetModel;
};

// Qt's own pieces doing the same: a model whose every change is a full reset,
// two filtering and sorting proxies, two shown list views.
class BaselineSide
{
public:
    BaselineSide()
    {
        for (NoticeCategory category : {Activity, Lesson}) {
            auto* proxy = new QSortFilterProxyModel;
            proxy->setSourceModel(&m_model);
            proxy->setFilterRole(kCategoryRole);
            proxy->setFilterFixedString(QString::number(int(category)));
            proxy->setSortRole(kTimeRole);
            proxy->setDynamicSortFilter(true);
            proxy->sort(0, Qt::DescendingOrder);
            m_proxies.emplace_back(proxy);
            auto* view = new QListView;
            view->setUniformItemSizes(true);
            view->setModel(proxy);
            view->resize(364, 308);
            view->move(category == Lesson ? 0 : 400, 0);
            view->show();
            m_views.emplace_back(view);
        }
    }

    void step(int i, Pace pace)
    {
        m_model.beginResetModel();
        append(i);
        m_model.endResetModel();
        turnEventLoop();
        if (pace == Pace::Repaint) {
            for (auto& view : m_views)
                view->repaint();
        }
    }

    void batch(int n)
    {
        m_model.beginResetModel();
        for (int i = 0; i < n; ++i)
            append(i);
        m_model.endResetModel();
        turnEventLoop();
    }

    void removeLast()
    {
        m_model.beginResetModel();
        {
            const QSignalBlocker quiet(&m_model);
            m_model.removeRow(m_model.rowCount() - 1);
        }
        m_model.endResetModel();
    }

private:
    void append(int i)
    {
        auto* item = new QStandardItem(QStringLiteral("notice %1").arg(i));
        item->setData(timeOf(i), kTimeRole);
        item->setData(int(isLesson(i) ? Lesson : Activity), kCategoryRole);
        const QSignalBlocker quiet(&m_model);
        m_model.appendRow(item);
    }

    ResettingItemModel m_model;
    std::vector<std::unique_ptr<QSortFilterProxyModel>> m_proxies;
    std::vector<std::unique_ptr<QListView>> m_views;
};

template <typename Side>
void burst(benchmark::State& state, Pace pace)
{
    const int n = int(state.range(0));
    putLessons(n);
    for (auto _ : state) {
        state.PauseTiming();
        std::unique_ptr<Side> side(new Side);
        turnEventLoop();
        state.ResumeTiming();
        for (int i = 0; i < n; ++i)
            side->step(i, pace);
        state.PauseTiming();
        side.reset();
        turnEventLoop();
        state.ResumeTiming();
    }
}

// The n-th add onto n - 1 rows (put in untimed), taken out again untimed.
template <typename Side>
void addNth(benchmark::State& state)
{
    const int n = int(state.range(0));
    putLessons(n);
    Side side;
    side.batch(n - 1);
    for (auto _ : state) {
        side.step(n - 1, Pace::Loop);
        state.PauseTiming();
        side.removeLast();
        turnEventLoop();
        state.ResumeTiming();
    }
}

template <typename Side>
void batch(benchmark::State& state)
{
    const int n = int(state.range(0));
    putLessons(n);
    for (auto _ : state) {
        state.PauseTiming();
        std::unique_ptr<Side> side(new Side);
        turnEventLoop();
        state.ResumeTiming();
        side->batch(n);
        state.PauseTiming();
        side.reset();
        turnEventLoop();
        state.ResumeTiming();
    }
}

void BM_BurstLoop(benchmark::State& state)
{
    burst<NoticeSide>(state, Pace::Loop);
}
void BM_BurstLoopBaseline(benchmark::State& state)
{
    burst<BaselineSide>(state, Pace::Loop);
}
void BM_BurstRepaint(benchmark::State& state)
{
    burst<NoticeSide>(state, Pace::Repaint);
}
void BM_BurstRepaintBaseline(benchmark::State& state)
{
    burst<BaselineSide>(state, Pace::Repaint);
}
void BM_AddNth(benchmark::State& state)
{
    addNth<NoticeSide>(state);
}
void BM_AddNthBaseline(benchmark::State& state)
{
    addNth<BaselineSide>(state);
}
void BM_Batch(benchmark::State& state)
{
    batch<NoticeSide>(state);
}
void BM_BatchBaseline(benchmark::State& state)
{
    batch<BaselineSide>(state);
}

// One pass per repetition for the bursts and the batch: it is their total that counts.
void registerBursts()
{
    for (int n : {1000, 2000, 5000, 20000}) {
        benchmark::RegisterBenchmark("BM_BurstLoopBaseline", BM_BurstLoopBaseline)->ArgName("n")->Arg(n)->Iterations(1)->Unit(benchmark::kMillisecond);
        benchmark::RegisterBenchmark("BM_BurstLoop", BM_BurstLoop)->ArgName("n")->Arg(n)->Iterations(1)->Unit(benchmark::kMillisecond);
    }
    for (int n : {1000, 2000}) {
        benchmark::RegisterBenchmark("BM_BurstRepaintBaseline", BM_BurstRepaintBaseline)->ArgName("n")->Arg(n)->Iterations(1)->Unit(benchmark::kMillisecond);
        benchmark::RegisterBenchmark("BM_BurstRepaint", BM_BurstRepaint)->ArgName("n")->Arg(n)->Iterations(1)->Unit(benchmark::kMillisecond);
    }
    for (int n : {1000, 10000}) {
        benchmark::RegisterBenchmark("BM_AddNthBaseline", BM_AddNthBaseline)->ArgName("n")->Arg(n)->Iterations(20)->Unit(benchmark::kMicrosecond);
        benchmark::RegisterBenchmark("BM_AddNth", BM_AddNth)->ArgName("n")->Arg(n)->Iterations(20)->Unit(benchmark::kMicrosecond);
    }
    for (int n : {1000, 20000}) {
        benchmark::RegisterBenchmark("BM_BatchBaseline", BM_BatchBaseline)->ArgName("n")->Arg(n)->Iterations(1)->Unit(benchmark::kMillisecond);
        benchmark::RegisterBenchmark("BM_Batch", BM_Batch)->ArgName("n")->Arg(n)->Iterations(1)->Unit(benchmark::kMillisecond);
    }
}

struct Name
{
    std::string family;
    std::string rest;
    double n = 0;
};

Name parse(const std::string& name)
{
    static const std::regex pattern("([^/]+)/n:([0-9]+)(.*)");
    std::smatch match;
    Name parsed;
    if (std::regex_match(name, match, pattern)) {
        parsed.family = match[1];
        parsed.n = std::stod(match[2]);
        parsed.rest = match[3];
    }
    return parsed;
}

bool isBaseline(const std::string& family)
{
    const std::string suffix = "Baseline";
    return family.size() > suffix.size() && family.compare(family.size() - suffix.size(), suffix.size(), suffix) == 0;
}

void printRatios(const MedianReporter& reporter)
{
    std::printf("\nCPU time against the QStandardItemModel + 2 QSortFilterProxyModel + 2 QListView baseline "
                "(medians, benchmark units):\n");
    std::printf("  %-44s %12s %12s %8s\n", "", "cpu", "baseline", "ratio");
    for (const auto& entry : reporter.cpuTimes()) {
        const Name name = parse(entry.first);
        if (name.family.empty() || isBaseline(name.family))
            continue;
        std::string baselineName = entry.first;
        baselineName.replace(0, name.family.size(), name.family + "Baseline");
        auto baseline = reporter.cpuTimes().find(baselineName);
        if (baseline == reporter.cpuTimes().end() || baseline->second <= 0)
            continue;
        std::printf("  %-44s %12.3f %12.3f %8.3f\n", entry.first.c_str(), entry.second, baseline->second,
                    entry.second / baseline->second);
    }
}

// Log-log slope of CPU time over n, from the smallest to the largest n of a family.
void printExponents(const MedianReporter& reporter)
{
    std::map<std::string, std::map<double, double>> families;
    for (const auto& entry : reporter.cpuTimes()) {
        const Name name = parse(entry.first);
        if (!name.family.empty() && entry.second > 0)
            families[name.family][name.n] = entry.second;
    }
    std::printf("\nGrowth exponents (log-log slope of CPU time over n):\n");
    for (const auto& family : families) {
        if (family.second.size() < 2)
            continue;
        const auto first = family.second.begin();
        const auto last = std::prev(family.second.end());
        const double slope = std::log(last->second / first->second) / std::log(last->first / first->first);
        std::printf("  %-28s n %6.0f to %6.0f: %5.2f", family.first.c_str(), first->first, last->first, slope);
        // The slope of each step too: where the growth bends.
        for (auto it = family.second.begin(); std::next(it) != family.second.end(); ++it) {
            const auto next = std::next(it);
            std::printf("  [%0.f-%0.f %.2f]", it->first, next->first,
                        std::log(next->second / it->second) / std::log(next->first / it->first));
        }
        std::printf("\n");
    }
}

} // namespace

static void setUp()
{
    CoreEngine::instance()->setCurrentTime(kNow);
    // Lesson and cluster notices find their cluster, so that the intake logs nothing.
    ContactsEngine::instance()->putCluster(500, QStringLiteral("Class 3"));
    ContactsEngine::instance()->putCluster(900, QStringLiteral("Class 4"));
    registerBursts();
}

static void after(const MedianReporter& reporter)
{
    printRatios(reporter);
    printExponents(reporter);
}

VYR_BENCH_MAIN_SETUP(setUp, after)
