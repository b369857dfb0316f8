// Runs the demo host on a scenario of class notice cards only: every host,
// engine and user action of the cards, each checked by what the demo prints
// (the host's lines, the windows' places at the screenshots) and by the
// tracking log.

#include "DemoRun.h"

#include <QImage>
#include <QJsonDocument>
#include <QJsonObject>
#include <QRegularExpression>
#include <QtTest>

namespace {

// Eight lessons of one course; the steps give each card its own ending.
const char* const kScenario = R"({
  "clock": 1800000000,
  "clusters": [{"id": 500, "name": "Grade 7 Class 3"}],
  "courses": [{"id": 500, "name": "Mathematics"}],
  "lessons": [
    {"id": 1, "courseId": 500, "schoolId": 7, "name": "Lesson One", "startIn": 1200},
    {"id": 2, "courseId": 500, "schoolId": 7, "name": "Lesson Two", "startIn": -60},
    {"id": 3, "courseId": 500, "schoolId": 7, "name": "Lesson Three", "startIn": 60},
    {"id": 4, "courseId": 500, "schoolId": 7, "name": "Lesson Four", "startIn": 1200},
    {"id": 5, "courseId": 500, "schoolId": 7, "name": "Lesson Five", "startIn": 1200},
    {"id": 6, "courseId": 500, "schoolId": 7, "name": "Lesson Six", "startIn": 1200},
    {"id": 7, "courseId": 500, "schoolId": 7, "name": "Lesson Seven", "startIn": 60},
    {"id": 8, "courseId": 500, "schoolId": 7, "name": "Lesson Eight", "startIn": -60}
  ],
  "steps": [
    {"at": 0, "do": "classNotice", "type": "AheadNotice", "lessonId": 1},
    {"at": 0, "do": "classNotice", "type": "StartNotice", "lessonId": 2},
    {"at": 0, "do": "classNotice", "type": "PrepareNotice", "lessonId": 3},
    {"at": 50, "do": "screenshot", "name": "stacked"},
    {"at": 100, "do": "coursePixmapChanged", "courseId": 500, "color": "#E91E63"},
    {"at": 150, "do": "screenshot", "name": "covers"},
    {"at": 200, "do": "classroomStart", "lessonId": 1, "local": true},
    {"at": 250, "do": "classroomStart", "lessonId": 2, "local": true},
    {"at": 300, "do": "lessonRoleInvalid", "lessonId": 3},
    {"at": 350, "do": "classroomStart", "lessonId": 2},
    {"at": 400, "do": "classNotice", "type": "AheadNotice", "lessonId": 4},
    {"at": 400, "do": "classNotice", "type": "AheadNotice", "lessonId": 5},
    {"at": 400, "do": "classNotice", "type": "AheadNotice", "lessonId": 6},
    {"at": 400, "do": "classNotice", "type": "PrepareNotice", "lessonId": 7},
    {"at": 400, "do": "classNotice", "type": "StartNotice", "lessonId": 8},
    {"at": 450, "do": "lessonRemoved", "lessonId": 4},
    {"at": 500, "do": "lessonEnd", "lessonId": 5},
    {"at": 550, "do": "lessonInfoChanged", "lessonId": 6},
    {"at": 600, "do": "lessonsInfoChanged", "lessonIds": [99, 6], "closed": true},
    {"at": 650, "do": "clickClassNotice", "button": "later"},
    {"at": 700, "do": "screenshot", "name": "before-drag"},
    {"at": 750, "do": "dragClassNotice", "dx": -200, "dy": -100},
    {"at": 800, "do": "screenshot", "name": "dragged"},
    {"at": 850, "do": "clickClassNotice", "button": "known"},
    {"at": 900, "do": "clickClassNotice", "button": "enter"},
    {"at": 950, "do": "classNotice", "type": "AheadNotice", "lessonId": 4},
    {"at": 1000, "do": "classNotice", "type": "AheadNotice", "lessonId": 1},
    {"at": 1050, "do": "turnClassNotice", "type": "StartNotice", "lessonId": 5},
    {"at": 1100, "do": "clickClassNotice", "button": "known"},
    {"at": 1150, "do": "classNotice", "type": "StartNotice", "lessonId": 2},
    {"at": 1150, "do": "classNotice", "type": "AheadNotice", "lessonId": 1},
    {"at": 1200, "do": "clickClassNotice", "button": "close"},
    {"at": 1250, "do": "logOut"},
    {"at": 1300, "do": "quitWhenHidden", "timeout": 10000}
  ]
})";

} // namespace

class TestDemoClassNotice : public QObject
{
    Q_OBJECT
private slots:
    void initTestCase();
    void runsToTheEnd();
    void eachCardEndsByItsOwnCause_data();
    void eachCardEndsByItsOwnCause();
    void startNoticesReportTheirClosing();
    void cardsStandApartAtTheCorner();
    void downloadedCoverShowsOnTheCard();
    void draggedCardStaysWhereItWasPut();
    void clicksAreTrackedWithTheirPage();
    void userFindsOnlyTheButtonsOfThePageShown();

private:
    // Index of the line "step N @...", -1 if none.
    int stepLine(int step) const;
    int lineIndex(const QString& line, int from = 0) const;
    QRect windowAt(const QString& shot, const QString& name) const;

    DemoRun m_run;
    QStringList m_stdout;
    QList<QJsonObject> m_clicks;
};

void TestDemoClassNotice::initTestCase()
{
    QVERIFY(m_run.isValid());
    const QString scenario = m_run.writeFile(QStringLiteral("cards.json"), kScenario);
    QVERIFY(!scenario.isEmpty());
    QVERIFY(m_run.start(QStringLiteral(NOTICE_DEMO_PATH), {QStringLiteral("--scenario"), scenario,
                                                           QStringLiteral("--screen"), QStringLiteral("1280x800")}));
    QVERIFY(m_run.finish(60000));
    m_stdout = m_run.outputLines();

    QList<QByteArray> lines;
    QVERIFY(m_run.readTrackLines(&lines));
    for (const QByteArray& line : lines) {
        const QJsonObject event = QJsonDocument::fromJson(line).object();
        if (event.value(QStringLiteral("event")).toString() == QLatin1String("PushClick"))
            m_clicks << event.value(QStringLiteral("data")).toObject();
    }
}

int TestDemoClassNotice::stepLine(int step) const
{
    const QString prefix = QStringLiteral("step %1 @").arg(step);
    for (int i = 0; i < m_stdout.size(); ++i) {
        if (m_stdout.at(i).startsWith(prefix))
            return i;
    }
    return -1;
}

int TestDemoClassNotice::lineIndex(const QString& line, int from) const
{
    return m_stdout.indexOf(line, from);
}

// "screenshot: NAME at X,Y WxH" said after the step that took the shot named `shot`.
QRect TestDemoClassNotice::windowAt(const QString& shot, const QString& name) const
{
    int from = -1;
    for (int i = 0; i < m_stdout.size(); ++i) {
        if (m_stdout.at(i).contains(QStringLiteral("\"name\":\"%1\"").arg(shot)))
            from = i;
    }
    const QRegularExpression place(QStringLiteral("^screenshot: %1 at (-?\\d+),(-?\\d+) (\\d+)x(\\d+)$").arg(name));
    for (int i = from + 1; from >= 0 && i < m_stdout.size() && !m_stdout.at(i).startsWith(QLatin1String("step ")); ++i) {
        const QRegularExpressionMatch match = place.match(m_stdout.at(i));
        if (match.hasMatch())
            return QRect(match.captured(1).toInt(), match.captured(2).toInt(), match.captured(3).toInt(),
                         match.captured(4).toInt());
    }
    return QRect();
}

// Every card closed one way or another, and the run ended by itself.
void TestDemoClassNotice::runsToTheEnd()
{
    QCOMPARE(m_run.exitCode(), 0);
    QVERIFY(!m_stdout.contains(QStringLiteral("windows still up after the timeout")));
    // The log-out closed the last card before the final step began, so nothing was left to wait for.
    QVERIFY2(m_stdout.last().startsWith(QLatin1String("step 33 @")), qPrintable(m_stdout.last()));
    QVERIFY(!m_stdout.contains(QStringLiteral("waiting for the windows to go")));
}

void TestDemoClassNotice::eachCardEndsByItsOwnCause_data()
{
    QTest::addColumn<QString>("closed");
    QTest::addColumn<int>("shown");       // the step that showed the card
    QTest::addColumn<int>("notBefore");   // the step that closes it
    QTest::addColumn<int>("before");      // the step after that

    const auto closed = [](int lesson) { return QStringLiteral("class notice: closed (lesson %1)").arg(lesson); };
    QTest::newRow("local classroom closes an ahead card") << closed(1) << 0 << 6 << 7;
    // The start card of lesson 2 outlives the local classroom (step 7) and goes with the live one.
    QTest::newRow("live classroom closes a start card") << closed(2) << 1 << 9 << 10;
    QTest::newRow("role withdrawn") << closed(3) << 2 << 8 << 9;
    QTest::newRow("lesson removed") << closed(4) << 10 << 15 << 16;
    QTest::newRow("lesson ended") << closed(5) << 11 << 16 << 17;
    // A change that leaves the lesson open (step 17) keeps the card; the closing batch takes it.
    QTest::newRow("closed in a batch") << closed(6) << 12 << 18 << 19;
    QTest::newRow("later on the start page") << closed(8) << 14 << 19 << 20;
    QTest::newRow("entered from the prepare page") << closed(7) << 13 << 24 << 25;
    QTest::newRow("known on the ahead page") << closed(1) << 26 << 28 << 29;
    QTest::newRow("close button") << closed(1) << 30 << 31 << 32;
    QTest::newRow("log-out") << closed(2) << 29 << 32 << 33;
}

// Each card stays up until the step that ends it and closes before the next step.
void TestDemoClassNotice::eachCardEndsByItsOwnCause()
{
    QFETCH(QString, closed);
    QFETCH(int, shown);
    QFETCH(int, notBefore);
    QFETCH(int, before);
    const int earlier = lineIndex(closed, stepLine(shown));
    QVERIFY2(earlier < 0 || earlier > stepLine(notBefore), qPrintable(closed + QStringLiteral(" too early")));
    const int at = lineIndex(closed, stepLine(notBefore) + 1);
    QVERIFY2(at > stepLine(notBefore), qPrintable(closed));
    QVERIFY2(at < stepLine(before), qPrintable(closed));
}

// Prepare and start cards report their closing, whatever the cause; ahead cards never do.
void TestDemoClassNotice::startNoticesReportTheirClosing()
{
    QStringList reported;
    for (const QString& line : qAsConst(m_stdout)) {
        if (line.startsWith(QLatin1String("manager: closeStartNoticeWidget(")))
            reported << line.mid(int(qstrlen("manager: closeStartNoticeWidget(")), 1);
    }
    // 3 role withdrawn, 2 live classroom, 8 later, 7 entered, then the second card of 2 at log-out.
    QCOMPARE(reported, (QStringList{QStringLiteral("3"), QStringLiteral("2"), QStringLiteral("8"), QStringLiteral("7"),
                                    QStringLiteral("2")}));
    // The lesson the engine no longer knows gets no card, and a turn finds no card of lesson 5.
    QVERIFY(m_stdout.contains(QStringLiteral("class notice: no lesson 4, nothing shown")));
    QVERIFY(m_stdout.contains(QStringLiteral("class notice: turned lesson 5 to StartNotice")));
}

// Three cards stack upward from the work area's corner in the order they showed, none covering another.
void TestDemoClassNotice::cardsStandApartAtTheCorner()
{
    const QRect first = windowAt(QStringLiteral("stacked"), QStringLiteral("ClassNotice"));
    const QRect second = windowAt(QStringLiteral("stacked"), QStringLiteral("ClassNotice2"));
    const QRect third = windowAt(QStringLiteral("stacked"), QStringLiteral("ClassNotice3"));
    QCOMPARE(first.size(), QSize(328, 184));
    // The simulated screen's work area ends 40 pixels above its bottom.
    QCOMPARE(first.right(), 1279);
    QVERIFY2(first.bottom() <= 759 && first.bottom() > 700, qPrintable(QString::number(first.bottom())));
    QCOMPARE(second.x(), first.x());
    QCOMPARE(third.x(), first.x());
    QVERIFY(second.bottom() < first.top());
    QVERIFY(third.bottom() < second.top());
    QVERIFY(!first.intersects(second) && !second.intersects(third));
}

// The course's new cover takes the generated picture's place on the card.
void TestDemoClassNotice::downloadedCoverShowsOnTheCard()
{
    const QDir shots(m_run.filePath(QStringLiteral("shots")));
    const auto hasCoverColour = [](const QImage& image) {
        for (int y = 0; y < image.height(); ++y) {
            for (int x = 0; x < image.width(); ++x) {
                if (image.pixelColor(x, y) == QColor(0xE9, 0x1E, 0x63))
                    return true;
            }
        }
        return false;
    };
    const QImage before(shots.filePath(QStringLiteral("01-stacked-ClassNotice.png")));
    const QImage after(shots.filePath(QStringLiteral("02-covers-ClassNotice.png")));
    QVERIFY(!before.isNull() && !after.isNull());
    QVERIFY(!hasCoverColour(before.convertToFormat(QImage::Format_RGB32)));
    QVERIFY(hasCoverColour(after.convertToFormat(QImage::Format_RGB32)));
}

// The dragged card stays where the hand left it.
void TestDemoClassNotice::draggedCardStaysWhereItWasPut()
{
    const QRect before = windowAt(QStringLiteral("before-drag"), QStringLiteral("ClassNotice"));
    const QRect after = windowAt(QStringLiteral("dragged"), QStringLiteral("ClassNotice"));
    QVERIFY(before.isValid());
    QCOMPARE(after.topLeft(), before.topLeft() + QPoint(-200, -100));
}

// Later, enter (the prepare page reports the start page's text), known, close: check_up only for the enter button.
void TestDemoClassNotice::clicksAreTrackedWithTheirPage()
{
    QCOMPARE(m_clicks.size(), 4);
    const QList<QPair<QString, bool>> expected = {
        {QStringLiteral("Lesson Eight has started"), false},
        {QStringLiteral("Lesson Seven has started"), true},
        {QStringLiteral("Lesson One will start in 20 minutes"), false},
        {QStringLiteral("Lesson One will start in 20 minutes"), false},
    };
    for (int i = 0; i < expected.size(); ++i) {
        QCOMPARE(m_clicks.at(i).value(QStringLiteral("push_body")).toString(), expected.at(i).first);
        QCOMPARE(m_clicks.at(i).value(QStringLiteral("check_up")).toBool(), expected.at(i).second);
        QCOMPARE(m_clicks.at(i).value(QStringLiteral("push_scenes")).toString(), QStringLiteral("上课通知"));
    }
}

// A button that the page shown doesn't have is not clicked; the buttons that are shown are found by their labels.
void TestDemoClassNotice::userFindsOnlyTheButtonsOfThePageShown()
{
    QVERIFY(m_stdout.contains(QStringLiteral("user: clicks \"Later\" on the class notice")));
    QVERIFY(m_stdout.contains(QStringLiteral("user: clicks \"Enter class\" on the class notice")));
    QVERIFY(m_stdout.contains(QStringLiteral("user: clicks \"Close notice\" on the class notice")));
    QCOMPARE(m_stdout.count(QStringLiteral("user: clicks \"Got it\" on the class notice")), 1);
    // Step 23 asks for "known" on the prepare page.
    const int refused = lineIndex(QStringLiteral("user: the class notice shows no known button"));
    QVERIFY(refused > stepLine(23) && refused < stepLine(24));
}

QTEST_GUILESS_MAIN(TestDemoClassNotice)
#include "tst_demo_class_notice.moc"
