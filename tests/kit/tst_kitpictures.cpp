#include "AvatarManager.h"
#include "CourseEngine.h"
#include "ImageOp.h"
#include "TestKit.h"
#include "VyrUtilsHelper.h"

#include <QPainter>
#include <QtTest>

using namespace VyrEngine;

namespace {
QPixmap solid(const QSize& size, const QColor& colour)
{
    QPixmap pixmap(size);
    pixmap.fill(colour);
    return pixmap;
}

QColor pixelOf(const QPixmap& pixmap, int x, int y)
{
    return QColor::fromRgba(pixmap.toImage().pixel(x, y));
}
} // namespace

// The kit's picture and text helpers, and the course engine's lesson kinds.
class TestKitPictures : public QObject
{
    Q_OBJECT
private slots:
    void init();
    void cleanup();

    void generatedAvatarIsColouredByTheId();
    void downloadedAvatarReplacesTheGeneratedOne();
    void namedClusterGetsItsInitials();
    void grayAvatarHasNoColour();
    void roundedPixmapSizeRatioAndCorners();
    void roundedPixmapOfNullSource();
    void roundedPixmapCropsTheCentre();
    void limitString_data();
    void limitString();
    void knownLessonKind();
    void courseInHandWithoutRecord();
};

void TestKitPictures::init()
{
    AvatarManager::instance().clear();
    CourseEngine::instance()->clear();
}

void TestKitPictures::cleanup()
{
    init();
}

// A cluster without a picture gets a square in a colour of its own.
void TestKitPictures::generatedAvatarIsColouredByTheId()
{
    const QPixmap a = AvatarManager::instance().getClusterAvatar(ClusterID(11, 0), false);
    const QPixmap b = AvatarManager::instance().getClusterAvatar(ClusterID(12, 0), false);
    QCOMPARE(a.size(), QSize(AvatarManager::GeneratedSize, AvatarManager::GeneratedSize));
    QCOMPARE(pixelOf(a, 1, 1), AvatarManager::generatedColor(11));
    QCOMPARE(pixelOf(b, 1, 1), AvatarManager::generatedColor(12));
    QVERIFY(AvatarManager::generatedColor(11) != AvatarManager::generatedColor(12));
    // A glyph is drawn on it: not one flat colour.
    QVERIFY(pixelOf(a, a.width() / 2 - 8, a.height() / 2) != AvatarManager::generatedColor(11));
    // Made once and kept.
    QCOMPARE(AvatarManager::instance().getClusterAvatar(ClusterID(11, 0), false).cacheKey(), a.cacheKey());
}

// A downloaded picture is served instead, and removing it brings the generated one back.
void TestKitPictures::downloadedAvatarReplacesTheGeneratedOne()
{
    QList<quint64> changed;
    QObject context;
    connect(&AvatarManager::instance(), &AvatarManager::clusterAvatarChanged, &context,
            [&changed](const ClusterID& id) { changed << id.id(); });
    AvatarManager::instance().putClusterAvatar(11, solid(QSize(50, 50), Qt::red));
    QCOMPARE(changed, QList<quint64>{11});
    QCOMPARE(pixelOf(AvatarManager::instance().getClusterAvatar(ClusterID(11, 0), false), 25, 25),
             QColor(Qt::red));
    AvatarManager::instance().removeClusterAvatar(11);
    QCOMPARE(changed, (QList<quint64>{11, 11}));
    QCOMPARE(pixelOf(AvatarManager::instance().getClusterAvatar(ClusterID(11, 0), false), 1, 1),
             AvatarManager::generatedColor(11));
}

// With a name, the generated picture shows initials instead of the group glyph.
void TestKitPictures::namedClusterGetsItsInitials()
{
    const QImage glyph = AvatarManager::instance().getClusterAvatar(ClusterID(11, 0), false).toImage();
    AvatarManager::instance().setClusterAvatarName(11, QStringLiteral("physics club"));
    const QImage initials = AvatarManager::instance().getClusterAvatar(ClusterID(11, 0), false).toImage();
    QVERIFY(glyph != initials);
    QCOMPARE(QColor(initials.pixel(1, 1)), AvatarManager::generatedColor(11));
}

// The grey form keeps the shape and drops the colour.
void TestKitPictures::grayAvatarHasNoColour()
{
    AvatarManager::instance().putClusterAvatar(11, solid(QSize(10, 10), QColor(200, 40, 40)));
    const QColor grey = pixelOf(AvatarManager::instance().getClusterAvatar(ClusterID(11, 0), true), 5, 5);
    QCOMPARE(grey.red(), grey.green());
    QCOMPARE(grey.green(), grey.blue());
}

// The rounded picture holds size times ratio pixels, carries the ratio and has transparent corners.
void TestKitPictures::roundedPixmapSizeRatioAndCorners()
{
    const QPixmap rounded = ImageOp::roundedRectCoursePixmap(solid(QSize(72, 72), Qt::blue), QSizeF(36, 36), 2.0);
    QCOMPARE(rounded.size(), QSize(72, 72));
    QCOMPARE(rounded.devicePixelRatio(), 2.0);
    QCOMPARE(pixelOf(rounded, 0, 0).alpha(), 0);
    QCOMPARE(pixelOf(rounded, 71, 71).alpha(), 0);
    QCOMPARE(pixelOf(rounded, 36, 36), QColor(Qt::blue));
    QCOMPARE(pixelOf(rounded, 36, 0), QColor(Qt::blue));
    QVERIFY(ImageOp::roundedRectCoursePixmap(solid(QSize(4, 4), Qt::blue), QSizeF(0, 36), 1.0).isNull());
}

// A null source gives a transparent picture of the size.
void TestKitPictures::roundedPixmapOfNullSource()
{
    const QPixmap rounded = ImageOp::roundedRectCoursePixmap(QPixmap(), QSizeF(36, 36), 1.0);
    QCOMPARE(rounded.size(), QSize(36, 36));
    QCOMPARE(pixelOf(rounded, 18, 18).alpha(), 0);
}

// A wide source is scaled to cover and cut to its middle.
void TestKitPictures::roundedPixmapCropsTheCentre()
{
    QPixmap wide(300, 100);
    wide.fill(Qt::red);
    {
        QPainter painter(&wide);
        painter.fillRect(QRect(100, 0, 100, 100), Qt::green);
    }
    const QPixmap rounded = ImageOp::roundedRectCoursePixmap(wide, QSizeF(36, 36), 1.0);
    QCOMPARE(pixelOf(rounded, 2, 18), QColor(Qt::green));
    QCOMPARE(pixelOf(rounded, 33, 18), QColor(Qt::green));
}

void TestKitPictures::limitString_data()
{
    QTest::addColumn<QString>("text");
    QTest::addColumn<int>("width");
    QTest::addColumn<bool>("cut");
    QTest::newRow("fits") << "Class 3" << 200 << false;
    QTest::newRow("too long") << "A cluster name far too long for the width" << 80 << true;
    QTest::newRow("no width") << "Class 3" << 0 << true;
}

// Text that fits is kept; longer text is cut to the width with an ellipsis.
void TestKitPictures::limitString()
{
    QFETCH(QString, text);
    QFETCH(int, width);
    QFETCH(bool, cut);
    QFont font;
    font.setPixelSize(15);
    const QFontMetrics metrics(font);
    const QString result = VyrUtilsHelper::limitString(metrics, text, width, Qt::ElideRight);
    QVERIFY(metrics.horizontalAdvance(result) <= qMax(width, 0));
    if (!cut)
        QCOMPARE(result, text);
    else if (width > 0)
        QVERIFY(result.endsWith(QChar(0x2026)));
    else
        QCOMPARE(result, QString());
}

// Lesson kinds are false until the host marks them, and clear() forgets them.
void TestKitPictures::knownLessonKind()
{
    auto* engine = CourseEngine::instance();
    QVERIFY(!engine->isKnownLessonKind(5));
    engine->setKnownLessonKind(5, true);
    QVERIFY(engine->isKnownLessonKind(5));
    QVERIFY(!engine->isKnownLessonKind(6));
    engine->setKnownLessonKind(5, false);
    QVERIFY(!engine->isKnownLessonKind(5));
    engine->setKnownLessonKind(5, true);
    engine->clear();
    QVERIFY(!engine->isKnownLessonKind(5));
}

// A course held without a record finishes its look-up at once with a null record, until put in hand.
void TestKitPictures::courseInHandWithoutRecord()
{
    auto* engine = CourseEngine::instance();
    auto lesson = QSharedPointer<SnapshotLesson>::create();
    lesson->courseId = 500;
    engine->setCourseInHandWithoutRecord(500);
    auto future = engine->courseInfoFuture(lesson);
    QVERIFY(future.isFinished());
    QCOMPARE(future.resultCount(), 1);
    QVERIFY(!future.resultAt(0));
    engine->setCourseInHand(500, QStringLiteral("Physics"));
    future = engine->courseInfoFuture(lesson);
    QVERIFY(future.isFinished());
    QCOMPARE(future.resultAt(0)->name, QStringLiteral("Physics"));
}

QTEST_MAIN(TestKitPictures)
#include "tst_kitpictures.moc"
