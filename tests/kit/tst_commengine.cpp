#include "Model.h"

#include <QPointer>
#include <QtTest>

// The classroom model of the communication engine.
class TestCommEngine : public QObject
{
    Q_OBJECT
private slots:
    void init();

    void classroomModelComesAndGoes();
};

void TestCommEngine::init()
{
    Model::dropInstance();
}

// The classroom model exists between createInstance and dropInstance only.
void TestCommEngine::classroomModelComesAndGoes()
{
    QVERIFY(!Model::getInstance());
    Model::createInstance(3, 4);
    QPointer<Model> model = Model::getInstance();
    QVERIFY(model);
    QCOMPARE(model->getCourseId(), 3ull);
    QCOMPARE(model->getClassroomId(), 4ull);
    Model::dropInstance();
    QVERIFY(!model);
    QVERIFY(!Model::getInstance());
}


QTEST_MAIN(TestCommEngine)
#include "tst_commengine.moc"
