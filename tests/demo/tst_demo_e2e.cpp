// Runs the demo host's default scenario offscreen and checks what it must
// produce: the windows' signals on stdout, the tracking events in the JSON
// lines log, and the screenshots.

#include "DemoRun.h"

#include <QImage>
#include <QJsonDocument>
#include <QJsonObject>
#include <QRegularExpression>
#include <QtTest>

class TestDemoEndToEnd : public QObject
{
    Q_OBJECT
private slots:
    void initTestCase();
    void runsToTheEndAndQuitsWhenWindowsHaveGone();
    void windowSignalsInOrder();
    void lessonNoticesAreSentOncePerIntakeOrUpdate();
    void clicksAreTrackedKeyByKey();
    void screenshotsShowTheWindows();
    void draggedWindowIsShotWhereItWasPut();
    void modelHoldsEveryKindOfRow();
    void classNoticeIsCreatedTurnedAndEntered();
    void classNoticeIsTrackedPageByPage();
    void classNoticeIsShotOnEachPage();
    void classNoticeStandsOnTheGatheredWindows();

private:
    QStringList windowLines() const;
    QList<QJsonObject> events(const QString& name) const;
    // The tracking events of the class notice card: those that name its lesson.
    QList<QJsonObject> classNoticeEvents(const QString& name) const;

    DemoRun m_run;
    QStringList m_stdout;
    QList<QJsonObject> m_track;
};

void TestDemoEndToEnd::initTestCase()
{
    QVERIFY(m_run.isValid());
    // The demo inherits the platform that CTest gives this test.
    QVERIFY(m_run.start(QStringLiteral(NOTICE_DEMO_PATH), {QStringLiteral("--speed"), QStringLiteral("5")}));
    // The scenario takes under two seconds at this speed; the last window's 15-second hold is the library's own.
    QVERIFY(m_run.finish(90000));
    m_stdout = m_run.outputLines();
    QVERIFY2(!m_run.errors().contains(QLatin1String("unknown action")), qPrintable(m_run.errors()));

    QList<QByteArray> lines;
    QVERIFY(m_run.readTrackLines(&lines));
    for (const QByteArray& line : lines) {
        const QJsonDocument doc = QJsonDocument::fromJson(line);
        QVERIFY2(doc.isObject(), line.constData());
        m_track << doc.object();
    }
}

QStringList TestDemoEndToEnd::windowLines() const
{
    QStringList out;
    for (const QString& line : m_stdout) {
        if (line.startsWith(QLatin1String("window ")))
            out << line;
    }
    return out;
}

QList<QJsonObject> TestDemoEndToEnd::events(const QString& name) const
{
    QList<QJsonObject> out;
    for (const QJsonObject& event : m_track) {
        if (event.value(QStringLiteral("event")).toString() == name)
            out << event.value(QStringLiteral("data")).toObject();
    }
    return out;
}

QList<QJsonObject> TestDemoEndToEnd::classNoticeEvents(const QString& name) const
{
    QList<QJsonObject> out;
    for (const QJsonObject& data : events(name)) {
        if (data.value(QStringLiteral("push_body")).toString().contains(QLatin1String("Angles and Triangles")))
            out << data;
    }
    return out;
}

// The run ends by itself, with 0, once the last window has faded out.
void TestDemoEndToEnd::runsToTheEndAndQuitsWhenWindowsHaveGone()
{
    QCOMPARE(m_run.exitCode(), 0);
    QVERIFY(m_stdout.contains(QStringLiteral("waiting for the windows to go")));
    QVERIFY(!m_stdout.contains(QStringLiteral("windows still up after the timeout")));
    QCOMPARE(m_stdout.last(), QStringLiteral("window Activity: noticeWidgetHidden(Activity, true)"));
}

// Click, enter, close with its pause alert, the Activity click, and the dragged window's fade-out.
void TestDemoEndToEnd::windowSignalsInOrder()
{
    const QStringList expected = {
        QStringLiteral("window Lesson: viewLessonNoticeDetails(4)"),
        QStringLiteral("window Lesson: enterClassRoom(3)"),
        QStringLiteral("window Lesson: noticeWidgetHidden(Lesson, false)"),
        QStringLiteral("window Lesson: pauseLessonStartAlert(1)"),
        QStringLiteral("window Activity: viewFriendRequestDetails()"),
        QStringLiteral("window Activity: noticeWidgetHidden(Activity, true)"),
    };
    QCOMPARE(windowLines(), expected);
}

// One "PushSend" per new lesson row and per update; the unknown lesson sends nothing.
void TestDemoEndToEnd::lessonNoticesAreSentOncePerIntakeOrUpdate()
{
    const QList<QJsonObject> sent = events(QStringLiteral("PushSend"));
    QStringList bodies;
    for (const QJsonObject& data : sent) {
        // The class notice card's own pushes are checked below.
        if (classNoticeEvents(QStringLiteral("PushSend")).contains(data))
            continue;
        QCOMPARE(data.value(QStringLiteral("push_scenes")).toString(), QStringLiteral("上课通知"));
        QCOMPARE(data.value(QStringLiteral("push_title")).toString(), QStringLiteral("Lesson Notice"));
        QCOMPARE(data.value(QStringLiteral("app_scene")).toString(), QStringLiteral("前台唤起"));
        bodies << data.value(QStringLiteral("push_body")).toString();
    }
    QCOMPARE(bodies.size(), 5);
    QCOMPARE(bodies.at(0), QStringLiteral("Fractions and <Decimals> will start in 10 minutes"));
    QCOMPARE(bodies.at(1), QStringLiteral("Fractions and <Decimals> has started"));
    QVERIFY(bodies.at(2).startsWith(QLatin1String("Newton's Laws will start at ")));
    QCOMPARE(bodies.at(3), QStringLiteral("Ratios has started"));
    QCOMPARE(bodies.at(4), QStringLiteral("Optics Lab has started"));
}

// Four clicks in the gathered windows: row, enter-classroom, close (check_up false), Activity row; each with exactly four keys.
void TestDemoEndToEnd::clicksAreTrackedKeyByKey()
{
    QList<QJsonObject> clicks = events(QStringLiteral("PushClick"));
    // The card's click carries its text; the gathered windows' clicks carry none.
    clicks.erase(std::remove_if(clicks.begin(), clicks.end(),
                                [](const QJsonObject& data) { return data.contains(QStringLiteral("push_body")); }),
                 clicks.end());
    QCOMPARE(clicks.size(), 4);
    const QList<QPair<QString, bool>> expected = {
        {QStringLiteral("Lesson notices "), true},
        {QStringLiteral("Lesson notices "), true},
        {QStringLiteral("Lesson notices "), false},
        {QStringLiteral("Activity notices "), true},
    };
    QSet<QString> ids;
    for (int i = 0; i < clicks.size(); ++i) {
        const QJsonObject& data = clicks.at(i);
        QStringList keys = data.keys();
        keys.sort();
        QCOMPARE(keys, (QStringList{QStringLiteral("app_scene"), QStringLiteral("check_up"), QStringLiteral("push_id"),
                                    QStringLiteral("push_title")}));
        QCOMPARE(data.value(QStringLiteral("push_title")).toString(), expected.at(i).first);
        QVERIFY(data.value(QStringLiteral("check_up")).isBool());
        QCOMPARE(data.value(QStringLiteral("check_up")).toBool(), expected.at(i).second);
        QCOMPARE(data.value(QStringLiteral("app_scene")).toString(), QStringLiteral("前台唤起"));
        ids.insert(data.value(QStringLiteral("push_id")).toString());
    }
    QCOMPARE(ids.size(), 4);
}

// Each "screenshot" step wrote the visible windows and the whole screen.
void TestDemoEndToEnd::screenshotsShowTheWindows()
{
    const QDir shots(m_run.filePath(QStringLiteral("shots")));
    const QStringList screens = shots.entryList({QStringLiteral("*-screen.png")}, QDir::Files, QDir::Name);
    QCOMPARE(screens.size(), 5);
    const QImage lesson(shots.filePath(QStringLiteral("01-class-ahead-Lesson.png")));
    QCOMPARE(lesson.size(), QSize(424, 176 + 90));
    const QImage activity(shots.filePath(QStringLiteral("01-class-ahead-Activity.png")));
    QCOMPARE(activity.size(), QSize(424, 308 + 90));
    // Only the Activity window is up when the dragged one is shot.
    QVERIFY(QFile::exists(shots.filePath(QStringLiteral("05-dragged-activity-Activity.png"))));
    QVERIFY(!QFile::exists(shots.filePath(QStringLiteral("05-dragged-activity-Lesson.png"))));
    const QImage screen(shots.filePath(screens.first()));
    QCOMPARE(screen.size(), QSize(800, 600));
    // The Lesson window's light panel stands out of the desktop at the screen's bottom right.
    const QColor panel = screen.pixelColor(800 - 212, 600 - 60);
    QVERIFY2(panel.red() > 245 && panel.green() > 245 && panel.blue() > 245, qPrintable(panel.name()));
    const QColor desktop = screen.pixelColor(100, 100);
    QVERIFY2(desktop.red() < 235, qPrintable(desktop.name()));
}

// The drag waits for the Activity window's slide down to end, so the slide can't carry it back to the corner.
void TestDemoEndToEnd::draggedWindowIsShotWhereItWasPut()
{
    const QDir shots(m_run.filePath(QStringLiteral("shots")));
    const QImage screen(shots.filePath(QStringLiteral("05-dragged-activity-screen.png")));
    QCOMPARE(screen.size(), QSize(800, 600));
    // Right of the dragged window (120 px left of the corner): the bare desktop.
    QCOMPARE(screen.pixelColor(770, 560), QColor(0xE3, 0xE8, 0xEE));
    // Its panel, moved with it.
    const QColor panel = screen.pixelColor(770 - 120, 560 - 60);
    QVERIFY2(panel.red() > 245 && panel.green() > 245 && panel.blue() > 245, qPrintable(panel.name()));
}

// Before the clicks the model holds a row of each of the seven notice types.
void TestDemoEndToEnd::modelHoldsEveryKindOfRow()
{
    const int listing = m_stdout.indexOf(QStringLiteral("rows: 10 (Lesson 4, Activity 6)"));
    QVERIFY2(listing >= 0, qPrintable(m_stdout.join(QLatin1Char('\n'))));
    QSet<QString> types;
    const QRegularExpression typeOf(QStringLiteral("^  \\[\\d+\\] type=(\\d) "));
    for (int i = listing + 1; i < m_stdout.size(); ++i) {
        const auto match = typeOf.match(m_stdout.at(i));
        if (!match.hasMatch())
            break;
        types.insert(match.captured(1));
    }
    QCOMPARE(types.size(), 7);
}

// The host asks the manager first: a new card, then the same card turned twice; its enter button
// is answered by announcing the classroom, which closes the card and reports closeStartNoticeWidget.
void TestDemoEndToEnd::classNoticeIsCreatedTurnedAndEntered()
{
    const QStringList expected = {
        QStringLiteral("class notice: created AheadNotice for lesson 6"),
        QStringLiteral("class notice: turned lesson 6 to PrepareNotice"),
        QStringLiteral("class notice: turned lesson 6 to StartNotice"),
        QStringLiteral("user: clicks \"Enter class\" on the class notice"),
        QStringLiteral("class notice: startClass(6)"),
        QStringLiteral("host: signalStartupClassroom(6)"),
        QStringLiteral("manager: closeStartNoticeWidget(6)"),
        QStringLiteral("class notice: closed (lesson 6)"),
    };
    QStringList seen;
    for (const QString& line : m_stdout) {
        if (line.startsWith(QLatin1String("class notice: ")) || line.startsWith(QLatin1String("manager: "))
            || line.startsWith(QLatin1String("host: ")) || line.contains(QLatin1String("on the class notice")))
            seen << line;
    }
    QCOMPARE(seen, expected);
}

// One "PushSend" for each page the card stands on, and one "PushClick" (check_up true) for the enter button.
void TestDemoEndToEnd::classNoticeIsTrackedPageByPage()
{
    const QList<QJsonObject> sent = classNoticeEvents(QStringLiteral("PushSend"));
    QCOMPARE(sent.size(), 3);
    QVERIFY2(sent.at(0).value(QStringLiteral("push_body")).toString().contains(QLatin1String("will start")),
             qPrintable(sent.at(0).value(QStringLiteral("push_body")).toString()));
    QCOMPARE(sent.at(1).value(QStringLiteral("push_body")).toString(), sent.at(2).value(QStringLiteral("push_body")).toString());
    for (const QJsonObject& data : sent)
        QCOMPARE(data.value(QStringLiteral("push_scenes")).toString(), QStringLiteral("上课通知"));

    const QList<QJsonObject> clicks = classNoticeEvents(QStringLiteral("PushClick"));
    QCOMPARE(clicks.size(), 1);
    QVERIFY(clicks.first().value(QStringLiteral("check_up")).isBool());
    QCOMPARE(clicks.first().value(QStringLiteral("check_up")).toBool(), true);
    QCOMPARE(clicks.first().value(QStringLiteral("push_body")).toString(), sent.at(2).value(QStringLiteral("push_body")).toString());
}

// A picture of the card on each of its three pages; the card is gone after the enter.
void TestDemoEndToEnd::classNoticeIsShotOnEachPage()
{
    const QDir shots(m_run.filePath(QStringLiteral("shots")));
    QList<QImage> pages;
    for (const char* file : {"01-class-ahead-ClassNotice.png", "02-class-prepare-ClassNotice.png",
                             "03-class-start-ClassNotice.png"}) {
        const QImage page(shots.filePath(QLatin1String(file)));
        QVERIFY2(!page.isNull(), file);
        // The 308 x 164 card in its 10-pixel shadow border.
        QCOMPARE(page.size(), QSize(328, 184));
        // The card's white panel, under the title row.
        const QColor panel = page.pixelColor(20, 50);
        QVERIFY2(panel.red() > 245 && panel.green() > 245 && panel.blue() > 245, qPrintable(panel.name()));
        pages << page.convertToFormat(QImage::Format_ARGB32);
    }
    // The prepare and start pages share their heading, text and buttons, so only the ahead page looks different.
    QVERIFY(pages.at(0) != pages.at(1));
    QVERIFY(pages.at(0) != pages.at(2));
    QVERIFY(!QFile::exists(shots.filePath(QStringLiteral("04-after-clicks-ClassNotice.png"))));
}

// With both gathered windows up on the 800x600 screen, all three windows stay on it: the Activity window
// (too tall to stand on the Lesson window, too wide to go beside it) stands at the top over the Lesson
// window's upper part, level on the right, and the card opens a column of its own on the left.
void TestDemoEndToEnd::classNoticeStandsOnTheGatheredWindows()
{
    QHash<QString, QRect> places;
    const QRegularExpression place(QStringLiteral("^screenshot: (\\w+) at (-?\\d+),(-?\\d+) (\\d+)x(\\d+)$"));
    bool inShot = false;
    for (const QString& line : qAsConst(m_stdout)) {
        if (line.startsWith(QLatin1String("step ")))
            inShot = line.contains(QLatin1String("\"name\":\"class-ahead\""));
        const QRegularExpressionMatch match = place.match(line);
        if (inShot && match.hasMatch())
            places.insert(match.captured(1), QRect(match.captured(2).toInt(), match.captured(3).toInt(),
                                                   match.captured(4).toInt(), match.captured(5).toInt()));
    }
    QCOMPARE(places.size(), 3);
    const QRect lesson = places.value(QStringLiteral("Lesson"));
    const QRect activity = places.value(QStringLiteral("Activity"));
    const QRect card = places.value(QStringLiteral("ClassNotice"));
    const QRect screen(0, 0, 800, 600);
    QVERIFY(screen.contains(lesson) && screen.contains(activity) && screen.contains(card));
    QCOMPARE(activity.right(), lesson.right());
    QCOMPARE(activity.top(), 0);
    QCOMPARE(lesson.bottom(), 599);
    QVERIFY(card.right() < activity.left());
    QVERIFY(!card.intersects(activity) && !card.intersects(lesson));
}

QTEST_GUILESS_MAIN(TestDemoEndToEnd)
#include "tst_demo_e2e.moc"
