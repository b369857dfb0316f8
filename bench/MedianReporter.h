#pragma once

#include <benchmark/benchmark.h>

#include <map>
#include <set>
#include <string>
#include <vector>

// The console report, plus one figure per benchmark for the ratios a program
// prints at the end: the median when the run is repeated, else the single
// run's time per iteration, in the benchmark's own time unit. CPU time is the
// steadier figure on a machine shared with other work; wall time is kept for
// benchmarks that wait on purpose.
class MedianReporter : public benchmark::ConsoleReporter
{
public:
    void ReportRuns(const std::vector<Run>& runs) override
    {
        ConsoleReporter::ReportRuns(runs);
        for (const Run& run : runs) {
            const std::string name = run.run_name.str();
            const bool median = run.run_type == Run::RT_Aggregate && run.aggregate_name == "median";
            if (median)
                m_fromMedian.insert(name);
            if (median || (run.run_type == Run::RT_Iteration && !m_fromMedian.count(name))) {
                m_cpu[name] = run.GetAdjustedCPUTime();
                m_real[name] = run.GetAdjustedRealTime();
                m_units[name] = benchmark::GetTimeUnitString(run.time_unit);
                m_perSecond[name] = benchmark::GetTimeUnitMultiplier(run.time_unit);
            }
        }
    }

    const std::map<std::string, double>& cpuTimes() const { return m_cpu; }
    const std::map<std::string, double>& realTimes() const { return m_real; }
    const std::map<std::string, std::string>& units() const { return m_units; }
    // How many of the benchmark's time unit make a second (1e6 for microseconds).
    const std::map<std::string, double>& perSecond() const { return m_perSecond; }

private:
    std::set<std::string> m_fromMedian;
    std::map<std::string, double> m_cpu;
    std::map<std::string, double> m_real;
    std::map<std::string, std::string> m_units;
    std::map<std::string, double> m_perSecond;
};
