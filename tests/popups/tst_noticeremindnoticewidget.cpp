#include "AvatarManager.h"
#include "ContactsEngine.h"
#include "ImSignalObject.h"
#include "LocalHttpServer.h"
#include "LogCapture.h"
#include "NoticeRemindNoticeWidget.h"
#include "NoticeRemindText_p.h"
#include "PixelProbe.h"
#include "PopupHarness.h"
#include "SimpleMessagePopup.h"
#include "TestKit.h"
#include "VyrHttpManager.h"
#include "VyrTrack.h"
#include "WaitingSpinnerWidget.h"

#include <QFontMetrics>
#include <QHBoxLayout>
#include <QJsonDocument>
#include <QJsonObject>
#include <QLabel>
#include <QPointer>
#include <QPropertyAnimation>
#include <QPushButton>
#include <QRandomGenerator>
#include <QSignalSpy>
#include <QTextLayout>
#include <QTimer>
#include <QToolButton>
#include <QVBoxLayout>
#include <QtTest>

#include <atomic>

namespace H = PopupHarness;

namespace {

const quint64 kContentId = 77;
const quint64 kGid = 5;
const quint64 kCreator = 9;
const QString kScene = QStringLiteral("学生端：收到通知二次提醒");
const QString kDeleted = QStringLiteral("This notice has been deleted");

QList<WaitingSpinnerWidget*> spinners(QWidget* window)
{
    return window->findChildren<WaitingSpinnerWidget*>();
}

// The spinner timeouts: direct children of the window running for 300 seconds.
QList<QTimer*> loadingTimers(QWidget* window)
{
    QList<QTimer*> found;
    for (QTimer* timer : window->findChildren<QTimer*>(QString(), Qt::FindDirectChildrenOnly)) {
        if (timer->interval() == 300000)
            found << timer;
    }
    return found;
}

QByteArray path()
{
    return VyrHttpManager::ClusterNoticeDetailsPath.toUtf8();
}

VyrDev::HttpReply hanging()
{
    VyrDev::HttpReply reply;
    reply.hang = true;
    return reply;
}

// The width a line shows: blanks at its end are not drawn. Measured in
// fractions, whole pixels only once the line is over: Qt's elidedText()
// rounds to whole pixels and may leave a cut line up to a fraction over the
// width asked, e.g. 215.7 for 215; that still ends in the 215th column.
int drawnWidth(const QString& line)
{
    QString shown = line;
    while (!shown.isEmpty() && shown.at(shown.size() - 1).isSpace())
        shown.chop(1);
    const qreal width = QFontMetricsF(NoticeRemindText::font()).horizontalAdvance(shown);
    return width < NoticeRemindText::LineWidth + 1 ? qMin(int(width), NoticeRemindText::LineWidth) : qCeil(width);
}

// `count` words "w1 w2 ...", for texts of a known length.
QString words(int count)
{
    QStringList list;
    for (int i = 1; i <= count; ++i)
        list << QStringLiteral("w%1").arg(i);
    return list.join(QLatin1Char(' '));
}

// How many lines `text` takes when laid out freely at the label's width.
int naturalLines(const QString& text)
{
    QTextLayout layout(text, NoticeRemindText::font());
    layout.beginLayout();
    int lines = 0;
    for (QTextLine line = layout.createLine(); line.isValid(); line = layout.createLine()) {
        line.setLineWidth(NoticeRemindText::LineWidth);
        ++lines;
    }
    layout.endLayout();
    return lines;
}

// The label's last line for `rest` when more follows than the line holds.
QString elidedLast(const QString& rest)
{
    return QFontMetrics(NoticeRemindText::font()).elidedText(rest + QStringLiteral("..."), Qt::ElideRight, 215);
}

// The most words "w1 w2 ..." that one 215-pixel line holds without eliding.
int wordsOnOneLine()
{
    const QFontMetrics metrics(NoticeRemindText::font());
    int count = 1;
    while (metrics.elidedText(words(count + 1), Qt::ElideRight, 215) == words(count + 1))
        ++count;
    return count;
}

// A random text of the kinds that reach the reminder from a cluster.
QString randomText(QRandomGenerator& random)
{
    static const QStringList pieces = {
        QStringLiteral("hello"), QStringLiteral("notice"), QStringLiteral("homework due Friday"),
        QStringLiteral("\n"), QStringLiteral("\n\n\n"), QStringLiteral("     "), QStringLiteral("\t"),
        QStringLiteral("班级通知：明天上午九点考试"), QStringLiteral("请家长签字"), QStringLiteral("😀"),
        QStringLiteral("👨‍👩‍👧‍👦"), QStringLiteral("🇨🇳"), QStringLiteral("<b>bold</b>"),
        QStringLiteral("<a href='x'>link</a> &amp;"), QStringLiteral("Supercalifragilisticexpialidocious"),
        QStringLiteral("ÄÖÜß"), QStringLiteral("مرحبا"), QStringLiteral("x"), QString()};
    QString text;
    const int parts = random.bounded(0, 25);
    for (int i = 0; i < parts; ++i) {
        const int kind = random.bounded(0, 10);
        if (kind == 0) {
            // A long word with no break in it.
            text += QString(random.bounded(1, 200), QChar(QLatin1Char('a' + random.bounded(0, 26))));
        } else if (kind == 1) {
            // Random code points of the basic plane, surrogates left out.
            const int length = random.bounded(1, 20);
            for (int c = 0; c < length; ++c) {
                ushort code = ushort(random.bounded(0x20, 0xD7FF));
                text += QChar(code);
            }
        } else {
            text += pieces.at(random.bounded(0, pieces.size()));
        }
        if (random.bounded(0, 2))
            text += QLatin1Char(' ');
    }
    return text;
}

// Calls back when the watched window gets its close event.
class CloseWatcher : public QObject
{
public:
    CloseWatcher(QWidget* window, std::function<void()> onClose)
        : m_onClose(std::move(onClose))
    {
        window->installEventFilter(this);
    }

protected:
    bool eventFilter(QObject*, QEvent* event) override
    {
        if (event->type() == QEvent::Close && m_onClose)
            m_onClose();
        return false;
    }

private:
    std::function<void()> m_onClose;
};

} // namespace

// The cluster notice reminder: its face, its two-line text, its buttons and the details request.
class TestNoticeRemindNoticeWidget : public QObject
{
    Q_OBJECT
private slots:
    void initTestCase();
    void init();
    void cleanup();

    void sizeTitleAndLabels();
    void buttonsTextsFontsAndStyles();
    void layoutOfContent();
    void avatarIsTheClustersRounded();
    void logsTheNicknameLookUp();
    void lineBreaksBecomeBlanks();
    void oneLineStaysWithoutEllipsis();
    void exactlyTwoLinesEndWithoutEllipsis();
    void longerTextEndsElided();
    void exactText_data();
    void exactText();
    void emptyAndHugeMessages_data();
    void emptyAndHugeMessages();
    void unknownNicknameGivesEmptyName();
    void unknownClusterLeavesNameEmpty();
    void clusterNameSimplifiedAndElided();
    void randomTextsStayWithinTwoLines();
    void laterClosesThenTracksFalse();
    void closeButtonTracksFalse();
    void viewStartsRequestSpinnerAndTracksAtOnce();
    void callbackBranches_data();
    void callbackBranches();
    void messageStandsWhereTheWindowStoodForThreeSeconds();
    void answerAfterTheWindowClosedIsDropped();
    void secondClickLeavesTheFirstSpinnerBehind();
    void spinnerTimeoutGoesBackToIdle();
    void holdTimerRunsOnDuringRequest();
    void stateTable_data();
    void stateTable();
    void spinnerDrawnOverTheCard();
    void chineseTexts();
    void viewDetailsSignalIsNeverEmitted();

private:
    NoticeRemindNoticeWidget* open(const QString& message = QStringLiteral("Bring your books"),
                                   quint64 gid = kGid, quint64 creator = kCreator);
    void clickView();

    QPointer<NoticeRemindNoticeWidget> m_window;
    VyrDev::LocalHttpServer* m_server = nullptr;
};

void TestNoticeRemindNoticeWidget::initTestCase()
{
    QVERIFY(TestKit::loadTranslations(QStringLiteral("en")));
}

void TestNoticeRemindNoticeWidget::init()
{
    TestKit::resetAll();
    AvatarManager::instance().clear();
    H::useTestScreen();
    auto* contacts = VyrEngine::ContactsEngine::instance();
    contacts->putCluster(kGid, QStringLiteral("Class 7A"));
    contacts->setClusterMemberNickname(kGid, kCreator, QStringLiteral("Ms Lin"));
    m_server = new VyrDev::LocalHttpServer();
    QVERIFY(m_server->start());
    VyrHttpManager::setBaseUrl(m_server->baseUrl());
    m_server->setReply(path(), hanging());
}

void TestNoticeRemindNoticeWidget::cleanup()
{
    delete m_window;
    H::runDeferredDeletes();
    // Releases held answers; they find no window any more.
    delete m_server;
    m_server = nullptr;
    QTRY_COMPARE(VyrHttpManager::pendingRequestCount(), 0);
    for (SimpleMessagePopup* popup : SimpleMessagePopup::openPopups())
        delete popup;
}

NoticeRemindNoticeWidget* TestNoticeRemindNoticeWidget::open(const QString& message, quint64 gid, quint64 creator)
{
    m_window = new NoticeRemindNoticeWidget(message, kContentId, gid, creator);
    m_window->popNotice();
    H::finish(H::animation(m_window, "m_showAnimation"));
    return m_window;
}

void TestNoticeRemindNoticeWidget::clickView()
{
    QTest::mouseClick(H::button(m_window, "viewNowBtn"), Qt::LeftButton);
}

// 308 by 164 plus the shadow; the title, the two labels' names, sizes, sheets and plain text.
void TestNoticeRemindNoticeWidget::sizeTitleAndLabels()
{
    open();
    QCOMPARE(m_window->size(), QSize(328, 184));
    QCOMPARE(m_window->minimumSize(), m_window->maximumSize());
    QCOMPARE(H::titleLabel(m_window)->text(), QStringLiteral("Notice"));
    QLabel* text = H::label(m_window, "messageContentLabel");
    QCOMPARE(text->size(), QSize(215, 40));
    QCOMPARE(text->textFormat(), Qt::PlainText);
    QCOMPARE(text->styleSheet(), QStringLiteral("QLabel#messageContentLabel{font-size: 14px;font-weight: 400;"
                                                "color: #232323;background-color:transparent;}"));
    QCOMPARE(text->text(), QStringLiteral("Ms Lin: Bring your books"));
    QLabel* name = H::label(m_window, "clusterNameLabel");
    QCOMPARE(name->size(), QSize(215, 20));
    QCOMPARE(name->textFormat(), Qt::PlainText);
    QCOMPARE(name->styleSheet(), QStringLiteral("QLabel#clusterNameLabel{font-size: 14px;font-weight: 400;"
                                                "color: #999999;background-color:transparent;}"));
    QCOMPARE(name->text(), QStringLiteral("Class 7A"));
}

// "View now" and "Later": names, 86 by 26, 13-pixel font, their theme styles.
void TestNoticeRemindNoticeWidget::buttonsTextsFontsAndStyles()
{
    open();
    QPushButton* view = H::button(m_window, "viewNowBtn");
    QPushButton* later = H::button(m_window, "m_laterBtn");
    QVERIFY(view && later);
    QCOMPARE(view->text(), QStringLiteral("View now"));
    QCOMPARE(later->text(), QStringLiteral("Later"));
    QCOMPARE(view->size(), QSize(86, 26));
    QCOMPARE(later->size(), QSize(86, 26));
    QCOMPARE(view->font().pixelSize(), 13);
    QCOMPARE(later->font().weight(), 50);
    QCOMPARE(view->property("GlobalStyle").toString(), QStringLiteral("QPushButton_IMButton_Style1"));
    QCOMPARE(later->property("GlobalStyle").toString(), QStringLiteral("QPushButton_IMButton_Style4"));
    QVERIFY(view->isEnabled());
}

// Avatar column, 12 pixels, text column; 12 pixels; the buttons at the right, 10 apart, 6 in.
void TestNoticeRemindNoticeWidget::layoutOfContent()
{
    open();
    auto* main = qobject_cast<QVBoxLayout*>(m_window->findChild<QWidget*>(QStringLiteral("contentWidget"))->layout());
    QVERIFY(main);
    QCOMPARE(main->contentsMargins(), QMargins(24, 12, 24, 20));
    QCOMPARE(main->spacing(), 0);
    QCOMPARE(main->count(), 3);
    QCOMPARE(main->itemAt(1)->spacerItem()->sizeHint().height(), 12);
    auto* buttons = qobject_cast<QHBoxLayout*>(main->itemAt(2)->layout());
    QCOMPARE(buttons->contentsMargins(), QMargins(0, 0, 6, 0));
    QCOMPARE(buttons->itemAt(1)->widget(), H::button(m_window, "viewNowBtn"));
    QCOMPARE(buttons->itemAt(2)->spacerItem()->sizeHint().width(), 10);
    QCOMPARE(buttons->itemAt(3)->widget(), H::button(m_window, "m_laterBtn"));

    auto at = [this](QWidget* child) { return QRect(child->mapTo(m_window, QPoint(0, 0)), child->size()); };
    // Content panel from (10, 40): margins 24 and 12.
    const QRect text = at(H::label(m_window, "messageContentLabel"));
    const QRect name = at(H::label(m_window, "clusterNameLabel"));
    QCOMPARE(text.topLeft(), QPoint(10 + 24 + 36 + 12, 40 + 12));
    // The column asks 40 + 6 + 20 pixels of the 64 the row has, so the gap gives up two.
    QCOMPARE(text.bottom(), 40 + 12 + 40 - 1);
    QCOMPARE(name.top(), text.bottom() + 1 + 4);
    const QRect view = at(H::button(m_window, "viewNowBtn"));
    const QRect later = at(H::button(m_window, "m_laterBtn"));
    QCOMPARE(later.right(), 10 + 308 - 1 - 24 - 6);
    QCOMPARE(later.left(), view.right() + 1 + 10);
    QCOMPARE(later.bottom(), 40 + 134 - 1 - 20);
}

// The 36-pixel avatar label holds the cluster's picture, rounded at the label's size.
void TestNoticeRemindNoticeWidget::avatarIsTheClustersRounded()
{
    AvatarManager::instance().putClusterAvatar(kGid, PixelProbe::pixmap(QSize(72, 72), Qt::red));
    AvatarManager::instance().putClusterAvatar(kGid + 1, PixelProbe::pixmap(QSize(72, 72), Qt::blue));
    open();
    QLabel* avatar = nullptr;
    for (QLabel* candidate : m_window->findChildren<QLabel*>()) {
        if (candidate->size() == QSize(36, 36))
            avatar = candidate;
    }
    QVERIFY(avatar);
    QVERIFY(avatar->objectName().isEmpty());
    const QImage image = avatar->pixmap(Qt::ReturnByValue).toImage().convertToFormat(QImage::Format_ARGB32);
    QCOMPARE(image.size(), QSize(36, 36));
    // Rounded: the corner is clear, the middle is painted.
    QVERIFY(qAlpha(image.pixel(0, 0)) < 255);
    QCOMPARE(qAlpha(image.pixel(18, 18)), 255);
    // The picture of this cluster, not another's nor a generated one.
    QCOMPARE(QColor(image.pixel(18, 18)), QColor(Qt::red));
    QCOMPARE(avatar->pixmap(Qt::ReturnByValue).devicePixelRatio(), qreal(avatar->devicePixelRatio()));
}

// The nickname look-up is logged with the cluster and the sender.
void TestNoticeRemindNoticeWidget::logsTheNicknameLookUp()
{
    LogCapture log;
    open();
    const QList<LogCapture::Line> lines = log.matching(QStringLiteral("get cluster member nickname, gid 5 creatorId: 9"));
    QCOMPARE(lines.size(), 1);
    QCOMPARE(lines[0].type, QtInfoMsg);
    QVERIFY(lines[0].file.endsWith(QLatin1String("src/plugins/im/VyrNotice/NoticeRemindNoticeWidget.cpp")));
}

// Line breaks become blanks: one paragraph, no break kept from the message.
void TestNoticeRemindNoticeWidget::lineBreaksBecomeBlanks()
{
    open(QStringLiteral("a\nb\n\nc"));
    QCOMPARE(H::label(m_window, "messageContentLabel")->text(), QStringLiteral("Ms Lin: a b  c"));
    QCOMPARE(NoticeRemindText::fit(QStringLiteral("x\ny")), QStringLiteral("x y"));
}

// A text that fits one line stays one line, no ellipsis.
void TestNoticeRemindNoticeWidget::oneLineStaysWithoutEllipsis()
{
    open(QStringLiteral("ok"));
    const QString text = H::label(m_window, "messageContentLabel")->text();
    QCOMPARE(text, QStringLiteral("Ms Lin: ok"));
    QVERIFY(!text.contains(QLatin1Char('\n')));
}

// The longest text that needs exactly two lines comes out whole, broken once, without an ellipsis.
void TestNoticeRemindNoticeWidget::exactlyTwoLinesEndWithoutEllipsis()
{
    int count = 1;
    while (naturalLines(QStringLiteral("Ms Lin: ") + words(count + 1)) <= 2)
        ++count;
    const QString message = words(count);
    QCOMPARE(naturalLines(QStringLiteral("Ms Lin: ") + message), 2);
    open(message);
    const QString text = H::label(m_window, "messageContentLabel")->text();
    QCOMPARE(text.count(QLatin1Char('\n')), 1);
    QVERIFY(!text.contains(QChar(0x2026)));
    QVERIFY(!text.endsWith(QLatin1String("...")));
    QCOMPARE(QString(text).remove(QLatin1Char('\n')), QStringLiteral("Ms Lin: ") + message);
}

// One word more than two lines hold: the second line ends in an ellipsis within 215 pixels.
void TestNoticeRemindNoticeWidget::longerTextEndsElided()
{
    open(words(80));
    const QString text = H::label(m_window, "messageContentLabel")->text();
    const QStringList lines = text.split(QLatin1Char('\n'));
    QCOMPARE(lines.size(), 2);
    QVERIFY(lines[1].endsWith(QChar(0x2026)));
    QVERIFY(drawnWidth(lines[1]) <= 215);
    QVERIFY(lines[0].startsWith(QLatin1String("Ms Lin: w1 w2")));
}

void TestNoticeRemindNoticeWidget::exactText_data()
{
    QTest::addColumn<QString>("nickname");
    QTest::addColumn<QString>("message");
    QTest::addColumn<QString>("expected");
    // One word wider than the line: nothing in it is a place to break.
    const QString longName = QStringLiteral("Featherstonehaughsworthingtonshire");
    const QString longWord = QString(80, QLatin1Char('W'));
    const int fit = wordsOnOneLine();
    QTest::newRow("one line") << "Ms Lin" << "ok" << "Ms Lin: ok";
    QTest::newRow("long word whole on line one") << longName << "hi" << longName + ": \nhi";
    QTest::newRow("long word, second line full")
        << longName << words(fit) << longName + ": \n" + words(fit);
    QTest::newRow("long word, second line over")
        << longName << words(fit + 1) << longName + ": \n" + elidedLast(words(fit + 1));
    QTest::newRow("long word moves to line two") << "Ms Lin" << longWord << "Ms Lin: \n" + elidedLast(longWord);
    QTest::newRow("long word after a short one")
        << "Ms Lin" << "x " + longWord + " y" << "Ms Lin: x \n" + elidedLast(longWord + " y");
    QTest::newRow("newlines fold") << "Ms Lin" << "a\nb\n\nc" << "Ms Lin: a b  c";
    QTest::newRow("newline before a long word")
        << "Ms Lin" << "x\n" + longWord << "Ms Lin: x \n" + elidedLast(longWord);
    QTest::newRow("newlines, second line full")
        << longName << QString(words(fit)).replace(QLatin1Char(' '), QLatin1Char('\n')) << longName + ": \n" + words(fit);
}

// The label's exact text: the layout's own word wrap, a word longer than the
// line whole on its line, the second line whole when it fits, else elided after "...".
void TestNoticeRemindNoticeWidget::exactText()
{
    QFETCH(QString, nickname);
    QFETCH(QString, message);
    QFETCH(QString, expected);
    QVERIFY(QFontMetrics(NoticeRemindText::font()).horizontalAdvance(QStringLiteral("Featherstonehaughsworthingtonshire:"))
            > 215);
    const quint64 sender = 31;
    VyrEngine::ContactsEngine::instance()->setClusterMemberNickname(kGid, sender, nickname);
    open(message, kGid, sender);
    QCOMPARE(H::label(m_window, "messageContentLabel")->text(), expected);
    QCOMPARE(NoticeRemindText::compose(nickname, message), expected);
}

void TestNoticeRemindNoticeWidget::emptyAndHugeMessages_data()
{
    QTest::addColumn<QString>("message");
    QTest::addColumn<QString>("expected"); // empty: checked by shape only
    QTest::newRow("empty") << QString() << QStringLiteral("Ms Lin: ");
    QTest::newRow("only breaks") << QStringLiteral("\n\n") << QStringLiteral("Ms Lin:   ");
    QTest::newRow("huge") << QString(200000, QLatin1Char('x')) << QString();
    QTest::newRow("huge words") << words(30000) << QString();
}

// An empty message leaves the name and colon; a huge one gives two lines, the second elided.
void TestNoticeRemindNoticeWidget::emptyAndHugeMessages()
{
    QFETCH(QString, message);
    QFETCH(QString, expected);
    open(message);
    const QString text = H::label(m_window, "messageContentLabel")->text();
    if (!expected.isNull()) {
        QCOMPARE(text, expected);
        return;
    }
    const QStringList lines = text.split(QLatin1Char('\n'));
    QCOMPARE(lines.size(), 2);
    QVERIFY(lines[1].endsWith(QChar(0x2026)));
    for (const QString& line : lines)
        QVERIFY(drawnWidth(line) <= 215);
}

// A sender the cluster doesn't know gives an empty name before ": "; the rest stands.
void TestNoticeRemindNoticeWidget::unknownNicknameGivesEmptyName()
{
    open(QStringLiteral("hi"), kGid, 12345);
    QCOMPARE(H::label(m_window, "messageContentLabel")->text(), QStringLiteral(": hi"));
    QCOMPARE(H::label(m_window, "clusterNameLabel")->text(), QStringLiteral("Class 7A"));
}

// An unknown cluster leaves the name label empty; text, avatar and buttons stand.
void TestNoticeRemindNoticeWidget::unknownClusterLeavesNameEmpty()
{
    open(QStringLiteral("hi"), 999, kCreator);
    QVERIFY(H::label(m_window, "clusterNameLabel")->text().isEmpty());
    QCOMPARE(H::label(m_window, "messageContentLabel")->text(), QStringLiteral(": hi"));
    QVERIFY(H::button(m_window, "viewNowBtn")->isVisible());
    QVERIFY(H::button(m_window, "m_laterBtn")->isVisible());
}

// The cluster name is simplified, then cut at 215 pixels with an ellipsis.
void TestNoticeRemindNoticeWidget::clusterNameSimplifiedAndElided()
{
    VyrEngine::ContactsEngine::instance()->putCluster(kGid, QStringLiteral("  Class \n  7A\t "));
    open();
    QCOMPARE(H::label(m_window, "clusterNameLabel")->text(), QStringLiteral("Class 7A"));
    delete m_window;
    VyrEngine::ContactsEngine::instance()->putCluster(kGid, words(60));
    open();
    const QString name = H::label(m_window, "clusterNameLabel")->text();
    QVERIFY(name.endsWith(QChar(0x2026)));
    QVERIFY(drawnWidth(name) <= 215);
    QVERIFY(name.startsWith(QLatin1String("w1 w2")));
}

// Thousands of random texts: never a crash, never more than two lines.
void TestNoticeRemindNoticeWidget::randomTextsStayWithinTwoLines()
{
    const quint32 seed = qEnvironmentVariableIsSet("VYR_TEST_SEED")
        ? quint32(qEnvironmentVariableIntValue("VYR_TEST_SEED"))
        : quint32(QDateTime::currentMSecsSinceEpoch());
    qInfo() << "random text seed:" << seed << "(set VYR_TEST_SEED to repeat)";
    QRandomGenerator random(seed);
    for (int i = 0; i < 4000; ++i) {
        const QString nickname = random.bounded(0, 4) ? randomText(random).left(20) : QString();
        const QString message = randomText(random);
        const QString text = NoticeRemindText::compose(nickname, message);
        const QStringList lines = text.split(QLatin1Char('\n'));
        QVERIFY2(lines.size() <= 2, qPrintable(QStringLiteral("seed %1, text %2").arg(seed).arg(i)));
    }
}

// "Later": the window closes first, then "PushClick" with "check_up" false and the label's text.
void TestNoticeRemindNoticeWidget::laterClosesThenTracksFalse()
{
    open();
    bool visibleWhenTracked = true;
    connect(VyrTrack::instance(), &VyrTrack::tracked, m_window,
            [this, &visibleWhenTracked]() { visibleWhenTracked = m_window->isVisible(); });
    QTest::mouseClick(H::button(m_window, "m_laterBtn"), Qt::LeftButton);
    QVERIFY(!visibleWhenTracked);
    QCOMPARE(H::clicks().size(), 1);
    const QMap<QString, QVariant> data = H::clicks()[0].second;
    QCOMPARE(data.value(QStringLiteral("push_body")).toString(), QStringLiteral("Ms Lin: Bring your books"));
    QCOMPARE(data.value(QStringLiteral("push_scenes")).toString(), kScene);
    QCOMPARE(data.value(QStringLiteral("check_up")), QVariant(false));
    QCOMPARE(data.value(QStringLiteral("push_title")).toString(), QStringLiteral("Notice"));
    QCOMPARE(data.size(), 6);
    H::runDeferredDeletes();
    QVERIFY(m_window.isNull());
    QCOMPARE(m_server->requestCount(), 0);
}

// The card's close button closes; the reminder only adds "check_up" false.
void TestNoticeRemindNoticeWidget::closeButtonTracksFalse()
{
    open();
    QTest::mouseClick(H::closeButton(m_window), Qt::LeftButton);
    QVERIFY(!m_window->isVisible());
    QCOMPARE(H::clicks().size(), 1);
    QCOMPARE(H::clicks()[0].second.value(QStringLiteral("check_up")), QVariant(false));
    QCOMPARE(H::clicks()[0].second.value(QStringLiteral("push_scenes")).toString(), kScene);
    H::runDeferredDeletes();
    QVERIFY(m_window.isNull());
}

// "View now": spinner with "Requesting...", a 300-second timer, the request, and "check_up" true at once.
void TestNoticeRemindNoticeWidget::viewStartsRequestSpinnerAndTracksAtOnce()
{
    open();
    clickView();
    QCOMPARE(spinners(m_window).size(), 1);
    WaitingSpinnerWidget* spinner = spinners(m_window)[0];
    QVERIFY(spinner->isSpinning());
    QVERIFY(spinner->isVisible());
    QCOMPARE(spinner->parentWidget(), m_window.data());
    QCOMPARE(spinner->text(), QStringLiteral("Requesting..."));
    QVERIFY(spinner->isTextVisible());
    QCOMPARE(spinner->innerRadius(), 4);
    QCOMPARE(spinner->lineLength(), 15);
    QCOMPARE(spinner->lineWidth(), 6);
    QCOMPARE(spinner->borderRadius(), 4.0);
    QCOMPARE(spinner->opacity(), 0.5);
    QCOMPARE(loadingTimers(m_window).size(), 1);
    QVERIFY(loadingTimers(m_window)[0]->isActive());
    // Tracked before any answer.
    QCOMPARE(H::clicks().size(), 1);
    QCOMPARE(H::clicks()[0].second.value(QStringLiteral("check_up")), QVariant(true));
    QCOMPARE(H::clicks()[0].second.value(QStringLiteral("push_body")).toString(),
             QStringLiteral("Ms Lin: Bring your books"));
    QTRY_COMPARE(m_server->requestCount(path()), 1);
    const VyrDev::HttpRequestRecord request = m_server->requests()[0];
    QCOMPARE(request.method, QByteArray("POST"));
    QCOMPARE(QJsonDocument::fromJson(request.body).object().value(QStringLiteral("content_id")).toString(),
             QStringLiteral("77"));
    QVERIFY(m_window->isVisible());
}

void TestNoticeRemindNoticeWidget::callbackBranches_data()
{
    QTest::addColumn<int>("status");
    QTest::addColumn<QByteArray>("body");
    QTest::addColumn<bool>("refused");
    QTest::addColumn<bool>("opened");
    QTest::addColumn<int>("errorNo");
    QTest::addColumn<bool>("withErrorText");

    QTest::newRow("errno 1") << 200 << QByteArray(R"({"error_info":{"errno":1,"error":"ok"}})") << false << true
                             << 1 << false;
    QTest::newRow("errno 0") << 200 << QByteArray(R"({"error_info":{"errno":0,"error":"deleted"}})") << false
                             << false << 0 << false;
    QTest::newRow("errno 404") << 200 << QByteArray(R"({"error_info":{"errno":404,"error":"gone"}})") << false
                               << false << 404 << false;
    QTest::newRow("errno as string") << 200 << QByteArray(R"({"error_info":{"errno":"1","error":""}})") << false
                                     << false << 0 << false;
    QTest::newRow("no error_info") << 200 << QByteArray(R"({"errno":1})") << false << false << 0 << false;
    QTest::newRow("not json") << 200 << QByteArray("<html>oops</html>") << false << false << 0 << false;
    QTest::newRow("empty body") << 200 << QByteArray() << false << false << 0 << false;
    QTest::newRow("http 500") << 500 << QByteArray(R"({"error_info":{"errno":1}})") << false << false << 1 << true;
    QTest::newRow("http 404") << 404 << QByteArray() << false << false << 1 << true;
    QTest::newRow("refused") << 0 << QByteArray() << true << false << 1 << true;
}

// Each answer: errno 1 opens the details and closes; everything else closes and says "deleted", logged.
void TestNoticeRemindNoticeWidget::callbackBranches()
{
    QFETCH(int, status);
    QFETCH(QByteArray, body);
    QFETCH(bool, refused);
    QFETCH(bool, opened);
    QFETCH(int, errorNo);
    QFETCH(bool, withErrorText);

    const QUrl url = m_server->url(VyrHttpManager::ClusterNoticeDetailsPath);
    if (refused)
        m_server->stop();
    else
        m_server->setReply(path(), VyrDev::HttpReply::json(body, status));
    open();
    QSignalSpy details(ImSignalObject::instance(), &ImSignalObject::signalViewClusterNoticeDetails);
    LogCapture log;
    const QPoint pos = m_window->pos();
    clickView();
    QTRY_VERIFY(!m_window || !m_window->isVisible());
    // The spinner and its timer are gone with the answer.
    if (m_window) {
        QVERIFY(spinners(m_window).isEmpty());
        QVERIFY(loadingTimers(m_window).isEmpty());
    }
    if (opened) {
        QCOMPARE(details.count(), 1);
        QCOMPARE(details[0][0].toInt(), 2);
        QCOMPARE(details[0][1].value<quint64>(), kContentId);
        QCOMPARE(log.matching(QStringLiteral("emit signalViewClusterNoticeDetails, m_contentId 77")).size(), 1);
        QVERIFY(SimpleMessagePopup::openPopups().isEmpty());
        QVERIFY(log.startingWith(QStringLiteral("url:")).isEmpty());
    } else {
        QCOMPARE(details.count(), 0);
        QCOMPARE(SimpleMessagePopup::openPopups().size(), 1);
        SimpleMessagePopup* popup = SimpleMessagePopup::openPopups()[0];
        QCOMPARE(popup->text(), kDeleted);
        QCOMPARE(popup->pos(), pos);
        const QList<LogCapture::Line> lines = log.startingWith(QStringLiteral("url:"));
        QCOMPARE(lines.size(), 1);
        QCOMPARE(lines[0].type, QtInfoMsg);
        const QString prefix = QStringLiteral("url:%1, errorNo=%2, errorString:").arg(url.toString()).arg(errorNo);
        QVERIFY2(lines[0].text.startsWith(prefix), qPrintable(lines[0].text));
        // The pod's error text, not the answer's "error".
        QCOMPARE(lines[0].text.size() > prefix.size(), withErrorText);
        QVERIFY(!lines[0].text.contains(QLatin1String("deleted")) && !lines[0].text.contains(QLatin1String("gone")));
    }
    H::runDeferredDeletes();
    QVERIFY(m_window.isNull());
}

// The message takes the window's place and size, and closes itself after 3 seconds.
void TestNoticeRemindNoticeWidget::messageStandsWhereTheWindowStoodForThreeSeconds()
{
    m_server->setReply(path(), VyrDev::HttpReply::json(R"({"error_info":{"errno":0}})"));
    open();
    m_window->move(123, 234);
    const QRect stood = m_window->geometry();
    clickView();
    QTRY_COMPARE(SimpleMessagePopup::openPopups().size(), 1);
    QPointer<SimpleMessagePopup> popup = SimpleMessagePopup::openPopups()[0];
    QCOMPARE(popup->geometry(), stood);
    QCOMPARE(popup->size(), QSize(328, 184));
    QCOMPARE(popup->durationMs(), 3000);
    QVERIFY(popup->isVisible());
    QTest::qWait(2700);
    QVERIFY(popup);
    QTRY_VERIFY_WITH_TIMEOUT(!popup, 2000);
}

// An answer that comes after the window has closed and gone is dropped: no message, no signal, no log.
void TestNoticeRemindNoticeWidget::answerAfterTheWindowClosedIsDropped()
{
    VyrDev::HttpReply slow = VyrDev::HttpReply::json(R"({"error_info":{"errno":1}})");
    slow.delayMs = 200;
    m_server->setReply(path(), slow);
    open();
    QSignalSpy details(ImSignalObject::instance(), &ImSignalObject::signalViewClusterNoticeDetails);
    LogCapture log;
    clickView();
    QTRY_COMPARE(m_server->requestCount(path()), 1);
    m_window->close();
    H::runDeferredDeletes();
    QVERIFY(m_window.isNull());
    QTRY_COMPARE(VyrHttpManager::pendingRequestCount(), 0);
    QTest::qWait(50);
    QCOMPARE(details.count(), 0);
    QVERIFY(SimpleMessagePopup::openPopups().isEmpty());
    QVERIFY(log.startingWith(QStringLiteral("url:")).isEmpty());
    QVERIFY(log.startingWith(QStringLiteral("emit ")).isEmpty());
}

// Two clicks: two requests, a second spinner and timer; the first answer removes only the second pair.
void TestNoticeRemindNoticeWidget::secondClickLeavesTheFirstSpinnerBehind()
{
    // The first request is answered at once, the second is held.
    auto counter = std::make_shared<std::atomic<int>>(0);
    m_server->setHandler(path(), [counter](const VyrDev::HttpRequestRecord&) {
        if (counter->fetch_add(1) == 0) {
            VyrDev::HttpReply later = VyrDev::HttpReply::json(R"({"error_info":{"errno":0}})");
            later.delayMs = 300;
            return later;
        }
        return hanging();
    });
    open();
    clickView();
    WaitingSpinnerWidget* first = spinners(m_window).value(0);
    clickView();
    QCOMPARE(spinners(m_window).size(), 2);
    QCOMPARE(loadingTimers(m_window).size(), 2);
    QVERIFY(H::button(m_window, "viewNowBtn")->isEnabled());
    QCOMPARE(H::clicks().size(), 2);
    QTRY_COMPARE(m_server->requestCount(path()), 2);
    // The first answer stops the members' spinner, the second one; the first stays spinning
    // under the window until it goes. Seen as the answer closes the window.
    QString atClose;
    CloseWatcher watcher(m_window, [&]() {
        atClose = QStringLiteral("spinners=%1 firstLeft=%2 firstSpinning=%3 timers=%4")
                      .arg(spinners(m_window).size())
                      .arg(spinners(m_window).value(0) == first)
                      .arg(first->isSpinning())
                      .arg(loadingTimers(m_window).size());
    });
    QTRY_VERIFY(!m_window || !m_window->isVisible());
    QCOMPARE(atClose, QStringLiteral("spinners=1 firstLeft=1 firstSpinning=1 timers=1"));
    QCOMPARE(SimpleMessagePopup::openPopups().size(), 1);
    H::runDeferredDeletes();
    QVERIFY(m_window.isNull());
    // The held answer is released into nothing.
    m_server->stop();
    QTRY_COMPARE(VyrHttpManager::pendingRequestCount(), 0);
    QCOMPARE(SimpleMessagePopup::openPopups().size(), 1);
}

// The 300-second timeout only stops the spinner: the window is idle again and usable.
void TestNoticeRemindNoticeWidget::spinnerTimeoutGoesBackToIdle()
{
    open();
    clickView();
    QTRY_COMPARE(m_server->requestCount(path()), 1);
    QTimer* timer = loadingTimers(m_window).value(0);
    QVERIFY(timer);
    QCOMPARE(timer->interval(), 300000);
    QVERIFY(QMetaObject::invokeMethod(timer, "timeout"));
    QVERIFY(spinners(m_window).isEmpty());
    QVERIFY(loadingTimers(m_window).isEmpty());
    QVERIFY(m_window->isVisible());
    QCOMPARE(H::stateOf(m_window), QStringLiteral("Holding"));
    // Idle: the view button starts a new request.
    clickView();
    QCOMPARE(spinners(m_window).size(), 1);
    QTRY_COMPARE(m_server->requestCount(path()), 2);
}

// The card's hold timer keeps running while the request is under way.
void TestNoticeRemindNoticeWidget::holdTimerRunsOnDuringRequest()
{
    open();
    QTimer* hold = H::closeTimer(m_window);
    QVERIFY(hold && hold->isActive());
    clickView();
    QCOMPARE(H::closeTimer(m_window), hold);
    QVERIFY(hold->isActive());
    QCOMPARE(hold->interval(), 15000);
}

void TestNoticeRemindNoticeWidget::stateTable_data()
{
    QTest::addColumn<bool>("requesting");
    QTest::addColumn<QString>("event");
    QTest::addColumn<QString>("next");

    QTest::newRow("Idle, view -> Requesting") << false << "view" << "Requesting";
    QTest::newRow("Idle, later -> Closed") << false << "later" << "Closed";
    QTest::newRow("Idle, close -> Closed") << false << "close" << "Closed";
    QTest::newRow("Requesting, result 1 -> Closed, details") << true << "answer 1" << "Closed, details";
    QTest::newRow("Requesting, other -> Closed, message") << true << "answer 0" << "Closed, message";
    QTest::newRow("Requesting, timeout -> Idle") << true << "timeout" << "Idle";
    QTest::newRow("Idle, fade-out -> Closed") << false << "fade-out" << "Closed";
    QTest::newRow("Requesting, fade-out -> Closed") << true << "fade-out" << "Closed";
    QTest::newRow("Idle, log-out -> Closed") << false << "log-out" << "Closed";
    QTest::newRow("Requesting, log-out -> Closed") << true << "log-out" << "Closed";
    QTest::newRow("Requesting, close -> Closed") << true << "close" << "Closed";
    QTest::newRow("Requesting, later -> Closed") << true << "later" << "Closed";
}

// Every state and what leaves it, with the state reached read off the window.
void TestNoticeRemindNoticeWidget::stateTable()
{
    QFETCH(bool, requesting);
    QFETCH(QString, event);
    QFETCH(QString, next);

    if (event == QLatin1String("answer 1"))
        m_server->setReply(path(), VyrDev::HttpReply::json(R"({"error_info":{"errno":1}})"));
    else if (event == QLatin1String("answer 0"))
        m_server->setReply(path(), VyrDev::HttpReply::json(R"({"error_info":{"errno":0}})"));
    open();
    QSignalSpy details(ImSignalObject::instance(), &ImSignalObject::signalViewClusterNoticeDetails);
    if (requesting) {
        clickView();
        QCOMPARE(spinners(m_window).size(), 1);
        QTRY_COMPARE(m_server->requestCount(path()), 1);
    }

    if (event == QLatin1String("view"))
        clickView();
    else if (event == QLatin1String("later"))
        QTest::mouseClick(H::button(m_window, "m_laterBtn"), Qt::LeftButton);
    else if (event == QLatin1String("close"))
        QTest::mouseClick(H::closeButton(m_window), Qt::LeftButton);
    else if (event == QLatin1String("timeout"))
        QVERIFY(QMetaObject::invokeMethod(loadingTimers(m_window).value(0), "timeout"));
    else if (event == QLatin1String("fade-out")) {
        QMetaObject::invokeMethod(m_window, "startOpacityAnimation");
        H::finish(H::animation(m_window, "m_opacityAnimation"));
    } else if (event == QLatin1String("log-out"))
        emit ImSignalObject::instance()->signalLogOut();
    else
        QTRY_VERIFY(!m_window || !m_window->isVisible());

    QString reached;
    if (!m_window || !m_window->isVisible()) {
        reached = QStringLiteral("Closed");
        if (details.count() == 1)
            reached += QStringLiteral(", details");
        if (!SimpleMessagePopup::openPopups().isEmpty())
            reached += QStringLiteral(", message");
    } else if (!spinners(m_window).isEmpty() && spinners(m_window)[0]->isSpinning()
               && loadingTimers(m_window).value(0) && loadingTimers(m_window)[0]->isActive()) {
        reached = QStringLiteral("Requesting");
    } else if (spinners(m_window).isEmpty() && loadingTimers(m_window).isEmpty()) {
        reached = QStringLiteral("Idle");
    }
    QCOMPARE(reached, next);
    if (next.startsWith(QLatin1String("Closed"))) {
        H::runDeferredDeletes();
        QVERIFY(m_window.isNull());
    }
    // Nothing arrives later for a closed window: the held request is released into nothing.
    m_server->stop();
    QTRY_COMPARE(VyrHttpManager::pendingRequestCount(), 0);
    QCOMPARE(details.count(), next.endsWith(QLatin1String("details")) ? 1 : 0);
}

// Grabbed while requesting: the spinner's dark box stands over the middle of the card.
void TestNoticeRemindNoticeWidget::spinnerDrawnOverTheCard()
{
    open();
    const QImage before = H::grabCard(m_window);
    clickView();
    WaitingSpinnerWidget* spinner = spinners(m_window).value(0);
    QVERIFY(spinner);
    const QRect box = spinner->boxRect();
    QCOMPARE(box.center(), m_window->rect().center());
    const QImage during = H::grabCard(m_window);
    const QPoint inBox(box.left() + 3, box.bottom() - 3);
    // Half-transparent black over the white card: a mid grey.
    const QColor shaded = PixelProbe::colourAt(during, inBox.x(), inBox.y());
    QVERIFY2(shaded.red() < 160 && shaded.red() > 90, qPrintable(shaded.name()));
    QCOMPARE(PixelProbe::colourAt(during, 30, 170), PixelProbe::colourAt(before, 30, 170));
}

// Chinese texts; the tracked scene stays the same literal.
void TestNoticeRemindNoticeWidget::chineseTexts()
{
    QVERIFY(TestKit::loadTranslations(QStringLiteral("zh_CN")));
    m_server->setReply(path(), VyrDev::HttpReply::json(R"({"error_info":{"errno":3}})"));
    open();
    QCOMPARE(H::titleLabel(m_window)->text(), QStringLiteral("通知"));
    QCOMPARE(H::button(m_window, "viewNowBtn")->text(), QStringLiteral("立即查看"));
    QCOMPARE(H::button(m_window, "m_laterBtn")->text(), QStringLiteral("稍后"));
    clickView();
    QCOMPARE(spinners(m_window).value(0)->text(), QStringLiteral("请求中..."));
    QCOMPARE(H::clicks()[0].second.value(QStringLiteral("push_scenes")).toString(), kScene);
    QTRY_COMPARE(SimpleMessagePopup::openPopups().size(), 1);
    QCOMPARE(SimpleMessagePopup::openPopups()[0]->text(), QStringLiteral("该通知已被删除"));
    QVERIFY(TestKit::loadTranslations(QStringLiteral("en")));
}

// Intended: the class declares signalViewDetails and never emits it, not even on errno 1.
void TestNoticeRemindNoticeWidget::viewDetailsSignalIsNeverEmitted()
{
    const QMetaObject* meta = &NoticeRemindNoticeWidget::staticMetaObject;
    QCOMPARE(meta->methodCount() - meta->methodOffset(), 1);
    QCOMPARE(meta->method(meta->methodOffset()).methodSignature(), QByteArray("signalViewDetails(qulonglong)"));
    m_server->setReply(path(), VyrDev::HttpReply::json(R"({"error_info":{"errno":1}})"));
    open();
    QSignalSpy spy(m_window.data(), &NoticeRemindNoticeWidget::signalViewDetails);
    QSignalSpy details(ImSignalObject::instance(), &ImSignalObject::signalViewClusterNoticeDetails);
    clickView();
    QTRY_COMPARE(details.count(), 1);
    QCOMPARE(spy.count(), 0);
}

QTEST_MAIN(TestNoticeRemindNoticeWidget)
#include "tst_noticeremindnoticewidget.moc"
