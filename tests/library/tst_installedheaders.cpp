#include <QDir>
#include <QFile>
#include <QFileInfo>
#include <QRegularExpression>
#include <QtTest>

// The installed headers are the library's API and nothing more: no screen
// override, no private header, no friend inside the library, and the demo's
// host part includes nothing else of the library.
class TestInstalledHeaders : public QObject
{
    Q_OBJECT
private slots:
    void listHoldsTheApi();
    void noOverrideNorPrivateHeader_data();
    void noOverrideNorPrivateHeader();
    void noFriendInsideTheLibrary_data();
    void noFriendInsideTheLibrary();
    void demoHostIncludesInstalledHeadersOnly_data();
    void demoHostIncludesInstalledHeadersOnly();
};

namespace {

const QString kLibraryDir = QStringLiteral(VYR_SOURCE_DIR "/src/plugins/im/VyrNotice");

QString readFile(const QString& path)
{
    QFile file(path);
    if (!file.open(QIODevice::ReadOnly))
        return QString();
    return QString::fromUtf8(file.readAll());
}

// Every header that the library's install rules copy, as the build wrote them.
QStringList installedHeaders()
{
    static const QStringList headers = [] {
        QStringList found;
        const QRegularExpression quoted(QStringLiteral("\"([^\"]+\\.h)\""));
        auto it = quoted.globalMatch(readFile(QStringLiteral(VYRNOTICE_INSTALL_SCRIPT)));
        while (it.hasNext())
            found << it.next().captured(1);
        found.removeDuplicates();
        return found;
    }();
    return headers;
}

void addHeaderRows()
{
    QTest::addColumn<QString>("path");
    for (const QString& path : installedHeaders())
        QTest::newRow(qPrintable(QFileInfo(path).fileName())) << path;
}

// The library header, other than `except`, that defines a class of this name; empty when none does.
QString otherLibraryHeaderDefining(const QString& name, const QString& except)
{
    const QRegularExpression definition(
        QStringLiteral("\\b(class|struct)\\s+(\\w+_EXPORT\\s+)?%1\\b\\s*(final\\s*)?[:{]").arg(name));
    const QStringList headers = QDir(kLibraryDir).entryList({QStringLiteral("*.h")}, QDir::Files);
    for (const QString& header : headers) {
        if (header != except && definition.match(readFile(QDir(kLibraryDir).filePath(header))).hasMatch())
            return header;
    }
    return QString();
}

} // namespace

// The list is read from the build's install rules; it can't pass by being empty.
void TestInstalledHeaders::listHoldsTheApi()
{
    QStringList names;
    for (const QString& path : installedHeaders())
        names << QFileInfo(path).fileName();
    for (const char* header : {"ScreenCorner.h", "NoticeStacker.h", "NoticeListWidget.h", "PopNoticeBaseWidget.h",
                               "VyrNoticeExport.h"})
        QVERIFY2(names.contains(QString::fromLatin1(header)), header);
    QVERIFY(!names.contains(QStringLiteral("ScreenCornerOverride_p.h")));
    QVERIFY(!names.contains(QStringLiteral("NoticeWindowMetrics_p.h")));
}

void TestInstalledHeaders::noOverrideNorPrivateHeader_data()
{
    addHeaderRows();
}

// A simulated screen is the library's internal business; an installed header includes no private one.
void TestInstalledHeaders::noOverrideNorPrivateHeader()
{
    QFETCH(QString, path);
    QVERIFY2(!path.endsWith(QLatin1String("_p.h")), qPrintable(path));
    const QString code = readFile(path);
    QVERIFY2(!code.isEmpty(), qPrintable(path));
    const QRegularExpression override(QStringLiteral("\\b(set|clear|has)Override\\b|ScreenCornerOverride"));
    QVERIFY2(!override.match(code).hasMatch(), qPrintable(override.match(code).captured(0)));
    const QRegularExpression privateInclude(QStringLiteral("#\\s*include\\s*[\"<]\\w+_p\\.h[\">]"));
    QVERIFY2(!privateInclude.match(code).hasMatch(), qPrintable(privateInclude.match(code).captured(0)));
}

void TestInstalledHeaders::noFriendInsideTheLibrary_data()
{
    addHeaderRows();
}

// No installed class opens its private members to a class of the library that another header defines.
void TestInstalledHeaders::noFriendInsideTheLibrary()
{
    QFETCH(QString, path);
    const QRegularExpression friendClass(QStringLiteral("\\bfriend\\s+(class|struct)\\s+(\\w+)"));
    auto it = friendClass.globalMatch(readFile(path));
    while (it.hasNext()) {
        const QString name = it.next().captured(2);
        const QString other = otherLibraryHeaderDefining(name, QFileInfo(path).fileName());
        QVERIFY2(other.isEmpty(), qPrintable(QStringLiteral("friend class %1, defined in %2").arg(name, other)));
    }
}

void TestInstalledHeaders::demoHostIncludesInstalledHeadersOnly_data()
{
    QTest::addColumn<QString>("path");
    const QDir host(QStringLiteral(VYR_SOURCE_DIR "/src/apps/notice-demo/host"));
    const QStringList files = host.entryList({QStringLiteral("*.h"), QStringLiteral("*.cpp")}, QDir::Files);
    for (const QString& file : files)
        QTest::newRow(qPrintable(file)) << host.filePath(file);
}

// The demo's host part is written as a client writes it: the library's installed headers only.
void TestInstalledHeaders::demoHostIncludesInstalledHeadersOnly()
{
    QFETCH(QString, path);
    QStringList installed;
    for (const QString& header : installedHeaders())
        installed << QFileInfo(header).fileName();
    const QRegularExpression include(QStringLiteral("#\\s*include\\s*\"([^\"]+)\""));
    const QString code = readFile(path);
    QVERIFY2(!code.isEmpty(), qPrintable(path));
    auto it = include.globalMatch(code);
    while (it.hasNext()) {
        const QString header = it.next().captured(1);
        if (QFileInfo::exists(QDir(kLibraryDir).filePath(header)))
            QVERIFY2(installed.contains(header), qPrintable(header));
    }
}

QTEST_GUILESS_MAIN(TestInstalledHeaders)
#include "tst_installedheaders.moc"
