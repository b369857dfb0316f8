#include "ScenarioChecker.h"

#include <QJsonObject>
#include <QtTest>

// The scenario reader on bytes, without the demo process around it.
class TestDemoScenarioReader : public QObject
{
    Q_OBJECT
private slots:
    void syntaxErrorAtTheEnd_data();
    void syntaxErrorAtTheEnd();
};

void TestDemoScenarioReader::syntaxErrorAtTheEnd_data()
{
    QTest::addColumn<QByteArray>("json");
    QTest::addColumn<QString>("error");
    QTest::newRow("open-string") << QByteArray(R"({"steps": [ {"do": "10 ])")
                                 << QStringLiteral("s.json: line 1, column 25: JSON syntax error: unterminated string");
    QTest::newRow("open-utf8-string") << QByteArray("{\"a\": \"\xc3\xa9\xc3\xa9")
                                      << QStringLiteral("s.json: line 1, column 10: JSON syntax error: unterminated string");
    QTest::newRow("open-object") << QByteArray("{\n\"steps\": []")
                                 << QStringLiteral("s.json: line 2, column 12: JSON syntax error: unterminated object");
    QTest::newRow("empty") << QByteArray()
                           << QStringLiteral("s.json: line 1, column 1: JSON syntax error: illegal value");
}

// A file that ends inside a string or an object is refused with the place at
// its end; the reader never looks past the data (the sanitizer build shows it).
void TestDemoScenarioReader::syntaxErrorAtTheEnd()
{
    QFETCH(QByteArray, json);
    QFETCH(QString, error);
    QJsonObject scenario;
    QStringList errors;
    QVERIFY(!ScenarioChecker::read(json, QStringLiteral("s.json"), &scenario, &errors));
    QCOMPARE(errors, QStringList{error});
    QVERIFY(scenario.isEmpty());
}

QTEST_GUILESS_MAIN(TestDemoScenarioReader)
#include "tst_demo_scenario_reader.moc"
