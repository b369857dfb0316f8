#include "PixelProbe.h"

#include <QAbstractItemDelegate>
#include <QPainter>
#include <QStandardItemModel>
#include <QWidget>
#include <QtTest>

namespace P = PixelProbe;

namespace {
// Fills its row's rectangle in blue.
class BlueDelegate : public QAbstractItemDelegate
{
public:
    void paint(QPainter* painter, const QStyleOptionViewItem& option, const QModelIndex&) const override
    {
        painter->fillRect(option.rect, Qt::blue);
    }
    QSize sizeHint(const QStyleOptionViewItem&, const QModelIndex&) const override { return QSize(10, 10); }
};

// A white 40 x 30 canvas with a red 10 x 5 block at (5, 8) and one grey pixel at (30, 20).
QImage sample()
{
    return P::paint(QSize(40, 30), Qt::white, [](QPainter& painter) {
        painter.fillRect(QRect(5, 8, 10, 5), Qt::red);
        painter.fillRect(QRect(30, 20, 1, 1), QColor(100, 100, 100));
    });
}
} // namespace

// The shared pixel probes answer on a picture whose every pixel is known.
class TestPixelProbe : public QObject
{
    Q_OBJECT
private slots:
    void paintedCanvasReadsBackAsPainted();
    void distanceAndTolerance();
    void countingAndContainingIsClippedToTheImage();
    void boundsOfOpaqueAndOfAColour();
    void columnsNamesDarkestAndDifferences();
    void grabAndDelegateRender();
};

// The canvas has its size, fill and drawing, in ARGB32; a one-colour pixmap reads back its colour.
void TestPixelProbe::paintedCanvasReadsBackAsPainted()
{
    const QImage image = sample();
    QCOMPARE(image.size(), QSize(40, 30));
    QCOMPARE(image.format(), QImage::Format_ARGB32);
    QCOMPARE(P::colourAt(image, 5, 8), QColor(Qt::red));
    QCOMPARE(P::colourAt(image, QPoint(15, 8)), QColor(Qt::white));
    QCOMPARE(P::colourAt(P::paint(QSize(2, 2), Qt::transparent), 1, 1).alpha(), 0);
    const QPixmap solid = P::pixmap(QSize(3, 2), QColor(1, 2, 3));
    QCOMPARE(solid.size(), QSize(3, 2));
    QCOMPARE(P::colourAt(solid, 2, 1), QColor(1, 2, 3));
}

// Distance is the largest channel difference, alpha included; tolerance is inclusive.
void TestPixelProbe::distanceAndTolerance()
{
    QCOMPARE(P::distance(QColor(10, 20, 30), QColor(13, 20, 25)), 5);
    QCOMPARE(P::distance(QColor(10, 20, 30, 255), QColor(10, 20, 30, 200)), 55);
    const QImage image = sample();
    QVERIFY(P::isNear(image, QPoint(30, 20), QColor(104, 100, 97), 4));
    QVERIFY(!P::isNear(image, QPoint(30, 20), QColor(105, 100, 100), 4));
    QVERIFY(!P::isNear(image, QPoint(40, 20), QColor(Qt::white), 255));
}

// Counts and searches look at the part of the area inside the image only.
void TestPixelProbe::countingAndContainingIsClippedToTheImage()
{
    const QImage image = sample();
    QCOMPARE(P::countColour(image, image.rect(), Qt::red), 50);
    QCOMPARE(P::countColour(image, QRect(10, 10, 100, 100), Qt::red), 15);
    QCOMPARE(P::countColour(image, QRect(30, 20, 1, 1), QColor(90, 90, 90), 10), 1);
    QCOMPARE(P::countPixels(image, QRect(-5, -5, 10, 10), [](QRgb p) { return p == qRgb(255, 255, 255); }), 25);
    QVERIFY(P::containsColour(image, QRect(0, 0, 6, 9), Qt::red));
    QVERIFY(!P::containsColour(image, QRect(0, 0, 5, 9), Qt::red));
}

// Bounds of what is not transparent, and of one colour; null when nothing matches.
void TestPixelProbe::boundsOfOpaqueAndOfAColour()
{
    const QImage clear = P::paint(QSize(20, 20), Qt::transparent, [](QPainter& painter) {
        painter.fillRect(QRect(3, 4, 5, 6), QColor(0, 0, 0, 1));
        painter.fillRect(QRect(12, 2, 1, 1), Qt::green);
    });
    QCOMPARE(P::opaqueBounds(clear), QRect(QPoint(3, 2), QPoint(12, 9)));
    QVERIFY(P::opaqueBounds(P::paint(QSize(5, 5), Qt::transparent)).isNull());
    QCOMPARE(P::colourBounds(sample(), Qt::red), QRect(5, 8, 10, 5));
    QCOMPARE(P::colourBounds(sample(), QColor(98, 98, 98), 2), QRect(30, 20, 1, 1));
    QVERIFY(P::colourBounds(sample(), Qt::blue).isNull());
}

// The rightmost matching column, the colours by name, the darkest pixel and the differing pixels.
void TestPixelProbe::columnsNamesDarkestAndDifferences()
{
    const QImage image = sample();
    const auto notWhite = [](QRgb p) { return p != qRgb(255, 255, 255); };
    QCOMPARE(P::rightmostColumn(image, image.rect(), notWhite), 30);
    QCOMPARE(P::rightmostColumn(image, QRect(0, 0, 40, 15), notWhite), 14);
    QCOMPARE(P::rightmostColumn(image, QRect(0, 0, 4, 30), notWhite), -1);
    QCOMPARE(P::colourNames(image, image.rect(), Qt::white), (QStringList{"#646464", "#ff0000"}));
    QCOMPARE(P::darkest(image, image.rect()), QColor(Qt::red));
    QCOMPARE(P::darkest(image, QRect(20, 0, 20, 30)), QColor(100, 100, 100));
    QImage other = image;
    other.setPixelColor(0, 0, Qt::black);
    other.setPixelColor(39, 29, Qt::black);
    QCOMPARE(P::differingPixels(image, other, image.rect()), 2);
    QCOMPARE(P::differingPixels(image, other, QRect(1, 1, 10, 10)), 0);
}

// A widget is grabbed as it paints; a delegate is painted over its underlay in its option's rectangle.
void TestPixelProbe::grabAndDelegateRender()
{
    QWidget widget;
    widget.resize(20, 10);
    widget.setAutoFillBackground(true);
    QPalette palette = widget.palette();
    palette.setColor(QPalette::Window, QColor(10, 200, 30));
    widget.setPalette(palette);
    const QImage grabbed = P::grab(&widget);
    QCOMPARE(grabbed.size(), QSize(20, 10));
    QCOMPARE(grabbed.format(), QImage::Format_ARGB32);
    QCOMPARE(P::countColour(grabbed, grabbed.rect(), QColor(10, 200, 30)), 200);

    BlueDelegate delegate;
    QStandardItemModel model(1, 1);
    QStyleOptionViewItem option;
    option.rect = QRect(2, 3, 4, 5);
    const QImage rendered = P::renderDelegate(delegate, option, model.index(0, 0), QSize(10, 10), Qt::magenta);
    QCOMPARE(P::colourBounds(rendered, Qt::blue), option.rect);
    QCOMPARE(P::countColour(rendered, rendered.rect(), Qt::magenta), 100 - 20);
}

QTEST_MAIN(TestPixelProbe)
#include "tst_pixelprobe.moc"
