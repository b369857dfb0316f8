#include "AvatarManager.h"
#include "CoreEngine.h"
#include "LocalDays_p.h"
#include "NoticeListModel.h"
#include "NoticeListViewItem.h"
#include "NoticeListWidget.h"
#include "ResourceSpy.h"
#include "PaintSurface.h"
#include "PixelProbe.h"
#include "TestKit.h"
#include "VyrUtils.h"

#include <QApplication>
#include <QPainter>
#include <QStandardItemModel>
#include <QtTest>
#include <qdrawutil.h>

#include <ctime>
#include <functional>
#include <memory>

using namespace VyrEngine;

namespace {

const qint64 kNow = 1800000000;
const quint64 kCluster = 4242;
const QRect kRow(0, 0, 364, 88);

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
    notice->setDisplayContent(QStringLiteral("Bring your books"));
    notice->setDisplayPod(QSharedPointer<StudyActivityNoticeWidgetDisplayPod>::create(
        QStringLiteral("Quiz"), QStringLiteral("Chapter 3 is open"), false, false, false, QString(), false, QString(),
        QString(), false, false, false, false, QStringLiteral("Heading"), QString(), QString(), false));
    return notice;
}

// What a row shows painted on a white canvas of its size at `ratio`, with the painter's font `font`.
QImage paintRow(const NoticeListViewItem& delegate, const QModelIndex& index, const QRect& row = kRow,
                qreal ratio = 1, const QFont& font = QFont(), QStyle::State state = QStyle::State_Enabled)
{
    QImage image(row.size() * ratio, QImage::Format_ARGB32_Premultiplied);
    image.setDevicePixelRatio(ratio);
    image.fill(Qt::white);
    QPainter painter(&image);
    painter.setFont(font);
    QStyleOptionViewItem option;
    option.rect = row;
    option.state = state;
    delegate.paint(&painter, option, index);
    return image;
}

// The same row as a delegate that has kept nothing paints it.
QImage freshRow(const QModelIndex& index, const QRect& row = kRow, qreal ratio = 1, const QFont& font = QFont(),
                QStyle::State state = QStyle::State_Enabled)
{
    NoticeListViewItem fresh(nullptr);
    fresh.setChinaLocale(false);
    return paintRow(fresh, index, row, ratio, font, state);
}

QPixmap filled(const QColor& colour)
{
    QPixmap picture(64, 64);
    picture.fill(colour);
    return picture;
}

using Change = std::function<void(GatherNotice&)>;

} // namespace

Q_DECLARE_METATYPE(Change)

// Gathered rows painted from their kept pictures: a changed record, width,
// font or pixel ratio paints the row anew, exactly as a fresh delegate would.
class TestNoticeRowPictures : public QObject
{
    Q_OBJECT
private slots:
    void initTestCase();
    void init();
    void cleanup();

    void changedRecordPaintsAsNew_data();
    void changedRecordPaintsAsNew();
    void changedSurfacePaintsAsNew_data();
    void changedSurfacePaintsAsNew();
    void hoverPaintsAsNew_data();
    void hoverPaintsAsNew();
    void unchangedRowIsPaintedOnce_data();
    void unchangedRowIsPaintedOnce();
    void keptPicturesAreBounded();
    void zoneChangePaintsAsNew();
    void windowShadowIsLoadedOnce();

private:
    QStandardItemModel m_rows;
    std::unique_ptr<NoticeListViewItem> m_delegate;
    GatherNoticePtr m_notice;
    QFont m_applicationFont;
    void setUpRow(NoticeType type);
    QModelIndex row() const { return m_rows.index(0, 0); }
};

void TestNoticeRowPictures::initTestCase()
{
    QVERIFY(TestKit::loadTranslations());
    m_applicationFont = QApplication::font();
}

void TestNoticeRowPictures::init()
{
    TestKit::resetAll(kNow);
    AvatarManager::instance().clear();
    m_delegate = std::make_unique<NoticeListViewItem>(nullptr);
    m_delegate->setChinaLocale(false);
}

void TestNoticeRowPictures::cleanup()
{
    m_delegate.reset();
    m_rows.clear();
    m_notice.reset();
    QApplication::setFont(m_applicationFont);
    AvatarManager::instance().clear();
    TestKit::resetAll(kNow);
}

void TestNoticeRowPictures::setUpRow(NoticeType type)
{
    m_notice = makeNotice(type);
    auto* item = new QStandardItem;
    item->setData(QVariant::fromValue(m_notice), Qt::UserRole);
    m_rows.appendRow(item);
}

void TestNoticeRowPictures::changedRecordPaintsAsNew_data()
{
    QTest::addColumn<int>("type");
    QTest::addColumn<Change>("change");

    const Change title = [](GatherNotice& n) { n.setTitle(QStringLiteral("Class 4 of Grade Eight")); };
    const Change time = [](GatherNotice& n) { n.setTime(n.time() + 3 * 3600 + 17 * 60); };
    const Change avatar = [](GatherNotice&) { AvatarManager::instance().putClusterAvatar(kCluster, filled(Qt::red)); };
    const Change cluster = [](GatherNotice& n) { n.setClusterId(kCluster + 1); };
    const Change lesson = [](GatherNotice& n) { n.setLessonName(QStringLiteral("Geometry")); };
    const Change start = [](GatherNotice& n) { n.setLessonStartTime(n.lessonStartTime() + 1200); };
    const Change clock = [](GatherNotice&) { CoreEngine::instance()->setCurrentTime(kNow + 300); };
    const Change farStart = [](GatherNotice& n) { n.setLessonStartTime(quint32(kNow + 2 * 86400)); };

    const struct
    {
        NoticeType type;
        const char* name;
    } kinds[] = {{ContactorAdd, "friend"},        {ClusterNoticeRemind, "cluster"}, {LessonAhead, "ahead"},
                 {LessonPrepare, "prepare"},      {LessonStart, "start"},          {StudyReport, "report"},
                 {StudyActivity, "activity"}};
    for (const auto& kind : kinds) {
        auto add = [&](const char* what, const Change& change) {
            QTest::addRow("%s/%s", kind.name, what) << int(kind.type) << change;
        };
        add("time", time);
        if (kind.type == ContactorAdd)
            continue;   // its title and picture are the library's own
        add("title", title);
        add("avatar", avatar);
        add("cluster", cluster);
        switch (kind.type) {
        case ClusterNoticeRemind:
            add("content", [](GatherNotice& n) { n.setDisplayContent(QStringLiteral("Exam moved to Monday")); });
            break;
        case LessonAhead:
            add("lesson", lesson);
            add("start", start);
            add("clock", clock);
            add("date", farStart);
            break;
        case LessonPrepare:
        case LessonStart:
            add("lesson", lesson);
            break;
        case StudyReport:
            add("lesson", lesson);
            add("role", [](GatherNotice& n) { n.setReportRole(2); });
            break;
        case StudyActivity:
            add("texts", [](GatherNotice& n) {
                n.displayPod()->contentText = QStringLiteral("Chapter 4 <b>test</b> closes tonight");
            });
            add("record", [](GatherNotice& n) {
                n.setDisplayPod(QSharedPointer<StudyActivityNoticeWidgetDisplayPod>::create(
                    QStringLiteral("Poll"), QStringLiteral("Vote for the trip"), false, false, false, QString(), false,
                    QString(), QString(), false, false, false, false, QStringLiteral("Heading"), QString(), QString(),
                    false));
            });
            break;
        default:
            break;
        }
    }
}

// A change to what a row shows repaints it, never its kept picture.
void TestNoticeRowPictures::changedRecordPaintsAsNew()
{
    QFETCH(int, type);
    QFETCH(Change, change);
    setUpRow(NoticeType(type));

    const QImage before = paintRow(*m_delegate, row());
    QCOMPARE(paintRow(*m_delegate, row()), before);

    change(*m_notice);
    const QImage after = paintRow(*m_delegate, row());
    QVERIFY2(after != before, "the change shows");
    QCOMPARE(after, freshRow(row()));
}

void TestNoticeRowPictures::changedSurfacePaintsAsNew_data()
{
    QTest::addColumn<int>("type");
    QTest::addColumn<QString>("surface");
    const struct
    {
        NoticeType type;
        const char* name;
    } kinds[] = {{ContactorAdd, "friend"},   {ClusterNoticeRemind, "cluster"}, {LessonAhead, "ahead"},
                 {LessonStart, "start"},     {StudyReport, "report"},         {StudyActivity, "activity"}};
    for (const auto& kind : kinds) {
        for (const char* surface : {"width", "font", "appfont", "ratio"})
            QTest::addRow("%s/%s", kind.name, surface) << int(kind.type) << QString::fromLatin1(surface);
    }
}

// A new width, painter font, application font or pixel ratio repaints the row.
void TestNoticeRowPictures::changedSurfacePaintsAsNew()
{
    QFETCH(int, type);
    QFETCH(QString, surface);
    setUpRow(NoticeType(type));
    const QImage before = paintRow(*m_delegate, row());
    // Made now, as the kept delegate was: a rich body's font is the application's when its delegate is made.
    NoticeListViewItem fresh(nullptr);
    fresh.setChinaLocale(false);

    QRect rect = kRow;
    if (surface == QLatin1String("width")) // narrower, on a canvas of the same size, so the two compare
        rect = kRow.adjusted(0, 0, -120, 0);
    const PaintSurface changed = PaintSurface::changedTo(surface);
    const qreal ratio = changed.ratio;
    const QFont font = changed.font;
    QImage after = paintRow(*m_delegate, row(), rect, ratio, font);
    if (surface == QLatin1String("width")) {
        QImage wide(kRow.size(), QImage::Format_ARGB32_Premultiplied);
        wide.fill(Qt::white);
        QPainter painter(&wide);
        painter.drawImage(0, 0, after);
        painter.end();
        QVERIFY(wide != before);
    } else if (ratio == 1) {
        QVERIFY(after != before);
    }
    QCOMPARE(after, paintRow(fresh, row(), rect, ratio, font));
    // And back: the first surface paints as at first.
    QApplication::setFont(m_applicationFont);
    QCOMPARE(paintRow(*m_delegate, row()), before);
}

void TestNoticeRowPictures::hoverPaintsAsNew_data()
{
    QTest::addColumn<int>("type");
    QTest::newRow("friend") << int(ContactorAdd);
    QTest::newRow("start") << int(LessonStart);
    QTest::newRow("activity") << int(StudyActivity);
}

// A row under the mouse and back again shows each look as a fresh delegate does.
void TestNoticeRowPictures::hoverPaintsAsNew()
{
    QFETCH(int, type);
    setUpRow(NoticeType(type));
    const QImage plain = paintRow(*m_delegate, row());
    const QStyle::State hovered = QStyle::State_Enabled | QStyle::State_MouseOver;
    const QImage hover = paintRow(*m_delegate, row(), kRow, 1, QFont(), hovered);
    QVERIFY(hover != plain);
    QCOMPARE(hover, freshRow(row(), kRow, 1, QFont(), hovered));
    QCOMPARE(paintRow(*m_delegate, row()), plain);
}

void TestNoticeRowPictures::unchangedRowIsPaintedOnce_data()
{
    QTest::addColumn<int>("type");
    QTest::newRow("friend") << int(ContactorAdd);
    QTest::newRow("cluster") << int(ClusterNoticeRemind);
    QTest::newRow("ahead") << int(LessonAhead);
    QTest::newRow("start") << int(LessonStart);
    QTest::newRow("report") << int(StudyReport);
    QTest::newRow("activity") << int(StudyActivity);
}

// Repaints of an unchanged row draw its kept picture: one picture made, the same pixels.
void TestNoticeRowPictures::unchangedRowIsPaintedOnce()
{
    QFETCH(int, type);
    setUpRow(NoticeType(type));
    const QImage first = paintRow(*m_delegate, row());
    for (int i = 0; i < 5; ++i)
        QCOMPARE(paintRow(*m_delegate, row()), first);
    QCOMPARE(m_delegate->rowPicturesMade(), 1);
    QCOMPARE(m_delegate->keptRowPictureCount(), 1);
    QCOMPARE(first, freshRow(row()));
}

// Painting many rows keeps a bounded number of pictures, within the byte bound.
void TestNoticeRowPictures::keptPicturesAreBounded()
{
    for (int i = 0; i < 1000; ++i) {
        auto notice = makeNotice(ClusterNoticeRemind);
        notice->setDisplayContent(QStringLiteral("Row %1").arg(i));
        auto* item = new QStandardItem;
        item->setData(QVariant::fromValue(notice), Qt::UserRole);
        m_rows.appendRow(item);
    }
    QImage image(kRow.size(), QImage::Format_ARGB32_Premultiplied);
    QPainter painter(&image);
    QStyleOptionViewItem option;
    option.rect = kRow;
    for (int i = 0; i < m_rows.rowCount(); ++i)
        m_delegate->paint(&painter, option, m_rows.index(i, 0));
    QCOMPARE(m_delegate->rowPicturesMade(), 1000);
    QVERIFY(m_delegate->keptRowPictureCount() > 0);
    QVERIFY(m_delegate->keptRowPictureCount() < 1000);
    QVERIFY(m_delegate->keptRowPictureKilobytes() <= m_delegate->maxRowPictureKilobytes());
    // Each kept picture holds most of its row's pixels.
    QVERIFY(m_delegate->keptRowPictureKilobytes() >= m_delegate->keptRowPictureCount() * 100);
}

// A change of the system's time zone shows the row's time in the new zone once the zone is looked at again.
void TestNoticeRowPictures::zoneChangePaintsAsNew()
{
    const bool wasSet = qEnvironmentVariableIsSet("TZ");
    const QByteArray previous = qgetenv("TZ");
    auto setZone = [](const QByteArray& zone) {
        qputenv("TZ", zone);
        tzset();
    };
    setZone("UTC");
    setUpRow(ClusterNoticeRemind);
    LocalDays::forThisThread().zoneChanges();
    QTest::qSleep(int(LocalDays::ZoneCheckInterval) + 50);
    const QImage before = paintRow(*m_delegate, row());

    setZone("Asia/Shanghai");
    // The zone is compared at most once a second.
    QTest::qSleep(int(LocalDays::ZoneCheckInterval) + 50);
    const QImage after = paintRow(*m_delegate, row());
    const QImage fresh = freshRow(row());
    if (wasSet)
        setZone(previous);
    else {
        qunsetenv("TZ");
        tzset();
    }
    QVERIFY(after != before);
    QCOMPARE(after, fresh);
}

// Repaints of the gathered window read no file: its shadow picture was loaded with it, and the border it
// draws from the kept frame is the border stretched from that picture.
void TestNoticeRowPictures::windowShadowIsLoadedOnce()
{
    NoticeListModel::release();
    QCoreApplication::sendPostedEvents(nullptr, QEvent::DeferredDelete);
    NoticeListWidget window(Activity);
    for (int i = 0; i < 3; ++i) {
        NoticeListModel::instance()->addContactorAddNotice();
        window.adjustListHeight(0);
    }
    window.show();
    QVERIFY(QTest::qWaitForWindowExposed(&window));
    const QImage first = window.grab().toImage().convertToFormat(QImage::Format_ARGB32_Premultiplied);

    QStringList read;
    {
        ResourceSpy spy;
        for (int i = 0; i < 3; ++i)
            window.grab();
        read = spy.names();
    }
    QVERIFY2(read.filter(QStringLiteral("GatherNoticeShadow")).isEmpty(), qPrintable(read.join(QLatin1Char(' '))));

    // The top border, where only the shadow is, against the border drawn directly.
    const QPixmap shadow(QStringLiteral(":/im/images/notice/GatherNoticeShadow.png"));
    QVERIFY(!shadow.isNull());
    QImage reference(window.size(), QImage::Format_ARGB32_Premultiplied);
    reference.fill(Qt::transparent);
    {
        QPainter painter(&reference);
        painter.setRenderHints(QPainter::Antialiasing | QPainter::SmoothPixmapTransform);
        const QMargins margins(20, 20, 20, 20);
        qDrawBorderPixmap(&painter, reference.rect(), margins, shadow, shadow.rect(), margins,
                          QTileRules(Qt::StretchTile, Qt::StretchTile));
    }
    QCOMPARE(first.size(), reference.size());
    QCOMPARE(PixelProbe::differingPixels(first, reference, QRect(0, 0, window.width(), 20)), 0);
    window.hide();
    NoticeListModel::release();
    QCoreApplication::sendPostedEvents(nullptr, QEvent::DeferredDelete);
}

QTEST_MAIN(TestNoticeRowPictures)
#include "tst_noticerowpictures.moc"
