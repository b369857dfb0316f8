// The gathered notice window: a notice arrives (adjustListHeight(0)) and the
// whole window repaints (its widget tree rendered into an image, as the
// backing store would get it), at 1, 4, 50 and 1,000 notices. Each figure is
// also given against a baseline measured in the same run: the repaint of an
// empty QWidget of the same size, which only fills its background.
//
// Run: QT_QPA_PLATFORM=offscreen build/bench/bench_noticelistwidget

#include "NoticeListModel.h"
#include "NoticeListWidget.h"
#include "ScreenCornerOverride_p.h"

#include <QApplication>
#include <QImage>
#include <QPropertyAnimation>
#include <QTranslator>
#include <benchmark/benchmark.h>
#include <cstdio>
#include <map>
#include <memory>

namespace {

constexpr int kIterations = 300;

// A window that has taken `count` notices one by one, as a host feeds it, shown and done fading in.
std::unique_ptr<NoticeListWidget> openWindow(int count)
{
    NoticeListModel* model = NoticeListModel::instance();
    model->delNotice(VyrEngine::Activity);
    std::unique_ptr<NoticeListWidget> window(new NoticeListWidget(VyrEngine::Activity));
    for (int i = 0; i < count; ++i) {
        model->addContactorAddNotice();
        window->adjustListHeight(0);
    }
    window->popNoticeListWidget(0);
    for (auto* animation : window->findChildren<QPropertyAnimation*>())
        animation->setCurrentTime(animation->duration());
    QCoreApplication::processEvents();
    return window;
}

QImage canvasFor(const QWidget* widget)
{
    QImage image(widget->size(), QImage::Format_ARGB32_Premultiplied);
    image.fill(Qt::transparent);
    return image;
}

void BM_WindowNoticeArrives(benchmark::State& state)
{
    const int count = int(state.range(0));
    std::unique_ptr<NoticeListWidget> window = openWindow(count);
    QImage canvas = canvasFor(window.get());
    for (auto _ : state) {
        window->adjustListHeight(0);
        window->render(&canvas);
        // Up to four rows each arrival grows the window: start the next round from the same height.
        if (count <= 4) {
            state.PauseTiming();
            window = openWindow(count);
            state.ResumeTiming();
        }
    }
    state.counters["height"] = window->height();
}

void BM_BaselineEmptyWidgetRepaint(benchmark::State& state)
{
    const int count = int(state.range(0));
    const int height = openWindow(count)->height();
    QWidget widget(nullptr, Qt::FramelessWindowHint | Qt::Tool | Qt::WindowStaysOnTopHint);
    widget.setAutoFillBackground(true);
    widget.setFixedSize(424, height);
    widget.show();
    QCoreApplication::processEvents();
    QImage canvas = canvasFor(&widget);
    for (auto _ : state)
        widget.render(&canvas);
    state.counters["height"] = height;
}

BENCHMARK(BM_WindowNoticeArrives)->Arg(1)->Arg(4)->Arg(50)->Arg(1000)->Iterations(kIterations)
    ->Unit(benchmark::kMicrosecond);
BENCHMARK(BM_BaselineEmptyWidgetRepaint)->Arg(1)->Arg(4)->Arg(50)->Arg(1000)->Iterations(kIterations)
    ->Unit(benchmark::kMicrosecond);

// Keeps each run's time per iteration, to print the ratios at the end.
class RatioReporter : public benchmark::ConsoleReporter
{
public:
    void ReportRuns(const std::vector<Run>& runs) override
    {
        ConsoleReporter::ReportRuns(runs);
        for (const Run& run : runs)
            m_microseconds[run.benchmark_name()] = run.GetAdjustedRealTime();
    }

    void printRatios() const
    {
        std::printf("\n| notices | window (us) | empty widget (us) | ratio | share of a 60 Hz frame |\n");
        std::printf("|---:|---:|---:|---:|---:|\n");
        for (int count : {1, 4, 50, 1000}) {
            const double window = value("BM_WindowNoticeArrives", count);
            const double baseline = value("BM_BaselineEmptyWidgetRepaint", count);
            std::printf("| %d | %.1f | %.1f | %.2f | %.1f%% |\n", count, window, baseline,
                        baseline > 0 ? window / baseline : 0.0, window / (1e6 / 60.0) * 100.0);
        }
    }

private:
    double value(const char* name, int count) const
    {
        const std::string key = std::string(name) + "/" + std::to_string(count) + "/iterations:" +
                                std::to_string(kIterations);
        auto it = m_microseconds.find(key);
        return it == m_microseconds.end() ? 0.0 : it->second;
    }

    std::map<std::string, double> m_microseconds;
};

} // namespace

int main(int argc, char** argv)
{
    if (qEnvironmentVariableIsEmpty("QT_QPA_PLATFORM") && qEnvironmentVariableIsEmpty("DISPLAY"))
        qputenv("QT_QPA_PLATFORM", "offscreen");
    QApplication app(argc, argv);
    // Quiet: the window logs each adjustment.
    qInstallMessageHandler([](QtMsgType, const QMessageLogContext&, const QString&) {});
    QTranslator translator;
    translator.load(QStringLiteral("VyrNotice_en"), QStringLiteral(VYR_TRANSLATIONS_DIR));
    QApplication::installTranslator(&translator);
    ScreenCornerOverride::set({TaskbarEdge::Bottom, QRect(0, 0, 1280, 800), QRect(0, 0, 1280, 760)});
    benchmark::Initialize(&argc, argv);
    RatioReporter reporter;
    benchmark::RunSpecifiedBenchmarks(&reporter);
    reporter.printRatios();
    return 0;
}
