#include "ContactsEngine.h"
#include "CoreEngine.h"
#include "FriendRequestFixture.h"
#include "FriendRequestModel.h"
#include "FriendRequestTreeViewProbe.h"
#include "FriendRequestViewItem.h"
#include "LogCapture.h"
#include "NoticeEngine.h"
#include "OutsideText_p.h"
#include "PersonInfoWidget.h"
#include "TeenModePassword.h"
#include "TeenModeWidget.h"
#include "TestKit.h"
#include "UserInfo.h"
#include "VyrModalAnswerer.h"
#include "VyrSettings.h"
#include "VyrTrack.h"
#include "friendrequesttreeview.h"

#include <QFile>
#include <QPointer>
#include <QPushButton>
#include <QScrollBar>
#include <QSortFilterProxyModel>
#include <QTemporaryDir>
#include <QtTest>
#include <memory>

using namespace Fr;
using Probe = FriendRequestTreeViewProbe;
using namespace FriendRequest;

namespace {
const quint64 Week = 604800;
const quint64 Peer = 2001;

QString trId(const char* id)
{
    return qtTrId(id, -1);
}
}

// The friend-request list: answers, the card, the menu, delete and errors.
class TestFriendRequestTreeView : public QObject
{
    Q_OBJECT
private slots:
    void initTestCase();
    void init();
    void cleanup();

    void constructionBuildsModelProxyAndRows();
    void overdueRule_data();
    void overdueRule();
    void overdueRuleDirectly_data();
    void overdueRuleDirectly();
    void trackingFiresBeforeTheOverdueBox_data();
    void trackingFiresBeforeTheOverdueBox();
    void answerRecordIsBuiltFromTheRow_data();
    void answerRecordIsBuiltFromTheRow();
    void agreeAsksForThePasswordFirst();
    void onlyOneTeenSettingAsksNothing_data();
    void onlyOneTeenSettingAsksNothing();
    void refusedPasswordDoesNothing();
    void rightPasswordRefusedWhileTheDelayRuns();
    void damagedSettingsFileAsksForThePassword();
    void refuseNeedsNoPassword();
    void failedAnswer_data();
    void failedAnswer();
    void personCardFlag_data();
    void personCardFlag();
    void menuOpensForEveryRightClick_data();
    void menuOpensForEveryRightClick();
    void menuDetailsOpensTheCard();
    void deleteAsksWithTheNameAndPassesTheFlag_data();
    void deleteAsksWithTheNameAndPassesTheFlag();
    void deleteAnsweredNoDeletesNothing();
    void deleteOfAnUnknownPersonWarnsWithoutQuestion();
    void rowChangedWhileItsMenuWasOpen();
    void dayGoneWhileItsMenuWasOpen();
    void engineErrorTextShownAsIs();
    void scrollToTheEndStartsAPage();
    void daysOpenByThemselves();

private:
    void showView(int height = 400);
    void put(quint64 peer, int status, quint64 date, const QString& nickname = QStringLiteral("Peer"),
             const QString& telephone = QString(), bool fromMe = false);
    void load();
    QModelIndex leafOf(quint64 peer) const;
    QRect rowRect(const QModelIndex& index) const;
    QPoint agreePoint(const QModelIndex& index) const;
    QPoint refusePoint(const QModelIndex& index) const;
    void click(const QPoint& pos, Qt::MouseButton button = Qt::LeftButton);
    QList<QVariantMap> tracked(const QString& name) const;

    QTemporaryDir m_settingsDir;
    std::unique_ptr<FriendRequestTreeView> m_view;
    VyrModalAnswerer* m_answerer = nullptr;
};

void TestFriendRequestTreeView::initTestCase()
{
    QVERIFY(TestKit::loadTranslations(QStringLiteral("en")));
    VyrSettings::setFolder(m_settingsDir.path());
    m_answerer = VyrModalAnswerer::instance();
}

void TestFriendRequestTreeView::init()
{
    resetKit();
    VyrEngine::CoreEngine::instance()->setCurrentTime(static_cast<qint64>(at(0, 15)));
    VyrEngine::ContactsEngine::instance()->clear();
    VyrTrack::instance()->clearEvents();
    VyrSettings::instance(QString())->setTeenModeConfig(TeenModeEnabled, false);
    VyrSettings::instance(QString())->setTeenModeConfig(TeenModeFriendPassword, false);
    TeenModeWidget::setPassword(QStringLiteral("1234"));
    m_answerer->clear();
    // A box nobody answered closes instead of hanging the test; seen() still tells.
    m_answerer->setCloseUnanswered(true);
}

void TestFriendRequestTreeView::cleanup()
{
    TeenModePassword::setClock({});
    if (VyrSettings::instance(QString())->isFileUnreadable())
        VyrSettings::instance(QString())->resetRestrictedMode();
    PersonInfoWidget::closeCurrent();
    m_view.reset();
    settle();
    QCoreApplication::sendPostedEvents(nullptr, QEvent::DeferredDelete);
    QCOMPARE(m_answerer->pendingCount(), 0);
}

void TestFriendRequestTreeView::showView(int height)
{
    m_view = std::make_unique<FriendRequestTreeView>();
    m_view->resize(640, height);
    m_view->show();
    QVERIFY(QTest::qWaitForWindowExposed(m_view.get()));
}

void TestFriendRequestTreeView::put(quint64 peer, int status, quint64 date, const QString& nickname,
                                    const QString& telephone, bool fromMe)
{
    if (!nickname.isNull() || !telephone.isNull())
        VyrEngine::ContactsEngine::instance()->putUser(VyrEngine::UserInfo(peer, nickname, telephone));
    const auto info = fromMe ? to(peer, int(peer), status, date) : from(peer, int(peer), status, date);
    VyrEngine::NoticeEngine::instance()->putFriendRequest(info);
}

void TestFriendRequestTreeView::load()
{
    if (!m_view)
        showView();
    m_view->initUiData();
    settle();
    m_view->expandAll();
    QApplication::processEvents();
}

QModelIndex TestFriendRequestTreeView::leafOf(quint64 peer) const
{
    return Fr::leafOf(m_view->model(), peer);
}

QRect TestFriendRequestTreeView::rowRect(const QModelIndex& index) const
{
    QRect row = m_view->visualRect(index);
    row.setLeft(0);
    return row;
}

// The Agree and Refuse buttons of a status-4 row, where the rows paint them.
QPoint TestFriendRequestTreeView::agreePoint(const QModelIndex& index) const
{
    const QRect inner = rowRect(index).adjusted(1, 4, -1, -4);
    return QRect(inner.right() - 144, inner.y() + (inner.height() - 24) / 2, 66, 24).center();
}

QPoint TestFriendRequestTreeView::refusePoint(const QModelIndex& index) const
{
    // Refuse starts 12 pixels after Agree's last column: 65 + 12 from its left.
    return agreePoint(index) + QPoint(65 + 12, 0);
}

void TestFriendRequestTreeView::click(const QPoint& pos, Qt::MouseButton button)
{
    QTest::mouseMove(m_view->viewport(), pos);
    QTest::mouseClick(m_view->viewport(), button, Qt::NoModifier, pos);
    QApplication::processEvents();
}

QList<QVariantMap> TestFriendRequestTreeView::tracked(const QString& name) const
{
    QList<QVariantMap> maps;
    for (const auto& event : VyrTrack::instance()->events()) {
        if (event.first == name)
            maps.append(event.second);
    }
    return maps;
}

// The view sorts through a parentless proxy, paints with its delegate and shows a bare tree.
void TestFriendRequestTreeView::constructionBuildsModelProxyAndRows()
{
    showView();
    auto* proxy = qobject_cast<QSortFilterProxyModel*>(m_view->model());
    QVERIFY(proxy);
    QVERIFY(!proxy->parent());
    QCOMPARE(proxy->sourceModel(), static_cast<QAbstractItemModel*>(Probe::model(m_view.get())));
    QCOMPARE(static_cast<QObject*>(Probe::model(m_view.get()))->parent(), static_cast<QObject*>(m_view.get()));
    QCOMPARE(m_view->itemDelegate(), static_cast<QAbstractItemDelegate*>(Probe::viewItem(m_view.get())));
    QCOMPARE(Probe::viewItem(m_view.get())->parent(), static_cast<QObject*>(m_view.get()));
    QVERIFY(m_view->isHeaderHidden());
    QVERIFY(!m_view->rootIsDecorated());
    QVERIFY(!m_view->itemsExpandable());
    QVERIFY(m_view->hasMouseTracking());
    QVERIFY(!m_view->testAttribute(Qt::WA_MacShowFocusRect));
    QVERIFY(m_view->testAttribute(Qt::WA_StyledBackground));
    QVERIFY(m_view->isFriendRequestEmpty());
    QVERIFY(VyrEngine::NoticeEngine::instance()->connectedSignals().contains("signalFriendRequestErrorNotice"));
}

// Seven days to the second may still be answered; one more, or a date ahead of now, is overdue.
void TestFriendRequestTreeView::overdueRule_data()
{
    QTest::addColumn<bool>("agree");
    QTest::addColumn<qint64>("age");
    QTest::addColumn<bool>("overdue");
    QTest::newRow("agree-fresh") << true << qint64(60) << false;
    QTest::newRow("agree-604800") << true << qint64(Week) << false;
    QTest::newRow("agree-604801") << true << qint64(Week + 1) << true;
    QTest::newRow("agree-future") << true << qint64(-1) << true;
    QTest::newRow("refuse-604800") << false << qint64(Week) << false;
    QTest::newRow("refuse-604801") << false << qint64(Week + 1) << true;
    QTest::newRow("refuse-future") << false << qint64(-3600) << true;
}

void TestFriendRequestTreeView::overdueRule()
{
    QFETCH(bool, agree);
    QFETCH(qint64, age);
    QFETCH(bool, overdue);
    // The row is put on the day it belongs to; the clock then moves to the age under test.
    const quint64 date = at(2, 10);
    put(Peer, AwaitingMyAnswer, date);
    VyrEngine::CoreEngine::instance()->setCurrentTime(static_cast<qint64>(date) + 60);
    load();
    VyrEngine::CoreEngine::instance()->setCurrentTime(static_cast<qint64>(date) + age);
    const QModelIndex leaf = leafOf(Peer);
    QVERIFY(leaf.isValid());
    click(agree ? agreePoint(leaf) : refusePoint(leaf));

    auto* engine = VyrEngine::NoticeEngine::instance();
    const QString boxLine = QStringLiteral("box Warning | ") + trId("ID_friendrequesttreeview_RequestTimeOut");
    if (overdue) {
        QCOMPARE(engine->answers().size(), 0);
        QCOMPARE(engine->overdueMarks().size(), 1);
        QCOMPARE(engine->overdueMarks().first().status(), int(Overdue));
        QCOMPARE(engine->overdueMarks().first().sourceId(), Peer);
        QCOMPARE(m_answerer->seen(), QStringList(boxLine));
    } else {
        QCOMPARE(engine->overdueMarks().size(), 0);
        QCOMPARE(engine->answers().size(), 1);
        QCOMPARE(engine->answers().first().status(), agree ? int(AgreedByMe) : int(RefusedByMe));
        QVERIFY(m_answerer->seen().isEmpty());
    }
}

// The rule itself, on records with no row: the unsigned age and its log line.
void TestFriendRequestTreeView::overdueRuleDirectly_data()
{
    QTest::addColumn<qint64>("age");
    QTest::addColumn<bool>("overdue");
    QTest::newRow("0") << qint64(0) << false;
    QTest::newRow("604800") << qint64(Week) << false;
    QTest::newRow("604801") << qint64(Week + 1) << true;
    QTest::newRow("one-second-ahead") << qint64(-1) << true;
    QTest::newRow("a-year-ahead") << qint64(-31536000) << true;
}

void TestFriendRequestTreeView::overdueRuleDirectly()
{
    QFETCH(qint64, age);
    QFETCH(bool, overdue);
    showView();
    const qint64 now = 1800000000;
    VyrEngine::CoreEngine::instance()->setCurrentTime(now);
    auto info = from(Peer, 5, AwaitingMyAnswer, quint64(now - age));
    LogCapture log;
    QCOMPARE(Probe::isCheckRequestOverdue(m_view.get(), info), overdue);
    QCOMPARE(info.status(), overdue ? int(Overdue) : int(AwaitingMyAnswer));
    QCOMPARE(log.startingWith(QStringLiteral("request is overdue")).size(), overdue ? 1 : 0);
    QCOMPARE(VyrEngine::NoticeEngine::instance()->overdueMarks().size(), overdue ? 1 : 0);
}

void TestFriendRequestTreeView::trackingFiresBeforeTheOverdueBox_data()
{
    QTest::addColumn<bool>("agree");
    QTest::newRow("agree") << true;
    QTest::newRow("refuse") << false;
}

// An overdue answer is tracked all the same, and before its warning box.
void TestFriendRequestTreeView::trackingFiresBeforeTheOverdueBox()
{
    QFETCH(bool, agree);
    put(Peer, AwaitingMyAnswer, at(9));
    load();
    int trackedWhenBoxShown = -1;
    m_answerer->answerWith([&](QWidget* box) {
        trackedWhenBoxShown = tracked(QStringLiteral("NewFriends")).size();
        VyrModalAnswerer::pressButtonOn(box, QMessageBox::Ok);
    });
    click(agree ? agreePoint(leafOf(Peer)) : refusePoint(leafOf(Peer)));
    QCOMPARE(trackedWhenBoxShown, 1);
    QCOMPARE(VyrEngine::NoticeEngine::instance()->overdueMarks().size(), 1);
    QVERIFY(VyrEngine::NoticeEngine::instance()->answers().isEmpty());
}

// The record sent is built from the row: its ids, date and message, the user as target, read, and the status by button.
void TestFriendRequestTreeView::answerRecordIsBuiltFromTheRow_data()
{
    QTest::addColumn<bool>("agree");
    QTest::addColumn<int>("status");
    QTest::addColumn<QString>("tabName");
    QTest::newRow("agree") << true << int(AgreedByMe) << QString::fromUtf8("同意");
    QTest::newRow("refuse") << false << int(RefusedByMe) << QString::fromUtf8("拒绝");
}

void TestFriendRequestTreeView::answerRecordIsBuiltFromTheRow()
{
    QFETCH(bool, agree);
    QFETCH(int, status);
    QFETCH(QString, tabName);
    auto info = from(Peer, 77, AwaitingMyAnswer, at(0, 9), QStringLiteral("hello there"));
    info.setUnread(true);
    VyrEngine::ContactsEngine::instance()->putUser(VyrEngine::UserInfo(Peer, QStringLiteral("Ann")));
    VyrEngine::NoticeEngine::instance()->putFriendRequest(info);
    load();
    const int touchesBefore = VyrEngine::NoticeEngine::instance()->touchCount();
    click(agree ? agreePoint(leafOf(Peer)) : refusePoint(leafOf(Peer)));

    const auto answers = VyrEngine::NoticeEngine::instance()->answers();
    QCOMPARE(answers.size(), 1);
    const auto& sent = answers.first();
    QCOMPARE(sent.sequenceId(), 77);
    QCOMPARE(sent.sourceId(), Peer);
    QCOMPARE(sent.targetId(), Me);
    QCOMPARE(sent.date(), at(0, 9));
    QCOMPARE(sent.status(), status);
    QCOMPARE(sent.message(), QString("hello there"));
    QCOMPARE(sent.unread(), false);
    QCOMPARE(VyrEngine::NoticeEngine::instance()->touchCount(), touchesBefore + 1);
    const auto events = tracked(QStringLiteral("NewFriends"));
    QCOMPARE(events.size(), 1);
    QCOMPARE(events.first(), QVariantMap({{QStringLiteral("tab_name"), tabName}}));
}

// With both restricted-mode settings on, Agree asks for the password before anything else.
void TestFriendRequestTreeView::agreeAsksForThePasswordFirst()
{
    VyrSettings::instance(QString())->setTeenModeConfig(TeenModeEnabled, true);
    VyrSettings::instance(QString())->setTeenModeConfig(TeenModeFriendPassword, true);
    put(Peer, AwaitingMyAnswer, at(0, 9));
    load();
    const int touchesBefore = VyrEngine::NoticeEngine::instance()->touchCount();
    int touchesWhenAsked = -1;
    int trackedWhenAsked = -1;
    m_answerer->answerWith([&](QWidget* dialog) {
        touchesWhenAsked = VyrEngine::NoticeEngine::instance()->touchCount();
        trackedWhenAsked = VyrTrack::instance()->events().size();
        QVERIFY(dialog->findChild<TeenModeWidget*>());
        VyrModalAnswerer::enterTextOn(dialog, QStringLiteral("1234"));
    });
    click(agreePoint(leafOf(Peer)));
    QCOMPARE(m_answerer->seen(), QStringList(QStringLiteral("dialog ") + trId("ID_SettingsWidget_EnterseparatePassword")));
    QCOMPARE(touchesWhenAsked, touchesBefore);
    QCOMPARE(trackedWhenAsked, 0);
    QCOMPARE(VyrEngine::NoticeEngine::instance()->answers().size(), 1);
    QCOMPARE(tracked(QStringLiteral("NewFriends")).size(), 1);
}

// One of the two settings alone asks nothing.
void TestFriendRequestTreeView::onlyOneTeenSettingAsksNothing_data()
{
    QTest::addColumn<bool>("mode");
    QTest::addColumn<bool>("password");
    QTest::newRow("mode-only") << true << false;
    QTest::newRow("password-only") << false << true;
}

void TestFriendRequestTreeView::onlyOneTeenSettingAsksNothing()
{
    QFETCH(bool, mode);
    QFETCH(bool, password);
    VyrSettings::instance(QString())->setTeenModeConfig(TeenModeEnabled, mode);
    VyrSettings::instance(QString())->setTeenModeConfig(TeenModeFriendPassword, password);
    put(Peer, AwaitingMyAnswer, at(0, 9));
    load();
    click(agreePoint(leafOf(Peer)));
    QVERIFY(m_answerer->seen().isEmpty());
    QCOMPARE(VyrEngine::NoticeEngine::instance()->answers().size(), 1);
}

// A wrong password and then Cancel: no touch, no tracking, no answer.
void TestFriendRequestTreeView::refusedPasswordDoesNothing()
{
    VyrSettings::instance(QString())->setTeenModeConfig(TeenModeEnabled, true);
    VyrSettings::instance(QString())->setTeenModeConfig(TeenModeFriendPassword, true);
    put(Peer, AwaitingMyAnswer, at(0, 9));
    load();
    const int touchesBefore = VyrEngine::NoticeEngine::instance()->touchCount();
    int failed = -1;
    m_answerer->answerWith([&](QWidget* dialog) {
        auto* panel = dialog->findChild<TeenModeWidget*>();
        VyrModalAnswerer::enterTextOn(dialog, QStringLiteral("0000"));
        failed = panel->failedAttempts();
        QVERIFY(dialog->isVisible());
        panel->cancelButton()->click();
    });
    click(agreePoint(leafOf(Peer)));
    QCOMPARE(failed, 1);
    QCOMPARE(VyrEngine::NoticeEngine::instance()->touchCount(), touchesBefore);
    QCOMPARE(VyrEngine::NoticeEngine::instance()->answers().size(), 0);
    QCOMPARE(VyrEngine::NoticeEngine::instance()->overdueMarks().size(), 0);
    QVERIFY(VyrTrack::instance()->events().isEmpty());
}

// After five wrong passwords even the right one is refused unchecked, and nothing is answered.
void TestFriendRequestTreeView::rightPasswordRefusedWhileTheDelayRuns()
{
    qint64 now = 1700000000000;
    TeenModePassword::setClock([&now]() { return now; });
    VyrSettings::instance(QString())->setTeenModeConfig(TeenModeEnabled, true);
    VyrSettings::instance(QString())->setTeenModeConfig(TeenModeFriendPassword, true);
    for (int i = 0; i < 5; ++i)
        QCOMPARE(TeenModePassword::check(QStringLiteral("0000")), TeenModePassword::Wrong);
    put(Peer, AwaitingMyAnswer, at(0, 9));
    load();
    const int touchesBefore = VyrEngine::NoticeEngine::instance()->touchCount();
    const int derivedBefore = TeenModePassword::derivationCount();
    int refused = -1;
    int failed = -1;
    m_answerer->answerWith([&](QWidget* dialog) {
        auto* panel = dialog->findChild<TeenModeWidget*>();
        VyrModalAnswerer::enterTextOn(dialog, QStringLiteral("1234"));
        refused = panel->refusedAttempts();
        failed = panel->failedAttempts();
        QVERIFY(dialog->isVisible());
        panel->cancelButton()->click();
    });
    click(agreePoint(leafOf(Peer)));
    QCOMPARE(refused, 1);
    QCOMPARE(failed, 0);
    QCOMPARE(TeenModePassword::derivationCount(), derivedBefore);
    QCOMPARE(VyrEngine::NoticeEngine::instance()->touchCount(), touchesBefore);
    QCOMPARE(VyrEngine::NoticeEngine::instance()->answers().size(), 0);
    // The delay over, the same password goes through.
    now += TeenModePassword::FirstDelayMs;
    m_answerer->enterText(QStringLiteral("1234"));
    click(agreePoint(leafOf(Peer)));
    QCOMPARE(VyrEngine::NoticeEngine::instance()->answers().size(), 1);
}

// A settings file that can't be read counts as restricted mode on: Agree asks until the host resets it.
void TestFriendRequestTreeView::damagedSettingsFileAsksForThePassword()
{
    QFile file(VyrSettings::instance(QString())->fileName());
    QVERIFY(file.open(QIODevice::WriteOnly | QIODevice::Truncate));
    file.write(QByteArray(256, '\xfe'));
    file.close();
    put(Peer, AwaitingMyAnswer, at(0, 9));
    load();
    m_answerer->closeModal();
    click(agreePoint(leafOf(Peer)));
    QCOMPARE(m_answerer->seen(), QStringList(QStringLiteral("dialog ") + trId("ID_SettingsWidget_EnterseparatePassword")));
    QCOMPARE(VyrEngine::NoticeEngine::instance()->answers().size(), 0);
    // The host's reset lets Agree through without asking.
    VyrSettings::instance(QString())->resetRestrictedMode();
    m_answerer->clear();
    click(agreePoint(leafOf(Peer)));
    QVERIFY(m_answerer->seen().isEmpty());
    QCOMPARE(VyrEngine::NoticeEngine::instance()->answers().size(), 1);
}

// Refusing needs no password even with both settings on.
void TestFriendRequestTreeView::refuseNeedsNoPassword()
{
    VyrSettings::instance(QString())->setTeenModeConfig(TeenModeEnabled, true);
    VyrSettings::instance(QString())->setTeenModeConfig(TeenModeFriendPassword, true);
    put(Peer, AwaitingMyAnswer, at(0, 9));
    load();
    click(refusePoint(leafOf(Peer)));
    QVERIFY(m_answerer->seen().isEmpty());
    QCOMPARE(VyrEngine::NoticeEngine::instance()->answers().size(), 1);
    QCOMPARE(VyrEngine::NoticeEngine::instance()->answers().first().status(), int(RefusedByMe));
}

// A refusal that couldn't be sent shows a warning; an agreement that couldn't shows nothing.
void TestFriendRequestTreeView::failedAnswer_data()
{
    QTest::addColumn<bool>("agree");
    QTest::addColumn<QStringList>("boxes");
    QTest::newRow("agree") << true << QStringList();
    QTest::newRow("refuse") << false
                            << QStringList(QStringLiteral("box Warning | ") + trId("ID_friendrequesttreeview_QuerySendFailed"));
}

void TestFriendRequestTreeView::failedAnswer()
{
    QFETCH(bool, agree);
    QFETCH(QStringList, boxes);
    VyrEngine::NoticeEngine::instance()->setAnswerResult(3);
    put(Peer, AwaitingMyAnswer, at(0, 9));
    load();
    click(agree ? agreePoint(leafOf(Peer)) : refusePoint(leafOf(Peer)));
    QCOMPARE(m_answerer->seen(), boxes);
    QCOMPARE(VyrEngine::NoticeEngine::instance()->answers().size(), 1);
    settle();
    // The row stays as it was: only the engine's echo changes it, and none comes.
    QCOMPARE(leafOf(Peer).data(StatusRole).toInt(), int(AwaitingMyAnswer));
}

// The card may offer the answer only for a status-4 row at most seven days old.
void TestFriendRequestTreeView::personCardFlag_data()
{
    QTest::addColumn<int>("status");
    QTest::addColumn<qint64>("age");
    QTest::addColumn<bool>("flag");
    QTest::newRow("awaiting-fresh") << int(AwaitingMyAnswer) << qint64(3600) << true;
    QTest::newRow("awaiting-604800") << int(AwaitingMyAnswer) << qint64(Week) << true;
    QTest::newRow("awaiting-604801") << int(AwaitingMyAnswer) << qint64(Week + 1) << false;
    QTest::newRow("awaiting-future") << int(AwaitingMyAnswer) << qint64(-60) << false;
    QTest::newRow("agreed-fresh") << int(AgreedByMe) << qint64(3600) << false;
    QTest::newRow("overdue-fresh") << int(Overdue) << qint64(3600) << false;
}

void TestFriendRequestTreeView::personCardFlag()
{
    QFETCH(int, status);
    QFETCH(qint64, age);
    QFETCH(bool, flag);
    const quint64 date = at(2, 10);
    put(Peer, status, date, QStringLiteral("Ann"));
    VyrEngine::CoreEngine::instance()->setCurrentTime(static_cast<qint64>(date) + 60);
    load();
    VyrEngine::CoreEngine::instance()->setCurrentTime(static_cast<qint64>(date) + age);
    const int touchesBefore = VyrEngine::NoticeEngine::instance()->touchCount();
    click(QPoint(20, rowRect(leafOf(Peer)).center().y()));
    PersonInfoWidget* card = PersonInfoWidget::current();
    QVERIFY(card);
    QVERIFY(card->isVisible());
    QCOMPARE(card->uid(), Peer);
    QCOMPARE(card->canAnswerRequest(), flag);
    QCOMPARE(card->clusterId(), quint64(0));
    QCOMPARE(card->isFromChat(), false);
    QCOMPARE(card->nameText(), QString("Ann"));
    QCOMPARE(VyrEngine::NoticeEngine::instance()->touchCount(), touchesBefore + 1);
}

// Every right click opens a new menu with the two entries, on header rows too.
void TestFriendRequestTreeView::menuOpensForEveryRightClick_data()
{
    QTest::addColumn<bool>("header");
    QTest::newRow("leaf") << false;
    QTest::newRow("header") << true;
}

void TestFriendRequestTreeView::menuOpensForEveryRightClick()
{
    QFETCH(bool, header);
    put(Peer, AgreedByMe, at(0, 9));
    load();
    const QModelIndex leaf = leafOf(Peer);
    const QModelIndex target = header ? leaf.parent() : leaf;
    const int touchesBefore = VyrEngine::NoticeEngine::instance()->touchCount();
    QPoint menuPos;
    QList<QPointer<QWidget>> menus;
    const auto closeMenu = [&](QWidget* menu) {
        menuPos = menu->pos();
        menus.append(menu);
        VyrModalAnswerer::closeModalOn(menu);
    };
    m_answerer->answerWith(closeMenu);
    m_answerer->answerWith(closeMenu);
    const QPoint pos(400, rowRect(target).center().y());
    click(pos, Qt::RightButton);
    click(pos, Qt::RightButton);
    const QString menuLine = QStringLiteral("menu %1 | %2")
                                 .arg(trId("ID_friendrequesttreeview_PersonDetail"),
                                      trId("ID_friendrequesttreeview_DeleteMessage"));
    QCOMPARE(m_answerer->seen(), QStringList({menuLine, menuLine}));
    QCOMPARE(VyrEngine::NoticeEngine::instance()->touchCount(), touchesBefore + 2);
    QCOMPARE(Probe::currentIndex(m_view.get()), target);
    // Opened at the click, moved 30 right and 10 down.
    QCOMPARE(menuPos, m_view->mapToGlobal(pos + QPoint(30, 10)));
    // Two menus, the first one still there after it closed.
    QCOMPARE(menus.size(), 2);
    QVERIFY(menus[0] && menus[1]);
    QVERIFY(menus[0] != menus[1]);
}

// The menu's first entry opens the person's card for the row.
void TestFriendRequestTreeView::menuDetailsOpensTheCard()
{
    put(Peer, AwaitingMyAnswer, at(0, 9), QStringLiteral("Ann"));
    load();
    m_answerer->chooseMenuEntry(trId("ID_friendrequesttreeview_PersonDetail"));
    click(QPoint(400, rowRect(leafOf(Peer)).center().y()), Qt::RightButton);
    QVERIFY(PersonInfoWidget::current());
    QCOMPARE(PersonInfoWidget::current()->uid(), Peer);
    QCOMPARE(PersonInfoWidget::current()->canAnswerRequest(), true);
}

// Delete asks with the nickname (or the telephone) and passes whether the user sent the request.
void TestFriendRequestTreeView::deleteAsksWithTheNameAndPassesTheFlag_data()
{
    QTest::addColumn<bool>("fromMe");
    QTest::addColumn<QString>("nickname");
    QTest::addColumn<QString>("telephone");
    QTest::addColumn<QString>("shown");
    QTest::newRow("theirs-nickname") << false << "Ann" << "13800000001" << "Ann";
    QTest::newRow("mine-nickname") << true << "Bob" << "" << "Bob";
    QTest::newRow("telephone") << false << "" << "13800000002" << "13800000002";
}

void TestFriendRequestTreeView::deleteAsksWithTheNameAndPassesTheFlag()
{
    QFETCH(bool, fromMe);
    QFETCH(QString, nickname);
    QFETCH(QString, telephone);
    QFETCH(QString, shown);
    put(Peer, fromMe ? int(AwaitingPeerAnswer) : int(AgreedByMe), at(0, 9), nickname, telephone, fromMe);
    load();
    m_answerer->chooseMenuEntry(trId("ID_friendrequesttreeview_DeleteMessage"));
    m_answerer->pressButton(QMessageBox::Yes);
    click(QPoint(400, rowRect(leafOf(Peer)).center().y()), Qt::RightButton);
    QCOMPARE(m_answerer->seen().size(), 2);
    QCOMPARE(m_answerer->seen().at(1),
             QStringLiteral("box Question | ") + trId("ID_friendrequesttreeview_IFDeleteFrindRequest").arg(shown));
    const auto deletes = VyrEngine::NoticeEngine::instance()->deletes();
    QCOMPARE(deletes.size(), 1);
    QCOMPARE(deletes.first().first, Peer);
    QCOMPARE(deletes.first().second, fromMe);
    // The row goes with the engine's echo, not before.
    QVERIFY(leafOf(Peer).isValid());
    settle();
    QVERIFY(!leafOf(Peer).isValid());
}

// No to the question deletes nothing.
void TestFriendRequestTreeView::deleteAnsweredNoDeletesNothing()
{
    put(Peer, AgreedByMe, at(0, 9), QStringLiteral("Ann"));
    load();
    m_answerer->chooseMenuEntry(trId("ID_friendrequesttreeview_DeleteMessage"));
    m_answerer->pressButton(QMessageBox::No);
    click(QPoint(400, rowRect(leafOf(Peer)).center().y()), Qt::RightButton);
    QCOMPARE(m_answerer->seen().size(), 2);
    QVERIFY(VyrEngine::NoticeEngine::instance()->deletes().isEmpty());
    settle();
    QVERIFY(leafOf(Peer).isValid());
}

// A person the contacts engine doesn't know: a warning in the log and no question.
void TestFriendRequestTreeView::deleteOfAnUnknownPersonWarnsWithoutQuestion()
{
    put(Peer, AgreedByMe, at(0, 9), QString(), QString());
    load();
    QVERIFY(leafOf(Peer).isValid());
    m_answerer->chooseMenuEntry(trId("ID_friendrequesttreeview_DeleteMessage"));
    LogCapture log;
    click(QPoint(400, rowRect(leafOf(Peer)).center().y()), Qt::RightButton);
    QCOMPARE(m_answerer->seen().size(), 1);
    QVERIFY(m_answerer->seen().first().startsWith("menu "));
    const auto warnings = log.matching(QStringLiteral("FriendRequestTreeView::deleteOneSlot get person info error"));
    QCOMPARE(warnings.size(), 1);
    QCOMPARE(warnings.first().type, QtWarningMsg);
    QVERIFY(VyrEngine::NoticeEngine::instance()->deletes().isEmpty());
}

// The menu keeps a plain index: a row that arrives above while it is open takes the deletion.
void TestFriendRequestTreeView::rowChangedWhileItsMenuWasOpen()
{
    const quint64 newer = 2002;
    put(Peer, AgreedByMe, at(0, 9), QStringLiteral("Ann"));
    load();
    VyrEngine::ContactsEngine::instance()->putUser(VyrEngine::UserInfo(newer, QStringLiteral("Cai")));
    m_answerer->answerWith([&](QWidget* menu) {
        // A newer request of the same day comes in while the menu is up and lands above.
        VyrEngine::NoticeEngine::instance()->emitRecordSignal(VyrEngine::NoticeEngine::ContactorAdd,
                                                              from(newer, 9, AwaitingMyAnswer, at(0, 11)));
        settle();
        VyrModalAnswerer::chooseMenuEntryOn(menu, trId("ID_friendrequesttreeview_DeleteMessage"));
    });
    m_answerer->pressButton(QMessageBox::Yes);
    const QModelIndex before = leafOf(Peer);
    QCOMPARE(before.row(), 0);
    click(QPoint(400, rowRect(before).center().y()), Qt::RightButton);
    QCOMPARE(leafOf(newer).row(), 0);
    QCOMPARE(m_answerer->seen().at(1),
             QStringLiteral("box Question | ") + trId("ID_friendrequesttreeview_IFDeleteFrindRequest").arg("Cai"));
    const auto deletes = VyrEngine::NoticeEngine::instance()->deletes();
    QCOMPARE(deletes.size(), 1);
    QCOMPARE(deletes.first().first, newer);
}

// A day that goes while its row's menu is open ends the entry quietly.
void TestFriendRequestTreeView::dayGoneWhileItsMenuWasOpen()
{
    put(Peer, AgreedByMe, at(1, 9), QStringLiteral("Ann"));
    put(2003, AgreedByMe, at(0, 9), QStringLiteral("Dan"));
    load();
    m_answerer->answerWith([&](QWidget* menu) {
        VyrEngine::NoticeEngine::instance()->emitDeleteSignal(Peer);
        settle();
        VyrModalAnswerer::chooseMenuEntryOn(menu, trId("ID_friendrequesttreeview_DeleteMessage"));
    });
    click(QPoint(400, rowRect(leafOf(Peer)).center().y()), Qt::RightButton);
    QVERIFY(!leafOf(Peer).isValid());
    QCOMPARE(m_answerer->seen().size(), 1);
    QVERIFY(VyrEngine::NoticeEngine::instance()->deletes().isEmpty());
}

// The engine's error text is shown in a warning box as typed, tags and all.
void TestFriendRequestTreeView::engineErrorTextShownAsIs()
{
    showView();
    const QString text = QStringLiteral("<b>Server</b> said: <a href=\"x\">no</a> & <i>retry</i>");
    m_answerer->pressButton(QMessageBox::Ok);
    VyrEngine::NoticeEngine::instance()->emitErrorNotice(text);
    QCOMPARE(m_answerer->seen(), QStringList(QStringLiteral("box Warning | ") + OutsideText::forAutoFormat(text)));
}

// Scrolling the real bar to its end asks the engine for the page after the last row.
void TestFriendRequestTreeView::scrollToTheEndStartsAPage()
{
    // 230 people over 23 days: the first page holds 200 of them.
    for (int i = 0; i < 230; ++i)
        put(3000 + quint64(i), AgreedByMe, at(i / 10, 20 - i % 10));
    VyrEngine::CoreEngine::instance()->setCurrentTime(static_cast<qint64>(at(0, 23)));
    showView(300);
    load();
    auto* engine = VyrEngine::NoticeEngine::instance();
    QCOMPARE(engine->friendRequestQueries().size(), 1);
    QScrollBar* bar = m_view->verticalScrollBar();
    QVERIFY(bar->maximum() > 0);
    bar->setValue(bar->maximum() - 1);
    settle();
    QCOMPARE(engine->friendRequestQueries().size(), 1);
    bar->setValue(bar->maximum());
    settle();
    const auto queries = engine->friendRequestQueries();
    QCOMPARE(queries.size(), 2);
    QCOMPARE(queries.last().count, 30);
    // Anchored on the last row shown: person 3199, the 200th.
    QCOMPARE(queries.last().date, at(19, 11));
    QCOMPARE(queries.last().sequenceId, 3199);
    QVERIFY(leafOf(3229).isValid());
}

// Days open by themselves: those of the first page and one that a live record brings.
void TestFriendRequestTreeView::daysOpenByThemselves()
{
    put(Peer, AgreedByMe, at(0, 9));
    put(2004, AgreedByMe, at(2, 9));
    showView();
    m_view->initUiData();
    settle();
    QApplication::processEvents();
    QAbstractItemModel* model = m_view->model();
    QCOMPARE(model->rowCount(), 2);
    for (int g = 0; g < model->rowCount(); ++g)
        QVERIFY2(m_view->isExpanded(model->index(g, 0)), qPrintable(QString::number(g)));
    QVERIFY(m_view->visualRect(leafOf(2004)).height() > 0);

    VyrEngine::ContactsEngine::instance()->putUser(VyrEngine::UserInfo(2005, QStringLiteral("Eve")));
    VyrEngine::NoticeEngine::instance()->emitRecordSignal(VyrEngine::NoticeEngine::ContactorAdd,
                                                          from(2005, 9, AwaitingMyAnswer, at(1, 9)));
    settle();
    QApplication::processEvents();
    const QModelIndex fresh = leafOf(2005);
    QVERIFY(fresh.isValid());
    QVERIFY(m_view->isExpanded(fresh.parent()));
    QVERIFY(m_view->visualRect(fresh).height() > 0);
}

QTEST_MAIN(TestFriendRequestTreeView)
#include "tst_friendrequesttreeview.moc"
