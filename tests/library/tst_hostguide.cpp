#include <QFile>
#include <QRegularExpression>
#include <QtTest>

// The host guide shows the example host's code as the way to start; the two must not drift apart.
class TestHostGuide : public QObject
{
    Q_OBJECT
private slots:
    void showsTheExampleVerbatim_data();
    void showsTheExampleVerbatim();
    void engineTableNamesTheKitCalls_data();
    void engineTableNamesTheKitCalls();
    void engineTableCallsExist();
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

namespace {

// The rows of the host guide's table of what each window needs from the engines.
QStringList engineTableRows()
{
    const QString guide = readSource(QStringLiteral("docs/HOST.md"));
    const int start = guide.indexOf(QLatin1String("## What each window needs from the engines"));
    if (start < 0)
        return {};
    const int end = guide.indexOf(QLatin1String("\n## "), start + 1);
    QStringList rows;
    for (const QString& line : guide.mid(start, end - start).split(QLatin1Char('\n'))) {
        if (line.startsWith(QLatin1String("| ")) && !line.startsWith(QLatin1String("| Window")))
            rows << line;
    }
    return rows;
}

} // namespace

void TestHostGuide::engineTableNamesTheKitCalls_data()
{
    QTest::addColumn<QString>("call");
    for (const char* call : {"putLesson", "putCluster", "putUser", "putFriendRequest", "setUiDataReady",
                             "setClassroomCluster", "setClusterMemberNickname", "putDomain", "putCoursePixmap",
                             "putClusterAvatar", "setFileServerPrefix"})
        QTest::newRow(call) << QString::fromLatin1(call);
}

// Every host-side call a window depends on has its row: what it gives, and what the user sees without it.
void TestHostGuide::engineTableNamesTheKitCalls()
{
    QFETCH(QString, call);
    bool found = false;
    for (const QString& row : engineTableRows()) {
        const QStringList cells = row.split(QLatin1Char('|'));
        if (cells.size() < 5 || !cells.at(2).contains(call + QLatin1Char('(')))
            continue;
        found = true;
        QVERIFY2(!cells.at(3).trimmed().isEmpty() && !cells.at(4).trimmed().isEmpty(), qPrintable(row));
    }
    QVERIFY2(found, qPrintable(call + QStringLiteral(" has no row in docs/HOST.md")));
}

// Each call the table names is declared by the kit, so the table can't name a call that isn't there.
void TestHostGuide::engineTableCallsExist()
{
    QString kit;
    for (const char* header :
         {"src/libs/VyrCourseEngine/CourseEngine.h", "src/libs/VyrContactsEngine/ContactsEngine.h",
          "src/libs/VyrContactsEngine/SchoolSettingManager.h", "src/libs/VyrCoreEngine/CoreEngine.h",
          "src/libs/VyrCoreEngine/AvatarManager.h", "src/libs/VyrNoticeEngine/NoticeEngine.h",
          "src/libs/VyrUtils/VyrHttpManager.h"})
        kit += readSource(QString::fromLatin1(header));
    const QStringList rows = engineTableRows();
    QVERIFY(rows.size() >= 10);
    const QRegularExpression call(QStringLiteral("\\b((?:put|set)[A-Z]\\w*)\\("));
    for (const QString& row : rows) {
        auto it = call.globalMatch(row.section(QLatin1Char('|'), 2, 2));
        while (it.hasNext()) {
            const QString name = it.next().captured(1);
            QVERIFY2(kit.contains(QStringLiteral(" %1(").arg(name)), qPrintable(name));
        }
    }
}

QTEST_GUILESS_MAIN(TestHostGuide)
#include "tst_hostguide.moc"
