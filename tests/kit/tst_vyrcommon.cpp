#include "ImSignalObject.h"
#include "TeenModeWidget.h"
#include "VyrSettings.h"

#include <QLabel>
#include <QLineEdit>
#include <QPushButton>
#include <QTemporaryDir>

#include <QSignalSpy>
#include <QThread>

Q_DECLARE_METATYPE(RoomType)
#include <QtTest>

// The client's announcement hub.
class TestVyrCommon : public QObject
{
    Q_OBJECT
private slots:
    void instanceIsOneObject();
    void signalsCarryTheirArguments();
    void signalsFromAnotherThreadArriveQueued();

    void menuAddContactsCarriesItsArguments();
    void teenModeRightPasswordCloses_data();
    void teenModeRightPasswordCloses();
    void teenModeWrongPasswordStays();
    void teenModeCancelClosesWithZero();
    void teenModeTitleOnlyForOtherStates();

private:
    QTemporaryDir m_settingsDir;
    void studyReportRequestCarriesItsArguments();
};

// instance() gives one object, with no parent.
void TestVyrCommon::instanceIsOneObject()
{
    QCOMPARE(ImSignalObject::instance(), ImSignalObject::instance());
    QVERIFY(!ImSignalObject::instance()->parent());
}

// Each signal reaches its receivers with its arguments, in their order.
void TestVyrCommon::signalsCarryTheirArguments()
{
    auto* hub = ImSignalObject::instance();
    QSignalSpy logOut(hub, &ImSignalObject::signalLogOut);
    QSignalSpy classroom(hub, &ImSignalObject::signalStartupClassroom);
    QSignalSpy local(hub, &ImSignalObject::signalStartupLocalClassroom);
    // Ids beyond 32 bits: each id travels whole, in its own place.
    const qulonglong school = 7000000001ull;
    const qulonglong lesson = 42000000002ull;
    const qulonglong course = 5000000003ull;
    emit hub->signalLogOut();
    emit hub->signalStartupClassroom(school, lesson, course, RoomTypeLive, true);
    emit hub->signalStartupLocalClassroom(lesson, course, school, QStringLiteral("Algebra"), RoomTypeLocal);
    QCOMPARE(logOut.size(), 1);
    QCOMPARE(classroom.size(), 1);
    QCOMPARE(classroom.first().at(0).toULongLong(), school);
    QCOMPARE(classroom.first().at(1).toULongLong(), lesson);
    QCOMPARE(classroom.first().at(2).toULongLong(), course);
    QCOMPARE(classroom.first().at(3).value<RoomType>(), RoomTypeLive);
    QCOMPARE(classroom.first().at(4).toBool(), true);
    QCOMPARE(local.size(), 1);
    QCOMPARE(local.first().at(0).toULongLong(), lesson);
    QCOMPARE(local.first().at(1).toULongLong(), course);
    QCOMPARE(local.first().at(2).toULongLong(), school);
    QCOMPARE(local.first().at(3).toString(), QStringLiteral("Algebra"));
    QCOMPARE(local.first().at(4).value<RoomType>(), RoomTypeLocal);
}

// Emitted on another thread, the signals reach a receiver of the GUI thread there, with their arguments.
void TestVyrCommon::signalsFromAnotherThreadArriveQueued()
{
    auto* hub = ImSignalObject::instance();
    QObject receiver;
    QList<Qt::HANDLE> threads;
    RoomType room = RoomTypeUnknown;
    connect(hub, &ImSignalObject::signalStartupClassroom, &receiver,
            [&](qulonglong, qulonglong, qulonglong, RoomType type, bool) {
                threads << QThread::currentThreadId();
                room = type;
            });
    connect(hub, &ImSignalObject::signalLogOut, &receiver, [&]() { threads << QThread::currentThreadId(); });
    QThread* thread = QThread::create([hub]() {
        emit hub->signalStartupClassroom(7, 42, 500, RoomTypeLocal, false);
        emit hub->signalLogOut();
    });
    thread->start();
    QVERIFY(thread->wait(5000));
    delete thread;
    QVERIFY(threads.isEmpty());
    QTRY_COMPARE(threads.size(), 2);
    QCOMPARE(threads.at(0), QThread::currentThreadId());
    QCOMPARE(threads.at(1), QThread::currentThreadId());
    QCOMPARE(room, RoomTypeLocal);
}

// The add-contact request reaches the host with both texts.
void TestVyrCommon::menuAddContactsCarriesItsArguments()
{
    QSignalSpy asked(ImSignalObject::instance(), &ImSignalObject::menuAddContacts);
    emit ImSignalObject::instance()->menuAddContacts(QString(), "from here");
    QCOMPARE(asked.size(), 1);
    QCOMPARE(asked.first().at(0).toString(), QString());
    QCOMPARE(asked.first().at(1).toString(), QString("from here"));
}

// Only the password set closes the panel with 4, by button or by Return.
void TestVyrCommon::teenModeRightPasswordCloses_data()
{
    QTest::addColumn<bool>("byReturn");
    QTest::newRow("button") << false;
    QTest::newRow("return") << true;
}

void TestVyrCommon::teenModeRightPasswordCloses()
{
    QFETCH(bool, byReturn);
    VyrSettings::setFolder(m_settingsDir.path());
    TeenModeWidget::setPassword("1234");
    TeenModeWidget panel(nullptr, TeenModeVerifyPassword);
    QSignalSpy closed(&panel, &TeenModeWidget::closeWidget);
    QTest::keyClicks(panel.passwordEdit(), "1234");
    if (byReturn)
        QTest::keyClick(panel.passwordEdit(), Qt::Key_Return);
    else
        QTest::mouseClick(panel.confirmButton(), Qt::LeftButton);
    QCOMPARE(closed.size(), 1);
    QCOMPARE(closed.first().at(0).toInt(), 4);
    QCOMPARE(panel.passwordEdit()->echoMode(), QLineEdit::Password);
}

// A wrong password shows an error, clears the field and doesn't close.
void TestVyrCommon::teenModeWrongPasswordStays()
{
    VyrSettings::setFolder(m_settingsDir.path());
    TeenModeWidget::setPassword("1234");
    TeenModeWidget panel(nullptr, TeenModeVerifyPassword);
    QSignalSpy closed(&panel, &TeenModeWidget::closeWidget);
    QTest::keyClicks(panel.passwordEdit(), "4321");
    QTest::keyClick(panel.passwordEdit(), Qt::Key_Return);
    QCOMPARE(closed.size(), 0);
    QCOMPARE(panel.failedAttempts(), 1);
    QVERIFY(!panel.errorText().isEmpty());
    QVERIFY(panel.passwordEdit()->text().isEmpty());
    QVERIFY(!TeenModeWidget::checkPassword(""));
}

// Cancel closes with 0.
void TestVyrCommon::teenModeCancelClosesWithZero()
{
    TeenModeWidget panel(nullptr, TeenModeVerifyPassword);
    QSignalSpy closed(&panel, &TeenModeWidget::closeWidget);
    QTest::mouseClick(panel.cancelButton(), Qt::LeftButton);
    QCOMPARE(closed.size(), 1);
    QCOMPARE(closed.first().at(0).toInt(), 0);
}

// Verifying leaves the title to the caller; setting a password titles itself once shown.
void TestVyrCommon::teenModeTitleOnlyForOtherStates()
{
    TeenModeWidget verify(nullptr, TeenModeVerifyPassword);
    QSignalSpy verifyTitle(&verify, &TeenModeWidget::setTitle);
    verify.show();
    QCOMPARE(verifyTitle.size(), 0);
    TeenModeWidget set(nullptr, TeenModeSetPassword);
    QSignalSpy setTitle(&set, &TeenModeWidget::setTitle);
    set.show();
    set.hide();
    set.show();
    QCOMPARE(setTitle.size(), 1);
    QVERIFY(!setTitle.first().at(0).toString().isEmpty());
}

// The study report request passes the lesson, the source and the client's record unchanged.
void TestVyrCommon::studyReportRequestCarriesItsArguments()
{
    auto lesson = QSharedPointer<VyrEngine::SnapshotLesson>::create();
    lesson->lessonId = 42;
    auto extra = QSharedPointer<OpaqueCommonPod>::create();
    QSharedPointer<VyrEngine::SnapshotLesson> gotLesson;
    int gotSource = -1;
    QSharedPointer<OpaqueCommonPod> gotExtra;
    QMetaObject::Connection c = connect(ImSignalObject::instance(), &ImSignalObject::signalStudyReportClicked, this,
                                        [&](const QSharedPointer<VyrEngine::SnapshotLesson>& l, int source,
                                            QSharedPointer<OpaqueCommonPod> e) {
                                            gotLesson = l;
                                            gotSource = source;
                                            gotExtra = e;
                                        });
    emit ImSignalObject::instance()->signalStudyReportClicked(lesson, 2, extra);
    disconnect(c);
    QCOMPARE(gotLesson, lesson);
    QCOMPARE(gotSource, 2);
    QCOMPARE(gotExtra, extra);
}

QTEST_MAIN(TestVyrCommon)
#include "tst_vyrcommon.moc"
