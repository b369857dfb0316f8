#include "ResourceSpy.h"

#include <QFile>
#include <QGuiApplication>
#include <QImage>
#include <QTemporaryDir>
#include <QTest>
#include <QTextDocument>

// The spy the hostile-input tests lean on: it must see a document's picture
// being read from a local file, and must not see the library's own resources
// as outside reads.
class TestResourceSpy : public QObject
{
    Q_OBJECT
private slots:
    void initTestCase()
    {
        // Qt scans its image plugins once; do it before any spy is armed.
        QVERIFY(ResourceSpy::warmUpImagePlugins());
    }

    // A picture named by a document is read through the file engines, and the spy sees it.
    void seesDocumentPictureRead()
    {
        QTemporaryDir dir;
        QVERIFY(dir.isValid());
        const QString path = dir.filePath(QStringLiteral("p.png"));
        QImage picture(8, 8, QImage::Format_ARGB32);
        picture.fill(Qt::red);
        QVERIFY(picture.save(path));

        ResourceSpy spy;
        QTextDocument document;
        document.setHtml(QStringLiteral("<img src=\"%1\">").arg(path));
        document.setTextWidth(200);
        QVERIFY(document.size().width() > 0);
        QVERIFY2(spy.outsideNames().contains(path), qPrintable(spy.names().join(QLatin1Char(' '))));
    }

    // Resources of the program itself are no outside read.
    void resourcesAreNotOutside()
    {
        ResourceSpy spy;
        QFile file(QStringLiteral(":/no/such/resource"));
        QVERIFY(!file.open(QIODevice::ReadOnly));
        QVERIFY(spy.names().contains(QStringLiteral(":/no/such/resource")));
        QVERIFY2(spy.outsideNames().isEmpty(), qPrintable(spy.outsideNames().join(QLatin1Char(' '))));
    }

    // A spy records only while it lives.
    void stopsWithItsLife()
    {
        QStringList seen;
        {
            ResourceSpy spy;
            QFile(QStringLiteral("/nonexistent/a")).exists();
            seen = spy.outsideNames();
        }
        QVERIFY2(seen.contains(QStringLiteral("/nonexistent/a")), qPrintable(seen.join(QLatin1Char(' '))));
        ResourceSpy later;
        QVERIFY(later.outsideNames().isEmpty());
    }
};

QTEST_MAIN(TestResourceSpy)
#include "tst_resourcespy.moc"
