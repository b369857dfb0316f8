#include "CoreEngine.h"
#include "LogCapture.h"
#include "NoticeListModel.h"
#include "NoticeListViewItem.h"
#include "NoticeListWidget.h"
#include "NoticeWindowFixture.h"
#include "NoticeWindowHarness.h"
#include "PixelProbe.h"
#include "TestKit.h"
#include "VyrPauseableTimer.h"

#include <QAbstractItemModelTester>
#include <QAccessible>
#include <QHBoxLayout>
#include <QLabel>
#include <QScopeGuard>
#include <QStandardItemModel>
#include <QListView>
#include <QToolButton>
#include <QVBoxLayout>
#include <QtTest>
#include <private/qguiapplication_p.h>
#include <qpa/qplatformaccessibility.h>
#include <qpa/qplatformintegration.h>

using namespace VyrEngine;
namespace H = NoticeWindowHarness;

namespace {

using TestKit::noticeAt;

QAbstractItemModel* proxyOf(NoticeListWidget* window)
{
    return H::view(window)->model();
}

QStringList alertsSeen;

void recordAlerts(QAccessibleEvent* event)
{
    if (event->type() == QAccessible::Alert && event->object())
        alertsSeen << event->object()->objectName() + QLatin1Char(':') + event->object()->metaObject()->className();
}

} // namespace

// The window's construction, widget tree, title, painting and proxy.
class TestNoticeListWidget : public QObject
{
    Q_OBJECT
private slots:
    void initTestCase();
    void init();
    void cleanup();

    void newWindowIsHiddenEmptyWithZeroInTitle_data();
    void newWindowIsHiddenEmptyWithZeroInTitle();
    void windowFlagsAndAttributes();
    void widgetTreeNamesAndSizes();
    void titleMarginsAndCloseButton();
    void listViewSettings();
    void titleCountsOnlyThisCategoryAfterFilter();
    void proxyKeepsCategoryNewestFirst();
    void proxyKeepsSourceOrderForEqualTimes();
    void proxyComparesTimesUnsigned();
    void proxyDropsNullRecordsAndLessThanTreatsThemAsNotLess();
    void typeOutsideLessonRangeBelongsToActivity_data();
    void typeOutsideLessonRangeBelongsToActivity();
    void delegateTakesChinaFormFromWindowCountry_data();
    void delegateTakesChinaFormFromWindowCountry();
    void onlyLessonWindowListensToLessonUpdates();
    void paintDrawsShadowAroundWhitePanel();
    void mouseMoveComparesWithoutMapping_data();
    void mouseMoveComparesWithoutMapping();
    void accessibleNamesAreTranslated();
    void popRaisesAccessibilityAlert();
    void styleSheetComesFromResource();

private:
    NoticeWindowFixture m_fixture;
};

void TestNoticeListWidget::initTestCase()
{
    QVERIFY(TestKit::loadTranslations());
}

void TestNoticeListWidget::init()
{
    m_fixture.init();
}

void TestNoticeListWidget::cleanup()
{
    m_fixture.cleanup();
}

// A new window, before any notice: hidden, list height 0, title with 0.
void TestNoticeListWidget::newWindowIsHiddenEmptyWithZeroInTitle_data()
{
    QTest::addColumn<int>("category");
    QTest::addColumn<QString>("title");
    QTest::newRow("activity") << int(Activity) << QStringLiteral("Activity notices (0)");
    QTest::newRow("lesson") << int(Lesson) << QStringLiteral("Lesson notices (0)");
}

void TestNoticeListWidget::newWindowIsHiddenEmptyWithZeroInTitle()
{
    QFETCH(int, category);
    QFETCH(QString, title);
    NoticeListWidget* window = m_fixture.makeWindow(NoticeCategory(category));
    QVERIFY(!window->isVisible());
    QCOMPARE(H::listHeight(window), 0);
    QCOMPARE(window->getContentWidgetSize(), QSize(384, 50));
    QCOMPARE(H::title(window), title);
    QVERIFY(!window->isPosChanged());
    QCOMPARE(window->popupTime(), quint64(0));
}

// Frameless, always-on-top tool window with a translucent background, no focus, mouse tracking.
void TestNoticeListWidget::windowFlagsAndAttributes()
{
    NoticeListWidget* window = m_fixture.makeWindow(Activity);
    const Qt::WindowFlags flags = window->windowFlags();
    QVERIFY(flags.testFlag(Qt::WindowStaysOnTopHint));
    QVERIFY(flags.testFlag(Qt::FramelessWindowHint));
    QCOMPARE(flags & Qt::WindowType_Mask, Qt::Tool);
    QVERIFY(window->testAttribute(Qt::WA_TranslucentBackground));
    QCOMPARE(window->focusPolicy(), Qt::NoFocus);
    QVERIFY(window->hasMouseTracking());
    QVERIFY(window->isWindow());
}

// The tree of panels with its object names, margins and fixed sizes.
void TestNoticeListWidget::widgetTreeNamesAndSizes()
{
    NoticeListWidget* window = m_fixture.makeWindow(Lesson);
    auto* mainLayout = qobject_cast<QHBoxLayout*>(window->layout());
    QVERIFY(mainLayout);
    QCOMPARE(mainLayout->contentsMargins(), QMargins(20, 20, 20, 20));
    QCOMPARE(mainLayout->spacing(), 0);

    auto* panel = window->findChild<QWidget*>(QStringLiteral("noticeListWidget"));
    QVERIFY(panel);
    QCOMPARE(panel->parentWidget(), window);
    QCOMPARE(panel->minimumWidth(), 384);
    QCOMPARE(panel->maximumWidth(), 384);
    auto* panelLayout = qobject_cast<QVBoxLayout*>(panel->layout());
    QVERIFY(panelLayout);
    QCOMPARE(panelLayout->contentsMargins(), QMargins(0, 0, 0, 0));
    QCOMPARE(panelLayout->spacing(), 0);
    QCOMPARE(panelLayout->count(), 3);

    auto* titleWidget = window->findChild<QWidget*>(QStringLiteral("titleWidget"));
    QCOMPARE(panelLayout->itemAt(0)->widget(), titleWidget);
    QCOMPARE(titleWidget->minimumHeight(), 42);
    QCOMPARE(titleWidget->maximumHeight(), 42);
    QVERIFY(panelLayout->itemAt(1)->spacerItem());
    QCOMPARE(panelLayout->itemAt(1)->spacerItem()->sizeHint().height(), 4);
    auto* listWidget = window->findChild<QWidget*>(QStringLiteral("listWidget"));
    QCOMPARE(panelLayout->itemAt(2)->widget(), listWidget);
    QCOMPARE(listWidget->layout()->contentsMargins(), QMargins(10, 0, 10, 8));

    auto* view = H::view(window);
    QVERIFY(view);
    QCOMPARE(view->parentWidget(), listWidget);
    QVERIFY(window->findChild<QLabel*>(QStringLiteral("titleLabel")));
    QCOMPARE(window->findChild<QLabel*>(QStringLiteral("titleLabel"))->parentWidget(), titleWidget);
}

// Title row: label, stretch, 18 x 18 close button with tool tip and hand cursor.
void TestNoticeListWidget::titleMarginsAndCloseButton()
{
    NoticeListWidget* window = m_fixture.makeWindow(Activity);
    auto* titleWidget = window->findChild<QWidget*>(QStringLiteral("titleWidget"));
    auto* layout = qobject_cast<QHBoxLayout*>(titleWidget->layout());
    QVERIFY(layout);
    QCOMPARE(layout->contentsMargins(), QMargins(20, 16, 20, 4));
    QCOMPARE(layout->spacing(), 0);
    QCOMPARE(layout->count(), 3);
    QCOMPARE(layout->itemAt(0)->widget()->objectName(), QStringLiteral("titleLabel"));
    QVERIFY(layout->itemAt(1)->spacerItem());
    auto* button = qobject_cast<QToolButton*>(layout->itemAt(2)->widget());
    QVERIFY(button);
    QCOMPARE(button->size(), QSize(18, 18));
    QCOMPARE(button->minimumSize(), QSize(18, 18));
    QCOMPARE(button->toolTip(), QStringLiteral("Close"));
    QCOMPARE(button->cursor().shape(), Qt::PointingHandCursor);
    QCOMPARE(button->property("GlobalStyle").toString(), QStringLiteral("QToolButton_CloseGrayBg"));
}

// The list view's settings as the window sets them.
void TestNoticeListWidget::listViewSettings()
{
    NoticeListWidget* window = m_fixture.makeWindow(Activity);
    auto* view = H::view(window);
    QVERIFY(!view->testAttribute(Qt::WA_MacShowFocusRect));
    QCOMPARE(view->contextMenuPolicy(), Qt::CustomContextMenu);
    QCOMPARE(view->horizontalScrollBarPolicy(), Qt::ScrollBarAlwaysOff);
    QVERIFY(view->hasMouseTracking());
    QVERIFY(view->viewport()->testAttribute(Qt::WA_Hover));
    QCOMPARE(view->verticalScrollMode(), QAbstractItemView::ScrollPerPixel);
    QVERIFY(!view->hasAutoScroll());
    QCOMPARE(view->selectionMode(), QAbstractItemView::NoSelection);
    QCOMPARE(view->focusPolicy(), Qt::ClickFocus);
    QVERIFY(view->itemDelegate());
    QCOMPARE(view->itemDelegate()->parent(), window);
    QCOMPARE(QByteArray(view->model()->metaObject()->className()), QByteArray("NoticeListSortFilterModel"));
}

// The title's number is this window's row count after the filter, refreshed by adjustListHeight.
void TestNoticeListWidget::titleCountsOnlyThisCategoryAfterFilter()
{
    NoticeListWidget* window = m_fixture.makeWindow(Activity);
    NoticeListModel::instance()->addContactorAddNotice();
    NoticeListModel::instance()->addContactorAddNotice();
    TestKit::addLessonNotice(1, LessonStart);
    QCOMPARE(NoticeListModel::instance()->rowCount(), 3);
    QCOMPARE(H::title(window), QStringLiteral("Activity notices (0)"));
    window->adjustListHeight(5);
    QCOMPARE(H::title(window), QStringLiteral("Activity notices (2)"));
}

// Rows of the window's category only, sorted by time, newest first; equal times keep source order.
void TestNoticeListWidget::proxyKeepsCategoryNewestFirst()
{
    NoticeListWidget* window = m_fixture.makeWindow(Lesson);
    QAbstractItemModel* proxy = proxyOf(window);
    new QAbstractItemModelTester(proxy, QAbstractItemModelTester::FailureReportingMode::QtTest, this);
    auto* core = CoreEngine::instance();
    const QList<quint64> lessons = {11, 12, 13};
    for (quint64 id : lessons) {
        core->advanceTime(60);
        TestKit::addLessonNotice(id, LessonAhead);
        NoticeListModel::instance()->addContactorAddNotice();
    }
    QCOMPARE(proxy->rowCount(), 3);
    QCOMPARE(noticeAt(proxy, 0)->lessonId(), quint64(13));
    QCOMPARE(noticeAt(proxy, 1)->lessonId(), quint64(12));
    QCOMPARE(noticeAt(proxy, 2)->lessonId(), quint64(11));
    // An update gives lesson 11 a newer time: it rises to the top on the reset, still one row of three.
    core->advanceTime(60);
    NoticeListModel::instance()->addLessonNotice(LessonStart, 11);
    TestKit::settle();
    QCOMPARE(proxy->rowCount(), 3);
    QCOMPARE(noticeAt(proxy, 0)->lessonId(), quint64(11));
}

// A proxy over a source whose row holds no record: filtered out, and lessThan says false.
void TestNoticeListWidget::proxyDropsNullRecordsAndLessThanTreatsThemAsNotLess()
{
    QStandardItemModel source;
    auto* full = new QStandardItem();
    auto notice = std::make_shared<GatherNotice>(ContactorAdd);
    notice->setTime(5);
    full->setData(QVariant::fromValue(notice), Qt::UserRole);
    source.appendRow(full);
    source.appendRow(new QStandardItem(QStringLiteral("no record")));

    NoticeListSortFilterModel proxy(NoticeListModel::instance(), Activity, nullptr);
    proxy.setSourceModel(&source);
    QCOMPARE(proxy.rowCount(), 1);
    QCOMPARE(noticeAt(&proxy, 0), notice);

    struct Probe : NoticeListSortFilterModel
    {
        using NoticeListSortFilterModel::NoticeListSortFilterModel;
        using NoticeListSortFilterModel::lessThan;
    } probe(NoticeListModel::instance(), Activity, nullptr);
    probe.setSourceModel(&source);
    const QModelIndex withRecord = source.index(0, 0);
    const QModelIndex withoutRecord = source.index(1, 0);
    QVERIFY(!probe.lessThan(withoutRecord, withRecord));
    QVERIFY(!probe.lessThan(withRecord, withoutRecord));
    QVERIFY(!probe.lessThan(QModelIndex(), withRecord));
    QVERIFY(!probe.lessThan(withRecord, withRecord));
}

// A row of a type outside 2 to 4 is an Activity row: here a lesson row turned by an in-place update to
// another kind, to a kind no notice has, or to the unset type.
void TestNoticeListWidget::typeOutsideLessonRangeBelongsToActivity_data()
{
    QTest::addColumn<int>("type");
    QTest::newRow("unset") << -1;
    QTest::newRow("friend") << int(ContactorAdd);
    QTest::newRow("report") << int(StudyReport);
    QTest::newRow("activity") << int(StudyActivity);
    QTest::newRow("unknown") << 7;
}

void TestNoticeListWidget::typeOutsideLessonRangeBelongsToActivity()
{
    QFETCH(int, type);
    NoticeListWidget* window = m_fixture.makeWindow(Activity);
    NoticeListWidget* other = m_fixture.makeOtherWindow(Lesson);
    TestKit::addLessonNotice(1, LessonAhead);
    QCOMPARE(proxyOf(other)->rowCount(), 1);
    QCOMPARE(proxyOf(window)->rowCount(), 0);
    NoticeListModel::instance()->addLessonNotice(NoticeType(type), 1);
    TestKit::settle();
    QCOMPARE(NoticeListModel::instance()->rowCount(), 1);
    QCOMPARE(proxyOf(other)->rowCount(), 0);
    QCOMPARE(proxyOf(window)->rowCount(), 1);
    QCOMPARE(int(noticeAt(proxyOf(window), 0)->type()), type);
    QCOMPARE(noticeAt(proxyOf(window), 0)->lessonId(), quint64(1));
}

// Notices of the same second keep the order in which they came, between older and newer ones.
void TestNoticeListWidget::proxyKeepsSourceOrderForEqualTimes()
{
    NoticeListWidget* window = m_fixture.makeWindow(Activity);
    QAbstractItemModel* proxy = proxyOf(window);
    new QAbstractItemModelTester(proxy, QAbstractItemModelTester::FailureReportingMode::QtTest, this);
    auto* core = CoreEngine::instance();
    auto add = [](quint64 contentId) {
        NoticeListModel::instance()->addClusterNoticeRemindNotice(QStringLiteral("n%1").arg(contentId), contentId,
                                                                  900, 1);
    };
    // Times: 1 and 2 at t, 3, 4 and 5 at t + 60, 6 at t + 120, 7 at t + 60 again (the clock set back).
    add(1);
    add(2);
    core->advanceTime(60);
    add(3);
    add(4);
    add(5);
    core->advanceTime(60);
    add(6);
    core->advanceTime(-60);
    add(7);
    QStringList order;
    for (int row = 0; row < proxy->rowCount(); ++row)
        order << QString::number(noticeAt(proxy, row)->contentId());
    QCOMPARE(order.join(QLatin1Char(' ')), QStringLiteral("6 3 4 5 7 1 2"));
}

// Times are compared as unsigned 32-bit numbers: those past 2^31 are newer than those below it.
void TestNoticeListWidget::proxyComparesTimesUnsigned()
{
    NoticeListWidget* window = m_fixture.makeWindow(Activity);
    QAbstractItemModel* proxy = proxyOf(window);
    auto* core = CoreEngine::instance();
    const QList<qint64> times = {Q_INT64_C(2147483648) + 5,  // 2^31 + 5
                                 Q_INT64_C(2147483647) - 10, // below 2^31
                                 Q_INT64_C(4294967295),      // 2^32 - 1
                                 Q_INT64_C(3000000000)};
    quint64 contentId = 0;
    for (qint64 time : times) {
        core->setCurrentTime(time);
        NoticeListModel::instance()->addClusterNoticeRemindNotice(QStringLiteral("n"), ++contentId, 900, 1);
    }
    QCOMPARE(proxy->rowCount(), 4);
    QList<quint32> shown;
    for (int row = 0; row < proxy->rowCount(); ++row)
        shown << noticeAt(proxy, row)->time();
    QCOMPARE(shown, (QList<quint32>{4294967295u, 3000000000u, 2147483653u, 2147483637u}));
    QCOMPARE(noticeAt(proxy, 0)->contentId(), quint64(3));
    QCOMPARE(noticeAt(proxy, 3)->contentId(), quint64(2));
}

// The row delegate takes the Chinese form of a lesson's name (a non-breaking space) in a window whose
// locale's country is China, and quotation marks anywhere else, whatever the language.
void TestNoticeListWidget::delegateTakesChinaFormFromWindowCountry_data()
{
    QTest::addColumn<QLocale>("locale");
    QTest::addColumn<bool>("china");
    QTest::newRow("zh_CN") << QLocale(QLocale::Chinese, QLocale::China) << true;
    QTest::newRow("zh_TW") << QLocale(QLocale::Chinese, QLocale::Taiwan) << false;
    QTest::newRow("en_US") << QLocale(QLocale::English, QLocale::UnitedStates) << false;
    QTest::newRow("en_GB") << QLocale(QLocale::English, QLocale::UnitedKingdom) << false;
}

void TestNoticeListWidget::delegateTakesChinaFormFromWindowCountry()
{
    QFETCH(QLocale, locale);
    QFETCH(bool, china);
    const QLocale before;
    const auto restore = qScopeGuard([before]() { QLocale::setDefault(before); });
    QLocale::setDefault(locale);
    NoticeListWidget* window = m_fixture.makeWindow(Lesson);
    QCOMPARE(window->locale().country(), locale.country());
    QLocale::setDefault(before);

    TestKit::putLesson(1, QStringLiteral("Algebra"), 1800000000 + 600);
    NoticeListModel::instance()->addLessonNotice(LessonAhead, 1);
    TestKit::settle();
    QAbstractItemModel* proxy = proxyOf(window);
    QCOMPARE(proxy->rowCount(), 1);
    auto* view = H::view(window);
    auto* delegate = qobject_cast<NoticeListViewItem*>(view->itemDelegate());
    QVERIFY(delegate);
    const QFontMetrics metrics(view->font());
    const QString html = delegate->bodyText(*noticeAt(proxy, 0), metrics, 294).text;
    const QString spaced = QStringLiteral("&nbsp;Algebra</span>");
    const QString quoted = QStringLiteral("&quot;Algebra&quot;</span>");
    QVERIFY2(html.contains(china ? spaced : quoted), qPrintable(html));
    QVERIFY2(!html.contains(china ? quoted : spaced), qPrintable(html));
}

// Only the Lesson window restarts its hold time on lessonNoticeUpdated.
void TestNoticeListWidget::onlyLessonWindowListensToLessonUpdates()
{
    NoticeListWidget* lesson = m_fixture.makeWindow(Lesson);
    NoticeListWidget* other = m_fixture.makeOtherWindow(Activity);
    QVERIFY(!H::closeTimer(lesson)->isActive());
    QVERIFY(!H::closeTimer(other)->isActive());
    emit NoticeListModel::instance()->lessonNoticeUpdated();
    QVERIFY(H::closeTimer(lesson)->isActive());
    QCOMPARE(H::closeTimer(lesson)->remainingTime() > 14000, true);
    QVERIFY(!H::closeTimer(other)->isActive());
}

// The shadow border is translucent and darkest next to the panel; the panel is opaque white.
void TestNoticeListWidget::paintDrawsShadowAroundWhitePanel()
{
    NoticeListWidget* window = m_fixture.makeWindow(Activity);
    NoticeListModel::instance()->addContactorAddNotice();
    window->adjustListHeight(0);
    window->popNoticeListWidget(0);
    const QImage image = PixelProbe::grab(window);
    QCOMPARE(image.size(), QSize(424, 178));
    const int midY = image.height() / 2;
    const int midX = image.width() / 2;
    // Far corner: nothing.
    QCOMPARE(qAlpha(image.pixel(0, 0)), 0);
    // Each side: a soft shadow that grows toward the panel.
    const QList<QPair<QPoint, QPoint>> outerInner = {
        {QPoint(4, midY), QPoint(17, midY)},                          // left
        {QPoint(image.width() - 5, midY), QPoint(image.width() - 18, midY)}, // right
        {QPoint(midX, 4), QPoint(midX, 17)},                          // top
        {QPoint(midX, image.height() - 5), QPoint(midX, image.height() - 18)}, // bottom
    };
    for (const auto& pair : outerInner) {
        const int outer = qAlpha(image.pixel(pair.first));
        const int inner = qAlpha(image.pixel(pair.second));
        QVERIFY2(inner > outer, qPrintable(QStringLiteral("%1 vs %2").arg(inner).arg(outer)));
        QVERIFY(inner > 10);
        QVERIFY(inner < 128);
    }
    // Deeper below than above, as if lit from above.
    QVERIFY(qAlpha(image.pixel(midX, image.height() - 15)) > qAlpha(image.pixel(midX, 15)));
    // The panel: opaque white.
    const QRgb panel = image.pixel(midX, 100);
    QCOMPARE(qAlpha(panel), 255);
    QCOMPARE(qRed(panel), 255);
    QCOMPARE(qGreen(panel), 255);
    QCOMPARE(qBlue(panel), 255);
}

// The hand cursor follows the list panel's own rectangle, compared with window coordinates unmapped.
void TestNoticeListWidget::mouseMoveComparesWithoutMapping_data()
{
    QTest::addColumn<QPoint>("pos");
    QTest::addColumn<int>("shape");
    // The title panel at window (30, 30) lies inside the list panel's size: hand, by the unmapped test.
    QTest::newRow("title-inside-list-size") << QPoint(30, 30) << int(Qt::PointingHandCursor);
    // Window (2, 2) is the shadow border, still inside (0, 0)-(384, h): hand as well.
    QTest::newRow("shadow-top-left") << QPoint(2, 2) << int(Qt::PointingHandCursor);
    // Right of 384 in window coordinates: arrow, though it is on the list panel when mapped.
    QTest::newRow("list-right-edge") << QPoint(395, 120) << int(Qt::ArrowCursor);
    QTest::newRow("below-list-size") << QPoint(200, 170) << int(Qt::ArrowCursor);
}

void TestNoticeListWidget::mouseMoveComparesWithoutMapping()
{
    QFETCH(QPoint, pos);
    QFETCH(int, shape);
    NoticeListWidget* window = m_fixture.makeWindow(Activity);
    NoticeListModel::instance()->addContactorAddNotice();
    window->adjustListHeight(0);
    window->popNoticeListWidget(0);
    auto* listWidget = window->findChild<QWidget*>(QStringLiteral("listWidget"));
    QVERIFY(listWidget->mapTo(window, QPoint(0, 0)) != QPoint(0, 0));
    QMouseEvent move(QEvent::MouseMove, pos, window->mapToGlobal(pos), Qt::NoButton, Qt::NoButton, Qt::NoModifier);
    QCoreApplication::sendEvent(window, &move);
    QCOMPARE(int(window->cursor().shape()), shape);
}

// The close button and the list carry translated accessible names.
void TestNoticeListWidget::accessibleNamesAreTranslated()
{
    NoticeListWidget* window = m_fixture.makeWindow(Lesson);
    auto* button = window->findChild<QToolButton*>();
    auto* view = H::view(window);
    QCOMPARE(button->accessibleName(), QStringLiteral("Close notices"));
    QCOMPARE(view->accessibleName(), QStringLiteral("Notices"));
    QCOMPARE(window->accessibleName(), QStringLiteral("Lesson notices (0)"));
    QVERIFY(TestKit::loadTranslations(QStringLiteral("zh_CN")));
    NoticeListWidget chinese(Lesson);
    QCOMPARE(chinese.findChild<QToolButton*>()->accessibleName(), QStringLiteral("关闭通知"));
    QCOMPARE(chinese.findChild<QListView*>()->accessibleName(), QStringLiteral("通知列表"));
    QVERIFY(TestKit::loadTranslations());
}

// Popping the window raises an accessibility alert on it, so a screen reader announces the notices.
void TestNoticeListWidget::popRaisesAccessibilityAlert()
{
    NoticeListWidget* window = m_fixture.makeWindow(Lesson);
    window->setObjectName(QStringLiteral("lessonWindow"));
    alertsSeen.clear();
    QAccessible::installUpdateHandler(recordAlerts);
    // As when a screen reader attaches: the platform's accessibility turns active.
    QPlatformAccessibility* accessibility = QGuiApplicationPrivate::platformIntegration()->accessibility();
    QVERIFY(accessibility);
    accessibility->setActive(true);
    NoticeListModel::instance()->addContactorAddNotice();
    window->adjustListHeight(5);
    QVERIFY(alertsSeen.isEmpty());
    window->popNoticeListWidget(0);
    accessibility->setActive(false);
    QAccessible::installUpdateHandler(nullptr);
    QCOMPARE(alertsSeen, QStringList{QStringLiteral("lessonWindow:NoticeListWidget")});
}

// The style sheet of the resource reaches the window and names the five panels.
void TestNoticeListWidget::styleSheetComesFromResource()
{
    NoticeListWidget* window = m_fixture.makeWindow(Activity);
    QFile file(QStringLiteral(":/im/qss/notice/NoticeListWidget.qss"));
    QVERIFY(file.open(QIODevice::ReadOnly));
    const QString sheet = QString::fromUtf8(file.readAll());
    QCOMPARE(window->styleSheet(), sheet);
    for (const char* name : {"#noticeListWidget", "#titleWidget", "#titleLabel", "#listWidget", "#noticeListView"})
        QVERIFY2(sheet.contains(QLatin1String(name)), name);
}

QTEST_MAIN(TestNoticeListWidget)
#include "tst_noticelistwidget.moc"
