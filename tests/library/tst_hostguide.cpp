#include <QFile>
#include <QtTest>

// The host guide shows the example host's code as the way to start; the two must not drift apart.
class TestHostGuide : public QObject
{
    Q_OBJECT
private slots:
    void showsTheExampleVerbatim_data();
    void showsTheExampleVerbatim();
};

namespace {

QString readSource(const QString& relativePath)
{
    QFile file(QStringLiteral(VYR_SOURCE_DIR "/") + relativePath);
    if (!file.open(QIODevice::ReadOnly))
        return QString();
    return QString::fromUtf8(file.readAll());
}

} // namespace

void TestHostGuide::showsTheExampleVerbatim_data()
{
    QTest::addColumn<QString>("file");
    QTest::newRow("main.cpp") << "examples/minimal-host/main.cpp";
    QTest::newRow("CMakeLists.txt") << "examples/minimal-host/CMakeLists.txt";
}

void TestHostGuide::showsTheExampleVerbatim()
{
    QFETCH(QString, file);
    const QString code = readSource(file);
    QVERIFY2(code.size() > 200, qPrintable(file));
    const QString guide = readSource(QStringLiteral("docs/HOST.md"));
    QVERIFY2(guide.contains(code), qPrintable(file + QStringLiteral(" is not in docs/HOST.md as it stands")));
}

QTEST_GUILESS_MAIN(TestHostGuide)
#include "tst_hostguide.moc"
