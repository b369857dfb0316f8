#include "ClusterNoticeText_p.h"
#include "ContactsEngine.h"
#include "CoreEngine.h"
#include "CourseEngine.h"
#include "LogCapture.h"
#include "Model.h"
#include "ModelSignalRecorder.h"
#include "NoticeListModel.h"
#include "NoticeModelTestCase.h"
#include "TestKit.h"
#include "VyrTrack.h"

#include <QFontMetrics>
#include <QUuid>
#include <QtTest>

using namespace VyrEngine;

namespace {
const qint64 kNow = 1800000000;
const quint64 kCourse = 500;
const QString kModelFile = QStringLiteral("src/plugins/im/VyrNotice/NoticeListModel.cpp");
const QChar kEllipsis(0x2026);
const int kLineWidth = 294;   // the row body's width in the window

CourseEngine* course() { return CourseEngine::instance(); }
NoticeListModel* model() { return NoticeListModel::instance(); }

GatherNoticePtr noticeAt(int row)
{
    return TestKit::noticeAt(model(), row);
}

QString label()
{
    return QStringLiteral("[%1]").arg(qtTrId("ID_Cluster_Notice_Title_Notice", -1));
}

QFontMetrics fittingMetrics(int weight = 50)
{
    QFont font;
    font.setPixelSize(14);
    font.setWeight(weight);
    return QFontMetrics(font);
}

// The longest start of `text` that is at most `width` pixels wide: where a
// line that may break between any two characters ends.
QString longestFittingStart(const QString& text, const QFontMetrics& metrics, int width)
{
    int length = 0;
    while (length < text.size() && metrics.horizontalAdvance(text.left(length + 1)) <= width)
        ++length;
    return text.left(length);
}

// `lead` followed by as many copies of `filler` as make the whole about one
// and a half lines of the fitting width, in the fitting font.
QString leadAndFiller(const QString& lead, QChar filler)
{
    const QFontMetrics metrics = fittingMetrics();
    QString text = lead;
    while (metrics.horizontalAdvance(label() + text) < kLineWidth * 3 / 2)
        text += filler;
    return text;
}

// A lesson with the course type set, as the report intake reads it.
void putReportLesson(quint64 lessonId, qint16 courseType, qint32 role = 1, quint64 courseId = kCourse)
{
    SnapshotLesson lesson = TestKit::putLesson(lessonId, QStringLiteral("Lesson %1").arg(lessonId), kNow + 600,
                                               courseId, role);
    lesson.courseType = courseType;
    course()->putLesson(lesson, QStringLiteral("Lesson %1").arg(lessonId));
}

QSharedPointer<AppendixDataPod> appendix(quint32 courseId)
{
    auto pod = QSharedPointer<AppendixDataPod>::create();
    pod->activityId = 41;
    pod->courseData = QSharedPointer<ActivityCourseDataPod>::create();
    pod->courseData->courseId = courseId;
    return pod;
}

QSharedPointer<StudyActivityNoticeWidgetDisplayPod> display(const QString& heading)
{
    return QSharedPointer<StudyActivityNoticeWidgetDisplayPod>::create(
        QStringLiteral("Quiz"), QStringLiteral("Chapter 3"), false, false, false, QString(), false, QString(),
        QString(), false, false, false, false, heading, QStringLiteral("scene"), QStringLiteral("body"), false);
}
} // namespace

class TestOtherIntake : public NoticeModelTestCase
{
    Q_OBJECT
public:
    TestOtherIntake()
        : NoticeModelTestCase(kNow)
    {
    }

private slots:
    void clusterTextFitting_data();
    void clusterTextFitting();
    void clusterTextTooLongIsCutWithEllipsis();
    void clusterTextBreaksInsideWords_data();
    void clusterTextBreaksInsideWords();
    void clusterTextLastLineEllipsisInsideWord();
    void clusterBadInputFits_data();
    void clusterBadInputFits();
    void clusterNoticeFields();
    void clusterUnknownHasEmptyTitle();
    void clusterNoticesHaveNoDuplicateRule();
    void studyActivityFields();
    void studyActivitiesHaveNoDuplicateRule();
    void studyActivityWithoutRecordsDoesNotCrash();
    void studyReportAppearsAfterTheLookUp();
    void studyReportTwiceGivesTwoRows();
    void studyReportUnknownLessonOrRoleZero_data();
    void studyReportUnknownLessonOrRoleZero();
    void studyReportClassroomCluster();
    void studyReportTitle_data();
    void studyReportTitle();
    void studyReportUnknownLogsLine();
    void studyReportCourseWithoutRecordLogsInsteadOfCrashing();
    void studyReportCancelledOrModelGone();
    void otherRowsArriveWhileReportPending();
    void noPushSendFromOtherIntakes();
};

void TestOtherIntake::clusterTextFitting_data()
{
    QTest::addColumn<QString>("content");
    QTest::addColumn<QString>("expected");
    const QString l = label();
    QTest::newRow("one line") << "Bring your book" << l + "Bring your book";
    QTest::newRow("two lines") << "first\nsecond" << l + "first\nsecond";
    QTest::newRow("three lines") << "first\nsecond\nthird" << l + "first\nsecond...";
    QTest::newRow("blank lines") << "first\n\n   \n\t\nsecond" << l + "first\nsecond";
    QTest::newRow("blank then more") << "first\n \nsecond\nthird" << l + "first\nsecond...";
    QTest::newRow("trailing newline") << "first\n" << l + "first";
    QTest::newRow("label alone") << "\n\nfirst" << l + "\nfirst";
    QTest::newRow("empty") << "" << l;
    QTest::newRow("tags literal") << "<b>bold</b> & co" << l + "<b>bold</b> & co";
}

// The text becomes at most two lines, "..." when more follows, blank lines taking no place.
void TestOtherIntake::clusterTextFitting()
{
    QFETCH(QString, content);
    QFETCH(QString, expected);
    model()->addClusterNoticeRemindNotice(content, 1, 2, 3);
    QCOMPARE(model()->rowCount(), 1);
    QCOMPARE(noticeAt(0)->displayContent(), expected);
    QCOMPARE(noticeAt(0)->content(), content);
}

// A text needing more than two 294-pixel lines is cut; its second line ends in an ellipsis.
void TestOtherIntake::clusterTextTooLongIsCutWithEllipsis()
{
    QStringList words;
    for (int i = 0; i < 80; ++i)
        words << QStringLiteral("word%1").arg(i);
    const QString content = words.join(QLatin1Char(' '));
    const QString shown = ClusterNoticeText::displayContent(content);
    const QStringList lines = shown.split(QLatin1Char('\n'));
    QCOMPARE(lines.size(), 2);
    QVERIFY2(lines.at(1).endsWith(kEllipsis), qPrintable(lines.at(1)));
    const QFontMetrics metrics = fittingMetrics();
    QVERIFY(metrics.horizontalAdvance(lines.at(0)) <= kLineWidth);
    QVERIFY(metrics.horizontalAdvance(lines.at(1)) <= kLineWidth);
    // The first line is full: the next word would not have fitted on it.
    QVERIFY(metrics.horizontalAdvance(lines.at(0) + lines.at(1).left(6)) > kLineWidth);
    QVERIFY((label() + content).startsWith(lines.at(0) + lines.at(1).chopped(1)));
}

void TestOtherIntake::clusterTextBreaksInsideWords_data()
{
    QTest::addColumn<QString>("content");
    QTest::newRow("short word, long x") << leadAndFiller(QStringLiteral("ab "), QLatin1Char('x'));
    QTest::newRow("one letter, long m") << leadAndFiller(QStringLiteral("I "), QLatin1Char('m'));
    QTest::newRow("two words, long W") << leadAndFiller(QStringLiteral("to do "), QLatin1Char('W'));
    QTest::newRow("no space, long e") << leadAndFiller(QString(), QLatin1Char('e'));
}

// The first line breaks between any two characters, even inside a word, where a
// 14-pixel line of normal weight is full; the rest of the text makes the second line.
void TestOtherIntake::clusterTextBreaksInsideWords()
{
    QFETCH(QString, content);
    const QString source = label() + content;
    const QFontMetrics metrics = fittingMetrics();
    const QString first = longestFittingStart(source, metrics, kLineWidth);
    const QString rest = source.mid(first.size());
    // The case is built so that the break falls inside the long last word, the
    // rest fits one line, and a bold or larger font would break elsewhere.
    QVERIFY2(first.size() > source.lastIndexOf(QLatin1Char(' ')) + 1, qPrintable(first));
    QVERIFY(metrics.horizontalAdvance(rest) <= kLineWidth);
    QVERIFY(longestFittingStart(source, fittingMetrics(75), kLineWidth).size() != first.size());
    QFont larger;
    larger.setPixelSize(15);
    QVERIFY(longestFittingStart(source, QFontMetrics(larger), kLineWidth).size() != first.size());

    QCOMPARE(ClusterNoticeText::displayContent(content), first + QLatin1Char('\n') + rest);
    model()->addClusterNoticeRemindNotice(content, 1, 2, 3);
    QCOMPARE(noticeAt(0)->displayContent(), first + QLatin1Char('\n') + rest);
}

// When the text runs past two lines, the second line starts inside the word where
// the first one broke, and is cut with an ellipsis at the line's width.
void TestOtherIntake::clusterTextLastLineEllipsisInsideWord()
{
    const QString content = QStringLiteral("ab ") + QString(200, QLatin1Char('x'));
    const QString source = label() + content;
    const QFontMetrics metrics = fittingMetrics();
    const QString first = longestFittingStart(source, metrics, kLineWidth);
    const QString rest = source.mid(first.size());
    QVERIFY(metrics.horizontalAdvance(rest) > kLineWidth);
    const QString second = metrics.elidedText(rest + QStringLiteral("..."), Qt::ElideRight, kLineWidth);
    QVERIFY(second.endsWith(kEllipsis));
    QCOMPARE(ClusterNoticeText::displayContent(content), first + QLatin1Char('\n') + second);
}

void TestOtherIntake::clusterBadInputFits_data()
{
    QTest::addColumn<QString>("content");
    QTest::newRow("empty") << QString();
    QTest::newRow("very long word") << QString(100000, QLatin1Char('x'));
    QTest::newRow("very long text") << QStringLiteral("lorem ipsum ").repeated(5000);
    QTest::newRow("whitespace only") << QStringLiteral("   \n \t \n    ");
    QTest::newRow("many paragraphs") << QStringLiteral("line\n").repeated(500);
    QTest::newRow("html") << QStringLiteral("<table><tr><td>&nbsp;</td></tr></table><script>x</script>").repeated(50);
    QTest::newRow("crlf") << QStringLiteral("one\r\ntwo\r\nthree\r\n");
    QTest::newRow("cjk") << QStringLiteral("同学们请在周五之前提交作业，").repeated(40);
}

// Hostile cluster texts fit in two lines of 294 pixels without a crash, and the row still comes.
void TestOtherIntake::clusterBadInputFits()
{
    QFETCH(QString, content);
    model()->addClusterNoticeRemindNotice(content, 1, 2, 3);
    QCOMPARE(model()->rowCount(), 1);
    const QStringList lines = noticeAt(0)->displayContent().split(QLatin1Char('\n'));
    QVERIFY(lines.size() <= 2);
    QVERIFY(lines.first().startsWith(label()));
    const QFontMetrics metrics = fittingMetrics();
    for (const QString& line : lines)
        QVERIFY2(metrics.horizontalAdvance(line) <= kLineWidth, qPrintable(line.left(40)));
}

// A cluster notice carries its ids, the time, a new id, the cluster's name, and pops the activity window.
void TestOtherIntake::clusterNoticeFields()
{
    ContactsEngine::instance()->putCluster(77, QStringLiteral("Class 5B"));
    ModelSignalRecorder recorder(model());
    model()->addClusterNoticeRemindNotice(QStringLiteral("Hello"), 11, 77, 99);
    QCOMPARE(recorder.joined(), QStringLiteral("reset popup(Activity)"));
    const GatherNoticePtr n = noticeAt(0);
    QCOMPARE(n->type(), ClusterNoticeRemind);
    QCOMPARE(n->category(), Activity);
    QCOMPARE(n->contentId(), 11ull);
    QCOMPARE(n->clusterId(), 77ull);
    QCOMPARE(n->time(), quint32(kNow));
    QCOMPARE(n->title(), QStringLiteral("Class 5B"));
    QCOMPARE(n->lessonId(), 0ull);
    QVERIFY(!QUuid::fromString(n->noticeId()).isNull());
}

// An unknown cluster leaves the title empty: no "Unknown", no classroom look-up, no log line.
void TestOtherIntake::clusterUnknownHasEmptyTitle()
{
    auto* contacts = ContactsEngine::instance();
    contacts->putCluster(900, QStringLiteral("Classroom cluster"));
    contacts->setClassroomCluster(31, 32, 900);
    Model::createInstance(31, 32);
    LogCapture log;
    model()->addClusterNoticeRemindNotice(QStringLiteral("Hello"), 11, 78, 99);
    QCOMPARE(noticeAt(0)->title(), QString());
    QCOMPARE(contacts->lookupCount(), 1);
    QCOMPARE(log.lines().size(), 0);
}

// Two notices with one content id make two rows.
void TestOtherIntake::clusterNoticesHaveNoDuplicateRule()
{
    ModelSignalRecorder recorder(model());
    model()->addClusterNoticeRemindNotice(QStringLiteral("Hello"), 11, 77, 99);
    model()->addClusterNoticeRemindNotice(QStringLiteral("Hello"), 11, 77, 99);
    QCOMPARE(model()->rowCount(), 2);
    QVERIFY(noticeAt(0)->noticeId() != noticeAt(1)->noticeId());
    QCOMPARE(recorder.count(QStringLiteral("popup(Activity)")), 2);
}

// A study activity takes the widened course id, the heading as title, and both records as given.
void TestOtherIntake::studyActivityFields()
{
    const auto pod = appendix(4294967295u);
    const auto displayPod = display(QStringLiteral("New quiz"));
    ModelSignalRecorder recorder(model());
    model()->addStudyActivityNotice(pod, displayPod);
    QCOMPARE(recorder.joined(), QStringLiteral("reset popup(Activity)"));
    const GatherNoticePtr n = noticeAt(0);
    QCOMPARE(n->type(), StudyActivity);
    QCOMPARE(n->clusterId(), 4294967295ull);
    QCOMPARE(n->title(), QStringLiteral("New quiz"));
    QCOMPARE(n->appendixPod(), pod);
    QCOMPARE(n->displayPod(), displayPod);
    QCOMPARE(n->time(), quint32(kNow));
    QVERIFY(!QUuid::fromString(n->noticeId()).isNull());
}

// The same activity twice makes two rows.
void TestOtherIntake::studyActivitiesHaveNoDuplicateRule()
{
    const auto pod = appendix(5);
    const auto displayPod = display(QStringLiteral("New quiz"));
    model()->addStudyActivityNotice(pod, displayPod);
    model()->addStudyActivityNotice(pod, displayPod);
    QCOMPARE(model()->rowCount(), 2);
}

// Missing records from the host are logged; the row still comes, with no cluster and no title.
void TestOtherIntake::studyActivityWithoutRecordsDoesNotCrash()
{
    LogCapture log;
    model()->addStudyActivityNotice({}, {});
    auto pod = appendix(5);
    pod->courseData.reset();
    model()->addStudyActivityNotice(pod, display(QStringLiteral("Heading")));
    QCOMPARE(model()->rowCount(), 2);
    QCOMPARE(noticeAt(0)->clusterId(), 0ull);
    QCOMPARE(noticeAt(0)->title(), QString());
    QCOMPARE(noticeAt(1)->title(), QStringLiteral("Heading"));
    QCOMPARE(log.matching(QStringLiteral("study activity notice without its course record")).size(), 2);
    QCOMPARE(log.matching(QStringLiteral("study activity notice without its display record")).size(), 1);
}

// The report row exists only when the lesson's name has arrived, filled from the lesson.
void TestOtherIntake::studyReportAppearsAfterTheLookUp()
{
    ContactsEngine::instance()->putCluster(kCourse, QStringLiteral("Class 3"));
    TestKit::putLesson(1, QStringLiteral("Algebra"), kNow + 600, kCourse, 2, 77);
    ModelSignalRecorder recorder(model());
    model()->addStudyReportNotice(1);
    QCOMPARE(model()->rowCount(), 0);
    QCOMPARE(course()->pendingFutureCount(), 1);
    TestKit::settle();
    QCOMPARE(recorder.joined(), QStringLiteral("reset popup(Activity)"));
    const GatherNoticePtr n = noticeAt(0);
    QCOMPARE(n->type(), StudyReport);
    QCOMPARE(n->lessonId(), 1ull);
    QCOMPARE(n->clusterId(), kCourse);
    QCOMPARE(n->reportRole(), 2);
    QCOMPARE(n->lessonName(), QStringLiteral("Algebra"));
    QCOMPARE(n->title(), QStringLiteral("Class 3"));
    QCOMPARE(n->lessonStartTime(), 0u);
    QCOMPARE(n->time(), quint32(kNow));
    QVERIFY(!QUuid::fromString(n->noticeId()).isNull());
}

// Study reports have no rule against duplicates.
void TestOtherIntake::studyReportTwiceGivesTwoRows()
{
    TestKit::putLesson(1, QStringLiteral("Algebra"), kNow + 600);
    model()->addStudyReportNotice(1);
    model()->addStudyReportNotice(1);
    TestKit::settle();
    QCOMPARE(model()->rowCount(), 2);
    QVERIFY(noticeAt(0)->noticeId() != noticeAt(1)->noticeId());
}

void TestOtherIntake::studyReportUnknownLessonOrRoleZero_data()
{
    QTest::addColumn<bool>("known");
    QTest::newRow("unknown lesson") << false;
    QTest::newRow("role 0") << true;
}

// An unknown lesson or one with role 0 ends the call: no look-up, no row, no log line.
void TestOtherIntake::studyReportUnknownLessonOrRoleZero()
{
    QFETCH(bool, known);
    if (known)
        TestKit::putLesson(1, QStringLiteral("Algebra"), kNow + 600, kCourse, 0);
    LogCapture log;
    model()->addStudyReportNotice(1);
    QCOMPARE(course()->pendingFutureCount(), 0);
    TestKit::settle();
    QCOMPARE(model()->rowCount(), 0);
    QCOMPARE(log.lines().size(), 0);
}

// With no cluster for the course, the classroom's cluster names the report.
void TestOtherIntake::studyReportClassroomCluster()
{
    auto* contacts = ContactsEngine::instance();
    contacts->putCluster(900, QStringLiteral("Classroom cluster"));
    contacts->setClassroomCluster(31, 32, 900);
    Model::createInstance(31, 32);
    TestKit::putLesson(1, QStringLiteral("Algebra"), kNow + 600);
    model()->addStudyReportNotice(1);
    TestKit::settle();
    QCOMPARE(noticeAt(0)->title(), QStringLiteral("Classroom cluster"));
}

void TestOtherIntake::studyReportTitle_data()
{
    QTest::addColumn<bool>("knownKind");
    QTest::addColumn<int>("lessonCourseType");
    QTest::addColumn<int>("recordCourseType");   // -1: no course record
    QTest::addColumn<bool>("courseInHand");
    QTest::addColumn<QString>("title");
    QTest::addColumn<int>("logLines");
    QTest::newRow("type 3, finished") << false << 3 << -1 << true << "Course in hand" << 0;
    QTest::newRow("type 3, pending") << false << 3 << -1 << false << "Unknown" << 0;
    QTest::newRow("known kind") << true << 0 << -1 << true << "Course in hand" << 0;
    QTest::newRow("record type 3") << false << 0 << 3 << true << "Course in hand" << 0;
    QTest::newRow("record type 1") << false << 0 << 1 << true << "Unknown" << 1;
    QTest::newRow("nothing allows") << false << 0 << -1 << true << "Unknown" << 1;
}

// With no cluster, the course's name is used only under one of three conditions, and only if already known.
void TestOtherIntake::studyReportTitle()
{
    QFETCH(bool, knownKind);
    QFETCH(int, lessonCourseType);
    QFETCH(int, recordCourseType);
    QFETCH(bool, courseInHand);
    QFETCH(QString, title);
    QFETCH(int, logLines);
    putReportLesson(1, qint16(lessonCourseType));
    course()->setKnownLessonKind(1, knownKind);
    if (recordCourseType >= 0)
        course()->putCourse(kCourse, QStringLiteral("Course record"), qint16(recordCourseType));
    if (courseInHand)
        course()->setCourseInHand(kCourse, QStringLiteral("Course in hand"));
    LogCapture log;
    model()->addStudyReportNotice(1);
    TestKit::settle();
    QCOMPARE(model()->rowCount(), 1);
    QCOMPARE(noticeAt(0)->title(), title);
    QCOMPARE(log.startingWith(QStringLiteral("oops")).size(), logLines);
}

// The refusal is logged at info level from the model's source file, with the course id.
void TestOtherIntake::studyReportUnknownLogsLine()
{
    putReportLesson(1, 0);
    LogCapture log;
    model()->addStudyReportNotice(1);
    TestKit::settle();
    QCOMPARE(noticeAt(0)->title(), QStringLiteral("Unknown"));
    const auto lines = log.lines();
    QCOMPARE(lines.size(), 1);
    QCOMPARE(lines.first().text, QStringLiteral("oops, failed to get cluster name 500"));
    QCOMPARE(lines.first().type, QtInfoMsg);
    QCOMPARE(lines.first().file, kModelFile);
}

// A finished course look-up without a record leaves "Unknown" and a log line, not a crash.
void TestOtherIntake::studyReportCourseWithoutRecordLogsInsteadOfCrashing()
{
    putReportLesson(1, 3);
    course()->setCourseInHandWithoutRecord(kCourse);
    LogCapture log;
    model()->addStudyReportNotice(1);
    TestKit::settle();
    QCOMPARE(model()->rowCount(), 1);
    QCOMPARE(noticeAt(0)->title(), QStringLiteral("Unknown"));
    const auto lines = log.startingWith(QStringLiteral("oops"));
    QCOMPARE(lines.size(), 1);
    QCOMPARE(lines.first().text, QStringLiteral("oops, course info finished without a record, id: 500"));
    QCOMPARE(lines.first().file, kModelFile);
}

// A cancelled look-up, or a model released meanwhile, gives no report row.
void TestOtherIntake::studyReportCancelledOrModelGone()
{
    TestKit::putLesson(1, QStringLiteral("Algebra"), kNow + 600);
    course()->setHoldFutures(true);
    model()->addStudyReportNotice(1);
    course()->cancelPendingFutures();
    TestKit::settle();
    QCOMPARE(model()->rowCount(), 0);

    model()->addStudyReportNotice(1);
    QVERIFY(releaseModel());
    course()->finishPendingFutures();
    TestKit::settle();
    QCOMPARE(model()->rowCount(), 0);
}

// Rows of any kind may come between a report's call and its completion.
void TestOtherIntake::otherRowsArriveWhileReportPending()
{
    TestKit::putLesson(1, QStringLiteral("Algebra"), kNow + 600);
    course()->setHoldFutures(true);
    model()->addStudyReportNotice(1);
    model()->addContactorAddNotice();
    QCOMPARE(model()->rowCount(), 1);
    course()->finishPendingFutures();
    TestKit::settle();
    QCOMPARE(model()->rowCount(), 2);
    QCOMPARE(noticeAt(0)->type(), ContactorAdd);
    QCOMPARE(noticeAt(1)->type(), StudyReport);
}

// None of the other intakes sends a tracking event.
void TestOtherIntake::noPushSendFromOtherIntakes()
{
    TestKit::putLesson(1, QStringLiteral("Algebra"), kNow + 600);
    model()->addStudyReportNotice(1);
    model()->addStudyActivityNotice(appendix(5), display(QStringLiteral("Quiz")));
    model()->addClusterNoticeRemindNotice(QStringLiteral("Hello"), 1, 2, 3);
    model()->addContactorAddNotice();
    TestKit::settle();
    QCOMPARE(model()->rowCount(), 4);
    QCOMPARE(model()->getNoticeItemNum(Activity), 4);
    QCOMPARE(VyrTrack::instance()->events().size(), 0);
}

QTEST_MAIN(TestOtherIntake)
#include "tst_otherintake.moc"
