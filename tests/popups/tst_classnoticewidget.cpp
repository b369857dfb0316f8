#include "ClassAheadNoticeWidget.h"
#include "ClassNoticeManager.h"
#include "ClassNoticeWidget.h"
#include "ClassPrepareNoticeWidget.h"
#include "ClassStartNoticeWidget.h"
#include "ContactsEngine.h"
#include "CourseEngine.h"
#include "ImSignalObject.h"
#include "LogCapture.h"
#include "Model.h"
#include "PopupHarness.h"
#include "TestKit.h"
#include "VyrTrack.h"

#include <QLabel>
#include <QPushButton>
#include <QSignalSpy>
#include <QStackedLayout>
#include <QThread>
#include <QTimer>
#include <QToolButton>
#include <QtTest>

using namespace VyrEngine;
namespace H = PopupHarness;

namespace {

const qint64 kNow = 1800000000;
const quint64 kLesson = 42;
const quint64 kCourse = 500;
const quint64 kSchool = 7;
const QString kWidgetFile = QStringLiteral("src/plugins/im/VyrNotice/ClassNoticeWidget.cpp");

QSharedPointer<SnapshotLesson> snapshot(quint64 lessonId = kLesson)
{
    return CourseEngine::instance()->lessonSnapshot(lessonId);
}

QStackedLayout* stackOf(ClassNoticeWidget* window)
{
    return window->findChild<QStackedLayout*>();
}

QWidget* page(ClassNoticeWidget* window, const QString& name)
{
    return window->findChild<QWidget*>(name);
}

QString pushSendBodies()
{
    QStringList bodies;
    for (const VyrTrack::Event& event : VyrTrack::instance()->events()) {
        if (event.first == QLatin1String("PushSend"))
            bodies << event.second.value(QStringLiteral("push_body")).toString();
    }
    return bodies.join(QLatin1Char('|'));
}

int pushClicks()
{
    int count = 0;
    for (const VyrTrack::Event& event : VyrTrack::instance()->events())
        count += event.first == QLatin1String("PushClick") ? 1 : 0;
    return count;
}

} // namespace

// The lesson's pop-up: pages, name, connections, the lesson's events and closing.
class TestClassNoticeWidget : public QObject
{
    Q_OBJECT
private slots:
    void initTestCase();
    void init();
    void cleanup();

    void constructionShowsPageOfTypeAndTracksIt_data();
    void constructionShowsPageOfTypeAndTracksIt();
    void typeOutsideRangeShowsNoCurrentPage();
    void nameChoice_data();
    void nameChoice();
    void pageConnections_data();
    void pageConnections();
    void enterForAnotherLessonDoesNotAsk();
    void lessonEvents_data();
    void lessonEvents();
    void nullSnapshotLeavesWindow();
    void roleChangeRefreshesAndTracksAgain();
    void batchNotNamingLessonChangesNothing();
    void batchNamingLessonClosesOnRole0();
    void startupClassroomClosesEveryPage_data();
    void startupClassroomClosesEveryPage();
    void localClassroomClosesOnlyAhead_data();
    void localClassroomClosesOnlyAhead();
    void typeChangeForAnotherLessonDoesNothing();
    void typeChangeTurnsPageWithoutNewTime();
    void closingEmitsByCurrentType_data();
    void closingEmitsByCurrentType();
    void timedCloseOfStartNoticeEmits();
    void engineSignalFromAnotherThreadCloses();
    void windowClosedWhileFuturePending();
    void lessonRemovedWhileFuturePending();
    void nullLessonIsQuiet();

private:
    ClassNoticeWidget* open(int type, QSharedPointer<SnapshotLesson> lesson = snapshot());
    QPointer<ClassNoticeWidget> m_window;
};

void TestClassNoticeWidget::initTestCase()
{
    QVERIFY(TestKit::loadTranslations(QStringLiteral("en")));
}

void TestClassNoticeWidget::init()
{
    TestKit::resetAll(kNow);
    H::useTestScreen();
    TestKit::putLesson(kLesson, QStringLiteral("Algebra"), kNow + 600, kCourse, 1, kSchool);
    ContactsEngine::instance()->putCluster(kCourse, QStringLiteral("Class 3A"));
}

void TestClassNoticeWidget::cleanup()
{
    delete m_window;
    H::runDeferredDeletes();
    TestKit::settle();
}

ClassNoticeWidget* TestClassNoticeWidget::open(int type, QSharedPointer<SnapshotLesson> lesson)
{
    m_window = new ClassNoticeWidget(ClassNoticeWidget::ClassNoticeType(type), lesson);
    m_window->popNotice();
    TestKit::settle();
    return m_window;
}

void TestClassNoticeWidget::constructionShowsPageOfTypeAndTracksIt_data()
{
    QTest::addColumn<int>("type");
    QTest::addColumn<QString>("pageName");
    QTest::addColumn<QString>("sent");
    QTest::newRow("ahead") << 0 << "classAheadNotice" << "Algebra will start in 10 minutes";
    QTest::newRow("prepare") << 1 << "classPrepareNotice" << "Algebra has started";
    QTest::newRow("start") << 2 << "classStartNotice" << "Algebra has started";
}

// Size, title and three pages; the page of the type is current and it alone reports "PushSend".
void TestClassNoticeWidget::constructionShowsPageOfTypeAndTracksIt()
{
    QFETCH(int, type);
    QFETCH(QString, pageName);
    QFETCH(QString, sent);
    open(type);
    QCOMPARE(m_window->size(), QSize(328, 184));
    QCOMPARE(H::titleLabel(m_window)->text(), QStringLiteral("Lesson Notice"));
    QStackedLayout* stack = stackOf(m_window);
    QCOMPARE(stack->count(), 3);
    QCOMPARE(stack->widget(0)->objectName(), QStringLiteral("classAheadNotice"));
    QCOMPARE(stack->widget(1)->objectName(), QStringLiteral("classPrepareNotice"));
    QCOMPARE(stack->widget(2)->objectName(), QStringLiteral("classStartNotice"));
    QCOMPARE(stack->currentIndex(), type);
    QCOMPARE(stack->currentWidget()->objectName(), pageName);
    QCOMPARE(pushSendBodies(), sent);
    const auto event = VyrTrack::instance()->events().first();
    QCOMPARE(event.second.value(QStringLiteral("push_scenes")).toString(), QStringLiteral("上课通知"));
    QCOMPARE(event.second.value(QStringLiteral("push_title")).toString(), QStringLiteral("Lesson Notice"));
}

// A type outside 0 to 2 isn't checked: no page reports, the layout keeps its page, closing emits nothing.
void TestClassNoticeWidget::typeOutsideRangeShowsNoCurrentPage()
{
    QSignalSpy closed(ClassNoticeManager::instance(), &ClassNoticeManager::closeStartNoticeWidget);
    open(3);
    QCOMPARE(stackOf(m_window)->currentIndex(), 0);
    QCOMPARE(pushSendBodies(), QString());
    m_window->close();
    H::runDeferredDeletes();
    QCOMPARE(closed.size(), 0);
}

void TestClassNoticeWidget::nameChoice_data()
{
    QTest::addColumn<bool>("cluster");
    QTest::addColumn<bool>("classroomCluster");
    QTest::addColumn<bool>("courseInHand");
    QTest::addColumn<bool>("courseRecord");
    QTest::addColumn<QString>("name");
    QTest::addColumn<bool>("logged");
    QTest::newRow("cluster of the course") << true << false << true << true << "Class 3A" << false;
    QTest::newRow("cluster of the classroom model") << false << true << true << true << "Room cluster" << false;
    QTest::newRow("finished course details") << false << false << true << true << "Course in hand" << false;
    QTest::newRow("course record, no model") << false << false << false << true << "Course record" << false;
    QTest::newRow("nothing: Unknown") << false << false << false << false << "Unknown" << true;
}

// The heading's name: cluster, then the classroom's cluster, then finished details, then the record, else "Unknown" and a log line.
void TestClassNoticeWidget::nameChoice()
{
    QFETCH(bool, cluster);
    QFETCH(bool, classroomCluster);
    QFETCH(bool, courseInHand);
    QFETCH(bool, courseRecord);
    QFETCH(QString, name);
    QFETCH(bool, logged);
    auto* contacts = ContactsEngine::instance();
    if (!cluster)
        contacts->removeCluster(kCourse);
    if (classroomCluster) {
        Model::createInstance(900, 901);
        contacts->setClassroomCluster(900, 901, 77);
        contacts->putCluster(77, QStringLiteral("Room cluster"));
    }
    if (courseInHand)
        CourseEngine::instance()->setCourseInHand(kCourse, QStringLiteral("Course in hand"));
    if (courseRecord)
        CourseEngine::instance()->putCourse(kCourse, QStringLiteral("Course record"), 0);
    LogCapture log;
    open(0);
    for (const char* pageName : {"classAheadNotice", "classPrepareNotice", "classStartNotice"})
        QCOMPARE(page(m_window, QLatin1String(pageName))->findChild<QLabel*>(QStringLiteral("m_headingLabel"))->text(),
                 name);
    const auto lines = log.matching(QStringLiteral("oops, no cluster info for id: 500"));
    QCOMPARE(lines.size(), logged ? 1 : 0);
    if (logged) {
        QCOMPARE(lines.first().type, QtInfoMsg);
        QCOMPARE(lines.first().file, kWidgetFile);
    }
}

void TestClassNoticeWidget::pageConnections_data()
{
    QTest::addColumn<int>("type");
    QTest::addColumn<QString>("pageName");
    QTest::addColumn<QString>("button");
    QTest::addColumn<QString>("body");
    QTest::addColumn<bool>("checkUp");
    QTest::addColumn<QString>("order");
    // Page texts are made distinct: ahead "Algebra will start...", prepare "Algebra has started",
    // start "Geometry has started".
    const QString ahead = QStringLiteral("Algebra will start in 10 minutes");
    const QString prepare = QStringLiteral("Algebra has started");
    const QString start = QStringLiteral("Geometry has started");
    QTest::newRow("ahead known") << 0 << "classAheadNotice" << "enterClassBtn" << ahead << false << "track close";
    QTest::newRow("prepare later") << 1 << "classPrepareNotice" << "m_laterBtn" << prepare << false << "track close";
    QTest::newRow("prepare enter, start page's text")
        << 1 << "classPrepareNotice" << "enterClassBtn" << start << true << "track startClass";
    QTest::newRow("start later, closes first") << 2 << "classStartNotice" << "m_laterBtn" << start << false
                                               << "close track";
    QTest::newRow("start enter") << 2 << "classStartNotice" << "enterClassBtn" << start << true << "track startClass";
    QTest::newRow("close button on ahead") << 0 << "" << "closeBtn" << ahead << false << "close track";
    QTest::newRow("close button on prepare, ahead's text") << 1 << "" << "closeBtn" << ahead << false << "close track";
    QTest::newRow("close button on start, ahead's text") << 2 << "" << "closeBtn" << ahead << false << "close track";
}

// Each button, clicked with the mouse: which page's text is reported, check_up, and tracking before or after the close.
void TestClassNoticeWidget::pageConnections()
{
    QFETCH(int, type);
    QFETCH(QString, pageName);
    QFETCH(QString, button);
    QFETCH(QString, body);
    QFETCH(bool, checkUp);
    QFETCH(QString, order);
    open(type);
    // The start page alone learns another name for the same lesson.
    CourseEngine::instance()->putLesson(*snapshot(), QStringLiteral("Geometry"));
    auto* startPage = m_window->findChild<ClassStartNoticeWidget*>(QStringLiteral("classStartNotice"));
    startPage->setLessonData(snapshot(), QStringLiteral("Class 3A"));
    TestKit::settle();
    VyrTrack::instance()->clearEvents();

    QStringList sequence;
    connect(VyrTrack::instance(), &VyrTrack::tracked, m_window, [&](const QString& event) {
        if (event == QLatin1String("PushClick"))
            sequence << (m_window->isVisible() ? QStringLiteral("track") : QStringLiteral("track(closed)"));
    });
    connect(m_window, &ClassNoticeWidget::startClass, m_window, [&](QSharedPointer<SnapshotLesson> lesson) {
        QCOMPARE(lesson->lessonId, kLesson);
        sequence << QStringLiteral("startClass");
    });

    QAbstractButton* target = pageName.isEmpty()
                                  ? static_cast<QAbstractButton*>(H::closeButton(m_window))
                                  : page(m_window, pageName)->findChild<QPushButton*>(button);
    QVERIFY(target);
    QVERIFY(target->isVisible());
    QTest::mouseClick(target, Qt::LeftButton);

    QString seen = sequence.join(QLatin1Char(' '));
    // "close" is read from whether the window was already hidden when it tracked.
    seen.replace(QStringLiteral("track(closed)"), QStringLiteral("close track"));
    if (!m_window->isVisible() && !seen.startsWith(QLatin1String("close")))
        seen += QStringLiteral(" close");
    QCOMPARE(seen, order);
    const auto events = VyrTrack::instance()->events();
    QCOMPARE(events.size(), 1);
    QCOMPARE(events.first().first, QStringLiteral("PushClick"));
    QCOMPARE(events.first().second.value(QStringLiteral("push_body")).toString(), body);
    QCOMPARE(events.first().second.value(QStringLiteral("check_up")), QVariant(checkUp));
    QCOMPARE(events.first().second.value(QStringLiteral("push_scenes")).toString(), QStringLiteral("上课通知"));
    // Entering doesn't close the window; the host's announcement does.
    QCOMPARE(m_window->isVisible(), checkUp);
}

// The window asks to enter only for its own lesson.
void TestClassNoticeWidget::enterForAnotherLessonDoesNotAsk()
{
    open(2);
    TestKit::putLesson(43, QStringLiteral("Other"), kNow, kCourse, 1, kSchool);
    auto* startPage = m_window->findChild<ClassStartNoticeWidget*>(QStringLiteral("classStartNotice"));
    startPage->setLessonData(snapshot(43), QStringLiteral("x"));
    TestKit::settle();
    QSignalSpy asked(m_window.data(), &ClassNoticeWidget::startClass);
    QTest::mouseClick(startPage->findChild<QPushButton*>(QStringLiteral("enterClassBtn")), Qt::LeftButton);
    QCOMPARE(asked.size(), 0);
    QVERIFY(m_window->isVisible());
}

void TestClassNoticeWidget::lessonEvents_data()
{
    QTest::addColumn<QString>("signal");
    QTest::addColumn<quint64>("lessonId");
    QTest::addColumn<bool>("closes");
    QTest::newRow("removed") << "remove" << quint64(kLesson) << true;
    QTest::newRow("removed, other lesson") << "remove" << quint64(43) << false;
    QTest::newRow("ended") << "end" << quint64(kLesson) << true;
    QTest::newRow("ended, other lesson") << "end" << quint64(43) << false;
    QTest::newRow("role invalid, role 0") << "roleInvalid" << quint64(kLesson) << true;
    QTest::newRow("role invalid, other lesson") << "roleInvalid" << quint64(43) << false;
    QTest::newRow("info changed, closed flag") << "closedFlag" << quint64(kLesson) << true;
    QTest::newRow("info changed, other lesson") << "closedFlag" << quint64(43) << false;
}

// The course engine's events close the window for its lesson and are ignored for another.
void TestClassNoticeWidget::lessonEvents()
{
    QFETCH(QString, signal);
    QFETCH(quint64, lessonId);
    QFETCH(bool, closes);
    open(1);
    auto* engine = CourseEngine::instance();
    SnapshotLesson changed = *snapshot();
    if (signal == QLatin1String("roleInvalid"))
        changed.role = 0;
    if (signal == QLatin1String("closedFlag"))
        changed.closedFlag = true;
    engine->putLesson(changed, QStringLiteral("Algebra"));
    if (signal == QLatin1String("remove"))
        emit engine->signalRemoveLesson(kSchool, kCourse, lessonId);
    else if (signal == QLatin1String("end"))
        emit engine->signalLessonEnd(kSchool, kCourse, lessonId);
    else if (signal == QLatin1String("roleInvalid"))
        emit engine->signalLessonRoleInvalid(kSchool, kCourse, lessonId);
    else
        emit engine->signalLessonInfoChanged(kSchool, kCourse, lessonId);
    QCOMPARE(!m_window->isVisible(), closes);
    H::runDeferredDeletes();
    QCOMPARE(m_window.isNull(), closes);
}

// A lesson the engine no longer knows leaves the window as it is.
void TestClassNoticeWidget::nullSnapshotLeavesWindow()
{
    open(0);
    VyrTrack::instance()->clearEvents();
    CourseEngine::instance()->removeLesson(kLesson);
    emit CourseEngine::instance()->signalLessonInfoChanged(kSchool, kCourse, kLesson);
    emit CourseEngine::instance()->signalLessonRoleInvalid(kSchool, kCourse, kLesson);
    TestKit::settle();
    QVERIFY(m_window->isVisible());
    QCOMPARE(pushSendBodies(), QString());
}

// A change that keeps the role refreshes the pages; the shown page tracks again.
void TestClassNoticeWidget::roleChangeRefreshesAndTracksAgain()
{
    open(0);
    VyrTrack::instance()->clearEvents();
    SnapshotLesson changed = *snapshot();
    changed.startTime = kNow + 3000;
    CourseEngine::instance()->putLesson(changed, QStringLiteral("Algebra II"));
    emit CourseEngine::instance()->signalLessonInfoChanged(kSchool, kCourse, kLesson);
    TestKit::settle();
    QVERIFY(m_window->isVisible());
    QCOMPARE(pushSendBodies(), QStringLiteral("Algebra II will start in 50 minutes"));
}

// A batch that doesn't name the lesson changes nothing.
void TestClassNoticeWidget::batchNotNamingLessonChangesNothing()
{
    open(0);
    VyrTrack::instance()->clearEvents();
    SnapshotLesson changed = *snapshot();
    changed.role = 0;
    CourseEngine::instance()->putLesson(changed, QStringLiteral("Algebra"));
    emit CourseEngine::instance()->signalLessonsInfoChanged({{kSchool, kCourse, 43}, {8, 501, 44}});
    TestKit::settle();
    QVERIFY(m_window->isVisible());
    QCOMPARE(pushSendBodies(), QString());
}

// A batch naming the lesson among others closes it when its role is gone.
void TestClassNoticeWidget::batchNamingLessonClosesOnRole0()
{
    open(2);
    SnapshotLesson changed = *snapshot();
    changed.role = 0;
    CourseEngine::instance()->putLesson(changed, QStringLiteral("Algebra"));
    emit CourseEngine::instance()->signalLessonsInfoChanged({{8, 501, 44}, {kSchool, kCourse, 43}, {kSchool, kCourse, kLesson}});
    QVERIFY(!m_window->isVisible());
}

void TestClassNoticeWidget::startupClassroomClosesEveryPage_data()
{
    QTest::addColumn<int>("type");
    QTest::newRow("ahead") << 0;
    QTest::newRow("prepare") << 1;
    QTest::newRow("start") << 2;
}

// Entering the lesson's classroom closes the notice on any page; another classroom doesn't.
void TestClassNoticeWidget::startupClassroomClosesEveryPage()
{
    QFETCH(int, type);
    open(type);
    emit ImSignalObject::instance()->signalStartupClassroom(kSchool, 43, kCourse, RoomTypeLive, false);
    QVERIFY(m_window->isVisible());
    emit ImSignalObject::instance()->signalStartupClassroom(kSchool, kLesson, kCourse, RoomTypeLive, false);
    QVERIFY(!m_window->isVisible());
}

void TestClassNoticeWidget::localClassroomClosesOnlyAhead_data()
{
    QTest::addColumn<int>("type");
    QTest::addColumn<bool>("closes");
    QTest::newRow("ahead closes") << 0 << true;
    QTest::newRow("prepare stays") << 1 << false;
    QTest::newRow("start stays") << 2 << false;
}

// A local classroom of the lesson closes an ahead notice only.
void TestClassNoticeWidget::localClassroomClosesOnlyAhead()
{
    QFETCH(int, type);
    QFETCH(bool, closes);
    open(type);
    emit ImSignalObject::instance()->signalStartupLocalClassroom(kLesson, kCourse, kSchool, QStringLiteral("Algebra"),
                                                                 RoomTypeLocal);
    QCOMPARE(!m_window->isVisible(), closes);
}

// A type change for another lesson neither turns the page nor refreshes.
void TestClassNoticeWidget::typeChangeForAnotherLessonDoesNothing()
{
    open(0);
    VyrTrack::instance()->clearEvents();
    TestKit::putLesson(43, QStringLiteral("Other"), kNow, kCourse, 1, kSchool);
    emit ClassNoticeManager::instance()->classTypeAndDataChange(2, snapshot(43));
    TestKit::settle();
    QCOMPARE(stackOf(m_window)->currentIndex(), 0);
    QCOMPARE(pushSendBodies(), QString());
}

// A type change for the lesson turns the page and tracks from it, and gives no more time.
void TestClassNoticeWidget::typeChangeTurnsPageWithoutNewTime()
{
    open(0);
    H::finish(H::animation(m_window, "m_showAnimation"));
    QTimer* timer = H::closeTimer(m_window);
    QVERIFY(timer);
    VyrTrack::instance()->clearEvents();
    emit ClassNoticeManager::instance()->classTypeAndDataChange(2, snapshot());
    TestKit::settle();
    QCOMPARE(stackOf(m_window)->currentIndex(), 2);
    QCOMPARE(pushSendBodies(), QStringLiteral("Algebra has started"));
    QCOMPARE(H::closeTimers(m_window), QList<QTimer*>{timer});
    QVERIFY(!H::animation(m_window, "m_showAnimation"));
}

void TestClassNoticeWidget::closingEmitsByCurrentType_data()
{
    QTest::addColumn<int>("type");
    QTest::addColumn<int>("changedTo");
    QTest::addColumn<bool>("emits");
    QTest::newRow("ahead") << 0 << -1 << false;
    QTest::newRow("prepare") << 1 << -1 << true;
    QTest::newRow("start") << 2 << -1 << true;
    QTest::newRow("ahead turned start") << 0 << 2 << true;
    QTest::newRow("start turned ahead") << 2 << 0 << false;
}

// The destructor takes the id out of the registry and emits by the type it has at the end.
void TestClassNoticeWidget::closingEmitsByCurrentType()
{
    QFETCH(int, type);
    QFETCH(int, changedTo);
    QFETCH(bool, emits);
    ClassNoticeManager::instance()->addClassNotice(kLesson);
    QSignalSpy closed(ClassNoticeManager::instance(), &ClassNoticeManager::closeStartNoticeWidget);
    open(type);
    if (changedTo >= 0)
        emit ClassNoticeManager::instance()->classTypeAndDataChange(changedTo, snapshot());
    QTest::mouseClick(H::closeButton(m_window), Qt::LeftButton);
    QCOMPARE(closed.size(), 0);
    H::runDeferredDeletes();
    QVERIFY(!m_window);
    QVERIFY(!ClassNoticeManager::instance()->isExistTheNotice(kLesson));
    QCOMPARE(closed.size(), emits ? 1 : 0);
    if (emits)
        QCOMPARE(closed.first().first().toULongLong(), quint64(kLesson));
}

// The timed close runs the same destructor: a start notice that times out emits too, and tracks nothing.
void TestClassNoticeWidget::timedCloseOfStartNoticeEmits()
{
    QSignalSpy closed(ClassNoticeManager::instance(), &ClassNoticeManager::closeStartNoticeWidget);
    open(2);
    const int clicksBefore = pushClicks();
    H::finish(H::animation(m_window, "m_showAnimation"));
    QMetaObject::invokeMethod(H::closeTimer(m_window), "timeout");
    H::finish(H::animation(m_window, "m_opacityAnimation"));
    H::runDeferredDeletes();
    QVERIFY(!m_window);
    QCOMPARE(closed.size(), 1);
    QCOMPARE(pushClicks(), clicksBefore);
}

// The lesson's end announced from another thread closes the window on its own thread.
void TestClassNoticeWidget::engineSignalFromAnotherThreadCloses()
{
    open(0);
    QThread* thread = QThread::create([]() { emit CourseEngine::instance()->signalLessonEnd(kSchool, kCourse, kLesson); });
    thread->start();
    QVERIFY(thread->wait(5000));
    delete thread;
    // Nothing ran on the other thread: the window is still up until its own thread takes the call.
    QVERIFY(m_window);
    QVERIFY(m_window->isVisible());
    QTRY_VERIFY(!m_window);
}

// A window closed while its pages' details are pending runs nothing when they arrive.
void TestClassNoticeWidget::windowClosedWhileFuturePending()
{
    CourseEngine::instance()->setHoldFutures(true);
    m_window = new ClassNoticeWidget(ClassNoticeWidget::AheadNotice, snapshot());
    m_window->popNotice();
    QVERIFY(CourseEngine::instance()->pendingFutureCount() >= 3);
    m_window->close();
    H::runDeferredDeletes();
    QVERIFY(!m_window);
    CourseEngine::instance()->finishPendingFutures();
    TestKit::settle();
    QCOMPARE(pushSendBodies(), QString());
}

// A lesson removed while its details are pending closes the window; the late details change nothing.
void TestClassNoticeWidget::lessonRemovedWhileFuturePending()
{
    CourseEngine::instance()->setHoldFutures(true);
    m_window = new ClassNoticeWidget(ClassNoticeWidget::StartNotice, snapshot());
    m_window->popNotice();
    CourseEngine::instance()->removeLesson(kLesson);
    emit CourseEngine::instance()->signalRemoveLesson(kSchool, kCourse, kLesson);
    H::runDeferredDeletes();
    QVERIFY(!m_window);
    CourseEngine::instance()->finishPendingFutures();
    TestKit::settle();
    QCOMPARE(pushSendBodies(), QString());
}

// A window made without a lesson shows its empty pages and ignores every event, without a crash.
void TestClassNoticeWidget::nullLessonIsQuiet()
{
    QSignalSpy closed(ClassNoticeManager::instance(), &ClassNoticeManager::closeStartNoticeWidget);
    open(1, QSharedPointer<SnapshotLesson>());
    emit CourseEngine::instance()->signalLessonEnd(kSchool, kCourse, 0);
    emit ClassNoticeManager::instance()->classTypeAndDataChange(2, snapshot());
    emit ClassNoticeManager::instance()->classTypeAndDataChange(2, QSharedPointer<SnapshotLesson>());
    QVERIFY(m_window->isVisible());
    QCOMPARE(stackOf(m_window)->currentIndex(), 1);
    m_window->close();
    H::runDeferredDeletes();
    QCOMPARE(closed.size(), 1);
    QCOMPARE(closed.first().first().toULongLong(), 0ull);
}

QTEST_MAIN(TestClassNoticeWidget)
#include "tst_classnoticewidget.moc"
