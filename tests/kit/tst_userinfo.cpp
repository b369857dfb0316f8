#include "ContactsEngine.h"
#include "PersonInfoWidget.h"
#include "UserInfo.h"

#include <QLabel>
#include <QtTest>

// The client's person card.
class TestUserInfo : public QObject
{
    Q_OBJECT
private slots:
    void cleanup() { PersonInfoWidget::closeCurrent(); }
    void cardShowsThePerson();
    void cardCarriesItsFlags_data();
    void cardCarriesItsFlags();
    void secondCardClosesTheFirst();
    void unknownPersonGetsANumberOnly();
    void cardStandsAtThePoint();
};

// The card is a real floating window with the person's name and telephone.
void TestUserInfo::cardShowsThePerson()
{
    VyrEngine::ContactsEngine::instance()->putUser(VyrEngine::UserInfo(42, "Lin", "13800000000"));
    PersonInfoWidget::showFloatWidget(42, QPoint(100, 100), PersonInfoWidget::PosTopLeft, 0, false, false);
    PersonInfoWidget* card = PersonInfoWidget::current();
    QVERIFY(card);
    QVERIFY(card->isVisible());
    QVERIFY(card->isWindow());
    QCOMPARE(card->uid(), quint64(42));
    QCOMPARE(card->nameText(), QString("Lin"));
    bool phoneShown = false;
    for (QLabel* label : card->findChildren<QLabel*>())
        phoneShown |= label->text() == "13800000000";
    QVERIFY(phoneShown);
}

// The flags given are the card's; the answer line is there only with the flag.
void TestUserInfo::cardCarriesItsFlags_data()
{
    QTest::addColumn<bool>("canAnswer");
    QTest::addColumn<bool>("fromChat");
    QTest::newRow("answer") << true << false;
    QTest::newRow("no-answer") << false << true;
}

void TestUserInfo::cardCarriesItsFlags()
{
    QFETCH(bool, canAnswer);
    QFETCH(bool, fromChat);
    PersonInfoWidget::showFloatWidget(7, QPoint(10, 10), PersonInfoWidget::PosTopLeft, 99, canAnswer, fromChat);
    PersonInfoWidget* card = PersonInfoWidget::current();
    QVERIFY(card);
    QCOMPARE(card->canAnswerRequest(), canAnswer);
    QCOMPARE(card->isFromChat(), fromChat);
    QCOMPARE(card->clusterId(), quint64(99));
    QCOMPARE(bool(card->findChild<QLabel*>("personAnswer")), canAnswer);
}

// One card at a time: a second one closes (and deletes) the first.
void TestUserInfo::secondCardClosesTheFirst()
{
    PersonInfoWidget::showFloatWidget(1, QPoint(10, 10), PersonInfoWidget::PosTopLeft, 0, false, false);
    QPointer<PersonInfoWidget> first = PersonInfoWidget::current();
    PersonInfoWidget::showFloatWidget(2, QPoint(10, 10), PersonInfoWidget::PosTopLeft, 0, false, false);
    QTRY_VERIFY(first.isNull());
    QCOMPARE(PersonInfoWidget::current()->uid(), quint64(2));
}

// Somebody the contacts engine doesn't know still gets a card, without a name.
void TestUserInfo::unknownPersonGetsANumberOnly()
{
    PersonInfoWidget::showFloatWidget(123456, QPoint(10, 10), PersonInfoWidget::PosTopLeft, 0, false, false);
    QVERIFY(PersonInfoWidget::current());
    QVERIFY(PersonInfoWidget::current()->nameText().isEmpty());
}

// The top-left or top-right corner stands at the point asked.
void TestUserInfo::cardStandsAtThePoint()
{
    PersonInfoWidget::showFloatWidget(1, QPoint(400, 300), PersonInfoWidget::PosTopLeft, 0, false, false);
    QCOMPARE(PersonInfoWidget::current()->pos(), QPoint(400, 300));
    PersonInfoWidget::showFloatWidget(1, QPoint(400, 300), PersonInfoWidget::PosTopRight, 0, false, false);
    PersonInfoWidget* card = PersonInfoWidget::current();
    QCOMPARE(card->pos(), QPoint(400 - card->width(), 300));
}

QTEST_MAIN(TestUserInfo)
#include "tst_userinfo.moc"
