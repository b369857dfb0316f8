#include "Simulation.h"

#include "ClassNoticeWidget.h"
#include "PopNoticeBaseWidget.h"
#include "CourseEvents.h"
#include "DemoHost.h"
#include "DemoHttpServer.h"
#include "FriendRequestActions.h"
#include "FriendRequestPageHost.h"
#include "PersonInfoWidget.h"
#include "KitSeeder.h"
#include "NoticeListWidget.h"
#include "CourseWorkFeeder.h"
#include "NoticeFeeder.h"
#include "NoticeStacker.h"
#include "PopNoticeBaseWidget.h"
#include "PopupEvents.h"
#include "SimulatedScreen.h"
#include "UserSimulator.h"
#include "SinglePopupFeeder.h"
#include "SinglePopupHost.h"
#include "VyrHttpManager.h"
#include "WindowSettler.h"

#include <QApplication>
#include <QCoreApplication>
#include <QHash>
#include <QSet>
#include <QJsonDocument>
#include <QTimer>

Simulation::Simulation(DemoHost* host, const QJsonObject& scenario, const QString& screenshotFolder, double speed,
                       QObject* parent)
    : QObject(parent)
    , m_host(host)
    , m_player(scenario)
    , m_screenshots(screenshotFolder)
    , m_user(new UserSimulator(host, this))
    , m_friendRequests(new FriendRequestActions(host, this))
{
    m_player.setSpeed(speed);
    KitSeeder::registerActions(&m_player);
    CourseEvents::registerActions(&m_player);
    NoticeFeeder::registerActions(&m_player, m_host);
    CourseWorkFeeder::registerActions(&m_player, m_host);
    m_user->registerActions(&m_player);
    m_friendRequests->registerActions(&m_player);
    connect(m_friendRequests, &FriendRequestActions::said, m_host, &DemoHost::say);
    // The simulated screen's window manager places the page.
    connect(m_host->friendRequestPage(), &FriendRequestPageHost::pageShown, this, &SimulatedScreen::fitWindow);
    // Covers and cluster notice details come from one local server whose
    // answers the scenario chooses; starting it points the file server prefix at it.
    if (m_server.start())
        VyrHttpManager::setBaseUrl(m_server.baseUrl());
    else
        m_host->say(QStringLiteral("demo server: could not bind 127.0.0.1; covers and notice details will fail"));
    PopupEvents::registerActions(&m_player, m_host, &m_server);
    registerRunActions();
    SinglePopupFeeder::registerActions(&m_player, m_host, &m_server);
    connect(m_user, &UserSimulator::said, m_host, &DemoHost::say);
    connect(&m_player, &ScenarioPlayer::stepStarted, this, &Simulation::announceStep);
    connect(&m_player, &ScenarioPlayer::finished, this, &Simulation::onFinished);
}

Simulation::~Simulation() = default;

bool Simulation::start()
{
    const QStringList missing = m_player.missingActions();
    if (!missing.isEmpty()) {
        m_host->say(QStringLiteral("no handler for the actions %1").arg(missing.join(QStringLiteral(", "))));
        return false;
    }
    m_host->say(KitSeeder::seed(m_player.scenario()));
    m_player.start();
    return true;
}

void Simulation::registerRunActions()
{
    m_player.addAction(QStringLiteral("printRows"), [this](const QJsonObject&) { m_host->printRows(); });
    m_player.addAction(QStringLiteral("screenshot"), [this](const QJsonObject& step) { screenshot(step); });
    m_player.addAction(QStringLiteral("quitWhenHidden"), [this](const QJsonObject& step) { quitWhenHidden(step); });
    m_player.addAction(QStringLiteral("quit"), [](const QJsonObject&) { QCoreApplication::exit(0); });
}

void Simulation::announceStep(int index, const QJsonObject& step)
{
    QJsonObject shown = step;
    shown.remove(QStringLiteral("at"));
    m_host->say(QStringLiteral("step %1 @%2ms: %3")
                    .arg(index)
                    .arg(step.value(QStringLiteral("at")).toInt())
                    .arg(QString::fromUtf8(QJsonDocument(shown).toJson(QJsonDocument::Compact))));
}

// A picture of a window half faded in would show the speed of the run, not
// the window: wait until every fade and slide has ended, whatever the speed.
void Simulation::screenshot(const QJsonObject& step)
{
    if (!m_screenshots.isEnabled())
        return;
    const int waited = WindowSettler::waitForStillWindows();
    if (waited < 0)
        m_host->say(QStringLiteral("screenshot: windows still moving after 3 s; taken anyway"));
    else if (waited > 0)
        m_host->say(QStringLiteral("screenshot: waited %1 ms for the windows to settle").arg(waited));
    const QList<ScreenshotTaker::NamedWindow> windows = windowsToShoot();
    // Where each window stands, for people and for checks that windows don't cover each other.
    for (const ScreenshotTaker::NamedWindow& window : windows) {
        if (!window.second->isVisible())
            continue;
        const QRect frame = window.second->geometry();
        m_host->say(QStringLiteral("screenshot: %1 at %2,%3 %4x%5")
                        .arg(window.first)
                        .arg(frame.x())
                        .arg(frame.y())
                        .arg(frame.width())
                        .arg(frame.height()));
    }
    const QStringList files = m_screenshots.take(step.value(QStringLiteral("name")).toString(), windows);
    for (const QString& file : files)
        m_host->say(QStringLiteral("screenshot: %1").arg(file));
}

// The gathered windows, then the pop-up cards in the order they showed, each
// named after its class ("ClassNotice", "ExamNotice2", ...).
QList<ScreenshotTaker::NamedWindow> Simulation::windowsToShoot() const
{
    QList<ScreenshotTaker::NamedWindow> windows = {{QStringLiteral("Lesson"), m_host->window(VyrEngine::Lesson)},
                                                   {QStringLiteral("Activity"), m_host->window(VyrEngine::Activity)}};
    QHash<QString, int> cards;
    const QList<QWidget*> stacked = m_host->stacker()->windows();
    for (QWidget* window : stacked) {
        if (!qobject_cast<PopNoticeBaseWidget*>(window) || !window->isVisible())
            continue;
        QString kind = QString::fromLatin1(window->metaObject()->className());
        if (kind.endsWith(QLatin1String("Widget")))
            kind.chop(6);
        const int count = ++cards[kind];
        windows.append({count == 1 ? kind : QStringLiteral("%1%2").arg(kind).arg(count), window});
    }
    // The single pop-ups, the certification window and the short messages.
    for (const auto& popup : m_host->singlePopups()->visibleWindows())
        windows.append({popup.first, popup.second});
    // The friend-request page, and what is open over it: a menu, a box or dialog, the person's card.
    if (QWidget* page = m_host->friendRequestPage()->window())
        windows.append({QStringLiteral("FriendRequests"), page});
    if (QWidget* popup = QApplication::activePopupWidget())
        windows.append({QStringLiteral("Menu"), popup});
    if (QWidget* modal = QApplication::activeModalWidget())
        windows.append({QStringLiteral("Box"), modal});
    if (QWidget* card = PersonInfoWidget::current())
        windows.append({QStringLiteral("PersonCard"), card});
    return withoutRepeats(windows);
}

// A window found by two of the searches above is shot once, under its first name.
QList<ScreenshotTaker::NamedWindow> Simulation::withoutRepeats(const QList<ScreenshotTaker::NamedWindow>& windows)
{
    QList<ScreenshotTaker::NamedWindow> once;
    QSet<QWidget*> seen;
    for (const ScreenshotTaker::NamedWindow& window : windows) {
        if (!seen.contains(window.second)) {
            seen.insert(window.second);
            once.append(window);
        }
    }
    return once;
}

void Simulation::quitWhenHidden(const QJsonObject& step)
{
    if (!m_host->anyWindowVisible()) {
        QCoreApplication::exit(0);
        return;
    }
    m_waitingToQuit = true;
    m_host->say(QStringLiteral("waiting for the windows to go"));
    const auto quitWhenNoneLeft = [this]() {
        if (!m_host->anyWindowVisible())
            QCoreApplication::exit(0);
    };
    connect(m_host, &DemoHost::windowHidden, this, quitWhenNoneLeft);
    connect(m_host, &DemoHost::classNoticeClosed, this, quitWhenNoneLeft);
    connect(m_host, &DemoHost::courseWorkNoticeClosed, this, quitWhenNoneLeft);
    QTimer::singleShot(step.value(QStringLiteral("timeout")).toInt(), this, [this]() {
        m_host->say(QStringLiteral("windows still up after the timeout"));
        QCoreApplication::exit(3);
    });
}

// Without a "quitWhenHidden" waiting, the run ends with its last step.
void Simulation::onFinished()
{
    if (!m_waitingToQuit)
        QCoreApplication::exit(0);
}
