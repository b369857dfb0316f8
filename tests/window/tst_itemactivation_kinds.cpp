// Activation of cluster notice, study report and study activity rows. These
// rows come from the intakes addClusterNoticeRemindNotice, addStudyReportNotice
// and addStudyActivityNotice.

#include "AppendixDataPod.h"
#include "CoreEngine.h"
#include "NoticeListModel.h"
#include "NoticeListViewItem.h"
#include "NoticeListWidget.h"
#include "NoticeWindowHarness.h"
#include "ScreenCorner.h"
#include "StudyActivityNoticeWidgetDisplayPod.h"
#include "TestKit.h"
#include "VyrTrack.h"
#include "WindowSignalRecorder.h"

#include <QListView>
#include <QToolButton>
#include <QtTest>
#include <memory>

using namespace VyrEngine;
namespace H = NoticeWindowHarness;

namespace {

QListView* viewOf(NoticeListWidget* window)
{
    return window->findChild<QListView*>(QStringLiteral("noticeListView"));
}

QModelIndex rowIndex(NoticeListWidget* window, int row)
{
    return viewOf(window)->model()->index(row, 0);
}

int clickCount()
{
    int count = 0;
    for (const VyrTrack::Event& event : VyrTrack::instance()->events())
        count += event.first == QLatin1String("PushClick") ? 1 : 0;
    return count;
}

QSharedPointer<AppendixDataPod> appendix(quint64 activityId)
{
    auto pod = QSharedPointer<AppendixDataPod>::create();
    pod->activityId = activityId;
    pod->courseData = QSharedPointer<ActivityCourseDataPod>::create();
    pod->courseData->courseId = 500;
    return pod;
}

QSharedPointer<StudyActivityNoticeWidgetDisplayPod> display(const QString& heading)
{
    return QSharedPointer<StudyActivityNoticeWidgetDisplayPod>::create(
        QStringLiteral("Quiz"), QStringLiteral("Body"), false, false, false, QString(), false, QString(), QString(),
        false, false, false, false, heading, QStringLiteral("scene"), QStringLiteral("body"), false);
}

} // namespace

class TestItemActivationKinds : public QObject
{
    Q_OBJECT
private slots:
    void initTestCase();
    void init();
    void cleanup();

    void clusterNoticeRowEmitsContentId();
    void studyReportRowEmitsLessonId();
    void studyActivityRowEmitsBothRecords();
    void clickOrderFollowsTypeTable();
    void closeLoopSkipsOtherKinds();

private:
    NoticeListWidget* makeWindow();
    std::unique_ptr<NoticeListWidget> m_window;
    WindowSignalRecorder* m_signals = nullptr;
};

void TestItemActivationKinds::initTestCase()
{
    QVERIFY(TestKit::loadTranslations());
}

void TestItemActivationKinds::init()
{
    TestKit::resetAll();
    H::useTestScreen();
}

void TestItemActivationKinds::cleanup()
{
    m_window.reset();
    ScreenCorner::clearOverride();
    TestKit::resetAll();
}

NoticeListWidget* TestItemActivationKinds::makeWindow()
{
    m_window.reset(new NoticeListWidget(Activity));
    m_signals = new WindowSignalRecorder(m_window.get());
    new HostWiring(m_window.get(), Activity);
    return m_window.get();
}

// A cluster notice row: viewClusterNoticeDetails(contentId), tracked, removed.
void TestItemActivationKinds::clusterNoticeRowEmitsContentId()
{
    NoticeListWidget* window = makeWindow();
    NoticeListModel::instance()->addClusterNoticeRemindNotice(QStringLiteral("Bring rulers"), 7001, 500, 9);
    QCOMPARE(H::rowCount(window), 1);
    window->onClickedItem(viewOf(window)->model(), rowIndex(window, 0));
    QCOMPARE(m_signals->joined(), QStringLiteral("cluster(7001) hidden(Activity,false)"));
    QCOMPARE(clickCount(), 1);
    QCOMPARE(NoticeListModel::instance()->rowCount(), 0);
}

// A study report row: viewStudyReportNoticeDetails(lessonId).
void TestItemActivationKinds::studyReportRowEmitsLessonId()
{
    NoticeListWidget* window = makeWindow();
    TestKit::putLesson(61, QStringLiteral("Ratios"), 1800000000 - 3600);
    NoticeListModel::instance()->addStudyReportNotice(61);
    TestKit::settle();
    QCOMPARE(H::rowCount(window), 1);
    window->onClickedItem(viewOf(window)->model(), rowIndex(window, 0));
    QCOMPARE(m_signals->joined(), QStringLiteral("report(61) hidden(Activity,false)"));
    QCOMPARE(clickCount(), 1);
}

// A study activity row: viewStudyActivityNoticeDetails with the two records of the row.
void TestItemActivationKinds::studyActivityRowEmitsBothRecords()
{
    NoticeListWidget* window = makeWindow();
    QSharedPointer<AppendixDataPod> pod = appendix(88);
    QSharedPointer<StudyActivityNoticeWidgetDisplayPod> shown = display(QStringLiteral("Weekly quiz"));
    QSharedPointer<AppendixDataPod> gotPod;
    QSharedPointer<StudyActivityNoticeWidgetDisplayPod> gotDisplay;
    connect(window, &NoticeListWidget::viewStudyActivityNoticeDetails, this,
            [&](QSharedPointer<AppendixDataPod> a, QSharedPointer<StudyActivityNoticeWidgetDisplayPod> d) {
                gotPod = a;
                gotDisplay = d;
            });
    NoticeListModel::instance()->addStudyActivityNotice(pod, shown);
    window->onClickedItem(viewOf(window)->model(), rowIndex(window, 0));
    QCOMPARE(gotPod, pod);
    QCOMPARE(gotDisplay, shown);
    QCOMPARE(m_signals->joined(), QStringLiteral("activity(88,Weekly quiz) hidden(Activity,false)"));
}

// Rows of every Activity kind, clicked newest first, each give their own signal.
void TestItemActivationKinds::clickOrderFollowsTypeTable()
{
    NoticeListWidget* window = makeWindow();
    auto* core = CoreEngine::instance();
    NoticeListModel::instance()->addContactorAddNotice();
    core->advanceTime(60);
    NoticeListModel::instance()->addClusterNoticeRemindNotice(QStringLiteral("n"), 5, 500, 1);
    core->advanceTime(60);
    TestKit::putLesson(3, QStringLiteral("R"), 1800000000);
    NoticeListModel::instance()->addStudyReportNotice(3);
    TestKit::settle();
    core->advanceTime(60);
    NoticeListModel::instance()->addStudyActivityNotice(appendix(4), display(QStringLiteral("h")));
    QCOMPARE(H::rowCount(window), 4);
    for (int i = 0; i < 4; ++i)
        window->onClickedItem(viewOf(window)->model(), rowIndex(window, 0));
    QCOMPARE(m_signals->joined(), QStringLiteral("activity(4,h) report(3) cluster(5) friend hidden(Activity,false)"));
    QCOMPARE(clickCount(), 4);
}

// The close button's loop emits no pause alert for Activity kinds.
void TestItemActivationKinds::closeLoopSkipsOtherKinds()
{
    NoticeListWidget* window = makeWindow();
    NoticeListModel::instance()->addClusterNoticeRemindNotice(QStringLiteral("n"), 5, 500, 1);
    NoticeListModel::instance()->addStudyActivityNotice(appendix(4), display(QStringLiteral("h")));
    window->findChild<QToolButton*>()->click();
    QCOMPARE(m_signals->joined(), QStringLiteral("hidden(Activity,false)"));
    QCOMPARE(NoticeListModel::instance()->rowCount(), 0);
}

QTEST_MAIN(TestItemActivationKinds)
#include "tst_itemactivation_kinds.moc"
