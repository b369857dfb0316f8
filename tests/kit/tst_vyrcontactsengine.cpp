#include "ContactsEngine.h"

#include <QtTest>

using namespace VyrEngine;

// The contacts engine: clusters and the classrooms' clusters.
class TestVyrContactsEngine : public QObject
{
    Q_OBJECT
private slots:
    void init();

    void clustersAndClassrooms();
};

void TestVyrContactsEngine::init()
{
    ContactsEngine::instance()->clear();
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


QTEST_MAIN(TestVyrContactsEngine)
#include "tst_vyrcontactsengine.moc"
