#include "FriendRequestModel.h"
#include "FriendRequestViewItem.h"
#include "FriendRequestViewItemProbe.h"
#include "PaintSurface.h"
#include "TestKit.h"

#include "AvatarManager.h"
#include "ContactsEngine.h"
#include "CoreEngine.h"
#include "UserInfo.h"

#include <QApplication>
#include <QDateTime>
#include <QMouseEvent>
#include <QPainter>
#include <QStandardItemModel>
#include <QtTest>

#include <functional>
#include <memory>

using namespace FriendRequest;
using Probe = FriendRequestViewItemProbe;

namespace {

const quint64 kPeer = 7;
const QRect kLeaf(20, 0, 580, 58);
const QRect kHeader(0, 0, 600, 28);
const qint64 kNow = QDateTime(QDate(2026, 11, 20), QTime(15, 0), Qt::LocalTime).toSecsSinceEpoch();

QImage paintRow(const FriendRequestViewItem& delegate, const QModelIndex& index, const QRect& rect, qreal ratio = 1,
                const QFont& font = QFont())
{
    QImage image(QSize(rect.right() + 1, rect.height()) * ratio, QImage::Format_ARGB32_Premultiplied);
    image.setDevicePixelRatio(ratio);
    image.fill(Qt::magenta);
    QPainter painter(&image);
    painter.setFont(font);
    QStyleOptionViewItem option;
    option.rect = rect;
    option.state = QStyle::State_Enabled;
    delegate.paint(&painter, option, index);
    return image;
}

QImage freshRow(const QModelIndex& index, const QRect& rect, qreal ratio = 1, const QFont& font = QFont())
{
    FriendRequestViewItem fresh;
    return paintRow(fresh, index, rect, ratio, font);
}

QPixmap filled(const QColor& colour)
{
    QPixmap picture(64, 64);
    picture.fill(colour);
    return picture;
}

using Change = std::function<void(QStandardItem* header, QStandardItem* leaf)>;

} // namespace

Q_DECLARE_METATYPE(Change)

// Friend-request rows painted from their kept pictures: a changed record,
// hover, width, font or pixel ratio paints the row anew, as a fresh delegate would.
class TestFriendRequestRowPictures : public QObject
{
    Q_OBJECT
private slots:
    void initTestCase();
    void init();
    void cleanup();

    void changedRowPaintsAsNew_data();
    void changedRowPaintsAsNew();
    void changedSurfacePaintsAsNew_data();
    void changedSurfacePaintsAsNew();
    void hoverAndPressPaintAsNew_data();
    void hoverAndPressPaintAsNew();
    void unchangedRowIsPaintedOnce_data();
    void unchangedRowIsPaintedOnce();
    void keptPicturesAreBounded();

private:
    QModelIndex header() const { return m_rows.index(0, 0); }
    QModelIndex leaf() const { return m_rows.index(0, 0, header()); }

    QStandardItemModel m_rows;
    QStandardItem* m_header = nullptr;
    QStandardItem* m_leaf = nullptr;
    std::unique_ptr<FriendRequestViewItem> m_delegate;
    QFont m_applicationFont;
};

void TestFriendRequestRowPictures::initTestCase()
{
    QVERIFY(TestKit::loadTranslations(QStringLiteral("en")));
    m_applicationFont = QApplication::font();
}

void TestFriendRequestRowPictures::init()
{
    VyrEngine::CoreEngine::instance()->setCurrentTime(kNow);
    VyrEngine::ContactsEngine::instance()->clear();
    AvatarManager::instance().clear();
    VyrEngine::ContactsEngine::instance()->putUser(VyrEngine::UserInfo(kPeer, QStringLiteral("Peer Seven")));
    m_header = new QStandardItem;
    m_header->setData(quint64(kNow - 600), DateRole);
    m_leaf = new QStandardItem;
    m_leaf->setData(quint64(kNow - 600), DateRole);
    m_leaf->setData(kPeer, DisplayIdRole);
    m_leaf->setData(int(AwaitingMyAnswer), StatusRole);
    m_leaf->setData(QStringLiteral("Hello, I am in your class"), MessageRole);
    m_header->appendRow(m_leaf);
    m_rows.appendRow(m_header);
    m_delegate = std::make_unique<FriendRequestViewItem>();
}

void TestFriendRequestRowPictures::cleanup()
{
    m_delegate.reset();
    m_rows.clear();
    QApplication::setFont(m_applicationFont);
    VyrEngine::ContactsEngine::instance()->clear();
    AvatarManager::instance().clear();
    QCoreApplication::sendPostedEvents(nullptr, QEvent::DeferredDelete);
}

void TestFriendRequestRowPictures::changedRowPaintsAsNew_data()
{
    QTest::addColumn<bool>("isHeader");
    QTest::addColumn<int>("status");
    QTest::addColumn<Change>("change");

    QTest::newRow("header/date") << true << 0 << Change([](QStandardItem* h, QStandardItem*) {
        h->setData(quint64(kNow - 3 * 86400), DateRole);
    });
    QTest::newRow("header/clock") << true << 0 << Change([](QStandardItem*, QStandardItem*) {
        VyrEngine::CoreEngine::instance()->setCurrentTime(kNow + 86400);
    });
    const struct
    {
        int status;
        const char* name;
    } statuses[] = {{AgreedByMe, "agreed"},     {RefusedByMe, "refused"},    {AgreedByPeer, "peeragreed"},
                    {RefusedByPeer, "peerrefused"}, {AwaitingMyAnswer, "awaiting"}, {AwaitingPeerAnswer, "waiting"},
                    {Overdue, "overdue"}};
    for (const auto& s : statuses) {
        QTest::addRow("%s/name", s.name) << false << s.status << Change([](QStandardItem*, QStandardItem*) {
            VyrEngine::ContactsEngine::instance()->putUser(VyrEngine::UserInfo(kPeer, QStringLiteral("Someone Else")));
        });
        QTest::addRow("%s/avatar", s.name) << false << s.status << Change([](QStandardItem*, QStandardItem*) {
            AvatarManager::instance().putUserAvatar(kPeer, filled(Qt::red));
        });
        QTest::addRow("%s/person", s.name) << false << s.status << Change([](QStandardItem*, QStandardItem* l) {
            VyrEngine::ContactsEngine::instance()->putUser(VyrEngine::UserInfo(kPeer + 1, QStringLiteral("Peer Eight")));
            l->setData(kPeer + 1, DisplayIdRole);
        });
        QTest::addRow("%s/status", s.name) << false << s.status << Change([](QStandardItem*, QStandardItem* l) {
            l->setData(l->data(StatusRole).toInt() == AgreedByMe ? int(Overdue) : int(AgreedByMe), StatusRole);
        });
        // Only these statuses show the message.
        if (s.status == AwaitingMyAnswer || s.status == AwaitingPeerAnswer || s.status == Overdue)
            QTest::addRow("%s/message", s.name) << false << s.status << Change([](QStandardItem*, QStandardItem* l) {
                l->setData(QStringLiteral("See you at the exam"), MessageRole);
            });
    }
}

// A change to what a row shows repaints it, never its kept picture.
void TestFriendRequestRowPictures::changedRowPaintsAsNew()
{
    QFETCH(bool, isHeader);
    QFETCH(int, status);
    QFETCH(Change, change);
    m_leaf->setData(status, StatusRole);
    const QModelIndex index = isHeader ? header() : leaf();
    const QRect rect = isHeader ? kHeader : kLeaf;

    const QImage before = paintRow(*m_delegate, index, rect);
    QCOMPARE(paintRow(*m_delegate, index, rect), before);

    change(m_header, m_leaf);
    const QImage after = paintRow(*m_delegate, index, rect);
    QVERIFY2(after != before, "the change shows");
    QCOMPARE(after, freshRow(index, rect));
}

void TestFriendRequestRowPictures::changedSurfacePaintsAsNew_data()
{
    QTest::addColumn<bool>("isHeader");
    QTest::addColumn<int>("status");
    QTest::addColumn<QString>("surface");
    for (const char* surface : {"width", "font", "appfont", "ratio"}) {
        QTest::addRow("header/%s", surface) << true << 0 << QString::fromLatin1(surface);
        QTest::addRow("awaiting/%s", surface) << false << int(AwaitingMyAnswer) << QString::fromLatin1(surface);
        QTest::addRow("agreed/%s", surface) << false << int(AgreedByMe) << QString::fromLatin1(surface);
        QTest::addRow("waiting/%s", surface) << false << int(AwaitingPeerAnswer) << QString::fromLatin1(surface);
    }
}

// A new width, painter font, application font or pixel ratio repaints the row.
void TestFriendRequestRowPictures::changedSurfacePaintsAsNew()
{
    QFETCH(bool, isHeader);
    QFETCH(int, status);
    QFETCH(QString, surface);
    m_leaf->setData(status, StatusRole);
    const QModelIndex index = isHeader ? header() : leaf();
    const QRect rect = isHeader ? kHeader : kLeaf;
    const QImage before = paintRow(*m_delegate, index, rect);

    QRect changed = rect;
    if (surface == QLatin1String("width"))
        changed.setWidth(rect.width() - 100);
    const PaintSurface surfaceChange = PaintSurface::changedTo(surface);
    const qreal ratio = surfaceChange.ratio;
    const QFont font = surfaceChange.font;
    const QImage after = paintRow(*m_delegate, index, changed, ratio, font);
    if (ratio == 1 && changed == rect && surface != QLatin1String("font"))
        QVERIFY(after != before);   // the row's own texts are set in the application's font
    QCOMPARE(after, freshRow(index, changed, ratio, font));
    QApplication::setFont(m_applicationFont);
}

void TestFriendRequestRowPictures::hoverAndPressPaintAsNew_data()
{
    QTest::addColumn<int>("button");
    QTest::addColumn<int>("eventType");
    QTest::newRow("agree/hover") << 0 << int(QEvent::MouseMove);
    QTest::newRow("agree/press") << 0 << int(QEvent::MouseButtonPress);
    QTest::newRow("refuse/hover") << 1 << int(QEvent::MouseMove);
    QTest::newRow("refuse/press") << 1 << int(QEvent::MouseButtonPress);
}

// The buttons' hover and pressed looks, and the plain look after them, are painted anew.
void TestFriendRequestRowPictures::hoverAndPressPaintAsNew()
{
    QFETCH(int, button);
    QFETCH(int, eventType);
    const QImage plain = paintRow(*m_delegate, leaf(), kLeaf);
    // Button centres in a row whose inner rectangle ends at 598: B1 454..519, B2 531..596.
    const QPoint centre = button == 0 ? QPoint(486, 29) : QPoint(563, 29);
    QStyleOptionViewItem option;
    option.rect = kLeaf;
    auto send = [&](QEvent::Type type, const QPoint& pos) {
        QMouseEvent event(type, pos, type == QEvent::MouseMove ? Qt::NoButton : Qt::LeftButton,
                          type == QEvent::MouseMove ? Qt::NoButton : Qt::LeftButton, Qt::NoModifier);
        m_delegate->editorEvent(&event, &m_rows, option, leaf());
    };
    send(QEvent::Type(eventType), centre);
    const QImage looked = paintRow(*m_delegate, leaf(), kLeaf);
    QVERIFY(looked != plain);
    // A fresh delegate that saw the same event.
    FriendRequestViewItem fresh;
    QMouseEvent event(QEvent::Type(eventType), centre,
                      eventType == QEvent::MouseMove ? Qt::NoButton : Qt::LeftButton,
                      eventType == QEvent::MouseMove ? Qt::NoButton : Qt::LeftButton, Qt::NoModifier);
    fresh.editorEvent(&event, &m_rows, option, leaf());
    QCOMPARE(looked, paintRow(fresh, leaf(), kLeaf));

    send(QEvent::MouseMove, QPoint(100, 29));
    QCOMPARE(paintRow(*m_delegate, leaf(), kLeaf), plain);
}

void TestFriendRequestRowPictures::unchangedRowIsPaintedOnce_data()
{
    QTest::addColumn<bool>("isHeader");
    QTest::addColumn<int>("status");
    QTest::newRow("header") << true << 0;
    for (int status = AgreedByMe; status <= Overdue; ++status)
        QTest::addRow("status%d", status) << false << status;
}

// Repaints of an unchanged row draw its kept picture: one picture made, the same pixels.
void TestFriendRequestRowPictures::unchangedRowIsPaintedOnce()
{
    QFETCH(bool, isHeader);
    QFETCH(int, status);
    m_leaf->setData(status, StatusRole);
    const QModelIndex index = isHeader ? header() : leaf();
    const QRect rect = isHeader ? kHeader : kLeaf;
    const QImage first = paintRow(*m_delegate, index, rect);
    for (int i = 0; i < 5; ++i)
        QCOMPARE(paintRow(*m_delegate, index, rect), first);
    QCOMPARE(Probe::rowPicturesMade(m_delegate.get()), 1);
    QCOMPARE(Probe::keptRowPictures(m_delegate.get()), 1);
    QCOMPARE(first, freshRow(index, rect));
}

// Painting many rows keeps a bounded number of pictures, within the byte bound.
void TestFriendRequestRowPictures::keptPicturesAreBounded()
{
    for (int i = 0; i < 1000; ++i) {
        auto* item = new QStandardItem;
        item->setData(quint64(kNow - 600), DateRole);
        item->setData(kPeer, DisplayIdRole);
        item->setData(int(AwaitingPeerAnswer), StatusRole);
        item->setData(QStringLiteral("Message %1").arg(i), MessageRole);
        m_header->appendRow(item);
    }
    QImage image(600, 58, QImage::Format_ARGB32_Premultiplied);
    QPainter painter(&image);
    QStyleOptionViewItem option;
    option.rect = kLeaf;
    for (int i = 0; i < m_header->rowCount(); ++i)
        m_delegate->paint(&painter, option, m_rows.index(i, 0, header()));
    QCOMPARE(Probe::rowPicturesMade(m_delegate.get()), m_header->rowCount());
    QVERIFY(Probe::keptRowPictures(m_delegate.get()) > 0);
    QVERIFY(Probe::keptRowPictures(m_delegate.get()) < m_header->rowCount());
    QVERIFY(Probe::rowPictureKilobytes(m_delegate.get()) <= Probe::maxRowPictureKilobytes(m_delegate.get()));
}

QTEST_MAIN(TestFriendRequestRowPictures)
#include "tst_friendrequestrowpictures.moc"
