// The nine pop-ups: what one costs to build, fill as the host does, show,
// paint once and close, against a plain QWidget of the same size with the same
// labels and buttons; the resident memory over 10,000 such cycles of each
// (growth per 1,000 cycles, widgets left alive); and the CPU time of a process
// that holds one class notice for 10 seconds, against the same process idle.
//
// Run: QT_QPA_PLATFORM=offscreen build-rel/bench/bench_popnotice --benchmark_repetitions=3
// VYR_BENCH_CYCLES sets the memory cycles per pop-up (10,000; 0 leaves them out),
// VYR_BENCH_POPUP=Certification (a key of popups()) keeps one pop-up's memory row.

#include "BaselineViews.h"
#include "BenchMain.h"
#include "ProcessMemory.h"

#include "ClassNoticeManager.h"
#include "ClassNoticeWidget.h"
#include "ExamNoticeWidget.h"
#include "FriendRequestNotice.h"
#include "HomeworkNoticeWidget.h"
#include "MicroCourseNoticeWidget.h"
#include "NotAuthSchoolNotice.h"
#include "NoticeRemindNoticeWidget.h"
#include "PopNoticeBaseWidget.h"
#include "StudyActivityNoticeWidget.h"
#include "StudyActivityNoticeWidgetDisplayPod.h"
#include "StudyReportNoticeWidget.h"

#include "AppendixDataPod.h"
#include "ContactsEngine.h"
#include "CoreEngine.h"
#include "CourseEngine.h"
#include "ExamInfo.h"
#include "HomeworkEntity.h"
#include "SchoolSettingManager.h"
#include "VyrSettings.h"
#include "VyrTrack.h"

#include <QEventLoop>
#include <QJsonObject>
#include <QPointer>
#include <QTemporaryDir>
#include <QTimer>
#include <QVBoxLayout>

#include <cstdio>
#include <functional>
#include <sys/resource.h>

namespace {

constexpr int kIterations = 300;
constexpr qint64 kNow = 1800000000;
constexpr quint64 kMe = 1000;
constexpr quint64 kLessonId = 42;
constexpr quint64 kCourseId = 500;

// The cards of the lesson and course-work notices with their shadow margins.
const QSize kCardSize(328, 184);
const QSize kFriendCardSize(297, 107);
// The window a host gives the certification reminder.
const QSize kCertificationSize(420, 180);

// Lets the engine's futures finish and the cards fill their texts; runs deferred deletions.
void settle()
{
    for (int i = 0; i < 3; ++i) {
        QCoreApplication::processEvents();
        QCoreApplication::sendPostedEvents(nullptr, QEvent::DeferredDelete);
    }
}

QSharedPointer<VyrEngine::SnapshotLesson> lesson()
{
    return VyrEngine::CourseEngine::instance()->lessonSnapshot(kLessonId);
}

PopNoticeBaseWidget* classNotice()
{
    return new ClassNoticeWidget(ClassNoticeWidget::AheadNotice, lesson());
}

PopNoticeBaseWidget* examNotice()
{
    auto info = std::make_shared<ExamInfo>();
    info->courseId = kCourseId;
    info->examId = 31;
    info->name = QStringLiteral("Algebra mid-term");
    info->expireCount = 3;
    return new ExamNoticeWidget(kMe, 1, info, false);
}

PopNoticeBaseWidget* homeworkNotice()
{
    auto info = std::make_shared<HomeworkEntity>();
    info->courseId = kCourseId;
    info->homeworkId = 32;
    info->name = QStringLiteral("Fractions, exercise 4");
    info->expireCount = 3;
    return new HomeworkNoticeWidget(kMe, 1, info, false);
}

PopNoticeBaseWidget* studyActivityNotice()
{
    auto pod = QSharedPointer<AppendixDataPod>::create();
    pod->activityId = 9;
    pod->activityType = 1;
    pod->activityName = QStringLiteral("Chapter 3 quiz");
    pod->courseData = QSharedPointer<ActivityCourseDataPod>::create();
    pod->courseData->courseId = quint32(kCourseId);
    pod->courseData->courseName = QStringLiteral("Algebra");
    auto texts = QSharedPointer<StudyActivityNoticeWidgetDisplayPod>::create(
        QStringLiteral("Quiz"), QStringLiteral("Chapter 3 <i>review</i> is open until Friday"), false, false, false,
        QString(), false, QString(), QString(), false, false, false, false, QStringLiteral("New quiz"), QString(),
        QString(), false);
    return new StudyActivityNoticeWidget(pod, texts);
}

PopNoticeBaseWidget* microCourseNotice()
{
    // The host's answer for a lecture that failed review; no cover, so the card's own picture shows.
    QJsonObject info;
    info.insert(QStringLiteral("auditStatus"), 4);
    info.insert(QStringLiteral("lectureName"), QStringLiteral("Fractions in ten minutes"));
    return new MicroCourseNoticeWidget(7, 2, info);
}

PopNoticeBaseWidget* studyReportNotice()
{
    return new StudyReportNoticeWidget(lesson());
}

PopNoticeBaseWidget* clusterReminder()
{
    return new NoticeRemindNoticeWidget(QStringLiteral("Bring your textbooks and a calculator tomorrow"), 77, kCourseId,
                                        5);
}

PopNoticeBaseWidget* friendRequestNotice()
{
    return new FriendRequestNotice();
}

// The certification reminder is content: the host puts it in a window of its own and deletes that.
QWidget* certificationWindow()
{
    auto* window = new QWidget(nullptr, Qt::Dialog);
    window->setAttribute(Qt::WA_DeleteOnClose);
    auto* layout = new QVBoxLayout(window);
    layout->addWidget(new NotAuthSchoolNotice(window));
    window->resize(kCertificationSize);
    return window;
}

struct Popup
{
    const char* key;
    const char* label;
    PopNoticeBaseWidget* (*card)(); // null for the certification reminder
    QSize size;
    VyrBench::CardTexts texts;
};

const std::vector<Popup>& popups()
{
    static const std::vector<Popup> all = {
        {"ClassNotice", "class notice", classNotice, kCardSize,
         {"Lesson Notice", "Class 3A", "\"Algebra\" will start in 10 minutes", {"Enter classroom", "Later"}}},
        {"Exam", "exam", examNotice, kCardSize,
         {"Exam Notice", "Algebra mid-term", "The exam has started, submit it on time", {"View details", "Later"}}},
        {"Homework", "homework", homeworkNotice, kCardSize,
         {"Homework Notice", "Fractions, exercise 4", "The homework has started, submit it on time",
          {"View details", "Later"}}},
        {"StudyActivity", "study activity", studyActivityNotice, kCardSize,
         {"Quiz", "New quiz", "Chapter 3 review is open until Friday", {"View details", "Later"}}},
        {"MicroCourse", "micro-course", microCourseNotice, kCardSize,
         {"Micro-course Notice", "Fractions in ten minutes", "Your micro-lecture did not pass review",
          {"View details", "Later"}, QSize(96, 54)}},
        {"StudyReport", "study report", studyReportNotice, kCardSize,
         {"Study Report", "Algebra", "The study report of the lesson is ready", {"View details", "Later"}}},
        {"ClusterReminder", "cluster notice reminder", clusterReminder, kCardSize,
         {"Class 3A", "Ms Li", "Bring your textbooks and a calculator tomorrow", {"View now", "Later"}}},
        {"Certification", "school certification", nullptr, kCertificationSize,
         {"VyrNotice", "", "Your school is not certified yet", {"Certify", "Cancel"}, QSize(0, 0)}},
        {"FriendRequest", "friend-request pop-up", friendRequestNotice, kFriendCardSize,
         {"", "Friend request", "1", {}}},
    };
    return all;
}

// Built, filled and shown as the host does; the engine's answers are in.
QWidget* open(const Popup& popup)
{
    QWidget* window = nullptr;
    if (popup.card) {
        PopNoticeBaseWidget* card = popup.card();
        if (popup.card == classNotice)
            ClassNoticeManager::instance()->addClassNotice(kLessonId);
        card->popNotice();
        window = card;
    } else {
        window = certificationWindow();
        window->show();
    }
    settle();
    return window;
}

QImage canvasFor(QSize size)
{
    QImage image(size, QImage::Format_ARGB32_Premultiplied);
    image.fill(Qt::transparent);
    return image;
}

void BM_PopupBuildShowPaint(benchmark::State& state, const Popup* popup)
{
    QImage canvas = canvasFor(popup->size);
    for (auto _ : state) {
        QWidget* window = open(*popup);
        window->render(&canvas);
        delete window;
        VyrTrack::instance()->clearEvents();
    }
}

void BM_BaselinePlainCard(benchmark::State& state, const Popup* popup)
{
    QImage canvas = canvasFor(popup->size);
    for (auto _ : state) {
        auto* window = new VyrBench::PlainCard(popup->size, popup->texts);
        window->show();
        settle();
        window->render(&canvas);
        delete window;
    }
}

// Resident memory every 1,000 cycles of `cycle`, printed with the growth per
// 1,000 after the first 1,000, the growth of the peak (VmHWM) over the same
// cycles and the widgets still alive at the end.
void memoryRow(const char* label, int cycles, const std::function<void()>& cycle)
{
    std::vector<long> rss;
    long firstPeak = -1;
    for (int i = 1; i <= cycles; ++i) {
        cycle();
        if (i % 1000 == 0)
            rss.push_back(processStatusKb("VmRSS"));
        if (i == 1000)
            firstPeak = processStatusKb("VmHWM");
    }
    if (rss.size() < 2)
        return;
    const double growth = double(rss.back() - rss.front()) / double(rss.size() - 1);
    std::printf("| %s | %ld | %ld | %ld | %.1f | %ld | %d |\n", label, rss.front(), rss.at(rss.size() / 2), rss.back(),
                growth, processStatusKb("VmHWM") - firstPeak, int(QApplication::allWidgets().size()));
    std::fflush(stdout);
}

void memoryCycles()
{
    const int cycles = qEnvironmentVariableIsSet("VYR_BENCH_CYCLES") ? qEnvironmentVariableIntValue("VYR_BENCH_CYCLES")
                                                                      : 10000;
    if (cycles < 2000)
        return;
    std::printf("\n%d cycles of build, fill, show, close (the window's own close, as the user or the timer "
                "does):\n\n| pop-up | RSS after 1,000 (kB) | at half | at the end | growth per 1,000 after the "
                "first (kB) | peak growth after the first 1,000 (kB) | widgets alive after |\n"
                "|---|---:|---:|---:|---:|---:|---:|\n",
                cycles);
    ClassNoticeManager* manager = ClassNoticeManager::instance();
    int foundRecorded = 0;
    const QByteArray only = qgetenv("VYR_BENCH_POPUP");
    for (const Popup& popup : popups()) {
        if (!only.isEmpty() && only != popup.key)
            continue;
        memoryRow(popup.label, cycles, [&popup, manager, &foundRecorded]() {
            // The last window's deletion must have taken the lesson out of the registry again.
            if (popup.card == classNotice && manager->isExistTheNotice(kLessonId))
                ++foundRecorded;
            QWidget* window = open(popup);
            window->close();
            settle();
            // The kit's tracker keeps every event and its school settings every query the
            // certification reminder asks; neither is the pop-up's memory.
            VyrTrack::instance()->clearEvents();
            Org::SchoolSettingManager::getInstance()->clear();
        });
    }
    QImage canvas = canvasFor(kCardSize);
    memoryRow("plain widget of the same labels (baseline)", cycles, [&canvas]() {
        auto* window = new VyrBench::PlainCard(kCardSize, popups().front().texts);
        window->show();
        settle();
        window->render(&canvas);
        delete window;
    });
    std::printf("\nClass notice cycles that found the lesson still in the registry: %d; recorded at the end: %s\n",
                foundRecorded, manager->isExistTheNotice(kLessonId) ? "yes" : "no");
}

// CPU seconds (user + system) of the process so far.
double cpuSeconds()
{
    rusage usage{};
    getrusage(RUSAGE_SELF, &usage);
    return usage.ru_utime.tv_sec + usage.ru_utime.tv_usec / 1e6 + usage.ru_stime.tv_sec + usage.ru_stime.tv_usec / 1e6;
}

double cpuOverTenSeconds(const std::function<void()>& before)
{
    before();
    const double start = cpuSeconds();
    QEventLoop loop;
    QTimer::singleShot(10000, &loop, &QEventLoop::quit);
    loop.exec();
    return cpuSeconds() - start;
}

void cpuHolding()
{
    if (qEnvironmentVariableIsSet("VYR_BENCH_CYCLES") && qEnvironmentVariableIntValue("VYR_BENCH_CYCLES") == 0)
        return;
    const double idle = cpuOverTenSeconds([]() {});
    QPointer<QWidget> window;
    const double holding = cpuOverTenSeconds([&window]() {
        PopNoticeBaseWidget* card = classNotice();
        card->popNotice();
        window = card;
    });
    std::printf("\n| 10 s of the event loop | CPU (ms) | share of one core |\n|---|---:|---:|\n");
    std::printf("| idle process (baseline) | %.1f | %.3f%% |\n", idle * 1000, idle / 10.0 * 100);
    std::printf("| holding one class notice | %.1f | %.3f%% |\n", holding * 1000, holding / 10.0 * 100);
    delete window;
}

QTemporaryDir* g_settingsDir = nullptr;

void setUp()
{
    g_settingsDir = new QTemporaryDir();
    VyrSettings::setFolder(g_settingsDir->path());
    VyrEngine::CoreEngine::instance()->setCurrentTime(kNow);
    VyrEngine::CoreEngine::instance()->setCurrentUid(kMe);
    VyrEngine::SnapshotLesson snapshot;
    snapshot.schoolId = 7;
    snapshot.courseId = kCourseId;
    snapshot.lessonId = kLessonId;
    snapshot.startTime = kNow + 600;
    snapshot.role = 1;
    VyrEngine::CourseEngine::instance()->putLesson(snapshot, QStringLiteral("Algebra"));
    VyrEngine::ContactsEngine::instance()->putCluster(kCourseId, QStringLiteral("Class 3A"));
    VyrEngine::ContactsEngine::instance()->putUser(VyrEngine::UserInfo(kMe, QStringLiteral("Wang Fang")));
    VyrEngine::ContactsEngine::instance()->setClusterMemberNickname(kCourseId, 5, QStringLiteral("Ms Li"));

    for (const Popup& popup : popups()) {
        benchmark::RegisterBenchmark((std::string("BM_Popup/") + popup.key).c_str(), BM_PopupBuildShowPaint, &popup)
            ->Iterations(kIterations)
            ->Unit(benchmark::kMicrosecond);
        benchmark::RegisterBenchmark((std::string("BM_BaselinePlainCard/") + popup.key).c_str(),
                                     BM_BaselinePlainCard, &popup)
            ->Iterations(kIterations)
            ->Unit(benchmark::kMicrosecond);
    }
}

void printRatios(const MedianReporter& reporter)
{
    for (const Popup& popup : popups()) {
        VyrBench::printRatio(reporter, std::string(popup.label) + ": built, filled, shown, painted, deleted",
                             std::string("BM_Popup/") + popup.key, std::string("BM_BaselinePlainCard/") + popup.key);
    }
    memoryCycles();
    cpuHolding();
    delete g_settingsDir;
}

} // namespace

VYR_BENCH_MAIN_SETUP(setUp, printRatios)
