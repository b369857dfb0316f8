// Hostile input against the windows that show it: each input next to an
// ordinary one on the same path, in the same run. A path runs from handing
// the input to the library until the user sees the result (window built,
// popped and painted; a download ended and its picture or fallback shown; an
// answer handled). For each row: the median wall time of the hostile run, the
// ordinary run's time and their ratio, and the resident memory the hostile
// run added at its peak. The goal for every hostile row is under 50 ms and
// under 50 MB.
//
// Run: QT_QPA_PLATFORM=offscreen build-bench/bench/bench_hostile

#include "HostileCases.h"
#include "BenchMain.h"

#include <benchmark/benchmark.h>

#include <cstdio>
#include <map>
#include <string>

namespace {

constexpr int kRepetitions = 5;

void runCase(benchmark::State& state, const HostileCases::Case* hostileCase, bool hostile)
{
    hostileCase->prepare(hostile);
    HostileCases::resetPeakResident();
    const long before = HostileCases::residentKb();
    for (auto _ : state)
        hostileCase->run(hostile);
    const long peak = HostileCases::peakResidentKb();
    state.counters["extra_MB"] = peak > before ? double(peak - before) / 1024.0 : 0.0;
    HostileCases::settle();
}

class HostileReporter : public MedianReporter
{
public:
    void ReportRuns(const std::vector<Run>& runs) override
    {
        MedianReporter::ReportRuns(runs);
        for (const Run& run : runs) {
            auto it = run.counters.find("extra_MB");
            if (it != run.counters.end())
                m_extraMb[run.run_name.str()] = std::max(m_extraMb[run.run_name.str()], double(it->second));
        }
    }

    void printTable(const std::vector<HostileCases::Case>& cases) const
    {
        std::printf("\n| hostile input | hostile (ms) | ordinary (ms) | ratio | extra resident at peak (MB) | "
                    "under 50 ms and 50 MB |\n|---|---:|---:|---:|---:|---|\n");
        for (const HostileCases::Case& c : cases) {
            const double hostile = find(realTimes(), c.name + "/hostile/");
            const double ordinary = find(realTimes(), c.name + "/ordinary/");
            const double extra = find(m_extraMb, c.name + "/hostile/");
            if (hostile < 0 || ordinary < 0)
                continue;
            std::printf("| %s | %.2f | %.2f | %.2f | %.1f | %s |\n", c.name.c_str(), hostile, ordinary,
                        ordinary > 0 ? hostile / ordinary : 0.0, extra,
                        hostile < 50.0 && extra < 50.0 ? "yes" : "NO");
        }
    }

private:
    // The figure of the run whose name starts with `prefix` (the runner adds its settings after it).
    static double find(const std::map<std::string, double>& figures, const std::string& prefix)
    {
        auto it = figures.lower_bound(prefix);
        return it != figures.end() && it->first.compare(0, prefix.size(), prefix) == 0 ? it->second : -1.0;
    }

    std::map<std::string, double> m_extraMb;
};

} // namespace

namespace {

std::vector<HostileCases::Case> g_cases;

void setUp()
{
    HostileCases::setUp();
    g_cases = HostileCases::all();
    for (const HostileCases::Case& c : g_cases) {
        for (bool hostile : {false, true}) {
            benchmark::RegisterBenchmark((c.name + (hostile ? "/hostile" : "/ordinary")).c_str(), runCase, &c,
                                         hostile)
                ->Iterations(1)
                ->Repetitions(kRepetitions)
                ->ReportAggregatesOnly(true)
                ->Unit(benchmark::kMillisecond)
                ->UseRealTime();
        }
    }
}

void printTable(const HostileReporter& reporter)
{
    reporter.printTable(g_cases);
    HostileCases::tearDown();
}

} // namespace

// Every refused input writes its log line, thousands of times here: the shared main keeps them quiet.
VYR_BENCH_MAIN_REPORTER(HostileReporter, setUp, printTable)
