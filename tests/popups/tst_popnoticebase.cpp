#include "GlobalStyle.h"
#include "ImSignalObject.h"
#include "Movable.h"
#include "PopupHarness.h"
#include "ScreenCornerOverride_p.h"
#include "TestKit.h"
#include "VyrTrack.h"

#include <QAccessible>
#include <QFile>
#include <QLabel>
#include <QLayout>
#include <QPropertyAnimation>
#include <QThread>
#include <QTimer>
#include <QToolButton>
#include <QtTest>
#include <private/qguiapplication_p.h>
#include <qpa/qplatformaccessibility.h>
#include <qpa/qplatformintegration.h>

Q_DECLARE_METATYPE(TaskbarEdge)

namespace H = PopupHarness;

namespace {

QStringList alertsSeen;

void recordAlerts(QAccessibleEvent* event)
{
    if (event->type() == QAccessible::Alert && event->object())
        alertsSeen << event->object()->objectName();
}

// Brings a fresh card to `state` through its own slots and animations.
TestCard* cardIn(const QString& state)
{
    auto* card = new TestCard();
    if (state == QLatin1String("Built"))
        return card;
    card->popNotice();
    if (state == QLatin1String("FadingIn"))
        return card;
    H::finish(H::animation(card, "m_showAnimation"));
    if (state == QLatin1String("Holding"))
        return card;
    QMetaObject::invokeMethod(H::closeTimer(card), "timeout");
    return card;
}

int alphaAt(const QImage& image, int x, int y)
{
    return qAlpha(image.pixel(x, y));
}

} // namespace

// The card's life, placement, looks and tracking.
class TestPopNoticeBase : public QObject
{
    Q_OBJECT
private slots:
    void initTestCase();
    void init();
    void cleanup();

    void constructionSetsAttributesFlagsAndSheet();
    void titleRowAndPanels();
    void stateTable_data();
    void stateTable();
    void closeButtonAndLogOutFromEveryState_data();
    void closeButtonAndLogOutFromEveryState();
    void logOutFromAnotherThreadCloses();
    void lifeIsFadeInHoldFadeOut();
    void stoppedFadeInIsKept();
    void pointerOnCardDoesNotHoldIt();
    void placementByTaskbarEdge_data();
    void placementByTaskbarEdge();
    void unknownEdgeKeepsLastPosition();
    void setAutoCloseFalseChangesNothing();
    void secondPopAfterFadeInMakesSecondTimer();
    void secondPopDuringFadeInStopsTheFirst();
    void popDuringFadeOutStartsANewLife();
    void dragLeavesTimerAndFadesWhereDropped();
    void hiddenCloseButtonKeepsTitleHeightAndDragArea();
    void applyCurrentStyleRepolishesOnlyWhenAsked();
    void applyCurrentFontSizeCopiesApplicationFont();
    void setWindowTitleSetsLabelOnly();
    void trackingEventsCarryTitleAndLeaveCallerMap_data();
    void trackingEventsCarryTitleAndLeaveCallerMap();
    void shadowResourceHasTenPixelBorder();
    void cardPixels();
    void popRaisesAccessibilityAlert();
    void closeButtonAccessibleNameIsTranslated();
    void cardsShareOneCloseIcon();

private:
    QPointer<TestCard> m_card;
};

void TestPopNoticeBase::initTestCase()
{
    QVERIFY(TestKit::loadTranslations(QStringLiteral("en")));
}

void TestPopNoticeBase::init()
{
    TestKit::resetAll();
    H::useTestScreen();
}

void TestPopNoticeBase::cleanup()
{
    delete m_card;
    H::runDeferredDeletes();
    ScreenCornerOverride::clear();
}

// Style sheet from the resource, then the attributes and the window flags.
void TestPopNoticeBase::constructionSetsAttributesFlagsAndSheet()
{
    m_card = new TestCard();
    QFile file(QStringLiteral(":/im/qss/notice/PopNoticeStyleSheet.qss"));
    QVERIFY(file.open(QIODevice::ReadOnly));
    const QString sheet = QString::fromUtf8(file.readAll());
    QVERIFY(sheet.contains(QLatin1String("PropertyStyle")));
    QCOMPARE(m_card->styleSheet(), sheet);
    QVERIFY(m_card->testAttribute(Qt::WA_TranslucentBackground));
    QVERIFY(m_card->testAttribute(Qt::WA_DeleteOnClose));
    QVERIFY(!m_card->testAttribute(Qt::WA_QuitOnClose));
    QVERIFY(m_card->testAttribute(Qt::WA_ShowWithoutActivating));
    const Qt::WindowFlags flags = m_card->windowFlags();
    QVERIFY(flags.testFlag(Qt::WindowStaysOnTopHint));
    QVERIFY(flags.testFlag(Qt::FramelessWindowHint));
    QCOMPARE(flags & Qt::WindowType_Mask, Qt::Tool);
    QVERIFY(!m_card->isVisible());
    QVERIFY(!H::closeTimer(m_card));
    QVERIFY(!H::animation(m_card, "m_showAnimation"));
}

// The title row: label and close button with their theme styles, 30 high; the panel; the drag strip of 40.
void TestPopNoticeBase::titleRowAndPanels()
{
    m_card = new TestCard();
    QLabel* title = H::titleLabel(m_card);
    QToolButton* close = H::closeButton(m_card);
    QVERIFY(title && close);
    QCOMPARE(title->property("GlobalStyle").toString(), QStringLiteral("QLabel_IMMainStyle_Title"));
    QCOMPARE(title->font().pixelSize(), 12);
    QVERIFY(title->font().bold());
    QCOMPARE(close->property("GlobalStyle").toString(), QStringLiteral("QToolButton_SameMainWindowClose"));
    QCOMPARE(close->size(), QSize(30, 24));
    auto* titleRow = m_card->findChild<QWidget*>(QStringLiteral("titleWidget"));
    QCOMPARE(titleRow->height(), 30);
    QCOMPARE(titleRow->layout()->contentsMargins(), QMargins(8, 0, 4, 0));
    auto* central = m_card->findChild<QWidget*>(QStringLiteral("centralWidget"));
    QVERIFY(central);
    QCOMPARE(central->styleSheet(),
             QStringLiteral("QWidget#centralWidget{        background:#FFFFFF;        border-radius:4px;    }"));
    QCOMPARE(m_card->layout()->contentsMargins(), QMargins(10, 10, 10, 10));
    QCOMPARE(m_card->shadowMargins(), QMargins(10, 10, 10, 10));
    QCOMPARE(m_card->contentWidget()->parentWidget(), central);
    auto* movable = m_card->findChild<Movable*>();
    QVERIFY(movable);
    QCOMPARE(movable->moveTriggerArea(), 40);
}

void TestPopNoticeBase::stateTable_data()
{
    QTest::addColumn<QString>("from");
    QTest::addColumn<QString>("to");
    QTest::newRow("Built -popNotice-> FadingIn") << "Built" << "FadingIn";
    QTest::newRow("FadingIn -finished-> Holding") << "FadingIn" << "Holding";
    QTest::newRow("Holding -timeout-> FadingOut") << "Holding" << "FadingOut";
    QTest::newRow("FadingOut -finished-> Closed") << "FadingOut" << "Closed";
}

// Each state is left only by its own event, and what lives in it dies with it.
void TestPopNoticeBase::stateTable()
{
    QFETCH(QString, from);
    QFETCH(QString, to);
    m_card = cardIn(from);
    QCOMPARE(H::stateOf(m_card), from);
    QPointer<QObject> alive;
    if (from == QLatin1String("Built")) {
        m_card->popNotice();
    } else if (from == QLatin1String("FadingIn")) {
        alive = H::animation(m_card, "m_showAnimation");
        H::finish(H::animation(m_card, "m_showAnimation"));
    } else if (from == QLatin1String("Holding")) {
        alive = H::closeTimer(m_card);
        QVERIFY(QMetaObject::invokeMethod(H::closeTimer(m_card), "timeout"));
    } else {
        alive = H::animation(m_card, "m_opacityAnimation");
        H::finish(H::animation(m_card, "m_opacityAnimation"));
        QVERIFY(!m_card->isVisible());
    }
    H::runDeferredDeletes();
    QCOMPARE(H::stateOf(m_card), to);
    QVERIFY(!alive);
}

void TestPopNoticeBase::closeButtonAndLogOutFromEveryState_data()
{
    QTest::addColumn<QString>("state");
    QTest::addColumn<bool>("logOut");
    for (const char* state : {"Built", "FadingIn", "Holding", "FadingOut"}) {
        QTest::addRow("%s, close button", state) << QString::fromLatin1(state) << false;
        QTest::addRow("%s, log-out", state) << QString::fromLatin1(state) << true;
    }
}

// The close button (a real click) and a log-out end the card at once from every state, with no fade.
void TestPopNoticeBase::closeButtonAndLogOutFromEveryState()
{
    QFETCH(QString, state);
    QFETCH(bool, logOut);
    m_card = cardIn(state);
    QList<QPointer<QObject>> parts;
    for (QObject* child : m_card->findChildren<QObject*>())
        parts << child;
    if (logOut)
        emit ImSignalObject::instance()->signalLogOut();
    else
        QTest::mouseClick(H::closeButton(m_card), Qt::LeftButton);
    QVERIFY(!m_card->isVisible());
    QVERIFY(!H::animation(m_card, "m_opacityAnimation") || state == QLatin1String("FadingOut"));
    H::runDeferredDeletes();
    QVERIFY(!m_card);
    for (const QPointer<QObject>& part : parts)
        QVERIFY(!part);
}

// A log-out announced from another thread reaches the card on its own thread.
void TestPopNoticeBase::logOutFromAnotherThreadCloses()
{
    m_card = cardIn(QStringLiteral("Holding"));
    QThread* thread = QThread::create([]() { emit ImSignalObject::instance()->signalLogOut(); });
    thread->start();
    QVERIFY(thread->wait(5000));
    delete thread;
    // Nothing ran on the other thread: the card is still up until its own thread takes the call.
    QVERIFY(m_card);
    QVERIFY(m_card->isVisible());
    QTRY_VERIFY(!m_card);
}

// 500 ms linear fade-in, a 15 s repeating timer stopped in its slot, 500 ms fade-out: 16 s in all.
void TestPopNoticeBase::lifeIsFadeInHoldFadeOut()
{
    m_card = new TestCard();
    m_card->popNotice();
    QVERIFY(m_card->isVisible());
    QPropertyAnimation* in = H::animation(m_card, "m_showAnimation");
    QVERIFY(in);
    QCOMPARE(in->propertyName(), QByteArray("windowOpacity"));
    QCOMPARE(in->targetObject(), m_card.data());
    QCOMPARE(in->duration(), 500);
    QCOMPARE(in->startValue().toDouble(), 0.0);
    QCOMPARE(in->endValue().toDouble(), 1.0);
    QCOMPARE(in->easingCurve().type(), QEasingCurve::Linear);
    QCOMPARE(in->state(), QAbstractAnimation::Running);
    int total = in->duration();

    H::finish(in);
    QTimer* timer = H::closeTimer(m_card);
    QVERIFY(timer);
    QVERIFY(timer->isActive());
    QVERIFY(!timer->isSingleShot());
    QCOMPARE(timer->interval(), 15000);
    total += timer->interval();

    QPointer<QTimer> held = timer;
    QVERIFY(QMetaObject::invokeMethod(timer, "timeout"));
    QVERIFY(!held);
    QPropertyAnimation* out = H::animation(m_card, "m_opacityAnimation");
    QVERIFY(out);
    QCOMPARE(out->propertyName(), QByteArray("windowOpacity"));
    QCOMPARE(out->duration(), 500);
    QCOMPARE(out->startValue().toDouble(), 1.0);
    QCOMPARE(out->endValue().toDouble(), 0.0);
    QCOMPARE(out->easingCurve().type(), QEasingCurve::Linear);
    total += out->duration();
    QCOMPARE(total, 16000);

    H::finish(out);
    QVERIFY(!H::animation(m_card, "m_opacityAnimation"));
    QVERIFY(!m_card->isVisible());
    H::runDeferredDeletes();
    QVERIFY(!m_card);
}

// A stopped fade-in is kept, emits no finished and so never starts the hold.
void TestPopNoticeBase::stoppedFadeInIsKept()
{
    m_card = cardIn(QStringLiteral("FadingIn"));
    QPointer<QPropertyAnimation> in = H::animation(m_card, "m_showAnimation");
    in->stop();
    QCoreApplication::processEvents();
    H::runDeferredDeletes();
    QVERIFY(in);
    QCOMPARE(H::stateOf(m_card), QStringLiteral("FadingIn"));
}

// The pointer on the card doesn't pause or stop the hold.
void TestPopNoticeBase::pointerOnCardDoesNotHoldIt()
{
    m_card = cardIn(QStringLiteral("Holding"));
    QTimer* timer = H::closeTimer(m_card);
    QEvent enter(QEvent::Enter);
    QCoreApplication::sendEvent(m_card, &enter);
    QCOMPARE(H::closeTimer(m_card), timer);
    QVERIFY(timer->isActive());
}

void TestPopNoticeBase::placementByTaskbarEdge_data()
{
    QTest::addColumn<TaskbarEdge>("edge");
    QTest::addColumn<QPoint>("expected");
    // 328 x 184 card on 800 x 600 with 40 taken: only the lengths count, never the origin.
    QTest::newRow("left: width of geometry, height of available") << TaskbarEdge::Left << QPoint(800 - 328, 600 - 184);
    QTest::newRow("top: width of available, height of geometry") << TaskbarEdge::Top << QPoint(800 - 328, 600 - 184);
    QTest::newRow("right: both of available") << TaskbarEdge::Right << QPoint(760 - 328, 600 - 184);
    QTest::newRow("bottom: both of available") << TaskbarEdge::Bottom << QPoint(800 - 328, 560 - 184);
}

// The card appears at the corner measured by the taskbar edge's lengths, the card 10 pixels from it.
void TestPopNoticeBase::placementByTaskbarEdge()
{
    QFETCH(TaskbarEdge, edge);
    QFETCH(QPoint, expected);
    H::useTestScreen(edge);
    m_card = new TestCard();
    m_card->popNotice();
    QCOMPARE(m_card->pos(), expected);
    QCOMPARE(m_card->geometry().bottomRight() + QPoint(1, 1), expected + QPoint(328, 184));
}

// An edge outside the four computes nothing: a new card goes to the null point, a second pop stays put.
void TestPopNoticeBase::unknownEdgeKeepsLastPosition()
{
    m_card = new TestCard();
    m_card->popNotice();
    const QPoint placed = m_card->pos();
    QCOMPARE(placed, QPoint(472, 376));
    H::useTestScreen(static_cast<TaskbarEdge>(7));
    m_card->popNotice();
    QCOMPARE(m_card->pos(), placed);

    QPointer<TestCard> fresh = new TestCard();
    fresh->popNotice();
    QCOMPARE(fresh->pos(), QPoint(0, 0));
    delete fresh;
}

// setAutoClose(false) is stored only: the timed close still runs.
void TestPopNoticeBase::setAutoCloseFalseChangesNothing()
{
    m_card = new TestCard();
    m_card->setAutoClose(false);
    m_card->popNotice();
    H::finish(H::animation(m_card, "m_showAnimation"));
    QVERIFY(H::closeTimer(m_card)->isActive());
    QMetaObject::invokeMethod(H::closeTimer(m_card), "timeout");
    H::finish(H::animation(m_card, "m_opacityAnimation"));
    H::runDeferredDeletes();
    QVERIFY(!m_card);
}

// A second popNotice after the fade-in: a second fade-in, whose end makes a second hold timer.
void TestPopNoticeBase::secondPopAfterFadeInMakesSecondTimer()
{
    m_card = cardIn(QStringLiteral("Holding"));
    QPointer<QTimer> first = H::closeTimer(m_card);
    m_card->popNotice();
    QPropertyAnimation* second = H::animation(m_card, "m_showAnimation");
    QVERIFY(second);
    QCOMPARE(second->state(), QAbstractAnimation::Running);
    H::finish(second);
    QCOMPARE(H::closeTimers(m_card).size(), 2);
    // The older timer fires first; it stops and deletes the newer one the member holds, and keeps running itself.
    QVERIFY(QMetaObject::invokeMethod(first, "timeout"));
    QCOMPARE(H::closeTimers(m_card), QList<QTimer*>{first.data()});
    QVERIFY(first->isActive());
    QVERIFY(H::animation(m_card, "m_opacityAnimation"));
    // It ends with the card, without a crash.
    H::finish(H::animation(m_card, "m_opacityAnimation"));
    H::runDeferredDeletes();
    QVERIFY(!m_card);
    QVERIFY(!first);
}

// Two pops at once: the member points at the newer fade-in. Qt stops a running animation when
// another starts on the same property of the same object, so the older one stops without
// finished(); only the newer one's end leads to closePosAnimation, and one hold timer starts.
// The older fade-in stays, stopped, until the card goes.
void TestPopNoticeBase::secondPopDuringFadeInStopsTheFirst()
{
    m_card = new TestCard();
    m_card->popNotice();
    QPointer<QPropertyAnimation> older = H::animation(m_card, "m_showAnimation");
    m_card->popNotice();
    QCOMPARE(H::animations(m_card, "m_showAnimation").size(), 2);
    QPointer<QPropertyAnimation> newer;
    for (QPropertyAnimation* animation : H::animations(m_card, "m_showAnimation")) {
        if (animation != older)
            newer = animation;
    }
    QVERIFY(newer);
    QCOMPARE(older->state(), QAbstractAnimation::Stopped);
    QCOMPARE(newer->state(), QAbstractAnimation::Running);
    QVERIFY(!H::closeTimer(m_card));
    H::finish(newer);
    QVERIFY(!newer);
    QVERIFY(older);
    QCOMPARE(H::closeTimers(m_card).size(), 1);
    emit ImSignalObject::instance()->signalLogOut();
    H::runDeferredDeletes();
    QVERIFY(!older);
    QVERIFY(!m_card);
}

// A pop during the fade-out stops the fade-out the same way: the card lives a new hold and fades again.
void TestPopNoticeBase::popDuringFadeOutStartsANewLife()
{
    m_card = cardIn(QStringLiteral("FadingOut"));
    QPointer<QPropertyAnimation> out = H::animation(m_card, "m_opacityAnimation");
    m_card->popNotice();
    QCOMPARE(out->state(), QAbstractAnimation::Stopped);
    H::finish(H::animation(m_card, "m_showAnimation"));
    QVERIFY(H::closeTimer(m_card));
    QVERIFY(m_card->isVisible());
    QMetaObject::invokeMethod(H::closeTimer(m_card), "timeout");
    QPropertyAnimation* second = nullptr;
    for (QPropertyAnimation* animation : H::animations(m_card, "m_opacityAnimation")) {
        if (animation != out)
            second = animation;
    }
    QVERIFY(second);
    H::finish(second);
    H::runDeferredDeletes();
    QVERIFY(!m_card);
}

// A drag moves the card and leaves the timer; the fade-out runs where the card was dropped.
void TestPopNoticeBase::dragLeavesTimerAndFadesWhereDropped()
{
    m_card = cardIn(QStringLiteral("Holding"));
    QTimer* timer = H::closeTimer(m_card);
    const QPoint start = m_card->pos();
    const QPoint grip(100, 30);
    QTest::mousePress(m_card, Qt::LeftButton, Qt::NoModifier, grip);
    QMouseEvent move(QEvent::MouseMove, grip + QPoint(-60, -40), m_card->mapToGlobal(grip) + QPoint(-60, -40),
                     Qt::NoButton, Qt::LeftButton, Qt::NoModifier);
    QCoreApplication::sendEvent(m_card, &move);
    QTest::mouseRelease(m_card, Qt::LeftButton, Qt::NoModifier, grip + QPoint(-60, -40));
    QCOMPARE(m_card->pos(), start + QPoint(-60, -40));
    QCOMPARE(H::closeTimer(m_card), timer);
    QVERIFY(timer->isActive());
    QCOMPARE(timer->interval(), 15000);
    QMetaObject::invokeMethod(timer, "timeout");
    QVERIFY(H::animation(m_card, "m_opacityAnimation"));
    QCOMPARE(m_card->pos(), start + QPoint(-60, -40));
}

// Without its close button the title row keeps its 30 pixels and the strip still drags.
void TestPopNoticeBase::hiddenCloseButtonKeepsTitleHeightAndDragArea()
{
    m_card = cardIn(QStringLiteral("Holding"));
    m_card->setCloseBtnVisible(false);
    QVERIFY(!H::closeButton(m_card)->isVisible());
    QCoreApplication::processEvents();
    QCOMPARE(m_card->findChild<QWidget*>(QStringLiteral("titleWidget"))->height(), 30);
    QCOMPARE(m_card->findChild<Movable*>()->moveTriggerArea(), 40);
    const QPoint start = m_card->pos();
    const QPoint grip(150, 39);
    QTest::mousePress(m_card, Qt::LeftButton, Qt::NoModifier, grip);
    QMouseEvent move(QEvent::MouseMove, grip + QPoint(20, 0), m_card->mapToGlobal(grip) + QPoint(20, 0),
                     Qt::NoButton, Qt::LeftButton, Qt::NoModifier);
    QCoreApplication::sendEvent(m_card, &move);
    QTest::mouseRelease(m_card, Qt::LeftButton, Qt::NoModifier, grip + QPoint(20, 0));
    QCOMPARE(m_card->pos(), start + QPoint(20, 0));
}

// The property changes at once; the looks only with repolish (or at the next polish).
void TestPopNoticeBase::applyCurrentStyleRepolishesOnlyWhenAsked()
{
    m_card = cardIn(QStringLiteral("Holding"));
    auto* label = new QLabel(QStringLiteral("text"), m_card->contentWidget());
    label->show();
    label->ensurePolished();
    const QColor content(0x64, 0x6A, 0x73);
    QVERIFY(label->palette().color(QPalette::WindowText) != content);
    m_card->applyCurrentStyle(label, QStringLiteral("QLabel_MessageContent"), false);
    QCOMPARE(label->property("PropertyStyle").toString(), QStringLiteral("QLabel_MessageContent"));
    QVERIFY(label->palette().color(QPalette::WindowText) != content);
    m_card->applyCurrentStyle(label, QStringLiteral("QLabel_MessageContent"), true);
    QCOMPARE(label->palette().color(QPalette::WindowText), content);
}

// The font is the application's with the pixel size and weight asked for.
void TestPopNoticeBase::applyCurrentFontSizeCopiesApplicationFont()
{
    m_card = new TestCard();
    auto* label = new QLabel(m_card->contentWidget());
    m_card->applyCurrentFontSize(label, 17, QFont::DemiBold);
    QCOMPARE(label->font().pixelSize(), 17);
    QCOMPARE(label->font().weight(), int(QFont::DemiBold));
    QCOMPARE(label->font().family(), QApplication::font().family());
}

// The title goes to the title label (and the accessible name), not to the window system's title.
void TestPopNoticeBase::setWindowTitleSetsLabelOnly()
{
    m_card = new TestCard();
    m_card->setWindowTitle(QStringLiteral("Lesson Notice"));
    QCOMPARE(H::titleLabel(m_card)->text(), QStringLiteral("Lesson Notice"));
    QCOMPARE(m_card->windowTitle(), QString());
    QCOMPARE(m_card->accessibleName(), QStringLiteral("Lesson Notice"));
}

void TestPopNoticeBase::trackingEventsCarryTitleAndLeaveCallerMap_data()
{
    QTest::addColumn<bool>("click");
    QTest::newRow("PushSend") << false;
    QTest::newRow("PushClick") << true;
}

// Copy of the caller's entries, a fresh push_id, the title label's text over the caller's title, app_scene.
void TestPopNoticeBase::trackingEventsCarryTitleAndLeaveCallerMap()
{
    QFETCH(bool, click);
    m_card = new TestCard();
    m_card->setWindowTitle(QStringLiteral("Lesson Notice"));
    QMap<QString, QVariant> data;
    data.insert(QStringLiteral("push_title"), QString());
    data.insert(QStringLiteral("push_body"), QStringLiteral("body"));
    data.insert(QStringLiteral("check_up"), false);
    const QMap<QString, QVariant> before = data;
    for (int i = 0; i < 2; ++i) {
        if (click)
            m_card->trackClickPushMessage(data);
        else
            m_card->trackPushMessage(data);
    }
    QCOMPARE(data, before);
    const auto events = VyrTrack::instance()->events();
    QCOMPARE(events.size(), 2);
    QCOMPARE(events.at(0).first, click ? QStringLiteral("PushClick") : QStringLiteral("PushSend"));
    const QMap<QString, QVariant> sent = events.at(0).second;
    QCOMPARE(sent.value(QStringLiteral("push_title")).toString(), QStringLiteral("Lesson Notice"));
    QCOMPARE(sent.value(QStringLiteral("push_body")).toString(), QStringLiteral("body"));
    QCOMPARE(sent.value(QStringLiteral("check_up")), QVariant(false));
    QCOMPARE(sent.value(QStringLiteral("app_scene")).toString(), QStringLiteral("前台唤起"));
    QVERIFY(sent.value(QStringLiteral("push_id")).toString().startsWith(QLatin1Char('{')));
    QVERIFY(sent.value(QStringLiteral("push_id")) != events.at(1).second.value(QStringLiteral("push_id")));
    QCOMPARE(sent.size(), 5);
}

// The nine-slice shadow: 10-pixel border, clear middle.
void TestPopNoticeBase::shadowResourceHasTenPixelBorder()
{
    const QImage shadow = QImage(QStringLiteral(":/im/images/common/shadow.png")).convertToFormat(QImage::Format_ARGB32);
    QCOMPARE(shadow.size(), QSize(40, 40));
    QCOMPARE(alphaAt(shadow, 20, 20), 0);
    QVERIFY(alphaAt(shadow, 20, 37) > 0);
    QVERIFY(alphaAt(shadow, 20, 37) > alphaAt(shadow, 20, 2));
    QCOMPARE(alphaAt(shadow, 0, 0), 0);
}

// Grabbed as shown: clear outer corner, shadow under the card, white rounded panel, grey close cross.
void TestPopNoticeBase::cardPixels()
{
    m_card = cardIn(QStringLiteral("Holding"));
    m_card->setWindowTitle(QStringLiteral("Lesson Notice"));
    // The title row is laid out again for the new text, as the event loop would before the next paint.
    QCoreApplication::sendPostedEvents(nullptr, QEvent::LayoutRequest);
    const QImage image = H::grabCard(m_card);
    QCOMPARE(image.size(), QSize(328, 184));
    QCOMPARE(alphaAt(image, 0, 0), 0);
    // Shadow below the card: translucent and dark.
    const QRgb below = image.pixel(164, 184 - 8);
    QVERIFY(qAlpha(below) > 0 && qAlpha(below) < 200);
    QVERIFY(qRed(below) < 100);
    // Shadow deeper below than above.
    QVERIFY(qAlpha(image.pixel(164, 184 - 8)) > qAlpha(image.pixel(164, 8)));
    // The panel is white, opaque.
    QCOMPARE(image.pixel(60, 120), qRgba(255, 255, 255, 255));
    QCOMPARE(image.pixel(300, 160), qRgba(255, 255, 255, 255));
    QVERIFY(image.pixel(317, 173) != qRgba(255, 255, 255, 255));
    // Its corner is rounded: the outermost corner pixel isn't the panel's white.
    QVERIFY(image.pixel(10, 10) != qRgba(255, 255, 255, 255));
    QCOMPARE(image.pixel(14, 14), qRgba(255, 255, 255, 255));
    // The close cross is grey on white at rest, never red.
    QToolButton* close = H::closeButton(m_card);
    const QRect cross(close->mapTo(m_card, QPoint(0, 0)), close->size());
    int greyPixels = 0;
    for (int y = cross.top(); y <= cross.bottom(); ++y) {
        for (int x = cross.left(); x <= cross.right(); ++x) {
            const QColor c = QColor::fromRgba(image.pixel(x, y));
            QVERIFY(!(c.red() > 200 && c.green() < 120));
            if (c.red() < 200 && qAbs(c.red() - c.blue()) < 30)
                ++greyPixels;
        }
    }
    QVERIFY(greyPixels > 5);
    // Title text: dark pixels in the title row.
    const QRect titleArea(18, 10, 120, 30);
    int dark = 0;
    for (int y = titleArea.top(); y <= titleArea.bottom(); ++y)
        for (int x = titleArea.left(); x <= titleArea.right(); ++x)
            dark += qGray(image.pixel(x, y)) < 100 ? 1 : 0;
    QVERIFY(dark > 20);
}

// Showing the card raises an accessibility alert for it, once.
void TestPopNoticeBase::popRaisesAccessibilityAlert()
{
    m_card = new TestCard();
    m_card->setObjectName(QStringLiteral("card"));
    alertsSeen.clear();
    QAccessible::installUpdateHandler(recordAlerts);
    QPlatformAccessibility* accessibility = QGuiApplicationPrivate::platformIntegration()->accessibility();
    QVERIFY(accessibility);
    accessibility->setActive(true);
    QVERIFY(alertsSeen.isEmpty());
    m_card->popNotice();
    accessibility->setActive(false);
    QAccessible::installUpdateHandler(nullptr);
    QCOMPARE(alertsSeen, QStringList{QStringLiteral("card")});
}

// The close button's accessible name and tooltip are translated.
void TestPopNoticeBase::closeButtonAccessibleNameIsTranslated()
{
    m_card = new TestCard();
    QCOMPARE(H::closeButton(m_card)->accessibleName(), QStringLiteral("Close notice"));
    QCOMPARE(H::closeButton(m_card)->toolTip(), QStringLiteral("Close"));
    QVERIFY(TestKit::loadTranslations(QStringLiteral("zh_CN")));
    QPointer<TestCard> chinese = new TestCard();
    QCOMPARE(H::closeButton(chinese)->accessibleName(), QStringLiteral("关闭通知"));
    delete chinese;
    QVERIFY(TestKit::loadTranslations(QStringLiteral("en")));
}

// All cards draw one close icon: Qt's pixmap cache keeps each icon pixmap drawn, so one per card grows it.
void TestPopNoticeBase::cardsShareOneCloseIcon()
{
    m_card = new TestCard();
    QScopedPointer<TestCard> second(new TestCard());
    const QIcon first = H::closeButton(m_card)->icon();
    QVERIFY(!first.isNull());
    QCOMPARE(H::closeButton(second.data())->icon().cacheKey(), first.cacheKey());
}

QTEST_MAIN(TestPopNoticeBase)
#include "tst_popnoticebase.moc"
