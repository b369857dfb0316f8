// The user simulator finds a row's enter-classroom button on a picture of the
// row by its green, and never takes the lesson name's green text for it.

#include "EnterButtonLocator.h"

#include <QFont>
#include <QImage>
#include <QPainter>
#include <QtTest>

namespace {

const QSize kRow(404, 88);

QImage rowPicture(const QRect& button, bool withGreenName, qreal scale = 1.0)
{
    QImage image(kRow * scale, QImage::Format_ARGB32_Premultiplied);
    image.setDevicePixelRatio(scale);
    image.fill(Qt::white);
    QPainter painter(&image);
    painter.setRenderHint(QPainter::Antialiasing);
    painter.setRenderHint(QPainter::TextAntialiasing);
    QFont font = painter.font();
    font.setPixelSize(14);
    painter.setFont(font);
    painter.setPen(QColor(0x66, 0x66, 0x66));
    painter.drawText(QPoint(60, 30), QStringLiteral("Grade 7 Class 3"));
    if (withGreenName) {
        QFont bold = font;
        bold.setBold(true);
        painter.setFont(bold);
        painter.setPen(EnterButtonLocator::buttonColor());
        painter.drawText(QPoint(60, 60), QStringLiteral("\"Fractions\" ■ Mmm"));
        painter.setFont(font);
    }
    if (!button.isNull()) {
        painter.setPen(Qt::NoPen);
        painter.setBrush(EnterButtonLocator::buttonColor());
        painter.drawRoundedRect(button, 5, 5);
        painter.setPen(Qt::white);
        painter.drawText(button, Qt::AlignCenter, QStringLiteral("Enter class"));
    }
    return image;
}

} // namespace

class TestDemoButtonLocator : public QObject
{
    Q_OBJECT
private slots:
    void findsTheButton_data();
    void findsTheButton();
};

void TestDemoButtonLocator::findsTheButton_data()
{
    QTest::addColumn<QRect>("button");
    QTest::addColumn<bool>("greenName");
    QTest::addColumn<qreal>("scale");
    QTest::newRow("button") << QRect(300, 46, 94, 28) << false << 1.0;
    QTest::newRow("button-and-green-name") << QRect(300, 46, 94, 28) << true << 1.0;
    QTest::newRow("wide-label") << QRect(250, 40, 144, 30) << true << 1.0;
    QTest::newRow("hidpi") << QRect(300, 46, 94, 28) << true << 2.0;
    QTest::newRow("green-name-only") << QRect() << true << 1.0;
    QTest::newRow("plain-row") << QRect() << false << 1.0;
}

// The box found is the painted button (within a pixel at its rounded rim), or null without a button.
void TestDemoButtonLocator::findsTheButton()
{
    QFETCH(QRect, button);
    QFETCH(bool, greenName);
    QFETCH(qreal, scale);
    const QRect found = EnterButtonLocator::find(rowPicture(button, greenName, scale));
    if (button.isNull()) {
        QVERIFY2(found.isNull(), qPrintable(QStringLiteral("%1,%2 %3x%4").arg(found.x()).arg(found.y()).arg(found.width()).arg(found.height())));
        return;
    }
    const QRect expected(button.topLeft() * scale, button.size() * scale);
    QVERIFY2(qAbs(found.left() - expected.left()) <= 1 && qAbs(found.right() - expected.right()) <= 1
                 && qAbs(found.top() - expected.top()) <= 1 && qAbs(found.bottom() - expected.bottom()) <= 1,
             qPrintable(QStringLiteral("found %1,%2 %3x%4").arg(found.x()).arg(found.y()).arg(found.width()).arg(found.height())));
}

QTEST_MAIN(TestDemoButtonLocator)
#include "tst_demo_button_locator.moc"
