// Paint cost of each kind of gathered-notice row against a plain
// QStyledItemDelegate row of the same size, the two-line fitting of a long
// cluster text, and adding the 1,000th notice under a sorting proxy.
//
//   QT_QPA_PLATFORM=offscreen ./bench_notice
//
// After the usual table it prints each paint as a ratio to the baseline
// measured in the same run.

#include "AvatarManager.h"
#include "ClusterNoticeText_p.h"
#include "CoreEngine.h"
#include "NoticeListModel.h"
#include "NoticeListViewItem.h"
#include "VyrUtils.h"

#include <QApplication>
#include <QImage>
#include <QPainter>
#include <QStandardItemModel>
#include <QStyledItemDelegate>
#include <QTranslator>
#include <benchmark/benchmark.h>

#include "MedianReporter.h"
#include <map>

using namespace VyrEngine;

namespace {

const qint64 kNow = 1800000000;
const QRect kRow(0, 0, 364, 88);   // a row as wide as the window's list
const char* const kBaseline = "BM_PaintPlainStyledRow";

GatherNoticePtr makeNotice(NoticeType type)
{
    auto notice = std::make_shared<GatherNotice>(type);
    notice->setTime(quint32(kNow));
    notice->setNoticeId(VyrUtils::createUuid());
    notice->setClusterId(501);
    notice->setTitle(QStringLiteral("Class 3 of Grade Seven"));
    notice->setLessonName(QStringLiteral("Algebra: linear equations"));
    notice->setLessonStartTime(quint32(kNow + 1500));
    notice->setReportRole(1);
    switch (type) {
    case ClusterNoticeRemind:
        notice->setDisplayContent(ClusterNoticeText::displayContent(
            QStringLiteral("Please bring your textbooks and a calculator tomorrow, we go through chapter three.")));
        break;
    case StudyActivity:
        notice->setDisplayPod(QSharedPointer<StudyActivityNoticeWidgetDisplayPod>::create(
            QStringLiteral("Quiz"), QStringLiteral("Chapter 3 <i>review</i> is open until Friday"), false, false, false,
            QString(), false, QString(), QString(), false, false, false, false, QStringLiteral("New quiz"), QString(),
            QString(), false));
        break;
    default:
        break;
    }
    return notice;
}

QStandardItemModel& rows()
{
    static QStandardItemModel model;
    if (model.rowCount() == 0) {
        const NoticeType types[] = {ContactorAdd, ClusterNoticeRemind, LessonAhead, LessonStart, StudyReport,
                                    StudyActivity};
        for (NoticeType type : types) {
            auto* item = new QStandardItem(QStringLiteral("Class 3 of Grade Seven"));
            item->setData(QVariant::fromValue(makeNotice(type)), Qt::UserRole);
            model.appendRow(item);
        }
    }
    return model;
}

QStyleOptionViewItem rowOption(const QRect& rect)
{
    QStyleOptionViewItem option;
    option.rect = rect;
    option.state = QStyle::State_Enabled;
    return option;
}

void paintRows(benchmark::State& state, QAbstractItemDelegate& delegate, const QList<int>& rowNumbers)
{
    QImage image(kRow.width(), kRow.height() * rowNumbers.size(), QImage::Format_ARGB32_Premultiplied);
    QPainter painter(&image);
    for (auto _ : state) {
        for (int i = 0; i < rowNumbers.size(); ++i) {
            QStyleOptionViewItem option = rowOption(kRow.translated(0, i * kRow.height()));
            QModelIndex index = rows().index(rowNumbers.at(i), 0);
            // Real views hand the style's option in; the plain delegate fills it from the index.
            delegate.paint(&painter, option, index);
        }
        benchmark::ClobberMemory();
    }
}

void BM_PaintPlainStyledRow(benchmark::State& state)
{
    QStyledItemDelegate delegate;
    paintRows(state, delegate, {0});
}

void BM_PaintRow(benchmark::State& state)
{
    NoticeListViewItem delegate(nullptr);
    delegate.setChinaLocale(false);
    paintRows(state, delegate, {int(state.range(0))});
}

void BM_PaintWindowOfFourRows(benchmark::State& state)
{
    NoticeListViewItem delegate(nullptr);
    delegate.setChinaLocale(false);
    paintRows(state, delegate, {3, 2, 4, 5});
}

void BM_FitClusterText2000(benchmark::State& state)
{
    QString text;
    while (text.size() < 2000)
        text += QStringLiteral("Remember to hand in the worksheet before Friday. ");
    text.truncate(2000);
    for (auto _ : state)
        benchmark::DoNotOptimize(ClusterNoticeText::displayContent(text));
}

void BM_AddThousandthNotice(benchmark::State& state)
{
    NoticeListModel::release();
    QCoreApplication::sendPostedEvents(nullptr, QEvent::DeferredDelete);
    NoticeListModel* model = NoticeListModel::instance();
    NoticeListSortFilterModel proxy(model, Activity, nullptr);
    auto* engine = CoreEngine::instance();
    for (int i = 0; i < 999; ++i) {
        engine->setCurrentTime(kNow + (i * 7919) % 1000);   // arrival times out of order
        model->addContactorAddNotice();
    }
    for (auto _ : state) {
        engine->setCurrentTime(kNow + 500);
        model->addContactorAddNotice();
        state.PauseTiming();
        const QModelIndex last = model->index(model->rowCount() - 1, 0);
        model->delNotice(last);
        state.ResumeTiming();
    }
}

BENCHMARK(BM_PaintPlainStyledRow)->Unit(benchmark::kMicrosecond);
BENCHMARK(BM_PaintRow)
    ->ArgName("kind")
    ->DenseRange(0, 5)
    ->Unit(benchmark::kMicrosecond);
BENCHMARK(BM_PaintWindowOfFourRows)->Unit(benchmark::kMicrosecond);
BENCHMARK(BM_FitClusterText2000)->Unit(benchmark::kMicrosecond);
BENCHMARK(BM_AddThousandthNotice)->Unit(benchmark::kMicrosecond);

const char* kindName(int kind)
{
    static const char* const names[] = {"friend request", "cluster notice", "lesson ahead", "lesson start (button)",
                                        "study report", "study activity"};
    return kind >= 0 && kind < 6 ? names[kind] : "?";
}

void printRatios(const MedianReporter& reporter)
{
    auto baseline = reporter.realTimes().find(kBaseline);
    if (baseline == reporter.realTimes().end() || baseline->second <= 0)
        return;
    std::printf("\nRatio to %s (%.1f us) in this run:\n", kBaseline, baseline->second);
    for (const auto& entry : reporter.realTimes()) {
        std::string label = entry.first;
        const std::string prefix = "BM_PaintRow/kind:";
        if (label.rfind(prefix, 0) == 0)
            label = std::string("paint row: ") + kindName(std::atoi(label.c_str() + prefix.size()));
        std::printf("  %-40s %10.1f us  x%6.2f\n", label.c_str(), entry.second, entry.second / baseline->second);
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
    AvatarManager::instance().setClusterAvatarName(501, QStringLiteral("Class Three"));

    benchmark::Initialize(&argc, argv);
    MedianReporter reporter;
    benchmark::RunSpecifiedBenchmarks(&reporter);
    printRatios(reporter);
    benchmark::Shutdown();
    return 0;
}
