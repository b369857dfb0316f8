#include "ContactsEngine.h"
#include "SchoolSettingManager.h"

#include <QElapsedTimer>
#include <QSignalSpy>

#include <QtTest>

using namespace VyrEngine;

// The contacts engine: clusters and the classrooms' clusters.
class TestVyrContactsEngine : public QObject
{
    Q_OBJECT
private slots:
    void init();

    void clustersAndClassrooms();
    void peopleAndDisplayNames_data();
    void peopleAndDisplayNames();
    void clusterMemberNicknamesGivesOnlyKnownMembers();
    void deletedClustersAreForgottenAndSignalled();
    void signalsTravelQueued();

    void schoolDomainKnownIsGivenWithoutQuery();
    void schoolDomainUnknownIsAskedAndAnsweredLater();
    void schoolAnswers_data();
    void schoolAnswers();
    void schoolAnswerIsDelayed();
    void schoolQueryWithoutAnswerStaysUnanswered();
    void schoolEachQueuedAnswerServesOneQuery();
    void schoolAnswerForAnotherFlag();
    void schoolClearDropsAnswersOnTheirWay();
};


void TestVyrContactsEngine::init()
{
    ContactsEngine::instance()->clear();
    Org::SchoolSettingManager::getInstance()->clear();
}

// Clusters come and go by id; a classroom maps to its cluster, or to id 0.
void TestVyrContactsEngine::clustersAndClassrooms()
{
    auto* contacts = ContactsEngine::instance();
    QVERIFY(!contacts->clusterInfoById(ClusterID(5, 0), false));
    contacts->putCluster(5, QStringLiteral("Class 5"));
    QCOMPARE(contacts->clusterInfoById(ClusterID(5, 0), false)->name(), QStringLiteral("Class 5"));
    contacts->setClassroomCluster(1, 2, 5);
    QCOMPARE(contacts->clusterIdForClassroom(1, 2).id(), 5ull);
    QCOMPARE(contacts->clusterIdForClassroom(1, 3).id(), 0ull);
    contacts->removeCluster(5);
    QVERIFY(!contacts->clusterInfoById(ClusterID(5, 0), false));
}

// The name to show: remark, else nickname, else telephone; unknown people give null and "".
void TestVyrContactsEngine::peopleAndDisplayNames_data()
{
    QTest::addColumn<QString>("nickname");
    QTest::addColumn<QString>("telephone");
    QTest::addColumn<QString>("remark");
    QTest::addColumn<QString>("shown");
    QTest::newRow("remark first") << "Nick" << "138" << "Teacher Li" << "Teacher Li";
    QTest::newRow("nickname") << "Nick" << "138" << "" << "Nick";
    QTest::newRow("telephone") << "" << "138" << "" << "138";
    QTest::newRow("nothing") << "" << "" << "" << "";
}

void TestVyrContactsEngine::peopleAndDisplayNames()
{
    QFETCH(QString, nickname);
    QFETCH(QString, telephone);
    QFETCH(QString, remark);
    QFETCH(QString, shown);
    auto* contacts = ContactsEngine::instance();
    QVERIFY(!contacts->userInfoById(77));
    QCOMPARE(contacts->userDisplayName(77, 0), QString());
    UserInfo user(77, nickname, telephone);
    user.setRemark(remark);
    contacts->putUser(user);
    const auto found = contacts->userInfo(77, 0);
    QVERIFY(found);
    QCOMPARE(found->uid(), 77ull);
    QCOMPARE(found->nickname(), nickname);
    QCOMPARE(found->telephone(), telephone);
    QCOMPARE(found->displayName(), shown);
    QCOMPARE(contacts->userDisplayName(77, 0), shown);
    QCOMPARE(contacts->userLookupCount(), 4);
    contacts->removeUser(77);
    QVERIFY(!contacts->userInfoById(77));
}

// Members' nicknames are per cluster; a member without one is absent from the map.
void TestVyrContactsEngine::clusterMemberNicknamesGivesOnlyKnownMembers()
{
    auto* contacts = ContactsEngine::instance();
    contacts->setClusterMemberNickname(5, 1, QStringLiteral("One"));
    contacts->setClusterMemberNickname(6, 2, QStringLiteral("Two elsewhere"));
    const auto names = contacts->clusterMemberNicknames(ClusterID(5, 0), {1, 2}, QString(), false);
    QCOMPARE(int(names.size()), 1);
    QCOMPARE(names.at(1), QStringLiteral("One"));
    QVERIFY(names.find(2) == names.end());
}

// Deleting clusters forgets them and names them all in one signal.
void TestVyrContactsEngine::deletedClustersAreForgottenAndSignalled()
{
    auto* contacts = ContactsEngine::instance();
    contacts->putCluster(5, QStringLiteral("Five"));
    QSignalSpy deleted(contacts, &ContactsEngine::signalDelCluster);
    contacts->deleteClusters({5, 9});
    QCOMPARE(deleted.count(), 1);
    const auto ids = deleted.at(0).at(0).value<std::vector<ClusterID>>();
    QCOMPARE(int(ids.size()), 2);
    QCOMPARE(ids.at(0).id(), 5ull);
    QCOMPARE(ids.at(1).id(), 9ull);
    QVERIFY(!contacts->clusterInfoById(ClusterID(5, 0), false));
}

// Both signals reach a queued receiver with their vectors intact.
void TestVyrContactsEngine::signalsTravelQueued()
{
    auto* contacts = ContactsEngine::instance();
    QObject receiver;
    quint64 deletedId = 0;
    quint64 changedUid = 0;
    connect(contacts, &ContactsEngine::signalDelCluster, &receiver,
            [&](const std::vector<ClusterID>& ids) { deletedId = ids.at(0).id(); }, Qt::QueuedConnection);
    connect(contacts, &ContactsEngine::updateUserInfo, &receiver,
            [&](const std::vector<quint64>& uids) { changedUid = uids.at(0); }, Qt::QueuedConnection);
    contacts->deleteClusters({12});
    contacts->changeUsers({34});
    QCOMPARE(deletedId, 0ull);
    QTRY_COMPARE(deletedId, 12ull);
    QTRY_COMPARE(changedUid, 34ull);
}

namespace {
using Org::SchoolSettingManager;
const quint64 kUid = 9001;
const char* const kFinished = SIGNAL(signalGetUidDomainNameFinished(qlonglong, QString, int, int, int, QString));
} // namespace

// A domain the manager knows is given at once, and nothing is asked.
void TestVyrContactsEngine::schoolDomainKnownIsGivenWithoutQuery()
{
    auto* manager = SchoolSettingManager::getInstance();
    QVERIFY(SchoolSettingManager::getInstance() == manager);
    manager->putDomain(kUid, 1, QStringLiteral("a.edu"));
    QSignalSpy spy(manager, kFinished);
    QCOMPARE(manager->getUidDomainName(kUid, 1), QStringLiteral("a.edu"));
    QVERIFY(manager->queries().isEmpty());
    QTest::qWait(20);
    QCOMPARE(spy.count(), 0);
}

// An unknown domain gives empty, is asked, and answered on a later turn, never inside the call.
void TestVyrContactsEngine::schoolDomainUnknownIsAskedAndAnsweredLater()
{
    auto* manager = SchoolSettingManager::getInstance();
    manager->queueAnswer(kUid, 1, QStringLiteral("a.edu"));
    QSignalSpy spy(manager, kFinished);
    QCOMPARE(manager->getUidDomainName(kUid, 1), QString());
    QCOMPARE(manager->queries(), (QList<QPair<quint64, int>>{{kUid, 1}}));
    QCOMPARE(spy.count(), 0);
    QCOMPARE(manager->pendingAnswers(), 1);
    QVERIFY(spy.wait(1000));
    QCOMPARE(manager->getUidDomainName(kUid, 1), QStringLiteral("a.edu"));
    QCOMPARE(manager->pendingAnswers(), 0);
}

void TestVyrContactsEngine::schoolAnswers_data()
{
    QTest::addColumn<int>("flag");
    QTest::addColumn<bool>("isError");
    QTest::addColumn<int>("networkError");
    QTest::addColumn<int>("errorNo");
    QTest::addColumn<QString>("url");
    QTest::addColumn<QString>("errorString");
    QTest::addColumn<QString>("knownAfter");
    QTest::newRow("flag 1, success") << 1 << false << 0 << 1 << "a.edu" << "" << "a.edu";
    QTest::newRow("flag 2, success") << 2 << false << 0 << 1 << "b.edu" << "" << "b.edu";
    QTest::newRow("flag 0, success") << 0 << false << 0 << 1 << "c.edu" << "" << "c.edu";
    QTest::newRow("flag 1, errorNo 0") << 1 << true << 0 << 0 << "" << "no domain" << "";
    QTest::newRow("flag 1, errorNo 2 with domain") << 1 << true << 0 << 2 << "d.edu" << "stale" << "d.edu";
    QTest::newRow("flag 1, errorNo -1") << 1 << true << 0 << -1 << "" << "server" << "";
    QTest::newRow("flag 1, network error") << 1 << true << 99 << 1 << "" << "timed out" << "";
    QTest::newRow("flag 3, errorNo 500") << 3 << true << 0 << 500 << "" << "internal" << "";
}

// Every answer carries what the host queued; a non-empty domain becomes known before the signal.
void TestVyrContactsEngine::schoolAnswers()
{
    QFETCH(int, flag);
    QFETCH(bool, isError);
    QFETCH(int, networkError);
    QFETCH(int, errorNo);
    QFETCH(QString, url);
    QFETCH(QString, errorString);
    QFETCH(QString, knownAfter);
    auto* manager = SchoolSettingManager::getInstance();
    if (isError)
        manager->queueError(kUid, flag, networkError, errorNo, errorString, 0, url);
    else
        manager->queueAnswer(kUid, flag, url);
    QString knownInside = QStringLiteral("unset");
    connect(manager, &SchoolSettingManager::signalGetUidDomainNameFinished, this,
            [&](qlonglong uid, QString, int answeredFlag) { knownInside = manager->getUidDomainName(quint64(uid), answeredFlag); });
    QSignalSpy spy(manager, kFinished);
    QVERIFY(manager->getUidDomainName(kUid, flag).isEmpty());
    QVERIFY(spy.wait(1000));
    disconnect(manager, &SchoolSettingManager::signalGetUidDomainNameFinished, this, nullptr);
    QCOMPARE(spy.count(), 1);
    const QList<QVariant> args = spy.first();
    QCOMPARE(args.at(0).toLongLong(), qlonglong(kUid));
    QCOMPARE(args.at(1).toString(), url);
    QCOMPARE(args.at(2).toInt(), flag);
    QCOMPARE(args.at(3).toInt(), networkError);
    QCOMPARE(args.at(4).toInt(), errorNo);
    QCOMPARE(args.at(5).toString(), errorString);
    QCOMPARE(knownInside, knownAfter);
}

// A delayed answer comes no sooner than asked.
void TestVyrContactsEngine::schoolAnswerIsDelayed()
{
    auto* manager = SchoolSettingManager::getInstance();
    manager->queueAnswer(kUid, 1, QStringLiteral("late.edu"), 200);
    QSignalSpy spy(manager, kFinished);
    QElapsedTimer clock;
    clock.start();
    manager->getUidDomainName(kUid, 1);
    QTest::qWait(100);
    QCOMPARE(spy.count(), 0);
    QVERIFY(spy.wait(2000));
    QVERIFY(clock.elapsed() >= 190);
}

// With nothing queued the server stays silent; the query is still recorded.
void TestVyrContactsEngine::schoolQueryWithoutAnswerStaysUnanswered()
{
    auto* manager = SchoolSettingManager::getInstance();
    QSignalSpy spy(manager, kFinished);
    manager->getUidDomainName(kUid, 1);
    QVERIFY(!spy.wait(100));
    QCOMPARE(manager->queries().size(), 1);
    QCOMPARE(manager->pendingAnswers(), 0);
}

// An error serves one query; the next query takes the next answer.
void TestVyrContactsEngine::schoolEachQueuedAnswerServesOneQuery()
{
    auto* manager = SchoolSettingManager::getInstance();
    manager->queueError(kUid, 1, 0, 3, QStringLiteral("busy"));
    manager->queueAnswer(kUid, 1, QStringLiteral("a.edu"));
    QSignalSpy spy(manager, kFinished);
    manager->getUidDomainName(kUid, 1);
    QVERIFY(spy.wait(1000));
    QCOMPARE(spy.last().at(4).toInt(), 3);
    QCOMPARE(manager->getUidDomainName(kUid, 1), QString());
    QVERIFY(spy.wait(1000));
    QCOMPARE(spy.last().at(4).toInt(), 1);
    QCOMPARE(manager->getUidDomainName(kUid, 1), QStringLiteral("a.edu"));
    QCOMPARE(manager->queries().size(), 2);
}

// An unasked answer for another flag makes only that flag's domain known.
void TestVyrContactsEngine::schoolAnswerForAnotherFlag()
{
    auto* manager = SchoolSettingManager::getInstance();
    QSignalSpy spy(manager, kFinished);
    manager->answer(kUid, QStringLiteral("two.edu"), 2, 0, 1, QString());
    QCOMPARE(spy.count(), 0);
    QVERIFY(spy.wait(1000));
    QCOMPARE(spy.first().at(2).toInt(), 2);
    QCOMPARE(manager->getUidDomainName(kUid, 2), QStringLiteral("two.edu"));
    QCOMPARE(manager->getUidDomainName(kUid, 1), QString());
}

// clear() forgets domains and queries, and the answers on their way never arrive.
void TestVyrContactsEngine::schoolClearDropsAnswersOnTheirWay()
{
    auto* manager = SchoolSettingManager::getInstance();
    manager->putDomain(kUid, 2, QStringLiteral("x.edu"));
    manager->queueAnswer(kUid, 1, QStringLiteral("a.edu"), 10);
    manager->getUidDomainName(kUid, 1);
    QSignalSpy spy(manager, kFinished);
    manager->clear();
    QCOMPARE(manager->pendingAnswers(), 0);
    QVERIFY(!spy.wait(100));
    QVERIFY(manager->queries().isEmpty());
    QCOMPARE(manager->getUidDomainName(kUid, 2), QString());
}

QTEST_MAIN(TestVyrContactsEngine)
#include "tst_vyrcontactsengine.moc"
