#include "ClassNoticeManager.h"
#include "ClassNoticeWidget.h"
#include "CourseEngine.h"
#include "LogCapture.h"
#include "PopupHarness.h"
#include "TestKit.h"

#include <QSignalSpy>
#include <QtTest>

namespace H = PopupHarness;

// The registry of open class notices.
class TestClassNoticeManager : public QObject
{
    Q_OBJECT
private slots:
    void init();
    void cleanup();
    void emptyRegistryKnowsNothing();
    void addTwiceDeleteOnceStillExists();
    void deletingUnknownIdChangesAndReportsNothing();
    void deleteTakesFirstOccurrenceOnly();
    void instanceIsOneObject();
    void destroyingAnyManagerReleasesTheInstance();
    void windowNeverAddedStillDeletesAndEmits();
};

void TestClassNoticeManager::init()
{
    TestKit::resetAll();
    H::useTestScreen();
    // A fresh, empty registry for every test.
    delete ClassNoticeManager::instance();
    H::runDeferredDeletes();
}

void TestClassNoticeManager::cleanup()
{
    H::runDeferredDeletes();
}

// isExistTheNotice on an empty registry is false.
void TestClassNoticeManager::emptyRegistryKnowsNothing()
{
    QVERIFY(!ClassNoticeManager::instance()->isExistTheNotice(42));
    QVERIFY(!ClassNoticeManager::instance()->isExistTheNotice(0));
}

// Duplicates are kept: one delete leaves the second record.
void TestClassNoticeManager::addTwiceDeleteOnceStillExists()
{
    auto* manager = ClassNoticeManager::instance();
    manager->addClassNotice(42);
    manager->addClassNotice(42);
    manager->delClassNotice(42);
    QVERIFY(manager->isExistTheNotice(42));
    manager->delClassNotice(42);
    QVERIFY(!manager->isExistTheNotice(42));
}

// Deleting an id that isn't there changes nothing and logs nothing.
void TestClassNoticeManager::deletingUnknownIdChangesAndReportsNothing()
{
    auto* manager = ClassNoticeManager::instance();
    manager->addClassNotice(1);
    LogCapture log;
    manager->delClassNotice(99);
    QVERIFY(log.lines().isEmpty());
    QVERIFY(manager->isExistTheNotice(1));
    QVERIFY(!manager->isExistTheNotice(99));
}

// Only the first record of an id goes; others stay in their order.
void TestClassNoticeManager::deleteTakesFirstOccurrenceOnly()
{
    auto* manager = ClassNoticeManager::instance();
    manager->addClassNotice(1);
    manager->addClassNotice(2);
    manager->addClassNotice(1);
    manager->delClassNotice(1);
    QVERIFY(manager->isExistTheNotice(1));
    QVERIFY(manager->isExistTheNotice(2));
}

// instance() gives the same object until it is destroyed.
void TestClassNoticeManager::instanceIsOneObject()
{
    QCOMPARE(ClassNoticeManager::instance(), ClassNoticeManager::instance());
    QVERIFY(!ClassNoticeManager::instance()->parent());
}

// The destructor of any manager schedules the instance's deletion and clears it: the next is fresh.
void TestClassNoticeManager::destroyingAnyManagerReleasesTheInstance()
{
    QPointer<ClassNoticeManager> first = ClassNoticeManager::instance();
    first->addClassNotice(7);
    {
        ClassNoticeManager other;
        other.addClassNotice(8);
    }
    QVERIFY(first);
    H::runDeferredDeletes();
    QVERIFY(!first);
    QVERIFY(!ClassNoticeManager::instance()->isExistTheNotice(7));
}

// A window the host never registered still deletes its id on closing, and a prepare window emits.
void TestClassNoticeManager::windowNeverAddedStillDeletesAndEmits()
{
    auto* manager = ClassNoticeManager::instance();
    TestKit::putLesson(42, QStringLiteral("Algebra"), 1800000600);
    QSignalSpy closed(manager, &ClassNoticeManager::closeStartNoticeWidget);
    manager->addClassNotice(41);
    QPointer<ClassNoticeWidget> window =
        new ClassNoticeWidget(ClassNoticeWidget::PrepareNotice, VyrEngine::CourseEngine::instance()->lessonSnapshot(42));
    window->close();
    H::runDeferredDeletes();
    QVERIFY(!window);
    QCOMPARE(closed.size(), 1);
    QCOMPARE(closed.at(0).at(0).toULongLong(), 42ull);
    QVERIFY(manager->isExistTheNotice(41));
    QVERIFY(!manager->isExistTheNotice(42));
}

QTEST_MAIN(TestClassNoticeManager)
#include "tst_classnoticemanager.moc"
