#include "ContactsEngine.h"
#include "CoreEngine.h"
#include "FriendRequestFixture.h"
#include "FriendRequestModel.h"
#include "FriendRequestWidget.h"
#include "FriendRequestWidgetProbe.h"
#include "ImSignalObject.h"
#include "NoticeEngine.h"
#include "PixelProbe.h"
#include "TestKit.h"
#include "UserInfo.h"
#include "VyrModalAnswerer.h"

#include <QLabel>
#include <QLayout>
#include <QPushButton>
#include <QSignalSpy>
#include <QStackedWidget>
#include <QtTest>
#include <memory>

using namespace Fr;
using Probe = FriendRequestWidgetProbe;
using namespace FriendRequest;

// The friend-request page: its parts, its style and which page it shows.
class TestFriendRequestWidget : public QObject
{
    Q_OBJECT
private slots:
    void initTestCase();
    void init();
    void cleanup();

    void readyEngineEndsOnTheListPage();
    void readyEngineWithNothingStaysEmpty();
    void engineNotReadyWaitsForInitSignal();
    void everyInitSignalReadsAgain();
    void readyEngineDoesNotListenForInit();
    void lastRowDeletedBringsTheEmptyPageBack();
    void sameDayUpdateLeavesThePageAsItIs();
    void addFriendAsksTheHost();
    void partsAndStyleSheets_data();
    void partsAndStyleSheets();
    void emptyPageLayout();
    void emptyPageShowsTheBlankPicture();

private:
    void makePage();
    QWidget* current() const { return Probe::stack(m_page.get())->currentWidget(); }
    QWidget* list() const { return Probe::treeView(m_page.get()); }
    QWidget* empty() const { return Probe::emptyPage(m_page.get()); }

    std::unique_ptr<FriendRequestWidget> m_page;
};

void TestFriendRequestWidget::initTestCase()
{
    QVERIFY(TestKit::loadTranslations(QStringLiteral("en")));
}

void TestFriendRequestWidget::init()
{
    resetKit();
    VyrEngine::CoreEngine::instance()->setCurrentTime(static_cast<qint64>(at(0, 15)));
    VyrEngine::ContactsEngine::instance()->clear();
    VyrModalAnswerer::instance()->clear();
    VyrModalAnswerer::instance()->setCloseUnanswered(true);
}

void TestFriendRequestWidget::cleanup()
{
    m_page.reset();
    settle();
}

void TestFriendRequestWidget::makePage()
{
    m_page = std::make_unique<FriendRequestWidget>();
    m_page->resize(800, 600);
    m_page->show();
    QVERIFY(QTest::qWaitForWindowExposed(m_page.get()));
}

// With the engine ready and rows there, the constructor ends on the list.
void TestFriendRequestWidget::readyEngineEndsOnTheListPage()
{
    VyrEngine::NoticeEngine::instance()->putFriendRequest(from(2001, 1, AwaitingMyAnswer, at(0, 9)));
    VyrEngine::NoticeEngine::instance()->setUiDataReady(true);
    makePage();
    QCOMPARE(current(), list());
    QCOMPARE(VyrEngine::NoticeEngine::instance()->friendRequestQueries().size(), 1);
}

// A ready engine with nothing to show leaves the empty page.
void TestFriendRequestWidget::readyEngineWithNothingStaysEmpty()
{
    VyrEngine::NoticeEngine::instance()->setUiDataReady(true);
    makePage();
    QCOMPARE(current(), empty());
    QCOMPARE(VyrEngine::NoticeEngine::instance()->friendRequestQueries().size(), 1);
}

// An engine that isn't ready: the empty page until signalInitUiData, then the list.
void TestFriendRequestWidget::engineNotReadyWaitsForInitSignal()
{
    VyrEngine::NoticeEngine::instance()->putFriendRequest(from(2001, 1, AwaitingMyAnswer, at(0, 9)));
    makePage();
    QCOMPARE(current(), empty());
    QCOMPARE(VyrEngine::NoticeEngine::instance()->friendRequestQueries().size(), 0);
    VyrEngine::NoticeEngine::instance()->setUiDataReady(true);
    settle();
    QCOMPARE(current(), list());
}

// The connection stays: each later signalInitUiData reads the first page again.
void TestFriendRequestWidget::everyInitSignalReadsAgain()
{
    makePage();
    auto* engine = VyrEngine::NoticeEngine::instance();
    emit engine->signalInitUiData();
    emit engine->signalInitUiData();
    QCOMPARE(engine->friendRequestQueries().size(), 2);
}

// A page made on a ready engine reads once and leaves later signalInitUiData alone.
void TestFriendRequestWidget::readyEngineDoesNotListenForInit()
{
    auto* engine = VyrEngine::NoticeEngine::instance();
    engine->setUiDataReady(true);
    makePage();
    QCOMPARE(engine->friendRequestQueries().size(), 1);
    emit engine->signalInitUiData();
    QCOMPARE(engine->friendRequestQueries().size(), 1);
}

// When the last row goes, the empty page comes back.
void TestFriendRequestWidget::lastRowDeletedBringsTheEmptyPageBack()
{
    VyrEngine::NoticeEngine::instance()->putFriendRequest(from(2001, 1, AgreedByMe, at(0, 9)));
    VyrEngine::NoticeEngine::instance()->setUiDataReady(true);
    makePage();
    QCOMPARE(current(), list());
    VyrEngine::NoticeEngine::instance()->emitDeleteSignal(2001);
    settle();
    QCOMPARE(current(), empty());
}

// A same-day update of a row emits no change and the page stays.
void TestFriendRequestWidget::sameDayUpdateLeavesThePageAsItIs()
{
    VyrEngine::NoticeEngine::instance()->putFriendRequest(from(2001, 1, AwaitingMyAnswer, at(0, 9)));
    VyrEngine::NoticeEngine::instance()->setUiDataReady(true);
    makePage();
    QSignalSpy changed(Probe::treeView(m_page.get()), &FriendRequestTreeView::friendRequestChangeSignal);
    QSignalSpy stackChanged(Probe::stack(m_page.get()), &QStackedWidget::currentChanged);
    VyrEngine::NoticeEngine::instance()->emitRecordSignal(VyrEngine::NoticeEngine::ContactsAddConfirm,
                                                          from(2001, 1, AgreedByMe, at(0, 10)));
    settle();
    // The row did change in place.
    const QModelIndex group = Probe::treeView(m_page.get())->model()->index(0, 0);
    QCOMPARE(Probe::treeView(m_page.get())->model()->rowCount(group), 1);
    QCOMPARE(Probe::treeView(m_page.get())->model()->index(0, 0, group).data(StatusRole).toInt(), int(AgreedByMe));
    QCOMPARE(changed.size(), 0);
    QCOMPARE(stackChanged.size(), 0);
    QCOMPARE(current(), list());
}

// The add-friend button asks the host to open its add-contact function, from the new friends page.
void TestFriendRequestWidget::addFriendAsksTheHost()
{
    makePage();
    QSignalSpy asked(ImSignalObject::instance(), &ImSignalObject::menuAddContacts);
    auto* button = empty()->findChild<QPushButton*>();
    QVERIFY(button);
    QTest::mouseClick(button, Qt::LeftButton);
    QCOMPARE(asked.size(), 1);
    QCOMPARE(asked.first().at(0).toString(), QString(""));
    QCOMPARE(asked.first().at(1).toString(), QString::fromUtf8("联系人-新的好友"));
}

// Each part has its object name, text and style sheet as the page defines them.
void TestFriendRequestWidget::partsAndStyleSheets_data()
{
    QTest::addColumn<QString>("part");
    QTest::addColumn<QString>("styleSheet");
    QTest::newRow("page") << "page" << "QWidget#friendRequestWidget{background:#F3F3F3;}";
    QTest::newRow("title") << "title"
                           << "QLabel{border-bottom: 1px solid #EBEBEB; padding-top:19px;padding-bottom:16px;"
                              "background: #FFFFFF;font-size:16px;color: #000000;}";
    QTest::newRow("centre") << "centre"
                            << "QWidget#centerWidget{margin-left:42px;margin-right:42px;margin-top:8px;"
                               "margin-bottom:16px;border:1px solid rgba(0, 0, 0, 0.08);\t\t\t\t\t\t\tbackground: "
                               "#FCFCFC;font-size:12px;color: #000000;border-radius:4px;}";
    QTest::newRow("subtitle") << "subtitle"
                              << "QLabel{margin-left:72px;margin-right:100px;margin-top:38px;background: "
                                 "#FCFCFC;font-size:16px;color:#000000;}";
    QTest::newRow("stack") << "stack"
                           << "QStackedWidget{margin-left:43px;margin-right:43px;margin-bottom:20px;"
                              "background:transparent;border:none;font-size:12px;color:#000000;}";
    QTest::newRow("empty") << "empty" << ".QWidget{background:transparent;border:none;font-size:12px;color: #000000;}";
    QTest::newRow("blank") << "blank"
                           << "QLabel {background: transparent url(':/common/images/common/icon_blank.svg') "
                              "center center no-repeat;}";
    QTest::newRow("add") << "add"
                         << "QPushButton{background: #009265; border: none; border-radius: 4px; color: #FFFFFF; "
                            "font-size: 13px;}QPushButton:hover{background: #0C8962;}QPushButton:pressed{background: "
                            "#00835A;}QPushButton:disabled{background: #D3D3D3;}";
    QTest::newRow("list") << "list"
                          << "FriendRequestTreeView#friendRequestView{padding-left:30px;padding-right:30px;"
                             "padding-top:10px;background:transparent;border:none;font-size:12px;color: #000000;}";
}

void TestFriendRequestWidget::partsAndStyleSheets()
{
    QFETCH(QString, part);
    QFETCH(QString, styleSheet);
    makePage();
    const auto labels = m_page->findChildren<QLabel*>(QString(), Qt::FindDirectChildrenOnly);
    QWidget* centre = m_page->findChild<QWidget*>("centerWidget");
    QVERIFY(centre);
    const QHash<QString, QWidget*> parts = {
        {"page", m_page.get()},
        {"title", labels.value(0)},
        {"centre", centre},
        {"subtitle", centre->findChild<QLabel*>(QString(), Qt::FindDirectChildrenOnly)},
        {"stack", Probe::stack(m_page.get())},
        {"empty", empty()},
        {"blank", m_page->findChild<QLabel*>("nullPixmapLabel")},
        {"add", empty()->findChild<QPushButton*>()},
        {"list", list()},
    };
    QWidget* widget = parts.value(part);
    QVERIFY(widget);
    QCOMPARE(widget->styleSheet(), styleSheet);

    QCOMPARE(m_page->objectName(), QString("friendRequestWidget"));
    QVERIFY(m_page->testAttribute(Qt::WA_StyledBackground));
    QCOMPARE(list()->objectName(), QString("friendRequestView"));
    QCOMPARE(labels.value(0)->text(), qtTrId("ID_friendrequesttreeview_NewFriend", -1));
    QCOMPARE(labels.value(0)->height(), 60);
    QCOMPARE(labels.value(0)->alignment(), Qt::AlignHCenter | Qt::AlignVCenter);
    QCOMPARE(labels.value(0)->textFormat(), Qt::PlainText);
    QCOMPARE(parts.value("subtitle")->property("text").toString(),
             qtTrId("ID_friendrequesttreeview_NewFriendRequest", -1));
    QCOMPARE(Probe::stack(m_page.get())->indexOf(empty()), 0);
    QCOMPARE(Probe::stack(m_page.get())->indexOf(list()), 1);
}

// The empty page: the picture 101 by 38, the button 86 by 30 with its text, both centred.
void TestFriendRequestWidget::emptyPageLayout()
{
    makePage();
    auto* blank = m_page->findChild<QLabel*>("nullPixmapLabel");
    auto* button = empty()->findChild<QPushButton*>();
    QCOMPARE(blank->size(), QSize(101, 38));
    QCOMPARE(button->size(), QSize(86, 30));
    QCOMPARE(button->text(), qtTrId("ID_AddFriends", -1));
    QVERIFY(qAbs(blank->geometry().center().x() - empty()->width() / 2) <= 1);
    QVERIFY(qAbs(button->geometry().center().x() - empty()->width() / 2) <= 1);
    QCOMPARE(button->geometry().top() - blank->geometry().bottom() - 1, 20);
    const auto margins = empty()->layout()->contentsMargins();
    QCOMPARE(margins, QMargins(0, 0, 0, 68));
}

// The picture named by the style sheet is there: the label paints something on its background.
void TestFriendRequestWidget::emptyPageShowsTheBlankPicture()
{
    makePage();
    auto* blank = m_page->findChild<QLabel*>("nullPixmapLabel");
    const QImage image = PixelProbe::grab(m_page.get()).copy(QRect(blank->mapTo(m_page.get(), QPoint(0, 0)), blank->size()));
    const QColor background = image.pixelColor(0, 0);
    int drawn = 0;
    for (int y = 0; y < image.height(); ++y) {
        for (int x = 0; x < image.width(); ++x)
            drawn += image.pixelColor(x, y) != background;
    }
    QVERIFY2(drawn > 100, qPrintable(QString::number(drawn)));
}

QTEST_MAIN(TestFriendRequestWidget)
#include "tst_friendrequestwidget.moc"
