// GUI-thread time and memory of hostile study activity texts, in the gathered
// row and in the card, once they are bounded. Not a Google Benchmark: each
// input runs in its own process, so that its peak memory is its own.
//
//   measure_boundedhtml            the names of the inputs
//   measure_boundedhtml <input>    one line: the row's first paint (layout and
//                                  draw), its repaint, the card built and painted,
//                                  and the growth of the peak resident size
//
// Times are the GUI thread's CPU time, so that a shared machine's other work
// doesn't count: the median of 5 runs, and the largest.
#include "BoundedHtml_p.h"
#include "NoticeListViewItem.h"
#include "StudyActivityNoticeWidget.h"
#include "VyrUtils.h"

#include <QApplication>
#include <QFile>
#include <QImage>
#include <QMap>
#include <QPainter>
#include <QStandardItemModel>
#include <QTemporaryDir>

#include <algorithm>
#include <cstdio>
#include <ctime>

using namespace VyrEngine;

namespace {

double threadMs()
{
    timespec now;
    clock_gettime(CLOCK_THREAD_CPUTIME_ID, &now);
    return now.tv_sec * 1e3 + now.tv_nsec / 1e6;
}

long peakResidentKb()
{
    QFile status(QStringLiteral("/proc/self/status"));
    if (!status.open(QIODevice::ReadOnly))
        return 0;
    for (const QByteArray& line : status.readAll().split('\n')) {
        if (line.startsWith("VmHWM:"))
            return line.mid(6).trimmed().split(' ').first().toLong();
    }
    return 0;
}

QString repeated(const QString& text, int times)
{
    return text.repeated(times);
}

// The findings' inputs, and the worst that the bounds let through.
QMap<QString, QString> inputs(const QString& localPicture)
{
    QMap<QString, QString> m;
    m["ordinary"] = "<span style='color:#009265;'>Mr Li</span> published a quiz<br>due <b>Friday</b>";
    m["img-dev-zero"] = "<img src=/dev/zero>";
    m["img-local"] = "<img src=" + localPicture + ">";
    m["background"] = "<body background=" + localPicture + " style=\"background-image:url(" + localPicture + ")\">x</body>";
    m["tables-8"] = repeated("<table border=1><tr><td>x", 8) + repeated("</td></tr></table>", 8);
    m["tables-10"] = repeated("<table border=1><tr><td>x", 10) + repeated("</td></tr></table>", 10);
    m["tables-20"] = repeated("<table border=1><tr><td>x", 20) + repeated("</td></tr></table>", 20);
    m["word-256k"] = QString(256 * 1024, QLatin1Char('a'));
    m["text-1m"] = repeated(QStringLiteral("lorem ipsum "), 1024 * 1024 / 12);
    m["cjk-1m"] = QString(1024 * 1024, QChar(0x4e2d));
    m["span-10k"] = repeated("<span style='color:red'>", 10000) + "x";
    m["div-10k"] = repeated("<div>", 10000) + "x";
    m["font-size"] = "<span style='font-size:100000px'>HUGE</span><font size=1000>x</font>";
    m["widths"] = "<table width=100000 height=100000 cellpadding=100000 cellspacing=100000 border=100000><tr>"
                  "<td width=100000>x</td></tr></table><img width=100000 height=100000 src=:/x>";
    m["colspan"] = "<table><tr><td colspan=100000 rowspan=100000>x</td></tr></table>";
    m["in-bounds-word"] = QString(BoundedHtml::MaxLength - 10, QLatin1Char('W'));
    m["in-bounds-cjk"] = QString(BoundedHtml::MaxLength - 10, QChar(0x4e2d));
    m["in-bounds-cells"] = repeated("<table border=9 cellpadding=99 width=1000><tr>"
                                    + repeated("<td colspan=8>x</td>", 8) + "</tr></table>", 4);
    m["in-bounds-nested"] = repeated("<table><tr><td><table border=1 cellpadding=50><tr><td colspan=8>x</td>"
                                     "<td>y</td></tr></table></td><td>z</td></tr></table>", 2);
    m["in-bounds-depth"] = repeated(repeated("<span style='font-size:90px'>", 15) + "x" + repeated("</span>", 15), 3);
    m["in-bounds-img"] = repeated("<img src=:/x width=1000 height=1000>", 28);
    m["in-bounds-lists"] = repeated(repeated("<ul><li>", 8) + "x" + repeated("</li></ul>", 8), 3);
    m["in-bounds-entities"] = repeated("&#x1F600;", 113);
    QString families;
    for (int i = 0; families.size() < BoundedHtml::MaxLength - 40; ++i)
        families += QStringLiteral("<font face=f%1>x</font>").arg(i);
    m["in-bounds-families"] = families;
    return m;
}

QSharedPointer<StudyActivityNoticeWidgetDisplayPod> texts(const QString& content)
{
    return QSharedPointer<StudyActivityNoticeWidgetDisplayPod>::create(
        QStringLiteral("Quiz"), content, false, false, false, QString(), false, QString(), QString(), false, false,
        false, false, QStringLiteral("Heading"), QString(), QString(), false);
}

void addRow(QStandardItemModel* model, const QString& content)
{
    auto notice = std::make_shared<GatherNotice>(StudyActivity);
    notice->setTime(1800000000);
    notice->setNoticeId(VyrUtils::createUuid());
    notice->setTitle(QStringLiteral("Class 3"));
    notice->setDisplayPod(texts(content));
    auto* item = new QStandardItem;
    item->setData(QVariant::fromValue(notice), Qt::UserRole);
    model->appendRow(item);
}

void paintRow(const NoticeListViewItem& delegate, const QModelIndex& index, QImage* canvas)
{
    QStyleOptionViewItem option;
    option.rect = QRect(12, 30, 364, 88);
    QPainter painter(canvas);
    delegate.paint(&painter, option, index);
}

void showCard(const QString& content)
{
    auto* card = new StudyActivityNoticeWidget(QSharedPointer<AppendixDataPod>::create(), texts(content));
    card->show();
    card->grab();
    delete card;
}

double median(QVector<double> values)
{
    std::sort(values.begin(), values.end());
    return values.at(values.size() / 2);
}

double largest(const QVector<double>& values)
{
    return *std::max_element(values.begin(), values.end());
}

} // namespace

int main(int argc, char** argv)
{
    QApplication app(argc, argv);
    qInstallMessageHandler([](QtMsgType, const QMessageLogContext&, const QString&) {});
    QTemporaryDir dir;
    const QString localPicture = dir.filePath(QStringLiteral("local.png"));
    QImage picture(400, 300, QImage::Format_ARGB32);
    picture.fill(Qt::red);
    picture.save(localPicture);
    const QMap<QString, QString> all = inputs(localPicture);
    if (argc < 2) {
        for (const QString& name : all.keys())
            printf("%s\n", qPrintable(name));
        return 0;
    }
    const QString name = QString::fromLocal8Bit(argv[1]);
    if (!all.contains(name))
        return 1;
    const QString content = all.value(name);
    const int runs = 5;

    // Warm up on an ordinary row and card: fonts, styles, pictures.
    QStandardItemModel model;
    addRow(&model, all.value(QStringLiteral("ordinary")));
    for (int i = 0; i < runs; ++i)
        addRow(&model, content);
    QImage canvas(400, 150, QImage::Format_ARGB32_Premultiplied);
    paintRow(NoticeListViewItem(nullptr), model.index(0, 0), &canvas);
    showCard(all.value(QStringLiteral("ordinary")));

    const long peakBefore = peakResidentKb();
    QVector<double> firstPaint, repaint, card;
    for (int run = 1; run <= runs; ++run) {
        NoticeListViewItem delegate(nullptr);
        double start = threadMs();
        paintRow(delegate, model.index(run, 0), &canvas);
        firstPaint << threadMs() - start;
        start = threadMs();
        paintRow(delegate, model.index(run, 0), &canvas);
        repaint << threadMs() - start;
        start = threadMs();
        showCard(content);
        card << threadMs() - start;
    }
    printf("%-20s %8d chars, %5d bounded | row first paint %6.2f ms (max %6.2f) | repaint %5.2f ms | "
           "card %6.2f ms (max %6.2f) | peak +%ld KB\n",
           qPrintable(name), int(content.size()), int(BoundedHtml::bounded(content).size()), median(firstPaint),
           largest(firstPaint), median(repaint), median(card), largest(card), peakResidentKb() - peakBefore);
    return 0;
}
