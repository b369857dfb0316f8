#include "AvatarManager.h"
#include "CoreEngine.h"
#include "ImageOp.h"
#include "LessonNoticeText_p.h"
#include "NoticeListModel.h"
#include "NoticeListViewItem.h"
#include "PixelProbe.h"
#include "TestKit.h"
#include "VyrUtils.h"

#include <QAbstractItemModelTester>
#include <QListView>
#include <QMouseEvent>
#include <QPainter>
#include <QPainterPath>
#include <QSignalSpy>
#include <QStandardItemModel>
#include <QTextDocument>
#include <QTranslator>
#include <QtTest>

using namespace VyrEngine;
namespace P = PixelProbe;

namespace {
const qint64 kNow = 1800000000;   // 2027-01-15 08:00 UTC
const quint64 kCluster = 4242;
// The list view in the window is 364 wide: the row takes the view's width.
const QRect kRow(12, 30, 364, 88);
const QSize kCanvas(400, 150);
const QColor kWhite(Qt::white);
const QColor kHover(QStringLiteral("#F5F6F8"));
const QColor kSeparator(242, 242, 242);
const QColor kButton(QStringLiteral("#009265"));
const QColor kUnderlay(Qt::magenta);

// Answers a few keys with texts chosen by the test, before the real translations.
class OverrideTranslator : public QTranslator
{
public:
    QHash<QByteArray, QString> texts;
    bool isEmpty() const override { return false; }
    QString translate(const char* context, const char* sourceText, const char* disambiguation,
                      int n) const override
    {
        Q_UNUSED(context)
        Q_UNUSED(disambiguation)
        Q_UNUSED(n)
        return texts.value(QByteArray(sourceText));
    }
};

QFont buttonFont()
{
    QFont font;
    font.setPixelSize(12);
    return font;
}

// A text that measures exactly `width` pixels in the button's font, found by trying mixes of glyphs.
QString textOfWidth(int width)
{
    const QFontMetrics metrics(buttonFont());
    for (int wide = 0; wide <= 20; ++wide) {
        for (int narrow = 0; narrow <= 30; ++narrow) {
            for (int dots = 0; dots <= 4; ++dots) {
                const QString text = QString(wide, QLatin1Char('M')) + QString(narrow, QLatin1Char('i'))
                    + QString(dots, QLatin1Char('.'));
                if (metrics.horizontalAdvance(text) == width)
                    return text;
            }
        }
    }
    return QString();
}

GatherNoticePtr makeNotice(NoticeType type)
{
    auto notice = std::make_shared<GatherNotice>(type);
    notice->setTime(quint32(kNow));
    notice->setNoticeId(VyrUtils::createUuid());
    notice->setClusterId(kCluster);
    notice->setTitle(QStringLiteral("Class 3"));
    notice->setLessonName(QStringLiteral("Algebra"));
    notice->setLessonStartTime(quint32(kNow + 600));
    notice->setReportRole(1);
    return notice;
}

GatherNoticePtr activityNotice(const QString& windowTitle, const QString& content)
{
    auto notice = makeNotice(StudyActivity);
    notice->setDisplayPod(QSharedPointer<StudyActivityNoticeWidgetDisplayPod>::create(
        windowTitle, content, false, false, false, QString(), false, QString(), QString(), false, false, false, false,
        QStringLiteral("Heading"), QString(), QString(), false));
    return notice;
}

// Rows holding the given notices; a null pointer makes a row with no record.
QStandardItemModel* rowsOf(const QList<GatherNoticePtr>& notices, QObject* parent)
{
    auto* model = new QStandardItemModel(parent);
    for (const GatherNoticePtr& notice : notices) {
        auto* item = new QStandardItem;
        if (notice)
            item->setData(QVariant::fromValue(notice), Qt::UserRole);
        model->appendRow(item);
    }
    return model;
}

QStyleOptionViewItem optionFor(const QRect& rect, QStyle::State state = QStyle::State_Enabled)
{
    QStyleOptionViewItem option;
    option.rect = rect;
    option.state = state;
    return option;
}

QImage render(const NoticeListViewItem& delegate, const QModelIndex& index, QStyle::State state = QStyle::State_Enabled,
              const QRect& rect = kRow)
{
    return PixelProbe::renderDelegate(delegate, optionFor(rect, state), index, kCanvas, kUnderlay);
}

// As render(), with the painter's font drawing glyphs unsmoothed, so that every
// pixel of title, time and plain body ink has exactly the pen's colour.
QImage renderUnsmoothed(const NoticeListViewItem& delegate, const QModelIndex& index)
{
    return PixelProbe::paint(kCanvas, kUnderlay, [&](QPainter& painter) {
        QFont font = painter.font();
        font.setStyleStrategy(QFont::NoAntialias);
        painter.setFont(font);
        delegate.paint(&painter, optionFor(kRow), index);
    });
}

// A white canvas of the row's canvas size with `draw` done on it, for comparing against the row.
QImage reference(const std::function<void(QPainter&)>& draw)
{
    return PixelProbe::paint(kCanvas, kWhite, draw);
}

// The unsmoothed painter font at `pixelSize`, as the row derives its fonts from the painter's.
QFont unsmoothedFont(int pixelSize)
{
    QImage scratch(1, 1, QImage::Format_ARGB32);
    QPainter painter(&scratch);
    QFont font = painter.font();
    font.setStyleStrategy(QFont::NoAntialias);
    font.setPixelSize(pixelSize);
    return font;
}

QFont pixelFont(int pixelSize)
{
    QFont font;
    font.setPixelSize(pixelSize);
    return font;
}

bool isInk(QRgb pixel)
{
    return qGray(pixel) < 215;
}

bool isGreenish(QRgb pixel)
{
    return qGreen(pixel) > qRed(pixel) + 40 && qGreen(pixel) > qBlue(pixel);
}

QString plainTextOf(const QString& html)
{
    QTextDocument document;
    document.setHtml(html);
    return document.toPlainText();
}

QString aheadTemplate()
{
    return qtTrId("ID_LMSClassAheadNotice_LessonWillStartAfter", -1);
}

QMouseEvent mouse(QEvent::Type type, const QPoint& pos, Qt::MouseButton button = Qt::LeftButton)
{
    return QMouseEvent(type, pos, button, button, Qt::NoModifier);
}
} // namespace

Q_DECLARE_METATYPE(VyrEngine::NoticeType)
Q_DECLARE_METATYPE(QStyle::State)

class TestNoticeListViewItem : public QObject
{
    Q_OBJECT
private slots:
    void initTestCase();
    void init();
    void cleanup();

    void sizeHintIsFixed();
    void background_data();
    void background();
    void backgroundCornersHaveRadius8();
    void separatorInListView();
    void rowWithoutRecordPaintsBackgroundAndSeparatorOnly();
    void friendRequestAvatarIsThePicture();
    void avatarIsThePictureRoundedAt36_data();
    void avatarIsThePictureRoundedAt36();
    void titleAndTimeStandApart();
    void textColours();
    void textFontsAndPlaces();
    void richBodyColour();
    void plainBodyWrapsAtWordsOrAnywhere();
    void buttonSize_data();
    void buttonSize();
    void buttonPainted_data();
    void buttonPainted();
    void bodyNarrowedByButton();
    void bodyRightEdgeExactly_data();
    void bodyRightEdgeExactly();
    void richBodyIsClippedToItsRectangle();
    void lessonNameSpanColoured();
    void clusterTagsShowLiterally();
    void lessonNameIsEscaped();
    void studyActivityIsNotEscaped();
    void nameSpanByLocale_data();
    void nameSpanByLocale();
    void minutesOrDate_data();
    void minutesOrDate();
    void minutesAreCurrentAtEachPaint();
    void studyReportBody_data();
    void studyReportBody();
    void studyReportLineCutWidth_data();
    void studyReportLineCutWidth();
    void friendRequestBodyIsElided();
    void unknownTypeHasEmptyRichBody();
    void clickOnButton_data();
    void clickOnButton();
    void aheadRowHasNoButton();
    void rowsWithoutButtonClickAnywhere_data();
    void rowsWithoutButtonClickAnywhere();
    void buttonRowsClickOffTheButton_data();
    void buttonRowsClickOffTheButton();
    void clicksThatEmitNothing_data();
    void clicksThatEmitNothing();

private:
    void overrideTexts(const QHash<QByteArray, QString>& texts);
    OverrideTranslator* m_override = nullptr;
};

void TestNoticeListViewItem::initTestCase()
{
    QVERIFY(TestKit::loadTranslations());
}

void TestNoticeListViewItem::init()
{
    TestKit::resetAll(kNow);
    AvatarManager::instance().clear();
}

void TestNoticeListViewItem::cleanup()
{
    if (m_override) {
        QCoreApplication::removeTranslator(m_override);
        delete m_override;
        m_override = nullptr;
    }
    AvatarManager::instance().clear();
    TestKit::resetAll(kNow);
}

void TestNoticeListViewItem::overrideTexts(const QHash<QByteArray, QString>& texts)
{
    if (!m_override) {
        m_override = new OverrideTranslator;
        QCoreApplication::installTranslator(m_override);
    }
    m_override->texts = texts;
}

// Every row is 328 by 88 whatever it holds.
void TestNoticeListViewItem::sizeHintIsFixed()
{
    NoticeListViewItem delegate(nullptr);
    auto* model = rowsOf({makeNotice(ClusterNoticeRemind), nullptr}, this);
    QCOMPARE(delegate.sizeHint(optionFor(QRect(0, 0, 10, 10)), model->index(0, 0)), QSize(328, 88));
    QCOMPARE(delegate.sizeHint(optionFor(kRow), model->index(1, 0)), QSize(328, 88));
    QCOMPARE(delegate.sizeHint(optionFor(kRow), QModelIndex()), QSize(328, 88));
}

void TestNoticeListViewItem::background_data()
{
    QTest::addColumn<QStyle::State>("state");
    QTest::addColumn<QColor>("colour");
    QTest::newRow("plain") << QStyle::State(QStyle::State_Enabled) << kWhite;
    QTest::newRow("hover") << (QStyle::State_Enabled | QStyle::State_MouseOver) << kHover;
    QTest::newRow("selected") << (QStyle::State_Enabled | QStyle::State_Selected) << kHover;
    QTest::newRow("both") << (QStyle::State_Selected | QStyle::State_MouseOver) << kHover;
}

// White, or "#F5F6F8" when selected or under the pointer, in a rounded rectangle.
void TestNoticeListViewItem::background()
{
    QFETCH(QStyle::State, state);
    QFETCH(QColor, colour);
    NoticeListViewItem delegate(nullptr);
    auto* model = rowsOf({makeNotice(ClusterNoticeRemind), nullptr}, this);
    for (int row = 0; row < 2; ++row) {
        const QImage image = render(delegate, model->index(row, 0), state);
        QCOMPARE(P::colourAt(image, kRow.left() + 4, kRow.center().y()), colour);
        QCOMPARE(P::colourAt(image, kRow.right() - 4, kRow.bottom() - 4), colour);
        QCOMPARE(P::colourAt(image, kRow.center().x(), kRow.bottom()), colour);
        // Rounded: the very corner keeps what was underneath.
        QCOMPARE(P::colourAt(image, kRow.left(), kRow.bottom()), kUnderlay);
        QCOMPARE(P::colourAt(image, kRow.right(), kRow.bottom()), kUnderlay);
        // Nothing outside the row.
        QCOMPARE(P::colourAt(image, kRow.left() - 1, kRow.center().y()), kUnderlay);
        QCOMPARE(P::colourAt(image, kRow.center().x(), kRow.bottom() + 1), kUnderlay);
    }
}

// The background's corners are arcs of radius 8: pixels whose centre lies outside
// an arc by half a pixel or more keep what was underneath, those inside by as much are filled.
void TestNoticeListViewItem::backgroundCornersHaveRadius8()
{
    NoticeListViewItem delegate(nullptr);
    auto* model = rowsOf({nullptr}, this);
    const QImage image = render(delegate, model->index(0, 0));
    const qreal radius = 8;
    const QRectF row(kRow);
    const QList<QPointF> centres = {row.topLeft() + QPointF(radius, radius),
                                    row.topRight() + QPointF(-radius, radius),
                                    row.bottomLeft() + QPointF(radius, -radius),
                                    row.bottomRight() + QPointF(-radius, -radius)};
    int outside = 0;
    int inside = 0;
    for (const QPointF& centre : centres) {
        // The corner square between the arc's centre and the row's corner.
        const int left = centre.x() < row.center().x() ? kRow.left() : int(centre.x());
        const int top = centre.y() < row.center().y() ? kRow.top() : int(centre.y());
        for (int y = top; y < top + int(radius); ++y) {
            for (int x = left; x < left + int(radius); ++x) {
                const qreal distance = QLineF(centre, QPointF(x + 0.5, y + 0.5)).length();
                const QString where = QStringLiteral("%1,%2").arg(x).arg(y);
                if (distance > radius + 0.5) {
                    QVERIFY2(P::colourAt(image, x, y) == kUnderlay, qPrintable(where));
                    ++outside;
                } else if (distance < radius - 0.5) {
                    QVERIFY2(P::colourAt(image, x, y) == kWhite, qPrintable(where));
                    ++inside;
                }
            }
        }
    }
    QVERIFY(outside >= 4 * 6);
    QVERIFY(inside >= 4 * 20);

    // And pixel for pixel as a rounded rectangle of radius 8 fills the row.
    const QImage expected = P::paint(kCanvas, kUnderlay, [&](QPainter& painter) {
        QPainterPath path;
        path.addRoundedRect(row, radius, radius);
        painter.fillPath(path, kWhite);
    });
    const QSize corner(12, 12);
    for (const QPoint& origin : {kRow.topLeft(), kRow.topRight() - QPoint(11, 0), kRow.bottomLeft() - QPoint(0, 11),
                                 kRow.bottomRight() - QPoint(11, 11)})
        QCOMPARE(P::differingPixels(image, expected, QRect(origin, corner)), 0);
}

// In a real list the first row has no line above it; the others have one, 8 pixels in from each side.
void TestNoticeListViewItem::separatorInListView()
{
    NoticeListModel* source = NoticeListModel::instance();
    QAbstractItemModelTester* tester = TestKit::attachNoticeModelTester(source, this);
    NoticeListSortFilterModel proxy(source, Activity, nullptr);
    for (int i = 0; i < 3; ++i) {
        source->addContactorAddNotice();
        CoreEngine::instance()->advanceTime(60);
    }
    QListView view;
    view.setFrameShape(QFrame::NoFrame);
    view.setVerticalScrollBarPolicy(Qt::ScrollBarAlwaysOff);
    view.setHorizontalScrollBarPolicy(Qt::ScrollBarAlwaysOff);
    auto* delegate = new NoticeListViewItem(&view);
    view.setItemDelegate(delegate);
    view.setModel(&proxy);
    view.resize(364, 3 * 88);
    view.show();
    QVERIFY(QTest::qWaitForWindowExposed(&view));
    const QImage image = P::grab(view.viewport());
    QCOMPARE(image.width(), 364);
    QCOMPARE(view.visualRect(proxy.index(1, 0)), QRect(0, 88, 364, 88));

    // Row 0: nothing across its top edge.
    for (int x = 0; x < 364; ++x)
        QVERIFY2(P::colourAt(image, x, 0) != kSeparator, qPrintable(QString::number(x)));
    for (int row = 1; row < 3; ++row) {
        const int y = row * 88;
        QCOMPARE(P::colourAt(image, 7, y), kWhite);
        QCOMPARE(P::colourAt(image, 8, y), kSeparator);
        QCOMPARE(P::colourAt(image, 182, y), kSeparator);
        QCOMPARE(P::colourAt(image, 363 - 8, y), kSeparator);
        QCOMPARE(P::colourAt(image, 363 - 7, y), kWhite);
        QCOMPARE(P::colourAt(image, 182, y + 1), kWhite);
    }
    delete tester;
}

// A row whose record is missing shows background and separator and nothing else.
void TestNoticeListViewItem::rowWithoutRecordPaintsBackgroundAndSeparatorOnly()
{
    NoticeListViewItem delegate(nullptr);
    auto* model = rowsOf({nullptr, nullptr}, this);
    const QImage image = render(delegate, model->index(1, 0));
    const QRect line(kRow.left() + 8, kRow.top(), kRow.width() - 16, 1);
    QCOMPARE(P::countPixels(image, line, [](QRgb p) { return QColor(p) == kSeparator; }), line.width());
    const QRect below = kRow.adjusted(0, 1, 0, 0);
    QCOMPARE(P::countPixels(image, below, [](QRgb p) { return QColor(p) != kWhite && QColor(p) != kUnderlay; }), 0);
}

// A friend request shows the friend-request picture, not a cluster's avatar.
void TestNoticeListViewItem::friendRequestAvatarIsThePicture()
{
    const QImage picture = QImage(QStringLiteral(":/common/images/common/FriendAdd.png"));
    QVERIFY(!picture.isNull());
    QPixmap red(72, 72);
    red.fill(Qt::red);
    AvatarManager::instance().putClusterAvatar(kCluster, red);
    NoticeListViewItem delegate(nullptr);
    auto* model = rowsOf({makeNotice(ContactorAdd)}, this);
    const QImage image = render(delegate, model->index(0, 0));
    const QRect icon(kRow.left() + 10, kRow.top() + 12, 36, 36);
    const QColor expected(picture.pixel(8, 36));
    const QColor drawn = P::colourAt(image, icon.left() + 4, icon.top() + 18);
    QVERIFY2(qAbs(drawn.red() - expected.red()) < 12 && qAbs(drawn.blue() - expected.blue()) < 12,
             qPrintable(drawn.name()));
    QVERIFY(drawn != QColor(Qt::red));
}

void TestNoticeListViewItem::avatarIsThePictureRoundedAt36_data()
{
    QTest::addColumn<NoticeType>("type");
    QTest::newRow("lesson ahead") << LessonAhead;
    QTest::newRow("study report") << StudyReport;
}

// The avatar is the cluster's picture made 36 by 36 with rounded corners, drawn at the content's top left.
void TestNoticeListViewItem::avatarIsThePictureRoundedAt36()
{
    QFETCH(NoticeType, type);
    const QPixmap picture = QPixmap::fromImage(P::paint(QSize(80, 80), Qt::red, [](QPainter& painter) {
        painter.fillRect(40, 0, 40, 40, Qt::blue);
        painter.fillRect(0, 40, 40, 40, Qt::darkGreen);
        painter.fillRect(40, 40, 40, 40, Qt::black);
    }));
    AvatarManager::instance().putClusterAvatar(kCluster, picture);
    NoticeListViewItem delegate(nullptr);
    auto* model = rowsOf({makeNotice(type)}, this);
    const QImage image = render(delegate, model->index(0, 0));

    const QRect icon(kRow.left() + 10, kRow.top() + 12, 36, 36);
    const QImage expected = reference([&](QPainter& painter) {
        painter.setRenderHints(QPainter::Antialiasing | QPainter::SmoothPixmapTransform);
        painter.drawPixmap(icon, ImageOp::roundedRectCoursePixmap(picture, QSizeF(36, 36), 1.0));
    });
    QCOMPARE(P::differingPixels(image, expected, icon.adjusted(-2, -2, 2, 2)), 0);
    QCOMPARE(P::colourAt(image, icon.left() + 9, icon.top() + 9), QColor(Qt::red));
    QCOMPARE(P::colourAt(image, icon.right() - 9, icon.bottom() - 9), QColor(Qt::black));
    // Rounded: the very corner stays white, a pixel just inside the curve is the picture's.
    QCOMPARE(P::colourAt(image, icon.left(), icon.top()), kWhite);
    QCOMPARE(P::colourAt(image, icon.left() + 6, icon.top() + 1), QColor(Qt::red));
}

// The title stops 46 pixels short of the content's right edge; the time stands right-aligned at that edge.
void TestNoticeListViewItem::titleAndTimeStandApart()
{
    NoticeListViewItem delegate(nullptr);
    auto notice = makeNotice(ClusterNoticeRemind);
    notice->setTitle(QStringLiteral("A very long cluster name that goes on and on beyond any row width"));
    auto* model = rowsOf({notice}, this);
    const QImage image = render(delegate, model->index(0, 0));
    const QRect content = kRow.adjusted(10, 12, -10, -12);
    const QRect titleBand(content.left() + 50, content.top(), content.width() - 50, 20);
    const int timeRight = P::rightmostColumn(image, titleBand, isInk);
    QVERIFY(timeRight <= content.right());
    QVERIFY(timeRight >= content.right() - 2);
    // A gap of blank columns between the cut title and the time.
    const QFontMetrics timeMetrics([] { QFont f; f.setPixelSize(12); return f; }());
    const int timeLeft = content.right() + 1 - timeMetrics.horizontalAdvance(QStringLiteral("08:00"));
    const QRect gap(content.right() - 46 + 1, content.top(), timeLeft - (content.right() - 46 + 1) - 1, 20);
    QVERIFY(gap.width() > 0);
    QCOMPARE(P::countPixels(image, gap, isInk), 0);
    QVERIFY(P::countPixels(image, QRect(content.left() + 50, content.top(), 40, 20), isInk) > 0);
}

// Title ink is "#333333", time ink "#999999", plain body ink "#666666".
void TestNoticeListViewItem::textColours()
{
    NoticeListViewItem delegate(nullptr);
    auto notice = makeNotice(ClusterNoticeRemind);
    notice->setTitle(QStringLiteral("Class HIL 3"));
    notice->setDisplayContent(QStringLiteral("Homework HIL due on Friday"));
    auto* model = rowsOf({notice}, this);
    const QImage image = renderUnsmoothed(delegate, model->index(0, 0));
    const QRect content = kRow.adjusted(10, 12, -10, -12);
    const QRect title(content.left() + 50, content.top(), content.width() - 50 - 46, 20);
    const QRect time(title.right() + 1, content.top(), 46, 20);
    const QRect body = NoticeListViewItem::bodyRect(kRow);
    QCOMPARE(P::colourNames(image, title, kWhite), QStringList{QStringLiteral("#333333")});
    QCOMPARE(P::colourNames(image, time, kWhite), QStringList{QStringLiteral("#999999")});
    QCOMPARE(P::colourNames(image, body, kWhite), QStringList{QStringLiteral("#666666")});
}

// Title in 15 pixels at the title rectangle's top left, time in 12 at the content's top right
// 2 pixels down, plain body in 14: the row matches a drawing of the same texts so placed.
void TestNoticeListViewItem::textFontsAndPlaces()
{
    NoticeListViewItem delegate(nullptr);
    auto notice = makeNotice(ClusterNoticeRemind);
    notice->setTitle(QStringLiteral("Class HIL 3"));
    notice->setDisplayContent(QStringLiteral("Homework HIL due on Friday"));
    auto* model = rowsOf({notice}, this);
    const QImage image = renderUnsmoothed(delegate, model->index(0, 0));
    const QRect content = kRow.adjusted(10, 12, -10, -12);
    const QRect title(content.left() + 50, content.top(), content.width() - 50 - 46, 20);
    const QRect time(content.left(), content.top() + 2, content.width(), content.height() - 2);
    const QRect body = NoticeListViewItem::bodyRect(kRow);

    const QImage expected = reference([&](QPainter& painter) {
        painter.setFont(unsmoothedFont(15));
        painter.setPen(QColor(QStringLiteral("#333333")));
        painter.drawText(title, Qt::AlignLeft | Qt::AlignTop, QStringLiteral("Class HIL 3"));
        painter.setFont(unsmoothedFont(12));
        painter.setPen(QColor(QStringLiteral("#999999")));
        painter.drawText(time, Qt::AlignRight | Qt::AlignTop, QStringLiteral("08:00"));
        painter.setFont(unsmoothedFont(14));
        painter.setPen(QColor(QStringLiteral("#666666")));
        painter.drawText(body, Qt::AlignLeft | Qt::AlignTop, QStringLiteral("Homework HIL due on Friday"));
    });
    const QRect band(title.left(), content.top(), content.right() - title.left() + 1, 21);
    QVERIFY(P::countPixels(expected, band, isInk) > 50);
    QCOMPARE(P::differingPixels(image, expected, band), 0);
    QVERIFY(P::countPixels(expected, body, isInk) > 50);
    QCOMPARE(P::differingPixels(image, expected, body), 0);
}

// Rich body text without a colour of its own is "#666666": its darkest, fully covered pixels have that colour.
void TestNoticeListViewItem::richBodyColour()
{
    NoticeListViewItem delegate(nullptr);
    auto* model = rowsOf({activityNotice(QStringLiteral("HIL"), QStringLiteral("IIII llll HHHH"))}, this);
    const QImage image = render(delegate, model->index(0, 0));
    QCOMPARE(P::darkest(image, NoticeListViewItem::bodyRect(kRow)).name(), QStringLiteral("#666666"));
}

// Plain body text breaks at a word boundary when it can, inside a word when a word alone is too long.
void TestNoticeListViewItem::plainBodyWrapsAtWordsOrAnywhere()
{
    NoticeListViewItem delegate(nullptr);
    const QFontMetrics metrics(pixelFont(14));
    const QRect body = NoticeListViewItem::bodyRect(kRow);
    const int line = metrics.lineSpacing();
    // Up to the row's right edge: a line that did not wrap would run on there.
    const QRect firstLine(body.left(), body.top(), kRow.right() - body.left() + 1, line);
    const QRect secondLine(body.left(), body.top() + line, kRow.right() - body.left() + 1, line);

    // A short word, then a long one that fits a line alone but not after it.
    QString longWord;
    while (metrics.horizontalAdvance(longWord + QLatin1Char('W')) <= body.width() - 10)
        longWord += QLatin1Char('W');
    const QString words = QStringLiteral("Bring ") + longWord;
    QVERIFY(metrics.horizontalAdvance(words) > body.width() + 10);
    auto wordsNotice = makeNotice(ClusterNoticeRemind);
    wordsNotice->setDisplayContent(words);
    // One word longer than a line.
    const QString word = longWord + QStringLiteral("WWWWWW");
    QVERIFY(metrics.horizontalAdvance(word) > body.width() + 20);
    QVERIFY(metrics.horizontalAdvance(word) < 2 * body.width() - 20);
    auto wordNotice = makeNotice(ClusterNoticeRemind);
    wordNotice->setDisplayContent(word);
    auto* model = rowsOf({wordsNotice, wordNotice}, this);

    const QImage broken = render(delegate, model->index(0, 0));
    const int bringRight = body.left() + metrics.horizontalAdvance(QStringLiteral("Bring"));
    const int firstRight = P::rightmostColumn(broken, firstLine, isInk);
    QVERIFY2(firstRight <= bringRight + 1 && firstRight > bringRight - 8, qPrintable(QString::number(firstRight)));
    const int secondRight = P::rightmostColumn(broken, secondLine, isInk);
    const int longRight = body.left() + metrics.horizontalAdvance(longWord);
    QVERIFY2(secondRight <= longRight + 1 && secondRight > longRight - 8, qPrintable(QString::number(secondRight)));

    const QImage cut = render(delegate, model->index(1, 0));
    const int cutRight = P::rightmostColumn(cut, firstLine, isInk);
    QVERIFY2(cutRight <= body.right() && cutRight > body.right() - metrics.horizontalAdvance(QLatin1Char('W')) - 2,
             qPrintable(QString::number(cutRight)));
    QVERIFY(P::countPixels(cut, secondLine, isInk) > 20);
}

void TestNoticeListViewItem::buttonSize_data()
{
    QTest::addColumn<int>("textWidth");
    QTest::addColumn<QSize>("size");
    QTest::newRow("30") << 30 << QSize(68, 24);
    QTest::newRow("67") << 67 << QSize(68, 24);
    QTest::newRow("68") << 68 << QSize(96, 24);
    QTest::newRow("95") << 95 << QSize(96, 24);
    QTest::newRow("96") << 96 << QSize(96, 48);
    QTest::newRow("200") << 200 << QSize(96, 48);
}

// Wider button from 68 pixels of text, and a second line from 96.
void TestNoticeListViewItem::buttonSize()
{
    QFETCH(int, textWidth);
    QFETCH(QSize, size);
    QCOMPARE(NoticeListViewItem::enterButtonSize(textWidth), size);
}

void TestNoticeListViewItem::buttonPainted_data()
{
    QTest::addColumn<int>("textWidth");
    QTest::addColumn<QSize>("size");
    QTest::addColumn<NoticeType>("type");
    QTest::newRow("67 prepare") << 67 << QSize(68, 24) << LessonPrepare;
    QTest::newRow("68 start") << 68 << QSize(96, 24) << LessonStart;
    QTest::newRow("95 prepare") << 95 << QSize(96, 24) << LessonPrepare;
    QTest::newRow("96 start") << 96 << QSize(96, 48) << LessonStart;
}

// The button is "#009265", at the top right of the body, sized by the measured translation.
void TestNoticeListViewItem::buttonPainted()
{
    QFETCH(int, textWidth);
    QFETCH(QSize, size);
    QFETCH(NoticeType, type);
    const QString text = textOfWidth(textWidth);
    QVERIFY2(!text.isEmpty(), "no glyph mix measures that width");
    overrideTexts({{"ID_Enter_Classroom", text}});

    const QRect expected(QPoint(kRow.right() - 10 - size.width() + 1, kRow.top() + 34), size);
    QCOMPARE(NoticeListViewItem::enterButtonRect(kRow), expected);

    NoticeListViewItem delegate(nullptr);
    auto* model = rowsOf({makeNotice(type)}, this);
    const QImage image = render(delegate, model->index(0, 0));
    // Above and below the text the fill runs edge to edge between the rounded corners.
    for (int x = expected.left() + 5; x <= expected.right() - 5; ++x) {
        QCOMPARE(P::colourAt(image, x, expected.top()), kButton);
        QCOMPARE(P::colourAt(image, x, expected.bottom()), kButton);
        QVERIFY(!isGreenish(image.pixel(x, expected.top() - 1)));
        QVERIFY(!isGreenish(image.pixel(x, expected.bottom() + 1)));
    }
    // The side columns are green (text may tint a few pixels); the columns beside them are not.
    const QRect side(expected.left(), expected.top() + 6, 1, expected.height() - 12);
    QVERIFY(P::countPixels(image, side, isGreenish) > side.height() / 2);
    QVERIFY(P::countPixels(image, side.translated(expected.width() - 1, 0), isGreenish) > side.height() / 2);
    QCOMPARE(P::countPixels(image, side.translated(-1, 0), isGreenish), 0);
    QCOMPARE(P::countPixels(image, side.translated(expected.width(), 0), isGreenish), 0);
    // White text inside.
    QVERIFY(P::countPixels(image, expected, [](QRgb p) { return qGray(p) > 230; }) > 10);
    QCOMPARE(P::countPixels(image, kRow, [](QRgb p) { return QColor(p) == kButton; }) > 0, true);
}

// The button moves the body's right edge left by its width plus 20; a row without button keeps it.
void TestNoticeListViewItem::bodyNarrowedByButton()
{
    overrideTexts({{"ID_Enter_Classroom", textOfWidth(40)},
                   {"ID_LMS_ClassStartNotice_LessonStart",
                    QStringLiteral("%1 has started, everybody is waiting for you in the classroom right now")},
                   {"ID_LMSClassAheadNotice_LessonWillStartAfter",
                    QStringLiteral("%1 starts in %2 minutes, everybody will be waiting for you in the classroom")}});
    NoticeListViewItem delegate(nullptr);
    auto* model = rowsOf({makeNotice(LessonStart), makeNotice(LessonAhead)}, this);
    const QRect body = NoticeListViewItem::bodyRect(kRow);
    const QRect button = NoticeListViewItem::enterButtonRect(kRow);
    QCOMPARE(button.size(), QSize(68, 24));
    const int narrowedRight = body.right() - (68 + 20);

    const QImage started = render(delegate, model->index(0, 0));
    const QRect beyond(narrowedRight + 1, body.top(), button.left() - narrowedRight - 1, body.height());
    const QRect belowButton(button.left(), button.bottom() + 1, button.width(), body.bottom() - button.bottom());
    QCOMPARE(P::countPixels(started, beyond, isInk), 0);
    QCOMPARE(P::countPixels(started, belowButton, isInk), 0);
    const int inkRight = P::rightmostColumn(
        started, QRect(body.left(), body.top(), narrowedRight - body.left() + 1, body.height()), isInk);
    QVERIFY2(inkRight > narrowedRight - 40, qPrintable(QString::number(inkRight)));

    const QImage ahead = render(delegate, model->index(1, 0));
    QVERIFY(P::rightmostColumn(ahead, body, isInk) > narrowedRight + 20);
}

void TestNoticeListViewItem::bodyRightEdgeExactly_data()
{
    QTest::addColumn<NoticeType>("type");
    QTest::addColumn<int>("textWidth");
    QTest::addColumn<int>("buttonWidth");   // 0: no button
    QTest::newRow("start, 68 wide") << LessonStart << 40 << 68;
    QTest::newRow("prepare, 96 wide") << LessonPrepare << 68 << 96;
    QTest::newRow("start, 96 by 48") << LessonStart << 96 << 96;
    QTest::newRow("ahead, none") << LessonAhead << 40 << 0;
}

// The body ends exactly the button's width plus 20 left of its own right edge: a line
// that may not wrap is cut there and nowhere else. Without a button the body keeps its edge.
void TestNoticeListViewItem::bodyRightEdgeExactly()
{
    QFETCH(NoticeType, type);
    QFETCH(int, textWidth);
    QFETCH(int, buttonWidth);
    const QString blocks = QStringLiteral("<p style='white-space:pre'>%1 ") + QString(120, QChar(0x2588))
        + QStringLiteral("</p>");
    overrideTexts({{"ID_Enter_Classroom", textOfWidth(textWidth)},
                   {"ID_LMS_ClassStartNotice_LessonStart", blocks},
                   {"ID_LMSClassAheadNotice_LessonWillStartAfter", QString(blocks).replace("%1", "%1%2")}});
    NoticeListViewItem delegate(nullptr);
    auto* model = rowsOf({makeNotice(type)}, this);
    const QImage image = render(delegate, model->index(0, 0));
    const QRect body = NoticeListViewItem::bodyRect(kRow);
    const int expectedRight = buttonWidth ? body.right() - (buttonWidth + 20) : body.right();
    if (buttonWidth)
        QCOMPARE(NoticeListViewItem::enterButtonRect(kRow).width(), buttonWidth);
    // The first line only: the button stands beside it, in the body's top right.
    const QRect line(body.left(), body.top(), expectedRight - body.left() + 1 + 10, 14);
    const QRect textArea(body.left(), body.top(), kRow.right() - body.left() + 1, 14);
    QCOMPARE(P::rightmostColumn(image, buttonWidth ? line : textArea, isInk), expectedRight);
    QVERIFY(P::countPixels(image, QRect(expectedRight - 20, body.top() + 2, 21, 8), isInk) > 8 * 20);
}

// Rich text is drawn inside the body rectangle only, whatever its length.
void TestNoticeListViewItem::richBodyIsClippedToItsRectangle()
{
    NoticeListViewItem delegate(nullptr);
    const QString longText = QStringLiteral("many words here ").repeated(60);
    auto* model = rowsOf({activityNotice(QStringLiteral("Quiz"), longText)}, this);
    const QImage image = render(delegate, model->index(0, 0));
    const QRect body = NoticeListViewItem::bodyRect(kRow);
    QVERIFY(P::countPixels(image, body, isInk) > 100);
    const QRect under(body.left(), body.bottom() + 1, body.width(), kRow.bottom() - body.bottom());
    QCOMPARE(P::countPixels(image, under, isInk), 0);
    // Body ink is the grey of "#666666", anti-aliased towards white.
    QVERIFY(P::countPixels(image, body, [](QRgb p) { return qGray(p) < 120 && qAbs(qRed(p) - qBlue(p)) < 8; }) > 0);
}

// The lesson's name stands in green inside the grey body.
void TestNoticeListViewItem::lessonNameSpanColoured()
{
    NoticeListViewItem delegate(nullptr);
    auto* model = rowsOf({makeNotice(LessonAhead), makeNotice(ClusterNoticeRemind)}, this);
    const QRect body = NoticeListViewItem::bodyRect(kRow);
    QVERIFY(P::countPixels(render(delegate, model->index(0, 0)), body, isGreenish) > 10);
    auto cluster = makeNotice(ClusterNoticeRemind);
    cluster->setDisplayContent(QStringLiteral("Plain text"));
    auto* plain = rowsOf({cluster}, this);
    QCOMPARE(P::countPixels(render(delegate, plain->index(0, 0)), body, isGreenish), 0);
}

// A cluster notice is plain text: a tag in it is drawn as typed.
void TestNoticeListViewItem::clusterTagsShowLiterally()
{
    NoticeListViewItem delegate(nullptr);
    auto tagged = makeNotice(ClusterNoticeRemind);
    tagged->setDisplayContent(QStringLiteral("<b>Exam</b>"));
    auto bare = makeNotice(ClusterNoticeRemind);
    bare->setDisplayContent(QStringLiteral("Exam"));
    const QFontMetrics metrics([] { QFont f; f.setPixelSize(14); return f; }());
    const NoticeListViewItem::BodyText text = delegate.bodyText(*tagged, metrics, 294);
    QCOMPARE(text.isRichText, false);
    QCOMPARE(text.text, QStringLiteral("<b>Exam</b>"));

    auto* model = rowsOf({tagged, bare}, this);
    const QRect body = NoticeListViewItem::bodyRect(kRow);
    const int taggedRight = P::rightmostColumn(render(delegate, model->index(0, 0)), body, isInk);
    const int bareRight = P::rightmostColumn(render(delegate, model->index(1, 0)), body, isInk);
    // "<b>" and "</b>" take room of their own.
    QVERIFY2(taggedRight - bareRight >= metrics.horizontalAdvance(QStringLiteral("<b></b>")) - 4,
             qPrintable(QStringLiteral("%1 %2").arg(taggedRight).arg(bareRight)));
}

// A lesson name with a tag is escaped, so the tag reads as text.
void TestNoticeListViewItem::lessonNameIsEscaped()
{
    NoticeListViewItem delegate(nullptr);
    auto notice = makeNotice(LessonAhead);
    notice->setLessonName(QStringLiteral("<i>A</i>&B"));
    const QFontMetrics metrics([] { QFont f; f.setPixelSize(14); return f; }());
    const QString html = delegate.bodyText(*notice, metrics, 294).text;
    QVERIFY2(html.contains(QStringLiteral("&lt;i&gt;A&lt;/i&gt;&amp;B")), qPrintable(html));
    QVERIFY(plainTextOf(html).contains(QStringLiteral("<i>A</i>&B")));
}

// A study activity's texts are markup: a tag in them takes effect.
void TestNoticeListViewItem::studyActivityIsNotEscaped()
{
    NoticeListViewItem delegate(nullptr);
    auto notice = activityNotice(QStringLiteral("Quiz"), QStringLiteral("<b>due</b> Friday"));
    const QFontMetrics metrics([] { QFont f; f.setPixelSize(14); return f; }());
    const NoticeListViewItem::BodyText text = delegate.bodyText(*notice, metrics, 294);
    QVERIFY(text.isRichText);
    QCOMPARE(text.text, QStringLiteral("[Quiz] <b>due</b> Friday"));
    QCOMPARE(plainTextOf(text.text), QStringLiteral("[Quiz] due Friday"));
}

void TestNoticeListViewItem::nameSpanByLocale_data()
{
    QTest::addColumn<bool>("china");
    QTest::addColumn<NoticeType>("type");
    QTest::addColumn<QString>("span");
    const QString quoted = QStringLiteral("<span style='color: #009265;'>&quot;Algebra&quot;</span>");
    const QString spaced = QStringLiteral("<span style='color: #009265;'>&nbsp;Algebra</span>");
    QTest::newRow("quotes ahead") << false << LessonAhead << quoted;
    QTest::newRow("quotes start") << false << LessonStart << quoted;
    QTest::newRow("nbsp ahead") << true << LessonAhead << spaced;
    QTest::newRow("nbsp prepare") << true << LessonPrepare << spaced;
}

// Outside China the name stands in quotation marks; in China after one non-breaking space.
void TestNoticeListViewItem::nameSpanByLocale()
{
    QFETCH(bool, china);
    QFETCH(NoticeType, type);
    QFETCH(QString, span);
    NoticeListViewItem delegate(nullptr);
    delegate.setChinaLocale(china);
    const QFontMetrics metrics([] { QFont f; f.setPixelSize(14); return f; }());
    const QString html = delegate.bodyText(*makeNotice(type), metrics, 294).text;
    const QString expected = type == LessonAhead ? aheadTemplate().arg(span, QStringLiteral("10"))
                                                 : qtTrId("ID_LMS_ClassStartNotice_LessonStart", -1).arg(span);
    QCOMPARE(html, expected);
    // A new delegate starts in the Chinese form.
    NoticeListViewItem fresh(nullptr);
    QVERIFY(fresh.bodyText(*makeNotice(type), metrics, 294).text.contains(QStringLiteral("&nbsp;Algebra")));
}

void TestNoticeListViewItem::minutesOrDate_data()
{
    QTest::addColumn<qint64>("secondsLeft");
    QTest::addColumn<QString>("minutes");   // empty: the one-hour template with the date
    QTest::newRow("3600") << qint64(3600) << "60";
    QTest::newRow("3601") << qint64(3601) << "";
    QTest::newRow("59") << qint64(59) << "0";
    QTest::newRow("-30") << qint64(-30) << "0";
    QTest::newRow("-600") << qint64(-600) << "-10";
    QTest::newRow("-3599") << qint64(-3599) << "-59";
}

// Minutes up to and at 3600 seconds, the date beyond; a past start shows zero or negative minutes.
void TestNoticeListViewItem::minutesOrDate()
{
    QFETCH(qint64, secondsLeft);
    QFETCH(QString, minutes);
    NoticeListViewItem delegate(nullptr);
    delegate.setChinaLocale(false);
    auto notice = makeNotice(LessonAhead);
    notice->setLessonStartTime(quint32(kNow + secondsLeft));
    const QFontMetrics metrics([] { QFont f; f.setPixelSize(14); return f; }());
    const QString html = delegate.bodyText(*notice, metrics, 294).text;
    const QString span = QStringLiteral("<span style='color: #009265;'>&quot;Algebra&quot;</span>");
    if (minutes.isEmpty()) {
        QCOMPARE(html, qtTrId("ID_ClassAheadNotice_LessonWillStartAfterOneHour", -1)
                           .arg(span, QStringLiteral("2027-01-15 09:00")));
    } else {
        QCOMPARE(html, aheadTemplate().arg(span, minutes));
    }
}

// The text is built at each paint, so the minutes follow the engine's clock.
void TestNoticeListViewItem::minutesAreCurrentAtEachPaint()
{
    NoticeListViewItem delegate(nullptr);
    auto notice = makeNotice(LessonAhead);
    const QFontMetrics metrics([] { QFont f; f.setPixelSize(14); return f; }());
    QVERIFY(plainTextOf(delegate.bodyText(*notice, metrics, 294).text).contains(QStringLiteral("10")));
    CoreEngine::instance()->advanceTime(300);
    QVERIFY(plainTextOf(delegate.bodyText(*notice, metrics, 294).text).contains(QStringLiteral(" 5 ")));
    auto* model = rowsOf({notice}, this);
    const QImage five = render(delegate, model->index(0, 0));
    CoreEngine::instance()->advanceTime(-300);
    const QImage ten = render(delegate, model->index(0, 0));
    QVERIFY(five != ten);
}

void TestNoticeListViewItem::studyReportBody_data()
{
    QTest::addColumn<int>("role");
    QTest::addColumn<bool>("china");
    QTest::addColumn<QString>("kindKey");
    QTest::addColumn<QString>("messageKey");
    QTest::newRow("learner") << 1 << false << "ID_StudyReportNotice_LearningReport"
                             << "ID_StudyReportNotice_GoodJobInLesson";
    QTest::newRow("teacher") << 2 << false << "ID_StudyReportNotice_TeachingReport"
                             << "ID_StudyReportNotice_TeachingReportOK";
    QTest::newRow("learner china") << 1 << true << "ID_StudyReportNotice_LearningReport"
                                   << "ID_StudyReportNotice_GoodJobInLesson";
    QTest::newRow("role 0") << 0 << true << "ID_StudyReportNotice_TeachingReport"
                            << "ID_StudyReportNotice_TeachingReportOK";
}

// Role 1 reads as a learning report, any other as a teaching one; the name span is the same in every locale.
void TestNoticeListViewItem::studyReportBody()
{
    QFETCH(int, role);
    QFETCH(bool, china);
    QFETCH(QString, kindKey);
    QFETCH(QString, messageKey);
    NoticeListViewItem delegate(nullptr);
    delegate.setChinaLocale(china);
    auto notice = makeNotice(StudyReport);
    notice->setReportRole(role);
    notice->setLessonName(QStringLiteral("A & B"));
    const QFontMetrics metrics([] { QFont f; f.setPixelSize(14); return f; }());
    const QString html = delegate.bodyText(*notice, metrics, 294).text;
    const QString span =
        QStringLiteral("<span style='color: #009265;'>&nbsp;&nbsp;&quot;A &amp; B&quot;&nbsp;&nbsp;</span>");
    const QString kind = qtTrId(kindKey.toUtf8().constData(), -1);
    const QString message = qtTrId(messageKey.toUtf8().constData(), -1);
    QCOMPARE(html, QStringLiteral("[%1] %2").arg(kind, message.arg(span)));
}

void TestNoticeListViewItem::studyReportLineCutWidth_data()
{
    QTest::addColumn<int>("role");
    QTest::addColumn<QString>("lessonName");
    QTest::newRow("learner, long name") << 1 << QStringLiteral("A lesson name far too long for a hundred pixels");
    QTest::newRow("learner, short name") << 1 << QStringLiteral("Algebra II");
    QTest::newRow("teacher, long name") << 2 << QStringLiteral("Geometry of the plane and of space");
}

// The report's line is cut with ElideRight to twice the body width, less the cut name's
// advance in the body font, less 15: a width chosen so that the name's advance decides.
void TestNoticeListViewItem::studyReportLineCutWidth()
{
    QFETCH(int, role);
    QFETCH(QString, lessonName);
    NoticeListViewItem delegate(nullptr);
    auto notice = makeNotice(StudyReport);
    notice->setReportRole(role);
    notice->setLessonName(lessonName);
    const QFontMetrics metrics(pixelFont(14));
    const bool isLearner = role == 1;
    const QString kind = isLearner ? qtTrId("ID_StudyReportNotice_LearningReport", -1)
                                   : qtTrId("ID_StudyReportNotice_TeachingReport", -1);
    const QString message = isLearner ? qtTrId("ID_StudyReportNotice_GoodJobInLesson", -1)
                                      : qtTrId("ID_StudyReportNotice_TeachingReportOK", -1);
    const QString line = QStringLiteral("[%1] %2").arg(kind, message);
    const QString name = metrics.elidedText(lessonName, Qt::ElideRight, 100);
    const int nameAdvance = metrics.horizontalAdvance(name);
    const QString span = QStringLiteral("<span style='color: #009265;'>&nbsp;&nbsp;&quot;%1&quot;&nbsp;&nbsp;</span>")
                             .arg(name.toHtmlEscaped());
    auto expectedFor = [&](int bodyWidth) {
        const QString cut = metrics.elidedText(line, Qt::ElideRight, 2 * bodyWidth - nameAdvance - 15);
        return cut.contains(QStringLiteral("%1")) ? cut.arg(span) : cut;
    };
    // Half the name's advance short of the whole line, and without the name the line would fit.
    const int bodyWidth = (metrics.horizontalAdvance(line) + 15 + nameAdvance / 2) / 2;
    QVERIFY(metrics.elidedText(line, Qt::ElideRight, 2 * bodyWidth - 15) == line);
    const QString expected = expectedFor(bodyWidth);
    QVERIFY(expected.contains(QChar(0x2026)));
    QCOMPARE(delegate.bodyText(*notice, metrics, bodyWidth).text, expected);
    // Much narrower, the cut lands before the name, which is then left out.
    const int beforeName = metrics.horizontalAdvance(line.left(line.indexOf(QLatin1String("%1"))));
    const int narrow = (nameAdvance + 15 + beforeName / 2) / 2;
    QVERIFY(!expectedFor(narrow).contains(QLatin1String("span")));
    QCOMPARE(delegate.bodyText(*notice, metrics, narrow).text, expectedFor(narrow));
    // Wide enough, the line stays whole.
    QCOMPARE(delegate.bodyText(*notice, metrics, 294).text, QString(line).arg(span));
}

// The friend-request body is plain text cut to twice the body width less 15.
void TestNoticeListViewItem::friendRequestBodyIsElided()
{
    NoticeListViewItem delegate(nullptr);
    const QFontMetrics metrics([] { QFont f; f.setPixelSize(14); return f; }());
    const QString full = qtTrId("ID_GatherNotice_FriendRequest", -1);
    NoticeListViewItem::BodyText text = delegate.bodyText(*makeNotice(ContactorAdd), metrics, 294);
    QCOMPARE(text.isRichText, false);
    QCOMPARE(text.text, full);
    text = delegate.bodyText(*makeNotice(ContactorAdd), metrics, 60);
    QCOMPARE(text.text, metrics.elidedText(full, Qt::ElideRight, 2 * 60 - 15));
    QVERIFY(text.text.endsWith(QChar(0x2026)));
}

// A type the row does not know draws an empty rich body.
void TestNoticeListViewItem::unknownTypeHasEmptyRichBody()
{
    NoticeListViewItem delegate(nullptr);
    const QFontMetrics metrics([] { QFont f; f.setPixelSize(14); return f; }());
    const NoticeListViewItem::BodyText text = delegate.bodyText(GatherNotice(), metrics, 294);
    QVERIFY(text.isRichText);
    QCOMPARE(text.text, QString());
}

void TestNoticeListViewItem::clickOnButton_data()
{
    QTest::addColumn<NoticeType>("type");
    QTest::addColumn<int>("textWidth");
    QTest::newRow("prepare 40") << LessonPrepare << 40;
    QTest::newRow("start 40") << LessonStart << 40;
    QTest::newRow("prepare 68") << LessonPrepare << 68;
    QTest::newRow("start 96") << LessonStart << 96;
}

// On the button a left release enters the classroom; one pixel left of it is a click on the row.
void TestNoticeListViewItem::clickOnButton()
{
    QFETCH(NoticeType, type);
    QFETCH(int, textWidth);
    overrideTexts({{"ID_Enter_Classroom", textOfWidth(textWidth)}});
    NoticeListViewItem delegate(nullptr);
    auto* model = rowsOf({makeNotice(type)}, this);
    const QModelIndex index = model->index(0, 0);
    const QRect button = NoticeListViewItem::enterButtonRect(kRow);
    QSignalSpy clicked(&delegate, &NoticeListViewItem::clickedItem);
    QSignalSpy enter(&delegate, &NoticeListViewItem::enterClassRoom);
    const QStyleOptionViewItem option = optionFor(kRow);

    const QList<QPoint> onButton = {button.center(), button.topLeft(), button.bottomRight()};
    for (const QPoint& pos : onButton) {
        QMouseEvent release = mouse(QEvent::MouseButtonRelease, pos);
        QCOMPARE(delegate.editorEvent(&release, model, option, index), false);
    }
    QCOMPARE(enter.count(), 3);
    QCOMPARE(clicked.count(), 0);
    QCOMPARE(enter.first().at(0).value<QAbstractItemModel*>(), model);
    QCOMPARE(enter.first().at(1).value<QModelIndex>(), index);

    const QList<QPoint> offButton = {QPoint(button.left() - 1, button.center().y()),
                                     QPoint(button.center().x(), button.top() - 1),
                                     QPoint(button.center().x(), button.bottom() + 1)};
    for (const QPoint& pos : offButton) {
        QMouseEvent release = mouse(QEvent::MouseButtonRelease, pos);
        delegate.editorEvent(&release, model, option, index);
    }
    QCOMPARE(enter.count(), 3);
    QCOMPARE(clicked.count(), 3);
    QCOMPARE(clicked.first().at(1).value<QModelIndex>(), index);
}

// A lesson row of type 2 has no button: a release where it would be is a click on the row.
void TestNoticeListViewItem::aheadRowHasNoButton()
{
    NoticeListViewItem delegate(nullptr);
    auto* model = rowsOf({makeNotice(LessonAhead), makeNotice(StudyReport)}, this);
    QSignalSpy clicked(&delegate, &NoticeListViewItem::clickedItem);
    QSignalSpy enter(&delegate, &NoticeListViewItem::enterClassRoom);
    const QRect button = NoticeListViewItem::enterButtonRect(kRow);
    for (int row = 0; row < 2; ++row) {
        QMouseEvent release = mouse(QEvent::MouseButtonRelease, button.center());
        delegate.editorEvent(&release, model, optionFor(kRow), model->index(row, 0));
    }
    QCOMPARE(clicked.count(), 2);
    QCOMPARE(enter.count(), 0);
    // The button is not painted either.
    const QImage image = render(delegate, model->index(0, 0));
    QCOMPARE(P::countPixels(image, button, [](QRgb p) { return QColor(p) == kButton; }), 0);
}

void TestNoticeListViewItem::rowsWithoutButtonClickAnywhere_data()
{
    QTest::addColumn<NoticeType>("type");
    QTest::addColumn<int>("textWidth");
    QTest::newRow("ahead, 68 button") << LessonAhead << 40;
    QTest::newRow("ahead, 96 button") << LessonAhead << 68;
    QTest::newRow("ahead, 96 by 48 button") << LessonAhead << 96;
    QTest::newRow("friend request") << ContactorAdd << 96;
    QTest::newRow("cluster notice") << ClusterNoticeRemind << 96;
    QTest::newRow("study report") << StudyReport << 96;
    QTest::newRow("study activity") << StudyActivity << 96;
}

// Rows without a button (lesson ahead, and every non-lesson row) answer a left release
// anywhere with clickedItem: at the row's corners and edges, and where a button would stand.
void TestNoticeListViewItem::rowsWithoutButtonClickAnywhere()
{
    QFETCH(NoticeType, type);
    QFETCH(int, textWidth);
    overrideTexts({{"ID_Enter_Classroom", textOfWidth(textWidth)}});
    NoticeListViewItem delegate(nullptr);
    auto* model = rowsOf({type == StudyActivity ? activityNotice(QStringLiteral("Quiz"), QStringLiteral("due"))
                                                : makeNotice(type)},
                         this);
    const QModelIndex index = model->index(0, 0);
    const QRect button = NoticeListViewItem::enterButtonRect(kRow);
    const QList<QPoint> points = {kRow.topLeft(), kRow.topRight(), kRow.bottomLeft(), kRow.bottomRight(),
                                  QPoint(kRow.center().x(), kRow.top()), QPoint(kRow.left(), kRow.center().y()),
                                  kRow.center(), button.center(), button.topLeft(), button.topRight(),
                                  button.bottomLeft(), button.bottomRight()};
    QSignalSpy clicked(&delegate, &NoticeListViewItem::clickedItem);
    QSignalSpy enter(&delegate, &NoticeListViewItem::enterClassRoom);
    for (int i = 0; i < points.size(); ++i) {
        QMouseEvent release = mouse(QEvent::MouseButtonRelease, points.at(i));
        delegate.editorEvent(&release, model, optionFor(kRow), index);
        const QString where = QStringLiteral("%1,%2").arg(points.at(i).x()).arg(points.at(i).y());
        QVERIFY2(clicked.count() == i + 1, qPrintable(where));
    }
    QCOMPARE(enter.count(), 0);
    for (const QList<QVariant>& arguments : clicked) {
        QCOMPARE(arguments.at(0).value<QAbstractItemModel*>(), model);
        QCOMPARE(arguments.at(1).value<QModelIndex>(), index);
    }
}

void TestNoticeListViewItem::buttonRowsClickOffTheButton_data()
{
    QTest::addColumn<NoticeType>("type");
    QTest::addColumn<int>("textWidth");
    QTest::newRow("prepare, 68 button") << LessonPrepare << 40;
    QTest::newRow("start, 96 button") << LessonStart << 68;
    QTest::newRow("start, 96 by 48 button") << LessonStart << 96;
}

// On a row with a button, a release at any of the row's corners or edges is a click on the row.
void TestNoticeListViewItem::buttonRowsClickOffTheButton()
{
    QFETCH(NoticeType, type);
    QFETCH(int, textWidth);
    overrideTexts({{"ID_Enter_Classroom", textOfWidth(textWidth)}});
    NoticeListViewItem delegate(nullptr);
    auto* model = rowsOf({makeNotice(type)}, this);
    const QModelIndex index = model->index(0, 0);
    const QRect button = NoticeListViewItem::enterButtonRect(kRow);
    const QList<QPoint> points = {kRow.topLeft(), kRow.topRight(), kRow.bottomLeft(), kRow.bottomRight(),
                                  QPoint(button.center().x(), kRow.top()), QPoint(kRow.right(), button.center().y()),
                                  QPoint(button.right() + 1, button.top()), kRow.center()};
    QSignalSpy clicked(&delegate, &NoticeListViewItem::clickedItem);
    QSignalSpy enter(&delegate, &NoticeListViewItem::enterClassRoom);
    for (const QPoint& pos : points) {
        QVERIFY(!button.contains(pos));
        QMouseEvent release = mouse(QEvent::MouseButtonRelease, pos);
        delegate.editorEvent(&release, model, optionFor(kRow), index);
    }
    QCOMPARE(clicked.count(), points.size());
    QCOMPARE(enter.count(), 0);
}

void TestNoticeListViewItem::clicksThatEmitNothing_data()
{
    QTest::addColumn<int>("eventType");
    QTest::addColumn<int>("button");
    QTest::addColumn<QPoint>("pos");
    QTest::addColumn<bool>("withRecord");
    const QPoint inside = kRow.center();
    const int release = QEvent::MouseButtonRelease;
    QTest::newRow("right release") << release << int(Qt::RightButton) << inside << true;
    QTest::newRow("middle release") << release << int(Qt::MiddleButton) << inside << true;
    QTest::newRow("left press") << int(QEvent::MouseButtonPress) << int(Qt::LeftButton) << inside << true;
    QTest::newRow("double click") << int(QEvent::MouseButtonDblClick) << int(Qt::LeftButton) << inside << true;
    QTest::newRow("left of row") << release << int(Qt::LeftButton) << QPoint(kRow.left() - 1, kRow.center().y())
                                 << true;
    QTest::newRow("below row") << release << int(Qt::LeftButton) << QPoint(kRow.center().x(), kRow.bottom() + 1)
                               << true;
    QTest::newRow("no record") << release << int(Qt::LeftButton) << inside << false;
}

// Right clicks, presses, releases outside the row and rows without a record emit nothing.
void TestNoticeListViewItem::clicksThatEmitNothing()
{
    QFETCH(int, eventType);
    QFETCH(int, button);
    QFETCH(QPoint, pos);
    QFETCH(bool, withRecord);
    NoticeListViewItem delegate(nullptr);
    auto* model = rowsOf({withRecord ? makeNotice(LessonStart) : GatherNoticePtr()}, this);
    QSignalSpy clicked(&delegate, &NoticeListViewItem::clickedItem);
    QSignalSpy enter(&delegate, &NoticeListViewItem::enterClassRoom);
    QMouseEvent event = mouse(QEvent::Type(eventType), pos, Qt::MouseButton(button));
    QCOMPARE(delegate.editorEvent(&event, model, optionFor(kRow), model->index(0, 0)), false);
    QCOMPARE(delegate.editorEvent(nullptr, model, optionFor(kRow), model->index(0, 0)), false);
    QCOMPARE(clicked.count() + enter.count(), 0);
}

QTEST_MAIN(TestNoticeListViewItem)
#include "tst_noticelistviewitem.moc"
