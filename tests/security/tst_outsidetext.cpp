#include "ClassNoticeWidget.h"
#include "ContactsEngine.h"
#include "CoreEngine.h"
#include "CourseEngine.h"
#include "ExamNoticeWidget.h"
#include "FriendRequestFixture.h"
#include "FriendRequestModel.h"
#include "HomeworkNoticeWidget.h"
#include "MicroCourseNoticeWidget.h"
#include "NoticeEngine.h"
#include "NoticeRemindNoticeWidget.h"
#include "NoticeRemindText_p.h"
#include "OutsideText_p.h"
#include "ResourceSpy.h"
#include "StudyActivityNoticeWidget.h"
#include "StudyReportNoticeWidget.h"
#include "TestKit.h"
#include "UserInfo.h"
#include "VyrModalAnswerer.h"
#include "VyrSettings.h"
#include "friendrequesttreeview.h"

#include <QJsonObject>
#include <QLabel>
#include <QPointer>
#include <QTemporaryDir>
#include <QTextBrowser>
#include <QTextDocument>
#include <QtTest>
#include <functional>
#include <memory>

using namespace VyrEngine;

namespace {

constexpr quint64 kSchool = 7;
constexpr quint64 kCourse = 640;
constexpr quint64 kLesson = 8100;
constexpr quint64 kUser = 9001;
constexpr quint64 kStudent = 9002;
constexpr quint64 kPeer = 2001;
constexpr qint64 kNow = 1800000000;
const QString kOrdinary = QStringLiteral("Class 3A");

// What a person reads in a label: its text as typed when the label takes it
// as plain text, otherwise the text of the markup it renders.
QString readOf(const QLabel* label)
{
    const bool plain = label->textFormat() == Qt::PlainText
                       || (label->textFormat() == Qt::AutoText && !Qt::mightBeRichText(label->text()));
    if (plain)
        return label->text();
    QTextDocument document;
    document.setHtml(label->text());
    return document.toPlainText();
}

QString readOf(const QTextBrowser* browser)
{
    return browser->toPlainText();
}

QString elided(const QWidget* widget, const QString& text, int width)
{
    return widget->fontMetrics().elidedText(text, Qt::ElideRight, width);
}

QString nestedTables(int depth)
{
    return QStringLiteral("<table><tr><td>").repeated(depth) + QStringLiteral("x")
           + QStringLiteral("</td></tr></table>").repeated(depth);
}

// A label or browser of a window, and the words it must show.
struct Shown
{
    std::unique_ptr<QWidget> window;
    QLabel* label = nullptr;
    QTextBrowser* browser = nullptr;
    QString expected;
};

QSharedPointer<AppendixDataPod> appendix()
{
    auto pod = QSharedPointer<AppendixDataPod>::create();
    pod->activityId = 31;
    pod->activityType = 1;
    pod->courseData = QSharedPointer<ActivityCourseDataPod>::create();
    pod->courseData->courseId = kCourse;
    return pod;
}

QSharedPointer<StudyActivityNoticeWidgetDisplayPod> display(const QString& title, const QString& heading)
{
    return QSharedPointer<StudyActivityNoticeWidgetDisplayPod>::create(
        title, QStringLiteral("Read chapter 4"), true, false, true, QStringLiteral("a"), false, QStringLiteral("b"),
        QStringLiteral("c"), false, true, false, true, heading, QStringLiteral("scene"), QStringLiteral("body"), true);
}

QSharedPointer<SnapshotLesson> lesson(const QString& lessonName = QStringLiteral("Algebra"))
{
    const SnapshotLesson snapshot = TestKit::putLesson(kLesson, lessonName, kNow + 600, kCourse, 1, kSchool);
    return QSharedPointer<SnapshotLesson>::create(snapshot);
}

template <typename T>
T* child(QWidget* parent, const char* name)
{
    return parent->findChild<T*>(QLatin1String(name));
}

// The class notice's heading on page `page`, the name coming from the cluster.
Shown classHeading(const char* page, const QString& name)
{
    ContactsEngine::instance()->putCluster(kCourse, name);
    Shown shown;
    shown.window = std::make_unique<ClassNoticeWidget>(ClassNoticeWidget::AheadNotice, lesson());
    shown.label = child<QLabel>(child<QWidget>(shown.window.get(), page), "m_headingLabel");
    shown.expected = elided(shown.label, name, 200);
    return shown;
}

Shown studyReportHeading(const QString& name)
{
    ContactsEngine::instance()->putCluster(kCourse, name);
    Shown shown;
    shown.window = std::make_unique<StudyReportNoticeWidget>(lesson());
    shown.label = child<QLabel>(shown.window.get(), "m_headingLabel");
    shown.expected = elided(shown.label, name, 200);
    return shown;
}

Shown activityTitle(const QString& title)
{
    Shown shown;
    shown.window = std::make_unique<StudyActivityNoticeWidget>(appendix(), display(title, QStringLiteral("Week")));
    shown.label = child<QLabel>(shown.window.get(), "titleLabel");
    shown.expected = title;
    return shown;
}

Shown activityHeading(const QString& heading)
{
    Shown shown;
    shown.window = std::make_unique<StudyActivityNoticeWidget>(appendix(), display(QStringLiteral("Task"), heading));
    shown.label = child<QLabel>(shown.window.get(), "m_headingLabel");
    shown.expected = elided(shown.label, heading, 200);
    return shown;
}

Shown microCourseHeading(const QString& name)
{
    QJsonObject info;
    info.insert(QStringLiteral("auditStatus"), 4);
    info.insert(QStringLiteral("lectureName"), name);
    Shown shown;
    shown.window = std::make_unique<MicroCourseNoticeWidget>(1, 2, info);
    shown.label = child<QLabel>(shown.window.get(), "m_headingLabel");
    shown.expected = elided(shown.label, name, 180);
    return shown;
}

Shown remindClusterName(const QString& name)
{
    ContactsEngine::instance()->putCluster(kCourse, name);
    Shown shown;
    shown.window = std::make_unique<NoticeRemindNoticeWidget>(QStringLiteral("Bring a pen"), 1, kCourse, kStudent);
    shown.label = child<QLabel>(shown.window.get(), "clusterNameLabel");
    QFont font;
    font.setWeight(50);
    font.setPixelSize(14);
    shown.expected = QFontMetrics(font).elidedText(name.simplified(), Qt::ElideRight, 215);
    return shown;
}

Shown remindMessage(const QString& message)
{
    ContactsEngine::instance()->putCluster(kCourse, kOrdinary);
    ContactsEngine::instance()->setClusterMemberNickname(kCourse, kStudent, QStringLiteral("Ann"));
    Shown shown;
    shown.window = std::make_unique<NoticeRemindNoticeWidget>(message, 1, kCourse, kStudent);
    shown.label = child<QLabel>(shown.window.get(), "messageContentLabel");
    shown.expected = NoticeRemindText::compose(QStringLiteral("Ann"), message);
    return shown;
}

// The sentence of the ahead page: the lesson's name in its escaped span.
Shown classSentence(const QString& lessonName)
{
    ContactsEngine::instance()->putCluster(kCourse, kOrdinary);
    Shown shown;
    shown.window = std::make_unique<ClassNoticeWidget>(ClassNoticeWidget::AheadNotice, lesson(lessonName));
    TestKit::settle();
    shown.browser = child<QTextBrowser>(child<QWidget>(shown.window.get(), "classAheadNotice"), "m_contentBrowser");
    shown.expected = QLatin1Char('"') + elided(shown.browser, lessonName, 100) + QLatin1Char('"');
    return shown;
}

Shown studyReportSentence(const QString& lessonName)
{
    ContactsEngine::instance()->putCluster(kCourse, kOrdinary);
    Shown shown;
    shown.window = std::make_unique<StudyReportNoticeWidget>(lesson(lessonName));
    TestKit::settle();
    shown.label = child<QLabel>(shown.window.get(), "m_contentLabel");
    shown.expected = QLatin1Char('"') + elided(shown.label, lessonName, 100) + QLatin1Char('"');
    return shown;
}

// A test or homework record of the course, with its id in `idField`.
template <class Record>
std::shared_ptr<Record> courseWork(quint64 Record::*idField, quint64 id, const QString& title)
{
    auto info = std::make_shared<Record>();
    info->courseId = kCourse;
    info.get()->*idField = id;
    info->name = title;
    return info;
}

std::shared_ptr<ExamInfo> examNamed(const QString& title)
{
    return courseWork(&ExamInfo::examId, 5, title);
}

std::shared_ptr<HomeworkEntity> homeworkNamed(const QString& title)
{
    return courseWork(&HomeworkEntity::homeworkId, 6, title);
}

// A test or homework card: on the working side its sentence quotes `shownName`
// (the title); on the review side it names the submitting user.
template <class Notice, class Record>
Shown courseWorkCard(std::shared_ptr<Record> info, const QString& shownName, bool reviewSide)
{
    Shown shown;
    shown.window = std::make_unique<Notice>(reviewSide ? kStudent : kUser, reviewSide ? 3 : 1, info, reviewSide);
    shown.browser = child<QTextBrowser>(shown.window.get(), "m_contentBrowser");
    const QString name = elided(shown.browser, shownName, 100);
    shown.expected = reviewSide ? name : QString(QLatin1Char('"') + name + QLatin1Char('"'));
    return shown;
}

Shown examSentence(const QString& title)
{
    return courseWorkCard<ExamNoticeWidget>(examNamed(title), title, false);
}

Shown examReviewer(const QString& userName)
{
    ContactsEngine::instance()->putUser(UserInfo(kStudent, userName));
    return courseWorkCard<ExamNoticeWidget>(examNamed(QStringLiteral("Algebra")), userName, true);
}

Shown homeworkSentence(const QString& title)
{
    return courseWorkCard<HomeworkNoticeWidget>(homeworkNamed(title), title, false);
}

Shown homeworkReviewer(const QString& userName)
{
    ContactsEngine::instance()->putUser(UserInfo(kStudent, userName));
    return courseWorkCard<HomeworkNoticeWidget>(homeworkNamed(QStringLiteral("Essay")), userName, true);
}

using Builder = std::function<Shown(const QString&)>;

// Every label that shows a name or a server's words as typed.
const QList<QPair<QString, Builder>>& plainPlaces()
{
    static const QList<QPair<QString, Builder>> places = {
        {QStringLiteral("ahead"), [](const QString& s) { return classHeading("classAheadNotice", s); }},
        {QStringLiteral("prepare"), [](const QString& s) { return classHeading("classPrepareNotice", s); }},
        {QStringLiteral("start"), [](const QString& s) { return classHeading("classStartNotice", s); }},
        {QStringLiteral("report"), studyReportHeading},
        {QStringLiteral("actTitle"), activityTitle},
        {QStringLiteral("actHeading"), activityHeading},
        {QStringLiteral("micro"), microCourseHeading},
        {QStringLiteral("remindCluster"), remindClusterName},
        {QStringLiteral("remindMessage"), remindMessage},
    };
    return places;
}

// Every sentence that holds a name in the library's own markup, escaped.
const QList<QPair<QString, Builder>>& spanPlaces()
{
    static const QList<QPair<QString, Builder>> places = {
        {QStringLiteral("classText"), classSentence},
        {QStringLiteral("reportText"), studyReportSentence},
        {QStringLiteral("examText"), examSentence},
        {QStringLiteral("examReviewer"), examReviewer},
        {QStringLiteral("homeworkText"), homeworkSentence},
        {QStringLiteral("homeworkReviewer"), homeworkReviewer},
    };
    return places;
}

Builder builderOf(const QList<QPair<QString, Builder>>& places, const QString& name)
{
    for (const auto& place : places) {
        if (place.first == name)
            return place.second;
    }
    return {};
}

} // namespace

// Names and texts from other people and servers, shown where the library shows them.
class TestOutsideText : public QObject
{
    Q_OBJECT
private slots:
    void initTestCase();
    void init();
    void cleanup();

    void autoFormatText_data();
    void autoFormatText();
    void labelsShowTheTextAsTyped_data();
    void labelsShowTheTextAsTyped();
    void spansShowTheNameAsTyped_data();
    void spansShowTheNameAsTyped();
    void ordinaryNamesKeepTheirSize_data();
    void ordinaryNamesKeepTheirSize();
    void boxesShowTheTextAsTyped_data();
    void boxesShowTheTextAsTyped();

private:
    void addInputRows(const QList<QPair<QString, Builder>>& places);
    QList<QPair<QString, QString>> inputs() const;
    void warmUp();
    QPoint prepareDeleteQuestion(const QString& nickname);
    void rightClick(const QPoint& pos);
    QString openBox(const std::function<void()>& action, Qt::TextFormat* format, QString* boxText);

    QTemporaryDir m_dir;
    QString m_picture;
    std::unique_ptr<FriendRequestTreeView> m_view;
};

void TestOutsideText::initTestCase()
{
    QVERIFY(TestKit::loadTranslations(QStringLiteral("en")));
    QVERIFY(m_dir.isValid());
    VyrSettings::setFolder(m_dir.path());
    // A real picture on the disk: a label that rendered markup would read it.
    m_picture = m_dir.filePath(QStringLiteral("LOCAL.png"));
    QImage picture(8, 8, QImage::Format_ARGB32);
    picture.fill(Qt::red);
    QVERIFY(picture.save(m_picture));
    VyrModalAnswerer::instance()->setCloseUnanswered(true);
    warmUp();
}

void TestOutsideText::init()
{
    TestKit::resetAll(kNow);
    QLocale::setDefault(QLocale(QLocale::English, QLocale::UnitedStates));
    CoreEngine::instance()->setCurrentUid(kUser);
    VyrModalAnswerer::instance()->clear();
}

void TestOutsideText::cleanup()
{
    m_view.reset();
    Fr::settle();
    QCoreApplication::sendPostedEvents(nullptr, QEvent::DeferredDelete);
    QCOMPARE(VyrModalAnswerer::instance()->pendingCount(), 0);
}

// Qt loads its plugins, fonts and styles once; that happens here, before any spy looks.
void TestOutsideText::warmUp()
{
    QTextDocument document;
    document.setHtml(QStringLiteral("<b>warm</b> <span style='color: #009265;'>&quot;up&quot;</span>"));
    document.setTextWidth(200);
    QVERIFY(document.size().width() > 0);
    for (const auto& places : {plainPlaces(), spanPlaces()}) {
        for (const auto& place : places) {
            TestKit::resetAll(kNow);
            Shown shown = place.second(kOrdinary);
            shown.window->show();
            QVERIFY(!shown.window->grab().isNull());
        }
    }
    TestKit::resetAll(kNow);
    QString ignored;
    Qt::TextFormat format = Qt::AutoText;
    const QPoint row = prepareDeleteQuestion(kOrdinary);
    openBox([&]() { rightClick(row); }, &format, &ignored);
    m_view.reset();
    Fr::settle();
}

QList<QPair<QString, QString>> TestOutsideText::inputs() const
{
    return {
        {QStringLiteral("zero"), QStringLiteral("<img src=/dev/zero>")},
        {QStringLiteral("local"), QStringLiteral("<img src=%1>").arg(m_picture)},
        {QStringLiteral("tables"), nestedTables(10)},
        {QStringLiteral("bold"), QStringLiteral("<b>x</b>")},
        {QStringLiteral("entity"), QStringLiteral("&lt;b&gt;")},
        {QStringLiteral("ordinary"), kOrdinary},
    };
}

void TestOutsideText::addInputRows(const QList<QPair<QString, Builder>>& places)
{
    QTest::addColumn<QString>("place");
    QTest::addColumn<QString>("input");
    for (const auto& place : places) {
        for (const auto& input : inputs())
            QTest::newRow(qPrintable(place.first + QLatin1Char('/') + input.first)) << place.first << input.second;
    }
}

// Text that would be taken for plain text stays as it is; any other shows exactly as typed.
void TestOutsideText::autoFormatText_data()
{
    QTest::addColumn<QString>("text");
    QTest::addColumn<bool>("unchanged");
    QTest::newRow("ordinary") << QStringLiteral("Delete the friend request from Ann?") << true;
    QTest::newRow("ampersand") << QStringLiteral("Tom & Jerry <3") << true;
    QTest::newRow("zero") << QStringLiteral("Delete <img src=/dev/zero>?") << false;
    QTest::newRow("bold") << QStringLiteral("<b>x</b>") << false;
    QTest::newRow("entity") << QStringLiteral("&lt;b&gt;") << false;
    QTest::newRow("tables") << nestedTables(10) << false;
    QTest::newRow("blanks") << QStringLiteral("<i>a</i>  b\n\nc\td") << false;
    QTest::newRow("link") << QStringLiteral("<a href=\"https://evil.example\">here</a>") << false;
}

void TestOutsideText::autoFormatText()
{
    QFETCH(QString, text);
    QFETCH(bool, unchanged);
    const QString shown = OutsideText::forAutoFormat(text);
    QCOMPARE(shown == text, unchanged);
    QLabel label;
    label.setText(shown);
    QCOMPARE(readOf(&label), text);
    // A converted text carries no element but its own span.
    if (!unchanged) {
        QTextDocument document;
        document.setHtml(shown);
        QCOMPARE(document.toHtml().count(QLatin1String("<img")), 0);
        QCOMPARE(document.toHtml().count(QLatin1String("<table")), 0);
        QCOMPARE(document.toHtml().count(QLatin1String("<a ")), 0);
    }
}

// Headings, titles and messages are plain labels: the text as typed, nothing loaded.
void TestOutsideText::labelsShowTheTextAsTyped_data()
{
    addInputRows(plainPlaces());
}

void TestOutsideText::labelsShowTheTextAsTyped()
{
    QFETCH(QString, place);
    QFETCH(QString, input);
    ResourceSpy spy;
    Shown shown = builderOf(plainPlaces(), place)(input);
    QVERIFY(shown.label);
    // Checked before anything is laid out, so a label that renders markup fails here.
    QCOMPARE(shown.label->textFormat(), Qt::PlainText);
    QCOMPARE(shown.label->text(), shown.expected);
    shown.window->show();
    QVERIFY(!shown.window->grab().isNull());
    QCOMPARE(readOf(shown.label), shown.expected);
    QVERIFY2(spy.outsideNames().isEmpty(), qPrintable(spy.outsideNames().join(QLatin1Char(' '))));
}

// Names inside the library's own markup are escaped: the name reads as typed, nothing loaded.
void TestOutsideText::spansShowTheNameAsTyped_data()
{
    addInputRows(spanPlaces());
}

void TestOutsideText::spansShowTheNameAsTyped()
{
    QFETCH(QString, place);
    QFETCH(QString, input);
    ResourceSpy spy;
    Shown shown = builderOf(spanPlaces(), place)(input);
    const QString read = shown.browser ? readOf(shown.browser) : readOf(shown.label);
    QVERIFY2(read.contains(shown.expected), qPrintable(read + QStringLiteral(" lacks ") + shown.expected));
    shown.window->show();
    QVERIFY(!shown.window->grab().isNull());
    QVERIFY2(spy.outsideNames().isEmpty(), qPrintable(spy.outsideNames().join(QLatin1Char(' '))));
}

// An ordinary name takes the same room as in a label that guesses the format.
void TestOutsideText::ordinaryNamesKeepTheirSize_data()
{
    QTest::addColumn<QString>("place");
    QTest::addColumn<QString>("input");
    for (const auto& place : plainPlaces()) {
        QTest::newRow(qPrintable(place.first)) << place.first << kOrdinary;
        QTest::newRow(qPrintable(place.first + QStringLiteral("/long")))
            << place.first << QStringLiteral("Advanced Mathematics for the Second Year, Group Seven and Eight");
    }
}

void TestOutsideText::ordinaryNamesKeepTheirSize()
{
    QFETCH(QString, place);
    QFETCH(QString, input);
    Shown shown = builderOf(plainPlaces(), place)(input);
    shown.window->show();
    QCoreApplication::processEvents();
    const QSize plainSize = shown.label->sizeHint();
    const QString plainText = shown.label->text();
    shown.label->setTextFormat(Qt::AutoText);
    QCOMPARE(shown.label->text(), plainText);
    QCOMPARE(shown.label->sizeHint(), plainSize);
}

// The page with one request from a person called `nickname`, the menu's Delete
// entry queued; returns where to right-click for the question.
QPoint TestOutsideText::prepareDeleteQuestion(const QString& nickname)
{
    Fr::resetKit();
    ContactsEngine::instance()->clear();
    ContactsEngine::instance()->putUser(UserInfo(kPeer, nickname, QStringLiteral("13800000001")));
    NoticeEngine::instance()->putFriendRequest(Fr::from(kPeer, 1, 0, Fr::at(0, 9)));
    m_view = std::make_unique<FriendRequestTreeView>();
    m_view->resize(640, 400);
    m_view->show();
    if (!QTest::qWaitForWindowExposed(m_view.get()))
        return {};
    m_view->initUiData();
    Fr::settle();
    m_view->expandAll();
    QApplication::processEvents();
    QModelIndex leaf;
    QAbstractItemModel* model = m_view->model();
    for (int g = 0; g < model->rowCount() && !leaf.isValid(); ++g) {
        const QModelIndex group = model->index(g, 0);
        if (model->rowCount(group) > 0)
            leaf = model->index(0, 0, group);
    }
    VyrModalAnswerer::instance()->chooseMenuEntry(qtTrId("ID_friendrequesttreeview_DeleteMessage", -1));
    return QPoint(400, m_view->visualRect(leaf).center().y());
}

void TestOutsideText::rightClick(const QPoint& pos)
{
    QTest::mouseMove(m_view->viewport(), pos);
    QTest::mouseClick(m_view->viewport(), Qt::RightButton, Qt::NoModifier, pos);
    QApplication::processEvents();
}

// Runs `action`, which opens one message box; returns what its label reads.
QString TestOutsideText::openBox(const std::function<void()>& action, Qt::TextFormat* format, QString* boxText)
{
    QString read;
    VyrModalAnswerer::instance()->answerWith([&](QWidget* modal) {
        auto* box = qobject_cast<QMessageBox*>(modal);
        auto* label = modal->findChild<QLabel*>(QStringLiteral("qt_msgbox_label"));
        if (box && label) {
            // Painted as the screen would, so any picture in it would be asked for.
            modal->grab();
            read = readOf(label);
            *format = label->textFormat();
            *boxText = box->text();
        }
        VyrModalAnswerer::closeModalOn(modal);
    });
    action();
    return read;
}

// The delete question and the engine's error box show the name and the text as typed.
void TestOutsideText::boxesShowTheTextAsTyped_data()
{
    QTest::addColumn<QString>("place");
    QTest::addColumn<QString>("input");
    for (const QString& place : {QStringLiteral("delete"), QStringLiteral("error")}) {
        for (const auto& input : inputs())
            QTest::newRow(qPrintable(place + QLatin1Char('/') + input.first)) << place << input.second;
    }
}

void TestOutsideText::boxesShowTheTextAsTyped()
{
    QFETCH(QString, place);
    QFETCH(QString, input);
    const bool isDelete = place == QLatin1String("delete");
    const QString expected =
        isDelete ? qtTrId("ID_friendrequesttreeview_IFDeleteFrindRequest", -1).arg(input) : input;
    if (!isDelete) {
        m_view = std::make_unique<FriendRequestTreeView>();
        m_view->show();
        QVERIFY(QTest::qWaitForWindowExposed(m_view.get()));
    }
    Qt::TextFormat format = Qt::PlainText;
    QString boxText;
    ResourceSpy spy;
    const QPoint row = isDelete ? prepareDeleteQuestion(input) : QPoint();
    const QString read = openBox(
        [&]() {
            if (isDelete)
                rightClick(row);
            else
                NoticeEngine::instance()->emitErrorNotice(input);
        },
        &format, &boxText);
    QCOMPARE(VyrModalAnswerer::instance()->seen().size(), isDelete ? 2 : 1);
    QCOMPARE(read, expected);
    // The box guesses the format; a text it takes for plain is handed over unchanged.
    QCOMPARE(format, Qt::AutoText);
    if (!Qt::mightBeRichText(expected))
        QCOMPARE(boxText, expected);
    QVERIFY2(spy.outsideNames().isEmpty(), qPrintable(spy.outsideNames().join(QLatin1Char(' '))));
}

QTEST_MAIN(TestOutsideText)
#include "tst_outsidetext.moc"
