#include "FriendRequestFixture.h"
#include "FriendRequestModel.h"
#include "FriendRequestModelProbe.h"
#include "FriendRequestSortFilterProxyModel_p.h"
#include "FriendRequestViewItem.h"
#include "FriendRequestViewItemProbe.h"
#include "LogCapture.h"
#include "PixelProbe.h"
#include "TestKit.h"

#include "AvatarManager.h"
#include "ContactsEngine.h"
#include "UserInfo.h"
#include "VyrUtils.h"

#include <QPainter>
#include <QPointer>
#include <QPushButton>
#include <QStyle>
#include <QStyleOptionButton>
#include <QSignalSpy>
#include <QTreeView>
#include <QtTest>
#include <memory>

using namespace Fr;
using namespace FriendRequest;
namespace P = PixelProbe;
using Probe = FriendRequestViewItemProbe;

namespace {

// A row of a 600-pixel view; the option starts at 20, as a tree indents a child.
const int kWidth = 600;
const QRect kLeafOption(20, 0, 580, 58);
const QRect kHeaderOption(0, 0, 600, 28);
// Rectangles of such a leaf: inner (1,4)-(598,53), avatar 36 high grown to 40.
const QRect kAvatar(1, 11, 36, 36);
const QRect kName(44, 9, 250, 20);
const QRect kB1(454, 17, 66, 24);
// 12 pixels after B1's last column, 519.
const QRect kB2(531, 17, 66, 24);
const QRect kText(44, 28, 412, 20);

const QColor kBackground(QStringLiteral("#FCFCFC"));
const QColor kUnderlay(Qt::magenta);
const QColor kAgree(QStringLiteral("#009265"));
const QColor kAgreeHover(QStringLiteral("#0C8962"));
const QColor kAgreePressed(QStringLiteral("#00835A"));
const QColor kRefuse(QStringLiteral("#FFFFFF"));
const QColor kRefuseBorder(QStringLiteral("#FF4A27"));
const QColor kRefuseHover(QStringLiteral("#FEF9F8"));
const QColor kRefusePressed(QStringLiteral("#DDE2F5"));
const QColor kStateDisabled(QStringLiteral("#D3D3D3"));

const quint64 kPeer = 7;

QFont pixelFont(int size)
{
    QFont font;
    font.setPixelSize(size);
    return font;
}

// A point inside a button, left of its centred label.
QPoint fillPoint(const QRect& button)
{
    return QPoint(button.x() + 5, button.center().y());
}

// The colour where a button stands, or the background when there is none.
QColor buttonColour(const QString& kind)
{
    if (kind == QLatin1String("agree"))
        return kAgree;
    if (kind == QLatin1String("refuse"))
        return kRefuse;
    if (kind == QLatin1String("state"))
        return kStateDisabled;
    return kBackground;
}

// The width of the label's light ink inside a button whose face is `face`.
int labelInkWidth(const QImage& image, const QRect& button, const QColor& face)
{
    const QRect inside = button.adjusted(3, 3, -3, -3);
    QRect ink;
    for (int y = inside.top(); y <= inside.bottom(); ++y)
        for (int x = inside.left(); x <= inside.right(); ++x)
            if (P::distance(image.pixelColor(x, y), face) > 40)
                ink |= QRect(x, y, 1, 1);
    return ink.width();
}

// A button as the row should draw it: the style of `source` on the row's background, with the
// row's pen and a font of `fontSize` pixels in the painter.
QImage buttonReference(QPushButton* source, const QRect& rect, const QString& text, bool enabled, int fontSize)
{
    return P::paint(QSize(kWidth, 58), kBackground, [&](QPainter& painter) {
        painter.setRenderHint(QPainter::Antialiasing);
        painter.setFont(pixelFont(fontSize));
        painter.setPen(QColor(QStringLiteral("#999999")));
        QStyleOptionButton option;
        option.rect = rect;
        option.text = text;
        if (enabled)
            option.state |= QStyle::State_Enabled;
        source->style()->drawControl(QStyle::CE_PushButton, &option, &painter, source);
    });
}

// What the row's text line shows, drawn as the row draws it, on the row's background.
QImage textReference(const QRect& rect, const QString& text)
{
    return P::paint(QSize(kWidth, 58), kBackground, [&](QPainter& painter) {
        painter.setRenderHint(QPainter::Antialiasing);
        painter.setFont(pixelFont(12));
        painter.setPen(QColor(QStringLiteral("#999999")));
        painter.drawText(rect, Qt::AlignLeft | Qt::AlignBottom, text);
    });
}

} // namespace

// The friend-request row delegate: sizes, the painted header and row of
// every status, and what mouse events on rows of a real tree view emit.
class TestFriendRequestViewItem : public QObject
{
    Q_OBJECT
private slots:
    void initTestCase();
    void init();
    void cleanup();

    void styleSourcesAreHiddenParentlessAndDeletedLater();
    void zeroDateTakesNoSpaceAndPaintsNothing();
    void sizeByLevel();
    void headerText_data();
    void headerText();
    void leafBackgroundAvatarAndName();
    void newPictureShowsAtTheNextPaint();
    void longNameIsElided();
    void unknownPersonLeavesABlankRow();
    void statusTable_data();
    void statusTable();
    void labelsPairUpByMeaning();
    void awaitingMessageFoldsToOneElidedLine();
    void peerAndOverdueShowTheRawMessageClipped_data();
    void peerAndOverdueShowTheRawMessageClipped();
    void buttonLooksFollowTheMouse_data();
    void buttonLooksFollowTheMouse();
    void leftReleaseInAvatarZone_data();
    void leftReleaseInAvatarZone();
    void rightReleaseAnywhereOnARow_data();
    void rightReleaseAnywhereOnARow();
    void buttonReleases_data();
    void buttonReleases();
    void pressOnAgreeReleasedOutsideEmitsNothing();
    void otherRowsLeaveTheHoverStateAlone();
    void doubleClickEmitsNoDoubleClickSignal();
    void keyPressesAreNotReadAsMouseEvents();

private:
    QModelIndex leafOf(quint64 peer) const;
    void put(quint64 peer, int status, quint64 date, const QString& message = QStringLiteral("hello"));
    QImage renderLeaf(quint64 peer) const;
    void showView();
    QRect viewRow(const QModelIndex& index) const;
    QPoint viewB1(const QModelIndex& index) const;
    QPoint viewB2(const QModelIndex& index) const;
    void sendMove(const QPoint& pos);
    QImage grabRow(const QModelIndex& index);

    std::unique_ptr<FriendRequestModel> m_model;
    std::unique_ptr<FriendRequestSortFilterProxyModel> m_proxy;
    std::unique_ptr<FriendRequestViewItem> m_delegate;
    std::unique_ptr<QTreeView> m_view;
};

void TestFriendRequestViewItem::initTestCase()
{
    QVERIFY(TestKit::loadTranslations(QStringLiteral("en")));
}

void TestFriendRequestViewItem::init()
{
    resetKit();
    VyrEngine::CoreEngine::instance()->setCurrentTime(static_cast<qint64>(at(0, 15)));
    VyrEngine::ContactsEngine::instance()->clear();
    AvatarManager::instance().clear();
    m_model = std::make_unique<FriendRequestModel>();
    m_proxy = std::make_unique<FriendRequestSortFilterProxyModel>(m_model.get());
    m_delegate = std::make_unique<FriendRequestViewItem>();
}

void TestFriendRequestViewItem::cleanup()
{
    m_view.reset();
    m_delegate.reset();
    m_proxy.reset();
    m_model.reset();
    QCoreApplication::sendPostedEvents(nullptr, QEvent::DeferredDelete);
}

QModelIndex TestFriendRequestViewItem::leafOf(quint64 peer) const
{
    for (int g = 0; g < m_proxy->rowCount(); ++g) {
        const QModelIndex group = m_proxy->index(g, 0);
        for (int r = 0; r < m_proxy->rowCount(group); ++r) {
            const QModelIndex leaf = m_proxy->index(r, 0, group);
            if (leaf.data(DisplayIdRole).toULongLong() == peer)
                return leaf;
        }
    }
    return {};
}

void TestFriendRequestViewItem::put(quint64 peer, int status, quint64 date, const QString& message)
{
    VyrEngine::ContactsEngine::instance()->putUser(VyrEngine::UserInfo(peer, QStringLiteral("Peer %1").arg(peer)));
    FriendRequestModelProbe::update(m_model.get(), from(peer, int(peer), status, date, message));
}

QImage TestFriendRequestViewItem::renderLeaf(quint64 peer) const
{
    QStyleOptionViewItem option;
    option.rect = kLeafOption;
    return P::renderDelegate(*m_delegate, option, leafOf(peer), QSize(kWidth, 58), kUnderlay);
}

void TestFriendRequestViewItem::showView()
{
    m_view = std::make_unique<QTreeView>();
    m_view->setHeaderHidden(true);
    m_view->setRootIsDecorated(false);
    m_view->setItemsExpandable(false);
    m_view->setMouseTracking(true);
    m_view->setModel(m_proxy.get());
    m_view->setItemDelegate(m_delegate.get());
    m_view->expandAll();
    m_view->resize(640, 400);
    m_view->show();
    QVERIFY(QTest::qWaitForWindowExposed(m_view.get()));
}

QRect TestFriendRequestViewItem::viewRow(const QModelIndex& index) const
{
    QRect row = m_view->visualRect(index);
    row.setLeft(0);
    return row;
}

QPoint TestFriendRequestViewItem::viewB1(const QModelIndex& index) const
{
    const QRect inner = viewRow(index).adjusted(1, 4, -1, -4);
    return QRect(inner.right() - 144, inner.y() + (inner.height() - 24) / 2, 66, 24).center();
}

QPoint TestFriendRequestViewItem::viewB2(const QModelIndex& index) const
{
    // B2 starts 12 pixels after B1's last column: 65 + 12 from its left.
    return viewB1(index) + QPoint(65 + 12, 0);
}

void TestFriendRequestViewItem::sendMove(const QPoint& pos)
{
    QMouseEvent move(QEvent::MouseMove, pos, m_view->viewport()->mapToGlobal(pos), Qt::NoButton, Qt::NoButton,
                     Qt::NoModifier);
    QApplication::sendEvent(m_view->viewport(), &move);
}

QImage TestFriendRequestViewItem::grabRow(const QModelIndex& index)
{
    return P::grab(m_view->viewport()).copy(viewRow(index));
}

// The three buttons only lend their style: no parent, never shown, the sheets as given, freed after the delegate.
void TestFriendRequestViewItem::styleSourcesAreHiddenParentlessAndDeletedLater()
{
    QPointer<QPushButton> agree = Probe::agreeButton(m_delegate.get());
    QPointer<QPushButton> refuse = Probe::refuseButton(m_delegate.get());
    QPointer<QPushButton> state = Probe::stateButton(m_delegate.get());
    for (QPushButton* button : {agree.data(), refuse.data(), state.data()}) {
        QVERIFY(button);
        QVERIFY(!button->parent());
        QVERIFY(!button->isVisible());
    }
    QCOMPARE(agree->styleSheet(),
             QStringLiteral("QPushButton {background: #009265;border: none;border-radius: 4px;font-size: 12px;"
                            "color: #fff;text-align: center;}\t\t\t\t\t\t\t\t   QPushButton:hover{background: "
                            "#0C8962;}\t\t\t\t\t\t\t\t   QPushButton:pressed{background: #00835A;}\t\t\t\t\t\t\t\t"
                            "   QPushButton:disabled {background: #F2F2F2;}"));
    QCOMPARE(refuse->styleSheet(),
             QStringLiteral("QPushButton {background: #FFFFFF;border: 1px solid #FF4A27;border-radius: 4px;"
                            "font-size: 12px;color: #FF4A27;text-align: center;}\t\t\t\t\t\t\t\t\tQPushButton:hover "
                            "{background: #FEF9F8;}\t\t\t\t\t\t\t\t\tQPushButton:pressed {background: #DDE2F5;}"
                            "\t\t\t\t\t\t\t\t\tQPushButton:disabled {background: #F2F2F2;}"));
    QCOMPARE(state->styleSheet(),
             QStringLiteral("QPushButton {background: #009265;border: none;border-radius: 4px;font-size: 12px;"
                            "color: #fff;text-align: center;}\t\t\t\t\t\t\t\t QPushButton:hover{background: "
                            "#0C8962;}\t\t\t\t\t\t\t\tQPushButton:pressed{background: #00835A;}\t\t\t\t\t\t\t\t"
                            "QPushButton:disabled {background: #D3D3D3;}"));
    QCOMPARE(Probe::mouseState(m_delegate.get()), -1);
    QVERIFY(Probe::mousePos(m_delegate.get()).isNull());

    m_delegate.reset();
    QVERIFY(agree && refuse && state); // later, not at once
    QCoreApplication::sendPostedEvents(nullptr, QEvent::DeferredDelete);
    QVERIFY(!agree && !refuse && !state);
}

// A record with date 0 takes no space, as header and as row, and paints nothing.
void TestFriendRequestViewItem::zeroDateTakesNoSpaceAndPaintsNothing()
{
    put(kPeer, AwaitingMyAnswer, 0);
    const QModelIndex leaf = leafOf(kPeer);
    QVERIFY(leaf.isValid());
    QStyleOptionViewItem option;
    option.rect = kLeafOption;
    QCOMPARE(m_delegate->sizeHint(option, leaf), QSize(0, 0));
    QCOMPARE(m_delegate->sizeHint(option, leaf.parent()), QSize(0, 0));
    for (const QModelIndex& index : {leaf, leaf.parent()}) {
        const QImage image = P::renderDelegate(*m_delegate, option, index, QSize(kWidth, 58), kUnderlay);
        QCOMPARE(P::countColour(image, image.rect(), kUnderlay), kWidth * 58);
    }
}

// Headers are 28 high and rows 58, as wide as the option.
void TestFriendRequestViewItem::sizeByLevel()
{
    put(kPeer, Overdue, at(2));
    const QModelIndex leaf = leafOf(kPeer);
    QStyleOptionViewItem option;
    option.rect = QRect(20, 100, 333, 10);
    QCOMPARE(m_delegate->sizeHint(option, leaf), QSize(333, 58));
    QCOMPARE(m_delegate->sizeHint(option, leaf.parent()), QSize(333, 28));
}

void TestFriendRequestViewItem::headerText_data()
{
    QTest::addColumn<qint64>("now");
    QTest::addColumn<quint64>("date");
    QTest::addColumn<bool>("today");
    QTest::newRow("same-day-earlier") << qint64(at(0, 15)) << at(0, 0, 0, 1) << true;
    QTest::newRow("same-day-later") << qint64(at(0, 0, 5)) << at(0, 23, 59, 59) << true;
    QTest::newRow("yesterday") << qint64(at(0, 15)) << at(1, 23, 59, 59) << false;
    QTest::newRow("tomorrow") << qint64(at(0, 15)) << at(-1, 0, 0, 0) << false;
    QTest::newRow("engine-clock-elsewhere") << qint64(at(30)) << at(0) << false;
}

// A header of the engine's present day says "Today"; any other day its formatted date, from the left edge.
void TestFriendRequestViewItem::headerText()
{
    QFETCH(qint64, now);
    QFETCH(quint64, date);
    QFETCH(bool, today);
    VyrEngine::CoreEngine::instance()->setCurrentTime(now);
    put(kPeer, AwaitingMyAnswer, date);
    const QModelIndex header = leafOf(kPeer).parent();
    QStyleOptionViewItem option;
    option.rect = kHeaderOption.adjusted(20, 0, 0, 0);
    const QImage image = P::renderDelegate(*m_delegate, option, header, QSize(kWidth, 28), kUnderlay);

    const QString text = today ? QStringLiteral("Today") : VyrUtils::formatTime(qint64(date), false);
    if (!today)
        QCOMPARE(text, QDateTime::fromSecsSinceEpoch(qint64(date)).date().toString(Qt::ISODate));
    const QImage expected = P::paint(QSize(kWidth, 28), kBackground, [&](QPainter& painter) {
        painter.setFont(pixelFont(14));
        painter.setPen(QColor(QStringLiteral("#B1B1B1")));
        painter.drawText(QRectF(QRect(1, 4, 200, 28)), text, QTextOption());
    });
    QCOMPARE(P::differingPixels(image, expected, image.rect()), 0);
}

// A leaf fills the row from the view's left edge, puts the round avatar at its place and the name beside it.
void TestFriendRequestViewItem::leafBackgroundAvatarAndName()
{
    put(kPeer, AwaitingMyAnswer, at(1));
    AvatarManager::instance().putUserAvatar(kPeer, P::pixmap(QSize(80, 80), Qt::red));
    const QImage image = renderLeaf(kPeer);

    for (const QPoint& p : {QPoint(0, 0), QPoint(10, 2), QPoint(300, 57), QPoint(599, 30), QPoint(350, 20)})
        QVERIFY2(P::isNear(image, p, kBackground), qPrintable(QStringLiteral("%1,%2").arg(p.x()).arg(p.y())));
    QVERIFY(P::isNear(image, kAvatar.center(), Qt::red));
    QVERIFY(P::isNear(image, kAvatar.topLeft() + QPoint(18, 1), Qt::red, 60));
    QVERIFY(P::isNear(image, kAvatar.topLeft() + QPoint(1, 1), kBackground)); // cut to a circle
    QCOMPARE(P::colourBounds(image, Qt::red, 20), kAvatar);

    const QImage name = P::paint(QSize(kWidth, 58), kBackground, [&](QPainter& painter) {
        painter.setRenderHint(QPainter::Antialiasing);
        painter.setFont(pixelFont(14));
        painter.setPen(QColor(QStringLiteral("#202020")));
        painter.drawText(kName, Qt::AlignLeft | Qt::AlignTop, QStringLiteral("Peer 7"));
    });
    QCOMPARE(P::differingPixels(image, name, kName), 0);
    QVERIFY(P::distance(P::darkest(image, kName), QColor(QStringLiteral("#202020"))) < 40);
}

// The round cut is kept between paints, but a picture the store changes shows at once, as does the generated one.
void TestFriendRequestViewItem::newPictureShowsAtTheNextPaint()
{
    put(kPeer, AgreedByMe, at(1));
    const QPoint spot = kAvatar.topLeft() + QPoint(6, 18);
    QVERIFY(P::isNear(renderLeaf(kPeer), spot, AvatarManager::generatedUserColor(kPeer), 8));
    AvatarManager::instance().putUserAvatar(kPeer, P::pixmap(QSize(40, 40), Qt::blue));
    QVERIFY(P::isNear(renderLeaf(kPeer), spot, Qt::blue));
    AvatarManager::instance().putUserAvatar(kPeer, P::pixmap(QSize(40, 40), Qt::green));
    QVERIFY(P::isNear(renderLeaf(kPeer), spot, Qt::green));
    AvatarManager::instance().removeUserAvatar(kPeer);
    QVERIFY(P::isNear(renderLeaf(kPeer), spot, AvatarManager::generatedUserColor(kPeer), 8));
}

// A name wider than 250 pixels ends in an ellipsis inside its rectangle.
void TestFriendRequestViewItem::longNameIsElided()
{
    const QString longName = QStringLiteral("Bartholomew Maximilian Featherstonehaugh-Cholmondeley the Third");
    put(kPeer, Overdue, at(1));
    VyrEngine::ContactsEngine::instance()->putUser(VyrEngine::UserInfo(kPeer, longName));
    const QImage image = renderLeaf(kPeer);
    const QString elided = QFontMetrics(pixelFont(14)).elidedText(longName, Qt::ElideRight, 250, Qt::TextShowMnemonic);
    QVERIFY(elided.endsWith(QChar(0x2026)));
    const QImage expected = P::paint(QSize(kWidth, 58), kBackground, [&](QPainter& painter) {
        painter.setRenderHint(QPainter::Antialiasing);
        painter.setFont(pixelFont(14));
        painter.setPen(QColor(QStringLiteral("#202020")));
        painter.drawText(kName, Qt::AlignLeft | Qt::AlignTop, elided);
    });
    QCOMPARE(P::differingPixels(image, expected, kName), 0);
}

// Someone the contacts engine doesn't know gets a row of background only, and
// one info line with the person's uid however often the row is painted.
void TestFriendRequestViewItem::unknownPersonLeavesABlankRow()
{
    put(kPeer, AwaitingMyAnswer, at(1), QStringLiteral("let me in"));
    VyrEngine::ContactsEngine::instance()->removeUser(kPeer);
    LogCapture log;
    const QImage image = renderLeaf(kPeer);
    QCOMPARE(P::countColour(image, image.rect(), kBackground), kWidth * 58);
    renderLeaf(kPeer);
    const QString text = QStringLiteral("friend request of a person the contacts engine doesn't know, "
                                        "row left blank, uid: %1").arg(kPeer);
    const QList<LogCapture::Line> lines = log.matching(text);
    QCOMPARE(lines.size(), 1);
    QCOMPARE(lines[0].type, QtInfoMsg);
    QVERIFY(lines[0].file.endsWith(QLatin1String("src/plugins/im/VyrNotice/FriendRequestViewItem.cpp")));
    QVERIFY(lines[0].function.contains(QLatin1String("FriendRequestViewItem::noteUnknownPerson")));
    // A known person logs nothing.
    put(kPeer + 1, AwaitingMyAnswer, at(1));
    log.clear();
    renderLeaf(kPeer + 1);
    QCOMPARE(log.startingWith(QStringLiteral("friend request of a person")).size(), 0);
}

void TestFriendRequestViewItem::statusTable_data()
{
    QTest::addColumn<int>("status");
    QTest::addColumn<QString>("b1");
    QTest::addColumn<QString>("b2");
    QTest::addColumn<QString>("label");
    QTest::addColumn<QString>("text");
    const QString msg = QStringLiteral("please add me");
    QTest::newRow("4-awaiting-me") << 4 << "agree" << "refuse" << "Refuse" << msg;
    QTest::newRow("0-agreed-by-me") << 0 << "none" << "state" << "Agreed" << "You agreed to the friend request";
    QTest::newRow("2-agreed-by-peer") << 2 << "none" << "state" << "Agreed" << "Your friend request has been agreed";
    QTest::newRow("1-refused-by-me") << 1 << "none" << "state" << "Rejected" << "You refused the friend request";
    QTest::newRow("3-refused-by-peer") << 3 << "none" << "state" << "Rejected"
                                       << "Your friend request has been refused";
    QTest::newRow("5-awaiting-peer") << 5 << "none" << "state" << "Waiting" << msg;
    QTest::newRow("6-overdue") << 6 << "none" << "state" << "Expired" << msg;
    QTest::newRow("-1-unknown") << -1 << "none" << "none" << "" << "";
    QTest::newRow("7-unknown") << 7 << "none" << "none" << "" << "";
    QTest::newRow("100-unknown") << 100 << "none" << "none" << "" << "";
}

// Each status puts its button (or none) in B1 and B2, its label and its line of text; unknown ones only the person.
void TestFriendRequestViewItem::statusTable()
{
    QFETCH(int, status);
    QFETCH(QString, b1);
    QFETCH(QString, b2);
    QFETCH(QString, label);
    QFETCH(QString, text);
    put(kPeer, status, at(1), QStringLiteral("please add me"));
    AvatarManager::instance().putUserAvatar(kPeer, P::pixmap(QSize(36, 36), Qt::red));
    const QImage image = renderLeaf(kPeer);

    // The person is drawn whatever the status.
    QVERIFY(P::isNear(image, kAvatar.center(), Qt::red));
    QVERIFY(P::containsColour(image, kName, QColor(QStringLiteral("#202020")), 40));

    QVERIFY(P::isNear(image, fillPoint(kB1), buttonColour(b1)));
    QVERIFY(P::isNear(image, fillPoint(kB2), buttonColour(b2)));
    if (b1 == QLatin1String("none"))
        QCOMPARE(P::countColour(image, kB1.adjusted(2, 0, 0, 0), kBackground), (kB1.width() - 2) * kB1.height());
    if (b2 == QLatin1String("none"))
        QCOMPARE(P::countColour(image, kB2, kBackground), kB2.width() * kB2.height());
    if (b1 == QLatin1String("agree"))
        QVERIFY(qAbs(labelInkWidth(image, kB1, kAgree) - QFontMetrics(pixelFont(12)).horizontalAdvance("Agree")) <= 2);
    if (b2 == QLatin1String("refuse")) {
        // The antialiased one-pixel border straddles the rectangle's edges.
        QVERIFY(P::containsColour(image, QRect(kB2.x() - 1, kB2.center().y(), 2, 1), kRefuseBorder, 40));
        QVERIFY(P::containsColour(image, QRect(kB2.right() - 1, kB2.center().y(), 3, 1), kRefuseBorder, 40));
    }
    if (!label.isEmpty()) {
        const int width = labelInkWidth(image, kB2, buttonColour(b2));
        const int expected = QFontMetrics(pixelFont(12)).horizontalAdvance(label);
        QVERIFY2(qAbs(width - expected) <= 6, qPrintable(QStringLiteral("%1 vs %2").arg(width).arg(expected)));
    }
    // Each button to the pixel, with its own label, face and state.
    if (b1 == QLatin1String("agree")) {
        const QImage agree = buttonReference(Probe::agreeButton(m_delegate.get()), kB1, QStringLiteral("Agree"), true, 14);
        QCOMPARE(P::differingPixels(image, agree, kB1), 0);
    }
    if (b2 == QLatin1String("refuse")) {
        const QImage refuse = buttonReference(Probe::refuseButton(m_delegate.get()), kB2, label, true, 14);
        QCOMPARE(P::differingPixels(image, refuse, kB2), 0);
    }
    if (b2 == QLatin1String("state")) {
        const QImage state = buttonReference(Probe::stateButton(m_delegate.get()), kB2, label, false, 12);
        QCOMPARE(P::differingPixels(image, state, kB2), 0);
    }

    // Only the text line left of the buttons is compared; B1 may stand over its last columns.
    const QRect line = kText.adjusted(0, 0, -3, 0);
    QCOMPARE(P::differingPixels(image, textReference(kText, text), line), 0);
}

// Agreed rows share one label, refused rows another; waiting and overdue each have their own.
void TestFriendRequestViewItem::labelsPairUpByMeaning()
{
    QHash<int, QImage> labels;
    for (int status : {0, 1, 2, 3, 5, 6}) {
        put(kPeer, status, at(1));
        labels.insert(status, renderLeaf(kPeer).copy(kB2));
    }
    const QRect all(QPoint(0, 0), kB2.size());
    QCOMPARE(P::differingPixels(labels[0], labels[2], all), 0);
    QCOMPARE(P::differingPixels(labels[1], labels[3], all), 0);
    for (auto pair : {qMakePair(0, 1), qMakePair(0, 5), qMakePair(0, 6), qMakePair(1, 5), qMakePair(1, 6),
                      qMakePair(5, 6)})
        QVERIFY2(P::differingPixels(labels[pair.first], labels[pair.second], all) > 0,
                 qPrintable(QStringLiteral("%1 vs %2").arg(pair.first).arg(pair.second)));
}

// A status-4 message folds its blanks and newlines and is elided with the 14-pixel metrics, drawn at 12.
void TestFriendRequestViewItem::awaitingMessageFoldsToOneElidedLine()
{
    const QString words = QStringLiteral("Hello,\n\nI am   in your   class.\tPlease add me, I would like to ask about "
                                         "the homework of last week and the exam that comes after the holidays, "
                                         "and whether the lesson on Friday is moved.");
    put(kPeer, AwaitingMyAnswer, at(1), words);
    const QImage image = renderLeaf(kPeer);

    const QString folded = words.simplified();
    const QString elided14 = QFontMetrics(pixelFont(14)).elidedText(folded, Qt::ElideRight, kText.width(),
                                                                    Qt::TextShowMnemonic);
    const QString elided12 = QFontMetrics(pixelFont(12)).elidedText(folded, Qt::ElideRight, kText.width(),
                                                                    Qt::TextShowMnemonic);
    QVERIFY(elided14.endsWith(QChar(0x2026)));
    QVERIFY(elided14 != elided12);
    const QRect line = kText.adjusted(0, 0, -3, 0);
    QCOMPARE(P::differingPixels(image, textReference(kText, elided14), line), 0);
    QVERIFY(P::differingPixels(image, textReference(kText, elided12), line) > 0);

    // One line: nothing grey in the upper half of the text rectangle.
    const auto grey = [](QRgb c) { return qGray(c) < 0xE0; };
    QCOMPARE(P::countPixels(image, QRect(kText.x(), kText.y(), kText.width() - 3, 5), grey), 0);
    // Measured at 14 and drawn at 12, the line ends well before the rectangle does.
    QVERIFY(P::rightmostColumn(image, line, grey) < kText.x() + kText.width() * 13 / 14);
}

void TestFriendRequestViewItem::peerAndOverdueShowTheRawMessageClipped_data()
{
    QTest::addColumn<int>("status");
    QTest::newRow("5-awaiting-peer") << 5;
    QTest::newRow("6-overdue") << 6;
}

// Statuses 5 and 6 draw the message as written; a long one is cut at the text rectangle, not elided.
void TestFriendRequestViewItem::peerAndOverdueShowTheRawMessageClipped()
{
    QFETCH(int, status);
    const QString raw = QStringLiteral("Good  morning,   teacher. I am the father of a pupil in your class and would "
                                       "like to talk about the next term, the books and the trip.");
    put(kPeer, status, at(1), raw);
    const QImage image = renderLeaf(kPeer);

    QCOMPARE(P::differingPixels(image, textReference(kText, raw), kText), 0);
    QVERIFY(P::differingPixels(image, textReference(kText, raw.simplified()), kText) > 0);
    const auto grey = [](QRgb c) { return qGray(c) < 0xE0; };
    QVERIFY(P::rightmostColumn(image, kText, grey) >= kText.right() - 4);
    // Nothing leaks past the rectangle into the empty B1 (the label button's soft edge starts just before B2).
    QCOMPARE(P::countPixels(image, QRect(kText.right() + 1, kText.y(), kB2.x() - 3 - kText.right(), kText.height()),
                            grey),
             0);
}

void TestFriendRequestViewItem::buttonLooksFollowTheMouse_data()
{
    QTest::addColumn<int>("status");
    QTest::addColumn<int>("button");
    QTest::addColumn<QColor>("normal");
    QTest::addColumn<QColor>("hover");
    QTest::addColumn<QColor>("pressed");
    QTest::newRow("agree") << 4 << 1 << kAgree << kAgreeHover << kAgreePressed;
    QTest::newRow("refuse") << 4 << 2 << kRefuse << kRefuseHover << kRefusePressed;
    // The label button is disabled: the mouse changes nothing.
    QTest::newRow("state") << 0 << 2 << kStateDisabled << kStateDisabled << kStateDisabled;
}

// Through a real view: hover and press change a button's face, release brings the normal face back.
void TestFriendRequestViewItem::buttonLooksFollowTheMouse()
{
    QFETCH(int, status);
    QFETCH(int, button);
    QFETCH(QColor, normal);
    QFETCH(QColor, hover);
    QFETCH(QColor, pressed);
    put(kPeer, status, at(1));
    showView();
    const QModelIndex leaf = leafOf(kPeer);
    const QPoint centre = button == 1 ? viewB1(leaf) : viewB2(leaf);
    const QRect row = viewRow(leaf);
    const QPoint probe = QPoint(centre.x() - 28, centre.y()) - row.topLeft();

    QVERIFY(P::isNear(grabRow(leaf), probe, normal));
    sendMove(centre);
    QVERIFY(P::isNear(grabRow(leaf), probe, hover));
    QTest::mousePress(m_view->viewport(), Qt::LeftButton, Qt::NoModifier, centre);
    QVERIFY(P::isNear(grabRow(leaf), probe, pressed));
    QTest::mouseRelease(m_view->viewport(), Qt::LeftButton, Qt::NoModifier, centre);
    QVERIFY(P::isNear(grabRow(leaf), probe, normal));
    sendMove(centre + QPoint(0, 30)); // off the row
    sendMove(QPoint(5, row.center().y()));
    QVERIFY(P::isNear(grabRow(leaf), probe, normal));
}

void TestFriendRequestViewItem::leftReleaseInAvatarZone_data()
{
    QTest::addColumn<int>("status");
    QTest::addColumn<bool>("header");
    QTest::addColumn<int>("x");
    QTest::addColumn<bool>("emits");
    for (int status = -1; status <= 7; ++status) {
        QTest::addRow("%d-left-edge", status) << status << false << 0 << true;
        QTest::addRow("%d-last-column", status) << status << false << 311 << true;
        QTest::addRow("%d-past-zone", status) << status << false << 312 << false;
    }
    QTest::newRow("header-left-edge") << 5 << true << 0 << true;
    QTest::newRow("header-last-column") << 5 << true << 311 << true;
    QTest::newRow("header-past-zone") << 5 << true << 400 << false;
}

// A left click in the row's left 312 pixels asks for the person, on rows of every status and on headers.
void TestFriendRequestViewItem::leftReleaseInAvatarZone()
{
    QFETCH(int, status);
    QFETCH(bool, header);
    QFETCH(int, x);
    QFETCH(bool, emits);
    put(kPeer, status, at(1));
    showView();
    const QModelIndex index = header ? leafOf(kPeer).parent() : leafOf(kPeer);
    QSignalSpy avatar(m_delegate.get(), &FriendRequestViewItem::avatarClickSignal);
    QSignalSpy right(m_delegate.get(), &FriendRequestViewItem::rightClickSignal);
    QTest::mouseClick(m_view->viewport(), Qt::LeftButton, Qt::NoModifier, QPoint(x, viewRow(index).center().y()));
    QCOMPARE(avatar.count(), emits ? 1 : 0);
    if (emits)
        QCOMPARE(avatar.at(0).at(0).toModelIndex(), index);
    QCOMPARE(right.count(), 0);
}

void TestFriendRequestViewItem::rightReleaseAnywhereOnARow_data()
{
    QTest::addColumn<int>("status");
    QTest::addColumn<bool>("header");
    QTest::addColumn<QString>("where");
    QTest::addColumn<int>("agrees");
    QTest::addColumn<int>("refuses");
    QTest::newRow("leaf-avatar") << 4 << false << "avatar" << 0 << 0;
    QTest::newRow("leaf-text") << 2 << false << "text" << 0 << 0;
    QTest::newRow("leaf-state-button") << 6 << false << "b2" << 0 << 0;
    // A right release on Agree both opens the menu and agrees: kept as the client always had it.
    QTest::newRow("leaf-agree") << 4 << false << "b1" << 1 << 0;
    QTest::newRow("leaf-refuse") << 4 << false << "b2" << 0 << 1;
    QTest::newRow("header-avatar") << 1 << true << "avatar" << 0 << 0;
    QTest::newRow("header-text") << 1 << true << "text" << 0 << 0;
}

// A right release on any row asks for the menu with the event's position in the view.
void TestFriendRequestViewItem::rightReleaseAnywhereOnARow()
{
    QFETCH(int, status);
    QFETCH(bool, header);
    QFETCH(QString, where);
    QFETCH(int, agrees);
    QFETCH(int, refuses);
    put(kPeer, status, at(1));
    showView();
    const QModelIndex index = header ? leafOf(kPeer).parent() : leafOf(kPeer);
    const int y = viewRow(index).center().y();
    QPoint pos = where == QLatin1String("avatar") ? QPoint(10, y)
               : where == QLatin1String("text")   ? QPoint(350, y)
               : where == QLatin1String("b1")     ? viewB1(index)
                                                  : viewB2(index);
    QSignalSpy avatar(m_delegate.get(), &FriendRequestViewItem::avatarClickSignal);
    QSignalSpy right(m_delegate.get(), &FriendRequestViewItem::rightClickSignal);
    QSignalSpy agree(m_delegate.get(), &FriendRequestViewItem::agreeButtonClickSignal);
    QSignalSpy refuse(m_delegate.get(), &FriendRequestViewItem::refuseButtonClickSignal);
    QTest::mouseClick(m_view->viewport(), Qt::RightButton, Qt::NoModifier, pos);
    QCOMPARE(right.count(), 1);
    QCOMPARE(right.at(0).at(0).toModelIndex(), index);
    QCOMPARE(right.at(0).at(1).toPoint(), pos);
    QCOMPARE(avatar.count(), 0);
    QCOMPARE(agree.count(), agrees);
    QCOMPARE(refuse.count(), refuses);
}

void TestFriendRequestViewItem::buttonReleases_data()
{
    QTest::addColumn<int>("status");
    QTest::addColumn<bool>("header");
    QTest::addColumn<int>("button");
    QTest::addColumn<QString>("expected");
    QTest::newRow("agree") << 4 << false << 1 << "agree";
    QTest::newRow("refuse") << 4 << false << 2 << "refuse";
    QTest::newRow("gap-between") << 4 << false << 0 << "";
    for (int status : {0, 1, 2, 3, 5, 6, 7, -1}) {
        QTest::addRow("%d-b1", status) << status << false << 1 << "";
        QTest::addRow("%d-b2", status) << status << false << 2 << "";
    }
    // A header carries the status of the record it was made from, so its B1 spot answers like a row's.
    QTest::newRow("header-of-awaiting-b1") << 4 << true << 1 << "agree";
    QTest::newRow("header-of-overdue-b1") << 6 << true << 1 << "";
}

// A left click on Agree or Refuse of a row awaiting the user's answer emits that answer, nothing else does.
void TestFriendRequestViewItem::buttonReleases()
{
    QFETCH(int, status);
    QFETCH(bool, header);
    QFETCH(int, button);
    QFETCH(QString, expected);
    put(kPeer, status, at(1));
    showView();
    const QModelIndex index = header ? leafOf(kPeer).parent() : leafOf(kPeer);
    const QPoint pos = button == 1 ? viewB1(index) : button == 2 ? viewB2(index) : viewB1(index) + QPoint(39, 0);
    QSignalSpy agree(m_delegate.get(), &FriendRequestViewItem::agreeButtonClickSignal);
    QSignalSpy refuse(m_delegate.get(), &FriendRequestViewItem::refuseButtonClickSignal);
    QSignalSpy avatar(m_delegate.get(), &FriendRequestViewItem::avatarClickSignal);
    QTest::mouseClick(m_view->viewport(), Qt::LeftButton, Qt::NoModifier, pos);
    QCOMPARE(agree.count(), expected == QLatin1String("agree") ? 1 : 0);
    QCOMPARE(refuse.count(), expected == QLatin1String("refuse") ? 1 : 0);
    if (!expected.isEmpty()) {
        QSignalSpy& spy = expected == QLatin1String("agree") ? agree : refuse;
        QCOMPARE(spy.at(0).at(0).toModelIndex(), index);
    }
    QCOMPARE(avatar.count(), 0);
}

// Pressing Agree and letting go outside both buttons emits nothing and leaves no button touched.
void TestFriendRequestViewItem::pressOnAgreeReleasedOutsideEmitsNothing()
{
    put(kPeer, AwaitingMyAnswer, at(1));
    showView();
    const QModelIndex leaf = leafOf(kPeer);
    QSignalSpy agree(m_delegate.get(), &FriendRequestViewItem::agreeButtonClickSignal);
    QSignalSpy refuse(m_delegate.get(), &FriendRequestViewItem::refuseButtonClickSignal);
    QSignalSpy avatar(m_delegate.get(), &FriendRequestViewItem::avatarClickSignal);
    QTest::mousePress(m_view->viewport(), Qt::LeftButton, Qt::NoModifier, viewB1(leaf));
    QCOMPARE(Probe::mouseState(m_delegate.get()), 1);
    const QPoint outside(400, viewRow(leaf).center().y());
    QTest::mouseRelease(m_view->viewport(), Qt::LeftButton, Qt::NoModifier, outside);
    QCOMPARE(agree.count() + refuse.count() + avatar.count(), 0);
    QCOMPARE(Probe::mouseState(m_delegate.get()), -1);
    QCOMPARE(Probe::mousePos(m_delegate.get()), outside);
}

// Events on rows of other statuses keep the last status-4 row's hover state and position.
void TestFriendRequestViewItem::otherRowsLeaveTheHoverStateAlone()
{
    put(kPeer, AwaitingMyAnswer, at(1));
    put(kPeer + 1, AgreedByMe, at(1, 11));
    showView();
    const QModelIndex awaiting = leafOf(kPeer);
    const QModelIndex agreed = leafOf(kPeer + 1);
    sendMove(viewB1(awaiting));
    QCOMPARE(Probe::mouseState(m_delegate.get()), 0);
    sendMove(viewB2(agreed));
    QTest::mouseClick(m_view->viewport(), Qt::LeftButton, Qt::NoModifier, viewB2(agreed));
    QCOMPARE(Probe::mouseState(m_delegate.get()), 0);
    QCOMPARE(Probe::mousePos(m_delegate.get()), viewB1(awaiting));
}

// The double-click signal exists for hosts to connect and never fires.
void TestFriendRequestViewItem::doubleClickEmitsNoDoubleClickSignal()
{
    put(kPeer, AwaitingMyAnswer, at(1));
    showView();
    QSignalSpy twice(m_delegate.get(), &FriendRequestViewItem::avatarDoubleClickSignal);
    QSignalSpy once(m_delegate.get(), &FriendRequestViewItem::avatarClickSignal);
    const QPoint avatar(10, viewRow(leafOf(kPeer)).center().y());
    QTest::mouseClick(m_view->viewport(), Qt::LeftButton, Qt::NoModifier, avatar);
    QTest::mouseDClick(m_view->viewport(), Qt::LeftButton, Qt::NoModifier, avatar);
    QCOMPARE(once.count(), 1);
    QCOMPARE(twice.count(), 0);
}

// A view hands key presses to the delegate too: they change nothing and emit nothing.
void TestFriendRequestViewItem::keyPressesAreNotReadAsMouseEvents()
{
    put(kPeer, AwaitingMyAnswer, at(1));
    showView();
    const QModelIndex leaf = leafOf(kPeer);
    sendMove(viewB2(leaf));
    m_view->setCurrentIndex(leaf);
    m_view->setEditTriggers(QAbstractItemView::AllEditTriggers);
    QSignalSpy any(m_delegate.get(), &FriendRequestViewItem::agreeButtonClickSignal);
    QTest::keyClick(m_view.get(), Qt::Key_A);
    QTest::keyClick(m_view.get(), Qt::Key_F2);
    QCOMPARE(any.count(), 0);
    QCOMPARE(Probe::mouseState(m_delegate.get()), 0);
    QCOMPARE(Probe::mousePos(m_delegate.get()), viewB2(leaf));
}

QTEST_MAIN(TestFriendRequestViewItem)
#include "tst_friendrequestviewitem.moc"
