// The gathered notice window holding N notices (N = 10, 100, 1,000; friend
// requests and cluster notices in turn):
//  - show: the window built on the filled model, sized, popped, laid out and
//    painted once (its whole widget tree rendered, as the backing store gets it);
//  - repaint: the shown window painted again;
//  - fade: the 500 ms fade-in as 30 frames of 60 Hz, each an opacity step and
//    a full repaint.
// The baseline of each, in the same run: a shown QListView of the window's size
// on QStandardItemModel + QSortFilterProxyModel (newest first) with the same
// rows at the same row height, painted by a plain QStyledItemDelegate, doing
// the same steps. The program prints the ratios and the growth exponent of the
// repaint over N.
//
// Run: QT_QPA_PLATFORM=offscreen build-rel/bench/bench_noticelistwidget --benchmark_repetitions=3

#include "BaselineViews.h"
#include "BenchMain.h"

#include "ContactsEngine.h"
#include "NoticeListModel.h"
#include "NoticeListWidget.h"
#include "VyrTrack.h"

#include <QPropertyAnimation>

#include <memory>

namespace {

constexpr int kIterations = 100;
constexpr int kFadeFrames = 30;
constexpr int kFadeMs = 500;
// A gathered row's height.
constexpr int kRowHeight = 88;
constexpr quint64 kClusterId = 500;
const std::vector<int> kSizes = {10, 100, 1000};

const QString kClusterText = QStringLiteral("Bring your textbooks and a calculator tomorrow, we start chapter 3");
const QString kFriendText = QStringLiteral("Friend request: someone asks to add you as a contact");

// The model holds `count` notices of the Activity window, as many adds of the host left it.
void fillModel(int count)
{
    NoticeListModel* model = NoticeListModel::instance();
    model->delNotice(VyrEngine::Activity);
    for (int i = 0; i < count; ++i) {
        if (i % 2)
            model->addClusterNoticeRemindNotice(kClusterText, quint64(100 + i), kClusterId, 5);
        else
            model->addContactorAddNotice();
    }
    VyrTrack::instance()->clearEvents();
}

// Every running animation of the window run to its end, as if its time had passed.
void finishAnimations(QWidget* window)
{
    for (auto* animation : window->findChildren<QPropertyAnimation*>())
        animation->setCurrentTime(animation->duration());
}

// The window shown on the filled model, as the host shows it after an add.
std::unique_ptr<NoticeListWidget> showWindow()
{
    std::unique_ptr<NoticeListWidget> window(new NoticeListWidget(VyrEngine::Activity));
    window->adjustListHeight(0);
    window->popNoticeListWidget(0);
    finishAnimations(window.get());
    QCoreApplication::processEvents();
    return window;
}

QImage canvasFor(const QWidget* widget)
{
    QImage image(widget->size(), QImage::Format_ARGB32_Premultiplied);
    image.fill(Qt::transparent);
    return image;
}

std::unique_ptr<VyrBench::BaselineView> baselineFor(int count, QSize size)
{
    return std::make_unique<VyrBench::BaselineView>(VyrBench::BaselineView::List,
                                                    VyrBench::baselineRows(count, {kFriendText, kClusterText}), size,
                                                    kRowHeight);
}

// The window's size at `count` notices.
QSize windowSize(int count)
{
    fillModel(count);
    return showWindow()->size();
}

void BM_WindowShow(benchmark::State& state)
{
    fillModel(int(state.range(0)));
    QImage canvas = canvasFor(showWindow().get());
    for (auto _ : state) {
        std::unique_ptr<NoticeListWidget> window = showWindow();
        window->render(&canvas);
    }
}

void BM_BaselineShow(benchmark::State& state)
{
    auto baseline = baselineFor(int(state.range(0)), windowSize(int(state.range(0))));
    QImage canvas = canvasFor(baseline->view());
    for (auto _ : state) {
        std::unique_ptr<QAbstractItemView> view = baseline->makeShownView();
        view->render(&canvas);
    }
}

void BM_WindowRepaint(benchmark::State& state)
{
    fillModel(int(state.range(0)));
    std::unique_ptr<NoticeListWidget> window = showWindow();
    QImage canvas = canvasFor(window.get());
    for (auto _ : state)
        window->render(&canvas);
}

void BM_BaselineRepaint(benchmark::State& state)
{
    auto baseline = baselineFor(int(state.range(0)), windowSize(int(state.range(0))));
    QImage canvas = canvasFor(baseline->view());
    for (auto _ : state)
        baseline->repaint(&canvas);
}

void BM_WindowFade(benchmark::State& state)
{
    fillModel(int(state.range(0)));
    std::unique_ptr<NoticeListWidget> window = showWindow();
    QImage canvas = canvasFor(window.get());
    for (auto _ : state) {
        window->popNoticeListWidget(0);
        auto* fade = window->findChild<QPropertyAnimation*>(QStringLiteral("m_popAnimation"));
        for (int frame = 1; frame <= kFadeFrames && fade; ++frame) {
            // The last frame ends the animation, which then deletes itself.
            fade->setCurrentTime(frame * kFadeMs / kFadeFrames);
            window->render(&canvas);
        }
    }
}

void BM_BaselineFade(benchmark::State& state)
{
    auto baseline = baselineFor(int(state.range(0)), windowSize(int(state.range(0))));
    QWidget* view = baseline->view();
    QImage canvas = canvasFor(view);
    for (auto _ : state) {
        for (int frame = 1; frame <= kFadeFrames; ++frame) {
            view->setWindowOpacity(double(frame) / kFadeFrames);
            view->render(&canvas);
        }
    }
}

void sizes(benchmark::internal::Benchmark* benchmark)
{
    for (int size : kSizes)
        benchmark->Arg(size);
    benchmark->Iterations(kIterations)->Unit(benchmark::kMicrosecond);
}

BENCHMARK(BM_WindowShow)->Apply(sizes);
BENCHMARK(BM_BaselineShow)->Apply(sizes);
BENCHMARK(BM_WindowRepaint)->Apply(sizes);
BENCHMARK(BM_BaselineRepaint)->Apply(sizes);
BENCHMARK(BM_WindowFade)->Apply(sizes);
BENCHMARK(BM_BaselineFade)->Apply(sizes);

void setUp()
{
    VyrEngine::ContactsEngine::instance()->putCluster(kClusterId, QStringLiteral("Class 3A"));
}

void printRatios(const MedianReporter& reporter)
{
    const std::vector<std::pair<std::string, std::string>> steps = {
        {"Show", "show"}, {"Repaint", "repaint"}, {"Fade", "fade-in, 30 frames"}};
    for (const auto& step : steps) {
        for (int size : kSizes) {
            const std::string n = "/" + std::to_string(size);
            VyrBench::printRatio(reporter, "window " + step.second + ", " + std::to_string(size) + " notices",
                                 "BM_Window" + step.first + n, "BM_Baseline" + step.first + n);
        }
    }
    VyrBench::printGrowthExponent(reporter, "window repaint over notices", "BM_WindowRepaint", kSizes);
    VyrBench::printGrowthExponent(reporter, "baseline repaint over rows", "BM_BaselineRepaint", kSizes);
    VyrBench::printGrowthExponent(reporter, "window show over notices", "BM_WindowShow", kSizes);
}

} // namespace

VYR_BENCH_MAIN_SETUP(setUp, printRatios)
