// Runs the demo host on bad scenarios: each is refused before anything runs
// (no window, no step, no tracking event), with a message that names where the
// problem is (the step's index and action, or the seed entry) and the field.

#include "DemoRun.h"

#include <QFile>
#include <QProcess>
#include <QtTest>

class TestDemoScenarioErrors : public QObject
{
    Q_OBJECT
private slots:
    void refusedBeforeAnythingRuns_data();
    void refusedBeforeAnythingRuns();
    void missingFileIsNamed();
};

void TestDemoScenarioErrors::refusedBeforeAnythingRuns_data()
{
    QTest::addColumn<QByteArray>("json");
    QTest::addColumn<QStringList>("expected");

    // A good first step: had the checking been left to the player, it would have run.
    const QByteArray first = R"({"at": 0, "do": "contactorAdd"})";
    auto scenario = [&first](const QByteArray& badStep) {
        return QByteArray(R"({"steps": [)") + first + ", " + badStep + "]}";
    };

    QTest::newRow("syntax") << QByteArray("{\n  \"steps\": [\n    {\"at\": 0 \"do\": \"quit\"}\n  ]\n}\n")
                            << QStringList{QStringLiteral("line 3, column 14"), QStringLiteral("JSON syntax error")};
    QTest::newRow("syntax-after-utf8")
        << QByteArray("{\"steps\": [],\n \"name\": \"\xe4\xb8\x8a\xe8\xaf\xbe\" x}\n")
        << QStringList{QStringLiteral("line 2, column 15")};
    QTest::newRow("unknown-action") << scenario(R"({"at": 10, "do": "fly"})")
                                    << QStringList{QStringLiteral("step 1 (fly)"), QStringLiteral("field \"do\""),
                                                   QStringLiteral("unknown action \"fly\"")};
    QTest::newRow("unknown-step-field")
        << scenario(R"({"at": 10, "do": "clickRow", "category": "Lesson", "colour": "red"})")
        << QStringList{QStringLiteral("step 1 (clickRow)"), QStringLiteral("unknown field \"colour\"")};
    QTest::newRow("unknown-top-field") << QByteArray(R"({"stepz": 1, "steps": [{"at": 0, "do": "quit"}]})")
                                       << QStringList{QStringLiteral("top level"),
                                                      QStringLiteral("unknown field \"stepz\"")};
    QTest::newRow("unknown-seed-field")
        << QByteArray(R"({"clusters": [{"id": 1, "name": "A", "colour": 3}], "steps": [{"at": 0, "do": "quit"}]})")
        << QStringList{QStringLiteral("clusters[0]"), QStringLiteral("unknown field \"colour\"")};
    QTest::newRow("unknown-category") << scenario(R"({"at": 10, "do": "hover", "category": "Lessons"})")
                                      << QStringList{QStringLiteral("step 1 (hover)"), QStringLiteral("field \"category\""),
                                                     QStringLiteral("unknown category \"Lessons\"")};
    QTest::newRow("unknown-notice-type")
        << scenario(R"({"at": 10, "do": "lessonNotice", "type": "LessonLater", "lessonId": 1})")
        << QStringList{QStringLiteral("step 1 (lessonNotice)"), QStringLiteral("field \"type\""),
                       QStringLiteral("unknown notice type \"LessonLater\"")};
    QTest::newRow("unknown-class-notice-type")
        << scenario(R"({"at": 10, "do": "classNotice", "type": "LessonAhead", "lessonId": 1})")
        << QStringList{QStringLiteral("step 1 (classNotice)"), QStringLiteral("field \"type\""),
                       QStringLiteral("unknown class notice type \"LessonAhead\""),
                       QStringLiteral("(one of: AheadNotice, PrepareNotice, StartNotice)")};
    QTest::newRow("unknown-card-button") << scenario(R"({"at": 10, "do": "clickClassNotice", "button": "ok"})")
                                         << QStringList{QStringLiteral("step 1 (clickClassNotice)"),
                                                        QStringLiteral("unknown card button \"ok\""),
                                                        QStringLiteral("(one of: known, enter, later, close)")};
    QTest::newRow("class-notice-missing-lesson")
        << scenario(R"({"at": 10, "do": "classNotice", "type": "StartNotice"})")
        << QStringList{QStringLiteral("step 1 (classNotice)"), QStringLiteral("missing required field \"lessonId\"")};
    QTest::newRow("turn-missing-type") << scenario(R"({"at": 10, "do": "turnClassNotice", "lessonId": 1})")
                                       << QStringList{QStringLiteral("step 1 (turnClassNotice)"),
                                                      QStringLiteral("missing required field \"type\"")};
    QTest::newRow("engine-event-missing-lesson") << scenario(R"({"at": 10, "do": "lessonEnd"})")
                                                 << QStringList{QStringLiteral("step 1 (lessonEnd)"),
                                                                QStringLiteral("missing required field \"lessonId\"")};
    QTest::newRow("number-for-class-notice-type")
        << scenario(R"({"at": 10, "do": "turnClassNotice", "type": 2, "lessonId": 1})")
        << QStringList{QStringLiteral("step 1 (turnClassNotice)"),
                       QStringLiteral("expected a class notice type (a string), got a number 2")};
    QTest::newRow("string-for-lesson-id")
        << scenario(R"({"at": 10, "do": "lessonRemoved", "lessonId": "6"})")
        << QStringList{QStringLiteral("step 1 (lessonRemoved)"), QStringLiteral("field \"lessonId\""),
                       QStringLiteral("expected an integer, got a string \"6\"")};
    QTest::newRow("string-for-local") << scenario(R"({"at": 10, "do": "classroomStart", "lessonId": 6, "local": "yes"})")
                                      << QStringList{QStringLiteral("step 1 (classroomStart)"),
                                                     QStringLiteral("field \"local\""),
                                                     QStringLiteral("expected true or false, got a string \"yes\"")};
    QTest::newRow("integer-for-integer-list")
        << scenario(R"({"at": 10, "do": "lessonsInfoChanged", "lessonIds": 6})")
        << QStringList{QStringLiteral("step 1 (lessonsInfoChanged)"), QStringLiteral("field \"lessonIds\""),
                       QStringLiteral("expected a list of integers, got a number 6")};
    QTest::newRow("string-in-integer-list")
        << scenario(R"({"at": 10, "do": "lessonsInfoChanged", "lessonIds": [6, "7"]})")
        << QStringList{QStringLiteral("step 1 (lessonsInfoChanged)"),
                       QStringLiteral("expected a list of integers, got an array holding a string \"7\"")};
    QTest::newRow("number-for-colour") << scenario(R"({"at": 10, "do": "coursePixmapChanged", "courseId": 5, "color": 255})")
                                       << QStringList{QStringLiteral("step 1 (coursePixmapChanged)"),
                                                      QStringLiteral("field \"color\""),
                                                      QStringLiteral("expected a string, got a number 255")};
    QTest::newRow("unknown-field-of-log-out") << scenario(R"({"at": 10, "do": "logOut", "lessonId": 6})")
                                              << QStringList{QStringLiteral("step 1 (logOut)"),
                                                             QStringLiteral("unknown field \"lessonId\"")};
    QTest::newRow("missing-required") << scenario(R"({"at": 10, "do": "lessonNotice", "type": "LessonStart"})")
                                      << QStringList{QStringLiteral("step 1 (lessonNotice)"),
                                                     QStringLiteral("missing required field \"lessonId\"")};
    QTest::newRow("missing-at") << scenario(R"({"do": "printRows"})")
                                << QStringList{QStringLiteral("step 1 (printRows)"),
                                               QStringLiteral("missing required field \"at\"")};
    QTest::newRow("missing-steps") << QByteArray(R"({"name": "empty"})")
                                   << QStringList{QStringLiteral("top level"),
                                                  QStringLiteral("missing required field \"steps\"")};
    QTest::newRow("string-for-integer") << scenario(R"({"at": 10, "do": "advanceClock", "seconds": "60"})")
                                        << QStringList{QStringLiteral("step 1 (advanceClock)"),
                                                       QStringLiteral("field \"seconds\""),
                                                       QStringLiteral("expected an integer, got a string \"60\"")};
    QTest::newRow("fraction-for-integer") << scenario(R"({"at": 10, "do": "advanceClock", "seconds": 1.5})")
                                          << QStringList{QStringLiteral("step 1 (advanceClock)"),
                                                         QStringLiteral("field \"seconds\""),
                                                         QStringLiteral("expected an integer, got a number 1.5")};
    QTest::newRow("fraction-for-at") << scenario(R"({"at": 1.5, "do": "printRows"})")
                                     << QStringList{QStringLiteral("step 1 (printRows)"), QStringLiteral("field \"at\""),
                                                    QStringLiteral("expected milliseconds from 0 to 2147483647, got a number 1.5")};
    QTest::newRow("number-for-string") << scenario(R"({"at": 10, "do": "screenshot", "name": 5})")
                                       << QStringList{QStringLiteral("step 1 (screenshot)"), QStringLiteral("field \"name\""),
                                                      QStringLiteral("expected a string, got a number 5")};
    QTest::newRow("string-for-boolean")
        << scenario(R"({"at": 10, "do": "hover", "category": "Lesson", "on": "yes"})")
        << QStringList{QStringLiteral("step 1 (hover)"), QStringLiteral("field \"on\""),
                       QStringLiteral("expected true or false, got a string \"yes\"")};
    QTest::newRow("number-for-category") << scenario(R"({"at": 10, "do": "closeWindow", "category": 1})")
                                         << QStringList{QStringLiteral("step 1 (closeWindow)"),
                                                        QStringLiteral("field \"category\""),
                                                        QStringLiteral("expected a category (a string), got a number 1")};
    QTest::newRow("string-for-seed-id")
        << QByteArray(R"({"lessons": [{"id": "one", "courseId": 1, "name": "L"}], "steps": [{"at": 0, "do": "quit"}]})")
        << QStringList{QStringLiteral("lessons[0]"), QStringLiteral("field \"id\""),
                       QStringLiteral("expected an integer, got a string \"one\"")};
    QTest::newRow("object-for-array") << QByteArray(R"({"steps": {"at": 0, "do": "quit"}})")
                                      << QStringList{QStringLiteral("top level"), QStringLiteral("field \"steps\""),
                                                     QStringLiteral("expected an array, got an object")};
    // Times: none negative, none past what a timer takes (a larger number would wrap or turn to 0).
    const QString range = QStringLiteral("expected milliseconds from 0 to 2147483647");
    QTest::newRow("negative-at") << scenario(R"({"at": -5, "do": "printRows"})")
                                 << QStringList{QStringLiteral("step 1 (printRows)"), QStringLiteral("field \"at\""),
                                                range + QStringLiteral(", got a number -5")};
    QTest::newRow("at-2^31") << scenario(R"({"at": 2147483648, "do": "printRows"})")
                             << QStringList{QStringLiteral("step 1 (printRows)"), QStringLiteral("field \"at\""),
                                            range + QStringLiteral(", got a number 2147483648")};
    QTest::newRow("at-1e30") << scenario(R"({"at": 1e30, "do": "printRows"})")
                             << QStringList{QStringLiteral("step 1 (printRows)"), QStringLiteral("field \"at\""),
                                            range + QStringLiteral(", got a number 1e+30")};
    QTest::newRow("negative-delay") << scenario(R"({"at": 10, "do": "coverServer", "answer": "slow", "delay": -1})")
                                    << QStringList{QStringLiteral("step 1 (coverServer)"),
                                                   QStringLiteral("field \"delay\""), range};
    QTest::newRow("int64-delay")
        << scenario(R"({"at": 10, "do": "coverServer", "answer": "slow", "delay": 9223372036854775807})")
        << QStringList{QStringLiteral("step 1 (coverServer)"), QStringLiteral("field \"delay\""), range};
    QTest::newRow("negative-timeout") << scenario(R"({"at": 10, "do": "quitWhenHidden", "timeout": -20000})")
                                      << QStringList{QStringLiteral("step 1 (quitWhenHidden)"),
                                                     QStringLiteral("field \"timeout\""),
                                                     range + QStringLiteral(", got a number -20000")};
    // A 10 MB scenario of 300,000 steps: refused by its size, unread.
    QByteArray huge = R"({"steps": [)";
    for (int i = 0; i < 300000; ++i)
        huge += R"({"at": 0, "do": "printRows", "category": "Lesson"},)";
    huge += R"({"at": 0, "do": "quit"}]})";
    QTest::newRow("over-1MB") << huge << QStringList{QStringLiteral("larger than 1048576 bytes")};
    QTest::newRow("no-steps") << QByteArray(R"({"steps": []})")
                              << QStringList{QStringLiteral("top level"), QStringLiteral("field \"steps\": no steps")};
}

// Exit 2, every expected piece of the message, and nothing ran.
void TestDemoScenarioErrors::refusedBeforeAnythingRuns()
{
    QFETCH(QByteArray, json);
    QFETCH(QStringList, expected);

    DemoRun run;
    QVERIFY(run.isValid());
    const QString path = run.writeFile(QStringLiteral("bad.json"), json);
    QVERIFY(!path.isEmpty());
    QVERIFY(run.start(QStringLiteral(NOTICE_DEMO_PATH), {QStringLiteral("--scenario"), path}));
    QVERIFY(run.finish(30000));
    const QString out = run.output();
    const QString err = run.errors();

    QCOMPARE(run.exitStatus(), QProcess::NormalExit);
    QCOMPARE(run.exitCode(), 2);
    QVERIFY2(err.contains(QLatin1String("nothing was run")), qPrintable(err));
    for (const QString& piece : expected)
        QVERIFY2(err.contains(piece), qPrintable(QStringLiteral("missing \"%1\" in:\n%2").arg(piece, err)));
    QVERIFY2(err.contains(path), qPrintable(err));
    // Nothing ran: no output at all, no tracking log, no screenshot folder.
    QVERIFY2(out.isEmpty(), qPrintable(out));
    QVERIFY(!QFile::exists(run.trackLogPath()));
    QVERIFY(!QFile::exists(run.filePath(QStringLiteral("shots"))));
}

// A scenario that isn't there is named, with exit 2.
void TestDemoScenarioErrors::missingFileIsNamed()
{
    QProcess demo;
    demo.start(QStringLiteral(NOTICE_DEMO_PATH), {QStringLiteral("--scenario"), QStringLiteral("/nonexistent/s.json")});
    QVERIFY(demo.waitForFinished(30000));
    QCOMPARE(demo.exitCode(), 2);
    QVERIFY(QString::fromUtf8(demo.readAllStandardError()).contains(QLatin1String("/nonexistent/s.json: cannot open")));
    QVERIFY(demo.readAllStandardOutput().isEmpty());
}

QTEST_GUILESS_MAIN(TestDemoScenarioErrors)
#include "tst_demo_scenario_errors.moc"
