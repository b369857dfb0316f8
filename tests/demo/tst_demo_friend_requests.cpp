// Runs the demo's friend-request scenario offscreen: the page fed with a few
// hundred requests, answered, right-clicked, scrolled, with its boxes, menu
// and password dialog answered, and checks what it must produce.
#include "DemoRun.h"

#include <QImage>
#include <QJsonDocument>
#include <QJsonObject>
#include <QtTest>

class TestDemoFriendRequests : public QObject
{
    Q_OBJECT
private slots:
    void initTestCase();
    void runsToTheEnd();
    void answersAreTrackedWithTheirTab();
    void boxesSayWhatTheyMust_data();
    void boxesSayWhatTheyMust();
    void scrollingLoadsMoreDays();
    void addContactAskedOnlyByTheButton();
    void screenshotsShowThePageAndWhatIsOpenOverIt_data();
    void screenshotsShowThePageAndWhatIsOpenOverIt();

private:
    QStringList linesStartingWith(const QString& prefix) const;

    DemoRun m_run;
    QStringList m_stdout;
    QStringList m_log; // the library's and the kit's log lines, on stderr
    QList<QJsonObject> m_track;
};

void TestDemoFriendRequests::initTestCase()
{
    QVERIFY(m_run.isValid());
    QVERIFY(m_run.start(QStringLiteral(NOTICE_DEMO_PATH),
                        {QStringLiteral("--scenario"), QStringLiteral(NOTICE_DEMO_DIR "/scenarios/friendrequests.json"),
                         QStringLiteral("--speed"), QStringLiteral("4")}));
    QVERIFY(m_run.finish(60000));
    m_stdout = m_run.outputLines();
    m_log = m_run.errorLines();
    QList<QByteArray> lines;
    QVERIFY(m_run.readTrackLines(&lines));
    for (const QByteArray& line : lines)
        m_track << QJsonDocument::fromJson(line).object();
}

QStringList TestDemoFriendRequests::linesStartingWith(const QString& prefix) const
{
    QStringList out;
    for (const QString& line : m_stdout) {
        if (line.startsWith(prefix))
            out << line;
    }
    return out;
}

// Every step ran and the run quit by itself, with no box left waiting for a person.
void TestDemoFriendRequests::runsToTheEnd()
{
    QCOMPARE(m_run.exitCode(), 0);
    QVERIFY(m_stdout.contains(QStringLiteral("step 35 @6500ms: {\"do\":\"quit\"}")));
    QVERIFY(linesStartingWith(QStringLiteral("friend requests: the page isn't open")).isEmpty());
    QVERIFY(linesStartingWith(QStringLiteral("friend requests: no row")).isEmpty());
}

// Two agreements (one after the password) and two refusals, the overdue one included, each tracked.
void TestDemoFriendRequests::answersAreTrackedWithTheirTab()
{
    QStringList tabs;
    for (const QJsonObject& event : m_track) {
        if (event.value(QStringLiteral("event")).toString() == QLatin1String("NewFriends"))
            tabs << event.value(QStringLiteral("data")).toObject().value(QStringLiteral("tab_name")).toString();
    }
    QCOMPARE(tabs, QStringList({QString::fromUtf8("同意"), QString::fromUtf8("同意"), QString::fromUtf8("拒绝"),
                                QString::fromUtf8("拒绝")}));
}

// The question names the person, the error is shown as sent, the old request gets the expiry box.
void TestDemoFriendRequests::boxesSayWhatTheyMust_data()
{
    QTest::addColumn<QString>("line");
    QTest::newRow("question") << "message box \"Question\" \"Delete the friend request from Ana Souza?\"";
    QTest::newRow("error") << "message box \"Warning\" \"Server busy: the answer to Lin Wei wasn't saved & "
                              "will be retried.\"";
    QTest::newRow("expired") << "message box \"Warning\" \"This request has expired: requests can only be answered "
                                "within 7 days.\"";
}

void TestDemoFriendRequests::boxesSayWhatTheyMust()
{
    QFETCH(QString, line);
    QVERIFY2(m_log.contains(line), qPrintable(m_log.join('\n')));
    QVERIFY(m_log.contains(QString(line).replace("message box ", "message box after exec ")));
}

// Each scroll to the end brought in more days.
void TestDemoFriendRequests::scrollingLoadsMoreDays()
{
    const QStringList scrolls = linesStartingWith(QStringLiteral("friend requests: scrolled to the end"));
    QCOMPARE(scrolls.size(), 2);
    const auto groups = [](const QString& line) { return line.section('(', 1).section(' ', 0, 0).toInt(); };
    QVERIFY(groups(scrolls.at(0)) > 0);
    QVERIFY2(groups(scrolls.at(1)) > groups(scrolls.at(0)), qPrintable(scrolls.join('\n')));
}

// Nothing in the scenario presses the empty page's button, so the host is never asked.
void TestDemoFriendRequests::addContactAskedOnlyByTheButton()
{
    QVERIFY(linesStartingWith(QStringLiteral("friend requests: add contacts asked")).isEmpty());
    QCOMPARE(linesStartingWith(QStringLiteral("friend requests: page made")).size(), 1);
}

// The page, the menu, the boxes, the password dialog and the card are shot.
void TestDemoFriendRequests::screenshotsShowThePageAndWhatIsOpenOverIt_data()
{
    QTest::addColumn<QString>("file");
    QTest::addColumn<QSize>("size");
    QTest::newRow("empty") << "01-fr-empty-FriendRequests.png" << QSize(720, 780);
    QTest::newRow("list") << "02-fr-list-FriendRequests.png" << QSize(720, 780);
    QTest::newRow("menu") << "04-fr-menu-Menu.png" << QSize();
    QTest::newRow("question") << "05-fr-question-Box.png" << QSize();
    QTest::newRow("warning") << "06-fr-warning-Box.png" << QSize();
    QTest::newRow("password") << "07-fr-password-Box.png" << QSize();
    QTest::newRow("card") << "10-fr-card-PersonCard.png" << QSize();
}

void TestDemoFriendRequests::screenshotsShowThePageAndWhatIsOpenOverIt()
{
    QFETCH(QString, file);
    QFETCH(QSize, size);
    const QImage image(m_run.filePath(QStringLiteral("shots/") + file));
    QVERIFY2(!image.isNull(), qPrintable(file));
    if (size.isValid())
        QCOMPARE(image.size(), size);
}

QTEST_MAIN(TestDemoFriendRequests)
#include "tst_demo_friend_requests.moc"
