#include "CoreEngine.h"
#include "LogCapture.h"
#include "NoticeListModel.h"
#include "NoticeListViewItem.h"
#include "NoticeListWidget.h"
#include "NoticeWindowHarness.h"
#include "NoticeWindowTestCase.h"
#include "TestKit.h"
#include "VyrPauseableTimer.h"
#include "VyrTrack.h"
#include "WindowSignalRecorder.h"

#include <QLabel>
#include <QListView>
#include <QStandardItemModel>
#include <QToolButton>
#include <QUuid>
#include <QtTest>

using namespace VyrEngine;
namespace H = NoticeWindowHarness;

namespace {
// The lesson rows: lesson `id` of `type`, each newer than the one before.
void addLesson(quint64 id, NoticeType type)
{
    CoreEngine::instance()->advanceTime(60);
    TestKit::addLessonNotice(id, type);
}

QList<VyrTrack::Event> clicks()
{
    return KitFixture::trackedEvents(QStringLiteral("PushClick"));
}

// Checks a click event key by key: exactly push_id, push_title, app_scene and check_up.
void verifyClick(const VyrTrack::Event& event, const QString& title, bool checkUp)
{
    QCOMPARE(event.first, QStringLiteral("PushClick"));
    const QMap<QString, QVariant>& data = event.second;
    QCOMPARE(data.keys(), (QStringList{QStringLiteral("app_scene"), QStringLiteral("check_up"),
                                       QStringLiteral("push_id"), QStringLiteral("push_title")}));
    QCOMPARE(data.value(QStringLiteral("app_scene")).toString(), QStringLiteral("前台唤起"));
    QCOMPARE(data.value(QStringLiteral("check_up")).type(), QVariant::Bool);
    QCOMPARE(data.value(QStringLiteral("check_up")).toBool(), checkUp);
    QCOMPARE(data.value(QStringLiteral("push_title")).toString(), title);
    const QString id = data.value(QStringLiteral("push_id")).toString();
    QVERIFY(id.startsWith(QLatin1Char('{')) && id.endsWith(QLatin1Char('}')));
    QVERIFY(!QUuid(id).isNull());
}
} // namespace

// What activating a row, its enter-classroom button or the close button does.
class TestItemActivation : public NoticeWindowTestCase
{
    Q_OBJECT
public:
    TestItemActivation()
        : NoticeWindowTestCase(NoticeWindowFixture::RecordSignals | NoticeWindowFixture::WireHost)
    {
    }

private slots:
    void delegateSignalsReachTheWindow();
    void friendRequestRowEmitsAndIsRemoved();
    void lessonRowsEmitLessonDetails_data();
    void lessonRowsEmitLessonDetails();
    void typeOutsideKnownRangeTracksAndRemovesWithoutSignal();
    void enterClassRoomEmitsLessonAndRemoves();
    void wrongModelEndsQuietly_data();
    void wrongModelEndsQuietly();
    void invalidIndexOnClickLogsOnce();
    void invalidIndexOnEnterClassRoomSaysNothing();
    void nullRecordEndsQuietly();
    void clickingLastRowHidesThroughRemovalNotClosePath();
    void closeButtonPausesStartAlertsAndDeletesCategory();
    void closeButtonStepsInOrder();
    void activityWindowCloseLoopEmitsNothing();
    void clickTitleLosesCountKeepsBlank_data();
    void clickTitleLosesCountKeepsBlank();
    void pushIdIsNewForEveryClick();
};

// The delegate's two signals are wired to the window's slots.
void TestItemActivation::delegateSignalsReachTheWindow()
{
    NoticeListWidget* window = m_fixture.makeWindow(Lesson);
    addLesson(1, LessonStart);
    addLesson(2, LessonPrepare);
    emit H::delegate(window)->clickedItem(H::view(window)->model(), H::rowIndex(window, 0));
    emit H::delegate(window)->enterClassRoom(H::view(window)->model(), H::rowIndex(window, 0));
    QCOMPARE(m_fixture.recorder()->joined(), QStringLiteral("lesson(2) enter(1) hidden(Lesson,false)"));
}

// A friend-request row: tracked, viewFriendRequestDetails, then the row goes and the window shrinks.
void TestItemActivation::friendRequestRowEmitsAndIsRemoved()
{
    NoticeListWidget* window = m_fixture.makeWindow(Activity);
    NoticeListModel::instance()->addContactorAddNotice();
    NoticeListModel::instance()->addContactorAddNotice();
    QCOMPARE(H::listHeight(window), 176);
    QString order;
    connect(window, &NoticeListWidget::viewFriendRequestDetails, this, [&order]() {
        order += QStringLiteral("signal(rows=%1,clicks=%2) ").arg(NoticeListModel::instance()->rowCount()).arg(clicks().size());
    });
    emit H::delegate(window)->clickedItem(H::view(window)->model(), H::rowIndex(window, 1));
    // Tracked before the signal; the row leaves after it.
    QCOMPARE(order, QStringLiteral("signal(rows=2,clicks=1) "));
    QCOMPARE(m_fixture.recorder()->joined(), QStringLiteral("friend"));
    QCOMPARE(NoticeListModel::instance()->rowCount(), 1);
    QCOMPARE(H::listHeight(window), 88);
    QVERIFY(window->isVisible());
    QCOMPARE(clicks().size(), 1);
    verifyClick(clicks().first(), QStringLiteral("Activity notices "), true);
}

// Lesson rows of types 2, 3 and 4: viewLessonNoticeDetails with the lesson id.
void TestItemActivation::lessonRowsEmitLessonDetails_data()
{
    QTest::addColumn<int>("type");
    QTest::newRow("ahead") << int(LessonAhead);
    QTest::newRow("prepare") << int(LessonPrepare);
    QTest::newRow("start") << int(LessonStart);
}

void TestItemActivation::lessonRowsEmitLessonDetails()
{
    QFETCH(int, type);
    NoticeListWidget* window = m_fixture.makeWindow(Lesson);
    addLesson(41, LessonAhead);
    addLesson(42, NoticeType(type));
    QVERIFY(window->isVisible());
    window->onClickedItem(H::view(window)->model(), H::rowIndex(window, 0));
    QCOMPARE(m_fixture.recorder()->joined(), QStringLiteral("lesson(42)"));
    QCOMPARE(NoticeListModel::instance()->rowCount(), 1);
    QCOMPARE(H::rowCount(window), 1);
    verifyClick(clicks().first(), QStringLiteral("Lesson notices "), true);
}

// A row of a type outside 0 to 6 is tracked and removed, and no view signal goes out.
void TestItemActivation::typeOutsideKnownRangeTracksAndRemovesWithoutSignal()
{
    NoticeListWidget* window = m_fixture.makeWindow(Activity);
    NoticeListModel::instance()->addContactorAddNotice();
    TestKit::addLessonNotice(9, LessonAhead);
    CoreEngine::instance()->advanceTime(60);
    NoticeListModel::instance()->addLessonNotice(NoticeType(9), 9);
    TestKit::settle();
    QCOMPARE(H::rowCount(window), 2);
    const GatherNoticePtr odd = H::rowIndex(window, 0).data(Qt::UserRole).value<GatherNoticePtr>();
    QCOMPARE(int(odd->type()), 9);
    VyrTrack::instance()->clearEvents();
    window->onClickedItem(H::view(window)->model(), H::rowIndex(window, 0));
    // No view signal. The row came over by an in-place update, which the host never sized the window
    // for, so the removal takes the window's one counted row and hides it.
    QCOMPARE(m_fixture.recorder()->joined(), QStringLiteral("hidden(Activity,false)"));
    QCOMPARE(clicks().size(), 1);
    QCOMPARE(H::rowCount(window), 1);
}

// The enter-classroom button: tracked with check_up true, enterClassRoom(lessonId), the row removed.
void TestItemActivation::enterClassRoomEmitsLessonAndRemoves()
{
    NoticeListWidget* window = m_fixture.makeWindow(Lesson);
    addLesson(7, LessonStart);
    addLesson(8, LessonPrepare);
    window->onEnterClassRoom(H::view(window)->model(), H::rowIndex(window, 1));
    QCOMPARE(m_fixture.recorder()->joined(), QStringLiteral("enter(7)"));
    QCOMPARE(H::rowCount(window), 1);
    QCOMPARE(H::rowIndex(window, 0).data(Qt::UserRole).value<GatherNoticePtr>()->lessonId(), quint64(8));
    QCOMPARE(clicks().size(), 1);
    verifyClick(clicks().first(), QStringLiteral("Lesson notices "), true);
    QCOMPARE(H::listHeight(window), 88);
}

// A model that isn't the window's proxy ends both slots without a word.
void TestItemActivation::wrongModelEndsQuietly_data()
{
    QTest::addColumn<bool>("enter");
    QTest::newRow("click") << false;
    QTest::newRow("enterClassRoom") << true;
}

void TestItemActivation::wrongModelEndsQuietly()
{
    QFETCH(bool, enter);
    NoticeListWidget* window = m_fixture.makeWindow(Activity);
    NoticeListModel::instance()->addContactorAddNotice();
    NoticeListModel* source = NoticeListModel::instance();
    QStandardItemModel other;
    LogCapture log;
    for (QAbstractItemModel* model : {static_cast<QAbstractItemModel*>(source), static_cast<QAbstractItemModel*>(&other),
                                      static_cast<QAbstractItemModel*>(nullptr)}) {
        if (enter)
            window->onEnterClassRoom(model, source->index(0));
        else
            window->onClickedItem(model, source->index(0));
    }
    QCOMPARE(m_fixture.recorder()->joined(), QString());
    QVERIFY(clicks().isEmpty());
    QCOMPARE(source->rowCount(), 1);
    QVERIFY(log.startingWith(QStringLiteral("clicked")).isEmpty());
}

// An invalid index on a click: one info line, nothing else.
void TestItemActivation::invalidIndexOnClickLogsOnce()
{
    NoticeListWidget* window = m_fixture.makeWindow(Activity);
    NoticeListModel::instance()->addContactorAddNotice();
    LogCapture log;
    window->onClickedItem(H::view(window)->model(), QModelIndex());
    const auto lines = log.matching(QStringLiteral("clicked notice item, index is invalid"));
    QCOMPARE(lines.size(), 1);
    QCOMPARE(lines.first().type, QtInfoMsg);
    QCOMPARE(lines.first().file, H::sourceFile());
    QVERIFY(lines.first().function.contains(QLatin1String("NoticeListWidget::onClickedItem")));
    QCOMPARE(m_fixture.recorder()->joined(), QString());
    QVERIFY(clicks().isEmpty());
    QCOMPARE(NoticeListModel::instance()->rowCount(), 1);
}

// An invalid index on the enter-classroom slot returns at the first test: its log line is never printed.
void TestItemActivation::invalidIndexOnEnterClassRoomSaysNothing()
{
    NoticeListWidget* window = m_fixture.makeWindow(Lesson);
    addLesson(1, LessonStart);
    LogCapture log;
    window->onEnterClassRoom(H::view(window)->model(), QModelIndex());
    QVERIFY(log.matching(QStringLiteral("clicked notice item, EnterClassRoom, index is invalid")).isEmpty());
    QVERIFY(log.startingWith(QStringLiteral("clicked")).isEmpty());
    QCOMPARE(m_fixture.recorder()->joined(), QString());
    QVERIFY(clicks().isEmpty());
    // The line stays in the source, with its own test.
    QFile source(QStringLiteral(VYR_SOURCE_DIR "/") + H::sourceFile());
    QVERIFY(source.open(QIODevice::ReadOnly));
    QVERIFY(source.readAll().contains("clicked notice item, EnterClassRoom, index is invalid"));
}

// A row whose data holds no record: both slots end without a word.
void TestItemActivation::nullRecordEndsQuietly()
{
    NoticeListWidget* window = m_fixture.makeWindow(Activity);
    NoticeListModel::instance()->addContactorAddNotice();
    auto* proxy = H::view(window)->model();
    // An index of the proxy's own type that reads another model's empty row.
    QStandardItemModel empty(1, 1);
    const QModelIndex noRecord = empty.index(0, 0);
    LogCapture log;
    window->onClickedItem(proxy, noRecord);
    window->onEnterClassRoom(proxy, noRecord);
    QCOMPARE(m_fixture.recorder()->joined(), QString());
    QVERIFY(clicks().isEmpty());
    QVERIFY(log.lines().isEmpty());
    QCOMPARE(NoticeListModel::instance()->rowCount(), 1);
}

// Clicking the last row hides the window through the removal: no pause alert, no check_up false.
void TestItemActivation::clickingLastRowHidesThroughRemovalNotClosePath()
{
    NoticeListWidget* window = m_fixture.makeWindow(Lesson);
    addLesson(5, LessonStart);
    QVERIFY(window->isVisible());
    window->onClickedItem(H::view(window)->model(), H::rowIndex(window, 0));
    QCOMPARE(m_fixture.recorder()->joined(), QStringLiteral("lesson(5) hidden(Lesson,false)"));
    QVERIFY(!window->isVisible());
    QCOMPARE(clicks().size(), 1);
    QVERIFY(clicks().first().second.value(QStringLiteral("check_up")).toBool());
}

// Close: tracked with check_up false, hidden, one pause alert per prepare/start row, timer stopped, category gone.
void TestItemActivation::closeButtonPausesStartAlertsAndDeletesCategory()
{
    NoticeListWidget* window = m_fixture.makeWindow(Lesson);
    NoticeListModel::instance()->addContactorAddNotice();
    addLesson(1, LessonAhead);
    addLesson(2, LessonStart);
    addLesson(3, LessonPrepare);
    addLesson(4, LessonAhead);
    VyrTrack::instance()->clearEvents();
    window->findChild<QToolButton*>()->click();
    // Rows newest first: 4 (ahead), 3 (prepare), 2 (start), 1 (ahead).
    QCOMPARE(m_fixture.recorder()->joined(), QStringLiteral("hidden(Lesson,false) pause(3) pause(2)"));
    QVERIFY(!window->isVisible());
    QVERIFY(!H::closeTimer(window)->isActive());
    QCOMPARE(H::listHeight(window), 0);
    QCOMPARE(NoticeListModel::instance()->getNoticeItemNum(Lesson), 0);
    QCOMPARE(NoticeListModel::instance()->getNoticeItemNum(Activity), 1);
    QCOMPARE(clicks().size(), 1);
    verifyClick(clicks().first(), QStringLiteral("Lesson notices "), false);
}

// The close button, step by step: the click is tracked while the window still shows; the window is
// hidden before noticeWidgetHidden; the pause alerts follow that signal and read the rows while the window
// is hidden and nothing is deleted yet; the category goes last, after the timer has stopped.
void TestItemActivation::closeButtonStepsInOrder()
{
    NoticeListWidget* window = m_fixture.makeWindow(Lesson);
    addLesson(1, LessonStart);
    addLesson(2, LessonPrepare);
    QVERIFY(window->isVisible());
    VyrTrack::instance()->clearEvents();
    QStringList trace;
    auto state = [window]() {
        return QStringLiteral("visible=%1 rows=%2 timer=%3 height=%4")
            .arg(window->isVisible())
            .arg(NoticeListModel::instance()->getNoticeItemNum(Lesson))
            .arg(H::closeTimer(window)->isActive())
            .arg(H::listHeight(window));
    };
    // Disconnects everything below when the test ends.
    QObject context;
    connect(VyrTrack::instance(), &VyrTrack::tracked, &context,
            [&trace, state](const QString& event, const QVariantMap& data) {
                trace << QStringLiteral("%1(check_up=%2) %3")
                             .arg(event, data.value(QStringLiteral("check_up")).toString(), state());
            });
    connect(window, &NoticeListWidget::noticeWidgetHidden, &context,
            [&trace, state]() { trace << QStringLiteral("hidden ") + state(); });
    connect(window, &NoticeListWidget::pauseLessonStartAlert, &context,
            [&trace, state](qulonglong id) { trace << QStringLiteral("pause(%1) ").arg(id) + state(); });
    connect(NoticeListModel::instance(), &QAbstractItemModel::modelReset, &context,
            [&trace, state]() { trace << QStringLiteral("deleted ") + state(); });
    window->findChild<QToolButton*>()->click();
    QCOMPARE(trace, (QStringList{
                        QStringLiteral("PushClick(check_up=false) visible=1 rows=2 timer=1 height=176"),
                        QStringLiteral("hidden visible=0 rows=2 timer=1 height=176"),
                        QStringLiteral("pause(2) visible=0 rows=2 timer=1 height=176"),
                        QStringLiteral("pause(1) visible=0 rows=2 timer=1 height=176"),
                        QStringLiteral("deleted visible=0 rows=0 timer=0 height=0"),
                    }));
}

// In the Activity window the loop emits nothing: its rows are never of types 3 or 4.
void TestItemActivation::activityWindowCloseLoopEmitsNothing()
{
    NoticeListWidget* window = m_fixture.makeWindow(Activity);
    NoticeListModel::instance()->addContactorAddNotice();
    addLesson(1, LessonStart);
    window->onClickedCloseBtn();
    QCOMPARE(m_fixture.recorder()->joined(), QStringLiteral("hidden(Activity,false)"));
    QCOMPARE(NoticeListModel::instance()->getNoticeItemNum(Lesson), 1);
}

// The title loses each innermost parenthesised part, keeping the blank before it.
void TestItemActivation::clickTitleLosesCountKeepsBlank_data()
{
    QTest::addColumn<QString>("title");
    QTest::addColumn<QString>("tracked");
    QTest::newRow("count") << QStringLiteral("Lesson notices (3)") << QStringLiteral("Lesson notices ");
    QTest::newRow("nested") << QStringLiteral("A (b (c) d)") << QStringLiteral("A (b  d)");
    QTest::newRow("two") << QStringLiteral("(x)Notices (12)") << QStringLiteral("Notices ");
    QTest::newRow("none") << QStringLiteral("Notices") << QStringLiteral("Notices");
    QTest::newRow("empty") << QString() << QString();
    QTest::newRow("full-width-kept") << QStringLiteral("通知（3）") << QStringLiteral("通知（3）");
}

void TestItemActivation::clickTitleLosesCountKeepsBlank()
{
    QFETCH(QString, title);
    QFETCH(QString, tracked);
    NoticeListWidget* window = m_fixture.makeWindow(Activity);
    NoticeListModel::instance()->addContactorAddNotice();
    window->findChild<QLabel*>(QStringLiteral("titleLabel"))->setText(title);
    window->onClickedCloseBtn();
    QCOMPARE(clicks().size(), 1);
    QCOMPARE(clicks().first().second.value(QStringLiteral("push_title")).toString(), tracked);
}

// Every click event gets its own push_id.
void TestItemActivation::pushIdIsNewForEveryClick()
{
    NoticeListWidget* window = m_fixture.makeWindow(Activity);
    for (int i = 0; i < 3; ++i)
        NoticeListModel::instance()->addContactorAddNotice();
    window->onClickedItem(H::view(window)->model(), H::rowIndex(window, 0));
    window->onClickedItem(H::view(window)->model(), H::rowIndex(window, 0));
    window->onClickedCloseBtn();
    QSet<QString> ids;
    for (const VyrTrack::Event& event : clicks())
        ids.insert(event.second.value(QStringLiteral("push_id")).toString());
    QCOMPARE(ids.size(), 3);
}

QTEST_MAIN(TestItemActivation)
#include "tst_itemactivation.moc"
