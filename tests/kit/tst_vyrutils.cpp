#include "GlobalStyle.h"
#include "ImageOp.h"
#include "PixelProbe.h"
#include "VyrPauseableTimer.h"
#include "VyrTrack.h"
#include "VyrUtils.h"
#include "VyrUtilsHelper.h"
#include "VyrSettings.h"
#include "AppendixDataPod.h"
#include "FileDownloader.h"
#include "HostilePictures.h"
#include "LocalHttpServer.h"
#include "LogCapture.h"
#include "CommonPostParamPod.h"
#include "LocalHttpServer.h"
#include "ResponsePod.h"
#include "VyrHttpManager.h"

#include <QNetworkReply>
#include <QPointer>
#include <QThread>

#include <QJsonDocument>
#include <QJsonObject>
#include <QPainter>
#include <QSettings>
#include <QTemporaryDir>
#include <QToolButton>
#include <QLabel>
#include <QPushButton>
#include <QScreen>
#include <QBuffer>
#include <QNetworkReply>
#include <QSignalSpy>
#include <QtTest>

namespace P = PixelProbe;

// The kit's utilities: pauseable timer, tracker, text and picture helpers, theme styles.
class TestVyrUtils : public QObject
{
    Q_OBJECT
private slots:
    void init();

    void timerStartsFullInterval();
    void timerPauseKeepsRemainderAndResumeGoesOn();
    void pausedTimerDoesNotFireWhileTimePasses();
    void timerResetElapsedWhilePausedGivesFullInterval();
    void timerStopEndsCountAndPausedState();
    void timerPauseOrResumeWhenIdleDoesNothing();
    void timerTimesOutForReal();
    void timerRepeatsWhenNotSingleShot();
    void trackKeepsSignalsAndWritesJsonLines();
    void utilsFormatAndEscape();
    void limitString_data();
    void limitString();
    void roundedPixmapSizeRatioAndCorners();
    void roundedPixmapOfNullSource();
    void roundedPixmapCropsTheCentre();
    void magicAvatarIsARoundCut();
    void formatTime_data();
    void formatTime();
    void closeGrayStyleChangesTheLook();
    void unknownStyleIsRecordedOnly();
    void fontSizeAndWeight();

    void elidedTextToPixelLength();
    void screenDeviceRatio();
    void styleBoldKeepsTheRestOfTheFont();
    void namedStylesChangeTheLook_data();
    void namedStylesChangeTheLook();

    void settingsLandInTheIniFile();
    void settingsStoresHaveTheirOwnFiles();
    void settingsReadBackFromTheFile();
    void settingsUnwritableFolderKeepsTheValueInMemory();
    void domainUrl_data();
    void domainUrl();
    void tavlaUrlStartsWithTheDomainUrl_data();
    void tavlaUrlStartsWithTheDomainUrl();
    void urlSplicing_data();
    void urlSplicing();
    void pushButtonAutoCalcSize_data();
    void pushButtonAutoCalcSize();
    void pushButtonAutoCalcSizeOfAFreeButton();

    // HTTP requests against a server on 127.0.0.1.
    void httpAnswerReachesTheCallbackOnce();
    void httpErrorStatusIsAFailureWithItsBody();
    void httpRefusedConnection();
    void httpNoCallbackForAContextThatIsGone();
    void httpNullContextAlwaysCalledBack();
    void httpTimeoutAbortsOnce();
    void httpRequestFromAWorkerThreadAnswersOnTheGuiThread();
    void httpParamPodKeepsItsOptions();
    // Restricted-mode settings and message box titles.
    void teenModeConfigIsOffUntilSet();
    void messageBoxTitlePerIconAndLanguage_data();
    void messageBoxTitlePerIconAndLanguage();
    // Downloads and pictures from bytes.
    void loadFromData_data();
    void loadFromData();
    void downloaderFetchesABody();
    void downloaderAnswersLater();
    void downloaderReportsHttpErrors_data();
    void downloaderReportsHttpErrors();
    void downloaderReportsARefusedConnection();
    void downloaderRejectsOtherSuffixes_data();
    void downloaderRejectsOtherSuffixes();
    void downloaderNewDownloadDropsTheRunningOne();
    void downloaderAbortReportsCancel();
    void deletedDownloaderDeliversNothing();
    void downloaderErrorAfterASuccessLeavesNoData();
    void appendixSameActivity_data();
    void appendixSameActivity();
};

namespace {

QByteArray pngBytes(const QColor& colour, const QSize& size = QSize(8, 4))
{
    QByteArray bytes;
    QBuffer buffer(&bytes);
    buffer.open(QIODevice::WriteOnly);
    QImage image(size, QImage::Format_ARGB32);
    image.fill(colour);
    image.save(&buffer, "PNG");
    return bytes;
}

QByteArray jpegBytes(const QColor& colour)
{
    QByteArray bytes;
    QBuffer buffer(&bytes);
    buffer.open(QIODevice::WriteOnly);
    QImage image(QSize(8, 8), QImage::Format_RGB32);
    image.fill(colour);
    image.save(&buffer, "JPG");
    return bytes;
}

} // namespace

void TestVyrUtils::init()
{
    VyrTrack::instance()->clearEvents();
}

// start() runs the whole interval, also when the timer runs already.
void TestVyrUtils::timerStartsFullInterval()
{
    VyrPauseableTimer timer;
    timer.setSingleShot(true);
    timer.setInterval(5000);
    QCOMPARE(timer.remainingTime(), -1);
    timer.start();
    QVERIFY(timer.isActive());
    QTRY_VERIFY(timer.remainingTime() < 4980);
    timer.start();
    QVERIFY(timer.remainingTime() > 4980);
}


// pause() freezes what remains; resume() goes on from there.
void TestVyrUtils::timerPauseKeepsRemainderAndResumeGoesOn()
{
    VyrPauseableTimer timer;
    timer.setSingleShot(true);
    timer.setInterval(5000);
    QSignalSpy paused(&timer, &VyrPauseableTimer::paused);
    timer.start();
    QTRY_VERIFY(timer.remainingTime() < 4980);
    timer.pause();
    QVERIFY(timer.isPaused());
    QVERIFY(!timer.isActive());
    QCOMPARE(paused.count(), 1);
    const int kept = timer.remainingTime();
    // Frozen: no count runs while paused.
    QTRY_VERIFY(timer.remainingTime() == kept && !timer.isActive());
    timer.resume();
    QVERIFY(!timer.isPaused());
    QVERIFY(timer.isActive());
    QVERIFY(timer.remainingTime() <= kept);
    QVERIFY(timer.remainingTime() > kept - 20);
}


// A paused count really stands still: three times what remained passes without a timeout, and after
// resume() the count runs out with what it kept.
void TestVyrUtils::pausedTimerDoesNotFireWhileTimePasses()
{
    VyrPauseableTimer timer;
    timer.setSingleShot(true);
    timer.setInterval(50);
    QSignalSpy timeout(&timer, &VyrPauseableTimer::timeout);
    timer.start();
    timer.pause();
    QVERIFY(timer.isPaused());
    const int kept = timer.remainingTime();
    QVERIFY(kept > 40 && kept <= 50);
    QElapsedTimer clock;
    clock.start();
    QTest::qWait(150);
    QVERIFY(clock.elapsed() >= 150);
    QCOMPARE(timeout.count(), 0);
    QVERIFY(timer.isPaused());
    QVERIFY(!timer.isActive());
    QCOMPARE(timer.remainingTime(), kept);

    qint64 firedAfter = -1;
    connect(&timer, &VyrPauseableTimer::timeout, &timer, [&firedAfter, &clock]() { firedAfter = clock.elapsed(); });
    clock.restart();
    timer.resume();
    QVERIFY(timer.isActive());
    QVERIFY(timer.remainingTime() > kept - 20);
    QTRY_COMPARE_WITH_TIMEOUT(timeout.count(), 1, 2000);
    // Not before what was kept has run.
    QVERIFY2(firedAfter >= kept - 5, qPrintable(QStringLiteral("%1 ms").arg(firedAfter)));
    QVERIFY(!timer.isActive());
}


// resetElapsedTime() while paused: resume runs the full interval.
void TestVyrUtils::timerResetElapsedWhilePausedGivesFullInterval()
{
    VyrPauseableTimer timer;
    timer.setInterval(5000);
    timer.start();
    QTRY_VERIFY(timer.remainingTime() < 4980);
    timer.pause();
    timer.resetElapsedTime();
    QVERIFY(timer.isPaused());
    QCOMPARE(timer.remainingTime(), 5000);
    timer.resume();
    QVERIFY(timer.remainingTime() > 4980);
}


// stop() ends the count and leaves the paused state; no timeout follows.
void TestVyrUtils::timerStopEndsCountAndPausedState()
{
    VyrPauseableTimer timer;
    timer.setSingleShot(true);
    timer.setInterval(20);
    QSignalSpy timeout(&timer, &VyrPauseableTimer::timeout);
    timer.start();
    timer.pause();
    timer.stop();
    QVERIFY(!timer.isPaused());
    QVERIFY(!timer.isActive());
    timer.resume();
    QVERIFY(!timer.isActive());
    QVERIFY(!timer.expire());
    QCOMPARE(timeout.count(), 0);
}


// Pausing an idle timer or resuming one that isn't paused does nothing.
void TestVyrUtils::timerPauseOrResumeWhenIdleDoesNothing()
{
    VyrPauseableTimer timer;
    timer.setInterval(1000);
    timer.pause();
    QVERIFY(!timer.isPaused());
    timer.resume();
    QVERIFY(!timer.isActive());
    timer.start();
    timer.resume();
    QVERIFY(timer.isActive());
    QVERIFY(!timer.isPaused());
}


// A short single-shot count really times out, once.
void TestVyrUtils::timerTimesOutForReal()
{
    VyrPauseableTimer timer;
    timer.setSingleShot(true);
    timer.setInterval(30);
    QSignalSpy timeout(&timer, &VyrPauseableTimer::timeout);
    timer.start();
    QTRY_COMPARE(timeout.count(), 1);
    // Single shot: nothing left to run.
    QVERIFY(!timer.isActive());
    QCOMPARE(timer.remainingTime(), -1);
    // expire() on a running count fires it at once.
    timer.start();
    QVERIFY(timer.expire());
    QCOMPARE(timeout.count(), 2);
    QVERIFY(!timer.isActive());
}


// Without single shot the count starts again after each timeout.
void TestVyrUtils::timerRepeatsWhenNotSingleShot()
{
    VyrPauseableTimer timer;
    timer.setInterval(10);
    QSignalSpy timeout(&timer, &VyrPauseableTimer::timeout);
    timer.start();
    QTRY_VERIFY(timeout.count() >= 3);
    QVERIFY(timer.isActive());
    timer.stop();
}


// Every event is kept, signalled and written as one JSON line while a log file is set.
void TestVyrUtils::trackKeepsSignalsAndWritesJsonLines()
{
    QTemporaryDir dir;
    const QString path = dir.filePath(QStringLiteral("track.jsonl"));
    auto* track = VyrTrack::instance();
    track->setLogFile(path);
    QSignalSpy spy(track, &VyrTrack::tracked);
    track->track(QStringLiteral("PushClick"), {{QStringLiteral("check_up"), true}});
    track->track(QStringLiteral("PushSend"), {{QStringLiteral("push_body"), QStringLiteral("体育课")}});
    track->setLogFile(QString());
    QCOMPARE(spy.count(), 2);
    QCOMPARE(track->events().size(), 2);
    QCOMPARE(track->events().at(0).first, QStringLiteral("PushClick"));

    QFile file(path);
    QVERIFY(file.open(QIODevice::ReadOnly));
    const QList<QByteArray> lines = file.readAll().split('\n');
    QCOMPARE(lines.size(), 3);
    const QJsonObject second = QJsonDocument::fromJson(lines.at(1)).object();
    QCOMPARE(second.value("event").toString(), QStringLiteral("PushSend"));
    QCOMPARE(second.value("data").toObject().value("push_body").toString(), QStringLiteral("体育课"));
    QCOMPARE(QJsonDocument::fromJson(lines.at(0)).object().value("data").toObject().value("check_up").toBool(), true);
}


// Ids without braces and unique, local time formatting, HTML escaping in place and with spaces.
void TestVyrUtils::utilsFormatAndEscape()
{
    QVERIFY(!VyrUtils::createUuid().contains(QLatin1Char('{')));
    QVERIFY(VyrUtils::createUuid() != VyrUtils::createUuid());
    QCOMPARE(VyrUtils::toString(QDateTime::fromSecsSinceEpoch(0, Qt::UTC), QStringLiteral("yyyy-MM-dd hh:mm")),
             QDateTime::fromSecsSinceEpoch(0).toLocalTime().toString(QStringLiteral("yyyy-MM-dd hh:mm")));
    // A time given at another offset is shown in local time (UTC in these runs), not at its own offset.
    const QDateTime atPlusOne = QDateTime::fromSecsSinceEpoch(0, Qt::OffsetFromUTC, 3600);
    QVERIFY(atPlusOne.offsetFromUtc() != atPlusOne.toLocalTime().offsetFromUtc());
    QCOMPARE(VyrUtils::toString(atPlusOne, QStringLiteral("yyyy-MM-dd hh:mm")),
             QDateTime::fromSecsSinceEpoch(0).toString(QStringLiteral("yyyy-MM-dd hh:mm")));
    QCOMPARE(VyrUtils::escapeHtmlTag(QStringLiteral("<a href=\"x\">Tom & 'Jerry'</a>")),
             QStringLiteral("&lt;a href=&quot;x&quot;&gt;Tom &amp; &#39;Jerry&#39;&lt;/a&gt;"));
    QString inPlace = QStringLiteral("a <b>");
    QCOMPARE(VyrUtils::escapeHtmlTag(inPlace, false), QStringLiteral("a &lt;b&gt;"));
    QCOMPARE(inPlace, QStringLiteral("a &lt;b&gt;"));
    QString spaced = QStringLiteral("a b");
    QCOMPARE(VyrUtils::escapeHtmlTag(spaced, true), QStringLiteral("a&nbsp;b"));
}


void TestVyrUtils::limitString_data()
{
    QTest::addColumn<QString>("text");
    QTest::addColumn<int>("width");
    QTest::addColumn<bool>("cut");
    QTest::newRow("fits") << "Class 3" << 200 << false;
    QTest::newRow("too long") << "A cluster name far too long for the width" << 80 << true;
    QTest::newRow("no width") << "Class 3" << 0 << true;
}


// Text that fits is kept; longer text is cut to the width with an ellipsis.
void TestVyrUtils::limitString()
{
    QFETCH(QString, text);
    QFETCH(int, width);
    QFETCH(bool, cut);
    QFont font;
    font.setPixelSize(15);
    const QFontMetrics metrics(font);
    const QString result = VyrUtilsHelper::limitString(metrics, text, width, Qt::ElideRight);
    QVERIFY(metrics.horizontalAdvance(result) <= qMax(width, 0));
    if (!cut)
        QCOMPARE(result, text);
    else if (width > 0)
        QVERIFY(result.endsWith(QChar(0x2026)));
    else
        QCOMPARE(result, QString());
}


// The rounded picture holds size times ratio pixels, carries the ratio and has transparent corners.
// A person's avatar is cut to the inscribed circle at the asked size and ratio; nothing comes of nothing.
void TestVyrUtils::magicAvatarIsARoundCut()
{
    const QPixmap round = ImageOp::magicAvatarSvg(P::pixmap(QSize(80, 40), Qt::blue), QSize(36, 36), 2.0);
    QCOMPARE(round.size(), QSize(72, 72));
    QCOMPARE(round.devicePixelRatio(), 2.0);
    QCOMPARE(P::colourAt(round, 36, 36), QColor(Qt::blue));
    QCOMPARE(P::colourAt(round, 36, 1), QColor(Qt::blue));
    // Where a rounded square would still be filled, the circle is not.
    QCOMPARE(P::colourAt(round, 8, 8).alpha(), 0);
    QCOMPARE(P::colourAt(round, 63, 63).alpha(), 0);
    QCOMPARE(P::colourAt(ImageOp::roundedRectCoursePixmap(P::pixmap(QSize(80, 40), Qt::blue), QSizeF(36, 36), 2.0),
                         8, 8),
             QColor(Qt::blue));
    const QPixmap blank = ImageOp::magicAvatarSvg(QPixmap(), QSize(36, 36), 1.0);
    QCOMPARE(blank.size(), QSize(36, 36));
    QCOMPARE(P::colourAt(blank, 18, 18).alpha(), 0);
    QVERIFY(ImageOp::magicAvatarSvg(P::pixmap(QSize(8, 8), Qt::blue), QSize(0, 36), 1.0).isNull());
}

void TestVyrUtils::formatTime_data()
{
    QTest::addColumn<qint64>("secs");
    QTest::addColumn<bool>("withTime");
    QTest::addColumn<QString>("text");
    // These runs are in UTC.
    QTest::newRow("day") << qint64(1800000000) << false << "2027-01-15";
    QTest::newRow("day-and-time") << qint64(1800000000) << true << "2027-01-15 08:00";
    QTest::newRow("last-second-of-a-day") << qint64(1799971199) << false << "2027-01-14";
    QTest::newRow("epoch") << qint64(0) << false << "1970-01-01";
}

// The day text of a moment, in local time, with the time on request.
void TestVyrUtils::formatTime()
{
    QFETCH(qint64, secs);
    QFETCH(bool, withTime);
    QFETCH(QString, text);
    QCOMPARE(VyrUtils::formatTime(secs, withTime), text);
}

void TestVyrUtils::roundedPixmapSizeRatioAndCorners()
{
    const QPixmap rounded = ImageOp::roundedRectCoursePixmap(P::pixmap(QSize(72, 72), Qt::blue), QSizeF(36, 36), 2.0);
    QCOMPARE(rounded.size(), QSize(72, 72));
    QCOMPARE(rounded.devicePixelRatio(), 2.0);
    QCOMPARE(P::colourAt(rounded, 0, 0).alpha(), 0);
    QCOMPARE(P::colourAt(rounded, 71, 71).alpha(), 0);
    QCOMPARE(P::colourAt(rounded, 36, 36), QColor(Qt::blue));
    QCOMPARE(P::colourAt(rounded, 36, 0), QColor(Qt::blue));
    QVERIFY(ImageOp::roundedRectCoursePixmap(P::pixmap(QSize(4, 4), Qt::blue), QSizeF(0, 36), 1.0).isNull());
}


// A null source gives a transparent picture of the size.
void TestVyrUtils::roundedPixmapOfNullSource()
{
    const QPixmap rounded = ImageOp::roundedRectCoursePixmap(QPixmap(), QSizeF(36, 36), 1.0);
    QCOMPARE(rounded.size(), QSize(36, 36));
    QCOMPARE(P::colourAt(rounded, 18, 18).alpha(), 0);
}


// A wide source is scaled to cover and cut to its middle.
void TestVyrUtils::roundedPixmapCropsTheCentre()
{
    QPixmap wide(300, 100);
    wide.fill(Qt::red);
    {
        QPainter painter(&wide);
        painter.fillRect(QRect(100, 0, 100, 100), Qt::green);
    }
    const QPixmap rounded = ImageOp::roundedRectCoursePixmap(wide, QSizeF(36, 36), 1.0);
    QCOMPARE(P::colourAt(rounded, 2, 18), QColor(Qt::green));
    QCOMPARE(P::colourAt(rounded, 33, 18), QColor(Qt::green));
}


// "QToolButton_CloseGrayBg" gives a round grey background and a painted cross.
void TestVyrUtils::closeGrayStyleChangesTheLook()
{
    QWidget host;
    host.setStyleSheet(QStringLiteral("background: white;"));
    auto* plain = new QToolButton(&host);
    auto* styled = new QToolButton(&host);
    for (QToolButton* button : {plain, styled})
        button->setFixedSize(18, 18);
    GlobalStyle::getInstance()->applyCurrentStyle(styled, QStringLiteral("QToolButton_CloseGrayBg"), true);
    QCOMPARE(styled->property("GlobalStyle").toString(), QStringLiteral("QToolButton_CloseGrayBg"));
    QVERIFY(!styled->icon().isNull());
    QCOMPARE(styled->iconSize(), QSize(8, 8));
    const QImage image = P::grab(styled);
    // Grey background near the edge of the circle, darker cross in the middle.
    const QColor edge = P::colourAt(image, 3, 9);
    QVERIFY(edge.alpha() == 255 && edge.red() < 250 && edge.red() > 200);
    const QColor centre = P::colourAt(image, 9, 9);
    QVERIFY2(centre.red() < edge.red(), qPrintable(centre.name()));
    // Corners stay outside the circle.
    const QImage plainImage = P::grab(plain);
    QVERIFY(plainImage != image);
}


// An unknown name is recorded but leaves the look alone.
void TestVyrUtils::unknownStyleIsRecordedOnly()
{
    QToolButton button;
    button.setStyleSheet(QStringLiteral("QToolButton { color: red; }"));
    GlobalStyle::getInstance()->applyCurrentStyle(&button, QStringLiteral("NoSuchStyle"), false);
    QCOMPARE(button.property("GlobalStyle").toString(), QStringLiteral("NoSuchStyle"));
    QCOMPARE(button.styleSheet(), QStringLiteral("QToolButton { color: red; }"));
    QVERIFY(GlobalStyle::getInstance()->styleNames().contains(QStringLiteral("QToolButton_CloseGrayBg")));
}


// applyCurrentFontSize: the application font at that pixel size and weight.
void TestVyrUtils::fontSizeAndWeight()
{
    QWidget widget;
    GlobalStyle::getInstance()->applyCurrentFontSize(&widget, 13, QFont::Medium);
    QCOMPARE(widget.font().pixelSize(), 13);
    QCOMPARE(widget.font().weight(), int(QFont::Medium));
    QCOMPARE(widget.font().family(), QApplication::font().family());
}


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

// A value set is written at once to "<folder>/VyrSettings.ini", where a fresh QSettings reads it.
void TestVyrUtils::settingsLandInTheIniFile()
{
    QTemporaryDir dir;
    QVERIFY(dir.isValid());
    VyrSettings::setFolder(dir.path() + QStringLiteral("/made/here"));
    VyrSettings* settings = VyrSettings::instance(QString());
    QCOMPARE(settings->fileName(), dir.path() + QStringLiteral("/made/here/VyrSettings.ini"));
    settings->setSetting(QStringLiteral("KEY"), false);
    QCOMPARE(QSettings(settings->fileName(), QSettings::IniFormat).value(QStringLiteral("KEY")).toBool(), false);
    settings->setSetting(QStringLiteral("KEY"), true);
    QCOMPARE(QSettings(settings->fileName(), QSettings::IniFormat).value(QStringLiteral("KEY")).toBool(), true);
    QVERIFY(!settings->lastWriteFailed());
    QCOMPARE(VyrSettings::instance(QString()), settings);
}

// A named store writes "<name>.ini" and leaves the general one alone.
void TestVyrUtils::settingsStoresHaveTheirOwnFiles()
{
    QTemporaryDir dir;
    VyrSettings::setFolder(dir.path());
    VyrSettings::instance(QStringLiteral("other"))->setSetting(QStringLiteral("KEY"), 5);
    QCOMPARE(QSettings(dir.filePath(QStringLiteral("other.ini")), QSettings::IniFormat).value(QStringLiteral("KEY")).toInt(), 5);
    QVERIFY(!QFile::exists(dir.filePath(QStringLiteral("VyrSettings.ini"))));
    QVERIFY(!VyrSettings::instance(QString())->getSetting(QStringLiteral("KEY")).isValid());
}

// A value written to the file by someone else is read back; a new folder forgets the old values.
void TestVyrUtils::settingsReadBackFromTheFile()
{
    QTemporaryDir first;
    VyrSettings::setFolder(first.path());
    VyrSettings::instance(QString())->setSetting(QStringLiteral("KEY"), QStringLiteral("old"));
    QTemporaryDir second;
    {
        QSettings file(second.filePath(QStringLiteral("VyrSettings.ini")), QSettings::IniFormat);
        file.setValue(QStringLiteral("KEY"), QStringLiteral("from file"));
    }
    VyrSettings::setFolder(second.path());
    QCOMPARE(VyrSettings::instance(QString())->getSetting(QStringLiteral("KEY")).toString(), QStringLiteral("from file"));
    QCOMPARE(VyrSettings::instance(QString())->getSetting(QStringLiteral("NONE"), 7).toInt(), 7);
}

// A folder that can't be made: one warning, the value kept in memory, no file.
void TestVyrUtils::settingsUnwritableFolderKeepsTheValueInMemory()
{
    QTemporaryDir dir;
    QFile blocker(dir.filePath(QStringLiteral("plain-file")));
    QVERIFY(blocker.open(QIODevice::WriteOnly));
    blocker.close();
    // Below a plain file no folder can be made, whoever runs the test.
    VyrSettings::setFolder(blocker.fileName() + QStringLiteral("/settings"));
    VyrSettings* settings = VyrSettings::instance(QString());
    LogCapture log;
    settings->setSetting(QStringLiteral("KEY"), true);
    QVERIFY(settings->lastWriteFailed());
    QCOMPARE(settings->getSetting(QStringLiteral("KEY")).toBool(), true);
    const auto lines = log.startingWith(QStringLiteral("VyrSettings: cannot write"));
    QCOMPARE(lines.size(), 1);
    QCOMPARE(lines.first().type, QtWarningMsg);
    QVERIFY(!QFile::exists(settings->fileName()));
}

void TestVyrUtils::domainUrl_data()
{
    QTest::addColumn<bool>("secure");
    QTest::addColumn<bool>("withScheme");
    QTest::addColumn<QString>("expected");
    QTest::newRow("https") << true << true << QStringLiteral("https://svc.example.org");
    QTest::newRow("http") << false << true << QStringLiteral("http://svc.example.org");
    QTest::newRow("bare, secure") << true << false << QStringLiteral("svc.example.org");
    QTest::newRow("bare") << false << false << QStringLiteral("svc.example.org");
}

// The base address follows the host's domain, with or without a scheme.
void TestVyrUtils::domainUrl()
{
    QFETCH(bool, secure);
    QFETCH(bool, withScheme);
    QFETCH(QString, expected);
    const QString before = VyrUtils::serviceDomain();
    VyrUtils::setServiceDomain(QStringLiteral("svc.example.org"));
    const QString url = VyrUtils::getDomainUrl(secure, withScheme);
    VyrUtils::setServiceDomain(before);
    QCOMPARE(url, expected);
}

void TestVyrUtils::tavlaUrlStartsWithTheDomainUrl_data()
{
    QTest::addColumn<int>("type");
    QTest::addColumn<QString>("path");
    QTest::newRow("certification") << int(TAVLA_URL_SCHOOL_CERTIFICATION) << QStringLiteral("/school/certification");
    QTest::newRow("help") << int(TAVLA_URL_HELP) << QStringLiteral("/help");
    QTest::newRow("home") << int(TAVLA_URL_HOME) << QStringLiteral("/");
    QTest::newRow("unknown") << 999 << QStringLiteral("/");
}

// A page's address is the https base address followed by the page's path; 14 is the certification page.
void TestVyrUtils::tavlaUrlStartsWithTheDomainUrl()
{
    QFETCH(int, type);
    QFETCH(QString, path);
    QCOMPARE(int(TAVLA_URL_SCHOOL_CERTIFICATION), 14);
    const QString url = VyrUtils::genTavlaUrl(TAVLA_URL_TYPE(type));
    QCOMPARE(url, VyrUtils::getDomainUrl(true, true) + path);
    QCOMPARE(url, QStringLiteral("https://www.vyr.example") + path);
}

void TestVyrUtils::urlSplicing_data()
{
    QTest::addColumn<QStringList>("parts");
    QTest::addColumn<QString>("expected");
    QTest::newRow("plain") << QStringList{"a.edu", "path"} << QStringLiteral("a.edu/path");
    QTest::newRow("slash after") << QStringList{"a.edu/", "path"} << QStringLiteral("a.edu/path");
    QTest::newRow("slash before") << QStringList{"a.edu", "/school/x"} << QStringLiteral("a.edu/school/x");
    QTest::newRow("slashes both") << QStringList{"a.edu//", "//x/"} << QStringLiteral("a.edu/x/");
    QTest::newRow("three") << QStringList{"https://a.edu", "b/", "/c"} << QStringLiteral("https://a.edu/b/c");
    QTest::newRow("empty part") << QStringList{"a.edu", "", "c"} << QStringLiteral("a.edu/c");
    QTest::newRow("all empty") << QStringList{"", ""} << QString();
}

// Parts join with exactly one slash between them.
void TestVyrUtils::urlSplicing()
{
    QFETCH(QStringList, parts);
    QFETCH(QString, expected);
    QString joined;
    if (parts.size() == 2)
        joined = VyrUtils::urlSplicing({parts[0], parts[1]});
    else
        joined = VyrUtils::urlSplicing({parts[0], parts[1], parts[2]});
    QCOMPARE(joined, expected);
}

void TestVyrUtils::pushButtonAutoCalcSize_data()
{
    QTest::addColumn<QString>("text");
    QTest::newRow("short") << QStringLiteral("OK");
    QTest::newRow("long") << QStringLiteral("A rather long button text indeed");
    QTest::newRow("CJK") << QStringLiteral("这是一个相当长的按钮文字");
    QTest::newRow("empty") << QString();
}

// A fixed button widens to its text plus 12 pixels a side, never narrows, keeps its height.
void TestVyrUtils::pushButtonAutoCalcSize()
{
    QFETCH(QString, text);
    QPushButton button(text);
    button.setFixedSize(88, 32);
    GlobalStyle::getInstance()->applyCurrentFontSize(&button, 14, 50);
    GlobalStyle::getInstance()->applyPushButtonAutoCalcSize(&button);
    const int needed = button.fontMetrics().horizontalAdvance(text) + 24;
    QCOMPARE(button.width(), qMax(88, needed));
    QCOMPARE(button.minimumWidth(), button.maximumWidth());
    QCOMPARE(button.height(), 32);
    QCOMPARE(button.minimumHeight(), 32);
    QCOMPARE(button.maximumHeight(), 32);
}

// A button without a fixed width gets its text's width as minimum.
void TestVyrUtils::pushButtonAutoCalcSizeOfAFreeButton()
{
    QPushButton button(QStringLiteral("A rather long button text indeed"));
    button.resize(40, 30);
    GlobalStyle::getInstance()->applyPushButtonAutoCalcSize(&button);
    const int needed = button.fontMetrics().horizontalAdvance(button.text()) + 24;
    QCOMPARE(button.minimumWidth(), needed);
    QCOMPARE(button.width(), needed);
    QCOMPARE(button.maximumWidth(), QWIDGETSIZE_MAX);
    GlobalStyle::getInstance()->applyPushButtonAutoCalcSize(nullptr);
}

namespace {

// Callbacks seen: how many, the last pod, and on which thread each ran.
struct CallbackLog
{
    int count = 0;
    QSharedPointer<ResponsePod> last;
    bool allOnGuiThread = true;

    VyrHttpManager::Callback callback()
    {
        return [this](QSharedPointer<ResponsePod> pod) {
            ++count;
            last = pod;
            allOnGuiThread = allOnGuiThread && QThread::currentThread() == qApp->thread();
        };
    }
};

QSharedPointer<CommonPostParamPod> paramFor(QObject* context, quint64 timeoutMs = 0)
{
    return QSharedPointer<CommonPostParamPod>::create(timeoutMs, QPointer<QObject>(context), false, false);
}

} // namespace

// An answer arrives once, on the GUI thread, with its body, status and URL; the request is a JSON POST.
void TestVyrUtils::httpAnswerReachesTheCallbackOnce()
{
    VyrDev::LocalHttpServer server;
    QVERIFY(server.start());
    VyrHttpManager::setBaseUrl(server.baseUrl());
    server.setReply(VyrHttpManager::ClusterNoticeDetailsPath.toUtf8(),
                    VyrDev::HttpReply::json(R"({"error_info":{"errno":1,"error":""}})"));
    QObject context;
    CallbackLog log;
    VyrHttpManager::requestClusterNoticeDetails(QStringLiteral("4711"), log.callback(), paramFor(&context));
    // Never inside the call.
    QCOMPARE(log.count, 0);
    QTRY_COMPARE(log.count, 1);
    QCOMPARE(log.last->networkError, 0);
    QCOMPARE(log.last->httpStatus, 200);
    QVERIFY(log.last->errorString.isEmpty());
    QCOMPARE(log.last->body, QByteArray(R"({"error_info":{"errno":1,"error":""}})"));
    QCOMPARE(log.last->url, server.url(VyrHttpManager::ClusterNoticeDetailsPath));
    QVERIFY(log.allOnGuiThread);
    const QList<VyrDev::HttpRequestRecord> requests = server.requests();
    QCOMPARE(requests.size(), 1);
    QCOMPARE(requests[0].method, QByteArray("POST"));
    QCOMPARE(requests[0].path, VyrHttpManager::ClusterNoticeDetailsPath.toUtf8());
    QCOMPARE(QJsonDocument::fromJson(requests[0].body).object().value("content_id").toString(),
             QStringLiteral("4711"));
    QTest::qWait(50);
    QCOMPARE(log.count, 1);
    QCOMPARE(VyrHttpManager::pendingRequestCount(), 0);
}

// A 404 or 500 is a failure: Qt's error number, its text, the status and the body.
void TestVyrUtils::httpErrorStatusIsAFailureWithItsBody()
{
    VyrDev::LocalHttpServer server;
    QVERIFY(server.start());
    VyrHttpManager::setBaseUrl(server.baseUrl());
    server.setReply(VyrHttpManager::ClusterNoticeDetailsPath.toUtf8(), VyrDev::HttpReply::error(500, "broken"));
    QObject context;
    CallbackLog log;
    VyrHttpManager::requestClusterNoticeDetails(QStringLiteral("1"), log.callback(), paramFor(&context));
    QTRY_COMPARE(log.count, 1);
    QCOMPARE(log.last->networkError, int(QNetworkReply::InternalServerError));
    QCOMPARE(log.last->httpStatus, 500);
    QCOMPARE(log.last->body, QByteArray("broken"));
    QVERIFY(!log.last->errorString.isEmpty());
}

// A stopped server refuses: the callback runs once with the refusal and no status.
void TestVyrUtils::httpRefusedConnection()
{
    VyrDev::LocalHttpServer server;
    QVERIFY(server.start());
    VyrHttpManager::setBaseUrl(server.baseUrl());
    server.stop();
    QObject context;
    CallbackLog log;
    VyrHttpManager::requestClusterNoticeDetails(QStringLiteral("1"), log.callback(), paramFor(&context));
    QTRY_COMPARE(log.count, 1);
    QCOMPARE(log.last->networkError, int(QNetworkReply::ConnectionRefusedError));
    QCOMPARE(log.last->httpStatus, 0);
    QVERIFY(!log.last->errorString.isEmpty());
    QTest::qWait(50);
    QCOMPARE(log.count, 1);
}

// The context destroyed while the answer is on its way: the callback never runs.
void TestVyrUtils::httpNoCallbackForAContextThatIsGone()
{
    VyrDev::LocalHttpServer server;
    QVERIFY(server.start());
    VyrHttpManager::setBaseUrl(server.baseUrl());
    VyrDev::HttpReply slow = VyrDev::HttpReply::json("{}");
    slow.delayMs = 150;
    server.setReply(VyrHttpManager::ClusterNoticeDetailsPath.toUtf8(), slow);
    auto* context = new QObject();
    CallbackLog log;
    VyrHttpManager::requestClusterNoticeDetails(QStringLiteral("1"), log.callback(), paramFor(context));
    QTRY_COMPARE(server.requestCount(), 1);
    delete context;
    QTRY_COMPARE(VyrHttpManager::pendingRequestCount(), 0);
    QTest::qWait(50);
    QCOMPARE(log.count, 0);
}

// Without a context at all the callback always runs.
void TestVyrUtils::httpNullContextAlwaysCalledBack()
{
    VyrDev::LocalHttpServer server;
    QVERIFY(server.start());
    VyrHttpManager::setBaseUrl(server.baseUrl());
    server.setReply(VyrHttpManager::ClusterNoticeDetailsPath.toUtf8(), VyrDev::HttpReply::json("{}"));
    CallbackLog log;
    VyrHttpManager::requestClusterNoticeDetails(QStringLiteral("1"), log.callback(), paramFor(nullptr));
    QTRY_COMPARE(log.count, 1);
    CallbackLog withoutParam;
    VyrHttpManager::requestClusterNoticeDetails(QStringLiteral("2"), withoutParam.callback(), {});
    QTRY_COMPARE(withoutParam.count, 1);
    QCOMPARE(withoutParam.last->networkError, 0);
}

// A server that never answers: the request's own timeout cancels it, and the callback runs once.
void TestVyrUtils::httpTimeoutAbortsOnce()
{
    VyrDev::LocalHttpServer server;
    QVERIFY(server.start());
    VyrHttpManager::setBaseUrl(server.baseUrl());
    VyrDev::HttpReply hang;
    hang.hang = true;
    server.setReply(VyrHttpManager::ClusterNoticeDetailsPath.toUtf8(), hang);
    QObject context;
    CallbackLog log;
    QElapsedTimer clock;
    clock.start();
    VyrHttpManager::requestClusterNoticeDetails(QStringLiteral("1"), log.callback(), paramFor(&context, 100));
    QTRY_COMPARE(log.count, 1);
    QVERIFY(clock.elapsed() >= 100);
    QCOMPARE(log.last->networkError, int(QNetworkReply::OperationCanceledError));
    QTest::qWait(50);
    QCOMPARE(log.count, 1);
    server.stop();
}

// Asked from a worker thread, the request still runs and answers on the GUI thread.
void TestVyrUtils::httpRequestFromAWorkerThreadAnswersOnTheGuiThread()
{
    VyrDev::LocalHttpServer server;
    QVERIFY(server.start());
    VyrHttpManager::setBaseUrl(server.baseUrl());
    server.setReply(VyrHttpManager::ClusterNoticeDetailsPath.toUtf8(), VyrDev::HttpReply::json("{}"));
    // The manager exists before the worker asks, as in a client.
    QVERIFY(VyrHttpManager::baseUrl().isValid());
    CallbackLog log;
    QThread* worker = QThread::create([&log]() {
        VyrHttpManager::requestClusterNoticeDetails(QStringLiteral("9"), log.callback(), {});
    });
    worker->start();
    QVERIFY(worker->wait(5000));
    delete worker;
    QTRY_COMPARE(log.count, 1);
    QVERIFY(log.allOnGuiThread);
}

// The options record gives back what it was built with and notices a context that went.
void TestVyrUtils::httpParamPodKeepsItsOptions()
{
    auto* context = new QObject();
    CommonPostParamPod pod(250, context, true, false);
    QCOMPARE(pod.timeoutMs(), quint64(250));
    QCOMPARE(pod.context().data(), context);
    QVERIFY(pod.hasContext());
    QVERIFY(pod.logRequest());
    QVERIFY(!pod.logResponse());
    delete context;
    QVERIFY(pod.context().isNull());
    QVERIFY(pod.hasContext());
    CommonPostParamPod none(0, nullptr, false, true);
    QVERIFY(!none.hasContext());
    QVERIFY(none.logResponse());
}

// A restricted-mode setting is off until set, each value on its own, and lands in the file.
void TestVyrUtils::teenModeConfigIsOffUntilSet()
{
    QTemporaryDir dir;
    VyrSettings::setFolder(dir.path());
    VyrSettings* store = VyrSettings::instance(QString());
    QVERIFY(!store->isEnabledTeenModeConfig(TeenModeEnabled));
    store->setTeenModeConfig(TeenModeEnabled, true);
    QVERIFY(store->isEnabledTeenModeConfig(TeenModeEnabled));
    QVERIFY(!store->isEnabledTeenModeConfig(TeenModeFriendPassword));
    QSettings file(store->fileName(), QSettings::IniFormat);
    QCOMPARE(file.value("TeenModeConfig/4").toBool(), true);
    store->setTeenModeConfig(TeenModeEnabled, false);
    QVERIFY(!store->isEnabledTeenModeConfig(TeenModeEnabled));
}

// A box's title follows its icon and the user's language.
void TestVyrUtils::messageBoxTitlePerIconAndLanguage_data()
{
    QTest::addColumn<int>("icon");
    QTest::addColumn<QString>("locale");
    QTest::addColumn<QString>("title");
    QTest::newRow("warning-en") << int(QMessageBox::Warning) << "en_US" << "Warning";
    QTest::newRow("question-en") << int(QMessageBox::Question) << "en_US" << "Question";
    QTest::newRow("info-en") << int(QMessageBox::Information) << "en_US" << "Notice";
    QTest::newRow("warning-zh") << int(QMessageBox::Warning) << "zh_CN" << QString::fromUtf8("警告");
    QTest::newRow("question-zh") << int(QMessageBox::Question) << "zh_CN" << QString::fromUtf8("询问");
}

void TestVyrUtils::messageBoxTitlePerIconAndLanguage()
{
    QFETCH(int, icon);
    QFETCH(QString, locale);
    QFETCH(QString, title);
    const QLocale before;
    QLocale::setDefault(QLocale(locale));
    const QString got = VyrUtils::getMessageBoxTitle(QMessageBox::Icon(icon));
    QLocale::setDefault(before);
    QCOMPARE(got, title);
}

// Bytes become a picture: detected by content, or PNG only without detection; no picture gives null.
// A header over 4096 a side, over 8 MB of bytes, or an SVG is refused with a log line before decoding.
void TestVyrUtils::loadFromData_data()
{
    QTest::addColumn<QByteArray>("bytes");
    QTest::addColumn<bool>("detect");
    QTest::addColumn<bool>("isNull");
    QTest::addColumn<bool>("refused");
    const QSize huge(20000, 20000);
    QTest::newRow("png, detected") << pngBytes(Qt::red) << true << false << false;
    QTest::newRow("png, png only") << pngBytes(Qt::red) << false << false << false;
    QTest::newRow("jpeg, detected") << jpegBytes(Qt::blue) << true << false << false;
    QTest::newRow("jpeg, png only") << jpegBytes(Qt::blue) << false << true << false;
    QTest::newRow("html") << QByteArray("<html><body>not found</body></html>") << true << true << false;
    QTest::newRow("empty") << QByteArray() << true << true << false;
    QTest::newRow("png 4096") << pngBytes(Qt::red, QSize(4096, 4096)) << true << false << false;
    QTest::newRow("png 20000") << HostilePictures::pngDeclaring(huge) << true << true << true;
    QTest::newRow("png 20000, png only") << HostilePictures::pngDeclaring(huge) << false << true << true;
    QTest::newRow("png 4097x1") << HostilePictures::pngDeclaring(QSize(4097, 1)) << true << true << true;
    QTest::newRow("jpeg 20000") << HostilePictures::jpegDeclaring(huge) << true << true << true;
    QTest::newRow("gif 20000") << HostilePictures::gifDeclaring(huge) << true << true << true;
    QTest::newRow("bmp 16000") << HostilePictures::bmpDeclaring(QSize(16000, 16000)) << true << true << true;
    QTest::newRow("svg 20000") << HostilePictures::svgDeclaring(huge) << true << true << true;
    QTest::newRow("svg 20") << HostilePictures::svgDeclaring(QSize(20, 20)) << true << true << true;
    QTest::newRow("9 MB") << pngBytes(Qt::red) + QByteArray(9 * 1024 * 1024, '\0') << true << true << true;
}

void TestVyrUtils::loadFromData()
{
    QFETCH(QByteArray, bytes);
    QFETCH(bool, detect);
    QFETCH(bool, isNull);
    QFETCH(bool, refused);
    LogCapture logs;
    const QPixmap pixmap = VyrUtils::loadFromData(bytes, detect);
    QCOMPARE(pixmap.isNull(), isNull);
    QCOMPARE(logs.startingWith(QStringLiteral("picture refused")).size(), refused ? 1 : 0);
}

// A GET over real HTTP: the body arrives with finished(), the server saw the path.
void TestVyrUtils::downloaderFetchesABody()
{
    VyrDev::LocalHttpServer server;
    QVERIFY(server.start());
    const QByteArray png = pngBytes(QColor(10, 200, 30));
    server.setReply("/covers/a.png", VyrDev::HttpReply::png(png));
    FileDownloader downloader(nullptr, {});
    QSignalSpy finished(&downloader, &FileDownloader::finished);
    QSignalSpy failed(&downloader, &FileDownloader::error);
    downloader.setTargetUrl(server.url(QStringLiteral("/covers/a.png")));
    QCOMPARE(downloader.targetUrl(), server.url(QStringLiteral("/covers/a.png")));
    downloader.download(QNetworkRequest::PreferNetwork);
    QVERIFY(downloader.isRunning());
    QVERIFY(finished.wait(5000));
    QCOMPARE(failed.count(), 0);
    QVERIFY(!downloader.isRunning());
    QCOMPARE(downloader.downloadedData(), png);
    QCOMPARE(server.requestCount("/covers/a.png"), 1);
    QCOMPARE(server.requests().first().method, QByteArray("GET"));
}

// The answer never comes inside download(), even from a local server.
void TestVyrUtils::downloaderAnswersLater()
{
    VyrDev::LocalHttpServer server;
    QVERIFY(server.start());
    VyrDev::HttpReply slow = VyrDev::HttpReply::png(pngBytes(Qt::red));
    slow.delayMs = 300;
    server.setReply("/slow.png", slow);
    FileDownloader downloader(nullptr, {});
    QSignalSpy finished(&downloader, &FileDownloader::finished);
    downloader.setTargetUrl(server.url(QStringLiteral("/slow.png")));
    downloader.download(QNetworkRequest::PreferNetwork);
    QCOMPARE(finished.count(), 0);
    QVERIFY(downloader.downloadedData().isEmpty());
    QVERIFY(finished.wait(5000));
    QVERIFY(!downloader.downloadedData().isEmpty());
}

// An HTTP error status ends in error() with the network error code, never finished().
void TestVyrUtils::downloaderReportsHttpErrors_data()
{
    QTest::addColumn<int>("status");
    QTest::addColumn<int>("code");
    QTest::newRow("404") << 404 << int(QNetworkReply::ContentNotFoundError);
    QTest::newRow("403") << 403 << int(QNetworkReply::ContentAccessDenied);
    QTest::newRow("500") << 500 << int(QNetworkReply::InternalServerError);
}

void TestVyrUtils::downloaderReportsHttpErrors()
{
    QFETCH(int, status);
    QFETCH(int, code);
    VyrDev::LocalHttpServer server;
    QVERIFY(server.start());
    server.setReply("/x.png", VyrDev::HttpReply::error(status, "nope"));
    FileDownloader downloader(nullptr, {});
    QSignalSpy finished(&downloader, &FileDownloader::finished);
    QSignalSpy failed(&downloader, &FileDownloader::error);
    downloader.setTargetUrl(server.url(QStringLiteral("/x.png")));
    downloader.download(QNetworkRequest::PreferNetwork);
    QVERIFY(failed.wait(5000));
    QCOMPARE(failed.first().at(0).toInt(), code);
    QVERIFY(!failed.first().at(1).toString().isEmpty());
    QCOMPARE(finished.count(), 0);
    QVERIFY(downloader.downloadedData().isEmpty());
}

// A stopped server refuses the connection: error() with ConnectionRefusedError.
void TestVyrUtils::downloaderReportsARefusedConnection()
{
    VyrDev::LocalHttpServer server;
    QVERIFY(server.start());
    const QUrl url = server.url(QStringLiteral("/gone.png"));
    // One answered request first: the server is surely listening when it is stopped.
    FileDownloader warmUp(nullptr, {});
    QSignalSpy warmUpFailed(&warmUp, &FileDownloader::error);
    warmUp.setTargetUrl(url);
    warmUp.download(QNetworkRequest::AlwaysNetwork);
    QVERIFY(warmUpFailed.wait(5000));
    server.stop();
    FileDownloader downloader(nullptr, {});
    QSignalSpy failed(&downloader, &FileDownloader::error);
    downloader.setTargetUrl(url);
    downloader.download(QNetworkRequest::AlwaysNetwork);
    QVERIFY(failed.wait(5000));
    QCOMPARE(failed.first().at(0).toInt(), int(QNetworkReply::ConnectionRefusedError));
}

// With accepted suffixes, another suffix fails later without asking the server.
void TestVyrUtils::downloaderRejectsOtherSuffixes_data()
{
    QTest::addColumn<QString>("path");
    QTest::addColumn<bool>("accepted");
    QTest::newRow("png") << "/a.png" << true;
    QTest::newRow("PNG, any case") << "/a.PNG" << true;
    QTest::newRow("exe") << "/a.exe" << false;
    QTest::newRow("no suffix") << "/a" << false;
}

void TestVyrUtils::downloaderRejectsOtherSuffixes()
{
    QFETCH(QString, path);
    QFETCH(bool, accepted);
    VyrDev::LocalHttpServer server;
    QVERIFY(server.start());
    server.setDefaultReply(VyrDev::HttpReply::png(pngBytes(Qt::red)));
    FileDownloader downloader(nullptr, {QStringLiteral("png"), QStringLiteral("jpg")});
    QSignalSpy finished(&downloader, &FileDownloader::finished);
    QSignalSpy failed(&downloader, &FileDownloader::error);
    downloader.setTargetUrl(server.url(path));
    downloader.download(QNetworkRequest::PreferNetwork);
    QCOMPARE(failed.count(), 0);
    QTRY_COMPARE_WITH_TIMEOUT(finished.count() + failed.count(), 1, 5000);
    QCOMPARE(finished.count(), accepted ? 1 : 0);
    QCOMPARE(server.requestCount(), accepted ? 1 : 0);
    if (!accepted)
        QCOMPARE(failed.first().at(0).toInt(), int(QNetworkReply::ProtocolInvalidOperationError));
}

// A second download() drops the first, which reports nothing.
void TestVyrUtils::downloaderNewDownloadDropsTheRunningOne()
{
    VyrDev::LocalHttpServer server;
    QVERIFY(server.start());
    VyrDev::HttpReply held = VyrDev::HttpReply::png(pngBytes(Qt::red));
    held.hang = true;
    server.setReply("/held.png", held);
    const QByteArray second = pngBytes(Qt::blue);
    server.setReply("/second.png", VyrDev::HttpReply::png(second));
    FileDownloader downloader(nullptr, {});
    QSignalSpy finished(&downloader, &FileDownloader::finished);
    QSignalSpy failed(&downloader, &FileDownloader::error);
    downloader.setTargetUrl(server.url(QStringLiteral("/held.png")));
    downloader.download(QNetworkRequest::PreferNetwork);
    QTRY_COMPARE_WITH_TIMEOUT(server.requestCount("/held.png"), 1, 5000);
    downloader.setTargetUrl(server.url(QStringLiteral("/second.png")));
    downloader.download(QNetworkRequest::PreferNetwork);
    QVERIFY(finished.wait(5000));
    QTest::qWait(50);
    QCOMPARE(finished.count(), 1);
    QCOMPARE(failed.count(), 0);
    QCOMPARE(downloader.downloadedData(), second);
    server.stop();
}

// abort() ends a transfer with OperationCanceledError.
void TestVyrUtils::downloaderAbortReportsCancel()
{
    VyrDev::LocalHttpServer server;
    QVERIFY(server.start());
    VyrDev::HttpReply held;
    held.hang = true;
    server.setReply("/held.png", held);
    FileDownloader downloader(nullptr, {});
    QSignalSpy failed(&downloader, &FileDownloader::error);
    downloader.setTargetUrl(server.url(QStringLiteral("/held.png")));
    downloader.download(QNetworkRequest::PreferNetwork);
    QTRY_COMPARE_WITH_TIMEOUT(server.requestCount("/held.png"), 1, 5000);
    downloader.abort();
    QCOMPARE(failed.count(), 1);
    QCOMPARE(failed.first().at(0).toInt(), int(QNetworkReply::OperationCanceledError));
    QVERIFY(!downloader.isRunning());
    server.stop();
}

// A downloader deleted while its answer is on the way delivers nothing and doesn't crash.
void TestVyrUtils::deletedDownloaderDeliversNothing()
{
    VyrDev::LocalHttpServer server;
    QVERIFY(server.start());
    VyrDev::HttpReply slow = VyrDev::HttpReply::png(pngBytes(Qt::red));
    slow.delayMs = 200;
    server.setReply("/slow.png", slow);
    QObject owner;
    auto* downloader = new FileDownloader(&owner, {});
    int delivered = 0;
    connect(downloader, &FileDownloader::finished, &owner, [&delivered]() { ++delivered; });
    connect(downloader, &FileDownloader::error, &owner, [&delivered]() { ++delivered; });
    downloader->setTargetUrl(server.url(QStringLiteral("/slow.png")));
    downloader->download(QNetworkRequest::PreferNetwork);
    QTRY_COMPARE_WITH_TIMEOUT(server.requestCount("/slow.png"), 1, 5000);
    delete downloader;
    QTest::qWait(400);
    QCOMPARE(delivered, 0);
}

// A failure after a success empties the body: a reader never takes the last file for the new one.
void TestVyrUtils::downloaderErrorAfterASuccessLeavesNoData()
{
    VyrDev::LocalHttpServer server;
    QVERIFY(server.start());
    const QByteArray png = pngBytes(QColor(10, 200, 30));
    server.setReply("/a.png", VyrDev::HttpReply::png(png));
    server.setReply("/missing.png", VyrDev::HttpReply::error(404, "nope"));
    FileDownloader downloader(nullptr, {QStringLiteral("png")});
    QSignalSpy finished(&downloader, &FileDownloader::finished);
    QSignalSpy failed(&downloader, &FileDownloader::error);
    downloader.setTargetUrl(server.url(QStringLiteral("/a.png")));
    downloader.download(QNetworkRequest::PreferNetwork);
    QVERIFY(finished.wait(5000));
    QCOMPARE(downloader.downloadedData(), png);
    downloader.setTargetUrl(server.url(QStringLiteral("/missing.png")));
    downloader.download(QNetworkRequest::PreferNetwork);
    QVERIFY(failed.wait(5000));
    QVERIFY(downloader.downloadedData().isEmpty());
    // Again after a success, then a refused suffix.
    downloader.setTargetUrl(server.url(QStringLiteral("/a.png")));
    downloader.download(QNetworkRequest::PreferNetwork);
    QVERIFY(finished.wait(5000));
    QCOMPARE(downloader.downloadedData(), png);
    downloader.setTargetUrl(server.url(QStringLiteral("/a.exe")));
    downloader.download(QNetworkRequest::PreferNetwork);
    QVERIFY(failed.wait(5000));
    QVERIFY(downloader.downloadedData().isEmpty());
    QCOMPARE(finished.count(), 2);
    QCOMPARE(failed.count(), 2);
}

// Two appendix records are one activity when id and type agree; null never is.
void TestVyrUtils::appendixSameActivity_data()
{
    QTest::addColumn<quint64>("otherId");
    QTest::addColumn<int>("otherType");
    QTest::addColumn<bool>("isNull");
    QTest::addColumn<bool>("same");
    QTest::newRow("same id and type") << quint64(7) << 2 << false << true;
    QTest::newRow("other id") << quint64(8) << 2 << false << false;
    QTest::newRow("other type") << quint64(7) << 3 << false << false;
    QTest::newRow("null") << quint64(7) << 2 << true << false;
}

void TestVyrUtils::appendixSameActivity()
{
    QFETCH(quint64, otherId);
    QFETCH(int, otherType);
    QFETCH(bool, isNull);
    QFETCH(bool, same);
    AppendixDataPod pod;
    pod.activityId = 7;
    pod.activityType = 2;
    pod.courseData = QSharedPointer<ActivityCourseDataPod>::create();
    pod.courseData->courseId = 500;
    QSharedPointer<AppendixDataPod> other;
    if (!isNull) {
        other = QSharedPointer<AppendixDataPod>::create();
        other->activityId = otherId;
        other->activityType = otherType;
    }
    QCOMPARE(pod.isSameActivity(other), same);
}

QTEST_MAIN(TestVyrUtils)
#include "tst_vyrutils.moc"
