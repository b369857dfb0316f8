#include "StudyActivityMessagePushManager.h"

#include <QSignalSpy>
#include <QThread>
#include <QtTest>

namespace {

QSharedPointer<AppendixDataPod> activity(quint64 id)
{
    auto pod = QSharedPointer<AppendixDataPod>::create();
    pod->activityId = id;
    pod->activityType = 1;
    return pod;
}

} // namespace

// The chat engine's study activity pushes and their withdrawal.
class TestVyrChatEngine : public QObject
{
    Q_OBJECT
private slots:
    void init();

    void instanceIsOne();
    void deleteActivityEmitsAtOnce();
    void queuedReceiversGetThePointer();
    void deleteFromThreadArrivesOnTheReceiversThread();
};

void TestVyrChatEngine::init()
{
    StudyActivityMessagePushManager::instance().clear();
}

// instance() gives the same object every time.
void TestVyrChatEngine::instanceIsOne()
{
    QCOMPARE(&StudyActivityMessagePushManager::instance(), &StudyActivityMessagePushManager::instance());
}

// deleteActivity emits the record itself, inside the call, and remembers it.
void TestVyrChatEngine::deleteActivityEmitsAtOnce()
{
    auto& manager = StudyActivityMessagePushManager::instance();
    QSharedPointer<AppendixDataPod> got;
    QMetaObject::Connection c = connect(&manager, &StudyActivityMessagePushManager::signalActivityDeleteNoticeSingal,
                                        this, [&got](QSharedPointer<AppendixDataPod> pod) { got = pod; });
    const auto pod = activity(5);
    manager.deleteActivity(pod);
    disconnect(c);
    QCOMPARE(got, pod);
    QCOMPARE(manager.deletedActivities().size(), 1);
    manager.clear();
    QVERIFY(manager.deletedActivities().isEmpty());
}

// The pointer is a registered meta type: a queued receiver gets it on the next turn.
void TestVyrChatEngine::queuedReceiversGetThePointer()
{
    auto& manager = StudyActivityMessagePushManager::instance();
    QVERIFY(QMetaType::type("QSharedPointer<AppendixDataPod>") != QMetaType::UnknownType);
    QList<quint64> got;
    QMetaObject::Connection c = connect(
        &manager, &StudyActivityMessagePushManager::signalActivityDeleteNoticeSingal, this,
        [&got](QSharedPointer<AppendixDataPod> pod) { got << pod->activityId; }, Qt::QueuedConnection);
    manager.deleteActivity(activity(9));
    QVERIFY(got.isEmpty());
    QTRY_COMPARE(got, QList<quint64>{9});
    disconnect(c);
}

// From a worker thread the signal reaches a GUI-thread receiver queued, on the GUI thread.
void TestVyrChatEngine::deleteFromThreadArrivesOnTheReceiversThread()
{
    auto& manager = StudyActivityMessagePushManager::instance();
    QThread* seenOn = nullptr;
    QMetaObject::Connection c =
        connect(&manager, &StudyActivityMessagePushManager::signalActivityDeleteNoticeSingal, this,
                [&seenOn](QSharedPointer<AppendixDataPod>) { seenOn = QThread::currentThread(); });
    manager.deleteActivityFromThread(activity(3));
    QVERIFY(!seenOn);
    QTRY_VERIFY(seenOn);
    QCOMPARE(seenOn, QThread::currentThread());
    disconnect(c);
}

QTEST_MAIN(TestVyrChatEngine)
#include "tst_vyrchatengine.moc"
