#include "ContactsEngine.h"
#include "CoreEngine.h"
#include "CourseEngine.h"
#include "ExamManager.h"
#include "ExamNoticeWidget.h"
#include "HomeworkManager.h"
#include "HomeworkNoticeWidget.h"
#include "ImSignalObject.h"
#include "ImageOp.h"
#include "LogCapture.h"
#include "NoticeClickRecorder.h"
#include "PixelProbe.h"
#include "PopupHarness.h"
#include "TestKit.h"
#include "VyrTrack.h"

#include <QFile>
#include <QLabel>
#include <QLayout>
#include <QPointer>
#include <QPushButton>
#include <QRegularExpression>
#include <QSignalSpy>
#include <QTextBrowser>
#include <QToolButton>
#include <QtTest>

namespace H = PopupHarness;

namespace {

constexpr quint64 kCourse = 501;
constexpr quint64 kWork = 7001;
constexpr quint64 kActivity = 9001;
constexpr quint64 kStudent = 77;

// The two twins: "exam" is the test pop-up, "homework" the homework pop-up.
const QString kExam = QStringLiteral("exam");
const QString kHomework = QStringLiteral("homework");

bool isExam(const QString& kind)
{
    return kind == kExam;
}

// The record of a test or a homework; `revised` is homework's only.
struct Work
{
    QString name = QStringLiteral("Algebra");
    qint32 expireCount = 3;
    bool revised = false;
    bool present = true;
};

std::shared_ptr<ExamInfo> examRecord(const Work& work)
{
    if (!work.present)
        return nullptr;
    auto info = std::make_shared<ExamInfo>();
    info->courseId = kCourse;
    info->examId = kWork;
    info->activityId = kActivity;
    info->name = work.name;
    info->expireCount = work.expireCount;
    return info;
}

std::shared_ptr<HomeworkEntity> homeworkRecord(const Work& work)
{
    if (!work.present)
        return nullptr;
    auto info = std::make_shared<HomeworkEntity>();
    info->courseId = kCourse;
    info->homeworkId = kWork;
    info->activityId = kActivity;
    info->name = work.name;
    info->expireCount = work.expireCount;
    info->revised = work.revised;
    return info;
}

PopNoticeBaseWidget* create(const QString& kind, int state, bool reviewSide, const Work& work = Work())
{
    if (isExam(kind))
        return new ExamNoticeWidget(kStudent, state, examRecord(work), reviewSide);
    return new HomeworkNoticeWidget(kStudent, state, homeworkRecord(work), reviewSide);
}

// The engine's withdrawal of the test or the homework `id` of `course`.
void withdraw(const QString& kind, quint64 course, quint64 id)
{
    if (isExam(kind))
        ExamManager::instance()->withdrawExam(course, id);
    else
        HomeworkManager::instance()->withdrawHomework(course, id);
}

QString titleOf(const QString& kind)
{
    return isExam(kind) ? QStringLiteral("Test notice") : QStringLiteral("Homework notice");
}

QString sceneOf(const QString& kind)
{
    return isExam(kind) ? QStringLiteral("发布测验") : QStringLiteral("发布作业");
}

// The state whose template takes the expiry count.
int expiryStateOf(const QString& kind)
{
    return isExam(kind) ? 8 : 10;
}

// One data row for each twin, for the tests that assert the same of both.
void bothKinds()
{
    QTest::addColumn<QString>("kind");
    QTest::newRow("exam") << kExam;
    QTest::newRow("homework") << kHomework;
}

// Marks the window's details request on `recorder`, with its ids: "details 501 7001 9001(yes)".
void markDetails(NoticeClickRecorder* recorder, PopNoticeBaseWidget* window)
{
    auto details = [recorder](qulonglong course, qulonglong id, qulonglong activity) {
        recorder->mark(QStringLiteral("details %1 %2 %3").arg(course).arg(id).arg(activity));
    };
    if (auto* exam = qobject_cast<ExamNoticeWidget*>(window))
        QObject::connect(exam, &ExamNoticeWidget::signalSeeDetails, recorder, details);
    if (auto* homework = qobject_cast<HomeworkNoticeWidget*>(window))
        QObject::connect(homework, &HomeworkNoticeWidget::signalSeeDetails, recorder, details);
}

} // namespace

// The test and homework pop-ups, twins with a row for each: their face, their
// state tables on both sides, their spans, their buttons and tracking, and the
// engine signals that close or refresh them.
class TestWorkNoticeWidget : public QObject
{
    Q_OBJECT
private slots:
    void initTestCase();
    void init();
    void cleanup();

    void faceAndLayout_data() { bothKinds(); }
    void faceAndLayout();
    void stateTable_data();
    void stateTable();
    void examHeaderTellsEveryState_data();
    void examHeaderTellsEveryState();
    void unknownStateClosesWithoutMessage_data() { bothKinds(); }
    void unknownStateClosesWithoutMessage();
    void unknownStateStillRunsTheUpdate_data() { bothKinds(); }
    void unknownStateStillRunsTheUpdate();
    void expiryShowsTheCount_data();
    void expiryShowsTheCount();
    void titleSpanByLocale_data();
    void titleSpanByLocale();
    void namesAreElidedAndEscaped_data() { bothKinds(); }
    void namesAreElidedAndEscaped();
    void reviewNamesTheUser_data();
    void reviewNamesTheUser();
    void reviewUnknownUserLogsAndShowsEmptyName_data();
    void reviewUnknownUserLogsAndShowsEmptyName();
    void coverReplacesFirstPicture_data() { bothKinds(); }
    void coverReplacesFirstPicture();
    void buttonOrder_data();
    void buttonOrder();
    void clickPayload_data() { bothKinds(); }
    void clickPayload();
    void outsideSignals_data();
    void outsideSignals();
    void deleteRightAfterConstructionIsQueued_data() { bothKinds(); }
    void deleteRightAfterConstructionIsQueued();
    void userChange_data();
    void userChange();
    void homeworkRefreshRepeatsTheUpdate();
    void logOutCloses_data() { bothKinds(); }
    void logOutCloses();
    void nullRecordClosesQuietly_data() { bothKinds(); }
    void nullRecordClosesQuietly();
    void screenshots();

private:
    PopNoticeBaseWidget* open(const QString& kind, int state = 1, bool reviewSide = false, const Work& work = Work());
    QPointer<PopNoticeBaseWidget> m_window;
};

void TestWorkNoticeWidget::initTestCase()
{
    QVERIFY(TestKit::loadTranslations(QStringLiteral("en")));
}

void TestWorkNoticeWidget::init()
{
    TestKit::resetAll();
    ExamManager::instance()->clear();
    HomeworkManager::instance()->clear();
    H::useTestScreen();
    QLocale::setDefault(QLocale(QLocale::English, QLocale::UnitedStates));
    VyrEngine::ContactsEngine::instance()->putUser(VyrEngine::UserInfo(kStudent, QStringLiteral("Wang Fang")));
}

void TestWorkNoticeWidget::cleanup()
{
    delete m_window;
    H::runDeferredDeletes();
    QLocale::setDefault(QLocale::c());
    QVERIFY(TestKit::loadTranslations(QStringLiteral("en")));
}

PopNoticeBaseWidget* TestWorkNoticeWidget::open(const QString& kind, int state, bool reviewSide, const Work& work)
{
    m_window = create(kind, state, reviewSide, work);
    m_window->popNotice();
    H::finish(H::animation(m_window, "m_showAnimation"));
    return m_window;
}

// The card is 308 by 164 plus the shadow; the heading exists but is hidden and
// never laid out; the buttons carry the micro-course texts and their styles.
void TestWorkNoticeWidget::faceAndLayout()
{
    QFETCH(QString, kind);
    open(kind);
    QCOMPARE(m_window->size(), QSize(328, 184));
    QCOMPARE(m_window->maximumSize(), QSize(328, 184));
    QCOMPARE(H::titleLabel(m_window)->text(), titleOf(kind));
    QLabel* heading = H::label(m_window, "m_headingLabel");
    QVERIFY(heading);
    QCOMPARE(heading->text(), titleOf(kind));
    QVERIFY(heading->isHidden());
    // Hidden but dressed as every heading: 19 high, the title style at 14 px medium.
    QCOMPARE(heading->height(), 19);
    QCOMPARE(heading->property("PropertyStyle").toString(), QStringLiteral("QLabel_MessageTitle"));
    QCOMPARE(heading->font().pixelSize(), 14);
    QCOMPARE(heading->font().weight(), int(QFont::Medium));
    QCOMPARE(H::contentWidget(m_window)->layout()->indexOf(heading), -1);
    QCOMPARE(H::label(m_window, "m_iconLabel")->size(), QSize(36, 36));
    QCOMPARE(H::browser(m_window)->property("PropertyStyle").toString(), QStringLiteral("QLabel_MessageContent"));
    QCOMPARE(H::browser(m_window)->font().pixelSize(), 13);
    QCOMPARE(H::browser(m_window)->document()->defaultTextOption().wrapMode(), QTextOption::WrapAnywhere);
    QCOMPARE(H::browser(m_window)->verticalScrollBarPolicy(), Qt::ScrollBarAlwaysOff);
    QCOMPARE(H::browser(m_window)->horizontalScrollBarPolicy(), Qt::ScrollBarAlwaysOff);
    QPushButton* details = H::button(m_window, "m_viewDetailsBtn");
    QPushButton* later = H::button(m_window, "m_laterBtn");
    QCOMPARE(details->text(), QStringLiteral("View details"));
    QCOMPARE(later->text(), QStringLiteral("Later"));
    QCOMPARE(details->size(), QSize(86, 26));
    QCOMPARE(later->size(), QSize(86, 26));
    QCOMPARE(details->property("GlobalStyle").toString(), QStringLiteral("QPushButton_IMButton_Style1"));
    QCOMPARE(later->property("GlobalStyle").toString(), QStringLiteral("QPushButton_IMButton_Style4"));
    // Details left of later, 10 apart, later 6 in from the content's right (24 + 6).
    const QPoint d = details->mapTo(m_window, QPoint(0, 0));
    const QPoint l = later->mapTo(m_window, QPoint(0, 0));
    QCOMPARE(l.x() - (d.x() + 86), 10);
    QCOMPARE(10 + 308 - (l.x() + 86), 30);
    QCOMPARE(10 + 164 - (l.y() + 26), 20);
    // The text starts 12 right of the icon, both 12 under the title row.
    const QPoint icon = H::label(m_window, "m_iconLabel")->mapTo(m_window, QPoint(0, 0));
    QCOMPARE(icon, QPoint(10 + 24, 40 + 12));
    QCOMPARE(H::browser(m_window)->mapTo(m_window, QPoint(0, 0)).x(), icon.x() + 36 + 12);
}

// Each state on each side (for homework with and without `revised`): its
// sentence, or the window closed for any state not in the table.
void TestWorkNoticeWidget::stateTable_data()
{
    QTest::addColumn<QString>("kind");
    QTest::addColumn<bool>("reviewSide");
    QTest::addColumn<int>("state");
    QTest::addColumn<bool>("revised");
    QTest::addColumn<QString>("text");
    const QString closes;
    const auto exam = [](const char* tag, bool review, int state, const QString& text) {
        QTest::addRow("exam %s", tag) << kExam << review << state << false << text;
    };
    exam("work 1 started", false, 1, "The test \"Algebra\" has started. Please submit it on time.");
    exam("work 4 reviewed", false, 4, "Your test \"Algebra\" has been reviewed. Check it now.");
    exam("work 5 reviewed again", false, 5, "Your test \"Algebra\" has been reviewed again. Check it now.");
    exam("work 8 expires", false, 8, "The test \"Algebra\" closes in 3 hours. Please submit it in time.");
    exam("work 0 unlisted", false, 0, closes);
    exam("work 3 is the review side's", false, 3, closes);
    exam("work 9 is the review side's", false, 9, closes);
    exam("work 10 is homework's", false, 10, closes);
    exam("work -1", false, -1, closes);
    exam("review 3 submitted", true, 3, "Wang Fang submitted the test \"Algebra\". Review it now.");
    exam("review 9 late", true, 9, "Wang Fang submitted the test \"Algebra\" late. Review it now.");
    exam("review 1 is the working side's", true, 1, closes);
    exam("review 4 is the working side's", true, 4, closes);
    exam("review 8 is the working side's", true, 8, closes);
    exam("review 11 is homework's", true, 11, closes);

    const auto homework = [](const char* tag, bool review, int state, bool revised, const QString& text) {
        QTest::addRow("homework %s", tag) << kHomework << review << state << revised << text;
    };
    const QString assigned = "The homework \"Algebra\" is out. Please submit it on time.";
    const QString reviewed = "Your homework \"Algebra\" has been reviewed. Check it now.";
    const QString revise = "Your homework \"Algebra\" came back for revision. Please revise it.";
    const QString again = "Your homework \"Algebra\" has been reviewed again. Check it now.";
    const QString unfinished = "You haven't finished the homework \"Algebra\". Please submit it in time.";
    const QString expires = "The homework \"Algebra\" is due in 3 hours. Please submit it in time.";
    const QString resubmit = "Please submit the homework \"Algebra\" again.";
    const QString submitted = "Wang Fang submitted the homework \"Algebra\". Review it now.";
    const QString revisedIn = "Wang Fang submitted the revised homework \"Algebra\". Review it now.";
    const QString late = "Wang Fang submitted the homework \"Algebra\" late. Review it now.";
    homework("work 1", false, 1, false, assigned);
    homework("work 1 revised", false, 1, true, assigned);
    homework("work 4", false, 4, false, reviewed);
    homework("work 4 revised", false, 4, true, revise);
    homework("work 5", false, 5, false, again);
    homework("work 5 revised", false, 5, true, again);
    homework("work 6", false, 6, false, unfinished);
    homework("work 6 revised", false, 6, true, unfinished);
    homework("work 10 expires", false, 10, false, expires);
    homework("work 10 expires revised", false, 10, true, expires);
    homework("work 12", false, 12, false, resubmit);
    homework("work 12 revised", false, 12, true, resubmit);
    homework("work 0 unlisted", false, 0, false, closes);
    homework("work 3 is the review side's", false, 3, false, closes);
    homework("work 8 is the test's expiry", false, 8, false, closes);
    homework("work 11 is the review side's", false, 11, true, closes);
    homework("review 3", true, 3, false, submitted);
    homework("review 3 revised", true, 3, true, revisedIn);
    homework("review 9", true, 9, false, submitted);
    homework("review 9 revised", true, 9, true, revisedIn);
    homework("review 11", true, 11, false, late);
    homework("review 11 revised stays late", true, 11, true, late);
    homework("review 1 is the working side's", true, 1, false, closes);
    homework("review 4 revised is the working side's", true, 4, true, closes);
    homework("review 10 is the working side's", true, 10, false, closes);
    homework("review 12 unlisted", true, 12, true, closes);
}

void TestWorkNoticeWidget::stateTable()
{
    QFETCH(QString, kind);
    QFETCH(bool, reviewSide);
    QFETCH(int, state);
    QFETCH(bool, revised);
    QFETCH(QString, text);
    Work work;
    work.revised = revised;
    m_window = create(kind, state, reviewSide, work);
    QCOMPARE(H::browser(m_window)->toPlainText(), text);
    H::runDeferredDeletes();
    QCOMPARE(m_window.isNull(), text.isEmpty());
}

void TestWorkNoticeWidget::examHeaderTellsEveryState_data()
{
    QTest::addColumn<bool>("reviewSide");
    QTest::addColumn<int>("state");
    for (int state = -1; state <= 13; ++state) {
        QTest::addRow("work %d", state) << false << state;
        QTest::addRow("review %d", state) << true << state;
    }
}

// The test header's table of states is what the window does: its sentence for a listed state, a close for any other.
void TestWorkNoticeWidget::examHeaderTellsEveryState()
{
    QFETCH(bool, reviewSide);
    QFETCH(int, state);
    QFile header(QStringLiteral(VYR_SOURCE_DIR "/src/plugins/im/VyrNotice/ExamNoticeWidget.h"));
    QVERIFY(header.open(QIODevice::ReadOnly | QIODevice::Text));
    const QRegularExpression row(QStringLiteral("^//   (working|review) +(\\d+) +(.+)$"),
                                 QRegularExpression::MultilineOption);
    QString told;
    int rows = 0;
    auto it = row.globalMatch(QString::fromUtf8(header.readAll()));
    while (it.hasNext()) {
        const QRegularExpressionMatch match = it.next();
        ++rows;
        if ((match.captured(1) == QLatin1String("review")) == reviewSide && match.captured(2).toInt() == state)
            told = match.captured(3)
                       .replace(QLatin1String("<name>"), QLatin1String("Algebra"))
                       .replace(QLatin1String("<user>"), QLatin1String("Wang Fang"))
                       .replace(QLatin1String("<expireCount>"), QLatin1String("3"));
    }
    QCOMPARE(rows, 6);
    m_window = create(kExam, state, reviewSide);
    H::runDeferredDeletes();
    QCOMPARE(m_window.isNull(), told.isEmpty());
    if (m_window)
        QCOMPARE(H::browser(m_window)->toPlainText(), told);
}

// An unknown state closes the window with no log line and no tracking.
void TestWorkNoticeWidget::unknownStateClosesWithoutMessage()
{
    QFETCH(QString, kind);
    LogCapture log;
    QPointer<PopNoticeBaseWidget> window = create(kind, 42, false);
    QSignalSpy destroyed(window.data(), &QObject::destroyed);
    H::runDeferredDeletes();
    QVERIFY(window.isNull());
    QCOMPARE(destroyed.count(), 1);
    QVERIFY2(log.lines().isEmpty(), qPrintable(log.lines().value(0).text));
    QVERIFY(VyrTrack::instance()->events().isEmpty());
}

// Closing for an unknown state doesn't end the update: the cover and the user are still looked up.
void TestWorkNoticeWidget::unknownStateStillRunsTheUpdate()
{
    QFETCH(QString, kind);
    QSignalSpy asked(VyrEngine::CourseEngine::instance(), &VyrEngine::CourseEngine::coursePixmapAsked);
    const int lookups = VyrEngine::ContactsEngine::instance()->userLookupCount();
    QPointer<PopNoticeBaseWidget> window = create(kind, 42, true);
    QCOMPARE(asked.count(), 1);
    QCOMPARE(VyrEngine::ContactsEngine::instance()->userLookupCount(), lookups + 1);
    QVERIFY(H::browser(window)->toPlainText().isEmpty());
    H::runDeferredDeletes();
    QVERIFY(window.isNull());
}

void TestWorkNoticeWidget::expiryShowsTheCount_data()
{
    QTest::addColumn<QString>("kind");
    QTest::addColumn<QString>("text");
    QTest::newRow("exam") << kExam << "The test \"Final\" closes in 12 hours. Please submit it in time.";
    QTest::newRow("homework") << kHomework << "The homework \"Final\" is due in 12 hours. Please submit it in time.";
}

// The expiry template takes the record's count, in decimal, after the title.
void TestWorkNoticeWidget::expiryShowsTheCount()
{
    QFETCH(QString, kind);
    QFETCH(QString, text);
    Work work;
    work.name = QStringLiteral("Final");
    work.expireCount = 12;
    open(kind, expiryStateOf(kind), false, work);
    QCOMPARE(H::browser(m_window)->toPlainText(), text);
    delete m_window;
    // Only the expiry template gets the count.
    open(kind, 1, false, work);
    QVERIFY(!H::browser(m_window)->toPlainText().contains(QLatin1String("12")));
}

// China gives "&nbsp;name" without quotes, any other country "&quot;name&quot;"; both green.
void TestWorkNoticeWidget::titleSpanByLocale_data()
{
    QTest::addColumn<QString>("kind");
    QTest::addColumn<QString>("language");
    QTest::addColumn<QLocale>("locale");
    QTest::addColumn<bool>("reviewSide");
    QTest::addColumn<QString>("text");
    const QString nbsp(QChar(0x00A0));
    const QLocale us(QLocale::English, QLocale::UnitedStates);
    const QLocale china(QLocale::Chinese, QLocale::China);
    const QLocale taiwan(QLocale::Chinese, QLocale::Taiwan);
    QTest::newRow("exam en, US, working")
        << kExam << "en" << us << false << "The test \"Algebra\" has started. Please submit it on time.";
    QTest::newRow("exam en texts, China, working")
        << kExam << "en" << china << false << "The test " + nbsp + "Algebra has started. Please submit it on time.";
    QTest::newRow("exam zh, China, working") << kExam << "zh_CN" << china << false
                                             << QString("测验" + nbsp + "Algebra已开始，请按时提交。");
    QTest::newRow("exam zh, Taiwan, working") << kExam << "zh_CN" << taiwan << false
                                              << QString("测验\"Algebra\"已开始，请按时提交。");
    QTest::newRow("exam zh, China, review") << kExam << "zh_CN" << china << true
                                            << QString("Wang Fang提交了测验" + nbsp + "Algebra，快去批阅吧。");
    QTest::newRow("exam en, US, review")
        << kExam << "en" << us << true << "Wang Fang submitted the test \"Algebra\". Review it now.";
    QTest::newRow("homework en, US, working")
        << kHomework << "en" << us << false << "The homework \"Algebra\" is out. Please submit it on time.";
    QTest::newRow("homework en texts, China, working")
        << kHomework << "en" << china << false
        << "The homework " + nbsp + "Algebra is out. Please submit it on time.";
    QTest::newRow("homework zh, China, working") << kHomework << "zh_CN" << china << false
                                                 << QString("作业" + nbsp + "Algebra已布置，请按时提交。");
    QTest::newRow("homework zh, Taiwan, working") << kHomework << "zh_CN" << taiwan << false
                                                  << QString("作业\"Algebra\"已布置，请按时提交。");
    QTest::newRow("homework zh, China, review") << kHomework << "zh_CN" << china << true
                                                << QString("Wang Fang提交了作业" + nbsp + "Algebra，快去批改吧。");
    QTest::newRow("homework en, US, review")
        << kHomework << "en" << us << true << "Wang Fang submitted the homework \"Algebra\". Review it now.";
}

void TestWorkNoticeWidget::titleSpanByLocale()
{
    QFETCH(QString, kind);
    QFETCH(QString, language);
    QFETCH(QLocale, locale);
    QFETCH(bool, reviewSide);
    QFETCH(QString, text);
    QVERIFY(TestKit::loadTranslations(language));
    QLocale::setDefault(locale);
    open(kind, reviewSide ? 3 : 1, reviewSide);
    // Raw text keeps the non-breaking space that plain text turns into a blank.
    QCOMPARE(H::browser(m_window)->document()->toRawText(), text);
    // The names stand in the green of every notice name.
    const QString html = H::browser(m_window)->toHtml();
    QCOMPARE(html.count(QLatin1String("color:#009265")), reviewSide ? 2 : 1);
}

// Both names are cut at 100 pixels with an ellipsis and shown as text, not markup.
void TestWorkNoticeWidget::namesAreElidedAndEscaped()
{
    QFETCH(QString, kind);
    VyrEngine::ContactsEngine::instance()->putUser(
        VyrEngine::UserInfo(kStudent, QStringLiteral("<i>Ouyang Xiaoming the Third of Many</i>")));
    Work work;
    work.name = QStringLiteral("<b>Mid-term test of the autumn semester</b>");
    open(kind, 3, true, work);
    const QString plain = H::browser(m_window)->toPlainText();
    QVERIFY2(plain.startsWith(QLatin1String("<i>Ouyang")), qPrintable(plain));
    QVERIFY2(plain.contains(QLatin1String("\"<b>Mid")), qPrintable(plain));
    QCOMPARE(plain.count(QChar(0x2026)), 2);
    QVERIFY(!plain.contains(QLatin1String("semester")));
    QVERIFY(!plain.contains(QLatin1String("Many")));
    const QFontMetrics metrics(H::browser(m_window)->font());
    const QString shownTitle = plain.section(QLatin1Char('"'), 1, 1);
    QVERIFY(metrics.horizontalAdvance(shownTitle) <= 100);
}

void TestWorkNoticeWidget::reviewNamesTheUser_data()
{
    QTest::addColumn<QString>("kind");
    QTest::addColumn<QString>("text");
    QTest::newRow("exam") << kExam << "Fang (class 2) submitted the test \"Algebra\" late. Review it now.";
    QTest::newRow("homework") << kHomework << "Fang (class 2) submitted the homework \"Algebra\". Review it now.";
}

// The review side looks the user up and shows the display name: the remark over the nickname.
void TestWorkNoticeWidget::reviewNamesTheUser()
{
    QFETCH(QString, kind);
    QFETCH(QString, text);
    VyrEngine::UserInfo user(kStudent, QStringLiteral("Wang Fang"));
    user.setRemark(QStringLiteral("Fang (class 2)"));
    VyrEngine::ContactsEngine::instance()->putUser(user);
    const int before = VyrEngine::ContactsEngine::instance()->userLookupCount();
    open(kind, 9, true);
    QCOMPARE(H::browser(m_window)->toPlainText(), text);
    QCOMPARE(VyrEngine::ContactsEngine::instance()->userLookupCount(), before + 1);
    // The working side never looks anyone up.
    delete m_window;
    open(kind, 1, false);
    QCOMPARE(VyrEngine::ContactsEngine::instance()->userLookupCount(), before + 1);
}

void TestWorkNoticeWidget::reviewUnknownUserLogsAndShowsEmptyName_data()
{
    QTest::addColumn<QString>("kind");
    QTest::addColumn<QString>("text");
    QTest::addColumn<QString>("source");
    QTest::newRow("exam") << kExam << "submitted the test \"Algebra\". Review it now."
                          << "src/plugins/im/VyrNotice/ExamNoticeWidget.cpp";
    QTest::newRow("homework") << kHomework << "submitted the homework \"Algebra\". Review it now."
                              << "src/plugins/im/VyrNotice/HomeworkNoticeWidget.cpp";
}

// A user the engine doesn't know: an empty green span and one info line with
// the id, written from the pop-up's own source file.
void TestWorkNoticeWidget::reviewUnknownUserLogsAndShowsEmptyName()
{
    QFETCH(QString, kind);
    QFETCH(QString, text);
    QFETCH(QString, source);
    VyrEngine::ContactsEngine::instance()->removeUser(kStudent);
    LogCapture log;
    open(kind, 3, true);
    QCOMPARE(H::browser(m_window)->toPlainText().trimmed(), text);
    QCOMPARE(H::browser(m_window)->toHtml().count(QLatin1String("color:#009265")), 1);
    const QList<LogCapture::Line> lines = log.startingWith(QStringLiteral("can not find user info:"));
    QCOMPARE(lines.size(), 1);
    QCOMPARE(lines.first().text, QStringLiteral("can not find user info: 77"));
    QCOMPARE(lines.first().type, QtInfoMsg);
    QVERIFY2(lines.first().file.endsWith(source), qPrintable(lines.first().file));
    QVERIFY(m_window->isVisible());
}

// The course's cover, rounded to 36 by 36, takes the place of the first picture.
void TestWorkNoticeWidget::coverReplacesFirstPicture()
{
    QFETCH(QString, kind);
    QPixmap cover(72, 72);
    cover.fill(QColor(200, 30, 40));
    VyrEngine::CourseEngine::instance()->putCoursePixmap(1, kCourse, cover);
    QSignalSpy asked(VyrEngine::CourseEngine::instance(), &VyrEngine::CourseEngine::coursePixmapAsked);
    open(kind);
    QCOMPARE(asked.count(), 1);
    QCOMPARE(asked.first().first().toULongLong(), kCourse);
    QLabel* icon = H::label(m_window, "m_iconLabel");
    const QImage shown = icon->pixmap(Qt::ReturnByValue).toImage();
    const QImage expected =
        ImageOp::roundedRectCoursePixmap(cover, QSizeF(36, 36), icon->devicePixelRatioF()).toImage();
    QCOMPARE(shown.convertToFormat(QImage::Format_ARGB32), expected.convertToFormat(QImage::Format_ARGB32));
    // On the screen: red in the middle of the icon, no green of the first picture.
    const QImage card = H::grabCard(m_window);
    const QPoint centre = icon->mapTo(m_window, QPoint(18, 18));
    QVERIFY(PixelProbe::isNear(card, centre, QColor(200, 30, 40)));
}

// The buttons' actions, in order, and whether the window was still up when
// each came: the test tracks first, the homework acts first (intended).
void TestWorkNoticeWidget::buttonOrder_data()
{
    QTest::addColumn<QString>("kind");
    QTest::addColumn<QString>("which");
    QTest::addColumn<QString>("sequence");
    QTest::newRow("exam view details: track, emit, close")
        << kExam << "m_viewDetailsBtn" << "PushClick(true,yes) details 501 7001 9001(yes) close";
    QTest::newRow("exam later: track, close") << kExam << "m_laterBtn" << "PushClick(false,yes) close";
    QTest::newRow("exam close button: the card closes, then track")
        << kExam << "closeBtn" << "close PushClick(false,no)";
    QTest::newRow("homework view details: emit, close, track")
        << kHomework << "m_viewDetailsBtn" << "details 501 7001 9001(yes) close PushClick(true,no)";
    QTest::newRow("homework later: close, track") << kHomework << "m_laterBtn" << "close PushClick(false,no)";
    QTest::newRow("homework close button: the card closes, then track")
        << kHomework << "closeBtn" << "close PushClick(false,no)";
}

void TestWorkNoticeWidget::buttonOrder()
{
    QFETCH(QString, kind);
    QFETCH(QString, which);
    QFETCH(QString, sequence);
    open(kind);
    NoticeClickRecorder recorder(m_window);
    markDetails(&recorder, m_window);
    QAbstractButton* target = which == QLatin1String("closeBtn")
                                  ? static_cast<QAbstractButton*>(H::closeButton(m_window))
                                  : H::button(m_window, which.toLatin1().constData());
    QTest::mouseClick(target, Qt::LeftButton);
    QCOMPARE(recorder.joined(), sequence);
    H::runDeferredDeletes();
    QVERIFY(m_window.isNull());
}

// The tracked map: the sentence as plain text, the pop-up's scene literal, the title.
void TestWorkNoticeWidget::clickPayload()
{
    QFETCH(QString, kind);
    open(kind, 4);
    const QString sentence = H::browser(m_window)->toPlainText();
    QTest::mouseClick(H::button(m_window, "m_viewDetailsBtn"), Qt::LeftButton);
    QCOMPARE(H::clicks().size(), 1);
    const QMap<QString, QVariant> data = H::clicks().first().second;
    QCOMPARE(data.value(QStringLiteral("push_body")).toString(), sentence);
    QCOMPARE(data.value(QStringLiteral("push_scenes")).toString(), sceneOf(kind));
    QCOMPARE(data.value(QStringLiteral("check_up")), QVariant(true));
    QCOMPARE(data.value(QStringLiteral("push_title")).toString(), titleOf(kind));
    QCOMPARE(data.value(QStringLiteral("app_scene")).toString(), QStringLiteral("前台唤起"));
    QVERIFY(!QUuid(data.value(QStringLiteral("push_id")).toString()).isNull());
    QCOMPARE(data.size(), 6);
    // Being shown sent nothing before the click.
    QCOMPARE(VyrTrack::instance()->events().size(), 1);
}

// The engine's withdrawal and cluster deletion close only the window of this work and course.
void TestWorkNoticeWidget::outsideSignals_data()
{
    QTest::addColumn<QString>("kind");
    QTest::addColumn<QString>("signal");
    QTest::addColumn<QList<quint64>>("ids");
    QTest::addColumn<bool>("closes");
    for (const QString& kind : {kExam, kHomework}) {
        const QString other = isExam(kind) ? kHomework : kExam;
        const auto row = [&kind](const char* tag) -> QTestData& {
            return QTest::addRow("%s %s", qPrintable(kind), tag) << kind;
        };
        row("withdrawn: this work") << kind << QList<quint64>{kCourse, kWork} << true;
        row("withdrawn: other first argument, this work") << kind << QList<quint64>{1, kWork} << true;
        row("withdrawn: matching first argument, other work") << kind << QList<quint64>{kWork, kCourse} << false;
        row("withdrawn: other work") << kind << QList<quint64>{kCourse, 7002} << false;
        row("withdrawn: the course's id as second argument") << kind << QList<quint64>{kCourse, kCourse} << false;
        row("the twin's of the same id") << other << QList<quint64>{kCourse, kWork} << false;
        row("cluster: only this course") << "cluster" << QList<quint64>{kCourse} << true;
        row("cluster: this course among others") << "cluster" << QList<quint64>{3, kCourse, 4} << true;
        row("cluster: without this course") << "cluster" << QList<quint64>{3, kWork, 4} << false;
        row("cluster: none") << "cluster" << QList<quint64>{} << false;
    }
}

void TestWorkNoticeWidget::outsideSignals()
{
    QFETCH(QString, kind);
    QFETCH(QString, signal);
    QFETCH(QList<quint64>, ids);
    QFETCH(bool, closes);
    open(kind);
    if (signal == QLatin1String("cluster"))
        VyrEngine::ContactsEngine::instance()->deleteClusters(std::vector<quint64>(ids.begin(), ids.end()));
    else
        withdraw(signal, ids.value(0), ids.value(1));
    QCoreApplication::processEvents();
    H::runDeferredDeletes();
    QCOMPARE(m_window.isNull(), closes);
    QVERIFY(VyrTrack::instance()->events().isEmpty());
}

// A withdrawal emitted right after construction acts only once the event loop runs.
void TestWorkNoticeWidget::deleteRightAfterConstructionIsQueued()
{
    QFETCH(QString, kind);
    for (int which = 0; which < 2; ++which) {
        m_window = create(kind, 1, false);
        QSignalSpy destroyed(m_window.data(), &QObject::destroyed);
        NoticeClickRecorder recorder(m_window);
        markDetails(&recorder, m_window);
        if (which == 0)
            withdraw(kind, kCourse, kWork);
        else
            VyrEngine::ContactsEngine::instance()->deleteClusters({kCourse});
        QCOMPARE(recorder.joined(), QString());
        m_window->popNotice();
        QVERIFY(m_window->isVisible());
        QTRY_COMPARE(destroyed.count(), 1);
        QCOMPARE(recorder.joined(), QStringLiteral("close"));
    }
}

// The homework window rebuilds its sentence on a change of the logged-in
// user; a change of the submitting student alone doesn't (intended), and
// neither acts before the event loop runs. The test window doesn't listen to
// user changes at all, not even of the logged-in user.
void TestWorkNoticeWidget::userChange_data()
{
    QTest::addColumn<QString>("kind");
    QTest::addColumn<QList<quint64>>("changed");
    QTest::addColumn<bool>("refreshed");
    QTest::newRow("exam logged-in user and student") << kExam << QList<quint64>{5, kStudent} << false;
    QTest::newRow("homework logged-in user") << kHomework << QList<quint64>{5} << true;
    QTest::newRow("homework logged-in user among others") << kHomework << QList<quint64>{8, 5, 9} << true;
    QTest::newRow("homework the submitting student only") << kHomework << QList<quint64>{kStudent} << false;
    QTest::newRow("homework others") << kHomework << QList<quint64>{8, 9} << false;
    QTest::newRow("homework none") << kHomework << QList<quint64>{} << false;
}

void TestWorkNoticeWidget::userChange()
{
    QFETCH(QString, kind);
    QFETCH(QList<quint64>, changed);
    QFETCH(bool, refreshed);
    VyrEngine::CoreEngine::instance()->setCurrentUid(5);
    VyrEngine::ContactsEngine::instance()->removeUser(kStudent);
    open(kind, 3, true);
    const QString before = H::browser(m_window)->toPlainText();
    VyrEngine::ContactsEngine::instance()->putUser(VyrEngine::UserInfo(kStudent, QStringLiteral("Li Lei")));
    LogCapture log;
    VyrEngine::ContactsEngine::instance()->changeUsers(std::vector<quint64>(changed.begin(), changed.end()));
    QCOMPARE(H::browser(m_window)->toPlainText(), before);
    QCoreApplication::processEvents();
    const QString after = refreshed ? QStringLiteral("Li Lei submitted the homework \"Algebra\". Review it now.")
                                    : before;
    QCOMPARE(H::browser(m_window)->toPlainText(), after);
    QVERIFY(m_window->isVisible());
    QVERIFY(log.lines().isEmpty());
}

// A homework refresh runs the whole update again: an unknown user is looked up and logged again each time.
void TestWorkNoticeWidget::homeworkRefreshRepeatsTheUpdate()
{
    VyrEngine::CoreEngine::instance()->setCurrentUid(5);
    VyrEngine::ContactsEngine::instance()->removeUser(kStudent);
    LogCapture log;
    open(kHomework, 11, true);
    QCOMPARE(log.startingWith(QStringLiteral("can not find user info:")).size(), 1);
    VyrEngine::ContactsEngine::instance()->changeUsers({5});
    QCoreApplication::processEvents();
    QCOMPARE(log.startingWith(QStringLiteral("can not find user info:")).size(), 2);
    QVERIFY(m_window->isVisible());
    VyrEngine::ContactsEngine::instance()->changeUsers({5});
    QCoreApplication::processEvents();
    QCOMPARE(log.startingWith(QStringLiteral("can not find user info:")).size(), 3);
}

// A log-out closes the window at once and reports nothing.
void TestWorkNoticeWidget::logOutCloses()
{
    QFETCH(QString, kind);
    open(kind);
    emit ImSignalObject::instance()->signalLogOut();
    QVERIFY(!m_window->isVisible());
    H::runDeferredDeletes();
    QVERIFY(m_window.isNull());
    QVERIFY(VyrTrack::instance()->events().isEmpty());
}

// No record: the window closes quietly, and the engine signals that follow find nothing to compare.
void TestWorkNoticeWidget::nullRecordClosesQuietly()
{
    QFETCH(QString, kind);
    LogCapture log;
    Work none;
    none.present = false;
    QPointer<PopNoticeBaseWidget> window = create(kind, 1, true, none);
    withdraw(kind, 0, 0);
    VyrEngine::ContactsEngine::instance()->deleteClusters({0});
    QCoreApplication::processEvents();
    H::runDeferredDeletes();
    QVERIFY(window.isNull());
    QVERIFY(log.lines().isEmpty());
}

// With VYR_SCREENSHOT_DIR set, both twins and both sides are saved as pictures in both languages (to look at).
void TestWorkNoticeWidget::screenshots()
{
    const QString dir = H::screenshotDir();
    if (dir.isEmpty())
        QSKIP("VYR_SCREENSHOT_DIR not set");
    for (const QString& language : {QStringLiteral("en"), QStringLiteral("zh_CN")}) {
        QVERIFY(H::useLanguage(language));
        for (const QString& kind : {kExam, kHomework}) {
            for (const bool review : {false, true}) {
                open(kind, review ? 3 : expiryStateOf(kind), review);
                const QString path =
                    QStringLiteral("%1/%2-%3-%4.png").arg(dir, kind, review ? "review" : "work", language);
                QVERIFY(H::saveOnCanvas(m_window, path));
                delete m_window;
            }
        }
    }
}

QTEST_MAIN(TestWorkNoticeWidget)
#include "tst_worknoticewidget.moc"
