#include "AvatarManager.h"
#include "CoreEngine.h"
#include "PixelProbe.h"

#include <QSignalSpy>
#include <QtTest>

using namespace VyrEngine;

namespace P = PixelProbe;

// The core engine's clock and user, and the cluster avatars.
class TestVyrCoreEngine : public QObject
{
    Q_OBJECT
private slots:
    void init();
    void cleanup();

    void clockStopsAdvancesAndFollowsSystem();
    void generatedAvatarIsColouredByTheId();
    void downloadedAvatarReplacesTheGeneratedOne();
    void namedClusterGetsItsInitials();
    void grayAvatarHasNoColour();

    void personAvatarIsGeneratedOncePerPerson();
    void personAvatarHostSide();
    void fileServerPrefixIsTheHosts();
};

void TestVyrCoreEngine::init()
{
    AvatarManager::instance().clear();
}

void TestVyrCoreEngine::cleanup()
{
    AvatarManager::instance().clear();
    CoreEngine::instance()->useSystemClock();
}

// The clock stands where the host sets it, moves by advanceTime, and can follow the system again.
void TestVyrCoreEngine::clockStopsAdvancesAndFollowsSystem()
{
    auto* core = CoreEngine::instance();
    core->setCurrentTime(1000);
    QCOMPARE(core->currentTime(), 1000);
    core->advanceTime(-30);
    QCOMPARE(core->currentTime(), 970);
    QCOMPARE(core->currentDateTime().toSecsSinceEpoch(), 970);
    core->useSystemClock();
    QVERIFY(qAbs(core->currentTime() - QDateTime::currentSecsSinceEpoch()) <= 1);
    core->setCurrentUid(77);
    QCOMPARE(core->currentUid(), 77ull);
}


// A cluster without a picture gets a square in a colour of its own.
void TestVyrCoreEngine::generatedAvatarIsColouredByTheId()
{
    const QPixmap a = AvatarManager::instance().getClusterAvatar(ClusterID(11, 0), false);
    const QPixmap b = AvatarManager::instance().getClusterAvatar(ClusterID(12, 0), false);
    QCOMPARE(a.size(), QSize(AvatarManager::GeneratedSize, AvatarManager::GeneratedSize));
    QCOMPARE(P::colourAt(a, 1, 1), AvatarManager::generatedColor(11));
    QCOMPARE(P::colourAt(b, 1, 1), AvatarManager::generatedColor(12));
    QVERIFY(AvatarManager::generatedColor(11) != AvatarManager::generatedColor(12));
    // A glyph is drawn on it: not one flat colour.
    QVERIFY(P::colourAt(a, a.width() / 2 - 8, a.height() / 2) != AvatarManager::generatedColor(11));
    // Made once and kept.
    QCOMPARE(AvatarManager::instance().getClusterAvatar(ClusterID(11, 0), false).cacheKey(), a.cacheKey());
}


// A downloaded picture is served instead, and removing it brings the generated one back.
void TestVyrCoreEngine::downloadedAvatarReplacesTheGeneratedOne()
{
    QList<quint64> changed;
    QObject context;
    connect(&AvatarManager::instance(), &AvatarManager::clusterAvatarChanged, &context,
            [&changed](const ClusterID& id) { changed << id.id(); });
    AvatarManager::instance().putClusterAvatar(11, P::pixmap(QSize(50, 50), Qt::red));
    QCOMPARE(changed, QList<quint64>{11});
    QCOMPARE(P::colourAt(AvatarManager::instance().getClusterAvatar(ClusterID(11, 0), false), 25, 25),
             QColor(Qt::red));
    AvatarManager::instance().removeClusterAvatar(11);
    QCOMPARE(changed, (QList<quint64>{11, 11}));
    QCOMPARE(P::colourAt(AvatarManager::instance().getClusterAvatar(ClusterID(11, 0), false), 1, 1),
             AvatarManager::generatedColor(11));
}


// With a name, the generated picture shows initials instead of the group glyph.
void TestVyrCoreEngine::namedClusterGetsItsInitials()
{
    const QImage glyph = AvatarManager::instance().getClusterAvatar(ClusterID(11, 0), false).toImage();
    AvatarManager::instance().setClusterAvatarName(11, QStringLiteral("physics club"));
    const QImage initials = AvatarManager::instance().getClusterAvatar(ClusterID(11, 0), false).toImage();
    QVERIFY(glyph != initials);
    QCOMPARE(P::colourAt(initials, 1, 1), AvatarManager::generatedColor(11));
}


// The grey form keeps the shape and drops the colour.
void TestVyrCoreEngine::grayAvatarHasNoColour()
{
    AvatarManager::instance().putClusterAvatar(11, P::pixmap(QSize(10, 10), QColor(200, 40, 40)));
    const QColor grey = P::colourAt(AvatarManager::instance().getClusterAvatar(ClusterID(11, 0), true), 5, 5);
    QCOMPARE(grey.red(), grey.green());
    QCOMPARE(grey.green(), grey.blue());
}


// A person without a picture gets a square in a colour of their own, made once and kept.
void TestVyrCoreEngine::personAvatarIsGeneratedOncePerPerson()
{
    auto& avatars = AvatarManager::instance();
    const QPixmap a = avatars.getUserAvatar(11);
    const QPixmap b = avatars.getUserAvatar(12);
    QCOMPARE(a.size(), QSize(AvatarManager::GeneratedSize, AvatarManager::GeneratedSize));
    QCOMPARE(P::colourAt(a, 1, 1), AvatarManager::generatedUserColor(11));
    QCOMPARE(P::colourAt(b, 1, 1), AvatarManager::generatedUserColor(12));
    QVERIFY(AvatarManager::generatedUserColor(11) != AvatarManager::generatedUserColor(12));
    // A white glyph stands in the middle.
    QCOMPARE(P::colourAt(a, AvatarManager::GeneratedSize / 2, AvatarManager::GeneratedSize / 2), QColor(Qt::white));
    QCOMPARE(avatars.getUserAvatar(11).cacheKey(), a.cacheKey());
    QCOMPARE(avatars.userAvatarLookupCount(), 3);
    // People and clusters of the same number have pictures of their own.
    QVERIFY(avatars.getClusterAvatar(ClusterID(11, 0), false).cacheKey() != a.cacheKey());
}

// The host puts a picture in, names a person for the initials, and takes the picture out again; each signals.
void TestVyrCoreEngine::personAvatarHostSide()
{
    auto& avatars = AvatarManager::instance();
    QSignalSpy changed(&avatars, &AvatarManager::userAvatarChanged);
    const QPixmap glyph = avatars.getUserAvatar(5);
    avatars.putUserAvatar(5, P::pixmap(QSize(10, 10), Qt::red));
    QCOMPARE(P::colourAt(avatars.getUserAvatar(5), 5, 5), QColor(Qt::red));
    avatars.removeUserAvatar(5);
    QCOMPARE(avatars.getUserAvatar(5).cacheKey(), glyph.cacheKey());
    avatars.setUserAvatarName(5, QStringLiteral("Wang Fang"));
    const QPixmap initials = avatars.getUserAvatar(5);
    QVERIFY(initials.cacheKey() != glyph.cacheKey());
    QCOMPARE(P::colourAt(initials, 1, 1), AvatarManager::generatedUserColor(5));
    QCOMPARE(changed.count(), 3);
    QCOMPARE(changed.at(0).at(0).toULongLong(), 5ull);
    avatars.clear();
    QCOMPARE(avatars.userAvatarLookupCount(), 0);
}

// The file server's prefix is empty until the host sets it, then it is what the host set.
void TestVyrCoreEngine::fileServerPrefixIsTheHosts()
{
    auto* core = CoreEngine::instance();
    core->setFileServerPrefix(QString());
    QVERIFY(core->fileServerPrefix().isEmpty());
    core->setFileServerPrefix(QStringLiteral("http://127.0.0.1:8080"));
    QCOMPARE(core->fileServerPrefix(), QStringLiteral("http://127.0.0.1:8080"));
    core->setFileServerPrefix(QString());
}

QTEST_MAIN(TestVyrCoreEngine)
#include "tst_vyrcoreengine.moc"
