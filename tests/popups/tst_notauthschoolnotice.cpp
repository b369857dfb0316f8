#include "CoreEngine.h"
#include "LogCapture.h"
#include "NotAuthSchoolNotice.h"
#include "PopNoticeBaseWidget.h"
#include "SchoolSettingManager.h"
#include "TestKit.h"
#include "VyrSettings.h"
#include "VyrUtils.h"

#include <QCheckBox>
#include <QDesktopServices>
#include <QFile>
#include <QLabel>
#include <QPushButton>
#include <QSettings>
#include <QSignalSpy>
#include <QTemporaryDir>
#include <QTimer>
#include <QVBoxLayout>
#include <QtTest>

using Org::SchoolSettingManager;

namespace {

const quint64 kUid = 4242;
const QString kSetting = QStringLiteral("NOT_AUTH_SCHOOL_NOTICE");
const QString kGeneralPage = QStringLiteral("https://www.vyr.example/school/certification");

} // namespace

// Catches what QDesktopServices would open.
class UrlCatcher : public QObject
{
    Q_OBJECT
public:
    QList<QUrl> opened;
public slots:
    void open(const QUrl& url) { opened << url; }
};

// The school certification reminder: its layout, the domain it asks for, the
// setting it writes and the page it opens.
class TestNotAuthSchoolNotice : public QObject
{
    Q_OBJECT
private slots:
    void initTestCase();
    void init();
    void cleanup();

    void isAPlainWidgetWithItsLayout();
    void styleSheetStylesTheThreeNames();
    void asksForTheDomainAtConstruction();
    void knownDomainEnablesTheButtonAtOnce();
    void answerEnablesTheButton();
    void answerIsHandledExactlyOnce();
    void answerOfAnotherFlagChangesNothing_data();
    void answerOfAnotherFlagChangesNothing();
    void errorAnswerStoresDomainAndLeavesButton_data();
    void errorAnswerStoresDomainAndLeavesButton();
    void successWithoutDomainDisablesTheButton();
    void managerDomainReplacesTheAnswersUrl();
    void bothLogLines();
    void everyClickWritesTheSetting();
    void cancelDoesNotUndoTheSetting();
    void unwritableSettingsFolderIsLoggedAndKeepsTheValue();
    void certificationOpensTheSchoolsPageAndCloses();
    void certificationWithDomainGoneOpensTheGeneralPage();
    void cancelCloses();
    void lateAnswerAfterTheNoticeIsGone();
    void buttonsFitTheirTexts_data();
    void buttonsFitTheirTexts();

private:
    NotAuthSchoolNotice* makeNotice();
    QPushButton* certificationButton() const;
    QPushButton* cancelButton() const;
    QCheckBox* remindBox() const;
    QVariant settingInFile() const;
    void answer(const QString& url, int flag, int errorNo, int networkError = 0,
                const QString& errorString = QString());
    void clickCertification();

    QScopedPointer<QTemporaryDir> m_dir;
    QScopedPointer<NotAuthSchoolNotice> m_notice;
    UrlCatcher m_urls;
};

void TestNotAuthSchoolNotice::initTestCase()
{
    QVERIFY(TestKit::loadTranslations(QStringLiteral("en")));
    QDesktopServices::setUrlHandler(QStringLiteral("https"), &m_urls, "open");
    QDesktopServices::setUrlHandler(QStringLiteral("http"), &m_urls, "open");
}

void TestNotAuthSchoolNotice::init()
{
    SchoolSettingManager::getInstance()->clear();
    VyrEngine::CoreEngine::instance()->setCurrentUid(kUid);
    m_dir.reset(new QTemporaryDir);
    QVERIFY(m_dir->isValid());
    VyrSettings::setFolder(m_dir->path());
    m_urls.opened.clear();
}

void TestNotAuthSchoolNotice::cleanup()
{
    m_notice.reset();
    SchoolSettingManager::getInstance()->clear();
}

NotAuthSchoolNotice* TestNotAuthSchoolNotice::makeNotice()
{
    m_notice.reset(new NotAuthSchoolNotice);
    m_notice->resize(420, 200);
    m_notice->show();
    return m_notice.data();
}

QPushButton* TestNotAuthSchoolNotice::certificationButton() const
{
    return m_notice->findChild<QPushButton*>(QStringLiteral("IM_GreenBgWhiteText_Button"));
}

QPushButton* TestNotAuthSchoolNotice::cancelButton() const
{
    return m_notice->findChild<QPushButton*>(QStringLiteral("IM_WhiteBgBlackText_Button"));
}

QCheckBox* TestNotAuthSchoolNotice::remindBox() const
{
    return m_notice->findChild<QCheckBox*>(QStringLiteral("remindCBx"));
}

QVariant TestNotAuthSchoolNotice::settingInFile() const
{
    // A fresh reader each time, so only what is on disk counts.
    QSettings file(m_dir->filePath(QStringLiteral("VyrSettings.ini")), QSettings::IniFormat);
    return file.value(kSetting);
}

void TestNotAuthSchoolNotice::answer(const QString& url, int flag, int errorNo, int networkError,
                                     const QString& errorString)
{
    auto* manager = SchoolSettingManager::getInstance();
    QSignalSpy spy(manager, &SchoolSettingManager::signalGetUidDomainNameFinished);
    manager->answer(kUid, url, flag, networkError, errorNo, errorString);
    QVERIFY(spy.wait(1000));
}

void TestNotAuthSchoolNotice::clickCertification()
{
    // The button may be disabled on purpose here: the slot is what a click reaches.
    QVERIFY(QMetaObject::invokeMethod(m_notice.data(), "toAuthLink"));
}

// No window flags, no base pop-up, the three named widgets in their layout and texts.
void TestNotAuthSchoolNotice::isAPlainWidgetWithItsLayout()
{
    QWidget host;
    NotAuthSchoolNotice inHost(&host);
    QCOMPARE(inHost.windowType(), Qt::Widget);
    QVERIFY(!inHost.isWindow());
    auto* notice = makeNotice();
    QVERIFY(!qobject_cast<PopNoticeBaseWidget*>(notice));
    QVERIFY(notice->findChildren<QTimer*>().isEmpty());
    auto* message = notice->findChild<QLabel*>(QStringLiteral("IM_MessageBoxContent"));
    QVERIFY(message);
    QVERIFY(message->wordWrap());
    QCOMPARE(message->text(), qtTrId("ID_NotAuthSchoolNotice_NeedCertification"));
    QVERIFY(!message->text().startsWith(QLatin1String("ID_")));
    QCOMPARE(remindBox()->text(), QStringLiteral("Don't remind me again"));
    QCOMPARE(remindBox()->styleSheet(), QStringLiteral("color: #8D9AA9;"));
    QCOMPARE(remindBox()->property("GlobalStyle").toString(), QStringLiteral("QCheckBox_Normal"));
    QCOMPARE(certificationButton()->text(), QStringLiteral("Certify"));
    QCOMPARE(cancelButton()->text(), QStringLiteral("Cancel"));
    QCOMPARE(certificationButton()->font().pixelSize(), 14);
    QCOMPARE(cancelButton()->font().pixelSize(), 14);
    auto* main = qobject_cast<QVBoxLayout*>(notice->layout());
    QVERIFY(main);
    QCOMPARE(main->contentsMargins(), QMargins(24, 20, 24, 12));
    QCOMPARE(main->spacing(), 0);
    QCOMPARE(main->itemAt(0)->widget(), message);
    QCOMPARE(main->itemAt(1)->spacerItem()->sizeHint().height(), 20);
    QCOMPARE(main->itemAt(2)->widget(), remindBox());
    QCOMPARE(main->itemAt(3)->spacerItem()->sizeHint().height(), 24);
    auto* row = qobject_cast<QHBoxLayout*>(main->itemAt(4)->layout());
    QVERIFY(row);
    QCOMPARE(row->contentsMargins(), QMargins());
    QVERIFY(row->itemAt(0)->spacerItem());
    QCOMPARE(row->itemAt(1)->widget(), cancelButton());
    QCOMPARE(row->itemAt(2)->spacerItem()->sizeHint().width(), 8);
    QCOMPARE(row->itemAt(3)->widget(), certificationButton());
    // The cancel button stands left of the certification button, both at the right.
    QVERIFY(cancelButton()->geometry().right() < certificationButton()->geometry().left());
    QCOMPARE(certificationButton()->geometry().right(), notice->width() - 24 - 1);
}

// The style sheet from the resource is the notice's and colours its buttons.
void TestNotAuthSchoolNotice::styleSheetStylesTheThreeNames()
{
    QFile file(QStringLiteral(":/im/qss/notice/notauthschoolnotice.qss"));
    QVERIFY(file.open(QIODevice::ReadOnly));
    const QString sheet = QString::fromUtf8(file.readAll());
    for (const char* name : {"#IM_MessageBoxContent", "#IM_GreenBgWhiteText_Button", "#IM_WhiteBgBlackText_Button"})
        QVERIFY2(sheet.contains(QLatin1String(name)), name);
    SchoolSettingManager::getInstance()->putDomain(kUid, 1, QStringLiteral("school.edu"));
    auto* notice = makeNotice();
    QCOMPARE(notice->styleSheet(), sheet);
    QVERIFY(QTest::qWaitForWindowExposed(notice));
    const QImage green = certificationButton()->grab().toImage();
    QCOMPARE(QColor(green.pixel(green.width() / 2, 3)).name(), QStringLiteral("#009265"));
    const QImage white = cancelButton()->grab().toImage();
    QCOMPARE(QColor(white.pixel(white.width() / 2, 3)).name(), QStringLiteral("#ffffff"));
}

// The domain of the signed-in user is asked with flag 1; unknown, the button is disabled.
void TestNotAuthSchoolNotice::asksForTheDomainAtConstruction()
{
    makeNotice();
    QCOMPARE(SchoolSettingManager::getInstance()->queries(), (QList<QPair<quint64, int>>{{kUid, 1}}));
    QVERIFY(!certificationButton()->isEnabled());
}

// A domain known already enables the button and asks nothing.
void TestNotAuthSchoolNotice::knownDomainEnablesTheButtonAtOnce()
{
    SchoolSettingManager::getInstance()->putDomain(kUid, 1, QStringLiteral("school.edu"));
    makeNotice();
    QVERIFY(certificationButton()->isEnabled());
    QVERIFY(SchoolSettingManager::getInstance()->queries().isEmpty());
}

// The server's answer to the query enables the button.
void TestNotAuthSchoolNotice::answerEnablesTheButton()
{
    SchoolSettingManager::getInstance()->queueAnswer(kUid, 1, QStringLiteral("school.edu"), 30);
    makeNotice();
    QVERIFY(!certificationButton()->isEnabled());
    QTRY_VERIFY(certificationButton()->isEnabled());
    clickCertification();
    QCOMPARE(m_urls.opened, (QList<QUrl>{QUrl(QStringLiteral("https://school.edu/school/certification"))}));
}

// One answer is taken once per notice, with several notices alive too.
void TestNotAuthSchoolNotice::answerIsHandledExactlyOnce()
{
    makeNotice();
    NotAuthSchoolNotice second;
    LogCapture log;
    answer(QStringLiteral("school.edu"), 1, 1);
    QCOMPARE(log.startingWith(QStringLiteral("NotAuthSchoolNotice::onGetUidDomainName")).size(), 2);
    QCOMPARE(log.startingWith(QStringLiteral("m_uidDomainName")).size(), 2);
}

void TestNotAuthSchoolNotice::answerOfAnotherFlagChangesNothing_data()
{
    QTest::addColumn<int>("flag");
    QTest::addColumn<int>("errorNo");
    QTest::newRow("flag 0") << 0 << 1;
    QTest::newRow("flag 2") << 2 << 1;
    QTest::newRow("flag 2, error") << 2 << 5;
    QTest::newRow("flag -1") << -1 << 1;
}

// An answer of another flag is logged and changes neither the button nor the domain.
void TestNotAuthSchoolNotice::answerOfAnotherFlagChangesNothing()
{
    QFETCH(int, flag);
    QFETCH(int, errorNo);
    makeNotice();
    LogCapture log;
    answer(QStringLiteral("other.edu"), flag, errorNo);
    QCOMPARE(log.startingWith(QStringLiteral("NotAuthSchoolNotice::onGetUidDomainName")).size(), 1);
    QVERIFY(log.startingWith(QStringLiteral("m_uidDomainName")).isEmpty());
    QVERIFY(!certificationButton()->isEnabled());
    clickCertification();
    QCOMPARE(m_urls.opened, (QList<QUrl>{QUrl(kGeneralPage)}));
}

void TestNotAuthSchoolNotice::errorAnswerStoresDomainAndLeavesButton_data()
{
    QTest::addColumn<bool>("enabledBefore");
    QTest::addColumn<int>("errorNo");
    QTest::newRow("disabled, errorNo 0") << false << 0;
    QTest::newRow("disabled, errorNo 2") << false << 2;
    QTest::newRow("disabled, errorNo -1") << false << -1;
    QTest::newRow("enabled, errorNo 0") << true << 0;
    QTest::newRow("enabled, errorNo 404") << true << 404;
}

// Flag 1 with an errorNo other than 1 stores the domain and leaves the button as it was.
void TestNotAuthSchoolNotice::errorAnswerStoresDomainAndLeavesButton()
{
    QFETCH(bool, enabledBefore);
    QFETCH(int, errorNo);
    if (enabledBefore)
        SchoolSettingManager::getInstance()->putDomain(kUid, 1, QStringLiteral("before.edu"));
    makeNotice();
    QCOMPARE(certificationButton()->isEnabled(), enabledBefore);
    answer(QStringLiteral("after.edu"), 1, errorNo, 7, QStringLiteral("failed"));
    QCOMPARE(certificationButton()->isEnabled(), enabledBefore);
    clickCertification();
    QCOMPARE(m_urls.opened, (QList<QUrl>{QUrl(QStringLiteral("https://after.edu/school/certification"))}));
}

// errorNo 1 without a domain disables a button that was enabled.
void TestNotAuthSchoolNotice::successWithoutDomainDisablesTheButton()
{
    SchoolSettingManager::getInstance()->putDomain(kUid, 1, QStringLiteral("before.edu"));
    makeNotice();
    QVERIFY(certificationButton()->isEnabled());
    SchoolSettingManager::getInstance()->clear();
    answer(QString(), 1, 1);
    QVERIFY(!certificationButton()->isEnabled());
}

// After an answer the notice takes the domain the manager holds, not the answer's url.
void TestNotAuthSchoolNotice::managerDomainReplacesTheAnswersUrl()
{
    makeNotice();
    SchoolSettingManager::getInstance()->putDomain(kUid, 1, QStringLiteral("held.edu"));
    answer(QString(), 1, 3);
    QVERIFY(!certificationButton()->isEnabled());
    clickCertification();
    QCOMPARE(m_urls.opened, (QList<QUrl>{QUrl(QStringLiteral("https://held.edu/school/certification"))}));
}

// Both log lines at info level: the first with all six arguments, the second without the flag.
void TestNotAuthSchoolNotice::bothLogLines()
{
    makeNotice();
    LogCapture log;
    answer(QStringLiteral("school.edu"), 1, 1, 0, QStringLiteral("ok"));
    const auto first = log.matching(QStringLiteral(
        "NotAuthSchoolNotice::onGetUidDomainName----------------> 4242 \"school.edu\" 1 0 1 \"ok\""));
    QCOMPARE(first.size(), 1);
    QCOMPARE(first.first().type, QtInfoMsg);
    const auto second = log.matching(QStringLiteral("m_uidDomainName 4242 \"school.edu\" 0 1 \"ok\""));
    QCOMPARE(second.size(), 1);
    QCOMPARE(second.first().type, QtInfoMsg);
}

// Each click writes the setting to the file, even over a value changed behind its back; the last click wins.
void TestNotAuthSchoolNotice::everyClickWritesTheSetting()
{
    makeNotice();
    QSignalSpy closed(m_notice.data(), &NotAuthSchoolNotice::signalClose);
    QVERIFY(!settingInFile().isValid());
    const QList<bool> expected{false, true, false, true, false};
    for (bool value : expected) {
        {
            QSettings file(m_dir->filePath(QStringLiteral("VyrSettings.ini")), QSettings::IniFormat);
            file.setValue(kSetting, QStringLiteral("stale"));
        }
        QTest::mouseClick(remindBox(), Qt::LeftButton, {}, QPoint(5, remindBox()->height() / 2));
        QCOMPARE(remindBox()->isChecked(), !value);
        QCOMPARE(settingInFile().toString(), value ? QStringLiteral("true") : QStringLiteral("false"));
        QCOMPARE(VyrSettings::instance(QString())->getSetting(kSetting).toBool(), value);
    }
    // The notice stays open: closing is the buttons' business.
    QCOMPARE(closed.count(), 0);
    QVERIFY(m_notice->isVisible());
}

// Cancel closes and leaves the last value written.
void TestNotAuthSchoolNotice::cancelDoesNotUndoTheSetting()
{
    makeNotice();
    QSignalSpy closed(m_notice.data(), &NotAuthSchoolNotice::signalClose);
    QTest::mouseClick(remindBox(), Qt::LeftButton, {}, QPoint(5, remindBox()->height() / 2));
    QCOMPARE(settingInFile().toBool(), false);
    QTest::mouseClick(cancelButton(), Qt::LeftButton);
    QCOMPARE(closed.count(), 1);
    QCOMPARE(settingInFile().toBool(), false);
    QCOMPARE(VyrSettings::instance(QString())->getSetting(kSetting).toBool(), false);
}

// A settings folder that can't be written: logged, the value kept in memory, no crash.
void TestNotAuthSchoolNotice::unwritableSettingsFolderIsLoggedAndKeepsTheValue()
{
    QFile blocker(m_dir->filePath(QStringLiteral("plain-file")));
    QVERIFY(blocker.open(QIODevice::WriteOnly));
    blocker.close();
    VyrSettings::setFolder(blocker.fileName() + QStringLiteral("/settings"));
    makeNotice();
    LogCapture log;
    QTest::mouseClick(remindBox(), Qt::LeftButton, {}, QPoint(5, remindBox()->height() / 2));
    QCOMPARE(log.startingWith(QStringLiteral("VyrSettings: cannot write")).size(), 1);
    QCOMPARE(log.startingWith(QStringLiteral("VyrSettings: cannot write")).first().type, QtWarningMsg);
    QCOMPARE(VyrSettings::instance(QString())->getSetting(kSetting).toBool(), false);
    QVERIFY(m_notice->isVisible());
}

// The certification button opens the page on the school's own domain, logs it and closes.
void TestNotAuthSchoolNotice::certificationOpensTheSchoolsPageAndCloses()
{
    SchoolSettingManager::getInstance()->putDomain(kUid, 1, QStringLiteral("school.edu"));
    makeNotice();
    QSignalSpy closed(m_notice.data(), &NotAuthSchoolNotice::signalClose);
    LogCapture log;
    QTest::mouseClick(certificationButton(), Qt::LeftButton);
    QCOMPARE(m_urls.opened, (QList<QUrl>{QUrl(QStringLiteral("https://school.edu/school/certification"))}));
    QCOMPARE(closed.count(), 1);
    const auto lines = log.matching(QStringLiteral("toAuthLink \"https://school.edu/school/certification\""));
    QCOMPARE(lines.size(), 1);
    QCOMPARE(lines.first().type, QtInfoMsg);
}

// A domain gone empty after the button was enabled: the general page opens.
void TestNotAuthSchoolNotice::certificationWithDomainGoneOpensTheGeneralPage()
{
    SchoolSettingManager::getInstance()->putDomain(kUid, 1, QStringLiteral("school.edu"));
    makeNotice();
    SchoolSettingManager::getInstance()->clear();
    answer(QString(), 1, 2);
    QVERIFY(certificationButton()->isEnabled());
    QSignalSpy closed(m_notice.data(), &NotAuthSchoolNotice::signalClose);
    QTest::mouseClick(certificationButton(), Qt::LeftButton);
    QCOMPARE(m_urls.opened, (QList<QUrl>{QUrl(kGeneralPage)}));
    QCOMPARE(closed.count(), 1);
}

// Cancel ends in signalClose and opens nothing.
void TestNotAuthSchoolNotice::cancelCloses()
{
    makeNotice();
    QSignalSpy closed(m_notice.data(), &NotAuthSchoolNotice::signalClose);
    QTest::mouseClick(cancelButton(), Qt::LeftButton);
    QCOMPARE(closed.count(), 1);
    QVERIFY(m_urls.opened.isEmpty());
}

// An answer that arrives after the notice is gone finds no receiver.
void TestNotAuthSchoolNotice::lateAnswerAfterTheNoticeIsGone()
{
    auto* manager = SchoolSettingManager::getInstance();
    manager->queueAnswer(kUid, 1, QStringLiteral("late.edu"), 20);
    makeNotice();
    m_notice.reset();
    LogCapture log;
    QTRY_COMPARE(manager->pendingAnswers(), 0);
    QTest::qWait(10);
    QVERIFY(log.startingWith(QStringLiteral("NotAuthSchoolNotice")).isEmpty());
    QCOMPARE(manager->getUidDomainName(kUid, 1), QStringLiteral("late.edu"));
}

void TestNotAuthSchoolNotice::buttonsFitTheirTexts_data()
{
    QTest::addColumn<QString>("locale");
    QTest::newRow("en") << QStringLiteral("en");
    QTest::newRow("zh_CN") << QStringLiteral("zh_CN");
}

// Both buttons are 32 high and at least 88 wide, wide enough for their text.
void TestNotAuthSchoolNotice::buttonsFitTheirTexts()
{
    QFETCH(QString, locale);
    QVERIFY(TestKit::loadTranslations(locale));
    makeNotice();
    TestKit::loadTranslations(QStringLiteral("en"));
    for (QPushButton* button : {certificationButton(), cancelButton()}) {
        QCOMPARE(button->height(), 32);
        QVERIFY(button->width() >= 88);
        QVERIFY(button->width() >= button->fontMetrics().horizontalAdvance(button->text()) + 24);
        QVERIFY(!button->text().startsWith(QLatin1String("ID_")));
    }
}

QTEST_MAIN(TestNotAuthSchoolNotice)
#include "tst_notauthschoolnotice.moc"
