#include "LogCapture.h"
#include "NoticeListWidget.h"
#include "NoticeTranslator.h"

#include <QFile>
#include <QLabel>
#include <QtTest>

// The library's own translations: embedded, English without being asked, and
// one installer for a host's locale. Nothing here loads a translation file by hand.
class TestNoticeTranslator : public QObject
{
    Q_OBJECT
private slots:
    void englishWithoutAnyLoading();
    void windowTitleIsTranslatedWithoutAnyLoading();
    void compiledTranslationsAreEmbedded();
    void installChinese();
    void installEnglishLocaleOfAnotherCountry();
    void unknownLocaleFallsBackToEnglishWithOneLogLine();
    void secondInstallReplacesTheFirst();
    void cleanup();
};

namespace {
const char* const kKey = "ID_GatherNotice_LessonNotice";
} // namespace

void TestNoticeTranslator::cleanup()
{
    NoticeTranslator::install(QLocale(QLocale::English));
}

// Runs first: a host that loads no translation gets English, not the key.
void TestNoticeTranslator::englishWithoutAnyLoading()
{
    QCOMPARE(qtTrId(kKey, -1), QStringLiteral("Lesson notices (%1)"));
    QCOMPARE(NoticeTranslator::installedLocale().language(), QLocale::English);
}

// The gathered window's title, as a user sees it, is English text with its count.
void TestNoticeTranslator::windowTitleIsTranslatedWithoutAnyLoading()
{
    NoticeListWidget window(VyrEngine::Lesson);
    auto* title = window.findChild<QLabel*>(QStringLiteral("titleLabel"));
    QVERIFY(title);
    QVERIFY2(!title->text().startsWith(QLatin1String("ID_")), qPrintable(title->text()));
    QVERIFY2(title->text().startsWith(QLatin1String("Lesson notices")), qPrintable(title->text()));
}

// Both languages ride in the library's resources.
void TestNoticeTranslator::compiledTranslationsAreEmbedded()
{
    QCOMPARE(NoticeTranslator::resourceDirectory(), QStringLiteral(":/VyrNotice/translations"));
    for (const char* name : {"VyrNotice_en.qm", "VyrNotice_zh_CN.qm"}) {
        QFile file(NoticeTranslator::resourceDirectory() + QLatin1Char('/') + QLatin1String(name));
        QVERIFY2(file.open(QIODevice::ReadOnly), name);
        QVERIFY2(file.size() > 100, name);
    }
}

// Simplified Chinese is found for zh_CN and takes over the texts.
void TestNoticeTranslator::installChinese()
{
    QVERIFY(NoticeTranslator::install(QLocale(QStringLiteral("zh_CN"))));
    QCOMPARE(qtTrId(kKey, -1), QStringLiteral("上课通知 (%1)"));
    QCOMPARE(NoticeTranslator::installedLocale().language(), QLocale::Chinese);
}

// en_GB has no file of its own; the English one serves it, and that is a success.
void TestNoticeTranslator::installEnglishLocaleOfAnotherCountry()
{
    NoticeTranslator::install(QLocale(QStringLiteral("zh_CN")));
    QVERIFY(NoticeTranslator::install(QLocale(QStringLiteral("en_GB"))));
    QCOMPARE(qtTrId(kKey, -1), QStringLiteral("Lesson notices (%1)"));
    QCOMPARE(NoticeTranslator::installedLocale().language(), QLocale::English);
}

// A language the library doesn't have: English, false, and exactly one info line naming the locale.
void TestNoticeTranslator::unknownLocaleFallsBackToEnglishWithOneLogLine()
{
    NoticeTranslator::install(QLocale(QStringLiteral("zh_CN")));
    LogCapture log;
    QVERIFY(!NoticeTranslator::install(QLocale(QStringLiteral("fr_FR"))));
    const auto lines = log.startingWith(QStringLiteral("no notice translation"));
    QCOMPARE(lines.size(), 1);
    QCOMPARE(log.lines().size(), 1);
    QCOMPARE(lines.first().type, QtInfoMsg);
    QVERIFY2(lines.first().text.contains(QLatin1String("fr_FR")), qPrintable(lines.first().text));
    QCOMPARE(lines.first().file, QStringLiteral("src/plugins/im/VyrNotice/NoticeTranslator.cpp"));
    QCOMPARE(qtTrId(kKey, -1), QStringLiteral("Lesson notices (%1)"));
    QCOMPARE(NoticeTranslator::installedLocale().language(), QLocale::English);
}

// Installing twice leaves one translator of the library, not a stack of them.
void TestNoticeTranslator::secondInstallReplacesTheFirst()
{
    QVERIFY(NoticeTranslator::install(QLocale(QStringLiteral("zh_CN"))));
    QVERIFY(NoticeTranslator::install(QLocale(QStringLiteral("zh_CN"))));
    const int translators = QCoreApplication::instance()->findChildren<QTranslator*>().size();
    QCOMPARE(translators, 2); // English underneath, Chinese on top
    QVERIFY(NoticeTranslator::install(QLocale(QStringLiteral("en_US"))));
    QCOMPARE(QCoreApplication::instance()->findChildren<QTranslator*>().size(), 1);
    QCOMPARE(qtTrId(kKey, -1), QStringLiteral("Lesson notices (%1)"));
}

QTEST_MAIN(TestNoticeTranslator)
#include "tst_noticetranslator.moc"
