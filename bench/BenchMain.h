#pragma once

// One main for every benchmark program, and the printers of its closing lines.
//
//   void setUp() { ... }                          // engines, records; after the application exists
//   void printRatios(const MedianReporter& r) {   // after the runs
//       VyrBench::printRatio(r, "window repaint, 100 rows", "BM_Window/100", "BM_Baseline/100");
//   }
//   VYR_BENCH_MAIN(printRatios)                   // or VYR_BENCH_MAIN_SETUP(setUp, printRatios),
//                                                 // or VYR_BENCH_MAIN_REPORTER(Reporter, setUp, printRatios)
//
// The application runs on the offscreen platform unless another is asked for,
// with the English translations, a fixed 1280 x 800 screen whose bottom 40
// pixels are the taskbar, and the library's log lines silenced (thousands of
// them would be measured too). Ratios use CPU time: on a machine shared with
// other work it moves far less than wall time between runs.

#include "MedianReporter.h"
#include "ScreenCorner.h"
#include "ScreenCornerOverride_p.h"

#include <QApplication>
#include <QTranslator>
#include <benchmark/benchmark.h>

#include <cmath>
#include <cstdio>
#include <functional>
#include <map>
#include <string>
#include <vector>

namespace VyrBench {

// The figure of the benchmark `name` in seconds: its exact name, or the first
// one the runner named `name` followed by its settings ("/iterations:300").
// -1 when it didn't run (filtered out).
inline double seconds(const MedianReporter& reporter, const std::string& name, bool cpu = true)
{
    const std::map<std::string, double>& figures = cpu ? reporter.cpuTimes() : reporter.realTimes();
    auto it = figures.find(name);
    if (it == figures.end()) {
        const std::string prefix = name + "/";
        it = figures.lower_bound(prefix);
        if (it == figures.end() || it->first.compare(0, prefix.size(), prefix) != 0)
            return -1.0;
    }
    return it->second / reporter.perSecond().at(it->first);
}

// Seconds shown in the unit that reads best.
inline std::string readable(double seconds)
{
    char text[32];
    if (seconds >= 1.0)
        std::snprintf(text, sizeof text, "%.3f s", seconds);
    else if (seconds >= 1e-3)
        std::snprintf(text, sizeof text, "%.3f ms", seconds * 1e3);
    else
        std::snprintf(text, sizeof text, "%.2f us", seconds * 1e6);
    return text;
}

// "ratio  <label>  <time>  baseline <time>  x<ratio>", from CPU time (or the
// time a benchmark set itself, with `cpu` false); nothing when either
// benchmark was filtered out.
inline double printRatio(const MedianReporter& reporter, const std::string& label, const std::string& name,
                         const std::string& baseline, bool cpu = true)
{
    const double ours = seconds(reporter, name, cpu);
    const double base = seconds(reporter, baseline, cpu);
    if (ours < 0 || base <= 0)
        return -1.0;
    std::printf("ratio  %-64s %12s  baseline %12s  x%.2f\n", label.c_str(), readable(ours).c_str(),
                readable(base).c_str(), ours / base);
    return ours / base;
}

// The exponent k of value ~ size^k: the least-squares slope of log(value)
// over log(size). NaN with fewer than two usable points.
inline double growthExponent(const std::vector<double>& sizes, const std::vector<double>& values)
{
    std::vector<std::pair<double, double>> points;
    for (size_t i = 0; i < sizes.size() && i < values.size(); ++i) {
        if (sizes[i] > 0 && values[i] > 0)
            points.emplace_back(std::log(sizes[i]), std::log(values[i]));
    }
    if (points.size() < 2)
        return std::nan("");
    double meanX = 0, meanY = 0;
    for (const auto& p : points) {
        meanX += p.first;
        meanY += p.second;
    }
    meanX /= points.size();
    meanY /= points.size();
    double covariance = 0, variance = 0;
    for (const auto& p : points) {
        covariance += (p.first - meanX) * (p.second - meanY);
        variance += (p.first - meanX) * (p.first - meanX);
    }
    return variance > 0 ? covariance / variance : std::nan("");
}

// "growth  <label>  exponent <k> over <sizes>" for the benchmarks named
// `name` + "/" + size, from CPU time; nothing when fewer than two ran.
inline double printGrowthExponent(const MedianReporter& reporter, const std::string& label, const std::string& name,
                                  const std::vector<int>& sizes)
{
    std::vector<double> xs, ys;
    std::string over;
    for (int size : sizes) {
        const double value = seconds(reporter, name + "/" + std::to_string(size));
        if (value <= 0)
            continue;
        xs.push_back(size);
        ys.push_back(value);
        over += (over.empty() ? "" : ", ") + std::to_string(size);
    }
    const double exponent = growthExponent(xs, ys);
    if (!std::isnan(exponent))
        std::printf("growth %-64s exponent %.2f over n = %s\n", label.c_str(), exponent, over.c_str());
    return exponent;
}

inline void quiet(QtMsgType, const QMessageLogContext&, const QString&) {}

// A program whose closing lines need more than the medians gives its own
// MedianReporter subclass as `Reporter`.
template<typename Reporter = MedianReporter>
int run(int argc, char** argv, const std::function<void()>& setUp, const std::function<void(const Reporter&)>& after)
{
    if (qEnvironmentVariableIsEmpty("QT_QPA_PLATFORM"))
        qputenv("QT_QPA_PLATFORM", "offscreen");
    QApplication app(argc, argv);
    qInstallMessageHandler(quiet);
    QTranslator translator;
    translator.load(QStringLiteral("VyrNotice_en"), QStringLiteral(VYR_TRANSLATIONS_DIR));
    QApplication::installTranslator(&translator);
    ScreenCornerOverride::set({TaskbarEdge::Bottom, QRect(0, 0, 1280, 800), QRect(0, 0, 1280, 760)});
    if (setUp)
        setUp();
    benchmark::Initialize(&argc, argv);
    if (benchmark::ReportUnrecognizedArguments(argc, argv))
        return 1;
    Reporter reporter;
    benchmark::RunSpecifiedBenchmarks(&reporter);
    std::printf("\n");
    if (after)
        after(reporter);
    std::fflush(stdout);
    return 0;
}

} // namespace VyrBench

#define VYR_BENCH_MAIN_REPORTER(Reporter, setUp, after)                                                           \
    int main(int argc, char** argv) { return VyrBench::run<Reporter>(argc, argv, setUp, after); }
#define VYR_BENCH_MAIN_SETUP(setUp, after) VYR_BENCH_MAIN_REPORTER(MedianReporter, setUp, after)
#define VYR_BENCH_MAIN(after) VYR_BENCH_MAIN_SETUP(nullptr, after)
