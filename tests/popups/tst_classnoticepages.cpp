#include "AvatarManager.h"
#include "ClassAheadNoticeWidget.h"
#include "ClassNoticeWidget.h"
#include "ClassPrepareNoticeWidget.h"
#include "ClassStartNoticeWidget.h"
#include "ContactsEngine.h"
#include "CourseCover.h"
#include "CourseEngine.h"
#include "GlobalStyle.h"
#include "NoticeTranslator.h"
#include "PopupHarness.h"
#include "TestKit.h"
#include "VyrTrack.h"

#include <QLabel>
#include <QLayout>
#include <QPushButton>
#include <QScrollBar>
#include <QTextDocument>
#include <QTextBrowser>
#include <QtTest>

using namespace VyrEngine;
namespace H = PopupHarness;

namespace {

const qint64 kNow = 1800000000; // 2027-01-15 08:00 UTC
const quint64 kLesson = 42;
const quint64 kCourse = 500;
const quint64 kSchool = 7;
const char* const kPages[] = {"classAheadNotice", "classPrepareNotice", "classStartNotice"};

QSharedPointer<SnapshotLesson> snapshot(quint64 lessonId = kLesson)
{
    return CourseEngine::instance()->lessonSnapshot(lessonId);
}

QString pushBodyOf(QWidget* page)
{
    QString body;
    QMetaObject::invokeMethod(page, [&]() {
        if (auto* ahead = qobject_cast<ClassAheadNoticeWidget*>(page))
            body = ahead->pushBody();
        else if (auto* prepare = qobject_cast<ClassPrepareNoticeWidget*>(page))
            body = prepare->pushBody();
        else if (auto* start = qobject_cast<ClassStartNoticeWidget*>(page))
            body = start->pushBody();
    });
    return body;
}

QImage iconImage(QWidget* page)
{
    const QPixmap shown = H::label(page, "m_iconLabel")->pixmap(Qt::ReturnByValue);
    return shown.toImage().convertToFormat(QImage::Format_ARGB32);
}

int colorDistance(QRgb a, const QColor& b)
{
    return qAbs(qRed(a) - b.red()) + qAbs(qGreen(a) - b.green()) + qAbs(qBlue(a) - b.blue());
}

} // namespace

// The three pages: texts by time left, names, covers, layout and looks.
class TestClassNoticePages : public QObject
{
    Q_OBJECT
private slots:
    void initTestCase();
    void init();
    void cleanup();

    void aheadTextByTimeLeft_data();
    void aheadTextByTimeLeft();
    void prepareAndStartText_data();
    void prepareAndStartText();
    void nameSpanByCountry_data();
    void nameSpanByCountry();
    void nameEscapedInBrowserRawInPushBody();
    void longNameElidedInBrowserWholeInPushBody();
    void headingElidedTo200Pixels();
    void nullLessonSetsHeadingOnly();
    void pushBodyBeforeDataIsBrowserText();
    void coverLoadedAtEachPagesStep();
    void coverIsTheCoursesPicture();
    void startPageShowsDefaultAvatarFirst();
    void pixmapChangeOnlyForOwnCourse();
    void pageLayouts_data();
    void pageLayouts();
    void wordWrapAfterText_data();
    void wordWrapAfterText();
    void buttonColours();
    void chineseTexts();
    void screenshots();

private:
    ClassNoticeWidget* open(int type);
    QWidget* page(int index) { return m_window->findChild<QWidget*>(QLatin1String(kPages[index])); }
    QPointer<ClassNoticeWidget> m_window;
};

void TestClassNoticePages::initTestCase()
{
    QVERIFY(TestKit::loadTranslations(QStringLiteral("en")));
}

void TestClassNoticePages::init()
{
    TestKit::resetAll(kNow);
    H::useTestScreen();
    QLocale::setDefault(QLocale(QLocale::English, QLocale::UnitedStates));
    TestKit::putLesson(kLesson, QStringLiteral("Algebra"), kNow + 600, kCourse, 1, kSchool);
    ContactsEngine::instance()->putCluster(kCourse, QStringLiteral("Class 3A"));
}

void TestClassNoticePages::cleanup()
{
    delete m_window;
    H::runDeferredDeletes();
    TestKit::settle();
    QLocale::setDefault(QLocale(QLocale::English, QLocale::UnitedStates));
}

ClassNoticeWidget* TestClassNoticePages::open(int type)
{
    m_window = new ClassNoticeWidget(ClassNoticeWidget::ClassNoticeType(type), snapshot());
    m_window->popNotice();
    H::finish(H::animation(m_window, "m_showAnimation"));
    TestKit::settle();
    return m_window;
}

void TestClassNoticePages::aheadTextByTimeLeft_data()
{
    QTest::addColumn<qint64>("secondsLeft");
    QTest::addColumn<QString>("shown");
    QTest::addColumn<QString>("pushBody");
    QTest::newRow("3601: the date") << qint64(3601) << "\"Algebra\" will start at 2027-01-15 09:00"
                                    << "Algebra will start at 2027-01-15 09:00";
    QTest::newRow("3600: 60 minutes") << qint64(3600) << "\"Algebra\" will start in 60 minutes"
                                      << "Algebra will start in 60 minutes";
    QTest::newRow("600") << qint64(600) << "\"Algebra\" will start in 10 minutes" << "Algebra will start in 10 minutes";
    QTest::newRow("59: 0") << qint64(59) << "\"Algebra\" will start in 0 minutes" << "Algebra will start in 0 minutes";
    QTest::newRow("0") << qint64(0) << "\"Algebra\" will start in 0 minutes" << "Algebra will start in 0 minutes";
    QTest::newRow("-59: truncated to 0") << qint64(-59) << "\"Algebra\" will start in 0 minutes"
                                         << "Algebra will start in 0 minutes";
    QTest::newRow("-61: negative") << qint64(-61) << "\"Algebra\" will start in -1 minutes"
                                   << "Algebra will start in -1 minutes";
    QTest::newRow("-7200") << qint64(-7200) << "\"Algebra\" will start in -120 minutes"
                           << "Algebra will start in -120 minutes";
}

// Minutes (truncated towards zero, negative when past) up to 3600 s, the start date above; reported as sent.
void TestClassNoticePages::aheadTextByTimeLeft()
{
    QFETCH(qint64, secondsLeft);
    QFETCH(QString, shown);
    QFETCH(QString, pushBody);
    TestKit::putLesson(kLesson, QStringLiteral("Algebra"), kNow + secondsLeft, kCourse, 1, kSchool);
    open(0);
    QCOMPARE(H::browser(page(0))->toPlainText(), shown);
    QCOMPARE(pushBodyOf(page(0)), pushBody);
    const auto events = VyrTrack::instance()->events();
    QCOMPARE(events.size(), 1);
    QCOMPARE(events.first().first, QStringLiteral("PushSend"));
    QCOMPARE(events.first().second.value(QStringLiteral("push_body")).toString(), pushBody);
}

void TestClassNoticePages::prepareAndStartText_data()
{
    QTest::addColumn<int>("index");
    QTest::newRow("prepare") << 1;
    QTest::newRow("start") << 2;
}

// One template with the span only, whatever the time left.
void TestClassNoticePages::prepareAndStartText()
{
    QFETCH(int, index);
    TestKit::putLesson(kLesson, QStringLiteral("Algebra"), kNow + 7200, kCourse, 1, kSchool);
    open(index);
    QCOMPARE(H::browser(page(index))->toPlainText(), QStringLiteral("\"Algebra\" has started"));
    QCOMPARE(pushBodyOf(page(index)), QStringLiteral("Algebra has started"));
}

void TestClassNoticePages::nameSpanByCountry_data()
{
    QTest::addColumn<QLocale>("locale");
    QTest::addColumn<QString>("shown");
    QTest::newRow("United States: quotes") << QLocale(QLocale::English, QLocale::UnitedStates)
                                           << "\"Algebra\" has started";
    QTest::newRow("United Kingdom: quotes") << QLocale(QLocale::English, QLocale::UnitedKingdom)
                                            << "\"Algebra\" has started";
    QTest::newRow("China: non-breaking space") << QLocale(QLocale::Chinese, QLocale::China)
                                               << QString(QChar(0x00A0)) + "Algebra has started";
}

// The green span: quotes outside China, a non-breaking space in China.
void TestClassNoticePages::nameSpanByCountry()
{
    QFETCH(QLocale, locale);
    QFETCH(QString, shown);
    QLocale::setDefault(locale);
    open(2);
    QTextBrowser* browser = H::browser(page(2));
    // Raw text keeps the non-breaking space that plain text turns into a blank.
    QCOMPARE(browser->document()->toRawText(), shown);
    QVERIFY(browser->toHtml().contains(QLatin1String("#009265")));
}

// A name with markup is escaped in the browser and stands raw in the tracked text.
void TestClassNoticePages::nameEscapedInBrowserRawInPushBody()
{
    TestKit::putLesson(kLesson, QStringLiteral("<b>x</b>"), kNow + 3600, kCourse, 1, kSchool);
    open(0);
    QCOMPARE(H::browser(page(0))->toPlainText(), QStringLiteral("\"<b>x</b>\" will start in 60 minutes"));
    QCOMPARE(pushBodyOf(page(0)), QStringLiteral("<b>x</b> will start in 60 minutes"));
    QCOMPARE(VyrTrack::instance()->events().first().second.value(QStringLiteral("push_body")).toString(),
             QStringLiteral("<b>x</b> will start in 60 minutes"));
}

// The name is cut to 100 pixels in the browser and whole in the tracked text.
void TestClassNoticePages::longNameElidedInBrowserWholeInPushBody()
{
    const QString name = QStringLiteral("Advanced Mathematics for Engineers, Part Two");
    TestKit::putLesson(kLesson, name, kNow + 600, kCourse, 1, kSchool);
    open(1);
    const QString shown = H::browser(page(1))->toPlainText();
    QVERIFY2(shown.contains(QChar(0x2026)), qPrintable(shown));
    QVERIFY(!shown.contains(name));
    QCOMPARE(pushBodyOf(page(1)), name + QStringLiteral(" has started"));
}

// The heading is the window's name, cut at the right to 200 pixels.
void TestClassNoticePages::headingElidedTo200Pixels()
{
    ContactsEngine::instance()->putCluster(kCourse, QStringLiteral("A very long class group name that cannot fit in the heading"));
    open(0);
    for (int i = 0; i < 3; ++i) {
        auto* heading = page(i)->findChild<QLabel*>(QStringLiteral("m_headingLabel"));
        QVERIFY(heading->text().endsWith(QChar(0x2026)));
        QVERIFY(heading->fontMetrics().horizontalAdvance(heading->text()) <= 200);
    }
}

// A null lesson sets the heading and nothing else: no details are asked, no text, no tracking.
void TestClassNoticePages::nullLessonSetsHeadingOnly()
{
    open(0);
    CourseEngine::instance()->setHoldFutures(true);
    VyrTrack::instance()->clearEvents();
    auto* prepare = qobject_cast<ClassPrepareNoticeWidget*>(page(1));
    const QString before = H::browser(prepare)->toPlainText();
    prepare->setLessonData(QSharedPointer<SnapshotLesson>(), QStringLiteral("Heading only"));
    QCOMPARE(prepare->findChild<QLabel*>(QStringLiteral("m_headingLabel"))->text(), QStringLiteral("Heading only"));
    QCOMPARE(CourseEngine::instance()->pendingFutureCount(), 0);
    QCOMPARE(H::browser(prepare)->toPlainText(), before);
    QVERIFY(VyrTrack::instance()->events().isEmpty());
}

// Before any data, pushBody is the browser's plain text.
void TestClassNoticePages::pushBodyBeforeDataIsBrowserText()
{
    CourseEngine::instance()->setHoldFutures(true);
    m_window = new ClassNoticeWidget(ClassNoticeWidget::AheadNotice, snapshot());
    for (int i = 0; i < 3; ++i) {
        QCOMPARE(pushBodyOf(page(i)), QString());
        H::browser(page(i))->setPlainText(QStringLiteral("typed %1").arg(i));
        QCOMPARE(pushBodyOf(page(i)), QStringLiteral("typed %1").arg(i));
    }
}

// Ahead loads the cover before its text, prepare after it, start first of all.
void TestClassNoticePages::coverLoadedAtEachPagesStep()
{
    CourseEngine::instance()->setHoldFutures(true);
    m_window = new ClassNoticeWidget(ClassNoticeWidget::AheadNotice, snapshot());
    QStringList seen;
    connect(CourseEngine::instance(), &CourseEngine::coursePixmapAsked, m_window, [&](quint64 courseId) {
        QCOMPARE(courseId, quint64(kCourse));
        QStringList filled;
        for (int i = 0; i < 3; ++i)
            filled << (H::browser(page(i))->toPlainText().isEmpty() ? QStringLiteral("-") : QStringLiteral("text"));
        seen << filled.join(QLatin1Char(','));
    });
    CourseEngine::instance()->finishPendingFutures();
    TestKit::settle();
    QCOMPARE(seen, (QStringList{QStringLiteral("-,-,-"), QStringLiteral("text,text,-"), QStringLiteral("text,text,-")}));
}

// The cover is the course's picture, rounded to 36 x 36.
void TestClassNoticePages::coverIsTheCoursesPicture()
{
    open(0);
    for (int i = 0; i < 3; ++i) {
        const QImage icon = iconImage(page(i));
        QVERIFY(!icon.isNull());
        QCOMPARE(icon.size() / icon.devicePixelRatio(), QSize(36, 36));
        QCOMPARE(qAlpha(icon.pixel(0, 0)), 0);
        QVERIFY(colorDistance(icon.pixel(6, 6), CourseCover::baseColor(kCourse)) < 60);
    }
}

// The start page shows the default cluster picture until its first cover arrives.
void TestClassNoticePages::startPageShowsDefaultAvatarFirst()
{
    CourseEngine::instance()->setHoldFutures(true);
    m_window = new ClassNoticeWidget(ClassNoticeWidget::StartNotice, snapshot());
    const QImage first = iconImage(page(2));
    QVERIFY(!first.isNull());
    QVERIFY(colorDistance(first.pixel(6, 6), AvatarManager::generatedColor(0)) < 40);
    QVERIFY(H::label(page(0), "m_iconLabel")->pixmap(Qt::ReturnByValue).isNull());
    QVERIFY(H::label(page(1), "m_iconLabel")->pixmap(Qt::ReturnByValue).isNull());
    CourseEngine::instance()->finishPendingFutures();
    TestKit::settle();
    QVERIFY(colorDistance(iconImage(page(2)).pixel(6, 6), CourseCover::baseColor(kCourse)) < 60);
}

// A new cover for another course or school leaves the picture; for the page's own it is loaded again.
void TestClassNoticePages::pixmapChangeOnlyForOwnCourse()
{
    open(0);
    const QImage before = iconImage(page(0));
    QPixmap red(96, 96);
    red.fill(Qt::red);
    CourseEngine::instance()->putCoursePixmap(kSchool, 501, red);
    CourseEngine::instance()->putCoursePixmap(8, kCourse, red);
    for (int i = 0; i < 3; ++i)
        QCOMPARE(iconImage(page(i)), before);
    CourseEngine::instance()->putCoursePixmap(kSchool, kCourse, red);
    for (int i = 0; i < 3; ++i)
        QCOMPARE(iconImage(page(i)).pixel(18, 18), qRgb(255, 0, 0));
}

void TestClassNoticePages::pageLayouts_data()
{
    QTest::addColumn<int>("index");
    QTest::addColumn<QString>("heading");
    QTest::addColumn<QString>("enterText");
    QTest::addColumn<bool>("hasLater");
    QTest::newRow("ahead") << 0 << "Lesson Notice" << "Got it" << false;
    QTest::newRow("prepare") << 1 << "Class is starting" << "Enter class" << true;
    QTest::newRow("start") << 2 << "Class is starting" << "Enter class" << true;
}

// Sizes, texts, styles, fonts, accessible names and margins of each page before any data.
void TestClassNoticePages::pageLayouts()
{
    QFETCH(int, index);
    QFETCH(QString, heading);
    QFETCH(QString, enterText);
    QFETCH(bool, hasLater);
    CourseEngine::instance()->setHoldFutures(true);
    ContactsEngine::instance()->clear();
    m_window = new ClassNoticeWidget(ClassNoticeWidget::AheadNotice, QSharedPointer<SnapshotLesson>());
    QWidget* p = page(index);
    QCOMPARE(p->layout()->contentsMargins(), QMargins(24, 12, 24, 20));
    QCOMPARE(H::label(p, "m_iconLabel")->size(), QSize(36, 36));
    auto* title = p->findChild<QLabel*>(QStringLiteral("m_headingLabel"));
    QCOMPARE(title->text(), heading);
    QCOMPARE(title->height(), 19);
    QCOMPARE(title->property("PropertyStyle").toString(), QStringLiteral("QLabel_MessageTitle"));
    QCOMPARE(title->font().pixelSize(), 14);
    QCOMPARE(title->font().weight(), int(QFont::Medium));
    QTextBrowser* browser = H::browser(p);
    QCOMPARE(browser->property("PropertyStyle").toString(), QStringLiteral("QLabel_MessageContent"));
    QCOMPARE(browser->font().pixelSize(), 13);
    QCOMPARE(browser->horizontalScrollBarPolicy(), Qt::ScrollBarAlwaysOff);
    QCOMPARE(browser->verticalScrollBarPolicy(), Qt::ScrollBarAlwaysOff);
    QCOMPARE(browser->wordWrapMode(), QTextOption::WrapAnywhere);
    QCOMPARE(browser->document()->defaultTextOption().wrapMode(), QTextOption::WrapAnywhere);
    auto* enter = p->findChild<QPushButton*>(QStringLiteral("enterClassBtn"));
    QCOMPARE(enter->size(), QSize(86, 26));
    QCOMPARE(enter->text(), enterText);
    QCOMPARE(enter->accessibleName(), enterText);
    QCOMPARE(enter->font().pixelSize(), 13);
    QCOMPARE(enter->property("GlobalStyle").toString(), QStringLiteral("QPushButton_IMButton_Style1"));
    auto* later = p->findChild<QPushButton*>(QStringLiteral("m_laterBtn"));
    QCOMPARE(bool(later), hasLater);
    if (later) {
        QCOMPARE(later->size(), QSize(86, 26));
        QCOMPARE(later->text(), QStringLiteral("Later"));
        QCOMPARE(later->accessibleName(), QStringLiteral("Later"));
        QCOMPARE(later->property("GlobalStyle").toString(), QStringLiteral("QPushButton_IMButton_Style4"));
    }
}

void TestClassNoticePages::wordWrapAfterText_data()
{
    QTest::addColumn<int>("index");
    QTest::addColumn<int>("mode");
    QTest::newRow("ahead unchanged") << 0 << int(QTextOption::WrapAnywhere);
    QTest::newRow("prepare at word boundary") << 1 << int(QTextOption::WrapAtWordBoundaryOrAnywhere);
    QTest::newRow("start at word boundary") << 2 << int(QTextOption::WrapAtWordBoundaryOrAnywhere);
}

// After the text is set, prepare and start wrap at word boundaries; ahead keeps wrapping anywhere.
void TestClassNoticePages::wordWrapAfterText()
{
    QFETCH(int, index);
    QFETCH(int, mode);
    open(index);
    QCOMPARE(int(H::browser(page(index))->wordWrapMode()), mode);
}

// The enter button is the green of the name span, the later button white with a grey outline.
void TestClassNoticePages::buttonColours()
{
    open(1);
    const QImage image = H::grabCard(m_window);
    auto* enter = page(1)->findChild<QPushButton*>(QStringLiteral("enterClassBtn"));
    auto* later = page(1)->findChild<QPushButton*>(QStringLiteral("m_laterBtn"));
    const QPoint e = enter->mapTo(m_window, QPoint(0, 0));
    const QPoint l = later->mapTo(m_window, QPoint(0, 0));
    QCOMPARE(QColor(image.pixel(e + QPoint(4, 13))), QColor(0x00, 0x92, 0x65));
    QCOMPARE(QColor(image.pixel(e + QPoint(80, 4))), QColor(0x00, 0x92, 0x65));
    QCOMPARE(QColor(image.pixel(l + QPoint(4, 13))), QColor(Qt::white));
    QCOMPARE(QColor(image.pixel(l + QPoint(0, 13))), QColor(0xD0, 0xD3, 0xD6));
    // The button row stands inside the white card, 6 + 24 pixels from its right edge.
    QCOMPARE(l.x() + 86, 328 - 10 - 24 - 6);
}

// In Chinese the pages read in Chinese, with the name after a non-breaking space.
void TestClassNoticePages::chineseTexts()
{
    QVERIFY(TestKit::loadTranslations(QStringLiteral("zh_CN")));
    QLocale::setDefault(QLocale(QLocale::Chinese, QLocale::China));
    open(1);
    QCOMPARE(page(1)->findChild<QPushButton*>(QStringLiteral("enterClassBtn"))->text(), QStringLiteral("进入教室"));
    QCOMPARE(page(1)->findChild<QPushButton*>(QStringLiteral("m_laterBtn"))->text(), QStringLiteral("稍后"));
    QCOMPARE(page(0)->findChild<QPushButton*>(QStringLiteral("enterClassBtn"))->text(), QStringLiteral("知道了"));
    QCOMPARE(H::browser(page(1))->document()->toRawText(), QString(QChar(0x00A0)) + QStringLiteral("Algebra 已开始上课"));
    QCOMPARE(H::titleLabel(m_window)->text(), QStringLiteral("上课提醒"));
    QVERIFY(TestKit::loadTranslations(QStringLiteral("en")));
}

// With VYR_SCREENSHOT_DIR set, each page is saved as a picture in both languages (to look at).
void TestClassNoticePages::screenshots()
{
    const QString dir = H::screenshotDir();
    if (dir.isEmpty())
        QSKIP("VYR_SCREENSHOT_DIR not set");
    for (const QString& language : {QStringLiteral("en"), QStringLiteral("zh_CN")}) {
        QVERIFY(H::useLanguage(language));
        for (int type = 0; type < 3; ++type) {
            TestKit::putLesson(kLesson, language == QLatin1String("en") ? QStringLiteral("Algebra: quadratic equations")
                                                                        : QStringLiteral("代数：一元二次方程"),
                               kNow + 600, kCourse, 1, kSchool);
            open(type);
            QVERIFY(H::saveOnCanvas(
                m_window, QStringLiteral("%1/class-%2-%3.png").arg(dir, QString::number(type), language)));
            delete m_window;
            H::runDeferredDeletes();
        }
    }
    QVERIFY(TestKit::loadTranslations(QStringLiteral("en")));
}

QTEST_MAIN(TestClassNoticePages)
#include "tst_classnoticepages.moc"
