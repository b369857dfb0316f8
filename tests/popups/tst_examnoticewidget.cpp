#include "ContactsEngine.h"
#include "CoreEngine.h"
#include "CourseEngine.h"
#include "ExamManager.h"
#include "ExamNoticeWidget.h"
#include "HomeworkManager.h"
#include "ImSignalObject.h"
#include "ImageOp.h"
#include "LogCapture.h"
#include "PixelProbe.h"
#include "PopupHarness.h"
#include "SignalRecorder.h"
#include "TestKit.h"
#include "VyrTrack.h"

#include <QDir>
#include <QFile>
#include <QLabel>
#include <QLayout>
#include <QPainter>
#include <QPointer>
#include <QPushButton>
#include <QRegularExpression>
#include <QSignalSpy>
#include <QTextBrowser>
#include <QToolButton>
#include <QtTest>

namespace H = PopupHarness;

namespace {

const QString kScene = QStringLiteral("发布测验");
constexpr quint64 kCourse = 501;
constexpr quint64 kExam = 7001;
constexpr quint64 kActivity = 9001;
constexpr quint64 kStudent = 77;

std::shared_ptr<ExamInfo> exam(const QString& name = QStringLiteral("Algebra"), qint32 expireCount = 3)
{
    auto info = std::make_shared<ExamInfo>();
    info->courseId = kCourse;
    info->examId = kExam;
    info->activityId = kActivity;
    info->name = name;
    info->expireCount = expireCount;
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
class ExamRecorder : public SignalRecorder
{
    Q_OBJECT
public:
    explicit ExamRecorder(ExamNoticeWidget* window)
        : m_window(window)
        , m_windowObject(window)
    {
        connect(window, &ExamNoticeWidget::signalSeeDetails, this,
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

    QPointer<ExamNoticeWidget> m_window;
    QPointer<QObject> m_windowObject;
};

} // namespace

// The test pop-up: its face, its state table on both sides, its spans, its
// buttons and tracking, and the engine signals that close it.
class TestExamNoticeWidget : public QObject
{
    Q_OBJECT
private slots:
    void initTestCase();
    void init();
    void cleanup();

    void faceAndLayout();
    void stateTable_data();
    void stateTable();
    void headerTellsEveryState_data();
    void headerTellsEveryState();
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
    void userChangeIsNotWatched();
    void logOutCloses();
    void nullRecordClosesQuietly();
    void screenshots();

private:
    ExamNoticeWidget* open(int state = 1, bool reviewSide = false, std::shared_ptr<ExamInfo> info = exam());
    QPointer<ExamNoticeWidget> m_window;
};

void TestExamNoticeWidget::initTestCase()
{
    QVERIFY(TestKit::loadTranslations(QStringLiteral("en")));
}

void TestExamNoticeWidget::init()
{
    TestKit::resetAll();
    ExamManager::instance()->clear();
    H::useTestScreen();
    QLocale::setDefault(QLocale(QLocale::English, QLocale::UnitedStates));
    VyrEngine::ContactsEngine::instance()->putUser(VyrEngine::UserInfo(kStudent, QStringLiteral("Wang Fang")));
}

void TestExamNoticeWidget::cleanup()
{
    delete m_window;
    H::runDeferredDeletes();
    QLocale::setDefault(QLocale::c());
    QVERIFY(TestKit::loadTranslations(QStringLiteral("en")));
}

ExamNoticeWidget* TestExamNoticeWidget::open(int state, bool reviewSide, std::shared_ptr<ExamInfo> info)
{
    m_window = new ExamNoticeWidget(kStudent, state, std::move(info), reviewSide);
    m_window->popNotice();
    H::finish(H::animation(m_window, "m_showAnimation"));
    return m_window;
}

// The card is 308 by 164 plus the shadow; the heading exists but is hidden and
// never laid out; the buttons carry the micro-course texts and their styles.
void TestExamNoticeWidget::faceAndLayout()
{
    open();
    QCOMPARE(m_window->size(), QSize(328, 184));
    QCOMPARE(m_window->maximumSize(), QSize(328, 184));
    QCOMPARE(H::titleLabel(m_window)->text(), QStringLiteral("Test notice"));
    QLabel* heading = label(m_window, "m_headingLabel");
    QVERIFY(heading);
    QCOMPARE(heading->text(), QStringLiteral("Test notice"));
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

// Each state on each side: its sentence, or the window closed for any state not in the table.
void TestExamNoticeWidget::stateTable_data()
{
    QTest::addColumn<bool>("reviewSide");
    QTest::addColumn<int>("state");
    QTest::addColumn<QString>("text");
    const QString closes;
    QTest::newRow("work 1 started") << false << 1
                                    << "The test \"Algebra\" has started. Please submit it on time.";
    QTest::newRow("work 4 reviewed") << false << 4 << "Your test \"Algebra\" has been reviewed. Check it now.";
    QTest::newRow("work 5 reviewed again")
        << false << 5 << "Your test \"Algebra\" has been reviewed again. Check it now.";
    QTest::newRow("work 8 expires") << false << 8
                                    << "The test \"Algebra\" closes in 3 hours. Please submit it in time.";
    QTest::newRow("work 0 unlisted") << false << 0 << closes;
    QTest::newRow("work 3 is the review side's") << false << 3 << closes;
    QTest::newRow("work 9 is the review side's") << false << 9 << closes;
    QTest::newRow("work 10 is homework's") << false << 10 << closes;
    QTest::newRow("work -1") << false << -1 << closes;
    QTest::newRow("review 3 submitted") << true << 3 << "Wang Fang submitted the test \"Algebra\". Review it now.";
    QTest::newRow("review 9 late") << true << 9 << "Wang Fang submitted the test \"Algebra\" late. Review it now.";
    QTest::newRow("review 1 is the working side's") << true << 1 << closes;
    QTest::newRow("review 4 is the working side's") << true << 4 << closes;
    QTest::newRow("review 8 is the working side's") << true << 8 << closes;
    QTest::newRow("review 11 is homework's") << true << 11 << closes;
}

void TestExamNoticeWidget::stateTable()
{
    QFETCH(bool, reviewSide);
    QFETCH(int, state);
    QFETCH(QString, text);
    m_window = new ExamNoticeWidget(kStudent, state, exam(), reviewSide);
    QCOMPARE(browser(m_window)->toPlainText(), text);
    H::runDeferredDeletes();
    QCOMPARE(m_window.isNull(), text.isEmpty());
}

void TestExamNoticeWidget::headerTellsEveryState_data()
{
    QTest::addColumn<bool>("reviewSide");
    QTest::addColumn<int>("state");
    for (int state = -1; state <= 13; ++state) {
        QTest::addRow("work %d", state) << false << state;
        QTest::addRow("review %d", state) << true << state;
    }
}

// The header's table of states is what the window does: its sentence for a listed state, a close for any other.
void TestExamNoticeWidget::headerTellsEveryState()
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
    m_window = new ExamNoticeWidget(kStudent, state, exam(), reviewSide);
    H::runDeferredDeletes();
    QCOMPARE(m_window.isNull(), told.isEmpty());
    if (m_window)
        QCOMPARE(browser(m_window)->toPlainText(), told);
}

// An unknown state closes the window with no log line and no tracking.
void TestExamNoticeWidget::unknownStateClosesWithoutMessage()
{
    LogCapture log;
    QPointer<ExamNoticeWidget> window = new ExamNoticeWidget(kStudent, 42, exam(), false);
    QSignalSpy destroyed(window.data(), &QObject::destroyed);
    H::runDeferredDeletes();
    QVERIFY(window.isNull());
    QCOMPARE(destroyed.count(), 1);
    QVERIFY2(log.lines().isEmpty(), qPrintable(log.lines().value(0).text));
    QVERIFY(VyrTrack::instance()->events().isEmpty());
}

// Closing for an unknown state doesn't end the update: the cover and the user are still looked up.
void TestExamNoticeWidget::unknownStateStillRunsTheUpdate()
{
    QSignalSpy asked(VyrEngine::CourseEngine::instance(), &VyrEngine::CourseEngine::coursePixmapAsked);
    const int lookups = VyrEngine::ContactsEngine::instance()->userLookupCount();
    QPointer<ExamNoticeWidget> window = new ExamNoticeWidget(kStudent, 42, exam(), true);
    QCOMPARE(asked.count(), 1);
    QCOMPARE(VyrEngine::ContactsEngine::instance()->userLookupCount(), lookups + 1);
    QVERIFY(browser(window)->toPlainText().isEmpty());
    H::runDeferredDeletes();
    QVERIFY(window.isNull());
}

// The expiry template takes the record's count, in decimal, after the title.
void TestExamNoticeWidget::expiryShowsTheCount()
{
    open(8, false, exam(QStringLiteral("Final"), 12));
    QCOMPARE(browser(m_window)->toPlainText(),
             QStringLiteral("The test \"Final\" closes in 12 hours. Please submit it in time."));
    delete m_window;
    // Only the expiry template gets the count.
    open(1, false, exam(QStringLiteral("Final"), 12));
    QVERIFY(!browser(m_window)->toPlainText().contains(QLatin1String("12")));
}

// China gives "&nbsp;name" without quotes, any other country "&quot;name&quot;"; both green.
void TestExamNoticeWidget::titleSpanByLocale_data()
{
    QTest::addColumn<QString>("language");
    QTest::addColumn<QLocale>("locale");
    QTest::addColumn<bool>("reviewSide");
    QTest::addColumn<QString>("text");
    const QString nbsp(QChar(0x00A0));
    QTest::newRow("en, US, working") << "en" << QLocale(QLocale::English, QLocale::UnitedStates) << false
                                     << "The test \"Algebra\" has started. Please submit it on time.";
    QTest::newRow("en texts, China, working") << "en" << QLocale(QLocale::Chinese, QLocale::China) << false
                                        << "The test " + nbsp + "Algebra has started. Please submit it on time.";
    QTest::newRow("zh, China, working") << "zh_CN" << QLocale(QLocale::Chinese, QLocale::China) << false
                                        << QString("测验" + nbsp + "Algebra已开始，请按时提交。");
    QTest::newRow("zh, Taiwan, working") << "zh_CN" << QLocale(QLocale::Chinese, QLocale::Taiwan) << false
                                         << QString("测验\"Algebra\"已开始，请按时提交。");
    QTest::newRow("zh, China, review") << "zh_CN" << QLocale(QLocale::Chinese, QLocale::China) << true
                                       << QString("Wang Fang提交了测验" + nbsp + "Algebra，快去批阅吧。");
    QTest::newRow("en, US, review") << "en" << QLocale(QLocale::English, QLocale::UnitedStates) << true
                                    << "Wang Fang submitted the test \"Algebra\". Review it now.";
}

void TestExamNoticeWidget::titleSpanByLocale()
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
void TestExamNoticeWidget::namesAreElidedAndEscaped()
{
    VyrEngine::ContactsEngine::instance()->putUser(
        VyrEngine::UserInfo(kStudent, QStringLiteral("<i>Ouyang Xiaoming the Third of Many</i>")));
    open(3, true, exam(QStringLiteral("<b>Mid-term test of the autumn semester</b>")));
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
void TestExamNoticeWidget::reviewNamesTheUser()
{
    VyrEngine::UserInfo user(kStudent, QStringLiteral("Wang Fang"));
    user.setRemark(QStringLiteral("Fang (class 2)"));
    VyrEngine::ContactsEngine::instance()->putUser(user);
    const int before = VyrEngine::ContactsEngine::instance()->userLookupCount();
    open(9, true);
    QCOMPARE(browser(m_window)->toPlainText(),
             QStringLiteral("Fang (class 2) submitted the test \"Algebra\" late. Review it now."));
    QCOMPARE(VyrEngine::ContactsEngine::instance()->userLookupCount(), before + 1);
    // The working side never looks anyone up.
    delete m_window;
    open(1, false);
    QCOMPARE(VyrEngine::ContactsEngine::instance()->userLookupCount(), before + 1);
}

// A user the engine doesn't know: an empty green span and one info line with the id.
void TestExamNoticeWidget::reviewUnknownUserLogsAndShowsEmptyName()
{
    VyrEngine::ContactsEngine::instance()->removeUser(kStudent);
    LogCapture log;
    open(3, true);
    QCOMPARE(browser(m_window)->toPlainText().trimmed(),
             QStringLiteral("submitted the test \"Algebra\". Review it now."));
    QCOMPARE(browser(m_window)->toHtml().count(QLatin1String("color:#009265")), 1);
    const QList<LogCapture::Line> lines = log.startingWith(QStringLiteral("can not find user info:"));
    QCOMPARE(lines.size(), 1);
    QCOMPARE(lines.first().text, QStringLiteral("can not find user info: 77"));
    QCOMPARE(lines.first().type, QtInfoMsg);
    QVERIFY2(lines.first().file.endsWith(QLatin1String("src/plugins/im/VyrNotice/ExamNoticeWidget.cpp")),
             qPrintable(lines.first().file));
    QVERIFY(m_window->isVisible());
}

// The course's cover, rounded to 36 by 36, takes the place of the first picture.
void TestExamNoticeWidget::coverReplacesFirstPicture()
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
void TestExamNoticeWidget::buttonOrder_data()
{
    QTest::addColumn<QString>("which");
    QTest::addColumn<QString>("sequence");
    QTest::newRow("view details: track, emit, close")
        << "m_viewDetailsBtn"
        << "PushClick(check_up=true,visible=yes) details(501,7001,9001,visible=yes) close";
    QTest::newRow("later: track, close") << "m_laterBtn" << "PushClick(check_up=false,visible=yes) close";
    QTest::newRow("close button: the card closes, then track")
        << "closeBtn" << "close PushClick(check_up=false,visible=no)";
}

void TestExamNoticeWidget::buttonOrder()
{
    QFETCH(QString, which);
    QFETCH(QString, sequence);
    open();
    ExamRecorder recorder(m_window);
    QAbstractButton* target = which == QLatin1String("closeBtn")
                                  ? static_cast<QAbstractButton*>(H::closeButton(m_window))
                                  : button(m_window, which.toLatin1().constData());
    QTest::mouseClick(target, Qt::LeftButton);
    QCOMPARE(recorder.joined(), sequence);
    H::runDeferredDeletes();
    QVERIFY(m_window.isNull());
}

// The tracked map: the sentence as plain text, the test's scene literal, the title.
void TestExamNoticeWidget::clickPayload()
{
    open(4);
    const QString sentence = browser(m_window)->toPlainText();
    QTest::mouseClick(button(m_window, "m_viewDetailsBtn"), Qt::LeftButton);
    QCOMPARE(clicks().size(), 1);
    const QMap<QString, QVariant> data = clicks().first().second;
    QCOMPARE(data.value(QStringLiteral("push_body")).toString(), sentence);
    QCOMPARE(data.value(QStringLiteral("push_scenes")).toString(), kScene);
    QCOMPARE(data.value(QStringLiteral("check_up")), QVariant(true));
    QCOMPARE(data.value(QStringLiteral("push_title")).toString(), QStringLiteral("Test notice"));
    QCOMPARE(data.value(QStringLiteral("app_scene")).toString(), QStringLiteral("前台唤起"));
    QVERIFY(!QUuid(data.value(QStringLiteral("push_id")).toString()).isNull());
    QCOMPARE(data.size(), 6);
    // Being shown sent nothing before the click.
    QCOMPARE(VyrTrack::instance()->events().size(), 1);
}

// The engine's withdrawal and cluster deletion close only the window of this test and course.
void TestExamNoticeWidget::outsideSignals_data()
{
    QTest::addColumn<QString>("signal");
    QTest::addColumn<QList<quint64>>("ids");
    QTest::addColumn<bool>("closes");
    QTest::newRow("withdrawn: this test") << "exam" << QList<quint64>{kCourse, kExam} << true;
    QTest::newRow("withdrawn: other first argument, this test") << "exam" << QList<quint64>{1, kExam} << true;
    QTest::newRow("withdrawn: matching first argument, other test")
        << "exam" << QList<quint64>{kExam, kCourse} << false;
    QTest::newRow("withdrawn: other test") << "exam" << QList<quint64>{kCourse, 7002} << false;
    QTest::newRow("withdrawn: the course's id as second argument")
        << "exam" << QList<quint64>{kCourse, kCourse} << false;
    QTest::newRow("homework of the same id") << "homework" << QList<quint64>{kCourse, kExam} << false;
    QTest::newRow("cluster: only this course") << "cluster" << QList<quint64>{kCourse} << true;
    QTest::newRow("cluster: this course among others") << "cluster" << QList<quint64>{3, kCourse, 4} << true;
    QTest::newRow("cluster: without this course") << "cluster" << QList<quint64>{3, kExam, 4} << false;
    QTest::newRow("cluster: none") << "cluster" << QList<quint64>{} << false;
}

void TestExamNoticeWidget::outsideSignals()
{
    QFETCH(QString, signal);
    QFETCH(QList<quint64>, ids);
    QFETCH(bool, closes);
    open();
    if (signal == QLatin1String("exam"))
        ExamManager::instance()->withdrawExam(ids.value(0), ids.value(1));
    else if (signal == QLatin1String("homework"))
        HomeworkManager::instance()->withdrawHomework(ids.value(0), ids.value(1));
    else
        VyrEngine::ContactsEngine::instance()->deleteClusters(std::vector<quint64>(ids.begin(), ids.end()));
    QCoreApplication::processEvents();
    H::runDeferredDeletes();
    QCOMPARE(m_window.isNull(), closes);
    QVERIFY(VyrTrack::instance()->events().isEmpty());
}

// A withdrawal emitted right after construction acts only once the event loop runs.
void TestExamNoticeWidget::deleteRightAfterConstructionIsQueued()
{
    for (int which = 0; which < 2; ++which) {
        m_window = new ExamNoticeWidget(kStudent, 1, exam(), false);
        QSignalSpy destroyed(m_window.data(), &QObject::destroyed);
        ExamRecorder recorder(m_window);
        if (which == 0)
            ExamManager::instance()->withdrawExam(kCourse, kExam);
        else
            VyrEngine::ContactsEngine::instance()->deleteClusters({kCourse});
        QCOMPARE(recorder.joined(), QString());
        m_window->popNotice();
        QVERIFY(m_window->isVisible());
        QTRY_COMPARE(destroyed.count(), 1);
        QCOMPARE(recorder.joined(), QStringLiteral("close"));
    }
}

// The test window doesn't listen to user changes, not even of the logged-in user.
void TestExamNoticeWidget::userChangeIsNotWatched()
{
    VyrEngine::CoreEngine::instance()->setCurrentUid(5);
    VyrEngine::ContactsEngine::instance()->removeUser(kStudent);
    open(3, true);
    const QString before = browser(m_window)->toPlainText();
    VyrEngine::ContactsEngine::instance()->putUser(VyrEngine::UserInfo(kStudent, QStringLiteral("Li Lei")));
    VyrEngine::ContactsEngine::instance()->changeUsers({5, kStudent});
    QCoreApplication::processEvents();
    QCOMPARE(browser(m_window)->toPlainText(), before);
}

// A log-out closes the window at once and reports nothing.
void TestExamNoticeWidget::logOutCloses()
{
    open();
    emit ImSignalObject::instance()->signalLogOut();
    QVERIFY(!m_window->isVisible());
    H::runDeferredDeletes();
    QVERIFY(m_window.isNull());
    QVERIFY(VyrTrack::instance()->events().isEmpty());
}

// No record: the window closes quietly, and the engine signals that follow find nothing to compare.
void TestExamNoticeWidget::nullRecordClosesQuietly()
{
    LogCapture log;
    QPointer<ExamNoticeWidget> window = new ExamNoticeWidget(kStudent, 1, nullptr, true);
    ExamManager::instance()->withdrawExam(0, 0);
    VyrEngine::ContactsEngine::instance()->deleteClusters({0});
    QCoreApplication::processEvents();
    H::runDeferredDeletes();
    QVERIFY(window.isNull());
    QVERIFY(log.lines().isEmpty());
}

// With VYR_SCREENSHOT_DIR set, both sides are saved as pictures in both languages (to look at).
void TestExamNoticeWidget::screenshots()
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
            open(review ? 3 : 8, review);
            QImage canvas(368, 224, QImage::Format_ARGB32);
            canvas.fill(QColor(0xE9, 0xEC, 0xEF));
            QPainter painter(&canvas);
            painter.drawImage(20, 20, H::grabCard(m_window));
            painter.end();
            QVERIFY(canvas.save(
                QStringLiteral("%1/exam-%2-%3.png").arg(dir, review ? "review" : "work", language)));
            delete m_window;
        }
    }
}

QTEST_MAIN(TestExamNoticeWidget)
#include "tst_examnoticewidget.moc"
