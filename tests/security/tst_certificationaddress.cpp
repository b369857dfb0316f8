#include "CoreEngine.h"
#include "HostName_p.h"
#include "LogCapture.h"
#include "NotAuthSchoolNotice.h"
#include "SchoolSettingManager.h"
#include "TestKit.h"
#include "VyrSettings.h"

#include <QDesktopServices>
#include <QPushButton>
#include <QSignalSpy>
#include <QTemporaryDir>
#include <QtTest>

using Org::SchoolSettingManager;

namespace {

const quint64 kUid = 4242;
const QString kPath = QStringLiteral("/school/certification");
const QString kRefused = QStringLiteral("toAuthLink refused");

QString labels(int count, int length)
{
    QStringList parts;
    for (int i = 0; i < count; ++i)
        parts << QString(length, QLatin1Char('a' + i % 26));
    return parts.join(QLatin1Char('.'));
}

} // namespace

// Catches whatever QDesktopServices is asked to open, for every scheme an address could have.
class OpenedUrls : public QObject
{
    Q_OBJECT
public:
    QList<QUrl> opened;
public slots:
    void open(const QUrl& url) { opened << url; }
};

// The school's domain from the server becomes the host of the certification page, or nothing opens.
class TestCertificationAddress : public QObject
{
    Q_OBJECT
private slots:
    void initTestCase();
    void init();
    void cleanup();

    void hostNameRule_data();
    void hostNameRule();
    void addressOpened_data();
    void addressOpened();
    void domainGoneOpensTheGeneralPage();

private:
    void addDomainRows(bool withEmpty);

    QTemporaryDir m_dir;
    OpenedUrls m_urls;
};

void TestCertificationAddress::initTestCase()
{
    QVERIFY(TestKit::loadTranslations(QStringLiteral("en")));
    QVERIFY(m_dir.isValid());
    VyrSettings::setFolder(m_dir.path());
    for (const char* scheme : {"https", "http", "file", "javascript", "mailto", "ftp", "data"})
        QDesktopServices::setUrlHandler(QLatin1String(scheme), &m_urls, "open");
}

void TestCertificationAddress::init()
{
    SchoolSettingManager::getInstance()->clear();
    VyrEngine::CoreEngine::instance()->setCurrentUid(kUid);
    m_urls.opened.clear();
}

void TestCertificationAddress::cleanup()
{
    SchoolSettingManager::getInstance()->clear();
}

void TestCertificationAddress::addDomainRows(bool withEmpty)
{
    QTest::addColumn<QString>("domain");
    QTest::addColumn<bool>("bare");
    QTest::newRow("plain") << QStringLiteral("www.school.example") << true;
    QTest::newRow("single") << QStringLiteral("localschool") << true;
    QTest::newRow("upper") << QStringLiteral("WWW.School.Example") << true;
    QTest::newRow("hyphen") << QStringLiteral("my-school.example") << true;
    QTest::newRow("idn") << QStringLiteral("schule.bücher.example") << true;
    QTest::newRow("ace") << QStringLiteral("schule.xn--bcher-kva.example") << true;
    QTest::newRow("label63") << labels(1, 63) + QStringLiteral(".example") << true;
    QTest::newRow("len253") << labels(3, 63) + QLatin1Char('.') + QString(61, QLatin1Char('z')) << true;
    QTest::newRow("path") << QStringLiteral("evil.example/phish?x=") << false;
    QTest::newRow("user") << QStringLiteral("www.school.example@evil.example") << false;
    QTest::newRow("blank") << QStringLiteral("a b") << false;
    QTest::newRow("port") << QStringLiteral("host:8080") << false;
    QTest::newRow("script") << QStringLiteral("javascript:alert(1)") << false;
    QTest::newRow("lead-") << QStringLiteral("-bad.example") << false;
    QTest::newRow("trail-") << QStringLiteral("bad-.example") << false;
    QTest::newRow("dots") << QStringLiteral("a..b") << false;
    QTest::newRow("leaddot") << QStringLiteral(".school.example") << false;
    QTest::newRow("traildot") << QStringLiteral("school.example.") << false;
    QTest::newRow("label64") << labels(1, 64) + QStringLiteral(".example") << false;
    QTest::newRow("len254") << labels(3, 63) + QLatin1Char('.') + QString(62, QLatin1Char('z')) << false;
    QTest::newRow("len300") << QString(300, QLatin1Char('a')) << false;
    QTest::newRow("huge") << labels(20000, 10) << false;
    if (withEmpty)
        QTest::newRow("empty") << QString() << false;
    QTest::newRow("scheme") << QStringLiteral("https://www.school.example") << false;
    QTest::newRow("query") << QStringLiteral("www.school.example?x") << false;
    QTest::newRow("fragment") << QStringLiteral("www.school.example#x") << false;
    QTest::newRow("backslash") << QStringLiteral("evil.example\\www.school.example") << false;
    QTest::newRow("percent") << QStringLiteral("evil.example%2F") << false;
    QTest::newRow("underscore") << QStringLiteral("my_school.example") << false;
    QTest::newRow("newline") << QStringLiteral("www.school.example\nevil") << false;
    QTest::newRow("fullslash") << QStringLiteral("evil.example\uFF0Fphish") << false;
    QTest::newRow("ipv6") << QStringLiteral("[::1]") << false;
}

// Letters, digits and hyphens in labels of 1 to 63, at most 253 in all; nothing else.
void TestCertificationAddress::hostNameRule_data()
{
    addDomainRows(true);
}

void TestCertificationAddress::hostNameRule()
{
    QFETCH(QString, domain);
    QFETCH(bool, bare);
    QString reason;
    QCOMPARE(HostName::isBare(domain, &reason), bare);
    QCOMPARE(reason.isEmpty(), bare);
}

// A bare host name opens today's address on it; anything else opens nothing, logs why and closes.
void TestCertificationAddress::addressOpened_data()
{
    // An empty domain keeps the button disabled; its case is the general page's, below.
    addDomainRows(false);
}

void TestCertificationAddress::addressOpened()
{
    QFETCH(QString, domain);
    QFETCH(bool, bare);
    SchoolSettingManager::getInstance()->putDomain(kUid, 1, domain);
    NotAuthSchoolNotice notice;
    notice.show();
    auto* button = notice.findChild<QPushButton*>(QStringLiteral("IM_GreenBgWhiteText_Button"));
    QVERIFY(button);
    QVERIFY(button->isEnabled());
    QSignalSpy closed(&notice, &NotAuthSchoolNotice::signalClose);
    LogCapture log;
    QTest::mouseClick(button, Qt::LeftButton);
    QCOMPARE(closed.count(), 1);
    if (bare) {
        const QString address = QStringLiteral("https://") + domain + kPath;
        QCOMPARE(m_urls.opened, QList<QUrl>{QUrl(address, QUrl::TolerantMode)});
        QCOMPARE(log.startingWith(kRefused).size(), 0);
        QCOMPARE(log.matching(QStringLiteral("toAuthLink \"%1\"").arg(address)).size(), 1);
        return;
    }
    QCOMPARE(m_urls.opened, QList<QUrl>());
    const auto lines = log.startingWith(kRefused);
    QCOMPARE(lines.size(), 1);
    QCOMPARE(lines.first().type, QtInfoMsg);
    QVERIFY(lines.first().file.endsWith(QLatin1String("NotAuthSchoolNotice.cpp")));
    // Bounded in the log whatever its length.
    QVERIFY(lines.first().text.size() < 400);
}

// Intended: a domain gone empty after the button was enabled opens the service's general page.
void TestCertificationAddress::domainGoneOpensTheGeneralPage()
{
    SchoolSettingManager::getInstance()->putDomain(kUid, 1, QStringLiteral("www.school.example"));
    NotAuthSchoolNotice notice;
    auto* manager = SchoolSettingManager::getInstance();
    manager->clear();
    QSignalSpy answered(manager, &SchoolSettingManager::signalGetUidDomainNameFinished);
    manager->answer(kUid, QString(), 1, 0, 2, QString());
    QVERIFY(answered.wait(1000));
    QVERIFY(notice.findChild<QPushButton*>(QStringLiteral("IM_GreenBgWhiteText_Button"))->isEnabled());
    QSignalSpy closed(&notice, &NotAuthSchoolNotice::signalClose);
    QVERIFY(QMetaObject::invokeMethod(&notice, "toAuthLink"));
    QCOMPARE(m_urls.opened, QList<QUrl>{QUrl(QStringLiteral("https://www.vyr.example/school/certification"))});
    QCOMPARE(closed.count(), 1);
}

QTEST_MAIN(TestCertificationAddress)
#include "tst_certificationaddress.moc"
