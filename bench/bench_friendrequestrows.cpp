// The friend-request page's rows: a day header and a person's row of each
// status, painted by FriendRequestViewItem. Each figure has a baseline of the
// same size in the same run: QStyledItemDelegate painting a plain row with a
// one-line display text (600 × 28 for the header, 600 × 58 for a person).
// Rows repaint unchanged (BM_HeaderRow, BM_PersonRow) and after the person's
// message changed (BM_PersonRowChanged: laid out and painted anew).
//
// Run: QT_QPA_PLATFORM=offscreen build/bench/bench_friendrequestrows

#include "AvatarManager.h"
#include "ContactsEngine.h"
#include "CoreEngine.h"
#include "FriendRequestInfo.h"
#include "FriendRequestModel.h"
#include "FriendRequestViewItem.h"
#include "UserInfo.h"

#include <QApplication>
#include <QDateTime>
#include <QImage>
#include <QPainter>
#include <QStandardItemModel>
#include <QStyledItemDelegate>
#include <QTranslator>
#include <benchmark/benchmark.h>

#include "MedianReporter.h"
#include <cstdio>
#include <map>
#include <memory>

using namespace FriendRequest;

namespace {

const quint64 kMe = 1000;
const int kWidth = 600;
const int kHeaderHeight = 28;
const int kLeafHeight = 58;
const qint64 kNow = QDateTime(QDate(2026, 11, 20), QTime(15, 0)).toSecsSinceEpoch();

// One person of each status, all asking today; the header is today's.
FriendRequestModel& model()
{
    static FriendRequestModel* model = nullptr;
    if (!model) {
        model = new FriendRequestModel();
        for (int status = 0; status <= 6; ++status) {
            const quint64 peer = quint64(100 + status);
            VyrEngine::ContactsEngine::instance()->putUser(
                VyrEngine::UserInfo(peer, QStringLiteral("Classmate number %1").arg(status)));
            VyrEngine::FriendRequestInfo info;
            info.setSequenceId(status + 1);
            info.setSourceId(peer);
            info.setTargetId(kMe);
            info.setStatus(status);
            info.setDate(quint64(kNow - 600 + status));
            info.setMessage(QStringLiteral("Hello, I am in your class. Could you add me? I would like to ask "
                                           "about the homework of this week and the next exam."));
            model->contactorAddNoticeSlot(info);
        }
    }
    return *model;
}

QModelIndex personOfStatus(int status)
{
    const QModelIndex group = model().index(0, 0);
    for (int r = 0; r < model().rowCount(group); ++r) {
        const QModelIndex leaf = model().index(r, 0, group);
        if (leaf.data(StatusRole).toInt() == status)
            return leaf;
    }
    return {};
}

QStandardItemModel& plainRows()
{
    static QStandardItemModel rows;
    if (rows.rowCount() == 0)
        rows.appendRow(new QStandardItem(QStringLiteral("Classmate number 4: Hello, I am in your class")));
    return rows;
}

void paintRow(benchmark::State& state, QAbstractItemDelegate& delegate, const QModelIndex& index, int height)
{
    QImage image(kWidth, height, QImage::Format_ARGB32_Premultiplied);
    QPainter painter(&image);
    QStyleOptionViewItem option;
    option.rect = QRect(0, 0, kWidth, height);
    option.state = QStyle::State_Enabled;
    for (auto _ : state) {
        delegate.paint(&painter, option, index);
        benchmark::ClobberMemory();
    }
}

void BM_PlainRow(benchmark::State& state)
{
    QStyledItemDelegate delegate;
    paintRow(state, delegate, plainRows().index(0, 0), int(state.range(0)));
}
BENCHMARK(BM_PlainRow)->ArgName("height")->Arg(kHeaderHeight)->Arg(kLeafHeight)->Unit(benchmark::kMicrosecond);

void BM_HeaderRow(benchmark::State& state)
{
    FriendRequestViewItem delegate;
    paintRow(state, delegate, model().index(0, 0), kHeaderHeight);
}
BENCHMARK(BM_HeaderRow)->Unit(benchmark::kMicrosecond);

void BM_PersonRow(benchmark::State& state)
{
    FriendRequestViewItem delegate;
    paintRow(state, delegate, personOfStatus(int(state.range(0))), kLeafHeight);
}
BENCHMARK(BM_PersonRow)->ArgName("status")->DenseRange(0, 6)->Unit(benchmark::kMicrosecond);

// As painted before rows were kept: a half-pixel offset keeps the row off the
// pixel grid, where no kept picture is used and the row is painted directly.
void BM_PersonRowUncached(benchmark::State& state)
{
    FriendRequestViewItem delegate;
    QImage image(kWidth + 1, kLeafHeight, QImage::Format_ARGB32_Premultiplied);
    QPainter painter(&image);
    painter.translate(0.5, 0);
    QStyleOptionViewItem option;
    option.rect = QRect(0, 0, kWidth, kLeafHeight);
    option.state = QStyle::State_Enabled;
    const QModelIndex index = personOfStatus(int(state.range(0)));
    for (auto _ : state) {
        delegate.paint(&painter, option, index);
        benchmark::ClobberMemory();
    }
}
BENCHMARK(BM_PersonRowUncached)->ArgName("status")->DenseRange(0, 6)->Unit(benchmark::kMicrosecond);

// A person awaiting an answer whose message changes before each paint.
void BM_PersonRowChanged(benchmark::State& state)
{
    QStandardItemModel rows;
    auto* header = new QStandardItem;
    header->setData(quint64(kNow), DateRole);
    auto* leaf = new QStandardItem;
    leaf->setData(quint64(kNow), DateRole);
    leaf->setData(quint64(104), DisplayIdRole);
    leaf->setData(int(AwaitingMyAnswer), StatusRole);
    header->appendRow(leaf);
    rows.appendRow(header);
    model();   // knows the people
    FriendRequestViewItem delegate;
    QImage image(kWidth, kLeafHeight, QImage::Format_ARGB32_Premultiplied);
    QPainter painter(&image);
    QStyleOptionViewItem option;
    option.rect = QRect(0, 0, kWidth, kLeafHeight);
    option.state = QStyle::State_Enabled;
    const QModelIndex index = rows.index(0, 0, rows.index(0, 0));
    int n = 0;
    for (auto _ : state) {
        // The change itself is timed too: a few string operations against the paint.
        leaf->setData(QStringLiteral("Hello, I am in your class, number %1").arg(++n % 1000), MessageRole);
        delegate.paint(&painter, option, index);
        benchmark::ClobberMemory();
    }
}
BENCHMARK(BM_PersonRowChanged)->Unit(benchmark::kMicrosecond);

// Each friend-request row against the plain row of its own height.
void printRatios(const MedianReporter& reporter)
{
    const auto header = reporter.cpuTimes().find("BM_PlainRow/height:28");
    const auto person = reporter.cpuTimes().find("BM_PlainRow/height:58");
    if (header == reporter.cpuTimes().end() || person == reporter.cpuTimes().end())
        return;
    std::printf("\nRatio to a plain row of the same height in this run (28: %.1f us, 58: %.1f us):\n",
                header->second, person->second);
    for (const auto& entry : reporter.cpuTimes()) {
        const bool isHeader = entry.first == "BM_HeaderRow";
        if (!isHeader && entry.first.rfind("BM_PersonRow", 0) != 0)
            continue;
        const double base = isHeader ? header->second : person->second;
        // The goal holds for rows repainted unchanged; the others show what a change or no picture costs.
        const bool isRepaint = entry.first.find("Uncached") == std::string::npos
            && entry.first.find("Changed") == std::string::npos;
        std::printf("  %-32s %8.1f us  x%5.2f%s\n", entry.first.c_str(), entry.second, entry.second / base,
                    !isRepaint || entry.second / base <= 2.0 ? "" : "  (over 2)");
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
    VyrEngine::CoreEngine::instance()->setCurrentUid(kMe);
    VyrEngine::CoreEngine::instance()->setCurrentTime(kNow);

    benchmark::Initialize(&argc, argv);
    MedianReporter reporter;
    benchmark::RunSpecifiedBenchmarks(&reporter);
    printRatios(reporter);
    benchmark::Shutdown();
    return 0;
}
