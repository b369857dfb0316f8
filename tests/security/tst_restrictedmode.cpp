#include "LogCapture.h"
#include "TeenModePassword.h"
#include "TeenModeWidget.h"
#include "VyrCustomNormalDialog.h"
#include "VyrModalAnswerer.h"
#include "VyrSettings.h"

#include <QCryptographicHash>
#include <QDir>
#include <QFile>
#include <QLabel>
#include <QLineEdit>
#include <QPushButton>
#include <QRandomGenerator>
#include <QRegularExpression>
#include <QSettings>
#include <QTemporaryDir>
#include <QtTest>

#ifdef Q_OS_UNIX
#include <sys/stat.h>
#include <unistd.h>
#endif

namespace {
const QString kPasswordKey = QStringLiteral("TeenModePasswordHash");
const QString kWrongText = QStringLiteral("Wrong password, please try again");

QString sha256Hex(const QString& password)
{
    return QString::fromLatin1(QCryptographicHash::hash(password.toUtf8(), QCryptographicHash::Sha256).toHex());
}

QString waitText(int seconds)
{
    return QStringLiteral("Too many wrong passwords. Try again in %1 s.").arg(seconds);
}

// The salt of the stored form "pbkdf2-sha256$<iterations>$<salt>$<key>".
QString saltOf(const QString& stored)
{
    return stored.section(QLatin1Char('$'), 2, 2);
}

void writeBytes(const QString& path, const QByteArray& bytes)
{
    QFile file(path);
    QVERIFY(file.open(QIODevice::WriteOnly | QIODevice::Truncate));
    QCOMPARE(file.write(bytes), qint64(bytes.size()));
}
}

// What one password dialog showed and how it ended.
struct DialogOutcome
{
    int result = -1;
    QString shownText;
    QString errorText;
    int failed = -1;
    int refused = -1;
};

// The restricted mode's separate password and the settings store it lives in,
// against a hostile or damaged settings file and a guessing user.
class TestRestrictedMode : public QObject
{
    Q_OBJECT
private slots:
    void initTestCase();
    void init();
    void cleanup();

    void passwordThroughTheDialog_data();
    void passwordThroughTheDialog();
    void storedFormIsSaltedAndDerived();
    void saltDiffersBetweenSettingsFiles();
    void legacyHashAcceptedAndUpgraded_data();
    void legacyHashAcceptedAndUpgraded();
    void legacyHashWrongPasswordKeepsIt();
    void sixthTryWithinTheDelayIsNotChecked_data();
    void sixthTryWithinTheDelayIsNotChecked();
    void delayGrowsWithEachFailure();
    void failuresSurviveANewDialog();
    void clockSetBackRestartsTheDelay();
    void unreadableFileFailsClosed_data();
    void unreadableFileFailsClosed();
    void unreadableFileIsNotOverwritten();
    void ordinaryFilesAreRead_data();
    void ordinaryFilesAreRead();
    void qsettingsOwnFileIsRead();
    void hostResetEndsRestrictedMode_data();
    void hostResetEndsRestrictedMode();
    void unchangedFileIsNotParsedAgain();
    void changedFileIsReadAgain();

private:
    DialogOutcome askThroughDialog(const QString& password);
    void failTimes(int count);

    std::unique_ptr<QTemporaryDir> m_dir;
    qint64 m_now = 0;
};

void TestRestrictedMode::initTestCase()
{
    // The panel's texts follow the default locale; the literal texts here are English.
    QLocale::setDefault(QLocale(QLocale::English, QLocale::UnitedStates));
    TeenModePassword::setClock([this]() { return m_now; });
    VyrModalAnswerer::instance()->setCloseUnanswered(true);
}

void TestRestrictedMode::init()
{
    m_dir.reset(new QTemporaryDir);
    QVERIFY(m_dir->isValid());
    VyrSettings::setFolder(m_dir->path());
    m_now = 1700000000000;
    VyrModalAnswerer::instance()->clear();
}

void TestRestrictedMode::cleanup()
{
    // A folder left unreadable would defeat QTemporaryDir's clean-up.
    QFile::setPermissions(VyrSettings::instance(QString())->fileName(), QFile::ReadOwner | QFile::WriteOwner);
}

// The library's own sequence: the panel in a type-2 dialog, 4 accepts, anything else rejects.
DialogOutcome TestRestrictedMode::askThroughDialog(const QString& password)
{
    DialogOutcome outcome;
    auto* dialog = new VyrCustomNormalDialog(VyrCustomNormalDialog::TitleWithClose, nullptr);
    auto* panel = new TeenModeWidget(dialog, TeenModeVerifyPassword);
    dialog->setCenterWidget(panel, true);
    QObject::connect(panel, &TeenModeWidget::closeWidget, dialog, [dialog](int code) {
        if (code == 4)
            dialog->accept();
        else
            dialog->reject();
    });
    VyrModalAnswerer::instance()->answerWith([&outcome, panel, password](QWidget* modal) {
        outcome.shownText = panel->errorText();
        VyrModalAnswerer::enterTextOn(modal, password);
        outcome.errorText = panel->errorText();
        outcome.failed = panel->failedAttempts();
        outcome.refused = panel->refusedAttempts();
        if (modal->isVisible())
            panel->cancelButton()->click();
    });
    outcome.result = dialog->exec();
    delete dialog;
    return outcome;
}

void TestRestrictedMode::failTimes(int count)
{
    for (int i = 0; i < count; ++i)
        QCOMPARE(TeenModePassword::check(QStringLiteral("0000")), TeenModePassword::Wrong);
}

// Only the password set opens the dialog; a wrong one says so and keeps it shut.
void TestRestrictedMode::passwordThroughTheDialog_data()
{
    QTest::addColumn<QString>("typed");
    QTest::addColumn<int>("result");
    QTest::addColumn<QString>("error");
    QTest::newRow("right") << QStringLiteral("1234") << 1 << QString();
    QTest::newRow("wrong") << QStringLiteral("4321") << 0 << kWrongText;
    QTest::newRow("prefix") << QStringLiteral("123") << 0 << kWrongText;
    QTest::newRow("longer") << QStringLiteral("12345") << 0 << kWrongText;
    QTest::newRow("empty") << QString() << 0 << kWrongText;
}

void TestRestrictedMode::passwordThroughTheDialog()
{
    QFETCH(QString, typed);
    QFETCH(int, result);
    QFETCH(QString, error);
    TeenModeWidget::setPassword(QStringLiteral("1234"));
    const DialogOutcome outcome = askThroughDialog(typed);
    QCOMPARE(outcome.result, result);
    QCOMPARE(outcome.shownText, QString());
    QCOMPARE(outcome.errorText, error);
    QCOMPARE(TeenModePassword::failureCount(), result ? 0 : 1);
}

// The store holds a salted PBKDF2 key with its iteration count, never the password's plain hash.
void TestRestrictedMode::storedFormIsSaltedAndDerived()
{
    TeenModeWidget::setPassword(QStringLiteral("1234"));
    const QString stored = QSettings(VyrSettings::instance(QString())->fileName(), QSettings::IniFormat)
                               .value(kPasswordKey)
                               .toString();
    const QRegularExpression form(QStringLiteral("^pbkdf2-sha256\\$(\\d+)\\$[0-9a-f]{32}\\$[0-9a-f]{64}$"));
    const QRegularExpressionMatch match = form.match(stored);
    QVERIFY2(match.hasMatch(), qPrintable(stored));
    QCOMPARE(match.captured(1).toInt(), TeenModePassword::Iterations);
    QVERIFY(!stored.contains(sha256Hex(QStringLiteral("1234")), Qt::CaseInsensitive));
}

// The same password in two settings files gets two salts and two keys.
void TestRestrictedMode::saltDiffersBetweenSettingsFiles()
{
    TeenModeWidget::setPassword(QStringLiteral("1234"));
    const QString first = TeenModePassword::storedForm();
    QTemporaryDir other;
    VyrSettings::setFolder(other.path());
    TeenModeWidget::setPassword(QStringLiteral("1234"));
    const QString second = TeenModePassword::storedForm();
    QVERIFY(!saltOf(first).isEmpty());
    QVERIFY(saltOf(first) != saltOf(second));
    QVERIFY(first.section(QLatin1Char('$'), 3, 3) != second.section(QLatin1Char('$'), 3, 3));
    QCOMPARE(TeenModePassword::check(QStringLiteral("1234")), TeenModePassword::Accepted);
}

// An older store's unsalted SHA-256, in either case, lets the right password in once and is rewritten.
void TestRestrictedMode::legacyHashAcceptedAndUpgraded_data()
{
    QTest::addColumn<QVariant>("legacy");
    const QString hex = sha256Hex(QStringLiteral("1234"));
    QTest::newRow("lower") << QVariant(hex);
    QTest::newRow("upper") << QVariant(hex.toUpper());
    QTest::newRow("bytes") << QVariant(hex.toLatin1());
}

void TestRestrictedMode::legacyHashAcceptedAndUpgraded()
{
    QFETCH(QVariant, legacy);
    const QString fileName = VyrSettings::instance(QString())->fileName();
    QSettings(fileName, QSettings::IniFormat).setValue(kPasswordKey, legacy);
    const DialogOutcome outcome = askThroughDialog(QStringLiteral("1234"));
    QCOMPARE(outcome.result, 1);
    const QString stored = QSettings(fileName, QSettings::IniFormat).value(kPasswordKey).toString();
    QVERIFY2(stored.startsWith(QStringLiteral("pbkdf2-sha256$")), qPrintable(stored));
    QVERIFY(!stored.contains(sha256Hex(QStringLiteral("1234")), Qt::CaseInsensitive));
    // The upgraded form keeps working, and still refuses a wrong one.
    QCOMPARE(TeenModePassword::check(QStringLiteral("1234")), TeenModePassword::Accepted);
    QCOMPARE(TeenModePassword::check(QStringLiteral("4321")), TeenModePassword::Wrong);
}

// A wrong password against an older hash is refused and leaves the hash as it was.
void TestRestrictedMode::legacyHashWrongPasswordKeepsIt()
{
    const QString fileName = VyrSettings::instance(QString())->fileName();
    const QString hex = sha256Hex(QStringLiteral("1234")).toUpper();
    QSettings(fileName, QSettings::IniFormat).setValue(kPasswordKey, hex);
    QCOMPARE(askThroughDialog(QStringLiteral("4321")).result, 0);
    QCOMPARE(QSettings(fileName, QSettings::IniFormat).value(kPasswordKey).toString(), hex);
}

// Five wrong passwords close checking: the sixth try is refused unhashed, even the right one.
void TestRestrictedMode::sixthTryWithinTheDelayIsNotChecked_data()
{
    QTest::addColumn<QString>("typed");
    QTest::newRow("right") << QStringLiteral("1234");
    QTest::newRow("wrong") << QStringLiteral("4321");
}

void TestRestrictedMode::sixthTryWithinTheDelayIsNotChecked()
{
    QFETCH(QString, typed);
    TeenModeWidget::setPassword(QStringLiteral("1234"));
    for (int i = 0; i < 4; ++i)
        QCOMPARE(askThroughDialog(QStringLiteral("0000")).errorText, kWrongText);
    // The fifth failure starts the delay, and the panel says so at once.
    QCOMPARE(askThroughDialog(QStringLiteral("0000")).errorText, waitText(30));
    m_now += 10 * 1000;
    const int derivedBefore = TeenModePassword::derivationCount();
    const DialogOutcome outcome = askThroughDialog(typed);
    QCOMPARE(outcome.result, 0);
    QCOMPARE(outcome.shownText, waitText(20));
    QCOMPARE(outcome.errorText, waitText(20));
    QCOMPARE(outcome.refused, 1);
    QCOMPARE(outcome.failed, 0);
    QCOMPARE(TeenModePassword::derivationCount(), derivedBefore);
    QCOMPARE(TeenModePassword::failureCount(), 5);
    // Once the delay has run, the right password goes through and clears the count.
    m_now += 20 * 1000;
    QCOMPARE(askThroughDialog(QStringLiteral("1234")).result, 1);
    QCOMPARE(TeenModePassword::failureCount(), 0);
}

// Each failure after the delay doubles the next delay.
void TestRestrictedMode::delayGrowsWithEachFailure()
{
    TeenModeWidget::setPassword(QStringLiteral("1234"));
    failTimes(5);
    QCOMPARE(TeenModePassword::remainingDelayMs(), TeenModePassword::FirstDelayMs);
    m_now += TeenModePassword::FirstDelayMs;
    QCOMPARE(TeenModePassword::remainingDelayMs(), qint64(0));
    failTimes(1);
    QCOMPARE(TeenModePassword::remainingDelayMs(), 2 * TeenModePassword::FirstDelayMs);
    m_now += TeenModePassword::FirstDelayMs;
    QCOMPARE(TeenModePassword::check(QStringLiteral("1234")), TeenModePassword::Delayed);
    m_now += TeenModePassword::FirstDelayMs;
    failTimes(1);
    QCOMPARE(TeenModePassword::remainingDelayMs(), 4 * TeenModePassword::FirstDelayMs);
    // The delay stops growing at its ceiling.
    for (int i = 0; i < 20; ++i) {
        m_now += TeenModePassword::MaxDelayMs;
        failTimes(1);
    }
    QCOMPARE(TeenModePassword::remainingDelayMs(), TeenModePassword::MaxDelayMs);
}

// A fresh dialog, or a fresh run reading the same file, doesn't start counting anew.
void TestRestrictedMode::failuresSurviveANewDialog()
{
    TeenModeWidget::setPassword(QStringLiteral("1234"));
    failTimes(5);
    // Forget the memory: what is left is the file, as after a restart.
    VyrSettings::setFolder(m_dir->path());
    QCOMPARE(TeenModePassword::failureCount(), 5);
    QCOMPARE(askThroughDialog(QStringLiteral("1234")).result, 0);
}

// Setting the clock back doesn't strand the user, and doesn't end the delay either.
void TestRestrictedMode::clockSetBackRestartsTheDelay()
{
    TeenModeWidget::setPassword(QStringLiteral("1234"));
    failTimes(5);
    m_now -= 24 * 3600 * 1000;
    QCOMPARE(TeenModePassword::remainingDelayMs(), TeenModePassword::FirstDelayMs);
    m_now += TeenModePassword::FirstDelayMs;
    QCOMPARE(TeenModePassword::check(QStringLiteral("1234")), TeenModePassword::Accepted);
}

// A settings file that can't be read keeps restricted mode on, with an info line saying why.
void TestRestrictedMode::unreadableFileFailsClosed_data()
{
    QTest::addColumn<QString>("kind");
    QTest::addColumn<QString>("reason");
    QTest::newRow("random") << "random" << "not a settings file";
    QTest::newRow("nul") << "nul" << "not a settings file";
    QTest::newRow("latin1") << "latin1" << "not a settings file";
    QTest::newRow("bom") << "bom" << "not a settings file";
    QTest::newRow("hash") << "hash" << "not a settings file";
    QTest::newRow("directory") << "directory" << "not a regular file";
    QTest::newRow("fifo") << "fifo" << "not a regular file";
    QTest::newRow("oversize") << "oversize" << "larger than 1048576 bytes";
    QTest::newRow("noread") << "noread" << "cannot be opened";
}

void TestRestrictedMode::unreadableFileFailsClosed()
{
    QFETCH(QString, kind);
    QFETCH(QString, reason);
    VyrSettings* settings = VyrSettings::instance(QString());
    const QString fileName = settings->fileName();
    if (kind == QLatin1String("random")) {
        QByteArray bytes(4096, Qt::Uninitialized);
        QRandomGenerator(7).fillRange(reinterpret_cast<quint32*>(bytes.data()), bytes.size() / 4);
        writeBytes(fileName, bytes);
    } else if (kind == QLatin1String("nul")) {
        writeBytes(fileName, QByteArray("TeenModeConfig\\4=false\n", 23) + QByteArray(8, '\0'));
    } else if (kind == QLatin1String("latin1")) {
        writeBytes(fileName, QByteArray("[TeenModeConfig]\n4=f\xe4lse\n"));
    } else if (kind == QLatin1String("bom")) {
        // Qt's own reader flags a byte-order mark as a format error.
        writeBytes(fileName, QByteArray("\xef\xbb\xbf[TeenModeConfig]\n4=false\n"));
    } else if (kind == QLatin1String("hash")) {
        writeBytes(fileName, QByteArray("# not an INI comment\n[TeenModeConfig]\n4=false\n"));
    } else if (kind == QLatin1String("directory")) {
        QVERIFY(QDir().mkpath(fileName));
    } else if (kind == QLatin1String("fifo")) {
#ifdef Q_OS_UNIX
        QCOMPARE(::mkfifo(QFile::encodeName(fileName).constData(), 0600), 0);
#else
        QSKIP("no named pipes in the file system here");
#endif
    } else if (kind == QLatin1String("oversize")) {
        writeBytes(fileName, QByteArray("[TeenModeConfig]\n4=false\n2=false\n")
                                 + QByteArray("; padding\n").repeated(VyrSettings::MaxFileSize / 10 + 1));
    } else {
        writeBytes(fileName, "[TeenModeConfig]\n4=false\n2=false\n");
        QVERIFY(QFile::setPermissions(fileName, QFileDevice::Permissions()));
#ifdef Q_OS_UNIX
        if (::geteuid() == 0)
            QSKIP("the superuser reads a file of no permissions");
#endif
    }
    LogCapture log;
    QVERIFY(settings->isEnabledTeenModeConfig(TeenModeEnabled));
    QVERIFY(settings->isEnabledTeenModeConfig(TeenModeFriendPassword));
    QVERIFY(settings->isFileUnreadable());
    const auto lines = log.startingWith(QStringLiteral("VyrSettings: cannot read"));
    QCOMPARE(lines.size(), 1);
    QCOMPARE(lines.first().type, QtInfoMsg);
    QVERIFY2(lines.first().text.contains(reason), qPrintable(lines.first().text));
    // With no password to be read, none opens the dialog.
    QCOMPARE(askThroughDialog(QStringLiteral("1234")).result, 0);
}

// A write to a file that can't be read stays in memory and can't switch restricted mode off.
void TestRestrictedMode::unreadableFileIsNotOverwritten()
{
    VyrSettings* settings = VyrSettings::instance(QString());
    const QByteArray garbage("\x01\x02garbage\xff\xfe", 11);
    writeBytes(settings->fileName(), garbage);
    LogCapture log;
    settings->setTeenModeConfig(TeenModeEnabled, false);
    settings->setSetting(QStringLiteral("NOT_AUTH_SCHOOL_NOTICE"), true);
    QVERIFY(settings->lastWriteFailed());
    QVERIFY(settings->isEnabledTeenModeConfig(TeenModeEnabled));
    QCOMPARE(settings->getSetting(QStringLiteral("NOT_AUTH_SCHOOL_NOTICE")).toBool(), true);
    QFile file(settings->fileName());
    QVERIFY(file.open(QIODevice::ReadOnly));
    QCOMPARE(file.readAll(), garbage);
    QCOMPARE(log.startingWith(QStringLiteral("VyrSettings: not writing")).size(), 2);
}

// Files QSettings or an editor write are read as they are, not taken for damage.
void TestRestrictedMode::ordinaryFilesAreRead_data()
{
    QTest::addColumn<QByteArray>("bytes");
    QTest::addColumn<bool>("mode");
    QTest::newRow("plain") << QByteArray("[TeenModeConfig]\n4=true\n") << true;
    QTest::newRow("crlf") << QByteArray("[TeenModeConfig]\r\n4=false\r\n") << false;
    QTest::newRow("comments") << QByteArray("; kept\n\n[TeenModeConfig]\n4=true\n") << true;
    QTest::newRow("utf8") << QByteArray("[General]\nname=\xe4\xb8\xad\n[TeenModeConfig]\n4=true\n") << true;
    QTest::newRow("empty") << QByteArray() << false;
}

void TestRestrictedMode::ordinaryFilesAreRead()
{
    QFETCH(QByteArray, bytes);
    QFETCH(bool, mode);
    VyrSettings* settings = VyrSettings::instance(QString());
    writeBytes(settings->fileName(), bytes);
    LogCapture log;
    QCOMPARE(settings->isEnabledTeenModeConfig(TeenModeEnabled), mode);
    QVERIFY(!settings->isFileUnreadable());
    QVERIFY(log.startingWith(QStringLiteral("VyrSettings: cannot read")).isEmpty());
}

// What QSettings writes of every kind of value reads back, byte arrays and lists included.
void TestRestrictedMode::qsettingsOwnFileIsRead()
{
    VyrSettings* settings = VyrSettings::instance(QString());
    {
        QSettings file(settings->fileName(), QSettings::IniFormat);
        file.setValue(QStringLiteral("bytes"), QByteArray("\0\x01\xff\n", 4));
        file.setValue(QStringLiteral("list"), QStringList{QStringLiteral("a,b"), QStringLiteral("c\nd")});
        file.setValue(QStringLiteral("text"), QStringLiteral("\u4e2d = ; # [x]"));
        file.setValue(QStringLiteral("TeenModeConfig/4"), true);
    }
    QVERIFY(settings->isEnabledTeenModeConfig(TeenModeEnabled));
    QVERIFY(!settings->isFileUnreadable());
    QCOMPARE(settings->getSetting(QStringLiteral("bytes")).toByteArray(), QByteArray("\0\x01\xff\n", 4));
    QCOMPARE(settings->getSetting(QStringLiteral("text")).toString(), QStringLiteral("\u4e2d = ; # [x]"));
}

// The host's reset turns restricted mode off, moving a file it can't read aside.
void TestRestrictedMode::hostResetEndsRestrictedMode_data()
{
    QTest::addColumn<bool>("damaged");
    QTest::newRow("readable") << false;
    QTest::newRow("damaged") << true;
}

void TestRestrictedMode::hostResetEndsRestrictedMode()
{
    QFETCH(bool, damaged);
    VyrSettings* settings = VyrSettings::instance(QString());
    settings->setSetting(QStringLiteral("KEEP"), 5);
    settings->setTeenModeConfig(TeenModeEnabled, true);
    settings->setTeenModeConfig(TeenModeFriendPassword, true);
    TeenModeWidget::setPassword(QStringLiteral("1234"));
    failTimes(2);
    if (damaged) {
        writeBytes(settings->fileName(), QByteArray(64, '\xff'));
        QVERIFY(settings->isFileUnreadable());
    }
    QVERIFY(settings->isEnabledTeenModeConfig(TeenModeEnabled));
    LogCapture log;
    settings->resetRestrictedMode();
    QCOMPARE(log.startingWith(QStringLiteral("VyrSettings: restricted mode reset")).size(), 1);
    QVERIFY(!settings->isFileUnreadable());
    QVERIFY(!settings->isEnabledTeenModeConfig(TeenModeEnabled));
    QVERIFY(!settings->isEnabledTeenModeConfig(TeenModeFriendPassword));
    QVERIFY(TeenModePassword::storedForm().isEmpty());
    QCOMPARE(TeenModePassword::failureCount(), 0);
    QCOMPARE(QFile::exists(settings->fileName() + QStringLiteral(".unreadable")), damaged);
    // Only what belongs to restricted mode goes; the rest of a readable file stays.
    QCOMPARE(settings->getSetting(QStringLiteral("KEEP")).toInt(), 5);
    if (!damaged) {
        QSettings file(settings->fileName(), QSettings::IniFormat);
        QCOMPARE(file.value(QStringLiteral("KEEP")).toInt(), 5);
        QVERIFY(!file.contains(QStringLiteral("TeenModeConfig/4")));
        QVERIFY(!file.contains(kPasswordKey));
    }
    // A new password can be set and used again.
    TeenModeWidget::setPassword(QStringLiteral("5678"));
    QCOMPARE(TeenModePassword::check(QStringLiteral("5678")), TeenModePassword::Accepted);
}

// Checks against an unchanged file read it once, not once per check.
void TestRestrictedMode::unchangedFileIsNotParsedAgain()
{
    {
        QSettings file(VyrSettings::instance(QString())->fileName(), QSettings::IniFormat);
        file.setValue(QStringLiteral("TeenModeConfig/4"), true);
        file.setValue(QStringLiteral("TeenModeConfig/2"), true);
        file.setValue(QStringLiteral("PAD"), QString(4096, QLatin1Char('x')));
    }
    VyrSettings* settings = VyrSettings::instance(QString());
    const int before = settings->parseCount();
    for (int i = 0; i < 50; ++i) {
        QVERIFY(settings->isEnabledTeenModeConfig(TeenModeEnabled));
        QVERIFY(settings->isEnabledTeenModeConfig(TeenModeFriendPassword));
    }
    QCOMPARE(settings->parseCount(), before + 1);
}

// A file changed by someone else is read again, once, and its new values seen.
void TestRestrictedMode::changedFileIsReadAgain()
{
    VyrSettings* settings = VyrSettings::instance(QString());
    const QString fileName = settings->fileName();
    writeBytes(fileName, "[TeenModeConfig]\n4=false\n");
    QVERIFY(!settings->isEnabledTeenModeConfig(TeenModeEnabled));
    const int before = settings->parseCount();
    writeBytes(fileName, "[TeenModeConfig]\n4=true\n");
    // Same size: the modification time alone tells the change.
    QFile file(fileName);
    QVERIFY(file.open(QIODevice::ReadWrite));
    QVERIFY(file.setFileTime(QDateTime::currentDateTime().addSecs(60), QFileDevice::FileModificationTime));
    file.close();
    QVERIFY(settings->isEnabledTeenModeConfig(TeenModeEnabled));
    QVERIFY(settings->isEnabledTeenModeConfig(TeenModeEnabled));
    QCOMPARE(settings->parseCount(), before + 1);
}

QTEST_MAIN(TestRestrictedMode)
#include "tst_restrictedmode.moc"
