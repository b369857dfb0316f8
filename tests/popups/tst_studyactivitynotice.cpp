#include "ContactsEngine.h"
#include "CoreEngine.h"
#include "CourseEngine.h"
#include "LogCapture.h"
#include "NoticeClickRecorder.h"
#include "PixelProbe.h"
#include "PopupHarness.h"
#include "StudyActivityMessagePushManager.h"
#include "StudyActivityNoticeWidget.h"
#include "TestKit.h"
#include "VyrTrack.h"

#include <QLabel>
#include <QPointer>
#include <QPushButton>
#include <QSignalSpy>
#include <QTextBrowser>
#include <QToolButton>
#include <QtTest>

namespace H = PopupHarness;
namespace P = PixelProbe;
using namespace VyrEngine;

namespace {

constexpr quint32 kCourse = 640;
constexpr quint64 kActivity = 31;
constexpr quint64 kUser = 9001;
const QString kLogLine = QStringLiteral("ZZZZZZZZZZZZZZZZZZZ StudyActivityNoticeWidget");

enum class Appendix { Full, NoCourse, Null };

QSharedPointer<AppendixDataPod> appendix(Appendix kind = Appendix::Full, quint64 id = kActivity, int type = 1)
{
    if (kind == Appendix::Null)
        return {};
    auto pod = QSharedPointer<AppendixDataPod>::create();
    pod->activityId = id;
    pod->activityType = type;
    if (kind == Appendix::Full) {
        pod->courseData = QSharedPointer<ActivityCourseDataPod>::create();
        pod->courseData->courseId = kCourse;
    }
    return pod;
}

QSharedPointer<StudyActivityNoticeWidgetDisplayPod> display(const QString& content = QStringLiteral("Read <b>chapter 4</b> &amp; answer"))
{
    return QSharedPointer<StudyActivityNoticeWidgetDisplayPod>::create(
        QStringLiteral("Study activity"), content, true, false, true, QStringLiteral("a"), false, QStringLiteral("b"),
        QStringLiteral("c"), false, true, false, true, QStringLiteral("Reading week"), QStringLiteral("scene-x"),
        QStringLiteral("body-y"), true);
}

} // namespace

// The study activity pop-up: the host's words, its buttons and the outside signals that close or refill it.
class TestStudyActivityNotice : public QObject
{
    Q_OBJECT
private slots:
    void initTestCase();
    void init();
    void cleanup();

    void sizeAndTheHostsTexts();
    void contentIsRichTextUnescaped();
    void logLineIsWrittenTwice();
    void coverOfTheCourseStandsInTheIcon();
    void buttonOrder_data();
    void buttonOrder();
    void trackingCarriesTheDisplayRecordsScenesAndBody();
    void deadViewDetailsButton_data();
    void deadViewDetailsButton();
    void deleteSignal_data();
    void deleteSignal();
    void deleteSignalRightAfterConstructionActsOnTheNextTurn();
    void deleteSignalFromAnotherThread();
    void clusterDeletion_data();
    void clusterDeletion();
    void userChangeRefills_data();
    void userChangeRefills();
    void nullDisplayRecordIsQuiet();
    void chineseButtons();
    void headingIsCutAt200Pixels();
    void headingStandsAboveTheText();
    void deadViewDetailsLeavesTheCloseButton_data();
    void deadViewDetailsLeavesTheCloseButton();
    void refillReadsTheRecordAgain();

private:
    StudyActivityNoticeWidget* open(QSharedPointer<AppendixDataPod> pod,
                                    QSharedPointer<StudyActivityNoticeWidgetDisplayPod> displayPod = display());
    QPointer<StudyActivityNoticeWidget> m_window;
};

void TestStudyActivityNotice::initTestCase()
{
    QVERIFY(TestKit::loadTranslations(QStringLiteral("en")));
}

void TestStudyActivityNotice::init()
{
    TestKit::resetAll();
    H::useTestScreen();
    StudyActivityMessagePushManager::instance().clear();
    CoreEngine::instance()->setCurrentUid(kUser);
}

void TestStudyActivityNotice::cleanup()
{
    delete m_window;
    H::runDeferredDeletes();
    QCoreApplication::processEvents();
}

StudyActivityNoticeWidget* TestStudyActivityNotice::open(QSharedPointer<AppendixDataPod> pod,
                                                         QSharedPointer<StudyActivityNoticeWidgetDisplayPod> displayPod)
{
    m_window = new StudyActivityNoticeWidget(pod, displayPod);
    m_window->popNotice();
    H::finish(H::animation(m_window, "m_showAnimation"));
    return m_window;
}

// A 308 by 164 card in its shadow; title, heading and buttons come from the display record and the keys.
void TestStudyActivityNotice::sizeAndTheHostsTexts()
{
    open(appendix());
    QCOMPARE(m_window->size(), QSize(328, 184));
    QCOMPARE(H::titleLabel(m_window)->text(), QStringLiteral("Study activity"));
    QCOMPARE(H::label(m_window, "m_headingLabel")->text(), QStringLiteral("Reading week"));
    QVERIFY(H::label(m_window, "m_headingLabel")->isVisible());
    QCOMPARE(H::button(m_window, "m_viewDetailsBtn")->text(), QStringLiteral("View details"));
    QCOMPARE(H::button(m_window, "m_laterBtn")->text(), QStringLiteral("Later"));
    QCOMPARE(H::button(m_window, "m_viewDetailsBtn")->size(), QSize(86, 26));
}

// The host's rich text goes in as it comes: its markup renders, its entities aren't escaped twice.
void TestStudyActivityNotice::contentIsRichTextUnescaped()
{
    open(appendix(), display(QStringLiteral("Read <b>chapter 4</b> &amp; answer")));
    auto* browser = H::browser(m_window, "m_contentBrowser");
    QCOMPARE(browser->toPlainText(), QStringLiteral("Read chapter 4 & answer"));
    QVERIFY(browser->toHtml().contains(QStringLiteral("font-weight:600")));
    QVERIFY(!browser->toPlainText().contains(QStringLiteral("<b>")));
}

// Intended: one window writes its info line twice, from the constructor and from the layout's end.
void TestStudyActivityNotice::logLineIsWrittenTwice()
{
    LogCapture log;
    open(appendix());
    const QList<LogCapture::Line> lines = log.matching(kLogLine);
    QCOMPARE(lines.size(), 2);
    for (const LogCapture::Line& line : lines) {
        QCOMPARE(line.type, QtInfoMsg);
        QVERIFY2(line.file.endsWith(QStringLiteral("src/plugins/im/VyrNotice/StudyActivityNoticeWidget.cpp")),
                 qPrintable(line.file));
    }
}

// The course's cover, rounded, replaces the notice picture in the 36 by 36 label.
void TestStudyActivityNotice::coverOfTheCourseStandsInTheIcon()
{
    CourseEngine::instance()->putCoursePixmap(7, kCourse, P::pixmap(QSize(72, 72), QColor(200, 30, 40)));
    open(appendix());
    auto* icon = H::label(m_window, "m_iconLabel");
    QCOMPARE(icon->size(), QSize(36, 36));
    const QImage card = P::grab(m_window);
    const QPoint centre = icon->mapTo(m_window, QPoint(18, 18));
    QVERIFY(P::isNear(card, centre, QColor(200, 30, 40), 8));
    // The corner is rounded away: the white card shows there.
    QVERIFY(!P::isNear(card, icon->mapTo(m_window, QPoint(0, 0)), QColor(200, 30, 40), 40));
}

// View details tracks, emits, closes; later tracks and closes; the close button closes, then tracks.
void TestStudyActivityNotice::buttonOrder_data()
{
    QTest::addColumn<QString>("button");
    QTest::addColumn<QString>("expected");
    QTest::newRow("view details") << "m_viewDetailsBtn" << "PushClick(true,yes) details(yes) close";
    QTest::newRow("later") << "m_laterBtn" << "PushClick(false,yes) close";
    QTest::newRow("close button") << "close" << "close PushClick(false,no)";
}

void TestStudyActivityNotice::buttonOrder()
{
    QFETCH(QString, button);
    QFETCH(QString, expected);
    const QSharedPointer<AppendixDataPod> pod = appendix();
    open(pod);
    NoticeClickRecorder recorder(m_window);
    QSharedPointer<AppendixDataPod> got;
    connect(m_window, &StudyActivityNoticeWidget::signalSeeDetails, &recorder,
            [&](QSharedPointer<AppendixDataPod> pod) {
                got = pod;
                recorder.mark(QStringLiteral("details"));
            });
    QAbstractButton* target = button == QLatin1String("close")
                                  ? static_cast<QAbstractButton*>(H::closeButton(m_window))
                                  : H::button(m_window, qPrintable(button));
    target->click();
    QCOMPARE(recorder.joined(), expected);
    if (button == QLatin1String("m_viewDetailsBtn")) {
        QVERIFY(got);
        QCOMPARE(got->activityId, kActivity);
    }
    // The host gets the window's own record, not a copy.
    QCOMPARE(got, button == QLatin1String("m_viewDetailsBtn") ? pod : QSharedPointer<AppendixDataPod>());
    H::runDeferredDeletes();
    QVERIFY(!m_window);
}

// The click's event carries the record's scene and body, the title, and no other scene.
void TestStudyActivityNotice::trackingCarriesTheDisplayRecordsScenesAndBody()
{
    open(appendix());
    H::button(m_window, "m_laterBtn")->click();
    const QList<VyrTrack::Event> clicks = KitFixture::trackedEvents(QStringLiteral("PushClick"));
    QCOMPARE(clicks.size(), 1);
    const QVariantMap data = clicks.first().second;
    QCOMPARE(data.value("push_scenes").toString(), QStringLiteral("scene-x"));
    QCOMPARE(data.value("push_body").toString(), QStringLiteral("body-y"));
    QCOMPARE(data.value("push_title").toString(), QStringLiteral("Study activity"));
    QCOMPARE(data.value("app_scene").toString(), QStringLiteral("前台唤起"));
    QCOMPARE(data.value("check_up"), QVariant(false));
    QVERIFY(KitFixture::trackedEvents(QStringLiteral("PushSend")).isEmpty());
}

// Without the appendix or its course, view details does nothing at all; later still works.
void TestStudyActivityNotice::deadViewDetailsButton_data()
{
    QTest::addColumn<int>("kind");
    QTest::newRow("null appendix") << int(Appendix::Null);
    QTest::newRow("no course record") << int(Appendix::NoCourse);
}

void TestStudyActivityNotice::deadViewDetailsButton()
{
    QFETCH(int, kind);
    open(appendix(Appendix(kind)));
    NoticeClickRecorder recorder(m_window);
    connect(m_window, &StudyActivityNoticeWidget::signalSeeDetails, &recorder,
            [&]() { recorder.mark(QStringLiteral("details")); });
    H::button(m_window, "m_viewDetailsBtn")->click();
    QCOMPARE(recorder.joined(), QString());
    QVERIFY(m_window->isVisible());
    H::button(m_window, "m_laterBtn")->click();
    QCOMPARE(recorder.joined(), QStringLiteral("PushClick(false,yes) close"));
}

// Only a withdrawal of the same activity closes; a window without appendix never matches.
void TestStudyActivityNotice::deleteSignal_data()
{
    QTest::addColumn<int>("kind");
    QTest::addColumn<quint64>("deletedId");
    QTest::addColumn<int>("deletedType");
    QTest::addColumn<bool>("closes");
    QTest::newRow("same activity") << int(Appendix::Full) << kActivity << 1 << true;
    QTest::newRow("same activity, no course record") << int(Appendix::NoCourse) << kActivity << 1 << true;
    QTest::newRow("other id") << int(Appendix::Full) << kActivity + 1 << 1 << false;
    QTest::newRow("other type") << int(Appendix::Full) << kActivity << 2 << false;
    QTest::newRow("window without appendix") << int(Appendix::Null) << kActivity << 1 << false;
}

void TestStudyActivityNotice::deleteSignal()
{
    QFETCH(int, kind);
    QFETCH(quint64, deletedId);
    QFETCH(int, deletedType);
    QFETCH(bool, closes);
    open(appendix(Appendix(kind)));
    StudyActivityMessagePushManager::instance().deleteActivity(appendix(Appendix::Full, deletedId, deletedType));
    QVERIFY(m_window->isVisible());
    QCoreApplication::processEvents();
    H::runDeferredDeletes();
    QCOMPARE(m_window.isNull(), closes);
    // A withdrawal sends no tracking.
    QVERIFY(KitFixture::trackedEvents(QStringLiteral("PushClick")).isEmpty());
}

// A withdrawal emitted while the window is being built acts once the event loop runs.
void TestStudyActivityNotice::deleteSignalRightAfterConstructionActsOnTheNextTurn()
{
    m_window = new StudyActivityNoticeWidget(appendix(), display());
    NoticeClickRecorder recorder(m_window);
    StudyActivityMessagePushManager::instance().deleteActivity(appendix());
    m_window->popNotice();
    QCOMPARE(recorder.joined(), QString());
    QVERIFY(m_window->isVisible());
    QCoreApplication::processEvents();
    QCOMPARE(recorder.joined(), QStringLiteral("close"));
    H::runDeferredDeletes();
    QVERIFY(m_window.isNull());
}

// A withdrawal from a worker thread closes the window on the GUI thread.
void TestStudyActivityNotice::deleteSignalFromAnotherThread()
{
    open(appendix());
    StudyActivityMessagePushManager::instance().deleteActivityFromThread(appendix());
    QTRY_VERIFY(m_window.isNull() || !m_window->isVisible());
}

// A deleted cluster closes the window only if it is the activity's course.
void TestStudyActivityNotice::clusterDeletion_data()
{
    QTest::addColumn<int>("kind");
    QTest::addColumn<QList<quint64>>("deleted");
    QTest::addColumn<bool>("closes");
    QTest::newRow("the course") << int(Appendix::Full) << QList<quint64>{kCourse} << true;
    QTest::newRow("among others") << int(Appendix::Full) << QList<quint64>{1, kCourse, 2} << true;
    QTest::newRow("other clusters") << int(Appendix::Full) << QList<quint64>{1, 2} << false;
    QTest::newRow("empty list") << int(Appendix::Full) << QList<quint64>{} << false;
    QTest::newRow("no course record") << int(Appendix::NoCourse) << QList<quint64>{kCourse, 0} << false;
    QTest::newRow("no appendix") << int(Appendix::Null) << QList<quint64>{kCourse, 0} << false;
}

void TestStudyActivityNotice::clusterDeletion()
{
    QFETCH(int, kind);
    QFETCH(QList<quint64>, deleted);
    QFETCH(bool, closes);
    open(appendix(Appendix(kind)));
    ContactsEngine::instance()->deleteClusters(std::vector<quint64>(deleted.begin(), deleted.end()));
    QVERIFY(m_window->isVisible());
    QCoreApplication::processEvents();
    H::runDeferredDeletes();
    QCOMPARE(m_window.isNull(), closes);
}

// A change of the signed-in user's data refills the window (a new cover is asked); others don't.
void TestStudyActivityNotice::userChangeRefills_data()
{
    QTest::addColumn<QList<quint64>>("changed");
    QTest::addColumn<bool>("refills");
    QTest::newRow("signed-in user") << QList<quint64>{kUser} << true;
    QTest::newRow("among others") << QList<quint64>{5, kUser} << true;
    QTest::newRow("other users") << QList<quint64>{5, 6} << false;
}

void TestStudyActivityNotice::userChangeRefills()
{
    QFETCH(QList<quint64>, changed);
    QFETCH(bool, refills);
    open(appendix());
    QSignalSpy asked(CourseEngine::instance(), &CourseEngine::coursePixmapAsked);
    CourseEngine::instance()->putCoursePixmap(7, kCourse, P::pixmap(QSize(72, 72), QColor(20, 40, 220)));
    ContactsEngine::instance()->changeUsers(std::vector<quint64>(changed.begin(), changed.end()));
    QCOMPARE(asked.count(), 0);
    QCoreApplication::processEvents();
    QCOMPARE(asked.count(), refills ? 1 : 0);
    const QImage card = P::grab(m_window);
    auto* icon = H::label(m_window, "m_iconLabel");
    QCOMPARE(P::isNear(card, icon->mapTo(m_window, QPoint(18, 18)), QColor(20, 40, 220), 8), refills);
    // Same words after the refill.
    QCOMPARE(H::label(m_window, "m_headingLabel")->text(), QStringLiteral("Reading week"));
}

// A missing display record leaves the key's title and no text, without a crash.
void TestStudyActivityNotice::nullDisplayRecordIsQuiet()
{
    open(appendix(), {});
    QCOMPARE(H::titleLabel(m_window)->text(), QStringLiteral("Homework notice"));
    QVERIFY(H::browser(m_window, "m_contentBrowser")->toPlainText().isEmpty());
    H::button(m_window, "m_viewDetailsBtn")->click();
    const QList<VyrTrack::Event> clicks = KitFixture::trackedEvents(QStringLiteral("PushClick"));
    QCOMPARE(clicks.size(), 1);
    QCOMPARE(clicks.first().second.value("push_scenes").toString(), QString());
}

// In Chinese the buttons use the micro-course keys' translations.
void TestStudyActivityNotice::chineseButtons()
{
    QVERIFY(TestKit::loadTranslations(QStringLiteral("zh_CN")));
    open(appendix());
    QCOMPARE(H::button(m_window, "m_viewDetailsBtn")->text(), QStringLiteral("查看详情"));
    QCOMPARE(H::button(m_window, "m_laterBtn")->text(), QStringLiteral("稍后"));
    QVERIFY(TestKit::loadTranslations(QStringLiteral("en")));
}

// The host's heading is cut at the right to 200 pixels of the heading's font.
void TestStudyActivityNotice::headingIsCutAt200Pixels()
{
    const QString heading = QStringLiteral("Reading week of the autumn semester for every class of the school");
    auto record = display();
    record->headingText = heading;
    open(appendix(), record);
    QLabel* label = H::label(m_window, "m_headingLabel");
    const QString shown = label->text();
    const QFontMetrics metrics(label->font());
    QVERIFY2(metrics.horizontalAdvance(heading) > 220, "the heading must be longer than the cut");
    QVERIFY2(shown.endsWith(QChar(0x2026)), qPrintable(shown));
    QVERIFY(shown.startsWith(QStringLiteral("Reading week")));
    QVERIFY(metrics.horizontalAdvance(shown) <= 200);
    // Not the micro-course heading's 180: a cut at 200 keeps more than 180 pixels of text.
    QVERIFY(metrics.horizontalAdvance(shown) > 180);
}

// Unlike the test pop-up the heading is shown, in the text column 4 pixels above the host's text.
void TestStudyActivityNotice::headingStandsAboveTheText()
{
    open(appendix());
    QLabel* heading = H::label(m_window, "m_headingLabel");
    auto* browser = H::browser(m_window, "m_contentBrowser");
    QCOMPARE(heading->height(), 19);
    const QPoint headingAt = heading->mapTo(m_window, QPoint(0, 0));
    const QPoint browserAt = browser->mapTo(m_window, QPoint(0, 0));
    QCOMPARE(browserAt.x(), headingAt.x());
    QCOMPARE(browserAt.y() - (headingAt.y() + 19), 4);
    // The column starts 12 right of the 36-pixel icon, level with its top.
    const QPoint iconAt = H::label(m_window, "m_iconLabel")->mapTo(m_window, QPoint(0, 0));
    QCOMPARE(headingAt, QPoint(iconAt.x() + 36 + 12, iconAt.y()));
}

// With the view details button dead, the base close button still closes and reports.
void TestStudyActivityNotice::deadViewDetailsLeavesTheCloseButton_data()
{
    deadViewDetailsButton_data();
}

void TestStudyActivityNotice::deadViewDetailsLeavesTheCloseButton()
{
    QFETCH(int, kind);
    open(appendix(Appendix(kind)));
    NoticeClickRecorder recorder(m_window);
    H::button(m_window, "m_viewDetailsBtn")->click();
    H::closeButton(m_window)->click();
    QCOMPARE(recorder.joined(), QStringLiteral("close PushClick(false,no)"));
    H::runDeferredDeletes();
    QVERIFY(m_window.isNull());
}

// A refill runs the whole update from the record the window holds: its present words show.
void TestStudyActivityNotice::refillReadsTheRecordAgain()
{
    auto record = display();
    open(appendix(), record);
    record->windowTitleText = QStringLiteral("Study activity, changed");
    record->headingText = QStringLiteral("Exam week");
    record->contentText = QStringLiteral("Bring <i>pencils</i>");
    // Nothing changes before the logged-in user's data does.
    ContactsEngine::instance()->changeUsers({5});
    QCoreApplication::processEvents();
    QCOMPARE(H::label(m_window, "m_headingLabel")->text(), QStringLiteral("Reading week"));
    ContactsEngine::instance()->changeUsers({kUser});
    QCoreApplication::processEvents();
    QCOMPARE(H::titleLabel(m_window)->text(), QStringLiteral("Study activity, changed"));
    QCOMPARE(H::label(m_window, "m_headingLabel")->text(), QStringLiteral("Exam week"));
    QCOMPARE(H::browser(m_window, "m_contentBrowser")->toPlainText(), QStringLiteral("Bring pencils"));
}

QTEST_MAIN(TestStudyActivityNotice)
#include "tst_studyactivitynotice.moc"
