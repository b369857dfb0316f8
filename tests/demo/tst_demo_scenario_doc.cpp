// docs/SCENARIO.md is written by hand; this keeps it the same as the table the
// checker uses: every field list of the table has its table in the document
// (marked "<!-- fields: KEY -->"), with the same fields in the same order, and
// the same type, "required" and default for each.

#include "ScenarioFormat.h"

#include <QFile>
#include <QRegularExpression>
#include <QtTest>

namespace {

using Fields = QVector<ScenarioFormat::Field>;

// Marker key -> the document's rows of that table, each "name|type|required|default".
QMap<QString, QStringList> documentTables()
{
    QMap<QString, QStringList> tables;
    QFile file(QStringLiteral(VYR_SOURCE_DIR "/docs/SCENARIO.md"));
    if (!file.open(QIODevice::ReadOnly | QIODevice::Text))
        return tables;
    const QStringList lines = QString::fromUtf8(file.readAll()).split(QLatin1Char('\n'));
    const QRegularExpression marker(QStringLiteral("^<!-- fields: (\\S+) -->$"));
    for (int i = 0; i < lines.size(); ++i) {
        const QRegularExpressionMatch match = marker.match(lines.at(i));
        if (!match.hasMatch())
            continue;
        QStringList rows;
        // The header and its rule line come first.
        for (int j = i + 3; j < lines.size() && lines.at(j).startsWith(QLatin1Char('|')); ++j) {
            QStringList cells = lines.at(j).split(QLatin1Char('|'));
            cells = cells.mid(1, 4);
            for (QString& cell : cells) {
                cell = cell.trimmed();
                if (cell.startsWith(QLatin1Char('`')) && cell.endsWith(QLatin1Char('`')))
                    cell = cell.mid(1, cell.size() - 2);
            }
            rows << cells.join(QLatin1Char('|'));
        }
        tables.insert(match.captured(1), rows);
    }
    return tables;
}

QStringList tableRows(const Fields& fields)
{
    QStringList rows;
    for (const ScenarioFormat::Field& field : fields) {
        rows << QStringList{field.name, ScenarioFormat::typeName(field.type),
                            field.required ? QStringLiteral("yes") : QStringLiteral("no"),
                            ScenarioFormat::defaultText(field)}
                    .join(QLatin1Char('|'));
    }
    return rows;
}

QMap<QString, Fields> formatTables()
{
    QMap<QString, Fields> tables;
    tables.insert(QStringLiteral("top"), ScenarioFormat::topLevelFields());
    for (const char* entry : {"cluster", "course", "lesson", "step"})
        tables.insert(QLatin1String(entry), ScenarioFormat::entryFields(QLatin1String(entry)));
    for (const ScenarioFormat::Action& action : ScenarioFormat::actions())
        tables.insert(action.name, action.fields);
    return tables;
}

} // namespace

class TestDemoScenarioDoc : public QObject
{
    Q_OBJECT
private slots:
    void everyTableIsDocumented_data();
    void everyTableIsDocumented();
    void documentNamesNothingElse();
    void readmeCommandsWorkFromAnyFolder_data();
    void readmeCommandsWorkFromAnyFolder();
};

void TestDemoScenarioDoc::everyTableIsDocumented_data()
{
    QTest::addColumn<QString>("key");
    const QMap<QString, Fields> tables = formatTables();
    for (auto it = tables.constBegin(); it != tables.constEnd(); ++it)
        QTest::newRow(qPrintable(it.key())) << it.key();
}

// The document's table for each action and field list matches the checker's, row by row.
void TestDemoScenarioDoc::everyTableIsDocumented()
{
    QFETCH(QString, key);
    const QMap<QString, QStringList> documented = documentTables();
    QVERIFY2(documented.contains(key), qPrintable(QStringLiteral("no \"<!-- fields: %1 -->\" table").arg(key)));
    QCOMPARE(documented.value(key), tableRows(formatTables().value(key)));
}

// No table in the document for an action or list the checker doesn't know.
void TestDemoScenarioDoc::documentNamesNothingElse()
{
    const QStringList documented = documentTables().keys();
    QVERIFY(!documented.isEmpty());
    QCOMPARE(documented, formatTables().keys());
}

namespace {

QString sourceText(const char* relativePath)
{
    QFile file(QStringLiteral(VYR_SOURCE_DIR "/") + QLatin1String(relativePath));
    return file.open(QIODevice::ReadOnly) ? QString::fromUtf8(file.readAll()) : QString();
}

} // namespace

void TestDemoScenarioDoc::readmeCommandsWorkFromAnyFolder_data()
{
    QTest::addColumn<QString>("command");
    for (const QString& line : sourceText("README.md").split(QLatin1Char('\n'))) {
        if (line.startsWith(QLatin1String("bash scripts/demo.sh ")))
            QTest::newRow(qPrintable(line.section(QLatin1Char('#'), 0, 0).simplified())) << line;
    }
}

// The README's demo commands name built-in scenarios (no path from the repository root) and
// screenshot folders that git ignores.
void TestDemoScenarioDoc::readmeCommandsWorkFromAnyFolder()
{
    QFETCH(QString, command);
    const QStringList words = command.section(QLatin1Char('#'), 0, 0).split(QLatin1Char(' '), Qt::SkipEmptyParts);
    const QString qrc = sourceText("src/apps/notice-demo/demo.qrc");
    const QString ignored = sourceText(".gitignore");
    for (int i = 0; i + 1 < words.size(); ++i) {
        const QString value = words.at(i + 1);
        if (words.at(i) == QLatin1String("--scenario") && value.contains(QLatin1String("scenarios/"))) {
            QVERIFY2(value.startsWith(QLatin1String(":/demo/scenarios/")), qPrintable(value));
            QVERIFY2(qrc.contains(QStringLiteral("<file>%1</file>").arg(value.mid(7))), qPrintable(value));
        }
        if (words.at(i) == QLatin1String("--screenshots")) {
            QVERIFY2(value.startsWith(QLatin1String("shots")), qPrintable(value));
            QVERIFY(ignored.split(QLatin1Char('\n')).contains(QStringLiteral("/shots*/")));
        }
    }
}

QTEST_GUILESS_MAIN(TestDemoScenarioDoc)
#include "tst_demo_scenario_doc.moc"
