#include "GlobalStyle.h"
#include "VyrUtils.h"

#include <QLabel>
#include <QPushButton>
#include <QScreen>
#include <QtTest>

// The utilities the pop-ups use and the theme's named styles.
class TestVyrUtils : public QObject
{
    Q_OBJECT
private slots:
    void elidedTextToPixelLength();
    void screenDeviceRatio();
    void styleBoldKeepsTheRestOfTheFont();
    void namedStylesChangeTheLook_data();
    void namedStylesChangeTheLook();
};

// The text cut to the width in the widget's font, and whether it was cut.
void TestVyrUtils::elidedTextToPixelLength()
{
    QLabel label;
    const QString longText = QStringLiteral("A rather long lesson name that needs cutting");
    const auto cut = VyrUtils::elidedTextToPixelLength(&label, longText, 80, Qt::ElideRight);
    QVERIFY(std::get<1>(cut));
    QVERIFY(std::get<0>(cut).endsWith(QChar(0x2026)));
    QVERIFY(label.fontMetrics().horizontalAdvance(std::get<0>(cut)) <= 80);
    const auto whole = VyrUtils::elidedTextToPixelLength(&label, QStringLiteral("Short"), 200, Qt::ElideRight);
    QCOMPARE(std::get<0>(whole), QStringLiteral("Short"));
    QVERIFY(!std::get<1>(whole));
}

// The ratio of the widget's screen; the primary screen's for a hidden widget.
void TestVyrUtils::screenDeviceRatio()
{
    QWidget widget;
    QCOMPARE(VyrUtils::screenDeviceRatio(&widget), QGuiApplication::primaryScreen()->devicePixelRatio());
    QCOMPARE(VyrUtils::screenDeviceRatio(nullptr), QGuiApplication::primaryScreen()->devicePixelRatio());
}

// Bold, with size and family left as they were.
void TestVyrUtils::styleBoldKeepsTheRestOfTheFont()
{
    QLabel label;
    QFont font = label.font();
    font.setPixelSize(17);
    label.setFont(font);
    VyrUtils::styleBold(&label);
    QVERIFY(label.font().bold());
    QCOMPARE(label.font().pixelSize(), 17);
}

void TestVyrUtils::namedStylesChangeTheLook_data()
{
    QTest::addColumn<QString>("style");
    QTest::addColumn<bool>("button");
    QTest::addColumn<QColor>("colour");
    QTest::newRow("Style1: green") << "QPushButton_IMButton_Style1" << true << QColor(0x00, 0x92, 0x65);
    QTest::newRow("Style4: white") << "QPushButton_IMButton_Style4" << true << QColor(Qt::white);
    QTest::newRow("MessageContent: grey text") << "QLabel_MessageContent" << false << QColor(0x64, 0x6A, 0x73);
    QTest::newRow("MessageTitle: dark text") << "QLabel_MessageTitle" << false << QColor(0x1F, 0x23, 0x29);
    QTest::newRow("IMMainStyle_Title: dark text") << "QLabel_IMMainStyle_Title" << false << QColor(0x1F, 0x23, 0x29);
}

// Each named style the pop-ups use changes what is painted.
void TestVyrUtils::namedStylesChangeTheLook()
{
    QFETCH(QString, style);
    QFETCH(bool, button);
    QFETCH(QColor, colour);
    QVERIFY(GlobalStyle::getInstance()->styleNames().contains(style));
    if (button) {
        QPushButton widget;
        widget.resize(86, 26);
        GlobalStyle::getInstance()->applyCurrentStyle(&widget, style, true);
        const QImage image = widget.grab().toImage();
        QCOMPARE(QColor(image.pixel(6, 13)), colour);
    } else {
        QLabel widget(QStringLiteral("x"));
        GlobalStyle::getInstance()->applyCurrentStyle(&widget, style, true);
        QCOMPARE(widget.palette().color(QPalette::WindowText), colour);
    }
}

QTEST_MAIN(TestVyrUtils)
#include "tst_vyrutils.moc"
