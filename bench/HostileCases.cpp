#include "HostileCases.h"

#include "ClassNoticeWidget.h"
#include "ContactsEngine.h"
#include "CoreEngine.h"
#include "CourseEngine.h"
#include "GatherNotice.h"
#include "LocalHttpServer.h"
#include "ProcessMemory.h"
#include "MicroCourseNoticeWidget.h"
#include "NotAuthSchoolNotice.h"
#include "NoticeEngine.h"
#include "NoticeRemindNoticeWidget.h"
#include "NoticeListViewItem.h"
#include "SchoolSettingManager.h"
#include "ScreenCornerOverride_p.h"
#include "StudyActivityNoticeWidget.h"
#include "StudyActivityNoticeWidgetDisplayPod.h"
#include "StudyReportNoticeWidget.h"
#include "VyrHttpManager.h"
#include "VyrModalAnswerer.h"
#include "VyrTrack.h"
#include "friendrequesttreeview.h"
#include "VyrUtils.h"

#include <QApplication>
#include <QBuffer>
#include <QDesktopServices>
#include <QElapsedTimer>
#include <QFile>
#include <QImage>
#include <QJsonObject>
#include <QLabel>
#include <QMessageBox>
#include <QPainter>
#include <QPointer>
#include <QPushButton>
#include <QStandardItemModel>
#include <QThreadPool>
#include <QUrl>

#include <memory>

using namespace VyrEngine;

namespace HostileCases {
namespace {

constexpr qint64 kNow = 1800000000;
constexpr quint64 kCourseId = 500;
const QString kOrdinaryName = QStringLiteral("Class 3A");
const QString kDevZero = QStringLiteral("<img src=/dev/zero>");

std::unique_ptr<VyrDev::LocalHttpServer> g_server;

// Receives the addresses the library asks the desktop to open.
class UrlSink : public QObject
{
    Q_OBJECT
public slots:
    void open(const QUrl& url) { opened = url; }

public:
    QUrl opened;
};
UrlSink* g_urls = nullptr;

QString nestedTables(int depth)
{
    return QStringLiteral("<table><tr><td>").repeated(depth) + QStringLiteral("deep")
           + QStringLiteral("</td></tr></table>").repeated(depth);
}

QSharedPointer<SnapshotLesson> lesson()
{
    return CourseEngine::instance()->lessonSnapshot(42);
}

// Builds, pops and paints a card, then closes it.
template <typename Window>
void popPaintClose(Window* window)
{
    window->popNotice();
    settle();
    QImage canvas(window->size(), QImage::Format_ARGB32_Premultiplied);
    canvas.fill(Qt::transparent);
    window->render(&canvas);
    delete window;
    VyrTrack::instance()->clearEvents();
}

QSharedPointer<StudyActivityNoticeWidgetDisplayPod> activityTexts(const QString& title, const QString& content,
                                                                   const QString& heading)
{
    return QSharedPointer<StudyActivityNoticeWidgetDisplayPod>::create(title, content, false, false, false, QString(),
                                                                       false, QString(), QString(), false, false,
                                                                       false, false, heading, QString(), QString(),
                                                                       false);
}

QSharedPointer<AppendixDataPod> activity()
{
    auto pod = QSharedPointer<AppendixDataPod>::create();
    pod->activityId = 9;
    pod->activityType = 1;
    pod->courseData = QSharedPointer<ActivityCourseDataPod>::create();
    pod->courseData->courseId = quint32(kCourseId);
    return pod;
}

Case activityCard(const std::string& name, const QString& hostileHtml)
{
    auto texts = std::make_shared<QSharedPointer<StudyActivityNoticeWidgetDisplayPod>>();
    return Case{name,
                [texts, hostileHtml](bool hostile) {
                    *texts = hostile ? activityTexts(hostileHtml, hostileHtml, hostileHtml)
                                     : activityTexts(QStringLiteral("Quiz"),
                                                     QStringLiteral("Chapter 3 <i>review</i> is open until Friday"),
                                                     QStringLiteral("New quiz"));
                },
                [texts](bool) { popPaintClose(new StudyActivityNoticeWidget(activity(), *texts, nullptr)); }};
}

// One gathered activity row painted twice: when it arrives and on the next repaint.
Case activityRow(const std::string& name, const QString& hostileHtml)
{
    auto model = std::make_shared<QStandardItemModel>();
    return Case{name,
                [model, hostileHtml](bool hostile) {
                    model->clear();
                    auto notice = std::make_shared<GatherNotice>(StudyActivity);
                    notice->setTime(quint32(kNow));
                    notice->setNoticeId(VyrUtils::createUuid());
                    notice->setClusterId(kCourseId);
                    notice->setTitle(QStringLiteral("New quiz"));
                    notice->setDisplayPod(hostile ? activityTexts(QStringLiteral("Quiz"), hostileHtml, QString())
                                                  : activityTexts(QStringLiteral("Quiz"),
                                                                  QStringLiteral("Chapter 3 <i>review</i> is open"),
                                                                  QString()));
                    auto* item = new QStandardItem(QStringLiteral("row"));
                    item->setData(QVariant::fromValue(notice), Qt::UserRole);
                    model->appendRow(item);
                },
                [model](bool) {
                    NoticeListViewItem delegate(nullptr);
                    QImage image(364, 88, QImage::Format_ARGB32_Premultiplied);
                    QPainter painter(&image);
                    QStyleOptionViewItem option;
                    option.rect = QRect(0, 0, 364, 88);
                    option.state = QStyle::State_Enabled;
                    for (int paint = 0; paint < 2; ++paint)
                        delegate.paint(&painter, option, model->index(0, 0));
                }};
}

Case clusterNameCase(const std::string& name, const std::function<void()>& showWindow)
{
    return Case{name,
                [](bool hostile) {
                    ContactsEngine::instance()->putCluster(kCourseId, hostile ? kDevZero : kOrdinaryName);
                },
                [showWindow](bool) { showWindow(); }};
}

quint32 crc32(const QByteArray& data)
{
    quint32 crc = 0xFFFFFFFFu;
    for (char byte : data) {
        crc ^= quint8(byte);
        for (int bit = 0; bit < 8; ++bit)
            crc = (crc >> 1) ^ (0xEDB88320u & (0u - (crc & 1u)));
    }
    return ~crc;
}

void appendBigEndian(QByteArray* out, quint32 value)
{
    for (int shift = 24; shift >= 0; shift -= 8)
        out->append(char((value >> shift) & 0xFF));
}

QByteArray pngChunk(const QByteArray& type, const QByteArray& data)
{
    QByteArray chunk;
    appendBigEndian(&chunk, quint32(data.size()));
    chunk += type + data;
    appendBigEndian(&chunk, crc32(type + data));
    return chunk;
}

// A PNG that only declares its size: signature, header, an empty picture and the end.
QByteArray pngDeclaring(quint32 width, quint32 height)
{
    QByteArray header;
    appendBigEndian(&header, width);
    appendBigEndian(&header, height);
    header += QByteArray("\x08\x06\x00\x00\x00", 5);
    return QByteArray("\x89PNG\r\n\x1a\n", 8) + pngChunk("IHDR", header) + pngChunk("IDAT", QByteArray())
           + pngChunk("IEND", QByteArray());
}

QByteArray ordinaryPng()
{
    QByteArray bytes;
    QBuffer buffer(&bytes);
    buffer.open(QIODevice::WriteOnly);
    QImage image(QSize(72, 40), QImage::Format_ARGB32);
    image.fill(QColor(30, 160, 90));
    image.save(&buffer, "PNG");
    return bytes;
}

VyrDev::HttpReply pictureReply(const QByteArray& body, const QByteArray& contentType)
{
    VyrDev::HttpReply reply = VyrDev::HttpReply::png(body);
    reply.contentType = contentType;
    return reply;
}

// Waits until the server has seen one more request and its answer has ended.
void waitForAnswer(int before)
{
    QElapsedTimer clock;
    clock.start();
    auto answered = [before]() {
        const QList<VyrDev::HttpRequestRecord> requests = g_server->requests();
        return requests.size() > before && requests.last().answered;
    };
    while (!answered() && clock.elapsed() < 10000)
        QCoreApplication::processEvents(QEventLoop::AllEvents, 5);
}

// The micro-course card with its cover served by the local server, or at an address of its own.
Case coverCase(const std::string& name, const VyrDev::HttpReply& hostileReply, const QString& hostileAddress = QString())
{
    auto address = std::make_shared<QString>();
    return Case{name,
                [hostileReply, hostileAddress, address](bool hostile) {
                    g_server->setReply("/cover/c.png", hostile ? hostileReply : pictureReply(ordinaryPng(), "image/png"));
                    const bool ownAddress = hostile && !hostileAddress.isNull();
                    *address = ownAddress ? hostileAddress : QStringLiteral("/cover/c.png");
                    CoreEngine::instance()->setFileServerPrefix(ownAddress ? QString() : g_server->baseUrl().toString());
                },
                [address](bool) {
                    QJsonObject info;
                    info.insert(QStringLiteral("auditStatus"), 4);
                    info.insert(QStringLiteral("lectureName"), QStringLiteral("Fractions"));
                    info.insert(QStringLiteral("coverUrl"), *address);
                    QPointer<MicroCourseNoticeWidget> window = new MicroCourseNoticeWidget(1, 2, info, nullptr);
                    window->popNotice();
                    const int before = g_server->requestCount();
                    // Until the answer has ended (or was never asked for) and the window has shown what came.
                    if (!address->startsWith(QLatin1String("file:")))
                        waitForAnswer(before);
                    for (int turn = 0; turn < 20; ++turn)
                        settle();
                    QImage canvas(window->size(), QImage::Format_ARGB32_Premultiplied);
                    window->render(&canvas);
                    delete window;
                    VyrTrack::instance()->clearEvents();
                }};
}

// The cluster notice reminder's "View now" with the details answer the server gives.
Case reminderCase(const std::string& name, const VyrDev::HttpReply& hostileReply)
{
    return Case{name,
                [hostileReply](bool hostile) {
                    g_server->setReply(VyrHttpManager::ClusterNoticeDetailsPath.toUtf8(),
                                       hostile ? hostileReply
                                               : VyrDev::HttpReply::json(
                                                   R"({"error_info": {"errno": 1, "error": ""}})"));
                    VyrHttpManager::setBaseUrl(g_server->baseUrl());
                },
                [](bool) {
                    QPointer<NoticeRemindNoticeWidget> window = new NoticeRemindNoticeWidget(
                        QStringLiteral("Bring your textbooks"), 77, kCourseId, 5, nullptr);
                    window->popNotice();
                    settle();
                    const int before = g_server->requestCount();
                    if (auto* view = window->findChild<QPushButton*>(QStringLiteral("viewNowBtn")))
                        view->click();
                    waitForAnswer(before);
                    QElapsedTimer clock;
                    clock.start();
                    // The answer closes the card, for the details or for the "deleted" message.
                    while (window && window->isVisible() && clock.elapsed() < 10000)
                        QCoreApplication::processEvents(QEventLoop::AllEvents, 5);
                    settle();
                    delete window;
                    VyrTrack::instance()->clearEvents();
                }};
}

// The friend-request page's box for an error text the engine passes on from the server.
Case errorBoxCase(const std::string& name, const QString& hostileText)
{
    auto text = std::make_shared<QString>();
    auto view = std::make_shared<std::unique_ptr<FriendRequestTreeView>>();
    return Case{name,
                [text, view, hostileText](bool hostile) {
                    *text = hostile ? hostileText : QStringLiteral("The request could not be sent.");
                    if (!*view) {
                        view->reset(new FriendRequestTreeView());
                        (*view)->show();
                        settle();
                    }
                },
                [text](bool) {
                    VyrModalAnswerer::instance()->answerWith([](QWidget* modal) {
                        // Painted as the screen would, so a picture in it would be asked for.
                        modal->grab();
                        VyrModalAnswerer::closeModalOn(modal);
                    });
                    NoticeEngine::instance()->emitErrorNotice(*text);
                    settle();
                }};
}

Case certificationCase(const std::string& name, const QString& hostileDomain)
{
    return Case{name,
                [hostileDomain](bool hostile) {
                    Org::SchoolSettingManager::getInstance()->putDomain(
                        CoreEngine::instance()->currentUid(), 1,
                        hostile ? hostileDomain : QStringLiteral("www.school.example"));
                },
                [](bool) {
                    NotAuthSchoolNotice notice;
                    auto* button = notice.findChild<QPushButton*>(QStringLiteral("IM_GreenBgWhiteText_Button"));
                    if (button)
                        button->click();
                    settle();
                }};
}

} // namespace

void settle()
{
    for (int i = 0; i < 3; ++i) {
        QThreadPool::globalInstance()->waitForDone();
        QCoreApplication::processEvents();
        QCoreApplication::sendPostedEvents(nullptr, QEvent::DeferredDelete);
    }
}

void setUp()
{
    ScreenCorner::Screen screen;
    screen.geometry = QRect(0, 0, 1280, 800);
    screen.availableGeometry = QRect(0, 0, 1280, 760);
    ScreenCornerOverride::set(screen);
    CoreEngine::instance()->setCurrentTime(kNow);
    SnapshotLesson snapshot;
    snapshot.schoolId = 7;
    snapshot.courseId = kCourseId;
    snapshot.lessonId = 42;
    snapshot.startTime = kNow + 600;
    snapshot.role = 1;
    CourseEngine::instance()->putLesson(snapshot, QStringLiteral("Algebra"));
    g_server.reset(new VyrDev::LocalHttpServer());
    g_server->start();
    g_urls = new UrlSink();
    QDesktopServices::setUrlHandler(QStringLiteral("https"), g_urls, "open");
    QDesktopServices::setUrlHandler(QStringLiteral("http"), g_urls, "open");
}

void tearDown()
{
    VyrModalAnswerer::instance()->clear();
    QDesktopServices::unsetUrlHandler(QStringLiteral("https"));
    QDesktopServices::unsetUrlHandler(QStringLiteral("http"));
    delete g_urls;
    g_urls = nullptr;
    g_server->stop();
    g_server.reset();
}

std::vector<Case> all()
{
    const QString longWord = QString(256 * 1024, QLatin1Char('x'));
    const QString megabyte = QStringLiteral("word ").repeated(200 * 1024);
    const QByteArray bigSvg = "<svg xmlns=\"http://www.w3.org/2000/svg\" width=\"20000\" height=\"20000\">"
                              "<rect width=\"20000\" height=\"20000\" fill=\"red\"/></svg>";
    return {
        clusterNameCase("class notice heading: <img src=/dev/zero>",
                        []() { popPaintClose(new ClassNoticeWidget(ClassNoticeWidget::AheadNotice, lesson())); }),
        clusterNameCase("study report heading: <img src=/dev/zero>",
                        []() { popPaintClose(new StudyReportNoticeWidget(lesson())); }),
        activityCard("activity card: <img src=/dev/zero>", kDevZero),
        activityCard("activity card: 10 nested tables", nestedTables(10)),
        activityCard("activity card: 20 nested tables", nestedTables(20)),
        activityRow("activity row: <img src=/dev/zero>", kDevZero),
        activityRow("activity row: 8 nested tables", nestedTables(8)),
        activityRow("activity row: 256K characters without a space", longWord),
        activityRow("activity row: 1 MB of text", megabyte),
        errorBoxCase("server error text in a box: <img src=/dev/zero>", kDevZero),
        coverCase("cover: PNG declaring 20000x20000", pictureReply(pngDeclaring(20000, 20000), "image/png")),
        coverCase("cover: PNG declaring 16000x16000", pictureReply(pngDeclaring(16000, 16000), "image/png")),
        coverCase("cover: 120-byte SVG declaring 20000x20000", pictureReply(bigSvg, "image/svg+xml")),
        coverCase("cover: 600 MB body", VyrDev::HttpReply::huge(600ll << 20, "image/png", true)),
        coverCase("cover: 600 MB body, no length", VyrDev::HttpReply::huge(600ll << 20, "image/png")),
        coverCase("cover: gzip answer inflating to 1.44 GB", VyrDev::HttpReply::gzipBomb(1440ll << 20, "image/png")),
        coverCase("cover: redirect to another host",
                  VyrDev::HttpReply::redirect("http://127.0.0.2:9/cover/c.png")),
        coverCase("cover: file address, no file server", VyrDev::HttpReply(), QStringLiteral("file:///dev/zero")),
        reminderCase("reminder: 600 MB answer", VyrDev::HttpReply::huge(600ll << 20, "application/json", true)),
        reminderCase("reminder: gzip answer inflating to 1.44 GB", VyrDev::HttpReply::gzipBomb(1440ll << 20)),
        reminderCase("reminder: 302 whose body says errno 1",
                     VyrDev::HttpReply::json(R"({"error_info": {"errno": 1, "error": ""}})", 302)),
        certificationCase("certification domain: evil.example/phish?x=", QStringLiteral("evil.example/phish?x=")),
        certificationCase("certification domain: www.school.example@evil.example",
                          QStringLiteral("www.school.example@evil.example")),
    };
}

long residentKb()
{
    return processStatusKb("VmRSS");
}

long peakResidentKb()
{
    return processStatusKb("VmHWM");
}

void resetPeakResident()
{
    // Writing 5 resets the peak resident size (VmHWM) to the present one.
    QFile clear(QStringLiteral("/proc/self/clear_refs"));
    if (clear.open(QIODevice::WriteOnly))
        clear.write("5");
}

} // namespace HostileCases

#include "HostileCases.moc"
