// Activation of cluster notice, study report and study activity rows. These
// rows come from the intakes addClusterNoticeRemindNotice, addStudyReportNotice
// and addStudyActivityNotice.

#include "AppendixDataPod.h"
#include "CoreEngine.h"
#include "NoticeListModel.h"
#include "NoticeListViewItem.h"
#include "NoticeListWidget.h"
#include "NoticeWindowHarness.h"
#include "NoticeWindowTestCase.h"
#include "StudyActivityNoticeWidgetDisplayPod.h"
#include "TestKit.h"
#include "VyrTrack.h"
#include "WindowSignalRecorder.h"

#include <QListView>
#include <QToolButton>
#include <QtTest>

using namespace VyrEngine;
namespace H = NoticeWindowHarness;

namespace {

int clickCount()
{
    return KitFixture::trackedEvents(QStringLiteral("PushClick")).size();
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

class TestItemActivationKinds : public NoticeWindowTestCase
{
    Q_OBJECT
public:
    TestItemActivationKinds()
        : NoticeWindowTestCase(NoticeWindowFixture::RecordSignals | NoticeWindowFixture::WireHost)
    {
    }

private slots:
    void clusterNoticeRowEmitsContentId();
    void studyReportRowEmitsLessonId();
    void studyActivityRowEmitsBothRecords();
    void clickOrderFollowsTypeTable();
    void closeLoopSkipsOtherKinds();
};

// A cluster notice row: viewClusterNoticeDetails(contentId), tracked, removed.
void TestItemActivationKinds::clusterNoticeRowEmitsContentId()
{
    NoticeListWidget* window = m_fixture.makeWindow();
    NoticeListModel::instance()->addClusterNoticeRemindNotice(QStringLiteral("Bring rulers"), 7001, 500, 9);
    QCOMPARE(H::rowCount(window), 1);
    window->onClickedItem(H::view(window)->model(), H::rowIndex(window, 0));
    QCOMPARE(m_fixture.recorder()->joined(), QStringLiteral("cluster(7001) hidden(Activity,false)"));
    QCOMPARE(clickCount(), 1);
    QCOMPARE(NoticeListModel::instance()->rowCount(), 0);
}

// A study report row: viewStudyReportNoticeDetails(lessonId).
void TestItemActivationKinds::studyReportRowEmitsLessonId()
{
    NoticeListWidget* window = m_fixture.makeWindow();
    TestKit::putLesson(61, QStringLiteral("Ratios"), 1800000000 - 3600);
    NoticeListModel::instance()->addStudyReportNotice(61);
    TestKit::settle();
    QCOMPARE(H::rowCount(window), 1);
    window->onClickedItem(H::view(window)->model(), H::rowIndex(window, 0));
    QCOMPARE(m_fixture.recorder()->joined(), QStringLiteral("report(61) hidden(Activity,false)"));
    QCOMPARE(clickCount(), 1);
}

// A study activity row: viewStudyActivityNoticeDetails with the two records of the row.
void TestItemActivationKinds::studyActivityRowEmitsBothRecords()
{
    NoticeListWidget* window = m_fixture.makeWindow();
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
    window->onClickedItem(H::view(window)->model(), H::rowIndex(window, 0));
    QCOMPARE(gotPod, pod);
    QCOMPARE(gotDisplay, shown);
    QCOMPARE(m_fixture.recorder()->joined(), QStringLiteral("activity(88,Weekly quiz) hidden(Activity,false)"));
}

// Rows of every Activity kind, clicked newest first, each give their own signal.
void TestItemActivationKinds::clickOrderFollowsTypeTable()
{
    NoticeListWidget* window = m_fixture.makeWindow();
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
        window->onClickedItem(H::view(window)->model(), H::rowIndex(window, 0));
    QCOMPARE(m_fixture.recorder()->joined(), QStringLiteral("activity(4,h) report(3) cluster(5) friend hidden(Activity,false)"));
    QCOMPARE(clickCount(), 4);
}

// The close button's loop emits no pause alert for Activity kinds.
void TestItemActivationKinds::closeLoopSkipsOtherKinds()
{
    NoticeListWidget* window = m_fixture.makeWindow();
    NoticeListModel::instance()->addClusterNoticeRemindNotice(QStringLiteral("n"), 5, 500, 1);
    NoticeListModel::instance()->addStudyActivityNotice(appendix(4), display(QStringLiteral("h")));
    window->findChild<QToolButton*>()->click();
    QCOMPARE(m_fixture.recorder()->joined(), QStringLiteral("hidden(Activity,false)"));
    QCOMPARE(NoticeListModel::instance()->rowCount(), 0);
}

QTEST_MAIN(TestItemActivationKinds)
#include "tst_itemactivation_kinds.moc"
