#include "ContactsEngine.h"
#include "CourseEngine.h"
#include "ImSignalObject.h"
#include "LogCapture.h"
#include "Model.h"
#include "NoticeClickRecorder.h"
#include "PixelProbe.h"
#include "PopupHarness.h"
#include "StudyReportNoticeWidget.h"
#include "TestKit.h"
#include "VyrTrack.h"

#include <QLabel>
#include <QPointer>
#include <QPushButton>
#include <QSignalSpy>
#include <QTextDocument>
#include <QToolButton>
#include <QtTest>

namespace H = PopupHarness;
namespace P = PixelProbe;
using namespace VyrEngine;

namespace {

constexpr quint64 kSchool = 7;
constexpr quint64 kCourse = 640;
constexpr quint64 kLesson = 8100;
const QString kLearningScene = QStringLiteral("发布学习报告");
const QString kTeachingScene = QStringLiteral("发布教学报告");
const QString kFailedLog = QStringLiteral("oops, failed to get cluster name");

QSharedPointer<SnapshotLesson> lesson(qint32 role, const QString& name = QStringLiteral("Algebra"),
                                      qint16 courseType = 0)
{
    SnapshotLesson snapshot = TestKit::putLesson(kLesson, name, 1800000000 - 3600, kCourse, role, kSchool);
    snapshot.courseType = courseType;
    return QSharedPointer<SnapshotLesson>::create(snapshot);
}

} // namespace

// The study report pop-up: the two roles, the heading's name, the lesson's sentence, the buttons.
class TestStudyReportNotice : public QObject
{
    Q_OBJECT
private slots:
    void initTestCase();
    void init();
    void cleanup();

    void roles_data();
    void roles();
    void headingName_data();
    void headingName();
    void lessonNameIsEscapedOnScreenAndPlainInTracking();
    void oneSpanForEveryCountry_data();
    void oneSpanForEveryCountry();
    void pendingLessonInfoKeepsTheFirstPicture();
    void windowClosedWhileTheFutureIsPending();
    void buttonOrder_data();
    void buttonOrder();
    void detailsRequestGoesThroughTheSignalHub();
    void declaredSignalsAreNeverEmitted();
    void nullLessonClosesQuietly();
    void scenesFallBackBeforeTheyAreSet();
    void chineseTexts();
    void headingIsCutAt200Pixels();
    void contentLabelUnderTheHeading();

private:
    StudyReportNoticeWidget* open(QSharedPointer<SnapshotLesson> snapshot, bool settle = true);
    QPointer<StudyReportNoticeWidget> m_window;
};

void TestStudyReportNotice::initTestCase()
{
    QVERIFY(TestKit::loadTranslations(QStringLiteral("en")));
}

void TestStudyReportNotice::init()
{
    TestKit::resetAll();
    H::useTestScreen();
    QLocale::setDefault(QLocale(QLocale::English, QLocale::UnitedStates));
}

void TestStudyReportNotice::cleanup()
{
    delete m_window;
    H::runDeferredDeletes();
    CourseEngine::instance()->setHoldFutures(false);
    TestKit::settle();
    QLocale::setDefault(QLocale(QLocale::English, QLocale::UnitedStates));
}

StudyReportNoticeWidget* TestStudyReportNotice::open(QSharedPointer<SnapshotLesson> snapshot, bool settle)
{
    m_window = new StudyReportNoticeWidget(snapshot);
    m_window->popNotice();
    H::finish(H::animation(m_window, "m_showAnimation"));
    if (settle)
        TestKit::settle();
    return m_window;
}

// A learner gets the learning title, sentence and scene; every other role the teaching ones.
void TestStudyReportNotice::roles_data()
{
    QTest::addColumn<int>("role");
    QTest::addColumn<QString>("title");
    QTest::addColumn<QString>("text");
    QTest::addColumn<QString>("scene");
    QTest::newRow("learner") << 1 << "Learning report" << "Your report for  \"Algebra\"  is ready. Well done!"
                             << kLearningScene;
    QTest::newRow("teacher") << 2 << "Teaching report" << "The teaching report for  \"Algebra\"  is ready"
                             << kTeachingScene;
    QTest::newRow("role 0") << 0 << "Teaching report" << "The teaching report for  \"Algebra\"  is ready"
                            << kTeachingScene;
}

void TestStudyReportNotice::roles()
{
    QFETCH(int, role);
    QFETCH(QString, title);
    QFETCH(QString, text);
    QFETCH(QString, scene);
    ContactsEngine::instance()->putCluster(kCourse, QStringLiteral("Class 3A"));
    open(lesson(role));
    QCOMPARE(m_window->size(), QSize(328, 184));
    QCOMPARE(H::titleLabel(m_window)->text(), title);
    // The cluster's name replaces the heading that initUi set.
    QCOMPARE(H::label(m_window, "m_headingLabel")->text(), QStringLiteral("Class 3A"));
    QLabel* content = H::label(m_window, "m_contentLabel");
    QTextDocument document;
    document.setHtml(content->text());
    QCOMPARE(document.toPlainText().replace(QChar(0xA0), QLatin1Char(' ')), text);
    m_window->findChild<QPushButton*>(QStringLiteral("m_laterBtn"))->click();
    const QList<VyrTrack::Event> clicks = KitFixture::trackedEvents(QStringLiteral("PushClick"));
    QCOMPARE(clicks.size(), 1);
    QCOMPARE(clicks.first().second.value("push_scenes").toString(), scene);
    QCOMPARE(clicks.first().second.value("push_title").toString(), title);
    QCOMPARE(clicks.first().second.value("push_body").toString().replace(QChar(0xA0), QLatin1Char(' ')), text);
}

// The cluster's name, else the course's when one of three conditions allows it and the engine has it at
// once, else "Unkown" (logged only when no condition allows the course).
void TestStudyReportNotice::headingName_data()
{
    QTest::addColumn<QString>("setup");
    QTest::addColumn<QString>("heading");
    QTest::addColumn<bool>("logged");
    QTest::newRow("cluster known") << "cluster" << "Class 3A" << false;
    QTest::newRow("cluster of the classroom") << "classroom" << "Room cluster" << false;
    QTest::newRow("known lesson kind, course in hand") << "kind" << "Course in hand" << false;
    QTest::newRow("lesson's course type 3, course in hand") << "lessonType3" << "Course in hand" << false;
    QTest::newRow("course record of type 3, course in hand") << "recordType3" << "Course in hand" << false;
    QTest::newRow("allowed, future unfinished") << "kindPending" << "Unkown" << false;
    QTest::newRow("allowed, course in hand without record") << "kindNoRecord" << "Unkown" << false;
    QTest::newRow("course record of type 1") << "recordType1" << "Unkown" << true;
    QTest::newRow("nothing known") << "none" << "Unkown" << true;
}

void TestStudyReportNotice::headingName()
{
    QFETCH(QString, setup);
    QFETCH(QString, heading);
    QFETCH(bool, logged);
    auto* course = CourseEngine::instance();
    qint16 lessonType = 0;
    if (setup == QLatin1String("cluster"))
        ContactsEngine::instance()->putCluster(kCourse, QStringLiteral("Class 3A"));
    if (setup == QLatin1String("classroom")) {
        ContactsEngine::instance()->putCluster(9000, QStringLiteral("Room cluster"));
        ContactsEngine::instance()->setClassroomCluster(kCourse, 55, 9000);
        Model::createInstance(kCourse, 55);
    }
    if (setup.startsWith(QLatin1String("kind")))
        course->setKnownLessonKind(kLesson, true);
    if (setup == QLatin1String("lessonType3"))
        lessonType = 3;
    if (setup == QLatin1String("recordType3"))
        course->putCourse(kCourse, QStringLiteral("Course record"), 3);
    if (setup == QLatin1String("recordType1"))
        course->putCourse(kCourse, QStringLiteral("Course record"), 1);
    if (setup == QLatin1String("kindNoRecord"))
        course->setCourseInHandWithoutRecord(kCourse);
    else if (setup != QLatin1String("kindPending"))
        course->setCourseInHand(kCourse, QStringLiteral("Course in hand"));

    LogCapture log;
    open(lesson(1, QStringLiteral("Algebra"), lessonType));
    QCOMPARE(H::label(m_window, "m_headingLabel")->text(), heading);
    const QList<LogCapture::Line> lines = log.startingWith(kFailedLog);
    QCOMPARE(lines.size(), logged ? 1 : 0);
    if (logged) {
        QCOMPARE(lines.first().type, QtInfoMsg);
        QCOMPARE(lines.first().text, QStringLiteral("oops, failed to get cluster name 640"));
        QVERIFY(lines.first().file.endsWith(QStringLiteral("src/plugins/im/VyrNotice/StudyReportNoticeWidget.cpp")));
    }
}

// Markup in the lesson's name shows as text on the screen, and push_body gives it back as plain text.
void TestStudyReportNotice::lessonNameIsEscapedOnScreenAndPlainInTracking()
{
    ContactsEngine::instance()->putCluster(kCourse, QStringLiteral("Class 3A"));
    open(lesson(1, QStringLiteral("<i>x</i>&y")));
    QLabel* content = H::label(m_window, "m_contentLabel");
    QVERIFY(content->text().contains(QStringLiteral("&lt;i&gt;x&lt;/i&gt;&amp;y")));
    QVERIFY(content->text().contains(QStringLiteral("color: #009265;")));
    m_window->findChild<QPushButton*>(QStringLiteral("m_laterBtn"))->click();
    const QVariantMap data = KitFixture::trackedEvents(QStringLiteral("PushClick")).first().second;
    const QString body = data.value("push_body").toString();
    QVERIFY2(body.contains(QStringLiteral("\"<i>x</i>&y\"")), qPrintable(body));
}

// Intended: one padded, quoted span in every country, China included.
void TestStudyReportNotice::oneSpanForEveryCountry_data()
{
    QTest::addColumn<QLocale>("locale");
    QTest::newRow("United States") << QLocale(QLocale::English, QLocale::UnitedStates);
    QTest::newRow("China") << QLocale(QLocale::Chinese, QLocale::China);
    QTest::newRow("Germany") << QLocale(QLocale::German, QLocale::Germany);
}

void TestStudyReportNotice::oneSpanForEveryCountry()
{
    QFETCH(QLocale, locale);
    QLocale::setDefault(locale);
    ContactsEngine::instance()->putCluster(kCourse, QStringLiteral("Class 3A"));
    open(lesson(1));
    QCOMPARE(m_window->locale().country(), locale.country());
    QVERIFY(H::label(m_window, "m_contentLabel")
                ->text()
                .contains(QStringLiteral("<span style='color: #009265;'>&nbsp;&nbsp;&quot;Algebra&quot;&nbsp;&nbsp;</span>")));
}

// Until the lesson's details arrive the sentence is empty and the notice picture stands; then the cover.
void TestStudyReportNotice::pendingLessonInfoKeepsTheFirstPicture()
{
    ContactsEngine::instance()->putCluster(kCourse, QStringLiteral("Class 3A"));
    CourseEngine::instance()->putCoursePixmap(kSchool, kCourse, P::pixmap(QSize(72, 72), QColor(210, 40, 40)));
    CourseEngine::instance()->setHoldFutures(true);
    open(lesson(1), false);
    QLabel* content = H::label(m_window, "m_contentLabel");
    QLabel* icon = H::label(m_window, "m_iconLabel");
    QCOMPARE(icon->size(), QSize(36, 36));
    QVERIFY(content->text().isEmpty());
    const QPoint middle = icon->mapTo(m_window, QPoint(5, 18));
    // The notice picture's green.
    QVERIFY(P::isNear(P::grab(m_window), middle, QColor(0, 146, 101), 12));
    CourseEngine::instance()->finishPendingFutures();
    TestKit::settle();
    QVERIFY(!content->text().isEmpty());
    QVERIFY(P::isNear(P::grab(m_window), middle, QColor(210, 40, 40), 8));
}

// A window closed before its future finishes is gone quietly; the completion doesn't run.
void TestStudyReportNotice::windowClosedWhileTheFutureIsPending()
{
    CourseEngine::instance()->setHoldFutures(true);
    open(lesson(1), false);
    m_window->close();
    H::runDeferredDeletes();
    QVERIFY(m_window.isNull());
    CourseEngine::instance()->finishPendingFutures();
    TestKit::settle();
    QVERIFY(m_window.isNull());
}

// View details tracks, asks the host, closes; later tracks and closes; the close button closes, then tracks.
void TestStudyReportNotice::buttonOrder_data()
{
    QTest::addColumn<QString>("button");
    QTest::addColumn<QString>("expected");
    QTest::newRow("view details") << "m_viewDetailsBtn" << "PushClick(true,yes) report(yes) close";
    QTest::newRow("later") << "m_laterBtn" << "PushClick(false,yes) close";
    QTest::newRow("close button") << "close" << "close PushClick(false,no)";
}

void TestStudyReportNotice::buttonOrder()
{
    QFETCH(QString, button);
    QFETCH(QString, expected);
    open(lesson(2));
    NoticeClickRecorder recorder(m_window);
    QMetaObject::Connection c = connect(ImSignalObject::instance(), &ImSignalObject::signalStudyReportClicked,
                                        &recorder, [&recorder]() { recorder.mark(QStringLiteral("report")); });
    QAbstractButton* target = button == QLatin1String("close")
                                  ? static_cast<QAbstractButton*>(H::closeButton(m_window))
                                  : m_window->findChild<QPushButton*>(button);
    target->click();
    disconnect(c);
    QCOMPARE(recorder.joined(), expected);
    H::runDeferredDeletes();
    QVERIFY(m_window.isNull());
}

// The request carries the window's lesson, 2 and a null record; push_title put in empty is replaced.
void TestStudyReportNotice::detailsRequestGoesThroughTheSignalHub()
{
    const QSharedPointer<SnapshotLesson> snapshot = lesson(1);
    open(snapshot);
    QSharedPointer<SnapshotLesson> gotLesson;
    int gotSource = -1;
    bool extraIsNull = false;
    QMetaObject::Connection c = connect(ImSignalObject::instance(), &ImSignalObject::signalStudyReportClicked, this,
                                        [&](const QSharedPointer<SnapshotLesson>& l, int source,
                                            QSharedPointer<OpaqueCommonPod> extra) {
                                            gotLesson = l;
                                            gotSource = source;
                                            extraIsNull = extra.isNull();
                                        });
    m_window->findChild<QPushButton*>(QStringLiteral("m_viewDetailsBtn"))->click();
    disconnect(c);
    QCOMPARE(gotLesson, snapshot);
    QCOMPARE(gotSource, 2);
    QVERIFY(extraIsNull);
    const QVariantMap data = KitFixture::trackedEvents(QStringLiteral("PushClick")).first().second;
    QCOMPARE(data.value("push_title").toString(), QStringLiteral("Learning report"));
    QCOMPARE(data.value("check_up").toBool(), true);
}

// Intended: signalClose and signalSeeDetails exist and no path of the window emits them.
void TestStudyReportNotice::declaredSignalsAreNeverEmitted()
{
    const QMetaObject* meta = &StudyReportNoticeWidget::staticMetaObject;
    QVERIFY(meta->indexOfSignal("signalClose()") >= 0);
    QVERIFY(meta->indexOfSignal("signalSeeDetails(qulonglong,qulonglong)") >= 0);
    for (const char* button : {"m_viewDetailsBtn", "m_laterBtn", "close"}) {
        open(lesson(1));
        QSignalSpy closed(m_window.data(), &StudyReportNoticeWidget::signalClose);
        QSignalSpy details(m_window.data(), &StudyReportNoticeWidget::signalSeeDetails);
        QAbstractButton* target = QByteArray(button) == "close"
                                      ? static_cast<QAbstractButton*>(H::closeButton(m_window))
                                      : m_window->findChild<QPushButton*>(QLatin1String(button));
        target->click();
        QCOMPARE(closed.count(), 0);
        QCOMPARE(details.count(), 0);
        H::runDeferredDeletes();
    }
}

// A null lesson: the heading says "Unkown", the window closes, and view details only closes.
void TestStudyReportNotice::nullLessonClosesQuietly()
{
    LogCapture log;
    m_window = new StudyReportNoticeWidget(QSharedPointer<SnapshotLesson>());
    QCOMPARE(H::label(m_window, "m_headingLabel")->text(), QStringLiteral("Unkown"));
    QVERIFY(log.startingWith(kFailedLog).isEmpty());
    int requests = 0;
    QMetaObject::Connection c = connect(ImSignalObject::instance(), &ImSignalObject::signalStudyReportClicked, this,
                                        [&requests]() { ++requests; });
    m_window->findChild<QPushButton*>(QStringLiteral("m_viewDetailsBtn"))->click();
    disconnect(c);
    QCOMPARE(requests, 0);
    QVERIFY(KitFixture::trackedEvents(QStringLiteral("PushClick")).isEmpty());
    H::runDeferredDeletes();
    QVERIFY(m_window.isNull());
}

// A click before the scene was set reports the learning scene.
void TestStudyReportNotice::scenesFallBackBeforeTheyAreSet()
{
    m_window = new StudyReportNoticeWidget(QSharedPointer<SnapshotLesson>());
    m_window->findChild<QPushButton*>(QStringLiteral("m_laterBtn"))->click();
    const QList<VyrTrack::Event> clicks = KitFixture::trackedEvents(QStringLiteral("PushClick"));
    QCOMPARE(clicks.size(), 1);
    QCOMPARE(clicks.first().second.value("push_scenes").toString(), kLearningScene);
}

// The Chinese words of both roles.
void TestStudyReportNotice::chineseTexts()
{
    QVERIFY(TestKit::loadTranslations(QStringLiteral("zh_CN")));
    ContactsEngine::instance()->putCluster(kCourse, QStringLiteral("三年级一班"));
    open(lesson(2));
    QCOMPARE(H::titleLabel(m_window)->text(), QStringLiteral("教学报告"));
    QVERIFY(H::label(m_window, "m_contentLabel")->text().endsWith(QStringLiteral("的教学报告已生成")));
    QCOMPARE(m_window->findChild<QPushButton*>(QStringLiteral("m_viewDetailsBtn"))->text(), QStringLiteral("查看详情"));
    QVERIFY(TestKit::loadTranslations(QStringLiteral("en")));
}

// A long cluster name is cut at the right to 200 pixels of the heading's font.
void TestStudyReportNotice::headingIsCutAt200Pixels()
{
    const QString name = QStringLiteral("Class 3A of the evening school for adult learners in the north");
    ContactsEngine::instance()->putCluster(kCourse, name);
    open(lesson(1));
    QLabel* heading = H::label(m_window, "m_headingLabel");
    const QFontMetrics metrics(heading->font());
    QVERIFY2(metrics.horizontalAdvance(name) > 220, "the name must be longer than the cut");
    const QString shown = heading->text();
    QVERIFY2(shown.startsWith(QStringLiteral("Class 3A")) && shown.endsWith(QChar(0x2026)), qPrintable(shown));
    QVERIFY(metrics.horizontalAdvance(shown) <= 200);
    QVERIFY(metrics.horizontalAdvance(shown) > 180);
}

// The sentence is a wrapping label held to the top, 4 pixels under the 19-pixel heading, 12 right of the icon.
void TestStudyReportNotice::contentLabelUnderTheHeading()
{
    ContactsEngine::instance()->putCluster(kCourse, QStringLiteral("Class 3A"));
    open(lesson(1));
    QLabel* heading = H::label(m_window, "m_headingLabel");
    QLabel* content = H::label(m_window, "m_contentLabel");
    QVERIFY(content->wordWrap());
    QCOMPARE(int(content->alignment() & Qt::AlignVertical_Mask), int(Qt::AlignTop));
    QCOMPARE(content->property("PropertyStyle").toString(), QStringLiteral("QLabel_MessageContent"));
    QCOMPARE(content->font().pixelSize(), 13);
    QCOMPARE(heading->property("PropertyStyle").toString(), QStringLiteral("QLabel_MessageTitle"));
    QCOMPARE(heading->font().pixelSize(), 14);
    QCOMPARE(heading->height(), 19);
    const QPoint headingAt = heading->mapTo(m_window, QPoint(0, 0));
    const QPoint contentAt = content->mapTo(m_window, QPoint(0, 0));
    QCOMPARE(contentAt.x(), headingAt.x());
    QCOMPARE(contentAt.y() - (headingAt.y() + 19), 4);
    const QPoint iconAt = H::label(m_window, "m_iconLabel")->mapTo(m_window, QPoint(0, 0));
    QCOMPARE(iconAt, QPoint(10 + 24, 40 + 12));
    QCOMPARE(headingAt, QPoint(iconAt.x() + 36 + 12, iconAt.y()));
    // A short sentence stays at the top of its label, not in its middle.
    const QRect ink = P::colourBounds(P::grab(content), QColor(0, 146, 101), 60);
    QVERIFY(!ink.isNull());
    QVERIFY2(ink.top() < content->fontMetrics().height(), qPrintable(QString::number(ink.top())));
}

QTEST_MAIN(TestStudyReportNotice)
#include "tst_studyreportnotice.moc"
