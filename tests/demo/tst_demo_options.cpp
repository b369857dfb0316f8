// Runs the demo host with its options: help and mistakes without a display,
// the headless defaults, paths taken from the caller's directory, the locale
// the windows read, and screenshots that wait for the windows to settle.

#include <QDir>
#include <QFile>
#include <QImage>
#include <QJsonDocument>
#include <QJsonObject>
#include <QProcess>
#include <QRegularExpression>
#include <QTemporaryDir>
#include <QtTest>

namespace {

// A short run: one lesson notice and one friend request, a screenshot, quit.
const char* const kShortScenario = R"({
  "clock": 1800000000,
  "clusters": [{"id": 500, "name": "Grade 7 Class 3"}],
  "courses": [{"id": 500, "name": "Mathematics"}],
  "lessons": [{"id": 1, "courseId": 500, "name": "Fractions", "startIn": 600}],
  "steps": [
    {"at": 0, "do": "lessonNotice", "type": "LessonAhead", "lessonId": 1},
    {"at": 0, "do": "contactorAdd"},
    {"at": 20, "do": "screenshot", "name": "settled"},
    {"at": 40, "do": "quit"}
  ]
})";

// Both gathered windows, a class notice card and the friend-request page at once: taller than a laptop's screen.
const char* const kCrowdedScenario = R"({
  "clock": 1800000000,
  "clusters": [{"id": 500, "name": "Grade 7 Class 3"}],
  "courses": [{"id": 500, "name": "Mathematics"}],
  "lessons": [{"id": 1, "courseId": 500, "name": "Fractions", "startIn": 600},
              {"id": 2, "courseId": 500, "name": "Ratios", "startIn": 900},
              {"id": 3, "courseId": 500, "name": "Angles", "startIn": 1200}],
  "steps": [
    {"at": 0, "do": "lessonNotice", "type": "LessonAhead", "lessonId": 1},
    {"at": 0, "do": "lessonNotice", "type": "LessonAhead", "lessonId": 2},
    {"at": 0, "do": "lessonNotice", "type": "LessonAhead", "lessonId": 3},
    {"at": 0, "do": "contactorAdd"},
    {"at": 0, "do": "contactorAdd"},
    {"at": 0, "do": "contactorAdd"},
    {"at": 10, "do": "classNotice", "type": "AheadNotice", "lessonId": 1},
    {"at": 20, "do": "friendRequestPopup"},
    {"at": 30, "do": "clickFriendRequestPopup"},
    {"at": 40, "do": "screenshot", "name": "crowded"},
    {"at": 60, "do": "quit"}
  ]
})";

struct Run
{
    int exitCode = -1;
    QString out;
    QString err;
};

QProcessEnvironment withoutDisplay()
{
    QProcessEnvironment env = QProcessEnvironment::systemEnvironment();
    env.remove(QStringLiteral("QT_QPA_PLATFORM"));
    env.remove(QStringLiteral("DISPLAY"));
    env.remove(QStringLiteral("WAYLAND_DISPLAY"));
    return env;
}

Run runDemo(const QStringList& arguments, const QString& workingDir = QString(),
            const QProcessEnvironment& env = QProcessEnvironment::systemEnvironment())
{
    QProcess demo;
    demo.setProcessEnvironment(env);
    if (!workingDir.isEmpty())
        demo.setWorkingDirectory(workingDir);
    demo.start(QStringLiteral(NOTICE_DEMO_PATH), arguments);
    Run run;
    if (!demo.waitForFinished(60000))
        return run;
    run.exitCode = demo.exitStatus() == QProcess::NormalExit ? demo.exitCode() : -1;
    run.out = QString::fromUtf8(demo.readAllStandardOutput());
    run.err = QString::fromUtf8(demo.readAllStandardError());
    return run;
}

bool writeFile(const QString& path, const QByteArray& content)
{
    QDir().mkpath(QFileInfo(path).absolutePath());
    QFile file(path);
    return file.open(QIODevice::WriteOnly) && file.write(content) == content.size();
}

QStringList pushBodies(const QString& trackLog)
{
    QStringList bodies;
    QFile file(trackLog);
    if (!file.open(QIODevice::ReadOnly))
        return bodies;
    while (!file.atEnd()) {
        const QJsonObject line = QJsonDocument::fromJson(file.readLine()).object();
        if (line.value(QStringLiteral("event")).toString() == QLatin1String("PushSend"))
            bodies << line.value(QStringLiteral("data")).toObject().value(QStringLiteral("push_body")).toString();
    }
    return bodies;
}

int countPixels(const QImage& image, QRgb colour)
{
    int count = 0;
    for (int y = 0; y < image.height(); ++y) {
        for (int x = 0; x < image.width(); ++x)
            count += (image.pixel(x, y) & 0xFFFFFF) == (colour & 0xFFFFFF);
    }
    return count;
}

} // namespace

class TestDemoOptions : public QObject
{
    Q_OBJECT
private slots:
    void init();
    void helpWithoutDisplay();
    void badOptionsWithoutDisplay_data();
    void badOptionsWithoutDisplay();
    void headlessRunDrawsOnASimulatedScreen();
    void headlessRunSaysHowToGetScreenshots();
    void relativeScenarioIsTheCallersFile();
    void chineseLocaleReachesWindowsAndTexts();
    void unknownLocaleFallsBackToEnglishWithOneLine();
    void screenshotsWaitForFullOpacityAtHighSpeed();
    void windowsStayInsideSmallScreens_data();
    void windowsStayInsideSmallScreens();

private:
    std::unique_ptr<QTemporaryDir> m_dir;
    QString m_scenario;
};

void TestDemoOptions::init()
{
    m_dir.reset(new QTemporaryDir);
    QVERIFY(m_dir->isValid());
    m_scenario = m_dir->filePath(QStringLiteral("short.json"));
    QVERIFY(writeFile(m_scenario, kShortScenario));
}

// --help is answered with exit 0 and the options (with demo.sh's --all), with no display and no platform set.
void TestDemoOptions::helpWithoutDisplay()
{
    const Run run = runDemo({QStringLiteral("--help")}, QString(), withoutDisplay());
    QCOMPARE(run.exitCode, 0);
    for (const char* option : {"--scenario", "--locale", "--speed", "--track-log", "--screenshots", "--screen", "--taskbar",
                               "--all", ":/demo/scenarios/", "friendrequests"})
        QVERIFY2(run.out.contains(QLatin1String(option)), qPrintable(run.out));
    QVERIFY2(!run.err.contains(QLatin1String("platform plugin")), qPrintable(run.err));
}

void TestDemoOptions::badOptionsWithoutDisplay_data()
{
    QTest::addColumn<QStringList>("arguments");
    QTest::addColumn<QString>("named");
    QTest::newRow("speed-zero") << QStringList{QStringLiteral("--speed"), QStringLiteral("0")} << QStringLiteral("--speed");
    QTest::newRow("speed-word") << QStringList{QStringLiteral("--speed"), QStringLiteral("fast")} << QStringLiteral("--speed");
    QTest::newRow("screen") << QStringList{QStringLiteral("--screen"), QStringLiteral("12x")} << QStringLiteral("--screen");
    QTest::newRow("taskbar") << QStringList{QStringLiteral("--taskbar"), QStringLiteral("middle")} << QStringLiteral("middle");
    QTest::newRow("unknown") << QStringList{QStringLiteral("--bogus")} << QStringLiteral("bogus");
}

// A mistake on the command line: exit 2 and the option named, without a display and before anything runs.
void TestDemoOptions::badOptionsWithoutDisplay()
{
    QFETCH(QStringList, arguments);
    QFETCH(QString, named);
    const Run run = runDemo(arguments, QString(), withoutDisplay());
    QCOMPARE(run.exitCode, 2);
    QVERIFY2(run.err.contains(named), qPrintable(run.err));
    QVERIFY2(run.out.isEmpty(), qPrintable(run.out));
}

// No display: offscreen, a 1920x1080 screen with a 40 px taskbar at the bottom, and the shots' folder said in full.
void TestDemoOptions::headlessRunDrawsOnASimulatedScreen()
{
    const Run run = runDemo({QStringLiteral("--scenario"), m_scenario, QStringLiteral("--screenshots"), QStringLiteral("shots")},
                            m_dir->path(), withoutDisplay());
    QCOMPARE(run.exitCode, 0);
    const QString shots = QDir(m_dir->path()).absoluteFilePath(QStringLiteral("shots"));
    QVERIFY2(run.out.contains(QStringLiteral("Screenshots go to %1").arg(shots)), qPrintable(run.out));
    const QImage screen(QDir(shots).filePath(QStringLiteral("01-settled-screen.png")));
    QCOMPARE(screen.size(), QSize(1920, 1080));
    QCOMPARE(screen.pixelColor(1919, 1079), QColor(0x2B, 0x30, 0x38));
    QCOMPARE(screen.pixelColor(1919, 1040), QColor(0x2B, 0x30, 0x38));
    QVERIFY(screen.pixelColor(1919, 1039) != QColor(0x2B, 0x30, 0x38));
}

// No display and no --screenshots: the demo says how to get the pictures.
void TestDemoOptions::headlessRunSaysHowToGetScreenshots()
{
    const Run run = runDemo({QStringLiteral("--scenario"), m_scenario}, m_dir->path(), withoutDisplay());
    QCOMPARE(run.exitCode, 0);
    QVERIFY2(run.out.contains(QLatin1String("--screenshots DIR")), qPrintable(run.out));
}

// A relative --scenario (and --screenshots, --track-log) is read from the process's working directory.
void TestDemoOptions::relativeScenarioIsTheCallersFile()
{
    QVERIFY(writeFile(m_dir->filePath(QStringLiteral("mine/s.json")), kShortScenario));
    const Run run = runDemo({QStringLiteral("--scenario"), QStringLiteral("mine/s.json"), QStringLiteral("--track-log"),
                             QStringLiteral("mine/track.jsonl"), QStringLiteral("--screenshots"), QStringLiteral("mine/shots")},
                            m_dir->path());
    QCOMPARE(run.exitCode, 0);
    QVERIFY2(run.out.contains(QLatin1String("step 3 @40ms: {\"do\":\"quit\"}")), qPrintable(run.out + run.err));
    QVERIFY(QFile::exists(m_dir->filePath(QStringLiteral("mine/track.jsonl"))));
    QVERIFY(QFile::exists(m_dir->filePath(QStringLiteral("mine/shots/01-settled-screen.png"))));
}

// zh_CN: the windows are made in the Chinese locale (they pick the name form from it) and the texts are Chinese.
void TestDemoOptions::chineseLocaleReachesWindowsAndTexts()
{
    const QString trackLog = m_dir->filePath(QStringLiteral("track.jsonl"));
    const Run run = runDemo({QStringLiteral("--scenario"), m_scenario, QStringLiteral("--locale"), QStringLiteral("zh_CN"),
                             QStringLiteral("--track-log"), trackLog});
    QCOMPARE(run.exitCode, 0);
    QVERIFY2(run.out.contains(QLatin1String("windows: locale zh_CN")), qPrintable(run.out));
    QCOMPARE(pushBodies(trackLog), QStringList{QStringLiteral("Fractions 将在 10 分钟后开始")});
    QVERIFY2(!run.err.contains(QLatin1String("translations")), qPrintable(run.err));
}

// An unknown locale: one log line, then the run goes on in English.
void TestDemoOptions::unknownLocaleFallsBackToEnglishWithOneLine()
{
    const QString trackLog = m_dir->filePath(QStringLiteral("track.jsonl"));
    const Run run = runDemo({QStringLiteral("--scenario"), m_scenario, QStringLiteral("--locale"), QStringLiteral("xx"),
                             QStringLiteral("--track-log"), trackLog});
    QCOMPARE(run.exitCode, 0);
    const QStringList lines = run.err.split(QLatin1Char('\n')).filter(QStringLiteral("translations"));
    QCOMPARE(lines.size(), 1);
    QVERIFY2(lines.first().contains(QLatin1String("English")), qPrintable(lines.first()));
    QVERIFY2(run.out.contains(QLatin1String("windows: locale en_US")), qPrintable(run.out));
    QCOMPARE(pushBodies(trackLog), QStringList{QStringLiteral("Fractions will start in 10 minutes")});
}

// At --speed 20 the screenshot comes a millisecond after the pop: it waits for the fade-in, so the panel is pure white.
void TestDemoOptions::screenshotsWaitForFullOpacityAtHighSpeed()
{
    const QString shots = m_dir->filePath(QStringLiteral("shots"));
    const Run run = runDemo({QStringLiteral("--scenario"), m_scenario, QStringLiteral("--speed"), QStringLiteral("20"),
                             QStringLiteral("--screen"), QStringLiteral("1280x800"), QStringLiteral("--screenshots"), shots});
    QCOMPARE(run.exitCode, 0);
    QVERIFY2(run.out.contains(QLatin1String("screenshot: waited")), qPrintable(run.out));
    const QImage screen(QDir(shots).filePath(QStringLiteral("01-settled-screen.png")));
    QCOMPARE(screen.size(), QSize(1280, 800));
    // White appears only where a window is drawn unblended over the grey-blue desktop.
    const int white = countPixels(screen, qRgb(255, 255, 255));
    QVERIFY2(white > 20000, qPrintable(QString::number(white)));
}

void TestDemoOptions::windowsStayInsideSmallScreens_data()
{
    QTest::addColumn<QString>("screen");
    QTest::addColumn<QString>("taskbar");
    QTest::newRow("1280x800-left") << "1280x800" << "left";
    QTest::newRow("1280x800-top") << "1280x800" << "top";
    QTest::newRow("1024x768-bottom") << "1024x768" << "bottom";
    QTest::newRow("1366x768-right") << "1366x768" << "right";
}

// --screen and --taskbar: the gathered windows, the class notice card and the page all stand wholly inside the work area.
void TestDemoOptions::windowsStayInsideSmallScreens()
{
    QFETCH(QString, screen);
    QFETCH(QString, taskbar);
    const QString scenario = m_dir->filePath(QStringLiteral("crowded.json"));
    QVERIFY(writeFile(scenario, kCrowdedScenario));
    const Run run = runDemo({QStringLiteral("--scenario"), scenario, QStringLiteral("--screenshots"),
                             QStringLiteral("shots"), QStringLiteral("--screen"), screen, QStringLiteral("--taskbar"),
                             taskbar},
                            m_dir->path());
    QCOMPARE(run.exitCode, 0);
    const QStringList size = screen.split(QLatin1Char('x'));
    QRect area(0, 0, size.at(0).toInt(), size.at(1).toInt());
    const int bar = 40;
    if (taskbar == QLatin1String("left"))
        area.setLeft(bar);
    else if (taskbar == QLatin1String("top"))
        area.setTop(bar);
    else if (taskbar == QLatin1String("right"))
        area.setRight(area.right() - bar);
    else
        area.setBottom(area.bottom() - bar);
    const QRegularExpression place(QStringLiteral("^screenshot: (\\w+) at (-?\\d+),(-?\\d+) (\\d+)x(\\d+)$"),
                                   QRegularExpression::MultilineOption);
    QStringList seen;
    auto it = place.globalMatch(run.out);
    while (it.hasNext()) {
        const QRegularExpressionMatch match = it.next();
        const QRect window(match.captured(2).toInt(), match.captured(3).toInt(), match.captured(4).toInt(),
                           match.captured(5).toInt());
        QVERIFY2(area.contains(window), qPrintable(match.captured(0)));
        seen << match.captured(1);
    }
    seen.sort();
    QCOMPARE(seen, (QStringList{QStringLiteral("Activity"), QStringLiteral("ClassNotice"),
                                QStringLiteral("FriendRequests"), QStringLiteral("Lesson")}));
}

QTEST_GUILESS_MAIN(TestDemoOptions)
#include "tst_demo_options.moc"
