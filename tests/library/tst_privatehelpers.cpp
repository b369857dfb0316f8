#include "FutureObserver_p.h"
#include "NameSpan_p.h"
#include "PushTracking_p.h"
#include "TestKit.h"
#include "VyrTrack.h"

#include <QFontMetrics>
#include <QFutureInterface>
#include <QLocale>
#include <QRegularExpression>
#include <QSignalSpy>
#include <QtTest>
#include <memory>

// The library's private helpers, each the one place for its job.
class TestPrivateHelpers : public QObject
{
    Q_OBJECT
private slots:
    void init();

    void trackingEventAddsItsThreeKeys();
    void trackingEventTitleOverridesTheCallers();
    void trackingEventLeavesTheCallersMapAlone();
    void trackingEventIdIsNewEveryTime();
    void trackingSendReachesTheTracker();

    void spanForms_data();
    void spanForms();
    void spanElidesThenEscapes();
    void spanChinaIsByCountry_data();
    void spanChinaIsByCountry();

    void observerRunsOnALaterTurn();
    void observerSkipsACancelledFuture();
    void observerSkipsAFutureWithoutResult();
    void observerSkipsADeadContext();
    void observerCleansUpItsWatcher();
};

namespace {

QMap<QString, QVariant> callerData()
{
    return {{QStringLiteral("push_body"), QStringLiteral("body")},
            {QStringLiteral("push_scenes"), QStringLiteral("scene")},
            {QStringLiteral("check_up"), true}};
}

} // namespace

void TestPrivateHelpers::init()
{
    TestKit::resetAll();
}

// push_id, push_title and app_scene join whatever the caller gave.
void TestPrivateHelpers::trackingEventAddsItsThreeKeys()
{
    const auto event = PushTracking::event(callerData(), QStringLiteral("Title"));
    QCOMPARE(event.size(), 6);
    QCOMPARE(event.value(QStringLiteral("push_body")).toString(), QStringLiteral("body"));
    QCOMPARE(event.value(QStringLiteral("push_scenes")).toString(), QStringLiteral("scene"));
    QCOMPARE(event.value(QStringLiteral("check_up")).toBool(), true);
    QCOMPARE(event.value(QStringLiteral("push_title")).toString(), QStringLiteral("Title"));
    QCOMPARE(event.value(QStringLiteral("app_scene")).toString(), QStringLiteral("前台唤起"));
    const QRegularExpression braced(QStringLiteral("^\\{[0-9a-f]{8}-[0-9a-f]{4}-[0-9a-f]{4}-[0-9a-f]{4}-[0-9a-f]{12}\\}$"));
    QVERIFY2(braced.match(event.value(QStringLiteral("push_id")).toString()).hasMatch(),
             qPrintable(event.value(QStringLiteral("push_id")).toString()));
}

// A push_title that the caller put in doesn't survive.
void TestPrivateHelpers::trackingEventTitleOverridesTheCallers()
{
    auto data = callerData();
    data.insert(QStringLiteral("push_title"), QString());
    data.insert(QStringLiteral("app_scene"), QStringLiteral("other"));
    const auto event = PushTracking::event(data, QStringLiteral("Label"));
    QCOMPARE(event.value(QStringLiteral("push_title")).toString(), QStringLiteral("Label"));
    QCOMPARE(event.value(QStringLiteral("app_scene")).toString(), QStringLiteral("前台唤起"));
}

// The caller's map is only read.
void TestPrivateHelpers::trackingEventLeavesTheCallersMapAlone()
{
    const auto before = callerData();
    auto data = before;
    PushTracking::send(PushTracking::PushClick, data, QStringLiteral("Title"));
    QCOMPARE(data, before);
}

// Every event has its own id, so no id links two events.
void TestPrivateHelpers::trackingEventIdIsNewEveryTime()
{
    const auto first = PushTracking::event({}, QString());
    const auto second = PushTracking::event({}, QString());
    QVERIFY(first.value(QStringLiteral("push_id")).toString() != second.value(QStringLiteral("push_id")).toString());
}

// send() hands name and map to the one tracker.
void TestPrivateHelpers::trackingSendReachesTheTracker()
{
    QSignalSpy tracked(VyrTrack::instance(), &VyrTrack::tracked);
    PushTracking::send(PushTracking::PushSend, callerData(), QStringLiteral("Title"));
    QCOMPARE(tracked.size(), 1);
    QCOMPARE(tracked.at(0).at(0).toString(), QStringLiteral("PushSend"));
    const auto data = tracked.at(0).at(1).toMap();
    QCOMPARE(data.value(QStringLiteral("push_title")).toString(), QStringLiteral("Title"));
    QCOMPARE(data.value(QStringLiteral("push_body")).toString(), QStringLiteral("body"));
    QCOMPARE(PushTracking::PushClick, QStringLiteral("PushClick"));
    QCOMPARE(PushTracking::LessonScene, QStringLiteral("上课通知"));
}

// Each form of the green span, exactly as the texts use it.
void TestPrivateHelpers::spanForms_data()
{
    QTest::addColumn<QString>("form");
    QTest::addColumn<QString>("expected");
    QTest::newRow("quoted-china") << "quoted-china" << "<span style='color: #009265;'>&nbsp;N</span>";
    QTest::newRow("quoted-other") << "quoted-other" << "<span style='color: #009265;'>&quot;N&quot;</span>";
    QTest::newRow("padded")
        << "padded" << "<span style='color: #009265;'>&nbsp;&nbsp;&quot;N&quot;&nbsp;&nbsp;</span>";
    QTest::newRow("plain") << "plain" << "<span style='color: #009265;'>N</span>";
}

void TestPrivateHelpers::spanForms()
{
    QFETCH(QString, form);
    QFETCH(QString, expected);
    const QString name = QStringLiteral("N");
    QString span;
    if (form == QLatin1String("quoted-china"))
        span = NameSpan::quoted(name, true);
    else if (form == QLatin1String("quoted-other"))
        span = NameSpan::quoted(name, false);
    else if (form == QLatin1String("padded"))
        span = NameSpan::padded(name);
    else
        span = NameSpan::plain(name);
    QCOMPARE(span, expected);
}

// The name is cut to 100 pixels first, then escaped, so entities are never cut in half.
void TestPrivateHelpers::spanElidesThenEscapes()
{
    QFont font;
    font.setPixelSize(12);
    const QFontMetrics metrics(font);
    QCOMPARE(NameSpan::NameWidth, 100);
    QCOMPARE(NameSpan::elidedEscaped(QStringLiteral("<b>"), metrics), QStringLiteral("&lt;b&gt;"));
    const QString longName = QStringLiteral("&").repeated(200);
    const QString cut = NameSpan::elidedEscaped(longName, metrics);
    QVERIFY(cut.endsWith(QChar(0x2026)));
    const QString bare = metrics.elidedText(longName, Qt::ElideRight, 100);
    QCOMPARE(cut, QString(bare).replace(QLatin1String("&"), QLatin1String("&amp;")));
    QVERIFY(metrics.horizontalAdvance(bare) <= 100);
}

// The Chinese form goes by country, not by language.
void TestPrivateHelpers::spanChinaIsByCountry_data()
{
    QTest::addColumn<QLocale>("locale");
    QTest::addColumn<bool>("isChina");
    QTest::newRow("zh_CN") << QLocale(QLocale::Chinese, QLocale::China) << true;
    QTest::newRow("zh_SG") << QLocale(QLocale::Chinese, QLocale::Singapore) << false;
    QTest::newRow("zh_TW") << QLocale(QLocale::Chinese, QLocale::Taiwan) << false;
    QTest::newRow("en_US") << QLocale(QLocale::English, QLocale::UnitedStates) << false;
}

void TestPrivateHelpers::spanChinaIsByCountry()
{
    QFETCH(QLocale, locale);
    QFETCH(bool, isChina);
    QCOMPARE(NameSpan::isChina(locale), isChina);
}

// A future finished before observing still completes on a later turn, never inside the call.
void TestPrivateHelpers::observerRunsOnALaterTurn()
{
    QObject context;
    QFutureInterface<int> promise;
    promise.reportStarted();
    promise.reportResult(42);
    promise.reportFinished();
    int seen = 0;
    observeFuture(&context, promise.future(), [&seen](int value) { seen = value; });
    QCOMPARE(seen, 0);
    QTRY_COMPARE(seen, 42);
}

// A cancelled future runs nothing, even with a result already in it.
void TestPrivateHelpers::observerSkipsACancelledFuture()
{
    QObject context;
    QFutureInterface<int> promise;
    promise.reportStarted();
    bool ran = false;
    observeFuture(&context, promise.future(), [&ran](int) { ran = true; });
    // The result comes first, so only the cancellation can keep the completion from running.
    promise.reportResult(5);
    promise.cancel();
    QCOMPARE(promise.future().resultCount(), 1);
    promise.reportFinished();
    QTRY_VERIFY(context.findChildren<QFutureWatcher<int>*>().isEmpty());
    QVERIFY(!ran);
}

// Finished without a result: nothing to hand on, nothing runs.
void TestPrivateHelpers::observerSkipsAFutureWithoutResult()
{
    QObject context;
    QFutureInterface<int> promise;
    promise.reportStarted();
    bool ran = false;
    observeFuture(&context, promise.future(), [&ran](int) { ran = true; });
    promise.reportFinished();
    QTRY_VERIFY(context.findChildren<QFutureWatcher<int>*>().isEmpty());
    QVERIFY(!ran);
}

// The context dies first: the completion never runs, and nothing dangles.
void TestPrivateHelpers::observerSkipsADeadContext()
{
    auto context = std::make_unique<QObject>();
    QFutureInterface<int> promise;
    promise.reportStarted();
    bool ran = false;
    observeFuture(context.get(), promise.future(), [&ran](int) { ran = true; });
    context.reset();
    promise.reportResult(1);
    promise.reportFinished();
    QTest::qWait(20);
    QVERIFY(!ran);
}

// The watcher goes once it has delivered.
void TestPrivateHelpers::observerCleansUpItsWatcher()
{
    QObject context;
    QFutureInterface<int> promise;
    promise.reportStarted();
    int seen = 0;
    observeFuture(&context, promise.future(), [&seen](int value) { seen = value; });
    QCOMPARE(context.findChildren<QFutureWatcher<int>*>().size(), 1);
    promise.reportResult(7);
    promise.reportFinished();
    QTRY_COMPARE(seen, 7);
    QTRY_VERIFY(context.findChildren<QFutureWatcher<int>*>().isEmpty());
}

QTEST_MAIN(TestPrivateHelpers)
#include "tst_privatehelpers.moc"
