#include "ContactsEngine.h"
#include "CoreEngine.h"
#include "CourseEngine.h"
#include "ExamManager.h"
#include "HomeworkManager.h"
#include "HomeworkNoticeWidget.h"
#include "ImSignalObject.h"
#include "ImageOp.h"
#include "LogCapture.h"
#include "PixelProbe.h"
#include "PopupHarness.h"
#include "SignalRecorder.h"
#include "TestKit.h"
#include "VyrTrack.h"

#include <QDir>
#include <QLabel>
#include <QLayout>
#include <QPainter>
#include <QPointer>
#include <QPushButton>
#include <QSignalSpy>
#include <QTextBrowser>
#include <QToolButton>
#include <QtTest>

namespace H = PopupHarness;

namespace {

const QString kScene = QStringLiteral("发布作业");
constexpr quint64 kCourse = 501;
constexpr quint64 kHomework = 7001;
constexpr quint64 kActivity = 9001;
constexpr quint64 kStudent = 77;

std::shared_ptr<HomeworkEntity> homework(const QString& name = QStringLiteral("Algebra"), qint32 expireCount = 3,
                                         bool revised = false)
{
    auto info = std::make_shared<HomeworkEntity>();
    info->courseId = kCourse;
    info->homeworkId = kHomework;
    info->activityId = kActivity;
    info->name = name;
    info->expireCount = expireCount;
    info->revised = revised;
    return info;
}

QTextBrowser* browser(QWidget* window)
{
    return window->findChild<QTextBrowser*>(QStringLiteral("m_contentBrowser"));
}

QPushButton* button(QWidget* window, const char* name)
{
    return window->findChild<QPushButton*>(QLatin1String(name));
}

QLabel* label(QWidget* window, const char* name)
{
    return window->findChild<QLabel*>(QLatin1String(name));
}

QList<VyrTrack::Event> clicks()
{
    QList<VyrTrack::Event> found;
    for (const VyrTrack::Event& event : VyrTrack::instance()->events()) {
        if (event.first == QLatin1String("PushClick"))
            found << event;
    }
    return found;
}

// The window's details signal, its close and each tracked event, in order,
// with whether the window was still on the screen at that moment.
class HomeworkRecorder : public SignalRecorder
{
    Q_OBJECT
public:
    explicit HomeworkRecorder(HomeworkNoticeWidget* window)
        : m_window(window)
        , m_windowObject(window)
    {
        connect(window, &HomeworkNoticeWidget::signalSeeDetails, this,
                [this](qulonglong course, qulonglong id, qulonglong activity) {
                    record(QStringLiteral("details(%1,%2,%3,visible=%4)")
                               .arg(course)
                               .arg(id)
                               .arg(activity)
                               .arg(visibleText()));
                });
        connect(VyrTrack::instance(), &VyrTrack::tracked, this, [this](const QString& event, const QVariantMap& data) {
            record(QStringLiteral("%1(check_up=%2,visible=%3)")
                       .arg(event, data.value(QStringLiteral("check_up")).toBool() ? QStringLiteral("true")
                                                                                      : QStringLiteral("false"),
                            visibleText()));
        });
        window->installEventFilter(this);
    }

protected:
    bool eventFilter(QObject* watched, QEvent* event) override
    {
        // Compared as plain objects: the filter also sees events while the window is being destroyed.
        if (event->type() == QEvent::Close && watched == m_windowObject.data())
            record(QStringLiteral("close"));
        return false;
    }

private:
    QString visibleText() const
    {
        if (!m_window)
            return QStringLiteral("gone");
        return m_window->isVisible() ? QStringLiteral("yes") : QStringLiteral("no");
    }

    QPointer<HomeworkNoticeWidget> m_window;
    QPointer<QObject> m_windowObject;
};

} // namespace

// The homework pop-up: its face, its state table on both sides, its spans, its
// buttons and tracking, and the engine signals that close it.
class TestHomeworkNoticeWidget : public QObject
{
    Q_OBJECT
private slots:
    void initTestCase();
    void init();
    void cleanup();

    void faceAndLayout();
    void stateTable_data();
    void stateTable();
    void unknownStateClosesWithoutMessage();
    void unknownStateStillRunsTheUpdate();
    void expiryShowsTheCount();
    void titleSpanByLocale_data();
    void titleSpanByLocale();
    void namesAreElidedAndEscaped();
    void reviewNamesTheUser();
    void reviewUnknownUserLogsAndShowsEmptyName();
    void coverReplacesFirstPicture();
    void buttonOrder_data();
    void buttonOrder();
    void clickPayload();
    void outsideSignals_data();
    void outsideSignals();
    void deleteRightAfterConstructionIsQueued();
    void userChangeOfLoggedInUserOnly_data();
    void userChangeOfLoggedInUserOnly();
    void refreshRepeatsTheUpdate();
    void logOutCloses();
    void nullRecordClosesQuietly();
    void screenshots();

private:
    HomeworkNoticeWidget* open(int state = 1, bool reviewSide = false, std::shared_ptr<HomeworkEntity> info = homework());
    QPointer<HomeworkNoticeWidget> m_window;
};

void TestHomeworkNoticeWidget::initTestCase()
{
    QVERIFY(TestKit::loadTranslations(QStringLiteral("en")));
}

void TestHomeworkNoticeWidget::init()
{
    TestKit::resetAll();
    HomeworkManager::instance()->clear();
    H::useTestScreen();
    QLocale::setDefault(QLocale(QLocale::English, QLocale::UnitedStates));
    VyrEngine::ContactsEngine::instance()->putUser(VyrEngine::UserInfo(kStudent, QStringLiteral("Wang Fang")));
}

void TestHomeworkNoticeWidget::cleanup()
{
    delete m_window;
    H::runDeferredDeletes();
    QLocale::setDefault(QLocale::c());
    QVERIFY(TestKit::loadTranslations(QStringLiteral("en")));
}

HomeworkNoticeWidget* TestHomeworkNoticeWidget::open(int state, bool reviewSide, std::shared_ptr<HomeworkEntity> info)
{
    m_window = new HomeworkNoticeWidget(kStudent, state, std::move(info), reviewSide);
    m_window->popNotice();
    H::finish(H::animation(m_window, "m_showAnimation"));
    return m_window;
}

// The card is 308 by 164 plus the shadow; the heading exists but is hidden and
// never laid out; the buttons carry the micro-course texts and their styles.
void TestHomeworkNoticeWidget::faceAndLayout()
{
    open();
    QCOMPARE(m_window->size(), QSize(328, 184));
    QCOMPARE(m_window->maximumSize(), QSize(328, 184));
    QCOMPARE(H::titleLabel(m_window)->text(), QStringLiteral("Homework notice"));
    QLabel* heading = label(m_window, "m_headingLabel");
    QVERIFY(heading);
    QCOMPARE(heading->text(), QStringLiteral("Homework notice"));
    QVERIFY(heading->isHidden());
    // Hidden but dressed as every heading: 19 high, the title style at 14 px medium.
    QCOMPARE(heading->height(), 19);
    QCOMPARE(heading->property("PropertyStyle").toString(), QStringLiteral("QLabel_MessageTitle"));
    QCOMPARE(heading->font().pixelSize(), 14);
    QCOMPARE(heading->font().weight(), int(QFont::Medium));
    QCOMPARE(m_window->findChild<QWidget*>(QStringLiteral("contentWidget"))->layout()->indexOf(heading), -1);
    QCOMPARE(label(m_window, "m_iconLabel")->size(), QSize(36, 36));
    QCOMPARE(browser(m_window)->property("PropertyStyle").toString(), QStringLiteral("QLabel_MessageContent"));
    QCOMPARE(browser(m_window)->font().pixelSize(), 13);
    QCOMPARE(browser(m_window)->document()->defaultTextOption().wrapMode(), QTextOption::WrapAnywhere);
    QCOMPARE(browser(m_window)->verticalScrollBarPolicy(), Qt::ScrollBarAlwaysOff);
    QCOMPARE(browser(m_window)->horizontalScrollBarPolicy(), Qt::ScrollBarAlwaysOff);
    QPushButton* details = button(m_window, "m_viewDetailsBtn");
    QPushButton* later = button(m_window, "m_laterBtn");
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
    const QPoint icon = label(m_window, "m_iconLabel")->mapTo(m_window, QPoint(0, 0));
    QCOMPARE(icon, QPoint(10 + 24, 40 + 12));
    QCOMPARE(browser(m_window)->mapTo(m_window, QPoint(0, 0)).x(), icon.x() + 36 + 12);
}

// Each state on each side, with and without `revised`: its sentence, or the
// window closed for any state not in the table.
void TestHomeworkNoticeWidget::stateTable_data()
{
    QTest::addColumn<bool>("reviewSide");
    QTest::addColumn<int>("state");
    QTest::addColumn<bool>("revised");
    QTest::addColumn<QString>("text");
    const QString closes;
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
    QTest::newRow("work 1") << false << 1 << false << assigned;
    QTest::newRow("work 1 revised") << false << 1 << true << assigned;
    QTest::newRow("work 4") << false << 4 << false << reviewed;
    QTest::newRow("work 4 revised") << false << 4 << true << revise;
    QTest::newRow("work 5") << false << 5 << false << again;
    QTest::newRow("work 5 revised") << false << 5 << true << again;
    QTest::newRow("work 6") << false << 6 << false << unfinished;
    QTest::newRow("work 6 revised") << false << 6 << true << unfinished;
    QTest::newRow("work 10 expires") << false << 10 << false << expires;
    QTest::newRow("work 10 expires revised") << false << 10 << true << expires;
    QTest::newRow("work 12") << false << 12 << false << resubmit;
    QTest::newRow("work 12 revised") << false << 12 << true << resubmit;
    QTest::newRow("work 0 unlisted") << false << 0 << false << closes;
    QTest::newRow("work 3 is the review side's") << false << 3 << false << closes;
    QTest::newRow("work 8 is the test's expiry") << false << 8 << false << closes;
    QTest::newRow("work 11 is the review side's") << false << 11 << true << closes;
    QTest::newRow("review 3") << true << 3 << false << submitted;
    QTest::newRow("review 3 revised") << true << 3 << true << revisedIn;
    QTest::newRow("review 9") << true << 9 << false << submitted;
    QTest::newRow("review 9 revised") << true << 9 << true << revisedIn;
    QTest::newRow("review 11") << true << 11 << false << late;
    QTest::newRow("review 11 revised stays late") << true << 11 << true << late;
    QTest::newRow("review 1 is the working side's") << true << 1 << false << closes;
    QTest::newRow("review 4 revised is the working side's") << true << 4 << true << closes;
    QTest::newRow("review 10 is the working side's") << true << 10 << false << closes;
    QTest::newRow("review 12 unlisted") << true << 12 << true << closes;
}

void TestHomeworkNoticeWidget::stateTable()
{
    QFETCH(bool, reviewSide);
    QFETCH(int, state);
    QFETCH(bool, revised);
    QFETCH(QString, text);
    m_window = new HomeworkNoticeWidget(kStudent, state, homework(QStringLiteral("Algebra"), 3, revised), reviewSide);
    QCOMPARE(browser(m_window)->toPlainText(), text);
    H::runDeferredDeletes();
    QCOMPARE(m_window.isNull(), text.isEmpty());
}

// An unknown state closes the window with no log line and no tracking.
void TestHomeworkNoticeWidget::unknownStateClosesWithoutMessage()
{
    LogCapture log;
    QPointer<HomeworkNoticeWidget> window = new HomeworkNoticeWidget(kStudent, 42, homework(), false);
    QSignalSpy destroyed(window.data(), &QObject::destroyed);
    H::runDeferredDeletes();
    QVERIFY(window.isNull());
    QCOMPARE(destroyed.count(), 1);
    QVERIFY2(log.lines().isEmpty(), qPrintable(log.lines().value(0).text));
    QVERIFY(VyrTrack::instance()->events().isEmpty());
}

// Closing for an unknown state doesn't end the update: the cover and the user are still looked up.
void TestHomeworkNoticeWidget::unknownStateStillRunsTheUpdate()
{
    QSignalSpy asked(VyrEngine::CourseEngine::instance(), &VyrEngine::CourseEngine::coursePixmapAsked);
    const int lookups = VyrEngine::ContactsEngine::instance()->userLookupCount();
    QPointer<HomeworkNoticeWidget> window = new HomeworkNoticeWidget(kStudent, 42, homework(), true);
    QCOMPARE(asked.count(), 1);
    QCOMPARE(VyrEngine::ContactsEngine::instance()->userLookupCount(), lookups + 1);
    QVERIFY(browser(window)->toPlainText().isEmpty());
    H::runDeferredDeletes();
    QVERIFY(window.isNull());
}

// The expiry template takes the record's count, in decimal, after the title.
void TestHomeworkNoticeWidget::expiryShowsTheCount()
{
    open(10, false, homework(QStringLiteral("Final"), 12));
    QCOMPARE(browser(m_window)->toPlainText(),
             QStringLiteral("The homework \"Final\" is due in 12 hours. Please submit it in time."));
    delete m_window;
    // Only the expiry template gets the count.
    open(1, false, homework(QStringLiteral("Final"), 12));
    QVERIFY(!browser(m_window)->toPlainText().contains(QLatin1String("12")));
}

// China gives "&nbsp;name" without quotes, any other country "&quot;name&quot;"; both green.
void TestHomeworkNoticeWidget::titleSpanByLocale_data()
{
    QTest::addColumn<QString>("language");
    QTest::addColumn<QLocale>("locale");
    QTest::addColumn<bool>("reviewSide");
    QTest::addColumn<QString>("text");
    const QString nbsp(QChar(0x00A0));
    QTest::newRow("en, US, working") << "en" << QLocale(QLocale::English, QLocale::UnitedStates) << false
                                     << "The homework \"Algebra\" is out. Please submit it on time.";
    QTest::newRow("en texts, China, working") << "en" << QLocale(QLocale::Chinese, QLocale::China) << false
                                        << "The homework " + nbsp + "Algebra is out. Please submit it on time.";
    QTest::newRow("zh, China, working") << "zh_CN" << QLocale(QLocale::Chinese, QLocale::China) << false
                                        << QString("作业" + nbsp + "Algebra已布置，请按时提交。");
    QTest::newRow("zh, Taiwan, working") << "zh_CN" << QLocale(QLocale::Chinese, QLocale::Taiwan) << false
                                         << QString("作业\"Algebra\"已布置，请按时提交。");
    QTest::newRow("zh, China, review") << "zh_CN" << QLocale(QLocale::Chinese, QLocale::China) << true
                                       << QString("Wang Fang提交了作业" + nbsp + "Algebra，快去批改吧。");
    QTest::newRow("en, US, review") << "en" << QLocale(QLocale::English, QLocale::UnitedStates) << true
                                    << "Wang Fang submitted the homework \"Algebra\". Review it now.";
}

void TestHomeworkNoticeWidget::titleSpanByLocale()
{
    QFETCH(QString, language);
    QFETCH(QLocale, locale);
    QFETCH(bool, reviewSide);
    QFETCH(QString, text);
    QVERIFY(TestKit::loadTranslations(language));
    QLocale::setDefault(locale);
    open(reviewSide ? 3 : 1, reviewSide);
    // Raw text keeps the non-breaking space that plain text turns into a blank.
    QCOMPARE(browser(m_window)->document()->toRawText(), text);
    // The names stand in the green of every notice name.
    const QString html = browser(m_window)->toHtml();
    QCOMPARE(html.count(QLatin1String("color:#009265")), reviewSide ? 2 : 1);
}

// Both names are cut at 100 pixels with an ellipsis and shown as text, not markup.
void TestHomeworkNoticeWidget::namesAreElidedAndEscaped()
{
    VyrEngine::ContactsEngine::instance()->putUser(
        VyrEngine::UserInfo(kStudent, QStringLiteral("<i>Ouyang Xiaoming the Third of Many</i>")));
    open(3, true, homework(QStringLiteral("<b>Mid-term test of the autumn semester</b>")));
    const QString plain = browser(m_window)->toPlainText();
    QVERIFY2(plain.startsWith(QLatin1String("<i>Ouyang")), qPrintable(plain));
    QVERIFY2(plain.contains(QLatin1String("\"<b>Mid")), qPrintable(plain));
    QCOMPARE(plain.count(QChar(0x2026)), 2);
    QVERIFY(!plain.contains(QLatin1String("semester")));
    QVERIFY(!plain.contains(QLatin1String("Many")));
    const QFontMetrics metrics(browser(m_window)->font());
    const QString shownTitle = plain.section(QLatin1Char('"'), 1, 1);
    QVERIFY(metrics.horizontalAdvance(shownTitle) <= 100);
}

// The review side looks the user up and shows the display name: the remark over the nickname.
void TestHomeworkNoticeWidget::reviewNamesTheUser()
{
    VyrEngine::UserInfo user(kStudent, QStringLiteral("Wang Fang"));
    user.setRemark(QStringLiteral("Fang (class 2)"));
    VyrEngine::ContactsEngine::instance()->putUser(user);
    const int before = VyrEngine::ContactsEngine::instance()->userLookupCount();
    open(9, true);
    QCOMPARE(browser(m_window)->toPlainText(),
             QStringLiteral("Fang (class 2) submitted the homework \"Algebra\". Review it now."));
    QCOMPARE(VyrEngine::ContactsEngine::instance()->userLookupCount(), before + 1);
    // The working side never looks anyone up.
    delete m_window;
    open(1, false);
    QCOMPARE(VyrEngine::ContactsEngine::instance()->userLookupCount(), before + 1);
}

// A user the engine doesn't know: an empty green span and one info line with the id.
void TestHomeworkNoticeWidget::reviewUnknownUserLogsAndShowsEmptyName()
{
    VyrEngine::ContactsEngine::instance()->removeUser(kStudent);
    LogCapture log;
    open(3, true);
    QCOMPARE(browser(m_window)->toPlainText().trimmed(),
             QStringLiteral("submitted the homework \"Algebra\". Review it now."));
    QCOMPARE(browser(m_window)->toHtml().count(QLatin1String("color:#009265")), 1);
    const QList<LogCapture::Line> lines = log.startingWith(QStringLiteral("can not find user info:"));
    QCOMPARE(lines.size(), 1);
    QCOMPARE(lines.first().text, QStringLiteral("can not find user info: 77"));
    QCOMPARE(lines.first().type, QtInfoMsg);
    QVERIFY2(lines.first().file.endsWith(QLatin1String("src/plugins/im/VyrNotice/HomeworkNoticeWidget.cpp")),
             qPrintable(lines.first().file));
    QVERIFY(m_window->isVisible());
}

// The course's cover, rounded to 36 by 36, takes the place of the first picture.
void TestHomeworkNoticeWidget::coverReplacesFirstPicture()
{
    QPixmap cover(72, 72);
    cover.fill(QColor(200, 30, 40));
    VyrEngine::CourseEngine::instance()->putCoursePixmap(1, kCourse, cover);
    QSignalSpy asked(VyrEngine::CourseEngine::instance(), &VyrEngine::CourseEngine::coursePixmapAsked);
    open();
    QCOMPARE(asked.count(), 1);
    QCOMPARE(asked.first().first().toULongLong(), kCourse);
    const QImage shown = label(m_window, "m_iconLabel")->pixmap(Qt::ReturnByValue).toImage();
    const QImage expected =
        ImageOp::roundedRectCoursePixmap(cover, QSizeF(36, 36), label(m_window, "m_iconLabel")->devicePixelRatioF())
            .toImage();
    QCOMPARE(shown.convertToFormat(QImage::Format_ARGB32), expected.convertToFormat(QImage::Format_ARGB32));
    // On the screen: red in the middle of the icon, no green of the first picture.
    const QImage card = H::grabCard(m_window);
    const QPoint centre = label(m_window, "m_iconLabel")->mapTo(m_window, QPoint(18, 18));
    QVERIFY(PixelProbe::isNear(card, centre, QColor(200, 30, 40)));
}

// The buttons' actions, in order, and whether the window was still up when each came.
void TestHomeworkNoticeWidget::buttonOrder_data()
{
    QTest::addColumn<QString>("which");
    QTest::addColumn<QString>("sequence");
    QTest::newRow("view details: emit, close, track")
        << "m_viewDetailsBtn"
        << "details(501,7001,9001,visible=yes) close PushClick(check_up=true,visible=no)";
    QTest::newRow("later: close, track") << "m_laterBtn" << "close PushClick(check_up=false,visible=no)";
    QTest::newRow("close button: the card closes, then track")
        << "closeBtn" << "close PushClick(check_up=false,visible=no)";
}

void TestHomeworkNoticeWidget::buttonOrder()
{
    QFETCH(QString, which);
    QFETCH(QString, sequence);
    open();
    HomeworkRecorder recorder(m_window);
    QAbstractButton* target = which == QLatin1String("closeBtn")
                                  ? static_cast<QAbstractButton*>(H::closeButton(m_window))
                                  : button(m_window, which.toLatin1().constData());
    QTest::mouseClick(target, Qt::LeftButton);
    QCOMPARE(recorder.joined(), sequence);
    H::runDeferredDeletes();
    QVERIFY(m_window.isNull());
}

// The tracked map: the sentence as plain text, the homework's scene literal, the title.
void TestHomeworkNoticeWidget::clickPayload()
{
    open(4);
    const QString sentence = browser(m_window)->toPlainText();
    QTest::mouseClick(button(m_window, "m_viewDetailsBtn"), Qt::LeftButton);
    QCOMPARE(clicks().size(), 1);
    const QMap<QString, QVariant> data = clicks().first().second;
    QCOMPARE(data.value(QStringLiteral("push_body")).toString(), sentence);
    QCOMPARE(data.value(QStringLiteral("push_scenes")).toString(), kScene);
    QCOMPARE(data.value(QStringLiteral("check_up")), QVariant(true));
    QCOMPARE(data.value(QStringLiteral("push_title")).toString(), QStringLiteral("Homework notice"));
    QCOMPARE(data.value(QStringLiteral("app_scene")).toString(), QStringLiteral("前台唤起"));
    QVERIFY(!QUuid(data.value(QStringLiteral("push_id")).toString()).isNull());
    QCOMPARE(data.size(), 6);
    // Being shown sent nothing before the click.
    QCOMPARE(VyrTrack::instance()->events().size(), 1);
}

// The engine's withdrawal and cluster deletion close only the window of this homework and course.
void TestHomeworkNoticeWidget::outsideSignals_data()
{
    QTest::addColumn<QString>("signal");
    QTest::addColumn<QList<quint64>>("ids");
    QTest::addColumn<bool>("closes");
    QTest::newRow("withdrawn: this homework") << "homework" << QList<quint64>{kCourse, kHomework} << true;
    QTest::newRow("withdrawn: other first argument, this homework") << "homework" << QList<quint64>{1, kHomework} << true;
    QTest::newRow("withdrawn: matching first argument, other homework")
        << "homework" << QList<quint64>{kHomework, kCourse} << false;
    QTest::newRow("withdrawn: other homework") << "homework" << QList<quint64>{kCourse, 7002} << false;
    QTest::newRow("test of the same id") << "exam" << QList<quint64>{kCourse, kHomework} << false;
    QTest::newRow("cluster: only this course") << "cluster" << QList<quint64>{kCourse} << true;
    QTest::newRow("cluster: this course among others") << "cluster" << QList<quint64>{3, kCourse, 4} << true;
    QTest::newRow("cluster: without this course") << "cluster" << QList<quint64>{3, kHomework, 4} << false;
    QTest::newRow("cluster: none") << "cluster" << QList<quint64>{} << false;
}

void TestHomeworkNoticeWidget::outsideSignals()
{
    QFETCH(QString, signal);
    QFETCH(QList<quint64>, ids);
    QFETCH(bool, closes);
    open();
    if (signal == QLatin1String("homework"))
        HomeworkManager::instance()->withdrawHomework(ids.value(0), ids.value(1));
    else if (signal == QLatin1String("exam"))
        ExamManager::instance()->withdrawExam(ids.value(0), ids.value(1));
    else
        VyrEngine::ContactsEngine::instance()->deleteClusters(std::vector<quint64>(ids.begin(), ids.end()));
    QCoreApplication::processEvents();
    H::runDeferredDeletes();
    QCOMPARE(m_window.isNull(), closes);
    QVERIFY(VyrTrack::instance()->events().isEmpty());
}

// A withdrawal emitted right after construction acts only once the event loop runs.
void TestHomeworkNoticeWidget::deleteRightAfterConstructionIsQueued()
{
    for (int which = 0; which < 2; ++which) {
        m_window = new HomeworkNoticeWidget(kStudent, 1, homework(), false);
        QSignalSpy destroyed(m_window.data(), &QObject::destroyed);
        HomeworkRecorder recorder(m_window);
        if (which == 0)
            HomeworkManager::instance()->withdrawHomework(kCourse, kHomework);
        else
            VyrEngine::ContactsEngine::instance()->deleteClusters({kCourse});
        QCOMPARE(recorder.joined(), QString());
        m_window->popNotice();
        QVERIFY(m_window->isVisible());
        QTRY_COMPARE(destroyed.count(), 1);
        QCOMPARE(recorder.joined(), QStringLiteral("close"));
    }
}

// A change of the logged-in user rebuilds the sentence; a change of the
// submitting student alone doesn't (intended), and neither acts before the event loop runs.
void TestHomeworkNoticeWidget::userChangeOfLoggedInUserOnly_data()
{
    QTest::addColumn<QList<quint64>>("changed");
    QTest::addColumn<bool>("refreshed");
    QTest::newRow("logged-in user") << QList<quint64>{5} << true;
    QTest::newRow("logged-in user among others") << QList<quint64>{8, 5, 9} << true;
    QTest::newRow("the submitting student only") << QList<quint64>{kStudent} << false;
    QTest::newRow("others") << QList<quint64>{8, 9} << false;
    QTest::newRow("none") << QList<quint64>{} << false;
}

void TestHomeworkNoticeWidget::userChangeOfLoggedInUserOnly()
{
    QFETCH(QList<quint64>, changed);
    QFETCH(bool, refreshed);
    VyrEngine::CoreEngine::instance()->setCurrentUid(5);
    VyrEngine::ContactsEngine::instance()->removeUser(kStudent);
    open(3, true);
    const QString before = browser(m_window)->toPlainText();
    VyrEngine::ContactsEngine::instance()->putUser(VyrEngine::UserInfo(kStudent, QStringLiteral("Li Lei")));
    LogCapture log;
    VyrEngine::ContactsEngine::instance()->changeUsers(std::vector<quint64>(changed.begin(), changed.end()));
    QCOMPARE(browser(m_window)->toPlainText(), before);
    QCoreApplication::processEvents();
    const QString after = refreshed ? QStringLiteral("Li Lei submitted the homework \"Algebra\". Review it now.")
                                    : before;
    QCOMPARE(browser(m_window)->toPlainText(), after);
    QVERIFY(m_window->isVisible());
    QVERIFY(log.lines().isEmpty());
}

// A refresh runs the whole update again: an unknown user is looked up and logged again each time.
void TestHomeworkNoticeWidget::refreshRepeatsTheUpdate()
{
    VyrEngine::CoreEngine::instance()->setCurrentUid(5);
    VyrEngine::ContactsEngine::instance()->removeUser(kStudent);
    LogCapture log;
    open(11, true);
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
void TestHomeworkNoticeWidget::logOutCloses()
{
    open();
    emit ImSignalObject::instance()->signalLogOut();
    QVERIFY(!m_window->isVisible());
    H::runDeferredDeletes();
    QVERIFY(m_window.isNull());
    QVERIFY(VyrTrack::instance()->events().isEmpty());
}

// No record: the window closes quietly, and the engine signals that follow find nothing to compare.
void TestHomeworkNoticeWidget::nullRecordClosesQuietly()
{
    LogCapture log;
    QPointer<HomeworkNoticeWidget> window = new HomeworkNoticeWidget(kStudent, 1, nullptr, true);
    HomeworkManager::instance()->withdrawHomework(0, 0);
    VyrEngine::ContactsEngine::instance()->deleteClusters({0});
    QCoreApplication::processEvents();
    H::runDeferredDeletes();
    QVERIFY(window.isNull());
    QVERIFY(log.lines().isEmpty());
}

// With VYR_SCREENSHOT_DIR set, both sides are saved as pictures in both languages (to look at).
void TestHomeworkNoticeWidget::screenshots()
{
    const QString dir = qEnvironmentVariable("VYR_SCREENSHOT_DIR");
    if (dir.isEmpty())
        QSKIP("VYR_SCREENSHOT_DIR not set");
    QDir().mkpath(dir);
    for (const QString& language : {QStringLiteral("en"), QStringLiteral("zh_CN")}) {
        QVERIFY(TestKit::loadTranslations(language));
        QLocale::setDefault(language == QLatin1String("en") ? QLocale(QLocale::English, QLocale::UnitedStates)
                                                            : QLocale(QLocale::Chinese, QLocale::China));
        for (const bool review : {false, true}) {
            open(review ? 3 : 10, review);
            QImage canvas(368, 224, QImage::Format_ARGB32);
            canvas.fill(QColor(0xE9, 0xEC, 0xEF));
            QPainter painter(&canvas);
            painter.drawImage(20, 20, H::grabCard(m_window));
            painter.end();
            QVERIFY(canvas.save(
                QStringLiteral("%1/homework-%2-%3.png").arg(dir, review ? "review" : "work", language)));
            delete m_window;
        }
    }
}

QTEST_MAIN(TestHomeworkNoticeWidget)
#include "tst_homeworknoticewidget.moc"
