// What a full reset costs the two gathered windows (Activity and Lesson) as
// notices pile up: adding the 1,000th and the 10,000th notice, and a whole
// burst of 2,000 and of 20,000 notices from an empty list, as after a
// reconnect. Both windows' proxies are attached throughout.
//
// Baseline, in the same run: a QStandardItemModel holding the same times and
// categories, reset on every add the same way, read by two plain
// QSortFilterProxyModels (filtering by a category role, sorting by a time role
// descending). A third figure, "IntakeOnly", is the notice model with no proxy
// attached: what the intake and the reset cost by themselves.
//
//   QT_QPA_PLATFORM=offscreen ./bench_burst
//
// After the usual table it prints each figure as a ratio to its baseline.

#include "ContactsEngine.h"
#include "CoreEngine.h"
#include "CourseEngine.h"
#include "NoticeListModel.h"

#include <QApplication>
#include <QSignalBlocker>
#include <QSortFilterProxyModel>
#include <QStandardItemModel>
#include <QTranslator>
#include <benchmark/benchmark.h>
#include <cstdio>
#include <map>
#include <memory>
#include <set>
#include <string>

using namespace VyrEngine;

namespace {

const qint64 kNow = 1800000000;
const int kTimeRole = Qt::UserRole + 1;
const int kCategoryRole = Qt::UserRole + 2;

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
    auto* courses = CourseEngine::instance();
    for (int i = 0; i < count; ++i) {
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
}

// The notice model with both windows' proxies, fed through the real intake.
class NoticeSide
{
public:
    NoticeSide()
    {
        NoticeListModel::release();
        QCoreApplication::sendPostedEvents(nullptr, QEvent::DeferredDelete);
        m_model = NoticeListModel::instance();
    }

    void attachProxies()
    {
        m_activity.reset(new NoticeListSortFilterModel(m_model, Activity, nullptr));
        m_lesson.reset(new NoticeListSortFilterModel(m_model, Lesson, nullptr));
    }

    void add(int i)
    {
        CoreEngine::instance()->setCurrentTime(timeOf(i));
        if (isLesson(i)) {
            const int before = m_model->rowCount();
            m_model->addLessonNotice(LessonAhead, lessonIdOf(i));
            // The look-up completes on the event loop, as it does in the client.
            for (int round = 0; round < 5 && m_model->rowCount() == before; ++round) {
                QCoreApplication::processEvents(QEventLoop::AllEvents);
                QCoreApplication::sendPostedEvents();
            }
        } else if (i % 10 == 4) {
            m_model->addClusterNoticeRemindNotice(QStringLiteral("Bring your textbooks"), quint64(i), 900, 1);
        } else {
            m_model->addContactorAddNotice();
        }
    }

    void removeLast() { m_model->delNotice(m_model->index(m_model->rowCount() - 1, 0)); }

    int rows() const { return m_model->rowCount(); }

private:
    NoticeListModel* m_model = nullptr;
    std::unique_ptr<NoticeListSortFilterModel> m_activity;
    std::unique_ptr<NoticeListSortFilterModel> m_lesson;
};

// A QStandardItemModel whose every change is a full reset, as the notice model's.
class ResettingItemModel : public QStandardItemModel
{
public:
    void add(int i)
    {
        auto* item = new QStandardItem;
        item->setData(timeOf(i), kTimeRole);
        item->setData(int(isLesson(i) ? Lesson : Activity), kCategoryRole);
        beginResetModel();
        {
            const QSignalBlocker quiet(this);
            appendRow(item);
        }
        endResetModel();
    }

    void removeLast()
    {
        beginResetModel();
        {
            const QSignalBlocker quiet(this);
            removeRow(rowCount() - 1);
        }
        endResetModel();
    }
};

class BaselineSide
{
public:
    void attachProxies()
    {
        m_activity.reset(makeProxy(Activity));
        m_lesson.reset(makeProxy(Lesson));
    }

    void add(int i) { m_model.add(i); }
    void removeLast() { m_model.removeLast(); }
    int rows() const { return m_model.rowCount(); }

private:
    QSortFilterProxyModel* makeProxy(NoticeCategory category)
    {
        auto* proxy = new QSortFilterProxyModel;
        proxy->setSourceModel(&m_model);
        proxy->setFilterRole(kCategoryRole);
        proxy->setFilterFixedString(QString::number(int(category)));
        proxy->setSortRole(kTimeRole);
        proxy->setDynamicSortFilter(true);
        proxy->sort(0, Qt::DescendingOrder);
        return proxy;
    }

    ResettingItemModel m_model;
    std::unique_ptr<QSortFilterProxyModel> m_activity;
    std::unique_ptr<QSortFilterProxyModel> m_lesson;
};

// Adding the n-th notice to a list of n - 1. The list is filled before the
// proxies come, so that the set-up does not cost a burst; the added notice is
// taken out again, untimed.
template <typename Side>
void addNth(benchmark::State& state, bool withProxies)
{
    const int n = int(state.range(0));
    putLessons(n);
    Side side;
    for (int i = 0; i < n - 1; ++i)
        side.add(i);
    if (withProxies)
        side.attachProxies();
    for (auto _ : state) {
        side.add(n - 1);
        state.PauseTiming();
        side.removeLast();
        state.ResumeTiming();
    }
    state.counters["rows"] = side.rows() + 1;
}

// n notices one after the other into an empty list.
template <typename Side>
void burst(benchmark::State& state, bool withProxies)
{
    const int n = int(state.range(0));
    putLessons(n);
    for (auto _ : state) {
        state.PauseTiming();
        std::unique_ptr<Side> side(new Side);
        if (withProxies)
            side->attachProxies();
        state.ResumeTiming();
        for (int i = 0; i < n; ++i)
            side->add(i);
        state.PauseTiming();
        side.reset();
        state.ResumeTiming();
    }
}

void BM_AddNth(benchmark::State& state)
{
    addNth<NoticeSide>(state, true);
}

void BM_AddNthIntakeOnly(benchmark::State& state)
{
    addNth<NoticeSide>(state, false);
}

void BM_AddNthBaseline(benchmark::State& state)
{
    addNth<BaselineSide>(state, true);
}

void BM_Burst(benchmark::State& state)
{
    burst<NoticeSide>(state, true);
}

void BM_BurstIntakeOnly(benchmark::State& state)
{
    burst<NoticeSide>(state, false);
}

void BM_BurstBaseline(benchmark::State& state)
{
    burst<BaselineSide>(state, true);
}

BENCHMARK(BM_AddNthBaseline)->ArgName("n")->Arg(1000)->Arg(10000)->Unit(benchmark::kMicrosecond)->UseRealTime();
BENCHMARK(BM_AddNth)->ArgName("n")->Arg(1000)->Arg(10000)->Unit(benchmark::kMicrosecond)->UseRealTime();
BENCHMARK(BM_AddNthIntakeOnly)->ArgName("n")->Arg(1000)->Arg(10000)->Unit(benchmark::kMicrosecond)->UseRealTime();
BENCHMARK(BM_BurstBaseline)->ArgName("n")->Arg(2000)->Unit(benchmark::kMillisecond)->UseRealTime();
BENCHMARK(BM_Burst)->ArgName("n")->Arg(2000)->Unit(benchmark::kMillisecond)->UseRealTime();
BENCHMARK(BM_BurstIntakeOnly)->ArgName("n")->Arg(2000)->Unit(benchmark::kMillisecond)->UseRealTime();
// One pass each: a burst of 20,000 takes seconds even at its best.
BENCHMARK(BM_BurstBaseline)->ArgName("n")->Arg(20000)->Iterations(1)->Unit(benchmark::kMillisecond)->UseRealTime();
BENCHMARK(BM_Burst)->ArgName("n")->Arg(20000)->Iterations(1)->Unit(benchmark::kMillisecond)->UseRealTime();
BENCHMARK(BM_BurstIntakeOnly)->ArgName("n")->Arg(20000)->Iterations(1)->Unit(benchmark::kMillisecond)->UseRealTime();

struct Figure
{
    double realMs = 0;
    double cpuMs = 0;
};

// Keeps the real and CPU time of each run (the medians when repeated) in
// milliseconds, to print ratios at the end. On a busy machine the CPU time is
// the steadier of the two.
class RatioReporter : public benchmark::ConsoleReporter
{
public:
    std::map<std::string, Figure> figures;

    void ReportRuns(const std::vector<Run>& runs) override
    {
        ConsoleReporter::ReportRuns(runs);
        for (const Run& run : runs) {
            const std::string name = run.run_name.str();
            const double scale = unitToMs(run.time_unit);
            const Figure figure{run.GetAdjustedRealTime() * scale, run.GetAdjustedCPUTime() * scale};
            if (run.run_type == Run::RT_Aggregate && run.aggregate_name == "median") {
                m_medians.insert(name);
                figures[name] = figure;
            } else if (run.run_type == Run::RT_Iteration && !m_medians.count(name)) {
                figures[name] = figure;
            }
        }
    }

private:
    static double unitToMs(benchmark::TimeUnit unit)
    {
        switch (unit) {
        case benchmark::kNanosecond:
            return 1e-6;
        case benchmark::kMicrosecond:
            return 1e-3;
        case benchmark::kMillisecond:
            return 1.0;
        default:
            return 1e3;
        }
    }

    std::set<std::string> m_medians;
};

// "BM_BurstIntakeOnly/n:2000/real_time" -> "BM_BurstBaseline/n:2000/real_time".
std::string baselineOf(const std::string& name)
{
    const size_t slash = name.find('/');
    std::string base = name.substr(0, slash);
    const std::string suffix = "IntakeOnly";
    if (base.size() > suffix.size() && base.compare(base.size() - suffix.size(), suffix.size(), suffix) == 0)
        base.erase(base.size() - suffix.size());
    return base + "Baseline" + (slash == std::string::npos ? std::string() : name.substr(slash));
}

void printRatios(const RatioReporter& reporter)
{
    std::printf("\nAgainst the plain QStandardItemModel + QSortFilterProxyModel baseline of this run (ms):\n");
    std::printf("  %-46s %11s %11s %7s %11s %11s %7s\n", "", "real", "baseline", "ratio", "cpu", "baseline",
                "ratio");
    for (const auto& entry : reporter.figures) {
        if (entry.first.find("Baseline") != std::string::npos)
            continue;
        auto baseline = reporter.figures.find(baselineOf(entry.first));
        if (baseline == reporter.figures.end() || baseline->second.realMs <= 0 || baseline->second.cpuMs <= 0)
            continue;
        const Figure& ours = entry.second;
        const Figure& base = baseline->second;
        std::printf("  %-46s %11.3f %11.3f %7.2f %11.3f %11.3f %7.2f\n", entry.first.c_str(), ours.realMs,
                    base.realMs, ours.realMs / base.realMs, ours.cpuMs, base.cpuMs, ours.cpuMs / base.cpuMs);
    }
}

} // namespace

int main(int argc, char** argv)
{
    if (qEnvironmentVariableIsEmpty("QT_QPA_PLATFORM"))
        qputenv("QT_QPA_PLATFORM", "offscreen");
    QApplication app(argc, argv);
    QTranslator translator;
    translator.load(QStringLiteral("VyrNotice_en"), QStringLiteral(VYR_TRANSLATIONS_DIR));
    QCoreApplication::installTranslator(&translator);
    CoreEngine::instance()->setCurrentTime(kNow);
    // Lesson and cluster notices find their cluster, so that the intake logs nothing.
    ContactsEngine::instance()->putCluster(500, QStringLiteral("Class 3"));
    ContactsEngine::instance()->putCluster(900, QStringLiteral("Class 4"));

    benchmark::Initialize(&argc, argv);
    RatioReporter reporter;
    benchmark::RunSpecifiedBenchmarks(&reporter);
    printRatios(reporter);
    benchmark::Shutdown();
    return 0;
}
