// The friend-request page's list while scrolling through 10,000 requests: at
// each step the scroll bar moves on by one page and the whole view is
// repainted (rendered into an image, as the backing store would get it). The
// baseline, in the same run, is a plain QTreeView with the default delegate
// on the same sorted rows, at the same size and the same scroll steps.
//
// Run: QT_QPA_PLATFORM=offscreen build/bench/bench_friendrequestpage

#include "ContactsEngine.h"
#include "CoreEngine.h"
#include "FriendRequestInfo.h"
#include "FriendRequestModel.h"
#include "FriendRequestWidget.h"
#include "NoticeEngine.h"
#include "UserInfo.h"

#include <QApplication>
#include <QImage>
#include <QScrollBar>
#include <QThreadPool>
#include <QTranslator>
#include <QTreeView>
#include <benchmark/benchmark.h>

#include "MedianReporter.h"
#include <cstdio>
#include <map>
#include <memory>

namespace {

const int kRows = 10000;
const quint64 kMe = 1000;
const qint64 kNow = 1800000000;
const int kStatuses[] = {4, 0, 5, 1, 6, 2, 3};

// 10,000 people over about 140 days, every status, as the engine's first answer.
QVector<VyrEngine::FriendRequestInfo> requests()
{
    QVector<VyrEngine::FriendRequestInfo> records;
    for (int i = 0; i < kRows; ++i) {
        const quint64 peer = 100000 + quint64(i);
        VyrEngine::ContactsEngine::instance()->putUser(VyrEngine::UserInfo(peer, QStringLiteral("Person %1").arg(i)));
        const int status = kStatuses[i % 7];
        const bool mine = status == 2 || status == 5;
        VyrEngine::FriendRequestInfo info;
        info.setSequenceId(i + 1);
        info.setSourceId(mine ? kMe : peer);
        info.setTargetId(mine ? peer : kMe);
        info.setStatus(status);
        info.setDate(quint64(kNow) - 60 - quint64(i) * 1200);
        info.setMessage(QStringLiteral("Hello, I am in your class and would like to ask about the homework, %1").arg(i));
        records.append(info);
    }
    return records;
}

struct Fixture
{
    std::unique_ptr<FriendRequestWidget> page;
    QTreeView* view = nullptr;
    std::unique_ptr<QTreeView> plain;
};

Fixture& fixture()
{
    static Fixture f;
    if (f.page)
        return f;
    VyrEngine::NoticeEngine::instance()->queueFriendRequestsAnswer(requests());
    VyrEngine::NoticeEngine::instance()->setUiDataReady(true);
    f.page.reset(new FriendRequestWidget);
    f.page->resize(720, 780);
    f.page->show();
    QCoreApplication::processEvents();
    f.view = f.page->findChild<QTreeView*>(QStringLiteral("friendRequestView"));
    f.plain.reset(new QTreeView);
    f.plain->setHeaderHidden(true);
    f.plain->setModel(f.view->model());
    f.plain->expandAll();
    f.plain->resize(f.view->size());
    f.plain->show();
    QCoreApplication::processEvents();
    return f;
}

// Steps a page at a time from the top to just before the end (the end asks the engine for more).
void scrollThrough(benchmark::State& state, QTreeView* view)
{
    QImage canvas(view->size(), QImage::Format_ARGB32_Premultiplied);
    QScrollBar* bar = view->verticalScrollBar();
    const int step = qMax(1, bar->pageStep());
    const int last = bar->maximum() - 1;
    // One pass first, so every avatar and row size has been made once.
    for (int value = 0; value < last; value += step) {
        bar->setValue(value);
        view->render(&canvas);
    }
    int value = 0;
    qint64 frames = 0;
    for (auto _ : state) {
        bar->setValue(value);
        view->render(&canvas);
        value = value + step < last ? value + step : 0;
        ++frames;
    }
    state.counters["rows"] = double(view->model()->rowCount());
    state.counters["scrollSteps"] = double(last / step + 1);
    benchmark::DoNotOptimize(canvas.constBits());
}

void BM_PageViewScrollRepaint(benchmark::State& state)
{
    scrollThrough(state, fixture().view);
}
BENCHMARK(BM_PageViewScrollRepaint)->Unit(benchmark::kMillisecond);

void BM_PlainTreeViewScrollRepaint(benchmark::State& state)
{
    scrollThrough(state, fixture().plain.get());
}
BENCHMARK(BM_PlainTreeViewScrollRepaint)->Unit(benchmark::kMillisecond);

} // namespace

int main(int argc, char** argv)
{
    if (qEnvironmentVariableIsEmpty("QT_QPA_PLATFORM"))
        qputenv("QT_QPA_PLATFORM", "offscreen");
    QApplication app(argc, argv);
    QTranslator translator;
    translator.load(QStringLiteral("VyrNotice_en"), QStringLiteral(VYR_TRANSLATIONS_DIR));
    QCoreApplication::installTranslator(&translator);
    VyrEngine::CoreEngine::instance()->setCurrentUid(kMe);
    VyrEngine::CoreEngine::instance()->setCurrentTime(kNow);

    benchmark::Initialize(&argc, argv);
    MedianReporter reporter;
    benchmark::RunSpecifiedBenchmarks(&reporter);
    const auto page = reporter.cpuTimes().find("BM_PageViewScrollRepaint");
    const auto plain = reporter.cpuTimes().find("BM_PlainTreeViewScrollRepaint");
    if (page != reporter.cpuTimes().end() && plain != reporter.cpuTimes().end()) {
        std::printf("\nOne repaint while scrolling: page's view %.2f ms, plain tree view %.2f ms, ratio x%.2f; "
                    "a 60 Hz frame is 16.7 ms\n",
                    page->second, plain->second, page->second / plain->second);
    }
    benchmark::Shutdown();
    fixture().plain.reset();
    fixture().page.reset();
    QThreadPool::globalInstance()->waitForDone();
    return 0;
}
