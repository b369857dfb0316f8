#include "BoundedHtml_p.h"
#include "LogCapture.h"
#include "NoticeListViewItem.h"
#include "PixelProbe.h"
#include "ResourceSpy.h"
#include "StudyActivityNoticeWidget.h"
#include "TestKit.h"
#include "VyrUtils.h"

#include <QAbstractTextDocumentLayout>
#include <QDesktopServices>
#include <QPainter>
#include <QPointer>
#include <QSignalSpy>
#include <QStandardItemModel>
#include <QTemporaryDir>
#include <QTextBlock>
#include <QTextBrowser>
#include <QtTest>

using namespace VyrEngine;
namespace P = PixelProbe;

namespace {

const QRect kRow(12, 30, 364, 88);
const QSize kCanvas(400, 150);
const QColor kLocalRed(250, 0, 0);
const QString kCutLine = QStringLiteral("rich text cut");
const QChar kEllipsis(0x2026);
// Where a picture stands in a document's plain text.
const QChar kPicture(QChar::ObjectReplacementCharacter);

QSharedPointer<StudyActivityNoticeWidgetDisplayPod> texts(const QString& content,
                                                          const QString& title = QStringLiteral("Quiz"))
{
    return QSharedPointer<StudyActivityNoticeWidgetDisplayPod>::create(
        title, content, false, false, false, QString(), false, QString(), QString(), false, false, false, false,
        QStringLiteral("Heading"), QString(), QString(), false);
}

GatherNoticePtr activityNotice(const QString& content)
{
    auto notice = std::make_shared<GatherNotice>(StudyActivity);
    notice->setTime(1800000000);
    notice->setNoticeId(VyrUtils::createUuid());
    notice->setTitle(QStringLiteral("Class 3"));
    notice->setDisplayPod(texts(content));
    return notice;
}

QStyleOptionViewItem optionFor(const QRect& rect)
{
    QStyleOptionViewItem option;
    option.rect = rect;
    option.state = QStyle::State_Enabled;
    return option;
}

bool isLocalRed(QRgb pixel)
{
    return qRed(pixel) > 200 && qGreen(pixel) < 60 && qBlue(pixel) < 60;
}

bool isGreenish(QRgb pixel)
{
    return qGreen(pixel) > qRed(pixel) + 40 && qGreen(pixel) > qBlue(pixel);
}

// Records what would have been handed to the desktop (a browser, a file viewer).
class UrlRecorder : public QObject
{
    Q_OBJECT
public:
    QList<QUrl> opened;
public slots:
    void open(const QUrl& url) { opened << url; }
};

} // namespace

// Study activity texts are the host's markup and shown as rich text: in the
// gathered row and in the card they are bounded before layout, load nothing
// from outside, and their links open nothing.
class TestBoundedHtml : public QObject
{
    Q_OBJECT
private slots:
    void initTestCase();
    void init();
    void cleanupTestCase();

    void hostileText_data();
    void hostileText();
    void ordinaryMarkupTakesEffect_data();
    void ordinaryMarkupTakesEffect();
    void ordinaryRowLooksAsUnbounded_data();
    void ordinaryRowLooksAsUnbounded();
    void boundedText_data();
    void boundedText();
    void rowIsLaidOutOncePerTextAndWidth();
    void keptLayoutsAreFewAndGoWithTheirRecords();
    void cardLinkOpensNothing();
    void rowClickStillEmitsClickedItem();

private:
    // What a user sees of `content` in the row or the card: the text shown and a picture.
    QString showInRow(const QString& content, QImage* picture);
    QString showInCard(const QString& content, QImage* picture);

    QTemporaryDir m_dir;
    QString m_localPicture;
    UrlRecorder m_urls;
};

void TestBoundedHtml::initTestCase()
{
    QVERIFY(TestKit::loadTranslations(QStringLiteral("en")));
    TestKit::resetAll();
    QVERIFY(m_dir.isValid());
    m_localPicture = m_dir.filePath(QStringLiteral("local.png"));
    QImage picture(300, 200, QImage::Format_ARGB32);
    picture.fill(kLocalRed);
    QVERIFY(picture.save(m_localPicture));
    for (const char* scheme : {"file", "http", "https"})
        QDesktopServices::setUrlHandler(QLatin1String(scheme), &m_urls, "open");

    // Warm Qt up before any spy is armed: image plugins, fonts, one row, one card.
    QVERIFY(ResourceSpy::warmUpImagePlugins());
    QImage ignored;
    showInRow(QStringLiteral("<b>warm</b> <img src=\":/missing\">"), &ignored);
    showInCard(QStringLiteral("<b>warm</b> <img src=\":/missing\">"), &ignored);
}

void TestBoundedHtml::init()
{
    TestKit::resetAll();
    m_urls.opened.clear();
}

void TestBoundedHtml::cleanupTestCase()
{
    for (const char* scheme : {"file", "http", "https"})
        QDesktopServices::unsetUrlHandler(QLatin1String(scheme));
}

QString TestBoundedHtml::showInRow(const QString& content, QImage* picture)
{
    NoticeListViewItem delegate(nullptr);
    QStandardItemModel model;
    auto notice = activityNotice(content);
    auto* item = new QStandardItem;
    item->setData(QVariant::fromValue(notice), Qt::UserRole);
    model.appendRow(item);
    *picture = P::renderDelegate(delegate, optionFor(kRow), model.index(0, 0), kCanvas, Qt::white);
    const QTextDocument* shown =
        delegate.keptActivityDocument(notice->displayPod(), NoticeListViewItem::bodyRect(kRow).size());
    return shown ? shown->toPlainText() : QStringLiteral("(no layout kept)");
}

QString TestBoundedHtml::showInCard(const QString& content, QImage* picture)
{
    auto pod = QSharedPointer<AppendixDataPod>::create();
    pod->courseData = QSharedPointer<ActivityCourseDataPod>::create();
    QScopedPointer<StudyActivityNoticeWidget> card(new StudyActivityNoticeWidget(pod, texts(content)));
    card->show();
    *picture = P::grab(card.data());
    return card->findChild<QTextBrowser*>(QStringLiteral("m_contentBrowser"))->toPlainText();
}

void TestBoundedHtml::hostileText_data()
{
    QTest::addColumn<bool>("inCard");
    QTest::addColumn<QString>("content");
    // What the user sees: the text shown in full, or its beginning followed by "…".
    QTest::addColumn<QString>("shown");
    QTest::addColumn<bool>("isCut");

    const QString local = QStringLiteral("<img src=\"%1\">").arg(QStringLiteral("LOCAL"));
    const QString tables10 = QStringLiteral("<table><tr><td>t").repeated(10) + QStringLiteral("</td></tr></table>").repeated(10);
    const QString tables20 = QStringLiteral("<table><tr><td>t").repeated(20) + QStringLiteral("</td></tr></table>").repeated(20);
    const QString tables8 = QStringLiteral("<table border=1><tr><td>t").repeated(8) + QStringLiteral("</td></tr></table>").repeated(8);
    const QString word(256 * 1024, QLatin1Char('w'));
    const QString megabyte = QStringLiteral("many words ").repeated(1024 * 1024 / 11 + 1);
    const QString spans = QStringLiteral("<span style='color:#123456'>").repeated(5000) + QStringLiteral("s");
    const QString divs = QStringLiteral("<div>").repeated(5000) + QStringLiteral("d");

    for (bool inCard : {false, true}) {
        const char* where = inCard ? "card" : "row";
        // The row shows "[title] " before the content; the card the content alone.
        const QString lead = inCard ? QString() : QStringLiteral("[Quiz] ");
        auto row = [&](const char* tag, const QString& content, const QString& shown, bool isCut) {
            QTest::newRow(qPrintable(QStringLiteral("%1 %2").arg(QLatin1String(where), QLatin1String(tag))))
                << inCard << content << shown << isCut;
        };
        row("img dev zero", QStringLiteral("a<img src=/dev/zero>b"), lead + QStringLiteral("a") + kPicture + QStringLiteral("b"), false);
        row("img local png", QStringLiteral("a") + local + QStringLiteral("b"), lead + QStringLiteral("a") + kPicture + QStringLiteral("b"), false);
        row("img file url", QStringLiteral("a<img src=\"file://LOCAL\">b"), lead + QStringLiteral("a") + kPicture + QStringLiteral("b"), false);
        // A body or paragraph inside the row's text starts a new line there.
        const QString block = inCard ? QString() : lead + QStringLiteral("\n");
        row("body background", QStringLiteral("<body background=\"LOCAL\">bg</body>"), block + QStringLiteral("bg"), false);
        row("style background", QStringLiteral("<p style=\"background-image:url(LOCAL)\">bg</p>"),
            block + QStringLiteral("bg"), false);
        row("style sheet", QStringLiteral("<style>p { background: url('LOCAL') }</style><p>bg</p>"),
            block + QStringLiteral("bg"), false);
        row("tables 10", tables10, QString(), true);
        row("tables 20", tables20, QString(), true);
        row("tables 8", tables8, QString(), true);
        row("word 256K", word, lead + QString(BoundedHtml::MaxLength - lead.size(), QLatin1Char('w')) + kEllipsis, true);
        row("text 1MB", megabyte, QString(), true);
        row("spans deep", spans, lead + QStringLiteral("\u2026"), true);
        row("divs deep", divs, QString(), true);
        row("font size", QStringLiteral("<span style='font-size:100000px'>big</span>"), lead + QStringLiteral("big"), false);
        row("widths", QStringLiteral("<img src=\":/x\" width=100000 height=100000>w"), lead + kPicture + QStringLiteral("w"), false);
        row("colspan", QStringLiteral("<table><tr><td colspan=100000 rowspan=100000>c</td></tr></table>"), QString(), false);
    }
}

// Hostile markup is cut with "…" before layout, reads no outside file and shows no outside picture.
void TestBoundedHtml::hostileText()
{
    QFETCH(bool, inCard);
    QFETCH(QString, content);
    QFETCH(QString, shown);
    QFETCH(bool, isCut);
    content.replace(QStringLiteral("LOCAL"), m_localPicture);

    LogCapture log;
    ResourceSpy spy;
    QImage picture;
    const QString text = inCard ? showInCard(content, &picture) : showInRow(content, &picture);

    QVERIFY2(spy.outsideNames().isEmpty(), qPrintable(spy.outsideNames().join(QLatin1Char(' '))));
    QCOMPARE(P::countPixels(picture, picture.rect(), isLocalRed), 0);
    if (!shown.isEmpty())
        QCOMPARE(text, shown);
    // Tables close after the cut, so the ellipsis may be followed by their line ends.
    QCOMPARE(text.trimmed().endsWith(kEllipsis), isCut);
    QVERIFY2(text.size() <= BoundedHtml::MaxLength + 1, qPrintable(QString::number(text.size())));
    const QList<LogCapture::Line> cuts = log.startingWith(kCutLine);
    QCOMPARE(cuts.size(), isCut ? 1 : 0);
    for (const LogCapture::Line& line : cuts) {
        QCOMPARE(line.type, QtInfoMsg);
        QVERIFY2(line.file.endsWith(QStringLiteral("src/plugins/im/VyrNotice/BoundedHtml.cpp")), qPrintable(line.file));
    }
}

void TestBoundedHtml::ordinaryMarkupTakesEffect_data()
{
    QTest::addColumn<bool>("inCard");
    QTest::addColumn<QString>("content");
    QTest::addColumn<QString>("plain");
    QTest::addColumn<QString>("check");
    for (bool inCard : {false, true}) {
        const QString lead = inCard ? QString() : QStringLiteral("[Quiz] ");
        const char* where = inCard ? "card" : "row";
        auto row = [&](const char* tag, const QString& content, const QString& plain, const char* check) {
            QTest::newRow(qPrintable(QStringLiteral("%1 %2").arg(QLatin1String(where), QLatin1String(tag))))
                << inCard << content << plain << QString::fromLatin1(check);
        };
        row("bold", QStringLiteral("<b>due</b> Friday"), lead + QStringLiteral("due Friday"), "bold");
        row("colour", QStringLiteral("<span style='color:#009265;'>Mr Li</span> asks"), lead + QStringLiteral("Mr Li asks"),
            "green");
        row("line break", QStringLiteral("one<br>two"), lead + QStringLiteral("one\ntwo"), "break");
    }
}

// Ordinary markup is left as it is: the tag takes effect, as before.
void TestBoundedHtml::ordinaryMarkupTakesEffect()
{
    QFETCH(bool, inCard);
    QFETCH(QString, content);
    QFETCH(QString, plain);
    QFETCH(QString, check);
    QCOMPARE(BoundedHtml::bounded(content), content);

    LogCapture log;
    QImage picture;
    QCOMPARE(inCard ? showInCard(content, &picture) : showInRow(content, &picture), plain);
    QVERIFY(log.startingWith(QStringLiteral("rich text")).isEmpty());
    if (check == QLatin1String("green"))
        QVERIFY(P::countPixels(picture, picture.rect(), isGreenish) > 10);
    if (check == QLatin1String("bold")) {
        // Bold ink is wider than the same word in regular weight.
        QFont regular;
        regular.setPixelSize(inCard ? 13 : 14);
        QFont bold = regular;
        bold.setBold(true);
        QVERIFY(QFontMetrics(bold).horizontalAdvance(QStringLiteral("due"))
                > QFontMetrics(regular).horizontalAdvance(QStringLiteral("due")));
        QImage plainPicture;
        QString same = content;
        same.remove(QStringLiteral("<b>")).remove(QStringLiteral("</b>"));
        inCard ? showInCard(same, &plainPicture) : showInRow(same, &plainPicture);
        QVERIFY(P::countPixels(picture, picture.rect(), [](QRgb p) { return qGray(p) < 140; })
                > P::countPixels(plainPicture, plainPicture.rect(), [](QRgb p) { return qGray(p) < 140; }));
    }
}

void TestBoundedHtml::ordinaryRowLooksAsUnbounded_data()
{
    QTest::addColumn<QString>("content");
    QTest::newRow("bold") << QStringLiteral("<b>due</b> Friday");
    QTest::newRow("colour") << QStringLiteral("<span style='color:#009265;'>Mr Li</span> published a quiz");
    QTest::newRow("break") << QStringLiteral("one<br>two");
    QTest::newRow("wrapping") << QStringLiteral("plain words only, enough of them to wrap onto a second line and more");
    QTest::newRow("long word") << QStringLiteral("AVeryLongWordWithoutAnySpaceThatMustBreakSomewhereInsideTheRow");
    QTest::newRow("cjk") << QString::fromUtf8("学习活动：请在周五之前完成<b>第四章</b>的阅读");
    QTest::newRow("link") << QStringLiteral("see <a href='https://example.com/'>the page</a> &amp; more");
    QTest::newRow("paragraphs") << QStringLiteral("<p>one</p><p>two</p>");
    QTest::newRow("table") << QStringLiteral("<table border=1><tr><td>a</td><td>b</td></tr></table>");
}

// Ordinary markup in the row paints, pixel for pixel, as the same markup laid out with no bounds.
void TestBoundedHtml::ordinaryRowLooksAsUnbounded()
{
    QFETCH(QString, content);
    QImage row;
    showInRow(content, &row);

    // The unbounded way: one plain document set up as the row's, drawn into the body.
    const QRect body = NoticeListViewItem::bodyRect(kRow);
    const QImage expected = P::paint(kCanvas, Qt::white, [&](QPainter& painter) {
        QTextDocument document;
        document.setDocumentMargin(0);
        QTextOption option(Qt::AlignLeft);
        option.setWrapMode(QTextOption::WrapAtWordBoundaryOrAnywhere);
        option.setTextDirection(Qt::LeftToRight);
        document.setDefaultTextOption(option);
        QFont font = document.defaultFont();
        font.setPixelSize(14);
        document.setDefaultFont(font);
        document.setPageSize(body.size());
        QTextCursor(&document).insertHtml(QStringLiteral("[Quiz] ") + content);
        painter.translate(body.topLeft());
        QAbstractTextDocumentLayout::PaintContext context;
        context.palette.setColor(QPalette::Text, QColor(QStringLiteral("#666666")));
        context.clip = QRectF(0, 0, body.width(), body.height());
        painter.setClipRect(context.clip);
        document.documentLayout()->draw(&painter, context);
    });
    QVERIFY(P::countPixels(expected, body, [](QRgb p) { return qGray(p) < 200; }) > 20);
    QCOMPARE(P::differingPixels(row, expected, body), 0);
}

void TestBoundedHtml::boundedText_data()
{
    QTest::addColumn<QString>("html");
    QTest::addColumn<QString>("expected");
    const QString e(kEllipsis);
    const QString cell = QStringLiteral("<table><tr><td>");
    QTest::newRow("plain") << QStringLiteral("a < b & c") << QStringLiteral("a < b & c");
    QTest::newRow("closed spans") << QStringLiteral("<span>x</span>").repeated(40) << QStringLiteral("<span>x</span>").repeated(40);
    QTest::newRow("depth") << QStringLiteral("<i>").repeated(20) << QStringLiteral("<i>").repeated(BoundedHtml::MaxDepth) + e;
    QTest::newRow("paragraphs") << QStringLiteral("<p>x").repeated(30) << QStringLiteral("<p>x").repeated(30);
    QTest::newRow("two tables deep") << cell + cell + QStringLiteral("x") << cell + cell + QStringLiteral("x");
    QTest::newRow("three tables deep") << cell + cell + cell << cell + cell + e;
    QTest::newRow("bare cells") << QStringLiteral("<td><table><tr><td><table>") << QStringLiteral("<td><table><tr><td>") + e;
    QTest::newRow("quote mid value") << QStringLiteral("<b title=a'b>") + cell + cell + cell + QStringLiteral("'>")
                                     << QStringLiteral("<b title=a'b>") + cell + cell + e;
    QTest::newRow("cells") << QStringLiteral("<td>c</td>").repeated(40)
                           << QStringLiteral("<td>c</td>").repeated(BoundedHtml::MaxCells) + e;
    QTest::newRow("closed tables") << QStringLiteral("<table/>").repeated(10)
                                   << QStringLiteral("<table/>").repeated(BoundedHtml::MaxTables) + e;
    QTest::newRow("closed cells") << QStringLiteral("<td/>").repeated(40)
                                  << QStringLiteral("<td/>").repeated(BoundedHtml::MaxCells) + e;
    QTest::newRow("self-closed") << QStringLiteral("<i/>").repeated(40) << QStringLiteral("<i/>").repeated(40);
    QTest::newRow("colspan") << QStringLiteral("<td colspan=99999>") << QStringLiteral("<td colspan=\"8\">");
    QTest::newRow("width") << QStringLiteral("<table width='1e9' border=5>") << QStringLiteral("<table width=\"1000\" border=5>");
    QTest::newRow("percent") << QStringLiteral("<table width=900%>") << QStringLiteral("<table width=\"100%\">");
    QTest::newRow("own picture") << QStringLiteral("<img src=\":/a.png\">") << QStringLiteral("<img src=\":/a.png\">");
    QTest::newRow("qrc picture") << QStringLiteral("<img src=qrc:/a.png>") << QStringLiteral("<img src=\":/a.png\">");
    QTest::newRow("style url") << QStringLiteral("<p style=\"color:red;background:URL('/x')\">")
                               << QStringLiteral("<p style=\"color:red;background:url-refused('/x')\">");
    QTest::newRow("style escape") << QStringLiteral("<p style='background:u\\72 l(/x)'>")
                                  << QStringLiteral("<p style=\"background:u 72 l(/x)\">");
    QTest::newRow("style sheet url") << QStringLiteral("<style>p{background:url(/x)}</style>x url(y)")
                                     << QStringLiteral("<style>p{background:url-refused(/x)}</style>x url(y)");
    QTest::newRow("data picture") << QStringLiteral("<img src='data:image/png;base64,AAAA'>")
                                  << QStringLiteral("<img src=\":/VyrNotice/refused-picture\">");
    QTest::newRow("entity kept whole") << QString(BoundedHtml::MaxLength - 3, QLatin1Char('x')) + QStringLiteral("&amp;")
                                       << QString(BoundedHtml::MaxLength - 3, QLatin1Char('x')) + e;
    QTest::newRow("surrogate kept whole") << QString(BoundedHtml::MaxLength - 1, QLatin1Char('x')) + QStringLiteral("\U0001F600")
                                          << QString(BoundedHtml::MaxLength - 1, QLatin1Char('x')) + e;
    QTest::newRow("tag kept whole") << QString(BoundedHtml::MaxLength - 2, QLatin1Char('x')) + QStringLiteral("<b>y")
                                    << QString(BoundedHtml::MaxLength - 2, QLatin1Char('x')) + e;
}

// The bounds follow the way Qt reads markup: what it would nest is counted, a cut never splits a tag, entity or character.
void TestBoundedHtml::boundedText()
{
    QFETCH(QString, html);
    QFETCH(QString, expected);
    QCOMPARE(BoundedHtml::bounded(html), expected);
}

// A row lays its text out once and reuses it; a new width or a new text lays it out again.
void TestBoundedHtml::rowIsLaidOutOncePerTextAndWidth()
{
    NoticeListViewItem delegate(nullptr);
    QStandardItemModel model;
    auto notice = activityNotice(QStringLiteral("<b>due</b> Friday"));
    auto* item = new QStandardItem;
    item->setData(QVariant::fromValue(notice), Qt::UserRole);
    model.appendRow(item);
    const QSize body = NoticeListViewItem::bodyRect(kRow).size();

    const QImage first = P::renderDelegate(delegate, optionFor(kRow), model.index(0, 0), kCanvas, Qt::white);
    const QTextDocument* kept = delegate.keptActivityDocument(notice->displayPod(), body);
    QVERIFY(kept);
    const QImage second = P::renderDelegate(delegate, optionFor(kRow), model.index(0, 0), kCanvas, Qt::white);
    QCOMPARE(delegate.activityLayoutCount(), 1);
    QCOMPARE(delegate.keptActivityDocument(notice->displayPod(), body), kept);
    QCOMPARE(second, first);

    const QRect wider = kRow.adjusted(0, 0, 20, 0);
    P::renderDelegate(delegate, optionFor(wider), model.index(0, 0), QSize(420, 150), Qt::white);
    QCOMPARE(delegate.activityLayoutCount(), 2);

    notice->displayPod()->contentText = QStringLiteral("<b>due</b> Monday");
    const QImage changed = P::renderDelegate(delegate, optionFor(kRow), model.index(0, 0), kCanvas, Qt::white);
    QCOMPARE(delegate.activityLayoutCount(), 3);
    QCOMPARE(delegate.keptActivityDocument(notice->displayPod(), body)->toPlainText(), QStringLiteral("[Quiz] due Monday"));
    QVERIFY(changed != first);
}

// At most a few layouts are kept, and none outlives its record's texts.
void TestBoundedHtml::keptLayoutsAreFewAndGoWithTheirRecords()
{
    NoticeListViewItem delegate(nullptr);
    QStandardItemModel model;
    for (int i = 0; i < NoticeListViewItem::ActivityLayoutsKept + 3; ++i) {
        auto* item = new QStandardItem;
        item->setData(QVariant::fromValue(activityNotice(QStringLiteral("row %1").arg(i))), Qt::UserRole);
        model.appendRow(item);
    }
    for (int i = 0; i < model.rowCount(); ++i)
        P::renderDelegate(delegate, optionFor(kRow), model.index(i, 0), kCanvas, Qt::white);
    QCOMPARE(delegate.activityLayoutCount(), model.rowCount());
    QCOMPARE(delegate.keptActivityLayoutCount(), int(NoticeListViewItem::ActivityLayoutsKept));

    // The rows go; the next paint drops their layouts.
    model.clear();
    QStandardItemModel next;
    auto* item = new QStandardItem;
    item->setData(QVariant::fromValue(activityNotice(QStringLiteral("next"))), Qt::UserRole);
    next.appendRow(item);
    P::renderDelegate(delegate, optionFor(kRow), next.index(0, 0), kCanvas, Qt::white);
    QCOMPARE(delegate.keptActivityLayoutCount(), 1);
}

// A click on a link in the card opens nothing: no file in the card, no browser, no program.
void TestBoundedHtml::cardLinkOpensNothing()
{
    const QString content = QStringLiteral("Open <a href=\"file:///etc/passwd\">passwd</a> or "
                                           "<a href=\"https://example.com/\">site</a>");
    auto pod = QSharedPointer<AppendixDataPod>::create();
    QScopedPointer<StudyActivityNoticeWidget> card(new StudyActivityNoticeWidget(pod, texts(content)));
    card->show();
    QVERIFY(QTest::qWaitForWindowExposed(card.data()));
    auto* browser = card->findChild<QTextBrowser*>(QStringLiteral("m_contentBrowser"));
    QVERIFY(browser);
    const QString before = browser->toPlainText();
    QSignalSpy anchors(browser, &QTextBrowser::anchorClicked);

    ResourceSpy spy;
    for (const QString& word : {QStringLiteral("passwd"), QStringLiteral("site")}) {
        QTextCursor cursor(browser->document());
        cursor.setPosition(before.indexOf(word) + 2);
        const QPoint onLink = browser->cursorRect(cursor).center();
        QCOMPARE(browser->anchorAt(onLink).isEmpty(), false);
        QTest::mouseClick(browser->viewport(), Qt::LeftButton, Qt::NoModifier, onLink);
        QCoreApplication::processEvents();
    }

    // The clicks did reach the links, and went no further.
    QCOMPARE(anchors.size(), 2);
    QCOMPARE(browser->toPlainText(), before);
    QVERIFY(browser->source().isEmpty());
    QVERIFY2(m_urls.opened.isEmpty(), qPrintable(m_urls.opened.value(0).toString()));
    QVERIFY2(spy.outsideNames().isEmpty(), qPrintable(spy.outsideNames().join(QLatin1Char(' '))));
}

// In the row a link is part of the text: a click emits clickedItem as for any row, and loads nothing.
void TestBoundedHtml::rowClickStillEmitsClickedItem()
{
    NoticeListViewItem delegate(nullptr);
    QStandardItemModel model;
    auto* item = new QStandardItem;
    item->setData(QVariant::fromValue(activityNotice(QStringLiteral("<a href=\"file:///etc/passwd\">passwd</a>"))),
                  Qt::UserRole);
    model.appendRow(item);
    P::renderDelegate(delegate, optionFor(kRow), model.index(0, 0), kCanvas, Qt::white);
    QSignalSpy clicked(&delegate, &NoticeListViewItem::clickedItem);

    ResourceSpy spy;
    const QPoint onLink = NoticeListViewItem::bodyRect(kRow).topLeft() + QPoint(60, 8);
    QMouseEvent release(QEvent::MouseButtonRelease, onLink, Qt::LeftButton, Qt::LeftButton, Qt::NoModifier);
    delegate.editorEvent(&release, &model, optionFor(kRow), model.index(0, 0));
    QCOMPARE(clicked.size(), 1);
    QVERIFY(m_urls.opened.isEmpty());
    QVERIFY(spy.outsideNames().isEmpty());
}

QTEST_MAIN(TestBoundedHtml)
#include "tst_boundedhtml.moc"
